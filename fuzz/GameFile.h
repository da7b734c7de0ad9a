#pragma once

#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "emberdeck_effects.h"

// A packed file as a game has it: through emberdeck_effects.h, from bytes at an odd address, with exactly as much
// memory as is needed, so that a sanitizer sees what is read or written beside it.
class CGameFile
{
public:
    bool Open(std::string_view sBytes, const CEffectTypeTable& types)
    {
        m_pBytes.reset(new uint8_t[sBytes.size() + 1]);
        std::memcpy(m_pBytes.get() + 1, sBytes.data(), sBytes.size());
        m_Index.assign(EmberdeckIndexLength(m_pBytes.get() + 1, sBytes.size()), 0xA5A5A5A5);
        return EmberdeckOpen(&m_File, m_pBytes.get() + 1, sBytes.size(), &types, m_Index.data(),
                             m_Index.size(), &m_Error);
    }
    std::string Why() const
    {
        return std::to_string(m_Error.m_nOffset) + ": " + EmberdeckErrorText(m_Error.m_eCode);
    }

    // All that the opened file holds, in one number; by every function of the header, in either byte order alike.
    uint64_t Digest() const
    {
        uint64_t n = 14695981039346656037u;
        for (const char* psz = nullptr; (psz = EmberdeckNextText(&m_File, psz));)
            Add(n, psz, std::strlen(psz) + 1);
        for (uint32_t i = 0; i < m_File.m_nNumTypes; ++i)
            AddNumber(n, EmberdeckKeyCount(&m_File, i));
        CEmberdeckEffect effect, found;
        for (uint32_t i = 0; EmberdeckGetEffect(&m_File, i, &effect); ++i)
        {
            Add(n, effect.m_pszName, std::strlen(effect.m_pszName));
            AddNumber(n, effect.m_nPhaseLength);
            if (i < 16 && EmberdeckFindEffect(&m_File, effect.m_pszName, &found))
                AddNumber(n, found.m_nOffset);
            CEmberdeckKey key;
            for (bool bKey = EmberdeckFirstKey(&effect, &key); bKey; bKey = EmberdeckNextKey(&key))
                AddKey(n, effect, key);
        }
        return n;
    }

    CEmberdeckFile m_File;
    CEmberdeckError m_Error;

private:
    static void Add(uint64_t& n, const void* p, size_t nSize)
    {
        for (size_t i = 0; i < nSize; ++i)
            n = (n ^ static_cast<const uint8_t*>(p)[i]) * 1099511628211u;
    }
    static void AddNumber(uint64_t& n, double f)
    {
        uint64_t nBits = 0x7FF8;
        if (f == f) // of the many that are no number one is as good as another
            std::memcpy(&nBits, &f, sizeof(f));
        n = (n ^ n >> 29 ^ nBits) * 1099511628211u;
    }
    static void AddValue(uint64_t& n, const CEmberdeckValue& value)
    {
        if (value.m_pszText)
            Add(n, value.m_pszText, std::strlen(value.m_pszText));
        for (const double f : value.m_Numbers)
            AddNumber(n, f);
    }
    static void AddKey(uint64_t& n, const CEmberdeckEffect& effect, const CEmberdeckKey& key)
    {
        CEmberdeckKey linked;
        Add(n, key.m_pType->m_szName, EMBERDECK_NAME_SIZE);
        AddNumber(n, key.m_fStart);
        AddNumber(n, key.m_fEnd);
        AddNumber(n, key.m_nID);
        AddNumber(n, EmberdeckFindLinkedKey(&effect, &key, &linked) ? linked.m_nOffset : key.m_nLink);
        CEmberdeckProperty prop, found;
        for (bool bProp = EmberdeckFirstProperty(&key, &prop); bProp; bProp = EmberdeckNextProperty(&prop))
        {
            AddNumber(n, EmberdeckFindProperty(&key, prop.m_pDesc->m_szName, &found) ? found.m_nOffset : 0);
            for (uint32_t i = 0; i < prop.m_nNumValues; i += 1 + i / 64)
            {
                AddNumber(n, EmberdeckTimeAt(&prop, i));
                AddValue(n, EmberdeckValueAt(&prop, i));
            }
            for (const double fTime : {-1.0, 0.0, 0.3, 1.0, 2.0, double(NAN)})
                AddValue(n, EmberdeckEvaluate(&prop, fTime));
            size_t nLength = 0;
            const auto nIndex = uint32_t(EmberdeckValueAt(&prop, 0).m_Numbers[0]);
            if (prop.m_pDesc->m_eType == ePropType_Enum)
                if (const char* p = EmberdeckEnumerator(prop.m_pDesc, nIndex, &nLength))
                    Add(n, p, nLength);
        }
    }

    std::unique_ptr<uint8_t[]> m_pBytes;
    std::vector<uint32_t> m_Index;
};

// The same file for a machine of the other byte order: all is words but the texts.
inline std::string InOtherOrder(std::string s, const CEmberdeckFile& file)
{
    for (size_t n = 0; n + 4 <= s.size(); n += 4)
        if (n < file.m_nStringTableOffset || n >= file.m_nStringTableOffset + file.m_nStringTableSize)
        {
            std::swap(s[n], s[n + 3]);
            std::swap(s[n + 1], s[n + 2]);
        }
    return s;
}
