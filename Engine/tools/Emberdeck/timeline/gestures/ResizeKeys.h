#pragma once

#include "timeline/gestures/TimeGesture.h"

// Drags the left edges of the selected keys. A key that a bound would leave without length stays as it is
// in that step.
class CResizeKeysLeft : public CTimeGesture
{
public:
    static constexpr int32_t c_nMinLength = 100; // milliseconds; a neighbour may leave less

    CResizeKeysLeft(const CGestureContext& context, CPoint ptDown) : CTimeGesture(context, "Resize", ptDown)
    {
    }

protected:
    void Place(CStep& step) const override;
};

// The same with the right edges.
class CResizeKeysRight : public CTimeGesture
{
public:
    static constexpr int32_t c_nMinLength = CResizeKeysLeft::c_nMinLength;

    CResizeKeysRight(const CGestureContext& context, CPoint ptDown)
        : CTimeGesture(context, "Resize", ptDown),
          m_nPhaseLength(context.m_Spell.m_Tracks.m_nPhaseLength)
    {
    }

protected:
    void Place(CStep& step) const override;

private:
    int32_t m_nPhaseLength; // as it was at the press
};
