#include "properties/CurveView.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "model/PropKinds.h"
#include "qsnumber.h"

namespace
{

double FiniteOrZero(double fValue)
{
    return std::isfinite(fValue) ? fValue : 0.0;
}

int32_t ToPixels(double fPixels)
{
    return static_cast<int32_t>(
        std::clamp(FiniteOrZero(fPixels), -CCurveView::c_fMaxPixel, CCurveView::c_fMaxPixel));
}

float ToFloat(double fValue)
{
    return static_cast<float>(std::clamp(fValue, -double(FLT_MAX), double(FLT_MAX)));
}

} // namespace

CCurveView::CRange CCurveView::Widened(float fFrom, float fTo, double fMargin)
{
    const CRange range{FiniteOrZero(fFrom), FiniteOrZero(fTo)};
    if (range.Size() != 0.0)
        return range;
    // Beside a very large value the margin vanishes.
    const double fRoom = std::max(fMargin, std::abs(range.m_fFrom) * 1e-13);
    return CRange{range.m_fFrom - fRoom, range.m_fTo + fRoom};
}

CCurveView::CRange CCurveView::Times() const
{
    return Widened(m_fStartTime, m_fEndTime, 0.05);
}

CCurveView::CRange CCurveView::Values() const
{
    return Widened(m_fYMin, m_fYMax, 10.0);
}

double CCurveView::XToTime(int32_t x) const
{
    return std::clamp(ColumnToTime(x - m_rc.left), 0.0, 1.0);
}

double CCurveView::ColumnToTime(int32_t x) const
{
    const CRange times = Times();
    return Width() > 0 ? times.m_fFrom + times.Size() * x / Width() : times.m_fFrom;
}

double CCurveView::YToValue(int32_t y) const
{
    const CRange values = Values();
    return Height() > 0 ? values.m_fFrom + (m_rc.bottom - y) * values.Size() / Height() : values.m_fFrom;
}

CPoint CCurveView::KeyToPoint(const CEffectProperty& prop, const CPropKey& key) const
{
    const CRange times = Times();
    const CRange values = Values();
    const double fValue = FiniteOrZero(GetAxisValue(prop, key, m_nAxis));
    const double x = Width() * (FiniteOrZero(key.m_fTime) - times.m_fFrom) / times.Size();
    const double y = (fValue - values.m_fFrom) * Height() / values.Size();
    return CPoint{m_rc.left + ToPixels(x), m_rc.bottom - ToPixels(y)};
}

int32_t CCurveView::GetZeroLine() const
{
    const CRange values = Values();
    return Height() + ToPixels(Height() * values.m_fFrom / values.Size());
}

int CCurveView::HitTest(const CEffectProperty& prop, CPoint pt) const
{
    constexpr int64_t c_nReach = int64_t(c_nKeyRadius) * c_nKeyRadius;
    for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
    {
        const CPoint ptKey = KeyToPoint(prop, *prop.GetKey(i));
        const int64_t dx = int64_t(ptKey.x) - pt.x;
        const int64_t dy = int64_t(ptKey.y) - pt.y;
        if (dx * dx + dy * dy <= c_nReach)
            return static_cast<int>(i);
    }
    return -1;
}

std::vector<CScaleMark> CCurveView::GetScale(const CEffectProperty& prop, int32_t nMinGap) const
{
    std::vector<CScaleMark> marks;
    const uint32_t eType = prop.GetDesc() ? prop.GetDesc()->m_eType : uint32_t(ePropType_None);
    const CRange values = Values();
    constexpr double c_fMost = 1e6;
    if (PropKind(eType).m_nAxes == 0 || Height() <= 0 || std::abs(values.m_fFrom) > c_fMost ||
        std::abs(values.m_fTo) > c_fMost)
        return marks;
    // The smallest of 1, 2, 5, 10... that leaves the gap.
    const double fLeast =
        std::max(values.Size() * std::max(nMinGap, 1) / Height(), eType == ePropType_Int ? 1.0 : 1e-4);
    const int nPower = static_cast<int>(std::floor(std::log10(fLeast)));
    const double fTen = std::pow(10.0, nPower);
    double fStep = 10.0 * fTen;
    for (const double fFactor : {5.0, 2.0, 1.0})
        fStep = fFactor * fTen >= fLeast * (1.0 - 1e-9) ? fFactor * fTen : fStep;
    const bool bColor = eType == ePropType_Color; // no channel lies outside
    const double fFrom = bColor ? std::max(values.m_fFrom, 0.0) : values.m_fFrom;
    const double fTo = bColor ? std::min(values.m_fTo, 1.0) : values.m_fTo;
    const int nDecimals = fStep < 1.0 ? std::max(-nPower - (fStep > 7.0 * fTen ? 1 : 0), 0) : 0;
    for (auto i = static_cast<int64_t>(std::ceil(fFrom / fStep - 1e-6));
         double(i) * fStep <= fTo + fStep * 1e-6; ++i)
    {
        const double fValue = double(i) * fStep;
        marks.push_back(
            CScaleMark{QSFixedText(fValue, nDecimals),
                       Height() - ToPixels((fValue - values.m_fFrom) * Height() / values.Size())});
    }
    return marks;
}

void CCurveView::BestFit(const CEffectProperty& prop)
{
    m_fStartTime = 0.0f;
    m_fEndTime = 1.0f;
    const uint32_t eType = prop.GetDesc() ? prop.GetDesc()->m_eType : uint32_t(ePropType_None);
    switch (eType)
    {
    case ePropType_UI:
        return;
    case ePropType_Color:
        m_fYMin = -0.1f;
        m_fYMax = 1.1f;
        return;
    case ePropType_Int:
    case ePropType_Float:
    case ePropType_Vector:
        break;
    default: // texts, and what has no value: points on the zero line
        m_fYMin = -0.5f;
        m_fYMax = 0.5f;
        return;
    }
    if (prop.GetNumKeys() == 0)
    {
        m_fYMin = 0.0f;
        m_fYMax = 1.0f;
        return;
    }
    double fMin = 0.0;
    double fMax = 0.0;
    for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
    {
        const double fValue = FiniteOrZero(GetAxisValue(prop, *prop.GetKey(i), m_nAxis));
        fMin = i == 0 ? fValue : std::min(fMin, fValue);
        fMax = i == 0 ? fValue : std::max(fMax, fValue);
    }
    const double fMargin = fMax - fMin > 0.01 ? (fMax - fMin) * 0.05 : 10.0;
    m_fYMin = ToFloat(fMin - fMargin);
    m_fYMax = ToFloat(fMax + fMargin);
}
