#include "timeline/KeyCommands.h"

#include <algorithm>
#include <utility>

#include "app/LibraryNames.h"
#include "app/PrefabEditor.h"
#include "app/StatusText.h"
#include "model/MakeOrNull.h"
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

std::string CKeyCommands::LabelFor(const char* pszVerb) const
{
    return TellThings(pszVerb, m_Selection.GetCount(), "Key");
}

bool CKeyCommands::AddKey(const CEffectTypeDesc* pType, CEffectPropertySet* pPrefab)
{
    if (!pType || !CurTrack())
        return false;
    std::unique_ptr<CKey> pKey = MakeOrNull<CKey>(pType);
    if (!pKey)
        return false;
    CEditScope scope(m_Context.m_Edits, "Add Key");
    if (pPrefab && pKey->SetParent(pPrefab))
        scope.TouchPrefab(IncompleteRoot(pPrefab));
    EnsureComplete(pKey.get());
    if (PlaceNewKey(*CurTrack(), std::move(pKey), m_ptMenu, "Add Key"))
        return true;
    m_Context.m_Host.ShowStatus(c_szNoRoomToAdd);
    return false;
}

// A new key lasts two seconds about the point, less what the free gap there doesn't hold. Without this cut
// the sort would put a new key before one that starts within its first second.
bool CKeyCommands::PlaceNewKey(CTrack& track, std::unique_ptr<CKey> pKey, CPoint pt, const char* pszLabel)
{
    constexpr int64_t nHalf = 1000;
    const int32_t nTime = TimeFromPixel(m_Scene.TimeBar(), pt.x);
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
    scope.TouchTrack(m_Spell, track);
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

void CKeyCommands::AddChosenKey()
{
    if (CurTrack())
        AddKey(m_Context.m_Host.ChooseEffectType(), nullptr);
}

void CKeyCommands::AddChildKey()
{
    CEffectPropertySet* pPrefab = m_Context.m_Host.GetActivePrefab();
    if (pPrefab)
        AddKey(pPrefab->m_pTypeDesc, pPrefab);
}

void CKeyCommands::InsertTrack()
{
    CEditScope scope(m_Context.m_Edits, "Insert Track");
    scope.TouchTracks(m_Spell);
    if (CurTrack())
        Tracks().InsertTrackAfter(CurTrack());
    else
        Tracks().AddTrack();
}

void CKeyCommands::DeleteTrack()
{
    if (!CurTrack())
        return;
    const std::string sQuestion = "Are you sure you want to delete this track and the " +
                                  std::to_string(CurTrack()->GetNumKeys()) + " keys it contains?";
    const EAnswer eAnswer =
        m_Context.m_Prompts.Ask(sQuestion, "Delete Track", EButtons::eYesNo, EIcon::eQuestion);
    if (eAnswer == EAnswer::eNo || eAnswer == EAnswer::eCancel || !CurTrack())
        return;
    CEditScope scope(m_Context.m_Edits, "Delete Track");
    scope.TouchTracks(m_Spell);
    scope.TouchTrack(m_Spell, *CurTrack());
    for (const std::unique_ptr<CKey>& pKey : CurTrack()->Keys())
        scope.TouchKey(m_Spell, *pKey);
    Tracks().RemoveTrack(CurTrack());
    m_Selection.SetCurTrack(nullptr);
    m_Selection.SetCurKey(nullptr); // also one on another track
}

void CKeyCommands::DeleteKeys()
{
    {
        CEditScope scope(m_Context.m_Edits, LabelFor("Delete"));
        m_Links.UnlinkKeys(m_Selection.GetKeys(), scope);
        for (const std::unique_ptr<CTrack>& pTrack : Tracks().Tracks())
        {
            for (uint32_t i = pTrack->GetNumKeys(); i-- > 0;)
            {
                if (!pTrack->GetKey(i)->m_bSelected)
                    continue;
                scope.TouchTrack(m_Spell, *pTrack);
                scope.TouchKey(m_Spell, *pTrack->GetKey(i));
                pTrack->RemoveKey(pTrack->GetKey(i));
            }
        }
        m_Selection.SetCurKey(nullptr);
    }
    m_Scene.Refresh();
}

void CKeyCommands::ExpandKeys()
{
    {
        CEditScope scope(m_Context.m_Edits, LabelFor("Expand"));
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
                scope.TouchKey(m_Spell, key);
                key.m_nStartTime = nStart;
                key.m_nEndTime = nEnd;
            }
        }
    }
    m_Scene.Refresh();
}

void CKeyCommands::SetKeyLength()
{
    int32_t nLength = CurKey() ? SaturateTime(int64_t(CurKey()->m_nEndTime) - CurKey()->m_nStartTime) : 0;
    const CNumberEntry request = {"Enter Key Length in Milliseconds", "", c_nMinLength, c_nMaxLength};
    if (m_Context.m_Prompts.EnterNumber(request, nLength) && nLength >= c_nMinLength)
    {
        CEditScope scope(m_Context.m_Edits, "Set Key Length");
        for (CKey* pKey : m_Selection.GetKeys()) // a list of its own, since placing sorts
        {
            CTrack* pTrack = m_Scene.Layout().TrackFromKey(pKey);
            if (!pTrack)
                continue;
            scope.TouchTrack(m_Spell, *pTrack);
            scope.TouchKey(m_Spell, *pKey);
            pKey->m_nEndTime = SaturateTime(int64_t(pKey->m_nStartTime) + nLength);
            pTrack->PlaceKey(pKey);
        }
    }
    m_Scene.Refresh();
}

void CKeyCommands::NameKeys(const CKey& first)
{
    std::string sTitle = "Enter Name For Keys";
    std::string sText;
    if (m_Selection.GetCount() == 1)
    {
        sTitle = "Enter Name For " + (first.m_pTypeDesc ? TypeName(*first.m_pTypeDesc) : std::string("Key"));
        sText = first.m_sName;
    }
    if (m_Context.m_Prompts.EnterText({sTitle, ""}, sText))
    {
        const std::string sName = CleanName(sText, c_nMaxEntryName); // may be empty
        CEditScope scope(m_Context.m_Edits, LabelFor("Name"));
        for (CKey* pKey : m_Selection.GetKeys())
        {
            scope.TouchKey(m_Spell, *pKey);
            pKey->m_sName = sName;
        }
    }
    m_Scene.Refresh();
}

void CKeyCommands::EditKey()
{
    if (!CurKey())
        return;
    m_Context.m_Host.EditProperties(*CurKey());
    m_Scene.Refresh();
}

// The clipboard isn't the library's: no edit scope.
void CKeyCommands::CopyKey()
{
    if (CurKey())
        m_Context.m_Clipboard.CopyKey(CurKey(), m_Spell.m_nSerial);
}

void CKeyCommands::CutKey()
{
    if (!CurKey())
        return;
    CopyKey();
    if (!m_Context.m_Clipboard.GetKey())
        return; // no memory: what couldn't be copied stays
    CEditScope scope(m_Context.m_Edits, LabelFor("Cut"));
    DeleteKeys();
}

void CKeyCommands::PasteKeyAt(CPoint pt)
{
    CTrack* pTrack = m_Scene.Layout().TrackFromY(pt.y);
    const CKey* pSource = m_Context.m_Clipboard.GetKey();
    const char* pszProblem = !pSource                            ? c_szNothingToPaste
                             : !pTrack                           ? c_szPasteOffTracks
                             : m_Scene.Layout().KeyFromPoint(pt) ? c_szPasteOnKey
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

void CKeyCommands::PasteKeyAtMouse()
{
    const CPoint pt = m_View.PointerPosition();
    if (m_Scene.Layout().VisibleTrackArea().Contains(pt))
        PasteKeyAt(pt);
    else
        m_Context.m_Host.ShowStatus(m_Context.m_Clipboard.GetKey() ? c_szPasteOffTracks : c_szNothingToPaste);
}

void CKeyCommands::CreatePrefab()
{
    if (!CurKey())
        return;
    std::string sName;
    if (m_Context.m_Prompts.EnterText({"Enter the name of the prefab", ""}, sName) && CurKey())
        CPrefabEditor(m_Context).CreatePrefabFromKey(*CurKey(), sName);
}

void CKeyCommands::AssignPrefab()
{
    CEffectPropertySet* pPrefab = m_Context.m_Host.GetActivePrefab();
    if (!CurKey())
        return;
    if (!pPrefab || pPrefab->m_pTypeDesc != CurKey()->m_pTypeDesc)
    {
        m_Context.m_Host.ShowStatus(pPrefab ? c_szPrefabOfOtherType : c_szNoPrefabToAssign);
        return;
    }
    if (pPrefab == CurKey()->GetParent())
        return;
    CEditScope scope(m_Context.m_Edits, "Assign Prefab To Key");
    scope.TouchKey(m_Spell, *CurKey());
    CurKey()->SetParent(pPrefab);
}
