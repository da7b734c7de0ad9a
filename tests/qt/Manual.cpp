#include "qt/ManualWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QRegularExpression>
#include <QTest>
#include <QTextBlock>

#include "support/ScriptedPrompts.h"
#include "support/TempDir.h"

namespace
{

const QString c_sManual = QStringLiteral(EMBERDECK_SOURCE_DIR "/docs/manual");

ManualWindow* OpenWindow()
{
    for (QWidget* pWidget : QApplication::topLevelWidgets())
        if (auto* pWindow = qobject_cast<ManualWindow*>(pWidget))
            return pWindow;
    return nullptr;
}

} // namespace

TEST(Manual, HelpOpensItOnceAndSaysWhereItWasLookedForWhenItIsMissing)
{
    CTempDir empty;
    const QString sNone = QString::fromStdString(empty.dir());
    QWidget owner;
    CScriptedPrompts prompts;
    QMenu missing(&owner), help(&owner);
    help.addAction("&About");
    AddManualItem(missing, &owner, prompts, {sNone, sNone + "/further"});
    AddManualItem(help, &owner, prompts, {sNone, c_sManual});
    ASSERT_EQ("&Manual", help.actions().value(0)->text());
    EXPECT_EQ("&About", help.actions().constLast()->text());

    prompts.onAsk(empty.dir() + "/further");
    missing.actions().value(0)->trigger();
    EXPECT_EQ(nullptr, OpenWindow());

    help.actions().value(0)->trigger();
    ManualWindow* pWindow = OpenWindow();
    ASSERT_NE(nullptr, pWindow);
    help.actions().value(0)->trigger();
    EXPECT_EQ(pWindow, OpenWindow());
    pWindow->close();
}

// Every link of every page leads to a page, and to a heading in it; every picture is there.
TEST(Manual, LinksLeadSomewhere)
{
    ManualWindow window(c_sManual, nullptr);
    window.show();
    QTextBrowser& browser = *window.Browser();
    int nLinks = 0;
    for (const QFileInfo& page : QDir(c_sManual).entryInfoList({"*.md"}))
    {
        QFile file(page.filePath());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        QString sText = QString::fromUtf8(file.readAll());
        sText.remove(QRegularExpression("```.*?```", QRegularExpression::DotMatchesEverythingOption));
        const QUrl base = QUrl::fromLocalFile(page.filePath());
        for (auto it = QRegularExpression(R"(\]\(([^)\s]+)\))").globalMatch(sText); it.hasNext(); ++nLinks)
        {
            const QUrl url = base.resolved(QUrl(it.next().captured(1)));
            ASSERT_TRUE(QFileInfo::exists(url.toLocalFile()))
                << page.fileName().toStdString() << ": " << url.toString().toStdString();
            if (!url.hasFragment())
                continue;
            browser.setSource(url.adjusted(QUrl::RemoveFragment));
            browser.moveCursor(QTextCursor::End); // which is no heading
            browser.setSource(url);
            EXPECT_GT(browser.textCursor().block().blockFormat().headingLevel(), 0)
                << page.fileName().toStdString() << ": no heading for " << url.toString().toStdString();
        }
    }
    EXPECT_GT(nLinks, 100);
}
