#include "qsversion.h"

namespace
{

std::string BlockKey(const char* pszLanguage, const char* pszName)
{
    return std::string("\\StringFileInfo\\") + pszLanguage + "\\" + pszName;
}

CVersionBlock& ProgramBlock()
{
    static CVersionBlock s_Block;
    return s_Block;
}

} // namespace

void CVersionBlock::SetValue(const std::string& sKey, const std::string& sValue)
{
    for (auto& [sOldKey, sOldValue] : m_Values)
    {
        if (sOldKey == sKey)
        {
            sOldValue = sValue;
            return;
        }
    }
    m_Values.emplace_back(sKey, sValue);
}

const std::string* CVersionBlock::GetValue(const std::string& sKey) const
{
    for (const auto& [sOldKey, sValue] : m_Values)
    {
        if (sOldKey == sKey)
            return &sValue;
    }
    return nullptr;
}

const std::string* CVersionBlock::Find(const char* pszName) const
{
    if (!pszName)
        return nullptr;
    for (const char* pszLanguage : {"040904b0", "040904e4"})
    {
        if (const std::string* pValue = GetValue(BlockKey(pszLanguage, pszName)))
            return pValue;
    }
    return nullptr;
}

CVersionBlock MakeVersionBlock(const std::string& sProduct, const std::string& sVersion,
                               const std::string& sLegal)
{
    CVersionBlock block;
    const std::pair<const char*, const std::string&> values[] = {
        {c_szVersionProduct, sProduct}, {c_szVersionVersion, sVersion}, {c_szVersionLegal, sLegal}};
    for (const auto& [pszName, sValue] : values)
    {
        if (!sValue.empty())
            block.SetValue(BlockKey("040904b0", pszName), sValue);
    }
    return block;
}

void SetProgramVersion(CVersionBlock block)
{
    ProgramBlock() = std::move(block);
}

const CVersionBlock& GetProgramVersion()
{
    return ProgramBlock();
}

std::string GetProgramVersionText(const char* pszName)
{
    const std::string* pValue = ProgramBlock().Find(pszName);
    return pValue ? *pValue : "Unknown";
}
