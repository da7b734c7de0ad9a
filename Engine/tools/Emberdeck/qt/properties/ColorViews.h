#pragma once

#include <QImage>
#include <QWidget>

#include "properties/ColorDialog.h"
#include "qt/toolkit/AccessibleViews.h"

// The painted parts of the colour dialog.
class ColorView : public QWidget, public IAccessibleView
{
    Q_OBJECT

public:
    ColorView(CKRColorDialog& dialog, const QString& sName, QWidget* pParent);
    QAccessible::Role AccessibleRole() const override { return QAccessible::ColorChooser; }

protected:
    CKRColorDialog& m_Dialog;
};

// A grid of cells. Arrows move among them, Space takes one.
class ColorCellsView : public ColorView
{
    Q_OBJECT

public:
    using ColorView::ColorView;

protected:
    virtual void OnPress(CPoint pt, bool bCtrl) = 0;
    virtual void OnKey(EPaletteKey eKey, bool bCtrl) = 0;

    void mousePressEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void focusInEvent(QFocusEvent*) override { update(); }
    void focusOutEvent(QFocusEvent*) override { update(); }
};

// A field from which the pointer takes a value, pressed or dragged.
class ColorFieldView : public ColorView
{
    Q_OBJECT

public:
    using ColorView::ColorView;

protected:
    virtual void OnPointer(CPoint pt) = 0;

    void mousePressEvent(QMouseEvent* pEvent) override { mouseMoveEvent(pEvent); }
    void mouseMoveEvent(QMouseEvent* pEvent) override;
};

// 48 colours to start from.
class BasicColorsView : public ColorCellsView
{
    Q_OBJECT

public:
    BasicColorsView(CKRColorDialog& dialog, QWidget* pParent);
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void OnPress(CPoint pt, bool bCtrl) override;
    void OnKey(EPaletteKey eKey, bool) override { m_Dialog.OnBasicKey(eKey); }
};

// Hue across, saturation up.
class ColorSquareView : public ColorFieldView
{
    Q_OBJECT

public:
    ColorSquareView(CKRColorDialog& dialog, QWidget* pParent);
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void OnPointer(CPoint pt) override;

private:
    QImage m_Image; // always the same, for one size
};

// Luminance up, and beside it the mark of the present one.
class LuminanceView : public ColorFieldView
{
    Q_OBJECT

public:
    // What the mark needs right of the bar and, for its half height, above and below.
    static constexpr int c_nMarkWidth = 9;
    static constexpr int c_nMarkHalf = 4;

    LuminanceView(CKRColorDialog& dialog, QWidget* pParent);
    QAccessible::Role AccessibleRole() const override { return QAccessible::Slider; }
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void OnPointer(CPoint pt) override;

private:
    QRect Bar() const;
};

// The present colour.
class CurrentColorView : public ColorView
{
    Q_OBJECT

public:
    CurrentColorView(CKRColorDialog& dialog, QWidget* pParent);
    QAccessible::Role AccessibleRole() const override { return QAccessible::Graphic; }
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
};

// The custom colours. The dialog gives them the focus, before a press changes anything.
class PaletteView : public ColorCellsView
{
    Q_OBJECT

public:
    PaletteView(CKRColorDialog& dialog, QWidget* pParent);
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void OnPress(CPoint pt, bool bCtrl) override { m_Dialog.GetPalette().OnLeftDown(pt, bCtrl); }
    void OnKey(EPaletteKey eKey, bool bCtrl) override { m_Dialog.GetPalette().OnKey(eKey, bCtrl); }
};
