#include "model/SpellMgr.h"

#include <algorithm>
#include <unordered_map>

#include "model/MakeOrNull.h"
#include "model/NameIndex.h"
#include "model/UniqueNames.h"
#include "qsassert.h"

namespace
{

std::string_view NameOf(const std::unique_ptr<CSpell>& pSpell)
{
    return BoundedText(pSpell->m_szName);
}

std::string_view NameOf(const std::unique_ptr<CEffectPropertySet>& pPrefab)
{
    return pPrefab->m_sName;
}

template <class TList>
auto FindByName(const TList& list, const char* pszName) -> decltype(list.front().get())
{
    if (!pszName)
        return nullptr;
    const std::string_view sName = pszName;
    for (const auto& pObject : list)
    {
        if (IsSameName(NameOf(pObject), sName))
            return pObject.get();
    }
    return nullptr;
}

template <class TList>
void MakeUniqueName(const TList& list, const char* pszName, std::string& sOut)
{
    const std::string sWanted = pszName ? pszName : "";
    CUniqueNames names;
    names.Reserve(list.size());
    for (const auto& pObject : list)
        names.Add(NameOf(pObject));
    sOut = names.Make(sWanted);
}

} // namespace

CSpell* CSpellMgr::AddSpell()
{
    std::unique_ptr<CSpell> pSpell = MakeOrNull<CSpell>();
    if (!pSpell || !TryAllocating([&] { m_Spells.push_back(std::move(pSpell)); }))
        return nullptr;
    return m_Spells.back().get();
}

CSpell* CSpellMgr::FindSpell(const char* pszName) const
{
    return FindByName(m_Spells, pszName);
}

void CSpellMgr::MakeUniqueSpellName(const char* pszName, std::string& sOut) const
{
    MakeUniqueName(m_Spells, pszName, sOut);
}

void CSpellMgr::DeleteSpell(CSpell* pSpell)
{
    // From the back: who deletes many goes that way, and each is then found at once.
    const auto found = std::find_if(m_Spells.rbegin(), m_Spells.rend(),
                                    [pSpell](const std::unique_ptr<CSpell>& p) { return p.get() == pSpell; });
    if (found == m_Spells.rend())
    {
        QS_ASSERT_FORCED("Error: Deleting an effect that is not in the list");
        return;
    }
    m_Spells.erase(std::next(found).base());
}

std::vector<std::unique_ptr<CSpell>> CSpellMgr::TakeSpells(const std::vector<CSpell*>& spells)
{
    std::unordered_map<const CSpell*, std::unique_ptr<CSpell>*> places;
    places.reserve(m_Spells.size());
    for (std::unique_ptr<CSpell>& pSpell : m_Spells)
        places.emplace(pSpell.get(), &pSpell);
    std::vector<std::unique_ptr<CSpell>> taken;
    taken.reserve(std::min(spells.size(), m_Spells.size()));
    for (const CSpell* pWanted : spells)
    {
        const auto found = places.find(pWanted);
        if (found != places.end() && *found->second)
            taken.push_back(std::move(*found->second));
    }
    std::erase(m_Spells, nullptr);
    return taken;
}

CSpell* CSpellMgr::AdoptSpell(std::unique_ptr<CSpell> pSpell)
{
    if (!pSpell || !TryAllocating([&] { m_Spells.push_back(std::move(pSpell)); }))
        return nullptr;
    return m_Spells.back().get();
}

CEffectPropertySet* CSpellMgr::AddPrefab(const CEffectTypeDesc* pTypeDesc)
{
    std::unique_ptr<CEffectPropertySet> pPrefab = MakeOrNull<CEffectPropertySet>(pTypeDesc);
    if (!pPrefab || !TryAllocating([&] { m_Prefabs.push_back(std::move(pPrefab)); }))
        return nullptr;
    return m_Prefabs.back().get();
}

CEffectPropertySet* CSpellMgr::FindPrefab(const char* pszName) const
{
    return FindByName(m_Prefabs, pszName);
}

void CSpellMgr::MakeUniquePrefabName(const char* pszName, std::string& sOut) const
{
    MakeUniqueName(m_Prefabs, pszName, sOut);
}

void CSpellMgr::DeletePrefab(CEffectPropertySet* pPrefab)
{
    const auto found =
        std::find_if(m_Prefabs.rbegin(), m_Prefabs.rend(),
                     [pPrefab](const std::unique_ptr<CEffectPropertySet>& p) { return p.get() == pPrefab; });
    if (found != m_Prefabs.rend())
        m_Prefabs.erase(std::next(found).base());
}

void CSpellMgr::Clear()
{
    m_Spells.clear();
    m_Prefabs.clear();
}

void CSpellMgr::ForEachKey(const std::function<void(CSpell&, CKey&)>& visit) const
{
    for (const std::unique_ptr<CSpell>& pSpell : m_Spells)
    {
        for (CKey& key : pSpell->m_Tracks.AllKeys())
            visit(*pSpell, key);
    }
}
