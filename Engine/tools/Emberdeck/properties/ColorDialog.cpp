#include "properties/ColorDialog.h"

#include <algorithm>

#include "qsnumber.h"
#include "qsstrutils.h"

namespace
{

constexpr uint32_t c_ColorBoxes[] = {eColor_HueBox, eColor_SatBox,   eColor_LumBox,
                                     eColor_RedBox, eColor_GreenBox, eColor_BlueBox};
constexpr size_t c_nMaxDigits = 3;

bool IsColorBox(uint32_t nID)
{
    return nID >= eColor_HueBox && nID <= eColor_BlueBox;
}

int BoxLimit(uint32_t nID)
{
    return nID == eColor_HueBox ? c_nMaxHue : c_nMaxChannel;
}

int NumberOf(const std::string& sText)
{
    return QSTextToNearestInt(sText.c_str());
}

// What a box for numbers lets in.
std::string DigitsOnly(const std::string& sText)
{
    std::string sDigits;
    for (const char c : sText)
    {
        if (c >= '0' && c <= '9' && sDigits.size() < c_nMaxDigits)
            sDigits += c;
    }
    return sDigits;
}

int ChannelOf(CColorRef nColor, uint32_t nBox)
{
    return static_cast<int>(nColor >> (nBox - eColor_RedBox) * 8 & 0xFF);
}

int BoxValue(const CColorChooser& chooser, uint32_t nID)
{
    switch (nID)
    {
    case eColor_HueBox:
        return chooser.GetHsl().m_nHue;
    case eColor_SatBox:
        return chooser.GetHsl().m_nSat;
    case eColor_LumBox:
        return chooser.GetHsl().m_nLum;
    default:
        return ChannelOf(chooser.GetRgb(), nID);
    }
}

} // namespace

CKRColorDialog::CKRColorDialog(CPropertyServices& services, uint32_t nColor, uint32_t nFlags)
    : m_nResultColor(nFlags & c_nOpaque ? nColor | 0xFF000000 : nColor),
      m_Services(services),
      m_Palette(*this)
{
    m_Chooser.SetRgb(nColor);
}

// The chooser keeps the colour that it was given: the selected cell isn't sent.
void CKRColorDialog::OnInitDialog(int32_t nPaletteWidth, int32_t nPaletteHeight)
{
    LoadFromProfile();
    m_Palette.Attach(nPaletteWidth, nPaletteHeight);
    m_bOpen = true;
    ShowDescription();
    ShowColor();
    SetBox(eColor_AlphaBox, std::to_string(m_nResultColor >> 24));
    NoteStep();
}

CColorState CKRColorDialog::GetState() const
{
    CColorState state = {m_Chooser, GetText(eColor_AlphaBox), m_Palette.GetColors(), m_asDescriptions};
    state.m_Descriptions[static_cast<size_t>(m_nCurrentColor)] = OneLine(GetText(eColor_DescriptionBox));
    return state;
}

void CKRColorDialog::SetState(const CColorState& state)
{
    m_Chooser = state.m_Chooser;
    m_asDescriptions = state.m_Descriptions;
    m_Palette.SetColors(state.m_Cells);
    ShowDescription();
    ShowColor();
    SetBox(eColor_AlphaBox, state.m_sAlpha);
}

// Enter presses OK without taking the focus from a box, and so does a tool button.
bool CKRColorDialog::OnOK()
{
    CommitBoxes();
    OnColorOk();
    return true;
}

void CKRColorDialog::OnColorOk()
{
    m_nResultColor = ReadColor();
    SaveToProfile();
}

void CKRColorDialog::OnCommand(uint32_t nID)
{
    switch (nID)
    {
    case eColor_LoadButton:
        CommitBoxes();
        OnLoadPalette();
        break;
    case eColor_SaveButton:
        CommitBoxes();
        OnSavePalette();
        break;
    case eColor_AddButton:
        CommitBoxes();
        m_Palette.SetCurrentColor(ReadColor());
        break;
    default:
        break;
    }
}

uint32_t CKRColorDialog::ReadColor() const
{
    uint32_t nColor = 0;
    int nShift = 0;
    for (const uint32_t nID : {eColor_RedBox, eColor_GreenBox, eColor_BlueBox, eColor_AlphaBox})
    {
        nColor |= (static_cast<uint32_t>(NumberOf(GetText(nID))) & 0xFF) << nShift;
        nShift += 8;
    }
    return nColor;
}

void CKRColorDialog::CommitBoxes()
{
    OnFocusLost(eColor_DescriptionBox);
    OnFocusLost(eColor_AlphaBox);
}

// A description as a file takes it.
std::string CKRColorDialog::OneLine(std::string sText)
{
    for (size_t nEnd = 0; (nEnd = sText.find("\r\n", nEnd)) != std::string::npos;)
        sText.erase(nEnd, 1);
    std::replace_if(
        sText.begin(), sText.end(), [](char c) { return c == '\n' || c == '\r' || c == '\0'; }, ' ');
    return CutAtCharacter(sText, c_nMaxDescription);
}

void CKRColorDialog::OnFocusLost(uint32_t nID)
{
    if (nID == eColor_DescriptionBox)
    {
        m_asDescriptions[static_cast<size_t>(m_nCurrentColor)] = OneLine(GetText(nID));
    }
    else if (nID == eColor_AlphaBox)
    {
        const int nAlpha = NumberOf(GetText(nID));
        if (nAlpha < 0 || nAlpha > c_nMaxChannel)
            SetBox(nID, std::to_string(std::clamp(nAlpha, 0, c_nMaxChannel)));
    }
}

void CKRColorDialog::OnText(uint32_t nID, const std::string& sText)
{
    if (nID == eColor_DescriptionBox)
    {
        m_Texts[nID] = sText;
    }
    else if (nID == eColor_AlphaBox)
    {
        m_Texts[nID] = DigitsOnly(sText);
        if (m_Texts[nID] != sText && m_pView)
            m_pView->OnTextChanged(nID);
    }
    else if (IsColorBox(nID))
    {
        OnColorBox(nID, sText);
    }
}

// What is typed takes effect at once. The box keeps its text, as long as that is in range.
void CKRColorDialog::OnColorBox(uint32_t nID, const std::string& sText)
{
    std::string sNumber = DigitsOnly(sText);
    int nValue = NumberOf(sNumber);
    if (nValue > BoxLimit(nID))
    {
        nValue = BoxLimit(nID);
        sNumber = std::to_string(nValue);
    }
    m_Texts[nID] = sNumber;
    if (sNumber != sText && m_pView)
        m_pView->OnTextChanged(nID);

    CHsl hsl = m_Chooser.GetHsl();
    switch (nID)
    {
    case eColor_HueBox:
        hsl.m_nHue = nValue;
        m_Chooser.SetHsl(hsl);
        break;
    case eColor_SatBox:
        hsl.m_nSat = nValue;
        m_Chooser.SetHsl(hsl);
        break;
    case eColor_LumBox:
        hsl.m_nLum = nValue;
        m_Chooser.SetHsl(hsl);
        break;
    default:
    {
        const uint32_t nShift = (nID - eColor_RedBox) * 8;
        m_Chooser.SetRgb((m_Chooser.GetRgb() & ~(0xFFu << nShift)) | static_cast<uint32_t>(nValue) << nShift);
        break;
    }
    }
    ShowColor(nID);
}

void CKRColorDialog::OnBasicPress(const CRect& rc, CPoint pt)
{
    if (m_Chooser.PressBasic(rc, pt))
        ShowColor();
}

void CKRColorDialog::OnBasicKey(EPaletteKey eKey)
{
    switch (eKey)
    {
    case EPaletteKey::eLeft:
        m_Chooser.MoveBasicFocus(-1, 0);
        break;
    case EPaletteKey::eRight:
        m_Chooser.MoveBasicFocus(1, 0);
        break;
    case EPaletteKey::eUp:
        m_Chooser.MoveBasicFocus(0, -1);
        break;
    case EPaletteKey::eDown:
        m_Chooser.MoveBasicFocus(0, 1);
        break;
    case EPaletteKey::eSpace:
        m_Chooser.PickBasicFocus();
        ShowColor();
        return;
    case EPaletteKey::eDelete:
        return;
    }
    if (m_pView)
        m_pView->RepaintChooser();
}

void CKRColorDialog::OnSquare(const CRect& rc, CPoint pt)
{
    m_Chooser.PointAtSquare(rc, pt);
    ShowColor();
}

void CKRColorDialog::OnBar(const CRect& rc, CPoint pt)
{
    m_Chooser.PointAtBar(rc, pt);
    ShowColor();
}

void CKRColorDialog::SetRgb(uint32_t nColor)
{
    m_Chooser.SetRgb(nColor);
    ShowColor();
}

// The number boxes follow the colour, but for the one that is being typed into.
void CKRColorDialog::ShowColor(uint32_t nTypedBox)
{
    for (const uint32_t nID : c_ColorBoxes)
    {
        if (nID != nTypedBox)
            SetBox(nID, std::to_string(BoxValue(m_Chooser, nID)));
    }
    if (m_pView)
        m_pView->RepaintChooser();
}

void CKRColorDialog::ShowDescription()
{
    SetBox(eColor_DescriptionBox, GetDescription(m_nCurrentColor));
}

void CKRColorDialog::SetBox(uint32_t nID, const std::string& sText)
{
    m_Texts[nID] = sText;
    if (m_pView)
        m_pView->OnTextChanged(nID);
}

const std::string& CKRColorDialog::GetText(uint32_t nID) const
{
    static const std::string s_sEmpty;
    const auto it = m_Texts.find(nID);
    return it == m_Texts.end() ? s_sEmpty : it->second;
}

void CKRColorDialog::OnPaletteFocus()
{
    CommitBoxes();
    if (m_pView)
        m_pView->FocusOnPalette();
}

void CKRColorDialog::OnColorChosen(uint32_t nColor)
{
    SetRgb(nColor);
    SetBox(eColor_AlphaBox, std::to_string(nColor >> 24));
}

void CKRColorDialog::OnCellSelected(int nCell)
{
    if (nCell < 0 || nCell >= CCustomColorPalette::c_nNumCells)
        return;
    m_nCurrentColor = nCell;
    ShowDescription();
}

void CKRColorDialog::OnCellCleared(int nCell)
{
    if (nCell < 0 || nCell >= CCustomColorPalette::c_nNumCells)
        return;
    m_asDescriptions[static_cast<size_t>(nCell)].clear();
    if (nCell == m_nCurrentColor)
        ShowDescription();
}

void CKRColorDialog::RepaintPalette()
{
    if (m_pView)
        m_pView->RepaintPalette();
}

CPoint CentreOnOwner(const CRect& rcOwner, const CRect& rcScreen, int32_t nWidth, int32_t nHeight)
{
    const auto place = [](int32_t nWanted, int32_t nLow, int32_t nHigh)
    { return std::max(std::min(nWanted, nHigh), nLow); };
    return CPoint{
        place(rcOwner.left + (rcOwner.Width() - nWidth) / 2, rcScreen.left, rcScreen.right - nWidth),
        place(rcOwner.top + (rcOwner.Height() - nHeight) / 2, rcScreen.top, rcScreen.bottom - nHeight)};
}
