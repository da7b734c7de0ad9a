#include "formats/EmberdeckQSA.h"

#include <algorithm>

#include "formats/LibraryLines.h"
#include "formats/ResourceCollector.h"
#include "model/MakeOrNull.h"
#include "model/NameIndex.h"
#include "platform/IPrompts.h"
#include "qsassert.h"

namespace
{

// Goes through the tree below its first root without recursion, since nothing limits its depth. A visitor
// is told of each group before and after its children, and of each leaf, with the item's depth.
template <class TObject, class TVisitor>
void WalkTree(const TLibraryTree<TObject>& tree, uint32_t nDepth, TVisitor& visitor)
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
                nDepth += CLibraryLines::c_nInner;
                continue;
            }
            visitor.CloseGroup(nDepth);
        }
        else if (const TObject* pObject = tree.IsLeaf(hItem) ? tree.GetItemData(hItem) : nullptr)
        {
            visitor.Leaf(*pObject, nDepth);
        }

        HLibraryItem hNext;
        while (hItem != hRoot && !(hNext = tree.GetNextSiblingItem(hItem)))
        {
            hItem = tree.GetParentItem(hItem);
            nDepth -= CLibraryLines::c_nInner;
            visitor.CloseGroup(nDepth);
        }
        hItem = hNext;
    }
}

void WriteProperty(CLibraryLines& out, uint32_t nDepth, const CEffectProperty* pProp)
{
    if (!HasValue(pProp))
        return;
    const CEffectPropertyDesc& desc = *pProp->GetDesc();
    out.OpenProperty(nDepth, BoundedText(desc.m_szName), desc.m_eType);
    for (uint32_t i = 0; i < pProp->GetNumKeys(); ++i)
    {
        const CPropKey* pPropKey = pProp->GetKey(i);
        QS_ASSERT_MSG(pProp && pPropKey, "Error: Invalid parameters passed into WritePropertyValue");
        if (pPropKey)
            out.Value(nDepth + CLibraryLines::c_nInner, desc.m_eType, pPropKey->m_fTime, pPropKey->m_Data);
    }
    out.Close(nDepth);
}

// What both trees have.
class CGroupWriter
{
public:
    explicit CGroupWriter(CLineWriter& out) : m_Out(out) {}

    void OpenGroup(const std::string& sName, uint32_t nDepth) { m_Out.OpenGroup(nDepth, sName); }
    void CloseGroup(uint32_t nDepth) { m_Out.Close(nDepth); }

protected:
    CLibraryLines m_Out;
};

class CPrefabWriter : public CGroupWriter
{
public:
    using CGroupWriter::CGroupWriter;

    void Leaf(const CEffectPropertySet& prefab, uint32_t nDepth)
    {
        if (!prefab.m_pTypeDesc)
            return;
        m_Out.OpenPrefab(nDepth, prefab.m_sName, BoundedText(prefab.m_pTypeDesc->m_szName));
        for (uint32_t i = 0; i < prefab.GetNumProps(); ++i)
            WriteProperty(m_Out, nDepth + CLibraryLines::c_nInner, prefab.GetProperty(i));
        m_Out.Close(nDepth);
    }
};

class CEffectWriter : public CGroupWriter
{
public:
    using CGroupWriter::CGroupWriter;

    void Leaf(const CSpell& spell, uint32_t nDepth)
    {
        m_Out.OpenEffect(nDepth, spell.m_szName, spell.m_Tracks.m_nPhaseLength);
        for (const CKey& key : spell.m_Tracks.AllKeys())
            WriteKey(key, nDepth + CLibraryLines::c_nInner);
        m_Out.Close(nDepth);
    }

private:
    void WriteKey(const CKey& key, uint32_t nDepth)
    {
        if (!key.m_pTypeDesc)
            return;
        CKeyLines lines;
        lines.m_sName = key.m_sName;
        lines.m_sType = BoundedText(key.m_pTypeDesc->m_szName);
        lines.m_nKeyID = key.m_nKeyID;
        lines.m_nStartTime = key.m_nStartTime;
        lines.m_nEndTime = key.m_nEndTime;
        lines.m_nTrack = key.m_nTrack;
        lines.m_pParent = key.GetParent() ? &key.GetParent()->m_sName : nullptr;
        lines.m_bMotionLinked = key.m_bMotionLinked;
        lines.m_nMotionLinkID = key.m_nMotionLinkID;
        m_Out.OpenKey(nDepth, lines);
        for (uint32_t i = 0; i < key.GetNumProps(); ++i)
            WriteProperty(m_Out, nDepth + CLibraryLines::c_nInner, key.GetPropertyDirect(i));
        m_Out.Close(nDepth);
    }
};

void WriteTrees(CLineWriter& out, const CEffectTree& effectTree, const CPrefabTree& prefabTree)
{
    CLibraryLines lines(out);
    lines.Header();
    CPrefabWriter prefabs(out);
    lines.OpenTree(true);
    WalkTree(prefabTree, 1, prefabs);
    lines.CloseTree();
    CEffectWriter effects(out);
    lines.OpenTree(false);
    WalkTree(effectTree, 1, effects);
    lines.CloseTree();
}

// Measures the depth of groups.
struct CDepthMeter
{
    void OpenGroup(const std::string&, uint32_t nDepth) { m_nMax = std::max(m_nMax, nDepth); }
    void CloseGroup(uint32_t) {}
    template <class TObject>
    void Leaf(const TObject&, uint32_t)
    {
    }
    uint32_t m_nMax = 0;
};

bool SaveLibrary(const char* pszFilename, const CEffectTree& effectTree, const CPrefabTree& prefabTree)
{
    CDepthMeter meter;
    WalkTree(effectTree, 1, meter);
    WalkTree(prefabTree, 1, meter);
    return WriteLibraryFile(
        pszFilename, meter.m_nMax, [&](CQSAFile& file) { WriteResourceDatabase(effectTree, file); },
        [&](CLineWriter& out) { WriteTrees(out, effectTree, prefabTree); });
}

} // namespace

bool SaveEffectLibrary(const char* pszFilename, const CEffectTree& effectTree, const CPrefabTree& prefabTree,
                       IPrompts* pPrompts)
{
    const CWaitScope wait(pPrompts);
    bool bSaved = false;
    return pszFilename && AllocateAll([&] { bSaved = SaveLibrary(pszFilename, effectTree, prefabTree); }) &&
           bSaved;
}
