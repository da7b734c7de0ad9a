#include "properties/ColorChooser.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr int c_nBasicRows = CColorChooser::c_nBasicColors / CColorChooser::c_nBasicColumns;
constexpr int32_t c_nBasicGap = 3;

int Channel(CColorRef nColor, int nShift)
{
    return static_cast<int>(nColor >> nShift & 0xFF);
}

// The share of one channel whose hue is nShift degrees away.
double HueShare(double fHue)
{
    fHue = std::fmod(fHue + 360.0, 360.0);
    if (fHue < 60.0)
        return fHue / 60.0;
    if (fHue < 180.0)
        return 1.0;
    if (fHue < 240.0)
        return (240.0 - fHue) / 60.0;
    return 0.0;
}

uint32_t ToChannel(double fPart)
{
    return static_cast<uint32_t>(std::clamp(std::lround(fPart * c_nMaxChannel), 0L, long(c_nMaxChannel)));
}

// Hue in degrees, the others from 0 to 1.
CColorRef FromParts(double fHue, double fSat, double fLum)
{
    const double fChroma = (1.0 - std::abs(2.0 * fLum - 1.0)) * fSat;
    const double fLow = fLum - fChroma / 2.0;
    return MakeColorRef(ToChannel(fLow + fChroma * HueShare(fHue + 120.0)),
                        ToChannel(fLow + fChroma * HueShare(fHue)),
                        ToChannel(fLow + fChroma * HueShare(fHue - 120.0)));
}

// Place of a pointer along a length, as 0 to nMax.
int Along(int64_t nOffset, int32_t nLength, int nMax)
{
    if (nLength <= 1)
        return 0;
    nOffset = std::clamp<int64_t>(nOffset, 0, nLength - 1);
    return static_cast<int>((nOffset * nMax + (nLength - 1) / 2) / (nLength - 1));
}

int32_t PlaceOf(int nValue, int nMax, int32_t nLength)
{
    return nLength <= 1 ? 0 : static_cast<int32_t>((int64_t(nValue) * (nLength - 1) + nMax / 2) / nMax);
}

} // namespace

CColorRef HslToRgb(const CHsl& hsl)
{
    return FromParts(hsl.m_nHue, hsl.m_nSat / 255.0, hsl.m_nLum / 255.0);
}

CHsl RgbToHsl(CColorRef nColor, const CHsl& before)
{
    const int nRed = Channel(nColor, 0);
    const int nGreen = Channel(nColor, 8);
    const int nBlue = Channel(nColor, 16);
    const int nMax = std::max({nRed, nGreen, nBlue});
    const int nMin = std::min({nRed, nGreen, nBlue});
    const int nChroma = nMax - nMin;
    CHsl hsl = before;
    hsl.m_nLum = (nMax + nMin + 1) / 2;
    if (nMax == 0 || nMin == c_nMaxChannel)
        return hsl;
    const int nRoom = nMax + nMin <= c_nMaxChannel ? nMax + nMin : 2 * c_nMaxChannel - nMax - nMin;
    hsl.m_nSat = (nChroma * c_nMaxChannel + nRoom / 2) / nRoom;
    if (nChroma == 0)
        return hsl;
    const double fHue = nMax == nRed     ? 60.0 * (nGreen - nBlue) / nChroma
                        : nMax == nGreen ? 60.0 * (nBlue - nRed) / nChroma + 120.0
                                         : 60.0 * (nRed - nGreen) / nChroma + 240.0;
    hsl.m_nHue = static_cast<int>(std::lround(fHue) + 360) % 360;
    return hsl;
}

void CColorChooser::SetRgb(CColorRef nColor)
{
    m_nRgb = nColor & 0xFFFFFF;
    m_Hsl = RgbToHsl(m_nRgb, m_Hsl);
}

void CColorChooser::SetHsl(const CHsl& hsl)
{
    m_Hsl.m_nHue = std::clamp(hsl.m_nHue, 0, c_nMaxHue);
    m_Hsl.m_nSat = std::clamp(hsl.m_nSat, 0, c_nMaxChannel);
    m_Hsl.m_nLum = std::clamp(hsl.m_nLum, 0, c_nMaxChannel);
    m_nRgb = HslToRgb(m_Hsl);
}

CColorRef CColorChooser::GetBasicColor(int nIndex)
{
    constexpr int c_Hues[c_nBasicColumns] = {0, 0, 30, 60, 120, 180, 220, 290};
    // As parts of one: no whole number of 255 is the half that pure colours have.
    constexpr double c_Lums[c_nBasicRows] = {0.85, 0.7, 0.5, 0.375, 0.25, 0.15};
    if (nIndex < 0 || nIndex >= c_nBasicColors)
        return 0;
    const int nColumn = nIndex % c_nBasicColumns;
    const int nRow = nIndex / c_nBasicColumns;
    if (nColumn == 0)
    {
        const auto nGrey = static_cast<uint32_t>(c_nMaxChannel - nRow * c_nMaxChannel / (c_nBasicRows - 1));
        return MakeColorRef(nGrey, nGrey, nGrey);
    }
    return FromParts(c_Hues[nColumn], 1.0, c_Lums[nRow]);
}

CRect CColorChooser::GetBasicRect(const CRect& rc, int nIndex)
{
    const int nColumn = nIndex % c_nBasicColumns;
    const int nRow = nIndex / c_nBasicColumns;
    const CRect rcCell{rc.left + rc.Width() * nColumn / c_nBasicColumns,
                       rc.top + rc.Height() * nRow / c_nBasicRows,
                       rc.left + rc.Width() * (nColumn + 1) / c_nBasicColumns,
                       rc.top + rc.Height() * (nRow + 1) / c_nBasicRows};
    return rcCell.Inset(c_nBasicGap);
}

int CColorChooser::HitBasic(const CRect& rc, CPoint pt)
{
    for (int i = 0; i < c_nBasicColors; ++i)
    {
        if (GetBasicRect(rc, i).Contains(pt))
            return i;
    }
    return -1;
}

bool CColorChooser::PressBasic(const CRect& rc, CPoint pt)
{
    const int nCell = HitBasic(rc, pt);
    if (nCell < 0)
        return false;
    m_nBasicFocus = nCell;
    PickBasicFocus();
    return true;
}

void CColorChooser::MoveBasicFocus(int nColumns, int nRows)
{
    const int nColumn = std::clamp(m_nBasicFocus % c_nBasicColumns + nColumns, 0, c_nBasicColumns - 1);
    const int nRow = std::clamp(m_nBasicFocus / c_nBasicColumns + nRows, 0, c_nBasicRows - 1);
    m_nBasicFocus = nRow * c_nBasicColumns + nColumn;
}

void CColorChooser::PickBasicFocus()
{
    SetRgb(GetBasicColor(m_nBasicFocus));
}

void CColorChooser::PointAtSquare(const CRect& rc, CPoint pt)
{
    const int nHue = Along(int64_t(pt.x) - rc.left, rc.Width(), c_nMaxHue);
    const int nSat = Along(int64_t(rc.bottom) - 1 - pt.y, rc.Height(), c_nMaxChannel);
    SetHsl(CHsl{nHue, nSat, m_Hsl.m_nLum});
}

void CColorChooser::PointAtBar(const CRect& rc, CPoint pt)
{
    SetHsl(
        CHsl{m_Hsl.m_nHue, m_Hsl.m_nSat, Along(int64_t(rc.bottom) - 1 - pt.y, rc.Height(), c_nMaxChannel)});
}

CPoint CColorChooser::GetSquareMark(const CRect& rc) const
{
    return CPoint{rc.left + PlaceOf(m_Hsl.m_nHue, c_nMaxHue, rc.Width()),
                  rc.bottom - 1 - PlaceOf(m_Hsl.m_nSat, c_nMaxChannel, rc.Height())};
}

int32_t CColorChooser::GetBarMark(const CRect& rc) const
{
    return rc.bottom - 1 - PlaceOf(m_Hsl.m_nLum, c_nMaxChannel, rc.Height());
}

void CColorChooser::PaintSquare(CGDISurface& surface)
{
    const int32_t nWidth = surface.GetWidth();
    const int32_t nHeight = surface.GetHeight();
    for (int32_t y = 0; y < nHeight; ++y)
    {
        const int nSat = Along(nHeight - 1 - y, nHeight, c_nMaxChannel);
        for (int32_t x = 0; x < nWidth; ++x)
            surface.SetPixel(x, y, HslToRgb(CHsl{Along(x, nWidth, c_nMaxHue), nSat, 128}));
    }
}

void CColorChooser::PaintBar(CGDISurface& surface) const
{
    const int32_t nHeight = surface.GetHeight();
    for (int32_t y = 0; y < nHeight; ++y)
    {
        const int nLum = Along(nHeight - 1 - y, nHeight, c_nMaxChannel);
        surface.FillRect(CRect{0, y, surface.GetWidth(), y + 1},
                         HslToRgb(CHsl{m_Hsl.m_nHue, m_Hsl.m_nSat, nLum}));
    }
}
