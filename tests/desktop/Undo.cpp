#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenuBar>

#include "desktop/Inspection.h"
#include "qt/frame/HistoryDock.h"
#include "qt/library/LibraryTreeView.h"
#include "qt/toolkit/ToolBarWidget.h"

// Undo, redo and the history, by real keys and the pointer.

using namespace Inspection;

namespace
{

// "Smoke" in front with a key on each of two tracks, "Fire" behind it, saved.
struct CUndoDesktop : CLibraryDesktop
{
    CUndoDesktop()
        : CLibraryDesktop(
              [](CLibraryBuilder& library)
              {
                  library.prefab("Sprite", "Puff").value("Count", 7);
                  library.effect("Fire").key("Light", 0, 1000);
                  library.effect("Smoke").key("Sprite", 1000, 3000).name("Plume").onPrefab("Puff");
                  library.track().key("Marker", 2000, 4000);
              })
    {
        App().m_sFileName = path("smoke.Fx00a");
        EXPECT_TRUE(App().SaveEffectFile());
        ShowEffect("Fire");
        pTimeline = ShowEffect("Smoke");
    }
    CKey& Key(uint32_t nTrack = 0) { return *KeyOf(App().m_SpellMgr, "Smoke", nTrack); }
    QPoint At(int32_t nTime, int nRow)
    {
        return Desktop::On(pTimeline, {PixelFromTime(pTimeline->Logic().TimeBar(), nTime),
                                       pTimeline->Logic().Layout().m_rcTrack.top +
                                           nRow * CTrackLayout::c_nTrackHeight + 18});
    }
    std::string Title() const { return window.windowTitle().toStdString(); }
    std::string Status() const
    {
        Desktop::Settle();
        return window.findChild<QLabel*>(QStringLiteral("hint"))->text().toStdString();
    }
    // The texts of the Edit menu, in parentheses what is grey.
    std::string EditMenu()
    {
        std::string sText;
        InspectNext(
            "Edit menu", [] { Desktop::Key("alt+e"); },
            [&](QWidget& menu)
            {
                for (const QAction* pAction : menu.actions())
                {
                    const std::string sItem = pAction->text().remove(QLatin1Char('&')).toStdString();
                    sText += (sText.empty() ? "" : "|") + (pAction->isEnabled() ? sItem : "(" + sItem + ")");
                }
            });
        return sText;
    }
    HistoryDock* History() const { return window.findChild<HistoryDock*>(); }
    QListView* Rows() const { return History()->findChild<QListView*>(); }
    QPoint Row(int nRow) const
    {
        return Desktop::On(Rows()->viewport(), Rows()->visualRect(Rows()->model()->index(nRow, 0)).center());
    }

    TrackWidget* pTimeline = nullptr;
};

} // namespace

TEST(DesktopUndo, AStepIsTakenBackAndShown)
{
    CUndoDesktop desk;
    EXPECT_EQ("Emberdeck - [Smoke] - smoke.Fx00a", desk.Title());
    EXPECT_EQ("(Undo)|(Redo)", desk.EditMenu());
    Desktop::Drag(desk.At(2000, 0), desk.At(4000, 0));
    const int32_t nMoved = desk.Key().m_nStartTime;
    EXPECT_GT(nMoved, 2500);
    EXPECT_EQ("Emberdeck - [Smoke] - smoke.Fx00a*", desk.Title());
    EXPECT_EQ("Undo Move Key|(Redo)", desk.EditMenu());

    // Another key is selected, and another effect in front: both change back.
    Desktop::Click(desk.At(3000, 1));
    desk.window.Effects().Open(*desk.App().m_SpellMgr.FindSpell("Fire"));
    Desktop::Settle();
    Desktop::Key("ctrl+z");
    EXPECT_EQ(1000, desk.Key().m_nStartTime);
    EXPECT_EQ(desk.pTimeline, desk.window.ActiveTimeline());
    EXPECT_TRUE(desk.Key().m_bSelected && !desk.Key(1).m_bSelected);
    EXPECT_EQ("Undone: Move Key in Smoke", desk.Status());
    EXPECT_EQ("Emberdeck - [Smoke] - smoke.Fx00a", desk.Title()) << "what the file holds";
    EXPECT_EQ("(Undo)|Redo Move Key", desk.EditMenu());
    Desktop::Key("ctrl+z"); // nothing is left
    EXPECT_EQ(1000, desk.Key().m_nStartTime);
    for (const char* pszRedo : {"ctrl+y", "ctrl+shift+z"})
    {
        Desktop::Key(pszRedo);
        EXPECT_EQ(nMoved, desk.Key().m_nStartTime) << pszRedo;
        Desktop::Key("alt+BackSpace");
        EXPECT_EQ(1000, desk.Key().m_nStartTime);
    }

    // By the toolbar, which a switch hides.
    const auto button = [&](int32_t nCommand)
    {
        for (ToolButton* pButton : desk.window.findChildren<ToolButton*>())
            if (pButton->GetCommand() == nCommand)
                return pButton;
        return static_cast<ToolButton*>(nullptr);
    };
    EXPECT_FALSE(button(c_nCmdUndo)->isEnabled());
    Desktop::Click(Desktop::On(button(c_nCmdRedo)));
    EXPECT_EQ(nMoved, desk.Key().m_nStartTime);
    Desktop::Click(Desktop::On(button(c_nCmdUndo)));
    EXPECT_EQ(1000, desk.Key().m_nStartTime);
    desk.ChooseFromBar("alt+v", {"Toolbars", "Edit"});
    EXPECT_FALSE(button(c_nCmdUndo)->isVisible());
}

TEST(DesktopUndo, GesturesAndTextsKeepTheirKeys)
{
    CUndoDesktop desk;
    // Esc in a drag: no step. Undo in it waits.
    Desktop::Move(desk.At(2000, 0));
    Desktop::Press();
    Desktop::Move(desk.At(3000, 0));
    Desktop::Move(desk.At(4000, 0));
    EXPECT_GT(desk.Key().m_nStartTime, 2500);
    Desktop::Key("ctrl+z");
    EXPECT_GT(desk.Key().m_nStartTime, 2500);
    Desktop::Key("Escape");
    EXPECT_EQ(1000, desk.Key().m_nStartTime);
    Desktop::Move(desk.At(6000, 0));
    Desktop::Release();
    EXPECT_EQ(1000, desk.Key().m_nStartTime);
    EXPECT_EQ(0u, desk.App().History().GetNumSteps());
    EXPECT_EQ("Emberdeck - [Smoke] - smoke.Fx00a", desk.Title());

    // A new group and its name are one step. While the name is typed, the keys are its own.
    desk.Choose(desk.CLibraryDesktop::At(desk.pEffects, "[Effects]"), {"New Group"});
    Desktop::Type("Old");
    const auto* pLabel = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_TRUE(pLabel);
    Desktop::Key("ctrl+z");
    EXPECT_TRUE(desk.pEffects->Panel()->m_Tree.IsEditing());
    EXPECT_NE("Old", pLabel->text());
    Desktop::Key("ctrl+y");
    EXPECT_EQ("Old", pLabel->text());
    Desktop::Key("Return");
    EXPECT_EQ("[[Effects]]\n  Fire\n  Smoke\n  [Old]\n", desk.Effects());
    EXPECT_EQ("Undo New Group|(Redo)", desk.EditMenu());
    Desktop::Key("ctrl+z");
    EXPECT_EQ("[[Effects]]\n  Fire\n  Smoke\n", desk.Effects());
    Desktop::Key("ctrl+y");
    EXPECT_EQ("Old", desk.Selected(desk.pEffects)) << "what came is selected";
    EXPECT_EQ("Redone: New Group \"Old\"", desk.Status());
}

TEST(DesktopUndo, TheHistoryListsStepsAndLeadsToThem)
{
    CUndoDesktop desk;
    EXPECT_FALSE(desk.History()->isVisible());
    desk.window.Effects().Close(desk.App().m_SpellMgr.FindSpell("Fire"));
    desk.ChooseFromBar("alt+v", {"History"});
    ASSERT_TRUE(desk.History()->isVisible());
    Inspect(desk.window, "main window with the history");
    for (const int nTime : {3000, 4000})
        Desktop::Drag(desk.At((desk.Key().m_nStartTime + desk.Key().m_nEndTime) / 2, 0), desk.At(nTime, 0));
    Desktop::Key("ctrl+s");
    Desktop::Key("Delete");
    ASSERT_EQ(4, desk.Rows()->model()->rowCount());
    const auto text = [&](int nRow)
    { return desk.Rows()->model()->index(nRow, 0).data(Qt::AccessibleTextRole).toString().toStdString(); };
    EXPECT_EQ("New Library", text(0));
    EXPECT_EQ("Move Key in Smoke, saved", text(2));
    EXPECT_EQ("Delete Key in Smoke, current", text(3));

    // The effect comes to the front, and the list keeps the keyboard.
    desk.window.Effects().Open(*desk.App().m_SpellMgr.FindSpell("Fire"));
    Desktop::Click(desk.Row(0));
    EXPECT_EQ(1000, desk.Key().m_nStartTime);
    EXPECT_EQ("Undone: 3 steps, back to before Move Key in Smoke", desk.Status());
    EXPECT_EQ("Emberdeck - [Smoke] - smoke.Fx00a*", desk.Title());
    EXPECT_EQ("Delete Key in Smoke, undone", text(3));
    // The arrow keys go, Enter goes there.
    Desktop::Key("Down");
    Desktop::Key("Down");
    EXPECT_EQ(1000, desk.Key().m_nStartTime);
    Desktop::Key("Return");
    EXPECT_GT(desk.Key().m_nStartTime, 2500);
    EXPECT_EQ("Move Key in Smoke, current, saved", text(2));
    EXPECT_EQ("Emberdeck - [Smoke] - smoke.Fx00a", desk.Title());

    // Another step drops those that were taken back, another library all.
    Desktop::Click(desk.At(3000, 1));
    Desktop::Key("Delete");
    EXPECT_EQ(4, desk.Rows()->model()->rowCount());
    desk.ChooseFromBar("alt+f", {"New"});
    EXPECT_EQ(1, desk.Rows()->model()->rowCount());
    EXPECT_EQ("Emberdeck", desk.Title());
    Desktop::Key("ctrl+z");
    EXPECT_EQ("[[Effects]]\n", desk.Effects());
}

TEST(DesktopUndo, APropertyDialogHasItsOwn)
{
    CUndoDesktop desk;
    Desktop::WhileOpen(
        [&](QWidget* pDialog)
        {
            auto* pCheck = Named<QAbstractButton>(*pDialog, "Count from the parent prefab");
            auto* pBox = Named<QLineEdit>(*pDialog, "Count");
            ASSERT_TRUE(pCheck && pBox);
            const auto count = [&] { return pBox->text().toStdString() + (pBox->isEnabled() ? "" : " off"); };
            Desktop::Click(Desktop::On(pCheck));
            Desktop::Click(Desktop::On(pBox));
            Desktop::Key("ctrl+a");
            Desktop::Type("55");
            EXPECT_EQ("55", count());
            QWidget* pDisconnect =
                qobject_cast<TemplateDialog*>(pDialog)->Controls().Find(eFXProps_Disconnect);
            Desktop::Click(Desktop::On(pDisconnect));
            EXPECT_FALSE(pDisconnect->isVisible());
            Desktop::Key("ctrl+z");
            EXPECT_TRUE(pDisconnect->isVisible());
            EXPECT_TRUE(Named<QAbstractButton>(*pDialog, "Count from the parent prefab")->isVisible());
            EXPECT_EQ("55", count());
            Desktop::Key("ctrl+z");
            EXPECT_EQ("7", count());
            Desktop::Key("ctrl+z");
            EXPECT_EQ("7 off", count());
            Desktop::Key("ctrl+z");
            Desktop::Key("ctrl+y");
            Desktop::Key("ctrl+shift+z");
            EXPECT_EQ("55", count());
            // A text that is being typed comes first.
            Desktop::Click(Desktop::On(pBox));
            Desktop::Key("End");
            Desktop::Type("6");
            Desktop::Key("ctrl+z");
            EXPECT_EQ("55", count());
            Desktop::Key("Return");
        });
    Desktop::DoubleClick(desk.At(2000, 0));
    Desktop::Settle();
    EXPECT_EQ("Undo Edit Key|(Redo)", desk.EditMenu());
    Desktop::Key("ctrl+z");
    EXPECT_EQ(0u, desk.App().History().GetPosition());
    EXPECT_EQ(nullptr, desk.Key().GetPropertyDirect(SlotOf(desk.Key(), "Count")));
}
