#include "timeline/gestures/ResizeKeys.h"

#include <algorithm>

// The least length gives way to neighbour and origin, so that the edge of a short key isn't pushed past
// them. The link comes last, and looks at the edge with the least length kept.
void CResizeKeysLeft::Place(CStep& step) const
{
    const int64_t nBound = step.m_pPrev ? step.m_pPrev->m_nEndTime : 0;
    const int64_t nLatest = step.m_nEnd - c_nMinLength;
    int64_t nStart = int64_t(step.m_nTime) - step.m_Key.m_nDragStart;
    const bool bFree = nStart >= nBound;
    if (nStart >= nLatest)
        nStart = std::max(nLatest, nBound);

    int64_t nResult = bFree ? nStart : nBound;
    if (step.m_pTarget && nStart < int64_t(step.m_pTarget->m_nStartTime) + c_nLinkMargin)
        nResult = int64_t(step.m_pTarget->m_nStartTime) + c_nLinkMargin;
    if (nResult < step.m_nEnd)
        step.m_nStart = nResult;
}

void CResizeKeysRight::Place(CStep& step) const
{
    // At a neighbour the edge stops when it touches, at the end of the phase when it passes.
    int64_t nEnd = int64_t(step.m_nTime) - step.m_Key.m_nDragStart + step.m_Key.m_nDragEnd;
    const bool bAtNext = step.m_pNext && nEnd >= step.m_pNext->m_nStartTime;
    const bool bAtPhaseEnd = nEnd > m_nPhaseLength;
    if (nEnd <= step.m_nStart + c_nMinLength)
    {
        nEnd = std::min<int64_t>(step.m_nStart + c_nMinLength, m_nPhaseLength);
        if (step.m_pNext)
            nEnd = std::min<int64_t>(nEnd, step.m_pNext->m_nStartTime);
    }

    int64_t nResult = nEnd;
    if (bAtNext)
        nResult = step.m_pNext->m_nStartTime;
    if (bAtPhaseEnd) // beyond both, the nearer one holds: the key must not come to lie over its neighbours
        nResult = bAtNext ? std::min<int64_t>(nResult, m_nPhaseLength) : m_nPhaseLength;
    if (step.m_pTarget && int64_t(step.m_pTarget->m_nEndTime) - c_nLinkMargin <= nEnd)
        nResult = int64_t(step.m_pTarget->m_nEndTime) - c_nLinkMargin;
    if (nResult > step.m_nStart)
        step.m_nEnd = nResult;
}
