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
    if (IsList() && nIndex < m_nFlags)
        std::memcpy(static_cast<char*>(m_pData) + size_t(nIndex) * sizeof(pNode), &pNode, sizeof(pNode));
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
    if (IsAtom() && IsWithin(pszValue, GetValue()))
    {
        pOwnText = m_pData;
        m_nFlags = 0;
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

    const size_t nOldSize = size_t(m_nFlags) * sizeof(CQSANode*);
    const size_t nAddedSize = size_t(nCount) * sizeof(CQSANode*);
    char* pArray =
        static_cast<char*>(pAllocator->AllocateBlock(static_cast<uint32_t>(nOldSize + nAddedSize)));
    if (pArray == nullptr)
        return false;
    if (nOldSize != 0)
        std::memcpy(pArray, m_pData, nOldSize);
    std::memcpy(pArray + nOldSize, ppNodes, nAddedSize);
    if (m_pData != nullptr)
        pAllocator->FreeBlock(m_pData);
    AdoptElements(pArray, m_nFlags + nCount);
    return true;
}

void CQSANode::Free(CQSAAllocator* pAllocator)
{
    QS_ASSERT(pAllocator);
    if (pAllocator == nullptr)
        return;
    if (IsList())
    {
        for (uint32_t i = 0; i < m_nFlags; ++i)
            pAllocator->FreeNode(LoadSlot(i));
    }
    if (m_pData != nullptr)
        pAllocator->FreeBlock(m_pData);
    m_nFlags = 0;
    m_pData = nullptr;
}
