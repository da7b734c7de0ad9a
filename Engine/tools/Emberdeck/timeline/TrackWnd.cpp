#include "timeline/TrackWnd.h"

#include "qsassert.h"
#include "timeline/TrackCommands.h"

CTrackWnd::CTrackWnd(CEditContext& context, CSpell& spell, ITrackView& view)
    : m_Context(context),
      m_Spell(spell),
      m_View(view),
      m_Selection(spell.m_Tracks),
      m_Scene(context, spell, m_Selection, view),
      m_Links(context, spell, m_Selection, m_Scene, view),
      m_Commands(context, spell, m_Selection, m_Links, m_Scene, view)
{
    m_Context.m_Edits.AddListener(this);
}

CTrackWnd::~CTrackWnd()
{
    m_Context.m_Edits.RemoveListener(this);
    if (m_pGesture)
        m_pGesture->Cancel();
}

CRect CTrackWnd::GetKeyRect(const CKey* pKey) const
{
    QS_ASSERT_MSG(pKey, "Error: Unexpected NULL key passed into GetKeyRect");
    return pKey ? Layout().GetKeyRect(*pKey) : CRect();
}

void CTrackWnd::SetCurKey(CKey* pKey)
{
    m_Selection.SetCurKey(pKey);
    m_Scene.UpdateKeyInfo();
}

void CTrackWnd::OnTrackNameKey()
{
    if (m_Selection.GetCount() == 0)
        return;
    const CKey* pFirstSel = m_Selection.GetFirst();
    QS_ASSERT_MSG(pFirstSel, "Error: Selection out of sync some how");
    if (pFirstSel)
        m_Commands.NameKeys(*pFirstSel);
}

void CTrackWnd::OnStep(EKeyStep eStep, bool bAdd)
{
    if (IsBusy() || !m_Selection.Step(eStep, bAdd))
        return;
    m_Scene.ShowCurrent();
    m_Scene.Refresh();
}

void CTrackWnd::ShowKeys(const std::vector<CKey*>& keys, CTrack* pTrack)
{
    if (IsBusy())
        return;
    m_Selection.Select(keys, pTrack);
    if (!keys.empty() || pTrack)
        m_Scene.ShowCurrent();
    m_Scene.Refresh();
}

void CTrackWnd::Command(int32_t nID)
{
    if (IsBusy() || nID == 0)
        return;
    if (const auto* pRoute = FindRoute(c_TrackCommands, nID))
    {
        m_Context.m_Host.ShowStatus(std::string()); // of the command before
        (this->*pRoute->m_pfnRun)();
    }
}

bool CTrackWnd::OnKeyPress(uint16_t nKey, bool bCtrl, bool bShift, bool bAlt)
{
    for (const CAccelerator& accelerator : c_TimelineAccelerators)
    {
        if (accelerator.m_nKey == nKey && accelerator.m_bCtrl == bCtrl && accelerator.m_bShift == bShift &&
            !bAlt)
        {
            Command(accelerator.m_nID);
            return true;
        }
    }
    return false;
}

void CTrackWnd::OnEdit(const CEdit& edit)
{
    if (!edit.Touches(&m_Spell) && !edit.Touches(ETouched::eLibrary))
        return;
    m_Selection.ForgetGone();
    if (!GetCurKey())
        m_Scene.LinkLine().End();
    m_Scene.FollowEffect();
}
