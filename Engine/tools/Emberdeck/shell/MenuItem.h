#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "shell/ShellSurface.h"

// In pixels.
struct CMenuTextSize
{
    int32_t m_nWidth = 0;
    int32_t m_nHeight = 0;
};

// The system's menu font, and the same with the weight 700.
class IMenuFont
{
public:
    virtual ~IMenuFont() = default;
    // The text as it is shown: without the marks of shortcut letters.
    virtual CMenuTextSize Measure(std::string_view sText, bool bBold) const = 0;
};

// How an item of an open popup stands at the moment.
struct CMenuItemState
{
    bool m_bSelected = false;
    bool m_bChecked = false;
    bool m_bDisabled = false;
};

// The images of an item's command, borrowed for one painting; each may be null.
struct CMenuItemIcons
{
    const CPixelImage* m_pNormal = nullptr;
    const CPixelImage* m_pHot = nullptr;
    const CPixelImage* m_pDisabled = nullptr;
};

enum EMenuItemBits : uint32_t
{
    eMenuSeparator = 1,
    eMenuSubmenu = 2,
    eMenuDefault = 4, // bold
};

constexpr int32_t c_nMenuGutter = 24;     // pixels at the left, for icon and check sign
constexpr int32_t c_nMenuTextColumn = 20; // between the widest text and the accelerators

// A decorated item of a popup menu.
class CKRMenuItem
{
public:
    CKRMenuItem(int32_t nID, uint32_t nState, std::string sText, std::string sAccelerator);
    virtual ~CKRMenuItem() = default;

    // Sets width and height. nTextColumn is the popup's. A toolkit that has no room of its own at the right
    // end adds c_nRightRoom to each width.
    virtual void MeasureItem(const IMenuFont& font, int32_t nTextColumn);
    // In rc, which is as high as the item and as wide as its popup. All null icons: the gutter stays empty, but for
    // the check sign of a checked one.
    virtual void DrawItem(IShellSurface& surface, const CRect& rc, const CMenuItemState& state,
                          const CMenuItemIcons& icons, const CShellColors& colors) const;

    static constexpr int32_t c_nRightRoom = 18;
    static constexpr int32_t c_nSeparatorHeight = 5;

    bool IsSeparator() const { return (m_nState & eMenuSeparator) != 0; }
    bool IsBold() const { return (m_nState & eMenuDefault) != 0; }
    int32_t GetID() const { return m_nID; }
    const std::string& GetText() const { return m_sText; }
    const std::string& GetAccelerator() const { return m_sAccelerator; } // "Ctrl+S"; empty: none
    // Both 0 until MeasureItem has run.
    int32_t GetWidth() const { return m_nWidth; }
    int32_t GetHeight() const { return m_nHeight; }

private:
    void DrawSign(IShellSurface& surface, const CRect& rcGutter, const CMenuItemState& state,
                  const CMenuItemIcons& icons, const CShellColors& colors) const;

    int32_t m_nID;
    uint32_t m_nState; // EMenuItemBits
    std::string m_sText;
    std::string m_sAccelerator;
    int32_t m_nWidth = 0;
    int32_t m_nHeight = 0;
};
