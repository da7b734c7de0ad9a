#include "properties/CurvePainter.h"

#include <algorithm>

#include "qsassert.h"

namespace
{

constexpr CColorRef c_nWhite = MakeColorRef(255, 255, 255);
constexpr CColorRef c_nBlack = MakeColorRef(0, 0, 0);
constexpr CPenSpec c_DefaultPen = {EPenStyle::eSolid, c_nBlack, 1};
constexpr CPenSpec c_ZeroPen = {EPenStyle::eSolid, MakeColorRef(64, 127, 0), 2};
constexpr CPenSpec c_CurvePen = {EPenStyle::eSolid, c_nBlack, 2};
constexpr CBrushSpec c_SelectedBrush = {EBrushStyle::eSolid, MakeColorRef(255, 0, 0)};
constexpr CBrushSpec c_KeyBrush = {EBrushStyle::eSolid, MakeColorRef(0, 255, 255)};
constexpr CBrushSpec c_NoBrush = {EBrushStyle::eNone, 0};

bool Overlaps(const CRect& a, const CRect& b)
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

class CCurvePainter
{
public:
    CCurvePainter(IDrawSurface& surface, const CCurveView& view, const CEffectProperty& prop)
        : m_Surface(surface),
          m_View(view),
          m_Prop(prop),
          m_rcSeen(surface.Bounds()),
          m_nFirstColumn(std::max(m_rcSeen.left, 0)),
          m_nEndColumn(std::min(m_rcSeen.right, view.Width()))
    {
    }

    void Paint()
    {
        Background();
        if (m_Prop.GetNumKeys() == 0)
            return;
        Hatching();
        const int32_t nZero = m_View.GetZeroLine();
        Line(CPoint{0, nZero}, CPoint{m_View.Width(), nZero}, c_ZeroPen);
        if (m_Prop.GetNumKeys() >= 2)
            Curve();
        Keys();
        m_Surface.DrawRectangle(CRect{0, 0, m_View.Width(), m_View.Height()}, c_DefaultPen, c_NoBrush);
    }

private:
    bool IsColor() const { return m_Prop.GetDesc() && m_Prop.GetDesc()->m_eType == ePropType_Color; }
    bool IsLinear() const { return m_Prop.GetDesc() && m_Prop.GetDesc()->m_bInterpolate; }

    CPoint PointOf(uint32_t nKey) const
    {
        const CPoint pt = m_View.KeyToPoint(m_Prop, *m_Prop.GetKey(nKey));
        return CPoint{pt.x - m_View.m_rc.left, pt.y - m_View.m_rc.top};
    }

    void Background()
    {
        if (!IsColor() || m_Prop.GetNumKeys() == 0)
        {
            m_Surface.FillRect(CRect{0, 0, m_View.Width(), m_View.Height()}, c_nWhite);
            return;
        }
        // Columns of one colour are filled together.
        uint32_t nWalk = 0;
        int32_t nStart = m_nFirstColumn;
        CColorRef nRun = 0;
        for (int32_t x = m_nFirstColumn; x < m_nEndColumn; ++x)
        {
            const uint32_t nRgb = EvaluateColor(m_Prop, static_cast<float>(m_View.ColumnToTime(x)), &nWalk);
            const CColorRef nColor = MakeColorRef(nRgb >> 16, nRgb >> 8, nRgb);
            if (x > nStart && nColor != nRun)
            {
                m_Surface.FillRect(CRect{nStart, 0, x, m_View.Height()}, nRun);
                nStart = x;
            }
            nRun = nColor;
        }
        if (m_nEndColumn > nStart)
            m_Surface.FillRect(CRect{nStart, 0, m_nEndColumn, m_View.Height()}, nRun);
    }

    // Every fourth column from 1 on, from the zero line to the curve.
    void Hatching()
    {
        constexpr int32_t c_nStep = 4;
        const int32_t nZero = m_View.GetZeroLine();
        const int32_t nSkipped = std::max(m_nFirstColumn - 1 + c_nStep - 1, 0) / c_nStep;
        uint32_t nKey = 1;
        for (int32_t x = 1 + nSkipped * c_nStep; x < m_nEndColumn; x += c_nStep)
        {
            const CPoint from{x, nZero};
            Line(from, CPoint{x, HeightAt(m_View.ColumnToTime(x), nKey)}, c_DefaultPen);
        }
    }

    // nKey is where the walk stands: columns come in order, so the keys are walked over once. The walk goes
    // by index, and so finds a key also while they are out of order.
    int32_t HeightAt(double fTime, uint32_t& nKey) const
    {
        const uint32_t nLast = m_Prop.GetNumKeys() - 1;
        if (!(fTime > double(m_Prop.GetKey(0)->m_fTime)))
            return PointOf(0).y;
        if (!(fTime < double(m_Prop.GetKey(nLast)->m_fTime)))
            return PointOf(nLast).y;
        while (nKey < nLast && double(m_Prop.GetKey(nKey)->m_fTime) < fTime)
            ++nKey;
        const int32_t y0 = PointOf(nKey - 1).y;
        if (!IsLinear())
            return y0;
        const double fBefore = m_Prop.GetKey(nKey - 1)->m_fTime;
        const double u = (fTime - fBefore) / (double(m_Prop.GetKey(nKey)->m_fTime) - fBefore);
        return static_cast<int32_t>((1.0 - u) * y0 + u * PointOf(nKey).y);
    }

    void Curve()
    {
        const bool bLinear = IsLinear();
        CPoint from = PointOf(0);
        for (uint32_t i = 1; i < m_Prop.GetNumKeys(); ++i)
        {
            const CPoint to = PointOf(i);
            if (!bLinear)
            {
                const CPoint corner{to.x, from.y};
                Line(from, corner, c_CurvePen);
                from = corner;
            }
            Line(from, to, c_CurvePen);
            from = to;
        }
        Line(from, CPoint{m_View.Width(), from.y}, c_CurvePen);
    }

    void Keys()
    {
        constexpr int32_t r = CCurveView::c_nKeyRadius;
        for (uint32_t i = 0; i < m_Prop.GetNumKeys(); ++i)
        {
            const CPoint pt = PointOf(i);
            const CRect rc{pt.x - r, pt.y - r, pt.x + r, pt.y + r};
            if (Overlaps(rc.Inset(-1), m_rcSeen))
                m_Surface.DrawEllipse(rc, c_DefaultPen,
                                      m_Prop.GetKey(i)->m_bSelected ? c_SelectedBrush : c_KeyBrush);
        }
    }

    void Line(CPoint from, CPoint to, const CPenSpec& pen)
    {
        const CRect rc{std::min(from.x, to.x), std::min(from.y, to.y), std::max(from.x, to.x) + 1,
                       std::max(from.y, to.y) + 1};
        if (from != to && Overlaps(rc.Inset(-pen.m_nWidth), m_rcSeen))
            m_Surface.DrawLine(from, to, pen);
    }

    IDrawSurface& m_Surface;
    const CCurveView& m_View;
    const CEffectProperty& m_Prop;
    const CRect m_rcSeen;
    const int32_t m_nFirstColumn; // those in view: from the first to before the end
    const int32_t m_nEndColumn;
};

} // namespace

void PaintCurve(IDrawSurface* pSurface, const CCurveView& view, const CEffectProperty& prop)
{
    QS_ASSERT_TEXT(pSurface, "m_pCurveDC", "Error: Invalid call to DrawFunctionCurveBackground");
    if (pSurface)
        CCurvePainter(*pSurface, view, prop).Paint();
}
