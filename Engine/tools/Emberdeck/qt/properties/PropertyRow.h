#pragma once

#include <array>
#include <vector>

#include <QObject>
#include <QPointer>

#include "properties/EffectPropertyCtrls.h"

class QWidget;

// Shows the controls of a property row as widgets, and tells the row what the user does to them.
class PropertyRow : public QObject, private IRowView
{
    Q_OBJECT

public:
    // The row has its controls already, and outlives this one. The widgets are the parent's.
    PropertyRow(CEffectPropertyCtrls& row, QWidget* pParent);
    ~PropertyRow() override;

    bool Owns(const QWidget* pWidget) const;
    // Those that take the focus by Tab, in order.
    const std::vector<QWidget*>& Focusable() const { return m_Focusable; }
    QWidget* GetWidget(int nSlot) const { return m_apWidgets[size_t(nSlot)]; } // null: none

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void OnControlChanged(int nSlot) override;
    QWidget* Make(int nSlot, const CControlDesc& desc, QWidget* pParent);
    QWidget* MakeEdit(int nSlot, QWidget* pParent);
    QWidget* MakeCombo(int nSlot, const CControlDesc& desc, QWidget* pParent);
    QWidget* MakeButton(int nSlot, const CControlDesc& desc, QWidget* pParent);
    void OnTyped(int nSlot, const QString& sText);
    void Sync(int nSlot);

    CEffectPropertyCtrls& m_Row;
    std::array<QPointer<QWidget>, CEffectPropertyCtrls::c_nMaxSlots> m_apWidgets;
    std::vector<QWidget*> m_Focusable;
};
