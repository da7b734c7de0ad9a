#include "properties/FunctionCurveEditor.h"

#include <algorithm>

#include "qsassert.h"
#include "qsnumber.h"

CFunctionCurveDlg::CFunctionCurveDlg(CPropertyServices& services, const CEffectProperty* pEditProp,
                                     bool bReadOnly)
    : m_Prop(pEditProp ? *pEditProp : CEffectProperty(nullptr)),
      m_Services(services),
      m_bReadOnly(bReadOnly),
      m_Ctrls(services)
{
    QS_ASSERT_MSG(pEditProp, "Error: Invalid property passed into CFunctionCurveDlg");
}

void CFunctionCurveDlg::OnInitDialog(const CRect& rcCurve, const CRect& rcLabel, const CRect& rcControl,
                                     const ITextMeasure* pFont)
{
    constexpr uint32_t c_nFirstControlID = 5000;
    m_View.m_rc = rcCurve;
    CRowPlace place;
    place.m_rcLabel = rcLabel;
    place.m_rcControl = rcControl;
    place.m_nBaseID = c_nFirstControlID;
    place.m_pFont = pFont;
    uint32_t nCount = 0;
    m_Ctrls.CreateControls(m_Prop.GetDesc(), place, nCount, [this] { OnRowChanged(); });
    m_bRowShown = true;
    OnSelectionChanged();
    if (Kind() == ePropType_Color)
        m_Axes = {"R", "G", "B", "A"};
    else if (Kind() == ePropType_Vector)
        m_Axes = {"X", "Y", "Z"};
    else
        m_Axes.clear();
    // A colour curve opens on its alpha: the colour itself is seen behind it.
    OnAxisChange(Kind() == ePropType_Color ? 3 : 0);
    OnBestFit();
    NoteStep();
}

bool operator==(const CCurveKeys& left, const CCurveKeys& right)
{
    return std::equal(left.m_Keys.begin(), left.m_Keys.end(), right.m_Keys.begin(), right.m_Keys.end(),
                      [](const CPropKey& a, const CPropKey& b)
                      { return a.m_fTime == b.m_fTime && a.m_Data == b.m_Data; });
}

CCurveKeys CFunctionCurveDlg::GetState() const
{
    CCurveKeys state;
    for (uint32_t i = 0; i < m_Prop.GetNumKeys(); ++i)
        state.m_Keys.push_back(*m_Prop.GetKey(i));
    return state;
}

void CFunctionCurveDlg::SetState(const CCurveKeys& state)
{
    CPropKeyList keys;
    keys.Reserve(static_cast<uint32_t>(state.m_Keys.size()));
    for (const CPropKey& key : state.m_Keys)
        keys.Add(key);
    m_Prop.SetKeys(std::move(keys));
    OnSelectionChanged();
}

bool CFunctionCurveDlg::OnOK()
{
    Validate(&m_Prop);
    return true;
}

bool CFunctionCurveDlg::OnCommand(uint32_t nID)
{
    switch (nID)
    {
    case c_nCmdDeleteCurveKeys:
        OnDeleteKeys();
        return true;
    case c_nCmdSelectAllCurveKeys:
    case c_nCmdUnselectAllCurveKeys:
        SelectAll(nID == c_nCmdSelectAllCurveKeys);
        return true;
    case c_nCmdBestFit:
    case eCurve_BestFit:
        OnBestFit();
        return true;
    case eCurve_Copy:
        OnCopy();
        return true;
    case eCurve_Paste:
        OnPaste();
        return true;
    case eCurve_Time:
        OnTimeButton();
        return true;
    case eCurve_Start:
    case eCurve_End:
    case eCurve_YMin:
    case eCurve_YMax:
        OnRangeButton(nID);
        return true;
    default:
        return false;
    }
}

CCurveControlState CFunctionCurveDlg::GetControl(uint32_t nID) const
{
    CCurveControlState state;
    switch (nID)
    {
    case eCurve_Time:
    {
        const CSelection selection = GetSelection();
        const bool bOne = selection.m_nCount == 1;
        const auto nFirst = static_cast<uint32_t>(selection.m_nFirst);
        state.m_sText = bOne ? QSFixedText(m_Prop.GetKey(nFirst)->m_fTime, 4) : "--";
        state.m_bEnabled = bOne && !IsTimeLocked(nFirst);
        break;
    }
    case eCurve_Start:
        state.m_sText = QSFixedText(m_View.m_fStartTime, 4);
        break;
    case eCurve_End:
        state.m_sText = QSFixedText(m_View.m_fEndTime, 4);
        break;
    case eCurve_YMin:
    case eCurve_YMax:
        state.m_sText = QSFixedText(nID == eCurve_YMin ? m_View.m_fYMin : m_View.m_fYMax, 2);
        state.m_bVisible = IsRangeEditable();
        break;
    case eCurve_YMinLabel:
    case eCurve_YMaxLabel:
        state.m_bVisible = IsRangeEditable();
        break;
    case eCurve_Axis:
    case eCurve_AxisLabel:
        state.m_bVisible = !m_Axes.empty();
        break;
    case eCurve_Paste:
        state.m_bEnabled = !m_bReadOnly && m_Services.m_Context.m_Clipboard.CanPasteCurve(&m_Prop);
        break;
    default:
        break;
    }
    return state;
}

void CFunctionCurveDlg::OnAxisChange(int nItem)
{
    m_View.m_nAxis = nItem >= 0 && static_cast<size_t>(nItem) < m_Axes.size() ? nItem : 0;
    ButtonsChanged();
    Repaint();
}

void CFunctionCurveDlg::OnBestFit()
{
    m_View.BestFit(m_Prop);
    ButtonsChanged();
    Repaint();
}

void CFunctionCurveDlg::OnCopy()
{
    m_Services.m_Context.m_Clipboard.CopyCurve(&m_Prop);
    ButtonsChanged();
}

void CFunctionCurveDlg::OnPaste()
{
    const CEditClipboard& clipboard = m_Services.m_Context.m_Clipboard;
    if (m_bReadOnly || !clipboard.CanPasteCurve(&m_Prop))
        return;
    clipboard.PasteCurve(&m_Prop);
    OnSelectionChanged();
}

bool CFunctionCurveDlg::AskNumber(const char* pszTitle, float& fValue)
{
    return m_Services.m_Context.m_Prompts.EnterFloat(pszTitle, std::string(), fValue);
}

// The keys stay in the order that they have: the next drag, addition or OK sorts them.
void CFunctionCurveDlg::OnTimeButton()
{
    const CSelection selection = GetSelection();
    const uint32_t nIndex = selection.m_nCount > 0 ? static_cast<uint32_t>(selection.m_nFirst) : 0;
    if (IsTimeLocked(nIndex))
        return;
    float fTime = m_Prop.GetKey(nIndex)->m_fTime;
    if (!AskNumber("Enter the new time", fTime))
        return;
    m_Prop.GetKey(nIndex)->m_fTime = std::clamp(fTime, 0.0f, 1.0f);
    Repaint();
    ButtonsChanged();
}

void CFunctionCurveDlg::OnRangeButton(uint32_t nID)
{
    const bool bTime = nID == eCurve_Start || nID == eCurve_End;
    const char* pszTitle = nID == eCurve_Start  ? "Enter the new starting time (0 to 1)"
                           : nID == eCurve_End  ? "Enter the new ending time (0 to 1)"
                           : nID == eCurve_YMin ? "Enter the minimum Y value"
                                                : "Enter the maximum Y value";
    float& fLow = bTime ? m_View.m_fStartTime : m_View.m_fYMin;
    float& fHigh = bTime ? m_View.m_fEndTime : m_View.m_fYMax;
    float& fEdited = nID == eCurve_Start || nID == eCurve_YMin ? fLow : fHigh;
    float fValue = fEdited;
    if (AskNumber(pszTitle, fValue))
    {
        fEdited = bTime ? std::clamp(fValue, 0.0f, 1.0f) : fValue;
        if (fLow > fHigh)
            std::swap(fLow, fHigh);
    }
    ButtonsChanged();
    Repaint();
}

bool CFunctionCurveDlg::IsTimeLocked(uint32_t nIndex) const
{
    return m_bReadOnly || nIndex == 0 || nIndex >= m_Prop.GetNumKeys() ||
           (m_Prop.GetDesc() && m_Prop.GetDesc()->m_bInterpolate && nIndex == m_Prop.GetNumKeys() - 1);
}

void CFunctionCurveDlg::Paint(IDrawSurface* pSurface) const
{
    PaintCurve(pSurface, m_View, m_Prop, m_PaintOptions);
}

CFunctionCurveDlg::CSelection CFunctionCurveDlg::GetSelection() const
{
    CSelection selection;
    for (uint32_t i = 0; i < m_Prop.GetNumKeys(); ++i)
    {
        if (!m_Prop.GetKey(i)->m_bSelected)
            continue;
        if (selection.m_nCount++ == 0)
            selection.m_nFirst = static_cast<int>(i);
    }
    return selection;
}

uint32_t CFunctionCurveDlg::Kind() const
{
    return m_Prop.GetDesc() ? m_Prop.GetDesc()->m_eType : uint32_t(ePropType_None);
}

bool CFunctionCurveDlg::IsRangeEditable() const
{
    return Kind() == ePropType_Int || Kind() == ePropType_Float;
}

void CFunctionCurveDlg::Repaint()
{
    if (m_pView)
        m_pView->RepaintCurve();
}

void CFunctionCurveDlg::ButtonsChanged()
{
    if (m_pView)
        m_pView->OnButtonsChanged();
}
