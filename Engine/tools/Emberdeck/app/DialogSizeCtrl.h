#pragma once

#include <cstdint>
#include <vector>

#include "platform/IDrawSurface.h"

// A dialog as far as the placing of its controls goes.
class IDialogControls
{
public:
    virtual ~IDialogControls() = default;
    virtual CRect GetClientRect() const = 0;
    // In client coordinates. False: the dialog has no such control (any more).
    virtual bool GetControlRect(uint32_t nID, CRect& rc) const = 0;
    // Moves a control and repaints it. One whose rectangle has no area isn't seen.
    virtual void MoveControl(uint32_t nID, const CRect& rc) = 0;
};

// Keeps the controls of a dialog in place when it changes size. An anchor tells what an edge keeps its
// distance from:
//    0  the dialog's edge on the same side     1  the edge on the opposite side     2  the centre
// So four zeros stretch a control with the dialog, and left 1 with the rest 0 carries it along the
// right edge.
class DialogSizeCtrl
{
public:
    // Both keep the present rectangles as the reference, so they are called at the template's size.
    bool Initialize(IDialogControls* pParent); // not owned
    bool AddControl(uint32_t nID, int8_t nLeft, int8_t nTop, int8_t nRight, int8_t nBottom);

    // The owner calls it when the dialog has changed size. Positions come from the reference, never
    // from where a control is now, so no rounding adds up.
    void OnParentSize();

private:
    struct CItem
    {
        uint32_t m_nID;
        int8_t m_nLeft;
        int8_t m_nTop;
        int8_t m_nRight;
        int8_t m_nBottom;
        CRect m_rcInitial;
    };

    IDialogControls* m_pParent = nullptr;
    CRect m_rcInitial;
    std::vector<CItem> m_Items;
};
