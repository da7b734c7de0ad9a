#include "qt/properties/ColorViews.h"

#include <optional>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

namespace
{

QImage ToImage(const CGDISurface& surface)
{
    if (surface.IsEmpty() || surface.GetDepth() != 32)
        return QImage();
    QImage image(surface.GetWidth(), surface.GetHeight(), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, ToQt(surface.GetPixel(x, y)));
    return image;
}

// In the pixels of the screen, so that it is as fine as the screen is.
QSize DevicePixels(const QWidget& widget, const QSize& size)
{
    return (size * widget.devicePixelRatioF());
}

bool IsDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

QColor FrameColor(const QPalette& palette)
{
    return palette.color(IsDark(palette) ? QPalette::Light : QPalette::Dark);
}

std::optional<EPaletteKey> PaletteKey(int nKey)
{
    switch (nKey)
    {
    case Qt::Key_Space:
        return EPaletteKey::eSpace;
    case Qt::Key_Left:
        return EPaletteKey::eLeft;
    case Qt::Key_Right:
        return EPaletteKey::eRight;
    case Qt::Key_Up:
        return EPaletteKey::eUp;
    case Qt::Key_Down:
        return EPaletteKey::eDown;
    case Qt::Key_Delete:
        return EPaletteKey::eDelete;
    default:
        return std::nullopt;
    }
}

} // namespace

ColorView::ColorView(CKRColorDialog& dialog, const QString& sName, QWidget* pParent)
    : QWidget(pParent),
      m_Dialog(dialog)
{
    setAccessibleName(sName);
}

void ColorCellsView::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        OnPress(FromQt(pEvent->position()), pEvent->modifiers() & Qt::ControlModifier);
}

void ColorCellsView::keyPressEvent(QKeyEvent* pEvent)
{
    const std::optional<EPaletteKey> eKey = PaletteKey(pEvent->key());
    if (eKey)
        OnKey(*eKey, pEvent->modifiers() & Qt::ControlModifier);
    else
        QWidget::keyPressEvent(pEvent);
}

void ColorFieldView::mouseMoveEvent(QMouseEvent* pEvent)
{
    if (pEvent->buttons() & Qt::LeftButton)
        OnPointer(FromQt(pEvent->position()));
}

BasicColorsView::BasicColorsView(CKRColorDialog& dialog, QWidget* pParent)
    : ColorCellsView(dialog, QStringLiteral("Basic colors"), pParent)
{
    setFocusPolicy(Qt::StrongFocus);
}

QString BasicColorsView::AccessibleText() const
{
    const int nCell = m_Dialog.GetChooser().GetBasicFocus();
    return tr("%1 of %2: %3")
        .arg(nCell + 1)
        .arg(CColorChooser::c_nBasicColors)
        .arg(ColorText(CColorChooser::GetBasicColor(nCell)));
}

void BasicColorsView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const CRect rcAll = FromQt(rect());
    const CColorChooser& chooser = m_Dialog.GetChooser();
    for (int i = 0; i < CColorChooser::c_nBasicColors; ++i)
    {
        const QRect rc = ToQt(CColorChooser::GetBasicRect(rcAll, i));
        const CColorRef nColor = CColorChooser::GetBasicColor(i);
        painter.fillRect(rc, ToQt(nColor));
        DrawFrame(painter, rc, FrameColor(palette()));
        const bool bFocus = hasFocus() && i == chooser.GetBasicFocus();
        if (bFocus || nColor == chooser.GetRgb())
        {
            DrawFrame(painter, rc.adjusted(-2, -2, 2, 2),
                      palette().color(bFocus ? QPalette::Highlight : QPalette::WindowText));
        }
    }
}

void BasicColorsView::OnPress(CPoint pt, bool)
{
    m_Dialog.OnBasicPress(FromQt(rect()), pt);
}

ColorSquareView::ColorSquareView(CKRColorDialog& dialog, QWidget* pParent)
    : ColorFieldView(dialog, QStringLiteral("Hue and saturation"), pParent)
{
    setCursor(Qt::CrossCursor);
}

QString ColorSquareView::AccessibleText() const
{
    return tr("hue %1, saturation %2")
        .arg(QtText::ToQt(m_Dialog.GetText(eColor_HueBox)), QtText::ToQt(m_Dialog.GetText(eColor_SatBox)));
}

void ColorSquareView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QSize size = DevicePixels(*this, this->size());
    if (m_Image.size() != size)
    {
        CGDISurface surface;
        surface.Create(size.width(), size.height(), 32);
        CColorChooser::PaintSquare(surface);
        m_Image = ToImage(surface);
    }
    painter.drawImage(rect(), m_Image);
    DrawFrame(painter, rect(), FrameColor(palette()));
    // A ring that shows on every colour.
    painter.setRenderHint(QPainter::Antialiasing);
    const CPoint pt = m_Dialog.GetChooser().GetSquareMark(FromQt(rect()));
    const QPointF centre(pt.x + 0.5, pt.y + 0.5);
    painter.setPen(QPen(Qt::black, 3.0));
    painter.drawEllipse(centre, 5.0, 5.0);
    painter.setPen(QPen(Qt::white, 1.5));
    painter.drawEllipse(centre, 5.0, 5.0);
}

void ColorSquareView::OnPointer(CPoint pt)
{
    m_Dialog.OnSquare(FromQt(rect()), pt);
}

LuminanceView::LuminanceView(CKRColorDialog& dialog, QWidget* pParent)
    : ColorFieldView(dialog, QStringLiteral("Luminance"), pParent)
{
}

QRect LuminanceView::Bar() const
{
    return rect().adjusted(0, c_nMarkHalf, -c_nMarkWidth, -c_nMarkHalf);
}

QString LuminanceView::AccessibleText() const
{
    return QtText::ToQt(m_Dialog.GetText(eColor_LumBox));
}

void LuminanceView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect rcBar = Bar();
    CGDISurface surface;
    surface.Create(1, DevicePixels(*this, rcBar.size()).height(), 32);
    m_Dialog.GetChooser().PaintBar(surface);
    painter.drawImage(rcBar, ToImage(surface));
    DrawFrame(painter, rcBar, FrameColor(palette()));
    painter.setRenderHint(QPainter::Antialiasing);
    const double y = m_Dialog.GetChooser().GetBarMark(FromQt(rcBar)) + 0.5;
    const double x = rcBar.right() + 3.0;
    const QPointF points[3] = {
        {x, y}, {x + c_nMarkWidth - 3, y - c_nMarkHalf}, {x + c_nMarkWidth - 3, y + c_nMarkHalf}};
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::WindowText));
    painter.drawPolygon(points, 3);
}

void LuminanceView::OnPointer(CPoint pt)
{
    m_Dialog.OnBar(FromQt(Bar()), pt);
}

CurrentColorView::CurrentColorView(CKRColorDialog& dialog, QWidget* pParent)
    : ColorView(dialog, QStringLiteral("Current color"), pParent)
{
}

QString CurrentColorView::AccessibleText() const
{
    return ColorText(m_Dialog.GetChooser().GetRgb());
}

void CurrentColorView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), ToQt(m_Dialog.GetChooser().GetRgb()));
    DrawFrame(painter, rect(), FrameColor(palette()));
}

PaletteView::PaletteView(CKRColorDialog& dialog, QWidget* pParent)
    : ColorCellsView(dialog, QStringLiteral("Custom colors"), pParent)
{
    // A press between the cells takes nothing from the box that has the focus.
    setFocusPolicy(Qt::TabFocus);
}

QString PaletteView::AccessibleText() const
{
    const CCustomColorPalette& cells = m_Dialog.GetPalette();
    const int nCell = cells.GetFocus();
    const QString sText = tr("%1 of %2: %3")
                              .arg(nCell + 1)
                              .arg(CCustomColorPalette::c_nNumCells)
                              .arg(ColorText(cells.GetColor(nCell)));
    const QString sDescription = QtText::ToQt(m_Dialog.GetDescription(nCell));
    return sDescription.isEmpty() ? sText : sText + QLatin1String(", ") + sDescription;
}

void PaletteView::paintEvent(QPaintEvent*)
{
    const QPalette& p = palette();
    CPaletteColors colors;
    colors.m_nFace = FromQt(p.color(QPalette::Button));
    colors.m_nShadow = FromQt(p.color(QPalette::Dark));
    colors.m_nDarkShadow = FromQt(p.color(QPalette::Shadow));
    colors.m_nHighlight = FromQt(p.color(QPalette::Light));
    colors.m_nLight = FromQt(p.color(QPalette::Midlight));
    colors.m_nOutline = IsDark(p) ? 0xFFFFFF : 0;
    QPainter painter(this);
    painter.drawImage(QPoint(), ToImage(m_Dialog.GetPalette().Paint(colors, hasFocus())));
}
