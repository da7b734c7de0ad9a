#include "qt/frame/SplashScreen.h"

#include <utility>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QTimer>

#include "qt/toolkit/ProgramIcon.h"

bool SplashScreen::CreateSplash(int32_t nMilliseconds)
{
    m_Owner.winId(); // so that there is a window that the splash can belong to
    m_pPicture = new QLabel(&m_Owner, Qt::SplashScreen | Qt::FramelessWindowHint);
    const QPixmap picture = SplashPicture(m_Owner.devicePixelRatioF());
    m_pPicture->setPixmap(picture);
    m_pPicture->setAttribute(Qt::WA_ShowWithoutActivating);
    m_pPicture->setFixedSize(picture.deviceIndependentSize().toSize());
    m_pPicture->move(m_Owner.screen()->geometry().center() - m_pPicture->rect().center());
    m_pPicture->show();
    m_pPicture->repaint();
    QTimer::singleShot(nMilliseconds, &m_Owner, [this] { m_Splash.OnTimer(); });
    return true;
}

void SplashScreen::DestroySplash()
{
    if (m_pPicture)
    {
        m_pPicture->hide(); // now: what comes next may keep the program busy
        m_pPicture->deleteLater();
    }
    m_pPicture = nullptr;
    m_Owner.repaint();
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

bool SplashScreen::Takes(QEvent* pEvent)
{
    const CSplashEvent event = SplashEvent(pEvent);
    if (event.m_eKind == CSplashEvent::eOther || !m_Splash.PreTranslateAppMessage(event))
        return false;
    pEvent->accept();
    return true;
}

void SplashScreen::OnOwnerActivated()
{
    if (!m_pPicture || std::exchange(m_bOverOwner, true))
        return;
    // It was there first, so the owner has come up over it. Window managers take it for a part of the owner only
    // when it is shown after that; then it also stays below a question.
    m_pPicture->hide();
    m_pPicture->show();
}
