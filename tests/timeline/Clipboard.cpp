#include "timeline/TimelineBench.h"

TEST(KeyClipboard, PastesAStandardSpanWhereThereIsRoom)
{
    CTimelineBench bench("S1000-1200#5=Plume S4000-5000 |");
    CTrackWnd& wnd = *bench.wnd;
    wnd.OnKeyPress('C', true, false, false); // no current key
    bench.view.m_ptPointer = bench.At(7000, 0);
    wnd.OnKeyPress('V', true, false, false); // an empty clipboard
    EXPECT_EQ("1000-1200 4000-5000 |", bench.Dump());

    bench.Click(bench.At(1100, 0));
    wnd.OnKeyPress('C', true, false, false);
    bench.checker.ExpectEdits(0);
    wnd.OnKeyPress(c_nKeyInsert, false, true, false);
    EXPECT_EQ("1000-1200* 4000-5000 5999-7999* |", bench.Dump()); // the flag came along
    EXPECT_EQ("Plume", bench.Key(0, 2).m_sName);
    EXPECT_EQ(7u, bench.Key(0, 2).m_nKeyID);
    EXPECT_EQ(&bench.Key(0, 0), wnd.GetCurKey());
    bench.checker.ExpectEdits(1);

    // Over a key, below the rows, and outside the area of the rows: nothing.
    for (const CPoint pt :
         {bench.At(4500, 0), bench.At(2000, 2), CPoint{-30, 80}, CPoint{700, 60}, CPoint{1010, 80}})
    {
        bench.view.m_ptPointer = pt;
        wnd.OnKeyPress('V', true, false, false);
    }
    bench.checker.ExpectEdits(0);

    wnd.OnRightRelease(bench.At(3000, 0), false); // at the click, not at the pointer
    wnd.OnMenuClosed(c_nCmdPasteKey);
    wnd.OnRightRelease(bench.At(300, 1), false);
    wnd.OnMenuClosed(c_nCmdPasteKey);
    EXPECT_EQ("1000-1200 1999-3999 4000-5000 5999-7999 | 0-1299*", bench.Dump());
    wnd.OnRightRelease(bench.At(5300, 0), false);
    wnd.OnMenuClosed(c_nCmdPasteKey);
    EXPECT_EQ("1000-1200 1999-3999 4000-5000 5000-5999* 5999-7999 | 0-1299", bench.Dump());
}

TEST(KeyClipboard, CutCopiesOneAndDeletesTheSelection)
{
    CTimelineBench bench("S1000-2000 S4000-5000 L6000-7000=Last");
    CTrackWnd& wnd = *bench.wnd;
    bench.Click(bench.At(1500, 0));
    bench.Click(bench.At(6500, 0), true);
    wnd.OnKeyPress(c_nKeyDelete, false, true, false);
    EXPECT_EQ("4000-5000", bench.Dump());
    EXPECT_EQ("Last", bench.clipboard.GetKey()->m_sName);
    bench.checker.ExpectEdits(1);
    bench.Click(bench.At(4500, 0));
    bench.Click(bench.At(9000, 0), true); // still selected, but no longer current
    wnd.OnKeyPress('X', true, false, false);
    EXPECT_EQ("4000-5000*", bench.Dump());
    EXPECT_EQ("Last", bench.clipboard.GetKey()->m_sName);
    bench.checker.ExpectEdits(0);
}

TEST(KeyClipboard, ALinkStaysWithinItsEffect)
{
    CTimelineBench bench("S0-9000#3 | L1000-2000>3");
    bench.Arrange([&] { bench.m_pLibrary->m_SpellMgr.AddSpell()->m_Tracks.AddTrack(); });
    bench.Click(bench.At(1500, 1));
    bench.wnd->Command(c_nCmdCopyKey);
    bench.wnd->PasteKeyAt(bench.At(5000, 1));
    EXPECT_TRUE(bench.Key(1, 1).m_bMotionLinked);
    bench.Open(1);
    bench.wnd->PasteKeyAt(bench.At(5000, 0));
    EXPECT_FALSE(bench.Spell(1).m_Tracks.GetTrack(0)->GetKey(0)->m_bMotionLinked);
    EXPECT_TRUE(bench.clipboard.GetKey()->m_bMotionLinked);
    bench.Open(0); // the effect is the same one, though its window is new
    bench.wnd->PasteKeyAt(bench.At(8000, 1));
    EXPECT_TRUE(bench.Key(1, 2).m_bMotionLinked);
}

TEST(KeyClipboard, TellsWhyNothingWasPasted)
{
    CTimelineBench bench("S0-4000 S4000-10000 |");
    const auto paste = [&](CPoint pt)
    {
        bench.view.m_ptPointer = pt;
        bench.wnd->Command(c_nCmdPasteKeyAtMouse);
        return bench.Status();
    };
    EXPECT_EQ("Nothing to paste: no key was copied or cut", paste(bench.At(1000, 1)));
    EXPECT_EQ("Nothing to paste: no key was copied or cut", paste({-50, 80}));
    bench.Click(bench.At(1000, 0));
    bench.wnd->Command(c_nCmdCopyKey);
    EXPECT_EQ("Not pasted: there is a key already", paste(bench.At(1000, 0)));
    EXPECT_EQ("Not pasted: the pointer is over no track", paste(bench.At(1000, 4)));
    EXPECT_EQ("Not pasted: the pointer is over no track", paste({-50, 80}));
    EXPECT_EQ("", paste(bench.At(5000, 1))); // done: what was said is gone
    EXPECT_EQ("0-4000* 4000-10000 | 3999-5999*", bench.Dump());
    bench.wnd->TimeBar().m_nViewStart = -1500;
    EXPECT_EQ("Not pasted: there is no room on the track",
              paste({10, bench.At(0, 1).y})); // ends at 0 at most
}
