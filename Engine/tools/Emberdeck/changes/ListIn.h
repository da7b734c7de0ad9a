#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

#include "qsamgr/qsanode.h"
#include "qsnumber.h"

// Walks over the elements of a list. What isn't as it should be is remembered, and all that follows gives nothing.
class CListIn
{
public:
    // The list's own name is the first element; without one it is taken from nFirst on.
    CListIn(const CQSANode& list, uint32_t nFirst) : m_List(list), m_nNext(nFirst) {}

    bool HasMore() const { return m_nNext < m_List.GetNumElements(); }
    bool IsNext(const char* pszName) const
    {
        const CQSANode* p = HasMore() ? m_List.GetElement(m_nNext) : nullptr;
        return p && IsList(*p, pszName);
    }
    bool IsNextList() const { return HasMore() && m_List.GetElement(m_nNext)->IsList(); }
    const CQSANode* Next() { return HasMore() ? m_List.GetElement(m_nNext++) : nullptr; }

    bool Number(int64_t nMin, int64_t nMax, int64_t& n)
    {
        const CQSANode* p = Next();
        return p && p->IsAtom() && !p->IsString() && QSParseInt(p->GetValue(), n) && n >= nMin && n <= nMax;
    }
    template <class T>
    bool Number(T& value)
    {
        int64_t n = 0;
        constexpr bool bWide = sizeof(T) == sizeof(int64_t);
        const int64_t nMax = bWide ? INT64_MAX : static_cast<int64_t>(std::numeric_limits<T>::max());
        const int64_t nMin = std::is_signed_v<T> ? static_cast<int64_t>(std::numeric_limits<T>::min()) : 0;
        const bool bOk = Number(nMin, nMax, n);
        value = static_cast<T>(n);
        return bOk;
    }
    bool Float(float& f)
    {
        const CQSANode* p = Next();
        return p && p->IsAtom() && !p->IsString() && QSParseFloat(p->GetValue(), f);
    }
    bool Text(std::string& sText, size_t nMax)
    {
        const CQSANode* p = Next();
        if (!p || !p->IsAtom() || !p->IsString())
            return false;
        sText = p->GetValue();
        return sText.size() <= nMax;
    }

    static bool IsList(const CQSANode& node, const char* pszName)
    {
        return node.IsList() && node.GetNumElements() > 0 && node.GetElement(0)->IsAtom() &&
               !node.GetElement(0)->IsString() && std::strcmp(node.GetElement(0)->GetValue(), pszName) == 0;
    }

private:
    const CQSANode& m_List;
    uint32_t m_nNext;
};
