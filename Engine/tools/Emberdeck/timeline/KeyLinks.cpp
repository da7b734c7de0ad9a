#include "timeline/KeyLinks.h"

#include <algorithm>
#include <unordered_set>

#include "app/StatusText.h"
#include "qsnumber.h"
#include "timeline/KeyIndex.h"
#include "timeline/TrackStatus.h"

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

bool CKeyLinks::IsLinkedTo(const CKey* pKey) const
{
    const CKeyView keys = m_Spell.m_Tracks.AllKeys();
    return pKey && std::any_of(keys.begin(), keys.end(),
                               [&](const CKey& other) {
                                   return &other != pKey && other.m_bMotionLinked &&
                                          other.m_nMotionLinkID == pKey->m_nKeyID;
                               });
}

bool CKeyLinks::IsBound(const CKey& key) const
{
    return CKeyIndex(m_Spell.m_Tracks).TargetOf(key) || IsLinkedTo(&key);
}

// One pass for all of them: a key loses its link when it is among them, or is linked to one of them.
void CKeyLinks::UnlinkKeys(const std::vector<CKey*>& keys, CEditScope& scope)
{
    std::unordered_set<const CKey*> unlinked(keys.begin(), keys.end());
    std::unordered_set<uint32_t> ids;
    for (const CKey* pKey : keys)
        ids.insert(pKey->m_nKeyID);

    for (CKey& key : m_Spell.m_Tracks.AllKeys())
    {
        if (!key.m_bMotionLinked || !(unlinked.count(&key) || ids.count(key.m_nMotionLinkID)))
            continue;
        scope.TouchKey(m_Spell, key);
        key.Unlink();
    }
}

void CKeyLinks::UnlinkKey(CKey* pKey)
{
    if (!pKey)
        return;
    CEditScope scope(m_Context.m_Edits, "Unlink Key");
    UnlinkKeys({pKey}, scope);
    m_View.Invalidate();
}

void CKeyLinks::UnlinkSelected()
{
    const std::vector<CKey*> keys = m_Selection.GetKeys();
    CEditScope scope(m_Context.m_Edits, TellThings("Unlink", keys.size(), "Key"));
    UnlinkKeys(keys, scope);
    m_View.Invalidate();
}

void CKeyLinks::BeginLine()
{
    const CKey* pKey = m_Selection.GetCurKey();
    if (!pKey || !m_Selection.GetCurTrack())
        return;
    m_Scene.LinkLine().Begin(m_Scene.Layout().GetKeyRect(*pKey), m_View.PointerPosition(),
                             m_Scene.Layout().m_rcTrack.top);
    m_Scene.SetCursor(ECursorShape::eArrow);
    m_View.PaintNow();
}

void CKeyLinks::EndLine(CPoint pt)
{
    // First, so that no press on a message box is taken for one on a target.
    m_Scene.LinkLine().End();
    CKey* pKey = m_Selection.GetCurKey();
    const CKey* pTarget = m_Scene.Layout().KeyFromRect(pt);
    if (!pTarget || pTarget == pKey)
    {
        m_Context.m_Host.ShowStatus(c_szNoLinkTarget);
    }
    else if (pKey)
    {
        if (pKey->m_nStartTime > pTarget->m_nStartTime && pKey->m_nEndTime < pTarget->m_nEndTime)
        {
            CEditScope scope(m_Context.m_Edits, "Link Key");
            scope.TouchKey(m_Spell, *pKey);
            pKey->Link(pTarget->m_nKeyID);
        }
        else
        {
            m_View.PaintNow();
            m_Context.m_Prompts.Advise(AdviseOnLink(*pKey, *pTarget));
            m_Context.m_Prompts.Ask("You cannot link this key, its boundaries are outside of the target key",
                                    c_szApplication, EButtons::eOk, EIcon::eExclamation);
        }
    }
    m_View.PaintNow();
}

bool CKeyLinks::AskAboutTarget()
{
    if (!IsLinkedTo(m_Selection.GetCurKey()))
        return false;
    if (m_Context.m_Prompts.Ask("This key has been linked to, you cannot move it, Unlink ?", c_szApplication,
                                EButtons::eYesNo, EIcon::eQuestion) == EAnswer::eYes)
        UnlinkKey(m_Selection.GetCurKey());
    return true;
}
