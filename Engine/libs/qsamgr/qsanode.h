#pragma once

#include <cstdint>
#include <cstring>

#include "qsassert.h"

class CQSAAllocator;

// One node of a parenthesised text tree: an atom, which is a text, or a list of nodes. Two machine words, no
// virtual functions. A new node is an empty list.
//
// A node isn't bound to an allocator: every call that allocates or releases gets one, and all calls on one
// tree get the same. The destructor releases nothing: Free comes first.
class CQSANode
{
public:
    CQSANode() = default;
    CQSANode(const CQSANode&) = delete;
    CQSANode& operator=(const CQSANode&) = delete;
    ~CQSANode() { QS_ASSERT(m_pData == 0); }

    // Most elements of a list: their array must have a size that the allocators' 32-bit sizes can tell.
    static constexpr uint32_t c_nMaxElements = UINT32_MAX / sizeof(CQSANode*);

    bool IsAtom() const { return (m_nFlags & c_nAtomFlag) != 0; }
    bool IsList() const { return !IsAtom(); }
    // Whether an atom was, or is to be, quoted in the file. Says nothing about a list.
    bool IsString() const { return (m_nFlags & c_nStringFlag) != 0; }

    // Number of elements of a list; 0 for an atom, which is reported.
    uint32_t GetNumElements() const;

    // Element of a list, owned by the list. Null for an atom or a bad index, which are reported.
    CQSANode* GetElement(uint32_t nIndex) const;

    // Overwrites a slot of a list and hands pNode over to it; the old element isn't freed. With an atom or a
    // bad index, which are reported, nothing happens and pNode stays the caller's.
    void SetElement(CQSANode* pNode, uint32_t nIndex);

    // Text of an atom, owned by the node. Empty for a list, which is reported; never null.
    const char* GetValue() const;

    // Makes the node an atom with a copy of pszValue, after releasing what it held. pszValue may be the
    // node's own value or the end of it, but not a text below it. False when memory is out or pszValue is
    // null; the node is then an empty list.
    bool SetValue(const char* pszValue, bool bString, CQSAAllocator* pAllocator);

    // Makes the node a list of nCount null elements, after releasing what it held. The caller fills each slot
    // with SetElement. False when memory is out; the node is then an empty list.
    bool AllocateElements(uint32_t nCount, CQSAAllocator* pAllocator);

    // Adds pNode behind the last element; the list owns it. Copies the whole array, so it is meant for the
    // few elements of a root. False when memory is out or the node is an atom (reported): nothing has changed
    // then and pNode stays the caller's.
    bool AppendElement(CQSANode* pNode, CQSAAllocator* pAllocator);

    // The same for nCount nodes in order with one new array; all or nothing.
    bool AppendElements(CQSANode* const* ppNodes, uint32_t nCount, CQSAAllocator* pAllocator);

    // Releases the content and everything below it. The node is an empty list afterwards.
    void Free(CQSAAllocator* pAllocator);

    // For loaders that carve contents out of an allocator in bulk: take over finished content, which must
    // come from the tree's allocator. Only for an empty node. pszText is terminated; ppElements holds nCount
    // pointers and needs no alignment.
    void AdoptValue(char* pszText, bool bString)
    {
        m_nFlags = bString ? c_nAtomFlag | c_nStringFlag : c_nAtomFlag;
        m_pData = pszText;
    }
    void AdoptElements(void* ppElements, uint32_t nCount)
    {
        m_nFlags = nCount;
        m_pData = ppElements;
    }

private:
    static constexpr uint32_t c_nAtomFlag = 0x80000000;
    static constexpr uint32_t c_nStringFlag = 0x40000000;

    // An allocator promises no alignment for blocks, so slots are read and written as bytes; it costs nothing
    // where the machine reads words from anywhere.
    CQSANode* LoadSlot(uint32_t nIndex) const
    {
        CQSANode* pNode;
        std::memcpy(&pNode, static_cast<const char*>(m_pData) + size_t(nIndex) * sizeof(pNode),
                    sizeof(pNode));
        return pNode;
    }

    uint32_t m_nFlags = 0;   // an atom's flags, or a list's number of elements
    void* m_pData = nullptr; // an atom's text, or a list's array of pointers
};

inline uint32_t CQSANode::GetNumElements() const
{
    QS_ASSERT(IsList());
    return IsList() ? m_nFlags : 0;
}

inline CQSANode* CQSANode::GetElement(uint32_t nIndex) const
{
    QS_ASSERT(IsList());
    QS_ASSERT(nIndex < m_nFlags);
    return IsList() && nIndex < m_nFlags ? LoadSlot(nIndex) : nullptr;
}

inline const char* CQSANode::GetValue() const
{
    QS_ASSERT(IsAtom());
    return IsAtom() ? static_cast<const char*>(m_pData) : "";
}
