#include "qt/frame/HistoryDock.h"

#include <QApplication>
#include <QListView>
#include <QPixmap>

#include "app/resources/ToolbarIcons.h"
#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtText.h"

HistoryModel::HistoryModel(const CHistory& history, QObject* pParent)
    : QAbstractListModel(pParent),
      m_List(history),
      m_nRows(int(m_List.GetNumRows())),
      m_Saved(ArtIcon(c_SaveIcon))
{
    QPixmap none(c_nIconSize, c_nIconSize);
    none.fill(Qt::transparent);
    m_None = QIcon(none);
}

// Steps come and go at the end, but for those that are dropped at the front or with the whole library.
void HistoryModel::Refresh()
{
    const int nRows = int(m_List.GetNumRows());
    if (nRows > m_nRows)
    {
        beginInsertRows(QModelIndex(), m_nRows, nRows - 1);
        m_nRows = nRows;
        endInsertRows();
    }
    else if (nRows < m_nRows)
    {
        beginRemoveRows(QModelIndex(), nRows, m_nRows - 1);
        m_nRows = nRows;
        endRemoveRows();
    }
    const QModelIndex last = index(m_nRows - 1);
    emit dataChanged(index(0), last);
}

int HistoryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_nRows;
}

QVariant HistoryModel::data(const QModelIndex& index, int nRole) const
{
    const auto nRow = size_t(index.row());
    if (!index.isValid() || nRow >= m_List.GetNumRows())
        return QVariant();
    switch (nRole)
    {
    case Qt::DisplayRole:
        return QtText::ToQt(m_List.GetText(nRow));
    case Qt::ToolTipRole:
        return QLatin1String("<p>") + QtText::ToQt(m_List.GetDescription(nRow)).toHtmlEscaped() +
               QLatin1String("</p>");
    case Qt::AccessibleTextRole:
        return QtText::ToQt(m_List.GetDescription(nRow));
    case Qt::DecorationRole:
        return m_List.IsSaved(nRow) ? m_Saved : m_None;
    case Qt::FontRole:
    {
        QFont font = QApplication::font("QListView");
        font.setBold(m_List.IsCurrent(nRow));
        return font;
    }
    case Qt::ForegroundRole:
        return m_List.IsUndone(nRow)
                   ? QVariant(QApplication::palette().brush(QPalette::Disabled, QPalette::Text))
                   : QVariant();
    default:
        return QVariant();
    }
}

HistoryDock::HistoryDock(const CHistory& history, QWidget* pParent)
    : QDockWidget(tr("History"), pParent),
      m_pView(new QListView(this)),
      m_pModel(new HistoryModel(history, this))
{
    setObjectName(QStringLiteral("History"));
    setContextMenuPolicy(Qt::PreventContextMenu);
    m_pView->setModel(m_pModel);
    m_pView->setUniformItemSizes(true);
    m_pView->setIconSize(QSize(c_nIconSize, c_nIconSize));
    m_pView->setAccessibleName(tr("History"));
    m_pView->setFrameShape(QFrame::NoFrame);
    m_pView->setTextElideMode(Qt::ElideRight);
    m_pView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidget(m_pView);
    for (const auto pSignal : {&QAbstractItemView::clicked, &QAbstractItemView::activated})
        connect(m_pView, pSignal, this,
                [this](const QModelIndex& index) { emit Chosen(size_t(index.row())); });
    Refresh();
}

void HistoryDock::showEvent(QShowEvent* pEvent)
{
    QDockWidget::showEvent(pEvent);
    Refresh();
}

// A list that nobody sees isn't laid out at each step.
void HistoryDock::Refresh()
{
    if (isHidden())
        return;
    m_pModel->Refresh();
    const QModelIndex current = m_pModel->index(int(m_pModel->List().GetCurrent()));
    m_pView->setCurrentIndex(current);
    m_pView->scrollTo(current);
}
