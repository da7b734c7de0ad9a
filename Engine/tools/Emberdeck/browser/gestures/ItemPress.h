#pragma once

#include "browser/gestures/TreeGesture.h"

// A press on an item: a click, or the begin of a drag of the selection. Shift extends the selection from its anchor,
// with Ctrl the range is all of it. Ctrl toggles the item, at the release. A plain press on a selected item keeps
// the others until the release, so that all of them can be dragged.
class CItemPress : public CTreeGesture
{
public:
    CItemPress(const CTreeGestureContext& context, HLibraryItem hItem, CPoint ptPress, CModifiers modifiers);

    bool Move(CPoint pt) override { return IsBeyond(pt, m_ptPress, m_Context.m_ptDragLimit); }
    void End(EEnd eEnd) override; // lost, or by Esc: as the press has left it
    bool EndsWith(HLibraryItem hItem) const override
    {
        return m_Context.m_Selection.Tree().IsAncestor(hItem, m_hItem);
    }

protected:
    CItemPress(const CTreeGestureContext& context, HLibraryItem hItem, CPoint ptPress);
    virtual void Click();

    const CTreeGestureContext m_Context;
    const HLibraryItem m_hItem;

private:
    void Drag();

    const CPoint m_ptPress;
    const CModifiers m_Modifiers;
};

// A plain press on the label of the only selected item, which is the caret: a click edits it.
class CLabelPress : public CItemPress
{
public:
    CLabelPress(const CTreeGestureContext& context, HLibraryItem hItem, CPoint ptPress)
        : CItemPress(context, hItem, ptPress)
    {
    }

private:
    void Click() override { m_Context.m_LabelEdit.BeginLater(m_hItem); }
};
