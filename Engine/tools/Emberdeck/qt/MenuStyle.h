#pragma once

#include <QMenu>
#include <QProxyStyle>

#include "shell/MenuDecorator.h"
#include "shell/Toolbar.h"

CShellColors ShellColors(const QPalette& palette);

// Draws the items of the program's menus and the buttons of its toolbars by the rules of the shell.
class MenuStyle : public QProxyStyle
{
    Q_OBJECT

public:
    void SetDecorator(CKRMenuDecorator* pDecorator) { m_pDecorator = pDecorator; } // borrowed; null: plain menus

    void drawControl(ControlElement eElement, const QStyleOption* pOption, QPainter* pPainter,
                     const QWidget* pWidget) const override;
    QSize sizeFromContents(ContentsType eType, const QStyleOption* pOption, const QSize& size,
                           const QWidget* pWidget) const override;

private:
    void DrawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter, const QMenu& menu) const;

    CKRMenuDecorator* m_pDecorator = nullptr;
};

// One button of a toolbar, painted by CKRToolbar.
class ToolButton : public QWidget
{
    Q_OBJECT

public:
    ToolButton(const CKRToolbar& toolbar, int32_t nCommand, QWidget* pParent);
    QSize sizeHint() const override { return QSize(26, 26); }
    int32_t GetCommand() const { return m_nCommand; }

signals:
    void Clicked(int32_t nCommand);
    void Hovered(int32_t nCommand); // 0: left

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void enterEvent(QEnterEvent* pEvent) override;
    void leaveEvent(QEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    const CKRToolbar& m_Toolbar;
    int32_t m_nCommand;
    bool m_bPressed = false;
    bool m_bHot = false;
};
