#include "ContainerSamples.h"
#include "plain/PlainContainer.h"
#include "qsamgr/qsacompressedfile.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace
{

// True when the library gives the same file as the plain encoder, and the data back from it.
testing::AssertionResult IsLikePlain(const Bytes& data)
{
    const Bytes expected = PlainCompress(data.data(), data.size());
    Bytes file, back;
    if (!QSACompress(data.data(), data.size(), file) || file != expected)
        return testing::AssertionFailure() << "another file for " << data.size() << " bytes";
    if (!QSADecompress(file.data(), file.size(), back) || back != data)
        return testing::AssertionFailure() << "other data from " << data.size() << " bytes";
    return testing::AssertionSuccess();
}

// Reads the file in both ways by turns.
Bytes ReadMixed(const std::string& sPath, uint32_t nCacheSize, uint32_t nBlock)
{
    CQSACompressedFile file;
    Bytes data;
    if (!file.Open(sPath.c_str(), CQSAFileBuffer::OPEN_READ, nCacheSize, false))
        return data;
    Bytes block(nBlock);
    for (bool bMore = true; bMore;)
    {
        uint8_t nByte = 0;
        for (uint32_t i = 0; bMore && i < nBlock / 3 + 1; ++i)
            if ((bMore = file.ReadByte(&nByte)))
                data.push_back(nByte);
        if (!bMore)
            break;
        const uint32_t nLen = file.ReadBlock(block.data(), nBlock);
        data.insert(data.end(), block.begin(), block.begin() + nLen);
        bMore = nLen == nBlock;
    }
    EXPECT_TRUE(file.Close());
    return data;
}

// Compares all ways of reading with the plain decoder.
void ExpectSameDecoding(const CTempDir& dir, const Bytes& file, uint32_t nSeed)
{
    Bytes expected, data;
    const bool bOpens = PlainDecompress(file.data(), file.size(), expected);
    ASSERT_EQ(bOpens, QSADecompress(file.data(), file.size(), data)) << nSeed;
    ASSERT_EQ(expected, data) << nSeed << ", in memory";
    size_t nLen = 0;
    data.assign(expected.size() + nSeed % 3, 0xEE);
    ASSERT_EQ(bOpens, QSADecompress(file.data(), file.size(), data.data(), data.size(), nLen)) << nSeed;
    data.resize(nLen);
    ASSERT_EQ(expected, data) << nSeed << ", into given memory";
    if (!expected.empty())
    {
        ASSERT_FALSE(QSADecompress(file.data(), file.size(), data.data(), data.size() - 1, nLen)) << nSeed;
    }
    const std::string sPath = dir.write("f", std::string(file.begin(), file.end()));
    ASSERT_EQ(expected, ReadMixed(sPath, 1 + nSeed % 50 * 21, 1 + nSeed * 7 % 5000))
        << nSeed << ", from a file";
}

} // namespace

TEST(ContainerTwin, EncodesLikeThePlainOne)
{
    std::mt19937 random(1);
    for (size_t nSize = 0; nSize < 300; ++nSize)
        ASSERT_TRUE(IsLikePlain(MakeSample(random, nSize)));
    for (int i = 0; i < 2000; ++i)
        ASSERT_TRUE(IsLikePlain(MakeSample(random, random() % 700))) << i;
    for (int i = 0; i < 40; ++i)
        ASSERT_TRUE(IsLikePlain(MakeSample(random, 4000 + random() % 9000))) << i;
    for (const size_t nSize :
         {28688u, 32767u, 32768u, 57344u, 57345u, 57363u, 90000u}) // about the buffer's ends
        ASSERT_TRUE(IsLikePlain(MakeSample(random, nSize)));
}

TEST(ContainerTwin, EncodesHardData)
{
    std::mt19937 random(2);
    Bytes data;
    for (uint32_t i = 0; i < 10000; ++i) // rising numbers: the tree becomes a list
        for (const uint32_t nShift : {16, 8, 0})
            data.push_back(uint8_t(i >> nShift));
    EXPECT_TRUE(IsLikePlain(data));
    data.clear();
    for (int i = 0; i < 30000; ++i) // many strings with the same start
        data.push_back(i % 12 < 10 ? uint8_t(0xFF) : uint8_t(random()));
    EXPECT_TRUE(IsLikePlain(data));
    EXPECT_TRUE(IsLikePlain(Bytes(70000, 0)));
    EXPECT_TRUE(IsLikePlain(Bytes(70000, 0xFF)));
    data.clear();
    while (data.size() < 600000) // so many different strings that ranks are numbered anew
        data.push_back(uint8_t(random()));
    EXPECT_TRUE(IsLikePlain(data));
}

TEST(ContainerTwin, DecodesCutAndDamagedStreamsLikeThePlainOne)
{
    CTempDir dir;
    std::mt19937 random(3);
    for (uint32_t i = 0; i < 6; ++i)
    {
        const Bytes data = MakeSample(random, 200 + i * 100);
        const Bytes file = PlainCompress(data.data(), data.size());
        for (size_t nSize = 0; nSize <= file.size(); ++nSize)
            ExpectSameDecoding(dir, Bytes(file.begin(), file.begin() + long(nSize)), uint32_t(nSize));
    }
    for (uint32_t i = 0; i < 400; ++i)
    {
        Bytes file(4 + random() % (i % 10 == 0 ? 9000 : 300), 0);
        std::generate(file.begin() + (i % 50 == 0 ? 3 : 4), file.end(), [&] { return uint8_t(random()); });
        ExpectSameDecoding(dir, file, i);
    }
    for (uint32_t i = 0; i < 60; ++i) // long, with single bits turned round
    {
        const Bytes data = MakeSample(random, 12000);
        Bytes file = PlainCompress(data.data(), data.size());
        file[4 + random() % (file.size() - 4)] ^= uint8_t(1u << random() % 8);
        ExpectSameDecoding(dir, file, i);
    }
}
