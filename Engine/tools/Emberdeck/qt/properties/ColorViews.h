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

// 48 colours to start from. Arrows move among them, Space takes one.
class BasicColorsView : public ColorView
{
    Q_OBJECT

public:
    BasicColorsView(CKRColorDialog& dialog, QWidget* pParent);
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void focusInEvent(QFocusEvent* pEvent) override;
    void focusOutEvent(QFocusEvent* pEvent) override;
};

// Hue across, saturation up.
class ColorSquareView : public ColorView
{
    Q_OBJECT

public:
    ColorSquareView(CKRColorDialog& dialog, QWidget* pParent);
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override { mouseMoveEvent(pEvent); }
    void mouseMoveEvent(QMouseEvent* pEvent) override;

private:
    QImage m_Image; // always the same, for one size
};

// Luminance up, and beside it the mark of the present one.
class LuminanceView : public ColorView
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
    void mousePressEvent(QMouseEvent* pEvent) override { mouseMoveEvent(pEvent); }
    void mouseMoveEvent(QMouseEvent* pEvent) override;

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
class PaletteView : public ColorView
{
    Q_OBJECT

public:
    PaletteView(CKRColorDialog& dialog, QWidget* pParent);
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void focusInEvent(QFocusEvent* pEvent) override;
    void focusOutEvent(QFocusEvent* pEvent) override;
};
