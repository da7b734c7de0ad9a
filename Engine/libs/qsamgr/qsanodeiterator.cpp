#include "qsamgr/qsanodeiterator.h"

#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsautil.h"

CQSANodeIterator::CQSANodeIterator(CQSANode* pRoot)
{
    CQSADefaultAlloc& alloc = GetSharedDefaultAlloc();
    CQSANode* pHead = alloc.AllocateNode();
    if (pHead != nullptr && pHead->AllocateElements(1, &alloc))
        pHead->SetElement(pRoot, 0);
    m_pNodeStack[0] = pHead;
    m_nOffsetStack[0] = 0;
}

CQSANodeIterator::~CQSANodeIterator()
{
    CQSANode* pHead = m_pNodeStack[0];
    // The walked tree is taken out of reach first: only the head goes.
    if (pHead != nullptr && pHead->GetNumElements() != 0)
        pHead->SetElement(nullptr, 0);
    GetSharedDefaultAlloc().FreeNode(pHead);
}

bool CQSANodeIterator::PushNode(CQSANode* pNode)
{
    QS_ASSERT(pNode);
    QS_ASSERT(m_nStackPos < 1024 - 1);
    if (pNode == nullptr || m_nStackPos >= c_nMaxStack - 1)
        return false;
    ++m_nStackPos;
    m_pNodeStack[m_nStackPos] = pNode;
    m_nOffsetStack[m_nStackPos] = 0;
    return true;
}

CQSANode* CQSANodeIterator::GetCursorElement() const
{
    if (GetHead() == nullptr)
        return nullptr;
    QS_ASSERT(GetHead()->IsList());
    return GetHead()->GetElement(GetOffset());
}

CQSANode* CQSANodeIterator::NextList()
{
    const CQSANode* pHead = GetHead();
    const uint32_t nCount = pHead != nullptr ? pHead->GetNumElements() : 0;
    for (uint32_t i = GetOffset(); i < nCount; ++i)
    {
        CQSANode* pElement = pHead->GetElement(i);
        if (pElement != nullptr && pElement->IsList())
        {
            SetOffset(i + 1);
            return pElement;
        }
    }
    SetOffset(nCount);
    return nullptr;
}

CQSANode* CQSANodeIterator::FindNextList(const char* pszValue)
{
    CQSANode* pList = NextList();
    while (pList != nullptr && !CQSAUtil::IsListNamed(pList, pszValue))
        pList = NextList();
    return pList;
}
