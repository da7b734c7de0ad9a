#include "timeline/gestures/TimeGesture.h"

#include <algorithm>

#include "app/StatusText.h"
#include "timeline/KeyIndex.h"

CTimeGesture::CTimeGesture(const CGestureContext& context, const char* pszVerb, CPoint ptDown)
    : CTrackGesture(context),
      m_ptCur(ptDown)
{
    const int64_t nTime = TimeFromPixel(context.m_Scale, ptDown.x);
    uint32_t nKeys = 0;
    for (CKey& key : Tracks().AllKeys())
    {
        if (!key.m_bSelected)
            continue;
        key.m_nDragStart = SaturateTime(nTime - key.m_nStartTime);
        key.m_nDragEnd = SaturateTime(int64_t(key.m_nEndTime) - key.m_nStartTime);
        ++nKeys;
    }
    m_sLabel = TellThings(pszVerb, nKeys, "Key");
}

bool CTimeGesture::Move(CPoint pt)
{
    if (pt.x == m_ptCur.x)
        return false;
    m_ptCur = pt;

    CKeyIndex index(Tracks());
    const int32_t nTime = TimeFromPixel(m_Context.m_Scale, pt.x);
    for (const std::unique_ptr<CTrack>& pTrack : Tracks().Tracks())
    {
        const auto& keys = pTrack->Keys();
        for (size_t i = 0; i < keys.size(); ++i)
        {
            CKey& key = *keys[i];
            if (!key.m_bSelected)
                continue;
            CStep step = {key,
                          i > 0 ? keys[i - 1].get() : nullptr,
                          i + 1 < keys.size() ? keys[i + 1].get() : nullptr,
                          index.TargetOf(key),
                          nTime,
                          key.m_nStartTime,
                          key.m_nEndTime};
            Place(step);
            Apply(key, step);
        }
    }
    EndStep();
    return true;
}

void CTimeGesture::Apply(CKey& key, const CStep& step)
{
    const int32_t nStart = SaturateTime(step.m_nStart);
    const int32_t nEnd = SaturateTime(step.m_nEnd);
    if (nStart == key.m_nStartTime && nEnd == key.m_nEndTime)
        return;
    Scope(m_sLabel).TouchKey(m_Context.m_Spell, key);
    key.m_nStartTime = nStart;
    key.m_nEndTime = nEnd;
}

void CTimeGesture::Release()
{
    for (const std::unique_ptr<CTrack>& pTrack : Tracks().Tracks())
    {
        const auto& keys = pTrack->Keys();
        const auto isSelected = [](const std::unique_ptr<CKey>& pKey) { return pKey->m_bSelected; };
        const auto startsEarlier = [](const std::unique_ptr<CKey>& pLeft, const std::unique_ptr<CKey>& pRight)
        { return pLeft->m_nStartTime < pRight->m_nStartTime; };
        if (std::is_sorted(keys.begin(), keys.end(), startsEarlier) ||
            std::none_of(keys.begin(), keys.end(), isSelected))
            continue;
        Scope(m_sLabel).TouchTrack(m_Context.m_Spell, *pTrack);
        pTrack->SortKeys();
    }
    CloseScope();
}
