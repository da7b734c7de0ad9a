#include <QAbstractItemView>
#include <QCheckBox>
#include <QPlainTextEdit>
#include <QScrollBar>

#include "desktop/LibraryBench.h"
#include "qt/properties/ColorViews.h"
#include "qt/properties/EditVectorDialog.h"
#include "qt/properties/FunctionCurveDialog.h"
#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtSurface.h"

// The property dialogs over the timeline, by pointer and keys.

namespace
{

using CAct = std::function<void(TemplateDialog&)>;

void ClickOn(QWidget* pWidget)
{
    ASSERT_TRUE(pWidget && pWidget->isVisible());
    Desktop::Click(Desktop::On(pWidget));
}
void PressOk(TemplateDialog& dialog)
{
    ClickOn(dialog.Controls().Find(c_nControlOk));
}
void Enter(QWidget* pBox, const char* pszText)
{
    ClickOn(pBox);
    Desktop::Key("End");
    Desktop::Key("shift+Home");
    Desktop::Key("Delete");
    Desktop::Type(pszText);
}
// By its accessible name.
template <class TWidget>
TWidget* Part(TemplateDialog& dialog, const char* pszName)
{
    for (TWidget* pWidget : dialog.findChildren<TWidget*>())
        if (pWidget->accessibleName() == QLatin1String(pszName))
            return pWidget;
    ADD_FAILURE() << "no control " << pszName;
    return nullptr;
}
// What is done in the dialog that opens next, and OK or Esc behind it.
void Next(const CAct& act, bool bOk = true)
{
    Desktop::WhileOpen(
        [act, bOk](QWidget* pOpen)
        {
            auto* pDialog = qobject_cast<TemplateDialog*>(pOpen);
            ASSERT_TRUE(pDialog);
            act(*pDialog);
            if (bOk)
                PressOk(*pDialog);
            else
                Desktop::Key("Escape");
        });
}

// Two keys of the effect "Smoke", one on the prefab "Puff".
struct CPropertyDesktop : CLibraryDesktop
{
    CPropertyDesktop()
        : CLibraryDesktop(
              [](CLibraryBuilder& library)
              {
                  library.prefab("Sprite", "Puff").value("Count", 7);
                  library.effect("Smoke").key("Sprite", 0, 9000).name("Heir").onPrefab("Puff");
                  library.track().key("Sprite", 0, 9000).name("Free");
              })
    {
        dir.write("game/res/Tex/a.dds", "a");
        pTimeline = ShowEffect("Smoke");
    }
    CKey& Key(uint32_t nTrack) { return *KeyOf(App().m_SpellMgr, "Smoke", nTrack); }
    // By a double click on the key.
    void Edit(uint32_t nTrack, const CAct& act, bool bOk = true)
    {
        Next(act, bOk);
        Desktop::DoubleClick(
            Desktop::On(pTimeline, {120, pTimeline->Logic().Layout().m_rcTrack.top +
                                             int(nTrack) * CTrackLayout::c_nTrackHeight + 18}));
    }
    QCheckBox* Check(TemplateDialog& dialog, const char* pszProp)
    {
        return dialog.findChildren<QCheckBox*>().value(int(SlotOf(Key(0), pszProp)));
    }
    // The curve of a row of the open dialog.
    void EditCurve(TemplateDialog& dialog, const char* pszProp, const CAct& act, bool bOk = true)
    {
        Next(act, bOk);
        ClickOn(Part<QPushButton>(dialog, pszProp));
    }

    TrackWidget* pTimeline = nullptr;
};

QPoint InCurve(TemplateDialog& dialog, double fX, double fY)
{
    auto* pArea = dialog.findChild<CurveArea*>();
    return Desktop::On(pArea, QPoint(int(pArea->width() * fX), int(pArea->height() * fY)));
}

} // namespace

TEST(DesktopProperties, TypeSpinCheckAndChoose)
{
    CPropertyDesktop desk;
    const auto change = [&](TemplateDialog& dialog)
    {
        auto* pCount = Part<QLineEdit>(dialog, "Count");
        EXPECT_TRUE(desk.Check(dialog, "Count")->isChecked() && !pCount->isEnabled());
        ClickOn(desk.Check(dialog, "Count"));
        EXPECT_EQ("7", pCount->text());
        Enter(pCount, "41");
        auto* pSpin = Part<SpinArrows>(dialog, "Count");
        Desktop::Click(Desktop::On(pSpin, {pSpin->width() / 2, 3}));
        Desktop::Key("Up");
        EXPECT_EQ("43", pCount->text());
        // Unchecked and checked again, what was typed is gone.
        ClickOn(desk.Check(dialog, "Label"));
        Enter(Part<QLineEdit>(dialog, "Label"), "lost");
        ClickOn(desk.Check(dialog, "Label"));
        EXPECT_EQ("", Part<QLineEdit>(dialog, "Label")->text());
        ClickOn(desk.Check(dialog, "Blend"));
        Desktop::Key("Tab");
        Desktop::Key("Down");
        Desktop::Move(Desktop::On(Part<QComboBox>(dialog, "Blend")));
        Desktop::Press(5); // the wheel changes no list
        Desktop::Release(5);
        EXPECT_EQ("Multiply", Part<QComboBox>(dialog, "Blend")->currentText());
    };
    desk.Edit(0, change, false);
    EXPECT_EQ(nullptr, OwnPropOf(desk.Key(0), "Count")) << "Esc leaves all as it was";
    desk.Edit(0, change);
    EXPECT_EQ(43, IntOf(desk.Key(0), "Count"));
    EXPECT_EQ("Multiply", TextOf(desk.Key(0), "Blend"));
    EXPECT_EQ(nullptr, OwnPropOf(desk.Key(0), "Label"));

    // The prefab on top stays changed, whatever becomes of the key.
    desk.Edit(
        0,
        [&](TemplateDialog& dialog)
        {
            Next([](TemplateDialog& nested) { Enter(Part<QLineEdit>(nested, "Label"), "say \"hi\""); });
            ClickOn(dialog.Controls().Find(eFXProps_OpenParent));
            EXPECT_EQ("say 'hi'", Part<QLineEdit>(dialog, "Label")->text());
            ClickOn(dialog.Controls().Find(eFXProps_Disconnect));
            EXPECT_FALSE(desk.Check(dialog, "Label"));
        },
        false);
    EXPECT_EQ("say 'hi'", TextOf(desk.Key(0), "Label"));
    EXPECT_TRUE(desk.Key(0).GetParent());
}

TEST(DesktopProperties, CurvesAreDraggedFittedCopiedAndPasted)
{
    CPropertyDesktop desk;
    desk.Edit(1,
              [&](TemplateDialog& dialog)
              {
                  const auto shape = [](TemplateDialog& curve)
                  {
                      auto* pTime = curve.Controls().Get<QPushButton>(eCurve_Time);
                      Desktop::Click(InCurve(curve, 0.5, 0.25), 3);
                      EXPECT_NEAR(0.5, pTime->text().toDouble(), 0.01);
                      EXPECT_EQ("6.5", Part<QLineEdit>(curve, "Size")->text().left(3))
                          << "a quarter below 11.5";
                      Desktop::Drag(InCurve(curve, 0.5, 0.25), InCurve(curve, 0.75, 0.45));
                      EXPECT_NEAR(0.75, pTime->text().toDouble(), 0.01);
                      EXPECT_NEAR(2.5, Part<QLineEdit>(curve, "Size")->text().toDouble(), 0.15);
                      // Esc takes back a drag, and no more than that.
                      Desktop::Move(InCurve(curve, 0.75, 0.45));
                      Desktop::Press();
                      Desktop::Move(InCurve(curve, 0.5, 0.9));
                      EXPECT_NEAR(0.5, pTime->text().toDouble(), 0.01);
                      Desktop::Key("Escape");
                      Desktop::Release();
                      ASSERT_TRUE(curve.isVisible());
                      EXPECT_NEAR(0.75, pTime->text().toDouble(), 0.01);
                      EXPECT_NEAR(2.5, Part<QLineEdit>(curve, "Size")->text().toDouble(), 0.15);
                      Enter(Part<QLineEdit>(curve, "Size"), "21.5");
                      Desktop::Key("ctrl+f");
                      EXPECT_EQ("0.50", curve.Controls().Get<QPushButton>(eCurve_YMin)->text());
                      EXPECT_EQ("22.50", curve.Controls().Get<QPushButton>(eCurve_YMax)->text());
                      ClickOn(curve.Controls().Find(eCurve_Copy));
                  };
                  desk.EditCurve(dialog, "Size", shape, false);
                  desk.EditCurve(
                      dialog, "Size", [](TemplateDialog&) { Desktop::Key("ctrl+a"); }, false);
              });
    EXPECT_EQ("0 1", TimesOf(desk.Key(1), "Size")) << "cancelled";

    // What was copied goes into the other key, whose curve is the prefab's at first.
    desk.Edit(0,
              [&](TemplateDialog& dialog)
              {
                  desk.EditCurve(dialog, "Size",
                                 [](TemplateDialog& curve)
                                 {
                                     EXPECT_FALSE(curve.Controls().Find(eCurve_Paste)->isEnabled());
                                     Desktop::Click(InCurve(curve, 0.5, 0.5), 3);
                                     EXPECT_EQ("--", curve.Controls().Get<QPushButton>(eCurve_Time)->text())
                                         << "read-only";
                                 });
                  ClickOn(desk.Check(dialog, "Size"));
                  desk.EditCurve(dialog, "Size",
                                 [](TemplateDialog& curve)
                                 {
                                     ClickOn(curve.Controls().Find(eCurve_Paste));
                                     Desktop::Key("ctrl+f");
                                     Desktop::Click(InCurve(curve, 0.75, 1.0 / 22.0)); // the high one
                                     Next([](TemplateDialog&) { Desktop::Type("0.25"); });
                                     ClickOn(curve.Controls().Find(eCurve_Time));
                                 });
              });
    EXPECT_EQ("0 0.25 1", TimesOf(desk.Key(0), "Size"));
    EXPECT_EQ(21.5f, FloatOf(desk.Key(0), "Size", 1));
    EXPECT_EQ("0 1", TimesOf(*desk.Key(0).GetParent(), "Size"));
}

TEST(DesktopProperties, VectorsSwingAndColorsAreStored)
{
    CPropertyDesktop desk;
    const auto swing = [&](TemplateDialog& dialog, bool bOk)
    {
        Next(
            [](TemplateDialog& vector)
            {
                auto* pSide = vector.findChildren<VectorView*>().value(0);
                auto* pMagnitude = vector.Controls().Get<QLineEdit>(eVector_Magnitude);
                Enter(pMagnitude, "10");
                const auto drag = [&](QPoint to)
                {
                    Desktop::Drag(Desktop::On(pSide, {pSide->width() / 2, 4}), Desktop::On(pSide, to));
                    return pSide->grab().toImage();
                };
                // Each drag is a step, and what was typed before it another, wherever the focus is.
                const QImage was = pSide->grab().toImage();
                const QImage right = drag({pSide->width() - 4, pSide->height() / 2});
                EXPECT_FALSE(right == drag({4, pSide->height() / 2}));
                Desktop::Key("ctrl+z");
                EXPECT_TRUE(right == pSide->grab().toImage());
                Desktop::Key("ctrl+z");
                EXPECT_TRUE(was == pSide->grab().toImage());
                EXPECT_EQ("10", pMagnitude->text());
                Desktop::Key("ctrl+y");
                EXPECT_TRUE(right == pSide->grab().toImage());
            },
            bOk);
        for (QPushButton* p : dialog.findChildren<QPushButton*>())
            if (p->text() == QLatin1String("..."))
                ClickOn(p);
        return Part<QLineEdit>(dialog, "Velocity Y")->text().toStdString();
    };
    const auto paint = [&](TemplateDialog& dialog, bool bOk)
    {
        desk.EditCurve(
            dialog, "Color",
            [bOk](TemplateDialog& curve)
            {
                Desktop::Click(InCurve(curve, 0.004, 1.0 / 12.0)); // the first key, with alpha 1
                Next(
                    [](TemplateDialog& chooser)
                    {
                        const auto box = [&](int nID) { return chooser.Controls().Get<QLineEdit>(nID); };
                        auto* pBasic = chooser.findChild<BasicColorsView*>();
                        Desktop::Click(Desktop::On(
                            pBasic, ToQt(CColorChooser::GetBasicRect(FromQt(pBasic->rect()), 17)).center()));
                        EXPECT_EQ("255,0,0",
                                  (box(eColor_RedBox)->text() + "," + box(eColor_GreenBox)->text() + "," +
                                   box(eColor_BlueBox)->text())
                                      .toStdString());
                        Enter(box(eColor_GreenBox), "12");
                        Enter(box(eColor_AlphaBox), "300");
                        auto* pPalette = chooser.findChild<PaletteView*>();
                        Desktop::Click(
                            Desktop::On(pPalette, ToQt(CCustomColorPalette::GetCellRect(9)).center()), 1,
                            "ctrl");
                        ClickOn(chooser.Controls().Find(eColor_DescriptionBox));
                        Desktop::Type("ember");
                        ClickOn(chooser.Controls().Find(eColor_AddButton));
                    },
                    bOk);
                ClickOn(Part<SwatchButton>(curve, "Color"));
            },
            bOk);
    };
    const auto cancelled = [&](TemplateDialog& dialog)
    {
        EXPECT_EQ("1.0000", swing(dialog, false));
        paint(dialog, false);
    };
    desk.Edit(1, cancelled, false);
    EXPECT_EQ("", desk.profile->GetString("Custom Colors", "Color09")) << "Cancel keeps no colour";
    desk.Edit(1,
              [&](TemplateDialog& dialog)
              {
                  EXPECT_EQ("7.071", swing(dialog, true));
                  paint(dialog, true);
              });
    EXPECT_EQ("255,  12,   0, 255", desk.profile->GetString("Custom Colors", "Color09"));
    EXPECT_EQ("ember", desk.profile->GetString("Custom Colors", "DescriptionColor09"));
    EXPECT_EQ(MakePropColor(255, 12, 0, 255), PropOf(desk.Key(1), "Color")->GetKey(0)->m_Data.GetColor());
    EXPECT_FLOAT_EQ(7.071f, PropOf(desk.Key(1), "Velocity")->GetKey(0)->m_Data.GetVector().z);
}

TEST(DesktopProperties, EveryKindSurvivesSaveLoadAndPack)
{
    CPropertyDesktop desk;
    const auto fill = [&](TemplateDialog& dialog)
    {
        Desktop::WhileOpen(desk.File(desk.path("res/Tex/a.dds")));
        ClickOn(Part<PathButton>(dialog, "Texture"));
        auto* pBlend = Part<QComboBox>(dialog, "Blend");
        ClickOn(pBlend);
        EXPECT_TRUE(pBlend->view()->isVisible());
        EXPECT_GE(pBlend->view()->mapToGlobal(QPoint()).y(), Desktop::On(pBlend, {0, pBlend->height()}).y())
            << "the list drops down, and the field stays in sight";
        Desktop::Key("Home");
        Desktop::Key("Return");
        for (const auto& [pszName, pszText] : {std::pair("Count", "12"),
                                               {"Velocity X", "2"},
                                               {"Velocity Y", "-99"},
                                               {"Label", "Fire & Co"},
                                               {"Clip", "walk"},
                                               {"Child", "Smoke"}})
            Enter(Part<QLineEdit>(dialog, pszName), pszText);
        desk.EditCurve(dialog, "Frame",
                       [](TemplateDialog& curve)
                       {
                           Desktop::Click(InCurve(curve, 0.5, 0.2), 3);
                           Enter(Part<QLineEdit>(curve, "Frame"), "5");
                       });
        for (const char* pszCurve : {"Size", "Color"})
            desk.EditCurve(dialog, pszCurve,
                           [](TemplateDialog& curve)
                           {
                               Desktop::Key("ctrl+a");
                               Enter(curve.findChildren<QLineEdit*>().constFirst(), "0.5");
                           });
    };
    // The first key inherits all of it, the second has its own.
    desk.ShowPage(1);
    Desktop::Click(desk.At(desk.pPrefabs, "Puff"));
    Next(fill);
    Desktop::Key("Return");
    desk.Edit(1, fill);
    const auto check = [&](const char* pszWhen)
    {
        for (uint32_t nTrack : {0u, 1u})
        {
            const CKey& key = desk.Key(nTrack);
            EXPECT_EQ(nTrack == 0, OwnPropOf(key, "Count") == nullptr) << pszWhen;
            EXPECT_EQ("Tex\\a.dds Add Fire & Co walk Smoke",
                      TextOf(key, "Texture") + " " + TextOf(key, "Blend") + " " + TextOf(key, "Label") + " " +
                          TextOf(key, "Clip") + " " + TextOf(key, "Child"))
                << pszWhen;
            EXPECT_EQ(12, IntOf(key, "Count")) << pszWhen;
            EXPECT_EQ(5, IntOf(key, "Frame", 1)) << pszWhen;
            EXPECT_EQ(0.5f, FloatOf(key, "Size", 1)) << pszWhen;
            EXPECT_EQ(MakePropColor(255, 255, 255, 127), PropOf(key, "Color")->GetKey(0)->m_Data.GetColor())
                << pszWhen;
            EXPECT_EQ(2.0f, PropOf(key, "Velocity")->GetKey(0)->m_Data.GetVector().x) << pszWhen;
            EXPECT_EQ(-10.0f, PropOf(key, "Velocity")->GetKey(0)->m_Data.GetVector().y)
                << pszWhen << ", in range";
        }
    };
    check("edited");
    desk.App().m_sFileName = desk.path("all.Fx00c");
    Desktop::Key("ctrl+s");
    desk.App().NewEffectFile();
    desk.OpenFile(desk.path("all.Fx00c"));
    check("loaded");
    desk.ChooseFromBar("alt+f", {"Pack Effects"});

    const std::string sBin = EMBERDECK_BIN_DIR;
    const std::string sGame = OutputOf(sBin + "/bonfire --headless --plugin " + sBin +
                                       "/test_modules/TestFireglass.so '" + desk.path("all.Fx00p") + "'");
    for (const char* pszLine :
         {"Texture = \"Tex\\a.dds\"", "Blend = Add", "Count = 12", "Velocity = (2, -10, 0)",
          "Label = \"Fire & Co\"", "[0] 0.5 [0.25] 0.5", "(1, 1, 1, 0.498039)"})
    {
        const size_t nFirst = sGame.find(pszLine);
        ASSERT_NE(std::string::npos, nFirst) << pszLine << "\n" << sGame;
        EXPECT_NE(std::string::npos, sGame.find(pszLine, nFirst + 1)) << pszLine << ": both keys play it";
    }
}
