#include <map>

#include "changes/ChangeText.h"
#include "changes/ChangeTextNames.h"
#include "changes/ListIn.h"
#include "model/EffectModule.h"
#include "model/EffectProperty.h"
#include "model/MakeOrNull.h"
#include "model/Serial.h"
#include "model/Spell.h"
#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsatextloader.h"

namespace
{

constexpr size_t c_nMaxName = 1023; // as long as an atom may be

class CChangeReader
{
public:
    explicit CChangeReader(CChangeNumbers* pNumbers) : m_pNumbers(pNumbers) {}

    // Why the difference was refused; empty: it is read.
    std::string Read(const CQSANode& node, CDifference& d)
    {
        if (!node.IsList() || node.GetNumElements() == 0 || !node.GetElement(0)->IsAtom())
            return "not a difference";
        size_t nKind = 0;
        while (nKind < c_nNumDifferences && !CListIn::IsList(node, c_DifferenceNames[nKind]))
            ++nKind;
        if (nKind == c_nNumDifferences)
            return "an unknown kind of difference";
        d.m_eKind = static_cast<EDifference>(nKind);
        CListIn in(node, 1);
        if (in.IsNext("prefabs"))
        {
            if (in.Next()->GetNumElements() != 1)
                return "a side with something in it";
            d.m_eSide = ETreeSide::ePrefabs;
        }
        const bool bRefs = Ref(in, "effect", d, d.m_Effect) && Ref(in, "object", d, d.m_Object) &&
                           Ref(in, "list", d, d.m_Place.m_List) && Place(in, d.m_Place.m_nPlace);
        if (!bRefs || !Property(in, d))
            return "a broken reference";
        if (!Side(in, "before", d, d.m_Before) || !Side(in, "after", d, d.m_After) || in.HasMore())
            return "a value that doesn't belong here";
        return IsSound(d) ? std::string() : std::string("a difference of something else");
    }

private:
    // What the object or item of that number is called here.
    uint64_t Object(uint64_t n) const { return m_pNumbers ? m_pNumbers->Object(n) : n; }
    uint32_t Item(ETreeSide eSide, uint32_t n) const { return m_pNumbers ? m_pNumbers->Item(eSide, n) : n; }
    static bool IsOfItems(EDifference eKind)
    {
        return eKind == EDifference::eItem || eKind == EDifference::eItemOrder ||
               eKind == EDifference::eItemText;
    }

    bool RefHere(CListIn& list, const CDifference& d, CChangeRef& ref) const
    {
        const bool bItem = IsOfItems(d.m_eKind);
        if (!list.Text(ref.m_sName, c_nMaxName) || !list.Number(ref.m_nSerial) || list.HasMore() ||
            (bItem && ref.m_nSerial > UINT32_MAX))
            return false;
        ref.m_nSerial = bItem ? Item(d.m_eSide, static_cast<uint32_t>(ref.m_nSerial)) : Object(ref.m_nSerial);
        return true;
    }
    bool Ref(CListIn& in, const char* pszName, const CDifference& d, CChangeRef& ref) const
    {
        if (!in.IsNext(pszName))
            return true; // there is none
        CListIn list(*in.Next(), 1);
        return RefHere(list, d, ref) && ref != CChangeRef();
    }
    static bool Place(CListIn& in, uint32_t& nPlace)
    {
        if (!in.IsNext("place"))
            return true;
        CListIn list(*in.Next(), 1);
        return list.Number(nPlace) && nPlace != 0 && !list.HasMore();
    }
    static bool Kind(CListIn& in, uint32_t& eType)
    {
        std::string sKind;
        if (!in.Text(sKind, c_nMaxName))
            return false;
        EEffectPropertyType eKind = ePropType_None;
        if (sKind == c_szKindUI)
            eKind = ePropType_UI;
        else if (sKind != c_szKindNone &&
                 (!ParsePropTypeName(sKind.c_str(), eKind) || sKind != GetPropTypeName(eKind)))
            return false;
        eType = eKind;
        return true;
    }
    static bool Property(CListIn& in, CDifference& d)
    {
        if (d.m_eKind != EDifference::eSetValue)
            return true;
        if (!in.IsNext("property"))
            return false;
        CListIn list(*in.Next(), 1);
        return list.Text(d.m_sProperty, c_nMaxName) && Kind(list, d.m_eType) && list.Number(d.m_nSlot) &&
               d.m_nSlot < CEffectModule::c_nMaxProps && !list.HasMore();
    }

    static bool Channel(CListIn& in, uint32_t& n) { return in.Number(n) && n <= 255; }
    static bool Point(const CQSANode& node, uint32_t eType, CPointImage& point)
    {
        if (!node.IsList())
            return false;
        CListIn in(node, 0);
        if (!in.Float(point.m_fTime))
            return false;
        if (IsTextKind(eType))
        {
            std::string sText;
            if (!in.Text(sText, CPropData::c_nMaxText))
                return false;
            point.m_Data.SetText(sText);
        }
        else if (eType == ePropType_Int)
        {
            int32_t n = 0;
            if (!in.Number(n))
                return false;
            point.m_Data.SetInt(n);
        }
        else if (eType == ePropType_Float)
        {
            float f = 0.0f;
            if (!in.Float(f))
                return false;
            point.m_Data.SetFloat(f);
        }
        else if (eType == ePropType_Vector)
        {
            CVector3 v;
            if (!in.Float(v.x) || !in.Float(v.y) || !in.Float(v.z))
                return false;
            point.m_Data.SetVector(v);
        }
        else if (eType == ePropType_Color)
        {
            uint32_t r = 0, g = 0, b = 0, a = 0;
            if (!Channel(in, r) || !Channel(in, g) || !Channel(in, b) || !Channel(in, a))
                return false;
            point.m_Data.SetColor(MakePropColor(r, g, b, a));
        }
        return !in.HasMore();
    }

    // Of one name there is one type in a text; its properties are those that any set has.
    bool NoteProp(CTypeImage& type, uint32_t nSlot, const std::string& sName, uint32_t eType)
    {
        constexpr size_t c_nMaxProps = size_t(1) << 20; // of all types of a text
        if (nSlot >= CEffectModule::c_nMaxProps)
            return false;
        if (nSlot >= type.m_Props.size())
        {
            m_nProps += nSlot + 1 - type.m_Props.size();
            if (m_nProps > c_nMaxProps)
                return false;
            type.m_Props.resize(nSlot + 1);
        }
        CTypeImage::CProp& prop = type.m_Props[nSlot];
        if (prop.m_sName.empty() && prop.m_eType == ePropType_None)
            prop = {sName, eType};
        return prop == CTypeImage::CProp{sName, eType};
    }
    bool Set(CListIn& in, CSetImage& set)
    {
        std::string sType;
        if (!in.Number(set.m_nSerial) || !in.Text(set.m_sName, c_nMaxName) || !in.Text(sType, c_nMaxName))
            return false;
        std::shared_ptr<CTypeImage>& pType = m_Types[sType];
        if (!pType)
        {
            pType = std::make_shared<CTypeImage>();
            pType->m_sName = sType;
        }
        set.m_pType = pType;
        set.m_nSerial = Object(set.m_nSerial);
        CChangeRef parent;
        if (!Ref(in, "parent", CDifference(), parent))
            return false;
        set.m_nParent = parent.m_nSerial;
        set.m_sParent = parent.m_sName;
        while (in.IsNext("slot"))
        {
            CListIn slot(*in.Next(), 1);
            CSetImage::CSlot& now = set.m_Slots.emplace_back();
            std::string sName;
            uint32_t eType = 0;
            if (!slot.Number(now.m_nSlot) || !slot.Text(sName, c_nMaxName) || !Kind(slot, eType) ||
                !NoteProp(*pType, now.m_nSlot, sName, eType))
                return false;
            if (set.m_Slots.size() > 1 && set.m_Slots[set.m_Slots.size() - 2].m_nSlot >= now.m_nSlot)
                return false;
            now.m_nFirst = static_cast<uint32_t>(set.m_Points.size());
            for (now.m_nCount = 0; slot.IsNextList(); ++now.m_nCount)
            {
                if (!Point(*slot.Next(), eType, set.m_Points.emplace_back()))
                    return false;
            }
            if (slot.HasMore())
                return false;
        }
        return !in.HasMore();
    }
    std::shared_ptr<CKeyImage> Key(const CQSANode& node)
    {
        auto pKey = std::make_shared<CKeyImage>();
        CListIn in(node, 1);
        if (!in.Number(pKey->m_nKeyID) || !in.Number(pKey->m_nStartTime) || !in.Number(pKey->m_nEndTime))
            return nullptr;
        pKey->m_bMotionLinked = in.IsNext("link");
        const bool bWasLinked = in.IsNext("unlinked");
        if (pKey->m_bMotionLinked || bWasLinked)
        {
            CListIn link(*in.Next(), 1);
            if (!link.Number(pKey->m_nMotionLinkID) || link.HasMore() ||
                (bWasLinked && pKey->m_nMotionLinkID == 0))
                return nullptr;
        }
        return Set(in, *pKey) ? pKey : nullptr;
    }
    std::shared_ptr<CTrackImage> Track(const CQSANode& node)
    {
        auto pTrack = std::make_shared<CTrackImage>();
        CListIn in(node, 1);
        if (!in.Number(pTrack->m_nSerial))
            return nullptr;
        pTrack->m_nSerial = Object(pTrack->m_nSerial);
        while (in.IsNext("key"))
        {
            pTrack->m_Keys.push_back(Key(*in.Next()));
            if (!pTrack->m_Keys.back())
                return nullptr;
        }
        return in.HasMore() ? nullptr : pTrack;
    }
    std::shared_ptr<CSpellImage> Spell(const CQSANode& node)
    {
        auto pSpell = std::make_shared<CSpellImage>();
        CListIn in(node, 1);
        if (!in.Number(pSpell->m_nSerial) || !in.Text(pSpell->m_sName, CSpell::c_nMaxName) ||
            !in.Number(pSpell->m_nPhaseLength))
            return nullptr;
        pSpell->m_nSerial = Object(pSpell->m_nSerial);
        while (in.IsNext("track"))
        {
            pSpell->m_Tracks.push_back(Track(*in.Next()));
            if (!pSpell->m_Tracks.back())
                return nullptr;
        }
        return in.HasMore() ? nullptr : pSpell;
    }

    bool Side(CListIn& in, const char* pszName, const CDifference& d, CChangeValue& value)
    {
        if (!in.IsNext(pszName))
            return true;
        CListIn side(*in.Next(), 1);
        const CQSANode* pNode = side.IsNextList() ? side.Next() : nullptr;
        return pNode && !side.HasMore() && Value(*pNode, d, value) &&
               !std::holds_alternative<std::monostate>(value);
    }
    bool Value(const CQSANode& node, const CDifference& d, CChangeValue& value)
    {
        CListIn in(node, 1);
        const auto take = [&value](const auto& p)
        {
            using TNode = typename std::decay_t<decltype(p)>::element_type;
            value = std::shared_ptr<const TNode>(p);
            return p != nullptr;
        };
        if (CListIn::IsList(node, "number"))
            return in.Number(value.emplace<int64_t>()) && !in.HasMore();
        if (CListIn::IsList(node, "text"))
            return in.Text(value.emplace<std::string>(), c_nMaxName) && !in.HasMore();
        if (CListIn::IsList(node, "ref"))
        {
            return RefHere(in, d, value.emplace<CChangeRef>());
        }
        if (CListIn::IsList(node, "place"))
        {
            CChangePlace& place = value.emplace<CChangePlace>();
            return in.Number(place.m_nPlace) && Ref(in, "list", d, place.m_List) && !in.HasMore();
        }
        if (CListIn::IsList(node, "order"))
        {
            auto& refs = value.emplace<std::vector<CChangeRef>>();
            while (in.IsNext("ref"))
            {
                if (!Ref(in, "ref", d, refs.emplace_back()))
                    return false;
            }
            return !in.HasMore();
        }
        if (CListIn::IsList(node, "points"))
        {
            CChangePoints& points = value.emplace<CChangePoints>();
            bool bOk = in.Number(points.m_nFirst);
            while (bOk && in.IsNextList())
                bOk = Point(*in.Next(), d.m_eType, points.m_Points.emplace_back());
            return bOk && !in.HasMore();
        }
        if (CListIn::IsList(node, "item"))
        {
            CItemImage& item = value.emplace<CItemImage>();
            if (!in.Number(item.m_nItem) || !in.Text(item.m_sText, c_nMaxName) || !in.Number(item.m_nImage) ||
                !in.Number(item.m_nSelectedImage) || !in.Number(item.m_nObject) || in.HasMore())
                return false;
            item.m_nItem = Item(d.m_eSide, item.m_nItem);
            item.m_nObject = Object(item.m_nObject);
            return true;
        }
        if (CListIn::IsList(node, "effect"))
            return take(Spell(node));
        if (CListIn::IsList(node, "track"))
            return take(Track(node));
        if (CListIn::IsList(node, "key"))
            return take(Key(node));
        auto pSet = std::make_shared<CSetImage>();
        return CListIn::IsList(node, "prefab") && Set(in, *pSet) && take(pSet);
    }

    template <class T>
    static bool Is(const CChangeValue& value)
    {
        return std::holds_alternative<T>(value);
    }
    static bool IsNumber(const CChangeValue& value, int64_t nMin, int64_t nMax)
    {
        const auto* p = std::get_if<int64_t>(&value);
        return p && *p >= nMin && *p <= nMax;
    }
    // Something that comes or goes: on one side the content of the object.
    template <class TNode>
    static bool ComesOrGoes(const CDifference& d)
    {
        using TPtr = std::shared_ptr<const TNode>;
        const bool bBefore = Is<TPtr>(d.m_Before);
        const CChangeValue& there = bBefore ? d.m_Before : d.m_After;
        return Is<std::monostate>(bBefore ? d.m_After : d.m_Before) && Is<TPtr>(there) &&
               std::get<TPtr>(there)->m_nSerial == d.m_Object.m_nSerial;
    }
    // Whether the values are such as the kind has.
    static bool IsSound(const CDifference& d)
    {
        const auto both = [&d](const auto& test) { return test(d.m_Before) && test(d.m_After); };
        const auto none = [](const CChangeValue& value) { return Is<std::monostate>(value); };
        switch (d.m_eKind)
        {
        case EDifference::eEffect:
            return ComesOrGoes<CSpellImage>(d);
        case EDifference::ePrefab:
            return ComesOrGoes<CSetImage>(d);
        case EDifference::eTrack:
            return ComesOrGoes<CTrackImage>(d);
        case EDifference::eKey:
            return ComesOrGoes<CKeyImage>(d);
        case EDifference::eItem:
        {
            const auto* pItem = std::get_if<CItemImage>(none(d.m_Before) ? &d.m_After : &d.m_Before);
            return pItem && (none(d.m_Before) || none(d.m_After)) && pItem->m_nItem == d.m_Object.m_nSerial;
        }
        case EDifference::eEffectOrder:
        case EDifference::ePrefabOrder:
        case EDifference::eTrackOrder:
        case EDifference::eKeyOrder:
        case EDifference::eItemOrder:
            return both(Is<std::vector<CChangeRef>>);
        case EDifference::eEffectName:
            return both(
                [](const CChangeValue& value) {
                    return Is<std::string>(value) &&
                           std::get<std::string>(value).size() <= CSpell::c_nMaxName;
                });
        case EDifference::eSetName:
        case EDifference::eItemText:
            return both(Is<std::string>);
        case EDifference::eEffectLength:
        case EDifference::eKeyStart:
        case EDifference::eKeyEnd:
            return both([](const CChangeValue& value) { return IsNumber(value, INT32_MIN, INT32_MAX); });
        case EDifference::eKeyID:
            return both([](const CChangeValue& value) { return IsNumber(value, 0, UINT32_MAX); });
        case EDifference::eKeyLink:
            return both([&](const CChangeValue& value)
                        { return none(value) || IsNumber(value, 0, UINT32_MAX); });
        case EDifference::eKeyTrack:
            return both(Is<CChangePlace>);
        case EDifference::eSetParent:
            return both([&](const CChangeValue& value) { return none(value) || Is<CChangeRef>(value); });
        case EDifference::eSetValue:
            return both([&](const CChangeValue& value) { return none(value) || Is<CChangePoints>(value); });
        }
        return false;
    }

    CChangeNumbers* m_pNumbers;
    std::map<std::string, std::shared_ptr<CTypeImage>> m_Types;
    size_t m_nProps = 0;
};

} // namespace

uint64_t CChangeNumbers::Object(uint64_t nThere)
{
    if (nThere == 0)
        return 0;
    const auto [place, bNew] = m_Objects.try_emplace(nThere, 0);
    if (bNew)
        place->second = CSerial().Get();
    return place->second;
}

uint32_t CChangeNumbers::Item(ETreeSide eSide, uint32_t nThere)
{
    if (nThere == 0)
        return 0;
    auto& items = m_Items[static_cast<size_t>(eSide)];
    const auto nNext = static_cast<uint32_t>(items.size() + 1);
    return items.try_emplace(nThere, nNext).first->second;
}

bool ReadChangeText(std::string_view sText, CLibraryChange& change, std::string& sError,
                    CChangeNumbers* pNumbers)
{
    sError = "out of memory";
    const auto read = [&]
    {
        constexpr uint32_t c_nBlockSize = 64 * 1024;
        struct CNodes
        {
            ~CNodes() { m_Root.Free(&m_Alloc); }
            CQSANode m_Root; // goes last
            CQSALoadOnlyAlloc m_Alloc{c_nBlockSize};
            CQSATextOutcome m_Outcome;
        } nodes;
        change = CLibraryChange();
        if (!QSALoadText(sText.data(), sText.size(), &nodes.m_Root, &nodes.m_Alloc, &nodes.m_Outcome) ||
            nodes.m_Outcome.IsCut() || nodes.m_Outcome.m_nStrayCloses != 0 ||
            nodes.m_Outcome.m_nLongAtoms != 0 || nodes.m_Outcome.m_bNul || nodes.m_Outcome.IsConflict())
        {
            sError = "the text is cut or damaged";
            return;
        }
        CChangeReader reader(pNumbers);
        for (uint32_t i = 0; i < nodes.m_Root.GetNumElements(); ++i)
        {
            const std::string sWhy =
                reader.Read(*nodes.m_Root.GetElement(i), change.m_Differences.emplace_back());
            if (sWhy.empty())
                continue;
            sError = "difference " + std::to_string(i + 1) + ": " + sWhy;
            return;
        }
        sError.clear();
    };
    TryAllocating(read);
    if (!sError.empty())
        change = CLibraryChange();
    return sError.empty();
}
