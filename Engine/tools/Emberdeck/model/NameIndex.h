#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

// Names as the whole program compares them: only the letters A to Z are folded, so that a file means the same
// under every locale.
constexpr uint8_t FoldNameByte(char c)
{
    const auto n = static_cast<uint8_t>(c);
    return n >= 'A' && n <= 'Z' ? static_cast<uint8_t>(n + ('a' - 'A')) : n;
}
// Whether two names are one. Texts of different lengths never are; a NUL is a byte like any other.
bool IsSameName(std::string_view sLeft, std::string_view sRight);

// Reads a fixed-size text that may lack its NUL: at most all bytes but the last.
template <size_t N>
std::string_view BoundedText(const char (&aText)[N])
{
    return std::string_view(aText, strnlen(aText, N - 1));
}

// Places of names in an array, found without regard to case; of equal names the first wins, as in a search from
// the front. The texts are not copied: they stay where they are, unchanged, as long as the index is used.
// A search and an addition take constant time. An index that was never filled, because memory was short, finds
// nothing; whoever needs the name all the same walks the array.
class CNameIndex
{
public:
    // Before the first Add, empties the index: so many names at most. Throws std::bad_alloc, which the
    // caller keeps to itself.
    void Reserve(uint32_t nCount);
    // nPlace is what Find gives for the name, at most INT32_MAX. A name that is there already keeps its place. Only
    // as many calls as were reserved.
    void Add(std::string_view sName, uint32_t nPlace);
    void Clear();                           // gives the memory back
    int Find(std::string_view sName) const; // the place, -1 when absent

private:
    struct CSlot
    {
        const char* m_pName = nullptr; // null: free
        uint32_t m_nLen = 0;
        uint32_t m_nHash = 0;
        uint32_t m_nPlace = 0;
    };
    // The slot that holds the name, or the free one where it would go.
    size_t Probe(std::string_view sName, uint32_t nHash) const;

    std::vector<CSlot> m_Slots; // a power of two, at most half full
};
