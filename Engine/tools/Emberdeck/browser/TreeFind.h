#pragma once

#include <functional>
#include <string>

#include "model/LibraryTree.h"

struct CFindOptions
{
    std::string m_sText;
    bool m_bMatchCase = false;
    bool m_bWholeWord = false; // the whole item text must be the search text
    bool m_bSearchDown = true;
};

enum class EFind
{
    eNothing, // an empty tree, or no text
    eFound,
    eStopped, // at the end, by the answer
    eNotFound // once round
};

// Walks all items from hStart, expanded or not, to the first that matches. Down: an item, then what is below
// it. Up is the mirror image: an item, then what is below it from its last child on. Items with children are
// passed and never compared, hStart neither. At the end goOn decides whether to go on from the root. A dead
// hStart is the root. Only A to Z are folded.
EFind FindInTree(const CLibraryTree& tree, HLibraryItem hStart, const CFindOptions& options,
                 const std::function<bool()>& goOn, HLibraryItem& hFound);
