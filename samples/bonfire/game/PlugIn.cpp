// SPDX-License-Identifier: 0BSD
#include "game/PlugIn.h"

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
