#include "properties/EffectPropertyCtrls.h"

#include <algorithm>
#include <cfloat>
#include <cstdint>

#include "platform/NameFold.h"
#include "properties/ColorDialog.h"
#include "properties/FunctionCurveEditor.h"
#include "properties/ValueText.h"
#include "properties/VectorEditor.h"
#include "qsnumber.h"

// Values between controls and a property, and what the user does to a control.

namespace
{

constexpr double c_fFloatStep = 0.25;

float FloatFromText(const std::string& sText)
{
    return QSTextToFloat(sText.c_str());
}

// No step ends below 0, also one upward from far below.
std::string SpinInt(const std::string& sText, int nDelta)
{
    const int64_t nValue = int64_t(QSTextToNearestInt(sText.c_str())) - nDelta;
    return IntText(static_cast<int32_t>(std::clamp<int64_t>(nValue, 0, INT32_MAX)));
}

std::string SpinFloat(const std::string& sText, int nDelta)
{
    const double fValue = QSTextToDouble(sText.c_str()) - nDelta * c_fFloatStep;
    return FloatText(std::clamp(fValue, 0.0, double(FLT_MAX)));
}

// The first item with exactly this text, but for case; the first of all when there is none.
int FindListItem(const std::vector<std::string>& items, std::string_view sText)
{
    for (size_t i = 0; i < items.size(); ++i)
    {
        if (EqualFolded(items[i], sText))
            return static_cast<int>(i);
    }
    return items.empty() ? -1 : 0;
}

bool IsTypedText(uint32_t eType)
{
    return eType == ePropType_String || eType == ePropType_Animation || eType == ePropType_FireglassRef;
}

bool IsExchangeable(const CEffectProperty* pProp, int nKey, uint32_t eType)
{
    return pProp && pProp->GetDesc() && nKey >= 0 && static_cast<uint32_t>(nKey) < pProp->GetNumKeys() &&
           pProp->GetDesc()->m_eType == eType;
}

CColorRef ColorOfPayload(uint32_t nColor)
{
    return SwapRedBlue(nColor) & 0xFFFFFF;
}

} // namespace

bool CEffectPropertyCtrls::SetFromProperty(const CEffectProperty* pProp, int nKey)
{
    if (IsFunctionRow() || !IsExchangeable(pProp, nKey, m_eType))
        return false;
    // A copy: writing a box may run the owner's change function.
    const CPropData data = pProp->GetKey(static_cast<uint32_t>(nKey))->m_Data;
    switch (m_eType)
    {
    case ePropType_String:
    case ePropType_Animation:
    case ePropType_FireglassRef:
        WriteBox(1, std::string(data.GetText()));
        break;
    case ePropType_Filename:
        WriteFile(1, std::string(data.GetText()));
        break;
    case ePropType_Enum:
        if (CControlDesc* pList = Slot(1))
        {
            pList->m_nSelected = FindListItem(pList->m_Items, data.GetText());
            Changed(1);
        }
        break;
    case ePropType_Int:
        WriteBox(1, IntText(data.GetInt()));
        break;
    case ePropType_Float:
        WriteBox(1, FloatText(data.GetFloat()));
        break;
    case ePropType_Color:
        if (CControlDesc* pSwatch = Slot(1))
        {
            pSwatch->m_nColor = ColorOfPayload(data.GetColor());
            Changed(1);
        }
        WriteBox(3, AlphaText(PropColorAlpha(data.GetColor())));
        break;
    case ePropType_Vector:
        WriteBox(2, FloatText(data.GetVector().x));
        WriteBox(4, FloatText(data.GetVector().y));
        WriteBox(6, FloatText(data.GetVector().z));
        break;
    default: // UI, None and unknown kinds show nothing
        break;
    }
    return true;
}

bool CEffectPropertyCtrls::GetFromControls(CEffectProperty* pProp, int nKey) const
{
    if (IsFunctionRow() || !IsExchangeable(pProp, nKey, m_eType))
        return false;
    CPropData& data = pProp->GetKey(static_cast<uint32_t>(nKey))->m_Data;
    switch (m_eType)
    {
    case ePropType_String:
    case ePropType_Animation:
    case ePropType_FireglassRef:
        data.SetText(BoxText(1));
        break;
    case ePropType_Filename:
        data.SetText(m_File.GetFile());
        break;
    case ePropType_Enum:
    {
        const CControlDesc* pList = GetControl(1);
        if (pList && !pList->m_Items.empty()) // an empty list has nothing to take
            data.SetText(pList->m_Items[static_cast<size_t>(std::max(pList->m_nSelected, 0))]);
        break;
    }
    case ePropType_Int:
        data.SetInt(QSTextToNearestInt(BoxText(1).c_str()));
        break;
    case ePropType_Float:
        data.SetFloat(FloatFromText(BoxText(1)));
        break;
    case ePropType_Color:
    {
        const CControlDesc* pSwatch = GetControl(1);
        const uint32_t nColor = pSwatch ? SwapRedBlue(pSwatch->m_nColor) & 0xFFFFFF : 0;
        data.SetColor(nColor | AlphaFromText(BoxText(3)) << 24);
        break;
    }
    case ePropType_Vector:
        data.SetVector(
            CVector3{FloatFromText(BoxText(2)), FloatFromText(BoxText(4)), FloatFromText(BoxText(6))});
        break;
    default:
        break;
    }
    return true;
}

void CEffectPropertyCtrls::SetText(int nSlot, const std::string& sText)
{
    CControlDesc* pBox = UsableSlot(nSlot, EControlKind::eEdit);
    if (!pBox)
        return;
    pBox->m_sText = sText;
    // A file can't hold a double quote within a text.
    if (IsTypedText(m_eType))
        std::replace(pBox->m_sText.begin(), pBox->m_sText.end(), '"', '\'');
    if (pBox->m_sText != sText)
        Changed(nSlot);
    Notify();
}

void CEffectPropertyCtrls::Select(int nSlot, int nItem)
{
    CControlDesc* pList = UsableSlot(nSlot, EControlKind::eCombo);
    if (!pList || nItem < 0 || static_cast<size_t>(nItem) >= pList->m_Items.size())
        return;
    pList->m_nSelected = nItem;
    Notify();
}

void CEffectPropertyCtrls::Spin(int nSlot, int nDelta)
{
    const CControlDesc* pSpin = UsableSlot(nSlot, EControlKind::eSpin);
    if (!pSpin)
        return;
    const int nBox = pSpin->m_nTarget;
    const std::string sText = BoxText(nBox);
    WriteBox(nBox, m_eType == ePropType_Int ? SpinInt(sText, nDelta) : SpinFloat(sText, nDelta));
}

void CEffectPropertyCtrls::Press(int nSlot)
{
    const CControlDesc* pControl = GetControl(nSlot);
    if (!pControl || !pControl->m_bEnabled)
        return;
    switch (pControl->m_eKind)
    {
    case EControlKind::eSwatch:
        OnSwatch(nSlot);
        break;
    case EControlKind::eFileButton:
        if (m_File.OnClick(m_Services.m_Context))
        {
            WriteFile(nSlot, m_File.GetFile());
            Notify();
        }
        break;
    case EControlKind::eClearButton:
        WriteFile(pControl->m_nTarget, std::string());
        Notify();
        break;
    case EControlKind::eVectorButton:
        OnVectorButton();
        break;
    case EControlKind::eFunctionButton:
        OnFunctionButton();
        break;
    default:
        break;
    }
}

// The row's alpha lives in its box alone: it goes neither in nor out.
void CEffectPropertyCtrls::OnSwatch(int nSlot)
{
    constexpr uint32_t c_nOpenWithThisColor = 0x1, c_nOpenFully = 0x2, c_nAnyColor = 0x100;
    CKRColorDialog dialog(m_Services, Slot(nSlot)->m_nColor,
                          c_nOpenWithThisColor | c_nOpenFully | c_nAnyColor);
    if (!m_Services.m_Dialogs.RunColor(dialog))
        return;
    if (CControlDesc* pSwatch = Slot(nSlot))
        pSwatch->m_nColor = dialog.m_nResultColor & 0xFFFFFF;
    Changed(nSlot);
    Notify();
}

void CEffectPropertyCtrls::OnVectorButton()
{
    CEditVectorDlg dialog(
        m_Services.m_Context.m_Prompts,
        CVector3{FloatFromText(BoxText(2)), FloatFromText(BoxText(4)), FloatFromText(BoxText(6))});
    if (!m_Services.m_Dialogs.RunVector(dialog))
        return;
    const CVector3 vResult = dialog.m_vResult;
    WriteBox(2, VectorText(vResult.x));
    WriteBox(4, VectorText(vResult.y));
    WriteBox(6, VectorText(vResult.z));
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
    CControlDesc* pControl = Slot(nSlot);
    return pControl && pControl->m_bEnabled && pControl->m_eKind == eKind ? pControl : nullptr;
}

void CEffectPropertyCtrls::Notify()
{
    if (m_Change)
        m_Change();
}

// Writing a box tells of a change even when its text stays the same.
void CEffectPropertyCtrls::WriteBox(int nSlot, const std::string& sText)
{
    CControlDesc* pBox = Slot(nSlot);
    if (!pBox)
        return;
    pBox->m_sText = sText;
    Changed(nSlot);
    Notify();
}

// The caption and the value are one; a caption tells of nothing.
void CEffectPropertyCtrls::WriteFile(int nSlot, const std::string& sFile)
{
    m_File.SetFile(sFile);
    if (CControlDesc* pButton = Slot(nSlot))
        pButton->m_sText = m_File.GetFile();
    Changed(nSlot);
}

const std::string& CEffectPropertyCtrls::BoxText(int nSlot) const
{
    static const std::string s_sEmpty;
    const CControlDesc* pBox = GetControl(nSlot);
    return pBox ? pBox->m_sText : s_sEmpty;
}
