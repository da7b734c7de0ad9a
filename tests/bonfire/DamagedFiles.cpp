#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "SmallFile.h"
#include "game/Listing.h"
#include "game/Playback.h"

namespace
{
// The offset that a refusal names; fails when the bytes are taken.
uint64_t OffsetOfDamage(const std::vector<uint8_t>& bytes, const std::string& sWhy)
{
    CPackedFile file;
    std::string sError;
    EXPECT_FALSE(ReadPackedFile(bytes, SmallTypes(), file, sError)) << sWhy;
    EXPECT_EQ(0u, sError.find("damaged at offset ")) << sWhy << ": " << sError;
    return std::strtoull(sError.c_str() + std::min<size_t>(18, sError.size()), nullptr, 10);
}
} // namespace

TEST(DamagedFiles, CutAfterAnyByteOrLonger)
{
    std::vector<uint8_t> bytes = CSmallFile().Bytes();
    for (size_t n = 0; n < bytes.size(); ++n)
        OffsetOfDamage(std::vector<uint8_t>(bytes.begin(), bytes.begin() + ptrdiff_t(n)),
                       "cut at " + std::to_string(n));
    bytes.insert(bytes.end(), 4, 0);
    EXPECT_EQ(36u, OffsetOfDamage(bytes, "longer"));
}

TEST(DamagedFiles, EachLieIsFoundWhereItStands)
{
    CSmallFile good;
    good.Bytes();
    const auto& at = good.m_Marks;
    const uint32_t nStrings = at.at("strings"), nCurves = at.at("curves"), nKey = at.at("key");
    const uint32_t nNan = std::bit_cast<uint32_t>(std::nanf(""));
    const struct
    {
        uint32_t m_nAt, m_nValue, m_nTold;
        const char* m_pszWhat;
    } c_Lies[] = {
        {0, 0x58465352, 0, "magic"},
        {4, 3, 4, "file version"},
        {12, 0xFFFFFFFC, 12, "string table size"},
        {12, 6, 12, "string table size not in fours"},
        {16, 0xFFFFFFFF, 16, "curve table size"},
        {20, 4, 20, "number of keys"},
        {24, 0x40000002, 36, "number of effects that overflows"},
        {28, 3, 28, "number of types"},
        {32, 44, 32, "string table offset"},
        {36, 48, 36, "names offset"},
        {40, 2, 20, "key count"},
        {nStrings + 4, 0x41000000, nStrings, "text not filled up with zeros"},
        {nStrings + good.m_Texts["hot"], 0, nStrings + good.m_Texts[""], "twice"},
        {nCurves, 0, nCurves, "curve without keys"},
        {nCurves, 0x20000002, nCurves, "curve longer than the table"},
        {nCurves, 1, nCurves + 12, "rest of a curve that nobody uses"},
        {nCurves + 4, nNan, nCurves + 4, "time that is no number"},
        {nCurves + 4, std::bit_cast<uint32_t>(2.0f), nCurves + 12, "times out of order"},
        {nKey - 4, 0x10000000, nKey - 4, "keys without end"},
        {nKey, 2, nKey, "unknown type"},
        {nKey + 4, nNan, nKey + 4, "start that is no number"},
        {nKey + 20, 99, nKey + 20, "more properties than the type has"},
        {at.at("Blend"), good.m_Texts["Texture"], at.at("Blend"), "the same property twice"},
        {at.at("Blend"), 1, at.at("Blend"), "name from within a text"},
        {at.at("Blend") + 4, 7, at.at("Blend") + 4, "end of a property"},
        {at.at("Blend") + 8, 2, at.at("Blend") + 8, "enumerator behind the last"},
        {at.at("Frame") + 8, 0, at.at("Frame") + 8, "curve of another kind"},
        {at.at("Frame") + 8, 12, at.at("Frame") + 8, "curve inside another"},
        {at.at("Frame") + 8, 0xFFFFFFFE, at.at("Frame") + 8, "curve outside the table"},
        {at.at("names"), good.m_Texts["hot"], at.at("names"), "name of another effect"},
    };
    for (const auto& lie : c_Lies)
    {
        CSmallFile bad = good;
        bad.Patch(lie.m_nAt, lie.m_nValue);
        EXPECT_EQ(lie.m_nTold, OffsetOfDamage(bad.m_Bytes, lie.m_pszWhat)) << lie.m_pszWhat;
    }

    CSmallFile other = good;
    other.Patch(8, 6);
    CPackedFile file;
    std::string sError;
    EXPECT_FALSE(ReadPackedFile(other.m_Bytes, SmallTypes(), file, sError));
    EXPECT_EQ("packed with version 6 of the effect types, the plug-in offers version 7", sError);
}

// Whatever a byte becomes, the file is refused or can be played; the sanitizer build watches.
TEST(DamagedFiles, AnyByteChangedDoesNoHarm)
{
    const std::vector<uint8_t> good = CSmallFile().Bytes();
    size_t nTaken = 0;
    for (size_t i = 0; i < good.size(); ++i)
        for (const uint8_t n : {0x00, 0x01, 0x04, 0x7f, 0x80, 0xff, good[i] ^ 0x10})
        {
            std::vector<uint8_t> bytes = good;
            bytes[i] = n;
            CPackedFile file;
            std::string sError;
            if (!ReadPackedFile(std::move(bytes), SmallTypes(), file, sError))
                continue;
            ++nTaken;
            EXPECT_LT(DumpAsJson(file, nullptr).size(), 20000u);
            for (const CEffect& effect : file.m_Effects)
            {
                EXPECT_FALSE(ListEffect(file, effect).empty());
                ListVisible(file, effect, 1);
            }
        }
    EXPECT_GT(nTaken, good.size() / 2); // most bytes are values, times and texts
}
