#include "qsamgr/qsautil.h"

#include <cstring>

#include "qsamgr/qsanode.h"
#include "qsamgr/qsanodeiterator.h"

bool CQSAUtil::IsListNamed(const CQSANode* pNode, const char* pszValue)
{
    if (pNode == nullptr || pszValue == nullptr || pNode->IsAtom() || pNode->GetNumElements() == 0)
        return false;
    const CQSANode* pName = pNode->GetElement(0);
    return pName != nullptr && pName->IsAtom() && std::strcmp(pName->GetValue(), pszValue) == 0;
}

CQSANode* CQSAUtil::ShallowFindList(const CQSANode* pNode, const char* pszValue)
{
    if (pNode == nullptr || pNode->IsAtom())
        return nullptr;
    const uint32_t nCount = pNode->GetNumElements();
    for (uint32_t i = 0; i < nCount; ++i)
    {
        CQSANode* pElement = pNode->GetElement(i);
        if (IsListNamed(pElement, pszValue))
            return pElement;
    }
    return nullptr;
}

uint32_t CQSAUtil::ShallowFindAll(std::vector<CQSANode*>& list, CQSANode* pRoot, const char* pszValue)
{
    QS_ASSERT(pszValue);
    if (pRoot == nullptr || pszValue == nullptr)
        return 0;
    CQSANodeIterator iterator(pRoot);
    CQSANode* pFirst = iterator.GetCursorElement();
    if (pFirst == nullptr)
        return 0;
    iterator.PushNode(pFirst);
    uint32_t nFound = 0;
    while (CQSANode* pList = iterator.FindNextList(pszValue))
    {
        list.push_back(pList);
        ++nFound;
    }
    return nFound;
}

bool CQSAUtil::IsFileCompressed(const char* pszFilename)
{
    QS_ASSERT(pszFilename);
    const size_t nLen = pszFilename != nullptr ? std::strlen(pszFilename) : 0;
    return nLen != 0 && (pszFilename[nLen - 1] == 'c' || pszFilename[nLen - 1] == 'C');
}
