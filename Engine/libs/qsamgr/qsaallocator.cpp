#include "qsamgr/qsaallocator.h"

#include <algorithm>
#include <new>

#include "qsmemorytracker.h"

CQSANode* CQSADefaultAlloc::AllocateNode()
{
    void* pMemory = QSAllocateTracked(sizeof(CQSANode));
    return pMemory != nullptr ? new (pMemory) CQSANode : nullptr;
}

void CQSADefaultAlloc::FreeNode(CQSANode* pNode)
{
    if (pNode == nullptr)
        return;
    pNode->Free(this);
    pNode->~CQSANode();
    QSFree(pNode);
}

void* CQSADefaultAlloc::AllocateBlock(uint32_t nSize)
{
    return QSAllocateTracked(nSize);
}

void CQSADefaultAlloc::FreeBlock(void* pBlock)
{
    QSFree(pBlock);
}

CQSADefaultAlloc& GetSharedDefaultAlloc()
{
    static CQSADefaultAlloc s_Alloc;
    return s_Alloc;
}

CQSALoadOnlyAlloc::CQSALoadOnlyAlloc(uint32_t nBlockSize) : m_nBlockSize(nBlockSize)
{
    QS_ASSERT(nBlockSize > 1024);
}

CQSALoadOnlyAlloc::~CQSALoadOnlyAlloc()
{
    FreeAll();
}

bool CQSALoadOnlyAlloc::StartBlock(uint32_t nSize)
{
    if (ReuseBlock(nSize))
        return true;
    const uint32_t nBlock = std::max(nSize, m_nBlockSize);
    char* pMemory = static_cast<char*>(QSAllocateTracked(nBlock));
    if (pMemory == nullptr)
        return false;
    void* pRecord = QSAllocateTracked(sizeof(MemBlock));
    if (pRecord == nullptr)
    {
        QSFree(pMemory);
        return false;
    }
    m_pHead = new (pRecord) MemBlock{pMemory, pMemory, nBlock, m_pHead};
    m_nMemLeft = nBlock;
    return true;
}

// The first spare block that is large enough; smaller ones wait for smaller requests.
bool CQSALoadOnlyAlloc::ReuseBlock(uint32_t nSize)
{
    for (MemBlock** ppBlock = &m_pSpare; *ppBlock != nullptr; ppBlock = &(*ppBlock)->m_pNext)
    {
        MemBlock* pBlock = *ppBlock;
        if (pBlock->m_nSize < nSize)
            continue;
        *ppBlock = pBlock->m_pNext;
        pBlock->m_pNext = m_pHead;
        pBlock->m_pCursor = pBlock->m_pMemory;
        m_pHead = pBlock;
        m_nMemLeft = pBlock->m_nSize;
        return true;
    }
    return false;
}

void* CQSALoadOnlyAlloc::Take(uint32_t nSize)
{
    QS_ASSERT(m_nMemLeft >= nSize);
    QS_ASSERT(m_pHead);
    if (m_nMemLeft < nSize || m_pHead == nullptr)
        return nullptr;
    void* pResult = m_pHead->m_pCursor;
    m_pHead->m_pCursor += nSize;
    m_nMemLeft -= nSize;
    return pResult;
}

void* CQSALoadOnlyAlloc::AllocateBlock(uint32_t nSize)
{
    // A request for nothing still needs a block to point into.
    if ((m_nMemLeft < nSize || m_pHead == nullptr) && !StartBlock(nSize))
        return nullptr;
    return Take(nSize);
}

void* CQSALoadOnlyAlloc::AllocateAligned(uint32_t nSize)
{
    if (m_pHead != nullptr)
    {
        const auto nPad =
            static_cast<uint32_t>(-reinterpret_cast<uintptr_t>(m_pHead->m_pCursor) % alignof(CQSANode));
        if (m_nMemLeft >= nPad && m_nMemLeft - nPad >= nSize)
        {
            Take(nPad);
            return Take(nSize);
        }
    }
    return StartBlock(nSize) ? Take(nSize) : nullptr; // a block's start is aligned
}

CQSANode* CQSALoadOnlyAlloc::AllocateNode()
{
    void* pMemory = AllocateAligned(sizeof(CQSANode));
    return pMemory != nullptr ? new (pMemory) CQSANode : nullptr;
}

void CQSALoadOnlyAlloc::FreeNode(CQSANode*) {}

void CQSALoadOnlyAlloc::FreeBlock(void*) {}

void CQSALoadOnlyAlloc::FreeBlocks(MemBlock*& pFirst)
{
    while (pFirst != nullptr)
    {
        MemBlock* pBlock = pFirst;
        pFirst = pBlock->m_pNext;
        QSFree(pBlock->m_pMemory);
        QSFree(pBlock);
    }
}

void CQSALoadOnlyAlloc::FreeAll()
{
    FreeBlocks(m_pHead);
    FreeBlocks(m_pSpare);
    m_nMemLeft = 0;
}

void CQSALoadOnlyAlloc::Reset()
{
    // One by one to the front, so that the oldest comes first again: the same load then takes the same blocks.
    while (m_pHead != nullptr)
    {
        MemBlock* pBlock = m_pHead;
        m_pHead = pBlock->m_pNext;
        pBlock->m_pNext = m_pSpare;
        m_pSpare = pBlock;
    }
    m_nMemLeft = 0;
}
