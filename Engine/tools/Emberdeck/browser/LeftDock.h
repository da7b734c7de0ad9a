#pragma once

#include <memory>

#include "app/DialogSizeCtrl.h"
#include "app/resources/DialogTemplates.h"
#include "browser/LibraryPanel.h"
#include "browser/SizeBar.h"

struct CDockSize
{
    int32_t m_nWidth = 0;
    int32_t m_nHeight = 0;
};

// What the dock asks of its window.
class IDockView : public IDialogControls
{
public:
    virtual CRect GetBarRect() const = 0;            // of the dock, in screen coordinates
    virtual CRect GetParentRect() const = 0;         // the frame's client area, in screen coordinates
    virtual void MoveBar(const CRect& rc) = 0;       // in coordinates of the frame's client area
    virtual void RecalcLayout() = 0;                 // of the frame, which asks CalcSize
    virtual void CreateSizeBar(const CRect& rc) = 0; // a visible child window
    virtual void MoveSizeBar(const CRect& rc) = 0;
    virtual void AddTab(const char* pszText) = 0;
    virtual CRect GetTabArea(const CRect& rcTabs) const = 0; // where the pages go within the tab control
    virtual void CreatePage(int32_t nTab) = 0;               // hidden
    virtual void MovePage(int32_t nTab, const CRect& rc) = 0;
    virtual void ShowPage(int32_t nTab, bool bShow) = 0;
};

// The bar at the frame's left with the pages of the effects and the prefabs: its sizes and its tabs, without
// its window. Sizes are pixels.
class CLeftDockBar
{
public:
    // All borrowed.
    CLeftDockBar(IDockView& view, CLibraryPanel& effectPanel, CLibraryPanel& prefabPanel, int32_t nDragX);

    // Once, after the bar's window was created at its template's size.
    void Initialize();
    // A size event of the bar, once it is initialised. Ends with a new layout of the frame.
    void OnSize();
    // The frame's layout asks for the bar's size: the template's until it is initialised, then the own width
    // by the height that the layout gives.
    CDockSize CalcSize(CDockSize layout, CDockSize fromTemplate) const;
    void OnSelChange(int32_t nTab); // the one that is shown: nothing

    // By so many pixels, no narrower than the size bar and no wider than the frame; in a frame that is
    // narrower than that the size bar stays whole.
    void ResizeBy(int32_t nDelta);
    void Collapse(); // to the width of the size bar
    void Expand();   // to the width before

    // As it was in another run, right after Initialize; a width of 0 is the template's.
    void Restore(int32_t nWidth, bool bFolded);
    // What it is wide when it isn't folded.
    int32_t GetUnfoldedWidth() const { return m_SizeBar.IsCollapsed() ? m_nSavedWidth : m_nWidth; }

    CSizeBar& SizeBar() { return m_SizeBar; }
    int32_t GetCurTab() const { return m_nCurTab; }
    int32_t GetWidth() const { return m_nWidth; }
    int32_t GetMinWidth() const { return m_nMinWidth; }

private:
    CRect ControlRect(uint32_t nID) const;
    void PlacePages();

    IDockView& m_View;
    bool m_bInitialised = false;
    DialogSizeCtrl m_SizeCtrl;
    CSizeBar m_SizeBar;
    int32_t m_nMinWidth = 0;
    int32_t m_nWidth = 0;
    int32_t m_nSavedWidth = 0; // while it is folded
    int32_t m_nCurTab = 0;
    CLibraryPanel* m_Pages[c_nDockTabs];
};
