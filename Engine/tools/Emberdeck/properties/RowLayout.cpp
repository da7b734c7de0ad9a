#include "properties/RowLayout.h"

#include <algorithm>

CRowLayout::CRowLayout(CRowControls& controls, const CEffectPropertyDesc& desc, const CRowPlace& place)
    : m_Controls(controls),
      m_Desc(desc),
      m_rc(place.m_rcControl),
      m_Metrics(place.m_pFont->TextHeight()),
      m_Place(place),
      m_sHelp(DescHelp(desc))
{
}

void CRowLayout::NameLabel()
{
    LabelIn(m_Place.m_rcLabel, DescName(m_Desc) + " :", true);
}

void CRowLayout::FunctionButton()
{
    Add(EControlKind::eFunctionButton, m_Place.m_nBaseID + 1, Tall(m_rc.left, m_rc.right)).m_sText =
        "Function";
}

void CRowLayout::Label(const std::string& sText, int32_t nLeft, int32_t nRight, bool bAlignRight)
{
    LabelIn(CRect{nLeft, m_rc.top, nRight, m_rc.bottom}, sText, bAlignRight);
}

void CRowLayout::LabelIn(const CRect& rc, const std::string& sText, bool bAlignRight)
{
    const CTextSize size = GetTextSize(m_Place.m_pFont, sText.c_str());
    const int32_t nDown = (rc.Height() - size.m_nHeight) / 2;
    CControlDesc& label =
        Add(EControlKind::eLabel, c_nLabelID, CRect{rc.left, rc.top + nDown, rc.right, rc.bottom - nDown});
    label.m_sText = sText;
    label.m_bAlignRight = bAlignRight;
}

CControlDesc& CRowLayout::Add(EControlKind eKind, uint32_t nID, const CRect& rc)
{
    auto pControl = std::make_unique<CControlDesc>();
    pControl->m_eKind = eKind;
    pControl->m_nID = nID;
    pControl->m_rc = CRect{rc.left, rc.top, std::max(rc.left, rc.right), std::max(rc.top, rc.bottom)};
    if (eKind != EControlKind::eLabel)
        pControl->m_sToolTip = m_sHelp;
    return m_Controls.Add(std::move(pControl));
}

CControlDesc& CRowLayout::AddValue(EControlKind eKind, const CRect& rc)
{
    return Add(eKind, m_Place.m_nBaseID + static_cast<uint32_t>(m_Controls.GetCount()), rc);
}

int32_t CRowLayout::Box(int32_t nLeft, int32_t nWidth)
{
    return AddValue(EControlKind::eEdit, Full(nLeft, nWidth)).m_rc.right;
}

void CRowLayout::Spin()
{
    const int nBox = m_Controls.GetCount() - 1;
    const int32_t nLeft = m_Controls.Get(nBox)->m_rc.right;
    Add(EControlKind::eSpin, 0, Full(nLeft, m_Metrics.m_nSpinWidth)).m_nTarget = nBox;
}

CRect CRowLayout::Full(int32_t nLeft, int32_t nWidth) const
{
    return CRect{nLeft, m_rc.top, nLeft + std::max(nWidth, 0), m_rc.bottom};
}

CRect CRowLayout::Tall(int32_t nLeft, int32_t nRight) const
{
    return CRect{nLeft, m_rc.top - m_Metrics.m_nOverhang, nRight, m_rc.bottom + m_Metrics.m_nOverhang};
}

int32_t CRowLayout::TextWidth(const std::string& sText) const
{
    return GetTextSize(m_Place.m_pFont, sText.c_str()).m_nWidth;
}
