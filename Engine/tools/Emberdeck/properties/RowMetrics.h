#pragma once

#include <cstdint>
#include <string_view>

// The size of texts in a dialog's font, in pixels. A window asks its font, a test counts letters.
class ITextMeasure
{
public:
    virtual ~ITextMeasure() = default;
    virtual int32_t TextWidth(std::string_view sText) const = 0; // of a single line
    virtual int32_t TextHeight() const = 0;
};

struct CTextSize
{
    int32_t m_nWidth = 0;
    int32_t m_nHeight = 0;
};
// Null arguments are reported, and give no size.
CTextSize GetTextSize(const ITextMeasure* pFont, const char* pszText);

// Every pixel number of a property row. A row is made for a font of up to 15 pixels; larger ones
// stretch all numbers by one factor, each rounded once.
struct CRowMetrics
{
    explicit CRowMetrics(int32_t nFontHeight = 0);

    int32_t m_nPitch;      // from row to row
    int32_t m_nHeight;     // of a row
    int32_t m_nCheckWidth; // of the box in front of a label; the room stays without one
    int32_t m_nGap;        // between label and controls, and between the parts of a colour
    int32_t m_nSpinWidth;
    int32_t m_nListExtra;  // of a list beyond its widest item
    int32_t m_nDropHeight; // of an open list
    int32_t m_nGroupGap;   // between the parts of a vector
    int32_t m_nOverhang;   // of buttons above and below a row
};
