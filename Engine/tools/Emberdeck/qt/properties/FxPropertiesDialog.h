#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QPointer>

#include "properties/FXProperties.h"
#include "qt/properties/PropertyRow.h"
#include "qt/toolkit/TemplateDialog.h"

class QCheckBox;
class ListScrollBar;

// The list of all properties of a key or prefab.
class FxPropertiesDialog : public TemplateDialog, private IPropertiesView
{
    Q_OBJECT

public:
    FxPropertiesDialog(CFXPropertiesDlg& dialog, QWidget* pParent);
    ~FxPropertiesDialog() override;

    void accept() override;

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    bool focusNextPrevChild(bool bNext) override;

private:
    void OnCheckChanged(uint32_t nRow) override;
    void OnScrollBarChanged() override;
    void OnParentButtonsChanged() override;
    void Repaint() override { update(); }

    void FitScreen();
    void MakeRows();
    void MakeCheck(uint32_t nRow);
    void SetTabOrder();
    void KeepFocusInView(const std::function<void()>& scroll);
    int RowOf(const QWidget* pWidget) const;             // -1: of no row
    std::vector<QWidget*> UsableIn(uint32_t nRow) const; // takes the focus now
    bool FocusRow(uint32_t nRow, bool bFirst);
    uint32_t LastRowInView() const;

    CFXPropertiesDlg& m_Dialog;
    QRect m_rcRows;
    std::vector<std::unique_ptr<PropertyRow>> m_Rows;
    std::vector<QPointer<QCheckBox>> m_Checks;
    ListScrollBar* m_pScrollBar;
};
