#pragma once

#include <memory>

#include "properties/FunctionCurveEditor.h"
#include "qt/properties/DragView.h"
#include "qt/properties/PropertyRow.h"
#include "qt/toolkit/TemplateDialog.h"

class QComboBox;
class QLabel;

// The curve itself.
class CurveArea : public DragView
{
    Q_OBJECT

public:
    CurveArea(CFunctionCurveDlg& dialog, QWidget& parent);
    QAccessible::Role AccessibleRole() const override { return QAccessible::Chart; }
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void OnPress(CPoint pt, Qt::KeyboardModifiers held) override
    {
        m_Dialog.OnLeftDown(pt, held & Qt::ControlModifier);
    }
    void OnMove(CPoint pt, Qt::KeyboardModifiers held) override
    {
        m_Dialog.OnMouseMove(pt, held & Qt::ShiftModifier);
    }
    void OnRightRelease(CPoint pt) override { m_Dialog.OnRightUp(pt); }
    void EndDrag() override { m_Dialog.OnLeftUp(); }
    bool CancelDrag() override { return m_Dialog.CancelDrag(); }

private:
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
