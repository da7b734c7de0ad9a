#pragma once

#include <cstdint>

// Every command that a menu, a toolbar or a key can give: what it is called, when it may be given, and who
// carries it out. Menus, toolbars and accelerators refer to commands by id.

// The ids that code speaks of. 57600 and above are the toolkit's standard ones.
constexpr int32_t c_nCmdSave = 32796;
constexpr int32_t c_nCmdSaveAs = 32797;
constexpr int32_t c_nCmdLaunch = 32800;
constexpr int32_t c_nCmdEditGameInfo = 32817;
constexpr int32_t c_nCmdPackEffects = 32853;
constexpr int32_t c_nCmdPackEffectsAs = 32854;
constexpr int32_t c_nCmdSaveAndPack = 32859;
constexpr int32_t c_nCmdSavePackLaunch = 32862;
constexpr int32_t c_nCmdSetActivePrefab = 32866;
constexpr int32_t c_nCmdNewEffect = 32877;
constexpr int32_t c_nCmdNewGroup = 32880;
constexpr int32_t c_nCmdNewEffectInGroup = 32881;
constexpr int32_t c_nCmdDuplicate = 32883;
constexpr int32_t c_nCmdImportEffects = 32884;
constexpr int32_t c_nCmdDeleteSelection = 32885;
constexpr int32_t c_nCmdOpenSelection = 32887;
constexpr int32_t c_nCmdRenameItem = 32888;
constexpr int32_t c_nCmdNewPrefab = 32892;
constexpr int32_t c_nCmdFindNext = 32895;
constexpr int32_t c_nCmdConnect = 32905;
constexpr int32_t c_nCmdDisconnect = 32906;
constexpr int32_t c_nCmdAddToSourceControl = 32907;
constexpr int32_t c_nCmdCheckOut = 32908;
constexpr int32_t c_nCmdSubmit = 32909;
constexpr int32_t c_nCmdUndoChanges = 32910;
constexpr int32_t c_nCmdGetLatest = 32911;
constexpr int32_t c_nCmdHistory = 32912;
constexpr int32_t c_nCmdSourceControlBar = 32916; // also the bar's own id
constexpr int32_t c_nCmdStandardBar = 32917;      // the same
constexpr int32_t c_nCmdNew = 57600;
constexpr int32_t c_nCmdOpen = 57601;
constexpr int32_t c_nCmdFind = 57636;
constexpr int32_t c_nCmdAbout = 57664;
constexpr int32_t c_nCmdExit = 57665;
constexpr int32_t c_nCmdStatusBar = 59393; // the same

enum class ECommandOwner
{
    eApplication, // through CMainFrame
    eFrame,       // the same; a bar, which it shows or hides
    eEffectPanel,
    ePrefabPanel,
    ePanels,   // each of both panels, on its own tree
    eTimeline, // its labels and conditions stand beside the handlers, in timeline/TrackCommands.h
    eCurveDialog,
    eNobody // the toolkit's, which nothing here carries out: its keys must not be taken from others
};

enum class EEnableRule
{
    eAlways,
    eHasFileName,  // the library has a file
    eNotConnected, // to source control
    eConnected,
    eCanAdd,          // connected, and the library has a file that isn't under control
    eCanCheckOut,     // connected, and the file is under control, not checked out here, not blocked
    eCanSubmitOrUndo, // connected, and the file is under control with something pending, not blocked
    eIsControlled,    // connected, and the file is under control
    eBarExists,
    eAnySelected, // the panel's selection isn't empty
    eOneSelected,
    eOneGroupSelected, // exactly one item, and it is a group
    eOnePrefabSelected,
    eTreeExists,
    eNever
};

struct CCommand
{
    int32_t m_nID;
    const char* m_pszLabel; // "&" marks the shortcut letter; a key's name may stand behind a tab
    EEnableRule m_eRule;
    ECommandOwner m_eOwner;
};

// clang-format off
inline constexpr CCommand c_Commands[] = {
    {c_nCmdNew, "New", EEnableRule::eAlways, ECommandOwner::eApplication},
    {c_nCmdOpen, "&Open...\tCtrl+O", EEnableRule::eAlways, ECommandOwner::eApplication},
    {c_nCmdSave, "&Save\tCtrl+S", EEnableRule::eHasFileName, ECommandOwner::eApplication},
    {c_nCmdSaveAs, "Save &As...", EEnableRule::eAlways, ECommandOwner::eApplication},
    {c_nCmdPackEffects, "&Pack Effects", EEnableRule::eAlways, ECommandOwner::eApplication},
    {c_nCmdPackEffectsAs, "Pack &Effects As...", EEnableRule::eAlways, ECommandOwner::eApplication},
    {c_nCmdSaveAndPack, "Save And Pack", EEnableRule::eAlways, ECommandOwner::eApplication},
    {c_nCmdSavePackLaunch, "Save, Pack, Launch", EEnableRule::eAlways, ECommandOwner::eApplication},
    {c_nCmdLaunch, "Launch\tCtrl+F5", EEnableRule::eAlways, ECommandOwner::eApplication},
    {c_nCmdEditGameInfo, "Edit Game Info...", EEnableRule::eAlways, ECommandOwner::eApplication},
    {c_nCmdNewEffect, "New Effect", EEnableRule::eAlways, ECommandOwner::eApplication},
    {c_nCmdAbout, "&About Emberdeck...", EEnableRule::eAlways, ECommandOwner::eApplication},
    {c_nCmdExit, "E&xit", EEnableRule::eAlways, ECommandOwner::eApplication},

    {c_nCmdConnect, "Co&nnect", EEnableRule::eNotConnected, ECommandOwner::eApplication},
    {c_nCmdDisconnect, "&Disconnect", EEnableRule::eConnected, ECommandOwner::eApplication},
    {c_nCmdAddToSourceControl, "&Add to Source Control...", EEnableRule::eCanAdd, ECommandOwner::eApplication},
    {c_nCmdCheckOut, "&Check Out", EEnableRule::eCanCheckOut, ECommandOwner::eApplication},
    {c_nCmdSubmit, "&Submit Pending Changes", EEnableRule::eCanSubmitOrUndo, ECommandOwner::eApplication},
    {c_nCmdUndoChanges, "&Undo Pending Changes", EEnableRule::eCanSubmitOrUndo, ECommandOwner::eApplication},
    {c_nCmdGetLatest, "&Get Latest Version", EEnableRule::eIsControlled, ECommandOwner::eApplication},
    {c_nCmdHistory, "&History", EEnableRule::eIsControlled, ECommandOwner::eApplication},

    {c_nCmdSourceControlBar, "Source &Control", EEnableRule::eBarExists, ECommandOwner::eFrame},
    {c_nCmdStandardBar, "&Standard", EEnableRule::eBarExists, ECommandOwner::eFrame},
    {c_nCmdStatusBar, "&Status Bar", EEnableRule::eBarExists, ECommandOwner::eFrame},

    {c_nCmdOpenSelection, "Open Effects\tEnter", EEnableRule::eAnySelected, ECommandOwner::ePanels},
    {c_nCmdNewGroup, "New Group", EEnableRule::eOneGroupSelected, ECommandOwner::ePanels},
    {c_nCmdNewEffectInGroup, "New Effect", EEnableRule::eOneGroupSelected, ECommandOwner::eEffectPanel},
    {c_nCmdNewPrefab, "New Prefab", EEnableRule::eOneGroupSelected, ECommandOwner::ePrefabPanel},
    {c_nCmdImportEffects, "Import Effects...", EEnableRule::eAlways, ECommandOwner::eEffectPanel},
    {c_nCmdDuplicate, "Duplicate\tInsert", EEnableRule::eAnySelected, ECommandOwner::ePanels},
    {c_nCmdDeleteSelection, "Delete Selection\tDelete", EEnableRule::eAnySelected, ECommandOwner::ePanels},
    {c_nCmdRenameItem, "Rename Item\tF2", EEnableRule::eOneSelected, ECommandOwner::ePanels},
    {c_nCmdSetActivePrefab, "Set Active Prefab", EEnableRule::eOnePrefabSelected, ECommandOwner::ePrefabPanel},
    {c_nCmdFind, "&Find...\tCtrl+F", EEnableRule::eTreeExists, ECommandOwner::ePanels},
    {c_nCmdFindNext, "Find &Next\tF3", EEnableRule::eTreeExists, ECommandOwner::ePanels},

    {32792, "", EEnableRule::eAlways, ECommandOwner::eTimeline}, // delete keys
    {32823, "", EEnableRule::eAlways, ECommandOwner::eTimeline}, // name
    {32825, "", EEnableRule::eAlways, ECommandOwner::eTimeline}, // copy
    {32826, "", EEnableRule::eAlways, ECommandOwner::eTimeline}, // cut
    {32841, "", EEnableRule::eAlways, ECommandOwner::eTimeline}, // paste at the pointer

    {32847, "Delete Keys", EEnableRule::eAlways, ECommandOwner::eCurveDialog},
    {32848, "Select All", EEnableRule::eAlways, ECommandOwner::eCurveDialog},
    {32849, "Unselect All", EEnableRule::eAlways, ECommandOwner::eCurveDialog},
    {32852, "Best &Fit", EEnableRule::eAlways, ECommandOwner::eCurveDialog},

    {57634, "", EEnableRule::eNever, ECommandOwner::eNobody}, // copy
    {57635, "", EEnableRule::eNever, ECommandOwner::eNobody}, // cut
    {57637, "", EEnableRule::eNever, ECommandOwner::eNobody}, // paste
    {57643, "", EEnableRule::eNever, ECommandOwner::eNobody}, // undo
    {57680, "", EEnableRule::eNever, ECommandOwner::eNobody}, // next pane
    {57681, "", EEnableRule::eNever, ECommandOwner::eNobody}, // previous pane
};
// clang-format on

// Null when there is no such command.
constexpr const CCommand* FindCommand(int32_t nID)
{
    for (const CCommand& command : c_Commands)
    {
        if (command.m_nID == nID)
            return &command;
    }
    return nullptr;
}
