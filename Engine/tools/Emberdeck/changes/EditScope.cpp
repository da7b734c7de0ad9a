#include "changes/EditScope.h"

#include <algorithm>
#include <utility>

#include "model/MakeOrNull.h"
#include "qsassert.h"

bool CEdit::Touches(const void* pObject) const
{
    return pObject && (m_bTouchesLost ||
                       std::any_of(m_Touched.begin(), m_Touched.end(),
                                   [pObject](const CTouch& touch)
                                   { return touch.m_pObject == pObject || touch.m_pPart == pObject; }));
}

bool CEdit::Touches(ETouched eKind) const
{
    return std::any_of(m_Touched.begin(), m_Touched.end(),
                       [eKind](const CTouch& touch) { return touch.m_eKind == eKind; });
}

void CEditHub::AddListener(IEditListener* pListener)
{
    if (pListener && std::find(m_Listeners.begin(), m_Listeners.end(), pListener) == m_Listeners.end())
        m_Listeners.push_back(pListener);
}

void CEditHub::RemoveListener(IEditListener* pListener)
{
    const auto it = std::find(m_Listeners.begin(), m_Listeners.end(), pListener);
    if (it == m_Listeners.end() || !pListener)
        return;
    // A walk over the list may be under way further up the stack: it skips the gap, and closes it.
    if (m_nTelling > 0)
        *it = nullptr;
    else
        m_Listeners.erase(it);
}

template <typename TCall>
void CEditHub::Tell(const TCall& call)
{
    struct CWalk
    {
        explicit CWalk(CEditHub& hub) : m_Hub(hub) { ++m_Hub.m_nTelling; }
        ~CWalk()
        {
            std::vector<IEditListener*>& list = m_Hub.m_Listeners;
            if (--m_Hub.m_nTelling == 0)
                list.erase(std::remove(list.begin(), list.end(), nullptr), list.end());
        }
        CEditHub& m_Hub;
    };
    const CWalk walk(*this);
    const size_t nCount = m_Listeners.size();
    for (size_t i = 0; i < nCount; ++i)
    {
        // Scopes end in destructors. Who has no memory to hear of it shows the old state; the others hear of it.
        if (IEditListener* pListener = m_Listeners[i])
            TryAllocating([&] { call(*pListener); });
    }
}

void CEditHub::Open(std::string_view sLabel)
{
    if (m_nDepth++ == 0)
        TryAllocating([&] { m_Edit.m_sLabel = sLabel; });
}

void CEditHub::Touch(const CTouch& touch)
{
    QS_ASSERT(m_nDepth > 0);
    if (m_nDepth == 0 || m_Seen.contains(touch))
        return;
    if (!TryAllocating([&] { m_Edit.m_Touched.push_back(touch); }))
        m_Edit.m_bTouchesLost = m_Edit.m_bRecordFailed = true;
    TryAllocating([&] { m_Seen.insert(touch); }); // without memory it is touched twice rather than never
    if (m_pRecorder)
        m_pRecorder->OnTouching(touch);
    Tell([&](IEditListener& listener) { listener.OnTouching(m_Edit.m_sLabel, touch); });
}

void CEditHub::Step()
{
    if (m_nDepth == 0 || !HasTouched())
        return;
    CEdit edit; // a copy: a listener may open a scope that joins this one and touches more
    if (TryAllocating([&] { edit = m_Edit; }))
        Tell([&](IEditListener& listener) { listener.OnEditStep(edit); });
}

bool CEditHub::Abandon()
{
    return !HasTouched() || (m_pRecorder && !m_Edit.m_bTouchesLost && m_pRecorder->PutBack(m_Edit));
}

void CEditHub::Close()
{
    if (--m_nDepth > 0)
        return;
    const bool bTouched = HasTouched();
    CEdit edit = std::exchange(m_Edit, CEdit());
    m_Seen.clear();
    if (!bTouched)
        return;
    ++m_nNumEdits;
    if (m_pRecorder)
        m_pRecorder->Finish(edit);
    Tell([&](IEditListener& listener) { listener.OnEdit(edit); });
}

CEditScope::CEditScope(CEditHub& hub, std::string_view sLabel) : m_Hub(hub)
{
    m_Hub.Open(sLabel);
}

CEditScope::~CEditScope()
{
    m_Hub.Close();
}

void CEditScope::Touch(const CSpell* pSpell)
{
    if (pSpell)
        m_Hub.Touch({ETouched::eSpell, pSpell, pSpell->m_nSerial});
}

void CEditScope::TouchPart(const CSpell& spell, EPart ePart, const void* pPart, uint64_t nPart)
{
    m_Hub.Touch({ETouched::eSpell, &spell, spell.m_nSerial, ePart, pPart, nPart});
}

void CEditScope::TouchHead(const CSpell& spell)
{
    TouchPart(spell, EPart::eHead, nullptr, 0);
}

void CEditScope::TouchTracks(const CSpell& spell)
{
    TouchPart(spell, EPart::eTracks, nullptr, 0);
}

void CEditScope::TouchTrack(const CSpell& spell, const CTrack& track)
{
    TouchPart(spell, EPart::eTrack, &track, track.m_Serial.Get());
}

void CEditScope::TouchKey(const CSpell& spell, const CKey& key)
{
    TouchPart(spell, EPart::eKey, &key, key.m_Serial.Get());
}

void CEditScope::TouchPrefab(const CEffectPropertySet* pPrefab)
{
    if (pPrefab)
        m_Hub.Touch({ETouched::ePrefab, pPrefab, pPrefab->m_Serial.Get()});
}

void CEditScope::TouchSpellList()
{
    m_Hub.Touch({ETouched::eSpellList});
}

void CEditScope::TouchPrefabList()
{
    m_Hub.Touch({ETouched::ePrefabList});
}

void CEditScope::TouchTree(ETreeSide eSide)
{
    m_Hub.Touch({eSide == ETreeSide::eEffects ? ETouched::eEffectTree : ETouched::ePrefabTree});
}

void CEditScope::TouchGroup(ETreeSide eSide, HLibraryItem hItem)
{
    CTouch touch{eSide == ETreeSide::eEffects ? ETouched::eEffectTree : ETouched::ePrefabTree};
    touch.m_ePart = EPart::eGroup;
    touch.m_nPart = hItem.m_nID;
    m_Hub.Touch(touch);
}

void CEditScope::TouchLibrary()
{
    m_Hub.Touch({ETouched::eLibrary});
}
