#include "timeline/KeyIndex.h"

const CKey* CKeyIndex::TargetOf(const CKey& key)
{
    if (!key.m_bMotionLinked)
        return nullptr;
    if (!m_bFilled)
    {
        m_bFilled = true;
        m_Keys.reserve(m_Tracks.GetNumKeys());
        for (const CKey& other : m_Tracks.AllKeys())
            m_Keys.emplace(other.m_nKeyID, &other); // the first one stays
    }
    const auto it = m_Keys.find(key.m_nMotionLinkID);
    return it == m_Keys.end() || it->second == &key ? nullptr : it->second;
}
