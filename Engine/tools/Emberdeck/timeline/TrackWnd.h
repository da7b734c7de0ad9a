#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/EditContext.h"
#include "timeline/ITrackView.h"
#include "timeline/KeyInfoBar.h"
#include "timeline/TimeBar.h"
#include "timeline/TrackLayout.h"
#include "timeline/TrackMenu.h"
#include "timeline/gestures/LinkLine.h"
#include "timeline/gestures/TrackGesture.h"

// A scroll event from the vertical scroll bar.
enum class EScrollEvent
{
    eLineUp,
    eLineDown,
    ePageUp,
    ePageDown,
    eThumbTrack, // the position comes with it
    eOther       // the end of a thumb's way included
};

// A way to another key by the keyboard.
enum class EKeyStep
{
    ePrevious, // on the track; from the first to the free space behind the last
    eNext,     // and back round
    eUp,       // to the nearest on the track above
    eDown
};

constexpr const char* c_szTrackWindowTitle = "Cast Track Window";

// The timeline of one open effect, without its window: tracks as rows, keys as blocks on a time axis.
// Events come in, through ITrackView it asks for what it needs. Selection lives in the keys' flags;
// m_pCurKey is the one that single-key commands act on.
//
// It lives as long as its view, and ends before its effect does. While IsBusy, commands that would change or
// close the library are to be refused; those of its own it refuses itself.
class CTrackWnd : private IEditListener
{
public:
    static constexpr int32_t c_nScrollRange = 200; // of the scroll bar, from 0
    static constexpr int32_t c_nScrollPage = 10;
    static constexpr int32_t c_nMaxScrollPos = c_nScrollRange - c_nScrollPage + 1;

    // All borrowed. The view hears nothing before the first event.
    CTrackWnd(CEditContext& context, CSpell& spell, ITrackView& view);
    ~CTrackWnd(); // cancels what runs, without a word to the view
    CTrackWnd(const CTrackWnd&) = delete;
    CTrackWnd& operator=(const CTrackWnd&) = delete;

    // Events of the window. Points are window coordinates.
    // A size event, with the heights that the bars have; false: it was ignored. The parts' places are in Layout.
    bool OnSize(int32_t nWidth, int32_t nHeight, int32_t nKeyInfoHeight, int32_t nTimeBarHeight,
                int32_t nScrollBarWidth);
    // While the link command waits for its target (IsLinking), every left press of the whole program comes here,
    // and goes nowhere else.
    void OnLeftPress(CPoint pt, bool bCtrl, bool bShift);
    void OnDoubleClick(CPoint pt, bool bCtrl, bool bShift); // in place of the second press
    void OnMove(CPoint pt, bool bLeftDown);
    void OnLeftRelease(CPoint pt);
    // The mouse was taken away: ends a gesture as a release where the pointer was last.
    void OnMouseLost();
    void OnDeactivate(); // the whole program isn't active any more
    // The popup menu for that point; empty: none is to be shown. OnMenuClosed must follow once it has gone.
    std::vector<CMenuEntry> OnRightRelease(CPoint pt, bool bCtrl);
    void OnMenuClosed(
        int32_t nID); // 0: nothing was chosen. Runs the command, so this object may be gone after it.
    // A key of the window or its children (a capital letter or a c_nKey number). True: it ends here.
    bool OnKeyPress(uint16_t nKey, bool bCtrl, bool bShift, bool bAlt);
    // Makes another key the current one and brings it into view. bAdd: those selected before stay so.
    void OnStep(EKeyStep eStep, bool bAdd);
    // Where the popup menu opens that is called by a key: on the current key, or the free space of its track.
    CPoint GetMenuPoint() const;
    void OnScroll(EScrollEvent eEvent, int32_t nThumbPos = 0);

    void Command(int32_t nID); // unknown numbers do nothing
    // The track area, its origin being the surface's.
    void Paint(IDrawSurface& surface) const;

    // All are off before. Asks for no repaint.
    void SetOptions(const CTrackViewOptions& options);

    bool IsLinking() const { return m_LinkLine.IsActive(); }
    bool IsDragging() const { return m_pGesture != nullptr; }
    bool IsBusy() const { return IsLinking() || IsDragging(); }

    // Geometry and hit tests, as CTrackLayout tells them.
    CRect GetKeyRect(const CKey* pKey) const; // empty, reported, for null
    CTrack* TrackFromY(int32_t y) const { return m_Layout.TrackFromY(y); }
    CKey* KeyFromPoint(CPoint pt) const { return m_Layout.KeyFromPoint(pt); }
    CKey* KeyFromRect(CPoint pt) const { return m_Layout.KeyFromRect(pt); }
    EKeyZone HitTestKey(const CKey& key, CPoint pt) const { return m_Layout.HitTestKey(key, pt); }
    CTrack* TrackFromKey(const CKey* pKey) const { return m_Layout.TrackFromKey(pKey); }

    // Selection. Flags are no content of the library: no edit scope.
    void SetCurKey(CKey* pKey);        // selects it; null leaves all flags. Refreshes the Key Info bar
    bool ClearSelection();             // all flags; m_pCurKey stays. True: there was one
    CKey* GetFirstSelectedKey() const; // by track and place; null: none
    uint32_t GetSelectedKeyCount() const;

    bool IsLinkedTo(const CKey* pKey) const; // some other key has a motion link to it
    void UnlinkKey(CKey* pKey);              // ends the links to it, then its own

    // A key of that type about m_ptMenu on the current track. pPrefab may be null; one of another type is left
    // out. False: no type, no track, no memory, or no room.
    bool AddKey(const CEffectTypeDesc* pType, CEffectPropertySet* pPrefab);
    void PasteKeyAt(CPoint pt);

    // Handlers of the commands. With the needed state missing they do nothing.
    void OnTrackInsertTrack();
    void OnTrackAddKey();
    void OnTrackEditKey();
    void OnTrackDeleteKey();
    void OnTrackExpandKey();
    void OnTrackDeleteTrack();
    void OnTrackLinkKey();
    void OnTrackUnlinkKey();
    void OnTrackSetKeyLength();
    void OnTrackNameKey();
    void OnTrackCopyKey();
    void OnTrackCutKey();
    void OnTrackPasteKey();
    void OnTrackPasteKeyAtMouse();
    void OnTrackAddChildKey();
    void OnTrackCreatePrefabFromKey();
    void OnTrackAssignPrefabToKey();

    const CTrackLayout& Layout() const { return m_Layout; }
    CTimeBar& TimeBar() { return m_TimeBar; }
    CKeyInfoBar& KeyInfo() { return m_KeyInfo; }
    CTrack* GetCurTrack() const { return m_pCurTrack; }   // of the last click; null: none
    CKey* GetCurKey() const { return m_pCurKey; }         // null: none
    int32_t GetScrollPos() const { return m_nScrollPos; } // 0 to c_nMaxScrollPos

private:
    void OnEdit(const CEdit& edit) override;

    void ScrollToCurrent();
    void Refresh(); // repaint soon, and Key Info
    void UpdateKeyInfo();
    void SetCursor(ECursorShape eShape);

    CGestureContext GestureContext()
    {
        return CGestureContext{m_Spell, m_Layout, m_TimeBar, m_Context.m_Edits};
    }
    void MoveKeys();
    void ResizeKeysLeft();
    void ResizeKeysRight();
    void CarryKey(bool bMove);
    bool RefuseLinkedTo();
    void StartGesture(std::unique_ptr<CTrackGesture> pGesture, ECursorShape eShape);
    void StepGesture(CPoint pt);
    std::optional<CLanding> Landing() const;
    void EndGesture();
    void EndLinkLine(CPoint pt);
    CTrackMenuState MenuState() const;

    bool PlaceNewKey(CTrack& track, std::unique_ptr<CKey> pKey, CPoint pt, const char* pszLabel);
    void UnlinkKeys(const std::vector<CKey*>& keys, CEditScope& scope);
    std::vector<CKey*> GetSelectedKeys() const;

    CTrackList& Tracks() const { return m_Spell.m_Tracks; }

    CEditContext& m_Context;
    CSpell& m_Spell;
    ITrackView& m_View;
    CTimeBar m_TimeBar;
    CKeyInfoBar m_KeyInfo;
    CTrackLayout m_Layout;
    CTrackViewOptions m_Options;
    CTrack* m_pCurTrack = nullptr;
    CKey* m_pCurKey = nullptr;
    CPoint m_ptMenu;                           // of the last right button release
    CPoint m_ptDown;                           // where the running gesture began
    std::unique_ptr<CTrackGesture> m_pGesture; // null: none runs
    CLinkLine m_LinkLine;
    bool m_bPressSwallowed = false; // the last press ended the link line
    ECursorShape m_eCursor = ECursorShape::eArrow;
    int32_t m_nScrollPos = 0;
};
