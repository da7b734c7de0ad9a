#pragma once

#include "properties/VectorEditor.h"
#include "qt/toolkit/AccessibleViews.h"
#include "qt/toolkit/TemplateDialog.h"

class QComboBox;
class QLineEdit;

// One of the two views of a direction.
class VectorView : public QWidget, public IAccessibleView
{
    Q_OBJECT

public:
    VectorView(CEditVectorDlg& dialog, EVectorView eView, QWidget* pParent);
    QAccessible::Role AccessibleRole() const override { return QAccessible::Graphic; }
    QString AccessibleText() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void hideEvent(QHideEvent* pEvent) override;

private:
    CPoint InDialog(const QMouseEvent& event) const;

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
    void changeEvent(QEvent* pEvent) override;
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
