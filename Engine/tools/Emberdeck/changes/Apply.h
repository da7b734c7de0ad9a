#pragma once

#include <optional>
#include <string>

#include "changes/EditScope.h"
#include "changes/LibraryChange.h"
#include "changes/LibraryImage.h"
#include "model/EffectModule.h"

// Who holds on to effects and prefabs beside the library.
class ILibraryOwner
{
public:
    virtual ~ILibraryOwner() = default;
    // Before an effect or prefab is taken out: views close, and nobody keeps the pointer.
    virtual void OnReleasing(const CSpell& spell) = 0;
    virtual void OnReleasing(CEffectPropertySet& prefab) = 0;
};

// What a change is done to; borrowed.
struct CApplyTarget
{
    CLibraryParts m_Library;
    const CEffectModule& m_Module;
    CEditHub& m_Edits;
    ILibraryOwner& m_Owner;
};

// Why a change could not be done.
struct CConflict
{
    size_t m_nDifference = 0; // the first one that wasn't as it should be
    std::string m_sWhy;       // for people: what it is, and what was found; empty without memory for it
    bool m_bNoMemory = false; // the library may well be as it should be
};

// Does a change of the library, as one edit under that label. Beside the library editor the one place that makes and
// deletes. Objects that survive keep their addresses; those that come back have their serials, tree items their handles.
//
// A difference is done only where the library is what it was before it. Else, and when memory runs out, all that was
// done is taken back, which takes no memory, and the result is that difference. Nothing: the change is done.
std::optional<CConflict> Apply(const CLibraryChange& change, const CApplyTarget& target,
                               const std::string& sLabel);

// Whether two values are the same in a file.
bool IsSameWritten(const CPointImage& left, const CPointImage& right, uint32_t eType);
