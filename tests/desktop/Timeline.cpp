#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QToolTip>

#include "desktop/DesktopBench.h"
#include "qt/library/LeftDockWidget.h"
#include "qt/library/LibraryTreeView.h"

namespace
{

// The timeline of the effect "Smoke" in the real window.
struct CDesktopTimeline : CDesktopBench
{
    explicit CDesktopTimeline(const std::function<void(CLibraryBuilder&)>& fill)
    {
        Fill(fill);
        pTimeline = ShowEffect("Smoke");
    }

    CTrackWnd& Logic() { return pTimeline->Logic(); }
    CTrackList& Tracks() { return pTimeline->GetSpell().m_Tracks; }
    CKey& Key(uint32_t nTrack, uint32_t nKey) { return *Tracks().GetTrack(nTrack)->GetKey(nKey); }
    int TimeAt(int x) { return TimeFromPixel(Logic().TimeBar(), x); }

    // Points of the screen: a time on a row, and the parts of a key.
    QPoint At(int32_t nTime, int nRow)
    {
        return Desktop::On(pTimeline,
                           {PixelFromTime(Logic().TimeBar(), nTime),
                            Logic().Layout().m_rcTrack.top + nRow * CTrackLayout::c_nTrackHeight + 18});
    }
    QPoint Body(const CKey& key) { return At((key.m_nStartTime + key.m_nEndTime) / 2, int(key.m_nTrack)); }
    QPoint Left(const CKey& key) { return At(key.m_nStartTime, int(key.m_nTrack)) + QPoint(1, 0); }
    QPoint Right(const CKey& key) { return At(key.m_nEndTime, int(key.m_nTrack)) - QPoint(2, 0); }
    // What a text of the bar above the rows says.
    QString Info(const QString& sText)
    {
        for (const QLabel* pLabel : pTimeline->findChildren<QLabel*>())
            if (pLabel->text() == sText)
                return sText;
        return QStringLiteral("nowhere: ") + sText;
    }
    // Selected keys as "0.1 2.0": track and place.
    std::string Selected()
    {
        std::string sText;
        for (uint32_t i = 0; i < Tracks().GetNumTracks(); ++i)
            for (uint32_t j = 0; j < Tracks().GetTrack(i)->GetNumKeys(); ++j)
                if (Key(i, j).m_bSelected)
                    sText += (sText.empty() ? "" : " ") + std::to_string(i) + "." + std::to_string(j);
        return sText;
    }
    // The popup menu at a point: one entry after the other, by the pointer.
    void Choose(QPoint at, const std::vector<const char*>& entries)
    {
        Desktop::WhileOpen(
            [entries](QWidget* pOpen)
            {
                auto* pMenu = qobject_cast<QMenu*>(pOpen);
                for (const char* pszEntry : entries)
                {
                    ASSERT_TRUE(pMenu);
                    QAction* pFound = nullptr;
                    for (QAction* pAction : pMenu->actions())
                        pFound = QString(pAction->text()).remove(QLatin1Char('&')) == QLatin1String(pszEntry)
                                     ? pAction
                                     : pFound;
                    ASSERT_TRUE(pFound) << pszEntry;
                    Desktop::Click(Desktop::On(pMenu, pMenu->actionGeometry(pFound).center()));
                    pMenu = pFound->menu();
                    if (pMenu)
                    {
                        EXPECT_TRUE(Desktop::Settle([pMenu] { return pMenu->isVisible(); })) << pszEntry;
                    }
                }
            });
        Desktop::Click(at, 3);
    }

    TrackWidget* pTimeline = nullptr;
};

// An effect with a sprite and a light on one track, and a marker on the next.
std::function<void(CLibraryBuilder&)> ThreeKeys(int32_t nLightStart, int32_t nLightEnd)
{
    return [=](CLibraryBuilder& library)
    {
        library.effect("Smoke")
            .key("Sprite", 1000, 3000)
            .key("Light", nLightStart, nLightEnd)
            .track()
            .key("Marker", 2000, 4000);
    };
}

TEST(DesktopTimeline, OpensFromTheTreeAndSelectsByPresses)
{
    CDesktopBench bench;
    bench.Fill(ThreeKeys(5000, 7000));
    auto* pTree = bench.window.Dock()->findChild<LibraryTreeView*>();
    const QModelIndex leaf = pTree->model()->index(0, 0, pTree->model()->index(0, 0));
    ASSERT_EQ("Smoke", leaf.data().toString());
    // A label counts, the rest of its row doesn't.
    const auto labelOf = [pTree](const QModelIndex& index)
    {
        return Desktop::On(pTree->viewport(), pTree->visualRect(index).center() -
                                                  QPoint(pTree->visualRect(index).width() / 2 - 30, 0));
    };
    Desktop::Click(labelOf(leaf.parent()));
    Desktop::Key("Right"); // opens the group, if it isn't yet
    ASSERT_FALSE(pTree->visualRect(leaf).isEmpty());
    Desktop::DoubleClick(labelOf(leaf));
    ASSERT_TRUE(bench.window.ActiveTimeline()) << "a double click in the tree opens the timeline";

    CDesktopTimeline line(ThreeKeys(5000, 7000));
    Desktop::Click(line.Body(line.Key(0, 0)));
    EXPECT_EQ("0.0", line.Selected());
    EXPECT_TRUE(line.pTimeline->hasFocus());
    EXPECT_EQ("1000 ms", line.Info("1000 ms"));
    Desktop::Click(line.Body(line.Key(1, 0)), 1, "ctrl");
    EXPECT_EQ("0.0 1.0", line.Selected());
    EXPECT_EQ("---", line.Info("---"));
    Desktop::Click(line.Body(line.Key(0, 1)));
    EXPECT_EQ("0.1", line.Selected());
    Desktop::Click(line.At(9000, 0));
    EXPECT_EQ("", line.Selected());
    EXPECT_EQ(nullptr, line.Logic().GetCurKey());
}

TEST(DesktopTimeline, MovesAndResizesKeysByTheirParts)
{
    CDesktopTimeline line(ThreeKeys(6000, 8000));
    CKey& key = line.Key(0, 0);
    Desktop::Move(line.Left(key));
    EXPECT_EQ(Qt::SizeHorCursor, line.pTimeline->cursor().shape());
    Desktop::Move(line.Body(key));
    EXPECT_EQ(Qt::ArrowCursor, line.pTimeline->cursor().shape());

    const int nStep = line.TimeAt(100) - line.TimeAt(99) + 1; // what a pixel may make of a time
    Desktop::Drag(line.Body(key), line.Body(key) + QPoint(120, 60));
    EXPECT_EQ(2000, key.m_nEndTime - key.m_nStartTime);
    EXPECT_NEAR(1000 + line.TimeAt(120), key.m_nStartTime, nStep);
    EXPECT_EQ(0u, key.m_nTrack) << "the height of the pointer changes nothing";
    Desktop::Drag(line.Body(key), line.At(9999, 0));
    EXPECT_EQ(6000, key.m_nEndTime) << "stopped by the next key";

    const int32_t nEnd = key.m_nEndTime;
    Desktop::Drag(line.Left(key), line.Left(key) + QPoint(80, 0));
    EXPECT_NEAR(4000 + line.TimeAt(80), key.m_nStartTime, nStep);
    EXPECT_EQ(nEnd, key.m_nEndTime);
    Desktop::Drag(line.Right(key), line.At(100, 0));
    EXPECT_EQ(key.m_nStartTime + 100, key.m_nEndTime) << "no shorter than a tenth of a second";

    // All that is selected moves, and the pointer may leave the window meanwhile.
    CKey& other = line.Key(1, 0);
    Desktop::Click(line.Body(line.Key(0, 1)));
    Desktop::Move(line.Body(other));
    Desktop::HoldKey("ctrl");
    Desktop::Press();
    Desktop::LetKeyGo("ctrl");
    Desktop::Move(line.Body(other) + QPoint(40, 0));
    EXPECT_TRUE(line.Logic().IsDragging());
    EXPECT_FALSE(line.window.Frame().Run(c_nCmdNew)) << "a command waits for the hand";
    Desktop::Move({2, 2});
    Desktop::Release();
    EXPECT_FALSE(line.Logic().IsDragging());
    EXPECT_EQ(0, other.m_nStartTime);
    EXPECT_EQ(2000, other.m_nEndTime);
    EXPECT_EQ(line.Key(0, 0).m_nEndTime, line.Key(0, 1).m_nStartTime);
}

TEST(DesktopTimeline, CarriesKeysToOtherTracks)
{
    CDesktopTimeline line(
        [](CLibraryBuilder& library) {
            library.effect("Smoke").key("Sprite", 1000, 3000).name("Plume").track().key("Marker", 6000, 8000);
        });
    Desktop::Drag(line.Body(line.Key(0, 0)), line.At(3500, 1), "shift");
    ASSERT_EQ(2u, line.Tracks().GetTrack(1)->GetNumKeys()) << "Shift alone carries a copy";
    EXPECT_EQ("Plume", line.Key(1, 0).m_sName);
    EXPECT_NE(line.Key(0, 0).m_nKeyID, line.Key(1, 0).m_nKeyID);
    EXPECT_EQ(1000, line.Key(0, 0).m_nStartTime);

    // The copy is selected with it, and no more than one key is ever carried.
    const CKey* pMoved = &line.Key(0, 0);
    Desktop::Drag(line.Body(*pMoved), line.At(5000, 4), "ctrl+shift");
    EXPECT_EQ(2u, line.Tracks().GetNumTracks());
    Desktop::Click(line.At(9500, 0));
    Desktop::Drag(line.Body(*pMoved), line.At(5000, 4), "ctrl+shift");
    ASSERT_EQ(3u, line.Tracks().GetNumTracks()) << "below the rows a new track takes the key";
    EXPECT_EQ(0u, line.Tracks().GetTrack(0)->GetNumKeys());
    EXPECT_EQ(pMoved, &line.Key(2, 0));
    EXPECT_NEAR(4000, pMoved->m_nStartTime, 30);

    Desktop::Click(line.At(9500, 0));
    Desktop::Drag(line.Body(*pMoved), line.Body(line.Key(1, 1)), "ctrl+shift");
    EXPECT_EQ(1u, line.Tracks().GetTrack(2)->GetNumKeys()) << "back from a place that is taken";
}

TEST(DesktopTimeline, LinksByTheRubberLineWithoutThePressReachingAnythingElse)
{
    CDesktopTimeline line(
        [](CLibraryBuilder& library)
        { library.effect("Smoke").key("Sprite", 1000, 8000).track().key("Light", 3000, 5000); });
    CKey& target = line.Key(0, 0);
    line.Choose(line.Body(line.Key(1, 0)), {"Key", "Motion Link To Key"});
    EXPECT_TRUE(line.Logic().IsLinking());
    Desktop::Move(line.Body(target));
    Desktop::Click(line.Body(target) - QPoint(60, 0));
    EXPECT_FALSE(line.Logic().IsLinking());
    EXPECT_TRUE(line.Key(1, 0).m_bMotionLinked);
    EXPECT_EQ(target.m_nKeyID, line.Key(1, 0).m_nMotionLinkID);
    EXPECT_EQ("1.0", line.Selected());

    // What others are linked to is asked about, not moved.
    Desktop::WhileOpen([](QWidget*) { Desktop::Key("alt+n"); });
    Desktop::Drag(line.Body(target) - QPoint(60, 0), line.Body(target));
    EXPECT_EQ(1000, target.m_nStartTime);
    EXPECT_TRUE(line.Key(1, 0).m_bMotionLinked);
}

TEST(DesktopTimeline, ZoomsPansAndScrolls)
{
    CDesktopTimeline line(
        [](CLibraryBuilder& library)
        {
            library.effect("Smoke").length(20000);
            for (int i = 0; i < 40; ++i)
                library.track().key("Sprite", 1000, 3000);
        });
    CTimeBar& bar = line.Logic().TimeBar();
    QSlider* pScale = nullptr;
    QSlider* pPhase = nullptr;
    for (QSlider* pSlider : line.pTimeline->findChildren<QSlider*>())
        (pSlider->accessibleName() == QLatin1String("Scale") ? pScale : pPhase) = pSlider;
    ASSERT_TRUE(pScale && pPhase);
    EXPECT_NEAR(20000, line.TimeAt(line.Logic().Layout().m_rcTimeBar.Width()), 20);

    Desktop::Drag(Desktop::On(pScale, {8, pScale->height() / 2}), Desktop::On(pScale));
    const float fZoom = bar.m_fZoom;
    EXPECT_NEAR(6.0f, fZoom, 1.0f);
    EXPECT_EQ(0, bar.m_nViewStart);
    Desktop::Drag(Desktop::On(pPhase, {8, pPhase->height() / 2}),
                  Desktop::On(pPhase, {pPhase->width() - 2, pPhase->height() / 2}));
    EXPECT_NEAR(20000 - 20000 / fZoom, bar.m_nViewStart, 25) << "the end of the phase at the right edge";

    // The same by keys: the focus goes from part to part, and each step counts.
    pScale->setFocus(Qt::TabFocusReason);
    Desktop::Key("Left");
    EXPECT_NEAR(fZoom - 0.2f, bar.m_fZoom, 0.01f);
    Desktop::Key("Home");
    EXPECT_EQ(1.0f, bar.m_fZoom);
    EXPECT_EQ(0, bar.m_nViewStart);
    Desktop::Key("Tab");
    EXPECT_TRUE(pPhase->hasFocus());

    auto* pRows = line.pTimeline->findChild<QScrollBar*>();
    Desktop::Click(Desktop::On(pRows, {pRows->width() / 2, pRows->height() - 4}));
    EXPECT_EQ(5, line.Logic().GetScrollPos());
    Desktop::Click(Desktop::On(pRows, {pRows->width() / 2, pRows->height() - 40}));
    EXPECT_EQ(25, line.Logic().GetScrollPos());
    EXPECT_EQ(100, line.Logic().Layout().m_nScrollY);
    Desktop::Click(line.At(2000, 3), 5);
    EXPECT_EQ(25, line.Logic().GetScrollPos()) << "the wheel leaves the rows alone";

    // A key tells its times, but not through the bar that hides it.
    const auto tipAt = [&](int y)
    {
        const QPoint at(PixelFromTime(bar, 2000), line.Logic().Layout().m_rcTrack.top + y);
        QHelpEvent help(QEvent::ToolTip, at, line.pTimeline->mapToGlobal(at));
        QApplication::sendEvent(line.pTimeline, &help);
        return QToolTip::text();
    };
    EXPECT_EQ("", tipAt(-20));
    EXPECT_TRUE(tipAt(20).contains(QStringLiteral("1000 ms to 3000 ms, 2000 ms long")))
        << tipAt(20).toStdString();
    QToolTip::hideText();

    // The phase's length, by its button.
    Desktop::WhileOpen(
        [](QWidget*)
        {
            Desktop::Type("8000");
            Desktop::Key("Return");
        });
    Desktop::Click(Desktop::On(line.pTimeline->findChild<QPushButton*>()));
    EXPECT_EQ(8000, line.Tracks().m_nPhaseLength);
    EXPECT_EQ(8000, bar.m_nPhaseLength);
}

TEST(DesktopTimeline, AddsNamesAndDeletesKeysAndTracks)
{
    CDesktopTimeline line([](CLibraryBuilder& library) { library.effect("Smoke").track(); });
    // The menu ends before the chooser opens.
    Desktop::WhileOpen(
        [&](QWidget* pMenu)
        {
            ASSERT_TRUE(pMenu->inherits("QMenu"));
            Desktop::WhileOpen(
                [](QWidget* pChooser)
                {
                    auto* pList = pChooser->findChild<QListWidget*>();
                    ASSERT_TRUE(pList);
                    EXPECT_EQ("Light", pList->item(0)->text());
                    Desktop::DoubleClick(
                        Desktop::On(pList->viewport(), pList->visualItemRect(pList->item(2)).center()));
                });
            Desktop::Key("t"); // Track
            Desktop::Key("a"); // Add Key
        });
    Desktop::Click(line.At(4000, 0), 3);
    ASSERT_EQ(1u, line.Tracks().GetTrack(0)->GetNumKeys());
    EXPECT_NEAR(3000, line.Key(0, 0).m_nStartTime, 30);
    EXPECT_EQ("Sprite", line.Key(0, 0).GetDisplayName());

    Desktop::Click(line.Body(line.Key(0, 0)));
    Desktop::WhileOpen(
        [&](QWidget* pMenu)
        {
            ASSERT_TRUE(pMenu->inherits("QMenu"));
            Desktop::WhileOpen(
                [](QWidget*)
                {
                    Desktop::Type("Big \"plume\"");
                    Desktop::Key("Return");
                });
            Desktop::Key("k"); // Key
            Desktop::Key("n"); // Name Key
        });
    Desktop::Click(line.Body(line.Key(0, 0)), 3);
    EXPECT_EQ("Big 'plume' - Sprite", line.Key(0, 0).GetDisplayName());

    line.Choose(line.At(9000, 0), {"Track", "Insert Track"});
    EXPECT_EQ(2u, line.Tracks().GetNumTracks());

    // Copy, paste and delete go by the timeline's own keys.
    Desktop::Click(line.Body(line.Key(0, 0)));
    Desktop::Key("ctrl+c");
    Desktop::Move(line.At(6000, 1));
    Desktop::Key("ctrl+v");
    ASSERT_EQ(1u, line.Tracks().GetTrack(1)->GetNumKeys());
    EXPECT_EQ("Big 'plume'", line.Key(1, 0).m_sName);
    Desktop::Click(line.Body(line.Key(1, 0)));
    Desktop::Key("Delete");
    EXPECT_EQ(0u, line.Tracks().GetTrack(1)->GetNumKeys());

    Desktop::WhileOpen(
        [](QWidget* pMenu)
        {
            ASSERT_TRUE(pMenu->inherits("QMenu"));
            Desktop::WhileOpen([](QWidget*) { Desktop::Key("alt+y"); });
            Desktop::Key("t"); // Track
            Desktop::Key("d"); // Delete Track
        });
    Desktop::Click(line.At(9000, 0), 3);
    EXPECT_EQ(1u, line.Tracks().GetNumTracks());
    EXPECT_EQ(0u, line.Tracks().GetTrack(0)->GetNumKeys()) << "the first track has gone, with its key";
}

} // namespace
