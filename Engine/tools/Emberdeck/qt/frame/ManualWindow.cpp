#include "qt/frame/ManualWindow.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHash>
#include <QImage>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QVBoxLayout>

#include "platform/IPrompts.h"

namespace
{

constexpr const char* c_szFirstPage = "README.md";
constexpr const char* c_szKeysPage = "shortcuts.md";

// Shows pictures no wider than a page, or than their column in a table, and keeps to files: a page can't fetch
// anything.
class ManualBrowser : public QTextBrowser
{
public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int nType, const QUrl& name) override
    {
        const QUrl url = source().resolved(name);
        if (nType == QTextDocument::ImageResource)
        {
            // In true colours: a picture of few colours would be made smaller by leaving out points.
            const QImage image = QImage(url.isLocalFile() ? url.toLocalFile() : QString())
                                     .convertToFormat(QImage::Format_RGB32);
            const int nMaxWidth = m_MaxWidths.value(name.fileName(), c_nPageWidth);
            return image.width() > nMaxWidth ? image.scaledToWidth(nMaxWidth, Qt::SmoothTransformation)
                                             : image;
        }
        QVariant page = QTextBrowser::loadResource(nType, name);
        if (nType == QTextDocument::MarkdownResource)
            NoteTables(QString::fromUtf8(page.toByteArray()));
        return page;
    }

private:
    static constexpr int c_nPageWidth = 780;

    void NoteTables(const QString& sPage)
    {
        static const QRegularExpression s_Picture(QStringLiteral("!\\[[^\\]]*\\]\\(([^)]+)\\)"));
        m_MaxWidths.clear();
        for (const QString& sLine : sPage.split(QLatin1Char('\n')))
        {
            if (!sLine.startsWith(QLatin1Char('|')))
                continue;
            QStringList names;
            for (auto it = s_Picture.globalMatch(sLine); it.hasNext();)
                names << QUrl(it.next().captured(1)).fileName();
            for (const QString& sName : names)
                m_MaxWidths[sName] = c_nPageWidth / int(names.size()) - 10;
        }
    }

    QHash<QString, int> m_MaxWidths; // of pictures in tables, by file name
};

// The name that a link within a page gives to a heading.
QString HeadingName(const QString& sText)
{
    QString sName;
    for (const QChar c : sText.toLower())
    {
        if (c.isLetterOrNumber() || c == QLatin1Char('-') || c == QLatin1Char('_'))
            sName += c;
        else if (c == QLatin1Char(' '))
            sName += QLatin1Char('-');
    }
    return sName;
}

} // namespace

ManualWindow::ManualWindow(const QString& sFolder, QWidget* pParent)
    : QDialog(pParent),
      m_sFolder(sFolder),
      m_pBrowser(new ManualBrowser(this))
{
    setWindowTitle(tr("Emberdeck Manual"));
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    m_pBrowser->setAccessibleName(tr("Page of the manual"));
    m_pBrowser->setOpenExternalLinks(true);

    auto* pBar = new QHBoxLayout;
    const auto addButton = [&](const QString& sText, void (QTextBrowser::*pfnGo)())
    {
        auto* pButton = new QPushButton(sText, this);
        pButton->setAutoDefault(false);
        connect(pButton, &QPushButton::clicked, this, [this, pfnGo] { (m_pBrowser->*pfnGo)(); });
        pBar->addWidget(pButton);
        return pButton;
    };
    auto* pBack = addButton(tr("&Back"), &QTextBrowser::backward);
    auto* pForward = addButton(tr("&Forward"), &QTextBrowser::forward);
    addButton(tr("&Contents"), &QTextBrowser::home);
    pBar->addStretch();
    pBack->setEnabled(false);
    pForward->setEnabled(false);
    connect(m_pBrowser, &QTextBrowser::backwardAvailable, pBack, &QPushButton::setEnabled);
    connect(m_pBrowser, &QTextBrowser::forwardAvailable, pForward, &QPushButton::setEnabled);
    connect(m_pBrowser, &QTextBrowser::sourceChanged, this, &ManualWindow::OnSourceChanged);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->addLayout(pBar);
    pLayout->addWidget(m_pBrowser);
    ShowPage(QLatin1String(c_szFirstPage));
    m_pBrowser->setFocus();
    resize(900, 760);
}

void ManualWindow::ShowPage(const QString& sPage)
{
    m_pBrowser->setSource(QUrl::fromLocalFile(m_sFolder + QLatin1Char('/') + sPage),
                          QTextDocument::MarkdownResource);
}

// Headings have no anchors of their own in a page that was read from Markdown.
void ManualWindow::OnSourceChanged(const QUrl& source)
{
    const QString sWanted = source.fragment();
    if (sWanted.isEmpty())
        return;
    for (QTextBlock block = m_pBrowser->document()->begin(); block.isValid(); block = block.next())
    {
        if (block.blockFormat().headingLevel() == 0 || HeadingName(block.text()) != sWanted)
            continue;
        QTextCursor cursor(block);
        m_pBrowser->setTextCursor(cursor);
        QScrollBar* pScroll = m_pBrowser->verticalScrollBar();
        pScroll->setValue(pScroll->value() + m_pBrowser->cursorRect(cursor).top());
        return;
    }
}

QStringList ManualWindow::GetFolders()
{
    const QDir program(QCoreApplication::applicationDirPath());
    QStringList folders;
    for (const char* pszPlace : {"docs/manual", "../docs/manual", "../../../docs/manual",
                                 "../share/emberdeck/manual", "../../../share/emberdeck/manual"})
        folders << QDir::cleanPath(program.filePath(QLatin1String(pszPlace)));
    folders << QStringLiteral("/usr/share/emberdeck/manual");
    folders.removeDuplicates();
    return folders;
}

QString ManualWindow::FindFolder(const QStringList& folders)
{
    for (const QString& sFolder : folders)
        if (QFileInfo(sFolder + QLatin1Char('/') + QLatin1String(c_szFirstPage)).isFile())
            return sFolder;
    return QString();
}

namespace
{

// Null, behind a message: there is no manual.
ManualWindow* OpenManual(QWidget* pOwner, IPrompts& prompts, const QStringList& folders)
{
    for (QWidget* pWidget : QApplication::topLevelWidgets())
        if (auto* pOpen = qobject_cast<ManualWindow*>(pWidget); pOpen && pOpen->isVisible())
            return pOpen;
    const QString sFolder = ManualWindow::FindFolder(folders);
    if (sFolder.isEmpty())
    {
        const QString sText = QObject::tr("The manual isn't there. It was looked for in\n\n%1\n\n"
                                          "Please install it, or read it where the program's source is.");
        prompts.Ask(sText.arg(folders.join(QLatin1Char('\n'))).toStdString(), "Emberdeck", EButtons::eOk,
                    EIcon::eExclamation);
        return nullptr;
    }
    auto* pWindow = new ManualWindow(sFolder, pOwner);
    pWindow->setAttribute(Qt::WA_DeleteOnClose);
    return pWindow;
}

} // namespace

void AddManualItems(QMenu& helpMenu, QWidget* pOwner, IPrompts& prompts, const QStringList& folders)
{
    auto* pManual = new QAction(QObject::tr("&Manual"), &helpMenu);
    pManual->setShortcut(QKeySequence(Qt::Key_F1));
    auto* pKeys = new QAction(QObject::tr("&Keyboard and Mouse"), &helpMenu);
    QAction* pFirst = helpMenu.actions().value(0);
    helpMenu.insertActions(pFirst, {pManual, pKeys});
    helpMenu.insertSeparator(pFirst);
    for (QAction* pAction : {pManual, pKeys})
        QObject::connect(pAction, &QAction::triggered, pOwner,
                         [pOwner, &prompts, folders, bKeys = pAction == pKeys]
                         {
                             ManualWindow* pWindow = OpenManual(pOwner, prompts, folders);
                             if (!pWindow)
                                 return;
                             if (bKeys)
                                 pWindow->ShowPage(QLatin1String(c_szKeysPage));
                             pWindow->show();
                             pWindow->raise();
                             pWindow->activateWindow();
                         });
}
