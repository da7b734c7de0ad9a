#include "formats/EmberdeckQSA.h"

#include <algorithm>
#include <memory>

#include "formats/LineWriter.h"
#include "formats/ResourceCollector.h"
#include "model/MakeOrNull.h"
#include "model/NameIndex.h"
#include "model/PropKinds.h"
#include "platform/IPrompts.h"
#include "platform/Paths.h"
#include "qsamgr/qsafile.h"
#include "qsamgr/qsanodebuilder.h"
#include "qsamgr/qsautil.h"
#include "qsassert.h"
#include "qsnumber.h"

namespace
{

constexpr int32_t c_nFormatVersion = 1;

// Lists that are open within a group's: itself and its children.
constexpr uint32_t c_nGroupDepth = 2;
// Deepest nesting within an effect: effect, key-list, key, properties, property, value-list, value, data.
constexpr uint32_t c_nLeafDepth = 8;

// Goes through the tree below its first root without recursion, since nothing limits its depth. A visitor
// is told of each group before and after its children, and of each leaf, with the item's depth.
template <class TVisitor>
void WalkTree(const CLibraryTree& tree, uint32_t nDepth, TVisitor& visitor)
{
    const HLibraryItem hRoot = tree.GetRootItem();
    HLibraryItem hItem = hRoot;
    while (hItem)
    {
        if (tree.IsGroup(hItem))
        {
            visitor.OpenGroup(tree.GetItemText(hItem), nDepth);
            if (const HLibraryItem hChild = tree.GetChildItem(hItem))
            {
                hItem = hChild;
                nDepth += c_nGroupDepth;
                continue;
            }
            visitor.CloseGroup(nDepth);
        }
        else if (tree.IsLeaf(hItem) && tree.GetItemData(hItem))
        {
            visitor.Leaf(tree.GetItemData(hItem), nDepth);
        }

        HLibraryItem hNext;
        while (hItem != hRoot && !(hNext = tree.GetNextSiblingItem(hItem)))
        {
            hItem = tree.GetParentItem(hItem);
            nDepth -= c_nGroupDepth;
            visitor.CloseGroup(nDepth);
        }
        hItem = hNext;
    }
}

// What isn't finite goes out as the nearest number: "inf" and "nan" would be read as none.
void WritePropertyValue(CLineWriter& out, uint32_t nDepth, const CEffectProperty* pProp,
                        const CPropKey* pPropKey)
{
    QS_ASSERT_MSG(pProp && pPropKey, "Error: Invalid parameters passed into WritePropertyValue");
    if (!pProp || !pPropKey)
        return;
    const uint32_t eType = pProp->GetDesc()->m_eType;
    const CPropData& data = pPropKey->m_Data;
    switch (PropKind(eType).m_eForm)
    {
    case EPropForm::eText:
        out.TextLine(nDepth, "data", data.GetText());
        break;
    case EPropForm::eInt:
        out.ValueLine(nDepth, "data", data.GetInt());
        break;
    case EPropForm::eFloat:
        out.ValueLine(nDepth, "data", QSNearestFloat(data.GetFloat()));
        break;
    case EPropForm::eVector:
    {
        const CVector3 v = data.GetVector();
        out.ValueLine(nDepth, "data", QSNearestFloat(v.x), QSNearestFloat(v.y), QSNearestFloat(v.z));
        break;
    }
    case EPropForm::eColor:
    {
        const uint32_t nColor = data.GetColor();
        const auto Channel = [](uint32_t nChannel) { return static_cast<int32_t>(nChannel); };
        out.ValueLine(nDepth, "data", Channel(PropColorRed(nColor)), Channel(PropColorGreen(nColor)),
                      Channel(PropColorBlue(nColor)), Channel(PropColorAlpha(nColor)));
        break;
    }
    case EPropForm::eNone:
        QS_ASSERT_FORCED("Error: Unexpected property value");
        break;
    }
}

void WriteProperty(CLineWriter& out, uint32_t nDepth, const CEffectProperty* pProp)
{
    if (!HasValue(pProp))
        return;
    const CEffectPropertyDesc& desc = *pProp->GetDesc();
    out.Line(nDepth, "( property");
    out.TextLine(nDepth + 1, "name", BoundedText(desc.m_szName));
    out.TextLine(nDepth + 1, "type", GetPropTypeName(desc.m_eType));
    out.Line(nDepth + 1, "( value-list");
    for (uint32_t i = 0; i < pProp->GetNumKeys(); ++i)
    {
        const CPropKey* pPropKey = pProp->GetKey(i);
        out.Line(nDepth + 2, "( value");
        out.ValueLine(nDepth + 3, "time", QSNearestFloat(pPropKey->m_fTime));
        WritePropertyValue(out, nDepth + 3, pProp, pPropKey);
        out.Line(nDepth + 2, ")");
    }
    out.Line(nDepth + 1, ")");
    out.Line(nDepth, ")");
}

// The prefab tree's items.
class CPrefabWriter
{
public:
    explicit CPrefabWriter(CLineWriter& out) : m_Out(out) {}

    void OpenGroup(const std::string& sName, uint32_t nDepth)
    {
        m_Out.Line(nDepth, "( container");
        m_Out.TextLine(nDepth + 1, "name", sName);
        m_Out.Line(nDepth + 1, "( children");
    }
    void CloseGroup(uint32_t nDepth)
    {
        m_Out.Line(nDepth + 1, ")");
        m_Out.Line(nDepth, ")");
    }
    void Leaf(const void* pData, uint32_t nDepth)
    {
        const auto& prefab = *static_cast<const CEffectPropertySet*>(pData);
        if (!prefab.m_pTypeDesc)
            return;
        m_Out.Line(nDepth, "( prefab");
        m_Out.TextLine(nDepth + 1, "name", prefab.m_sName);
        m_Out.TextLine(nDepth + 1, "type", BoundedText(prefab.m_pTypeDesc->m_szName));
        m_Out.Line(nDepth + 1, "( properties");
        for (uint32_t i = 0; i < prefab.GetNumProps(); ++i)
            WriteProperty(m_Out, nDepth + 2, prefab.GetProperty(i));
        m_Out.Line(nDepth + 1, ")");
        m_Out.Line(nDepth, ")");
    }

protected:
    CLineWriter& m_Out;
};

// The effect tree's items: the same groups, other leaves.
class CEffectWriter : public CPrefabWriter
{
public:
    using CPrefabWriter::CPrefabWriter;

    void Leaf(const void* pData, uint32_t nDepth)
    {
        const auto& spell = *static_cast<const CSpell*>(pData);
        m_Out.Line(nDepth, "( effect");
        m_Out.TextLine(nDepth + 1, "name", spell.m_szName);
        m_Out.ValueLine(nDepth + 1, "length", spell.m_Tracks.m_nPhaseLength);
        m_Out.Line(nDepth + 1, "( key-list");
        for (const CKey& key : spell.m_Tracks.AllKeys())
            WriteKey(key, nDepth + 2);
        m_Out.Line(nDepth + 1, ")");
        m_Out.Line(nDepth, ")");
    }

private:
    void WriteKey(const CKey& key, uint32_t nDepth)
    {
        if (!key.m_pTypeDesc)
            return;
        m_Out.Line(nDepth, "( key");
        m_Out.TextLine(nDepth + 1, "name", key.m_sName);
        m_Out.TextLine(nDepth + 1, "type", BoundedText(key.m_pTypeDesc->m_szName));
        // Unsigned numbers go out as signed ones and come back the same.
        m_Out.ValueLine(nDepth + 1, "id", static_cast<int32_t>(key.m_nKeyID));
        m_Out.ValueLine(nDepth + 1, "start-time", key.m_nStartTime);
        m_Out.ValueLine(nDepth + 1, "end-time", key.m_nEndTime);
        m_Out.ValueLine(nDepth + 1, "track", static_cast<int32_t>(key.m_nTrack));
        if (key.GetParent())
            m_Out.TextLine(nDepth + 1, "parent", key.GetParent()->m_sName);
        if (key.m_bMotionLinked)
        {
            m_Out.Line(nDepth + 1, "( motion-link");
            m_Out.ValueLine(nDepth + 2, "id", static_cast<int32_t>(key.m_nMotionLinkID));
            m_Out.Line(nDepth + 1, ")");
        }
        m_Out.Line(nDepth + 1, "( properties");
        for (uint32_t i = 0; i < key.GetNumProps(); ++i)
            WriteProperty(m_Out, nDepth + 2, key.GetPropertyDirect(i));
        m_Out.Line(nDepth + 1, ")");
        m_Out.Line(nDepth, ")");
    }
};

void WriteTrees(CLineWriter& out, const CLibraryTree& effectTree, const CLibraryTree& prefabTree)
{
    out.Line(0, "( header");
    out.ValueLine(1, "version", c_nFormatVersion);
    out.Line(0, ")");

    CPrefabWriter prefabs(out);
    out.Line(0, "( prefab-tree");
    WalkTree(prefabTree, 1, prefabs);
    out.Line(0, ")");

    CEffectWriter effects(out);
    out.Line(0, "( effect-tree");
    WalkTree(effectTree, 1, effects);
    out.Line(0, ")");
}

// Measures the depth of groups.
struct CDepthMeter
{
    void OpenGroup(const std::string&, uint32_t nDepth) { m_nMax = std::max(m_nMax, nDepth); }
    void CloseGroup(uint32_t) {}
    void Leaf(const void*, uint32_t) {}
    uint32_t m_nMax = 0;
};

// Whether the reader will take lists that nest as deep as these trees need. Only groups within some five
// hundred others come near its limit; what lies in them is then measured to the line.
bool CanLoadAgain(const CLibraryTree& effectTree, const CLibraryTree& prefabTree)
{
    CDepthMeter meter;
    WalkTree(effectTree, 1, meter);
    WalkTree(prefabTree, 1, meter);
    if (meter.m_nMax + c_nGroupDepth + c_nLeafDepth <= CQSANodeBuilder::c_nMaxOpen)
        return true;
    if (meter.m_nMax + c_nGroupDepth > CQSANodeBuilder::c_nMaxOpen)
        return false; // the group's own name is too deep
    CLineWriter measure(nullptr);
    WriteTrees(measure, effectTree, prefabTree);
    return measure.GetMaxOpenLists() <= CQSANodeBuilder::c_nMaxOpen;
}

bool SaveLibrary(const char* pszFilename, const CLibraryTree& effectTree, const CLibraryTree& prefabTree)
{
    // A file that can't be read back would take the place of one that can.
    if (!CanLoadAgain(effectTree, prefabTree))
        return false;

    const auto pFile = std::make_unique<CQSAFile>();
    if (!pFile->Open(NativePath(pszFilename).c_str(), false, CQSAUtil::IsFileCompressed(pszFilename), false))
        return false;
    WriteResourceDatabase(effectTree, *pFile);
    {
        CLineWriter out(pFile.get());
        WriteTrees(out, effectTree, prefabTree);
    }
    return pFile->Close();
}

} // namespace

bool SaveEffectLibrary(const char* pszFilename, const CLibraryTree& effectTree,
                       const CLibraryTree& prefabTree, IPrompts* pPrompts)
{
    const CWaitScope wait(pPrompts);
    bool bSaved = false;
    return pszFilename && AllocateAll([&] { bSaved = SaveLibrary(pszFilename, effectTree, prefabTree); }) &&
           bSaved;
}
