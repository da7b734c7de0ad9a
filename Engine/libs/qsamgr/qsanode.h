#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "qsassert.h"

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

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
    // bad index, which are reported, nothing happens and pNode stays the caller's. The same when memory is
    // out, which only a list that the text loader made can need here, at its first call.
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

    // The same for nCount nodes that stand side by side.
    bool AppendNodes(CQSANode* pNodes, uint32_t nCount, CQSAAllocator* pAllocator);

    // Releases the content and everything below it. The node is an empty list afterwards.
    void Free(CQSAAllocator* pAllocator);

    // The rest is for loaders, which carve contents out of an allocator in bulk. Each takes over finished
    // content that comes from the tree's allocator, and is only for an empty node.

    // pszText is terminated.
    void AdoptValue(char* pszText, bool bString)
    {
        m_nFlags = AtomFlags(bString);
        m_pData = pszText;
    }
    // ppElements holds nCount pointers and needs no alignment.
    void AdoptElements(void* ppElements, uint32_t nCount)
    {
        m_nFlags = nCount;
        m_pData = ppElements;
    }

    // Most bytes of a text that fit into a node itself, and how far behind the node's start they lie.
    static constexpr uint32_t c_nMaxInline = sizeof(uint32_t) + sizeof(void*) - 1;
    static constexpr uint32_t c_nInlineBefore = sizeof(uint32_t);
    // Copies a text of at most c_nMaxInline bytes into the node, with a NUL. c_nInlineBefore bytes before
    // pText and c_nMaxInline + 1 from there on must be readable.
    void AdoptInline(const char* pText, uint32_t nLen, bool bString);
    // Whether an atom's text lies so, with c_nMaxInline + 1 bytes to read from its start.
    bool HoldsText() const { return IsInline(); }

    // Before an array of nodes that AdoptNodes is given, at most 2^32 node alignments away: where a change to
    // pointers takes memory from.
    struct alignas(alignof(std::max_align_t)) SOwner
    {
        CQSAAllocator* m_pAllocator;
    };
    // The nodes themselves side by side instead of pointers to them: half the memory of a list of short
    // atoms, and nothing to look up.
    void AdoptNodes(CQSANode* pNodes, uint32_t nCount, const SOwner* pOwner)
    {
        const uintptr_t nBytes = reinterpret_cast<uintptr_t>(pNodes) - reinterpret_cast<uintptr_t>(pOwner);
        const auto nExtra = static_cast<uint32_t>(nBytes / alignof(CQSANode));
#if defined(__x86_64__)
        // Stored as a whole, and so loaded as a whole a moment later without waiting.
        const auto nFirst = static_cast<long long>(nCount | uint64_t(nExtra) << 32);
        StoreWhole(_mm_set_epi64x(static_cast<long long>(reinterpret_cast<uintptr_t>(pNodes)), nFirst));
#else
        m_nFlags = nCount;
        m_nExtra = nExtra;
        m_pData = pNodes;
#endif
    }
    // Such an array for whoever walks a whole list; null for a list of pointers.
    const CQSANode* GetNodes() const
    {
        return IsList() && m_nExtra != 0 ? static_cast<const CQSANode*>(m_pData) : nullptr;
    }
    // Moves nodes to fresh memory while nobody else has seen them. They are gone where they stood.
    static void Relocate(void* pTo, const CQSANode* pFrom, size_t nCount)
    {
        std::memcpy(pTo, static_cast<const void*>(pFrom), nCount * sizeof(CQSANode));
    }

private:
    static constexpr uint32_t c_nAtomFlag = 0x80000000;
    static constexpr uint32_t c_nStringFlag = 0x40000000;
    static constexpr uint32_t c_nInlineFlag = 0x20000000; // an atom's text lies in the node

    static constexpr uint32_t AtomFlags(bool bString)
    {
        return bString ? c_nAtomFlag | c_nStringFlag : c_nAtomFlag;
    }
#if defined(__x86_64__)
    void StoreWhole(__m128i vNode)
    {
        static_assert(sizeof(vNode) == 16); // the size of a node
        _mm_storeu_si128(reinterpret_cast<__m128i*>(this), vNode);
    }
#endif
    bool IsInline() const
    {
        return (m_nFlags & c_nInlineFlag) != 0;
    }
    char* InlineText()
    {
        return reinterpret_cast<char*>(this) + offsetof(CQSANode, m_nExtra);
    }
    const char* InlineText() const
    {
        return reinterpret_cast<const char*>(this) + offsetof(CQSANode, m_nExtra);
    }

    // An allocator promises no alignment for blocks, so slots are read and written as bytes; it costs nothing
    // where the machine reads words from anywhere.
    CQSANode* LoadSlot(uint32_t nIndex) const
    {
        if (m_nExtra != 0)
            return static_cast<CQSANode*>(m_pData) + nIndex;
        CQSANode* pNode;
        std::memcpy(&pNode, static_cast<const char*>(m_pData) + size_t(nIndex) * sizeof(pNode),
                    sizeof(pNode));
        return pNode;
    }
    static void StoreSlot(void* pArray, uint32_t nIndex, CQSANode* pNode)
    {
        std::memcpy(static_cast<char*>(pArray) + size_t(nIndex) * sizeof(pNode), &pNode, sizeof(pNode));
    }
    char* GrowSlots(uint32_t nCount, CQSAAllocator* pAllocator);
    void CopySlots(char* pArray) const;
    bool MakeSlots();

    uint32_t m_nFlags = 0; // an atom's flags, or a list's number of elements
    // A list: 0 for an array of pointers; for one of nodes how far before it its SOwner stands, counted in
    // node alignments. An atom: from here on its text, if that lies in the node.
    uint32_t m_nExtra = 0;
    void* m_pData = nullptr; // an atom's text, or a list's array
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
    return !IsAtom() ? "" : IsInline() ? InlineText() : static_cast<const char*>(m_pData);
}

inline void CQSANode::AdoptInline(const char* pText, uint32_t nLen, bool bString)
{
    const uint32_t nFlags = AtomFlags(bString) | c_nInlineFlag;
#if defined(__x86_64__)
    // What surrounds the text is read with it and masked out.
    struct alignas(16) SMask
    {
        unsigned char m_aByte[sizeof(CQSANode)];
    };
    static constexpr auto c_aKept = []
    {
        std::array<SMask, c_nMaxInline + 1> kept{};
        for (uint32_t n = 0; n <= c_nMaxInline; ++n)
        {
            for (uint32_t i = 0; i < n; ++i)
                kept[n].m_aByte[c_nInlineBefore + i] = 0xFF;
        }
        return kept;
    }();
    const __m128i vText = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pText - c_nInlineBefore));
    const __m128i vKept = _mm_load_si128(reinterpret_cast<const __m128i*>(&c_aKept[nLen]));
    StoreWhole(_mm_or_si128(_mm_and_si128(vText, vKept), _mm_cvtsi32_si128(static_cast<int>(nFlags))));
#else
    m_nFlags = nFlags;
    std::memset(InlineText(), 0, c_nMaxInline + 1);
    std::memcpy(InlineText(), pText, nLen);
#endif
}
