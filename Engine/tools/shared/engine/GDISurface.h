#pragma once

#include <cstdint>
#include <vector>

#include "platform/IDrawSurface.h"

// An image in memory that something is drawn into before it is shown. Rows are padded to four bytes
// and run bottom-up. A pixel is blue, green, red at 24 bits, with a fourth byte of 0 at 32; at 16 bits
// it is 5 bits of each, blue lowest.
class CGDISurface
{
public:
    static constexpr int32_t c_nMaxSize = 32767; // pixels, each way
    static constexpr uint64_t c_nMaxBytes = 256u << 20;

    // Drops what was there. A depth other than 16, 24 or 32 is reported. False, and an empty surface,
    // for such a depth, a size that isn't from 1 to c_nMaxSize, and when memory is out. All pixels are 0.
    bool Create(int32_t nWidth, int32_t nHeight, uint32_t nDepth);
    void Destroy();

    bool IsEmpty() const { return m_Bits.empty(); }
    int32_t GetWidth() const { return m_nWidth; }
    int32_t GetHeight() const { return m_nHeight; }
    uint32_t GetDepth() const { return m_nDepth; }
    uint32_t GetPitch() const { return m_nPitch; } // bytes of a row
    CRect Bounds() const { return CRect{0, 0, m_nWidth, m_nHeight}; }

    // All rows, the bottom one first; null when empty.
    const uint8_t* GetBits() const { return IsEmpty() ? nullptr : m_Bits.data(); }
    // A row counted from the top; null outside the surface.
    uint8_t* Row(int32_t y);
    const uint8_t* Row(int32_t y) const;

    // Drawing outside the surface does nothing, a pixel from there is 0.
    void SetPixel(int32_t x, int32_t y, CColorRef nColor);
    CColorRef GetPixel(int32_t x, int32_t y) const;
    void FillRect(const CRect& rc, CColorRef nColor);

private:
    std::vector<uint8_t> m_Bits;
    int32_t m_nWidth = 0;
    int32_t m_nHeight = 0;
    uint32_t m_nDepth = 0; // bits of a pixel
    uint32_t m_nPitch = 0;
};
