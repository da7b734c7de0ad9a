#include "properties/RowMetrics.h"

#include <algorithm>
#include <cmath>

#include "qsassert.h"

CTextSize GetTextSize(const ITextMeasure* pFont, const char* pszText)
{
    QS_ASSERT_TEXT(pFont && pszText, "pWindow && pszText && pFont", "Error: Invalid parameters");
    if (!pFont || !pszText)
        return CTextSize{};
    return CTextSize{pFont->TextWidth(pszText), pFont->TextHeight()};
}

CRowMetrics::CRowMetrics(int32_t nFontHeight)
{
    constexpr int32_t c_nMaxFontHeight = 1000;
    const int32_t nFont = std::min(nFontHeight, c_nMaxFontHeight);
    const double fFactor = std::max(1.0, (nFont + 2) / 17.0);
    const auto scaled = [fFactor](int32_t n) { return static_cast<int32_t>(std::lround(n * fFactor)); };
    m_nPitch = scaled(22);
    m_nHeight = scaled(17);
    m_nCheckWidth = scaled(20);
    m_nGap = scaled(10);
    m_nSpinWidth = scaled(40);
    m_nListExtra = scaled(30);
    m_nDropHeight = scaled(100);
    m_nGroupGap = scaled(5);
    m_nOverhang = scaled(2);
}
