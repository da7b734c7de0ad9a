#include "model/TrackList.h"

#include <algorithm>
#include <utility>

#include "model/MakeOrNull.h"

namespace
{

// Tells the keys of all tracks from nFirst on which track holds them.
void RenumberFrom(const std::vector<std::unique_ptr<CTrack>>& tracks, uint32_t nFirst)
{
    for (uint32_t i = nFirst; i < tracks.size(); ++i)
    {
        for (const std::unique_ptr<CKey>& pKey : tracks[i]->Keys())
            pKey->m_nTrack = i;
    }
}

} // namespace

CTrack* CTrackList::GetTrack(uint32_t nTrack) const
{
    return nTrack < m_Tracks.size() ? m_Tracks[nTrack].get() : nullptr;
}

uint32_t CTrackList::GetTrackNumber(const CTrack* pTrack) const
{
    for (uint32_t i = 0; i < m_Tracks.size(); ++i)
    {
        if (m_Tracks[i].get() == pTrack)
            return i;
    }
    return UINT32_MAX;
}

CTrack* CTrackList::AddTrack()
{
    return InsertTrackAt(GetNumTracks());
}

CTrack* CTrackList::InsertTrackAfter(const CTrack* pTrack)
{
    if (!pTrack)
        return InsertTrackAt(0);
    const uint32_t nTrack = GetTrackNumber(pTrack);
    return nTrack < m_Tracks.size() ? InsertTrackAt(nTrack + 1) : nullptr;
}

CTrack* CTrackList::InsertTrackAt(uint32_t nTrack)
{
    std::unique_ptr<CTrack> pNew = m_Tracks.size() < c_nMaxTracks ? MakeOrNull<CTrack>() : nullptr;
    if (!pNew || !TryAllocating([&] { m_Tracks.insert(m_Tracks.begin() + nTrack, std::move(pNew)); }))
        return nullptr;
    RenumberFrom(m_Tracks, nTrack + 1);
    return m_Tracks[nTrack].get();
}

std::unique_ptr<CTrack> CTrackList::RemoveTrack(const CTrack* pTrack)
{
    const uint32_t nTrack = GetTrackNumber(pTrack);
    if (nTrack >= m_Tracks.size())
        return nullptr;
    std::unique_ptr<CTrack> pRemoved = std::move(m_Tracks[nTrack]);
    m_Tracks.erase(m_Tracks.begin() + nTrack);
    RenumberFrom(m_Tracks, nTrack);
    return pRemoved;
}

void CTrackList::Renumber()
{
    RenumberFrom(m_Tracks, 0);
}

void CTrackList::Clear()
{
    m_Tracks.clear();
}

CKey* CTrackList::FindKey(uint32_t nID) const
{
    for (CKey& key : AllKeys())
    {
        if (key.m_nKeyID == nID)
            return &key;
    }
    return nullptr;
}

CTrack* CTrackList::FindTrackOf(const CKey* pKey) const
{
    // By address alone: the key may be gone, so its own track number isn't asked.
    for (const std::unique_ptr<CTrack>& pTrack : m_Tracks)
    {
        if (pTrack->IndexOf(pKey) >= 0)
            return pTrack.get();
    }
    return nullptr;
}

uint32_t CTrackList::GetNumKeys() const
{
    uint32_t nCount = 0;
    for (const std::unique_ptr<CTrack>& pTrack : m_Tracks)
        nCount += pTrack->GetNumKeys();
    return nCount;
}

void CTrackList::RecalcNextKeyID()
{
    for (const CKey& key : AllKeys())
        m_nNextKeyID = std::max(m_nNextKeyID, key.m_nKeyID);
    ++m_nNextKeyID;
}

uint32_t CTrackList::TakeKeyID()
{
    if (!FindKey(m_nNextKeyID))
        return m_nNextKeyID++;

    // Ids of a file have run the counter over its end. Among one number more than there are keys, one is free.
    std::vector<bool> used(size_t(GetNumKeys()) + 1);
    for (const CKey& key : AllKeys())
    {
        if (key.m_nKeyID < used.size())
            used[key.m_nKeyID] = true;
    }
    const auto nID = static_cast<uint32_t>(std::find(used.begin(), used.end(), false) - used.begin());
    m_nNextKeyID = nID + 1;
    return nID;
}
