#include "model/SpellMgr.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "model/MakeOrNull.h"
#include "model/NameIndex.h"
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

// The number behind "BASE_" in a name, without leading zeros; 0 when the name has another form, or the
// number is beyond nMax.
size_t NumberOf(std::string_view sName, std::string_view sBase, size_t nMax)
{
    if (sName.size() < sBase.size() + 2 || !IsSameName(sName.substr(0, sBase.size()), sBase) ||
        sName[sBase.size()] != '_')
    {
        return 0;
    }
    const std::string_view sDigits = sName.substr(sBase.size() + 1);
    size_t nNumber = 0;
    const auto result = std::from_chars(sDigits.data(), sDigits.data() + sDigits.size(), nNumber);
    const bool bWhole = result.ec == std::errc() && result.ptr == sDigits.data() + sDigits.size();
    return bWhole && sDigits[0] != '0' && nNumber <= nMax ? nNumber : 0;
}

// Marks the numbers in use in one walk, so that the hundreds of equal names of an import don't search
// the list for each number that they try.
template <class TList>
void MakeUniqueName(const TList& list, const char* pszName, std::string& sOut)
{
    const std::string sWanted = pszName ? pszName : "";
    sOut = sWanted;
    if (!FindByName(list, sWanted.c_str()))
        return;
    const std::string sBase = sWanted.substr(0, sWanted.find_last_not_of("1234567890_") + 1);
    std::vector<bool> taken(list.size() + 2); // one number more than there are objects, from 1 on
    for (const auto& pObject : list)
        taken[NumberOf(NameOf(pObject), sBase, list.size())] = true;
    const auto nFree = std::find(taken.begin() + 1, taken.end(), false) - taken.begin();
    sOut = sBase + '_' + std::to_string(nFree);
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

std::unique_ptr<CSpell> CSpellMgr::TakeSpell(const CSpell* pSpell)
{
    const auto found = std::find_if(m_Spells.begin(), m_Spells.end(),
                                    [pSpell](const std::unique_ptr<CSpell>& p) { return p.get() == pSpell; });
    if (found == m_Spells.end())
        return nullptr;
    std::unique_ptr<CSpell> pTaken = std::move(*found);
    m_Spells.erase(found);
    return pTaken;
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
        for (const std::unique_ptr<CTrack>& pTrack : pSpell->m_Tracks.Tracks())
        {
            for (const std::unique_ptr<CKey>& pKey : pTrack->Keys())
                visit(*pSpell, *pKey);
        }
    }
}
