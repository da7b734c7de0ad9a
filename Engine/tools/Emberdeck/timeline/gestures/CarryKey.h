#pragma once

#include <memory>

#include "timeline/gestures/TrackGesture.h"

// Carries one key, or a copy of it, to another place on any track. The gesture owns what it carries until
// that has found its place: a moved key that can't be dropped goes back to where it came from.
class CCarryKey : public CTrackGesture
{
public:
    // key stands on track. Takes a moved key out at once.
    CCarryKey(const CGestureContext& context, CTrack& track, CKey& key, bool bMove, CPoint ptDown);

    bool IsCarrying() const { return m_pKey != nullptr; } // false: out of memory, or dropped

    bool Move(CPoint pt) override;
    // Drops the key by the pixels that it is drawn at, so both ends land on their grid. Below the last row,
    // and above the first, it gets a new track. On a key it is refused; so it is where it would be left
    // without length.
    void Release() override;
    void Cancel() override;

    bool PaintsAtOnce() const override { return false; }
    const CKey* CarriedKey(CRect& rc) const override;
    std::optional<CLanding> Landing() const override;

private:
    const char* Label() const { return m_bMove ? "Move Key To Track" : "Copy Key"; }
    bool Drop();
    bool DropOn(CTrack& track, CKeySpan span);
    void GoBack();
    void GiveBack() override
    {
        if (m_pKey)
            GoBack();
    }

    CTrack& m_Track; // where a moved key came from
    const bool m_bMove;
    CRect m_rcDrag; // the key's rectangle from the pointer
    CPoint m_ptCur;
    std::unique_ptr<CKey> m_pKey;
};
