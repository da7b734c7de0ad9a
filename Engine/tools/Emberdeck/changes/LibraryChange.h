#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "changes/ImageNodes.h"

// Something that a difference speaks of. The name is for people, and for whoever looks for it in another library: that
// of an effect, prefab or item, a key's id, a track's number from 0 on.
struct CChangeRef
{
    uint64_t m_nSerial = 0; // of an item its handle; 0: none
    std::string m_sName;
    friend bool operator==(const CChangeRef&, const CChangeRef&) = default;
};

// A place in a list: among the keys of a track, the children of an item, the tracks of an effect, the library's effects.
struct CChangePlace
{
    CChangeRef m_List; // the track, or the item (none: the roots); none for other lists
    uint32_t m_nPlace = 0;
    friend bool operator==(const CChangePlace&, const CChangePlace&) = default;
};

// A run of a property's values: those from m_nFirst on.
struct CChangePoints
{
    uint32_t m_nFirst = 0;
    std::vector<CPointImage> m_Points;
};

// What was there, or is now; nothing: there is none.
using CChangeValue = std::variant<std::monostate, int64_t, std::string, CChangeRef, CChangePlace,
                                  std::vector<CChangeRef>, CChangePoints, CItemImage,
                                  std::shared_ptr<const CSpellImage>, std::shared_ptr<const CSetImage>,
                                  std::shared_ptr<const CTrackImage>, std::shared_ptr<const CKeyImage>>;

enum class EDifference : uint8_t
{
    eEffect,       // comes or goes, with all that is in it: CSpellImage, m_Place in the library
    eEffectOrder,  // from m_Place on: list of references
    eEffectName,   // text
    eEffectLength, // number
    ePrefab,       // comes or goes: CSetImage
    ePrefabOrder,
    eTrack, // comes or goes, with the keys that are on it: CTrackImage
    eTrackOrder,
    eKey,      // comes or goes: CKeyImage, m_Place on its track
    eKeyOrder, // on the track m_Place
    eKeyTrack, // goes to another track: CChangePlace
    eKeyID,    // number, as are the two times
    eKeyStart,
    eKeyEnd,
    eKeyLink,   // number of a key id, or nothing
    eSetName,   // of a key or prefab: text
    eSetParent, // reference to a prefab, or nothing
    eSetValue,  // of the property m_sProperty: CChangePoints, nothing for an empty slot
    eItem,      // comes or goes, without children: CItemImage, m_Place among its siblings
    eItemOrder,
    eItemText, // text
};
constexpr size_t c_nNumDifferences = static_cast<size_t>(EDifference::eItemText) + 1;

// One small difference. m_Before is what is there before it, m_After what is there behind it.
struct CDifference
{
    EDifference m_eKind = EDifference::eEffect;
    ETreeSide m_eSide = ETreeSide::eEffects; // of an item: its tree
    CChangeRef m_Effect; // that the difference is in; none for prefabs, items and the library's lists
    CChangeRef m_Object; // the effect, prefab, track, key or item itself; none for orders
    CChangePlace m_Place;
    std::string m_sProperty;
    uint32_t m_eType = 0; // the property's kind
    uint32_t m_nSlot = 0; // and its place in the type
    CChangeValue m_Before;
    CChangeValue m_After;

    size_t GetMemory() const; // bytes, about
};

// What differs between two states of one library: differences to be done one after the other. A value: it knows no
// model, and outlives plug-ins.
class CLibraryChange
{
public:
    bool IsEmpty() const { return m_Differences.empty(); }
    size_t GetMemory() const; // bytes, about; nodes that others share count in full
    // From the second state to the first.
    CLibraryChange TurnedRound() const;
    // This one and the one that comes behind it, in one. What both change of one object is one difference where no
    // object comes, goes or moves in either.
    CLibraryChange Joined(const CLibraryChange& next) const;

    std::vector<CDifference> m_Differences;
};

// "Campfire: key 12 starts at 100 ms, before at 200 ms". A line without its end.
std::string Tell(const CDifference& difference);
