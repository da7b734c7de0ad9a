#include <unordered_set>

#include "app/LibraryEditor.h"
#include "qsnumber.h"
#include "timeline/TrackStatus.h"
#include "timeline/TrackWnd.h"

namespace
{

constexpr const char* c_szApplication = "Emberdeck";

// "Flames runs from 0 ms to 9000 ms"
std::string TellSpan(const CKey& key)
{
    return QSFormat("%s runs from %d ms to %d ms", key.GetDisplayName().c_str(), key.m_nStartTime,
                    key.m_nEndTime);
}

std::string AdviseOnLink(const CKey& key, const CKey& target)
{
    return QSFormat("%s, the target %s. The key must start after its target starts, and end before it ends.",
                    TellSpan(key).c_str(), TellSpan(target).c_str());
}

} // namespace

bool CTrackWnd::IsLinkedTo(const CKey* pKey) const
{
    if (!pKey)
        return false;
    for (const std::unique_ptr<CTrack>& pTrack : Tracks().Tracks())
    {
        for (const std::unique_ptr<CKey>& pOther : pTrack->Keys())
        {
            if (pOther.get() != pKey && pOther->m_bMotionLinked && pOther->m_nMotionLinkID == pKey->m_nKeyID)
                return true;
        }
    }
    return false;
}

// One pass for all of them: a key loses its link when it is among them, or is linked to one of them.
void CTrackWnd::UnlinkKeys(const std::vector<CKey*>& keys, CEditScope& scope)
{
    std::unordered_set<const CKey*> unlinked(keys.begin(), keys.end());
    std::unordered_set<uint32_t> ids;
    for (const CKey* pKey : keys)
        ids.insert(pKey->m_nKeyID);

    for (const std::unique_ptr<CTrack>& pTrack : Tracks().Tracks())
    {
        for (const std::unique_ptr<CKey>& pKey : pTrack->Keys())
        {
            if (!pKey->m_bMotionLinked || !(unlinked.count(pKey.get()) || ids.count(pKey->m_nMotionLinkID)))
                continue;
            scope.Touch(&m_Spell);
            pKey->Unlink();
        }
    }
}

void CTrackWnd::UnlinkKey(CKey* pKey)
{
    if (!pKey)
        return;
    CEditScope scope(m_Context.m_Edits, "Unlink Key");
    UnlinkKeys({pKey}, scope);
    m_View.Invalidate();
}

void CTrackWnd::OnTrackUnlinkKey()
{
    CEditScope scope(m_Context.m_Edits, "Unlink Keys");
    UnlinkKeys(GetSelectedKeys(), scope);
    m_View.Invalidate();
}

// From here on a line follows the pointer, until a left press picks the target.
void CTrackWnd::OnTrackLinkKey()
{
    if (!m_pCurKey || !m_pCurTrack)
        return;
    m_LinkLine.Begin(m_Layout.GetKeyRect(*m_pCurKey), m_View.PointerPosition(), m_Layout.m_rcTrack.top);
    SetCursor(ECursorShape::eArrow);
    m_View.PaintNow();
}

// A key that others are linked to stays where it is. True: the user was asked, and no gesture follows.
bool CTrackWnd::RefuseLinkedTo()
{
    if (!IsLinkedTo(m_pCurKey))
        return false;
    if (m_Context.m_Prompts.Ask("This key has been linked to, you cannot move it, Unlink ?", c_szApplication,
                                EButtons::eYesNo, EIcon::eQuestion) == EAnswer::eYes)
        UnlinkKey(m_pCurKey);
    return true;
}

void CTrackWnd::EndLinkLine(CPoint pt)
{
    // First, so that no press on a message box is taken for one on a target.
    m_LinkLine.End();
    const CKey* pTarget = KeyFromRect(pt);
    if (!pTarget || pTarget == m_pCurKey)
    {
        m_Context.m_Host.ShowStatus(c_szNoLinkTarget);
    }
    else if (m_pCurKey)
    {
        if (m_pCurKey->m_nStartTime > pTarget->m_nStartTime && m_pCurKey->m_nEndTime < pTarget->m_nEndTime)
        {
            CEditScope scope(m_Context.m_Edits, "Link Key");
            scope.Touch(&m_Spell);
            m_pCurKey->Link(pTarget->m_nKeyID);
        }
        else
        {
            m_View.PaintNow();
            m_Context.m_Prompts.Advise(AdviseOnLink(*m_pCurKey, *pTarget));
            m_Context.m_Prompts.Ask("You cannot link this key, its boundaries are outside of the target key",
                                    c_szApplication, EButtons::eOk, EIcon::eExclamation);
        }
    }
    m_View.PaintNow();
}

void CTrackWnd::OnTrackCreatePrefabFromKey()
{
    if (!m_pCurKey)
        return;
    std::string sName;
    if (m_Context.m_Prompts.EnterText("Enter the name of the prefab", "", sName) && m_pCurKey)
        CLibraryEditor(m_Context).CreatePrefabFromKey(*m_pCurKey, sName);
}

void CTrackWnd::OnTrackAssignPrefabToKey()
{
    CEffectPropertySet* pPrefab = m_Context.m_Host.GetActivePrefab();
    if (!m_pCurKey)
        return;
    if (!pPrefab || pPrefab->m_pTypeDesc != m_pCurKey->m_pTypeDesc)
    {
        m_Context.m_Host.ShowStatus(pPrefab ? c_szPrefabOfOtherType : c_szNoPrefabToAssign);
        return;
    }
    if (pPrefab == m_pCurKey->GetParent())
        return;
    CEditScope scope(m_Context.m_Edits, "Assign Prefab To Key");
    scope.Touch(&m_Spell);
    m_pCurKey->SetParent(pPrefab);
}
