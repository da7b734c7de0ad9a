#include "qt/sourcecontrol/SourceControlHistory.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "qt/toolkit/QtText.h"

namespace
{
enum EColumn
{
    eRevision,
    eDate,
    eAuthor,
    eMessage,
    eColumns
};
constexpr int c_nWholeMessage = Qt::UserRole;
constexpr int c_nMargin = 8;
} // namespace

SourceControlHistory::SourceControlHistory(const std::string& sPath,
                                           const std::vector<CHistoryEntry>& entries, QWidget* pParent)
    : QDialog(pParent),
      m_pList(new QTreeWidget),
      m_pMessage(new QPlainTextEdit)
{
    const QString sFile = QtText::PathToQt(sPath);
    setWindowTitle(tr("History - %1").arg(QFileInfo(sFile).fileName()));
    setSizeGripEnabled(true);
    auto* pPath = new QLabel(sFile);
    pPath->setTextFormat(Qt::PlainText);
    pPath->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // A long path mustn't make the window wide.
    pPath->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    m_pList->setHeaderLabels({tr("Revision"), tr("Date"), tr("Author"), tr("Description")});
    m_pList->setRootIsDecorated(false);
    m_pList->setUniformRowHeights(true);
    m_pList->setAllColumnsShowFocus(true);
    m_pList->setAccessibleName(tr("Changes"));
    m_pMessage->setReadOnly(true);
    m_pMessage->setTabChangesFocus(true);
    m_pMessage->setAccessibleName(tr("Description of the selected change"));
    connect(
        m_pList, &QTreeWidget::currentItemChanged, this,
        [this](QTreeWidgetItem* pItem)
        { m_pMessage->setPlainText(pItem ? pItem->data(eMessage, c_nWholeMessage).toString() : QString()); });

    auto* pSplit = new QSplitter(Qt::Vertical);
    pSplit->addWidget(m_pList);
    pSplit->addWidget(m_pMessage);
    pSplit->setStretchFactor(0, 3);
    pSplit->setStretchFactor(1, 1);
    pSplit->setChildrenCollapsible(false);
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, c_nMargin);
    pLayout->setSpacing(c_nMargin);
    pLayout->addWidget(pPath);
    pLayout->addWidget(pSplit, 1);
    pLayout->addWidget(pButtons);

    Fill(entries);
    resize(fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 28);
    m_pList->setFocus();
}

void SourceControlHistory::Fill(const std::vector<CHistoryEntry>& entries)
{
    QList<QTreeWidgetItem*> items;
    for (const CHistoryEntry& entry : entries)
    {
        const QString sMessage = QtText::ToQt(entry.m_sMessage).remove(QLatin1Char('\r'));
        auto* pItem = new QTreeWidgetItem; // the list takes it
        pItem->setText(eRevision, QtText::ToQt(entry.m_sRevision));
        pItem->setFont(eRevision, QFontDatabase::systemFont(QFontDatabase::FixedFont));
        pItem->setText(eDate, QtText::ToQt(entry.m_sDate));
        pItem->setText(eAuthor, QtText::ToQt(entry.m_sAuthor));
        pItem->setText(eMessage, sMessage.section(QLatin1Char('\n'), 0, 0));
        pItem->setData(eMessage, c_nWholeMessage, sMessage);
        items << pItem;
    }
    m_pList->addTopLevelItems(items);
    for (int nColumn = eRevision; nColumn < eMessage; ++nColumn)
    {
        m_pList->resizeColumnToContents(nColumn);
        m_pList->setColumnWidth(nColumn, m_pList->columnWidth(nColumn) + c_nMargin);
    }
    if (!items.isEmpty())
        m_pList->setCurrentItem(items.first());
}
