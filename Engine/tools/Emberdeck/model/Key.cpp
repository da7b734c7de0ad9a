#include "model/Key.h"

#include <algorithm>

#include "model/MakeOrNull.h"

std::unique_ptr<CKey> CKey::Clone() const
{
    return MakeOrNull<CKey>(*this);
}

void CKey::Link(uint32_t nID)
{
    m_bMotionLinked = true;
    m_nMotionLinkID = nID;
}

void CKey::Unlink()
{
    m_bMotionLinked = false;
    m_nMotionLinkID = 0;
}

void CKey::FitBetween(const CKey* pPrev, const CKey* pNext)
{
    m_nStartTime = std::max(m_nStartTime, pPrev ? pPrev->m_nEndTime : 0);
    if (pNext)
        m_nEndTime = std::min(m_nEndTime, pNext->m_nStartTime);
}
