#include "qsamgr/qsaparseutils.h"

#include "qsamgr/qsaconverter.h"
#include "qsamgr/qsanode.h"

int32_t GetInt32(const CQSANode* pNode)
{
    QS_ASSERT(pNode);
    if (pNode == nullptr)
        return 0;
    QS_ASSERT(pNode->IsAtom());
    return pNode->IsAtom() ? CQSAConverter::StrToInt(pNode->GetValue()) : 0;
}
