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
