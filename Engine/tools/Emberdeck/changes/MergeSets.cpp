#include <algorithm>

#include "changes/Apply.h"
#include "changes/MergeParts.h"
#include "changes/SameContent.h"

uint64_t CNumbering::Fresh()
{
    uint64_t nNumber = CSerial().Get();
    while (!m_Used.emplace(nNumber, true).second)
        nNumber = CSerial().Get();
    return nNumber;
}

void CNumbering::Begin(const std::vector<CNumbered>& base, const std::vector<CNumbered>& mine)
{
    std::unordered_map<uint64_t, const std::string*> kinds;
    for (const CNumbered& thing : mine)
    {
        kinds.emplace(thing.m_nNumber, &thing.m_sKind);
        m_Used.emplace(thing.m_nNumber, true);
        m_NewInMine.emplace(thing.m_nNumber, false);
    }
    // All that is called something, before something is called anew.
    for (const CNumbered& thing : base)
    {
        m_Kinds.emplace(thing.m_nNumber, thing.m_sKind);
        m_Used.emplace(thing.m_nNumber, true);
    }
    for (const CNumbered& thing : base)
    {
        const auto found = kinds.find(thing.m_nNumber);
        const bool bSame = found == kinds.end() || *found->second == thing.m_sKind;
        m_bChanges = m_bChanges || !bSame;
        if (bSame)
            m_NewInMine.erase(thing.m_nNumber);
        m_Base.emplace(thing.m_nNumber, bSame ? thing.m_nNumber : Fresh());
    }
}

bool CNumbering::TakeOld(const CNumbered& thing)
{
    const auto found = m_Kinds.find(thing.m_nNumber);
    if (found == m_Kinds.end() || found->second != thing.m_sKind)
        return false;
    m_Theirs.emplace(thing.m_nNumber, NumberIn(m_Base, thing.m_nNumber));
    return true;
}

void CNumbering::TakeNew(uint64_t nNumber, uint64_t nPair)
{
    const auto pair = m_NewInMine.find(nPair);
    const bool bPair = pair != m_NewInMine.end() && !pair->second;
    uint64_t nCalled = nNumber;
    if (bPair)
    {
        pair->second = true;
        nCalled = nPair;
    }
    else if (!m_Used.emplace(nNumber, true).second)
        nCalled = Fresh();
    m_bChanges = m_bChanges || nCalled != nNumber;
    m_Theirs.emplace(nNumber, nCalled);
}

std::pair<const CSetImage*, const CSetImage::CSlot*> SlotInForce(const CSetsByNumber& prefabs,
                                                                 uint64_t nParent, uint32_t nSlot)
{
    size_t nSteps = 0; // a damaged chain may go round
    for (auto found = prefabs.find(nParent); found != prefabs.end() && nSteps <= prefabs.size(); ++nSteps)
    {
        const CSetImage& set = *found->second;
        if (const CSetImage::CSlot* pSlot = set.FindSlot(nSlot))
            return {&set, pSlot};
        found = prefabs.find(set.m_nParent);
    }
    return {nullptr, nullptr};
}

bool IsSameSlot(const CSetImage& left, const CSetImage::CSlot& leftSlot, const CSetImage& right,
                const CSetImage::CSlot& rightSlot)
{
    const uint32_t eType = left.m_pType->m_Props[leftSlot.m_nSlot].m_eType;
    const auto a = left.m_Points.begin() + leftSlot.m_nFirst;
    const auto b = right.m_Points.begin() + rightSlot.m_nFirst;
    return std::equal(a, a + leftSlot.m_nCount, b, b + rightSlot.m_nCount,
                      [&](const CPointImage& p, const CPointImage& q) { return IsSameWritten(p, q, eType); });
}

void CSlotBuilder::Add(const CSetImage& from, const CSetImage::CSlot& slot)
{
    m_Slots.push_back({slot.m_nSlot, static_cast<uint32_t>(m_Points.size()), slot.m_nCount});
    const auto first = from.m_Points.begin() + slot.m_nFirst;
    m_Points.insert(m_Points.end(), first, first + slot.m_nCount);
}

void CSlotBuilder::Finish(CSetImage& set) const
{
    set.m_Slots = m_Slots;
    set.m_Points = m_Points;
}

namespace
{

using CSets = std::array<const CSetImage*, c_nNumStates>;

// A slot, or the lack of it.
struct CSlotValue
{
    const CSetImage* m_pSet;
    const CSetImage::CSlot* m_pSlot; // null: empty
    CChangeValue Points() const
    {
        if (!m_pSlot)
            return {};
        const auto first = m_pSet->m_Points.begin() + m_pSlot->m_nFirst;
        return CChangePoints{0, std::vector<CPointImage>(first, first + m_pSlot->m_nCount)};
    }
};

bool IsSameValue(const CSlotValue& left, const CSlotValue& right)
{
    if (!left.m_pSlot || !right.m_pSlot)
        return !left.m_pSlot && !right.m_pSlot;
    return IsSameSlot(*left.m_pSet, *left.m_pSlot, *right.m_pSet, *right.m_pSlot);
}

void MergeSlots(CSetImage& set, const CSets& three, const CChangeRef& effect, const CChangeRef& object,
                CMergeNotes& notes)
{
    const auto& props = three[eState_Mine]->m_pType->m_Props;
    CSlotBuilder builder;
    for (uint32_t i = 0; i < props.size(); ++i)
    {
        std::array<CSlotValue, c_nNumStates> values{};
        for (size_t n = 0; n < c_nNumStates; ++n)
            values[n] = {three[n], three[n]->FindSlot(i)};
        const EMergeSide eSide = PickSide(
            &values[eState_Base], values[eState_Mine], values[eState_Theirs], IsSameValue,
            [&]
            {
                CDifference mine = DifferenceOf(EDifference::eSetValue, effect, object);
                mine.m_sProperty = props[i].m_sName;
                mine.m_eType = props[i].m_eType;
                mine.m_nSlot = i;
                mine.m_Before = values[eState_Base].Points();
                mine.m_After = values[eState_Mine].Points();
                return notes.Settle(EMergeConflict::eField, std::move(mine), values[eState_Theirs].Points());
            });
        const CSlotValue& value = values[StateOf(eSide)];
        if (value.m_pSlot)
            builder.Add(*value.m_pSet, *value.m_pSlot);
    }
    builder.Finish(set);
}

} // namespace

void MergeSet(CSetImage& set, const CSets& three, const CChangeRef& effect, const CChangeRef& object,
              CMergeNotes& notes)
{
    const CSetImage& base = *three[eState_Base];
    const CSetImage& mine = *three[eState_Mine];
    const CSetImage& theirs = *three[eState_Theirs];
    if (PickField(notes, DifferenceOf(EDifference::eSetName, effect, object), &base.m_sName, mine.m_sName,
                  theirs.m_sName) == EMergeSide::eTheirs)
        set.m_sName = theirs.m_sName;

    const auto refOf = [](const CSetImage& of) {
        return of.m_nParent ? CChangeValue(CChangeRef{of.m_nParent, of.m_sParent}) : CChangeValue();
    };
    const EMergeSide eParent =
        PickSide(&base.m_nParent, mine.m_nParent, theirs.m_nParent, std::equal_to<uint64_t>(),
                 [&]
                 {
                     CDifference difference = DifferenceOf(EDifference::eSetParent, effect, object);
                     difference.m_Before = refOf(base);
                     difference.m_After = refOf(mine);
                     return notes.Settle(EMergeConflict::eField, std::move(difference), refOf(theirs));
                 });
    set.m_nParent = three[StateOf(eParent)]->m_nParent;
    set.m_sParent = three[StateOf(eParent)]->m_sParent;

    // Another plug-in's types have their properties in other slots: such a set is one value.
    const auto sameType = [&](const CSetImage& other)
    { return mine.m_pType && other.m_pType && *mine.m_pType == *other.m_pType; };
    if (sameType(base) && sameType(theirs))
        MergeSlots(set, three, effect, object, notes);
    else if (!IsSameContent(base, theirs) &&
             (IsSameContent(base, mine) ||
              notes.Settle(EMergeConflict::eField, DifferenceOf(EDifference::eSetValue, effect, object),
                           {}) == EMergeSide::eTheirs))
        set = theirs;
}

void FillFrom(CSetImage& set, const CSetImage& from, const CSetsByNumber& prefabs)
{
    const size_t nProps = set.m_pType ? set.m_pType->m_Props.size() : 0;
    if (set.m_Slots.size() == nProps)
        return;
    CSlotBuilder builder;
    for (uint32_t i = 0; i < nProps; ++i)
    {
        const CSetImage::CSlot* pOwn = set.FindSlot(i);
        const auto [pPrefab, pSlot] = SlotInForce(prefabs, from.m_nParent, i);
        if (pOwn)
            builder.Add(set, *pOwn);
        else if (pSlot)
            builder.Add(*pPrefab, *pSlot);
    }
    builder.Finish(set);
}
