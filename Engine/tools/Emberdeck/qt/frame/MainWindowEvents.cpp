// What happens to the main window as a whole: its end, files that are dropped on it, its places, focus and palette.

#include <QApplication>
#include <QCloseEvent>
#include <QMimeData>
#include <QScreen>
#include <QSessionManager>
#include <QTimer>

#include "app/resources/Bars.h"
#include "qt/frame/EffectWindows.h"
#include "qt/frame/FrameStatusBar.h"
#include "qt/frame/HistoryDock.h"
#include "qt/frame/MainWindow.h"
#include "qt/library/LeftDockWidget.h"
#include "qt/library/LibraryTreeView.h"
#include "qt/toolkit/DialogPlaces.h"
#include "qt/toolkit/DockPlaces.h"
#include "qt/toolkit/FramePlaces.h"
#include "qt/toolkit/QtText.h"
#include "qt/toolkit/ShellPainter.h"
#include "qt/toolkit/TextUndo.h"
#include "qt/toolkit/ToolBarWidget.h"

void MainWindow::CancelGestures()
{
    m_pEffects->CancelGestures();
    if (m_pDock && m_pDock->IsBusy())
    {
        m_pDock->EffectPanel().OnMouseLost();
        m_pDock->PrefabPanel().OnMouseLost();
    }
    EndEdit();
}

void MainWindow::closeEvent(QCloseEvent* pEvent)
{
    CancelGestures();
    pEvent->setAccepted(m_pFrame->QueryClose());
    if (!pEvent->isAccepted())
        return;
    KeepPlaces();
    m_pEffects->CloseAll();
}

void MainWindow::changeEvent(QEvent* pEvent)
{
    QMainWindow::changeEvent(pEvent);
    if (pEvent->type() == QEvent::PaletteChange && m_pFrame)
        m_pFrame->SetColors(ShellColors(palette()));
}

#if QT_CONFIG(sessionmanager)
// Work is asked about as at any other end, and the user may stay.
void MainWindow::OnSessionEnd(QSessionManager& session)
{
    if (!session.allowsInteraction())
        return;
    CancelGestures();
    if (!m_pFrame->QueryClose())
        session.cancel();
    else
        KeepPlaces();
    session.release();
}
#endif

namespace
{
// The first of the files that are dragged; empty: none.
QString DraggedFile(const QDropEvent& event)
{
    const QList<QUrl> urls = event.mimeData()->urls();
    return urls.isEmpty() ? QString() : urls.constFirst().toLocalFile();
}

// A dialog or menu works on what another library would take away. It keeps the mouse out, but no drag from
// another program.
bool IsDialogOrMenuUp()
{
    return QApplication::activeModalWidget() || QApplication::activePopupWidget();
}
} // namespace

void MainWindow::dragEnterEvent(QDragEnterEvent* pEvent)
{
    if (!DraggedFile(*pEvent).isEmpty() && !m_pFrame->IsBusy() && !IsDialogOrMenuUp())
        pEvent->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* pEvent)
{
    pEvent->acceptProposedAction();
    // Behind the drop itself: opening may ask, and the other program waits for the drop to end.
    QTimer::singleShot(0, this,
                       [this, sFile = DraggedFile(*pEvent)]
                       {
                           if (!IsDialogOrMenuUp())
                               m_pFrame->OpenFile(QtText::PathFromQt(sFile));
                       });
}

// ---- What is kept between runs

std::vector<QToolBar*> MainWindow::ToolBars() const
{
    return {m_Bars.at(c_nCmdStandardBar), m_Bars.at(c_nCmdSourceControlBar),
            m_Bars.at(c_nCmdEditBar)}; // as they come
}

void MainWindow::ShowAsLeft()
{
    const CFramePlaces places = LoadFramePlaces(m_Profile);
    PlaceBars(m_Profile, *this, ToolBars());
    PlaceDock(m_Profile, *this, *m_pHistory);
    m_pStatus->setVisible(places.m_bStatusBar);
    if (!places.m_rc.isEmpty())
        setGeometry(DialogPlaces::FitOnScreen(*this, places.m_rc));
    // With room beside it: a dock as wide as the window would make that wider than the screen.
    const int nRoom = places.m_bMaximised ? screen()->availableGeometry().width() : width();
    const int nMost = std::max(nRoom - m_pEffects->minimumSizeHint().width(), 1);
    m_pDock->Bar().Restore(std::min(places.m_nDockWidth, nMost), places.m_bDockFolded);
    if (places.m_bMaximised)
        showMaximized();
    else
        show();
    QTimer::singleShot(0, this, [this] { DialogPlaces::KeepOnScreen(*this); });
    CommandsChanged();
}

void MainWindow::KeepPlaces()
{
    CFramePlaces places;
    places.m_bMaximised = isMaximized() || isFullScreen();
    places.m_rc = places.m_bMaximised || isMinimized() ? normalGeometry() : geometry();
    places.m_nDockWidth = m_pDock->Bar().GetUnfoldedWidth();
    places.m_bDockFolded = m_pDock->Bar().SizeBar().IsCollapsed();
    places.m_bStatusBar = !m_pStatus->isHidden();
    SaveFramePlaces(m_Profile, places, *this, ToolBars());
    SaveDockPlace(m_Profile, *this, *m_pHistory);
}

// Where nothing has the focus, the toolkit would give it to the first button of the toolbars.
void MainWindow::FocusLibrary()
{
    if (focusWidget() || !m_pDock)
        return;
    for (LibraryTreeView* pTree : m_pDock->findChildren<LibraryTreeView*>())
        if (pTree->isVisible())
            pTree->setFocus();
}

// The chain of the toolkit leads through every open effect, and one that gets the focus becomes the active one.
// Neither the Tab key nor a widget that is hidden or greyed with the focus in it may choose the effect that the
// next key acts on: of the effects only the active one is in the chain.
bool MainWindow::focusNextPrevChild(bool bNext)
{
    QWidget* const pFrom = focusWidget() ? focusWidget() : this;
    const auto takes = [this](const QWidget* pWidget)
    {
        if ((pWidget->focusPolicy() & Qt::TabFocus) != Qt::TabFocus || pWidget->focusProxy() ||
            !pWidget->isVisibleTo(this) || !pWidget->isEnabled() || pWidget->isWindow())
            return false;
        return pWidget->window() == this && !m_pEffects->IsInBackground(*pWidget);
    };
    const auto step = [bNext](const QWidget* pWidget)
    { return bNext ? pWidget->nextInFocusChain() : pWidget->previousInFocusChain(); };
    for (QWidget* pWidget = step(pFrom); pWidget && pWidget != pFrom; pWidget = step(pWidget))
        if (takes(pWidget))
        {
            pWidget->setFocus(bNext ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    return false;
}

bool MainWindow::eventFilter(QObject* pObject, QEvent* pEvent)
{
    if (m_Splash.Takes(pEvent) || TakeTextUndo(pObject, *pEvent))
        return true;
    switch (pEvent->type())
    {
    case QEvent::Shortcut:
        // Whatever a key of the window does, it does to the library with the name that is being typed.
        if (m_pDock && m_pDock->IsEditing() && !IsDialogOrMenuUp())
            EndEdit();
        break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        // What the key does to its lock it does after this event.
        if (const int nKey = static_cast<QKeyEvent*>(pEvent)->key();
            nKey == Qt::Key_CapsLock || nKey == Qt::Key_NumLock || nKey == Qt::Key_ScrollLock)
            QTimer::singleShot(0, m_pStatus, [this] { m_pStatus->UpdateLocks(); });
        break;
    case QEvent::WindowActivate:
        if (pObject == this)
        {
            m_pStatus->UpdateLocks();
            FocusLibrary();
            m_Splash.OnOwnerActivated();
        }
        break;
    default:
        break;
    }
    return QMainWindow::eventFilter(pObject, pEvent);
}
