#include "formats/LeafLoaders.h"
#include "model/MakeOrNull.h"

namespace
{

constexpr CFieldName c_PrefabName = "prefab";

} // namespace

CPrefabLoader::CPrefabLoader(CLoadState& load, CPropertyLoader& properties, CSpellMgr& spellMgr,
                             CPrefabTree* pTree)
    : CLoadPart(load),
      m_Properties(properties),
      m_SpellMgr(spellMgr),
      m_pTree(pTree)
{
    for (const auto& pPrefab : spellMgr.Prefabs())
        NoteName(pPrefab.get());
}

const CFieldName& CPrefabLoader::ListName() const
{
    return c_PrefabName;
}

bool CPrefabLoader::LoadLeaf(const CQSANode& node, HLibraryItem hParent)
{
    if (LoadPrefab(node, hParent))
        return true;
    AppendError("Error loading prefab");
    return false;
}

bool CPrefabLoader::LoadPrefab(const CQSANode& node, HLibraryItem hParent)
{
    static constexpr std::array<CFieldName, 3> c_aNames = {"name", "type", "properties"};
    const CNodeFields<3> fields(node, c_aNames, TellingSkipped());
    const char* pszName = FindValue(fields, 0);
    const char* pszType = FindValue(fields, 1);
    if (!pszName || !pszType)
    {
        AppendError("Unable to find a required parameter for prefab");
        return false;
    }
    if (m_Findings)
        m_Findings.EnterObject(pszName);
    bool bFilled = false;
    if (!TryAllocating([&] { bFilled = FillPrefab(pszName, pszType, fields.FindList(2), hParent); }))
        AppendError("Failed to allocate memory for Prefab %s", pszName);
    if (m_Findings)
        m_Findings.EnterObject(nullptr);
    return bFilled;
}

bool CPrefabLoader::FillPrefab(const char* pszName, const char* pszType, const CQSANode* pProperties,
                               HLibraryItem hParent)
{
    const CEffectTypeDesc* pTypeDesc = m_Module.FindType(pszType);
    if (!pTypeDesc)
    {
        m_Findings.TellMissingType(pszType, pszName, std::string());
        return false;
    }
    CEffectPropertySet* pPrefab = m_SpellMgr.AddPrefab(pTypeDesc);
    if (!pPrefab)
    {
        AppendError("Failed to allocate memory for Prefab %s", pszName);
        return false;
    }
    pPrefab->m_sName = pszName;
    if (!m_Properties.LoadProperties(pProperties, *pPrefab))
    {
        AppendError("Error loading property of key %s", pszName);
        m_SpellMgr.DeletePrefab(pPrefab);
        return false;
    }
    m_Properties.Finish(*pPrefab);
    m_Properties.NotePrefab(*pPrefab);
    NoteName(pPrefab);
    if (m_pTree && !m_pTree->InsertLeaf(pPrefab->m_sName, hParent, pPrefab))
    {
        AppendError("Failed to allocate memory for Prefab %s", pszName);
        return false;
    }
    return true;
}

void CPrefabLoader::NoteName(CEffectPropertySet* pPrefab)
{
    const char* pszName = pPrefab->m_sName.c_str(); // up to the first NUL, as keys name it
    if (!m_ByName.emplace(pszName, pPrefab).second && m_Findings)
        m_Findings.Tell("Another prefab has this name; keys stand on the first one.");
}

size_t CPrefabLoader::CNameHash::operator()(std::string_view sName) const
{
    uint64_t nHash = 0xCBF29CE484222325u;
    for (const char c : sName)
        nHash = (nHash ^ FoldNameByte(c)) * 0x100000001B3u;
    return static_cast<size_t>(nHash ^ nHash >> 32);
}

CEffectPropertySet* CPrefabLoader::FindPrefab(std::string_view sName) const
{
    const auto found = m_ByName.find(sName);
    return found == m_ByName.end() ? nullptr : found->second;
}
