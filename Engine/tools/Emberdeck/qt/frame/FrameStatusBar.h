#pragma once

#include <QStatusBar>
#include <QTimer>

class QLabel;

// One line of text, and which of the keyboard's locks are on.
class FrameStatusBar : public QStatusBar
{
    Q_OBJECT

public:
    explicit FrameStatusBar(QWidget* pParent);

    // What the last command has come to; it stays for a while. Empty: nothing to tell.
    void ShowStatus(const QString& sText);
    // What the command under the pointer does, which comes before what was done last; 0: the pointer has left it.
    void ShowHint(int32_t nCommand);
    void UpdateLocks();

private:
    QLabel* m_pLine;
    std::vector<QLabel*> m_Locks;
    QString m_sStatus;
    QTimer m_StatusEnd;
};
