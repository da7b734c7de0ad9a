#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "model/EffectModule.h"
#include "model/LibraryTree.h"
#include "model/SpellMgr.h"
#include "support/TestPlugin.h"

// A library with its trees and the plug-in that it stands on, which goes last.
struct CTestLibrary
{
    explicit CTestLibrary(std::shared_ptr<CTestModule> pModule = std::make_shared<CTestModule>())
        : m_pModule(std::move(pModule))
    {
    }

    CEffectModule& Module() { return m_pModule->m_Module; }

    std::shared_ptr<CTestModule> m_pModule;
    CEffectTree m_EffectTree;
    CPrefabTree m_PrefabTree;
    CSpellMgr m_SpellMgr;
};

// Slot of a property by its name, for reading; all bits set, and a failure, without one.
inline uint32_t SlotOf(const CEffectPropertySet& set, const std::string& sName)
{
    for (uint32_t i = 0; i < set.GetNumProps(); ++i)
        if (DescName(set.m_pTypeDesc->m_pProps[i]) == sName)
            return i;
    ADD_FAILURE() << "no property " << sName;
    return ~0u;
}
// The value in force, and the set's own one, which is null when it is inherited.
inline CEffectProperty* PropOf(const CEffectPropertySet& set, const std::string& sName)
{
    const uint32_t nSlot = SlotOf(set, sName);
    return nSlot == ~0u ? nullptr : set.GetProperty(nSlot);
}
inline CEffectProperty* OwnPropOf(const CEffectPropertySet& set, const std::string& sName)
{
    const uint32_t nSlot = SlotOf(set, sName);
    return nSlot == ~0u ? nullptr : set.GetPropertyDirect(nSlot);
}
// Value nKey of the property in force.
inline std::string TextOf(const CEffectPropertySet& set, const std::string& sName, uint32_t nKey = 0)
{
    CEffectProperty* pProp = PropOf(set, sName);
    return pProp && pProp->GetKey(nKey) ? std::string(pProp->GetKey(nKey)->m_Data.GetText()) : "(none)";
}
inline int32_t IntOf(const CEffectPropertySet& set, const std::string& sName, uint32_t nKey = 0)
{
    CEffectProperty* pProp = PropOf(set, sName);
    return pProp && pProp->GetKey(nKey) ? pProp->GetKey(nKey)->m_Data.GetInt() : INT32_MIN;
}
inline float FloatOf(const CEffectPropertySet& set, const std::string& sName, uint32_t nKey = 0)
{
    CEffectProperty* pProp = PropOf(set, sName);
    return pProp && pProp->GetKey(nKey) ? pProp->GetKey(nKey)->m_Data.GetFloat() : -1e30f;
}
// "0 1 0.5": the times of all values.
inline std::string TimesOf(const CEffectPropertySet& set, const std::string& sName)
{
    std::string sTimes;
    CEffectProperty* pProp = PropOf(set, sName);
    for (uint32_t i = 0; pProp && i < pProp->GetNumKeys(); ++i)
    {
        char szTime[64];
        std::snprintf(szTime, sizeof(szTime), "%s%g", i ? " " : "", double(pProp->GetKey(i)->m_fTime));
        sTimes += szTime;
    }
    return sTimes;
}

// Key nKey of track nTrack of an effect; null, and a failure, without one.
inline CKey* KeyOf(const CSpellMgr& spellMgr, const char* pszEffect, uint32_t nTrack = 0, uint32_t nKey = 0)
{
    CSpell* pSpell = spellMgr.FindSpell(pszEffect);
    CTrack* pTrack = pSpell ? pSpell->m_Tracks.GetTrack(nTrack) : nullptr;
    CKey* pKey = pTrack ? pTrack->GetKey(nKey) : nullptr;
    EXPECT_TRUE(pKey) << pszEffect << " track " << nTrack << " key " << nKey;
    return pKey;
}

// The tree as text: two blanks for each level, "[name]" for a group, "name" for a leaf.
inline std::string DumpTree(const CLibraryTree& tree)
{
    std::string sText;
    std::vector<std::pair<HLibraryItem, int>> stack;
    for (HLibraryItem hRoot = tree.GetRootItem(); hRoot; hRoot = tree.GetNextSiblingItem(hRoot))
        stack.insert(stack.begin(), {hRoot, 0});
    while (!stack.empty())
    {
        const auto [hItem, nDepth] = stack.back();
        stack.pop_back();
        const std::string& sName = tree.GetItemText(hItem);
        sText +=
            std::string(size_t(nDepth) * 2, ' ') + (tree.IsGroup(hItem) ? "[" + sName + "]" : sName) + "\n";
        for (HLibraryItem h = tree.GetLastChildItem(hItem); h; h = tree.GetPrevSiblingItem(h))
            stack.push_back({h, nDepth + 1});
    }
    return sText;
}

// Fills a library, step by step:
//
//     auto pLibrary = aLibrary()
//                         .prefab("Sprite", "Puff").value("Size", 3.0)
//                         .group("Weapons")
//                             .effect("Smoke").length(5000)
//                                 .track().key("Sprite", 0, 1500).name("Plume").value("Count", 7)
//                                         .key("Light", 1500, 2000).onPrefab("Lamp").linkTo("Plume")
//                             .effect("Spark")
//                         .end()
//                         .build();
//
// Each step acts on what was begun last: value() and curve() on the key or prefab, key() on the track, and so
// on. key() and value() on an unknown type or property are failures of the test. Keys and prefabs are whole,
// as the editor makes them; onPrefab() empties the key's own slots. An effect without track() gets its first
// track with its first key. Both trees have their root group, even when nothing else is in them.
class CLibraryBuilder
{
public:
    // Into objects of the caller's, or into a library of its own.
    CLibraryBuilder(const CEffectModule& module, CSpellMgr& spellMgr, CEffectTree& effectTree,
                    CPrefabTree& prefabTree)
        : m_Module(module),
          m_SpellMgr(spellMgr),
          m_EffectTree(effectTree),
          m_PrefabTree(prefabTree)
    {
        m_Groups.push_back(RootOf(effectTree, "[Effects]"));
        m_PrefabGroups.push_back(RootOf(prefabTree, "[Prefabs]"));
    }
    explicit CLibraryBuilder(std::unique_ptr<CTestLibrary> pLibrary)
        : CLibraryBuilder(pLibrary->Module(), pLibrary->m_SpellMgr, pLibrary->m_EffectTree,
                          pLibrary->m_PrefabTree)
    {
        m_pLibrary = std::move(pLibrary);
    }

    // Groups nest until end().
    CLibraryBuilder& group(const std::string& sName)
    {
        m_Groups.push_back(m_EffectTree.InsertGroup(sName, m_Groups.back()));
        return *this;
    }
    CLibraryBuilder& end()
    {
        m_Groups.pop_back();
        return *this;
    }
    CLibraryBuilder& prefabGroup(const std::string& sName)
    {
        m_PrefabGroups.push_back(m_PrefabTree.InsertGroup(sName, m_PrefabGroups.back()));
        return *this;
    }
    CLibraryBuilder& endPrefabGroup()
    {
        m_PrefabGroups.pop_back();
        return *this;
    }

    CLibraryBuilder& prefab(const char* pszType, const std::string& sName)
    {
        CEffectPropertySet* pPrefab = m_SpellMgr.AddPrefab(TypeOf(pszType));
        pPrefab->m_sName = sName;
        EnsureComplete(pPrefab);
        m_PrefabTree.InsertLeaf(sName, m_PrefabGroups.back(), pPrefab);
        m_pSet = pPrefab;
        m_pKey = nullptr;
        return *this;
    }

    CLibraryBuilder& effect(const std::string& sName)
    {
        m_pSpell = m_SpellMgr.AddSpell();
        m_pSpell->SetName(sName);
        m_EffectTree.InsertLeaf(sName, m_Groups.back(), m_pSpell);
        m_pTrack = nullptr;
        m_pKey = nullptr;
        m_pSet = nullptr;
        return *this;
    }
    CLibraryBuilder& length(int32_t nMilliseconds)
    {
        m_pSpell->m_Tracks.m_nPhaseLength = nMilliseconds;
        return *this;
    }
    CLibraryBuilder& track()
    {
        m_pTrack = m_pSpell->m_Tracks.AddTrack();
        m_nTrack = m_pSpell->m_Tracks.GetNumTracks() - 1;
        return *this;
    }

    // Without times it starts where the track's last key ends, and lasts a second.
    CLibraryBuilder& key(const char* pszType = "Sprite")
    {
        const uint32_t nKeys = m_pTrack ? m_pTrack->GetNumKeys() : 0;
        const int32_t nStart = nKeys ? m_pTrack->GetKey(nKeys - 1)->m_nEndTime : 0;
        return key(pszType, nStart, nStart + 1000);
    }
    CLibraryBuilder& key(const char* pszType, int32_t nStart, int32_t nEnd)
    {
        if (!m_pTrack)
            track();
        auto pKey = std::make_unique<CKey>(TypeOf(pszType));
        pKey->m_nKeyID = m_pSpell->m_Tracks.TakeKeyID();
        pKey->m_nTrack = m_nTrack;
        pKey->m_nStartTime = nStart;
        pKey->m_nEndTime = nEnd;
        EnsureComplete(pKey.get());
        m_pKey = m_pTrack->AppendKey(std::move(pKey));
        m_pTrack->SortKeys();
        m_pSet = m_pKey;
        return *this;
    }
    CLibraryBuilder& name(const std::string& sName)
    {
        m_pSet->m_sName = sName;
        return *this;
    }
    CLibraryBuilder& id(uint32_t nID)
    {
        m_pKey->m_nKeyID = nID;
        m_pSpell->m_Tracks.RecalcNextKeyID();
        return *this;
    }
    CLibraryBuilder& link(uint32_t nID)
    {
        m_pKey->Link(nID);
        return *this;
    }
    // To the first key of that name in the effect.
    CLibraryBuilder& linkTo(const std::string& sKeyName)
    {
        for (const CKey& key : m_pSpell->m_Tracks.AllKeys())
            if (key.m_sName == sKeyName)
                return link(key.m_nKeyID);
        ADD_FAILURE() << "no key " << sKeyName;
        return *this;
    }
    CLibraryBuilder& selected(bool bSelected = true)
    {
        m_pKey->m_bSelected = bSelected;
        return *this;
    }
    CLibraryBuilder& onPrefab(const char* pszName)
    {
        CEffectPropertySet* pPrefab = m_SpellMgr.FindPrefab(pszName);
        EXPECT_TRUE(pPrefab) << "no prefab " << pszName;
        m_pKey->ClearProperties();
        EXPECT_TRUE(m_pKey->SetParent(pPrefab));
        return *this;
    }

    // All values of a property are v; an inherited one becomes the key's own first.
    template <class T>
    CLibraryBuilder& value(const char* pszProp, const T& v)
    {
        CEffectProperty* pProp = Own(pszProp);
        for (uint32_t i = 0; pProp && i < pProp->GetNumKeys(); ++i)
            Set(pProp->GetKey(i)->m_Data, v);
        return *this;
    }
    // The property's values are these, by time.
    template <class T>
    CLibraryBuilder& curve(const char* pszProp, const std::vector<std::pair<float, T>>& values)
    {
        CEffectProperty* pProp = Own(pszProp);
        if (pProp)
            pProp->ClearKeys();
        for (size_t i = 0; pProp && i < values.size(); ++i)
        {
            CPropKey key;
            key.m_fTime = values[i].first;
            Set(key.m_Data, values[i].second);
            pProp->AddKey(key);
        }
        return *this;
    }

    CSpell* spell() const { return m_pSpell; } // what was begun last
    CKey* lastKey() const { return m_pKey; }
    CEffectPropertySet* lastSet() const { return m_pSet; }

    // Only for a library of the builder's own.
    std::unique_ptr<CTestLibrary> build() { return std::move(m_pLibrary); }

private:
    static HLibraryItem RootOf(CLibraryTree& tree, const char* pszName)
    {
        const HLibraryItem hRoot = tree.GetRootItem();
        return hRoot ? hRoot : tree.InsertGroup(pszName, {});
    }
    const CEffectTypeDesc* TypeOf(const char* pszType) const
    {
        const CEffectTypeDesc* pType = m_Module.FindType(pszType);
        EXPECT_TRUE(pType) << "no type " << pszType;
        return pType;
    }
    CEffectProperty* Own(const char* pszProp)
    {
        const uint32_t nSlot = SlotOf(*m_pSet, pszProp);
        if (nSlot == ~0u)
            return nullptr;
        m_pSet->MakeLocal(nSlot);
        return m_pSet->GetPropertyDirect(nSlot);
    }
    static void Set(CPropData& data, const char* pszText) { data.SetText(pszText); }
    static void Set(CPropData& data, const std::string& sText) { data.SetText(sText); }
    static void Set(CPropData& data, int nValue) { data.SetInt(nValue); }
    static void Set(CPropData& data, double fValue) { data.SetFloat(float(fValue)); }
    static void Set(CPropData& data, float fValue) { data.SetFloat(fValue); }
    static void Set(CPropData& data, const CVector3& vValue) { data.SetVector(vValue); }
    static void Set(CPropData& data, const CTestColor& c)
    {
        data.SetColor(MakePropColor(uint32_t(c.r), uint32_t(c.g), uint32_t(c.b), uint32_t(c.a)));
    }

    std::unique_ptr<CTestLibrary> m_pLibrary;
    const CEffectModule& m_Module;
    CSpellMgr& m_SpellMgr;
    CEffectTree& m_EffectTree;
    CPrefabTree& m_PrefabTree;
    std::vector<HLibraryItem> m_Groups;
    std::vector<HLibraryItem> m_PrefabGroups;
    CSpell* m_pSpell = nullptr;
    CTrack* m_pTrack = nullptr;
    uint32_t m_nTrack = 0;
    CKey* m_pKey = nullptr;
    CEffectPropertySet* m_pSet = nullptr;
};

// On the standard types, or on a module that several libraries share.
inline CLibraryBuilder aLibrary()
{
    return CLibraryBuilder(std::make_unique<CTestLibrary>());
}
inline CLibraryBuilder aLibrary(std::shared_ptr<CTestModule> pModule)
{
    return CLibraryBuilder(std::make_unique<CTestLibrary>(std::move(pModule)));
}
inline CLibraryBuilder aLibrary(const CEffectModule& module, CSpellMgr& spellMgr, CEffectTree& effectTree,
                                CPrefabTree& prefabTree)
{
    return CLibraryBuilder(module, spellMgr, effectTree, prefabTree);
}
