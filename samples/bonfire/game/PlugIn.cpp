// SPDX-License-Identifier: 0BSD
#include "game/PlugIn.h"

#include <algorithm>
#include <dlfcn.h>

CPlugIn::~CPlugIn()
{
    if (m_pfnRelease)
        m_pfnRelease(m_pTable);
    if (m_pLibrary)
        dlclose(m_pLibrary);
}

bool CPlugIn::Load(const std::string& sPath, std::string& sError)
{
    // A bare name would be searched for in the system's directories.
    const std::string sFile = sPath.find('/') == std::string::npos ? "./" + sPath : sPath;
    m_pLibrary = dlopen(sFile.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_pLibrary)
    {
        const char* pszReason = dlerror();
        sError = "cannot load the effect types: " + std::string(pszReason ? pszReason : sPath.c_str());
        return false;
    }
    const auto pfnGet = reinterpret_cast<EmberdeckGetInfoFn>(dlsym(m_pLibrary, EMBERDECK_GET_INFO_NAME));
    const auto pfnRelease =
        reinterpret_cast<EmberdeckReleaseInfoFn>(dlsym(m_pLibrary, EMBERDECK_RELEASE_INFO_NAME));
    if (!pfnGet || !pfnRelease)
    {
        sError = sPath + " is no library of effect types";
        return false;
    }
    m_pfnRelease = pfnRelease;
    pfnGet(&m_pTable);
    if (!m_pTable)
    {
        sError = sPath + " offers no effect types";
        return false;
    }
    return true;
}

const CEffectTypeDesc* FindType(const CEffectTypeTable& table, uint32_t nTypeID)
{
    for (uint32_t i = 0; table.m_pTypes && i < table.m_nNumTypes; ++i)
        if (table.m_pTypes[i].m_nTypeID == nTypeID)
            return &table.m_pTypes[i];
    return nullptr;
}

bool HoldsValue(const CEffectPropertyDesc& desc)
{
    return desc.m_eType != ePropType_None && desc.m_eType != ePropType_UI;
}

uint32_t CountEnumerators(std::string_view sList)
{
    if (sList.empty())
        return 0;
    const auto nCommas = uint32_t(std::count(sList.begin(), sList.end(), ','));
    return sList.back() == ',' ? nCommas : nCommas + 1;
}

bool FindEnumerator(std::string_view sList, uint32_t nIndex, std::string_view& sName)
{
    for (; nIndex != 0 && sList.find(',') != std::string_view::npos; --nIndex)
        sList.remove_prefix(sList.find(',') + 1);
    if (nIndex != 0 || sList.empty())
        return false;
    sName = sList.substr(0, sList.find(','));
    while (!sName.empty() && sName.front() == ' ')
        sName.remove_prefix(1);
    while (!sName.empty() && sName.back() == ' ')
        sName.remove_suffix(1);
    return true;
}
