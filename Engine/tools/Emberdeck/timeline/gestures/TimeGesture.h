#pragma once

#include <cstdint>

#include "timeline/gestures/TrackGesture.h"

// What the drags along the time axis share. All selected keys follow the pointer, each by its own bounds,
// from the top track down and along each track, so a key sees where those before it stand by now. Pointer
// y has no effect.
class CTimeGesture : public CTrackGesture
{
public:
    // What a linked key keeps from either end of its target.
    static constexpr int32_t c_nLinkMargin = 50;

    // pszVerb: of the step's label. Takes down how the selected keys lie about the pointer.
    CTimeGesture(const CGestureContext& context, const char* pszVerb, CPoint ptDown);

    bool Move(CPoint pt) override; // false: x is the same as before
    // A link's margin comes before the neighbours, so a key may have passed one: its track is put in order
    // again, and nothing is cut.
    void Release() override;
    void Cancel() override { Release(); }

protected:
    // A key with what bounds it at this step.
    struct CStep
    {
        const CKey& m_Key;
        const CKey* m_pPrev;   // on its track; null: it is the first
        const CKey* m_pNext;   // null: it is the last
        const CKey* m_pTarget; // of its motion link; null: none
        int32_t m_nTime;       // of the pointer
        int64_t m_nStart;      // what becomes of the key: its times as they are, to be changed
        int64_t m_nEnd;
    };
    virtual void Place(CStep& step) const = 0;

private:
    void Apply(CKey& key, const CStep& step);

    std::string m_sLabel;
    CPoint m_ptCur;
};
