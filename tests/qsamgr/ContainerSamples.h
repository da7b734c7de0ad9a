#pragma once

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

using Bytes = std::vector<uint8_t>;

inline Bytes ToBytes(const std::string& s)
{
    return Bytes(s.begin(), s.end());
}

// Data of every sort that the encoder takes another way for: few and many symbols, stretches of one byte,
// repeated blocks with faults, lines of text.
inline Bytes MakeSample(std::mt19937& random, size_t nSize)
{
    const auto Below = [&](uint32_t n) { return uint32_t(random() % n); };
    const uint32_t aSymbols[] = {1, 2, 3, 4, 10, 64, 256, 256};
    const uint32_t nSymbols = aSymbols[Below(8)];
    const uint32_t nKind = Below(5);
    Bytes data;
    Bytes block;
    for (uint32_t i = 0, n = 1 + Below(nKind == 2 ? 40 : 6000); i < n; ++i)
        block.push_back(uint8_t(Below(nSymbols) * 37));
    while (data.size() < nSize)
        switch (nKind)
        {
        case 0:
            data.push_back(uint8_t(Below(nSymbols) * 37));
            break;
        case 1: // stretches
            data.insert(data.end(), 1 + Below(200), uint8_t(Below(nSymbols)));
            break;
        case 2:
        case 3: // a block again and again, with a fault now and then
            data.insert(data.end(), block.begin(), block.end());
            data[Below(uint32_t(data.size()))] ^= uint8_t(1 + Below(255));
            break;
        default:
            for (const char c : "\t\t( data " + std::to_string(Below(2000)) + ".000000 )\r\n")
                data.push_back(uint8_t(c));
            break;
        }
    data.resize(nSize);
    return data;
}
