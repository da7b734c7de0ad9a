#include "changes/Comparison.h"

namespace
{

CChangeRef KeyRef(const CKeyImage& key)
{
    return {key.m_nSerial, std::to_string(key.m_nKeyID)};
}

// The tracks of an effect, and which keys they have.
class CTrackComparison
{
public:
    CTrackComparison(const CKnownSpell& before, const CKnownSpell& after)
        : m_bTracks(before.m_Tracks && after.m_Tracks),
          m_Tracks(m_bTracks ? *before.m_Tracks : c_NoNumbers, m_bTracks ? *after.m_Tracks : c_NoNumbers),
          m_OldTracks(m_Tracks.Now().begin(), m_Tracks.Now().end())
    {
        for (const auto& [nTrack, keys] : before.m_TrackKeys)
        {
            for (size_t i = 0; !IsBornTrack(nTrack) && i < keys.size(); ++i)
                m_Old[keys[i]] = nTrack;
        }
        for (const auto& [nTrack, keys] : after.m_TrackKeys)
        {
            for (const uint64_t nKey : keys)
                m_New[nKey] = nTrack;
        }
        for (const auto& [nTrack, keys] : before.m_TrackKeys)
        {
            const auto target = after.m_TrackKeys.find(nTrack);
            if (!IsBornTrack(nTrack))
                m_Lists.emplace(
                    nTrack,
                    CListDifference(keys, target != after.m_TrackKeys.end() ? target->second : c_NoNumbers));
        }
        // A new track comes with the keys that are new themselves.
        for (const auto& [nTrack, keys] : after.m_TrackKeys)
        {
            if (!IsBornTrack(nTrack))
                continue;
            std::vector<uint64_t> own;
            for (const uint64_t nKey : keys)
            {
                if (IsBorn(nKey))
                    own.push_back(nKey);
            }
            m_Lists.emplace(nTrack, CListDifference(std::move(own), keys));
        }
    }

    bool IsBornTrack(uint64_t nTrack) const
    {
        return m_bTracks && m_Tracks.IsWanted(nTrack) && !m_OldTracks.contains(nTrack);
    }
    bool IsDyingTrack(uint64_t nTrack) const { return m_bTracks && !m_Tracks.IsWanted(nTrack); }
    bool IsBorn(uint64_t nKey) const { return m_New.contains(nKey) && !m_Old.contains(nKey); }
    bool IsGone(uint64_t nKey) const { return m_Old.contains(nKey) && !m_New.contains(nKey); }

    const bool m_bTracks; // whether these are known
    CListDifference m_Tracks;
    const CNumbers m_OldTracks;
    std::unordered_map<uint64_t, uint64_t> m_Old; // the track of each key
    std::unordered_map<uint64_t, uint64_t> m_New;
    std::map<uint64_t, CListDifference> m_Lists; // by track
};

} // namespace

void CComparison::CompareSpells(uint64_t nSerial, const CKnownSpell& before, const CKnownSpell& after)
{
    const CChangeRef effect = SpellRef(nSerial);
    if (before.m_Head && after.m_Head)
    {
        AddField(EDifference::eEffectName, {}, effect, before.m_Head->first, after.m_Head->first);
        AddField(EDifference::eEffectLength, {}, effect, int64_t(before.m_Head->second),
                 int64_t(after.m_Head->second));
    }

    CTrackComparison tracks(before, after);
    std::unordered_map<uint64_t, size_t> numbers; // of tracks
    for (const CKnownSpell* pKnown : {&before, &after})
    {
        const size_t nCount = pKnown->m_Tracks ? pKnown->m_Tracks->size() : 0;
        for (size_t i = 0; i < nCount; ++i)
            numbers.emplace((*pKnown->m_Tracks)[i], i);
    }
    const auto trackRef = [&](uint64_t nTrack)
    {
        const auto number = numbers.find(nTrack);
        return CChangeRef{nTrack, number != numbers.end() ? std::to_string(number->second) : std::string()};
    };
    const auto keyRef = [&](uint64_t nKey)
    {
        const auto old = before.m_Keys.find(nKey);
        const auto now = after.m_Keys.find(nKey);
        return old != before.m_Keys.end()  ? KeyRef(*old->second)
               : now != after.m_Keys.end() ? KeyRef(*now->second)
                                           : CChangeRef{nKey, std::to_string(m_Names.m_KeyID(nSerial, nKey))};
    };
    // A track comes or goes with the keys that are on it then.
    const auto addTrack = [&](uint64_t nTrack, uint32_t nPlace) -> CDifference&
    {
        CDifference& difference = Add(EDifference::eTrack, effect, trackRef(nTrack));
        difference.m_Place.m_nPlace = nPlace;
        return difference;
    };
    const auto wholeTrack = [&](const CKnownSpell& known, uint64_t nTrack) -> CChangeValue
    {
        const auto lists = tracks.m_Lists.find(nTrack);
        m_bWhole = m_bWhole && lists != tracks.m_Lists.end();
        return m_bWhole ? CChangeValue(AssembleTrack(known, nTrack, lists->second.Now())) : CChangeValue();
    };
    tracks.m_Tracks.InsertMissing([&](uint64_t nTrack, uint32_t nPlace)
                                  { addTrack(nTrack, nPlace).m_After = wholeTrack(after, nTrack); });
    for (auto& [nTrack, lists] : tracks.m_Lists)
    {
        const CChangePlace track = {trackRef(nTrack), 0};
        if (tracks.IsDyingTrack(nTrack))
            continue;
        lists.Remove([&](uint64_t nKey) { return tracks.IsGone(nKey); },
                     [&](uint64_t nKey, uint32_t nPlace)
                     {
                         CDifference& difference = Add(EDifference::eKey, effect, keyRef(nKey));
                         difference.m_Place = {track.m_List, nPlace};
                         difference.m_Before = Content(before.m_Keys, nKey);
                     });
    }
    for (auto& [nTrack, lists] : tracks.m_Lists)
    {
        for (const uint64_t nKey : lists.Target())
        {
            const auto old = tracks.m_Old.find(nKey);
            if (old == tracks.m_Old.end() || old->second == nTrack)
                continue;
            CDifference& difference = Add(EDifference::eKeyTrack, effect, keyRef(nKey));
            difference.m_Before =
                CChangePlace{trackRef(old->second), tracks.m_Lists.at(old->second).RemoveOne(nKey)};
            difference.m_After = CChangePlace{trackRef(nTrack), lists.Insert(nKey)};
        }
    }
    for (auto& [nTrack, lists] : tracks.m_Lists)
    {
        if (tracks.IsDyingTrack(nTrack))
            continue;
        lists.InsertMissing(
            [&, nTrack = nTrack](uint64_t nKey, uint32_t nPlace)
            {
                CDifference& difference = Add(EDifference::eKey, effect, keyRef(nKey));
                difference.m_Place = {trackRef(nTrack), nPlace};
                difference.m_After = Content(after.m_Keys, nKey);
            });
        AddOrder(EDifference::eKeyOrder, ETreeSide::eEffects, effect, trackRef(nTrack), lists, keyRef);
    }
    tracks.m_Tracks.Remove([](uint64_t) { return true; }, [&](uint64_t nTrack, uint32_t nPlace)
                           { addTrack(nTrack, nPlace).m_Before = wholeTrack(before, nTrack); });
    AddOrder(EDifference::eTrackOrder, ETreeSide::eEffects, effect, {}, tracks.m_Tracks, trackRef);

    for (const auto& [nKey, pKey] : before.m_Keys)
    {
        const auto now = after.m_Keys.find(nKey);
        if (now != after.m_Keys.end() && now->second != pKey && !tracks.IsBorn(nKey))
            CompareKeys(effect, *pKey, *now->second);
    }
}

void CComparison::CompareKeys(const CChangeRef& effect, const CKeyImage& before, const CKeyImage& after)
{
    const CChangeRef object = KeyRef(before);
    AddField(EDifference::eKeyID, effect, object, int64_t(before.m_nKeyID), int64_t(after.m_nKeyID));
    AddField(EDifference::eKeyStart, effect, object, int64_t(before.m_nStartTime),
             int64_t(after.m_nStartTime));
    AddField(EDifference::eKeyEnd, effect, object, int64_t(before.m_nEndTime), int64_t(after.m_nEndTime));
    const auto linkOf = [](const CKeyImage& key)
    { return key.m_bMotionLinked ? std::optional<int64_t>(key.m_nMotionLinkID) : std::nullopt; };
    if (linkOf(before) != linkOf(after))
    {
        CDifference& difference = Add(EDifference::eKeyLink, effect, object);
        if (before.m_bMotionLinked)
            difference.m_Before = int64_t(before.m_nMotionLinkID);
        if (after.m_bMotionLinked)
            difference.m_After = int64_t(after.m_nMotionLinkID);
    }
    CompareSets(effect, object, before, after);
}

void CComparison::CompareSets(const CChangeRef& effect, const CChangeRef& object, const CSetImage& before,
                              const CSetImage& after)
{
    const bool bSameType = before.m_pType == after.m_pType ||
                           (before.m_pType && after.m_pType && *before.m_pType == *after.m_pType);
    m_bWhole = m_bWhole && bSameType; // no edit does that
    if (!bSameType || &before == &after || IsSameSet(before, after))
        return;
    AddField(EDifference::eSetName, effect, object, before.m_sName, after.m_sName);
    if (before.m_nParent != after.m_nParent)
    {
        CDifference& difference = Add(EDifference::eSetParent, effect, object);
        if (before.m_nParent)
            difference.m_Before = CChangeRef{before.m_nParent, before.m_sParent};
        if (after.m_nParent)
            difference.m_After = CChangeRef{after.m_nParent, after.m_sParent};
    }
    const size_t nProps = before.m_pType ? before.m_pType->m_Props.size() : 0;
    size_t nOld = 0;
    size_t nNew = 0;
    for (uint32_t i = 0; i < nProps; ++i)
    {
        const bool bOld = nOld < before.m_Slots.size() && before.m_Slots[nOld].m_nSlot == i;
        const bool bNew = nNew < after.m_Slots.size() && after.m_Slots[nNew].m_nSlot == i;
        if (bOld || bNew)
            CompareSlot(effect, object, i, before, after);
        nOld += bOld ? 1 : 0;
        nNew += bNew ? 1 : 0;
    }
}

// Only the run of values that differs.
void CComparison::CompareSlot(const CChangeRef& effect, const CChangeRef& object, uint32_t nSlot,
                              const CSetImage& before, const CSetImage& after)
{
    const CSetImage::CSlot* pOld = before.FindSlot(nSlot);
    const CSetImage::CSlot* pNew = after.FindSlot(nSlot);
    const auto pointsOf = [](const CSetImage& set, const CSetImage::CSlot* pSlot)
    {
        const auto first = set.m_Points.begin() + (pSlot ? pSlot->m_nFirst : 0);
        return std::vector<CPointImage>(first, first + (pSlot ? pSlot->m_nCount : 0));
    };
    CChangePoints old{0, pointsOf(before, pOld)};
    CChangePoints now{0, pointsOf(after, pNew)};
    if (pOld && pNew)
    {
        auto& a = old.m_Points;
        auto& b = now.m_Points;
        const auto nFirst =
            std::mismatch(a.begin(), a.end(), b.begin(), b.end(), IsSamePoint).first - a.begin();
        a.erase(a.begin(), a.begin() + nFirst);
        b.erase(b.begin(), b.begin() + nFirst);
        const auto nTail =
            std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend(), IsSamePoint).first - a.rbegin();
        a.erase(a.end() - nTail, a.end());
        b.erase(b.end() - nTail, b.end());
        if (a.empty() && b.empty())
            return;
        old.m_nFirst = now.m_nFirst = static_cast<uint32_t>(nFirst);
    }
    CDifference& difference = Add(EDifference::eSetValue, effect, object);
    difference.m_sProperty = before.m_pType->m_Props[nSlot].m_sName;
    difference.m_eType = before.m_pType->m_Props[nSlot].m_eType;
    difference.m_nSlot = nSlot;
    if (pOld)
        difference.m_Before = std::move(old);
    if (pNew)
        difference.m_After = std::move(now);
}

bool Compare(const CKnownLibrary& before, const CKnownLibrary& after, const CChangeNames& names,
             CLibraryChange& change)
{
    return CComparison(before, after, names, change).Run();
}
