#include "properties/CurveGround.h"

#include <algorithm>

#include "platform/ColorContrast.h"

namespace
{

constexpr CColorRef c_nWhite = MakeColorRef(255, 255, 255);
constexpr CColorRef c_nBlack = MakeColorRef(0, 0, 0);
constexpr CColorRef c_nZeroGreen = MakeColorRef(64, 127, 0);
// The same green for grounds on which it can't be seen. One of the three stands out from any.
constexpr CColorRef c_nDarkGreen = MakeColorRef(16, 48, 0);
constexpr CColorRef c_nLightGreen = MakeColorRef(200, 255, 140);
constexpr int32_t c_nWidePen = 2;

} // namespace

CCurveGround::CCurveGround(const CCurveView& view, const CEffectProperty& prop, int32_t nFirst, int32_t nEnd,
                           bool bContrast)
    : m_nFirst(nFirst)
{
    const CEffectPropertyDesc* pDesc = prop.GetDesc();
    if (!pDesc || pDesc->m_eType != ePropType_Color || prop.GetNumKeys() == 0)
        return;
    uint32_t nWalk = 0;
    for (int32_t x = nFirst; x < nEnd; ++x)
    {
        const uint32_t nRgb = EvaluateColor(prop, static_cast<float>(view.ColumnToTime(x)), &nWalk);
        const CColorRef nColor = MakeColorRef(nRgb >> 16, nRgb >> 8, nRgb);
        if (bContrast)
            m_Tones.push_back(!m_Columns.empty() && m_Columns.back() == nColor ? m_Tones.back()
                                                                               : ToneFor(nColor));
        m_Columns.push_back(nColor);
    }
}

CCurveGround::CTone CCurveGround::ToneFor(CColorRef nGround)
{
    // Black is the one that users know, so it stays as long as it is the better one. Against either of the two a
    // ground has a contrast of 4.5 at least.
    CTone tone{c_nBlack, c_nZeroGreen};
    if (ContrastRatio(c_nWhite, nGround) > ContrastRatio(c_nBlack, nGround))
        tone.m_nBlack = c_nWhite;
    if (ContrastRatio(c_nZeroGreen, nGround) < c_fMinContrast)
        tone.m_nZero = ContrastRatio(c_nLightGreen, nGround) > ContrastRatio(c_nDarkGreen, nGround)
                           ? c_nLightGreen
                           : c_nDarkGreen;
    return tone;
}

size_t CCurveGround::IndexOf(int32_t x) const
{
    const auto nLast = static_cast<int32_t>(m_Columns.size()) - 1;
    return static_cast<size_t>(std::clamp(x - m_nFirst, 0, nLast));
}

CColorRef CCurveGround::ColorAt(int32_t x) const
{
    return m_Columns.empty() ? c_nWhite : m_Columns[IndexOf(x)];
}

const CCurveGround::CTone& CCurveGround::ToneAt(int32_t x) const
{
    static constexpr CTone c_Plain = {c_nBlack, c_nZeroGreen};
    return m_Tones.empty() ? c_Plain : m_Tones[IndexOf(x)];
}

CPenSpec CCurveGround::CurvePen(int32_t x) const
{
    return CPenSpec{EPenStyle::eSolid, ToneAt(x).m_nBlack, c_nWidePen};
}

CPenSpec CCurveGround::ZeroPen(int32_t x) const
{
    return CPenSpec{EPenStyle::eSolid, ToneAt(x).m_nZero, c_nWidePen};
}

CPenSpec CCurveGround::ThinPen(int32_t x) const
{
    return CPenSpec{EPenStyle::eSolid, ToneAt(x).m_nBlack, 1};
}
