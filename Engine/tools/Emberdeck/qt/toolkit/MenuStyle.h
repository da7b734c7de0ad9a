#pragma once

#include <QMenu>
#include <QProxyStyle>

#include "shell/MenuDecorator.h"

// Draws menus and toolbars by the rules of the shell, and boxes about a group of controls with the title on
// their upper edge, where the dialog templates leave room for it. All else is the one style that looks the
// same on every desktop. The menus of child windows' frames are left to the toolkit.
class MenuStyle : public QProxyStyle
{
    Q_OBJECT

public:
    MenuStyle() : QProxyStyle(QStringLiteral("Fusion")) {}
    void SetDecorator(CKRMenuDecorator* pDecorator)
    {
        m_pDecorator = pDecorator;
    } // borrowed; null: plain menus

    void polish(QWidget* pWidget) override;
    using QProxyStyle::polish;
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;

    void drawControl(ControlElement eElement, const QStyleOption* pOption, QPainter* pPainter,
                     const QWidget* pWidget) const override;
    void drawComplexControl(ComplexControl eControl, const QStyleOptionComplex* pOption, QPainter* pPainter,
                            const QWidget* pWidget) const override;
    void drawPrimitive(PrimitiveElement eElement, const QStyleOption* pOption, QPainter* pPainter,
                       const QWidget* pWidget) const override;
    QRect subControlRect(ComplexControl eControl, const QStyleOptionComplex* pOption, SubControl eSub,
                         const QWidget* pWidget) const override;
    QRect subElementRect(SubElement eElement, const QStyleOption* pOption,
                         const QWidget* pWidget) const override;
    int pixelMetric(PixelMetric eMetric, const QStyleOption* pOption, const QWidget* pWidget) const override;
    // A list that drops down opens below its field, as long as it says, with a bar of its own. Buttons of
    // message boxes look like those of all other dialogs.
    int styleHint(StyleHint eHint, const QStyleOption* pOption, const QWidget* pWidget,
                  QStyleHintReturn* pReturn) const override;
    QPalette standardPalette() const override; // where the desktop has no colours of its own
    QSize sizeFromContents(ContentsType eType, const QStyleOption* pOption, const QSize& size,
                           const QWidget* pWidget) const override;

signals:
    // The pointer is over an item of any menu of the program; 0: over none, or one without a command.
    void ItemHovered(int32_t nCommand);

private:
    void OnMenuOpening();
    void OnMenuClosing();
    void OnMenuHovered(QAction* pAction);
    void OnMenuDestroyed(QObject* pMenu);
    bool Decorates(const QMenu* pMenu) const;
    const CDecoratedPopup* Decorate(const QMenu& menu) const;
    void DrawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter, const QMenu& menu) const;

    CKRMenuDecorator* m_pDecorator = nullptr;
    const QObject* m_pHinting = nullptr; // the menu of the last item; only compared
    // Of the menu that was decorated last: the width that it adds by itself for keys.
    mutable const QObject* m_pMeasured = nullptr; // only compared
    mutable int m_nKeyColumn = 0;
};
