#pragma once

#include <QDialog>
#include <QTextBrowser>

class IPrompts;
class QMenu;

// The pages of the manual, Markdown files with pictures, in a window beside the work. It shows them by itself:
// hardly any desktop opens such files in a program that follows their links.
class ManualWindow : public QDialog
{
    Q_OBJECT

public:
    // sFolder holds README.md.
    ManualWindow(const QString& sFolder, QWidget* pParent);

    // Where the manual may lie, the nearest to the program first.
    static QStringList GetFolders();
    // The first of these folders with the manual in it; empty: none.
    static QString FindFolder(const QStringList& folders);

    QTextBrowser* Browser() const { return m_pBrowser; }
    void ShowPage(const QString& sPage); // by its file's name

private:
    void OnSourceChanged(const QUrl& source);

    QString m_sFolder;
    QTextBrowser* m_pBrowser;
};

// Puts the items Manual (F1) and Keyboard and Mouse, one of its pages, before the others of the Help menu. Shows a
// message with the folders that were looked at when the manual is in none of them.
void AddManualItems(QMenu& helpMenu, QWidget* pOwner, IPrompts& prompts,
                    const QStringList& folders = ManualWindow::GetFolders());
