#pragma once

#include <memory>

#include "properties/FunctionCurveEditor.h"
#include "qt/properties/PropertyRow.h"
#include "qt/toolkit/AccessibleViews.h"
#include "qt/toolkit/TemplateDialog.h"

class QComboBox;
class QLabel;

// The curve itself.
class CurveArea : public QWidget, public IAccessibleView
{
    Q_OBJECT

public:
    CurveArea(CFunctionCurveDlg& dialog, QWidget* pParent);
    QAccessible::Role AccessibleRole() const override { return QAccessible::Chart; }
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void hideEvent(QHideEvent* pEvent) override;

private:
    CPoint InDialog(const QMouseEvent& event) const;

    CFunctionCurveDlg& m_Dialog;
};

// Edits a function curve.
class FunctionCurveDialog : public TemplateDialog, private ICurveDialogView
{
    Q_OBJECT

public:
    FunctionCurveDialog(CFunctionCurveDlg& dialog, QWidget* pParent);
    ~FunctionCurveDialog() override;

    void accept() override;

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;

private:
    void RepaintCurve() override { m_pArea->update(); }
    void OnButtonsChanged() override;
    void OnRowHidden() override;
    void MakeHint();
    void WireButtons();
    void SetTabOrder();

    CFunctionCurveDlg& m_Dialog;
    CurveArea* m_pArea;
    QComboBox* m_pAxes;
    QLabel* m_pHint = nullptr; // stands where the row is while no key is selected
    std::unique_ptr<PropertyRow> m_pRow;
};
