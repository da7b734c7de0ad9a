// Each allocation of an undo or redo fails in turn, once or for good: the step is done or it isn't, and stays to be
// tried again. And of the recording of an edit: it is made all the same, and can be undone, or the history says no.

#include "FaultBench.h"
#include "FaultyMemory.h"
#include "app/EffectEditor.h"
#include "app/PrefabEditor.h"

namespace
{
std::string TextOf(const CEmberdeckApp& app, const CTempDir& dir)
{
    const std::string sFile = dir.path("now.Fx00a");
    EXPECT_TRUE(SaveEffectLibrary(sFile.c_str(), app.m_EffectTree, app.m_PrefabTree));
    const std::string sText = ReadBytes(sFile);
    std::filesystem::remove(sFile);
    return sText;
}

HLibraryItem ItemOf(const CLibraryTree& tree, const std::string& sText)
{
    HLibraryItem h = tree.GetRootItem();
    while (h && tree.GetItemText(h) != sText)
        h = tree.GetNextItem(h);
    return h;
}

void Retime(CEmberdeckApp& app, int32_t nEnd)
{
    CSpell& spell = *app.m_SpellMgr.Spells()[0];
    CKey& key = *spell.m_Tracks.GetTrack(0)->GetKey(0);
    CEditScope scope(app.m_Edits, "Move Keys, with a label that takes memory");
    scope.TouchHead(spell);
    scope.TouchKey(spell, key);
    key.m_nEndTime = nEnd;
}

struct CKind
{
    const char* m_pszName;
    std::function<void(CEmberdeckApp&)> m_Edit;
};

const std::vector<CKind> c_Kinds = {
    {"delete an effect", [](CEmberdeckApp& app)
     { CEffectEditor(app.Context()).Delete(ItemOf(app.m_EffectTree, "An effect of some name 0")); }},
    {"delete a prefab",
     [](CEmberdeckApp& app) { CPrefabEditor(app.Context()).Delete(ItemOf(app.m_PrefabTree, "Lamp")); }},
    {"move and duplicate",
     [](CEmberdeckApp& app)
     {
         CEditScope scope(app.m_Edits, "One");
         CEffectEditor editor(app.Context());
         editor.Move(ItemOf(app.m_EffectTree, "Weapons"), editor.NewGroup({}));
         editor.Duplicate(ItemOf(app.m_EffectTree, "An effect of some name 1"));
     }},
    {"rename",
     [](CEmberdeckApp& app)
     {
         CEffectEditor(app.Context())
             .Rename(ItemOf(app.m_EffectTree, "An effect of some name 0"), "Another, that goes last");
     }},
    {"keys, tracks and values",
     [](CEmberdeckApp& app)
     {
         CSpell& spell = *app.m_SpellMgr.Spells()[0];
         CTrack& first = *spell.m_Tracks.GetTrack(0);
         CTrack& second = *spell.m_Tracks.GetTrack(1);
         CEditScope scope(app.m_Edits, "Many");
         scope.Touch(&spell);
         CKey& plume = *first.GetKey(0);
         plume.m_sName = "A name of a key that is long";
         PropOf(plume, "Texture")->GetKey(0)->m_Data.SetText("a text that needs memory of its own.dds");
         PropOf(plume, "Size")->AddDefaultKey(0.5f);
         CKey& lamp = *second.GetKey(0);
         lamp.Unlink();
         lamp.SetParent(nullptr);
         EnsureComplete(&lamp);
         lamp.m_nTrack = 0;
         lamp.m_nStartTime = 2000;
         lamp.m_nEndTime = 2500;
         first.AppendKey(second.RemoveKey(&lamp));
         spell.m_Tracks.RemoveTrack(&second);
         CTrack& third = *spell.m_Tracks.InsertTrackAfter(nullptr);
         third.AppendKey(plume.Clone())->m_nKeyID = spell.m_Tracks.TakeKeyID();
         spell.m_Tracks.Renumber();
     }},
    {"delete keys",
     [](CEmberdeckApp& app)
     {
         CSpell& spell = *app.m_SpellMgr.Spells()[1];
         CTrack& track = *spell.m_Tracks.GetTrack(0);
         CEditScope scope(app.m_Edits, "Delete Keys");
         scope.TouchTrack(spell, track);
         scope.TouchKey(spell, *track.GetKey(0));
         track.RemoveKey(track.GetKey(0));
     }},
};
} // namespace

TEST(OutOfMemory, AnUndoIsWholeOrChangesNothing)
{
    CFaultBench bench;
    for (const CKind& kind : c_Kinds)
    {
        const auto pApp = bench.StartWith("file.Fx00a", 2, "An effect of some name");
        CHistory& history = pApp->History();
        const std::string sBefore = TextOf(*pApp, bench.dir);
        kind.m_Edit(*pApp);
        ASSERT_EQ(1u, history.GetNumSteps()) << kind.m_pszName << history.GetProblem();
        const std::string sAfter = TextOf(*pApp, bench.dir);
        ASSERT_NE(sBefore, sAfter);
        for (const bool bUndo : {true, false})
        {
            size_t nRuns = 0;
            for (const bool bForever : {false, true})
            {
                for (size_t nFailAt = 1; nFailAt == 1 || CFaultyMemory::WasHit(); ++nFailAt, ++nRuns)
                {
                    SCOPED_TRACE(std::string(kind.m_pszName) + (bUndo ? ", undo " : ", redo ") +
                                 std::to_string(nFailAt) + (bForever ? " and all behind it" : ""));
                    history.GoTo(bUndo ? 1 : 0);
                    bool bDone = false;
                    {
                        const CFaultyMemory fault(nFailAt, bForever);
                        bDone = bUndo ? history.Undo() : history.Redo();
                    }
                    const bool bHit = CFaultyMemory::WasHit();
                    ASSERT_EQ(bDone == bUndo ? sBefore : sAfter, TextOf(*pApp, bench.dir));
                    ASSERT_EQ(bDone == bUndo ? 0u : 1u, history.GetPosition());
                    ASSERT_EQ(1u, history.GetNumSteps()) << history.GetProblem();
                    ASSERT_TRUE(bDone || bHit) << "failed for nothing";
                }
            }
            EXPECT_GT(nRuns, 20u) << kind.m_pszName;
        }
    }
}

TEST(OutOfMemory, AnEditThatCantBeRecordedIsMadeAndTold)
{
    CFaultBench bench;
    const auto pApp = bench.StartWith("file.Fx00a", 1, "Effect");
    CHistory& history = pApp->History();
    int32_t nEnd = 1500;
    bool bLost = false;
    for (const bool bForever : {false, true})
    {
        for (size_t nFailAt = 1; nFailAt == 1 || CFaultyMemory::WasHit(); ++nFailAt)
        {
            SCOPED_TRACE(std::to_string(nFailAt) + (bForever ? " and all behind it" : ""));
            Retime(*pApp, ++nEnd); // a step of which nothing may be left
            const std::string sBefore = TextOf(*pApp, bench.dir);
            {
                const CFaultyMemory fault(nFailAt, bForever);
                Retime(*pApp, ++nEnd);
            }
            const bool bHit = CFaultyMemory::WasHit();
            ASSERT_EQ(nEnd, KeyOf(pApp->m_SpellMgr, "Effect 0")->m_nEndTime);
            if (history.GetNumSteps() == 0)
            {
                ASSERT_TRUE(bHit);
                ASSERT_FALSE(history.IsSaved());
                bLost = bLost || !history.GetProblem().empty();
                continue;
            }
            ASSERT_TRUE(history.Undo());
            ASSERT_EQ(sBefore, TextOf(*pApp, bench.dir));
            ASSERT_TRUE(history.Redo());
        }
    }
    EXPECT_TRUE(bLost);
}
