#pragma once

#include <QMenu>
#include <QProxyStyle>

#include "shell/MenuDecorator.h"
#include "shell/Toolbar.h"

CShellColors ShellColors(const QPalette& palette);

// Draws the items of the program's menus by the rules of the shell, and boxes about a group of controls with
// the title on their upper edge, where the dialog templates leave room for it. All else is the one style that
// looks the same on every desktop.
class MenuStyle : public QProxyStyle
{
    Q_OBJECT

public:
    MenuStyle() : QProxyStyle(QStringLiteral("Fusion")) {}
    void SetDecorator(CKRMenuDecorator* pDecorator) { m_pDecorator = pDecorator; } // borrowed; null: plain menus

    void drawControl(ControlElement eElement, const QStyleOption* pOption, QPainter* pPainter,
                     const QWidget* pWidget) const override;
    void drawComplexControl(ComplexControl eControl, const QStyleOptionComplex* pOption, QPainter* pPainter,
                            const QWidget* pWidget) const override;
    void drawPrimitive(PrimitiveElement eElement, const QStyleOption* pOption, QPainter* pPainter,
                       const QWidget* pWidget) const override;
    QRect subControlRect(ComplexControl eControl, const QStyleOptionComplex* pOption, SubControl eSub,
                         const QWidget* pWidget) const override;
    int pixelMetric(PixelMetric eMetric, const QStyleOption* pOption, const QWidget* pWidget) const override;
    QPalette standardPalette() const override; // where the desktop has no colours of its own
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
