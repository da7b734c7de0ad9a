#pragma once

#include "timeline/gestures/TimeGesture.h"

// Drags the selected keys along their tracks. The lengths stay as they were at the press.
class CMoveKeys : public CTimeGesture
{
public:
    CMoveKeys(const CGestureContext& context, CPoint ptDown) : CTimeGesture(context, "Move", ptDown) {}

protected:
    void Place(CStep& step) const override;
};
