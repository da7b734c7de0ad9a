#include "properties/EffectPropertyCtrls.h"
#include "properties/FunctionCurveEditor.h"
#include "properties/RowKinds.h"

// Values between controls and a property, and what the user does to a control.

namespace
{

bool IsExchangeable(const CEffectProperty* pProp, int nKey, uint32_t eType)
{
    return pProp && pProp->GetDesc() && nKey >= 0 && static_cast<uint32_t>(nKey) < pProp->GetNumKeys() &&
           pProp->GetDesc()->m_eType == eType;
}

} // namespace

const IRowKind& CEffectPropertyCtrls::Kind() const
{
    return RowKind(m_eType);
}

bool CEffectPropertyCtrls::SetFromProperty(const CEffectProperty* pProp, int nKey)
{
    if (IsFunctionRow() || !IsExchangeable(pProp, nKey, m_eType))
        return false;
    // A copy: writing a box may run the owner's change function.
    const CPropData data = pProp->GetKey(static_cast<uint32_t>(nKey))->m_Data;
    Kind().Show(m_Controls, data);
    return true;
}

bool CEffectPropertyCtrls::GetFromControls(CEffectProperty* pProp, int nKey) const
{
    if (IsFunctionRow() || !IsExchangeable(pProp, nKey, m_eType))
        return false;
    Kind().Take(m_Controls, pProp->GetKey(static_cast<uint32_t>(nKey))->m_Data);
    return true;
}

void CEffectPropertyCtrls::SetText(int nSlot, const std::string& sText)
{
    CControlDesc* pBox = UsableSlot(nSlot, EControlKind::eEdit);
    if (!pBox)
        return;
    pBox->m_sText = Kind().Typed(sText);
    if (pBox->m_sText != sText)
        m_Controls.Changed(nSlot);
    m_Controls.Notify();
}

void CEffectPropertyCtrls::Select(int nSlot, int nItem)
{
    CControlDesc* pList = UsableSlot(nSlot, EControlKind::eCombo);
    if (!pList || nItem < 0 || static_cast<size_t>(nItem) >= pList->m_Items.size())
        return;
    pList->m_nSelected = nItem;
    m_Controls.Notify();
}

void CEffectPropertyCtrls::Spin(int nSlot, int nDelta)
{
    const CControlDesc* pSpin = UsableSlot(nSlot, EControlKind::eSpin);
    if (!pSpin)
        return;
    const int nBox = pSpin->m_nTarget;
    m_Controls.WriteBox(nBox, Kind().Step(m_Controls.BoxText(nBox), nDelta));
}

void CEffectPropertyCtrls::Press(int nSlot)
{
    const CControlDesc* pControl = GetControl(nSlot);
    if (!pControl || !pControl->m_bEnabled)
        return;
    if (pControl->m_eKind == EControlKind::eFunctionButton)
        OnFunctionButton();
    else
        Kind().Press(m_Controls, nSlot, m_Services);
}

// An inherited curve is the prefab's own: it can be looked at, and nothing of it is written back.
void CEffectPropertyCtrls::OnFunctionButton()
{
    const CEffectProperty* pProp = GetProperty(m_pSet, m_nIndex);
    if (!pProp)
        return;
    const bool bReadOnly = !m_pSet->GetPropertyDirect(m_nIndex);
    CFunctionCurveDlg dialog(m_Services, pProp, bReadOnly);
    if (!m_Services.m_Dialogs.RunCurve(dialog) || bReadOnly)
        return;
    if (CEffectProperty* pOwn = m_pSet->GetPropertyDirect(m_nIndex))
        *pOwn = dialog.m_Prop;
}

CControlDesc* CEffectPropertyCtrls::UsableSlot(int nSlot, EControlKind eKind) const
{
    CControlDesc* pControl = m_Controls.Get(nSlot);
    return pControl && pControl->m_bEnabled && pControl->m_eKind == eKind ? pControl : nullptr;
}
