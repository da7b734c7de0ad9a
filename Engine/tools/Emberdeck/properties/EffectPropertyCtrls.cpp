#include "properties/EffectPropertyCtrls.h"

#include <algorithm>

#include "platform/NameFold.h"

namespace
{

constexpr const char* c_szTextLine = "UIType_TextLine";

std::string TrimItem(const std::string& sItem)
{
    constexpr const char* c_pszBlanks = " \t\n\v\f\r";
    const size_t nFirst = sItem.find_first_not_of(c_pszBlanks);
    if (nFirst == std::string::npos)
        return std::string();
    return sItem.substr(nFirst, sItem.find_last_not_of(c_pszBlanks) - nFirst + 1);
}

} // namespace

// Fills the slots of a row from the left, in order.
class CEffectPropertyCtrls::CLayout
{
public:
    CLayout(CEffectPropertyCtrls& row, const CEffectPropertyDesc& desc, const CRowPlace& place)
        : m_Row(row),
          m_Desc(desc),
          m_rc(place.m_rcControl),
          m_Place(place),
          m_Metrics(place.m_pFont->TextHeight()),
          m_sHelp(DescHelp(desc))
    {
    }

    uint32_t GetCount() const { return static_cast<uint32_t>(m_nSlot); }

    void NameLabel()
    {
        Label(DescName(m_Desc) + " :", m_Place.m_rcLabel.left, m_Place.m_rcLabel.right, true,
              m_Place.m_rcLabel);
    }

    void ByKind()
    {
        switch (m_Desc.m_eType)
        {
        case ePropType_String:
        case ePropType_Animation:
        case ePropType_FireglassRef:
            Box(m_rc.left, m_rc.Width());
            break;
        case ePropType_Filename:
            FileButtons();
            break;
        case ePropType_Enum:
            List();
            break;
        case ePropType_Int:
        case ePropType_Float:
            Box(m_rc.left, m_rc.Width() / 3);
            Spin(m_nSlot - 1);
            break;
        case ePropType_Color:
            ColorParts();
            break;
        case ePropType_Vector:
            VectorParts();
            break;
        case ePropType_UI:
            if (EqualFolded(DescName(m_Desc), c_szTextLine))
                Label(DescData(m_Desc), m_rc.left, m_rc.right, false, m_rc);
            break;
        default: // None, and what a newer plug-in may bring: the name alone
            break;
        }
    }

    void FunctionButton()
    {
        Add(EControlKind::eFunctionButton, m_Place.m_nBaseID + 1, Tall(m_rc.left, m_rc.right)).m_sText =
            "Function";
    }

private:
    CControlDesc& Add(EControlKind eKind, uint32_t nID, const CRect& rc)
    {
        auto pControl = std::make_unique<CControlDesc>();
        pControl->m_eKind = eKind;
        pControl->m_nID = nID;
        pControl->m_rc = CRect{rc.left, rc.top, std::max(rc.left, rc.right), std::max(rc.top, rc.bottom)};
        if (eKind != EControlKind::eLabel)
            pControl->m_sToolTip = m_sHelp;
        return *(m_Row.m_apCtrls[static_cast<size_t>(m_nSlot++)] = std::move(pControl));
    }
    // A control that takes a value.
    CControlDesc& AddValue(EControlKind eKind, const CRect& rc)
    {
        return Add(eKind, m_Place.m_nBaseID + GetCount(), rc);
    }

    // A span of the row's full height, and one of a button, which reaches beyond it.
    CRect Full(int32_t nLeft, int32_t nWidth) const
    {
        return CRect{nLeft, m_rc.top, nLeft + std::max(nWidth, 0), m_rc.bottom};
    }
    CRect Tall(int32_t nLeft, int32_t nRight) const
    {
        return CRect{nLeft, m_rc.top - m_Metrics.m_nOverhang, nRight, m_rc.bottom + m_Metrics.m_nOverhang};
    }

    // Centred between top and bottom of rc by the height of its text.
    void Label(const std::string& sText, int32_t nLeft, int32_t nRight, bool bAlignRight, const CRect& rc)
    {
        const CTextSize size = GetTextSize(m_Place.m_pFont, sText.c_str());
        const int32_t nDown = (rc.Height() - size.m_nHeight) / 2;
        CControlDesc& label =
            Add(EControlKind::eLabel, c_nLabelID, CRect{nLeft, rc.top + nDown, nRight, rc.bottom - nDown});
        label.m_sText = sText;
        label.m_bAlignRight = bAlignRight;
    }

    int32_t Box(int32_t nLeft, int32_t nWidth)
    {
        return AddValue(EControlKind::eEdit, Full(nLeft, nWidth)).m_rc.right;
    }

    // Behind the box that it steps.
    void Spin(int nBox)
    {
        const int32_t nLeft = m_Row.m_apCtrls[static_cast<size_t>(nBox)]->m_rc.right;
        Add(EControlKind::eSpin, 0, Full(nLeft, m_Metrics.m_nSpinWidth)).m_nTarget = nBox;
    }

    void List()
    {
        int32_t nWidest = 0;
        std::vector<std::string> items;
        for (const std::string& sItem : SplitEnumList(DescData(m_Desc).c_str()))
        {
            items.push_back(TrimItem(sItem));
            nWidest = std::max(nWidest, GetTextSize(m_Place.m_pFont, items.back().c_str()).m_nWidth);
        }
        CControlDesc& list =
            AddValue(EControlKind::eCombo, Full(m_rc.left, nWidest + m_Metrics.m_nListExtra));
        list.m_Items = std::move(items);
        list.m_nDropHeight = m_Metrics.m_nDropHeight;
    }

    void FileButtons()
    {
        const CRect rc = Tall(m_rc.left, m_rc.right);
        const int32_t nSplit = rc.right - rc.Height();
        AddValue(EControlKind::eFileButton, CRect{rc.left, rc.top, nSplit, rc.bottom});
        m_Row.m_File = CResourceFileButton(std::string(), DescData(m_Desc));
        CControlDesc& clear = Add(EControlKind::eClearButton, 0, CRect{nSplit, rc.top, rc.right, rc.bottom});
        clear.m_sText = "C";
        clear.m_nTarget = m_nSlot - 2;
    }

    void ColorParts()
    {
        const char* pszAlpha = "Alpha:";
        const int32_t nGap = m_Metrics.m_nGap;
        const int32_t nLabel = GetTextSize(m_Place.m_pFont, pszAlpha).m_nWidth;
        const int32_t nRest = m_rc.Width() - nLabel - (2 * nGap + m_Metrics.m_nSpinWidth);
        const int32_t nPart = std::max(nRest / 2, 0);
        int32_t nLeft = AddValue(EControlKind::eSwatch, Full(m_rc.left, nPart)).m_rc.right + nGap;
        Label(pszAlpha, nLeft, nLeft + nLabel, true, m_rc);
        nLeft += nLabel + nGap;
        Box(nLeft, nPart);
        Spin(m_nSlot - 1);
    }

    void VectorParts()
    {
        const int32_t nGap = m_Metrics.m_nGroupGap;
        const int32_t nLabel = GetTextSize(m_Place.m_pFont, "X:").m_nWidth;
        const int32_t nPart = std::max((m_rc.Width() - (3 * nLabel + 3 * nGap)) / 4, 0);
        int32_t nLeft = m_rc.left;
        for (const char* pszAxis : {"X:", "Y:", "Z:"})
        {
            Label(pszAxis, nLeft, nLeft + nLabel, true, m_rc);
            nLeft = Box(nLeft + nLabel, nPart) + nGap;
        }
        Add(EControlKind::eVectorButton, 0,
            CRect{nLeft, m_rc.top - m_Metrics.m_nOverhang, m_rc.right, m_rc.bottom})
            .m_sText = "...";
    }

    CEffectPropertyCtrls& m_Row;
    const CEffectPropertyDesc& m_Desc;
    const CRect m_rc;
    const CRowPlace& m_Place;
    const CRowMetrics m_Metrics;
    const std::string m_sHelp;
    int m_nSlot = 0;
};

bool CEffectPropertyCtrls::CreateControls(const CEffectPropertyDesc* pDesc, const CRowPlace& place,
                                          uint32_t& nCount, ChangeFn change)
{
    DestroyControls();
    nCount = 0;
    if (!pDesc || !place.m_pFont)
        return false;
    CLayout layout(*this, *pDesc, place);
    if (pDesc->m_eType != ePropType_UI)
        layout.NameLabel();
    layout.ByKind();
    nCount = layout.GetCount();
    m_eType = pDesc->m_eType;
    m_Change = std::move(change);
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
    CLayout layout(*this, *pProp->GetDesc(), place);
    layout.NameLabel();
    layout.FunctionButton();
    nCount = layout.GetCount();
    m_eType = pProp->GetDesc()->m_eType;
    m_pSet = pSet;
    m_nIndex = nIndex;
    return true;
}

void CEffectPropertyCtrls::DestroyControls()
{
    for (std::unique_ptr<CControlDesc>& pControl : m_apCtrls)
        pControl.reset();
    m_eType = 0;
    m_File = CResourceFileButton();
    m_Change = ChangeFn();
    m_pSet = nullptr;
    m_nIndex = 0;
}

void CEffectPropertyCtrls::EnableControls(bool bEnable)
{
    if (IsFunctionRow())
        return;
    for (int nSlot = 0; nSlot < c_nMaxSlots; ++nSlot)
    {
        CControlDesc* pControl = Slot(nSlot);
        if (!pControl || pControl->m_eKind == EControlKind::eLabel || pControl->m_bEnabled == bEnable)
            continue;
        pControl->m_bEnabled = bEnable;
        Changed(nSlot);
    }
}

void CEffectPropertyCtrls::ShowControls(bool bShow)
{
    for (int nSlot = 0; nSlot < c_nMaxSlots; ++nSlot)
    {
        CControlDesc* pControl = Slot(nSlot);
        if (!pControl || pControl->m_bVisible == bShow)
            continue;
        pControl->m_bVisible = bShow;
        Changed(nSlot);
    }
}

void CEffectPropertyCtrls::MoveControls(int32_t dx, int32_t dy)
{
    for (int nSlot = 0; nSlot < c_nMaxSlots; ++nSlot)
    {
        CControlDesc* pControl = Slot(nSlot);
        if (!pControl)
            continue;
        CRect& rc = pControl->m_rc;
        rc = CRect{rc.left + dx, rc.top + dy, rc.right + dx, rc.bottom + dy};
        Changed(nSlot);
    }
}

const CControlDesc* CEffectPropertyCtrls::GetControl(int nSlot) const
{
    return Slot(nSlot);
}

CControlDesc* CEffectPropertyCtrls::Slot(int nSlot) const
{
    return nSlot >= 0 && nSlot < c_nMaxSlots ? m_apCtrls[static_cast<size_t>(nSlot)].get() : nullptr;
}

void CEffectPropertyCtrls::Changed(int nSlot)
{
    if (m_pView)
        m_pView->OnControlChanged(nSlot);
}
