#include <algorithm>
#include <deque>
#include <map>

#include "changes/Compare.h"
#include "changes/FoldedName.h"

namespace
{

// Finds for one thing after the other its like among those of the library: of equal ones the first for the first.
template <class TWhat>
class CLikes
{
public:
    void Add(const TWhat& what, uint64_t nSerial) { m_Likes[what].push_back(nSerial); }
    uint64_t Take(const TWhat& what) // 0: there is none, or none is left
    {
        const auto found = m_Likes.find(what);
        if (found == m_Likes.end() || found->second.empty())
            return 0;
        const uint64_t nSerial = found->second.front();
        found->second.pop_front();
        return nSerial;
    }

private:
    std::map<TWhat, std::deque<uint64_t>> m_Likes;
};

class CAlignment
{
public:
    CAlignment(const CLibraryImage& library, const CLibraryImage& other) : m_Library(library), m_Other(other)
    {
    }

    std::shared_ptr<const CLibraryImage> Run()
    {
        m_pResult = std::make_shared<CLibraryImage>();
        AlignPrefabs();
        AlignSpells();
        for (const ETreeSide eSide : c_TreeSides)
            AlignTree(eSide);
        return m_pResult;
    }

private:
    std::map<uint64_t, uint64_t>& Objects(ETreeSide eSide) { return m_Objects[static_cast<size_t>(eSide)]; }

    void AlignPrefabs()
    {
        CLikes<std::string> likes;
        for (const auto& pPrefab : m_Library.m_Prefabs)
            likes.Add(FoldedName(pPrefab->m_sName), pPrefab->m_nSerial);
        // All of them, before one is looked up as another's parent.
        for (const auto& pPrefab : m_Other.m_Prefabs)
        {
            const uint64_t nLike = likes.Take(FoldedName(pPrefab->m_sName));
            Objects(ETreeSide::ePrefabs)[pPrefab->m_nSerial] = nLike ? nLike : pPrefab->m_nSerial;
        }
        for (const auto& pPrefab : m_Other.m_Prefabs)
        {
            auto pCopy = std::make_shared<CSetImage>(*pPrefab);
            Renumber(*pCopy, Objects(ETreeSide::ePrefabs)[pPrefab->m_nSerial]);
            m_pResult->m_Prefabs.push_back(std::move(pCopy));
        }
    }
    void Renumber(CSetImage& set, uint64_t nSerial)
    {
        set.m_nSerial = nSerial;
        const auto parent = Objects(ETreeSide::ePrefabs).find(set.m_nParent);
        if (parent != Objects(ETreeSide::ePrefabs).end())
            set.m_nParent = parent->second;
    }

    void AlignSpells()
    {
        CLikes<std::string> likes;
        std::map<uint64_t, const CSpellImage*> spells;
        for (const auto& pSpell : m_Library.m_Spells)
        {
            likes.Add(FoldedName(pSpell->m_sName), pSpell->m_nSerial);
            spells.emplace(pSpell->m_nSerial, pSpell.get());
        }
        for (const auto& pSpell : m_Other.m_Spells)
        {
            const uint64_t nLike = likes.Take(FoldedName(pSpell->m_sName));
            Objects(ETreeSide::eEffects)[pSpell->m_nSerial] = nLike ? nLike : pSpell->m_nSerial;
            m_pResult->m_Spells.push_back(AlignSpell(*pSpell, nLike ? spells[nLike] : nullptr));
        }
    }
    std::shared_ptr<const CSpellImage> AlignSpell(const CSpellImage& other, const CSpellImage* pLike)
    {
        auto pSpell = std::make_shared<CSpellImage>(other);
        pSpell->m_nSerial = Objects(ETreeSide::eEffects)[other.m_nSerial];
        CLikes<std::pair<uint32_t, std::string>> likes; // keys by id and type: no key changes its type
        std::map<uint64_t, size_t> trackOf;
        for (size_t i = 0; pLike && i < pLike->m_Tracks.size(); ++i)
        {
            for (const auto& pKey : pLike->m_Tracks[i]->m_Keys)
            {
                likes.Add(WhatOf(*pKey), pKey->m_nSerial);
                trackOf.emplace(pKey->m_nSerial, i);
            }
        }
        std::vector<std::map<size_t, size_t>> shared; // for each track: keys by the library's track
        for (auto& pTrack : pSpell->m_Tracks)
        {
            auto pCopy = std::make_shared<CTrackImage>(*pTrack);
            std::map<size_t, size_t>& counts = shared.emplace_back();
            for (auto& pKey : pCopy->m_Keys)
            {
                const uint64_t nLike = likes.Take(WhatOf(*pKey));
                auto pKeyCopy = std::make_shared<CKeyImage>(*pKey);
                Renumber(*pKeyCopy, nLike ? nLike : pKey->m_nSerial);
                pKey = std::move(pKeyCopy);
                if (nLike)
                    ++counts[trackOf[nLike]];
            }
            pTrack = std::move(pCopy);
        }
        if (pLike)
            AlignTracks(*pSpell, *pLike, shared);
        return pSpell;
    }
    static std::pair<uint32_t, std::string> WhatOf(const CKeyImage& key)
    {
        return {key.m_nKeyID, key.m_pType ? key.m_pType->m_sName : std::string()};
    }
    // Those with the most keys in common first; then what shares none in the order in which it stands.
    static void AlignTracks(CSpellImage& spell, const CSpellImage& like,
                            const std::vector<std::map<size_t, size_t>>& shared)
    {
        struct CPair
        {
            size_t m_nKeys, m_nTrack, m_nLike;
        };
        std::vector<CPair> pairs;
        for (size_t i = 0; i < shared.size(); ++i)
        {
            for (const auto& [nLike, nKeys] : shared[i])
                pairs.push_back({nKeys, i, nLike});
        }
        std::stable_sort(pairs.begin(), pairs.end(),
                         [](const CPair& a, const CPair& b) { return a.m_nKeys > b.m_nKeys; });
        std::vector<bool> done(shared.size()), taken(like.m_Tracks.size());
        const auto join = [&](size_t nTrack, size_t nLike)
        {
            auto pTrack = std::make_shared<CTrackImage>(*spell.m_Tracks[nTrack]);
            pTrack->m_nSerial = like.m_Tracks[nLike]->m_nSerial;
            spell.m_Tracks[nTrack] = std::move(pTrack);
            done[nTrack] = taken[nLike] = true;
        };
        for (const CPair& pair : pairs)
        {
            if (!done[pair.m_nTrack] && !taken[pair.m_nLike])
                join(pair.m_nTrack, pair.m_nLike);
        }
        size_t nLike = 0;
        for (size_t i = 0; i < shared.size(); ++i)
        {
            while (nLike < taken.size() && taken[nLike])
                ++nLike;
            if (!done[i] && nLike < taken.size())
                join(i, nLike);
        }
    }

    // From the roots down: groups by their texts, leaves by what they stand for.
    void AlignTree(ETreeSide eSide)
    {
        using CWhat = std::pair<std::string, uint64_t>;
        const auto whatOf = [](const CItemImage& item, uint64_t nObject) {
            return nObject ? CWhat{{}, nObject} : CWhat{FoldedName(item.m_sText), 0};
        };
        uint32_t nFree = 1;
        for (const CLibraryImage* pImage : {&m_Library, &m_Other})
        {
            for (const auto& pGroup : pImage->Tree(eSide))
            {
                for (const CItemImage& item : pGroup->m_Children)
                    nFree = std::max(nFree, item.m_nItem + 1);
            }
        }
        CTreeImage& result = m_pResult->m_Trees[static_cast<size_t>(eSide)];
        std::vector<std::pair<uint32_t, uint32_t>> open = {{0, 0}}; // theirs, and what it is called here
        while (!open.empty())
        {
            const auto [nTheirs, nHere] = open.back();
            open.pop_back();
            const CGroupImage* pTheirs = FindGroup(m_Other.Tree(eSide), nTheirs);
            if (!pTheirs)
                continue;
            CLikes<CWhat> likes;
            const CGroupImage* pHere = FindGroup(m_Library.Tree(eSide), nHere);
            for (size_t i = 0; pHere && i < pHere->m_Children.size(); ++i)
                likes.Add(whatOf(pHere->m_Children[i], pHere->m_Children[i].m_nObject),
                          pHere->m_Children[i].m_nItem);
            auto pGroup = std::make_shared<CGroupImage>(*pTheirs);
            pGroup->m_nItem = nHere;
            for (CItemImage& item : pGroup->m_Children)
            {
                const auto object = Objects(eSide).find(item.m_nObject);
                item.m_nObject = object != Objects(eSide).end() ? object->second : 0;
                const auto nLike = static_cast<uint32_t>(likes.Take(whatOf(item, item.m_nObject)));
                const uint32_t nNumber = nLike ? nLike : nFree++;
                open.emplace_back(item.m_nItem, nNumber);
                item.m_nItem = nNumber;
            }
            result.push_back(std::move(pGroup));
        }
        std::sort(result.begin(), result.end(),
                  [](const auto& pLeft, const auto& pRight) { return pLeft->m_nItem < pRight->m_nItem; });
    }

    const CLibraryImage& m_Library;
    const CLibraryImage& m_Other;
    std::shared_ptr<CLibraryImage> m_pResult;
    // Of the other's effects, and of its prefabs: what they are called here. Serials of both may be the same.
    std::map<uint64_t, uint64_t> m_Objects[c_nNumSides];
};

} // namespace

std::shared_ptr<const CLibraryImage> Align(const CLibraryImage& library, const CLibraryImage& other)
{
    return CAlignment(library, other).Run();
}
