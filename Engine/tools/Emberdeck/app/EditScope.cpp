#include "app/EditScope.h"

#include <algorithm>
#include <utility>

#include "model/MakeOrNull.h"
#include "qsassert.h"

bool CEdit::Touches(const void* pObject) const
{
    return pObject && std::any_of(m_Touched.begin(), m_Touched.end(),
                                  [pObject](const CTouch& touch) { return touch.m_pObject == pObject; });
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
        ~CWalk() // also when a listener is out of memory
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
        if (IEditListener* pListener = m_Listeners[i])
            call(*pListener);
    }
}

void CEditHub::Open(const std::string& sLabel)
{
    if (m_nDepth == 0)
        m_Edit.m_sLabel = sLabel;
    ++m_nDepth; // last: without memory the scope isn't there, and nobody closes it
}

void CEditHub::Touch(const CTouch& touch)
{
    QS_ASSERT(m_nDepth > 0);
    if (m_nDepth == 0 || m_Seen.contains(touch))
        return;
    m_Edit.m_Touched.push_back(touch);
    m_Seen.insert(touch); // without memory it is touched twice rather than never
    // A copy, since a listener may open a scope that joins this one and touches more.
    const std::string sLabel = m_Edit.m_sLabel;
    Tell([&](IEditListener& listener) { listener.OnTouching(sLabel, touch); });
}

void CEditHub::Close()
{
    if (--m_nDepth > 0)
        return;
    const CEdit edit = std::exchange(m_Edit, CEdit());
    m_Seen.clear();
    if (edit.m_Touched.empty())
        return;
    ++m_nNumEdits;
    // This runs in destructors. Who has no memory to hear of it shows the old state; the others hear of it.
    Tell([&](IEditListener& listener) { TryAllocating([&] { listener.OnEdit(edit); }); });
}

CEditScope::CEditScope(CEditHub& hub, const std::string& sLabel) : m_Hub(hub)
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
        m_Hub.Touch({ETouched::eSpell, pSpell});
}

void CEditScope::TouchPrefab(const CEffectPropertySet* pPrefab)
{
    if (pPrefab)
        m_Hub.Touch({ETouched::ePrefab, pPrefab});
}

void CEditScope::TouchEffectTree()
{
    m_Hub.Touch({ETouched::eEffectTree, nullptr});
}

void CEditScope::TouchPrefabTree()
{
    m_Hub.Touch({ETouched::ePrefabTree, nullptr});
}

void CEditScope::TouchLibrary()
{
    m_Hub.Touch({ETouched::eLibrary, nullptr});
}
