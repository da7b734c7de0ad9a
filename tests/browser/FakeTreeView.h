#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "browser/MultiSelectTreeCtrl.h"

// A tree window on paper: rows of 20 pixels from the top, 16 for each level, the button, an icon of 16, and
// 8 for each byte of the label.
class CFakeTreeView : public ITreeView
{
public:
    static constexpr int32_t c_nRow = 20;

    CTreeHit HitTest(CPoint pt) const override
    {
        HLibraryItem h = m_pTree->Tree().GetRootItem();
        for (int32_t y = m_nTop; h && pt.y >= y + c_nRow; y += c_nRow)
            h = m_pTree->NextVisible(h);
        if (!h || pt.y < m_nTop || pt.x < 0)
            return {};
        const CRect rc = GetLabelRect(h);
        uint32_t nFlags = eHit_Right;
        if (pt.x < rc.left - 32)
            nFlags = eHit_Indent;
        else if (pt.x < rc.left - 16)
            nFlags = m_pTree->Tree().HasChildren(h) ? eHit_Button : eHit_Indent;
        else if (pt.x < rc.left)
            nFlags = eHit_Icon;
        else if (pt.x < rc.right)
            nFlags = eHit_Label;
        return {h, nFlags | m_nExtraHit};
    }
    CTreeRows GetRows() const override { return {m_nTop, c_nRow, 4}; }
    CRect GetLabelRect(HLibraryItem hItem) const override
    {
        int32_t nLeft = 32, nTop = m_nTop;
        for (HLibraryItem h = m_pTree->Tree().GetParentItem(hItem); h; h = m_pTree->Tree().GetParentItem(h))
            nLeft += 16;
        for (HLibraryItem h = m_pTree->PrevVisible(hItem); h; h = m_pTree->PrevVisible(h))
            nTop += c_nRow;
        const int32_t nWidth = 8 * int32_t(m_pTree->Tree().GetItemText(hItem).size());
        return {nLeft, nTop, nLeft + nWidth, nTop + c_nRow};
    }
    CRect GetClientRect() const override { return {0, 0, 400, 400}; }

    void TreeChanged(CLibraryTree::EChange, HLibraryItem) override { m_bStale = true; }
    void ItemExpanded(HLibraryItem hItem, bool bExpanded) override
    {
        EXPECT_EQ(bExpanded, m_pTree->IsExpanded(hItem));
        m_bStale = true;
    }
    void CaretChanged(HLibraryItem hItem) override { m_hCaret = hItem; }
    void ScrollTo(HLibraryItem hItem) override
    {
        EXPECT_TRUE(m_pTree->IsVisible(hItem));
        m_hScrolled = hItem;
    }
    void Invalidate() override { m_bStale = true; }
    void UpdateNow() override { CheckPainted(); }
    void ShowBand(const CRect& rc) override { m_Band = rc; }
    void HideBand() override { m_Band.reset(); }

    void TakeFocus() override
    {
        m_bFocus = true;
        if (m_bEditBox)
            m_pTree->EndEdit(); // as a box does when it loses the focus
    }
    bool IsLeftButtonDown() const override { return m_bButton; }
    void SetDragCursor(EDragCursor eCursor) override { m_eCursor = eCursor; }
    void StartEditTimer() override { m_bTimer = true; }
    void OpenEditBox(HLibraryItem hItem, const std::string& sText) override
    {
        EXPECT_EQ(m_hScrolled, hItem);
        m_sBox = sText;
        m_bEditBox = true;
    }
    std::string CloseEditBox() override
    {
        EXPECT_TRUE(m_bEditBox);
        m_bEditBox = false;
        return m_sBox;
    }
    std::unique_ptr<IFindDialog> OpenFindDialog() override { return std::make_unique<CDialog>(*this); }

    struct CDialog : IFindDialog
    {
        explicit CDialog(CFakeTreeView& view) : m_View(view) { ++m_View.m_nDialogs; }
        ~CDialog() override { --m_View.m_nDialogs; }
        void Raise() override { ++m_View.m_nRaised; }
        void SetVisible(bool bVisible) override { m_View.m_bDialogShown = bVisible; }
        void AskOver(const std::function<void()>& work) override { work(); }
        CFakeTreeView& m_View;
    };

    CPoint Label(HLibraryItem h) const { return At(h, 2); }
    CPoint Icon(HLibraryItem h) const { return At(h, -8); }
    CPoint Button(HLibraryItem h) const { return At(h, -24); }
    CPoint Right(HLibraryItem h) const { return {300, At(h, 0).y}; }
    CPoint At(HLibraryItem h, int32_t x) const
    {
        const CRect rc = GetLabelRect(h);
        return {rc.left + x, rc.top + 10};
    }

    // Whatever has changed since the last time was told: nothing is left on the screen as it was.
    void CheckPainted()
    {
        std::vector<uint32_t> states;
        for (HLibraryItem h = m_pTree->Tree().GetRootItem(); h; h = m_pTree->NextVisible(h))
            states.push_back(m_pTree->GetItemStateEx(h, ~uint32_t(eState_Focused)));
        EXPECT_TRUE(states == m_Painted || m_bStale) << "changed without a word to the view";
        EXPECT_EQ(m_pTree->GetCaret(), m_hCaret);
        m_Painted = states;
        m_bStale = false;
    }

    CMultiSelectTreeCtrl* m_pTree = nullptr;
    std::vector<uint32_t> m_Painted;
    HLibraryItem m_hCaret;
    bool m_bStale = false;
    uint32_t m_nExtraHit = 0;
    int32_t m_nTop = 0;
    bool m_bFocus = true, m_bButton = true, m_bTimer = false;
    std::optional<CRect> m_Band;
    EDragCursor m_eCursor = EDragCursor::eNone;
    bool m_bEditBox = false;
    std::string m_sBox; // what stands in the edit box
    HLibraryItem m_hScrolled;
    int m_nDialogs = 0, m_nRaised = 0;
    bool m_bDialogShown = true;
};

inline HLibraryItem FindItem(const CLibraryTree& tree, const std::string& sText)
{
    for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextItem(h))
        if (tree.GetItemText(h) == sText)
            return h;
    ADD_FAILURE() << "no item " << sText;
    return {};
}

// "A B": the selected items in visible order, the caret in brackets; "[C]" at the end when only the caret.
inline std::string SelectionOf(const CMultiSelectTreeCtrl& ctrl)
{
    std::string sText;
    for (HLibraryItem h = ctrl.Tree().GetRootItem(); h; h = ctrl.NextVisible(h))
    {
        const bool bCaret = h == ctrl.GetCaret();
        const std::string sMark = ctrl.IsSelected(h) ? "" : "-"; // the caret, not selected
        if (bCaret || ctrl.IsSelected(h))
            sText += (sText.empty() ? "" : " ") +
                     (bCaret ? "[" + sMark + ctrl.Tree().GetItemText(h) + "]" : ctrl.Tree().GetItemText(h));
    }
    return sText;
}

// What holds after every operation.
inline void CheckTreeState(const CMultiSelectTreeCtrl& ctrl)
{
    uint32_t nSelected = 0;
    const CLibraryTree& tree = ctrl.Tree();
    for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextItem(h))
    {
        nSelected += ctrl.IsSelected(h);
        if (ctrl.IsSelected(h) || h == ctrl.GetCaret())
        {
            EXPECT_TRUE(ctrl.IsVisible(h)) << tree.GetItemText(h);
        }
        if (ctrl.IsExpanded(h))
        {
            EXPECT_TRUE(tree.HasChildren(h) && ctrl.IsVisible(h)) << tree.GetItemText(h);
        }
        EXPECT_EQ(0u, ctrl.GetItemStateEx(h, eState_DropHilited)) << tree.GetItemText(h);
    }
    EXPECT_EQ(nSelected, ctrl.GetSelectedCount());
    std::vector<HLibraryItem> list;
    ctrl.GetSelectedItems(list);
    EXPECT_EQ(nSelected, list.size());
    EXPECT_TRUE(!ctrl.GetCaret() || tree.IsAlive(ctrl.GetCaret()));
}

constexpr CModifiers c_Plain{};
constexpr CModifiers c_Ctrl{true, false};
constexpr CModifiers c_Shift{false, true};
constexpr CModifiers c_CtrlShift{true, true};
