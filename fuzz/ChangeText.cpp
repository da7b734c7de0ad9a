// The text of a change: what is read is written again as it was read, and is done to a library as a whole or not at
// all; what was done can be taken back.

#include "changes/ChangeText.h"
#include "FuzzLibrary.h"
#include "changes/Apply.h"

namespace
{
constexpr const char* c_szLibrary =
    "(header (version 1)) (prefab-tree (container (name R) (children (prefab (name P) (type Sprite) "
    "(properties))"
    "(prefab (name L) (type Light) (properties))))) (effect-tree (container (name R) (children (container "
    "(name G)"
    "(children)) (effect (name E) (length 5000) (key-list (key (name K) (type Sprite) (id 0) (start-time 0)"
    "(end-time 100) (track 0) (parent P) (properties)) (key (name M) (type Sprite) (id 1) (start-time 100)"
    "(end-time 200) (track 0) (properties)) (key (name L) (type Light) (id 2) (start-time 0) (end-time 100) "
    "(track 1)"
    "(properties)))) (effect (name F) (length 100) (key-list)))))";

struct CNoOwner : ILibraryOwner
{
    void OnReleasing(const CSpell&) override {}
    void OnReleasing(CEffectPropertySet&) override {}
};

// Small numbers stand for what the library has, so that a text needn't know its serials.
class CNumbers
{
public:
    explicit CNumbers(const CFuzzLibrary& library) : m_Library(library) {}

    void Map(CDifference& d)
    {
        const bool bPrefab = d.m_eKind == EDifference::ePrefab || d.m_Effect == CChangeRef();
        if (d.m_eKind == EDifference::eEffect || d.m_eKind == EDifference::eEffectName ||
            d.m_eKind == EDifference::eEffectLength)
            d.m_Object.m_nSerial = Spell(d.m_Object.m_nSerial);
        else if (d.m_eKind == EDifference::eTrack)
            d.m_Object.m_nSerial = Track(d.m_Object.m_nSerial);
        else if (d.m_eKind < EDifference::eItem)
            d.m_Object.m_nSerial = bPrefab ? Prefab(d.m_Object.m_nSerial) : Key(d.m_Object.m_nSerial);
        if (d.m_Effect != CChangeRef())
            d.m_Effect.m_nSerial = Spell(d.m_Effect.m_nSerial);
        if (d.m_eKind < EDifference::eItem)
            d.m_Place.m_List.m_nSerial = Track(d.m_Place.m_List.m_nSerial);
        for (CChangeValue* pValue : {&d.m_Before, &d.m_After})
            Map(*pValue, d);
    }

private:
    void Map(CChangeValue& value, const CDifference& d)
    {
        if (auto* pRef = std::get_if<CChangeRef>(&value))
            pRef->m_nSerial = Prefab(pRef->m_nSerial);
        // What comes or goes bears the number of the object that it is.
        Renumber<CSpellImage>(value, d);
        Renumber<CSetImage>(value, d);
        Renumber<CTrackImage>(value, d);
        Renumber<CKeyImage>(value, d);
        if (auto* pPlace = std::get_if<CChangePlace>(&value))
            pPlace->m_List.m_nSerial = Track(pPlace->m_List.m_nSerial);
        if (auto* pOrder = std::get_if<std::vector<CChangeRef>>(&value))
        {
            for (CChangeRef& ref : *pOrder)
                ref.m_nSerial = d.m_eKind == EDifference::eKeyOrder      ? Key(ref.m_nSerial)
                                : d.m_eKind == EDifference::eTrackOrder  ? Track(ref.m_nSerial)
                                : d.m_eKind == EDifference::eEffectOrder ? Spell(ref.m_nSerial)
                                : d.m_eKind == EDifference::ePrefabOrder ? Prefab(ref.m_nSerial)
                                                                         : ref.m_nSerial;
        }
    }
    template <class TNode>
    static void Renumber(CChangeValue& value, const CDifference& d)
    {
        if (auto* pNode = std::get_if<std::shared_ptr<const TNode>>(&value))
        {
            auto pCopy = std::make_shared<TNode>(**pNode);
            pCopy->m_nSerial = d.m_Object.m_nSerial;
            *pNode = std::move(pCopy);
        }
    }
    template <class TSerials>
    static uint64_t Pick(const TSerials& serials, uint64_t n)
    {
        return n < serials.size() ? serials[n] : n;
    }
    uint64_t Spell(uint64_t n) const
    {
        std::vector<uint64_t> serials;
        for (const auto& pSpell : m_Library.m_SpellMgr.Spells())
            serials.push_back(pSpell->m_nSerial);
        return Pick(serials, n);
    }
    uint64_t Prefab(uint64_t n) const
    {
        std::vector<uint64_t> serials;
        for (const auto& pPrefab : m_Library.m_SpellMgr.Prefabs())
            serials.push_back(pPrefab->m_Serial.Get());
        return Pick(serials, n);
    }
    uint64_t Track(uint64_t n) const
    {
        std::vector<uint64_t> serials;
        for (const auto& pSpell : m_Library.m_SpellMgr.Spells())
            for (const auto& pTrack : pSpell->m_Tracks.Tracks())
                serials.push_back(pTrack->m_Serial.Get());
        return Pick(serials, n);
    }
    uint64_t Key(uint64_t n) const
    {
        std::vector<uint64_t> serials;
        m_Library.m_SpellMgr.ForEachKey([&](CSpell&, CKey& key) { serials.push_back(key.m_Serial.Get()); });
        return Pick(serials, n);
    }

    const CFuzzLibrary& m_Library;
};

void CheckApply(CLibraryChange change)
{
    static CTestModule s_Types;
    CFuzzLibrary library(s_Types.m_Module);
    Require(library.Load(c_szLibrary), "the library doesn't load");
    CNumbers numbers(library);
    for (CDifference& difference : change.m_Differences)
        numbers.Map(difference);

    CEditHub hub;
    CNoOwner owner;
    const CApplyTarget target{
        {library.m_SpellMgr, library.m_EffectTree, library.m_PrefabTree}, library.m_Module, hub, owner};
    std::string sBefore, sAfter;
    Require(library.Save(sBefore), "the library can't be saved");
    if (!Apply(change, target, "Fuzz"))
        Require(!Apply(change.TurnedRound(), target, "Undo"), "what was done can't be taken back");
    Require(library.Save(sAfter) && sBefore == sAfter, "the library isn't what it was");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts();
    CLibraryChange change, again;
    std::string sError;
    if (!ReadChangeText({reinterpret_cast<const char*>(pData), nSize}, change, sError))
    {
        Require(!sError.empty() && change.IsEmpty(), "a refusal without a reason");
        return 0;
    }
    const std::string sText = WriteChangeText(change);
    Require(ReadChangeText(sText, again, sError), "what was written can't be read");
    Require(WriteChangeText(again) == sText, "what was read again is another change");
    for (const CDifference& difference : change.m_Differences)
        Require(!Tell(difference).empty(), "nothing to tell");
    Require(change.Joined(CLibraryChange()).GetMemory() >= change.m_Differences.size() * sizeof(CDifference),
            "memory");
    CheckApply(std::move(change));
    return 0;
}
