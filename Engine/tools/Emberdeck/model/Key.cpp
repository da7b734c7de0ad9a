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
    const CKeySpan span = Fit(CKeySpan{m_nStartTime, m_nEndTime}, pPrev, pNext);
    m_nStartTime = span.m_nStart;
    m_nEndTime = span.m_nEnd;
}

CKeySpan CKey::Fit(CKeySpan span, const CKey* pPrev, const CKey* pNext)
{
    span.m_nStart = std::max(span.m_nStart, pPrev ? pPrev->m_nEndTime : 0);
    if (pNext)
        span.m_nEnd = std::min(span.m_nEnd, pNext->m_nStartTime);
    return span;
}
