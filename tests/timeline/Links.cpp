#include "timeline/TimelineBench.h"

namespace
{

struct CLinkBench : CTimelineBench
{
    CLinkBench() : CTimelineBench("S1000-5000#3 | L2000-3000 L6000-7000 | L1000-3000") {}
    // Links the key at one point to that at another, by the command.
    void Link(CPoint from, CPoint to)
    {
        Click(from);
        view.m_ptPointer = from;
        wnd->Command(c_nCmdLinkKey);
        EXPECT_TRUE(wnd->IsLinking());
        wnd->OnMove(to, false);
        Press(to);
        EXPECT_FALSE(wnd->IsBusy());
    }
};

} // namespace

TEST(MotionLink, TakesATargetThatHoldsTheKeyStrictly)
{
    CLinkBench bench;
    bench.Link(bench.At(2500, 1), bench.At(4000, 0));
    EXPECT_TRUE(bench.Key(1, 0).m_bMotionLinked);
    EXPECT_EQ(3u, bench.Key(1, 0).m_nMotionLinkID);
    EXPECT_EQ("1000-5000 | 2000-3000* 6000-7000 | 1000-3000", bench.Dump()); // that press selects nothing
    bench.checker.ExpectEdits(1);

    bench.prompts.onAsk("You cannot link this key, its boundaries are outside of the target key");
    bench.Link(bench.At(2500, 2), bench.At(4000, 0)); // shares a boundary
    EXPECT_EQ("Emberdeck", bench.prompts.m_Asked.at(0).m_sCaption);
    EXPECT_EQ(EIcon::eExclamation, bench.prompts.m_Asked.at(0).m_eIcon);
    EXPECT_EQ("Light runs from 1000 ms to 3000 ms, the target Sprite runs from 1000 ms to 5000 ms. The key "
              "must start "
              "after its target starts, and end before it ends.",
              bench.prompts.m_Advice.at(0));
    const struct
    {
        int nStart, nEnd;
        bool bHeld;
    } cases[] = {{1001, 4999, true}, {1000, 4999, false}, {1001, 5000, false}};
    for (const auto& [nStart, nEnd, bHeld] : cases)
    {
        CTimelineBench one("S1000-5000#3 | L" + std::to_string(nStart) + "-" + std::to_string(nEnd));
        one.Click(one.At(2500, 1));
        one.wnd->Command(c_nCmdLinkKey);
        if (!bHeld)
            one.prompts.onAsk("You cannot link this key");
        one.Press(one.At(2000, 0));
        EXPECT_EQ(bHeld, one.Key(1, 0).m_bMotionLinked) << nStart << " " << nEnd;
    }
    bench.host.m_Status.clear();
    bench.Link(bench.At(2500, 2), bench.At(2600, 2)); // itself: nothing, and no box
    EXPECT_EQ("Not linked: no other key was clicked", bench.Status());
    bench.wnd->Command(c_nCmdUnlinkKeys); // the next command takes the line away
    EXPECT_EQ("", bench.Status());
    bench.Link(bench.At(2500, 2), {900, 80});
    EXPECT_EQ("Not linked: no other key was clicked", bench.Status());
    EXPECT_FALSE(bench.Key(2, 0).m_bMotionLinked);
    bench.checker.ExpectEdits(0);
}

TEST(MotionLink, TheRubberLineFollowsThePointerUntilAPress)
{
    CLinkBench bench;
    CTrackWnd& wnd = *bench.wnd;
    bench.wnd->Command(c_nCmdLinkKey); // without a current key nothing begins
    EXPECT_FALSE(wnd.IsLinking());
    bench.Click(bench.At(2500, 1));
    bench.view.m_ptPointer = {10, 75};
    wnd.Command(c_nCmdLinkKey);
    wnd.OnMove({102, 80}, false); // no size cursor on an edge meanwhile
    EXPECT_EQ(ECursorShape::eArrow, bench.view.m_eShape);
    const int nPainted = bench.view.m_nPainted;
    wnd.OnMove({102, 80}, false);
    EXPECT_EQ(nPainted, bench.view.m_nPainted);
    wnd.OnMove({103, 80}, false);
    wnd.OnMove({102, 80}, false);
    EXPECT_EQ(nPainted + 2, bench.view.m_nPainted);
    CRecordingSurface surface;
    wnd.Paint(surface);
    EXPECT_EQ("line 250,54 102,10", surface.Calls("line").back());
    EXPECT_EQ("ellipse 97,5 11x11 #FFFFFF", surface.Calls("ellipse").back());
    EXPECT_TRUE(wnd.IsBusy());
    wnd.Command(c_nCmdDeleteKeys);
    const int nInvalidated = bench.view.m_nInvalidated;
    wnd.OnDeactivate(); // another program is in front: no link
    EXPECT_FALSE(wnd.IsLinking());
    wnd.OnDeactivate();
    EXPECT_EQ(nInvalidated + 1, bench.view.m_nInvalidated);
    wnd.Command(c_nCmdLinkKey);
    wnd.OnDoubleClick({900, 80}, false, false); // ends the line as a press does
    EXPECT_FALSE(wnd.IsLinking());
    EXPECT_TRUE(bench.host.m_Edited.empty());
    bench.checker.ExpectEdits(0);

    // The press that ends it is swallowed; a double click right after is a first press.
    bench.Link(bench.At(2500, 1), {900, 80});
    wnd.OnDoubleClick(bench.At(6500, 1), false, false);
    EXPECT_TRUE(bench.host.m_Edited.empty());
    EXPECT_TRUE(wnd.IsDragging());
    wnd.OnLeftRelease(bench.At(6500, 1));
    wnd.OnDoubleClick(bench.At(6500, 1), false, false);
    EXPECT_EQ(1u, bench.host.m_Edited.size());
}

TEST(MotionLink, UnlinkKeyEndsBothDirections)
{
    CTimelineBench bench("S0-9000#0 | L1000-5000#1>0 | L2000-3000>1 L3000-4000>1 | L2000-2500>0");
    CTrackWnd& wnd = *bench.wnd;
    EXPECT_TRUE(wnd.IsLinkedTo(&bench.Key(0, 0))); // by id 0, which is one like any other
    EXPECT_TRUE(wnd.IsLinkedTo(&bench.Key(1, 0)));
    EXPECT_FALSE(wnd.IsLinkedTo(&bench.Key(2, 0)));
    EXPECT_FALSE(wnd.IsLinkedTo(nullptr));
    wnd.UnlinkKey(nullptr);
    bench.Arrange([&] { bench.Key(3, 0).Link(bench.Key(3, 0).m_nKeyID); });
    EXPECT_FALSE(wnd.IsLinkedTo(&bench.Key(3, 0))); // itself doesn't count

    wnd.OnRightRelease(bench.At(1500, 1), false);
    wnd.Command(c_nCmdUnlinkKeys);
    bench.checker.ExpectEdits(1);
    EXPECT_FALSE(bench.Key(1, 0).m_bMotionLinked || bench.Key(2, 0).m_bMotionLinked ||
                 bench.Key(2, 1).m_bMotionLinked);
    EXPECT_TRUE(bench.Key(3, 0).m_bMotionLinked); // no business of that key's
    wnd.Command(c_nCmdUnlinkKeys);                // nothing left to end
    bench.checker.ExpectEdits(0);
}

TEST(PrefabKeys, AddAssignAndCreateFromKey)
{
    CTimelineBench bench(aLibrary()
                             .prefab("Sprite", "Puff")
                             .value("Count", 7)
                             .effect("Smoke")
                             .track()
                             .key("Sprite", 0, 1000)
                             .name("Plume")
                             .value("Count", 5)
                             .key("Light", 1000, 2000));
    CTrackWnd& wnd = *bench.wnd;
    wnd.OnRightRelease(bench.At(5000, 0), false);
    wnd.OnMenuClosed(c_nCmdAddPrefabKey); // no prefab is active
    bench.checker.ExpectEdits(0);

    CEffectPropertySet* pPuff = bench.m_pLibrary->m_SpellMgr.FindPrefab("Puff");
    bench.host.m_pActive = pPuff;
    wnd.OnRightRelease(bench.At(5000, 0), false);
    wnd.OnMenuClosed(c_nCmdAddPrefabKey);
    bench.checker.ExpectEdits(1);
    EXPECT_EQ("0-1000 1000-2000 3999-5999", bench.Dump());
    EXPECT_EQ(pPuff, bench.Key(0, 2).GetParent());
    EXPECT_FALSE(OwnPropOf(bench.Key(0, 2), "Count"));
    EXPECT_EQ(7, IntOf(bench.Key(0, 2), "Count"));

    bench.Click(bench.At(500, 0));
    wnd.Command(c_nCmdAssignPrefabToKey);
    bench.checker.ExpectEdits(1);
    EXPECT_EQ(pPuff, bench.Key(0, 0).GetParent());
    EXPECT_EQ(5, IntOf(bench.Key(0, 0), "Count")); // its own values stay
    wnd.Command(c_nCmdAssignPrefabToKey);          // the same again
    bench.checker.ExpectEdits(0);
    bench.host.m_pActive = nullptr;
    wnd.Command(c_nCmdAssignPrefabToKey);
    EXPECT_EQ("No prefab assigned: none is active", bench.Status());
    bench.host.m_pActive = pPuff;
    bench.Click(bench.At(1500, 0));
    wnd.Command(c_nCmdAssignPrefabToKey); // another type
    EXPECT_EQ("No prefab assigned: the active one has another type than the key", bench.Status());
    EXPECT_FALSE(bench.Key(0, 1).GetParent());
    bench.checker.ExpectEdits(0);

    bench.Click(bench.At(5000, 0));
    bench.prompts.onText(std::nullopt, "Enter the name of the prefab")
        .onText(" Puff", "Enter the name of the prefab");
    wnd.Command(c_nCmdCreatePrefabFromKey);
    bench.checker.ExpectEdits(0);
    wnd.Command(c_nCmdCreatePrefabFromKey);
    bench.checker.ExpectEdits(1);
    EXPECT_EQ("[[Prefabs]]\n  Puff\n   Puff\n",
              DumpTree(bench.m_pLibrary->m_PrefabTree)); // as typed, so unique
    EXPECT_EQ(7, IntOf(*bench.m_pLibrary->m_SpellMgr.Prefabs().at(1), "Count"));
    EXPECT_EQ(pPuff, bench.Key(0, 2).GetParent());
    EXPECT_EQ(pPuff, bench.host.m_pActive);
}
