#include <QApplication>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include "qt/SourceControlFront.h"
#include "qt/SourceControlHistory.h"

namespace
{

// What a person does in the next dialog, which must be closed by that.
template <class TDialog>
void InNext(const std::function<void(TDialog&)>& act)
{
    QTimer::singleShot(0, qApp,
                       [act]
                       {
                           auto* pDialog = qobject_cast<TDialog*>(QApplication::activeModalWidget());
                           ASSERT_TRUE(pDialog) << "no such dialog has opened";
                           act(*pDialog);
                           if (!pDialog->isVisible())
                               return;
                           ADD_FAILURE() << "the dialog is still open";
                           pDialog->reject();
                       });
}

QPushButton* Button(QDialog& dialog, QDialogButtonBox::StandardButton eButton)
{
    return dialog.findChild<QDialogButtonBox*>()->button(eButton);
}

} // namespace

TEST(SourceControlDialogs, ProviderOrNoneIsChosen)
{
    const CClassId a({0xA}), b({0xB});
    CProviderRegistry registry;
    registry.Register(a, "Alpha", [] { return nullptr; });
    registry.Register(b, "Beta", [] { return nullptr; });
    QtSourceControl front;
    const auto pLocator = front.MakeLocator(registry);
    CClassId id;
    InNext<ProviderChooser>(
        [](ProviderChooser& dialog)
        {
            auto* pList = dialog.findChild<QListWidget*>();
            EXPECT_EQ(3, pList->count());
            QTest::keyClick(pList, Qt::Key_Down);
            QTest::keyClick(pList, Qt::Key_Return);
        });
    EXPECT_FALSE(pLocator->SelectProvider(id).Failed());
    EXPECT_EQ(b, id);
    InNext<ProviderChooser>(
        [](ProviderChooser& dialog)
        {
            QTest::keyClick(dialog.findChild<QListWidget*>(), Qt::Key_End);
            QTest::mouseClick(Button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
        });
    EXPECT_FALSE(pLocator->SelectProvider(id).Failed());
    EXPECT_TRUE(id.IsZero());
    InNext<ProviderChooser>([](ProviderChooser& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_TRUE(pLocator->SelectProvider(id).Failed());
}

TEST(SourceControlDialogs, ChangeIsDescribedInUtf8)
{
    QtSourceControl front;
    std::string sText = "suggested";
    InNext<ChangeDescription>(
        [](ChangeDescription& dialog)
        {
            auto* pText = dialog.findChild<QPlainTextEdit*>();
            pText->setPlainText(QStringLiteral(" \n "));
            EXPECT_FALSE(Button(dialog, QDialogButtonBox::Ok)->isEnabled());
            pText->setPlainText(QStringLiteral("Gl\u00fchend\n\n- more \n"));
            QTest::mouseClick(Button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
        });
    EXPECT_TRUE(front.DescribeChange("/a/b.Fx00c", sText));
    EXPECT_EQ("Gl\xC3\xBChend\n\n- more", sText);
    InNext<ChangeDescription>([](ChangeDescription& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_FALSE(front.DescribeChange("/a/b.Fx00c", sText));
}

TEST(SourceControlDialogs, HistoryShowsAllThatWasSaid)
{
    QtSourceControl front;
    InNext<SourceControlHistory>(
        [](SourceControlHistory& window)
        {
            auto* pList = window.findChild<QTreeWidget*>();
            ASSERT_EQ(2, pList->topLevelItemCount());
            EXPECT_EQ(QStringLiteral("Hot\u00e9r"), pList->topLevelItem(0)->text(3));
            auto* pText = window.findChild<QPlainTextEdit*>();
            EXPECT_EQ(QStringLiteral("Hot\u00e9r\n<b>why</b>"), pText->toPlainText());
            QTest::keyClick(pList, Qt::Key_Down);
            EXPECT_EQ(QStringLiteral("first"), pText->toPlainText());
            QTest::mouseClick(Button(window, QDialogButtonBox::Close), Qt::LeftButton);
        });
    front.ShowHistory("/a/Feu\xE9.Fx00c", {{"r2", "Ada", "2026-11-24 12:00", "Hot\xC3\xA9r\n<b>why</b>"},
                                           {"r1", "Bob", "2026-11-23 12:00", "first"}});
}
