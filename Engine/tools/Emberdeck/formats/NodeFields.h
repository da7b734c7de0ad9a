#pragma once

#include <array>
#include <cstddef>
#include <cstring>

#include "qsamgr/qsanode.h"
#include "qsassert.h"

// Reading the named lists of an effect file.

// The name of a list that begins with an atom; null for any other node.
inline const char* ListName(const CQSANode& node)
{
    if (node.IsAtom() || node.GetNumElements() == 0)
        return nullptr;
    const CQSANode* pFirst = node.GetElement(0);
    return pFirst->IsAtom() ? pFirst->GetValue() : nullptr;
}

// True for a list whose first element is an atom of exactly that name.
inline bool IsListNamed(const CQSANode& node, const char* pszName)
{
    const char* pszFound = ListName(node);
    return pszFound && std::strcmp(pszFound, pszName) == 0;
}

// The first child list of each of N names, null where there is none: what a search for each name finds, in
// one pass.
template <size_t N>
class CNodeFields
{
public:
    // skipped(node) is told of the other elements behind the list's own name: atoms, lists of other names,
    // and further ones of a name that was found.
    template <class TSkipped>
    CNodeFields(const CQSANode& list, const std::array<const char*, N>& names, TSkipped&& skipped)
    {
        const uint32_t nCount = list.GetNumElements();
        for (uint32_t i = 0; i < nCount; ++i)
        {
            const CQSANode& child = *list.GetElement(i);
            const char* pszName = ListName(child);
            if (!(pszName && Note(child, pszName, names)) && i > 0)
                skipped(child);
        }
    }

    const CQSANode* FindList(size_t nField) const { return m_Found[nField]; }

    // The value of a list of a name and a value; null without the list, or without an atom behind its name.
    const char* FindValue(size_t nField) const
    {
        const CQSANode* pList = m_Found[nField];
        if (!pList)
            return nullptr;
        QS_ASSERT_MSG(pList->IsList(), "Error: FindList returned a value node");
        if (pList->GetNumElements() < 2 || !pList->GetElement(1)->IsAtom())
            return nullptr;
        return pList->GetElement(1)->GetValue();
    }

private:
    bool Note(const CQSANode& child, const char* pszName, const std::array<const char*, N>& names)
    {
        for (size_t n = 0; n < N; ++n)
        {
            if (names[n][0] != pszName[0] || std::strcmp(names[n], pszName) != 0)
                continue;
            if (m_Found[n])
                return false;
            m_Found[n] = &child;
            return true;
        }
        return false;
    }

    std::array<const CQSANode*, N> m_Found = {};
};
