#include "properties/EffectPropertyCtrls.h"

#include "properties/RowKinds.h"

bool CEffectPropertyCtrls::CreateControls(const CEffectPropertyDesc* pDesc, const CRowPlace& place,
                                          uint32_t& nCount, ChangeFn change)
{
    DestroyControls();
    nCount = 0;
    if (!pDesc || !place.m_pFont)
        return false;
    m_eType = pDesc->m_eType;
    CRowLayout layout(m_Controls, *pDesc, place);
    if (Kind().HasName())
        layout.NameLabel();
    Kind().Layout(layout);
    nCount = static_cast<uint32_t>(m_Controls.GetCount());
    m_Controls.m_Change = std::move(change);
    return true;
}

bool CEffectPropertyCtrls::CreateFunctionControls(CEffectPropertySet* pSet, uint32_t nIndex,
                                                  const CRowPlace& place, uint32_t& nCount)
{
    DestroyControls();
    nCount = 0;
    const CEffectProperty* pProp = GetProperty(pSet, nIndex);
    if (!pProp || !pProp->GetDesc() || !place.m_pFont)
        return false;
    CRowLayout layout(m_Controls, *pProp->GetDesc(), place);
    layout.NameLabel();
    layout.FunctionButton();
    nCount = static_cast<uint32_t>(m_Controls.GetCount());
    m_eType = pProp->GetDesc()->m_eType;
    m_pSet = pSet;
    m_nIndex = nIndex;
    return true;
}

void CEffectPropertyCtrls::DestroyControls()
{
    m_Controls.Clear();
    m_eType = 0;
    m_pSet = nullptr;
    m_nIndex = 0;
}

void CEffectPropertyCtrls::EnableControls(bool bEnable)
{
    if (IsFunctionRow())
        return;
    for (int nSlot = 0; nSlot < c_nMaxSlots; ++nSlot)
    {
        CControlDesc* pControl = m_Controls.Get(nSlot);
        if (!pControl || pControl->m_eKind == EControlKind::eLabel || pControl->m_bEnabled == bEnable)
            continue;
        pControl->m_bEnabled = bEnable;
        m_Controls.Changed(nSlot);
    }
}

void CEffectPropertyCtrls::ShowControls(bool bShow)
{
    for (int nSlot = 0; nSlot < c_nMaxSlots; ++nSlot)
    {
        CControlDesc* pControl = m_Controls.Get(nSlot);
        if (!pControl || pControl->m_bVisible == bShow)
            continue;
        pControl->m_bVisible = bShow;
        m_Controls.Changed(nSlot);
    }
}

void CEffectPropertyCtrls::MoveControls(int32_t dx, int32_t dy)
{
    for (int nSlot = 0; nSlot < c_nMaxSlots; ++nSlot)
    {
        CControlDesc* pControl = m_Controls.Get(nSlot);
        if (!pControl)
            continue;
        CRect& rc = pControl->m_rc;
        rc = CRect{rc.left + dx, rc.top + dy, rc.right + dx, rc.bottom + dy};
        m_Controls.Changed(nSlot);
    }
}
