#include "timeline/TimeScale.h"

#include <algorithm>

int32_t PixelFromTime(const CTimeScale& scale, int64_t nTime)
{
    const double fPixel =
        static_cast<double>(nTime - scale.m_nViewStart) * static_cast<double>(scale.m_fPixelsPerMs);
    return static_cast<int32_t>(std::clamp(fPixel, -double(c_nMaxPixel), double(c_nMaxPixel)));
}

int32_t TimeFromPixel(const CTimeScale& scale, int32_t nPixel)
{
    // Far beyond any time, and still a number that can be cast.
    constexpr double c_fMaxTime = double(int64_t(1) << 40);
    const double fTime = static_cast<double>(nPixel) / static_cast<double>(scale.m_fPixelsPerMs);
    return SaturateTime(static_cast<int64_t>(std::clamp(fTime, -c_fMaxTime, c_fMaxTime)) +
                        scale.m_nViewStart);
}

float MakePixelsPerMs(int32_t nWidth, int32_t nPhaseLength, float fZoom)
{
    const double fWidth = std::max(nWidth, 1);
    const double fPhaseLength = std::max(nPhaseLength, 1);
    return static_cast<float>(fWidth / fPhaseLength * static_cast<double>(fZoom));
}
