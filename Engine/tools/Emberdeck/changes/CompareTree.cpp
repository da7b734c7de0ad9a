#include "changes/Comparison.h"

namespace
{

// One side's tree: items that come, from the top down, items that go, from the leaves up, order, texts. An item never
// changes its parent: what moves comes anew before its old item goes, so that what it stands for has one all the time.
class CTreeComparison
{
public:
    using CGroups = std::map<uint32_t, std::shared_ptr<const CGroupImage>>;
    CTreeComparison(const CGroups& before, const CGroups& after) : m_Before(before), m_After(after)
    {
        Note(before, m_Old);
        Note(after, m_New);
        for (const auto& [nGroup, pGroup] : before)
            Lists(nGroup);
        for (const auto& [nGroup, pGroup] : after)
            Lists(nGroup);
    }

    // Calls come(parent, item, place), gone(parent, item, place), order(group, lists), text(parent, old, new).
    template <class TGone, class TCome, class TOrder, class TText>
    void Run(const TGone& gone, const TCome& come, const TOrder& order, const TText& text)
    {
        for (const auto& [nGroup, pGroup] : m_After)
        {
            if (nGroup == 0 || m_Old.contains(nGroup) || !m_New.contains(nGroup))
                Fill(nGroup, come);
        }
        for (const auto& [nGroup, pGroup] : m_Before)
        {
            if (nGroup == 0 || m_New.contains(nGroup) || !m_Old.contains(nGroup))
                Clear(nGroup, gone);
        }
        for (auto& [nGroup, lists] : m_Lists)
            order(nGroup, lists);
        for (const auto& [nItem, old] : m_Old)
        {
            const auto now = m_New.find(nItem);
            if (now != m_New.end() && old.second->m_sText != now->second.second->m_sText)
                text(old.first, *old.second, *now->second.second);
        }
    }

private:
    using CItems = std::map<uint64_t, std::pair<uint32_t, const CItemImage*>>; // with the parent
    static void Note(const CGroups& groups, CItems& items)
    {
        for (const auto& [nGroup, pGroup] : groups)
        {
            for (const CItemImage& item : pGroup->m_Children)
                items[item.m_nItem] = {nGroup, &item};
        }
    }
    static std::vector<uint64_t> Children(const CGroups& groups, uint32_t nGroup)
    {
        std::vector<uint64_t> children;
        const auto found = groups.find(nGroup);
        for (size_t i = 0; found != groups.end() && i < found->second->m_Children.size(); ++i)
            children.push_back(found->second->m_Children[i].m_nItem);
        return children;
    }
    // A group that came or went has no children on the other side.
    CListDifference& Lists(uint32_t nGroup)
    {
        const auto found = m_Lists.find(nGroup);
        if (found != m_Lists.end())
            return found->second;
        std::vector<uint64_t>& target = m_Targets[nGroup] = Children(m_After, nGroup);
        return m_Lists.emplace(nGroup, CListDifference(Children(m_Before, nGroup), target)).first->second;
    }

    // What is gone of a group, each item behind its own children.
    template <class TGone>
    void Clear(uint32_t nTop, const TGone& gone)
    {
        std::vector<std::pair<uint32_t, bool>> open = {{nTop, false}};
        while (!open.empty())
        {
            auto& [nGroup, bOpened] = open.back();
            if (!bOpened)
            {
                bOpened = true;
                const auto found = m_Before.find(nGroup);
                for (size_t i = 0; found != m_Before.end() && i < found->second->m_Children.size(); ++i)
                {
                    const uint32_t nItem = found->second->m_Children[i].m_nItem;
                    if (!m_New.contains(nItem) && m_Before.contains(nItem))
                        open.emplace_back(nItem, false);
                }
                continue;
            }
            const uint32_t nDone = nGroup;
            open.pop_back();
            Lists(nDone).Remove([](uint64_t) { return true; }, [&](uint64_t nItem, uint32_t nPlace)
                                { gone(nDone, *m_Old.at(nItem).second, nPlace); });
        }
    }
    // What has come to a group, and then to what has come.
    template <class TCome>
    void Fill(uint32_t nTop, const TCome& come)
    {
        std::vector<uint32_t> open = {nTop};
        while (!open.empty())
        {
            const uint32_t nGroup = open.back();
            open.pop_back();
            Lists(nGroup).InsertMissing(
                [&](uint64_t nItem, uint32_t nPlace)
                {
                    come(nGroup, *m_New.at(nItem).second, nPlace);
                    if (m_After.contains(static_cast<uint32_t>(nItem)))
                        open.push_back(static_cast<uint32_t>(nItem));
                });
        }
    }

    const CGroups& m_Before;
    const CGroups& m_After;
    CItems m_Old;
    CItems m_New;
    std::map<uint32_t, std::vector<uint64_t>> m_Targets; // where they stay
    std::map<uint32_t, CListDifference> m_Lists;
};

} // namespace

void CComparison::CompareTree(ETreeSide eSide)
{
    const size_t nSide = static_cast<size_t>(eSide);
    const auto ref = [this, eSide](uint64_t nItem)
    {
        const auto n = static_cast<uint32_t>(nItem);
        return CChangeRef{nItem, n ? m_Names.m_Item(eSide, n) : std::string()};
    };
    const auto addItem = [&](uint32_t nGroup, const CItemImage& item, uint32_t nPlace) -> CDifference&
    {
        CDifference& difference = Add(EDifference::eItem, {}, {item.m_nItem, item.m_sText});
        difference.m_eSide = eSide;
        difference.m_Place = {ref(nGroup), nPlace};
        return difference;
    };
    CTreeComparison comparison(m_Before.m_Groups[nSide], m_After.m_Groups[nSide]);
    comparison.Run(
        [&](uint32_t nGroup, const CItemImage& item, uint32_t nPlace)
        { addItem(nGroup, item, nPlace).m_Before = item; },
        [&](uint32_t nGroup, const CItemImage& item, uint32_t nPlace)
        { addItem(nGroup, item, nPlace).m_After = item; },
        [&](uint32_t nGroup, const CListDifference& lists)
        { AddOrder(EDifference::eItemOrder, eSide, {}, ref(nGroup), lists, ref); },
        [&](uint32_t nGroup, const CItemImage& before, const CItemImage& after)
        {
            CDifference& difference = Add(EDifference::eItemText, {}, {before.m_nItem, before.m_sText});
            difference.m_eSide = eSide;
            difference.m_Place.m_List = ref(nGroup);
            difference.m_Before = before.m_sText;
            difference.m_After = after.m_sText;
        });
}
