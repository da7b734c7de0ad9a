#include "properties/RowControls.h"

CControlDesc& CRowControls::Add(std::unique_ptr<CControlDesc> pControl)
{
    return *(m_apCtrls[static_cast<size_t>(m_nCount++)] = std::move(pControl));
}

CControlDesc* CRowControls::Get(int nSlot) const
{
    return nSlot >= 0 && nSlot < c_nMaxSlots ? m_apCtrls[static_cast<size_t>(nSlot)].get() : nullptr;
}

void CRowControls::Clear()
{
    for (std::unique_ptr<CControlDesc>& pControl : m_apCtrls)
        pControl.reset();
    m_nCount = 0;
    m_File = CResourceFileButton();
    m_Change = nullptr;
}

void CRowControls::Changed(int nSlot)
{
    if (m_pView)
        m_pView->OnControlChanged(nSlot);
}

void CRowControls::Notify()
{
    if (m_Change)
        m_Change();
}

void CRowControls::WriteBox(int nSlot, const std::string& sText)
{
    CControlDesc* pBox = Get(nSlot);
    if (!pBox)
        return;
    pBox->m_sText = sText;
    Changed(nSlot);
    Notify();
}

void CRowControls::WriteFile(int nSlot, const std::string& sFile)
{
    m_File.SetFile(sFile);
    if (CControlDesc* pButton = Get(nSlot))
        pButton->m_sText = m_File.GetFile();
    Changed(nSlot);
}

const std::string& CRowControls::BoxText(int nSlot) const
{
    static const std::string s_sEmpty;
    const CControlDesc* pBox = Get(nSlot);
    return pBox ? pBox->m_sText : s_sEmpty;
}
