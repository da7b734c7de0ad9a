#include "qt/toolkit/PropertyControls.h"

#include <cmath>

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <QStyleOptionSlider>
#include <QStylePainter>
#include <QToolTip>

#include "properties/SwatchPainter.h"
#include "qt/toolkit/IconPainter.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

namespace
{

constexpr int c_nRepeatDelayMs = 400;
constexpr int c_nRepeatMs = 60;
constexpr double c_fDisabledOpacity = 0.4;

QColor EdgeColor(const QPalette& palette)
{
    const QColor window = palette.color(QPalette::Window);
    return window.lightness() < 128 ? window.lighter(190) : window.darker(145);
}

} // namespace

int32_t FontMeasure::TextWidth(std::string_view sText) const
{
    return int32_t(std::ceil(m_Metrics.horizontalAdvance(QtText::ToQt(sText))));
}

int32_t FontMeasure::TextHeight() const
{
    return int32_t(std::ceil(m_Metrics.height()));
}

QString PlainToolTip(const QString& sText)
{
    constexpr qsizetype c_nColumns = 80;
    QString sWrapped;
    qsizetype nColumn = 0;
    for (const QString& sWord : sText.split(QLatin1Char(' ')))
    {
        if (!sWrapped.isEmpty())
        {
            const bool bBreak = nColumn + 1 + sWord.size() > c_nColumns;
            sWrapped += bBreak ? QLatin1Char('\n') : QLatin1Char(' ');
            nColumn = bBreak ? 0 : nColumn + 1;
        }
        sWrapped += sWord;
        nColumn += sWord.size();
    }
    if (!Qt::mightBeRichText(sWrapped))
        return sWrapped;
    return QLatin1String("<qt>") + sText.toHtmlEscaped() + QLatin1String("</qt>");
}

QIcon ArtIcon(const CIconArt& art)
{
    QIcon icon;
    for (int nQuarters : {4, 5, 6, 7, 8, 10, 12, 16}) // of a pixel, on the screens that there are
    {
        QImage image = ToQImage(PaintIcon(art, c_nIconSize * nQuarters / 4));
        image.setDevicePixelRatio(1.0); // the icon finds the one that is as large as it needs
        icon.addPixmap(QPixmap::fromImage(image));
    }
    return icon;
}

void KeepDisabledReadable(QWidget& window)
{
    QPalette palette = window.palette();
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> roles[] = {
        {QPalette::Text, QPalette::Base},
        {QPalette::ButtonText, QPalette::Button},
        {QPalette::WindowText, QPalette::Window}};
    for (const auto& [eText, eGround] : roles)
    {
        const QColor text = palette.color(QPalette::Active, eText),
                     ground = palette.color(QPalette::Active, eGround);
        const auto between = [](int a, int b) { return (3 * a + 2 * b) / 5; };
        palette.setColor(QPalette::Disabled, eText,
                         QColor(between(text.red(), ground.red()), between(text.green(), ground.green()),
                                between(text.blue(), ground.blue())));
    }
    window.setPalette(palette);
}

RowLabel::RowLabel(QWidget* pParent) : QLabel(pParent)
{
    setTextFormat(Qt::PlainText);
}

void DrawFrame(QPainter& painter, const QRect& rc, const QColor& color)
{
    painter.fillRect(QRect(rc.left(), rc.top(), rc.width(), 1), color);
    painter.fillRect(QRect(rc.left(), rc.bottom(), rc.width(), 1), color);
    painter.fillRect(QRect(rc.left(), rc.top(), 1, rc.height()), color);
    painter.fillRect(QRect(rc.right(), rc.top(), 1, rc.height()), color);
}

// The labels of a vector's axes all have the width of the first.
bool RowLabel::IsTooLong() const
{
    constexpr int c_nTolerance = 2;
    return fontMetrics().horizontalAdvance(text()) > width() + c_nTolerance;
}

bool RowLabel::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip && IsTooLong())
    {
        QToolTip::showText(static_cast<QHelpEvent*>(pEvent)->globalPos(), PlainToolTip(text()), this);
        return true;
    }
    return QLabel::event(pEvent);
}

void RowLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    // Letters may reach over the line's own height at the edges of a pixel.
    const QString sShown = IsTooLong() ? fontMetrics().elidedText(text(), Qt::ElideRight, width()) : text();
    painter.drawText(rect(), int(alignment()) | Qt::TextSingleLine | Qt::TextDontClip, sShown);
}

SpinArrows::SpinArrows(QWidget* pParent) : QWidget(pParent)
{
    setAttribute(Qt::WA_Hover);
    connect(&m_Repeat, &QTimer::timeout, this,
            [this]
            {
                m_Repeat.setInterval(c_nRepeatMs);
                Step();
            });
}

void SpinArrows::Step()
{
    if (m_nPressed != 0)
        emit Stepped(m_nPressed);
}

void SpinArrows::Stop()
{
    m_Repeat.stop();
    m_nPressed = 0;
    update();
}

void SpinArrows::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton)
        return;
    m_nPressed = pEvent->position().y() < height() / 2.0 ? -1 : 1;
    m_Repeat.start(c_nRepeatDelayMs);
    update();
    Step();
}

void SpinArrows::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        Stop();
}

void SpinArrows::changeEvent(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::EnabledChange)
        Stop();
    QWidget::changeEvent(pEvent);
}

void SpinArrows::hideEvent(QHideEvent* pEvent)
{
    Stop();
    QWidget::hideEvent(pEvent);
}

void SpinArrows::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor face = palette().color(QPalette::Button);
    painter.setPen(EdgeColor(palette()));
    painter.setBrush(isEnabled() && underMouse() ? face.lighter(106) : face);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    const double fMiddle = height() / 2.0;
    for (const int nDelta : {-1, 1})
    {
        const QRectF half(1, nDelta < 0 ? 1 : fMiddle, width() - 2, fMiddle - 1);
        if (m_nPressed == nDelta)
            painter.fillRect(half, face.darker(130));
        const QPointF centre = half.center();
        const double fTip = nDelta * half.height() * 0.24;
        const double fHalf = half.height() * 0.48;
        const QPointF points[3] = {{centre.x(), centre.y() + fTip},
                                   {centre.x() - fHalf, centre.y() - fTip},
                                   {centre.x() + fHalf, centre.y() - fTip}};
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::ButtonText));
        painter.drawPolygon(points, 3);
    }
}

void ListScrollBar::EnableArrows(bool bUp, bool bDown)
{
    if (m_bUp == bUp && m_bDown == bDown)
        return;
    m_bUp = bUp;
    m_bDown = bDown;
    update();
}

// The style knows only a bar that is enabled as a whole: the grey arrows are drawn over it.
void ListScrollBar::paintEvent(QPaintEvent* pEvent)
{
    QScrollBar::paintEvent(pEvent);
    QStyleOptionSlider option;
    initStyleOption(&option);
    option.subControls.setFlag(QStyle::SC_ScrollBarSubLine, !m_bUp);
    option.subControls.setFlag(QStyle::SC_ScrollBarAddLine, !m_bDown);
    option.subControls &= QStyle::SC_ScrollBarSubLine | QStyle::SC_ScrollBarAddLine;
    if (!option.subControls)
        return;
    option.state &= ~QStyle::State_Enabled;
    option.palette.setCurrentColorGroup(QPalette::Disabled);
    QStylePainter(this).drawComplexControl(QStyle::CC_ScrollBar, option);
}

SwatchButton::SwatchButton(QWidget* pParent) : QAbstractButton(pParent)
{
    setFocusPolicy(Qt::StrongFocus);
}

void SwatchButton::SetColor(CColorRef nColor)
{
    if (m_nColor == nColor)
        return;
    m_nColor = nColor;
    update();
}

void SwatchButton::keyPressEvent(QKeyEvent* pEvent)
{
    if (pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(pEvent);
}

void SwatchButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(c_fDisabledOpacity);
    QtSurface surface(painter, rect(), palette());
    PaintSwatch(surface, FromQt(rect()), m_nColor);
    if (hasFocus())
    {
        DrawFrame(painter, rect(), palette().color(QPalette::Highlight));
        DrawFrame(painter, rect().adjusted(1, 1, -1, -1), palette().color(QPalette::HighlightedText));
    }
}

PathButton::PathButton(QWidget* pParent) : QPushButton(pParent) {}

void PathButton::SetPath(const QString& sPath)
{
    if (m_sPath == sPath)
        return;
    m_sPath = sPath;
    setAccessibleDescription(sPath);
    update();
}

void PathButton::paintEvent(QPaintEvent*)
{
    constexpr int c_nMargin = 6;
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    painter.drawControl(QStyle::CE_PushButton, option);
    const QRect rcText = rect().adjusted(c_nMargin, 0, -c_nMargin, 0);
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawText(rcText, Qt::AlignCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_sPath, Qt::ElideMiddle, rcText.width()));
}
