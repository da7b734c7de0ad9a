#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/FunctionCurve.h"
#include "platform/IDrawSurface.h"

// A round value of the scale.
struct CScaleMark
{
    std::string m_sText;
    int32_t y; // in pixels of the area
};

// The part of a curve that is on show, and the way between pixels and values. Pixels are those of the
// dialog, m_rc among them. All arithmetic is in double and truncates; results are cut to c_nMaxPixel.
// A range of no size counts as a small one about its value, so that nothing is divided by zero, while the
// stored numbers stay as they were entered.
class CCurveView
{
public:
    static constexpr double c_fMaxPixel = 32000.0;
    static constexpr int32_t c_nKeyRadius = 10;

    double XToTime(int32_t x) const;  // 0 to 1
    double YToValue(int32_t y) const; // no limit
    CPoint KeyToPoint(const CEffectProperty& prop, const CPropKey& key) const;
    // The first key by index within c_nKeyRadius of the pointer; -1: none.
    int HitTest(const CEffectProperty& prop, CPoint pt) const;

    // For painting, in pixels of the area itself.
    double ColumnToTime(int32_t x) const; // no limit
    int32_t GetZeroLine() const;
    int32_t Width() const { return m_rc.Width() > 0 ? m_rc.Width() : 0; }
    int32_t Height() const { return m_rc.Height() > 0 ? m_rc.Height() : 0; }

    // Round values from low to high, at least nMinGap pixels apart; whole ones for an Int, those from 0 to 1 for a
    // colour. None for texts, nor beside a range beyond a million, whose values would be long.
    std::vector<CScaleMark> GetScale(const CEffectProperty& prop, int32_t nMinGap) const;

    // The whole time, and the range of the values on the present axis with some room about it; a fixed
    // range for colours and texts.
    void BestFit(const CEffectProperty& prop);

    CRect m_rc;
    int m_nAxis = 0;
    float m_fStartTime = 0.0f;
    float m_fEndTime = 1.0f;
    float m_fYMin = -0.2f;
    float m_fYMax = 1.2f;

private:
    struct CRange
    {
        double m_fFrom;
        double m_fTo;
        double Size() const { return m_fTo - m_fFrom; }
    };
    static CRange Widened(float fFrom, float fTo, double fMargin);
    CRange Times() const;
    CRange Values() const;
};
