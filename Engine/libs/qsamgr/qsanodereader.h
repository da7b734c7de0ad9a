#pragma once

#include <cstdint>

class CQSAAllocator;
class CQSALoadOnlyAlloc;
class CQSANode;
struct CQSATextOutcome;
class CQSAReader;

// Loads node text into a tree: the file's top-level items become the elements of a root that the caller owns
// and that is an empty list. The tree lives in pAllocator and refers to nothing else.
//
// Never fails for its text's sake, but for lists that nest deeper than 1023 and for more than 2,097,152 nodes
// that wait for their list to end: lists left open are closed, a stray ) is ignored, an atom ends at a NUL
// byte or after 1,023 bytes, a read error counts as the end. False for these two, for a file that can't be
// opened and when memory is out; the root is untouched then.
class CQSANodeReader
{
public:
    // Longest text of a loaded atom, in bytes.
    static constexpr uint32_t c_nMaxAtomLen = 1023;

    // Into a CQSALoadOnlyAlloc this is much faster than token by token, with the same result.
    static bool LoadEntireFile(const char* pszFilename, bool bCompressed, CQSANode* pRoot,
                               CQSAAllocator* pAllocator);

    // The same, and tells what the tree doesn't show (see CQSATextOutcome).
    static bool LoadEntireFile(const char* pszFilename, bool bCompressed, CQSANode* pRoot,
                               CQSALoadOnlyAlloc* pAllocator, CQSATextOutcome& outcome);

    // From where the reader stands to its end. Closes the reader on success. False also when it isn't open.
    static bool LoadEntireFile(CQSAReader* pReader, CQSANode* pRoot, CQSAAllocator* pAllocator);
};
