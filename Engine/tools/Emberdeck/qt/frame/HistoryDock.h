#pragma once

#include <QAbstractListModel>
#include <QDockWidget>
#include <QIcon>

#include "shell/HistoryList.h"

class QListView;

// The rows of CHistoryList for a view.
class HistoryModel : public QAbstractListModel
{
    Q_OBJECT

public:
    HistoryModel(const CHistory& history, QObject* pParent); // history: borrowed
    const CHistoryList& List() const { return m_List; }
    void Refresh(); // the history has changed
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int nRole) const override;

private:
    CHistoryList m_List;
    int m_nRows;
    QIcon m_Saved;
    QIcon m_None; // as wide
};

// The dock with the list of the library's steps: a click on one, or Enter, leads there.
class HistoryDock : public QDockWidget
{
    Q_OBJECT

public:
    HistoryDock(const CHistory& history, QWidget* pParent); // history: borrowed
    void Refresh();                                         // the history has changed

protected:
    void showEvent(QShowEvent* pEvent) override;

signals:
    void Chosen(size_t nPosition);

private:
    QListView* m_pView;
    HistoryModel* m_pModel;
};
