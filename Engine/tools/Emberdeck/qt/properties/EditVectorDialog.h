#pragma once

#include "properties/VectorEditor.h"
#include "qt/properties/DragView.h"
#include "qt/toolkit/TemplateDialog.h"

class QComboBox;
class QLineEdit;

// One of the two views of a direction.
class VectorView : public DragView
{
    Q_OBJECT

public:
    VectorView(CEditVectorDlg& dialog, EVectorView eView, QWidget& parent);
    QAccessible::Role AccessibleRole() const override { return QAccessible::Graphic; }
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void OnPress(CPoint pt, Qt::KeyboardModifiers) override { m_Dialog.OnLeftDown(pt); }
    void OnMove(CPoint pt, Qt::KeyboardModifiers) override { m_Dialog.OnMouseMove(pt); }
    void OnRightRelease(CPoint) override {}
    void EndDrag() override { m_Dialog.OnLeftUp(); }
    bool CancelDrag() override { return m_Dialog.CancelDrag(); }

private:
    CEditVectorDlg& m_Dialog;
    EVectorView m_eView;
};

// A vector as a direction and a magnitude.
class EditVectorDialog : public TemplateDialog, private IVectorDialogView
{
    Q_OBJECT

public:
    EditVectorDialog(CEditVectorDlg& dialog, QWidget* pParent);
    ~EditVectorDialog() override;

    void accept() override;

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void RepaintViews() override;
    void ShowMagnitude() override;
    void SelectMagnitude() override;

    CEditVectorDlg& m_Dialog;
    VectorView* m_pSide;
    VectorView* m_pTop;
    QLineEdit* m_pMagnitude;
    QComboBox* m_pPresets;
};
