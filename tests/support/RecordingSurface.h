#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "platform/IDrawSurface.h"

// Keeps what is drawn as lines of text, in order:
//
//     fill 0,0 1000x300 #646464      line 200,0 200,300       polygon 195,295 205,295 200,300 #0000FF
//     raised 200,72 100x36           sunken -100,0 1220x36    ellipse 10,10 11x11 #FFFFFF
//     dotted 204,76 92x28            rect 0,0 5x5             text 200,72 100x36 Plume    text 3,10 0
//     label 203,72 94x36 Plume
//
// A line that is not one pixel wide adds its width and colour: "line 0,5 9,5 w2 #000000". Every character is six
// pixels wide and a line of text twelve high; a label that was shortened ends with "~".
class CRecordingSurface : public IDrawSurface
{
public:
    explicit CRecordingSurface(CRect rcBounds = CRect{0, 0, 1000, 300}) : m_rcBounds(rcBounds) {}

    void FillRect(const CRect& rc, CColorRef nColor) override { Add("fill " + Box(rc) + Color(nColor)); }
    void DrawLine(CPoint from, CPoint to, const CPenSpec& pen) override
    {
        const std::string sPen =
            pen.m_nWidth == 1 ? "" : " w" + std::to_string(pen.m_nWidth) + Color(pen.m_nColor);
        Add("line " + Spot(from) + " " + Spot(to) + sPen);
    }
    void DrawPolygon(const CPoint* pPoints, int nCount, const CPenSpec&, const CBrushSpec& brush) override
    {
        std::string sCall = "polygon";
        for (int i = 0; i < nCount; ++i)
            sCall += " " + Spot(pPoints[i]);
        Add(sCall + Color(brush.m_nColor));
    }
    void DrawEllipse(const CRect& rc, const CPenSpec&, const CBrushSpec& brush) override
    {
        Add("ellipse " + Box(rc) + Color(brush.m_nColor));
    }
    void DrawRectangle(const CRect& rc, const CPenSpec& pen, const CBrushSpec&) override
    {
        Add((pen.m_eStyle == EPenStyle::eDotted ? "dotted " : "rect ") + Box(rc));
    }
    void DrawRaisedFace(const CRect& rc) override { Add("raised " + Box(rc)); }
    void DrawSunkenFace(const CRect& rc) override { Add("sunken " + Box(rc)); }
    void DrawTextCentered(const CRect& rc, std::string_view sText, CColorRef) override
    {
        Add("text " + Box(rc) + " " + std::string(sText));
    }
    void DrawFaceLabel(const CRect&, const CRect& rc, std::string_view sText, CColorRef) override
    {
        const auto nRoom = size_t(rc.Width() / 6);
        const std::string sFull(sText);
        Add("label " + Box(rc) + " " + (sFull.size() <= nRoom ? sFull : sFull.substr(0, nRoom - 1) + "~"));
    }
    void DrawTextAt(CPoint pt, std::string_view sText, CColorRef) override
    {
        Add("text " + Spot(pt) + " " + std::string(sText));
    }
    int32_t TextWidth(std::string_view sText) const override { return int32_t(sText.size()) * 6; }
    int32_t TextHeight() const override { return 12; }
    CColorRef SystemColor(ESystemColor eColor) const override { return 0x010101u * (1u + unsigned(eColor)); }
    CRect Bounds() const override { return m_rcBounds; }

    // Those that begin so, in order.
    std::vector<std::string> Calls(const std::string& sStart) const
    {
        std::vector<std::string> calls;
        for (const std::string& sCall : m_Calls)
            if (sCall.compare(0, sStart.size(), sStart) == 0)
                calls.push_back(sCall);
        return calls;
    }

    std::vector<std::string> m_Calls;

private:
    void Add(const std::string& sCall) { m_Calls.push_back(sCall); }
    static std::string Spot(CPoint pt) { return std::to_string(pt.x) + "," + std::to_string(pt.y); }
    static std::string Box(const CRect& rc)
    {
        return Spot({rc.left, rc.top}) + " " + std::to_string(rc.Width()) + "x" + std::to_string(rc.Height());
    }
    static std::string Color(CColorRef nColor)
    {
        char szColor[16];
        std::snprintf(szColor, sizeof(szColor), " #%06X", unsigned(nColor));
        return szColor;
    }

    CRect m_rcBounds;
};
