#pragma once

#include <string>

#include "platform/IDrawSurface.h"
#include "platform/IPrompts.h"
#include "properties/OwnUndo.h"
#include "qsmath.h"

// The two views of a direction.
enum class EVectorView
{
    eSide, // Z to the right, Y up
    eTop,  // X to the right, Z up
};

// Who shows the dialog.
class IVectorDialogView
{
public:
    virtual ~IVectorDialogView() = default;
    virtual void RepaintViews() = 0;
    virtual void ShowMagnitude() = 0;   // its text in the box
    virtual void SelectMagnitude() = 0; // focus to the box, all of its text selected
};

struct CVectorPreset
{
    const char* m_pszText;
    CVector3 m_vDirection;
};
inline constexpr CVectorPreset c_VectorPresets[] = {
    {"Up", {0, 1, 0}},    {"Down", {0, -1, 0}},   {"Left", {-1, 0, 0}},
    {"Right", {1, 0, 0}}, {"Forward", {0, 0, 1}}, {"Back", {0, 0, -1}},
};

struct CVectorState
{
    CVector3 m_vDirection;
    std::string m_sMagnitude;
    friend bool operator==(const CVectorState& left, const CVectorState& right)
    {
        return left.m_vDirection.x == right.m_vDirection.x && left.m_vDirection.y == right.m_vDirection.y &&
               left.m_vDirection.z == right.m_vDirection.z && left.m_sMagnitude == right.m_sMagnitude;
    }
};

// A vector as a unit direction, which is swung by dragging in one of two views, and a magnitude. Points and
// the views' rectangles are the dialog's. Feed OnMouseMove for every move, and OnLeftUp for the release and
// when the mouse is lost.
class CEditVectorDlg : public TOwnUndo<CVectorState>
{
public:
    static constexpr float c_fMinMagnitude = 0.001f;
    static constexpr float c_fMaxMagnitude = 1000.0f;

    // A vector without a length, or without a finite one, points up and has the magnitude 0, which OK
    // doesn't take.
    CEditVectorDlg(IPrompts& prompts, const CVector3& vValue);

    void SetView(IVectorDialogView* pView) { m_pView = pView; } // borrowed; null: nobody looks
    void OnInitDialog(const CRect& rcSide, const CRect& rcTop);

    // False, behind a message: the magnitude's text is no number, or none from c_fMinMagnitude to
    // c_fMaxMagnitude. The dialog stays open.
    bool OnOK();

    const std::string& GetMagnitudeText() const { return m_sMagnitude; }
    void SetMagnitudeText(const std::string& sText) { m_sMagnitude = sText; } // typed
    void OnPreset(int nItem); // the list chooses nothing afterwards, so that the same one works again
    // The preset behind or before the one that the direction is at; from any other direction the first or the last.
    // Stops at the ends.
    void OnStepPreset(bool bNext);

    void OnLeftDown(CPoint pt);
    void OnMouseMove(CPoint pt);
    void OnLeftUp() { m_bDragging = false; }
    bool IsDragging() const { return m_bDragging; }
    // The direction is again as it was before the drag, which is over. False: there was none.
    bool CancelDrag();

    // Paints one view on a surface on which it has the rectangle rc.
    void PaintView(IDrawSurface& surface, EVectorView eView, const CRect& rc) const;

    TVector3 m_vDirection; // of length 1
    CVector3 m_vResult;    // after OK
    float m_fMagnitude = 0.0f;

private:
    CVectorState GetState() const override { return {m_vDirection, m_sMagnitude}; }
    void SetState(const CVectorState& state) override;
    CPoint FromCentre(CPoint pt) const;
    void Repaint();

    IPrompts& m_Prompts;
    IVectorDialogView* m_pView = nullptr;
    std::string m_sMagnitude;
    CRect m_rcSide;
    CRect m_rcTop;
    bool m_bDragging = false;
    EVectorView m_eDragged = EVectorView::eSide;
    TVector3 m_vBeforeDrag;
    CPoint m_ptLast; // from the centre of the dragged view, y up
};
