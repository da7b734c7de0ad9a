#include "qt/frame/ManualWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QRegularExpression>
#include <QTest>
#include <QTextBlock>

#include <span>

#include "shell/MenuDecorator.h"

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
    AddManualItems(missing, &owner, prompts, {sNone, sNone + "/further"});
    AddManualItems(help, &owner, prompts, {sNone, c_sManual});
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
    help.actions().value(1)->trigger();
    EXPECT_EQ(pWindow, OpenWindow());
    EXPECT_EQ("shortcuts.md", pWindow->Browser()->source().fileName());
    pWindow->close();
}

// The page tells each key that the program has, where it has it, and no other with Ctrl.
TEST(Manual, KeysAreTheProgramsOwn)
{
    QFile file(c_sManual + "/shortcuts.md");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString sPage = QString::fromUtf8(file.readAll());
    const auto section = [&](const char* pszHeading)
    { return sPage.section(QStringLiteral("## %1\n").arg(pszHeading), 1).section("\n## ", 0, 0); };
    const auto expect = [&](const char* pszHeading, std::span<const CAccelerator> table, ECommandOwner eOwner)
    {
        const QString sSection = section(pszHeading);
        QStringList known = {"Ctrl+F4"}; // a key of the window's panes, in no table
        for (const CAccelerator& accelerator : table)
        {
            const CCommand* pCommand = FindCommand(accelerator.m_nID);
            if (!pCommand || (pCommand->m_eOwner != eOwner && pCommand->m_eOwner != ECommandOwner::ePanels))
                continue;
            std::string sText;
            ASSERT_TRUE(GetAcceleratorText(accelerator, sText));
            known << QString::fromStdString(sText);
            // The find keys of the timeline's table end there without effect.
            const bool bDead =
                eOwner == ECommandOwner::eTimeline && pCommand->m_eOwner == ECommandOwner::ePanels;
            const QRegularExpression key("[| ,]" + QRegularExpression::escape(known.constLast()) + "[ ,|]");
            EXPECT_EQ(!bDead, sSection.contains(key)) << pszHeading << ": " << sText;
        }
        for (auto it =
                 QRegularExpression("Ctrl\\+(?:[A-Z]|F\\d+|Insert|Delete)(?=[ ,|])").globalMatch(sSection);
             it.hasNext();)
        {
            const QString sKey = it.next().captured();
            EXPECT_TRUE(known.contains(sKey)) << pszHeading << ": there is no " << sKey.toStdString();
        }
    };
    expect("Everywhere", c_FrameAccelerators, ECommandOwner::eApplication);
    expect("The library's tree", c_PanelAccelerators, ECommandOwner::ePanels);
    expect("Timeline", c_TimelineAccelerators, ECommandOwner::eTimeline);
    expect("Curve dialog", c_CurveAccelerators, ECommandOwner::eCurveDialog);
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
