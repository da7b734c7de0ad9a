#pragma once

#include <vector>

#include <QFrame>

#include "app/JournalStore.h"

class CEmberdeckApp;
class QLabel;
class QMenu;
class QPushButton;

// A bar above the open effects: what there is of unsaved work, and what is to become of it. It also sees to it that the
// journal of the work at hand is safe from a failure of the machine within a second.
class RecoveryBar : public QFrame
{
    Q_OBJECT

public:
    RecoveryBar(CEmberdeckApp& app, QWidget* pParent);

    // What a crash or a failed save has left: all of it at the program's start, later what is the open file's.
    void OfferAll();
    void OfferFile();
    // All kept journals, each to be offered, and whether any is written.
    void AddMenu(QMenu& menu);

signals:
    void BroughtBack(const QString& sText); // into the library; what is to be told

protected:
    void changeEvent(QEvent* pEvent) override;

private:
    void Offer(std::vector<CJournalStore::CEntry> entries);
    void ShowFirst();
    void ShowNext();
    void BringBackFirst();
    void FillMenu(QMenu& menu);
    void SetColors();

    CEmberdeckApp& m_App;
    QLabel* m_pText;
    QPushButton* m_pBringBack;
    std::vector<CJournalStore::CEntry> m_Entries;
    std::string m_sFile; // that was looked at last
    bool m_bSyncQueued = false;
};
