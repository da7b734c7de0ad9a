#include <unordered_set>

#include "app/LibraryEditor.h"
#include "timeline/TrackWnd.h"

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
    if (!m_pCurKey || !pPrefab || pPrefab->m_pTypeDesc != m_pCurKey->m_pTypeDesc ||
        pPrefab == m_pCurKey->GetParent())
        return;
    CEditScope scope(m_Context.m_Edits, "Assign Prefab To Key");
    scope.Touch(&m_Spell);
    m_pCurKey->SetParent(pPrefab);
}
