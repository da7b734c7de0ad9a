#pragma once

#include <QDialog>

#include "shared/sourcecontrol/SourceControlFront.h"

class QPlainTextEdit;
class QTreeWidget;

// The changes of a file, the newest first; below the list all that was said of the selected one.
class SourceControlHistory : public QDialog
{
    Q_OBJECT

public:
    SourceControlHistory(const std::string& sPath, const std::vector<CHistoryEntry>& entries,
                         QWidget* pParent);

private:
    void Fill(const std::vector<CHistoryEntry>& entries);

    QTreeWidget* m_pList;
    QPlainTextEdit* m_pMessage;
};
