#include "timeline/TimelineBench.h"

namespace
{

// Adds a key of the type at a point, through menu and chooser.
void AddAt(CTimelineBench& bench, CPoint pt, const char* pszType = "Light")
{
    bench.host.m_pChosen = pszType ? bench.m_pLibrary->Module().FindType(pszType) : nullptr;
    bench.wnd->OnRightRelease(pt, false);
    bench.wnd->OnMenuClosed(c_nCmdAddKey);
}

} // namespace

TEST(AddKey, LastsTwoSecondsAboutTheClickWithinTheFreeGap)
{
    CTimelineBench bench("");
    AddAt(bench, bench.At(5000, 0), nullptr); // nothing chosen
    bench.checker.ExpectEdits(0);
    AddAt(bench, bench.At(500, 0));
    EXPECT_EQ("0-1499", bench.Dump());
    AddAt(bench, bench.At(9500, 0));
    EXPECT_EQ("0-1499 8499-10499", bench.Dump()); // the phase is no bound here
    bench.checker.ExpectEdits(2);
    EXPECT_EQ(1u, bench.Key(0, 1).m_nKeyID);
    EXPECT_TRUE(OwnPropOf(bench.Key(0, 1), "Radius"));
    EXPECT_FALSE(bench.wnd->GetCurKey());

    // Less than a second behind the start of another key, and between two: the gap about the click.
    AddAt(bench, bench.At(1600, 0));
    EXPECT_EQ("0-1499 1499-2599 8499-10499", bench.Dump());
    AddAt(bench, bench.At(8000, 0));
    EXPECT_EQ("0-1499 1499-2599 6999-8499 8499-10499", bench.Dump());
    bench.Arrange([&] { bench.Key(0, 0).m_nStartTime = 1400; });
    AddAt(bench, bench.At(300, 0)); // it would have come in front of a key that starts 1.1 s later
    EXPECT_EQ("0-1299 1400-1499 1499-2599 6999-8499 8499-10499", bench.Dump());
}

TEST(AddKey, TakesTheGapAboutTheClickOrTellsThatThereIsNone)
{
    const struct
    {
        const char* pszTracks;
        int32_t nTime; // of the click
        const char* pszAfter;
    } cases[] = {{"S1000-2000 S2000-3000", 1500, nullptr},
                 {"S1000-2000 S2010-3000", 1500, "1000-2000 2000-2010 2010-3000"},
                 {"", -1000, nullptr},
                 {"", -999, "0-1"},
                 {"S1010-1500", 1010, "1010-1500 1500-2010"},
                 {"S1010-1500", 1009, "9-1010 1010-1500"}};
    for (const auto& c : cases)
    {
        CTimelineBench bench(c.pszTracks);
        const std::string sBefore = bench.Dump();
        bench.wnd->OnRightRelease(bench.At(5000, 0), false);
        bench.wnd->OnMenuClosed(0);
        bench.host.m_pChosen = bench.m_pLibrary->Module().FindType("Light");
        bench.host.ShowStatus("");
        bench.wnd->TimeBar().m_nViewStart = c.nTime - 4999;
        bench.wnd->OnTrackAddKey();
        EXPECT_EQ(c.pszAfter ? c.pszAfter : sBefore, bench.Dump()) << c.pszTracks << " at " << c.nTime;
        EXPECT_EQ(c.pszAfter ? "" : "No key added: there is no room on the track", bench.Status());
        bench.checker.ExpectEdits(c.pszAfter ? 1 : 0);
    }
}

TEST(AddKey, CompletesThePrefabThatItsChainEndsWith)
{
    CTimelineBench bench("");
    CEffectPropertySet *pRoot = nullptr, *pPrefab = nullptr;
    bench.Arrange(
        [&]
        {
            const CEffectTypeDesc* pType = bench.m_pLibrary->Module().FindType("Light");
            pRoot = bench.m_pLibrary->m_SpellMgr.AddPrefab(pType);
            pPrefab = bench.m_pLibrary->m_SpellMgr.AddPrefab(pType);
            pPrefab->SetParent(pRoot);
        });
    CTouchLog log(bench.edits);
    bench.host.m_pActive = pPrefab;
    for (const bool bTouched : {true, false}) // whole by then
    {
        log.m_Touched.clear();
        bench.wnd->OnRightRelease(bench.At(bTouched ? 2000 : 8000, 0), false);
        bench.wnd->OnMenuClosed(c_nCmdAddPrefabKey);
        EXPECT_EQ(bTouched, log.Has(pRoot));
        EXPECT_FALSE(log.Has(pPrefab));
        EXPECT_TRUE(OwnPropOf(*pRoot, "Radius"));
    }
    bench.Arrange(
        [&] { bench.m_pLibrary->m_SpellMgr.ForEachKey([](CSpell&, CKey& key) { key.SetParent(nullptr); }); });
}

TEST(TrackCommands, RepaintAlsoWhereNothingChanged)
{
    CTimelineBench bench("S0-10000=Plume");
    bench.Click(bench.At(500, 0));
    for (const int32_t nID :
         {c_nCmdEditKey, c_nCmdExpandKeys, c_nCmdUnlinkKeys, c_nCmdSetKeyLength, c_nCmdNameKeys})
    {
        if (nID == c_nCmdSetKeyLength)
            bench.prompts.onNumber(std::nullopt);
        if (nID == c_nCmdNameKeys)
            bench.prompts.onText(std::nullopt);
        const int nInvalidated = bench.view.m_nInvalidated;
        bench.wnd->Command(nID);
        EXPECT_EQ(nInvalidated + 1, bench.view.m_nInvalidated) << nID;
    }
    bench.prompts.onNumber(0.0);
    bench.wnd->Command(c_nCmdSetKeyLength); // a length that no key may have
    EXPECT_EQ("0-10000*", bench.Dump());
    bench.wnd->Command(0);
    bench.wnd->Command(4711);
    bench.checker.ExpectEdits(0);
}

TEST(Tracks, InsertAndDeleteRenumber)
{
    CTimelineBench bench("S0-1000#3 | L100-200>3 L300-400");
    CTrackWnd& wnd = *bench.wnd;
    wnd.OnRightRelease(bench.At(500, 0), false);
    wnd.Command(c_nCmdInsertTrack);
    EXPECT_EQ("0-1000* | | 100-200 300-400", bench.Dump());
    bench.Click(bench.At(500, 9));
    wnd.Command(c_nCmdInsertTrack); // without a current track: at the end
    EXPECT_EQ("0-1000 | | 100-200 300-400 |", bench.Dump());
    bench.checker.ExpectEdits(2);

    wnd.Command(c_nCmdDeleteTrack); // no current track
    bench.Click(bench.At(350, 2));
    bench.prompts.onAsk("Are you sure you want to delete this track and the 2 keys it contains?",
                        EAnswer::eNo);
    wnd.Command(c_nCmdDeleteTrack);
    EXPECT_EQ("Delete Track", bench.prompts.m_Asked.at(0).m_sCaption);
    bench.prompts.onAsk("the 2 keys", EAnswer::eCancel); // the box was closed
    wnd.Command(c_nCmdDeleteTrack);
    bench.checker.ExpectEdits(0);
    wnd.OnRightRelease(bench.At(500, 0), false);
    bench.prompts.onAsk("the 1 keys", EAnswer::eYes);
    wnd.Command(c_nCmdDeleteTrack);
    EXPECT_EQ(" | 100-200 300-400 |", bench.Dump());
    EXPECT_FALSE(wnd.GetCurKey() || wnd.GetCurTrack());
    EXPECT_TRUE(bench.Key(1, 0).m_bMotionLinked); // links to what has gone stay
    bench.checker.ExpectEdits(1);
    bench.Arrange([&] { bench.Key(1, 0).Unlink(); });
    bench.Click(bench.At(150, 1));
    bench.Drag(bench.At(150, 1), bench.At(5000, 2), true,
               true); // a carried key leaves its track the current one
    EXPECT_TRUE(wnd.GetCurKey());
    bench.prompts.onAsk("the 1 keys", EAnswer::eYes);
    wnd.Command(c_nCmdDeleteTrack);
    EXPECT_FALSE(wnd.GetCurKey() || wnd.GetCurTrack());
    EXPECT_EQ(1u, bench.Tracks().GetNumKeys());
}

TEST(DeleteKey, TakesAllSelectedAndTheirLinks)
{
    CTimelineBench bench("S0-1000#3* S1000-1100* | L100-200>3 L300-400*");
    bench.wnd->Command(c_nCmdDeleteKeys);
    EXPECT_EQ(" | 100-200", bench.Dump());
    EXPECT_FALSE(bench.Key(1, 0).m_bMotionLinked);
    EXPECT_EQ("1", bench.wnd->KeyInfo().GetInfo().m_sTotalKeys);
    bench.checker.ExpectEdits(1);
    bench.wnd->Command(c_nCmdDeleteKeys);
    bench.checker.ExpectEdits(0);
}

TEST(ExpandKey, GrowsToNeighboursOriginAndPhase)
{
    CTimelineBench bench("S1000-2000* S4000-5000* S8000-9000 | L300-400* | L12000-13000*");
    bench.wnd->Command(c_nCmdExpandKeys);
    EXPECT_EQ("0-4000* 4000-8000* 8000-9000 | 0-10000* | 0-10000*", bench.Dump());
    bench.checker.ExpectEdits(1);
    // Behind a key that ends beyond the phase there is no end to grow to.
    bench.Arrange(
        [&]
        {
            bench.wnd->ClearSelection();
            bench.Key(0, 1).m_nEndTime = 11000;
            bench.Key(0, 2).m_nStartTime = 12000;
            bench.Key(0, 2).m_nEndTime = 12500;
            bench.Key(0, 2).m_bSelected = true;
        });
    bench.wnd->Command(c_nCmdExpandKeys);
    EXPECT_EQ("0-4000 4000-11000 11000-12500* | 0-10000 | 0-10000", bench.Dump());
}

TEST(SetKeyLength, KeepsStartsAndNeighbours)
{
    CTimelineBench bench("S1000-2000* S4000-4500 | L9000-9100*");
    CTrackWnd& wnd = *bench.wnd;
    bench.prompts.onNumber(std::nullopt, "Enter Key Length in Milliseconds").onNumber(5000).onNumber(700);
    wnd.Command(c_nCmdSetKeyLength);
    bench.checker.ExpectEdits(0);
    EXPECT_EQ(0, bench.prompts.m_OfferedNumbers.at(0)); // no key is the current one
    bench.Click(bench.At(1500, 0));
    bench.Click(bench.At(9050, 1), true);
    EXPECT_EQ(1, bench.prompts.m_Numbers.at(0).m_nMin);
    EXPECT_EQ(1000000, bench.prompts.m_Numbers.at(0).m_nMax);
    wnd.Command(c_nCmdSetKeyLength);
    EXPECT_EQ("1000-4000* 4000-4500 | 9000-14000*", bench.Dump());
    EXPECT_EQ(100, bench.prompts.m_OfferedNumbers.at(1));
    wnd.Command(c_nCmdSetKeyLength);
    EXPECT_EQ("1000-1700* 4000-4500 | 9000-9700*", bench.Dump());
    bench.checker.ExpectEdits(2);
}

TEST(NameKey, CleansTheTextAndNamesAllSelected)
{
    CTimelineBench bench("S1000-2000*=Old L4000-4500=Glow");
    CTrackWnd& wnd = *bench.wnd;
    bench.prompts.onText(std::nullopt, "Enter Name For Sprite")
        .onText(" \t a \"b\" ", "Enter Name For Sprite");
    wnd.Command(c_nCmdNameKeys);
    bench.checker.ExpectEdits(0);
    wnd.Command(c_nCmdNameKeys);
    EXPECT_EQ("a 'b'", bench.Key(0, 0).m_sName);
    bench.Click(bench.At(4200, 0), true);
    bench.prompts.onText("   ", "Enter Name For Keys");
    wnd.Command(c_nCmdNameKeys);
    EXPECT_EQ((std::vector<std::string>{"Old", "Old", ""}), bench.prompts.m_Offered);
    EXPECT_EQ("", bench.Key(0, 0).m_sName + bench.Key(0, 1).m_sName);
    EXPECT_EQ("Key Info [Light]", wnd.KeyInfo().GetInfo().m_sTitle);
    wnd.ClearSelection();
    wnd.Command(c_nCmdNameKeys); // nothing selected, nothing asked
    bench.checker.ExpectEdits(2);
}
