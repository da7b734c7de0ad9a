#include "qt/toolkit/FramePlaces.h"

#include <QScreen>
#include <QStatusBar>

#include "desktop/LibraryBench.h"
#include "qt/frame/HistoryDock.h"
#include "qt/toolkit/DialogPlaces.h"
#include "qt/toolkit/ToolBarWidget.h"

// The window, its dock and its bars come back as they were left.

namespace
{

// One run of the program on settings that outlive it.
struct CRun
{
    explicit CRun(IProfile& profile) : window(profile, sourceControl, prompts)
    {
        EXPECT_TRUE(window.Create(false, qobject_cast<MenuStyle*>(QApplication::style())));
        window.ShowAsLeft();
        Desktop::Settle([this] { return window.isActiveWindow(); });
        Desktop::Settle([] { return false; }, 200);
    }
    ToolBarWidget* Bar(int32_t nBar) const { return window.findChild<ToolBarWidget*>(QString::number(nBar)); }
    HistoryDock* History() const { return window.findChild<HistoryDock*>(); }
    void End()
    {
        Desktop::WhileOpen([](QWidget*) { Desktop::Key("alt+n"); });
        window.close();
        EXPECT_FALSE(window.isVisible());
    }

    CRecordingSourceControl sourceControl;
    QtPrompts prompts;
    MainWindow window;
};

} // namespace

TEST(FramePlaces, ComeBackInTheNextRun)
{
    const std::unique_ptr<IProfile> pProfile = MakeMemoryProfile();
    QRect rcLeft;
    int nDock = 0, nUnfolded = 0;
    {
        CRun run(*pProfile);
        EXPECT_TRUE(run.window.isMaximized()) << "at first";
        EXPECT_EQ(run.Bar(c_nCmdStandardBar)->y(), run.Bar(c_nCmdSourceControlBar)->y());
        nDock = run.window.Dock()->width();
        EXPECT_FALSE(run.History()->isVisible());
        run.window.showNormal();
        run.window.setGeometry(120, 90, 1000, 640);
        Desktop::Settle([] { return false; }, 300);
        rcLeft = run.window.geometry();
        const QPoint bar = Desktop::On(run.window.Dock()->findChild<SizeBarWidget*>());
        Desktop::Drag(bar, bar + QPoint(60, 0));
        nUnfolded = run.window.Dock()->width();
        EXPECT_GT(nUnfolded, nDock);
        run.window.addToolBar(Qt::BottomToolBarArea, run.Bar(c_nCmdStandardBar));
        run.window.addDockWidget(Qt::BottomDockWidgetArea, run.History());
        run.History()->show();
        run.window.resizeDocks({run.History()}, {150}, Qt::Vertical);
        run.Bar(c_nCmdSourceControlBar)->hide();
        run.window.statusBar()->hide();
        Desktop::Settle();
        run.End();
    }
    {
        CRun run(*pProfile);
        EXPECT_FALSE(run.window.isMaximized());
        EXPECT_EQ(rcLeft, run.window.geometry());
        EXPECT_EQ(nUnfolded, run.window.Dock()->width());
        EXPECT_EQ(Qt::BottomToolBarArea, run.window.toolBarArea(run.Bar(c_nCmdStandardBar)));
        EXPECT_TRUE(run.History()->isVisible() && run.window.Frame().IsChecked(c_nCmdHistoryList));
        EXPECT_EQ(Qt::BottomDockWidgetArea, run.window.dockWidgetArea(run.History()));
        EXPECT_EQ(150, run.History()->height());
        run.History()->setFloating(true);
        run.History()->setGeometry(300, 200, 320, 260);
        EXPECT_TRUE(run.Bar(c_nCmdStandardBar)->isVisible());
        EXPECT_FALSE(run.Bar(c_nCmdSourceControlBar)->isVisible());
        EXPECT_FALSE(run.window.Frame().IsChecked(c_nCmdSourceControlBar));
        EXPECT_FALSE(run.window.statusBar()->isVisible());
        // Back to one row, the second bar first; the dock folded, the window maximised.
        run.window.addToolBar(Qt::LeftToolBarArea, run.Bar(c_nCmdSourceControlBar));
        run.Bar(c_nCmdSourceControlBar)->show();
        run.window.addToolBar(Qt::LeftToolBarArea, run.Bar(c_nCmdStandardBar));
        run.window.Dock()->Bar().SizeBar().Toggle();
        run.window.showMaximized();
        Desktop::Settle([] { return false; }, 300);
        run.End();
    }
    {
        CRun run(*pProfile);
        EXPECT_TRUE(run.window.isMaximized());
        EXPECT_TRUE(run.History()->isVisible() && run.History()->isFloating());
        EXPECT_EQ(QSize(320, 260), run.History()->size());
        EXPECT_LT(run.window.Dock()->width(), 20);
        EXPECT_EQ(Qt::LeftToolBarArea, run.window.toolBarArea(run.Bar(c_nCmdStandardBar)));
        EXPECT_LT(run.Bar(c_nCmdSourceControlBar)->y(), run.Bar(c_nCmdStandardBar)->y());
        run.window.Dock()->Bar().SizeBar().Toggle();
        Desktop::Settle();
        EXPECT_EQ(nUnfolded, run.window.Dock()->width()) << "unfolded as wide as before";
        run.window.showNormal();
        Desktop::Settle([] { return false; }, 300);
        EXPECT_EQ(rcLeft.size(), run.window.size());
        run.End();
    }
}

TEST(FramePlaces, WhatCantBeRightMeansTheDefault)
{
    const std::unique_ptr<IProfile> pProfile = MakeMemoryProfile();
    for (const char* pszValue :
         {"", "rubbish", "-1", "99999999999999999999 1 1 1", "7 7 7 7 7 7 7", "1 2 3", "0 0 0 0"})
    {
        for (const char* pszKey : {"Place", "DockWidth", "Bar32916", "Bar32917"})
            pProfile->WriteString("Window", pszKey, pszValue);
        for (const char* pszKey : {"Maximised", "DockFolded", "StatusBar"})
            pProfile->WriteString("Window", pszKey, *pszValue == '1' ? "x" : pszValue);
        const CFramePlaces places = LoadFramePlaces(*pProfile);
        EXPECT_TRUE(places.m_bStatusBar || *pszValue == '0') << pszValue;
        EXPECT_LE(places.m_nDockWidth, 32767) << pszValue;
        EXPECT_GE(places.m_nDockWidth, 0) << pszValue;
    }
    pProfile->WriteString("Window", "Maximised", "0");
    pProfile->WriteString("Window", "StatusBar", "");
    pProfile->WriteString("Window", "Place", "5000 -4000 9000 9000"); // of a screen that isn't there any more
    pProfile->WriteString("Window", "DockWidth", "30000");
    pProfile->WriteString("Window", "Bar32916", "9 0 0 1 0 0 0");
    pProfile->WriteString("Window", "Bar32917", "0 0 0 1 1 9000 -9000"); // floats, beyond the screen
    const QRect rcScreen = QGuiApplication::primaryScreen()->availableGeometry();
    {
        CRun run(*pProfile);
        const QRect rc = run.window.frameGeometry();
        // How wide its frame's edges are the window manager tells later.
        EXPECT_TRUE(rcScreen.adjusted(-8, -8, 8, 8).contains(rc))
            << rc.x() << ' ' << rc.y() << ' ' << rc.width() << ' ' << rc.height();
        EXPECT_LE(run.window.Dock()->width(), run.window.width());
        EXPECT_TRUE(run.window.Dock()->findChild<SizeBarWidget*>()->isVisible());
        EXPECT_TRUE(run.Bar(c_nCmdStandardBar)->isVisible());
        EXPECT_FALSE(run.Bar(c_nCmdStandardBar)->isFloating()) << "one bar's place is wrong: all stay";
    }
    // Of the third bar nothing is kept: it stands behind the others.
    pProfile->WriteString("Window", "Bar32916", "0 0 0 1 0 0 0");
    pProfile->WriteString("Window", "DockHistory", "7 1 1 0 0 0 0");
    CRun run(*pProfile);
    EXPECT_FALSE(run.History()->isVisible());
    EXPECT_TRUE(run.Bar(c_nCmdStandardBar)->isFloating());
    EXPECT_TRUE(run.Bar(c_nCmdStandardBar)->isVisible());
    EXPECT_TRUE(rcScreen.contains(run.Bar(c_nCmdStandardBar)->frameGeometry()));
}
