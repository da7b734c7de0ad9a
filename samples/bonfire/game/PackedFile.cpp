// SPDX-License-Identifier: 0BSD
#include "game/PackedFile.h"

#include <algorithm>

namespace
{
std::string WhyRefused(const CEmberdeckError& error, const CEmberdeckFile& file)
{
    if (error.m_eCode == eEmberdeckError_TypesVersion)
        return "packed with version " + std::to_string(file.m_nTypeTableVersion) +
               " of the effect types, the plug-in offers version " +
               std::to_string(file.m_pTypes->m_nVersion);
    return "damaged at offset " + std::to_string(error.m_nOffset) + ": " + EmberdeckErrorText(error.m_eCode);
}

// A text that stands there twice does no harm in a game, but no editor wrote it.
bool ListTexts(CPackedFile& file, std::string& sError)
{
    const char* pszFirst = EmberdeckNextText(file.m_pFile.get(), nullptr);
    std::vector<std::string_view> sorted;
    for (const char* psz = pszFirst; psz; psz = EmberdeckNextText(file.m_pFile.get(), psz))
    {
        file.m_Strings.emplace_back(uint32_t(psz - pszFirst), psz);
        sorted.emplace_back(psz);
    }
    std::sort(sorted.begin(), sorted.end());
    const auto twin = std::adjacent_find(sorted.begin(), sorted.end());
    if (twin == sorted.end())
        return true;
    sError = "damaged at offset " +
             std::to_string(file.m_pFile->m_nStringTableOffset + std::max(twin[0].data(), twin[1].data()) -
                            pszFirst) +
             ": a text stored twice";
    return false;
}

void ListEffects(CPackedFile& file)
{
    file.m_Effects.resize(file.m_pFile->m_nNumEffects);
    for (uint32_t i = 0; i < file.m_pFile->m_nNumEffects; ++i)
    {
        CEffect& effect = file.m_Effects[i];
        EmberdeckGetEffect(file.m_pFile.get(), i, &effect);
        effect.m_sName = effect.m_pszName;
        effect.m_Keys.reserve(effect.m_nNumKeys);
        CKey key;
        for (bool bKey = EmberdeckFirstKey(&effect, &key); bKey; bKey = EmberdeckNextKey(&key))
        {
            CKey& kept = effect.m_Keys.emplace_back(key);
            kept.m_Properties.reserve(key.m_nNumProps);
            CProperty prop;
            for (bool bProp = EmberdeckFirstProperty(&key, &prop); bProp;
                 bProp = EmberdeckNextProperty(&prop))
                kept.m_Properties.push_back(prop);
        }
    }
}
} // namespace

const CEffect* CPackedFile::FindEffect(std::string_view sName) const
{
    const std::string sText(sName);
    for (const CEffect& effect : m_Effects)
        if (EmberdeckIsSameName(effect.m_sName.data(), sText.c_str()))
            return &effect;
    return nullptr;
}

bool ReadPackedFile(std::vector<uint8_t> bytes, const CEffectTypeTable& types, CPackedFile& file,
                    std::string& sError)
{
    file = CPackedFile();
    file.m_Bytes = std::move(bytes);
    file.m_Index.resize(EmberdeckIndexLength(file.m_Bytes.data(), file.m_Bytes.size()));
    file.m_pFile = std::make_unique<CEmberdeckFile>();
    CEmberdeckError error;
    if (!EmberdeckOpen(file.m_pFile.get(), file.m_Bytes.data(), file.m_Bytes.size(), &types,
                       file.m_Index.data(), file.m_Index.size(), &error))
    {
        sError = WhyRefused(error, *file.m_pFile);
        return false;
    }
    if (!ListTexts(file, sError))
        return false;
    ListEffects(file);
    return true;
}
