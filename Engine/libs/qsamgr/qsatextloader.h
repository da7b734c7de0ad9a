#pragma once

#include <cstddef>
#include <cstdint>

class CQSAFile;
class CQSALoadOnlyAlloc;
class CQSANode;

// What a text was like that gave a tree: how much of it the tree doesn't show any more.
struct CQSATextOutcome
{
    uint32_t m_nOpenLists = 0;   // lists that it ends within
    bool m_bOpenString = false;  // it ends within a quoted text
    bool m_bOpenStream = false;  // the compressed file ends before its text does
    uint32_t m_nStrayCloses = 0; // closing parentheses that close no list
    uint32_t m_nLongAtoms = 0;   // atoms that were cut to CQSANodeReader::c_nMaxAtomLen bytes
    bool m_bNul = false;         // there are bytes that are 0, at which an atom ends
    // The first line, from 1, that begins with a mark of a merge which nobody has resolved: a value of seven times
    // <, =, > or |. 0: none.
    uint64_t m_nConflictLine = 0;

    bool IsCut() const { return m_nOpenLists != 0 || m_bOpenString || m_bOpenStream; }
    bool IsConflict() const { return m_nConflictLine != 0; }
};

// The fast road from node text to a tree: the same tree as CQSAReader and CQSANodeBuilder make of the same
// bytes, with the same limits and the same failures (CQSANodeReader tells them), but scanned 64 bytes at a
// time and put straight into the allocator's blocks. pRoot is an empty list of the caller's; its elements
// come behind what it may hold. False leaves it untouched. The outcome, when it is asked for, is filled in as far
// as the text was read.

// From memory. The tree keeps nothing of the text.
bool QSALoadText(const char* pText, size_t nLen, CQSANode* pRoot, CQSALoadOnlyAlloc* pAlloc,
                 CQSATextOutcome* pOutcome = nullptr);

// From where an open file stands to its end, through a window of fixed size: memory is taken for the tree
// alone, so that a file which fails early has cost little, whatever its size. nExpectedLen is about how long
// the text will be, 0 when nobody knows; it only helps to choose the size of blocks. Closes the file on
// success. Lines aren't counted on the way: nConflictAt is where a mark of a merge stands in the text, c_nNoConflict
// without one, and the outcome's line is for whoever can read the file once more.
constexpr uint64_t c_nNoConflict = UINT64_MAX;
bool QSALoadFile(CQSAFile& file, size_t nExpectedLen, CQSANode* pRoot, CQSALoadOnlyAlloc* pAlloc,
                 CQSATextOutcome& outcome, uint64_t& nConflictAt);
