#include <QElapsedTimer>
#include <QMdiSubWindow>
#include <QScrollBar>

#include "desktop/LibraryBench.h"

// The gestures of the library's trees, by a hand.

namespace
{

struct CDesktopTrees : CLibraryDesktop
{
    CDesktopTrees()
        : CLibraryDesktop(
              [](CLibraryBuilder& library)
              {
                  library.group("Fire").effect("Ash").effect("Blaze").effect("Coal").end();
                  library.group("Water").end().effect("Drop").effect("Eddy");
                  library.prefab("Sprite", "Puff").prefab("Light", "Lamp");
              })
    {
        Desktop::Click(Arrow(pEffects, "Fire"));
        EXPECT_TRUE(pEffects->Panel()->m_Tree.IsExpanded(Find(pEffects, "Fire")));
    }
    QPoint On(const char* pszText) { return At(pEffects, pszText); }
    std::string Selection() { return Selected(pEffects); }
};

} // namespace

TEST(DesktopTrees, SelectByClickKeysAndBand)
{
    CDesktopTrees desk;
    Desktop::Click(desk.On("Ash"));
    EXPECT_EQ("Ash", desk.Selection());
    Desktop::Click(desk.On("Coal"), 1, "ctrl");
    EXPECT_EQ("Ash Coal", desk.Selection());
    Desktop::Click(desk.On("Drop"), 1, "shift");
    EXPECT_EQ("Ash Coal Water Drop", desk.Selection());
    Desktop::Click(desk.On("Eddy"));
    Desktop::Key("shift+Up");
    EXPECT_EQ("Drop Eddy", desk.Selection());
    Desktop::Key("Home");
    EXPECT_EQ("[Effects]", desk.Selection());
    Desktop::Type("co");
    EXPECT_EQ("Coal", desk.Selection());

    // Right of a label is empty space: there a band begins, and a click clears.
    Desktop::Drag(desk.Beside(desk.pEffects, "Eddy"), desk.On("Coal"));
    EXPECT_EQ("Coal Water Drop Eddy", desk.Selection());
    Desktop::Drag(desk.Beside(desk.pEffects, "Drop"), desk.On("Water"), "ctrl");
    EXPECT_EQ("Coal Eddy", desk.Selection()) << "with Ctrl the band takes away what was there";
    Desktop::Click(desk.Beside(desk.pEffects, "Eddy"));
    EXPECT_EQ("", desk.Selection());
    desk.Pause();
    Desktop::Move(desk.Beside(desk.pEffects, "Eddy"));
    Desktop::Press();
    Desktop::Move(desk.On("Drop"));
    Desktop::Move(desk.On("Coal"));
    EXPECT_NE("", desk.Selection());
    Desktop::Key("Escape");
    Desktop::Release();
    EXPECT_EQ("", desk.Selection());

    // Collapsing by the keyboard deselects what it hides; the group takes no part in it.
    Desktop::Click(desk.On("Blaze"));
    Desktop::Click(desk.Arrow(desk.pEffects, "Fire"));
    EXPECT_EQ("", desk.Selection());
}

TEST(DesktopTrees, DragIntoGroupsAndOutOfTheTree)
{
    CDesktopTrees desk;
    Desktop::Click(desk.On("Drop"));
    Desktop::Click(desk.On("Ash"), 1, "ctrl");
    desk.Pause();
    Desktop::Drag(desk.On("Ash"), desk.On("Water"));
    EXPECT_EQ("[[Effects]]\n  [Fire]\n    Blaze\n    Coal\n  [Water]\n    Ash\n    Drop\n  Eddy\n",
              desk.Effects());
    // Onto a leaf: into its group. The root and a group into itself stay.
    Desktop::Drag(desk.On("Eddy"), desk.On("Coal"));
    Desktop::Drag(desk.On("Water"), desk.On("Blaze"));
    const std::string sMoved =
        "[[Effects]]\n  [Fire]\n    [Water]\n      Ash\n      Drop\n    Blaze\n    Coal\n    Eddy\n";
    EXPECT_EQ(sMoved, desk.Effects());
    Desktop::Drag(desk.On("[Effects]"), desk.On("Fire"));
    Desktop::Drag(desk.On("Fire"), desk.On("Water"));
    EXPECT_EQ(sMoved, desk.Effects());

    // Esc leaves all as it was, and the release then means nothing.
    desk.Pause();
    Desktop::Move(desk.On("Coal"));
    Desktop::Press();
    Desktop::Move(desk.On("Blaze"));
    Desktop::Move(desk.On("Water"));
    EXPECT_TRUE(desk.pEffects->Panel()->IsDragging());
    Desktop::Key("Escape");
    Desktop::Release();
    EXPECT_EQ(sMoved, desk.Effects());

    desk.Pause();
    // Out onto the workspace: opened there.
    Desktop::Drag(desk.On("Coal"), Desktop::On(desk.window.findChild<QMdiArea*>()));
    EXPECT_EQ(sMoved, desk.Effects());
    ASSERT_TRUE(desk.window.ActiveTimeline());
    EXPECT_STREQ("Coal", desk.window.ActiveTimeline()->GetSpell().m_szName);
}

TEST(DesktopTrees, ScrollWhileSomethingIsDraggedToTheEdge)
{
    CLibraryDesktop desk(
        [](CLibraryBuilder& library)
        {
            for (int i = 100; i < 200; ++i)
                library.effect("Fx " + std::to_string(i));
            library.group("Last");
        });
    QScrollBar* pBar = desk.pEffects->verticalScrollBar();
    ASSERT_GT(pBar->maximum(), 0);
    const QRect rc = desk.pEffects->viewport()->rect();
    Desktop::Click(desk.At(desk.pEffects, "Fx 101"));
    Desktop::Key("ctrl+End"); // the view alone
    EXPECT_EQ(pBar->maximum(), pBar->value());
    EXPECT_EQ("Fx 101", desk.Selected(desk.pEffects));
    Desktop::Key("ctrl+Home");
    EXPECT_EQ(0, pBar->value());
    desk.Pause();
    Desktop::Move(desk.At(desk.pEffects, "Fx 100"));
    Desktop::Press();
    Desktop::Move(Desktop::On(desk.pEffects->viewport(), rc.center()));
    Desktop::Move(Desktop::On(desk.pEffects->viewport(), {40, rc.bottom() - 4}));
    EXPECT_TRUE(Desktop::Settle([pBar] { return pBar->value() == pBar->maximum(); }, 20000));
    Desktop::Move(desk.At(desk.pEffects, "Last"));
    Desktop::Release();
    EXPECT_NE(std::string::npos, desk.Effects().find("[Last]\n    Fx 100\n"));
}

TEST(DesktopTrees, LabelsAreEditedInPlace)
{
    CDesktopTrees desk;
    Desktop::Click(desk.On("Drop"));
    Desktop::Key("F2");
    Desktop::Type("  Dew ");
    Desktop::Key("Return");
    EXPECT_EQ("Dew", desk.Selection());
    EXPECT_TRUE(desk.App().m_SpellMgr.FindSpell("Dew"));
    EXPECT_FALSE(desk.window.ActiveTimeline()) << "Enter in the box opens nothing";
    Desktop::Key("F2");
    Desktop::Type("Other");
    Desktop::Key("Escape");
    EXPECT_EQ("Dew", desk.Selection());

    // A click on the label of what is selected alone; a press elsewhere takes the text.
    desk.Pause();
    Desktop::Click(desk.On("Dew"));
    EXPECT_TRUE(Desktop::Settle([&] { return desk.pEffects->Panel()->m_Tree.IsEditing(); }));
    Desktop::Type("Eve");
    Desktop::Click(desk.On("Coal"));
    EXPECT_TRUE(desk.App().m_SpellMgr.FindSpell("Eve"));
    EXPECT_EQ("Coal", desk.Selection());

    Desktop::Key("F2");
    Desktop::Type("eddy");
    desk.Answer("Return");
    Desktop::Key("Return");
    EXPECT_TRUE(desk.App().m_SpellMgr.FindSpell("Coal")) << "the name belongs to another";

    // A group by the menu, with a name that an effect has.
    Desktop::Click(desk.On("Fire"));
    desk.Choose(desk.On("Fire"), {"New Group"});
    EXPECT_TRUE(desk.pEffects->Panel()->m_Tree.IsEditing());
    Desktop::Type("Eddy");
    Desktop::Key("Return");
    EXPECT_EQ("[[Effects]]\n  [Fire]\n    Ash\n    Blaze\n    Coal\n    [Eddy]\n  [Water]\n  Eddy\n  Eve\n",
              desk.Effects());
}

TEST(DesktopTrees, KeysAndMenusRunTheCommands)
{
    CDesktopTrees desk;
    Desktop::Click(desk.On("Eddy"));
    Desktop::Key("Insert");
    EXPECT_EQ("Eddy_1", desk.Selection());
    desk.Answer("Return");
    Desktop::Key("Delete");
    EXPECT_FALSE(desk.App().m_SpellMgr.FindSpell("Eddy_1"));
    desk.Choose(desk.On("Fire"), {"Delete Selection"}, desk.By("Escape"));
    EXPECT_TRUE(desk.App().m_SpellMgr.FindSpell("Ash"));
    EXPECT_EQ("Fire Ash Blaze Coal", desk.Selection())
        << "the right button has selected it, the command has widened it";
    desk.Choose(desk.On("Coal"), {"Open Effects"});
    EXPECT_EQ(3, desk.window.findChild<QMdiArea*>()->subWindowList().size());
    desk.Pause();
    Desktop::Click(desk.On("Ash"));
    desk.Answer("Return");
    Desktop::Key("Delete");
    EXPECT_EQ(2, desk.window.findChild<QMdiArea*>()->subWindowList().size());

    // The find dialog stays with its page.
    Desktop::Key("ctrl+f");
    QWidget* pFind = QApplication::activeWindow();
    ASSERT_TRUE(qobject_cast<TemplateDialog*>(pFind));
    Desktop::Type("edd");
    Desktop::Key("Return");
    EXPECT_EQ("Eddy", desk.Selection());
    desk.ShowPage(1);
    EXPECT_FALSE(pFind->isVisible());
    Desktop::Click(desk.At(desk.pPrefabs, "Lamp"));
    desk.Choose(desk.At(desk.pPrefabs, "Lamp"), {"Set Active Prefab"});
    ASSERT_TRUE(desk.window.Host().GetActivePrefab());
    EXPECT_EQ("Lamp", desk.window.Host().GetActivePrefab()->m_sName);
    desk.ShowPage(0);
    EXPECT_TRUE(pFind->isVisible());
    desk.window.activateWindow();
    Desktop::Settle([&] { return desk.window.isActiveWindow(); });
    desk.pEffects->setFocus();
    desk.Answer("Escape");
    Desktop::Key("F3");
    EXPECT_EQ("Eddy", desk.Selection());
}

TEST(DesktopTrees, TheSizeBarDragsFoldsAndUnfolds)
{
    CDesktopTrees desk;
    Desktop::Click(desk.On("Drop"));
    const int nWidth = desk.window.Dock()->width();
    const auto bar = [&] { return Desktop::On(desk.window.Dock()->findChild<SizeBarWidget*>()); };
    Desktop::Drag(bar(), bar() + QPoint(40, 0));
    const int nWider = desk.window.Dock()->width();
    EXPECT_GT(nWider, nWidth);
    desk.Pause();
    Desktop::Click(bar());
    EXPECT_LT(desk.window.Dock()->width(), 20);
    EXPECT_FALSE(desk.pEffects->isVisible());
    EXPECT_TRUE(qobject_cast<SizeBarWidget*>(QApplication::focusWidget()));
    desk.Pause();
    Desktop::Click(bar());
    EXPECT_EQ(nWider, desk.window.Dock()->width());
    EXPECT_TRUE(desk.pEffects->isVisible());
    EXPECT_EQ("Drop", desk.Selection());

    // A window that comes up in the middle of a drag has the mouse: the release means nothing any more.
    const std::string sEffects = desk.Effects();
    for (const bool bTree : {true, false})
    {
        desk.Pause();
        Desktop::Move(bTree ? desk.On("Coal") : bar());
        Desktop::Press();
        if (bTree)
        {
            Desktop::Move(desk.On("Drop"));
            Desktop::Move(desk.On("Water"));
            EXPECT_TRUE(desk.pEffects->Panel()->IsDragging());
        }
        QWidget other;
        other.setGeometry(900, 600, 100, 100);
        other.show();
        other.activateWindow();
        EXPECT_TRUE(Desktop::Settle([&] { return !desk.window.isActiveWindow(); }));
        EXPECT_FALSE(desk.pEffects->Panel()->IsBusy());
        Desktop::Release();
    }
    EXPECT_EQ(sEffects, desk.Effects());
    EXPECT_EQ(nWider, desk.window.Dock()->width());
}

TEST(DesktopTrees, TenThousandEffectsGoAtOnce)
{
    CLibraryDesktop desk(
        [](CLibraryBuilder& library)
        {
            library.prefab("Sprite", "Puff");
            for (int i = 0; i < 10000; ++i)
                library.effect("Fx " + std::to_string(i * 7919 % 10007)).key().onPrefab("Puff");
        });
    Desktop::Click(desk.At(desk.pEffects, "[Effects]"));
    desk.Answer("Return");
    QElapsedTimer clock;
    clock.start();
    Desktop::Key("Delete");
    EXPECT_TRUE(desk.App().m_SpellMgr.Spells().empty());
    EXPECT_EQ("[[Effects]]\n", desk.Effects());
    EXPECT_LT(clock.elapsed(), 20000) << "a slow build on a busy machine; it is a matter of tenths";
    std::printf("delete 10000: %lld ms\n", static_cast<long long>(clock.elapsed()));
}
