#include "qt/toolkit/ToolBarWidget.h"

#include <QEvent>
#include <QMainWindow>

#include "app/resources/Strings.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/ShellPainter.h"

ToolBarWidget::ToolBarWidget(const CKRToolbar& toolbar, QWidget* pParent)
    : QToolBar(QString::fromUtf8(toolbar.GetTable().m_pszTitle), pParent),
      m_Toolbar(toolbar)
{
    setObjectName(QString::number(toolbar.GetID()));
    setContextMenuPolicy(Qt::PreventContextMenu);
    for (const CToolbarButton& button : toolbar.GetTable())
    {
        if (button.IsGap())
        {
            addSeparator();
            continue;
        }
        const int32_t nCommand = button.m_nCommand;
        auto* pButton = new ToolButton(toolbar, nCommand, this);
        connect(pButton, &QAbstractButton::clicked, this, [this, nCommand] { emit Clicked(nCommand); });
        connect(pButton, &ToolButton::Hovered, this, &ToolBarWidget::Hovered);
        addWidget(pButton);
    }
}

// A bar that was pulled off its frame leaves the keys to what had them in there.
bool ToolBarWidget::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::WindowActivate && isFloating())
        QMetaObject::invokeMethod(parentWidget(), &QWidget::activateWindow, Qt::QueuedConnection);
    return QToolBar::event(pEvent);
}

EBarSide ToolBarWidget::GetSide() const
{
    const auto* pFrame = qobject_cast<const QMainWindow*>(parentWidget());
    if (!pFrame || isFloating())
        return EBarSide::eFloating;
    switch (pFrame->toolBarArea(this))
    {
    case Qt::BottomToolBarArea:
        return EBarSide::eBottom;
    case Qt::LeftToolBarArea:
        return EBarSide::eLeft;
    case Qt::RightToolBarArea:
        return EBarSide::eRight;
    default:
        return EBarSide::eTop;
    }
}

ToolButton::ToolButton(const CKRToolbar& toolbar, int32_t nCommand, QWidget* pParent)
    : QToolButton(pParent),
      m_Toolbar(toolbar),
      m_nCommand(nCommand)
{
    setFixedSize(c_nSize, c_nSize);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    const std::string_view sTip = GetToolTip(nCommand);
    setToolTip(QString::fromUtf8(sTip.data(), qsizetype(sTip.size())));
    setAccessibleName(toolTip());
}

void ToolButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    ShellPainter surface(painter);
    CToolItemState state;
    state.m_bDisabled = !isEnabled();
    state.m_bPressed = isDown();
    // While a press is held outside the pointer still counts as under it.
    state.m_bHot = hasFocus() || (underMouse() && rect().contains(mapFromGlobal(QCursor::pos())));
    m_Toolbar.DrawItem(surface, FromQt(rect()), m_nCommand, state);
}

void ToolButton::enterEvent(QEnterEvent* pEvent)
{
    QToolButton::enterEvent(pEvent);
    emit Hovered(m_nCommand);
}

void ToolButton::leaveEvent(QEvent* pEvent)
{
    QToolButton::leaveEvent(pEvent);
    emit Hovered(0);
}
