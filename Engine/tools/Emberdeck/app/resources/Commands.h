#pragma once

#include <cstddef>
#include <cstdint>

// Every command that a menu, a toolbar or a key can give: what it is called, when it may be given, and who
// carries it out. Menus, toolbars and accelerators refer to commands by id, and whoever speaks of one in code does so
// by the name of its id. A new command is an id, a row in c_Commands, its place in Menus.h or another table, and a
// route at its owner.

// Their ids. 57600 and above are the toolkit's standard ones.
constexpr int32_t c_nCmdInsertTrack = 32789;
constexpr int32_t c_nCmdAddKey = 32790;
constexpr int32_t c_nCmdEditKey = 32791;
constexpr int32_t c_nCmdDeleteKeys = 32792;
constexpr int32_t c_nCmdExpandKeys = 32793;
constexpr int32_t c_nCmdSave = 32796;
constexpr int32_t c_nCmdSaveAs = 32797;
constexpr int32_t c_nCmdLaunch = 32800;
constexpr int32_t c_nCmdDeleteTrack = 32809;
constexpr int32_t c_nCmdLinkKey = 32814;
constexpr int32_t c_nCmdUnlinkKeys = 32815;
constexpr int32_t c_nCmdSetKeyLength = 32816;
constexpr int32_t c_nCmdEditGameInfo = 32817;
constexpr int32_t c_nCmdNameKeys = 32823;
constexpr int32_t c_nCmdCopyKey = 32825;
constexpr int32_t c_nCmdCutKey = 32826;
constexpr int32_t c_nCmdPasteKey = 32827;        // at the click
constexpr int32_t c_nCmdPasteKeyAtMouse = 32841; // at the pointer
constexpr int32_t c_nCmdDeleteCurveKeys = 32847;
constexpr int32_t c_nCmdSelectAllCurveKeys = 32848;
constexpr int32_t c_nCmdUnselectAllCurveKeys = 32849;
constexpr int32_t c_nCmdBestFit = 32852;
constexpr int32_t c_nCmdPackEffects = 32853;
constexpr int32_t c_nCmdPackEffectsAs = 32854;
constexpr int32_t c_nCmdSaveAndPack = 32859;
constexpr int32_t c_nCmdSavePackLaunch = 32862;
constexpr int32_t c_nCmdSetActivePrefab = 32866;
constexpr int32_t c_nCmdAddPrefabKey = 32870; // of the active prefab
constexpr int32_t c_nCmdCreatePrefabFromKey = 32874;
constexpr int32_t c_nCmdAssignPrefabToKey = 32875;
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
constexpr int32_t c_nCmdEditBar = 33024;          // the same
constexpr int32_t c_nCmdHistoryList = 33025;      // of the library's changes; also the dock's own id
constexpr int32_t c_nCmdNew = 57600;
constexpr int32_t c_nCmdOpen = 57601;
constexpr int32_t c_nCmdToolkitCopy = 57634;
constexpr int32_t c_nCmdToolkitCut = 57635;
constexpr int32_t c_nCmdFind = 57636;
constexpr int32_t c_nCmdToolkitPaste = 57637;
constexpr int32_t c_nCmdUndo = 57643;
constexpr int32_t c_nCmdRedo = 57644;
constexpr int32_t c_nCmdAbout = 57664;
constexpr int32_t c_nCmdExit = 57665;
constexpr int32_t c_nCmdNextPane = 57680;
constexpr int32_t c_nCmdPreviousPane = 57681;
constexpr int32_t c_nCmdStatusBar = 59393; // the same

// Who carries a command out: it has a table of routes with the command's id in it.
enum class ECommandOwner
{
    eApplication, // through CMainFrame
    eFrame,       // the same; a bar, which it shows or hides
    eEffectPanel,
    ePrefabPanel,
    ePanels, // each of both panels, on its own tree
    eTimeline,
    eCurveDialog,
    eNobody // the toolkit's, which nothing here carries out: its keys must not be taken from others
};

// When a command may be given. Its owner knows how that stands. Menus grey what may not be given, but for the
// timeline's.
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
    eCanUndo,         // there is a step to take back, and no edit is under way
    eCanRedo,         // or to do again
    eBarExists,
    eAnySelected, // the panel's selection isn't empty
    eOneSelected,
    eOneGroupSelected, // exactly one item, and it is a group
    eOnePrefabSelected,
    eTreeExists,
    // Of the click on the timeline. Its popup leaves out what may not be given; the keys don't ask.
    eOnTrack,
    eOnFreeSpace, // of a track
    eCanAddPrefab,
    eCanPasteKey,
    eOnKey,
    eKeyUnlinked,
    eKeyHasLinks,    // has a motion link, or is the target of one
    eOneKeySelected, // that one
    eCanAssignPrefab,
    eCanEditKey,
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

    {c_nCmdUndo, "&Undo", EEnableRule::eCanUndo, ECommandOwner::eApplication}, // the step's name behind it
    {c_nCmdRedo, "&Redo", EEnableRule::eCanRedo, ECommandOwner::eApplication}, // the same

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
    {c_nCmdEditBar, "&Edit", EEnableRule::eBarExists, ECommandOwner::eFrame},
    {c_nCmdStatusBar, "&Status Bar", EEnableRule::eBarExists, ECommandOwner::eFrame},
    {c_nCmdHistoryList, "&History", EEnableRule::eBarExists, ECommandOwner::eFrame},

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

    {c_nCmdNameKeys, "&Name Key", EEnableRule::eOnKey, ECommandOwner::eTimeline},
    {c_nCmdLinkKey, "&Motion Link To Key", EEnableRule::eOnKey, ECommandOwner::eTimeline},
    {c_nCmdExpandKeys, "E&xpand Key", EEnableRule::eKeyUnlinked, ECommandOwner::eTimeline},
    {c_nCmdSetKeyLength, "&Set Key Length", EEnableRule::eKeyUnlinked, ECommandOwner::eTimeline},
    {c_nCmdUnlinkKeys, "&Unlink Key", EEnableRule::eKeyHasLinks, ECommandOwner::eTimeline},
    {c_nCmdCopyKey, "&Copy Key", EEnableRule::eOneKeySelected, ECommandOwner::eTimeline},
    {c_nCmdCutKey, "&Cut Key", EEnableRule::eOneKeySelected, ECommandOwner::eTimeline},
    {c_nCmdCreatePrefabFromKey, "Create &Prefab From Key", EEnableRule::eOneKeySelected, ECommandOwner::eTimeline},
    {c_nCmdAssignPrefabToKey, "&Assign Prefab To Key", EEnableRule::eCanAssignPrefab, ECommandOwner::eTimeline},
    {c_nCmdEditKey, "Edit &Key", EEnableRule::eCanEditKey, ECommandOwner::eTimeline},
    {c_nCmdDeleteKeys, "&Delete Key", EEnableRule::eOnKey, ECommandOwner::eTimeline},
    {c_nCmdAddKey, "&Add Key", EEnableRule::eOnFreeSpace, ECommandOwner::eTimeline},
    {c_nCmdAddPrefabKey, "Add &Prefab %s", EEnableRule::eCanAddPrefab, ECommandOwner::eTimeline}, // its display name
    {c_nCmdPasteKey, "&Paste Key", EEnableRule::eCanPasteKey, ECommandOwner::eTimeline},
    {c_nCmdDeleteTrack, "&Delete Track", EEnableRule::eOnTrack, ECommandOwner::eTimeline},
    {c_nCmdInsertTrack, "&Insert Track", EEnableRule::eAlways, ECommandOwner::eTimeline},
    {c_nCmdPasteKeyAtMouse, "", EEnableRule::eAlways, ECommandOwner::eTimeline}, // keys alone give it

    {c_nCmdDeleteCurveKeys, "Delete Keys", EEnableRule::eAlways, ECommandOwner::eCurveDialog},
    {c_nCmdSelectAllCurveKeys, "Select All", EEnableRule::eAlways, ECommandOwner::eCurveDialog},
    {c_nCmdUnselectAllCurveKeys, "Unselect All", EEnableRule::eAlways, ECommandOwner::eCurveDialog},
    {c_nCmdBestFit, "Best &Fit", EEnableRule::eAlways, ECommandOwner::eCurveDialog},

    {c_nCmdToolkitCopy, "", EEnableRule::eNever, ECommandOwner::eNobody},
    {c_nCmdToolkitCut, "", EEnableRule::eNever, ECommandOwner::eNobody},
    {c_nCmdToolkitPaste, "", EEnableRule::eNever, ECommandOwner::eNobody},
    {c_nCmdNextPane, "", EEnableRule::eNever, ECommandOwner::eNobody},
    {c_nCmdPreviousPane, "", EEnableRule::eNever, ECommandOwner::eNobody},
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

// A command and what carries it out at its owner, a TOwner.
template <class TOwner>
struct TCommandRoute
{
    int32_t m_nID;
    void (TOwner::*m_pfnRun)();
};

// Null when the owner doesn't carry the command out.
template <class TOwner, size_t t_nRoutes>
constexpr const TCommandRoute<TOwner>* FindRoute(const TCommandRoute<TOwner> (&routes)[t_nRoutes],
                                                 int32_t nID)
{
    for (const TCommandRoute<TOwner>& route : routes)
    {
        if (route.m_nID == nID)
            return &route;
    }
    return nullptr;
}
