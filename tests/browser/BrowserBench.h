#pragma once

#include "FakeTreeView.h"
#include "browser/EffectTreePanel.h"
#include "browser/PrefabTreePanel.h"
#include "support/LibraryBuilder.h"
#include "support/MemoryDocuments.h"
#include "support/ScopeChecker.h"
#include "support/ScriptedPrompts.h"

struct CFakeImportView : IImportView
{
    bool ChooseRows(const std::vector<std::string>& rows, std::vector<uint32_t>& selected) override
    {
        m_Rows = rows;
        selected = m_Selected;
        return m_bOK;
    }
    std::vector<std::string> m_Rows;
    std::vector<uint32_t> m_Selected;
    bool m_bOK = true;
};

// The front's host, as far as the prefab panel goes.
struct CBrowserHost : CMemoryHost
{
    CEffectPropertySet* GetActivePrefab() override { return m_pPanel->GetActivePrefab(); }
    void OfferActivePrefab(CEffectPropertySet* pPrefab) override { m_pPanel->OfferActivePrefab(pPrefab); }
    void ClearActivePrefab() override { m_pPanel->ClearActivePrefab(); }
    CPrefabTreePanel* m_pPanel = nullptr;
};

// "a [G b [H c]] d": effects and groups, and the same of prefabs of the type Light.
inline std::unique_ptr<CTestLibrary> MakeLibrary(const std::string& sEffects, const std::string& sPrefabs)
{
    CLibraryBuilder builder = aLibrary();
    for (const bool bEffects : {true, false})
    {
        std::string sWord;
        for (const char c : (bEffects ? sEffects : sPrefabs) + " ")
        {
            if (c != ' ' && c != ']')
            {
                sWord += c;
                continue;
            }
            if (sWord[0] == '[')
                bEffects ? builder.group(sWord.substr(1)) : builder.prefabGroup(sWord.substr(1));
            else if (!sWord.empty())
                bEffects ? builder.effect(sWord) : builder.prefab("Light", sWord);
            if (c == ']')
                bEffects ? builder.end() : builder.endPrefabGroup();
            sWord.clear();
        }
    }
    return builder.build();
}

// Both panels over a library, with all groups open.
struct CBrowserBench
{
    explicit CBrowserBench(CLibraryBuilder& builder) : CBrowserBench(builder.build(), prompts) {}
    explicit CBrowserBench(const std::string& sEffects, const std::string& sPrefabs = "")
        : CBrowserBench(MakeLibrary(sEffects, sPrefabs), prompts)
    {
    }
    CBrowserBench(std::unique_ptr<CTestLibrary> pLibrary, IPrompts& asked)
        : lib(std::move(pLibrary)),
          context{
              lib->m_SpellMgr, lib->Module(), clipboard, lib->m_EffectTree, lib->m_PrefabTree, resourceRoot,
              edits,           asked,         host,      documents}
    {
        host.m_pPanel = &prefabs;
        Wire(effects, effectView);
        Wire(prefabs, prefabView);
    }
    ~CBrowserBench() { CheckModel(); }

    template <class TPanel>
    void Wire(TPanel& panel, CFakeTreeView& view)
    {
        view.m_pTree = &panel.m_Tree;
        const HLibraryItem hRoot = panel.m_Tree.Tree().GetRootItem();
        panel.m_Tree.Expand(hRoot, true);
        panel.m_Tree.ExpandChildren(hRoot, true, true);
    }

    // The named items of a panel selected, the caret on the last one.
    void Select(CLibraryPanel& panel, const std::vector<std::string>& names)
    {
        panel.m_Tree.SelectOnly({});
        for (const std::string& sName : names)
            panel.m_Tree.SetItemStateEx(FindItem(panel.m_Tree.Tree(), sName), 3, 3);
    }
    void Select(const std::vector<std::string>& names) { Select(effects, names); }
    void Run(CLibraryPanel& panel, const std::vector<std::string>& names, int32_t nID)
    {
        Select(panel, names);
        panel.Command(nID);
    }
    HLibraryItem item(const std::string& s) const { return FindItem(lib->m_EffectTree, s); }
    HLibraryItem prefab(const std::string& s) const { return FindItem(lib->m_PrefabTree, s); }
    std::string dump() const { return DumpTree(lib->m_EffectTree); }
    std::string prefabDump() const { return DumpTree(lib->m_PrefabTree); }
    std::string sel() { return effectView.CheckPainted(), SelectionOf(effects.m_Tree); }
    static void Key(CLibraryPanel& panel, ETreeKey eKey) { EXPECT_TRUE(panel.OnKey({eKey, {}})); }
    // Types into the open edit box and presses Enter, or Esc.
    static void Type(CLibraryPanel& panel, CFakeTreeView& view, const std::string& s,
                     int32_t nID = c_nControlOk)
    {
        EXPECT_TRUE(view.m_bEditBox);
        view.m_sBox = s;
        panel.Command(nID);
        EXPECT_FALSE(view.m_bEditBox);
    }

    // Every object is the data of exactly one leaf of its tree, and the panels point at what lives.
    void CheckModel() const
    {
        const auto check = [&](const auto& list, const auto& tree, const auto& name)
        {
            for (const auto& p : list)
            {
                EXPECT_TRUE(tree.FindData(p.get()));
                EXPECT_EQ(name(*p), tree.GetItemText(tree.FindData(p.get())));
            }
            CheckTree(tree, list.size());
        };
        check(lib->m_SpellMgr.Spells(), lib->m_EffectTree, [](auto& o) { return std::string(o.m_szName); });
        check(lib->m_SpellMgr.Prefabs(), lib->m_PrefabTree, [](auto& o) { return o.m_sName; });
        lib->m_SpellMgr.ForEachKey(
            [&](CSpell&, CKey& key)
            { EXPECT_TRUE(!key.GetParent() || lib->m_PrefabTree.FindData(key.GetParent())); });
        for (const CSpell* pSpell : documents.m_Open)
            EXPECT_TRUE(lib->m_EffectTree.FindData(pSpell));
        CheckTreeState(effects.m_Tree);
        CheckTreeState(prefabs.m_Tree);
        const CEffectPropertySet* pActive = prefabs.GetActivePrefab();
        EXPECT_TRUE(!pActive || lib->m_PrefabTree.FindData(pActive));
        for (HLibraryItem h = lib->m_PrefabTree.GetRootItem(); h; h = lib->m_PrefabTree.GetNextItem(h))
            EXPECT_EQ(pActive && h == prefabs.GetActiveItem() ? 16u : 0u,
                      prefabs.m_Tree.GetItemStateEx(h, eState_Bold));
        EXPECT_FALSE(edits.IsOpen());
    }
    // The list's objects are found in the tree, so there are no others when the leaves are as many.
    static void CheckTree(const auto& tree, size_t nObjects)
    {
        size_t nLeaves = 0;
        for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextItem(h))
        {
            nLeaves += tree.IsLeaf(h);
            EXPECT_EQ(tree.IsLeaf(h), tree.GetItemData(h) != nullptr);
            EXPECT_TRUE(tree.GetParentItem(h) || h == tree.GetRootItem());
        }
        EXPECT_EQ(nObjects, nLeaves);
    }

    std::unique_ptr<CTestLibrary> lib;
    CEditClipboard clipboard;
    std::string resourceRoot;
    CEditHub edits;
    CScriptedPrompts prompts;
    CBrowserHost host;
    CMemoryDocuments documents;
    CEditContext context;
    CFakeTreeView effectView, prefabView;
    CFakeImportView import;
    CEffectTreePanel effects{context, effectView, import};
    CPrefabTreePanel prefabs{context, prefabView};
};
