#include "timeline/gestures/MoveKeys.h"

#include <algorithm>

namespace
{

// A span of the key's length, by one of its ends.
struct CSpan
{
    int64_t m_nStart;
    int64_t m_nEnd;
    static CSpan From(int64_t nStart, int64_t nLength) { return CSpan{nStart, nStart + nLength}; }
    static CSpan UpTo(int64_t nEnd, int64_t nLength) { return CSpan{nEnd - nLength, nEnd}; }
};

} // namespace

// Every test looks at the place that the pointer asks for; a later one overrides an earlier one.
void CMoveKeys::Place(CStep& step) const
{
    const int64_t nLength = step.m_Key.m_nDragEnd;
    const int64_t nPhaseLength = Tracks().m_nPhaseLength;
    const CSpan wanted = CSpan::From(int64_t(step.m_nTime) - step.m_Key.m_nDragStart, nLength);

    CSpan span = wanted;
    if (!step.m_pPrev && wanted.m_nStart < 0)
        span = CSpan::From(0, nLength);
    // A key that is too long for the room before the end goes on hanging over it: no move makes an overlap or a
    // start before the origin.
    const int64_t nFirstStart = step.m_pPrev ? step.m_pPrev->m_nEndTime : 0;
    if (wanted.m_nEnd > nPhaseLength)
        span = CSpan::From(std::max(nPhaseLength - nLength, nFirstStart), nLength);
    if (step.m_pPrev && wanted.m_nStart < step.m_pPrev->m_nEndTime)
        span = CSpan::From(step.m_pPrev->m_nEndTime, nLength);
    if (step.m_pNext && wanted.m_nEnd >= step.m_pNext->m_nStartTime)
        span = CSpan::UpTo(step.m_pNext->m_nStartTime, nLength);
    if (step.m_pTarget)
    {
        const int64_t nFirst = int64_t(step.m_pTarget->m_nStartTime) + c_nLinkMargin;
        const int64_t nLast = int64_t(step.m_pTarget->m_nEndTime) - c_nLinkMargin;
        if (wanted.m_nStart < nFirst)
            span = CSpan::From(nFirst, nLength);
        if (wanted.m_nEnd >= nLast)
            span = CSpan::UpTo(nLast, nLength);
    }
    step.m_nStart = span.m_nStart;
    step.m_nEnd = span.m_nEnd;
}
