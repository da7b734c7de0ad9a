#include "shared/engine/GDISurface.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "qsassert.h"

namespace
{

// The bytes of a pixel, lowest first.
uint32_t Encode(CColorRef nColor, uint32_t nDepth)
{
    const uint32_t nRed = nColor & 0xFF;
    const uint32_t nGreen = nColor >> 8 & 0xFF;
    const uint32_t nBlue = nColor >> 16 & 0xFF;
    if (nDepth == 16)
        return nRed >> 3 << 10 | nGreen >> 3 << 5 | nBlue >> 3;
    return nRed << 16 | nGreen << 8 | nBlue;
}

// Five bits spread over eight, so that full stays full.
uint32_t Spread(uint32_t n)
{
    n &= 0x1F;
    return n << 3 | n >> 2;
}

CColorRef Decode(uint32_t n, uint32_t nDepth)
{
    if (nDepth == 16)
        return MakeColorRef(Spread(n >> 10), Spread(n >> 5), Spread(n));
    return MakeColorRef(n >> 16, n >> 8, n);
}

} // namespace

bool CGDISurface::Create(int32_t nWidth, int32_t nHeight, uint32_t nDepth)
{
    Destroy();
    if (nDepth != 16 && nDepth != 24 && nDepth != 32)
    {
        QS_ASSERT_FORCED("CGDISurface::Create - Invalid depth");
        return false;
    }
    if (nWidth < 1 || nHeight < 1 || nWidth > c_nMaxSize || nHeight > c_nMaxSize)
        return false;
    const uint32_t nPitch = (nDepth / 8 * static_cast<uint32_t>(nWidth) + 3) & ~3u;
    const uint64_t nBytes = static_cast<uint64_t>(nPitch) * static_cast<uint32_t>(nHeight);
    if (nBytes > c_nMaxBytes)
        return false;
    try
    {
        m_Bits.resize(nBytes);
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
    m_nWidth = nWidth;
    m_nHeight = nHeight;
    m_nDepth = nDepth;
    m_nPitch = nPitch;
    return true;
}

void CGDISurface::Destroy()
{
    m_Bits = std::vector<uint8_t>();
    m_nWidth = m_nHeight = 0;
    m_nDepth = m_nPitch = 0;
}

uint8_t* CGDISurface::Row(int32_t y)
{
    return const_cast<uint8_t*>(static_cast<const CGDISurface*>(this)->Row(y));
}

const uint8_t* CGDISurface::Row(int32_t y) const
{
    if (y < 0 || y >= m_nHeight)
        return nullptr;
    return m_Bits.data() + static_cast<size_t>(m_nHeight - 1 - y) * m_nPitch;
}

void CGDISurface::SetPixel(int32_t x, int32_t y, CColorRef nColor)
{
    if (x == INT32_MAX || y == INT32_MAX)
        return;
    FillRect(CRect{x, y, x + 1, y + 1}, nColor);
}

CColorRef CGDISurface::GetPixel(int32_t x, int32_t y) const
{
    if (!Bounds().Contains(CPoint{x, y}))
        return 0;
    const uint32_t nBytes = m_nDepth / 8;
    const uint8_t* pPixel = Row(y) + static_cast<size_t>(x) * nBytes;
    uint32_t n = 0;
    for (uint32_t i = 0; i < nBytes; ++i)
        n |= static_cast<uint32_t>(pPixel[i]) << 8 * i;
    return Decode(n, m_nDepth);
}

void CGDISurface::FillRect(const CRect& rc, CColorRef nColor)
{
    const int32_t nLeft = std::max(rc.left, 0);
    const int32_t nRight = std::min(rc.right, m_nWidth);
    const int32_t nTop = std::max(rc.top, 0);
    const int32_t nBottom = std::min(rc.bottom, m_nHeight);
    if (nLeft >= nRight || nTop >= nBottom)
        return;
    const uint32_t nBytes = m_nDepth / 8;
    const uint32_t nPixel = Encode(nColor, m_nDepth);
    uint8_t* const pFirst = Row(nTop) + static_cast<size_t>(nLeft) * nBytes;
    const size_t nLength = static_cast<size_t>(nRight - nLeft) * nBytes;
    for (size_t i = 0; i < nLength; ++i)
        pFirst[i] = static_cast<uint8_t>(nPixel >> 8 * (i % nBytes));
    for (int32_t y = nTop + 1; y < nBottom; ++y)
        std::memcpy(Row(y) + static_cast<size_t>(nLeft) * nBytes, pFirst, nLength);
}
