#pragma once

#include <cstdint>

// How times map to pixel columns. Only the stored scale is a float; every product and quotient with it
// is taken in double and truncated toward zero, so the two directions are no exact inverses.
struct CTimeScale
{
    int32_t m_nViewStart = 0;    // milliseconds, the time at pixel 0
    float m_fPixelsPerMs = 1.0f; // above 0
};

// Pixels are kept within these bounds, so that sums of a few of them still fit.
constexpr int32_t c_nMaxPixel = 1 << 30;

// Sums of times are made in 64 bits; files hold any 32-bit number.
constexpr int32_t SaturateTime(int64_t nTime)
{
    return nTime < INT32_MIN ? INT32_MIN : nTime > INT32_MAX ? INT32_MAX : static_cast<int32_t>(nTime);
}

// Pixel column of a time. Truncates toward zero, so the column 0 also takes the times just before the view
// start. May lie outside the window; beyond c_nMaxPixel it stops there.
int32_t PixelFromTime(const CTimeScale& scale, int64_t nTime);

// Time of a pixel column, saturated at 32 bits.
int32_t TimeFromPixel(const CTimeScale& scale, int32_t nPixel);

// The scale that shows nPhaseLength / fZoom milliseconds on nWidth pixels. A width or phase length of 0 or
// below counts as 1.
float MakePixelsPerMs(int32_t nWidth, int32_t nPhaseLength, float fZoom);
