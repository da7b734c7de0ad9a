#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/resources/Accelerators.h"
#include "shell/MenuItem.h"
#include "shell/Toolbar.h"

// "Ctrl+Shift+Delete": modifiers in the order Ctrl, Shift, Alt, then the key. False, and an empty text,
// for a key that has no name.
bool GetAcceleratorText(const CAccelerator& accelerator, std::string& sText);

// An item of a popup as its menu has it.
struct CPopupItem
{
    int32_t m_nID = 0;   // 0: a submenu, or a separator
    std::string m_sText; // what stands behind a tab or a line feed isn't shown
    bool m_bSeparator = false;
    bool m_bSubmenu = false;
    bool m_bDefault = false;
    std::string m_sKey; // of an item whose command no accelerator table has
};

// A decorated popup, ready to be shown.
struct CDecoratedPopup
{
    std::vector<std::unique_ptr<CKRMenuItem>> m_Items; // in the order of the menu
    int32_t m_nTextColumn = 0;                         // pixels: the widest text, and room behind it
    int32_t m_nWidth = 0;                              // of the widest item
    int32_t m_nHeight = 0;                             // of the highest
};

// Gives menus the look of the toolbars: icons from their images, and the accelerators' texts. One serves all
// menus of the program.
class CKRMenuDecorator
{
public:
    // Identifies a menu: the front's own object.
    using HMenu = const void*;

    // Not owned; must outlive the decorator. One that is there already, or null, adds nothing. Always true.
    bool AddToolbar(const CKRToolbar* pToolbar);
    // For each table that the program loads. A command shows the first of its accelerators. False for a null
    // or empty table.
    bool AddAccelerators(const CAccelerator* pTable, size_t nCount);
    template <size_t t_nCount>
    bool AddAccelerators(const CAccelerator (&table)[t_nCount])
    {
        return AddAccelerators(table, t_nCount);
    }

    // Before a popup opens. What was made of this menu before is dropped. False for null.
    bool DecoratePopup(HMenu hMenu, const std::vector<CPopupItem>& items, const IMenuFont& font);
    // Null when the menu isn't decorated.
    const CDecoratedPopup* FindPopup(HMenu hMenu) const;
    void ForgetPopup(HMenu hMenu); // when the menu is destroyed

    // One item of a decorated popup. False: there is no such item, and nothing is drawn.
    bool DrawItem(HMenu hMenu, size_t nItem, IShellSurface& surface, const CRect& rc,
                  const CMenuItemState& state, const CShellColors& colors) const;

    // The text of the accelerator that a command shows; empty: it has none.
    std::string GetCommandKey(int32_t nCommand) const;
    // From the first toolbar that has an image of the kind for the command; null: none has. pSize may be
    // null, and takes width and height in pixels.
    const CPixelImage* FindIcon(int32_t nCommand, EImageKind eKind, int32_t* pSize = nullptr,
                                int32_t nGrid = c_nIconSize) const;

private:
    std::vector<const CKRToolbar*> m_Toolbars;
    std::vector<CAccelerator> m_Accelerators; // by command, one for each
    std::map<HMenu, CDecoratedPopup> m_Popups;
};
