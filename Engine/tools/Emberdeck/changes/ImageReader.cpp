#include "changes/ImageReader.h"

#include <algorithm>
#include <functional>
#include <map>
#include <unordered_map>

#include "changes/FoldedName.h"
#include "changes/TypeCollector.h"
#include "formats/NodeFields.h"
#include "formats/PropertyLoader.h"
#include "model/MakeOrNull.h"
#include "model/PropKinds.h"
#include "model/Serial.h"
#include "model/Spell.h"
#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsacompressedfile.h"
#include "qsamgr/qsatextloader.h"
#include "qsnumber.h"

namespace
{

constexpr uint32_t c_nBlockSize = 262144;
constexpr size_t c_nMaxText = size_t(256) << 20;
constexpr uint64_t c_nMaxSpareTracks = 1000000; // without a key, of a whole file

struct CNodes
{
    CNodes() = default;
    ~CNodes() { m_Root.Free(&m_Alloc); }
    CNodes(const CNodes&) = delete;
    CNodes& operator=(const CNodes&) = delete;

    CQSANode m_Root; // goes last
    CQSALoadOnlyAlloc m_Alloc{c_nBlockSize};
};

// The reason why not, or nothing.
std::string LoadNodes(const CImageSource& source, CNodes& nodes)
{
    std::string_view sText = source.m_sContent;
    std::vector<uint8_t> text;
    bool bEnded = true;
    if (source.m_bCompressed && !sText.empty())
    {
        if (!QSADecompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size(), text, c_nMaxText,
                           &bEnded))
            return "it is no compressed text, or too large";
        sText = std::string_view(reinterpret_cast<const char*>(text.data()), text.size());
    }
    if (sText.size() > c_nMaxText)
        return "it is too large";
    CQSATextOutcome outcome;
    if (!QSALoadText(sText.data(), sText.size(), &nodes.m_Root, &nodes.m_Alloc, &outcome))
        return "its lists nest too deep, or memory ran out";
    if (outcome.IsConflict())
        return QSFormat("a merge has left its marks in it, at line %llu",
                        static_cast<unsigned long long>(outcome.m_nConflictLine));
    if (outcome.IsCut() || !bEnded)
        return "it was cut, so that its end is missing";
    if (outcome.m_nStrayCloses || outcome.m_nLongAtoms || outcome.m_bNul)
        return "it has closing parentheses too many, or texts that are too long";
    return {};
}

// Reads one file. The first thing that is wrong ends the reading.
class CImageReader
{
public:
    CImageReader(const CQSANode& root, const CTypeCollector& types) : m_Root(root), m_Types(types) {}

    std::shared_ptr<const CLibraryImage> Run(std::string& sError)
    {
        static constexpr std::array<CFieldName, 4> c_aNames = {"resource-database", "header", "prefab-tree",
                                                               "effect-tree"};
        const CNodeFields<4> fields(m_Root, c_aNames, Unknown("the file"), false);
        m_pImage = std::make_shared<CLibraryImage>();
        if (m_Root.GetNumElements() > 0)
        {
            CheckHeader(fields.FindList(1));
            ReadTree(fields.FindList(2), ETreeSide::ePrefabs);
            ReadTree(fields.FindList(3), ETreeSide::eEffects);
            if (!fields.FindList(3))
                Fail("it has no effect tree");
        }
        sError = m_sError;
        return m_sError.empty() ? m_pImage : nullptr;
    }

private:
    void Fail(const std::string& sWhy)
    {
        if (m_sError.empty())
            m_sError = sWhy;
    }
    std::function<void(const CQSANode&)> Unknown(const char* pszWhere)
    {
        return [this, pszWhere](const CQSANode& node)
        {
            const char* pszName = node.IsAtom() ? node.GetValue() : ListName(node);
            Fail(std::string("there is something in ") + pszWhere +
                 " that isn't known: " + (pszName && *pszName ? pszName : "a list without a name"));
        };
    }
    template <size_t N>
    std::string Need(const CNodeFields<N>& fields, size_t nField, const char* pszWhat)
    {
        const char* pszValue = fields.FindValue(nField);
        if (!pszValue)
            Fail(std::string(pszWhat) + " is missing");
        return pszValue ? pszValue : "";
    }
    int32_t Number(const std::string& sText)
    {
        int64_t nValue = 0;
        if (!QSParseInt(sText, nValue))
            Fail("\"" + sText + "\" is no number");
        return QSTextToInt(sText.c_str());
    }

    void CheckHeader(const CQSANode* pHeader)
    {
        const char* pszVersion = nullptr;
        if (pHeader)
        {
            static constexpr std::array<CFieldName, 1> c_aNames = {"version"};
            const CNodeFields<1> fields(*pHeader, c_aNames, Unknown("the header"));
            pszVersion = fields.FindValue(0);
        }
        if (!pszVersion || QSTextToInt(pszVersion) != 1)
            Fail("it is no effect file, or of another version");
    }

    void ReadTree(const CQSANode* pList, ETreeSide eSide)
    {
        CTreeImage& tree = m_pImage->m_Trees[static_cast<size_t>(eSide)];
        m_nNextItem = 1;
        tree.push_back(std::make_shared<CGroupImage>());
        if (pList)
            tree[0] = ReadChildren(*pList, 0, eSide);
        std::sort(tree.begin(), tree.end(),
                  [](const auto& a, const auto& b) { return a->m_nItem < b->m_nItem; });
    }
    // As deep as groups nest, which the node reader has limited to some five hundred.
    std::shared_ptr<const CGroupImage> ReadChildren(const CQSANode& list, uint32_t nGroup, ETreeSide eSide)
    {
        static constexpr CFieldName c_Container = "container", c_Prefab = "prefab", c_Effect = "effect";
        auto pGroup = std::make_shared<CGroupImage>();
        pGroup->m_nItem = nGroup;
        for (uint32_t i = 1; i < list.GetNumElements() && m_sError.empty(); ++i)
        {
            const CQSANode& node = *list.GetElement(i);
            CItemImage item;
            item.m_nItem = m_nNextItem++;
            if (IsListNamed(node, c_Container))
                ReadGroup(node, item, eSide);
            else if (IsListNamed(node, eSide == ETreeSide::eEffects ? c_Effect : c_Prefab))
            {
                item.m_nImage = item.m_nSelectedImage = eImage_Leaf;
                if (eSide == ETreeSide::eEffects)
                    ReadSpell(node, item);
                else
                    ReadPrefab(node, item);
            }
            else
                Unknown("a group")(node);
            pGroup->m_Children.push_back(std::move(item));
        }
        return pGroup;
    }
    void ReadGroup(const CQSANode& node, CItemImage& item, ETreeSide eSide)
    {
        static constexpr std::array<CFieldName, 2> c_aNames = {"name", "children"};
        const CNodeFields<2> fields(node, c_aNames, Unknown("a group"));
        item.m_sText = Need(fields, 0, "a group's name");
        item.m_nImage = eImage_Group;
        item.m_nSelectedImage = eImage_GroupOpen;
        const CQSANode* pChildren = fields.FindList(1);
        if (pChildren && pChildren->GetNumElements() > 1)
        {
            auto pGroup = ReadChildren(*pChildren, item.m_nItem, eSide);
            m_pImage->m_Trees[static_cast<size_t>(eSide)].push_back(std::move(pGroup));
        }
    }

    void ReadPrefab(const CQSANode& node, CItemImage& item)
    {
        static constexpr std::array<CFieldName, 3> c_aNames = {"name", "type", "properties"};
        const CNodeFields<3> fields(node, c_aNames, Unknown("a prefab"));
        auto pPrefab = std::make_shared<CSetImage>();
        pPrefab->m_nSerial = CSerial().Get();
        pPrefab->m_sName = Need(fields, 0, "a prefab's name");
        ReadSet(*pPrefab, Need(fields, 1, "a prefab's type"), fields.FindList(2));
        item.m_sText = pPrefab->m_sName;
        item.m_nObject = pPrefab->m_nSerial;
        m_Prefabs.emplace(FoldedName(pPrefab->m_sName), pPrefab->m_nSerial);
        m_pImage->m_Prefabs.push_back(std::move(pPrefab));
    }

    void ReadSpell(const CQSANode& node, CItemImage& item)
    {
        static constexpr std::array<CFieldName, 3> c_aNames = {"name", "length", "key-list"};
        const CNodeFields<3> fields(node, c_aNames, Unknown("an effect"));
        auto pSpell = std::make_shared<CSpellImage>();
        pSpell->m_nSerial = CSerial().Get();
        pSpell->m_sName = Need(fields, 0, "an effect's name");
        if (pSpell->m_sName.size() > CSpell::c_nMaxName)
            Fail("an effect's name is too long");
        pSpell->m_nPhaseLength = Number(Need(fields, 1, "an effect's length"));
        const CQSANode* pKeys = fields.FindList(2);
        std::vector<std::vector<std::shared_ptr<const CKeyImage>>> tracks;
        for (uint32_t i = 1; pKeys && i < pKeys->GetNumElements() && m_sError.empty(); ++i)
            ReadKey(*pKeys->GetElement(i), tracks);
        for (auto& keys : tracks)
        {
            auto pTrack = std::make_shared<CTrackImage>();
            pTrack->m_nSerial = CSerial().Get();
            std::stable_sort(keys.begin(), keys.end(),
                             [](const auto& a, const auto& b) { return a->m_nStartTime < b->m_nStartTime; });
            pTrack->m_Keys = std::move(keys);
            pSpell->m_Tracks.push_back(std::move(pTrack));
        }
        if (!m_sError.empty())
            m_sError = "effect \"" + pSpell->m_sName + "\": " + m_sError;
        item.m_sText = pSpell->m_sName;
        item.m_nObject = pSpell->m_nSerial;
        m_pImage->m_Spells.push_back(std::move(pSpell));
    }

    void ReadKey(const CQSANode& node, std::vector<std::vector<std::shared_ptr<const CKeyImage>>>& tracks)
    {
        static constexpr CFieldName c_Key = "key";
        static constexpr std::array<CFieldName, 9> c_aNames = {
            "name", "type", "id", "start-time", "end-time", "track", "parent", "motion-link", "properties"};
        if (!IsListNamed(node, c_Key))
        {
            Unknown("the list of keys")(node);
            return;
        }
        const CNodeFields<9> fields(node, c_aNames, Unknown("a key"));
        auto pKey = std::make_shared<CKeyImage>();
        pKey->m_nSerial = CSerial().Get();
        pKey->m_sName = fields.FindValue(0) ? fields.FindValue(0) : "";
        pKey->m_nKeyID = static_cast<uint32_t>(Number(Need(fields, 2, "a key's id")));
        pKey->m_nStartTime = Number(Need(fields, 3, "a key's start"));
        pKey->m_nEndTime = Number(Need(fields, 4, "a key's end"));
        const auto nTrack = static_cast<uint32_t>(Number(Need(fields, 5, "a key's track")));
        if (const char* pszParent = fields.FindValue(6))
        {
            const auto found = m_Prefabs.find(FoldedName(pszParent));
            pKey->m_sParent = pszParent;
            pKey->m_nParent = found != m_Prefabs.end() ? found->second : 0;
            if (!pKey->m_nParent)
                Fail(std::string("there is no prefab \"") + pszParent + "\"");
        }
        if (const CQSANode* pLink = fields.FindList(7))
        {
            static constexpr std::array<CFieldName, 1> c_aID = {"id"};
            const CNodeFields<1> link(*pLink, c_aID, Unknown("a motion link"));
            pKey->m_bMotionLinked = true;
            pKey->m_nMotionLinkID = static_cast<uint32_t>(Number(Need(link, 0, "a motion link's id")));
        }
        ReadSet(*pKey, Need(fields, 1, "a key's type"), fields.FindList(8));
        if (nTrack >= tracks.size())
        {
            m_nSpareTracks += nTrack - tracks.size();
            if (nTrack >= CTrackList::c_nMaxTracks || m_nSpareTracks > c_nMaxSpareTracks)
            {
                Fail("a key's track number is too large");
                return;
            }
            tracks.resize(nTrack + size_t(1));
        }
        tracks[nTrack].push_back(std::move(pKey));
    }

    void ReadSet(CSetImage& set, const std::string& sType, const CQSANode* pProperties)
    {
        set.m_pType = m_Types.Find(sType);
        std::map<uint32_t, std::vector<CPointImage>> slots;
        for (uint32_t i = 1;
             pProperties && set.m_pType && i < pProperties->GetNumElements() && m_sError.empty(); ++i)
        {
            CTypeImage::CProp prop;
            const CQSANode* pValues = nullptr;
            if (!CTypeCollector::ReadProperty(*pProperties->GetElement(i), prop, pValues))
            {
                Fail("a property isn't whole, or of no kind that is known");
                return;
            }
            const auto [slot, bNew] = slots.try_emplace(m_Types.SlotOf(sType, prop));
            if (!bNew)
                Fail("a set has the property \"" + prop.m_sName + "\" twice");
            for (uint32_t n = 1; pValues && n < pValues->GetNumElements(); ++n)
                slot->second.push_back(ReadPoint(*pValues->GetElement(n), prop.m_eType));
        }
        for (const auto& [nSlot, points] : slots)
        {
            set.m_Slots.push_back(
                {nSlot, static_cast<uint32_t>(set.m_Points.size()), static_cast<uint32_t>(points.size())});
            set.m_Points.insert(set.m_Points.end(), points.begin(), points.end());
        }
    }
    CPointImage ReadPoint(const CQSANode& node, uint32_t eType)
    {
        static constexpr CFieldName c_Value = "value";
        static constexpr std::array<CFieldName, 2> c_aNames = {"time", "data"};
        CPropKey key = {};
        if (!IsListNamed(node, c_Value))
            Unknown("a list of values")(node);
        else
        {
            const CNodeFields<2> fields(node, c_aNames, Unknown("a value"));
            key.m_fTime = QSTextToFloat(Need(fields, 0, "a value's time").c_str());
            const CQSANode* pData = fields.FindList(1);
            const CQSANode* pText = pData && pData->GetNumElements() == 2 ? pData->GetElement(1) : nullptr;
            if (pText && pText->IsAtom() && IsTextKind(eType) &&
                std::string_view(pText->GetValue()).size() > CPropData::c_nMaxText)
            {
                Fail("a text is too long");
                return {};
            }
            if (!pData || pData->GetNumElements() != PropKind(eType).m_nAtoms + 1 ||
                !LoadPropertyValue(pData, static_cast<EEffectPropertyType>(eType), key))
                Fail("a value isn't as its kind asks for");
        }
        return {key.m_fTime, key.m_Data};
    }

    const CQSANode& m_Root;
    const CTypeCollector& m_Types;
    std::string m_sError;
    std::shared_ptr<CLibraryImage> m_pImage;
    std::unordered_map<std::string, uint64_t> m_Prefabs; // of equal names the first
    uint32_t m_nNextItem = 1;
    uint64_t m_nSpareTracks = 0;
};

} // namespace

bool ReadLibraryImages(const std::vector<CImageSource>& sources,
                       std::vector<std::shared_ptr<const CLibraryImage>>& images, std::string& sError)
{
    sError = "out of memory";
    const auto read = [&]
    {
        std::vector<std::unique_ptr<CNodes>> all;
        CTypeCollector types;
        std::string sWhy;
        images.clear();
        for (size_t i = 0; i < sources.size() && sWhy.empty(); ++i)
        {
            all.push_back(std::make_unique<CNodes>());
            sWhy = LoadNodes(sources[i], *all.back());
            types.Collect(all.back()->m_Root);
            if (!sWhy.empty())
                sWhy = sources[i].m_sName + ": " + sWhy;
        }
        types.Finish();
        for (size_t i = 0; i < sources.size() && sWhy.empty(); ++i)
        {
            images.push_back(CImageReader(all[i]->m_Root, types).Run(sWhy));
            all[i].reset();
            if (!sWhy.empty())
                sWhy = sources[i].m_sName + ": " + sWhy;
        }
        sError = sWhy;
    };
    if (!AllocateAll(read))
        sError = "out of memory";
    return sError.empty();
}
