#pragma once

#include <cstdint>

class CQSAAllocator;
class CQSANode;

// Makes node trees from a flat stream of events: open a list, add a value, close a list. Children wait in a
// cache until their list closes, which is then allocated once, at its exact size.
//
// Nodes that are still in the builder belong to it and go with Reset or the destructor; DetachHeads and its
// kin give the finished top-level nodes away. After that the builder is empty and can be used again.
class CQSANodeBuilder
{
public:
    static constexpr uint32_t MAX_CACHE_ROWS = 2048;
    static constexpr uint32_t c_nRowLen = 1024;
    // Nodes that can wait at one time, across all open lists.
    static constexpr uint32_t c_nMaxPending = MAX_CACHE_ROWS * c_nRowLen;
    // Lists that can be open at one time.
    static constexpr uint32_t c_nMaxOpen = 1023;

    // pAllocator gives the nodes; it is not owned and outlives the builder.
    explicit CQSANodeBuilder(CQSAAllocator* pAllocator);
    virtual ~CQSANodeBuilder();
    CQSANodeBuilder(const CQSANodeBuilder&) = delete;
    CQSANodeBuilder& operator=(const CQSANodeBuilder&) = delete;

    // Opens a list. False when c_nMaxOpen lists are open.
    bool Push();

    // Adds an atom to the open list, or to the top level. False when memory is out or c_nMaxPending nodes
    // wait.
    bool AddValue(const char* pszValue, bool bString);
    // A whole number as a bare value.
    bool AddValue(int32_t nValue);

    // Opens a list whose first element is this atom.
    bool PushValue(const char* pszValue, bool bString);

    // Closes the innermost open list and gives the new node, which stays the builder's. Null when no list is
    // open, and when memory is out or too many nodes wait: the list and what it held are gone then.
    CQSANode* Pop();
    // The same when only success matters.
    bool TryPop() { return Pop() != nullptr; }

    // Closes every open list. Always true.
    bool PopAll();

    // Nodes that wait: once all lists are closed, the number of top-level nodes.
    uint32_t GetNumHeads() const { return m_nCacheLen; }

    // Closes every open list and gives the first nMaxNodes top-level nodes away, in order; the others are
    // freed. The result is how many were given. A null array is reported and gives 0, and nothing changes.
    uint32_t DetachHeads(CQSANode** ppNodeList, uint32_t nMaxNodes);

    // The first top-level node, or null without one. The others are freed.
    CQSANode* DetachHead();

    // Appends the top-level nodes to a list that lives in the same allocator, and gives their number. At most
    // as many as GetNumHeads tells before the open lists are closed: top-level nodes beyond that, which can
    // only come from lists that are open and hold nothing finished, are freed. 0 for a null parent or when
    // memory is out; the nodes are then freed, at the latest with the builder.
    uint32_t DetachHeadsToList(CQSANode* pParent);

    // A pending node by its place. An index beyond the cache is reported and gives null.
    CQSANode* GetCacheElement(uint32_t nIndex) const;

    // Frees all pending nodes and the cache, and forgets the open lists.
    void Reset();

private:
    struct StackEntry
    {
        uint32_t m_nFirst; // m_nCacheLen when the list was opened
        uint32_t m_nCount; // direct elements so far
    };

    CQSANode* TakeCacheElement(uint32_t nIndex);
    bool AddToCache(CQSANode* pNode);
    CQSANode* MakeList(uint32_t nFirst, uint32_t nCount);
    void ClearCache();

    CQSANode** m_pCache[MAX_CACHE_ROWS] = {}; // rows of c_nRowLen pointers, made on demand
    uint32_t m_nCacheLen = 0;                 // next free entry, over all rows
    StackEntry m_Stack[c_nMaxOpen + 1];
    uint32_t m_nStackPos = 0; // number of open lists
    CQSAAllocator* m_pAllocator;
};
