#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "qsamgr/qsanode.h"
#include "qsassert.h"

// Reading the named lists of an effect file.

// A name that lists are looked for by. Meant to be a constant, which is compared as a few numbers.
class CFieldName
{
public:
    constexpr CFieldName(const char* pszName) : m_pszName(pszName)
    {
        for (size_t i = 0; i < c_nBytes; ++i)
        {
            m_Bytes[i] = static_cast<unsigned char>(pszName[i]);
            m_Mask[i] = 0xFF;
            m_bFits = pszName[i] == '\0'; // which counts, too
            if (m_bFits)
                break;
        }
    }

    // Whether an atom is exactly that text.
    bool Is(const CQSANode& atom) const
    {
        const char* pszText = atom.GetValue();
        if (!atom.HoldsText())
            return std::strcmp(pszText, m_pszName) == 0;
        uint32_t nDiffers = 0;
        for (size_t i = 0; i < c_nBytes; i += sizeof(nDiffers))
            nDiffers |= (Word(pszText + i) & Word(&m_Mask[i])) ^ Word(&m_Bytes[i]);
        return nDiffers == 0 && m_bFits;
    }

private:
    static constexpr size_t c_nBytes = CQSANode::c_nMaxInline + 1;

    static uint32_t Word(const void* p)
    {
        uint32_t nWord;
        std::memcpy(&nWord, p, sizeof(nWord));
        return nWord;
    }

    const char* m_pszName;
    std::array<unsigned char, c_nBytes> m_Bytes{};
    std::array<unsigned char, c_nBytes> m_Mask{};
    bool m_bFits = false; // into a node: a text in one can be equal
};

// The atom that a list begins with, its name; null for any other node.
inline const CQSANode* ListNameNode(const CQSANode& node)
{
    if (node.IsAtom() || node.GetNumElements() == 0)
        return nullptr;
    const CQSANode* pFirst = node.GetElement(0);
    return pFirst->IsAtom() ? pFirst : nullptr;
}

inline const char* ListName(const CQSANode& node)
{
    const CQSANode* pName = ListNameNode(node);
    return pName ? pName->GetValue() : nullptr;
}

// True for a list whose first element is an atom of exactly that name.
inline bool IsListNamed(const CQSANode& node, const CFieldName& name)
{
    const CQSANode* pName = ListNameNode(node);
    return pName && name.Is(*pName);
}

// The first child list of each of N names, null where there is none: what a search for each name finds, in
// one pass.
template <size_t N>
class CNodeFields
{
public:
    // skipped(node) is told of the other elements behind the list's own name, which the root of a file has none
    // of: atoms, lists of other names, and further ones of a name that was found.
    template <class TSkipped>
    CNodeFields(const CQSANode& list, const std::array<CFieldName, N>& names, TSkipped&& skipped,
                bool bNamed = true)
    {
        const uint32_t nCount = list.GetNumElements();
        for (uint32_t i = 0; i < nCount; ++i)
        {
            const CQSANode& child = *list.GetElement(i);
            const CQSANode* pName = ListNameNode(child);
            if (!(pName && Note(child, *pName, names)) && (i > 0 || !bNamed))
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
    bool Note(const CQSANode& child, const CQSANode& name, const std::array<CFieldName, N>& names)
    {
        // The lists of a saved file stand in the order of the names, some left out.
        for (size_t n = m_nNext; n < N; ++n)
        {
            if (names[n].Is(name))
                return Note(child, n);
        }
        for (size_t n = 0; n < m_nNext; ++n)
        {
            if (names[n].Is(name))
                return Note(child, n);
        }
        return false;
    }
    bool Note(const CQSANode& child, size_t n)
    {
        m_nNext = n + 1;
        if (m_Found[n])
            return false;
        m_Found[n] = &child;
        return true;
    }

    size_t m_nNext = 0;
    std::array<const CQSANode*, N> m_Found = {};
};
