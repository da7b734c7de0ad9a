#include "qsamgr/qsanode.h"

#include "qsamgr/qsaallocator.h"

namespace
{
// Whether a pointer points into a text, its NUL included.
bool IsWithin(const char* pszPointer, const char* pszText)
{
    const auto nOffset = reinterpret_cast<uintptr_t>(pszPointer) - reinterpret_cast<uintptr_t>(pszText);
    return nOffset <= std::strlen(pszText);
}
} // namespace

void CQSANode::SetElement(CQSANode* pNode, uint32_t nIndex)
{
    QS_ASSERT(IsList());
    QS_ASSERT(nIndex < m_nFlags);
    if (IsList() && nIndex < m_nFlags && MakeSlots())
        StoreSlot(m_pData, nIndex, pNode);
}

bool CQSANode::SetValue(const char* pszValue, bool bString, CQSAAllocator* pAllocator)
{
    if (pAllocator == nullptr)
    {
        Free(pAllocator);
        return false;
    }

    // A node may be given its own value again, or the end of it: the old text must outlive the copy.
    void* pOwnText = nullptr;
    char szInline[c_nMaxInline + 1];
    if (IsAtom() && IsWithin(pszValue, GetValue()))
    {
        if (IsInline())
        {
            std::memcpy(szInline, InlineText(), sizeof(szInline));
            pszValue = szInline + (pszValue - InlineText());
        }
        else
        {
            pOwnText = m_pData;
        }
        m_nFlags = 0;
        m_nExtra = 0;
        m_pData = nullptr;
    }
    else
    {
        Free(pAllocator);
    }

    const size_t nLen = pszValue != nullptr ? std::strlen(pszValue) : 0;
    void* pText = nullptr;
    if (pszValue != nullptr && nLen < UINT32_MAX)
        pText = pAllocator->AllocateBlock(static_cast<uint32_t>(nLen + 1));
    if (pText != nullptr)
    {
        std::memcpy(pText, pszValue, nLen + 1);
        AdoptValue(static_cast<char*>(pText), bString);
    }
    if (pOwnText != nullptr)
        pAllocator->FreeBlock(pOwnText);
    return pText != nullptr;
}

bool CQSANode::AllocateElements(uint32_t nCount, CQSAAllocator* pAllocator)
{
    QS_ASSERT(pAllocator);
    Free(pAllocator);
    if (pAllocator == nullptr || nCount > c_nMaxElements)
        return false;
    if (nCount == 0)
        return true;

    const uint32_t nSize = nCount * uint32_t(sizeof(CQSANode*));
    void* pArray = pAllocator->AllocateBlock(nSize);
    if (pArray == nullptr)
        return false;
    // Null slots, so that Free finds nothing wild in a list that was never filled to its end.
    std::memset(pArray, 0, nSize);
    AdoptElements(pArray, nCount);
    return true;
}

bool CQSANode::AppendElement(CQSANode* pNode, CQSAAllocator* pAllocator)
{
    return AppendElements(&pNode, 1, pAllocator);
}

bool CQSANode::AppendElements(CQSANode* const* ppNodes, uint32_t nCount, CQSAAllocator* pAllocator)
{
    QS_ASSERT(pAllocator);
    QS_ASSERT(IsList());
    if (pAllocator == nullptr || !IsList() || nCount > c_nMaxElements - m_nFlags)
        return false;
    if (nCount == 0)
        return true;
    char* pAdded = GrowSlots(nCount, pAllocator);
    if (pAdded == nullptr)
        return false;
    std::memcpy(pAdded, ppNodes, size_t(nCount) * sizeof(CQSANode*));
    return true;
}

bool CQSANode::AppendNodes(CQSANode* pNodes, uint32_t nCount, CQSAAllocator* pAllocator)
{
    QS_ASSERT(pAllocator);
    QS_ASSERT(IsList());
    if (pAllocator == nullptr || !IsList() || nCount > c_nMaxElements - m_nFlags)
        return false;
    if (nCount == 0)
        return true;
    char* pAdded = GrowSlots(nCount, pAllocator);
    if (pAdded == nullptr)
        return false;
    for (uint32_t i = 0; i < nCount; ++i)
        StoreSlot(pAdded, i, pNodes + i);
    return true;
}

// A new array with nCount slots more, which the caller fills; gives the first of these. Null when memory is
// out; nothing has changed then.
char* CQSANode::GrowSlots(uint32_t nCount, CQSAAllocator* pAllocator)
{
    const uint32_t nSize = (m_nFlags + nCount) * uint32_t(sizeof(CQSANode*));
    auto* pArray = static_cast<char*>(pAllocator->AllocateBlock(nSize));
    if (pArray == nullptr)
        return nullptr;
    CopySlots(pArray);
    char* pAdded = pArray + size_t(m_nFlags) * sizeof(CQSANode*);
    if (m_pData != nullptr && m_nExtra == 0)
        pAllocator->FreeBlock(m_pData);
    m_nExtra = 0;
    AdoptElements(pArray, m_nFlags + nCount);
    return pAdded;
}

void CQSANode::CopySlots(char* pArray) const
{
    for (uint32_t i = 0; i < m_nFlags; ++i)
        StoreSlot(pArray, i, LoadSlot(i));
}

// Turns an array of nodes into one of pointers to them. False when memory is out; nothing has changed then.
bool CQSANode::MakeSlots()
{
    if (m_nExtra == 0)
        return true;
    const char* pOwner = static_cast<const char*>(m_pData) - size_t(m_nExtra) * alignof(CQSANode);
    CQSAAllocator* pAllocator = reinterpret_cast<const SOwner*>(pOwner)->m_pAllocator;
    auto* pArray = static_cast<char*>(pAllocator->AllocateBlock(m_nFlags * uint32_t(sizeof(CQSANode*))));
    QS_ASSERT(pArray);
    if (pArray == nullptr)
        return false;
    CopySlots(pArray);
    m_nExtra = 0;
    m_pData = pArray;
    return true;
}

void CQSANode::Free(CQSAAllocator* pAllocator)
{
    QS_ASSERT(pAllocator);
    if (pAllocator == nullptr)
        return;
    // What the loader put in place goes with its allocator alone.
    const bool bInPlace = IsAtom() ? IsInline() : m_nExtra != 0;
    if (!bInPlace)
    {
        if (IsList())
        {
            for (uint32_t i = 0; i < m_nFlags; ++i)
                pAllocator->FreeNode(LoadSlot(i));
        }
        if (m_pData != nullptr)
            pAllocator->FreeBlock(m_pData);
    }
    m_nFlags = 0;
    m_nExtra = 0;
    m_pData = nullptr;
}
