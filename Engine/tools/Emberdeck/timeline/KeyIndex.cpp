#include "timeline/KeyIndex.h"

const CKey* CKeyIndex::TargetOf(const CKey& key)
{
    if (!key.m_bMotionLinked)
        return nullptr;
    if (!m_bFilled)
    {
        m_bFilled = true;
        m_Keys.reserve(m_Tracks.GetNumKeys());
        for (const std::unique_ptr<CTrack>& pTrack : m_Tracks.Tracks())
        {
            for (const std::unique_ptr<CKey>& pKey : pTrack->Keys())
                m_Keys.emplace(pKey->m_nKeyID, pKey.get()); // the first one stays
        }
    }
    const auto it = m_Keys.find(key.m_nMotionLinkID);
    return it == m_Keys.end() || it->second == &key ? nullptr : it->second;
}
