#include <QListWidget>

#include "desktop/Inspection.h"
#include "qt/properties/FunctionCurveDialog.h"

using namespace Inspection;

// A key from nothing, looked at, shaped and deleted, without the mouse.
TEST(DesktopKeyboard, DoesAllOfIt)
{
    CLibraryDesktop desk(FillLibrary);
    TrackWidget* pTimeline = desk.ShowEffect("Smoke");
    pTimeline->setFocus();
    Desktop::Key("Down");
    Desktop::Key("Down");
    EXPECT_EQ(0u, StateOf(pTimeline).find("2 tracks, 2 keys; Key Info [Free")) << StateOf(pTimeline);
    Desktop::Key("Right"); // behind the last key
    const auto menu = [](const char* pszKeys, const std::function<void(QWidget*)>& then)
    {
        Desktop::WhileOpen(
            [pszKeys, then](QWidget*)
            {
                for (const char* p = pszKeys; *p; ++p)
                {
                    if (!p[1])
                        Desktop::WhileOpen(then);
                    Desktop::Key(std::string(1, *p));
                }
            });
        Desktop::Key("Menu");
        Desktop::Settle();
    };
    menu("ta",
         [](QWidget* pTypes)
         {
             Desktop::Key("Down"); // the first type
             EXPECT_EQ("Light",
                       pTypes->findChild<QListWidget*>()->selectedItems().value(0)->text().toStdString());
             Desktop::Key("s");
             Desktop::Key("Return");
         });
    EXPECT_EQ("2 tracks, 3 keys", StateOf(pTimeline));
    Desktop::Key("Left");
    Desktop::WhileOpen(
        [](QWidget* pProperties)
        {
            auto* pSize = Named<QPushButton>(*pProperties, "Size");
            TabTo(pSize);
            Desktop::WhileOpen(
                [](QWidget* pCurve)
                {
                    auto* pArea = pCurve->findChild<CurveArea*>();
                    TabTo(pArea);
                    Desktop::Key("Insert");
                    EXPECT_NE(std::string::npos, StateOf(pArea).find("; selected key at time 0.5000"))
                        << StateOf(pArea);
                    Desktop::Key("Return");
                });
            Desktop::Key("Return");
            Desktop::Key("Escape");
        });
    Desktop::Key("Return");
    Desktop::Key("Delete");
    EXPECT_EQ("2 tracks, 2 keys", StateOf(pTimeline));
    // Some commands stand in the toolbar alone.
    const auto focus = [] { return std::string(QApplication::focusWidget()->metaObject()->className()); };
    for (const char* pszPane : {"ToolButton", "ToolButton", "ToolButton", "LibraryTreeView", "TrackWidget"})
    {
        Desktop::Key("F6");
        EXPECT_EQ(pszPane, focus());
    }
    Desktop::Key("shift+F6");
    EXPECT_EQ("LibraryTreeView", focus());
    Desktop::Key("Home");
    InspectNext("menu of the tree", [] { Desktop::Key("shift+F10"); });
    for (int i = 0; i < 3; ++i)
        Desktop::Key("shift+F6");
    Desktop::Key("space"); // New Effect
    EXPECT_EQ(2u, desk.App().m_SpellMgr.Spells().size());
    const TrackWidget* pNew = desk.window.ActiveTimeline();
    Desktop::Key("ctrl+F4");
    EXPECT_NE(pNew, desk.window.ActiveTimeline());
}
