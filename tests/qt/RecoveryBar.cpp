#include "qt/frame/RecoveryBar.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "support/JournalBench.h"

namespace
{
QPushButton* Button(RecoveryBar& bar, const QString& sText)
{
    for (auto* pButton : bar.findChildren<QPushButton*>())
        if (pButton->text().remove(QLatin1Char('&')) == sText)
            return pButton;
    return nullptr;
}
} // namespace

TEST(RecoveryBar, OffersWhatACrashHasLeft)
{
    CJournalBench bench;
    bench.Rename("Campfire");
    const std::string sCrash = bench.Crash().GetDirectory();
    bench.app.reset(); // two can't share the plug-in
    CAppBench other;
    std::filesystem::copy(sCrash, other.dir.path("journals"));
    other.app->Journal().TurnOn();
    QWidget window;
    auto* pBar = new RecoveryBar(*other.app, &window);
    QMenu menu;
    pBar->AddMenu(menu);
    window.show();
    EXPECT_TRUE(pBar->isHidden());
    pBar->OfferAll();
    ASSERT_FALSE(pBar->isHidden());
    EXPECT_TRUE(pBar->findChild<QLabel*>()->text().startsWith("Unsaved work: 1 change to bonfire.Fx00a at "));

    Button(*pBar, "Keep for Later")->click();
    EXPECT_TRUE(pBar->isHidden());
    pBar->OfferAll();
    EXPECT_TRUE(pBar->isHidden()) << "only the menu has it now";
    emit menu.aboutToShow();
    ASSERT_TRUE(menu.actions().constFirst()->text().startsWith("1 change to bonfire.Fx00a at "));
    menu.actions().constFirst()->trigger();
    ASSERT_FALSE(pBar->isHidden());

    // It opens the file, and what is brought back is safe within a second.
    QSignalSpy brought(pBar, &RecoveryBar::BroughtBack);
    other.prompts.onAsk("checkout the following file", EAnswer::eNo);
    Button(*pBar, "Bring Back")->click();
    EXPECT_TRUE(pBar->isHidden());
    ASSERT_EQ(1, brought.size());
    EXPECT_EQ("Brought back 1 change.", brought[0][0].toString());
    EXPECT_TRUE(other.app->m_SpellMgr.FindSpell("Campfire"));
    EXPECT_EQ(0u, other.app->Journals().List().size());
    EXPECT_TRUE(QTest::qWaitFor([&] { return other.app->Journal().IsSynced(); }, 2000));
    emit menu.aboutToShow();
    EXPECT_EQ("No Unsaved Work", menu.actions().constFirst()->text());

    // What can't be read can only be kept or dropped.
    other.dir.write("journals/01234567890123456789-01234567.journal", "nothing");
    pBar->OfferAll();
    EXPECT_FALSE(Button(*pBar, "Bring Back")->isEnabled());
    Button(*pBar, "Drop")->click();
    EXPECT_TRUE(pBar->isHidden() && other.app->Journals().List().empty());
}
