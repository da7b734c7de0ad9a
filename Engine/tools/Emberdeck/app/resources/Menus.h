#pragma once

#include "app/resources/Commands.h"

// The menus as the program ships them. The timeline's popup is put together at each click, from what of its menu
// applies there.

struct CMenuTable;

// A command, a submenu or a separator. A command's own label is right nearly everywhere; a menu that gives another one
// says what the command does to the things in it.
struct CMenuItem
{
    int32_t m_nID = 0;                      // 0: a submenu, or a separator
    const char* m_pszLabel = nullptr;       // null: the command's own
    const CMenuTable* m_pSubmenu = nullptr; // null: a command, or a separator
    bool m_bDefault = false;                // shown bold: what a double click does

    constexpr bool IsSeparator() const { return m_nID == 0 && !m_pSubmenu; }
    // What is shown, with the mark of the shortcut letter; empty for a separator.
    constexpr const char* GetLabel() const
    {
        if (m_pszLabel)
            return m_pszLabel;
        const CCommand* pCommand = FindCommand(m_nID);
        return pCommand ? pCommand->m_pszLabel : "";
    }
};

struct CMenuTable
{
    const CMenuItem* m_pItems;
    int32_t m_nItems;

    constexpr const CMenuItem* begin() const { return m_pItems; }
    constexpr const CMenuItem* end() const { return m_pItems + m_nItems; }
};

// The items outlive the table, as constants do.
template <int32_t t_nItems>
constexpr CMenuTable MakeMenu(const CMenuItem (&items)[t_nItems])
{
    return CMenuTable{items, t_nItems};
}

// clang-format off
namespace menu_items
{

inline constexpr CMenuItem c_SourceControl[] = {
    {c_nCmdConnect},
    {c_nCmdDisconnect},
    {},
    {c_nCmdAddToSourceControl},
    {},
    {c_nCmdCheckOut},
    {},
    {c_nCmdSubmit},
    {c_nCmdUndoChanges},
    {},
    {c_nCmdGetLatest},
    {c_nCmdHistory},
};
inline constexpr CMenuTable c_SourceControlMenu = MakeMenu(c_SourceControl);

inline constexpr CMenuItem c_File[] = {
    {c_nCmdOpen},
    {c_nCmdSave},
    {c_nCmdSaveAs},
    {c_nCmdNew},
    {},
    {c_nCmdPackEffects},
    {c_nCmdPackEffectsAs},
    {},
    {0, "Source &Control", &c_SourceControlMenu},
    {},
    {c_nCmdLaunch},
    {c_nCmdEditGameInfo},
    {},
    {c_nCmdExit},
};
inline constexpr CMenuTable c_FileMenu = MakeMenu(c_File);

inline constexpr CMenuItem c_Edit[] = {{c_nCmdUndo}, {c_nCmdRedo}};
inline constexpr CMenuTable c_EditMenu = MakeMenu(c_Edit);

inline constexpr CMenuItem c_Toolbars[] = {{c_nCmdSourceControlBar}, {c_nCmdStandardBar}, {c_nCmdEditBar}};
inline constexpr CMenuTable c_ToolbarsMenu = MakeMenu(c_Toolbars);

inline constexpr CMenuItem c_View[] = {{0, "Toolbars", &c_ToolbarsMenu}, {c_nCmdStatusBar}, {c_nCmdHistoryList}};
inline constexpr CMenuTable c_ViewMenu = MakeMenu(c_View);

inline constexpr CMenuItem c_Help[] = {{c_nCmdAbout}};
inline constexpr CMenuTable c_HelpMenu = MakeMenu(c_Help);

inline constexpr CMenuItem c_Bar[] = {
    {0, "&File", &c_FileMenu},
    {0, "&Edit", &c_EditMenu},
    {0, "&View", &c_ViewMenu},
    {0, "&Help", &c_HelpMenu},
};

inline constexpr CMenuItem c_EffectPanel[] = {
    {c_nCmdOpenSelection, nullptr, nullptr, true},
    {},
    {c_nCmdNewGroup},
    {c_nCmdNewEffectInGroup},
    {c_nCmdImportEffects},
    {c_nCmdDuplicate},
    {},
    {c_nCmdDeleteSelection},
    {c_nCmdRenameItem},
    {},
    {c_nCmdFind},
    {c_nCmdFindNext},
};

inline constexpr CMenuItem c_PrefabPanel[] = {
    {c_nCmdOpenSelection, "Open Prefabs\tEnter", nullptr, true},
    {},
    {c_nCmdNewGroup},
    {c_nCmdNewPrefab},
    {c_nCmdDuplicate},
    {},
    {c_nCmdDeleteSelection},
    {c_nCmdRenameItem},
    {},
    {c_nCmdSetActivePrefab},
    {},
    {c_nCmdFind},
    {c_nCmdFindNext},
};

inline constexpr CMenuItem c_TimelineKey[] = {
    {c_nCmdNameKeys},
    {c_nCmdLinkKey},
    {c_nCmdExpandKeys},
    {c_nCmdSetKeyLength},
    {c_nCmdUnlinkKeys},
    {c_nCmdCopyKey},
    {c_nCmdCutKey},
    {c_nCmdCreatePrefabFromKey},
    {c_nCmdAssignPrefabToKey},
    {c_nCmdEditKey},
    {},
    {c_nCmdDeleteKeys},
};
inline constexpr CMenuTable c_TimelineKeyMenu = MakeMenu(c_TimelineKey);

inline constexpr CMenuItem c_TimelineTrack[] = {
    {c_nCmdAddKey},
    {c_nCmdAddPrefabKey},
    {c_nCmdPasteKey},
    {c_nCmdDeleteTrack},
    {c_nCmdInsertTrack},
};
inline constexpr CMenuTable c_TimelineTrackMenu = MakeMenu(c_TimelineTrack);

inline constexpr CMenuItem c_Timeline[] = {
    {0, "&Key", &c_TimelineKeyMenu},
    {0, "&Track", &c_TimelineTrackMenu},
};

} // namespace menu_items
// clang-format on

inline constexpr CMenuTable c_MenuBar = MakeMenu(menu_items::c_Bar);
inline constexpr CMenuTable c_EffectPanelMenu = MakeMenu(menu_items::c_EffectPanel);
inline constexpr CMenuTable c_PrefabPanelMenu = MakeMenu(menu_items::c_PrefabPanel);
inline constexpr CMenuTable c_TimelineMenu = MakeMenu(menu_items::c_Timeline);
