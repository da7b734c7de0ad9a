#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include "properties/PropertyBench.h"
#include "qt/properties/ColorViews.h"
#include "qt/properties/EditVectorDialog.h"
#include "qt/properties/FunctionCurveDialog.h"
#include "qt/properties/FxPropertiesDialog.h"
#include "qt/properties/QtPropertyDialogs.h"
#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtSurface.h"

namespace
{

// What a person does in the next dialog that opens. One that is still open then is cancelled.
void InNext(const std::function<void(TemplateDialog&)>& act)
{
    QTimer::singleShot(0, qApp,
                       [act]
                       {
                           auto* pDialog = qobject_cast<TemplateDialog*>(QApplication::activeModalWidget());
                           ASSERT_TRUE(pDialog) << "no dialog has opened";
                           EXPECT_TRUE(QTest::qWaitForWindowActive(pDialog));
                           act(*pDialog);
                           if (pDialog->isVisible())
                               pDialog->reject();
                       });
}

void Click(QWidget* pWidget)
{
    ASSERT_TRUE(pWidget && pWidget->isVisible());
    QTest::mouseClick(pWidget, Qt::LeftButton);
}

void PressOk(TemplateDialog& dialog)
{
    Click(dialog.Controls().Find(c_nControlOk));
}

// Replaces all of a box's text, by keys.
void Type(QLineEdit* pEdit, const char* pszText)
{
    ASSERT_TRUE(pEdit && pEdit->isEnabled());
    pEdit->setFocus();
    QTest::keyClick(pEdit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(pEdit, pszText);
}

bool Wheel(QWidget* pWidget, int nDelta)
{
    QWheelEvent wheel(QPointF(3, 3), pWidget->mapToGlobal(QPointF(3, 3)), QPoint(), QPoint(0, nDelta),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    return QApplication::sendEvent(pWidget, &wheel);
}

// The dialogs on a library with a prefab and a key on it.
struct CQtPropertyBench : CPropertyBench
{
    CQtPropertyBench()
    {
        auto builder = Build();
        pPrefab = builder.prefab("Sprite", "Puff").value("Count", 7).value("Label", "R&D <b>").lastSet();
        pKey = builder.effect("Smoke").key("Sprite", 100, 900).name("Plume").onPrefab("Puff").lastKey();
        pFree = builder.key("Sprite", 1000, 900).name("Free").lastKey();
    }

    // By the accessible name, in the dialog.
    template <class TWidget>
    static TWidget* Part(TemplateDialog& dialog, const char* pszName)
    {
        for (TWidget* pWidget : dialog.findChildren<TWidget*>())
            if (pWidget->accessibleName() == QLatin1String(pszName))
                return pWidget;
        ADD_FAILURE() << "no control " << pszName;
        return nullptr;
    }
    static QCheckBox* Check(TemplateDialog& dialog, uint32_t nRow)
    {
        return dialog.findChildren<QCheckBox*>().value(int(nRow));
    }

    CEffectPropertySet* pPrefab = nullptr;
    CKey* pKey = nullptr;
    CKey* pFree = nullptr;
    QtPropertyDialogs qt{context, *profile, nullptr};
};

} // namespace

TEST(PropertyDialogs, TypedSpunAndChosenValuesReachTheKeyOnOk)
{
    CQtPropertyBench bench;
    const auto edit = [&](TemplateDialog& dialog)
    {
        EXPECT_EQ("Free - Sprite", dialog.windowTitle().toStdString());
        EXPECT_FALSE(dialog.Controls().Find(eFXProps_OpenParent)->isVisible());
        auto* pCount = bench.Part<QLineEdit>(dialog, "Count");
        Type(pCount, "41");
        SpinArrows* pSpin = bench.Part<SpinArrows>(dialog, "Count");
        QTest::mouseClick(pSpin, Qt::LeftButton, {}, QPoint(5, 2));
        QTest::keyClick(pCount, Qt::Key_Up);
        EXPECT_EQ("43", pCount->text());
        QTest::mouseClick(pSpin, Qt::LeftButton, {}, QPoint(5, pSpin->height() - 2));
        Type(bench.Part<QLineEdit>(dialog, "Label"), "say \"hi\"");
        auto* pBlend = bench.Part<QComboBox>(dialog, "Blend");
        EXPECT_EQ("Alpha", pBlend->currentText());
        EXPECT_EQ(pCount->height(), pBlend->height());
        pBlend->setFocus();
        QTest::keyClick(pBlend, Qt::Key_Down);
    };
    InNext(edit); // and cancels
    EXPECT_FALSE(bench.qt.EditProperties(*bench.pFree));
    EXPECT_EQ(10, IntOf(*bench.pFree, "Count"));
    InNext(
        [&](TemplateDialog& dialog)
        {
            edit(dialog);
            QTest::keyClick(bench.Part<QLineEdit>(dialog, "Label"), Qt::Key_Return); // Enter in a box is OK
        });
    EXPECT_TRUE(bench.qt.EditProperties(*bench.pFree));
    EXPECT_EQ(42, IntOf(*bench.pFree, "Count"));
    EXPECT_EQ("say 'hi'", TextOf(*bench.pFree, "Label"));
    EXPECT_EQ("Multiply", TextOf(*bench.pFree, "Blend"));
}

TEST(PropertyDialogs, CheckBoxesTieAValueToThePrefab)
{
    CQtPropertyBench bench;
    const uint32_t nCount = SlotOf(*bench.pKey, "Count");
    InNext(
        [&](TemplateDialog& dialog)
        {
            auto* pCount = bench.Part<QLineEdit>(dialog, "Count");
            EXPECT_EQ("R&D <b>", bench.Part<QLineEdit>(dialog, "Label")->text());
            EXPECT_TRUE(bench.Check(dialog, nCount)->isChecked());
            EXPECT_FALSE(pCount->isEnabled());
            QTest::mouseClick(bench.Check(dialog, nCount), Qt::LeftButton);
            Type(pCount, "55");
            QTest::mouseClick(bench.Check(dialog, nCount), Qt::LeftButton);
            EXPECT_EQ("7", pCount->text());

            // The prefab itself, on top; this dialog shows its new value.
            InNext(
                [&](TemplateDialog& nested)
                {
                    EXPECT_EQ(&dialog, nested.parentWidget());
                    Type(bench.Part<QLineEdit>(nested, "Count"), "9");
                    PressOk(nested);
                });
            Click(dialog.Controls().Find(eFXProps_OpenParent));
            EXPECT_EQ("9", pCount->text());

            Click(dialog.Controls().Find(eFXProps_Disconnect));
            EXPECT_TRUE(pCount->isEnabled());
            EXPECT_FALSE(dialog.Controls().Find(eFXProps_Disconnect)->isVisible());
            PressOk(dialog);
        });
    EXPECT_TRUE(bench.qt.EditProperties(*bench.pKey));
    EXPECT_EQ(nullptr, bench.pKey->GetParent());
    EXPECT_EQ(9, IntOf(*bench.pPrefab, "Count"));
    EXPECT_EQ(9, IntOf(*bench.pKey, "Count"));
}

TEST(PropertyDialogs, AWheelScrollsTheListWhateverLiesUnderIt)
{
    CPropertyBench plain(
        [](CTestPlugin& plugin)
        {
            plugin.version(1).type("Big");
            for (int i = 0; i < 60; ++i)
                plugin.prop(ePropType_Enum, ("Choice" + std::to_string(i)).c_str()).data("a,b,c").def("b");
        });
    CKey* pKey = plain.Build().effect("Smoke").key("Big", 0, 100).lastKey();
    QtPropertyDialogs qt(plain.context, *plain.profile, nullptr);
    InNext(
        [&](TemplateDialog& dialog)
        {
            auto* pBar = dialog.Controls().Get<QScrollBar>(eFXProps_ScrollBar);
            const QList<QComboBox*> lists = dialog.findChildren<QComboBox*>();
            EXPECT_TRUE(lists[0]->hasFocus());
            const auto arrow = [&](bool bUp)
            {
                const int n = pBar->width();
                return pBar->grab(QRect(0, bUp ? 0 : pBar->height() - n, n, n)).toImage();
            };
            const QImage greyUp = arrow(true), down = arrow(false);
            EXPECT_TRUE(Wheel(lists[2], -120) && Wheel(pBar, -480));
            EXPECT_EQ(2, pBar->value());
            EXPECT_TRUE(greyUp != arrow(true) && down == arrow(false));
            EXPECT_EQ(1, lists[2]->currentIndex());
            EXPECT_FALSE(lists[1]->isVisible());
            EXPECT_TRUE(lists[2]->hasFocus()) << "the focus went out of sight";

            // Tab past the last row in view scrolls by one.
            const int nLast = 1 + pBar->pageStep();
            lists[nLast]->setFocus();
            QTest::keyClick(lists[nLast], Qt::Key_Tab);
            EXPECT_EQ(3, pBar->value());
            EXPECT_TRUE(lists[nLast + 1]->hasFocus());
            pBar->setValue(pBar->maximum());
            EXPECT_TRUE(down != arrow(false) && greyUp != arrow(true)) << "nothing lies further down";
            EXPECT_TRUE(lists[59]->isVisible());
            lists[59]->setFocus();
            QTest::keyClick(lists[59], Qt::Key_Tab);
            EXPECT_TRUE(dialog.Controls().Find(c_nControlOk)->hasFocus());
        });
    EXPECT_FALSE(qt.EditProperties(*pKey));
}

TEST(PropertyDialogs, ACurveIsDraggedAddedToAndFitted)
{
    CQtPropertyBench bench;
    const auto openCurve = [&](const std::function<void(TemplateDialog&)>& act, bool bOk)
    {
        InNext(
            [&bench, act, bOk](TemplateDialog& dialog)
            {
                InNext(
                    [act, bOk](TemplateDialog& curve)
                    {
                        act(curve);
                        if (bOk)
                            PressOk(curve);
                    });
                Click(bench.Part<QPushButton>(dialog, "Size"));
                PressOk(dialog);
            });
        EXPECT_TRUE(bench.qt.EditProperties(*bench.pFree));
    };
    const auto addKey = [](TemplateDialog& dialog)
    {
        auto* pArea = dialog.findChild<CurveArea*>();
        QTest::mouseClick(pArea, Qt::RightButton, {}, QPoint(pArea->width() / 2, pArea->height() / 4));
    };
    openCurve(addKey, false);
    EXPECT_EQ("0 1", TimesOf(*bench.pFree, "Size"));

    openCurve(
        [&](TemplateDialog& dialog)
        {
            auto* pArea = dialog.findChild<CurveArea*>();
            auto* pTime = dialog.Controls().Get<QPushButton>(eCurve_Time);
            auto* pSize = bench.Part<QLineEdit>(dialog, "Size");
            EXPECT_EQ("--", pTime->text());
            EXPECT_FALSE(pSize->isVisible());
            EXPECT_FALSE(dialog.Controls().Find(eCurve_Axis)->isVisible());
            addKey(dialog);
            EXPECT_TRUE(pSize->isVisible() && pTime->isEnabled());

            const QPoint from(pArea->width() / 2, pArea->height() / 4);
            const QPoint to(pArea->width() / 4, pArea->height() / 4);
            QTest::mousePress(pArea, Qt::LeftButton, {}, from);
            for (const QPoint& pt : {from + QPoint(-6, 0), to})
            {
                QMouseEvent move(QEvent::MouseMove, pt, pArea->mapToGlobal(pt), Qt::NoButton, Qt::LeftButton,
                                 Qt::NoModifier);
                QApplication::sendEvent(pArea, &move);
            }
            QTest::mouseRelease(pArea, Qt::LeftButton, {}, to);
            EXPECT_NEAR(0.25, pTime->text().toDouble(), 0.005);
            pSize->setFocus(); // which has a use of its own for Ctrl+A
            QTest::keyClick(pSize, Qt::Key_A, Qt::ControlModifier);
            EXPECT_EQ("--", pTime->text());
            pSize->setText(QString());
            QTest::keyClicks(pSize, "4");
            QTest::keyClick(pSize, Qt::Key_F, Qt::ControlModifier);
            EXPECT_EQ("-6.00", dialog.Controls().Get<QPushButton>(eCurve_YMin)->text());
            QTest::keyClick(pSize, Qt::Key_U, Qt::ControlModifier);
            EXPECT_EQ(dialog.Controls().Find(c_nControlOk), dialog.focusWidget());
        },
        true);
    CEffectProperty* pSize = PropOf(*bench.pFree, "Size");
    ASSERT_EQ(3u, pSize->GetNumKeys());
    EXPECT_NEAR(0.25, pSize->GetKey(1)->m_fTime, 0.005);
    EXPECT_EQ(4.0f, FloatOf(*bench.pFree, "Size", 2));
}

TEST(PropertyDialogs, AVectorIsSwungAndGoesBackToItsBoxes)
{
    CQtPropertyBench bench;
    InNext(
        [&](TemplateDialog& dialog)
        {
            auto* pButton = dialog.findChildren<QPushButton*>().value(0);
            for (QPushButton* p : dialog.findChildren<QPushButton*>())
                pButton = p->text() == QLatin1String("...") ? p : pButton;
            InNext(
                [&](TemplateDialog& vector)
                {
                    auto* pMagnitude = vector.Controls().Get<QLineEdit>(eVector_Magnitude);
                    auto* pSide = vector.findChildren<VectorView*>().value(0);
                    const QPoint centre = pSide->rect().center();
                    auto* pPresets = vector.Controls().Get<QComboBox>(eVector_Presets);
                    for (Qt::Key eKey : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up})
                    {
                        QTest::keyClick(pPresets, eKey);
                        EXPECT_EQ(-1, pPresets->currentIndex());
                    }
                    const int nTip = std::min(pSide->width() / 2, pSide->height() / 2);
                    EXPECT_EQ(qRgb(255, 255, 255), pSide->grab().toImage().pixel(
                                                       pSide->width() / 2, pSide->height() / 2 + nTip - 2))
                        << "from Up to Down, Left, and back to Down";
                    QTest::keyClick(pPresets, Qt::Key_Home);
                    QTest::mousePress(pSide, Qt::LeftButton, {}, QPoint(pSide->width() / 2, 2));
                    const QPointF right(pSide->width() - 2, pSide->height() / 2);
                    QMouseEvent move(QEvent::MouseMove, right, pSide->mapToGlobal(right), Qt::NoButton,
                                     Qt::LeftButton, Qt::NoModifier);
                    QApplication::sendEvent(pSide, &move);
                    QTest::mouseRelease(pSide, Qt::LeftButton, {}, centre);
                    Type(pMagnitude, "nothing");
                    bench.prompts.onAsk("Enter a number.");
                    PressOk(vector);
                    EXPECT_TRUE(vector.isVisible() && pMagnitude->selectedText() == QLatin1String("nothing"));
                    QTest::keyClicks(pMagnitude, "10");
                    PressOk(vector);
                });
            Click(pButton);
            EXPECT_EQ("7.071", bench.Part<QLineEdit>(dialog, "Velocity Y")->text());
            EXPECT_EQ("7.071", bench.Part<QLineEdit>(dialog, "Velocity Z")->text());
        });
    EXPECT_FALSE(bench.qt.EditProperties(*bench.pFree));
}

TEST(PropertyDialogs, AColorIsChosenAndThePaletteKept)
{
    CQtPropertyBench bench;
    const auto choose = [&](bool bOk)
    {
        CKRColorDialog dialog(bench.services, 0x102030, 0x103);
        InNext(
            [&](TemplateDialog& window)
            {
                const CTemplateControls& controls = window.Controls();
                EXPECT_EQ("48", controls.Get<QLineEdit>(eColor_RedBox)->text());
                auto* pBasic = window.findChild<BasicColorsView*>();
                QTest::mouseClick(pBasic, Qt::LeftButton, {},
                                  ToQt(CColorChooser::GetBasicRect(FromQt(pBasic->rect()), 17)).center());
                EXPECT_EQ("255", controls.Get<QLineEdit>(eColor_RedBox)->text());
                Type(controls.Get<QLineEdit>(eColor_GreenBox), "12");
                Type(controls.Get<QLineEdit>(eColor_BlueBox), "0");
                Type(controls.Get<QLineEdit>(eColor_AlphaBox), "300");

                // The description belongs to the cell that was selected while it was typed.
                auto* pDescription = controls.Get<QPlainTextEdit>(eColor_DescriptionBox);
                EXPECT_EQ(QRect(QPoint(9, controls.PlaceOf(eColor_DescriptionBox).y()),
                                QSize(195, controls.PlaceOf(eColor_DescriptionBox).height())),
                          pDescription->geometry());
                pDescription->setFocus();
                EXPECT_EQ("255", controls.Get<QLineEdit>(eColor_AlphaBox)->text());
                QTest::keyClicks(pDescription, "skin");
                auto* pPalette = window.findChild<PaletteView*>();
                QTest::mouseClick(pPalette, Qt::LeftButton, Qt::ControlModifier,
                                  ToQt(CCustomColorPalette::GetCellRect(9)).center());
                EXPECT_TRUE(pPalette->hasFocus());
                EXPECT_EQ("", pDescription->toPlainText());
                EXPECT_EQ("12", controls.Get<QLineEdit>(eColor_GreenBox)->text());
                Click(controls.Find(eColor_AddButton));
                if (bOk)
                    PressOk(window);
            });
        const bool bAccepted = bench.qt.RunColor(dialog);
        EXPECT_EQ(bOk, bAccepted);
        return dialog.m_nResultColor;
    };
    choose(false);
    EXPECT_EQ("", bench.profile->GetString("Custom Colors", "Color09"));
    EXPECT_EQ(0xFF000CFFu, choose(true));
    EXPECT_EQ("255,  12,   0, 255", bench.profile->GetString("Custom Colors", "Color09"));
    EXPECT_EQ("skin", bench.profile->GetString("Custom Colors", "DescriptionColor00"));
}
