#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "changes/EditScope.h"
#include "timeline/TrackLayout.h"

// What a gesture works on; all borrowed, and alive as long as the gesture.
struct CGestureContext
{
    CSpell& m_Spell;
    const CTrackLayout& m_Layout;
    const CTimeScale& m_Scale;
    CEditHub& m_Edits;
};

// Where a carried key would come to lie, were it dropped now.
struct CLanding
{
    bool m_bRoom = false;  // false: it would be refused, and the rest says nothing
    uint32_t m_nTrack = 0; // one behind the last: it would get a new track
    CKeySpan m_Span;
};

// One drag of the mouse over the rows, from the press to the release. It knows keys and times, never a
// window: points come in, the library changes. Its edit scope opens before the first change and closes at
// the end.
class CTrackGesture
{
public:
    explicit CTrackGesture(const CGestureContext& context) : m_Context(context) {}
    virtual ~CTrackGesture() = default;
    CTrackGesture(const CTrackGesture&) = delete;
    CTrackGesture& operator=(const CTrackGesture&) = delete;

    // True: there is something to paint.
    virtual bool Move(CPoint pt) = 0;
    // The button went up at the point of the last Move, or of the press.
    virtual void Release() = 0;
    // The window goes. Nothing gets lost; what stands in the library already stays there.
    virtual void Cancel() = 0;
    // Back to what was before the press; no step of the history comes of it. Where nobody has recorded that, what
    // stands in the library stays, as by Cancel.
    void Abandon();

    // The steps are painted before the next event comes, not some time later.
    virtual bool PaintsAtOnce() const { return true; }
    // A key that is on no track for now, to be drawn at m_rc in window coordinates; null: none.
    virtual const CKey* CarriedKey(CRect& rc) const
    {
        (void)rc;
        return nullptr;
    }
    virtual std::optional<CLanding> Landing() const { return std::nullopt; } // none: nothing is carried

protected:
    CTrackList& Tracks() const { return m_Context.m_Spell.m_Tracks; }
    // Opened with the first change; what a change touches is told before it.
    CEditScope& Scope(std::string_view sLabel) // takes no memory of its own
    {
        return m_Scope ? *m_Scope : m_Scope.emplace(m_Context.m_Edits, sLabel);
    }
    // What was changed since the last step may be shown.
    void EndStep()
    {
        if (m_Scope)
            m_Scope->Step();
    }
    void CloseScope() { m_Scope.reset(); }
    // Before the library is put back: what the gesture holds goes back into it.
    virtual void GiveBack() {}

    const CGestureContext m_Context;

private:
    std::optional<CEditScope> m_Scope;
};
