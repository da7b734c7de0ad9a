#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <utility>

#include "app/EditContext.h"
#include "changes/ChangeRecorder.h"
#include "changes/ChangeText.h"
#include "formats/EmberdeckQSA.h"
#include "support/TempDir.h"

// The library as it would be saved, with what no file holds: all roots, images, spent ids.
inline std::string LibrarySnapshot(const CEditContext& context, const CTempDir& dir)
{
    const std::string sFile = dir.path("snapshot.Fx00a");
    EXPECT_TRUE(SaveEffectLibrary(sFile.c_str(), context.m_EffectTree, context.m_PrefabTree));
    std::string sText = ReadBytes(sFile);
    std::filesystem::remove(sFile); // writing over it, again and again, would wait for the disk
    const auto addItems = [&sText](const auto& tree)
    {
        for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextItem(h))
        {
            char szData[40];
            std::snprintf(szData, sizeof(szData), "%p", static_cast<const void*>(tree.GetItemData(h)));
            sText += tree.GetItemText(h) + "|" + std::to_string(tree.GetItemImage(h)) + "|" + szData + "\n";
        }
    };
    addItems(context.m_EffectTree);
    addItems(context.m_PrefabTree);
    for (const auto& pSpell : context.m_SpellMgr.Spells())
        sText += std::string(pSpell->m_szName) + "|" + std::to_string(pSpell->m_Tracks.GetNumTracks()) + "\n";
    return sText;
}

// Fails the test when the library has changed and no edit scope told of it, and when an edit has changed more, or
// other things, than was recorded of it: what lies between two pictures of the whole library must be that, to the
// letter. Check after each step, or leave it to the end of the test:
//
//     CScopeChecker checker(context);
//     wnd.OnTrackDeleteKey();
//     checker.ExpectEdits(1);
class CScopeChecker : private IEditListener, private ILibraryOwner
{
public:
    explicit CScopeChecker(const CEditContext& context) : m_Context(context)
    {
        if (!context.m_Edits.HasRecorder())
            m_pRecorder = std::make_unique<CChangeRecorder>(
                CApplyTarget{Parts(), context.m_EffectModule, context.m_Edits, *this});
        context.m_Edits.AddListener(this);
    }
    ~CScopeChecker() override
    {
        Check("at the end");
        m_Context.m_Edits.RemoveListener(this);
    }

    // Nothing may change outside a scope, and none may be open here.
    void Check(const char* pszWhere = "")
    {
        EXPECT_FALSE(m_Context.m_Edits.IsOpen()) << "a scope is still open " << pszWhere;
        const std::string sBefore = std::exchange(m_sSnapshot, LibrarySnapshot(m_Context, m_Dir));
        if (m_Context.m_Edits.GetNumEdits() == m_nEdits)
        {
            EXPECT_EQ(sBefore, m_sSnapshot) << "changed outside a scope " << pszWhere;
        }
        m_nEdits = m_Context.m_Edits.GetNumEdits();
    }
    // So many edits since the last look.
    void ExpectEdits(uint64_t nCount, const char* pszWhere = "")
    {
        EXPECT_EQ(nCount, m_Context.m_Edits.GetNumEdits() - m_nEdits) << pszWhere;
        Check(pszWhere);
    }

    bool m_bMemoryFails = false; // set by who makes it fail, and nothing is looked at any more

private:
    CLibraryParts Parts() const
    {
        return {m_Context.m_SpellMgr, m_Context.m_EffectTree, m_Context.m_PrefabTree};
    }
    void OnEdit(const CEdit& edit) override
    {
        if (m_bMemoryFails)
            return;
        EXPECT_FALSE(edit.m_bRecordFailed) << edit.m_sLabel;
        m_Maker.ForgetTypes(); // the plug-in may be another one
        const auto pBefore = std::exchange(m_pImage, CLibraryImage::Make(Parts(), m_Maker));
        if (edit.m_pChange)
        {
            EXPECT_EQ(WriteChangeText(Compare(*pBefore, *m_pImage)), WriteChangeText(*edit.m_pChange))
                << "not as it was touched: " << edit.m_sLabel;
        }
    }
    void OnReleasing(const CSpell&) override {}
    void OnReleasing(CEffectPropertySet&) override {}

    const CTempDir m_Dir;
    const CEditContext& m_Context;
    std::string m_sSnapshot = LibrarySnapshot(m_Context, m_Dir);
    uint64_t m_nEdits = m_Context.m_Edits.GetNumEdits();
    CImageMaker m_Maker;
    std::shared_ptr<const CLibraryImage> m_pImage = CLibraryImage::Make(Parts(), m_Maker);
    std::unique_ptr<CChangeRecorder> m_pRecorder; // null: the library has one
};
