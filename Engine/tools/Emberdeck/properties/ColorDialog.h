#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "app/resources/DialogIds.h"
#include "properties/ColorPalette.h"
#include "properties/EditorDialogs.h"
#include "properties/OwnUndo.h"

// Who shows the dialog.
class IColorDialogView
{
public:
    virtual ~IColorDialogView() = default;
    virtual void OnTextChanged(uint32_t nID) = 0; // of a box: show it, without telling it back
    virtual void RepaintPalette() = 0;
    virtual void RepaintChooser() = 0; // basic colours, square, bar and swatch
    virtual void FocusOnPalette() = 0;
};

// The colour that is chosen, and the palette. The selected cell is none of it.
struct CColorState
{
    CColorChooser m_Chooser;
    std::string m_sAlpha;
    CCustomColorPalette::CCells m_Cells;
    std::array<std::string, CCustomColorPalette::c_nNumCells> m_Descriptions;
    friend bool operator==(const CColorState& left, const CColorState& right)
    {
        return left.m_Chooser.GetRgb() == right.m_Chooser.GetRgb() &&
               left.m_Chooser.GetHsl() == right.m_Chooser.GetHsl() && left.m_sAlpha == right.m_sAlpha &&
               left.m_Cells == right.m_Cells && left.m_Descriptions == right.m_Descriptions;
    }
};

// Chooses a colour with alpha, from a palette of 24 custom colours with descriptions, which are kept in the
// profile and in palette files. A colour word has red in bits 0 to 7, green, blue, and alpha on top.
class CKRColorDialog : public TOwnUndo<CColorState>, private IPaletteParent
{
public:
    static constexpr uint32_t c_nOpaque = 0x80000000; // flag: alpha starts at 255, not at the word's own
    static constexpr size_t c_nMaxDescription = 255;  // bytes, cut at whole characters

    // Other flags speak of the platform's own dialog, which ours is always: opened fully, on the given colour.
    CKRColorDialog(CPropertyServices& services, uint32_t nColor, uint32_t nFlags);
    ~CKRColorDialog() override = default;
    CKRColorDialog(const CKRColorDialog&) = delete;
    CKRColorDialog& operator=(const CKRColorDialog&) = delete;

    virtual void LoadFromProfile();
    virtual void SaveToProfile();
    virtual void OnLoadPalette();
    virtual void OnSavePalette();

    void SetView(IColorDialogView* pView) { m_pView = pView; } // borrowed; null: nobody looks
    // The size of the palette's control, pixels.
    void OnInitDialog(int32_t nPaletteWidth, int32_t nPaletteHeight);
    bool OnOK(); // always true

    // What the user does. Boxes tell each change of their text, and the loss of the focus.
    void OnText(uint32_t nID, const std::string& sText);
    void OnFocusLost(uint32_t nID);
    void OnCommand(uint32_t nID); // a button
    void OnBasicPress(const CRect& rc, CPoint pt);
    void OnBasicKey(EPaletteKey eKey);
    void OnSquare(const CRect& rc, CPoint pt); // press and every move with the button down
    void OnBar(const CRect& rc, CPoint pt);

    // As from outside: the chooser takes the low 24 bits, and tells nobody back.
    void SetRgb(uint32_t nColor);

    const std::string& GetText(uint32_t nID) const; // empty for what is no box
    const CColorChooser& GetChooser() const { return m_Chooser; }
    CCustomColorPalette& GetPalette() { return m_Palette; }
    const std::string& GetDescription(int nCell) const
    {
        return m_asDescriptions[static_cast<size_t>(nCell)];
    }
    int GetCurrentCell() const { return m_nCurrentColor; }

    uint32_t m_nResultColor; // after OK

protected:
    // OK is pressed, the dialog not closed yet: takes the boxes into m_nResultColor and stores the palette.
    virtual void OnColorOk();

private:
    void OnPaletteFocus() override;
    void OnColorChosen(uint32_t nColor) override;
    void OnCellSelected(int nCell) override;
    void OnCellFocused(int nCell) override { (void)nCell; }
    void OnCellCleared(int nCell) override;
    void RepaintPalette() override;

    CColorState GetState() const override;
    void SetState(const CColorState& state) override;
    static std::string OneLine(std::string sText);
    void CommitBoxes();
    void SetBox(uint32_t nID, const std::string& sText);
    void ShowDescription();
    void ShowColor(uint32_t nTypedBox = 0);
    void OnColorBox(uint32_t nID, const std::string& sText);
    uint32_t ReadColor() const;
    bool SaveTo(const std::string& sPath) const; // throws when memory is out
    bool ReadFile(const std::string& sPath, CProfileText& file) const;
    std::vector<IProfile::CEntry> ProfileEntries() const;

    CPropertyServices& m_Services;
    IColorDialogView* m_pView = nullptr;
    CColorChooser m_Chooser;
    CCustomColorPalette m_Palette;
    std::array<std::string, CCustomColorPalette::c_nNumCells> m_asDescriptions;
    std::vector<IProfile::CEntry> m_Loaded;  // what the profile held for this dialog when it was read
    std::map<uint32_t, std::string> m_Texts; // of the boxes
    int m_nCurrentColor = 0;                 // the palette's selected cell, as it last told
    bool m_bOpen = false;
};

// Where the dialog's top left corner goes: centred on its owner, and kept on the screen, whose top left
// wins when it is too large.
CPoint CentreOnOwner(const CRect& rcOwner, const CRect& rcScreen, int32_t nWidth, int32_t nHeight);
