#include "qt/MenuStyle.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionMenuItem>

#include "qt/Appearance.h"
#include "qt/ProgramIcon.h"
#include "qt/QtSurface.h"
#include "qt/QtText.h"

namespace
{
class ShellSurface : public IShellSurface
{
public:
    explicit ShellSurface(QPainter& painter) : m_Painter(painter) {}
    void FillRect(const CRect& rc, CColorRef nColor) override { m_Painter.fillRect(ToQt(rc), ToQt(nColor)); }
    void DrawImage(CPoint pt, const CPixelImage& image) override { m_Painter.drawImage(ToQt(pt), ToQImage(image)); }
    void DrawMenuText(const CRect& rc, std::string_view sText, CColorRef nColor, bool bBold, bool bRight) override
    {
        m_Painter.save();
        QFont font = m_Painter.font();
        font.setBold(bBold);
        m_Painter.setFont(font);
        m_Painter.setPen(ToQt(nColor));
        m_Painter.drawText(ToQt(rc), Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextShowMnemonic | (bRight ? Qt::AlignRight : Qt::AlignLeft),
                           QtText::ToQt(sText));
        m_Painter.restore();
    }

private:
    QPainter& m_Painter;
};

class MenuFont : public IMenuFont
{
public:
    explicit MenuFont(const QFont& font) : m_Font(font) {}
    CMenuTextSize Measure(std::string_view sText, bool bBold) const override
    {
        QFont font = m_Font;
        font.setBold(bBold);
        const QFontMetrics metrics(font);
        return CMenuTextSize{metrics.size(Qt::TextShowMnemonic, QtText::ToQt(sText)).width(), metrics.height()};
    }

private:
    QFont m_Font;
};

// Lines about menus and boxes: half way between the window and its text would be loud, a third is seen.
QColor FrameColor(const QPalette& palette)
{
    const QColor ground = palette.color(QPalette::Active, QPalette::Window), text = palette.color(QPalette::Active, QPalette::WindowText);
    const auto mix = [](int nGround, int nText) { return nGround + (nText - nGround) * 3 / 10; };
    return QColor(mix(ground.red(), text.red()), mix(ground.green(), text.green()), mix(ground.blue(), text.blue()));
}

CPopupItem ItemOf(const QAction& action, bool bDefault)
{
    CPopupItem item;
    item.m_nID = action.data().toInt();
    item.m_sText = action.text().section(QLatin1Char('\t'), 0, 0).toStdString();
    item.m_bSeparator = action.isSeparator();
    item.m_bSubmenu = action.menu() != nullptr;
    item.m_bDefault = bDefault;
    return item;
}
} // namespace

CShellColors ShellColors(const QPalette& palette)
{
    CShellColors colors;
    colors.m_nFace = FromQt(palette.color(QPalette::Button));
    colors.m_nShadow = FromQt(palette.color(QPalette::Dark));
    colors.m_nHighlight = FromQt(palette.color(QPalette::Highlight));
    colors.m_nMenu = FromQt(palette.color(QPalette::Base));
    colors.m_nMenuText = FromQt(palette.color(QPalette::Text));
    colors.m_nGrayText = FromQt(palette.color(QPalette::Disabled, QPalette::Text));
    return colors;
}

void MenuStyle::drawControl(ControlElement eElement, const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const
{
    const auto* pMenu = qobject_cast<const QMenu*>(pWidget);
    const auto* pItem = qstyleoption_cast<const QStyleOptionMenuItem*>(pOption);
    if (eElement == CE_MenuItem && pMenu && pItem && m_pDecorator)
        DrawMenuItem(*pItem, *pPainter, *pMenu);
    else
        QProxyStyle::drawControl(eElement, pOption, pPainter, pWidget);
}

QPalette MenuStyle::standardPalette() const { return AppearancePalette(EAppearance::eLight); }

int MenuStyle::pixelMetric(PixelMetric eMetric, const QStyleOption* pOption, const QWidget* pWidget) const
{
    return eMetric == PM_MenuPanelWidth ? 1 : QProxyStyle::pixelMetric(eMetric, pOption, pWidget);
}

void MenuStyle::drawPrimitive(PrimitiveElement eElement, const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const
{
    if (eElement != PE_FrameMenu && eElement != PE_PanelMenu)
    {
        QProxyStyle::drawPrimitive(eElement, pOption, pPainter, pWidget);
        return;
    }
    if (eElement == PE_PanelMenu)
        pPainter->fillRect(pOption->rect, pOption->palette.color(QPalette::Active, QPalette::Base));
    const QColor edge = FrameColor(pOption->palette);
    const QRect rc = pOption->rect;
    pPainter->fillRect(QRect(rc.left(), rc.top(), rc.width(), 1), edge);
    pPainter->fillRect(QRect(rc.left(), rc.bottom(), rc.width(), 1), edge);
    pPainter->fillRect(QRect(rc.left(), rc.top(), 1, rc.height()), edge);
    pPainter->fillRect(QRect(rc.right(), rc.top(), 1, rc.height()), edge);
}

QRect MenuStyle::subControlRect(ComplexControl eControl, const QStyleOptionComplex* pOption, SubControl eSub, const QWidget* pWidget) const
{
    const auto* pBox = qstyleoption_cast<const QStyleOptionGroupBox*>(pOption);
    if (eControl != CC_GroupBox || !pBox || (pBox->subControls & SC_GroupBoxCheckBox))
        return QProxyStyle::subControlRect(eControl, pOption, eSub, pWidget);
    const int nText = pBox->text.isEmpty() ? 0 : pBox->fontMetrics.height();
    if (eSub == SC_GroupBoxFrame)
        return pBox->rect.adjusted(0, nText / 2, 0, 0);
    if (eSub == SC_GroupBoxLabel)
        return QRect(pBox->rect.left() + 9, pBox->rect.top(), pBox->fontMetrics.size(Qt::TextShowMnemonic, pBox->text).width() + 6, nText);
    return pBox->rect.adjusted(4, nText + 2, -4, -4);
}

void MenuStyle::drawComplexControl(ComplexControl eControl, const QStyleOptionComplex* pOption, QPainter* pPainter, const QWidget* pWidget) const
{
    const auto* pBox = qstyleoption_cast<const QStyleOptionGroupBox*>(pOption);
    if (eControl != CC_GroupBox || !pBox || (pBox->subControls & SC_GroupBoxCheckBox))
    {
        QProxyStyle::drawComplexControl(eControl, pOption, pPainter, pWidget);
        return;
    }
    const QRect rcFrame = subControlRect(eControl, pOption, SC_GroupBoxFrame, pWidget);
    const QRect rcLabel = subControlRect(eControl, pOption, SC_GroupBoxLabel, pWidget);
    pPainter->save();
    if (!pBox->text.isEmpty()) // the line stops at the title
        pPainter->setClipRegion(QRegion(pBox->rect) - QRegion(rcLabel));
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setPen(FrameColor(pBox->palette));
    pPainter->setBrush(Qt::NoBrush);
    pPainter->drawRoundedRect(QRectF(rcFrame).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    pPainter->restore();
    drawItemText(pPainter, rcLabel, Qt::AlignCenter | Qt::TextShowMnemonic, pBox->palette, pBox->state & State_Enabled, pBox->text,
                 QPalette::WindowText);
}

void MenuStyle::DrawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter, const QMenu& menu) const
{
    const QAction* pAction = menu.actionAt(option.rect.center());
    QPalette palette = option.palette;
    palette.setCurrentColorGroup(QPalette::Active); // the ground of a disabled item is that of the others
    CShellColors colors = ShellColors(palette);
    // What is selected stands on a light ground in every palette.
    if ((option.state & State_Selected) && palette.color(QPalette::Text).lightness() > 128)
    {
        colors.m_nMenuText = FromQt(palette.color(QPalette::Dark));
        colors.m_nGrayText = FromQt(palette.color(QPalette::Light));
    }
    ShellSurface surface(painter);
    // A light gutter and a light selection need dark text, a dark palette keeps its own ground.
    CPopupItem item = pAction ? ItemOf(*pAction, pAction == menu.defaultAction()) : CPopupItem{};
    if (option.menuItemType == QStyleOptionMenuItem::Separator)
        item.m_bSeparator = true;
    std::string sKey = option.text.section(QLatin1Char('\t'), 1).toStdString();
    if (sKey.empty() && item.m_nID)
        sKey = m_pDecorator->GetCommandKey(item.m_nID);
    const uint32_t nBits = (item.m_bSeparator ? eMenuSeparator : 0u) | (item.m_bSubmenu ? eMenuSubmenu : 0u) | (item.m_bDefault ? eMenuDefault : 0u);
    const CKRMenuItem drawn(item.m_nID, nBits, item.m_sText, sKey);
    CMenuItemState state;
    state.m_bSelected = option.state & State_Selected;
    state.m_bChecked = option.checked;
    state.m_bDisabled = !(option.state & State_Enabled);
    CMenuItemIcons icons;
    if (item.m_nID)
        icons = {m_pDecorator->FindIcon(item.m_nID, EImageKind::eNormal), m_pDecorator->FindIcon(item.m_nID, EImageKind::eHot),
                 m_pDecorator->FindIcon(item.m_nID, EImageKind::eDisabled)};
    painter.save();
    painter.setFont(option.font);
    drawn.DrawItem(surface, FromQt(option.rect), state, icons, colors);
    if (item.m_bSubmenu)
    {
        QStyleOption arrow;
        arrow.palette = option.palette;
        arrow.state = option.state;
        arrow.rect = QRect(option.rect.right() - 14, option.rect.top() + (option.rect.height() - 10) / 2, 10, 10);
        QProxyStyle::drawPrimitive(PE_IndicatorArrowRight, &arrow, &painter, nullptr);
    }
    painter.restore();
}

QSize MenuStyle::sizeFromContents(ContentsType eType, const QStyleOption* pOption, const QSize& size, const QWidget* pWidget) const
{
    const auto* pItem = qstyleoption_cast<const QStyleOptionMenuItem*>(pOption);
    if (eType != CT_MenuItem || !pItem || !m_pDecorator)
        return QProxyStyle::sizeFromContents(eType, pOption, size, pWidget);
    if (pItem->menuItemType == QStyleOptionMenuItem::Separator)
        return QSize(1, 5); // the menu leaves out what has no width at all
    const MenuFont font(pItem->font);
    const bool bSubmenu = pItem->menuItemType == QStyleOptionMenuItem::SubMenu;
    // The key's text takes its own column, which the menu adds by itself where the item has one.
    CKRMenuItem item(0, bSubmenu ? eMenuSubmenu : 0u, pItem->text.section(QLatin1Char('\t'), 0, 0).toStdString(), std::string());
    item.MeasureItem(font, 0);
    const int nKey = 20 + font.Measure("Ctrl+Shift+F5", false).m_nWidth / 2;
    return QSize(item.GetWidth() + CKRMenuItem::c_nRightRoom + (bSubmenu ? 0 : nKey), item.GetHeight());
}

ToolButton::ToolButton(const CKRToolbar& toolbar, int32_t nCommand, QWidget* pParent)
    : QWidget(pParent), m_Toolbar(toolbar), m_nCommand(nCommand)
{
    setFixedSize(26, 26);
    setFocusPolicy(Qt::NoFocus);
}

void ToolButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    ShellSurface surface(painter);
    CToolItemState state;
    state.m_bDisabled = !isEnabled();
    // The images of disabled buttons are made for a light bar: on a dark one they would outshine the others.
    if (state.m_bDisabled && palette().color(QPalette::WindowText).lightness() > 128)
        painter.setOpacity(0.4);
    state.m_bPressed = m_bPressed;
    state.m_bHot = m_bHot;
    m_Toolbar.DrawItem(surface, FromQt(rect()), m_nCommand, state);
}

void ToolButton::mousePressEvent(QMouseEvent* pEvent)
{
    m_bPressed = pEvent->button() == Qt::LeftButton;
    update();
}

void ToolButton::mouseReleaseEvent(QMouseEvent* pEvent)
{
    const bool bClick = m_bPressed && rect().contains(pEvent->position().toPoint());
    m_bPressed = false;
    update();
    if (bClick)
        emit Clicked(m_nCommand);
}

void ToolButton::enterEvent(QEnterEvent*)
{
    m_bHot = true;
    update();
    emit Hovered(m_nCommand);
}

void ToolButton::leaveEvent(QEvent*)
{
    m_bHot = false;
    update();
    emit Hovered(0);
}

void ToolButton::keyPressEvent(QKeyEvent* pEvent)
{
    if (pEvent->key() == Qt::Key_Space)
        emit Clicked(m_nCommand);
    else
        QWidget::keyPressEvent(pEvent);
}
