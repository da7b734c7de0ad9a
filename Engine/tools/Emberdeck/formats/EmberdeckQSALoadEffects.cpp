#include <algorithm>
#include <cstring>

#include "formats/LeafLoaders.h"
#include "model/MakeOrNull.h"

namespace
{

constexpr CFieldName c_EffectName = "effect";
constexpr CFieldName c_KeyName = "key";

} // namespace

const CFieldName& CEffectLoader::ListName() const
{
    return c_EffectName;
}

bool CEffectLoader::LoadLeaf(const CQSANode& node, HLibraryItem hParent)
{
    if (LoadEffect(node, hParent))
        return true;
    AppendError("Error loading effect");
    return false;
}

bool CEffectLoader::LoadEffect(const CQSANode& node, HLibraryItem hParent)
{
    static constexpr std::array<CFieldName, 3> c_aNames = {"name", "length", "key-list"};
    const CNodeFields<3> fields(node, c_aNames, TellingSkipped());
    const char* pszName = FindValue(fields, 0);
    const char* pszLength = FindValue(fields, 1);
    if (!pszName || !pszLength)
    {
        AppendError("Error finding name and length of effect");
        return false;
    }
    CSpell* pSpell = m_SpellMgr.AddSpell();
    if (!pSpell)
    {
        AppendError("Unable to allocate memory for effect %s", pszName);
        return false;
    }
    if (m_Findings)
        m_Findings.EnterObject(pszName);
    bool bFilled = false;
    if (!TryAllocating([&]
                       { bFilled = FillEffect(*pSpell, pszName, pszLength, fields.FindList(2), hParent); }))
        AppendError("Unable to allocate memory for effect %s", pszName);
    if (m_Findings)
        m_Findings.EnterObject(nullptr);
    return bFilled;
}

bool CEffectLoader::FillEffect(CSpell& spell, const char* pszName, const char* pszLength,
                               const CQSANode* pKeyList, HLibraryItem hParent)
{
    spell.SetName(std::string_view(pszName).substr(0, CSpell::c_nMaxName));
    spell.m_Tracks.m_nPhaseLength = ReadInt(pszLength, "length");
    if (m_Findings && std::strlen(pszName) > CSpell::c_nMaxName)
        m_Findings.Tell(QSFormat("The name was cut to %u bytes.", CSpell::c_nMaxName));

    if (pKeyList && !LoadKeys(spell, *pKeyList))
        return false;
    spell.m_Tracks.RecalcNextKeyID();
    if (m_Findings)
        m_Findings.TellLinks(spell);
    if (m_pTree && !m_pTree->InsertLeaf(spell.m_szName, hParent, &spell))
    {
        AppendError("Unable to allocate memory for effect %s", pszName);
        return false;
    }
    return true;
}

// Of a key that failed: the key itself has no type to be called by.
void CEffectLoader::TellIfTypeIsMissing(const CSpell& spell, const CQSANode& key)
{
    static constexpr std::array<CFieldName, 3> c_aNames = {"name", "type", "id"};
    const CNodeFields<3> fields(key, c_aNames, [](const CQSANode&) {});
    const char* pszName = fields.FindValue(0);
    const char* pszType = fields.FindValue(1);
    const char* pszID = fields.FindValue(2);
    if (pszType && !m_Module.FindType(pszType))
        m_Findings.TellMissingType(
            pszType, spell.m_szName,
            QSFormat("%s, id %s", pszName && *pszName ? pszName : pszType, pszID ? pszID : "?"));
}

bool CEffectLoader::LoadKeys(CSpell& spell, const CQSANode& keyList)
{
    CTrackFills fills;
    for (uint32_t i = 1; i < keyList.GetNumElements(); ++i)
    {
        const CQSANode& node = *keyList.GetElement(i);
        if (!IsListNamed(node, c_KeyName))
        {
            if (m_Findings)
                m_Findings.TellSkipped(node);
            continue;
        }
        std::unique_ptr<CKey> pKey = LoadKey(node);
        if (!pKey)
        {
            TellIfTypeIsMissing(spell, node);
            AppendError("Error loading key for effect %s", spell.m_szName);
            return false;
        }
        if (!PlaceLoadedKey(spell.m_Tracks, fills, std::move(pKey)))
        {
            AppendError("Unable to allocate track for effect %s", spell.m_szName);
            return false;
        }
    }
    for (uint32_t i = 0; i < fills.size(); ++i)
    {
        if (!fills[i].Finish(*spell.m_Tracks.GetTrack(i)))
        {
            AppendError("Unable to allocate track for effect %s", spell.m_szName);
            return false;
        }
    }
    return true;
}

bool CEffectLoader::AddTracksFor(CTrackList& tracks, uint32_t nTrack)
{
    if (nTrack < tracks.GetNumTracks())
        return true;
    // A damaged number may ask for billions of tracks.
    const uint64_t nNew = uint64_t(nTrack) + 1 - tracks.GetNumTracks();
    if (nTrack >= CTrackList::c_nMaxTracks || m_nTracksMade + nNew > c_nMaxSpareTracks + m_nKeysLoaded)
        return false;
    m_nTracksMade += nNew;
    while (nTrack >= tracks.GetNumTracks())
    {
        if (!tracks.AddTrack())
            return false;
    }
    return true;
}

bool CEffectLoader::PlaceLoadedKey(CTrackList& tracks, CTrackFills& fills, std::unique_ptr<CKey> pKey)
{
    ++m_nKeysLoaded;
    if (!AddTracksFor(tracks, pKey->m_nTrack))
        return false;
    if (pKey->m_nTrack >= fills.size())
        fills.resize(pKey->m_nTrack + size_t(1));
    CTrackFill& fill = fills[pKey->m_nTrack];
    const int32_t nStart = pKey->m_nStartTime;
    const int32_t nEnd = pKey->m_nEndTime;
    const CKey* pPlaced = fill.Place(std::move(pKey));
    if (!pPlaced)
        return false;
    if (m_Findings)
    {
        m_Findings.EnterKey(pPlaced);
        if (fill.GetLastKey() != pPlaced)
            m_Findings.Tell("The key stood behind a later one of its track; it was put in order.");
        if (pPlaced->m_nStartTime != nStart || pPlaced->m_nEndTime != nEnd)
        {
            m_Findings.Tell(
                QSFormat("The key's time, %d to %d ms, doesn't fit on its track; it is %d to %d ms now.",
                         nStart, nEnd, pPlaced->m_nStartTime, pPlaced->m_nEndTime));
        }
        m_Findings.EnterKey(nullptr);
    }
    return true;
}

struct CEffectLoader::CKeyFields
{
    const char* m_pszName; // null without one
    const char* m_pszType;
    const char* m_pszID;
    const char* m_pszStart;
    const char* m_pszEnd;
    const char* m_pszTrack;
    const char* m_pszParent;       // null without one
    const CQSANode* m_pMotionLink; // null without one
    const CQSANode* m_pProperties; // null without one

    const char* Name() const { return m_pszName ? m_pszName : ""; }
};

std::unique_ptr<CKey> CEffectLoader::LoadKey(const CQSANode& node)
{
    static constexpr std::array<CFieldName, 9> c_aNames = {
        "name", "type", "id", "start-time", "end-time", "track", "parent", "motion-link", "properties"};
    const CNodeFields<9> found(node, c_aNames, TellingSkipped());
    const CKeyFields fields = {FindValue(found, 0), FindValue(found, 1), FindValue(found, 2),
                               FindValue(found, 3), FindValue(found, 4), FindValue(found, 5),
                               FindValue(found, 6), found.FindList(7),   found.FindList(8)};
    if (!fields.m_pszTrack || !fields.m_pszID || !fields.m_pszStart || !fields.m_pszEnd || !fields.m_pszType)
    {
        AppendError("Unable to find a required parameter for key");
        return nullptr;
    }
    std::unique_ptr<CKey> pKey;
    if (!TryAllocating([&] { pKey = FillKey(fields); }))
        AppendError("Failed to allocate memory for key %s", fields.Name());
    if (m_Findings)
        m_Findings.EnterKey(nullptr);
    return pKey;
}

std::unique_ptr<CKey> CEffectLoader::FillKey(const CKeyFields& fields)
{
    const CEffectTypeDesc* pTypeDesc = m_Module.FindType(fields.m_pszType);
    if (!pTypeDesc)
        return nullptr;
    auto pKey = std::make_unique<CKey>(pTypeDesc);
    pKey->m_sName = fields.Name();
    if (m_Findings)
    {
        pKey->m_nKeyID = static_cast<uint32_t>(QSTextToInt(fields.m_pszID)); // for the title
        m_Findings.EnterKey(pKey.get());
    }
    if (!SetKeyParent(*pKey, fields))
        return nullptr;

    pKey->m_nKeyID = ReadID(fields.m_pszID, "id");
    pKey->m_nTrack = ReadID(fields.m_pszTrack, "track");
    pKey->m_nStartTime = ReadInt(fields.m_pszStart, "start-time");
    pKey->m_nEndTime = ReadInt(fields.m_pszEnd, "end-time");
    pKey->Unlink();
    if (fields.m_pMotionLink)
    {
        static constexpr std::array<CFieldName, 1> c_aNames = {"id"};
        const CNodeFields<1> link(*fields.m_pMotionLink, c_aNames, TellingSkipped());
        if (const char* pszID = FindValue(link, 0))
            pKey->Link(ReadID(pszID, "motion-link"));
        else if (m_Findings)
            m_Findings.Tell("The motion link has no id; it was dropped.");
    }
    if (!m_Properties.LoadProperties(fields.m_pProperties, *pKey))
    {
        AppendError("Error loading property of key %s", fields.Name());
        return nullptr;
    }
    m_Properties.Finish(*pKey);
    return pKey;
}

bool CEffectLoader::SetKeyParent(CKey& key, const CKeyFields& fields)
{
    if (!fields.m_pszParent)
        return true;
    CEffectPropertySet* pPrefab = m_Prefabs.FindPrefab(fields.m_pszParent);
    if (!pPrefab)
    {
        AppendError("Failed to find prefab %s for key %s", fields.m_pszParent, fields.Name());
        return false;
    }
    if (!key.SetParent(pPrefab) && m_Findings)
        m_Findings.Tell(
            QSFormat("Prefab %s is of another type; the key stands on none.", fields.m_pszParent));
    return true;
}
