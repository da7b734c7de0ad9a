#pragma once

#include <map>

#include "app/resources/Bars.h"
#include "shell/ShellSurface.h"

// How a button stands at the moment.
struct CToolItemState
{
    bool m_bDisabled = false;
    bool m_bPressed = false;
    bool m_bHot = false; // the mouse is over it
};

enum class EBarSide
{
    eTop,
    eBottom,
    eLeft,
    eRight,
    eFloating
};

// One toolbar: its buttons, its images, and how they are painted.
class CKRToolbar
{
public:
    // The table outlives the toolbar.
    CKRToolbar(const CToolbarTable& table, const CShellColors& colors);

    int32_t GetID() const { return m_pTable->m_nBarID; }
    const CToolbarTable& GetTable() const { return *m_pTable; }
    const CKRToolbarImages& GetImages() const { return m_Images; }
    void SetColors(const CShellColors& colors); // makes the images anew

    void SetIconMaker(IconMaker maker); // who draws the images for finer pixels

    // Of a button's command, with so many pixels to a side; null when this toolbar has no such button, or it has no
    // image of the kind. Good until the colours or the maker change.
    const CPixelImage* FindImage(int32_t nCommand, EImageKind eKind, int32_t nGrid = c_nIconSize) const;

    void DrawGround(IShellSurface& surface, const CRect& rcBar) const;
    // Paints one button over the bar's ground.
    void DrawItem(IShellSurface& surface, const CRect& rc, int32_t nCommand,
                  const CToolItemState& state) const;
    // Dotted lines across the bar's short side; none on a floating bar. rcBar is the whole bar.
    void DrawGripper(IShellSurface& surface, const CRect& rcBar, EBarSide eSide) const;

    // What a docked bar leaves for it in front of its buttons, in pixels.
    static constexpr int32_t c_nGripperRoom = 11;
    // Both empty for a floating bar.
    static CRect GetGripperRect(const CRect& rcBar, EBarSide eSide);
    static CRect GetGripperZone(const CRect& rcBar, EBarSide eSide); // where the pointer is a four-way arrow

private:
    const CKRToolbarImages& ImagesFor(int32_t nGrid) const;

    const CToolbarTable* m_pTable;
    CShellColors m_Colors;
    CKRToolbarImages m_Images;
    IconMaker m_Maker;
    mutable std::map<int32_t, CKRToolbarImages>
        m_FineImages; // by pixels to a side, made when they are asked for
};
