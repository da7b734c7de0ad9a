#include "qt/toolkit/MenuStyle.h"

#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionMenuItem>

#include "qt/toolkit/Appearance.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/ShellPainter.h"
#include "qt/toolkit/ToolBarWidget.h"

namespace
{
// Lines about menus and boxes: half way between the window and its text would be loud, a third is seen.
QColor FrameColor(const QPalette& palette)
{
    const QColor ground = palette.color(QPalette::Active, QPalette::Window),
                 text = palette.color(QPalette::Active, QPalette::WindowText);
    const auto mix = [](int nGround, int nText) { return nGround + (nText - nGround) * 3 / 10; };
    return QColor(mix(ground.red(), text.red()), mix(ground.green(), text.green()),
                  mix(ground.blue(), text.blue()));
}

// What stands behind a tab is a key that the item brings along, as the toolkit's own menus do.
QString KeyOf(const QAction& action)
{
    const qsizetype nTab = action.text().indexOf(QLatin1Char('\t'));
    return nTab >= 0 ? action.text().mid(nTab + 1) : action.shortcut().toString(QKeySequence::NativeText);
}

// The style darkens the ground for the edge of a box, which on a dark one can't be told from it.
void DrawEdgeOnDark(const QStyleOption& option, QPainter& painter, bool bRound)
{
    if (option.palette.color(QPalette::Window).lightness() >= 128 || (option.state & QStyle::State_HasFocus))
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(FrameColor(option.palette));
    painter.setBrush(Qt::NoBrush);
    if (bRound)
    {
        const qreal fSize = std::min(option.rect.width(), option.rect.height()) - 1;
        QRectF rc(0, 0, fSize, fSize);
        rc.moveCenter(QRectF(option.rect).center());
        painter.drawEllipse(rc);
    }
    else
        painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    painter.restore();
}

CPopupItem ItemOf(const QAction& action, bool bDefault)
{
    CPopupItem item;
    item.m_nID = action.data().toInt();
    item.m_sText = action.text().toStdString();
    item.m_bSeparator = action.isSeparator();
    item.m_bSubmenu = action.menu() != nullptr;
    item.m_bDefault = bDefault;
    item.m_sKey = KeyOf(action).toStdString();
    return item;
}

const ToolBarWidget* ToolBarOf(const QWidget* pWidget)
{
    return qobject_cast<const ToolBarWidget*>(pWidget);
}
} // namespace

void MenuStyle::polish(QWidget* pWidget)
{
    QProxyStyle::polish(pWidget);
    auto* pMenu = qobject_cast<QMenu*>(pWidget);
    if (!pMenu)
        return;
    connect(pMenu, &QMenu::aboutToShow, this, &MenuStyle::OnMenuOpening, Qt::UniqueConnection);
    connect(pMenu, &QMenu::aboutToHide, this, &MenuStyle::OnMenuClosing, Qt::UniqueConnection);
    connect(pMenu, &QMenu::hovered, this, &MenuStyle::OnMenuHovered, Qt::UniqueConnection);
    pMenu->installEventFilter(this);
}

// A menu says nothing when the pointer goes to a separator, or away.
bool MenuStyle::eventFilter(QObject* pObject, QEvent* pEvent)
{
    if (m_pHinting == pObject && (pEvent->type() == QEvent::MouseMove || pEvent->type() == QEvent::Leave))
    {
        const QAction* pAction = nullptr;
        if (pEvent->type() == QEvent::MouseMove)
            pAction = static_cast<QMenu*>(pObject)->actionAt(
                static_cast<QMouseEvent*>(pEvent)->position().toPoint());
        if (!pAction || pAction->isSeparator())
            emit ItemHovered(0);
    }
    return QProxyStyle::eventFilter(pObject, pEvent);
}

void MenuStyle::OnMenuOpening()
{
    const auto* pMenu = qobject_cast<const QMenu*>(sender());
    if (Decorates(pMenu))
        Decorate(*pMenu);
}

void MenuStyle::OnMenuClosing()
{
    // A submenu that closes behind the pointer, when that is on the next item already, has nothing to say.
    if (m_pHinting == sender())
        emit ItemHovered(0);
}

void MenuStyle::OnMenuHovered(QAction* pAction)
{
    // A menu also speaks for its submenus.
    const auto* pMenu = qobject_cast<const QMenu*>(sender());
    if (!pMenu || !pMenu->actions().contains(pAction))
        return;
    m_pHinting = pMenu;
    emit ItemHovered(pAction->data().toInt());
}

bool MenuStyle::Decorates(const QMenu* pMenu) const
{
    return m_pDecorator && pMenu && !qobject_cast<const QMdiSubWindow*>(pMenu->parentWidget());
}

const CDecoratedPopup* MenuStyle::Decorate(const QMenu& menu) const
{
    connect(&menu, &QObject::destroyed, this, &MenuStyle::OnMenuDestroyed, Qt::UniqueConnection);
    std::vector<CPopupItem> items;
    m_nKeyColumn = 0;
    for (const QAction* pAction : menu.actions())
    {
        items.push_back(ItemOf(*pAction, pAction == menu.defaultAction()));
        m_nKeyColumn = std::max(m_nKeyColumn, menu.fontMetrics().horizontalAdvance(KeyOf(*pAction)));
    }
    m_pMeasured = &menu;
    m_pDecorator->DecoratePopup(&menu, items, MenuFont(menu.font()));
    return m_pDecorator->FindPopup(&menu);
}

void MenuStyle::OnMenuDestroyed(QObject* pMenu)
{
    if (m_pDecorator)
        m_pDecorator->ForgetPopup(pMenu);
    if (m_pHinting == pMenu)
        m_pHinting = nullptr;
}

void MenuStyle::drawControl(ControlElement eElement, const QStyleOption* pOption, QPainter* pPainter,
                            const QWidget* pWidget) const
{
    const auto* pMenu = qobject_cast<const QMenu*>(pWidget);
    const auto* pItem = qstyleoption_cast<const QStyleOptionMenuItem*>(pOption);
    if (eElement == CE_MenuItem && pItem && Decorates(pMenu))
        DrawMenuItem(*pItem, *pPainter, *pMenu);
    else if (const ToolBarWidget* pBar = ToolBarOf(pWidget); pBar && eElement == CE_ToolBar)
    {
        ShellPainter surface(*pPainter);
        pBar->Logic().DrawGround(surface, FromQt(pBar->rect()));
    }
    else
        QProxyStyle::drawControl(eElement, pOption, pPainter, pWidget);
}

QPalette MenuStyle::standardPalette() const
{
    return AppearancePalette(EAppearance::eLight);
}

int MenuStyle::pixelMetric(PixelMetric eMetric, const QStyleOption* pOption, const QWidget* pWidget) const
{
    if (eMetric == PM_ToolBarHandleExtent && ToolBarOf(pWidget))
        return CKRToolbar::c_nGripperRoom;
    return eMetric == PM_MenuPanelWidth ? 1 : QProxyStyle::pixelMetric(eMetric, pOption, pWidget);
}

// The toolkit shows the four-way arrow where the handle of a bar is said to be.
QRect MenuStyle::subElementRect(SubElement eElement, const QStyleOption* pOption,
                                const QWidget* pWidget) const
{
    const ToolBarWidget* pBar = ToolBarOf(pWidget);
    if (eElement == SE_ToolBarHandle && pBar && !pBar->isFloating())
        return ToQt(CKRToolbar::GetGripperZone(FromQt(pBar->rect()), pBar->GetSide()));
    return QProxyStyle::subElementRect(eElement, pOption, pWidget);
}

int MenuStyle::styleHint(StyleHint eHint, const QStyleOption* pOption, const QWidget* pWidget,
                         QStyleHintReturn* pReturn) const
{
    const bool bNo = eHint == SH_ComboBox_Popup || eHint == SH_DialogButtonBox_ButtonsHaveIcons;
    return bNo ? 0 : QProxyStyle::styleHint(eHint, pOption, pWidget, pReturn);
}

void MenuStyle::drawPrimitive(PrimitiveElement eElement, const QStyleOption* pOption, QPainter* pPainter,
                              const QWidget* pWidget) const
{
    // A floating bar has no gripper, but neither has it a title bar here: it keeps the toolkit's handle to be
    // held by.
    if (const ToolBarWidget* pBar = ToolBarOf(pWidget);
        pBar && eElement == PE_IndicatorToolBarHandle && !pBar->isFloating())
    {
        ShellPainter surface(*pPainter);
        pBar->Logic().DrawGripper(surface, FromQt(pBar->rect()), pBar->GetSide());
        return;
    }
    if (eElement != PE_FrameMenu && eElement != PE_PanelMenu)
    {
        QProxyStyle::drawPrimitive(eElement, pOption, pPainter, pWidget);
        if (eElement == PE_FrameLineEdit || eElement == PE_IndicatorCheckBox ||
            eElement == PE_IndicatorRadioButton)
            DrawEdgeOnDark(*pOption, *pPainter, eElement == PE_IndicatorRadioButton);
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

QRect MenuStyle::subControlRect(ComplexControl eControl, const QStyleOptionComplex* pOption, SubControl eSub,
                                const QWidget* pWidget) const
{
    const auto* pBox = qstyleoption_cast<const QStyleOptionGroupBox*>(pOption);
    if (eControl != CC_GroupBox || !pBox || (pBox->subControls & SC_GroupBoxCheckBox))
        return QProxyStyle::subControlRect(eControl, pOption, eSub, pWidget);
    const int nText = pBox->text.isEmpty() ? 0 : pBox->fontMetrics.height();
    if (eSub == SC_GroupBoxFrame)
        return pBox->rect.adjusted(0, nText / 2, 0, 0);
    if (eSub == SC_GroupBoxLabel)
        return QRect(pBox->rect.left() + 9, pBox->rect.top(),
                     pBox->fontMetrics.size(Qt::TextShowMnemonic, pBox->text).width() + 6, nText);
    return pBox->rect.adjusted(4, nText + 2, -4, -4);
}

void MenuStyle::drawComplexControl(ComplexControl eControl, const QStyleOptionComplex* pOption,
                                   QPainter* pPainter, const QWidget* pWidget) const
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
    drawItemText(pPainter, rcLabel, Qt::AlignCenter | Qt::TextShowMnemonic, pBox->palette,
                 pBox->state & State_Enabled, pBox->text, QPalette::WindowText);
}

void MenuStyle::DrawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter, const QMenu& menu) const
{
    const qsizetype nItem = menu.actions().indexOf(menu.actionAt(option.rect.center()));
    if (nItem < 0)
        return;
    CMenuItemState state;
    state.m_bSelected = option.state & State_Selected;
    state.m_bChecked = option.checked;
    state.m_bDisabled = !(option.state & State_Enabled);
    painter.save();
    painter.setFont(option.font);
    ShellPainter surface(painter);
    m_pDecorator->DrawItem(&menu, size_t(nItem), surface, FromQt(option.rect), state,
                           ShellColors(option.palette));
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu)
    {
        QStyleOption arrow;
        arrow.palette = option.palette;
        arrow.state = option.state & ~State_Selected; // it stands on no other ground than the text does
        arrow.rect =
            QRect(option.rect.right() - 14, option.rect.top() + (option.rect.height() - 10) / 2, 10, 10);
        QProxyStyle::drawPrimitive(PE_IndicatorArrowRight, &arrow, &painter, nullptr);
    }
    painter.restore();
}

QSize MenuStyle::sizeFromContents(ContentsType eType, const QStyleOption* pOption, const QSize& size,
                                  const QWidget* pWidget) const
{
    const auto* pItem = qstyleoption_cast<const QStyleOptionMenuItem*>(pOption);
    const auto* pMenu = qobject_cast<const QMenu*>(pWidget);
    if (eType != CT_MenuItem || !pItem || !Decorates(pMenu))
        return QProxyStyle::sizeFromContents(eType, pOption, size, pWidget);
    const CDecoratedPopup* pPopup = m_pDecorator->FindPopup(pMenu);
    // A menu may be asked for its size before it opens, and may have got items since.
    if (!pPopup || m_pMeasured != pMenu || pPopup->m_Items.size() != size_t(pMenu->actions().size()))
        pPopup = Decorate(*pMenu);
    if (pItem->menuItemType == QStyleOptionMenuItem::Separator)
        return QSize(1, CKRMenuItem::c_nSeparatorHeight); // the menu leaves out what has no width at all
    // All items of a menu are as wide as the widest. The menu adds the keys that items bring along by itself.
    return QSize(std::max(pPopup->m_nWidth + CKRMenuItem::c_nRightRoom - m_nKeyColumn, 1), pPopup->m_nHeight);
}
