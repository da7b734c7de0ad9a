#include "shared/sourcecontrol/ProviderRegistry.h"

#include "platform/NameFold.h"

bool CProviderRegistry::Register(const CClassId& id, const std::string& sName, CFactory make)
{
    if (id.IsZero() || !make || IsRegistered(id))
        return false;
    m_Entries.push_back(CEntry{id, sName, std::move(make)});
    return true;
}

const CProviderRegistry::CEntry* CProviderRegistry::Find(const CClassId& id) const
{
    for (const CEntry& entry : m_Entries)
    {
        if (entry.m_Id == id)
            return &entry;
    }
    return nullptr;
}

CClassId CProviderRegistry::IdFromText(std::string_view sText) const
{
    while (!sText.empty() && (sText.front() == ' ' || sText.front() == '\t'))
        sText.remove_prefix(1);
    while (!sText.empty() && (sText.back() == ' ' || sText.back() == '\t'))
        sText.remove_suffix(1);
    for (const CEntry& entry : m_Entries)
    {
        if (!sText.empty() && EqualFolded(entry.m_sName, sText))
            return entry.m_Id;
    }
    return CClassId::FromText(sText);
}

std::unique_ptr<ISourceControlProvider> CProviderRegistry::Make(const CClassId& id) const
{
    const CEntry* pEntry = Find(id);
    return pEntry ? pEntry->m_Make() : nullptr;
}
