#include "qt/timeline/TrackWidget.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QPaintEvent>
#include <QPainter>
#include <QStyle>
#include <QTimer>
#include <QToolTip>

#include "qt/toolkit/KeyCodes.h"
#include "qt/toolkit/PopupMenu.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

namespace
{
bool HasCtrl(const QInputEvent* pEvent)
{
    return pEvent->modifiers() & Qt::ControlModifier;
}
bool HasShift(const QInputEvent* pEvent)
{
    return pEvent->modifiers() & Qt::ShiftModifier;
}
} // namespace

TrackWidget::TrackWidget(CEditContext& context, CSpell& spell, QWidget* pParent)
    : QWidget(pParent),
      m_Context(context),
      m_Spell(spell),
      m_Track(context, spell, *this)
{
    setWindowTitle(QString::fromUtf8(c_szTrackWindowTitle));
    setAccessibleName(tr("Timeline"));
    setMouseTracking(true);
    // On a left press the timeline takes the focus itself; a right press leaves it where it was.
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_Track.SetOptions(CTrackViewOptions::ForUsers());
    m_pTimeBar = new TimeBarWidget(m_Track.TimeBar(), this);
    m_pKeyInfo = new KeyInfoWidget(m_Track.KeyInfo(), this);
    m_pScrollBar = new QScrollBar(Qt::Vertical, this);
    // What is pressed on the bars stays there: the rows behind them aren't what the pointer shows.
    for (QWidget* pBar : {static_cast<QWidget*>(m_pTimeBar), static_cast<QWidget*>(m_pKeyInfo)})
    {
        pBar->setAttribute(Qt::WA_NoMousePropagation);
        pBar->setCursor(Qt::ArrowCursor);
    }
    m_pScrollBar->setCursor(Qt::ArrowCursor);
    m_pScrollBar->setContextMenuPolicy(Qt::NoContextMenu); // its entries would move the bar without the rows
    m_pScrollBar->setRange(0, CTrackWnd::c_nMaxScrollPos);
    m_pScrollBar->setPageStep(CTrackWnd::c_nScrollPage);
    m_pScrollBar->setAccessibleName(tr("Rows"));
    connect(m_pScrollBar, &QScrollBar::actionTriggered, this,
            [this](int nAction)
            {
                switch (nAction)
                {
                case QAbstractSlider::SliderSingleStepAdd:
                    m_Track.OnScroll(EScrollEvent::eLineDown);
                    break;
                case QAbstractSlider::SliderSingleStepSub:
                    m_Track.OnScroll(EScrollEvent::eLineUp);
                    break;
                case QAbstractSlider::SliderPageStepAdd:
                    m_Track.OnScroll(EScrollEvent::ePageDown);
                    break;
                case QAbstractSlider::SliderPageStepSub:
                    m_Track.OnScroll(EScrollEvent::ePageUp);
                    break;
                case QAbstractSlider::SliderMove:
                    m_Track.OnScroll(EScrollEvent::eThumbTrack, m_pScrollBar->sliderPosition());
                    break;
                default:
                    m_Track.OnScroll(EScrollEvent::eOther);
                    break;
                }
                m_pScrollBar->setSliderPosition(m_Track.GetScrollPos());
            });
    // Wheel, Home and End leave the bar alone; the program's own presses during a link come here first.
    m_pScrollBar->installEventFilter(this);
    qApp->installEventFilter(this);
}

TrackWidget::~TrackWidget()
{
    qApp->removeEventFilter(this);
}

void TrackWidget::SetOptions(const CTrackViewOptions& options)
{
    m_Track.SetOptions(options);
    update();
    m_pTimeBar->Ruler()->update();
}

void TrackWidget::Layout()
{
    const int nScrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    if (!m_Track.OnSize(width(), height(), m_pKeyInfo->sizeHint().height(), m_pTimeBar->sizeHint().height(),
                        nScrollBar))
        return;
    m_pKeyInfo->setGeometry(ToQt(m_Track.Layout().m_rcKeyInfo));
    m_pTimeBar->setGeometry(ToQt(m_Track.Layout().m_rcTimeBar));
    m_pScrollBar->setGeometry(ToQt(m_Track.Layout().m_rcScrollBar));
}

void TrackWidget::resizeEvent(QResizeEvent*)
{
    Layout();
}

void TrackWidget::paintEvent(QPaintEvent* pEvent)
{
    const QRect area = ToQt(m_Track.Layout().m_rcTrack);
    QPainter painter(this);
    if (!area.contains(pEvent->rect()))
        painter.fillRect(pEvent->rect(), palette().color(QPalette::Window));
    painter.setClipRect(area);
    painter.translate(area.topLeft());
    QtSurface surface(painter, QRect(QPoint(0, 0), area.size()), palette());
    m_Track.Paint(surface);
    if (hasFocus())
    {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(0, 0, m_Track.Layout().VisibleTrackArea().Width() - 1, area.height() - 1);
    }
}

void TrackWidget::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        m_Track.OnLeftPress(FromQt(pEvent->position()), HasCtrl(pEvent), HasShift(pEvent));
}

void TrackWidget::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        m_Track.OnDoubleClick(FromQt(pEvent->position()), HasCtrl(pEvent), HasShift(pEvent));
}

void TrackWidget::mouseMoveEvent(QMouseEvent* pEvent)
{
    m_Track.OnMove(FromQt(pEvent->position()), pEvent->buttons() & Qt::LeftButton);
}

void TrackWidget::mouseReleaseEvent(QMouseEvent* pEvent)
{
    const CPoint pt = FromQt(pEvent->position());
    if (pEvent->button() == Qt::LeftButton)
        m_Track.OnLeftRelease(pt);
    else if (pEvent->button() == Qt::RightButton && rect().contains(ToQt(pt)))
        ShowMenu(pt, HasCtrl(pEvent));
}

// The mouse's own come as releases.
void TrackWidget::contextMenuEvent(QContextMenuEvent* pEvent)
{
    pEvent->accept();
    if (pEvent->reason() != QContextMenuEvent::Keyboard || m_Track.IsBusy())
        return;
    m_Track.ShowCurrent();
    ShowPlace();
    ShowMenu(m_Track.GetMenuPoint(), m_Track.GetCurKey() != nullptr); // what is selected with it stays so
}

void TrackWidget::ShowKeys(const std::vector<CKey*>& keys, CTrack* pTrack)
{
    m_Track.ShowKeys(keys, pTrack);
    ShowPlace();
}

// The scroll bar and the slider where rows and view are.
void TrackWidget::ShowPlace()
{
    m_pScrollBar->setSliderPosition(m_Track.GetScrollPos());
    m_pTimeBar->ShowViewStart();
}

void TrackWidget::keyPressEvent(QKeyEvent* pEvent)
{
    const auto step = [&](EKeyStep eStep)
    {
        m_Track.OnStep(eStep, HasShift(pEvent));
        ShowPlace();
    };
    switch (pEvent->key())
    {
    case Qt::Key_Left:
        return step(EKeyStep::ePrevious);
    case Qt::Key_Right:
        return step(EKeyStep::eNext);
    case Qt::Key_Up:
        return step(EKeyStep::eUp);
    case Qt::Key_Down:
        return step(EKeyStep::eDown);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return m_Track.Command(c_nCmdEditKey);
    case Qt::Key_Escape:
        if (!m_Track.OnEscape())
            QWidget::keyPressEvent(pEvent);
        return;
    default:
        QWidget::keyPressEvent(pEvent);
    }
}

void TrackWidget::ShowMenu(CPoint pt, bool bCtrl)
{
    const std::vector<CMenuEntry> entries = m_Track.OnRightRelease(pt, bCtrl);
    if (entries.empty())
        return;
    QMenu* pMenu = MakePopup(this, entries);
    const QPoint at = mapToGlobal(QPoint(pt.x - pMenu->sizeHint().width() / 2, pt.y));
    if (const std::optional<int> nChosen = RunPopup(pMenu, at))
        m_Track.OnMenuClosed(*nChosen);
}

bool TrackWidget::IsLinkPress(QEvent* pEvent)
{
    if (!m_Track.IsLinking())
        return false;
    switch (pEvent->type())
    {
    case QEvent::MouseMove:
        m_Track.OnMove(PointerPosition(), false);
        return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (static_cast<QMouseEvent*>(pEvent)->button() == Qt::LeftButton)
            m_Track.OnLeftPress(FromQt(mapFromGlobal(static_cast<QMouseEvent*>(pEvent)->globalPosition())),
                                false, false);
        return true;
    case QEvent::KeyPress:
        if (static_cast<QKeyEvent*>(pEvent)->key() == Qt::Key_Escape)
            m_Track.OnEscape();
        return true;
    case QEvent::MouseButtonRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Wheel:
        return true;
    default:
        return false;
    }
}

bool TrackWidget::eventFilter(QObject* pObject, QEvent* pEvent)
{
    if (pObject->isWidgetType() && IsLinkPress(pEvent))
        return true;
    if (pEvent->type() == QEvent::ApplicationDeactivate)
        m_Track.OnDeactivate();
    if (pObject == m_pScrollBar)
    {
        if (pEvent->type() == QEvent::Wheel)
            return true;
        if (pEvent->type() == QEvent::KeyPress)
        {
            const int nKey = static_cast<QKeyEvent*>(pEvent)->key();
            return nKey == Qt::Key_Home || nKey == Qt::Key_End;
        }
    }
    // Keys of the window and its children are offered to the timeline's accelerators first.
    if ((pEvent->type() == QEvent::KeyPress || pEvent->type() == QEvent::ShortcutOverride) &&
        pObject->isWidgetType() && (pObject == this || isAncestorOf(static_cast<QWidget*>(pObject))))
    {
        auto* pKey = static_cast<QKeyEvent*>(pEvent);
        const uint16_t nKey = VirtualKey(pKey->key());
        if (pEvent->type() == QEvent::ShortcutOverride)
        {
            if (IsTimelineAccelerator(nKey, pKey->modifiers()))
                pEvent->accept();
            return false;
        }
        return nKey &&
               m_Track.OnKeyPress(nKey, HasCtrl(pKey), HasShift(pKey), pKey->modifiers() & Qt::AltModifier);
    }
    return QWidget::eventFilter(pObject, pEvent);
}

QString TrackWidget::TipFor(CPoint pt) const
{
    const CKey* pKey = m_Track.IsBusy() || !m_Track.Layout().VisibleTrackArea().Contains(pt)
                           ? nullptr
                           : m_Track.KeyFromRect(pt);
    if (!pKey)
        return QString();
    return QtText::ToQt(pKey->GetDisplayName()) + tr("\n%1 ms to %2 ms, %3 ms long")
                                                      .arg(pKey->m_nStartTime)
                                                      .arg(pKey->m_nEndTime)
                                                      .arg(int64_t(pKey->m_nEndTime) - pKey->m_nStartTime);
}

bool TrackWidget::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip)
    {
        const QPoint pt = static_cast<QHelpEvent*>(pEvent)->pos();
        const QString sTip = TipFor(FromQt(pt));
        // Names are plain text: what looks like mark-up is shown as it stands.
        QToolTip::showText(static_cast<QHelpEvent*>(pEvent)->globalPos(),
                           sTip.isEmpty() ? sTip
                                          : QLatin1String("<p style='white-space:pre'>") +
                                                sTip.toHtmlEscaped() + QLatin1String("</p>"),
                           this);
        return true;
    }
    if (pEvent->type() == QEvent::UngrabMouse && m_Track.IsDragging())
        m_Track.OnMouseLost();
    if (pEvent->type() == QEvent::FocusIn || pEvent->type() == QEvent::FocusOut ||
        pEvent->type() == QEvent::PaletteChange)
        update();
    return QWidget::event(pEvent);
}

void TrackWidget::Invalidate()
{
    update();
}

void TrackWidget::PaintNow()
{
    if (isVisible())
        repaint(ToQt(m_Track.Layout().VisibleTrackArea())); // the scroll bar over the rest has nothing new
}

void TrackWidget::PaintRulerNow()
{
    if (isVisible())
        m_pTimeBar->Ruler()->repaint();
}

QString TrackWidget::AccessibleText() const
{
    return m_pKeyInfo->Summary();
}

void TrackWidget::KeyInfoChanged()
{
    m_pKeyInfo->ShowInfo();
    AccessibleViewChanged(this);
}

void TrackWidget::SetCursorShape(ECursorShape eShape)
{
    setCursor(eShape == ECursorShape::eSizeHorizontal ? Qt::SizeHorCursor
              : eShape == ECursorShape::eForbidden    ? Qt::ForbiddenCursor
                                                      : Qt::ArrowCursor);
}

CPoint TrackWidget::PointerPosition() const
{
    return FromQt(mapFromGlobal(QPointF(QCursor::pos())));
}

bool TrackWidget::IsLeftButtonDown() const
{
    return QGuiApplication::mouseButtons() & Qt::LeftButton;
}

void TrackWidget::PostPhaseLengthEntered()
{
    // Posted to the widget: it dies with the bar.
    QTimer::singleShot(0, this, [this] { m_Track.KeyInfo().OnPhaseLengthEntered(); });
}
