#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "changes/LibraryChange.h"
#include "changes/LibraryImage.h"

enum class EMergeSide : uint8_t
{
    eMine,
    eTheirs
};

enum class EMergeConflict : uint8_t
{
    eField,      // both sides changed it, each to something else
    eDeleted,    // one side deleted what the other changed; nothing on the side that did
    eAdded,      // each side made one of that name, and they aren't the same
    eName,       // it would bear the name that m_Other, of the other side, has
    eOverlap,    // the key would lie on m_Other, a key of the other side
    eTimes,      // of both sides' times the key would end before it starts
    eMoved,      // the item was moved to another group by each side
    eUsed,       // one side deleted the prefab or group, the other put it to new use: m_Other
    eLinkTarget, // the key links to m_Other, which the other side deleted
    eCircle,     // prefabs would stand on each other
    eTracks,     // the effect would have more tracks than there may be
};

// Where two sides don't go together.
struct CMergeConflict
{
    EMergeConflict m_eWhy = EMergeConflict::eField;
    CDifference
        m_Mine; // what it is about, m_Before what the base has there, m_After what mine has; nothing: there is
                // none. Of eOverlap and eTimes the whole key, of eMoved a place
    CChangeValue m_Theirs;
    CChangeRef m_Other;                       // none for most
    EMergeSide m_eStands = EMergeSide::eMine; // what the merged library has
};

// "Campfire: key 12, start: 100 ms, mine 200 ms, theirs 300 ms; mine stands". A line without its end.
std::string Tell(const CMergeConflict& conflict);

// Asked at each conflict: which side stands there. One that is settled another way may bring or end others.
using CMergeSettle = std::function<EMergeSide(const CMergeConflict&)>;

struct CMerged
{
    std::shared_ptr<const CLibraryImage>
        m_pImage; // null: memory ran out. Its numbers are mine's where mine has it
    std::vector<CMergeConflict> m_Conflicts;
};

// What both sides have made of the base. The three are pictures of one library, or aligned to the base (Align); an
// empty one is as good as none.
//
// Different effects, keys and properties never conflict, nor does what both changed to the same. Orders are merged as
// sequences without a conflict. A key id that both gave out is renumbered on their side, with the links to it. Without
// settle mine stands; what theirs has instead is in the conflict: a key without room, an effect or prefab whose name is
// taken isn't in the merged library, and what would lie in a group that is gone lies in the next one above.
// If the three are sound, what is merged is. With one side as the base is, the other one is the result.
CMerged Merge(const CLibraryImage& base, const CLibraryImage& mine, const CLibraryImage& theirs,
              const CMergeSettle& settle = {});
