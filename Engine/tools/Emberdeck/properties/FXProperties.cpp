#include "properties/FXProperties.h"

#include <algorithm>

namespace
{

// Whether a set is one of the library's prefabs, and else the effect with the key that it is.
bool FindOwner(const CSpellMgr& spellMgr, const CEffectPropertySet& set, const CSpell*& pSpell)
{
    pSpell = nullptr;
    for (const std::unique_ptr<CEffectPropertySet>& pPrefab : spellMgr.Prefabs())
    {
        if (pPrefab.get() == &set)
            return true;
    }
    spellMgr.ForEachKey(
        [&](CSpell& spell, CKey& key)
        {
            if (static_cast<const CEffectPropertySet*>(&key) == &set)
                pSpell = &spell;
        });
    return pSpell != nullptr;
}

bool IsCurve(const CEffectProperty& prop)
{
    return prop.GetDesc() && prop.GetDesc()->m_bFunctionCurve;
}

} // namespace

CFXPropertiesDlg::CFXPropertiesDlg(CPropertyServices& services, const CEffectPropertySet& set)
    : m_Props(set),
      m_Services(services)
{
}

void CFXPropertiesDlg::OnInitDialog(const CRect& rcRows, const ITextMeasure* pFont)
{
    m_sCaption = m_Props.GetDisplayName();
    m_rcRows = rcRows;
    m_Metrics = CRowMetrics(pFont ? pFont->TextHeight() : 0);
    m_nVisibleRows = std::max(rcRows.Height(), 0) / m_Metrics.m_nPitch;
    m_nTopRow = 0;
    m_Rows.clear();
    const uint32_t nNumProps = m_Props.GetNumProps();
    m_Rows.resize(nNumProps);
    uint32_t nControlID = c_nFirstControlID;
    for (uint32_t i = 0; i < nNumProps; ++i)
    {
        BuildRow(i, pFont, nControlID);
        UpdateRowState(i);
        UpdateRowVisibility(i);
    }
    m_bCanScroll = GetNumRows() >= m_nVisibleRows;
    RefreshAllRows();
    UpdateScrollBar();
    if (m_pView)
        m_pView->Repaint();
    UpdateParentButtons();
    NoteStep();
}

void CFXPropertiesDlg::BuildRow(uint32_t nIndex, const ITextMeasure* pFont, uint32_t& nControlID)
{
    const CEffectProperty* pProp = m_Props.GetProperty(nIndex);
    if (!pProp)
        return;
    const CRect& rcRows = m_rcRows;
    const int32_t nTop = rcRows.top + m_Metrics.m_nPitch * static_cast<int32_t>(nIndex);
    const int32_t nBottom = nTop + m_Metrics.m_nHeight;
    const int32_t nSplit = rcRows.left + rcRows.Width() / 3;
    const int32_t nLabel = rcRows.left + m_Metrics.m_nCheckWidth;
    CRow& row = m_Rows[nIndex];
    if (m_Props.GetParent())
        MakeCheck(nIndex);
    CRowPlace place;
    place.m_rcLabel = CRect{nLabel, nTop, nSplit, nBottom};
    place.m_rcControl = CRect{nSplit + m_Metrics.m_nGap, nTop, rcRows.right, nBottom};
    place.m_nBaseID = nControlID;
    place.m_pFont = pFont;
    uint32_t nCount = 0;
    row.m_pCtrls = std::make_unique<CEffectPropertyCtrls>(m_Services);
    if (IsCurve(*pProp))
        row.m_pCtrls->CreateFunctionControls(&m_Props, nIndex, place, nCount);
    else
        row.m_pCtrls->CreateControls(pProp->GetDesc(), place, nCount);
    nControlID += nCount;
}

// At the row's place as the list is scrolled.
void CFXPropertiesDlg::MakeCheck(uint32_t nIndex)
{
    const int32_t nTop = m_rcRows.top + m_Metrics.m_nPitch * (static_cast<int32_t>(nIndex) - m_nTopRow);
    auto pCheck = std::make_unique<CControlDesc>();
    pCheck->m_eKind = EControlKind::eCheck;
    pCheck->m_nID = c_nFirstCheckID + nIndex;
    pCheck->m_rc =
        CRect{m_rcRows.left, nTop, m_rcRows.left + m_Metrics.m_nCheckWidth, nTop + m_Metrics.m_nHeight};
    pCheck->m_sToolTip = c_szCheckToolTip;
    pCheck->m_bVisible = IsRowVisible(nIndex);
    m_Rows[nIndex].m_pCheck = std::move(pCheck);
}

bool operator==(const CSetState& left, const CSetState& right)
{
    const CEffectPropertySet& a = *left.m_pSet;
    const CEffectPropertySet& b = *right.m_pSet;
    const auto isSame = [](const auto& pOld, const auto& pNew)
    {
        if (!pOld || !pNew)
            return !pOld && !pNew;
        const CEffectProperty &before = *pOld, &after = *pNew;
        bool bSame = before.GetNumKeys() == after.GetNumKeys();
        for (uint32_t i = 0; bSame && i < before.GetNumKeys(); ++i)
            bSame = before.GetKey(i)->m_fTime == after.GetKey(i)->m_fTime &&
                    before.GetKey(i)->m_Data == after.GetKey(i)->m_Data;
        return bSame;
    };
    return a.GetParent() == b.GetParent() &&
           std::equal(a.m_Props.begin(), a.m_Props.end(), b.m_Props.begin(), b.m_Props.end(), isSame);
}

// With what stands in the rows, which OK would read.
CSetState CFXPropertiesDlg::GetState() const
{
    auto pSet = std::make_shared<CEffectPropertySet>(m_Props);
    for (uint32_t i = 0; i < m_Rows.size(); ++i)
    {
        CEffectProperty* pOwn = pSet->GetPropertyDirect(i);
        if (pOwn && m_Rows[i].m_pCtrls && !IsCurve(*pOwn))
            m_Rows[i].m_pCtrls->GetFromControls(pOwn, 0);
    }
    return {std::move(pSet)};
}

void CFXPropertiesDlg::SetState(const CSetState& state)
{
    m_Props = *state.m_pSet;
    for (uint32_t i = 0; i < m_Rows.size(); ++i)
    {
        if (!m_Props.GetParent())
            m_Rows[i].m_pCheck.reset();
        else if (!m_Rows[i].m_pCheck && m_Rows[i].m_pCtrls)
            MakeCheck(i);
        CheckChanged(i);
        UpdateRowState(i);
    }
    RefreshAllRows();
    UpdateParentButtons();
}

bool CFXPropertiesDlg::OnOK()
{
    ReadRows();
    return true;
}

// Inherited values are never read: what a disabled control holds doesn't count.
void CFXPropertiesDlg::ReadRows()
{
    for (uint32_t i = 0; i < m_Rows.size(); ++i)
    {
        CEffectProperty* pOwn = m_Props.GetPropertyDirect(i);
        if (!pOwn || !m_Rows[i].m_pCtrls)
            continue;
        if (!IsCurve(*pOwn))
            m_Rows[i].m_pCtrls->GetFromControls(pOwn, 0);
        Validate(pOwn);
    }
}

void CFXPropertiesDlg::RefreshRow(uint32_t nIndex)
{
    const CEffectProperty* pProp = m_Props.GetProperty(nIndex);
    if (pProp && !IsCurve(*pProp) && m_Rows[nIndex].m_pCtrls)
        m_Rows[nIndex].m_pCtrls->SetFromProperty(pProp, 0);
}

void CFXPropertiesDlg::RefreshAllRows()
{
    for (uint32_t i = 0; i < m_Rows.size(); ++i)
        RefreshRow(i);
}

// Marked means inherited. The button of a curve stays enabled: an inherited curve can be looked at.
void CFXPropertiesDlg::UpdateRowState(uint32_t nIndex)
{
    const CEffectProperty* pProp = nIndex < m_Rows.size() ? m_Props.GetProperty(nIndex) : nullptr;
    if (!pProp)
        return;
    CRow& row = m_Rows[nIndex];
    const bool bOwn = m_Props.GetPropertyDirect(nIndex) != nullptr;
    if (row.m_pCtrls && !IsCurve(*pProp))
        row.m_pCtrls->EnableControls(bOwn);
    if (row.m_pCheck)
    {
        row.m_pCheck->m_bChecked = !bOwn;
        CheckChanged(nIndex);
    }
}

void CFXPropertiesDlg::OnCheck(uint32_t nID, bool bChecked)
{
    if (!m_Props.GetParent() || nID < c_nFirstCheckID || nID - c_nFirstCheckID >= m_Rows.size())
        return;
    const uint32_t nIndex = nID - c_nFirstCheckID;
    if (bChecked)
    {
        // The set's own value goes, and with it what was typed.
        m_Props.ClearLocal(nIndex);
        RefreshRow(nIndex);
    }
    else
    {
        m_Props.MakeLocal(nIndex);
    }
    UpdateRowState(nIndex);
}

void CFXPropertiesDlg::OnDisconnect()
{
    if (!m_Props.GetParent())
        return;
    m_Props.Flatten();
    // Without a refresh: what was typed into own rows is still to be read.
    for (uint32_t i = 0; i < m_Rows.size(); ++i)
    {
        m_Rows[i].m_pCheck.reset();
        CheckChanged(i);
        UpdateRowState(i);
    }
    UpdateParentButtons();
}

void CFXPropertiesDlg::OnOpenParent()
{
    CEffectPropertySet* pParent = m_Props.GetParent();
    if (!pParent)
        return;
    ReadRows();
    if (EditProperties(m_Services, *pParent))
        RefreshAllRows();
}

void CFXPropertiesDlg::UpdateParentButtons()
{
    if (m_pView)
        m_pView->OnParentButtonsChanged();
}

void CFXPropertiesDlg::CheckChanged(uint32_t nIndex)
{
    if (m_pView)
        m_pView->OnCheckChanged(nIndex);
}

bool EditProperties(CPropertyServices& services, CEffectPropertySet& set)
{
    CFXPropertiesDlg dialog(services, set);
    if (!services.m_Dialogs.RunProperties(dialog))
        return false;
    const CSpell* pSpell = nullptr;
    const bool bFound = FindOwner(services.m_Context.m_SpellMgr, set, pSpell);
    CEditScope scope(services.m_Context.m_Edits, pSpell ? "Edit Key" : "Edit Prefab");
    if (pSpell)
        scope.TouchKey(*pSpell, static_cast<const CKey&>(set)); // what belongs to an effect is a key
    else if (bFound)
        scope.TouchPrefab(&set);
    set = dialog.m_Props;
    return true;
}

int32_t ListHeightToGiveUp(int32_t nDialogHeight, int32_t nScreenHeight, int32_t nListHeight,
                           const CRowMetrics& metrics)
{
    const int32_t nPitch = metrics.m_nPitch;
    const int32_t nTooMuch = nDialogHeight - nScreenHeight;
    const int32_t nRows = nListHeight / nPitch;
    if (nTooMuch <= 0 || nRows <= 1)
        return 0;
    return std::min((nTooMuch + nPitch - 1) / nPitch, nRows - 1) * nPitch;
}
