#include "shell/ToolbarImages.h"

#include <cstring>

namespace
{

template <typename TOperation>
CImageList ReplacePixels(CImageList images, const TOperation& operation)
{
    for (CPixelImage& image : images)
    {
        for (uint32_t& nPixel : image.m_Pixels)
        {
            if (!IsTransparent(nPixel))
                nPixel = (nPixel & c_nOpaque) | (operation(nPixel) & 0xFFFFFFu);
        }
    }
    return images;
}

} // namespace

CPixelImage MakeImage(const CIconArt& art)
{
    CPixelImage image;
    image.m_nSize = c_nIconSize;
    image.m_Pixels.assign(static_cast<size_t>(c_nIconSize) * c_nIconSize, 0);
    uint32_t* pPixel = image.m_Pixels.data();
    for (const char* pszRow : art.m_Rows)
    {
        const size_t nLength = pszRow ? strnlen(pszRow, c_nIconSize) : 0;
        for (size_t x = 0; x < nLength; ++x)
        {
            const CColorRef nColor = GetIconColor(pszRow[x]);
            pPixel[x] = nColor == c_nIconTransparent ? 0 : c_nOpaque | nColor;
        }
        pPixel += c_nIconSize;
    }
    return image;
}

CPixelImage MakeFlatImage(const CPixelImage& image, CColorRef nColor)
{
    return ReplacePixels({image}, [nColor](uint32_t) { return nColor; }).front();
}

bool CKRToolbarImages::BuildImages(const CImageList& source, const CShellColors& colors)
{
    m_Hot = source;
    // The luminance as a fraction of 255, in whole numbers, so that the cut is exact. On a dark bar a relief
    // up to white would outshine the images of what is enabled.
    const int nPart = colors.m_bDark ? 4 : 1;
    m_Disabled = ReplacePixels(source, [&colors, nPart](uint32_t n)
                               { return Lighten(colors.m_nShadow, Luminance(n) / nPart); });
    m_Normal = ReplacePixels(source, [](uint32_t n) { return Lighten(n, 0.3); });
    return !source.empty();
}

const CPixelImage* CKRToolbarImages::GetImage(int32_t nIndex, EImageKind eKind) const
{
    const CImageList& images = eKind == EImageKind::eNormal ? m_Normal
                               : eKind == EImageKind::eHot  ? m_Hot
                                                            : m_Disabled;
    if (nIndex < 0 || static_cast<size_t>(nIndex) >= images.size())
        return nullptr;
    return &images[static_cast<size_t>(nIndex)];
}
