#include "timeline/gestures/TrackGesture.h"

#include "model/MakeOrNull.h"

void CTrackGesture::Abandon()
{
    GiveBack();
    bool bPutBack = !m_Scope;
    TryAllocating([&] { bPutBack = !m_Scope || m_Scope->Abandon(); });
    if (!bPutBack)
        Cancel();
    m_Scope.reset();
}
