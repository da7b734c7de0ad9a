// SPDX-License-Identifier: 0BSD
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "emberdeck_effects.h"
#include "game/PlugIn.h"

// A packed effect file as lists of C++, over the handles of emberdeck_effects.h: see there for what their fields
// mean.

using CProperty = CEmberdeckProperty;

struct CKey : CEmberdeckKey
{
    std::vector<CProperty> m_Properties;
};

struct CEffect : CEmberdeckEffect
{
    std::string_view m_sName; // m_pszName, so that it ends with a NUL
    std::vector<CKey> m_Keys;
};

// All that a packed effect file holds. May be moved but not copied; the plug-in, whose descriptors the handles
// point to, must outlive it.
struct CPackedFile
{
    CPackedFile() = default;
    CPackedFile(CPackedFile&&) = default;
    CPackedFile& operator=(CPackedFile&&) = default;

    std::vector<uint8_t> m_Bytes;
    std::vector<uint32_t> m_Index;
    std::unique_ptr<CEmberdeckFile> m_pFile;                      // where the handles find it
    std::vector<std::pair<uint32_t, std::string_view>> m_Strings; // offset in the string table, text
    std::vector<CEffect> m_Effects;

    // The first effect of that name, without regard to ASCII case, or null.
    const CEffect* FindEffect(std::string_view sName) const;
};

// Opens bytes. False: sError tells what is wrong, with the offset in the file ("damaged at offset 40: ..."), and
// the file holds nothing to be used.
bool ReadPackedFile(std::vector<uint8_t> bytes, const CEffectTypeTable& types, CPackedFile& file,
                    std::string& sError);
