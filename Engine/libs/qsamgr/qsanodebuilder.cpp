#include "qsamgr/qsanodebuilder.h"

#include <algorithm>
#include <cstring>

#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsaconverter.h"
#include "qsmemorytracker.h"

CQSANodeBuilder::CQSANodeBuilder(CQSAAllocator* pAllocator) : m_pAllocator(pAllocator)
{
    QS_ASSERT(m_pAllocator);
}

CQSANodeBuilder::~CQSANodeBuilder()
{
    Reset();
}

bool CQSANodeBuilder::Push()
{
    if (m_nStackPos >= c_nMaxOpen)
        return false;
    m_Stack[m_nStackPos++] = {m_nCacheLen, 0};
    return true;
}

bool CQSANodeBuilder::AddValue(const char* pszValue, bool bString)
{
    CQSANode* pNode = m_pAllocator != nullptr ? m_pAllocator->AllocateNode() : nullptr;
    if (pNode == nullptr)
        return false;
    if (pNode->SetValue(pszValue, bString, m_pAllocator) && AddToCache(pNode))
        return true;
    m_pAllocator->FreeNode(pNode);
    return false;
}

bool CQSANodeBuilder::AddValue(int32_t nValue)
{
    char szNumber[128];
    CQSAConverter::IntToStr(nValue, szNumber, sizeof(szNumber));
    return AddValue(szNumber, false);
}

bool CQSANodeBuilder::PushValue(const char* pszValue, bool bString)
{
    return Push() && AddValue(pszValue, bString);
}

CQSANode* CQSANodeBuilder::Pop()
{
    if (m_nStackPos == 0)
        return nullptr;
    const StackEntry entry = m_Stack[--m_nStackPos];
    m_nCacheLen = entry.m_nFirst;
    CQSANode* pList = MakeList(entry.m_nFirst, entry.m_nCount);
    if (pList == nullptr || AddToCache(pList))
        return pList;
    m_pAllocator->FreeNode(pList);
    return nullptr;
}

// A list of the cached nodes from nFirst on, which leave the cache. When memory is out they are freed.
CQSANode* CQSANodeBuilder::MakeList(uint32_t nFirst, uint32_t nCount)
{
    CQSANode* pList = m_pAllocator != nullptr ? m_pAllocator->AllocateNode() : nullptr;
    if (pList == nullptr || !pList->AllocateElements(nCount, m_pAllocator))
    {
        for (uint32_t i = 0; i < nCount; ++i)
            m_pAllocator->FreeNode(TakeCacheElement(nFirst + i));
        if (pList != nullptr)
            m_pAllocator->FreeNode(pList);
        return nullptr;
    }
    for (uint32_t i = 0; i < nCount; ++i)
        pList->SetElement(TakeCacheElement(nFirst + i), i);
    return pList;
}

bool CQSANodeBuilder::PopAll()
{
    while (m_nStackPos != 0)
        Pop();
    return true;
}

uint32_t CQSANodeBuilder::DetachHeads(CQSANode** ppNodeList, uint32_t nMaxNodes)
{
    QS_ASSERT(ppNodeList);
    if (ppNodeList == nullptr)
        return 0;
    PopAll();
    for (uint32_t i = 0; i < m_nCacheLen; ++i)
    {
        if (i < nMaxNodes)
            ppNodeList[i] = GetCacheElement(i);
        else
            m_pAllocator->FreeNode(GetCacheElement(i));
    }
    const uint32_t nDetached = std::min(m_nCacheLen, nMaxNodes);
    ClearCache();
    return nDetached;
}

CQSANode* CQSANodeBuilder::DetachHead()
{
    CQSANode* pHead = nullptr;
    DetachHeads(&pHead, 1);
    return pHead;
}

uint32_t CQSANodeBuilder::DetachHeadsToList(CQSANode* pParent)
{
    if (pParent == nullptr)
        return 0;
    const uint32_t nMaxNodes = GetNumHeads();
    auto** ppNodes = static_cast<CQSANode**>(QSAllocateTracked(std::max(nMaxNodes, 1u) * sizeof(CQSANode*)));
    if (ppNodes == nullptr)
        return 0;
    uint32_t nHeads = DetachHeads(ppNodes, nMaxNodes);
    // One append for all: node by node, each would copy the array anew, and a file of a million values at the
    // top would take hours.
    if (nHeads != 0 && !pParent->AppendElements(ppNodes, nHeads, m_pAllocator))
    {
        for (uint32_t i = 0; i < nHeads; ++i)
            m_pAllocator->FreeNode(ppNodes[i]);
        nHeads = 0;
    }
    QSFree(ppNodes);
    return nHeads;
}

void CQSANodeBuilder::Reset()
{
    for (uint32_t i = 0; i < m_nCacheLen; ++i)
        m_pAllocator->FreeNode(GetCacheElement(i));
    ClearCache();
}

CQSANode* CQSANodeBuilder::GetCacheElement(uint32_t nIndex) const
{
    const uint32_t nRow = nIndex / c_nRowLen;
    QS_ASSERT(nRow < MAX_CACHE_ROWS);
    if (nRow >= MAX_CACHE_ROWS)
        return nullptr;
    QS_ASSERT(m_pCache[nRow]);
    return m_pCache[nRow] != nullptr ? m_pCache[nRow][nIndex % c_nRowLen] : nullptr;
}

CQSANode* CQSANodeBuilder::TakeCacheElement(uint32_t nIndex)
{
    CQSANode* pNode = GetCacheElement(nIndex);
    if (pNode != nullptr)
        m_pCache[nIndex / c_nRowLen][nIndex % c_nRowLen] = nullptr;
    return pNode;
}

bool CQSANodeBuilder::AddToCache(CQSANode* pNode)
{
    const uint32_t nRow = m_nCacheLen / c_nRowLen;
    if (nRow >= MAX_CACHE_ROWS)
        return false;
    if (m_pCache[nRow] == nullptr)
    {
        void* pRow = QSAllocateTracked(c_nRowLen * sizeof(CQSANode*));
        if (pRow == nullptr)
            return false;
        std::memset(pRow, 0, c_nRowLen * sizeof(CQSANode*));
        m_pCache[nRow] = static_cast<CQSANode**>(pRow);
    }
    m_pCache[nRow][m_nCacheLen % c_nRowLen] = pNode;
    if (m_nStackPos != 0)
        ++m_Stack[m_nStackPos - 1].m_nCount;
    ++m_nCacheLen;
    return true;
}

void CQSANodeBuilder::ClearCache()
{
    for (CQSANode**& pRow : m_pCache)
    {
        QSFree(pRow);
        pRow = nullptr;
    }
    m_nCacheLen = 0;
    m_nStackPos = 0;
}
