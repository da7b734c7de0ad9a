#pragma once

#include <vector>

#include "properties/CurveView.h"

// What a curve is painted on: white, or for a curve of colours these themselves, column by column; and with which pens
// it can be seen there. Columns are pixels of the area.
class CCurveGround
{
public:
    // For the columns from nFirst to before nEnd; beyond them the ground counts as that of the nearest one.
    // bContrast: pens that can't be seen give way to others, else all stay as they are.
    CCurveGround(const CCurveView& view, const CEffectProperty& prop, int32_t nFirst, int32_t nEnd,
                 bool bContrast);

    CColorRef ColorAt(int32_t x) const;
    bool IsEven() const { return m_Columns.empty(); } // white all over

    CPenSpec CurvePen(int32_t x) const; // also of the hatching and outlines, with another width
    CPenSpec ZeroPen(int32_t x) const;
    CPenSpec ThinPen(int32_t x) const;

    static constexpr double c_fMinContrast = 3.0; // of a pen to its ground

private:
    struct CTone
    {
        CColorRef m_nBlack; // black, or white where that can't be seen
        CColorRef m_nZero;
    };
    static CTone ToneFor(CColorRef nGround);
    const CTone& ToneAt(int32_t x) const;
    size_t IndexOf(int32_t x) const;

    int32_t m_nFirst;
    std::vector<CColorRef> m_Columns;
    std::vector<CTone> m_Tones; // empty: the plain pens
};
