#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/resources/Commands.h"
#include "app/resources/DialogIds.h"
#include "properties/CurvePainter.h"
#include "properties/EffectPropertyCtrls.h"
#include "properties/OwnUndo.h"

// Who shows the dialog. The row under the curve has a view of its own.
class ICurveDialogView
{
public:
    virtual ~ICurveDialogView() = default;
    virtual void RepaintCurve() = 0;
    virtual void OnButtonsChanged() = 0; // texts and states of buttons and list: look at all of them
    virtual void OnRowHidden() = 0;      // the focus, when it was there, goes to OK
};

struct CCurveControlState
{
    std::string m_sText; // empty: the template's
    bool m_bEnabled = true;
    bool m_bVisible = true;
    friend bool operator==(const CCurveControlState&, const CCurveControlState&) = default;
};

// The keys of a curve. Which are selected comes along, and makes no difference.
struct CCurveKeys
{
    std::vector<CPropKey> m_Keys;
    friend bool operator==(const CCurveKeys& left, const CCurveKeys& right);
};

// Edits a function curve: keys are added with the right button, picked and dragged with the left one, and
// given exact values and times below. Works on a copy, m_Prop, which the caller takes over after OK.
//
// A gesture is fed by events: OnLeftDown, OnMouseMove for every move, OnLeftUp for the release and when the
// mouse is lost. It holds flags and points, never an index. Points are the dialog's.
class CFunctionCurveDlg : public TOwnUndo<CCurveKeys>
{
public:
    // A null property is reported. Read-only: all may be looked at and selected, nothing changes.
    CFunctionCurveDlg(CPropertyServices& services, const CEffectProperty* pEditProp, bool bReadOnly);
    CFunctionCurveDlg(const CFunctionCurveDlg&) = delete;
    CFunctionCurveDlg& operator=(const CFunctionCurveDlg&) = delete;

    void SetView(ICurveDialogView* pView) { m_pView = pView; } // borrowed; null: nobody looks

    // The places of eCurve_Area, eCurve_RowLabel and eCurve_RowControls.
    void OnInitDialog(const CRect& rcCurve, const CRect& rcLabel, const CRect& rcControl,
                      const ITextMeasure* pFont);
    bool OnOK(); // brings m_Prop in line with its descriptor; always true

    void OnLeftDown(CPoint pt, bool bCtrl);
    void OnMouseMove(CPoint pt, bool bShift);
    void OnLeftUp();
    void OnRightUp(CPoint pt);
    bool IsDragging() const { return m_bDragging; } // the pointer is captured
    // The curve is again as it was before the drag, which is over. False: there was none.
    bool CancelDrag();
    // The keyboard's ways. Selects the key behind or before the selected ones, bAdd: beside them; the first one when
    // none is. Inserts a key halfway in time to the one behind the selected, to the one before it at the end, in the middle of
    // what is shown without a selection. It has the curve's value there on every axis, so that the curve keeps its
    // shape.
    void OnStepKey(bool bNext, bool bAdd);
    void OnInsertKey();
    bool IsReadOnly() const { return m_bReadOnly; }

    // A button or an accelerator; false: none of this dialog's.
    bool OnCommand(uint32_t nID);
    void OnAxisChange(int nItem); // the list's choice

    void OnAddKey(CPoint pt);
    void OnDeleteKeys(); // pinned ones merely lose their selection
    void SelectAll(bool bSelect);
    void OnBestFit();
    void OnCopy();
    void OnPaste();
    void OnTimeButton();
    void OnRangeButton(uint32_t nID); // eCurve_Start, eCurve_End, eCurve_YMin, eCurve_YMax

    // Its time can't change, and it can't be deleted.
    bool IsTimeLocked(uint32_t nIndex) const;

    void Paint(IDrawSurface* pSurface) const; // origin at the area's top left
    void SetPaintOptions(const CCurvePaintOptions& options) { m_PaintOptions = options; }
    const CCurveView& GetView() const { return m_View; }
    CEffectPropertyCtrls& GetRow() { return m_Ctrls; }
    CCurveControlState GetControl(uint32_t nID) const;
    const std::vector<std::string>& GetAxes() const { return m_Axes; } // empty: list and label are hidden

    CEffectProperty m_Prop;

private:
    struct CSelection
    {
        uint32_t m_nCount = 0;
        int m_nFirst = -1;
    };
    CCurveKeys GetState() const override;
    void SetState(const CCurveKeys& state) override;
    CSelection GetSelection() const;
    uint32_t Kind() const;
    bool IsRangeEditable() const;
    bool IsInArea(CPoint pt) const { return m_View.m_rc.Contains(pt); }
    void SetSelected(bool bSelected);
    void AddSelected(CPropKey& key);
    void PickKey(CPoint pt, bool bCtrl);
    void DragSelected(double fTime, double fValue);
    void ShowInRow(int nKey);
    void OnSelectionChanged();
    void OnRowChanged();
    bool AskNumber(const char* pszTitle, float& fValue);
    void Repaint();
    void ButtonsChanged();

    CPropertyServices& m_Services;
    ICurveDialogView* m_pView = nullptr;
    const bool m_bReadOnly;
    CCurveView m_View;
    CCurvePaintOptions m_PaintOptions;
    CEffectPropertyCtrls m_Ctrls; // the row under the curve
    std::vector<std::string> m_Axes;
    bool m_bDragging = false;    // the left button went down on a key
    bool m_bDragStarted = false; // and has moved far enough since
    CPoint m_ptLast;
    std::optional<CEffectProperty> m_BeforeDrag; // set while m_bDragging
    bool m_bUpdatingCtrls = false; // the row is being filled, and tells of nothing that the user did
    bool m_bRowShown = false;
};
