#include "model/EffectModule.h"

#include "model/MakeOrNull.h"
#include "platform/DynamicLibrary.h"
#include "platform/PluginCall.h"

namespace
{

int WalkTypes(const CEffectTypeTable& table, std::string_view sName)
{
    for (uint32_t i = 0; i < table.m_nNumTypes; ++i)
    {
        if (IsSameName(BoundedText(table.m_pTypes[i].m_szName), sName))
            return static_cast<int>(i);
    }
    return -1;
}

int WalkProps(const CEffectTypeDesc& desc, std::string_view sName)
{
    for (uint32_t i = 0; desc.m_pProps && i < desc.m_nNumProps; ++i)
    {
        if (IsSameName(BoundedText(desc.m_pProps[i].m_szName), sName))
            return static_cast<int>(i);
    }
    return -1;
}

// An entry point of a plug-in. What it throws stays with it.
template <class TFunction, class TArgument>
void CallPlugin(const std::string& sPath, TFunction pfn, TArgument argument)
{
    const CPluginCall call(sPath.c_str());
    try
    {
        pfn(argument);
    }
    catch (...)
    {
    }
}

} // namespace

CEffectModule::~CEffectModule()
{
    Unload();
}

bool CEffectModule::Load(const char* pszPath)
{
    Unload();
    if (!pszPath)
        return false;
    m_sPath = pszPath;
    m_hModule = LoadDynamicLibrary(m_sPath);
    if (!m_hModule)
        return false;

    m_pfnGetInfo = reinterpret_cast<EmberdeckGetInfoFn>(GetLibrarySymbol(m_hModule, EMBERDECK_GET_INFO_NAME));
    m_pfnReleaseInfo =
        reinterpret_cast<EmberdeckReleaseInfoFn>(GetLibrarySymbol(m_hModule, EMBERDECK_RELEASE_INFO_NAME));
    if (m_pfnGetInfo && m_pfnReleaseInfo)
    {
        CallPlugin(m_sPath, m_pfnGetInfo, &m_pTable);
        if (m_pTable && IsTableSound(*m_pTable))
        {
            BuildIndex();
            return true;
        }
    }
    Unload();
    return false;
}

void CEffectModule::Unload()
{
    if (m_pfnReleaseInfo)
        CallPlugin(m_sPath, m_pfnReleaseInfo, m_pTable);
    const CPluginCall call(m_sPath.c_str());
    if (!m_bAdopted)
        FreeDynamicLibrary(m_hModule);
    m_pTable = nullptr;
    m_pfnGetInfo = nullptr;
    m_pfnReleaseInfo = nullptr;
    m_hModule = nullptr;
    m_bAdopted = false;
    m_TypeIndex.Clear();
    m_PropIndexes.clear();
}

bool CEffectModule::Adopt(CEffectTypeTable* pTable)
{
    Unload();
    if (!pTable || !IsTableSound(*pTable))
        return false;
    m_pTable = pTable;
    m_hModule = pTable;
    m_bAdopted = true;
    BuildIndex();
    return true;
}

bool CEffectModule::IsTableSound(const CEffectTypeTable& table)
{
    if (table.m_nNumTypes > c_nMaxTypes || (table.m_nNumTypes > 0 && !table.m_pTypes))
        return false;
    for (uint32_t i = 0; i < table.m_nNumTypes; ++i)
    {
        const CEffectTypeDesc& desc = table.m_pTypes[i];
        if (desc.m_nNumProps > c_nMaxProps || (desc.m_nNumProps > 0 && !desc.m_pProps))
            return false;
    }
    return true;
}

void CEffectModule::BuildIndex()
{
    const bool bBuilt = TryAllocating(
        [this]
        {
            m_PropIndexes.resize(m_pTable->m_nNumTypes);
            m_TypeIndex.Reserve(m_pTable->m_nNumTypes);
            for (uint32_t i = 0; i < m_pTable->m_nNumTypes; ++i)
                m_TypeIndex.Add(BoundedText(m_pTable->m_pTypes[i].m_szName), i);
        });
    if (!bBuilt)
    {
        // Searches walk the arrays then.
        m_TypeIndex.Clear();
        m_PropIndexes.clear();
    }
}

uint32_t CEffectModule::GetVersion() const
{
    return m_pTable ? m_pTable->m_nVersion : 0;
}

uint32_t CEffectModule::GetNumTypes() const
{
    return m_pTable ? m_pTable->m_nNumTypes : 0;
}

const CEffectTypeDesc* CEffectModule::GetType(uint32_t nIndex) const
{
    return nIndex < GetNumTypes() ? &m_pTable->m_pTypes[nIndex] : nullptr;
}

const CEffectTypeDesc* CEffectModule::FindType(const char* pszName) const
{
    if (!m_pTable || m_pTable->m_nNumTypes == 0 || !pszName)
        return nullptr;
    const bool bIndexed = m_PropIndexes.size() == m_pTable->m_nNumTypes;
    const int nType = bIndexed ? m_TypeIndex.Find(pszName) : WalkTypes(*m_pTable, pszName);
    return nType < 0 ? nullptr : &m_pTable->m_pTypes[nType];
}

int CEffectModule::FindPropertyIndex(const CEffectTypeDesc* pTypeDesc, std::string_view sName) const
{
    if (!pTypeDesc)
        return -1;
    // The difference is taken on the numbers: pTypeDesc may point into another array.
    const uintptr_t nOffset = reinterpret_cast<uintptr_t>(pTypeDesc) -
                              reinterpret_cast<uintptr_t>(m_pTable ? m_pTable->m_pTypes : nullptr);
    const uintptr_t nType = nOffset / sizeof(CEffectTypeDesc);
    if (nType >= m_PropIndexes.size() || nOffset % sizeof(CEffectTypeDesc) != 0)
        return WalkProps(*pTypeDesc, sName);

    CPropIndex& index = m_PropIndexes[nType];
    if (!index.m_bBuilt)
    {
        index.m_bBuilt = TryAllocating(
            [&]
            {
                index.m_Index.Reserve(pTypeDesc->m_nNumProps);
                for (uint32_t i = 0; i < pTypeDesc->m_nNumProps; ++i)
                    index.m_Index.Add(BoundedText(pTypeDesc->m_pProps[i].m_szName), i);
            });
        if (!index.m_bBuilt)
            return WalkProps(*pTypeDesc, sName);
    }
    return index.m_Index.Find(sName);
}
