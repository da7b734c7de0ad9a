// SPDX-License-Identifier: 0BSD
#pragma once

#include <string>
#include <string_view>

#include "effecttypes.h"

// The effect types that a packed file was made with. The file itself doesn't say of which kind a value is,
// so the game asks the same library that the editor asks.
class CPlugIn
{
public:
    CPlugIn() = default;
    ~CPlugIn();
    CPlugIn(const CPlugIn&) = delete;
    CPlugIn& operator=(const CPlugIn&) = delete;

    // False: sError says why, and nothing is loaded. To be called once.
    bool Load(const std::string& sPath, std::string& sError);

    // Null before a successful Load. Lives as long as this object.
    const CEffectTypeTable* GetTable() const { return m_pTable; }

private:
    void* m_pLibrary = nullptr;
    CEffectTypeTable* m_pTable = nullptr;
    EmberdeckReleaseInfoFn m_pfnRelease = nullptr;
};

// A text field of a descriptor, which need not end with a NUL.
template <size_t N>
std::string_view FieldText(const char (&szField)[N])
{
    size_t n = 0;
    while (n < N - 1 && szField[n])
        ++n;
    return {szField, n};
}

// The first type with that number, or null.
const CEffectTypeDesc* FindType(const CEffectTypeTable& table, uint32_t nTypeID);

// False for the kinds that take a row of the editor's panel and hold no value.
bool HoldsValue(const CEffectPropertyDesc& desc);

// How many enumerators a list has: pieces between commas, empty ones too, but none behind a last comma.
uint32_t CountEnumerators(std::string_view sList);

// The enumerator of that index, without the blanks round it. False where the list doesn't reach.
bool FindEnumerator(std::string_view sList, uint32_t nIndex, std::string_view& sName);
