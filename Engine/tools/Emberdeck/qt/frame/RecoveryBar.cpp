#include "qt/frame/RecoveryBar.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>

#include "app/EmberdeckApp.h"
#include "app/Recovery.h"
#include "qt/toolkit/QtText.h"

namespace
{
constexpr int c_nSyncMs = 800;

QColor Mixed(const QColor& colour, const QColor& with, int nPercent)
{
    const auto mix = [nPercent](int a, int b) { return (a * (100 - nPercent) + b * nPercent) / 100; };
    return QColor(mix(colour.red(), with.red()), mix(colour.green(), with.green()),
                  mix(colour.blue(), with.blue()));
}
} // namespace

RecoveryBar::RecoveryBar(CEmberdeckApp& app, QWidget* pParent)
    : QFrame(pParent),
      m_App(app),
      m_pText(new QLabel(this)),
      m_pBringBack(new QPushButton(tr("&Bring Back"), this))
{
    hide();
    setObjectName(QStringLiteral("RecoveryBar"));
    setAccessibleName(tr("Unsaved Work"));
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    SetColors();
    m_pText->setWordWrap(true);
    m_pText->setTextFormat(Qt::PlainText);
    auto* pKeep = new QPushButton(tr("&Keep for Later"), this);
    auto* pDrop = new QPushButton(tr("Dro&p"), this);
    m_pBringBack->setToolTip(tr("Puts these changes into the library, as one step that can be undone"));
    pKeep->setToolTip(tr("File > Recover has them for a fortnight"));
    pDrop->setToolTip(tr("Forgets these changes for good"));
    auto* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(10, 5, 8, 5);
    pLayout->addWidget(m_pText, 1);
    for (QPushButton* pButton : {m_pBringBack, pKeep, pDrop})
    {
        pButton->setAutoDefault(false);
        pLayout->addWidget(pButton);
    }
    connect(m_pBringBack, &QPushButton::clicked, this, &RecoveryBar::BringBackFirst);
    connect(pKeep, &QPushButton::clicked, this,
            [this]
            {
                CJournalStore::Keep(m_Entries.front().m_sStem);
                ShowNext();
            });
    connect(pDrop, &QPushButton::clicked, this,
            [this]
            {
                CJournalStore::Remove(m_Entries.front().m_sStem);
                ShowNext();
            });
    m_App.Journal().m_OnUnsynced = [this]
    {
        if (std::exchange(m_bSyncQueued, true))
            return;
        QTimer::singleShot(c_nSyncMs, this,
                           [this]
                           {
                               m_bSyncQueued = false;
                               m_App.Journal().Sync();
                           });
    };
}

void RecoveryBar::changeEvent(QEvent* pEvent)
{
    QFrame::changeEvent(pEvent);
    if (pEvent->type() == QEvent::PaletteChange && parentWidget())
        SetColors();
}

// The window's own colour with a little of the highlight.
void RecoveryBar::SetColors()
{
    const QPalette& from = parentWidget()->palette();
    QPalette colours = palette();
    const QColor back = Mixed(from.color(QPalette::Window), from.color(QPalette::Highlight), 14);
    if (colours.color(QPalette::Window) == back)
        return;
    colours.setColor(QPalette::Window, back);
    setPalette(colours);
}

void RecoveryBar::OfferAll()
{
    m_sFile = m_App.m_sFileName;
    Offer(m_App.Journals().List());
}

void RecoveryBar::OfferFile()
{
    if (m_sFile == m_App.m_sFileName)
        return;
    m_sFile = m_App.m_sFileName;
    Offer(m_sFile.empty() ? std::vector<CJournalStore::CEntry>() : m_App.Journals().List(m_sFile));
}

void RecoveryBar::Offer(std::vector<CJournalStore::CEntry> entries)
{
    m_Entries = std::move(entries);
    std::erase_if(m_Entries, [](const CJournalStore::CEntry& entry) { return entry.m_bKept; });
    ShowFirst();
}

void RecoveryBar::ShowFirst()
{
    setVisible(!m_Entries.empty());
    if (m_Entries.empty())
        return;
    const CJournalStore::CEntry& entry = m_Entries.front();
    QString sText = tr("Unsaved work: %1").arg(QtText::ToQt(TellJournal(entry)));
    if (entry.m_bCut)
        sText += tr(". What came behind that can't be read");
    if (m_Entries.size() > 1)
        sText += tr(" (and %1 more)").arg(m_Entries.size() - 1);
    m_pText->setText(sText);
    m_pText->setToolTip(QtText::PathToQt(entry.m_Head.m_sLibrary));
    m_pBringBack->setEnabled(entry.m_bReadable);
}

void RecoveryBar::ShowNext()
{
    m_Entries.erase(m_Entries.begin());
    ShowFirst();
}

void RecoveryBar::BringBackFirst()
{
    const CJournalStore::CEntry entry = m_Entries.front();
    // The file that it opens may have other journals: these are offered all the same.
    const CBroughtBack result = BringBack(m_App, entry);
    m_sFile = m_App.m_sFileName;
    if (!result.m_bDone)
    {
        m_pText->setText(QtText::ToQt(TellJournal(entry) + ". " + result.m_sText));
        m_pBringBack->setEnabled(false);
        return;
    }
    SettleJournal(m_App, entry, result);
    ShowNext();
    emit BroughtBack(QtText::ToQt(result.m_sText));
}

void RecoveryBar::AddMenu(QMenu& menu)
{
    connect(&menu, &QMenu::aboutToShow, this, [this, &menu] { FillMenu(menu); });
    FillMenu(menu);
}

void RecoveryBar::FillMenu(QMenu& menu)
{
    menu.clear();
    const std::vector<CJournalStore::CEntry> entries = m_App.Journals().List();
    for (const CJournalStore::CEntry& entry : entries)
    {
        QString sLabel = QtText::ToQt(TellJournal(entry));
        QAction* pAction = menu.addAction(sLabel.replace(QLatin1Char('&'), QStringLiteral("&&")));
        connect(pAction, &QAction::triggered, this,
                [this, entry]
                {
                    m_Entries = {entry};
                    ShowFirst();
                });
    }
    if (entries.empty())
        menu.addAction(tr("No Unsaved Work"))->setEnabled(false);
    menu.addSeparator();
    QAction* pKeep = menu.addAction(tr("&Keep Unsaved Work"));
    pKeep->setCheckable(true);
    pKeep->setChecked(m_App.Journal().IsOn());
    connect(pKeep, &QAction::toggled, this, [this](bool bOn) { m_App.SetJournalOn(bOn); });
}
