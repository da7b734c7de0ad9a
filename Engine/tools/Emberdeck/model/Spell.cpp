#include "model/Spell.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "model/Serial.h"

namespace
{

// Every effect of the process counts, loaded and duplicated ones too.
uint64_t s_nNumSpells = 0;

} // namespace

CSpell::CSpell() : m_nSerial(CSerial().Get())
{
    SetName("Untitled FX " + std::to_string(s_nNumSpells++));
}

CSpell::CSpell(uint64_t nSerial) : m_nSerial(nSerial)
{
    SetName({});
}

void CSpell::SetName(std::string_view sName)
{
    sName = sName.substr(0, sName.find('\0')).substr(0, c_nMaxName);
    char szName[sizeof(m_szName)] = {}; // sName may be a part of the old name
    std::copy(sName.begin(), sName.end(), szName);
    std::memcpy(m_szName, szName, sizeof(m_szName));
}

bool CSpell::CopyFrom(const CSpell& other)
{
    if (this == &other)
        return true;
    m_Tracks.Clear();
    m_Tracks.m_nPhaseLength = other.m_Tracks.m_nPhaseLength;
    for (const std::unique_ptr<CTrack>& pSource : other.m_Tracks.Tracks())
    {
        CTrack* pTrack = m_Tracks.AddTrack();
        if (!pTrack)
            return false;
        for (const std::unique_ptr<CKey>& pKey : pSource->Keys())
        {
            if (!pTrack->AppendKey(pKey->Clone()))
                return false;
        }
    }
    m_Tracks.RecalcNextKeyID();
    return true;
}
