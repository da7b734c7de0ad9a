#include "desktop/Inspection.h"
#include "qt/properties/ColorViews.h"
#include "qt/sourcecontrol/SourceControlFront.h"
#include "qt/toolkit/PropertyControls.h"

// Who can't see the screen, or doesn't use the mouse: each control has a name, each painted view says what it is, and
// no two letters of a dialog are the same.

using namespace Inspection;

TEST(DesktopAccessibility, MainWindowIsNamed)
{
    CLibraryDesktop desk(FillLibrary);
    desk.ShowEffect("Smoke");
    Inspect(desk.window, "main window");
    desk.ShowPage(1);
    Desktop::Click(desk.At(desk.pPrefabs, "Puff"));
    Inspect(desk.window, "main window with prefabs");
    Desktop::Key("F2");
    Inspect(desk.window, "tree with an edit box");
    Desktop::Key("Escape");
    Desktop::Click(Desktop::On(desk.pPrefabs->viewport()));
    Desktop::Key("ctrl+f");
    QWidget* pFind = Shown<TemplateDialog>();
    ASSERT_TRUE(pFind);
    Inspect(*pFind, "find");
    Desktop::Type("nothing");
    // Asked for in the tree, too, its boxes stand over the dialog.
    const auto answerNo = [pFind](QWidget* pBox)
    {
        EXPECT_EQ(pFind, pBox->parentWidget());
        Desktop::Key("alt+n");
    };
    Desktop::WhileOpen(answerNo);
    Desktop::Key("Return");
    Desktop::Click(desk.At(desk.pPrefabs, "Puff"));
    ASSERT_TRUE(desk.window.isActiveWindow() && pFind->isVisible());
    Desktop::WhileOpen(answerNo);
    Desktop::Key("F3");
    pFind->activateWindow();
    ASSERT_TRUE(Desktop::Settle([&] { return pFind->isActiveWindow(); }));
    Desktop::Key("Escape");
    EXPECT_FALSE(Shown<TemplateDialog>());
}

// What an assistive program can say of the painted views, beside their names.
TEST(DesktopAccessibility, PaintedViewsTellWhatTheyShow)
{
    CLibraryDesktop desk(FillLibrary);
    TrackWidget* pTimeline = desk.ShowEffect("Smoke");
    EXPECT_EQ("2 tracks, 2 keys", StateOf(pTimeline));
    Desktop::Click(Desktop::On(pTimeline, {120, pTimeline->Logic().Layout().m_rcTrack.top + 54}));
    EXPECT_EQ("2 tracks, 2 keys; Key Info [Free - Sprite], from 1000 ms to 9000 ms", StateOf(pTimeline));
    EXPECT_EQ("0 to 10000 milliseconds", StateOf(pTimeline->findChild<QWidget*>("ruler")));
}

TEST(DesktopAccessibility, PropertyDialogsAreNamed)
{
    CLibraryDesktop desk(FillLibrary);
    desk.ShowEffect("Smoke");
    const auto editors = [](QWidget& dialog)
    {
        const auto press =
            [&](const char* pszName, const char* pszWhere, const std::function<void(QWidget&)>& more = {})
        {
            auto* pButton = Named<QAbstractButton>(dialog, pszName);
            ASSERT_TRUE(pButton);
            InspectNext(
                pszWhere, [pButton] { Desktop::Click(Desktop::On(pButton)); }, more);
        };
        const auto select = [](QWidget& curve)
        {
            Desktop::Key("ctrl+a");
            Inspect(curve, "curve with a selection");
            EXPECT_EQ("Curve, Y Min, Y Max, Start Time, End Time, Size, Copy, Best Fit, OK, Cancel",
                      TabStops(curve, "Curve"));
        };
        press("Size", "curve", select);
        press("Texture", "file dialog of a property");
        for (QPushButton* p : dialog.findChildren<QPushButton*>())
            if (p->text() == QLatin1String("..."))
                InspectNext("vector", [p] { Desktop::Click(Desktop::On(p)); });
        press("Color", "colour curve",
              [&](QWidget& curve)
              {
                  Desktop::Key("ctrl+a");
                  Inspect(curve, "colour curve with a selection");
                  auto* pSwatch = Named<SwatchButton>(curve, "Color");
                  ASSERT_TRUE(pSwatch);
                  InspectNext(
                      "colour", [pSwatch] { Desktop::Click(Desktop::On(pSwatch)); },
                      [](QWidget& chooser)
                      {
                          auto* pBasic = chooser.findChild<BasicColorsView*>();
                          Desktop::Key("Right");
                          EXPECT_EQ(0u, StateOf(pBasic).find("2 of 48: red ")) << StateOf(pBasic);
                          Desktop::Key("space");
                          EXPECT_NE(std::string::npos,
                                    StateOf(pBasic).find(StateOf(chooser.findChild<CurrentColorView*>())));
                      });
              });
    };
    CEmberdeckApp& app = desk.App();
    InspectNext(
        "properties", [&] { desk.window.Host().EditProperties(*KeyOf(app.m_SpellMgr, "Smoke", 1)); },
        editors);
    InspectNext("properties over a prefab",
                [&] { desk.window.Host().EditProperties(*KeyOf(app.m_SpellMgr, "Smoke", 0)); });
}

TEST(DesktopAccessibility, QuestionsAndChoosersAreNamed)
{
    CLibraryDesktop desk(FillLibrary);
    desk.ShowEffect("Smoke");
    InspectNext("types", [&] { desk.window.Host().ChooseEffectType(); });
    InspectNext("about", [&] { desk.window.Frame().Run(c_nCmdAbout); });
    std::string sText = "x";
    float fValue = 1.0f;
    int32_t nValue = 1;
    InspectNext("name", [&] { desk.prompts.EnterText({"Enter Name", ""}, sText); });
    InspectNext("game information",
                [&] {
                    desk.prompts.EnterText({c_szGameInfoCaption, c_szGameInfoLabel, true}, sText);
                });
    InspectNext("number", [&] { desk.prompts.EnterNumber({"Enter Length", "", 1, 9}, nValue); });
    InspectNext("float", [&] { desk.prompts.EnterFloat("Enter Value", "Value", fValue); });
    InspectNext("question",
                [&] { desk.prompts.Ask("Save?", "Emberdeck", EButtons::eYesNoCancel, EIcon::eQuestion); });
    CFileDialogRequest request;
    request.m_sFilter = "Effects|*.Fx00a||";
    InspectNext("open", [&] { desk.prompts.ChooseFile(request, sText); });
    Desktop::Key("F1");
    auto* pManual = Shown<ManualWindow>();
    ASSERT_TRUE(pManual);
    Inspect(*pManual, "manual");
    pManual->close();

    CProviderRegistry registry;
    registry.Register(CClassId({0xA}), "Alpha", [] { return nullptr; });
    QtSourceControl front;
    front.SetOwner(&desk.window, {});
    CClassId id;
    InspectNext("provider", [&] { front.MakeLocator(registry, nullptr)->SelectProvider(id, true); });
    InspectNext("change", [&] { front.DescribeChange("/a/b.Fx00c", sText); });
    InspectNext("history", [&] { front.ShowHistory("/a/b.Fx00c", {{"r1", "Ada", "2026-11-24", "why"}}); });
    InspectNext("work copy", [&] { front.ChooseWorkCopy("Git", "", sText); });
}
