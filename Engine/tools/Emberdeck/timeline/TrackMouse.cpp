#include "timeline/TrackWnd.h"

#include <utility>

#include "model/MakeOrNull.h"
#include "timeline/TrackStatus.h"
#include "timeline/gestures/CarryKey.h"
#include "timeline/gestures/MoveKeys.h"
#include "timeline/gestures/ResizeKeys.h"

void CTrackWnd::OnLeftPress(CPoint pt, bool bCtrl, bool bShift)
{
    if (IsLinking())
    {
        m_bPressSwallowed = true;
        m_Links.EndLine(pt);
        return;
    }
    m_bPressSwallowed = false;
    if (IsDragging())
        return;

    m_View.TakeFocus();
    const bool bCleared = !bCtrl && ClearSelection();
    m_Selection.SetCurTrack(TrackFromY(pt.y));
    if (!GetCurTrack())
    {
        // Below the rows the current key stays, unselected.
        if (bCleared)
            m_Scene.Refresh();
        return;
    }
    SetCurKey(KeyFromPoint(pt));
    if (!GetCurKey())
    {
        if (bCleared)
            m_View.Invalidate();
        return;
    }
    m_View.Invalidate();
    m_ptDown = pt;

    if (bShift)
    {
        if (GetSelectedKeyCount() == 1)
            CarryKey(bCtrl);
        else
            m_Context.m_Host.ShowStatus(c_szCarryOneKey);
        return;
    }
    // The key was found by its times, the zone goes by pixels: in a column that both tests don't share, the
    // press selects and does nothing more.
    switch (HitTestKey(*GetCurKey(), pt))
    {
    case EKeyZone::eBody:
        MoveKeys();
        break;
    case EKeyZone::eLeftEdge:
        ResizeKeysLeft();
        break;
    case EKeyZone::eRightEdge:
        ResizeKeysRight();
        break;
    case EKeyZone::eOutside:
        break;
    }
}

void CTrackWnd::OnDoubleClick(CPoint pt, bool bCtrl, bool bShift)
{
    // After a press that only ended the link line, this is the first that counts.
    if (m_bPressSwallowed || IsLinking())
        OnLeftPress(pt, bCtrl, bShift);
    else if (!IsDragging())
        OnTrackEditKey();
}

void CTrackWnd::OnMove(CPoint pt, bool bLeftDown)
{
    if (IsLinking())
    {
        if (m_Scene.LinkLine().MoveTo(pt))
            m_View.PaintNow();
        return;
    }
    if (!IsDragging())
    {
        m_Scene.SetCursor(Layout().IsOverEdge(pt) ? ECursorShape::eSizeHorizontal : ECursorShape::eArrow);
        return;
    }
    StepGesture(pt);
    if (!bLeftDown) // the release went elsewhere
        EndGesture();
}

void CTrackWnd::OnLeftRelease(CPoint pt)
{
    if (!IsDragging())
        return;
    StepGesture(pt);
    EndGesture();
}

void CTrackWnd::OnMouseLost()
{
    if (IsDragging())
        EndGesture();
}

void CTrackWnd::OnDeactivate()
{
    if (!IsLinking())
        return;
    m_Scene.LinkLine().End();
    m_View.Invalidate();
}

bool CTrackWnd::OnEscape()
{
    if (!IsBusy())
        return false;
    OnDeactivate();
    if (IsDragging())
    {
        m_pGesture->Abandon();
        LeaveGesture();
    }
    return true;
}

void CTrackWnd::MoveKeys()
{
    if (!m_Links.AskAboutTarget())
        StartGesture(std::make_unique<CMoveKeys>(GestureContext(), m_ptDown), ECursorShape::eSizeHorizontal);
}

void CTrackWnd::ResizeKeysLeft()
{
    if (!m_Links.AskAboutTarget())
        StartGesture(std::make_unique<CResizeKeysLeft>(GestureContext(), m_ptDown),
                     ECursorShape::eSizeHorizontal);
}

void CTrackWnd::ResizeKeysRight()
{
    if (!m_Links.AskAboutTarget())
        StartGesture(std::make_unique<CResizeKeysRight>(GestureContext(), m_ptDown),
                     ECursorShape::eSizeHorizontal);
}

void CTrackWnd::CarryKey(bool bMove)
{
    if (!GetCurKey() || !GetCurTrack())
        return;
    const bool bUnlink = bMove && m_Links.IsBound(*GetCurKey());
    if (bUnlink && m_Context.m_Prompts.Ask("You must unlink this key first, would you like to unlink it?",
                                           "Move Key", EButtons::eYesNo, EIcon::eQuestion) != EAnswer::eYes)
        return;
    if (!GetCurKey() || !GetCurTrack())
        return;
    // One edit with the gesture's own.
    CEditScope scope(m_Context.m_Edits, bMove ? "Move Key To Track" : "Copy Key");
    if (bUnlink)
        UnlinkKey(GetCurKey());
    auto pCarry =
        std::make_unique<CCarryKey>(GestureContext(), *GetCurTrack(), *GetCurKey(), bMove, m_ptDown);
    if (pCarry->IsCarrying())
        StartGesture(std::move(pCarry), ECursorShape::eArrow);
}

void CTrackWnd::StartGesture(std::unique_ptr<CTrackGesture> pGesture, ECursorShape eShape)
{
    m_pGesture = std::move(pGesture);
    m_Scene.ShowGesture(m_pGesture.get());
    m_Scene.SetCursor(eShape);
    m_View.Invalidate();
    // A focus change or a question within the press may have taken the release.
    if (!m_View.IsLeftButtonDown())
        EndGesture();
}

void CTrackWnd::StepGesture(CPoint pt)
{
    if (!m_pGesture->Move(pt))
        return;
    if (!m_pGesture->PaintsAtOnce())
    {
        m_View.Invalidate();
        if (const std::optional<CLanding> landing = m_Scene.Landing())
        {
            m_Scene.SetCursor(landing->m_bRoom ? ECursorShape::eArrow : ECursorShape::eForbidden);
            m_Scene.UpdateKeyInfo();
        }
        return;
    }
    m_View.PaintNow();
    m_Scene.UpdateKeyInfo();
}

void CTrackWnd::EndGesture()
{
    const std::optional<CLanding> landing = m_pGesture->Landing();
    m_pGesture->Release();
    // Behind the drop: without memory for the words the key is where it belongs.
    if (landing)
        TryAllocating([&] { m_Context.m_Host.ShowStatus(landing->m_bRoom ? "" : c_szCarryRefused); });
    LeaveGesture();
}

void CTrackWnd::LeaveGesture()
{
    m_Scene.ShowGesture(nullptr);
    m_pGesture.reset();
    m_Scene.SetCursor(ECursorShape::eArrow);
    m_Scene.Refresh();
}

std::vector<CMenuEntry> CTrackWnd::OnRightRelease(CPoint pt, bool bCtrl)
{
    if (IsBusy() || !Layout().VisibleTrackArea().Contains(pt))
        return {};
    m_Selection.SetCurTrack(TrackFromY(pt.y));
    SetCurKey(KeyFromPoint(pt));
    m_View.PaintNow();
    const bool bCleared = !bCtrl && ClearSelection();
    m_Commands.SetMenuPoint(pt);
    if (GetCurKey())
        SetCurKey(GetCurKey());
    if (GetCurKey() || bCleared)
        m_Scene.Refresh();
    return BuildTrackMenu(MenuState());
}

CTrackMenuState CTrackWnd::MenuState() const
{
    CTrackMenuState state;
    state.m_bTrack = GetCurTrack() != nullptr;
    state.m_pKey = GetCurKey();
    state.m_bLinkedTo = IsLinkedTo(GetCurKey());
    state.m_nSelected = GetSelectedKeyCount();
    state.m_pActivePrefab = m_Context.m_Host.GetActivePrefab();
    state.m_bKeyOnClipboard = m_Context.m_Clipboard.GetKey() != nullptr;
    return state;
}

void CTrackWnd::OnMenuClosed(int32_t nID)
{
    m_View.PaintNow();
    Command(nID);
}
