#pragma once

#include <string>
#include <vector>

#include "changes/LibraryChange.h"
#include "changes/LibraryImage.h"

// What a change concerns in the library as it is now, for whoever shows what an undo has done. Everything is borrowed
// from the library, and good until its next edit.
struct CChangeSpots
{
    struct CEffect
    {
        CSpell* m_pSpell;           // never null
        std::vector<CKey*> m_Keys;  // those that are there, each once
        CTrack* m_pTrack = nullptr; // the last one that is there, of those that came or moved; null: none
    };
    std::vector<CEffect> m_Effects; // by the first difference in each
    // Items that came, or have another name, and those of prefabs with other values. Their order alone is none.
    std::vector<HLibraryItem> m_Items[c_nNumSides];

    bool IsEmpty() const;
};

// Throws std::bad_alloc.
CChangeSpots FindSpots(const CLibraryChange& change, const CLibraryParts& library);

// A step as the status line and the history tell it: "Move Keys in Campfire", "Rename Effect "Old" to "New"",
// "Delete Effects". sLabel alone when the change concerns more than one thing. In the library's own bytes.
std::string TellStep(const std::string& sLabel, const CLibraryChange& change);
