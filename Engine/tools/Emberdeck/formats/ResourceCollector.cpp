#include "formats/ResourceCollector.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "model/MakeOrNull.h"
#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsafile.h"
#include "qsamgr/qsanode.h"
#include "qsamgr/qsanodebuilder.h"
#include "qsamgr/qsanodewriter.h"
#include "qsamgr/qsawriter.h"
#include "qsstrutils.h"
#include "shared/engine/AssetLibrarySource.h"

namespace
{

constexpr const char* c_pszEffectType = "FX";

void AddReference(CAssetLibrarySource& source, const std::string& sEffect, std::string_view sResource,
                  const char* pszResourceType)
{
    source.AddDependency(sEffect.c_str(), std::string(sResource).c_str(), pszResourceType, c_pszEffectType,
                         "", 1);
}

// One value may name several effects, with semicolons between them.
void AddEffectReferences(CAssetLibrarySource& source, const std::string& sEffect, std::string_view sNames)
{
    while (!sNames.empty())
    {
        const size_t nEnd = std::min(sNames.find(';'), sNames.size());
        const std::string_view sName = QSTrim(sNames.substr(0, nEnd));
        if (!sName.empty())
            AddReference(source, sEffect, sName, c_pszEffectType);
        sNames.remove_prefix(std::min(nEnd + 1, sNames.size()));
    }
}

void CollectFromProperty(CAssetLibrarySource& source, const std::string& sEffect, const CEffectProperty& prop)
{
    const uint32_t eType = prop.GetDesc() ? prop.GetDesc()->m_eType : uint32_t(ePropType_None);
    if (!IsReferenceKind(eType))
        return;
    for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
        AddValueReferences(source, sEffect, eType, prop.GetKey(i)->m_Data.GetText());
}

// The properties in force, a prefab's too.
template <class TCall>
void ForEachProperty(const CSpell& spell, const TCall& call)
{
    for (const CKey& key : spell.m_Tracks.AllKeys())
    {
        const uint32_t nNumProps = key.m_pTypeDesc ? key.GetNumProps() : 0;
        for (uint32_t i = 0; i < nNumProps; ++i)
        {
            if (const CEffectProperty* pProp = key.GetProperty(i))
                call(key, *pProp);
        }
    }
}

bool CollectFromItem(const CEffectTree& tree, HLibraryItem hItem, CAssetLibrarySource& source)
{
    const CSpell* pSpell = tree.GetItemData(hItem);
    if (!tree.IsLeaf(hItem) || !pSpell)
        return true;
    AddEffectResource(source, pSpell->m_szName);
    return CollectDependencies(*pSpell, source);
}

// The next item of the tree below hTop, in display order; null at its end.
HLibraryItem NextBelow(const CLibraryTree& tree, HLibraryItem hTop, HLibraryItem hItem)
{
    if (const HLibraryItem hChild = tree.GetChildItem(hItem))
        return hChild;
    while (hItem && hItem != hTop)
    {
        if (const HLibraryItem hNext = tree.GetNextSiblingItem(hItem))
            return hNext;
        hItem = tree.GetParentItem(hItem);
    }
    return {};
}

bool WriteSource(const CAssetLibrarySource& source, CQSAFile& file)
{
    constexpr uint32_t c_nBlockSize = 64 * 1024;
    CQSALoadOnlyAlloc alloc(c_nBlockSize);
    CQSANode* pNode = nullptr;
    {
        const auto pBuilder = MakeOrNull<CQSANodeBuilder>(&alloc); // its tables are too large for the stack
        if (!pBuilder || !source.WriteTo(pBuilder.get()))
            return false;
        pNode = pBuilder->DetachHead();
    }
    if (!pNode)
        return false;
    CQSAWriter writer(&file);
    return CQSANodeWriter::SaveNode(pNode, &writer); // the nodes go with their allocator
}

} // namespace

void AddEffectResource(CAssetLibrarySource& source, const char* pszEffect)
{
    if (*pszEffect != 0)
        source.AddResource(pszEffect, c_pszEffectType);
}

bool IsReferenceKind(uint32_t eType)
{
    return eType == ePropType_Filename || eType == ePropType_Animation || eType == ePropType_FireglassRef;
}

void AddValueReferences(CAssetLibrarySource& source, const std::string& sEffect, uint32_t eType,
                        std::string_view sText)
{
    if (sText.empty())
        return;
    if (eType == ePropType_Filename)
        AddReference(source, sEffect, sText, "");
    else if (eType == ePropType_Animation)
        AddReference(source, sEffect, sText, "Animation");
    else if (eType == ePropType_FireglassRef)
        AddEffectReferences(source, sEffect, sText);
}

bool CollectResources(const CEffectTree& tree, HLibraryItem hItem, CAssetLibrarySource& source)
{
    bool bAll = true;
    const bool bWhole = TryAllocating(
        [&]
        {
            for (HLibraryItem h = hItem; h && bAll; h = NextBelow(tree, hItem, h))
                bAll = CollectFromItem(tree, h, source);
        });
    return bWhole && bAll;
}

void ForEachResourceFile(const CSpellMgr& spellMgr,
                         const std::function<void(const CSpell&, const CKey&, const CEffectProperty&,
                                                  const std::string& sFile)>& call)
{
    for (const auto& pSpell : spellMgr.Spells())
    {
        ForEachProperty(*pSpell,
                        [&](const CKey& key, const CEffectProperty& prop)
                        {
                            if (!prop.GetDesc() || prop.GetDesc()->m_eType != ePropType_Filename)
                                return;
                            for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
                            {
                                const std::string sFile(prop.GetKey(i)->m_Data.GetText());
                                if (!sFile.empty())
                                    call(*pSpell, key, prop, sFile);
                            }
                        });
    }
}

bool CollectDependencies(const CSpell& spell, CAssetLibrarySource& source)
{
    return TryAllocating(
        [&]
        {
            const std::string sEffect = spell.m_szName;
            ForEachProperty(spell, [&](const CKey&, const CEffectProperty& prop)
                            { CollectFromProperty(source, sEffect, prop); });
        });
}

bool WriteResourceDatabase(const CEffectTree& effectTree, CQSAFile& file)
{
    CAssetLibrarySource source;
    return CollectResources(effectTree, effectTree.GetRootItem(), source) && WriteSource(source, file);
}

bool WriteResourceDatabase(const std::function<void(CAssetLibrarySource&)>& collect, CQSAFile& file)
{
    CAssetLibrarySource source;
    return TryAllocating([&] { collect(source); }) && WriteSource(source, file);
}
