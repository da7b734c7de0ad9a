#include "timeline/TrackCommands.h"

#include <algorithm>
#include <utility>

#include "app/LibraryEditor.h"
#include "model/MakeOrNull.h"
#include "qsassert.h"
#include "timeline/TrackStatus.h"

namespace
{

// Whether EnsureComplete would change the set that a chain ends with, which is then a prefab.
const CEffectPropertySet* IncompleteRoot(const CEffectPropertySet* pSet)
{
    while (pSet && pSet->GetParent())
        pSet = pSet->GetParent();
    const bool bIncomplete = pSet && std::any_of(pSet->m_Props.begin(), pSet->m_Props.end(),
                                                 [](const auto& pProp) { return pProp == nullptr; });
    return bIncomplete ? pSet : nullptr;
}

} // namespace

bool CTrackWnd::AddKey(const CEffectTypeDesc* pType, CEffectPropertySet* pPrefab)
{
    if (!pType || !m_pCurTrack)
        return false;
    std::unique_ptr<CKey> pKey = MakeOrNull<CKey>(pType);
    if (!pKey)
        return false;
    CEditScope scope(m_Context.m_Edits, "Add Key");
    if (pPrefab && pKey->SetParent(pPrefab))
        scope.TouchPrefab(IncompleteRoot(pPrefab));
    EnsureComplete(pKey.get());
    if (PlaceNewKey(*m_pCurTrack, std::move(pKey), m_ptMenu, "Add Key"))
        return true;
    m_Context.m_Host.ShowStatus(c_szNoRoomToAdd);
    return false;
}

// A new key lasts two seconds about the point, less what the free gap there doesn't hold. Without this cut
// the sort would put a new key before one that starts within its first second.
bool CTrackWnd::PlaceNewKey(CTrack& track, std::unique_ptr<CKey> pKey, CPoint pt, const char* pszLabel)
{
    constexpr int64_t nHalf = 1000;
    const int32_t nTime = TimeFromPixel(m_TimeBar, pt.x);
    int64_t nStart = nTime - nHalf;
    int64_t nEnd = nTime + nHalf;
    for (const std::unique_ptr<CKey>& pOther : track.Keys())
    {
        if (pOther->m_nStartTime <= nTime)
            nStart = std::max<int64_t>(nStart, pOther->m_nEndTime);
        else
            nEnd = std::min<int64_t>(nEnd, pOther->m_nStartTime);
    }
    if (std::max<int64_t>(nStart, 0) >= nEnd)
        return false; // nobody could see or hit it

    CEditScope scope(m_Context.m_Edits, pszLabel);
    scope.Touch(&m_Spell);
    pKey->m_nStartTime = SaturateTime(nStart);
    pKey->m_nEndTime = SaturateTime(nEnd);
    pKey->m_nTrack = Tracks().GetTrackNumber(&track);
    pKey->m_nKeyID = Tracks().TakeKeyID();
    CKey* pPlaced = track.AppendKey(std::move(pKey));
    if (!pPlaced)
        return false;
    track.PlaceKey(pPlaced);
    return true;
}

void CTrackWnd::OnTrackAddKey()
{
    if (m_pCurTrack)
        AddKey(m_Context.m_Host.ChooseEffectType(), nullptr);
}

void CTrackWnd::OnTrackAddChildKey()
{
    CEffectPropertySet* pPrefab = m_Context.m_Host.GetActivePrefab();
    if (pPrefab)
        AddKey(pPrefab->m_pTypeDesc, pPrefab);
}

void CTrackWnd::OnTrackInsertTrack()
{
    CEditScope scope(m_Context.m_Edits, "Insert Track");
    scope.Touch(&m_Spell);
    if (m_pCurTrack)
        Tracks().InsertTrackAfter(m_pCurTrack);
    else
        Tracks().AddTrack();
}

void CTrackWnd::OnTrackDeleteTrack()
{
    if (!m_pCurTrack)
        return;
    const std::string sQuestion = "Are you sure you want to delete this track and the " +
                                  std::to_string(m_pCurTrack->GetNumKeys()) + " keys it contains?";
    const EAnswer eAnswer =
        m_Context.m_Prompts.Ask(sQuestion, "Delete Track", EButtons::eYesNo, EIcon::eQuestion);
    if (eAnswer == EAnswer::eNo || eAnswer == EAnswer::eCancel || !m_pCurTrack)
        return;
    CEditScope scope(m_Context.m_Edits, "Delete Track");
    scope.Touch(&m_Spell);
    Tracks().RemoveTrack(m_pCurTrack);
    m_pCurTrack = nullptr;
    m_pCurKey = nullptr; // also one on another track
}

void CTrackWnd::OnTrackDeleteKey()
{
    {
        CEditScope scope(m_Context.m_Edits, "Delete Keys");
        UnlinkKeys(GetSelectedKeys(), scope);
        for (const std::unique_ptr<CTrack>& pTrack : Tracks().Tracks())
        {
            for (uint32_t i = pTrack->GetNumKeys(); i-- > 0;)
            {
                if (!pTrack->GetKey(i)->m_bSelected)
                    continue;
                scope.Touch(&m_Spell);
                pTrack->RemoveKey(pTrack->GetKey(i));
            }
        }
        m_pCurKey = nullptr;
    }
    SetCurKey(nullptr);
    m_View.Invalidate();
}

void CTrackWnd::OnTrackExpandKey()
{
    {
        CEditScope scope(m_Context.m_Edits, "Expand Keys");
        for (const std::unique_ptr<CTrack>& pTrack : Tracks().Tracks())
        {
            const auto& keys = pTrack->Keys();
            for (size_t i = 0; i < keys.size(); ++i)
            {
                CKey& key = *keys[i];
                if (!key.m_bSelected)
                    continue;
                const bool bLast = i + 1 == keys.size();
                const int32_t nStart = i > 0 ? keys[i - 1]->m_nEndTime : 0;
                const int32_t nBound = bLast ? Tracks().m_nPhaseLength : keys[i + 1]->m_nStartTime;
                const int32_t nEnd = nBound > nStart ? nBound : key.m_nEndTime;
                if (nStart >= nEnd || (nStart == key.m_nStartTime && nEnd == key.m_nEndTime))
                    continue;
                scope.Touch(&m_Spell);
                key.m_nStartTime = nStart;
                key.m_nEndTime = nEnd;
            }
        }
    }
    Refresh();
}

void CTrackWnd::OnTrackSetKeyLength()
{
    int32_t nLength = m_pCurKey ? SaturateTime(int64_t(m_pCurKey->m_nEndTime) - m_pCurKey->m_nStartTime) : 0;
    const CNumberEntry request = {"Enter Key Length in Milliseconds", "", c_nMinLength, c_nMaxLength};
    if (m_Context.m_Prompts.EnterNumber(request, nLength) && nLength >= c_nMinLength)
    {
        CEditScope scope(m_Context.m_Edits, "Set Key Length");
        for (CKey* pKey : GetSelectedKeys()) // a list of its own, since placing sorts
        {
            CTrack* pTrack = TrackFromKey(pKey);
            if (!pTrack)
                continue;
            scope.Touch(&m_Spell);
            pKey->m_nEndTime = SaturateTime(int64_t(pKey->m_nStartTime) + nLength);
            pTrack->PlaceKey(pKey);
        }
    }
    Refresh();
}

void CTrackWnd::OnTrackNameKey()
{
    const uint32_t nSelected = GetSelectedKeyCount();
    if (nSelected == 0)
        return;
    const CKey* pFirstSel = GetFirstSelectedKey();
    QS_ASSERT_MSG(pFirstSel, "Error: Selection out of sync some how");
    if (!pFirstSel)
        return;

    std::string sTitle = "Enter Name For Keys";
    std::string sText;
    if (nSelected == 1)
    {
        sTitle = "Enter Name For " +
                 (pFirstSel->m_pTypeDesc ? TypeName(*pFirstSel->m_pTypeDesc) : std::string("Key"));
        sText = pFirstSel->m_sName;
    }
    if (m_Context.m_Prompts.EnterText(sTitle, "", sText))
    {
        const std::string sName = CleanName(sText, c_nMaxEntryName); // may be empty
        CEditScope scope(m_Context.m_Edits, "Name Keys");
        for (CKey* pKey : GetSelectedKeys())
        {
            scope.Touch(&m_Spell);
            pKey->m_sName = sName;
        }
    }
    Refresh();
}

void CTrackWnd::OnTrackEditKey()
{
    if (!m_pCurKey)
        return;
    m_Context.m_Host.EditProperties(*m_pCurKey);
    Refresh();
}

// The clipboard isn't the library's: no edit scope.
void CTrackWnd::OnTrackCopyKey()
{
    if (m_pCurKey)
        m_Context.m_Clipboard.CopyKey(m_pCurKey, m_Spell.m_nSerial);
}

void CTrackWnd::OnTrackCutKey()
{
    if (!m_pCurKey)
        return;
    OnTrackCopyKey();
    if (!m_Context.m_Clipboard.GetKey())
        return; // no memory: what couldn't be copied stays
    CEditScope scope(m_Context.m_Edits, "Cut Keys");
    OnTrackDeleteKey();
}

void CTrackWnd::PasteKeyAt(CPoint pt)
{
    CTrack* pTrack = TrackFromY(pt.y);
    const CKey* pSource = m_Context.m_Clipboard.GetKey();
    const char* pszProblem = !pSource           ? c_szNothingToPaste
                             : !pTrack          ? c_szPasteOffTracks
                             : KeyFromPoint(pt) ? c_szPasteOnKey
                                                : nullptr;
    if (pszProblem)
    {
        m_Context.m_Host.ShowStatus(pszProblem);
        return;
    }
    std::unique_ptr<CKey> pKey = pSource->Clone();
    if (!pKey)
        return;
    // In another effect the id would mean whatever key bears it there.
    if (m_Context.m_Clipboard.GetKeyEffectSerial() != m_Spell.m_nSerial)
        pKey->Unlink();
    if (!PlaceNewKey(*pTrack, std::move(pKey), pt, "Paste Key"))
        m_Context.m_Host.ShowStatus(c_szNoRoomToPaste);
}

void CTrackWnd::OnTrackPasteKey()
{
    PasteKeyAt(m_ptMenu);
}

void CTrackWnd::OnTrackPasteKeyAtMouse()
{
    const CPoint pt = m_View.PointerPosition();
    if (m_Layout.VisibleTrackArea().Contains(pt))
        PasteKeyAt(pt);
    else
        m_Context.m_Host.ShowStatus(m_Context.m_Clipboard.GetKey() ? c_szPasteOffTracks : c_szNothingToPaste);
}
