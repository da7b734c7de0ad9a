#include <QAbstractButton>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QStatusBar>
#include <QStyleOption>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "platform/Profile.h"
#include "qt/frame/AssertDialog.h"
#include "qt/frame/EffectWindows.h"
#include "qt/frame/MainWindow.h"
#include "qt/library/LibraryTreeView.h"
#include "qt/timeline/TrackWidget.h"
#include "qt/toolkit/Appearance.h"
#include "qt/toolkit/MenuStyle.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/ShellPainter.h"
#include "qt/toolkit/ToolBarWidget.h"
#include "support/LibraryBuilder.h"
#include "support/RecordingSourceControl.h"
#include "support/RecordingSurface.h"

namespace
{

// How far apart two colours are for an eye, from 1 to 21.
double Contrast(const QColor& a, const QColor& b)
{
    const auto luminance = [](const QColor& color)
    {
        const auto linear = [](double f)
        { return f <= 0.04045 ? f / 12.92 : std::pow((f + 0.055) / 1.055, 2.4); };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const double fA = luminance(a) + 0.05, fB = luminance(b) + 0.05;
    return std::max(fA, fB) / std::min(fA, fB);
}

} // namespace

TEST(Frame, BothPalettesAreLegible)
{
    for (EAppearance eAppearance : {EAppearance::eLight, EAppearance::eDark})
    {
        const QPalette palette = AppearancePalette(eAppearance);
        const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
            {QPalette::Window, QPalette::WindowText},
            {QPalette::Base, QPalette::Text},
            {QPalette::Button, QPalette::ButtonText},
            {QPalette::ToolTipBase, QPalette::ToolTipText},
        };
        for (const auto& [eGround, eText] : pairs)
        {
            EXPECT_GE(Contrast(palette.color(eGround), palette.color(eText)), 7.0) << eGround;
            if (eGround != QPalette::ToolTipBase)
            {
                EXPECT_GE(Contrast(palette.color(QPalette::Disabled, eGround),
                                   palette.color(QPalette::Disabled, eText)),
                          3.0)
                    << "greyed on " << eGround;
            }
        }
        EXPECT_GE(Contrast(palette.color(QPalette::Highlight), palette.color(QPalette::HighlightedText)),
                  4.0);
        QPalette muted = palette;
        MuteSelection(muted);
        const QColor quiet = muted.color(QPalette::Inactive, QPalette::Highlight);
        EXPECT_EQ(palette.color(QPalette::Highlight), muted.color(QPalette::Active, QPalette::Highlight));
        EXPECT_GE(Contrast(quiet, muted.color(QPalette::Inactive, QPalette::HighlightedText)), 7.0);
        EXPECT_GE(Contrast(quiet, palette.color(QPalette::Highlight)), 1.8)
            << "it is told from the active one";
        EXPECT_GE(Contrast(quiet, palette.color(QPalette::Base)), 1.3) << "and from no selection";

        // Whether they are on or off, boxes and radio buttons are seen as such.
        const MenuStyle style;
        for (QStyle::PrimitiveElement eElement :
             {QStyle::PE_IndicatorRadioButton, QStyle::PE_IndicatorCheckBox, QStyle::PE_FrameLineEdit})
        {
            QStyleOptionButton option;
            option.palette = palette;
            option.rect = QRect(4, 4, 14, 14);
            option.state = QStyle::State_Enabled | QStyle::State_Off;
            QImage image(22, 22, QImage::Format_RGB32);
            image.fill(palette.color(QPalette::Window));
            QPainter painter(&image);
            style.drawPrimitive(eElement, &option, &painter, nullptr);
            painter.end();
            double fEdge = 1.0;
            for (int x = 2; x < 11; ++x)
                fEdge = std::max(fEdge, Contrast(palette.color(QPalette::Window), image.pixelColor(x, 11)));
            EXPECT_GE(fEdge, 1.4) << eElement << " on "
                                  << palette.color(QPalette::Window).name().toStdString();
        }
    }
    const std::unique_ptr<IProfile> pProfile = MakeMemoryProfile();
    EXPECT_EQ(EAppearance::eDesktop, LoadAppearance(*pProfile));
    SaveAppearance(*pProfile, EAppearance::eDark);
    EXPECT_EQ(EAppearance::eDark, LoadAppearance(*pProfile));
    pProfile->WriteString("", "Appearance", "purple");
    EXPECT_EQ(EAppearance::eDesktop, LoadAppearance(*pProfile));
}

TEST(Frame, AFailedAssertionHasFourAnswers)
{
    const CAssertReport report = {"nIndex < m_nCount", "Engine/Some.cpp", 12, "CSome::Get", "Error: <b>%s"};
    const std::pair<const char*, int32_t> answers[] = {{"&Debug", ASSERT_RESULT_DEBUG},
                                                       {"&Abort", ASSERT_RESULT_ABORT},
                                                       {"&Ignore", ASSERT_RESULT_IGNORE},
                                                       {"&Continue", ASSERT_RESULT_CONTINUE},
                                                       {"", ASSERT_RESULT_CONTINUE}}; // closed by its frame
    for (const auto& [pszButton, nResult] : answers)
    {
        QTimer::singleShot(0, qApp,
                           [pszButton = pszButton]
                           {
                               auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                               ASSERT_TRUE(pBox);
                               EXPECT_TRUE(pBox->text().contains(QLatin1String("nIndex < m_nCount")));
                               EXPECT_TRUE(pBox->informativeText().contains(
                                   QLatin1String("Error: <b>%s\n\nCSome::Get\nEngine/Some.cpp, line 12")));
                               for (QAbstractButton* pButton : pBox->buttons())
                                   if (pButton->text() == QLatin1String(pszButton))
                                       return pButton->click();
                               pBox->close();
                           });
        EXPECT_EQ(nResult, AskAboutAssert(report)) << pszButton;
    }
    int32_t nElsewhere = 0;
    std::thread([&] { nElsewhere = AskAboutAssert(report); }).join();
    EXPECT_EQ(ASSERT_RESULT_CONTINUE, nElsewhere) << "no box on another thread";
}

TEST(Frame, ChildWindowsStandInSightOfEachOther)
{
    const std::unique_ptr<IProfile> pProfile = MakeMemoryProfile();
    CRecordingSourceControl sourceControl;
    QtPrompts prompts;
    CTestModule module;
    MainWindow window(*pProfile, sourceControl, prompts);
    ASSERT_TRUE(window.Create(false, nullptr));
    CEmberdeckApp& app = window.App();
    auto builder = aLibrary(module.m_Module, app.m_SpellMgr, app.m_EffectTree, app.m_PrefabTree);
    for (int i = 0; i < 40; ++i)
        builder.effect("Effect " + std::to_string(i)).key("Sprite", 0, 500);
    app.History().MarkSaved();
    window.resize(1300, 800);
    window.show();
    for (const auto& pSpell : app.m_SpellMgr.Spells())
        window.Effects().Open(*pSpell);
    auto* pArea = window.findChild<QMdiArea*>();
    const QList<QMdiSubWindow*> children = pArea->subWindowList();
    ASSERT_EQ(40, children.size());
    for (qsizetype i = 0; i < children.size(); ++i)
    {
        EXPECT_TRUE(pArea->viewport()->rect().contains(children[i]->geometry())) << i;
        EXPECT_GE(children[i]->height(), 440);
        EXPECT_TRUE(i == 0 || children[i]->pos() != children[i - 1]->pos()) << i;
    }
    window.Effects().CloseAll();
    window.Effects().Open(*app.m_SpellMgr.Spells().front());
    QMdiSubWindow* pFirst = pArea->subWindowList().constFirst();
    EXPECT_EQ(QPoint(0, 0), pFirst->pos()) << "from the start again";
    EXPECT_EQ(QStringLiteral("Emberdeck - Effect 0"), window.windowTitle());
    pFirst->showMaximized();
    EXPECT_EQ(QStringLiteral("Emberdeck - [Effect 0]"), window.windowTitle()) << "its name once";
    pFirst->showNormal();
    EXPECT_EQ(QStringLiteral("Emberdeck - Effect 0"), window.windowTitle());
    // What the toolkit takes for the place of a mark is a name like any other.
    for (const char* pszName : {"Fire [*]", "*", "[*][*]"})
    {
        app.m_SpellMgr.Spells().front()->SetName(pszName);
        window.Effects().RetitleAll();
        EXPECT_EQ("Emberdeck - " + std::string(pszName), window.windowHandle()->title().toStdString());
        pFirst->showMaximized();
        EXPECT_EQ("Emberdeck - [" + std::string(pszName) + "]", window.windowHandle()->title().toStdString());
        pFirst->showNormal();
    }
    window.Effects().CloseAll();
    app.NewEffectFile();
}

namespace
{

// The window with the program's own style, which menus and bars are drawn by.
struct CStyledFrame
{
    explicit CStyledFrame(bool bSplash = false)
    {
        QApplication::setStyle(pStyle);
        ApplyAppearance(EAppearance::eLight);
        EXPECT_TRUE(window.Create(bSplash, pStyle));
        window.resize(1300, 800);
        window.show();
        QApplication::processEvents();
    }
    ~CStyledFrame() { window.App().NewEffectFile(); }
    QMenu* Menu(int nPlace) const { return window.menuBar()->actions().at(nPlace)->menu(); }
    QString Hint() const { return window.findChild<QLabel*>(QStringLiteral("hint"))->text(); }
    ToolButton* Button(int32_t nCommand) const
    {
        for (ToolButton* pButton : window.findChildren<ToolButton*>())
            if (pButton->GetCommand() == nCommand)
                return pButton;
        return nullptr;
    }

    MenuStyle* pStyle = new MenuStyle; // the application takes it
    std::unique_ptr<IProfile> profile = MakeMemoryProfile();
    CRecordingSourceControl sourceControl;
    QtPrompts prompts;
    MainWindow window{*profile, sourceControl, prompts};
};

// An item that the pointer goes to.
void Hover(QMenu* pMenu, const QAction* pAction)
{
    const QPoint at = pMenu->actionGeometry(const_cast<QAction*>(pAction)).center();
    QTest::mouseMove(pMenu, at - QPoint(1, 0));
    QTest::mouseMove(pMenu, at);
}

} // namespace

TEST(Frame, WhatTheTimelinesShowIsChosenInTheViewMenu)
{
    CStyledFrame frame;
    frame.profile->WriteString("Timeline", "WholeRulerLabels", "0");
    MainWindow later{*frame.profile, frame.sourceControl, frame.prompts};
    ASSERT_TRUE(later.Create(false, nullptr));
    aLibrary(later.App().m_EffectModule, later.App().m_SpellMgr, later.App().m_EffectTree,
             later.App().m_PrefabTree)
        .effect("Smoke");
    for (MainWindow* pWindow : {&frame.window, &later})
    {
        QMenu* pView = pWindow->menuBar()->actions().at(2)->menu();
        EXPECT_EQ(QStringLiteral("&Timeline"), pView->actions().constLast()->text()) << "behind all others";
        for (const QAction* pAction : pView->actions().constLast()->menu()->actions())
            EXPECT_EQ(pWindow == &frame.window || !pAction->text().contains("Labels"), pAction->isChecked());
    }

    CSpell& spell = *later.App().m_SpellMgr.Spells().front();
    later.Effects().Open(spell);
    CTrackWnd& timeline = later.ActiveTimeline()->Logic();
    const auto firstLabel = [](CTrackWnd& of)
    {
        of.TimeBar().SetWidth(1000);
        CRecordingSurface surface;
        of.TimeBar().DrawRuler(surface, 1000, 26);
        return surface.Calls("text").front();
    };
    EXPECT_EQ("text -3,10 0", firstLabel(timeline));
    later.menuBar()->actions().at(2)->menu()->actions().constLast()->menu()->actions().at(1)->trigger();
    EXPECT_EQ("text 0,10 0", firstLabel(timeline)) << "in what is open";
    EXPECT_TRUE(LoadTrackViewOptions(*frame.profile).m_bWholeRulerLabels);
    for (const CTrackViewSwitch& option : c_TrackViewSwitches)
    {
        SaveTrackViewOption(*frame.profile, option, false);
        EXPECT_FALSE(LoadTrackViewOptions(*frame.profile).*option.m_pbOption) << option.m_pszKey;
        frame.profile->WriteString("Timeline", option.m_pszKey, "maybe");
        EXPECT_TRUE(LoadTrackViewOptions(*frame.profile).*option.m_pbOption) << option.m_pszKey;
    }
    later.App().NewEffectFile();
}

TEST(Frame, BarsAndMenusAreDrawnByTheRulesOfTheShell)
{
    CStyledFrame frame;
    const CShellColors colors = ShellColors(frame.window.palette());
    EXPECT_FALSE(colors.m_bDark);
    auto* pBar = frame.window.findChild<ToolBarWidget*>(QString::number(c_nCmdStandardBar));
    const auto barPixel = [&](int x, int y) { return pBar->grab().toImage().pixelColor(x, y); };
    EXPECT_EQ(ToQt(Lighten(colors.m_nFace, 100)), barPixel(pBar->width() - 2, 2));
    EXPECT_EQ(ToQt(Lighten(colors.m_nShadow, 0.2)), barPixel(4, 4)) << "the gripper's first dot";
    EXPECT_EQ(ToQt(Lighten(colors.m_nFace, 100)), barPixel(5, 4));
    ApplyAppearance(EAppearance::eDark);
    QApplication::processEvents();
    EXPECT_LT(barPixel(pBar->width() - 2, 2).lightness(), 60) << "a dark palette has dark bars";
    ApplyAppearance(EAppearance::eLight);
    QApplication::processEvents();

    QMenu* pFile = frame.Menu(0);
    pFile->popup(QPoint(0, 0));
    const CDecoratedPopup* pPopup = frame.window.Frame().MenuDecorator().FindPopup(pFile);
    ASSERT_TRUE(pPopup);
    ASSERT_EQ(size_t(pFile->actions().size()), pPopup->m_Items.size());
    EXPECT_EQ("Ctrl+O", pPopup->m_Items[0]->GetAccelerator());
    const QRect rcNew = pFile->actionGeometry(pFile->actions().at(3));
    EXPECT_EQ(pPopup->m_nWidth + CKRMenuItem::c_nRightRoom, rcNew.width()) << "no room is added for the keys";
    EXPECT_EQ(ToQt(Lighten(colors.m_nFace, 100)),
              pFile->grab().toImage().pixelColor(rcNew.left() + 4, rcNew.center().y()));
    pFile->hide();
    // The key of an item that no table knows is shown, too, and the room for it isn't counted twice.
    QMenu* pHelp = frame.Menu(3);
    pHelp->popup(QPoint(0, 0));
    pPopup = frame.window.Frame().MenuDecorator().FindPopup(pHelp);
    ASSERT_TRUE(pPopup);
    EXPECT_EQ("F1", pPopup->m_Items[0]->GetAccelerator());
    EXPECT_EQ(pPopup->m_nWidth + CKRMenuItem::c_nRightRoom,
              pHelp->actionGeometry(pHelp->actions().at(0)).width());
    pHelp->hide();

    // The menu of a child window's frame is the toolkit's.
    CSpell* pSpell = frame.window.App().NewEffect();
    ASSERT_TRUE(pSpell);
    QMenu* pSystem = frame.window.findChild<QMdiSubWindow*>()->systemMenu();
    pSystem->popup(QPoint(0, 0));
    EXPECT_FALSE(frame.window.Frame().MenuDecorator().FindPopup(pSystem));
    pSystem->hide();
    // What was made of a menu goes with it.
    auto pMenu = std::make_unique<QMenu>(&frame.window);
    pMenu->addAction(QStringLiteral("Item"));
    const void* const hMenu = pMenu.get();
    EXPECT_GT(pMenu->sizeHint().width(), 24);
    EXPECT_TRUE(frame.window.Frame().MenuDecorator().FindPopup(hMenu));
    pMenu.reset();
    EXPECT_FALSE(frame.window.Frame().MenuDecorator().FindPopup(hMenu));
}

TEST(Frame, TheStatusLineFollowsThePointerThroughMenusAndBars)
{
    CStyledFrame frame;
    const QString sReady = QStringLiteral("Ready"),
                  sPack =
                      QStringLiteral("Packs the current effects into a format readible by effect systems");
    EXPECT_EQ(sReady, frame.Hint());
    EXPECT_TRUE(qobject_cast<LibraryTreeView*>(frame.window.focusWidget()))
        << "no bar has the focus at first";
    QMenu* pFile = frame.Menu(0);
    const QList<QAction*> items = pFile->actions();
    pFile->popup(QPoint(0, 0));
    Hover(pFile, items.at(5));
    EXPECT_EQ(sPack, frame.Hint());
    for (qsizetype nSilent : {2, 4, 8}) // one without a text, a separator, a submenu
    {
        Hover(pFile, items.at(5));
        Hover(pFile, items.at(nSilent));
        EXPECT_EQ(sReady, frame.Hint()) << nSilent;
    }
    Hover(pFile, items.at(5));
    pFile->hide();
    EXPECT_EQ(sReady, frame.Hint());

    // A popup of any window, as those of the panels and the timeline.
    QMenu popup(&frame.window);
    popup.addAction(QStringLiteral("Find"))->setData(c_nCmdFind);
    popup.popup(QPoint(0, 0));
    Hover(&popup, popup.actions().constFirst());
    EXPECT_EQ(QStringLiteral("Find the specified text"), frame.Hint());
    popup.hide();
    EXPECT_EQ(sReady, frame.Hint());

    QEnterEvent enter(QPointF(3, 3), QPointF(3, 3), QPointF(3, 3));
    QApplication::sendEvent(frame.Button(c_nCmdPackEffects), &enter);
    EXPECT_EQ(sPack, frame.Hint());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(frame.Button(c_nCmdPackEffects), &leave);
    EXPECT_EQ(sReady, frame.Hint());
}

TEST(Frame, AToolButtonIsPressedOnlyWhileItWouldBeGiven)
{
    CStyledFrame frame;
    ToolButton* pButton = frame.Button(c_nCmdNewEffect);
    ASSERT_TRUE(pButton);
    const size_t nEffects = frame.window.App().m_SpellMgr.Spells().size();
    QTest::mousePress(pButton, Qt::LeftButton);
    EXPECT_TRUE(pButton->isDown());
    QTest::mouseMove(pButton, QPoint(200, 200));
    EXPECT_FALSE(pButton->isDown()) << "dragged off";
    QTest::mouseRelease(pButton, Qt::LeftButton, {}, QPoint(200, 200));
    EXPECT_EQ(nEffects, frame.window.App().m_SpellMgr.Spells().size());
    QTest::mousePress(pButton, Qt::LeftButton);
    pButton->setEnabled(false);
    EXPECT_FALSE(pButton->isDown()) << "disabled meanwhile";
    pButton->setEnabled(true);
    QTest::mouseRelease(pButton, Qt::LeftButton);
    EXPECT_EQ(nEffects, frame.window.App().m_SpellMgr.Spells().size());
    QTest::mouseClick(pButton, Qt::LeftButton);
    EXPECT_EQ(nEffects + 1, frame.window.App().m_SpellMgr.Spells().size());
}

TEST(Frame, ADroppedFileWaitsForNoDialog)
{
    CStyledFrame frame;
    QMimeData file;
    file.setUrls({QUrl::fromLocalFile(QStringLiteral("/no/such/place/a.Fx00a"))});
    const auto enters = [&](QMimeData& data)
    {
        QDragEnterEvent enter(QPoint(400, 400), Qt::CopyAction, &data, Qt::LeftButton, {});
        enter.ignore();
        QApplication::sendEvent(&frame.window, &enter);
        return enter.isAccepted();
    };
    QMimeData web, text;
    web.setUrls({QUrl(QStringLiteral("https://example.org/a.Fx00a"))});
    text.setText(QStringLiteral("a"));
    EXPECT_TRUE(enters(file));
    EXPECT_FALSE(enters(web) || enters(text));

    // A drop opens the file behind it, here with a message. While that is up, no other is taken.
    QDropEvent drop(QPointF(400, 400), Qt::CopyAction, &file, Qt::LeftButton, {});
    QApplication::sendEvent(&frame.window, &drop);
    bool bTold = false;
    QTimer::singleShot(200, qApp,
                       [&]
                       {
                           auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                           ASSERT_TRUE(pBox);
                           bTold = pBox->text().contains(QLatin1String("/no/such/place/a.Fx00a"));
                           EXPECT_FALSE(enters(file));
                           QDropEvent second(QPointF(400, 400), Qt::CopyAction, &file, Qt::LeftButton, {});
                           QApplication::sendEvent(&frame.window, &second);
                           QApplication::processEvents();
                           EXPECT_EQ(pBox, QApplication::activeModalWidget());
                           pBox->close();
                       });
    QTest::qWait(500);
    EXPECT_TRUE(bTold);

    // Nor under a dialog that no command of the frame has opened, as a key's properties.
    QDialog dialog(&frame.window);
    dialog.open();
    EXPECT_FALSE(enters(file));
    QApplication::sendEvent(&frame.window, &drop);
    QTest::qWait(50);
    EXPECT_EQ(&dialog, QApplication::activeModalWidget());
    dialog.close();
    EXPECT_TRUE(enters(file));
}

TEST(Frame, TheSplashGoesAtAPressOfOneOfThreeButtons)
{
    for (const Qt::MouseButton eButton : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton})
    {
        CStyledFrame frame(true);
        const auto isThere = [&]
        {
            for (const QWidget* pWidget : QApplication::topLevelWidgets())
                if (pWidget->windowType() == Qt::SplashScreen && pWidget->isVisible())
                    return true;
            return false;
        };
        ToolButton* pButton = frame.Button(c_nCmdNewEffect);
        for (const Qt::MouseButton eOther : {Qt::BackButton, Qt::ForwardButton})
        {
            QTest::mouseClick(pButton, eOther);
            EXPECT_TRUE(isThere());
        }
        QTest::mouseClick(pButton, eButton);
        EXPECT_FALSE(isThere());
        EXPECT_EQ(0u, frame.window.App().m_SpellMgr.Spells().size()) << "the press reaches nothing else";
    }
}
