#pragma once

#include <random>

#include "app/EffectEditor.h"
#include "app/EmberdeckApp.h"
#include "app/PrefabEditor.h"
#include "changes/LibraryImage.h"
#include "formats/EmberdeckPacker.h"
#include "support/LibraryBuilder.h"
#include "support/TempDir.h"

// Random edits of a library, each through the editor or within a scope of its own.
class CEditWalk
{
public:
    CEditWalk(CEmberdeckApp& app, uint32_t nSeed) : m_App(app), m_Random(nSeed) {}

    CEmberdeckApp& App() { return m_App; }
    uint32_t Below(size_t n) { return m_Random() % static_cast<uint32_t>(n); }

    std::string Text()
    {
        const std::string sFile = m_Dir.path("walk.Fx00a");
        EXPECT_TRUE(SaveEffectLibrary(sFile.c_str(), App().m_EffectTree, App().m_PrefabTree));
        const std::string sText = ReadBytes(sFile);
        std::filesystem::remove(sFile);
        return sText;
    }
    std::string Packed()
    {
        EXPECT_TRUE(
            PackEffectLibrary(m_Dir.path("walk.Fx00p").c_str(), App().m_SpellMgr, App().m_EffectModule));
        return ReadBytes(m_Dir.path("walk.Fx00p"));
    }
    std::shared_ptr<const CLibraryImage> Image()
    {
        return CLibraryImage::Make({App().m_SpellMgr, App().m_EffectTree, App().m_PrefabTree}, m_Maker);
    }

    void EditOnce()
    {
        if (App().m_SpellMgr.Spells().size() > 20 || App().m_SpellMgr.Prefabs().size() > 20)
            return Thin();
        const uint32_t nKind = Below(26);
        CEffectEditor effects(App().Context());
        CPrefabEditor prefabs(App().Context());
        const bool bEffects = Below(2) == 0;
        CLibraryEditor& editor = bEffects ? static_cast<CLibraryEditor&>(effects) : prefabs;
        const CLibraryTree& tree =
            bEffects ? static_cast<const CLibraryTree&>(App().m_EffectTree) : App().m_PrefabTree;
        switch (nKind)
        {
        case 0:
            editor.NewGroup(AnyGroup(tree), Name().c_str());
            return;
        case 1:
            effects.NewEffect(AnyGroup(App().m_EffectTree));
            return;
        case 2:
            prefabs.NewPrefab(AnyGroup(App().m_PrefabTree), AnyType());
            return;
        case 3:
            editor.Duplicate(AnyItem(tree));
            return;
        case 4:
            editor.DuplicateItems({AnyItem(tree), AnyItem(tree)});
            return;
        case 5:
            editor.Delete(AnyItem(tree));
            return;
        case 6:
            editor.DeleteItems({AnyItem(tree), AnyItem(tree)});
            return;
        case 7:
            editor.Rename(AnyItem(tree), Name());
            return;
        case 8:
            editor.Move(AnyItem(tree), AnyGroup(tree));
            return;
        case 9:
            editor.MoveItems({AnyItem(tree), AnyItem(tree)}, AnyGroup(tree));
            return;
        case 10:
            Import(effects);
            return;
        default:
            EditEffect(prefabs, nKind);
        }
    }

private:
    // A library that doubles again and again isn't what is looked for here.
    void Thin()
    {
        CEditScope scope(App().m_Edits, "Thin"); // one step, as all of these are
        std::vector<HLibraryItem> items;
        for (HLibraryItem h = App().m_EffectTree.GetRootItem(); h; h = App().m_EffectTree.GetNextItem(h))
            items.insert(items.end(), Below(2), h);
        CEffectEditor(App().Context()).DeleteItems(items);
        const HLibraryItem hPrefabs = App().m_PrefabTree.GetRootItem();
        CPrefabEditor(App().Context()).DeleteItems({hPrefabs, App().m_PrefabTree.GetChildItem(hPrefabs)});
    }
    std::string Name() { return "n" + std::to_string(Below(1000)); }
    HLibraryItem AnyItem(const CLibraryTree& tree)
    {
        HLibraryItem hItem = tree.GetRootItem();
        for (uint32_t n = Below(tree.GetCount() + 1); n > 0 && hItem; --n)
            hItem = tree.GetNextItem(hItem);
        return hItem;
    }
    HLibraryItem AnyGroup(const CLibraryTree& tree)
    {
        HLibraryItem hItem = AnyItem(tree);
        while (hItem && !tree.IsGroup(hItem))
            hItem = tree.GetParentItem(hItem);
        return hItem;
    }
    const CEffectTypeDesc* AnyType()
    {
        return App().m_EffectModule.GetType(Below(App().m_EffectModule.GetNumTypes()));
    }
    CEffectPropertySet* AnyPrefab()
    {
        const auto& prefabs = App().m_SpellMgr.Prefabs();
        return prefabs.empty() ? nullptr : prefabs[Below(prefabs.size())].get();
    }

    void Import(CEffectEditor& editor)
    {
        CSpellMgr other;
        CEffectTree effects;
        CPrefabTree prefabs;
        const std::string sType = TypeName(*AnyType());
        aLibrary(App().m_EffectModule, other, effects, prefabs)
            .prefab(sType.c_str(), "Theirs")
            .effect("Import")
            .key(sType.c_str())
            .onPrefab("Theirs")
            .effect("Import")
            .key(TypeName(*AnyType()).c_str());
        editor.ImportEffects(other, {other.Spells()[0].get(), other.Spells()[1].get()});
    }

    void EditEffect(CPrefabEditor& editor, uint32_t nKind)
    {
        const auto& spells = App().m_SpellMgr.Spells();
        if (spells.empty())
            return;
        CSpell& spell = *spells[Below(spells.size())];
        CTrackList& tracks = spell.m_Tracks;
        CEditScope scope(App().m_Edits, "Edit " + std::to_string(nKind));
        if (nKind == 11 || tracks.GetNumTracks() == 0)
        {
            scope.TouchTracks(spell);
            tracks.InsertTrackAfter(tracks.GetTrack(Below(tracks.GetNumTracks() + 1)));
            return;
        }
        CTrack& track = *tracks.GetTrack(Below(tracks.GetNumTracks()));
        if (nKind == 12)
        {
            scope.Touch(&spell);
            tracks.RemoveTrack(&track);
            return;
        }
        if (nKind == 13)
        {
            scope.TouchHead(spell);
            tracks.m_nPhaseLength = static_cast<int32_t>(Below(20000));
            return;
        }
        if (nKind < 17 || track.GetNumKeys() == 0)
        {
            AddKey(scope, spell, track);
            return;
        }
        CKey& key = *track.GetKey(Below(track.GetNumKeys()));
        if (nKind == 17)
        {
            CTrack& target = *tracks.GetTrack(Below(tracks.GetNumTracks()));
            scope.TouchTrack(spell, track);
            scope.TouchTrack(spell, target);
            scope.TouchKey(spell, key);
            key.m_nTrack = tracks.GetTrackNumber(&target);
            target.PlaceKey(target.AppendKey(track.RemoveKey(&key)));
        }
        else if (nKind == 18)
        {
            scope.TouchTrack(spell, track);
            scope.TouchKey(spell, key);
            track.RemoveKey(&key);
        }
        else if (nKind == 19)
            editor.CreatePrefabFromKey(key, Name());
        else if (nKind == 20 && AnyPrefab())
            EditSet(scope, nullptr, *AnyPrefab());
        else
            EditKey(scope, spell, track, key, nKind);
    }
    void AddKey(CEditScope& scope, CSpell& spell, CTrack& track)
    {
        CEffectPropertySet* pPrefab = Below(2) ? AnyPrefab() : nullptr;
        auto pKey = std::make_unique<CKey>(pPrefab ? pPrefab->m_pTypeDesc : AnyType());
        pKey->SetParent(pPrefab);
        EnsureComplete(pKey.get());
        pKey->m_nStartTime = static_cast<int32_t>(Below(9000));
        pKey->m_nEndTime = pKey->m_nStartTime + 500;
        scope.TouchTrack(spell, track);
        pKey->m_nKeyID = spell.m_Tracks.TakeKeyID();
        pKey->m_nTrack = spell.m_Tracks.GetTrackNumber(&track);
        track.PlaceKey(track.AppendKey(std::move(pKey)));
    }
    void EditKey(CEditScope& scope, CSpell& spell, CTrack& track, CKey& key, uint32_t nKind)
    {
        scope.TouchKey(spell, key);
        CEffectPropertySet* pPrefab = AnyPrefab();
        if (nKind == 21)
            key.m_nEndTime += static_cast<int32_t>(Below(100)) - 50;
        else if (nKind == 22 && Below(2))
            key.Unlink();
        else if (nKind == 22)
            key.Link(Below(9));
        else if (nKind == 23 && pPrefab && key.SetParent(pPrefab))
            key.ClearProperties();
        else if (nKind == 24)
        {
            scope.TouchTrack(spell, track);
            key.m_nStartTime = static_cast<int32_t>(Below(9000));
            key.m_nEndTime = key.m_nStartTime + 300;
            track.SortKeys();
        }
        else
            EditSet(scope, &spell, key);
    }
    void EditSet(CEditScope& scope, const CSpell* pSpell, CEffectPropertySet& set)
    {
        if (!pSpell)
            scope.TouchPrefab(&set);
        if (set.GetNumProps() == 0)
            return;
        const uint32_t nSlot = Below(set.GetNumProps());
        if (set.GetParent() && Below(3) == 0)
            set.ClearLocal(nSlot);
        else
            set.MakeLocal(nSlot);
        CEffectProperty* pProp = set.GetPropertyDirect(nSlot);
        if (!pProp || !HasValue(pProp))
            return;
        if (Below(3) == 0)
            pProp->AddDefaultKey(static_cast<float>(Below(1000)) / 999.0f);
        CPropKey& value = *pProp->GetKey(Below(pProp->GetNumKeys()));
        if (IsTextKind(pProp->GetDesc()->m_eType))
            value.m_Data.SetText(pProp->GetDesc()->m_eType == ePropType_Enum ? "Add" : Name());
        else if (pProp->GetDesc()->m_eType == ePropType_Int)
            value.m_Data.SetInt(static_cast<int32_t>(Below(15)) + 1);
        else if (pProp->GetDesc()->m_eType == ePropType_Color)
            value.m_Data.SetColor(m_Random());
        else
            value.m_Data.SetFloat(static_cast<float>(Below(1000)) / 997.0f + 0.5f); // in no file to the bit
        Validate(pProp);
    }

    CEmberdeckApp& m_App;
    std::mt19937 m_Random;
    CTempDir m_Dir;
    CImageMaker m_Maker;
};
