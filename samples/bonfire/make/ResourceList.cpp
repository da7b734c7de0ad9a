// SPDX-License-Identifier: 0BSD
#include "make/ResourceList.h"

#include <string_view>

#include "make/LibraryText.h"

namespace
{
// Lays lists out as the editor's node writer does: a list after a value begins on a line of its own, a value
// or a list after a list behind one more tab.
class CNodeText
{
public:
    void Open(const char* pszName)
    {
        m_s += m_bValueWritten ? "\n" + std::string(m_nDepth, '\t') : std::string("\t");
        ++m_nDepth;
        m_s += '(';
        m_bNeedTab = false;
        Value(pszName);
    }
    void Close()
    {
        m_s += ")\n";
        --m_nDepth;
        m_s += std::string(m_nDepth == 0 ? 0 : m_nDepth - 1, '\t');
        m_bNeedTab = true;
        m_bValueWritten = false;
    }
    void Value(std::string_view sAtom)
    {
        if (m_bNeedTab)
            m_s += '\t';
        m_bNeedTab = false;
        m_bValueWritten = true;
        m_s += std::string(sAtom) + ' ';
    }
    void Field(const char* pszName, const std::string& sText)
    {
        if (sText.empty())
            return;
        Open(pszName);
        Value(Text(sText));
        Close();
    }

    std::string m_s;

private:
    size_t m_nDepth = 0;
    bool m_bNeedTab = false;
    bool m_bValueWritten = false;
};

std::string SmallLetters(std::string s)
{
    for (char& c : s)
        if (c >= 'A' && c <= 'Z')
            c = char(c - 'A' + 'a');
    return s;
}

std::string_view Trimmed(std::string_view s)
{
    while (!s.empty() && s.front() == ' ')
        s.remove_prefix(1);
    while (!s.empty() && s.back() == ' ')
        s.remove_suffix(1);
    return s;
}
} // namespace

void CResourceList::Add(const std::string& sSource, const std::string& sResource,
                        const std::string& sResourceType)
{
    const std::string sKey = SmallLetters(sSource + '\n' + sResource + '\n' + sResourceType);
    const auto [it, bNew] = m_Index.emplace(sKey, m_Needs.size());
    if (bNew)
        m_Needs.push_back({sSource, sResource, sResourceType});
    else
        ++m_Needs[it->second].m_nCount;
}

void CResourceList::AddEffect(const CEffectText& effect)
{
    m_Effects.push_back(effect.m_sName);
    for (const CKeyText* pKey : effect.InFileOrder())
        for (uint32_t i = 0; i < pKey->m_pType->m_nNumProps; ++i)
        {
            const CTimedList* pValues = pKey->InForce(i);
            const uint32_t eType = pKey->m_pType->m_pProps[i].m_eType;
            if (!pValues || (eType != ePropType_Filename && eType != ePropType_Animation &&
                             eType != ePropType_FireglassRef))
                continue;
            for (const CTimed& value : *pValues)
            {
                std::string_view sText =
                    std::string_view(value.m_sAtoms).substr(1, value.m_sAtoms.size() - 2);
                if (sText.empty())
                    continue;
                if (eType != ePropType_FireglassRef)
                    Add(effect.m_sName, std::string(sText), eType == ePropType_Animation ? "Animation" : "");
                while (eType == ePropType_FireglassRef && !sText.empty())
                {
                    const std::string_view sName = sText.substr(0, sText.find(';'));
                    sText.remove_prefix(sName.size() == sText.size() ? sName.size() : sName.size() + 1);
                    if (!Trimmed(sName).empty())
                        Add(effect.m_sName, std::string(Trimmed(sName)), "FX");
                }
            }
        }
}

std::string CResourceList::Write() const
{
    CNodeText text;
    text.Open("resource-database");
    text.Open("version");
    text.Value("1");
    text.Close();
    if (!m_Effects.empty())
    {
        text.Open("resource-list");
        for (const std::string& sName : m_Effects)
        {
            text.Open("resource");
            text.Field("name", sName);
            text.Field("type", "FX");
            text.Close();
        }
        text.Close();
    }
    if (!m_Needs.empty())
    {
        text.Open("dependency-list");
        for (const CNeed& need : m_Needs)
        {
            text.Open("dependency");
            text.Field("source", need.m_sSource);
            text.Field("resource", need.m_sResource);
            text.Field("resource-type", need.m_sResourceType);
            text.Field("type", "FX");
            if (need.m_nCount > 1)
            {
                text.Open("count");
                text.Value(std::to_string(need.m_nCount));
                text.Close();
            }
            text.Close();
        }
        text.Close();
    }
    text.Close();
    return std::move(text.m_s);
}
