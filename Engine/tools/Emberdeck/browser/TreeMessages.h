#pragma once

#include "app/Messages.h"

// What the tree and the panels say.

inline constexpr CMessage c_MsgReachedEnd = {
    "Finished parsing through to the end of the tree.  Would you like to "
    "start from the beginning?",
    "Reached End", EButtons::eYesNo, EIcon::eQuestion};
inline constexpr CMessage c_MsgStringNotFound = {"Cannot find '%1!s!'", "String Not Found", EButtons::eOk,
                                                 EIcon::eExclamation};

// The messages of a panel. %d places are counts of items.
struct CPanelMessages
{
    CMessage m_NameInUse;
    CMessage m_NoneToDuplicate;
    CMessage m_ManyToDuplicate;
    CMessage m_NoneToOpen;
    CMessage m_ManyToOpen;
    CMessage m_DeleteSelection; // groups, then effects or prefabs
};

inline constexpr CPanelMessages c_EffectMessages = {
    c_MsgEffectNameInUse,
    {"No effects are selected for copying...", "Effect Duplicate Error", EButtons::eOk, EIcon::eExclamation},
    {"You currently have %d effects in the selection...\n\nDo you really want to duplicate these?",
     "Duplicate Effects?", EButtons::eOkCancel, EIcon::eNone},
    {"No effects are selected for opening...", "Effect Open Error", EButtons::eOk, EIcon::eExclamation},
    {"You currently have %d effects in the selection...\n\nDo you really want to open these for editing?",
     "Open Effects?", EButtons::eOkCancel, EIcon::eNone},
    {"%d groups selected.\n%d effects selected.\n\nDo you really want to delete all of these?",
     "Delete Selection?", EButtons::eOkCancel, EIcon::eNone},
};

inline constexpr CPanelMessages c_PrefabMessages = {
    c_MsgPrefabNameInUse,
    {"No prefabs are selected for copying...", "Prefab Duplicate Error", EButtons::eOk, EIcon::eExclamation},
    {"You currently have %d prefabs in the selection...\n\nDo you really want to duplicate these?",
     "Duplicate Prefabs?", EButtons::eOkCancel, EIcon::eNone},
    {"No prefabs are selected for opening...", "Prefab Open Error", EButtons::eOk, EIcon::eExclamation},
    {"You currently have %d prefabs in the selection...\n\nDo you really want to open these for editing?",
     "Open Prefabs?", EButtons::eOkCancel, EIcon::eNone},
    {"%d groups selected.\n%d prefabs selected.\n\nDo you really want to delete all of these?",
     "Delete Selection?", EButtons::eOkCancel, EIcon::eNone},
};
