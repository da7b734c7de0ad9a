#include <QDialogButtonBox>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QToolButton>

#include "desktop/LibraryBench.h"
#include "qt/toolkit/ToolBarWidget.h"

// Where the keyboard is after something has gone: never in another effect than the one that was active, and
// never on a button that nobody chose.

namespace
{

struct CFocusDesk : CLibraryDesktop
{
    CFocusDesk()
        : CLibraryDesktop(
              [](CLibraryBuilder& library)
              {
                  library.prefab("Sprite", "Puff").prefab("Light", "Lamp");
                  library.effect("Campfire").key("Light", 0, 4000);
                  library.effect("Smoke").key("Sprite", 0, 4000);
                  library.effect("Torch").key("Sprite", 0, 4000);
              })
    {
        // A key is selected in the first one, then others come over it.
        TrackWidget* pFirst = ShowEffect("Campfire");
        pFirst->parentWidget()->showNormal();
        Desktop::Settle();
        Desktop::Click(Desktop::On(pFirst, {30, pFirst->Logic().Layout().m_rcTrack.top + 18}));
        EXPECT_TRUE(pFirst->Logic().GetCurKey());
        for (const char* pszName : {"Smoke", "Torch"})
            window.Effects().Open(*App().m_SpellMgr.FindSpell(pszName));
        Desktop::Settle();
    }
    std::string Active() const
    {
        const TrackWidget* pTimeline = window.ActiveTimeline();
        return pTimeline ? pTimeline->GetSpell().m_szName : "none";
    }
    static std::string Focus()
    {
        const QWidget* pFocus = QApplication::focusWidget();
        return pFocus ? pFocus->metaObject()->className() : "none";
    }
    QLineEdit* Box() const { return pEffects->viewport()->findChild<QLineEdit*>(); }
    bool IsEditing() const { return pEffects->Panel()->m_Tree.IsEditing(); }
};

} // namespace

TEST(DesktopFocus, WhatGoesNeverActivatesAnotherEffect)
{
    CFocusDesk desk;
    const auto expectIn = [&](QWidget* pWidget, const char* pszWhere)
    {
        Desktop::Settle();
        EXPECT_EQ("Torch", desk.Active()) << pszWhere;
        EXPECT_EQ(pWidget, QApplication::focusWidget()) << pszWhere << ": " << desk.Focus();
    };
    Desktop::Click(desk.At(desk.pEffects, "Smoke"));
    expectIn(desk.pEffects, "a click in the tree");
    desk.ShowPage(1);
    expectIn(desk.pPrefabs, "the other page");
    Desktop::Key("Delete");
    EXPECT_EQ(1u, desk.App().m_SpellMgr.FindSpell("Campfire")->m_Tracks.GetTrack(0)->GetNumKeys());
    desk.ShowPage(0);
    expectIn(desk.pEffects, "the first page");

    auto* pBar = desk.window.findChild<SizeBarWidget*>();
    desk.Pause();
    Desktop::Click(Desktop::On(pBar));
    expectIn(pBar, "folded");
    desk.Pause();
    Desktop::Click(Desktop::On(pBar));
    expectIn(pBar, "unfolded");

    Desktop::Click(desk.At(desk.pEffects, "Smoke"));
    Desktop::Key("ctrl+f");
    Desktop::Key("Escape");
    Desktop::Settle([&] { return desk.window.isActiveWindow(); });
    expectIn(desk.pEffects, "the find dialog closed");
    Desktop::Key("F2");
    Desktop::Key("Escape");
    expectIn(desk.pEffects, "an edit dropped");
    Desktop::WhileOpen([](QWidget*) { Desktop::Key("Escape"); });
    Desktop::Key("Menu");
    expectIn(desk.pEffects, "a menu closed");

    // The focus is in a bar that is hidden, or on a button that is greyed.
    desk.App().m_sFileName = desk.path("x.Fx00a");
    static_cast<IFrameWindow&>(desk.window).CommandsChanged();
    Desktop::Settle();
    for (ToolButton* pButton : desk.window.findChildren<ToolButton*>())
        if (pButton->GetCommand() == c_nCmdSave)
        {
            pButton->setFocus();
            desk.App().m_sFileName.clear();
            static_cast<IFrameWindow&>(desk.window).CommandsChanged();
            Desktop::Settle();
            EXPECT_FALSE(pButton->isEnabled());
        }
    EXPECT_EQ("Torch", desk.Active()) << desk.Focus();
    desk.window.Frame().Run(c_nCmdStandardBar);
    Desktop::Settle();
    EXPECT_EQ("Torch", desk.Active()) << desk.Focus();

    // The window of another effect closes, and the one of the effect that is deleted.
    desk.Pause();
    Desktop::Click(desk.At(desk.pEffects, "Smoke"));
    desk.Answer("Return");
    Desktop::Key("Delete");
    EXPECT_FALSE(desk.App().m_SpellMgr.FindSpell("Smoke"));
    expectIn(desk.pEffects, "another effect deleted");
    desk.Pause();
    Desktop::Click(desk.At(desk.pEffects, "Torch"));
    desk.Answer("Return");
    Desktop::Key("Delete");
    Desktop::Settle();
    EXPECT_EQ(desk.pEffects, QApplication::focusWidget()) << desk.Focus();
    EXPECT_EQ("Campfire", desk.Active());
    Desktop::Key("ctrl+F4");
    EXPECT_EQ("none", desk.Active());
    EXPECT_EQ(desk.pEffects, QApplication::focusWidget()) << desk.Focus();
}

TEST(DesktopFocus, TabGoesRoundWithinTheActiveEffect)
{
    CFocusDesk desk;
    Desktop::Click(desk.At(desk.pEffects, "Smoke"));
    for (int i = 0; i < 20 && desk.Focus() != "TrackWidget"; ++i)
    {
        Desktop::Key("Tab");
        EXPECT_EQ("Torch", desk.Active()) << i << desk.Focus();
    }
    EXPECT_EQ("TrackWidget", desk.Focus());
}

TEST(DesktopFocus, AShortcutTakesTheNameThatIsTyped)
{
    CFocusDesk desk;
    desk.App().m_sFileName = desk.path("x.Fx00a");
    static_cast<IFrameWindow&>(desk.window).CommandsChanged();
    Desktop::Click(desk.At(desk.pEffects, "Smoke"));
    Desktop::Key("F2");
    Desktop::Type("Dew");
    Desktop::Key("ctrl+s");
    EXPECT_FALSE(desk.IsEditing());
    EXPECT_TRUE(desk.App().m_SpellMgr.FindSpell("Dew"));
    EXPECT_NE(std::string::npos, OutputOf("cat '" + desk.path("x.Fx00a") + "'").find("Dew"));
    EXPECT_EQ(desk.pEffects, QApplication::focusWidget()) << desk.Focus();
    Desktop::Key("space");
    EXPECT_EQ(3u, desk.App().m_SpellMgr.Spells().size());

    // One that the library isn't asked for: to the next pane, with the name.
    Desktop::Key("F2");
    Desktop::Type("Fog");
    Desktop::Key("F6");
    EXPECT_EQ("TrackWidget", desk.Focus());
    EXPECT_TRUE(desk.App().m_SpellMgr.FindSpell("Fog"));
    desk.pEffects->setFocus();
    Desktop::Key("F2");
    Desktop::Type("Gas");
    desk.Answer("Escape");
    Desktop::Key("ctrl+o");
    EXPECT_TRUE(desk.App().m_SpellMgr.FindSpell("Gas"));

    for (const char* pszKey : {"Return", "Tab", "shift+Tab", "Escape"})
    {
        Desktop::Key("F2");
        EXPECT_TRUE(desk.IsEditing()) << pszKey;
        Desktop::Key(pszKey);
        EXPECT_FALSE(desk.IsEditing()) << pszKey;
        EXPECT_EQ(desk.pEffects, QApplication::focusWidget()) << pszKey << desk.Focus();
    }
}

TEST(DesktopFocus, NoKeyOfTheNameBoxReachesTheTree)
{
    CFocusDesk desk;
    Desktop::Click(desk.At(desk.pEffects, "Smoke"));
    Desktop::Key("F2");
    ASSERT_TRUE(desk.Box());
    Desktop::Type("abc");
    for (const char* pszKey : {"Insert", "F3", "ctrl+f", "Up", "Down", "Prior", "Next", "F2", "ctrl+Down"})
    {
        Desktop::Key(pszKey);
        EXPECT_TRUE(desk.IsEditing()) << pszKey;
        EXPECT_EQ(nullptr, QApplication::activeModalWidget()) << pszKey;
        EXPECT_EQ("Smoke", desk.Selected(desk.pEffects)) << pszKey;
    }
    EXPECT_EQ(3u, desk.App().m_SpellMgr.Spells().size());
    EXPECT_TRUE(desk.window.isActiveWindow()) << "no find dialog";

    // What edits text stays in the box.
    const auto text = [&] { return desk.Box() ? desk.Box()->text().toStdString() : "closed"; };
    Desktop::Key("ctrl+a");
    Desktop::Key("ctrl+x");
    EXPECT_EQ("", text());
    Desktop::Key("ctrl+v");
    Desktop::Key("ctrl+v");
    EXPECT_EQ("abcabc", text());
    Desktop::Key("ctrl+z");
    EXPECT_NE("abcabc", text());
    Desktop::Key("ctrl+y");
    EXPECT_EQ("abcabc", text());
    Desktop::Key("alt+BackSpace");
    EXPECT_NE("abcabc", text());
    EXPECT_TRUE(desk.IsEditing());
    Desktop::Key("Escape");
    EXPECT_TRUE(desk.App().m_SpellMgr.FindSpell("Smoke"));
}

TEST(DesktopFocus, TheStatusLineAndTheTitleTellWhatWasDone)
{
    CFocusDesk desk;
    const auto status = [&]
    {
        Desktop::Settle();
        return desk.window.findChild<QLabel*>(QStringLiteral("hint"))->text().toStdString();
    };
    const auto title = [&] { return desk.window.windowTitle().toStdString(); };
    EXPECT_EQ("Emberdeck - Torch", title());
    desk.ChooseFromBar("alt+f", {"Save As..."}, desk.File(desk.path("new.Fx00a")));
    EXPECT_EQ(0u, status().find("Saved new.Fx00a: 3 effects, ")) << status();
    EXPECT_EQ("Emberdeck - Torch - new.Fx00a", title());
    desk.window.ActiveTimeline()->parentWidget()->showMaximized();
    Desktop::Settle();
    EXPECT_EQ("Emberdeck - [Torch] - new.Fx00a", title());
    desk.window.Effects().Open(*desk.App().m_SpellMgr.FindSpell("Campfire"));
    Desktop::Settle();
    EXPECT_EQ("Emberdeck - [Campfire] - new.Fx00a", title());
    desk.window.ActiveTimeline()->parentWidget()->showNormal();
    Desktop::Settle();
    EXPECT_EQ("Emberdeck - Campfire - new.Fx00a", title());

    // Over a file that is there, by its full path and the list that comes up below it.
    const std::string sOther = desk.path("other.Fx00a");
    desk.dir.write("game/other.Fx00a", "old");
    desk.ChooseFromBar("alt+f", {"Save As..."},
                       [&](QWidget* pSaveAs)
                       {
                           Desktop::Type(sOther);
                           Desktop::Settle([] { return false; }, 500);
                           auto* pBox = pSaveAs->findChild<QDialogButtonBox*>();
                           EXPECT_TRUE(pBox->button(QDialogButtonBox::Save)->isEnabled());
                           Desktop::Key("Escape"); // the list
                           if (pSaveAs->isVisible())
                               Desktop::Key("Escape");
                       });

    desk.ChooseFromBar("alt+f", {"Pack Effects"});
    const std::string sPacked = status();
    EXPECT_EQ(0u, sPacked.find("Packed new.Fx00p: 3 effects, ")) << sPacked;
    // A command's help comes before it, and goes again.
    for (ToolButton* pButton : desk.window.findChildren<ToolButton*>())
        if (pButton->GetCommand() == c_nCmdSave)
            Desktop::Move(Desktop::On(pButton));
    EXPECT_EQ("Saves the currently open effect file to disk", status());
    Desktop::Move(Desktop::On(desk.pEffects));
    EXPECT_EQ(sPacked, status());
    Desktop::Key("ctrl+F5");
    EXPECT_EQ("No game to launch: the project names none", status());
    desk.App().m_Project.m_sPCBinary = desk.path("none");
    Desktop::Key("ctrl+F5");
    EXPECT_EQ("Couldn't launch " + desk.path("none"), status());
    desk.ChooseFromBar("alt+f", {"New"});
    EXPECT_EQ("Ready", status());
    EXPECT_EQ("Emberdeck", title());
}

// A new library in a fresh session: the project is chosen where its types are wanted.
TEST(DesktopFocus, AnEmptyListOfTypesLeadsToTheProject)
{
    CLibraryDesktop desk;
    CSpell* pSpell = desk.App().NewEffect();
    ASSERT_TRUE(pSpell);
    const CEffectTypeDesc* pChosen = nullptr;
    Desktop::WhileOpen(
        [&](QWidget* pTypes)
        {
            QPushButton* pChoose = nullptr;
            for (QPushButton* pButton : pTypes->findChildren<QPushButton*>())
                if (pButton->text().contains(QLatin1String("Project")))
                    pChoose = pButton;
            ASSERT_TRUE(pChoose);
            auto* pList = pTypes->findChild<QListWidget*>();
            EXPECT_EQ(0, pList->count());
            Desktop::WhileOpen(desk.File(desk.path("game.proj00")));
            Desktop::Key("Return"); // it has the focus
            EXPECT_LT(0, pList->count());
            EXPECT_FALSE(pChoose->isVisible());
            Desktop::Key("Down");
            Desktop::Key("Return");
        });
    pChosen = desk.window.Host().ChooseEffectType();
    ASSERT_TRUE(pChosen);
    EXPECT_STREQ("Light", pChosen->m_szName);
    EXPECT_EQ(pSpell, &desk.window.ActiveTimeline()->GetSpell()) << "the new effect is still there";
    Desktop::WhileOpen(
        [&](QWidget* pTypes)
        {
            EXPECT_EQ(2, pTypes->findChildren<QPushButton*>().size()) << "as it always was";
            Desktop::Key("Escape");
        });
    desk.window.Host().ChooseEffectType();
}

TEST(DesktopFocus, TheSelectionShowsWhereTheKeyboardIs)
{
    CFocusDesk desk;
    // Of the row, left and above its text.
    const auto ground = [&]
    {
        Desktop::Settle();
        const QRect rc = desk.Label(desk.pEffects, "Smoke");
        return desk.pEffects->viewport()->grab().toImage().pixelColor(rc.right() - 1, rc.top() + 2);
    };
    Desktop::Click(desk.At(desk.pEffects, "Smoke"));
    const QColor active = ground();
    desk.window.ActiveTimeline()->setFocus();
    EXPECT_NE(active, ground());
    desk.pEffects->setFocus();
    EXPECT_EQ(active, ground());
    desk.window.ActiveTimeline()->setFocus();
    desk.ShowPage(1);
    Desktop::Settle();
    EXPECT_EQ("TrackWidget", desk.Focus()) << "a page that didn't have the keyboard gives none to the next";
}
