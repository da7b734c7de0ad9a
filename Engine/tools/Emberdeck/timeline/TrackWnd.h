#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "app/EditContext.h"
#include "timeline/ITrackView.h"
#include "timeline/KeyCommands.h"
#include "timeline/KeyLinks.h"
#include "timeline/KeySelection.h"
#include "timeline/TrackMenu.h"
#include "timeline/TrackScene.h"
#include "timeline/gestures/TrackGesture.h"

constexpr const char* c_szTrackWindowTitle = "Cast Track Window";

// The timeline of one open effect, without its window: tracks as rows, keys as blocks on a time axis. Events come
// in, through ITrackView it asks for what it needs. Itself it only routes: to the gesture that runs, the selection,
// the commands and what is shown. Each of them can be asked here, which is what the many one-line operations are.
//
// It lives as long as its view, and ends before its effect does. While IsBusy, commands that would change or
// close the library are to be refused; those of its own it refuses itself.
class CTrackWnd : private IEditListener
{
public:
    static constexpr int32_t c_nScrollPage = CTrackScene::c_nScrollPage;
    static constexpr int32_t c_nMaxScrollPos = CTrackScene::c_nMaxScrollPos;

    // All borrowed. The view hears nothing before the first event.
    CTrackWnd(CEditContext& context, CSpell& spell, ITrackView& view);
    ~CTrackWnd(); // cancels what runs, without a word to the view
    CTrackWnd(const CTrackWnd&) = delete;
    CTrackWnd& operator=(const CTrackWnd&) = delete;

    // Events of the window. Points are window coordinates.
    bool OnSize(int32_t nWidth, int32_t nHeight, int32_t nKeyInfoHeight, int32_t nTimeBarHeight,
                int32_t nScrollBarWidth) // as CTrackScene tells it
    {
        return m_Scene.OnSize(nWidth, nHeight, nKeyInfoHeight, nTimeBarHeight, nScrollBarWidth);
    }
    // While the link command waits for its target (IsLinking), every left press of the whole program comes here,
    // and goes nowhere else.
    void OnLeftPress(CPoint pt, bool bCtrl, bool bShift);
    void OnDoubleClick(CPoint pt, bool bCtrl, bool bShift); // in place of the second press
    void OnMove(CPoint pt, bool bLeftDown);
    void OnLeftRelease(CPoint pt);
    // The mouse was taken away: ends a gesture as a release where the pointer was last.
    void OnMouseLost();
    // Esc: a gesture ends without its effect, the link line without a link. False: neither is there.
    bool OnEscape();
    void OnDeactivate(); // the whole program isn't active any more
    // The popup menu for that point; empty: none is to be shown. OnMenuClosed must follow once it has gone.
    std::vector<CMenuEntry> OnRightRelease(CPoint pt, bool bCtrl);
    // 0: nothing was chosen. Runs the command, so this object may be gone after it.
    void OnMenuClosed(int32_t nID);
    // A key of the window or its children (a capital letter or a c_nKey number). True: it ends here.
    bool OnKeyPress(uint16_t nKey, bool bCtrl, bool bShift, bool bAlt);
    // Makes another key the current one and brings it into view. bAdd: those selected before stay so.
    void OnStep(EKeyStep eStep, bool bAdd);
    // What was changed from elsewhere: selected as CKeySelection::Select has it, and in view. Nothing while IsBusy.
    void ShowKeys(const std::vector<CKey*>& keys, CTrack* pTrack);
    void OnScroll(EScrollEvent eEvent, int32_t nThumbPos = 0) { m_Scene.OnScroll(eEvent, nThumbPos); }

    void Command(int32_t nID); // unknown numbers do nothing

    void Paint(IDrawSurface& surface) const { m_Scene.Paint(surface); }
    void SetOptions(const CTrackViewOptions& options) { m_Scene.SetOptions(options); }
    // Where the popup menu opens that is called by a key, and what has to be in view before it does.
    CPoint GetMenuPoint() const { return m_Scene.GetMenuPoint(); }
    void ShowCurrent() { m_Scene.ShowCurrent(); }

    bool IsLinking() const { return m_Scene.LinkLine().IsActive(); }
    bool IsDragging() const { return m_pGesture != nullptr; }
    bool IsBusy() const { return IsLinking() || IsDragging(); }

    // Geometry and hit tests, as CTrackLayout tells them.
    CRect GetKeyRect(const CKey* pKey) const; // empty, reported, for null
    CTrack* TrackFromY(int32_t y) const { return Layout().TrackFromY(y); }
    CKey* KeyFromPoint(CPoint pt) const { return Layout().KeyFromPoint(pt); }
    CKey* KeyFromRect(CPoint pt) const { return Layout().KeyFromRect(pt); }
    EKeyZone HitTestKey(const CKey& key, CPoint pt) const { return Layout().HitTestKey(key, pt); }
    CTrack* TrackFromKey(const CKey* pKey) const { return Layout().TrackFromKey(pKey); }

    // Selection, as CKeySelection tells it.
    void SetCurKey(CKey* pKey); // refreshes the Key Info bar, too
    bool ClearSelection() { return m_Selection.Clear(); }
    CKey* GetFirstSelectedKey() const { return m_Selection.GetFirst(); }
    uint32_t GetSelectedKeyCount() const { return m_Selection.GetCount(); }
    CTrack* GetCurTrack() const { return m_Selection.GetCurTrack(); }
    CKey* GetCurKey() const { return m_Selection.GetCurKey(); }

    bool IsLinkedTo(const CKey* pKey) const { return m_Links.IsLinkedTo(pKey); }
    void UnlinkKey(CKey* pKey) { m_Links.UnlinkKey(pKey); }
    bool AddKey(const CEffectTypeDesc* pType, CEffectPropertySet* pPrefab)
    {
        return m_Commands.AddKey(pType, pPrefab);
    }
    void PasteKeyAt(CPoint pt) { m_Commands.PasteKeyAt(pt); }

    // Handlers of the commands.
    void OnTrackInsertTrack() { m_Commands.InsertTrack(); }
    void OnTrackAddKey() { m_Commands.AddChosenKey(); }
    void OnTrackEditKey() { m_Commands.EditKey(); }
    void OnTrackDeleteKey() { m_Commands.DeleteKeys(); }
    void OnTrackExpandKey() { m_Commands.ExpandKeys(); }
    void OnTrackDeleteTrack() { m_Commands.DeleteTrack(); }
    void OnTrackLinkKey() { m_Links.BeginLine(); }
    void OnTrackUnlinkKey() { m_Links.UnlinkSelected(); }
    void OnTrackSetKeyLength() { m_Commands.SetKeyLength(); }
    void OnTrackNameKey();
    void OnTrackCopyKey() { m_Commands.CopyKey(); }
    void OnTrackCutKey() { m_Commands.CutKey(); }
    void OnTrackPasteKey() { m_Commands.PasteKey(); }
    void OnTrackPasteKeyAtMouse() { m_Commands.PasteKeyAtMouse(); }
    void OnTrackAddChildKey() { m_Commands.AddChildKey(); }
    void OnTrackCreatePrefabFromKey() { m_Commands.CreatePrefab(); }
    void OnTrackAssignPrefabToKey() { m_Commands.AssignPrefab(); }

    const CTrackLayout& Layout() const { return m_Scene.Layout(); }
    CTimeBar& TimeBar() { return m_Scene.TimeBar(); }
    CKeyInfoBar& KeyInfo() { return m_Scene.KeyInfo(); }
    int32_t GetScrollPos() const { return m_Scene.GetScrollPos(); }

private:
    void OnEdit(const CEdit& edit) override;

    CGestureContext GestureContext()
    {
        return CGestureContext{m_Spell, Layout(), TimeBar(), m_Context.m_Edits};
    }
    // On all selected keys, and the one at the press.
    void MoveKeys();
    void ResizeKeysLeft();
    void ResizeKeysRight();
    void CarryKey(bool bMove); // a copy otherwise
    void StartGesture(std::unique_ptr<CTrackGesture> pGesture, ECursorShape eShape);
    void StepGesture(CPoint pt);
    void EndGesture();
    void LeaveGesture(); // after its end
    CTrackMenuState MenuState() const;

    CEditContext& m_Context;
    CSpell& m_Spell;
    ITrackView& m_View;
    CKeySelection m_Selection;
    CTrackScene m_Scene;
    CKeyLinks m_Links;
    CKeyCommands m_Commands;
    CPoint m_ptDown;                           // where the running gesture began
    std::unique_ptr<CTrackGesture> m_pGesture; // null: none runs
    bool m_bPressSwallowed = false;            // the last press ended the link line
};
