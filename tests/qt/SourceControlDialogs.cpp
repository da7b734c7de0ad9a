#include <algorithm>

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include "platform/Process.h"
#include "qt/sourcecontrol/SourceControlFront.h"
#include "qt/sourcecontrol/SourceControlHistory.h"
#include "shared/sourcecontrol/BuiltInProviders.h"
#include "support/TempDir.h"

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
    const auto pLocator = front.MakeLocator(registry, nullptr);
    CClassId id;
    InNext<ProviderChooser>(
        [](ProviderChooser& dialog)
        {
            auto* pList = dialog.findChild<QListWidget*>();
            EXPECT_EQ(3, pList->count());
            EXPECT_EQ(2, pList->currentRow()) << "nothing is known of the file: without";
            QTest::keyClick(pList, Qt::Key_Up);
            QTest::keyClick(pList, Qt::Key_Return);
        });
    EXPECT_FALSE(pLocator->SelectProvider(id, false).Failed())
        << "others than the built-in ones may know the file";
    EXPECT_EQ(b, id);
    InNext<ProviderChooser>(
        [](ProviderChooser& dialog)
        {
            QTest::keyClick(dialog.findChild<QListWidget*>(), Qt::Key_End);
            QTest::mouseClick(Button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
        });
    EXPECT_FALSE(pLocator->SelectProvider(id, true).Failed());
    EXPECT_TRUE(id.IsZero());
    InNext<ProviderChooser>([](ProviderChooser& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_TRUE(pLocator->SelectProvider(id, true).Failed());
}

TEST(SourceControlDialogs, NobodyIsAskedWhereThereIsNothingToChoose)
{
    CTempDir dir;
    std::string sFile = dir.path("outside.Fx00a");
    QWidget window;
    QtSourceControl front;
    front.SetOwner(&window, [&sFile] { return sFile; });
    CProviderRegistry registry;
    RegisterBuiltInProviders(registry, {});
    const auto pLocator = front.MakeLocator(registry, nullptr);
    CClassId id({0xA});
    EXPECT_EQ(c_nSourceControlUnasked, pLocator->SelectProvider(id, false).m_nCode);
    EXPECT_TRUE(id.IsZero());

    // In a work copy it's asked, and the system of that one offered first; and wherever somebody calls for it.
    ASSERT_EQ(0, RunProcess("git", {"init", "-q", dir.path("copy")}, "", 60000).m_nExitCode);
    sFile = dir.path("copy/a.Fx00a");
    const auto accept = [](ProviderChooser& dialog)
    { QTest::mouseClick(Button(dialog, QDialogButtonBox::Ok), Qt::LeftButton); };
    InNext<ProviderChooser>(accept);
    EXPECT_EQ(0u, pLocator->SelectProvider(id, false).m_nCode);
    EXPECT_EQ(registry.IdFromText("git"), id);
    sFile.clear();
    InNext<ProviderChooser>(accept);
    EXPECT_EQ(0u, pLocator->SelectProvider(id, true).m_nCode);
    EXPECT_TRUE(id.IsZero());
}

TEST(SourceControlDialogs, FolderIsAskedForBesideTheLibraryAndWithTheReason)
{
    CTempDir dir;
    QWidget window;
    QtSourceControl front;
    front.SetOwner(&window, [&dir] { return dir.path("a.Fx00a"); });
    InNext<QFileDialog>(
        [](QFileDialog& dialog)
        {
            const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
            EXPECT_TRUE(std::any_of(labels.begin(), labels.end(),
                                    [](const QLabel* pLabel)
                                    { return pLabel->text() == QStringLiteral("there is none"); }));
            static_cast<QDialog&>(dialog).accept();
        });
    std::string sFolder;
    EXPECT_TRUE(front.ChooseWorkCopy("Git", "there is none", sFolder));
    EXPECT_EQ(dir.dir(), sFolder);
    InNext<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    EXPECT_FALSE(front.ChooseWorkCopy("Git", "", sFolder));
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
