#pragma once

#include <functional>
#include <utility>

#include "FakeTreeView.h"
#include "support/ScriptedPrompts.h"

// The control alone, over a tree whose root R holds a, b, the group G with c, d and the group H with e, and f;
// all is expanded. The parent writes down what it hears.
struct CTreeBench : ITreeParent
{
    explicit CTreeBench(const CTreeOptions& options = {}) : ctrl(tree, view, *this, prompts, options)
    {
        const HLibraryItem hRoot = tree.InsertGroup("R", {});
        for (const char* psz : {"a", "b"})
            tree.InsertLeaf(psz, hRoot, this);
        const HLibraryItem hG = tree.InsertGroup("G", hRoot);
        for (const char* psz : {"c", "d"})
            tree.InsertLeaf(psz, hG, this);
        tree.InsertLeaf("e", tree.InsertGroup("H", hG), this);
        tree.InsertLeaf("f", hRoot, this);
        view.m_pTree = &ctrl;
        ctrl.Expand(hRoot, true);
        ctrl.ExpandChildren(hRoot, true, true);
        log.clear();
    }
    ~CTreeBench() override { CheckTreeState(ctrl), view.CheckPainted(); }

    HLibraryItem item(const std::string& s) const { return FindItem(tree, s); }
    std::string sel() { return view.CheckPainted(), SelectionOf(ctrl); }
    void Select(const std::string& sItems) // the caret on the last one
    {
        ctrl.SelectOnly({});
        for (char c : sItems)
            ctrl.SetItemStateEx(item(std::string(1, c)), 3, 3);
        log.clear();
    }
    // Each gives the selection behind it.
    std::string Press(CPoint pt, CModifiers modifiers = {}) { return ctrl.OnLeftPress(pt, modifiers), sel(); }
    std::string Move(CPoint pt) { return ctrl.OnMove(pt, true), sel(); }
    // A window tells of the way to a release before it.
    std::string Release(CPoint pt) { return ctrl.OnMove(pt, true), ctrl.OnLeftRelease(), sel(); }
    std::string Click(CPoint pt, CModifiers modifiers = {}) { return Press(pt, modifiers), Release(pt); }
    std::string Click(const std::string& s, CModifiers modifiers = {})
    {
        return Click(view.Icon(item(s)), modifiers);
    }
    std::string Key(ETreeKey eKey, CModifiers modifiers = {})
    {
        view.m_hScrolled = {};
        const HLibraryItem hCaret = ctrl.GetCaret();
        EXPECT_TRUE(ctrl.OnKey({eKey, modifiers})) << "left to others";
        if (ctrl.GetCaret() != hCaret)
        {
            EXPECT_EQ(ctrl.GetCaret(), view.m_hScrolled);
        }
        return sel();
    }
    std::string Band(CPoint from, std::vector<CPoint> way, CModifiers modifiers = {})
    {
        ctrl.OnLeftPress(from, modifiers);
        for (CPoint pt : way)
            ctrl.OnMove(pt, true);
        return sel();
    }

    bool OnSelChanging(HLibraryItem h, bool bSelect) override
    {
        log += (bSelect ? " +" : " -") + tree.GetItemText(h);
        const bool bRefused = tree.GetItemText(h) == refused;
        if (onChanging)
            std::exchange(onChanging, nullptr)();
        return bRefused;
    }
    void OnSelChanged(HLibraryItem h, bool bSelect) override
    {
        EXPECT_EQ(bSelect, ctrl.IsSelected(h));
        log += "!";
    }
    void OnBeginDrag(HLibraryItem h, CPoint pt) override
    {
        log += " drag " + tree.GetItemText(h) + " " + std::to_string(pt.x) + "," + std::to_string(pt.y);
    }
    void OnClick() override { log += " click"; }
    void OnDoubleClick() override { log += " double"; }
    bool OnKeyDown(const CTreeKey&) override { return false; }
    bool OnBeginLabelEdit(HLibraryItem h) override { return !tree.GetParentItem(h); }
    void OnEndLabelEdit(const std::string& s) override
    {
        log += " named " + s;
        if (onNamed)
            std::exchange(onNamed, nullptr)();
    }
    void OnItemExpanding(HLibraryItem h, bool bExpand) override
    {
        EXPECT_NE(bExpand, ctrl.IsExpanded(h));
        log += (bExpand ? " open " : " close ") + tree.GetItemText(h);
    }

    TLibraryTree<CTreeBench> tree;
    CFakeTreeView view;
    CScriptedPrompts prompts;
    std::string log;
    std::string refused;                       // no bit of that item changes
    std::function<void()> onChanging, onNamed; // once
    CMultiSelectTreeCtrl ctrl;
};
