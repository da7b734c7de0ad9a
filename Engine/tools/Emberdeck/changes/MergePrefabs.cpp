#include "changes/LibraryMerge.h"
#include "changes/SameContent.h"

// The prefabs of a merge, and what hangs on them.

// Which keys of a state stand on a prefab of the base that they didn't stand on there.
void CLibraryMerge::CollectNewUsers(size_t nState)
{
    for (const auto& pSpell : m_Images[nState]->m_Spells)
    {
        const auto pBase = Find(m_Spells[eState_Base], pSpell->m_nSerial);
        if (pBase && (pBase == pSpell || IsSameContent(*pBase, *pSpell)))
            continue;
        std::unordered_map<uint64_t, uint64_t> parents;
        if (pBase)
            ForEachKey(*pBase, [&](const CKeyImage& key) { parents.emplace(key.m_nSerial, key.m_nParent); });
        ForEachKey(*pSpell,
                   [&](const CKeyImage& key)
                   {
                       const auto old = parents.find(key.m_nSerial);
                       if (key.m_nParent && (old == parents.end() || old->second != key.m_nParent))
                           m_NewUsers[nState].try_emplace(key.m_nParent,
                                                          CChangeRef{pSpell->m_nSerial, pSpell->m_sName});
                   });
    }
    for (const auto& pPrefab : m_Images[nState]->m_Prefabs)
    {
        const auto pBase = Find(m_Prefabs[eState_Base], pPrefab->m_nSerial);
        if (pPrefab->m_nParent && (!pBase || pBase->m_nParent != pPrefab->m_nParent))
            m_NewUsers[nState].try_emplace(pPrefab->m_nParent,
                                           CChangeRef{pPrefab->m_nSerial, pPrefab->m_sName});
    }
}

CChangeRef CLibraryMerge::NewUserOf(uint64_t nPrefab, size_t nState)
{
    if (m_NewUsers[nState].empty())
    {
        m_NewUsers[nState].try_emplace(0); // done
        CollectNewUsers(nState);
    }
    const auto found = m_NewUsers[nState].find(nPrefab);
    return found != m_NewUsers[nState].end() ? found->second : CChangeRef();
}

// Which prefabs there are.
void CLibraryMerge::PickPrefabs()
{
    for (const size_t nState : {eState_Mine, eState_Theirs})
    {
        for (const auto& pPrefab : m_Images[nState]->m_Prefabs)
        {
            const uint64_t n = pPrefab->m_nSerial;
            const CThree<CSetImage> three = StatesOf(m_Prefabs, n);
            if (nState == eState_Theirs && three[eState_Mine])
                continue;
            EMergeConflict eWhy = EMergeConflict::eDeleted;
            CChangeRef user;
            const auto isChanged = [&](size_t i)
            {
                if (!IsSameContent(*three[eState_Base], *three[i]) || m_Trees[1].IsMoved(n, i))
                    return true;
                eWhy = EMergeConflict::eUsed;
                user = NewUserOf(n, i);
                return user.m_nSerial != 0;
            };
            const auto conflict = [&]
            {
                return m_Notes.SettleWhole(
                    eWhy, DifferenceOf(EDifference::ePrefab, {}, {n, AnyOf(three)->m_sName}), three, user);
            };
            const EPresence ePresence = PresenceOf(three, isChanged, conflict);
            m_PrefabPresence[n] = ePresence;
            if (three[eState_Base] && (ePresence == EPresence::eMine || ePresence == EPresence::eTheirs))
                m_KeptPrefabs.insert(n);
        }
    }
}

// The side that deleted a prefab which stays gave all its keys the prefab's values: that belongs to the deleting.
void CLibraryMerge::TakeBackDetaching(size_t nState)
{
    for (auto& [n, pSpell] : m_Spells[nState])
    {
        const auto pBase = Find(m_Spells[eState_Base], n);
        if (!pBase || pBase == pSpell)
            continue;
        CNodes<CKeyImage> keys;
        for (const auto& pTrack : pBase->m_Tracks)
        {
            for (const auto& pKey : pTrack->m_Keys)
            {
                if (m_KeptPrefabs.contains(pKey->m_nParent) && !m_Prefabs[nState].contains(pKey->m_nParent))
                    keys.emplace(pKey->m_nSerial, pKey);
            }
        }
        if (keys.empty())
            continue;
        pSpell = WithKeys(pSpell,
                          [&](const CKeyImage& key) -> std::shared_ptr<const CKeyImage>
                          {
                              const auto pOld = key.m_nParent ? nullptr : Find(keys, key.m_nSerial);
                              return pOld ? Reattached(key, *pOld) : nullptr;
                          });
    }
}

std::shared_ptr<const CKeyImage> CLibraryMerge::Reattached(const CKeyImage& key, const CKeyImage& base) const
{
    if (!key.m_pType || !base.m_pType || !(*key.m_pType == *base.m_pType))
        return nullptr;
    auto pKey = std::make_shared<CKeyImage>(key);
    pKey->m_nParent = base.m_nParent;
    pKey->m_sParent = base.m_sParent;
    CSlotBuilder builder;
    for (const CSetImage::CSlot& slot : key.m_Slots)
    {
        const auto [pPrefab, pSlot] = SlotInForce(m_Prefabs[eState_Base], base.m_nParent, slot.m_nSlot);
        const bool bFilled = !base.FindSlot(slot.m_nSlot) && pSlot && IsSameSlot(key, slot, *pPrefab, *pSlot);
        if (!bFilled)
            builder.Add(key, slot);
    }
    builder.Finish(*pKey);
    return pKey;
}

void CLibraryMerge::MergePrefabs()
{
    for (const size_t nState : {eState_Mine, eState_Theirs})
    {
        for (const auto& pPrefab : m_Images[nState]->m_Prefabs)
        {
            const uint64_t n = pPrefab->m_nSerial;
            const CThree<CSetImage> three = StatesOf(m_Prefabs, n);
            const EPresence ePresence = m_PrefabPresence[n];
            if (ePresence == EPresence::eNone || m_MergedPrefabs.contains(n))
                continue;
            std::shared_ptr<const CSetImage> pMerged =
                three[ePresence == EPresence::eTheirs ? eState_Theirs : eState_Mine];
            const CChangeRef object = {n, pMerged->m_sName};
            if (ePresence == EPresence::eBoth && three[eState_Base])
            {
                auto pSet = std::make_shared<CSetImage>(*pMerged);
                MergeSet(*pSet, {three[0].get(), three[1].get(), three[2].get()}, {}, object, m_Notes);
                pSet->m_nSerial = n;
                pMerged = std::move(pSet);
            }
            else if (ePresence == EPresence::eBoth &&
                     !IsSameContent(*three[eState_Mine], *three[eState_Theirs]))
            {
                const EMergeSide eSide = m_Notes.SettleWhole(
                    EMergeConflict::eAdded, DifferenceOf(EDifference::ePrefab, {}, object), three);
                m_AddedBy[1].emplace(n, eSide);
                pMerged = three[StateOf(eSide)];
            }
            m_MergedPrefabs.emplace(n, std::move(pMerged));
        }
    }
    SettleNames(m_Prefabs, m_MergedPrefabs, EDifference::ePrefab, EDifference::eSetName);
    BreakCircles();
}

// Prefabs that would stand on each other all stand where mine has them.
void CLibraryMerge::BreakCircles()
{
    std::unordered_map<uint64_t, uint64_t> seenFrom;
    bool bCircle = false;
    for (const auto& [n, pPrefab] : m_MergedPrefabs)
    {
        for (auto p = pPrefab; p && p->m_nParent && !bCircle; p = Find(m_MergedPrefabs, p->m_nParent))
        {
            const auto [seen, bNew] = seenFrom.emplace(p->m_nSerial, n);
            bCircle = !bNew && seen->second == n;
            if (!bNew)
                break;
        }
    }
    if (!bCircle)
        return;
    for (const auto& pPrefab : m_Images[eState_Mine]->m_Prefabs)
    {
        const auto merged = m_MergedPrefabs.find(pPrefab->m_nSerial);
        if (merged == m_MergedPrefabs.end() || merged->second->m_nParent == pPrefab->m_nParent)
            continue;
        m_Notes.SettleWhole(EMergeConflict::eCircle,
                            DifferenceOf(EDifference::ePrefab, {}, {pPrefab->m_nSerial, pPrefab->m_sName}),
                            StatesOf(m_Prefabs, pPrefab->m_nSerial));
        auto pSet = std::make_shared<CSetImage>(*merged->second);
        pSet->m_nParent = pPrefab->m_nParent;
        pSet->m_sParent = pPrefab->m_sParent;
        merged->second = std::move(pSet);
    }
}

// A key whose prefab isn't there has its values for itself.
void CLibraryMerge::DetachLost()
{
    for (auto& [n, pSpell] : m_MergedSpells)
        pSpell = WithKeys(pSpell,
                          [&](const CKeyImage& key) -> std::shared_ptr<const CKeyImage>
                          {
                              if (!key.m_nParent || m_MergedPrefabs.contains(key.m_nParent))
                                  return nullptr;
                              auto pKey = std::make_shared<CKeyImage>(key);
                              pKey->m_nParent = 0;
                              pKey->m_sParent.clear();
                              for (const size_t nState : {eState_Mine, eState_Theirs, eState_Base})
                                  FillFrom(*pKey, key, m_Prefabs[nState]);
                              return pKey;
                          });
    for (auto& [n, pPrefab] : m_MergedPrefabs)
    {
        if (!pPrefab->m_nParent || m_MergedPrefabs.contains(pPrefab->m_nParent))
            continue;
        auto pSet = std::make_shared<CSetImage>(*pPrefab);
        pSet->m_nParent = 0;
        pSet->m_sParent.clear();
        for (const size_t nState : {eState_Mine, eState_Theirs, eState_Base})
            FillFrom(*pSet, *pPrefab, m_Prefabs[nState]);
        pPrefab = std::move(pSet);
    }
}
