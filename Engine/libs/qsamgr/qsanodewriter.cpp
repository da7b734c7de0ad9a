#include "qsamgr/qsanodewriter.h"

#include "qsamgr/qsanode.h"
#include "qsamgr/qsawriter.h"

bool CQSANodeWriter::SaveNode(const CQSANode* pNode, CQSAWriter* pWriter)
{
    QS_ASSERT(pNode);
    QS_ASSERT(pWriter);
    if (pNode == nullptr || pWriter == nullptr)
        return false;
    QS_ASSERT(pNode->IsList());
    if (!pNode->IsList() || !pWriter->IsValid())
        return pNode->IsList() && pWriter->BeginNode(); // which reports it
    return QSASaveText(*pNode, pWriter->m_Layout, *pWriter->m_pFile);
}
