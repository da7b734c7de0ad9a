#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "changes/LibraryChange.h"
#include "changes/LibraryImage.h"

// What is known of a library at one time: the parts that somebody has looked at. Objects are told by their numbers.
struct CKnownSpell
{
    std::optional<std::pair<std::string, int32_t>> m_Head; // name and phase length
    std::optional<std::vector<uint64_t>> m_Tracks;
    std::map<uint64_t, std::vector<uint64_t>> m_TrackKeys; // by track
    std::map<uint64_t, std::shared_ptr<const CKeyImage>> m_Keys;
};
struct CKnownLibrary
{
    std::optional<std::vector<uint64_t>> m_SpellList;
    std::optional<std::vector<uint64_t>> m_PrefabList;
    std::map<uint64_t, CKnownSpell> m_Spells;
    std::map<uint64_t, std::shared_ptr<const CSetImage>> m_Prefabs;
    std::map<uint32_t, std::shared_ptr<const CGroupImage>> m_Groups[c_nNumSides];
};

// Names of what neither side need know. Asked for numbers that are in use on either.
struct CChangeNames
{
    std::function<std::string(uint64_t)> m_Spell;
    std::function<std::string(uint64_t)> m_Prefab;
    std::function<std::string(ETreeSide, uint32_t)> m_Item;
    std::function<uint32_t(uint64_t, uint64_t)> m_KeyID; // of a key's serial in the effect of that serial
};

// What has come of the first. Both know the same parts, and each the contents of what only it has. False: one of these
// isn't known, and change is unfinished.
bool Compare(const CKnownLibrary& before, const CKnownLibrary& after, const CChangeNames& names,
             CLibraryChange& change);

// Two pictures of one library, at two times.
CLibraryChange Compare(const CLibraryImage& before, const CLibraryImage& after);

// Another library's picture with the numbers of this one for what is the same in both: effects, prefabs and groups of a
// name (a group's within the same groups; of equal names the first with the first), keys of an id, tracks by the keys
// that they share. What is left has numbers that this one doesn't have. So the two can be compared.
std::shared_ptr<const CLibraryImage> Align(const CLibraryImage& library, const CLibraryImage& other);
