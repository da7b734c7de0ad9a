#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

// The texts of a packed file, each once, in the order of adding. A text is its bytes, a NUL, and further
// NULs up to the next multiple of 4; it is referred to by its offset. Compared exactly.
class CStringTable
{
public:
    // Up to its first NUL. The offset of the text that is there already, or of the new one. Memory that
    // runs out throws, and the table is as before.
    uint32_t Add(std::string_view sText);
    // False when the text isn't here; nOffset stays as it was.
    bool LookUp(std::string_view sText, uint32_t& nOffset) const;

    const std::string& Bytes() const { return m_sBytes; }
    // A table beyond 4 GB can't be referred to by its offsets.
    bool IsSound() const { return m_sBytes.size() <= UINT32_MAX; }

private:
    struct CHash
    {
        using is_transparent = void;
        size_t operator()(std::string_view sText) const { return std::hash<std::string_view>()(sText); }
    };

    std::string m_sBytes;
    std::unordered_map<std::string, uint32_t, CHash, std::equal_to<>> m_Offsets;
};
