#pragma once

#include <QLabel>
#include <QScrollBar>
#include <QWheelEvent>
#include <QWidget>

#include "qt/toolkit/AccessibleViews.h"
#include "qt/toolkit/TemplateDialog.h"
#include "timeline/TrackWnd.h"

class KeyInfoWidget;
class TimeBarWidget;

// The timeline of one effect on the screen: forwards events to CTrackWnd and paints what it says.
class TrackWidget : public QWidget, public IAccessibleView, private ITrackView
{
    Q_OBJECT

public:
    TrackWidget(CEditContext& context, CSpell& spell, QWidget* pParent);
    ~TrackWidget() override;

    CSpell& GetSpell() const { return m_Spell; }
    CTrackWnd& Logic() { return m_Track; }
    void SetOptions(const CTrackViewOptions& options);             // before: CTrackViewOptions::ForUsers
    void ShowKeys(const std::vector<CKey*>& keys, CTrack* pTrack); // as CTrackWnd does
    QAccessible::Role AccessibleRole() const override { return QAccessible::Chart; }
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override { pEvent->accept(); }
    void contextMenuEvent(QContextMenuEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    bool event(QEvent* pEvent) override;
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;

private:
    void TakeFocus() override { setFocus(Qt::MouseFocusReason); }
    void Invalidate() override;
    void PaintNow() override;
    void PaintRulerNow() override;
    void KeyInfoChanged() override;
    void SetCursorShape(ECursorShape eShape) override;
    CPoint PointerPosition() const override;
    bool IsLeftButtonDown() const override;
    void PostPhaseLengthEntered() override;

    void Layout();
    void ShowMenu(CPoint pt, bool bCtrl);
    void ShowPlace();
    QString TipFor(CPoint pt) const;
    bool IsLinkPress(QEvent* pEvent);

    CEditContext& m_Context;
    CSpell& m_Spell;
    CTrackWnd m_Track;
    KeyInfoWidget* m_pKeyInfo;
    TimeBarWidget* m_pTimeBar;
    QScrollBar* m_pScrollBar;
};

// The bar above the rows.
class KeyInfoWidget : public QWidget
{
    Q_OBJECT

public:
    KeyInfoWidget(CKeyInfoBar& bar, QWidget* pParent);
    void ShowInfo();
    QString Summary() const; // counts, and the key that is worked on
    QSize sizeHint() const override { return m_Controls.GetSize(); }

private:
    CKeyInfoBar& m_Bar;
    CTemplateControls m_Controls;
    QWidget* m_pGroup;
};

// The times of the part of the phase in view.
class RulerWidget : public QWidget, public IAccessibleView
{
    Q_OBJECT

public:
    RulerWidget(CTimeBar& bar, QWidget* pParent);
    QAccessible::Role AccessibleRole() const override { return QAccessible::Graphic; }
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;

private:
    CTimeBar& m_Bar;
};

// The bar below the rows: ruler and sliders.
class TimeBarWidget : public QWidget
{
    Q_OBJECT

public:
    TimeBarWidget(CTimeBar& bar, QWidget* pParent);
    RulerWidget* Ruler() const { return m_pRuler; }
    void ShowViewStart(); // the slider where the view is
    QSize sizeHint() const override { return m_Controls.GetSize(); }

protected:
    void resizeEvent(QResizeEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

private:
    QColor Shade() const;
    void ShadeSliders();

    CTimeBar& m_Bar;
    CTemplateControls m_Controls;
    RulerWidget* m_pRuler;
};
