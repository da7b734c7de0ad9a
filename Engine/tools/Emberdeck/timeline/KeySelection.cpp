#include "timeline/KeySelection.h"

#include <algorithm>
#include <cstdlib>

namespace
{

int64_t MiddleOf(const CKey& key)
{
    return (int64_t(key.m_nStartTime) + key.m_nEndTime) / 2;
}

// Null: the track is empty.
CKey* NearestKey(const CTrack& track, int64_t nTime)
{
    CKey* pNearest = nullptr;
    for (const std::unique_ptr<CKey>& pKey : track.Keys())
    {
        if (!pNearest || std::llabs(MiddleOf(*pKey) - nTime) < std::llabs(MiddleOf(*pNearest) - nTime))
            pNearest = pKey.get();
    }
    return pNearest;
}

// The keys of a track and the free space behind the last one, which is null, make a ring.
CKey* StepInRing(const CTrack& track, const CKey* pFrom, bool bNext)
{
    const int64_t nKeys = track.GetNumKeys();
    int64_t nPlace = nKeys;
    for (int64_t i = 0; i < nKeys; ++i)
    {
        if (track.GetKey(uint32_t(i)) == pFrom)
            nPlace = i;
    }
    nPlace = (nPlace + (bNext ? 1 : nKeys)) % (nKeys + 1);
    return nPlace == nKeys ? nullptr : track.GetKey(uint32_t(nPlace));
}

} // namespace

void CKeySelection::SetCurKey(CKey* pKey)
{
    if (pKey)
        pKey->m_bSelected = true;
    m_pCurKey = pKey;
}

bool CKeySelection::Clear()
{
    bool bChanged = false;
    for (CKey& key : m_Tracks.AllKeys())
    {
        bChanged = bChanged || key.m_bSelected;
        key.m_bSelected = false;
    }
    return bChanged;
}

CKey* CKeySelection::GetFirst() const
{
    for (CKey& key : m_Tracks.AllKeys())
    {
        if (key.m_bSelected)
            return &key;
    }
    return nullptr;
}

uint32_t CKeySelection::GetCount() const
{
    uint32_t nCount = 0;
    for (const CKey& key : m_Tracks.AllKeys())
        nCount += key.m_bSelected ? 1 : 0;
    return nCount;
}

std::vector<CKey*> CKeySelection::GetKeys() const
{
    std::vector<CKey*> selected;
    for (CKey& key : m_Tracks.AllKeys())
    {
        if (key.m_bSelected)
            selected.push_back(&key);
    }
    return selected;
}

void CKeySelection::Select(const std::vector<CKey*>& keys, CTrack* pTrack)
{
    if (keys.empty() && !pTrack)
        return;
    Clear();
    for (CKey* pKey : keys)
        pKey->m_bSelected = true;
    SetCurKey(keys.empty() ? nullptr : keys.front());
    SetCurTrack(keys.empty() ? pTrack : m_Tracks.FindTrackOf(keys.front()));
}

bool CKeySelection::Step(EKeyStep eStep, bool bAdd)
{
    if (m_Tracks.GetNumTracks() == 0)
        return false;
    CTrack* pTrack = m_pCurKey ? m_Tracks.GetTrack(m_pCurKey->m_nTrack) : m_pCurTrack;
    CKey* pKey = m_pCurKey;
    if (!pTrack)
    {
        pTrack = m_Tracks.GetTrack(0);
        pKey = NearestKey(*pTrack, 0);
    }
    else if (eStep == EKeyStep::ePrevious || eStep == EKeyStep::eNext)
    {
        pKey = StepInRing(*pTrack, pKey, eStep == EKeyStep::eNext);
    }
    else
    {
        const int64_t nTrack = int64_t(m_Tracks.GetTrackNumber(pTrack)) + (eStep == EKeyStep::eUp ? -1 : 1);
        if (nTrack < 0 || nTrack >= m_Tracks.GetNumTracks())
            return false;
        pTrack = m_Tracks.GetTrack(uint32_t(nTrack));
        pKey = NearestKey(*pTrack, pKey ? MiddleOf(*pKey) : 0);
    }
    if (!bAdd)
        Clear();
    m_pCurTrack = pTrack;
    SetCurKey(pKey);
    return true;
}

void CKeySelection::ForgetGone()
{
    if (m_pCurKey && !m_Tracks.FindTrackOf(m_pCurKey))
        m_pCurKey = nullptr;
    if (m_pCurTrack && m_Tracks.GetTrackNumber(m_pCurTrack) >= m_Tracks.GetNumTracks())
        m_pCurTrack = nullptr;
}
