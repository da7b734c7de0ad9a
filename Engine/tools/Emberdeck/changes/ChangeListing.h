#pragma once

#include <string>
#include <vector>

#include "changes/LibraryChange.h"

// A change as people read it: what belongs to one effect or prefab together, an item's moving as one thing.
struct CToldChange
{
    enum class EKind : uint8_t
    {
        eNew,
        eGone,
        eChanged
    };
    std::string m_sWhere; // "effect \"Campfire\"", "prefab \"Flame\"", "effects", "prefabs"
    std::string m_sWhat;  // "key 12, start: 100 ms -> 200 ms"
    EKind m_eKind = EKind::eChanged;
};

// Those of one place stand together; places in the order in which they come up.
std::vector<CToldChange> ListChange(const CLibraryChange& change);
