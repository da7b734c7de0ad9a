#pragma once

#include <cstdint>
#include <vector>

#include "browser/TreeTypes.h"

// The state bits of all items of a tree, and the visible order that follows from what is expanded: the root, then
// down through expanded items. Walks end with null; a dead item has no bits and is nowhere.
class CTreeStates
{
public:
    explicit CTreeStates(const CLibraryTree& tree) : m_Items(tree) {} // borrowed

    uint32_t Get(HLibraryItem hItem) const;
    void Set(HLibraryItem hItem, uint32_t nState, uint32_t nMask);
    void Clear() { m_Bits.clear(); }
    bool IsExpanded(HLibraryItem hItem) const { return (Get(hItem) & eState_Expanded) != 0; }

    HLibraryItem NextVisible(HLibraryItem hItem) const { return NextBelow({}, hItem, true); }
    HLibraryItem PrevVisible(HLibraryItem hItem) const;
    HLibraryItem LastVisible() const;
    // So many rows away, as far as there are items.
    HLibraryItem MovedBy(HLibraryItem hItem, bool bDown, int32_t nRows) const;
    // The item behind this one among all below hTop, or among the visible ones; null at their end. Climbs no
    // higher than hTop, so that a walk over a branch takes no longer deep down in the tree.
    HLibraryItem NextBelow(HLibraryItem hTop, HLibraryItem hItem, bool bVisible) const;
    // The item itself when it is visible, else the lowest item above it that is.
    HLibraryItem VisibleAncestor(HLibraryItem hItem) const;
    bool IsVisible(HLibraryItem hItem) const;
    // hTo comes behind hFrom in the visible order, or is the same.
    bool Reaches(HLibraryItem hFrom, HLibraryItem hTo) const;

private:
    HLibraryItem LowestOf(HLibraryItem hItem) const;

    const CLibraryTree& m_Items;
    // Numbers of items rise without end and are dense, so a row of bytes does.
    std::vector<uint8_t> m_Bits;
    uint32_t m_nFirst = 0; // the number that the first byte belongs to
};
