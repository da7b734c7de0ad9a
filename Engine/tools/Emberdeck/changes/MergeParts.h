#pragma once

#include <array>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "changes/Merge.h"
#include "model/Serial.h"

// What the parts of a merge share.

enum EMergeState : size_t
{
    eState_Base,
    eState_Mine,
    eState_Theirs,
    c_nNumStates
};

// One thing in the three states of a library; null: it isn't there.
template <class T>
using CThree = std::array<std::shared_ptr<const T>, c_nNumStates>;

inline size_t StateOf(EMergeSide eSide)
{
    return eSide == EMergeSide::eMine ? eState_Mine : eState_Theirs;
}

// The first of mine, theirs and the base that has it.
template <class T>
const std::shared_ptr<const T>& AnyOf(const CThree<T>& three)
{
    return three[eState_Mine]     ? three[eState_Mine]
           : three[eState_Theirs] ? three[eState_Theirs]
                                  : three[eState_Base];
}

inline CDifference DifferenceOf(EDifference eKind, const CChangeRef& effect, const CChangeRef& object)
{
    CDifference difference;
    difference.m_eKind = eKind;
    difference.m_Effect = effect;
    difference.m_Object = object;
    return difference;
}

// The conflicts, and who settles them.
class CMergeNotes
{
public:
    CMergeNotes(const CMergeSettle& settle, std::vector<CMergeConflict>& conflicts)
        : m_Settle(settle),
          m_Conflicts(conflicts)
    {
    }

    EMergeSide Settle(EMergeConflict eWhy, CDifference mine, CChangeValue theirs, CChangeRef other = {})
    {
        CMergeConflict conflict{eWhy, std::move(mine), std::move(theirs), std::move(other),
                                EMergeSide::eMine};
        if (m_Settle)
            conflict.m_eStands = m_Settle(conflict);
        m_Conflicts.push_back(std::move(conflict));
        return m_Conflicts.back().m_eStands;
    }
    // The whole of a thing in the three states.
    template <class T>
    EMergeSide SettleWhole(EMergeConflict eWhy, CDifference mine, const CThree<T>& three,
                           const CChangeRef& other = {})
    {
        const auto valueOf = [](const std::shared_ptr<const T>& p)
        { return p ? CChangeValue(p) : CChangeValue(); };
        mine.m_Before = valueOf(three[eState_Base]);
        mine.m_After = valueOf(three[eState_Mine]);
        return Settle(eWhy, std::move(mine), valueOf(three[eState_Theirs]), other);
    }

    size_t GetNumConflicts() const { return m_Conflicts.size(); }
    void Forget(size_t nFirst) { m_Conflicts.resize(nFirst); }

private:
    const CMergeSettle& m_Settle;
    std::vector<CMergeConflict>& m_Conflicts;
};

// Which side's value a field has, both sides having one. pBase: null for none.
template <class TValue, class TSame, class TConflict>
EMergeSide PickSide(const TValue* pBase, const TValue& mine, const TValue& theirs, const TSame& isSame,
                    const TConflict& conflict)
{
    if (pBase && isSame(*pBase, theirs))
        return EMergeSide::eMine;
    if (pBase && isSame(*pBase, mine))
        return EMergeSide::eTheirs;
    return isSame(mine, theirs) ? EMergeSide::eMine : conflict();
}

// The same for a field that a difference has as one value.
template <class TValue>
EMergeSide PickField(CMergeNotes& notes, CDifference mine, const TValue* pBase, const TValue& ofMine,
                     const TValue& ofTheirs)
{
    return PickSide(pBase, ofMine, ofTheirs, std::equal_to<TValue>(),
                    [&]
                    {
                        if (pBase)
                            mine.m_Before = *pBase;
                        mine.m_After = ofMine;
                        return notes.Settle(EMergeConflict::eField, std::move(mine), ofTheirs);
                    });
}

// Which states a thing is made of that one side may have made or deleted.
enum class EPresence
{
    eNone,
    eMine,
    eTheirs,
    eBoth
};
template <class T, class TChanged, class TConflict>
EPresence PresenceOf(const CThree<T>& three, const TChanged& isChanged, const TConflict& conflict)
{
    const bool bMine = three[eState_Mine] != nullptr;
    const bool bTheirs = three[eState_Theirs] != nullptr;
    if (bMine == bTheirs)
        return bMine ? EPresence::eBoth : EPresence::eNone;
    const EPresence eKept = bMine ? EPresence::eMine : EPresence::eTheirs;
    if (!three[eState_Base])
        return eKept;
    if (!isChanged(bMine ? eState_Mine : eState_Theirs))
        return EPresence::eNone;
    return conflict() == (bMine ? EMergeSide::eMine : EMergeSide::eTheirs) ? eKept : EPresence::eNone;
}

using CNumberMap = std::unordered_map<uint64_t, uint64_t>;

inline uint64_t NumberIn(const CNumberMap& map, uint64_t nNumber)
{
    const auto found = map.find(nNumber);
    return found != map.end() ? found->second : nNumber;
}

// Something with a number, and its kind: of different kinds two aren't the same, whatever their numbers say.
struct CNumbered
{
    uint64_t m_nNumber = 0;
    std::string m_sKind;
};

// Numbers that mean the same in all three states. Mine's stay.
class CNumbering
{
public:
    // What the base's and theirs are called. pairOf(n) gives the one of mine that a new one of theirs is the same as;
    // 0: none. It may ask IsNewInMine.
    template <class TPair>
    void Run(const std::vector<CNumbered>& base, const std::vector<CNumbered>& mine,
             const std::vector<CNumbered>& theirs, const TPair& pairOf)
    {
        Begin(base, mine);
        for (const CNumbered& thing : theirs)
        {
            if (!TakeOld(thing))
                TakeNew(thing.m_nNumber, pairOf(thing.m_nNumber));
        }
    }

    bool IsNewInMine(uint64_t nNumber) const { return m_NewInMine.contains(nNumber); }
    const CNumberMap& Base() const { return m_Base; }
    const CNumberMap& Theirs() const { return m_Theirs; }
    bool ChangesAny() const { return m_bChanges; }

private:
    void Begin(const std::vector<CNumbered>& base, const std::vector<CNumbered>& mine);
    bool TakeOld(const CNumbered& thing);
    void TakeNew(uint64_t nNumber, uint64_t nPair);
    uint64_t Fresh();

    CNumberMap m_Base, m_Theirs;
    std::unordered_map<uint64_t, std::string> m_Kinds; // of the base's, by what they were called
    std::unordered_map<uint64_t, bool> m_NewInMine;    // whether it is somebody's pair
    std::unordered_map<uint64_t, bool> m_Used;
    bool m_bChanges = false;
};

using CSetsByNumber = std::unordered_map<uint64_t, std::shared_ptr<const CSetImage>>;

// The slot that is in force for a set that stands on nParent: that of the nearest prefab which has one, and it. Null:
// none has.
std::pair<const CSetImage*, const CSetImage::CSlot*> SlotInForce(const CSetsByNumber& prefabs,
                                                                 uint64_t nParent, uint32_t nSlot);

// Whether two slots hold the same in a file.
bool IsSameSlot(const CSetImage& left, const CSetImage::CSlot& leftSlot, const CSetImage& right,
                const CSetImage::CSlot& rightSlot);

// A set with the slots of others: nothing but whose slot each is.
class CSlotBuilder
{
public:
    void Add(const CSetImage& from, const CSetImage::CSlot& slot);
    void Finish(CSetImage& set) const;

private:
    std::vector<CSetImage::CSlot> m_Slots;
    std::vector<CPointImage> m_Points;
};

// Merges name, prefab and values into set, which is a copy of mine's. All three are there.
void MergeSet(CSetImage& set, const std::array<const CSetImage*, c_nNumStates>& three,
              const CChangeRef& effect, const CChangeRef& object, CMergeNotes& notes);
// A set without a prefab, the slots that it lacks filled with what is in force for it in from, which stands on one.
void FillFrom(CSetImage& set, const CSetImage& from, const CSetsByNumber& prefabs);
