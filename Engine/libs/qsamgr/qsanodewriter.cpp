#include "qsamgr/qsanodewriter.h"

#include "qsamgr/qsanode.h"
#include "qsamgr/qsawriter.h"

bool CQSANodeWriter::SaveNode(const CQSANode* pNode, CQSAWriter* pWriter)
{
    QS_ASSERT(pNode);
    QS_ASSERT(pWriter);
    return pNode != nullptr && pWriter != nullptr && SaveNodeRecurse(pWriter, pNode);
}

bool CQSANodeWriter::SaveNodeRecurse(CQSAWriter* pWriter, const CQSANode* pNode)
{
    QS_ASSERT(pNode);
    if (pNode == nullptr)
        return false; // a slot that nobody filled
    QS_ASSERT(pNode->IsList());
    if (!pNode->IsList() || !pWriter->BeginNode())
        return false;
    for (uint32_t i = 0; i < pNode->GetNumElements(); ++i)
    {
        const CQSANode* pElement = pNode->GetElement(i);
        const bool bAtom = pElement != nullptr && pElement->IsAtom();
        if (bAtom ? !pWriter->Write(pElement->GetValue(), pElement->IsString())
                  : !SaveNodeRecurse(pWriter, pElement))
            return false;
    }
    return pWriter->EndNode();
}
