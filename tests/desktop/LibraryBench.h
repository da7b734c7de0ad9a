#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabBar>

#include "desktop/DesktopBench.h"
#include "qt/library/LeftDockWidget.h"
#include "qt/library/LibraryTreeView.h"
#include "qt/toolkit/TemplateDialog.h"

// The pages of the library in the real window: rows by the text of their items.
struct CLibraryDesktop : CDesktopBench
{
    using CInOpen = std::function<void(QWidget*)>;

    explicit CLibraryDesktop(const std::function<void(CLibraryBuilder&)>& fill = {})
    {
        pEffects = window.Dock()->findChildren<LibraryTreeView*>().value(0);
        pPrefabs = window.Dock()->findChildren<LibraryTreeView*>().value(1);
        if (fill)
            Fill(fill);
    }

    // Until the next press can't be taken for the second one of a double click.
    static void Pause()
    {
        Desktop::Settle([] { return false; }, QApplication::doubleClickInterval() + 100);
    }
    void ShowPage(int nTab)
    {
        auto* pTabs = window.Dock()->findChild<QTabBar*>();
        Desktop::Click(Desktop::On(pTabs, pTabs->tabRect(nTab).center()));
        ASSERT_TRUE((nTab == 0 ? pEffects : pPrefabs)->isVisible());
    }
    static HLibraryItem Find(LibraryTreeView* pTree, const char* pszText)
    {
        const CLibraryTree& tree = pTree->Panel()->m_Tree.Tree();
        HLibraryItem h = tree.GetRootItem();
        while (h && tree.GetItemText(h) != pszText)
            h = tree.GetNextItem(h);
        EXPECT_TRUE(h) << "no item " << pszText;
        return h;
    }
    // On the label of an item that shows, on its icon's left, where a group opens, and right of the label.
    static QRect Label(LibraryTreeView* pTree, const char* pszText)
    {
        const auto& view = static_cast<const ITreeView&>(*pTree);
        const CRect rc = view.GetLabelRect(Find(pTree, pszText));
        EXPECT_GT(rc.Width(), 0) << pszText;
        return QRect(rc.left, rc.top, rc.Width(), rc.Height());
    }
    static QPoint At(LibraryTreeView* pTree, const char* pszText)
    {
        return Desktop::On(pTree->viewport(), Label(pTree, pszText).center());
    }
    static QPoint Arrow(LibraryTreeView* pTree, const char* pszText)
    {
        return Desktop::On(pTree->viewport(), Label(pTree, pszText).center() -
                                                  QPoint(Label(pTree, pszText).width() / 2 + 32, 0));
    }
    static QPoint Beside(LibraryTreeView* pTree, const char* pszText)
    {
        return Desktop::On(pTree->viewport(),
                           QPoint(pTree->viewport()->width() - 8, Label(pTree, pszText).center().y()));
    }
    // "A B": what is selected, in order, and what the tree holds.
    static std::string Selected(LibraryTreeView* pTree)
    {
        std::vector<HLibraryItem> items;
        pTree->Panel()->m_Tree.GetSelectedItems(items);
        std::string sText;
        for (const HLibraryItem h : items)
            sText += (sText.empty() ? "" : " ") + pTree->Panel()->m_Tree.Tree().GetItemText(h);
        return sText;
    }
    std::string Effects() { return DumpTree(App().m_EffectTree); }
    std::string Prefabs() { return DumpTree(App().m_PrefabTree); }

    // A popup menu, opened by the right button: one entry after the other, by the pointer. The command runs once
    // the menu has closed; what is done in the dialog that it opens comes last.
    static void Choose(QPoint at, const std::vector<const char*>& entries, const CInOpen& then = {})
    {
        Pause();
        Desktop::WhileOpen([entries, then](QWidget* pOpen) { Pick(pOpen, entries, then); });
        Desktop::Click(at, 3);
    }
    // A menu of the menu bar, by its letter.
    static void ChooseFromBar(const char* pszKeys, const std::vector<const char*>& entries,
                              const CInOpen& then = {})
    {
        Desktop::WhileOpen(
            [entries, then](QWidget* pOpen)
            {
                if (then)
                    Desktop::WhileOpen(then); // the bar's menus run a command at once
                Pick(pOpen, entries, {});
            });
        Desktop::Key(pszKeys);
        Desktop::Settle();
    }
    static void Pick(QWidget* pOpen, const std::vector<const char*>& entries, const CInOpen& then)
    {
        auto* pMenu = qobject_cast<QMenu*>(pOpen);
        for (const char* pszEntry : entries)
        {
            ASSERT_TRUE(pMenu) << pszEntry;
            QAction* pFound = nullptr;
            for (QAction* pAction : pMenu->actions())
                if (QString(pAction->text()).section(QLatin1Char('\t'), 0, 0).remove(QLatin1Char('&')) ==
                    QLatin1String(pszEntry))
                    pFound = pAction;
            ASSERT_TRUE(pFound && pFound->isEnabled()) << pszEntry;
            QMenu* pNext = pFound->menu();
            Desktop::Click(Desktop::On(pMenu, pMenu->actionGeometry(pFound).center()));
            if (then && !pNext)
                Desktop::WhileOpen(then); // the menus have gone, and the command runs once this has returned
            if (pNext)
            {
                EXPECT_TRUE(Desktop::Settle([pNext] { return pNext->isVisible(); })) << pszEntry;
            }
            pMenu = pNext;
        }
    }
    // A box with a question: answered by a key. Before the event that brings it.
    static CInOpen By(const char* pszKeys)
    {
        return [pszKeys](QWidget*) { Desktop::Key(pszKeys); };
    }
    // A file dialog: the path typed, and what is done in the box that follows.
    static CInOpen File(const std::string& sPath, const CInOpen& then = {})
    {
        return [sPath, then](QWidget* pOpen)
        {
            for (QLineEdit* pEdit : pOpen->findChildren<QLineEdit*>())
                pEdit->setCompleter(nullptr); // whose list would count as the next thing that opens
            Desktop::Type(sPath);
            if (then)
                Desktop::WhileOpen(then);
            Desktop::Key("Return");
        };
    }
    static void Answer(const char* pszKeys) { Desktop::WhileOpen(By(pszKeys)); }

    LibraryTreeView* pEffects = nullptr;
    LibraryTreeView* pPrefabs = nullptr;
};

// What a program prints; what it writes to standard error goes to the test's.
inline std::string OutputOf(const std::string& sCommand)
{
    std::string sText;
    if (FILE* pPipe = popen(sCommand.c_str(), "r"))
    {
        char buffer[4096];
        for (size_t n = 0; (n = fread(buffer, 1, sizeof(buffer), pPipe)) > 0;)
            sText.append(buffer, n);
        EXPECT_EQ(0, pclose(pPipe)) << sCommand;
    }
    return sText;
}
