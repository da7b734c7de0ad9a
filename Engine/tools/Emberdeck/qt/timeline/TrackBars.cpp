#include <QGroupBox>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QSlider>
#include <QStyle>

#include "qt/timeline/TrackWidget.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

KeyInfoWidget::KeyInfoWidget(CKeyInfoBar& bar, QWidget* pParent)
    : QWidget(pParent),
      m_Bar(bar),
      m_Controls(this, *FindDialogTemplate(eDlg_KeyInfoBar)),
      m_pGroup(m_Controls.Find(eKeyInfo_Group))
{
    auto* pButton = m_Controls.Get<QPushButton>(eKeyInfo_PhaseLength);
    pButton->setAccessibleName(tr("Phase Length"));
    connect(pButton, &QPushButton::clicked, this, [this] { m_Bar.OnPhaseLengthButton(); });
    ShowInfo();
}

void KeyInfoWidget::ShowInfo()
{
    const CKeyInfo& info = m_Bar.GetInfo();
    const auto show = [&](int32_t nID, const std::string& sText)
    {
        auto* pLabel = m_Controls.Get<QLabel>(nID);
        pLabel->setText(QtText::ToQt(sText));
        pLabel->resize(std::max(pLabel->width(), pLabel->sizeHint().width()), pLabel->height());
    };
    m_Controls.Get<QPushButton>(eKeyInfo_PhaseLength)->setText(QtText::ToQt(info.m_sPhaseLength));
    show(eKeyInfo_TotalKeys, info.m_sTotalKeys);
    show(eKeyInfo_TotalTracks, info.m_sTotalTracks);
    show(eKeyInfo_Start, info.m_sStart);
    show(eKeyInfo_End, info.m_sEnd);
    show(eKeyInfo_Length, info.m_sLength);
    // A title longer than the frame is shortened in the middle, not cut through a letter.
    const QString sTitle = QtText::ToQt(info.m_sTitle);
    auto* pGroup = static_cast<QGroupBox*>(m_pGroup);
    pGroup->setTitle(fontMetrics().elidedText(sTitle, Qt::ElideMiddle, pGroup->width() - 24));
    pGroup->setToolTip(sTitle == pGroup->title() ? QString() : sTitle.toHtmlEscaped());
    pGroup->setEnabled(info.m_bKey);
    for (const int32_t nID : {eKeyInfo_StartLabel, eKeyInfo_LengthLabel, eKeyInfo_EndLabel})
        m_Controls.Find(nID)->setEnabled(info.m_bKey);
}

QString KeyInfoWidget::Summary() const
{
    const CKeyInfo& info = m_Bar.GetInfo();
    const QString sAll =
        tr("%1 tracks, %2 keys").arg(QtText::ToQt(info.m_sTotalTracks), QtText::ToQt(info.m_sTotalKeys));
    if (!info.m_bKey)
        return sAll;
    const QString sName = QtText::ToQt(info.m_sTitle).replace(QLatin1String("&&"), QLatin1String("&"));
    return tr("%1; %2, from %3 to %4")
        .arg(sAll, sName, QtText::ToQt(info.m_sStart), QtText::ToQt(info.m_sEnd));
}

RulerWidget::RulerWidget(CTimeBar& bar, QWidget* pParent) : QWidget(pParent), m_Bar(bar)
{
    setObjectName(QStringLiteral("ruler"));
    setAccessibleName(tr("Time ruler"));
}

QString RulerWidget::AccessibleText() const
{
    return tr("%1 to %2 milliseconds").arg(m_Bar.m_nViewStart).arg(TimeFromPixel(m_Bar, width()));
}

void RulerWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QtSurface surface(painter, rect(), palette());
    m_Bar.DrawRuler(surface, width(), height());
    if (palette().color(QPalette::Window).lightness() < 128) // in a dark window so light a strip would glare
        painter.fillRect(rect(), QColor(0, 0, 0, 64));
}

TimeBarWidget::TimeBarWidget(CTimeBar& bar, QWidget* pParent)
    : QWidget(pParent),
      m_Bar(bar),
      m_Controls(this, *FindDialogTemplate(eDlg_TimeBar)),
      m_pRuler(new RulerWidget(bar, this))
{
    m_pRuler->setGeometry(m_Controls.PlaceOf(eTimeBar_Ruler));
    auto* pScale = m_Controls.Get<QSlider>(eTimeBar_Scale);
    pScale->setRange(0, CTimeBar::c_nMaxScalePos);
    pScale->setAccessibleName(tr("Scale"));
    pScale->setToolTip(tr("Zooms the time axis"));
    auto* pPhase = m_Controls.Get<QSlider>(eTimeBar_Phase);
    pPhase->setRange(0, CTimeBar::c_nMaxPhasePos);
    for (QSlider* pSlider : {pScale, pPhase})
    {
        pSlider->setTickPosition(QSlider::NoTicks); // drawn here
        pSlider->setTickInterval(pSlider->maximum() / 50);
    }
    pPhase->setAccessibleName(tr("View start"));
    pPhase->setToolTip(tr("Moves the view through the phase when it is zoomed"));
    // A release without a change of value is a notification, too.
    connect(pScale, &QSlider::valueChanged, this, [this](int n) { m_Bar.OnScaleSlider(n); });
    connect(pScale, &QSlider::sliderReleased, this, [this, pScale] { m_Bar.OnScaleSlider(pScale->value()); });
    connect(pPhase, &QSlider::valueChanged, this, [this](int n) { m_Bar.OnPhaseSlider(n); });
    connect(pPhase, &QSlider::sliderReleased, this, [this, pPhase] { m_Bar.OnPhaseSlider(pPhase->value()); });
    ShadeSliders();
}

// The colour half way between the window and its text.
QColor TimeBarWidget::Shade() const
{
    const QColor ground = palette().color(QPalette::Window), text = palette().color(QPalette::WindowText);
    return QColor((ground.red() + text.red()) / 2, (ground.green() + text.green()) / 2,
                  (ground.blue() + text.blue()) / 2);
}

// The style draws grooves and handles with the window's colour, darkened, which on a dark window nobody sees.
void TimeBarWidget::ShadeSliders()
{
    QPalette shades; // the other roles stay those of the window
    shades.setColor(QPalette::Window, Shade().lighter(140));
    for (const int32_t nID : {eTimeBar_Scale, eTimeBar_Phase})
        m_Controls.Find(nID)->setPalette(shades);
}

// The sliders' ticks. The style's own are a few dark pixels, far from the handle.
void TimeBarWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QColor color = Shade();
    for (const int32_t nID : {eTimeBar_Scale, eTimeBar_Phase})
    {
        const auto* pSlider = m_Controls.Get<QSlider>(nID);
        const int nHandle = style()->pixelMetric(QStyle::PM_SliderLength, nullptr, pSlider);
        const int nTop =
            pSlider->y() +
            (pSlider->height() + style()->pixelMetric(QStyle::PM_SliderThickness, nullptr, pSlider)) / 2 + 2;
        const int nInterval = pSlider->tickInterval();
        for (int n = 0; n <= pSlider->maximum(); n += nInterval)
        {
            const int x =
                QStyle::sliderPositionFromValue(0, pSlider->maximum(), n, pSlider->width() - nHandle);
            painter.fillRect(pSlider->x() + nHandle / 2 + x, nTop, 1, n % (5 * nInterval) ? 3 : 6, color);
        }
    }
}

void TimeBarWidget::changeEvent(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::PaletteChange)
        ShadeSliders();
    QWidget::changeEvent(pEvent);
}

void TimeBarWidget::ShowViewStart()
{
    m_Controls.Get<QSlider>(eTimeBar_Phase)->setValue(m_Bar.GetPhasePos());
}

void TimeBarWidget::resizeEvent(QResizeEvent*)
{
    m_pRuler->setGeometry(0, m_pRuler->y(), width(), m_pRuler->height());
    QWidget* pScale = m_Controls.Find(eTimeBar_Scale);
    pScale->resize(std::max(std::min(m_Controls.PlaceOf(eTimeBar_Scale).width(), width() - pScale->x()), 0),
                   pScale->height());
    QWidget* pPhase = m_Controls.Find(eTimeBar_Phase);
    pPhase->setGeometry(0, pPhase->y(), width(), pPhase->height());
}
