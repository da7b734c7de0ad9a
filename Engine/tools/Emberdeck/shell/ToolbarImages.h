#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "app/resources/IconArt.h"
#include "shell/ColorOps.h"

// A square image. A pixel is 0xAABBGGRR: a colour, and how opaque it is in the top byte. In memory that is red, green,
// blue, alpha on machines that have the low byte first.
struct CPixelImage
{
    int32_t m_nSize = 0; // width and height on the screen
    std::vector<uint32_t> m_Pixels;
    int32_t m_nGrid = 0; // pixels to a side, on a screen with finer pixels; 0: m_nSize

    int32_t GetGrid() const { return m_nGrid > 0 ? m_nGrid : m_nSize; }
    friend bool operator==(const CPixelImage&, const CPixelImage&) = default;
};

constexpr uint32_t c_nOpaque = 0xFF000000u;
constexpr bool IsTransparent(uint32_t nPixel)
{
    return nPixel < 0x01000000u;
}

using CImageList = std::vector<CPixelImage>;

CPixelImage MakeImage(const CIconArt& art); // magenta becomes transparent
// Draws an image's shapes with so many pixels to a side. Empty: the art's own pixels do.
using IconMaker = std::function<CPixelImage(const CIconArt& art, int32_t nGrid)>;
// The image's shape in one colour, for shadows and for what is disabled.
CPixelImage MakeFlatImage(const CPixelImage& image, CColorRef nColor);

enum class EImageKind
{
    eNormal = 0,
    eHot = 1,
    eDisabled = 2
};

// The images of one toolbar. A toolbar rests pale, and shows its true colours only under the mouse.
class CKRToolbarImages
{
public:
    // From the true images: the normal ones are made lighter, and the disabled ones a pale relief in the
    // shadow colour. Transparent pixels stay so. False, with no images, for an empty list.
    bool BuildImages(const CImageList& source, const CShellColors& colors);

    // Null when there is no such image.
    const CPixelImage* GetImage(int32_t nIndex, EImageKind eKind) const;

private:
    CImageList m_Normal;
    CImageList m_Hot;
    CImageList m_Disabled;
};
