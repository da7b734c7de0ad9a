#pragma once

#include <QAbstractButton>
#include <QFontMetricsF>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>

#include "platform/IDrawSurface.h"
#include "properties/RowMetrics.h"
#include "qt/toolkit/AccessibleViews.h"

// The small widgets that property rows are made of, beside the toolkit's own.

struct CIconArt;

// How large texts are in a widget's font, as the rows' layout asks. Takes the font as it is when this is made; the widget
// may go.
class FontMeasure : public ITextMeasure
{
public:
    explicit FontMeasure(const QWidget& widget) : m_Metrics(widget.font()) {}
    int32_t TextWidth(std::string_view sText) const override;
    int32_t TextHeight() const override;

private:
    QFontMetricsF m_Metrics;
};

// A text without mark-up as a tool tip: no bracket or ampersand of it means anything, long ones are wrapped.
QString PlainToolTip(const QString& sText);

// Pixel art, crisp at every scale: it holds an image for each that screens have. Transparent where the art is.
QIcon ArtIcon(const CIconArt& art);

// What is disabled in this window still has to be read: values that come from a prefab. Its palette is set from the one
// that it has now, for all its children.
void KeepDisabledReadable(QWidget& window);

// One pixel wide, within the rectangle, at every scale.
void DrawFrame(QPainter& painter, const QRect& rc, const QColor& color);

// A label that is shortened rather than cut, and then says the whole of its text in a tool tip.
class RowLabel : public QLabel
{
    Q_OBJECT

public:
    explicit RowLabel(QWidget* pParent);

protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

private:
    bool IsTooLong() const;
};

// Two arrows, one above the other. Holding one repeats its step.
class SpinArrows : public QWidget, public IAccessibleView
{
    Q_OBJECT

public:
    explicit SpinArrows(QWidget* pParent);
    QAccessible::Role AccessibleRole() const override { return QAccessible::SpinBox; }

signals:
    void Stepped(int nDelta); // -1: the upper arrow

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;
    void hideEvent(QHideEvent* pEvent) override;

private:
    void Step();
    void Stop();

    QTimer m_Repeat;
    int m_nPressed = 0; // the delta of the arrow that is held; 0: none
};

// The vertical bar of a list. An arrow that leads nowhere is grey.
class ListScrollBar : public QScrollBar
{
    Q_OBJECT

public:
    explicit ListScrollBar(QWidget* pParent) : QScrollBar(Qt::Vertical, pParent) {}
    void EnableArrows(bool bUp, bool bDown); // painted only: a press on a grey one does nothing by itself

protected:
    void paintEvent(QPaintEvent* pEvent) override;

private:
    bool m_bUp = true;
    bool m_bDown = true;
};

// Shows a colour, with a raised edge.
class SwatchButton : public QAbstractButton, public IAccessibleView
{
    Q_OBJECT

public:
    explicit SwatchButton(QWidget* pParent);
    void SetColor(CColorRef nColor); // without alpha
    CColorRef GetColor() const { return m_nColor; }
    QAccessible::Role AccessibleRole() const override { return QAccessible::Button; }
    QString AccessibleText() const override { return ColorText(m_nColor); }

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    CColorRef m_nColor = 0;
};

// Shows a path, shortened in the middle. What is shown is never read back.
class PathButton : public QPushButton
{
    Q_OBJECT

public:
    explicit PathButton(QWidget* pParent);
    void SetPath(const QString& sPath); // empty: an empty button
    const QString& GetPath() const { return m_sPath; }

protected:
    void paintEvent(QPaintEvent* pEvent) override;

private:
    QString m_sPath;
};
