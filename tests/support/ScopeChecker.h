#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>

#include "app/EditContext.h"
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

// Fails the test when the library has changed and no edit scope told of it. Check after each step, or
// leave it to the end of the test, which sees a change only when no step at all had a scope:
//
//     CScopeChecker checker(context);
//     wnd.OnTrackDeleteKey();
//     checker.ExpectEdits(1);
class CScopeChecker
{
public:
    explicit CScopeChecker(const CEditContext& context)
        : m_Context(context),
          m_sSnapshot(LibrarySnapshot(context, m_Dir)),
          m_nEdits(context.m_Edits.GetNumEdits())
    {
    }
    ~CScopeChecker() { Check("at the end"); }

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

private:
    const CTempDir m_Dir;
    const CEditContext& m_Context;
    std::string m_sSnapshot;
    uint64_t m_nEdits;
};
