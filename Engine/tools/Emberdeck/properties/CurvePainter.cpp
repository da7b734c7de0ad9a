#include "properties/CurvePainter.h"

#include <algorithm>

#include "properties/CurveGround.h"
#include "qsassert.h"

namespace
{

constexpr CPenSpec c_DefaultPen = {EPenStyle::eSolid, MakeColorRef(0, 0, 0), 1};
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
    CCurvePainter(IDrawSurface& surface, const CCurveView& view, const CEffectProperty& prop,
                  const CCurvePaintOptions& options)
        : m_Surface(surface),
          m_View(view),
          m_Prop(prop),
          m_rcSeen(surface.Bounds()),
          m_nFirstColumn(std::max(m_rcSeen.left, 0)),
          m_nEndColumn(std::min(m_rcSeen.right, view.Width())),
          m_Options(options),
          m_Ground(view, prop, m_nFirstColumn, m_nEndColumn, options.m_bContrastPens)
    {
    }

    void Paint()
    {
        Background();
        if (m_Prop.GetNumKeys() == 0)
            return;
        if (m_Options.m_bScale)
            m_Scale = m_View.GetScale(m_Prop, m_Surface.TextHeight() * 2);
        ScaleLines();
        Hatching();
        ScaleTexts();
        const int32_t nZero = m_View.GetZeroLine();
        Line(CPoint{0, nZero}, CPoint{m_View.Width(), nZero}, &CCurveGround::ZeroPen);
        if (m_Prop.GetNumKeys() >= 2)
            Curve();
        Keys();
        m_Surface.DrawRectangle(CRect{0, 0, m_View.Width(), m_View.Height()}, c_DefaultPen, c_NoBrush);
    }

private:
    using PenFn = CPenSpec (CCurveGround::*)(int32_t) const;

    bool IsLinear() const { return m_Prop.GetDesc() && m_Prop.GetDesc()->m_bInterpolate; }

    CPoint PointOf(uint32_t nKey) const
    {
        const CPoint pt = m_View.KeyToPoint(m_Prop, *m_Prop.GetKey(nKey));
        return CPoint{pt.x - m_View.m_rc.left, pt.y - m_View.m_rc.top};
    }

    void Background()
    {
        if (m_Ground.IsEven())
        {
            m_Surface.FillRect(CRect{0, 0, m_View.Width(), m_View.Height()}, m_Ground.ColorAt(0));
            return;
        }
        // Columns of one colour are filled together.
        for (int32_t x = m_nFirstColumn; x < m_nEndColumn;)
        {
            const int32_t nStart = x;
            const CColorRef nColor = m_Ground.ColorAt(nStart);
            while (x < m_nEndColumn && m_Ground.ColorAt(x) == nColor)
                ++x;
            m_Surface.FillRect(CRect{nStart, 0, x, m_View.Height()}, nColor);
        }
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
            Line(from, CPoint{x, HeightAt(m_View.ColumnToTime(x), nKey)}, &CCurveGround::ThinPen);
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
                Line(from, corner, &CCurveGround::CurvePen);
                from = corner;
            }
            Line(from, to, &CCurveGround::CurvePen);
            from = to;
        }
        Line(from, CPoint{m_View.Width(), from.y}, &CCurveGround::CurvePen);
    }

    void Keys()
    {
        constexpr int32_t r = CCurveView::c_nKeyRadius;
        for (uint32_t i = 0; i < m_Prop.GetNumKeys(); ++i)
        {
            const CPoint pt = PointOf(i);
            const CRect rc{pt.x - r, pt.y - r, pt.x + r, pt.y + r};
            if (Overlaps(rc.Inset(-1), m_rcSeen))
                m_Surface.DrawEllipse(rc, m_Ground.ThinPen(pt.x),
                                      m_Prop.GetKey(i)->m_bSelected ? c_SelectedBrush : c_KeyBrush);
        }
    }

    // Dotted lines across.
    void ScaleLines()
    {
        constexpr int32_t c_nGap = 6;
        for (const CScaleMark& mark : m_Scale)
        {
            for (int32_t x = m_nFirstColumn / c_nGap * c_nGap; x < m_nEndColumn; x += c_nGap)
                Line(CPoint{x, mark.y}, CPoint{x + 1, mark.y}, &CCurveGround::ThinPen);
        }
    }

    // Beside the first key, on a bit of the ground; above their lines, for curves often run along a round value.
    void ScaleTexts()
    {
        constexpr int32_t c_nLeft = CCurveView::c_nKeyRadius + 5;
        constexpr int32_t c_nRoom = 2;
        const int32_t nHeight = m_Surface.TextHeight();
        for (const CScaleMark& mark : m_Scale)
        {
            const int32_t nTop = mark.y - nHeight - c_nRoom > 0 ? mark.y - nHeight - 1 : mark.y + 2;
            const int32_t nWidth = m_Surface.TextWidth(mark.m_sText);
            const CRect rc{c_nLeft, nTop, c_nLeft + nWidth + 2 * c_nRoom, nTop + nHeight};
            if (rc.bottom > m_View.Height() || !Overlaps(rc, m_rcSeen))
                continue;
            const int32_t nMiddle = (rc.left + rc.right) / 2;
            m_Surface.FillRect(rc, m_Ground.ColorAt(nMiddle));
            m_Surface.DrawTextAt(CPoint{rc.left + c_nRoom, rc.top}, mark.m_sText,
                                 m_Ground.ThinPen(nMiddle).m_nColor);
        }
    }

    bool IsSeen(CPoint from, CPoint to, int32_t nWidth) const
    {
        const CRect rc{std::min(from.x, to.x), std::min(from.y, to.y), std::max(from.x, to.x) + 1,
                       std::max(from.y, to.y) + 1};
        return from != to && Overlaps(rc.Inset(-nWidth), m_rcSeen);
    }

    // In pieces where the ground asks for several pens.
    void Line(CPoint from, CPoint to, PenFn pen)
    {
        if (!IsSeen(from, to, (m_Ground.*pen)(from.x).m_nWidth))
            return;
        if (!m_Options.m_bContrastPens || m_Ground.IsEven())
        {
            m_Surface.DrawLine(from, to, (m_Ground.*pen)(from.x));
            return;
        }
        if (from.x > to.x)
            std::swap(from, to);
        const auto at = [from, to](int32_t x)
        {
            const int64_t nRise = int64_t(to.y - from.y) * (x - from.x);
            return CPoint{x, from.y + static_cast<int32_t>(nRise / (to.x - from.x))};
        };
        CPoint start = from;
        CPenSpec now = (m_Ground.*pen)(start.x);
        for (int32_t x = std::max(from.x, m_nFirstColumn) + 1; x < std::min(to.x, m_nEndColumn); ++x)
        {
            const CPenSpec next = (m_Ground.*pen)(x);
            if (next == now)
                continue;
            m_Surface.DrawLine(start, at(x), now);
            start = at(x);
            now = next;
        }
        m_Surface.DrawLine(start, to, now);
    }

    IDrawSurface& m_Surface;
    const CCurveView& m_View;
    const CEffectProperty& m_Prop;
    const CRect m_rcSeen;
    const int32_t m_nFirstColumn; // those in view: from the first to before the end
    const int32_t m_nEndColumn;
    const CCurvePaintOptions& m_Options;
    const CCurveGround m_Ground;
    std::vector<CScaleMark> m_Scale;
};

} // namespace

void PaintCurve(IDrawSurface* pSurface, const CCurveView& view, const CEffectProperty& prop,
                const CCurvePaintOptions& options)
{
    QS_ASSERT_TEXT(pSurface, "m_pCurveDC", "Error: Invalid call to DrawFunctionCurveBackground");
    if (pSurface)
        CCurvePainter(*pSurface, view, prop, options).Paint();
}
