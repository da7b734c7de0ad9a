#include "qt/frame/PaneKeys.h"

#include <algorithm>
#include <functional>

#include <QApplication>
#include <QContextMenuEvent>
#include <QDockWidget>
#include <QShortcut>
#include <QToolBar>
#include <QToolButton>

#include "qt/frame/EffectWindows.h"
#include "qt/frame/MainWindow.h"
#include "qt/library/LeftDockWidget.h"
#include "qt/library/LibraryTreeView.h"
#include "qt/timeline/TrackWidget.h"

namespace
{

struct CPane
{
    QWidget* m_pAll;   // the focus is somewhere in it
    QWidget* m_pFirst; // and begins here
};

QWidget* FirstInDock(const LeftDockWidget& dock)
{
    for (LibraryTreeView* pTree : dock.findChildren<LibraryTreeView*>())
        if (pTree->isVisible())
            return pTree;
    return dock.findChild<SizeBarWidget*>(); // folded
}

QWidget* FirstInBar(const QToolBar& bar)
{
    for (QToolButton* pButton : bar.findChildren<QToolButton*>())
        if (pButton->isVisible() && pButton->isEnabled() && (pButton->focusPolicy() & Qt::TabFocus))
            return pButton;
    return nullptr;
}

std::vector<CPane> PanesOf(MainWindow& window)
{
    std::vector<CPane> panes;
    const auto add = [&](QWidget* pAll, QWidget* pFirst)
    {
        if (pFirst && pFirst->isVisible())
            panes.push_back({pAll, pFirst});
    };
    if (LeftDockWidget* pDock = window.Dock())
        add(pDock, FirstInDock(*pDock));
    if (TrackWidget* pTimeline = window.ActiveTimeline())
        add(pTimeline, pTimeline);
    for (QDockWidget* pDock : window.findChildren<QDockWidget*>())
        if (!pDock->isFloating()) // a window of its own, which the keyboard leaves by its own ways
            add(pDock, pDock->widget());
    for (QToolBar* pBar : window.findChildren<QToolBar*>())
        add(pBar, FirstInBar(*pBar));
    return panes;
}

void GoToPane(MainWindow& window, bool bNext)
{
    const std::vector<CPane> panes = PanesOf(window);
    const QWidget* pFocus = window.focusWidget();
    const auto holds = [pFocus](const CPane& pane)
    { return pFocus && (pane.m_pAll == pFocus || pane.m_pAll->isAncestorOf(pFocus)); };
    const size_t nPanes = panes.size();
    if (nPanes == 0)
        return;
    const size_t nFrom = size_t(std::find_if(panes.begin(), panes.end(), holds) - panes.begin());
    const size_t nTo = nFrom == nPanes ? 0 : (nFrom + (bNext ? 1 : nPanes - 1)) % nPanes;
    panes[nTo].m_pFirst->setFocus(Qt::ShortcutFocusReason);
}

// For keyboards without a menu key.
void OpenMenuOfFocus(const MainWindow& window)
{
    QWidget* pFocus = window.focusWidget();
    if (!pFocus)
        return;
    const QPoint at = pFocus->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, at, pFocus->mapToGlobal(at));
    QApplication::sendEvent(pFocus, &event);
}

void AddKey(MainWindow& window, int nKey, const std::function<void()>& run)
{
    auto* pShortcut = new QShortcut(QKeySequence(nKey), &window);
    QObject::connect(pShortcut, &QShortcut::activated, &window, run);
}

} // namespace

void AddPaneKeys(MainWindow& window)
{
    AddKey(window, Qt::Key_F6, [&window] { GoToPane(window, true); });
    AddKey(window, int(Qt::SHIFT) | int(Qt::Key_F6), [&window] { GoToPane(window, false); });
    AddKey(window, int(Qt::SHIFT) | int(Qt::Key_F10), [&window] { OpenMenuOfFocus(window); });
    AddKey(window, int(Qt::CTRL) | int(Qt::Key_F4),
           [&window]
           {
               if (const TrackWidget* pTimeline = window.ActiveTimeline())
                   window.Effects().Close(&pTimeline->GetSpell());
           });
}
