#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "effecttypes.h"
#include "model/NameIndex.h"

// The loaded plug-in of a game: the one source of effect types. Hands out pointers into the
// plug-in's own tables; they are good until the next Load, Unload or the end of this object, and
// every key, prefab and property holds some. So a library is emptied before its plug-in goes.
class CEffectModule
{
public:
    // Beyond these a table is taken for damaged.
    static constexpr uint32_t c_nMaxTypes = 65536;
    static constexpr uint32_t c_nMaxProps = 65536; // of one type

    CEffectModule() = default;
    ~CEffectModule();
    CEffectModule(const CEffectModule&) = delete;
    CEffectModule& operator=(const CEffectModule&) = delete;

    // Unloads what is loaded, then loads the library at pszPath (either separator, any letter case,
    // a .dll name stands for the .so beside it). False, with nothing loaded, when there is no such
    // library, an entry point is missing, it offers no table, or the table can't be trusted
    // (see IsTableSound). A library that lacks an entry point has none of its functions called, but
    // for EmberdeckReleaseInfo when that is the one it has.
    bool Load(const char* pszPath);
    void Unload();

    bool IsLoaded() const { return m_hModule != nullptr; }
    uint32_t GetVersion() const;                                // 0 without a table
    uint32_t GetNumTypes() const;                               // 0 without a table
    const CEffectTypeDesc* GetType(uint32_t nIndex) const;      // null at and beyond GetNumTypes
    const CEffectTypeDesc* FindType(const char* pszName) const; // without regard to case; first wins; null

    // Place of a property in its type's array, without regard to case; first wins; -1. For a type of
    // this module the names are hashed once, at the first search; any other type is walked.
    int FindPropertyIndex(const CEffectTypeDesc* pTypeDesc, std::string_view sName) const;

    // Adopts a table that lives in this process, as Load does with a library's. For tests and tools.
    // The caller keeps the table alive until Unload.
    bool Adopt(CEffectTypeTable* pTable);

    // Whether the counts of a table are within reason and have arrays behind them, as everybody who walks
    // one relies on. Texts without NUL, unknown kinds and type ids out of range are no reason to refuse it:
    // whoever reads these bounds them.
    static bool IsTableSound(const CEffectTypeTable& table);

private:
    void BuildIndex();

    CEffectTypeTable* m_pTable = nullptr; // first: its address is the slot that the plug-in fills
    EmberdeckGetInfoFn m_pfnGetInfo = nullptr;
    EmberdeckReleaseInfoFn m_pfnReleaseInfo = nullptr;
    void* m_hModule = nullptr;

    std::string m_sPath;     // of the library, as it was given
    bool m_bAdopted = false; // m_hModule is the table itself, not a library
    CNameIndex m_TypeIndex;
    // By type: its properties, once somebody has searched for one. Empty when memory was short.
    struct CPropIndex
    {
        bool m_bBuilt = false;
        CNameIndex m_Index;
    };
    mutable std::vector<CPropIndex> m_PropIndexes;
};
