#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/IProfile.h"
#include "platform/Profile.h"
#include "properties/ColorChooser.h"

// What a palette tells the dialog that it stands in. Each call is handled before it returns.
class IPaletteParent
{
public:
    virtual ~IPaletteParent() = default;
    virtual void OnPaletteFocus() = 0;               // the palette takes the focus: others lose it
    virtual void OnColorChosen(uint32_t nColor) = 0; // use this colour
    virtual void OnCellSelected(int nCell) = 0;      // the selected cell has changed
    virtual void OnCellFocused(int nCell) = 0;       // the cursor cell has changed
    virtual void OnCellCleared(int nCell) = 0;       // a cell has been cleared
    virtual void RepaintPalette() = 0;
};

enum class EPaletteKey
{
    eSpace,
    eLeft,
    eRight,
    eUp,
    eDown,
    eDelete
};

// The colours that a palette is painted in, of the user's desktop.
struct CPaletteColors
{
    CColorRef m_nFace = 0;
    CColorRef m_nShadow = 0;
    CColorRef m_nDarkShadow = 0;
    CColorRef m_nHighlight = 0;
    CColorRef m_nLight = 0;
    CColorRef m_nOutline = 0; // round the selected cell; black wouldn't be seen on a dark desktop
};

// The grid of 24 custom colours. A colour word has red in bits 0 to 7, green, blue, and alpha in bits 24 to
// 31. One cell is selected, one, perhaps another, has the cursor of the keyboard.
class CCustomColorPalette
{
public:
    static constexpr int c_nNumCells = 24;
    static constexpr int c_nNumColumns = 8;
    static constexpr uint32_t c_nEmptyColor = 0xFFFFFFFF;

    explicit CCustomColorPalette(IPaletteParent& parent); // all cells white, alpha 255
    // The control's size in pixels, once known; makes the surface.
    void Attach(int32_t nWidth, int32_t nHeight);

    void SetCurrentColor(uint32_t nColor); // into the selected cell
    void SendCurrentColor();               // the selected cell's, to the parent

    // Only the 24 colours. What is missing in a store is white with alpha 255.
    void LoadFromProfile(const IProfile& profile);
    void SaveToProfile(std::vector<IProfile::CEntry>& entries) const;
    // A palette file as text. Loading repaints and tells the selected colour.
    void LoadFromFile(const CProfileText& file);
    void SaveToFile(CProfileText& file) const;

    void OnLeftDown(CPoint pt, bool bCtrl); // in the control. Between the cells nothing happens at all
    void OnKey(EPaletteKey eKey, bool bCtrl);

    const CGDISurface& Paint(const CPaletteColors& colors, bool bHasFocus);
    static CRect GetCellRect(int nCell);

    using CCells = std::array<uint32_t, c_nNumCells>;
    const CCells& GetColors() const { return m_anColors; }
    void SetColors(const CCells& colors); // repaints, and tells nothing else
    uint32_t GetColor(int nCell) const { return m_anColors[static_cast<size_t>(nCell)]; }
    int GetSelected() const { return m_nSelected; }
    int GetFocus() const { return m_nFocus; }

private:
    void PaintCell(int nCell, const CPaletteColors& colors);
    void PaintFocus();
    void MoveFocus(int nCell);
    void ClearFocusCell();

    IPaletteParent& m_Parent;
    CGDISurface m_Surface;
    CCells m_anColors;
    int m_nSelected = 0;
    int m_nFocus = 0;
};

// "Color%.2d", the key of a cell in files and in the profile.
std::string ColorKey(int nCell);
// "%3d, %3d, %3d, %3d", and back: what can't be read is 255, and so is all behind it. A blank in front of a
// comma can't. Of each number the low byte counts.
std::string FormatColorValue(uint32_t nColor);
uint32_t ParseColorValue(const std::string& sText);

constexpr const char* c_szCustomColorSection = "Custom Colors"; // of the profile
constexpr const char* c_szFileColorSection = "Colors";          // of a palette file
constexpr const char* c_szFileDescriptionSection = "Description";
