#pragma once

#include <array>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "changes/MergeParts.h"

// A key's place on the timeline.
struct CMergePlace
{
    uint64_t m_nTrack = 0;
    int32_t m_nStart = 0;
    int32_t m_nEnd = 0;
    friend bool operator==(const CMergePlace&, const CMergePlace&) = default;
};

// A motion link: the id that it has, and the key that this is; 0: none.
struct CMergeLink
{
    bool m_bLinked = false;
    uint32_t m_nID = 0;
    uint64_t m_nTarget = 0;
};

// A key of the merged effect, as far as it is known.
struct CKeyDraft
{
    uint64_t m_nNumber = 0;
    CThree<CKeyImage> m_Three;
    std::array<CMergePlace, c_nNumStates> m_Places; // where it is there
    std::shared_ptr<CKeyImage> m_pKey;
    CMergePlace m_Place;
    CMergeLink m_Link;
    bool m_bGone = false; // had no room, and no other place

    const CKeyImage& Any() const { return *AnyOf(m_Three); }
    CChangeRef Ref() const { return {m_nNumber, std::to_string(Any().m_nKeyID)}; }
};

// Merges an effect that both sides changed.
class CSpellMerge
{
public:
    // All three are there.
    CSpellMerge(const CThree<CSpellImage>& three, const std::array<CSetsByNumber, c_nNumStates>& prefabs,
                CMergeNotes& notes);

    std::shared_ptr<const CSpellImage> Run();

private:
    struct CKeyOf
    {
        std::shared_ptr<const CKeyImage> m_pKey;
        CMergePlace m_Place;
    };
    // The effect in one state, by numbers that mean the same in all.
    struct CState
    {
        std::vector<uint64_t> m_TrackList;
        std::unordered_map<uint64_t, std::vector<uint64_t>> m_TrackKeys;
        std::vector<uint64_t> m_KeyList;
        std::unordered_map<uint64_t, CKeyOf> m_Keys;
        std::unordered_map<uint32_t, uint64_t> m_ByID; // of an id the first
    };

    void Number();
    void FillState(size_t nState, const CNumberMap& tracks, const CNumberMap& keys);
    CMergeLink LinkOf(size_t nState, const CKeyImage& key) const;

    void PickKeys();
    void AddDraft(uint64_t nKey, EPresence ePresence);
    CThree<CKeyImage> StatesOf(uint64_t nKey) const;
    void MergeKeyFields(CKeyDraft& draft);
    void MergePlace(CKeyDraft& draft);
    void CheckLink(size_t nDraft);
    bool HasKey(uint64_t nKey) const;

    void SettlePlaces();
    void GiveIDs();
    void FinishLinks();
    std::vector<uint64_t> MergeTracks() const;
    std::vector<uint64_t> MergeKeys(uint64_t nTrack, const std::vector<size_t>& drafts) const;
    bool ComesFirst(uint64_t nTrack, uint64_t nOther) const;

    const CThree<CSpellImage> m_Three;
    const std::array<CSetsByNumber, c_nNumStates>& m_Prefabs;
    CMergeNotes& m_Notes;
    const CChangeRef m_Effect;
    std::array<CState, c_nNumStates> m_States;
    std::vector<CKeyDraft> m_Drafts;
    std::unordered_map<uint64_t, size_t> m_DraftOf; // by key
    std::vector<int> m_LinkOf; // of each draft the state whose change its link is; -1: of none
};
