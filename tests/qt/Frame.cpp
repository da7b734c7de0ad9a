#include <QAbstractButton>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "platform/Profile.h"
#include "qt/Appearance.h"
#include "qt/AssertDialog.h"
#include "qt/MainWindow.h"
#include "support/LibraryBuilder.h"
#include "support/RecordingSourceControl.h"

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
    window.resize(1300, 800);
    window.show();
    for (const auto& pSpell : app.m_SpellMgr.Spells())
        window.Open(*pSpell);
    auto* pArea = window.findChild<QMdiArea*>();
    const QList<QMdiSubWindow*> children = pArea->subWindowList();
    ASSERT_EQ(40, children.size());
    for (qsizetype i = 0; i < children.size(); ++i)
    {
        EXPECT_TRUE(pArea->viewport()->rect().contains(children[i]->geometry())) << i;
        EXPECT_GE(children[i]->height(), 440);
        EXPECT_TRUE(i == 0 || children[i]->pos() != children[i - 1]->pos()) << i;
    }
    window.CloseAll();
    window.Open(*app.m_SpellMgr.Spells().front());
    EXPECT_EQ(QPoint(0, 0), pArea->subWindowList().constFirst()->pos()) << "from the start again";
    window.CloseAll();
    app.NewEffectFile();
}
