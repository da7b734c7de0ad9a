// What happens to the main window as a whole: its end, files that are dropped on it, locks, palette, the splash.

#include <utility>

#include <QApplication>
#include <QCloseEvent>
#include <QMimeData>
#include <QScreen>
#include <QSessionManager>
#include <QStatusBar>
#include <QTimer>

#include "app/resources/Bars.h"
#include "qt/frame/MainWindow.h"
#include "qt/library/LeftDockWidget.h"
#include "qt/library/LibraryTreeView.h"
#include "qt/timeline/TrackWidget.h"
#include "qt/toolkit/DialogPlaces.h"
#include "qt/toolkit/FramePlaces.h"
#include "qt/toolkit/KeyLocks.h"
#include "qt/toolkit/ProgramIcon.h"
#include "qt/toolkit/QtText.h"
#include "qt/toolkit/ShellPainter.h"
#include "qt/toolkit/ToolBarWidget.h"

void MainWindow::CancelGestures()
{
    for (QMdiSubWindow* pChild : m_pArea->subWindowList())
        if (auto* pTrack = qobject_cast<TrackWidget*>(pChild->widget()); pTrack && pTrack->Logic().IsBusy())
            pTrack->Logic().OnMouseLost();
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
    CloseAll();
}

void MainWindow::changeEvent(QEvent* pEvent)
{
    QMainWindow::changeEvent(pEvent);
    if (pEvent->type() == QEvent::PaletteChange && m_pFrame)
    {
        m_pFrame->SetColors(ShellColors(palette()));
        m_pArea->setBackground(
            palette().brush(QPalette::Dark)); // the area keeps the colour that it began with
    }
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
    return {m_Bars.at(c_nCmdStandardBar), m_Bars.at(c_nCmdSourceControlBar)}; // as they come
}

void MainWindow::ShowAsLeft()
{
    const CFramePlaces places = LoadFramePlaces(m_Profile);
    PlaceBars(m_Profile, *this, ToolBars());
    statusBar()->setVisible(places.m_bStatusBar);
    if (!places.m_rc.isEmpty())
        setGeometry(DialogPlaces::FitOnScreen(*this, places.m_rc));
    // With room beside it: a dock as wide as the window would make that wider than the screen.
    const int nRoom = places.m_bMaximised ? screen()->availableGeometry().width() : width();
    const int nMost = std::max(nRoom - m_pArea->minimumSizeHint().width(), 1);
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
    places.m_bStatusBar = !statusBar()->isHidden();
    SaveFramePlaces(m_Profile, places, *this, ToolBars());
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
        for (const QMdiSubWindow* pChild : m_pArea->subWindowList())
            if (pChild != m_pArea->activeSubWindow() && pChild->isAncestorOf(pWidget))
                return false;
        return pWidget->window() == this;
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

void MainWindow::UpdateLocks()
{
    const CKeyLocks locks = ReadKeyLocks();
    const auto isOn = [&locks](EStatusIndicator eID)
    {
        switch (eID)
        {
        case eIndicator_Caps:
            return locks.m_bCaps;
        case eIndicator_Num:
            return locks.m_bNum;
        case eIndicator_Scroll:
            return locks.m_bScroll;
        }
        return false;
    };
    for (size_t i = 0; i < m_Locks.size(); ++i)
        m_Locks[i]->setText(isOn(c_StatusIndicators[i].m_eID)
                                ? QString::fromUtf8(c_StatusIndicators[i].m_pszText)
                                : QString());
}

// ---- The splash

void MainWindow::ShowSplash()
{
    m_Splash.ShowSplashScreen();
}

bool MainWindow::CreateSplash(int32_t nMilliseconds)
{
    winId(); // so that there is a window that the splash can belong to
    m_pSplash = new QLabel(this, Qt::SplashScreen | Qt::FramelessWindowHint);
    const QPixmap picture = SplashPicture(devicePixelRatioF());
    m_pSplash->setPixmap(picture);
    m_pSplash->setAttribute(Qt::WA_ShowWithoutActivating);
    m_pSplash->setFixedSize(picture.deviceIndependentSize().toSize());
    m_pSplash->move(screen()->geometry().center() - m_pSplash->rect().center());
    m_pSplash->show();
    m_pSplash->repaint();
    QTimer::singleShot(nMilliseconds, this, [this] { m_Splash.OnTimer(); });
    return true;
}

void MainWindow::DestroySplash()
{
    if (m_pSplash)
    {
        m_pSplash->hide(); // now: what comes next may keep the program busy
        m_pSplash->deleteLater();
    }
    m_pSplash = nullptr;
    repaint();
}

namespace
{
CSplashEvent SplashEvent(QEvent* pEvent)
{
    CSplashEvent event;
    event.m_bForModalBox = QApplication::activeModalWidget() != nullptr;
    switch (pEvent->type())
    {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
    case QEvent::KeyRelease:
        event.m_eKind =
            pEvent->type() == QEvent::KeyRelease ? CSplashEvent::eKeyRelease : CSplashEvent::eKeyPress;
        event.m_nCode = static_cast<QKeyEvent*>(pEvent)->key();
        event.m_bAutoRepeat = static_cast<QKeyEvent*>(pEvent)->isAutoRepeat();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
        event.m_nCode = int(static_cast<QMouseEvent*>(pEvent)->button());
        if (event.m_nCode & (Qt::LeftButton | Qt::RightButton | Qt::MiddleButton)) // others are nobody's
            event.m_eKind = pEvent->type() == QEvent::MouseButtonRelease ? CSplashEvent::eButtonRelease
                                                                         : CSplashEvent::eButtonPress;
        break;
    default:
        break;
    }
    return event;
}
} // namespace

bool MainWindow::eventFilter(QObject* pObject, QEvent* pEvent)
{
    const CSplashEvent event = SplashEvent(pEvent);
    if (event.m_eKind != CSplashEvent::eOther && m_Splash.PreTranslateAppMessage(event))
    {
        pEvent->accept();
        return true;
    }
    // Whatever a key of the window does, it does to the library with the name that is being typed.
    if (pEvent->type() == QEvent::Shortcut && m_pDock && m_pDock->IsEditing() && !IsDialogOrMenuUp())
        EndEdit();
    if (event.m_eKind == CSplashEvent::eKeyPress || event.m_eKind == CSplashEvent::eKeyRelease)
    {
        // What the key does to its lock it does after this event.
        if (event.m_nCode == Qt::Key_CapsLock || event.m_nCode == Qt::Key_NumLock ||
            event.m_nCode == Qt::Key_ScrollLock)
            QTimer::singleShot(0, this, [this] { UpdateLocks(); });
    }
    else if (pObject == this && pEvent->type() == QEvent::WindowActivate)
    {
        UpdateLocks();
        FocusLibrary();
        if (m_pSplash && !std::exchange(m_bSplashOver, true))
        {
            // It was there first, so this window has come up over it. Window managers take it for a part of
            // this window only when it is shown after that; then it also stays below a question.
            m_pSplash->hide();
            m_pSplash->show();
        }
    }
    if (pObject == m_pArea && (pEvent->type() == QEvent::Resize || pEvent->type() == QEvent::Show))
        UpdateTitle();
    return QMainWindow::eventFilter(pObject, pEvent);
}
