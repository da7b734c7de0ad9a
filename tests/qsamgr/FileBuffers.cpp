#include "qsamgr/qsabitfile.h"
#include "sdk/AssertCatcher.h"
#include "support/TempDir.h"

#include <cstring>
#include <gtest/gtest.h>

namespace
{

constexpr auto c_eRead = CQSAFileBuffer::OPEN_READ;
constexpr auto c_eWrite = CQSAFileBuffer::OPEN_WRITE;

} // namespace

TEST(FileBuffers, ReadWhatWasWritten)
{
    CTempDir dir;
    const std::string sPath = dir.path("f");
    std::string sText;
    for (int i = 0; i < 5000; ++i)
        sText += char(i * 7);
    for (const uint32_t nCacheSize : {0u, 1u, 5u, 1024u, 8192u})
    {
        CQSAFileBuffer file;
        ASSERT_TRUE(file.Open(sPath.c_str(), c_eWrite, nCacheSize, false));
        EXPECT_TRUE(file.IsOpen());
        EXPECT_EQ(c_eWrite, file.GetMode());
        EXPECT_TRUE(file.WriteBlock(nullptr, 0));
        EXPECT_TRUE(file.WriteBlock(sText.data(), 3000));
        for (size_t i = 3000; i < sText.size(); ++i)
            EXPECT_TRUE(file.WriteByte(uint8_t(sText[i])));
        EXPECT_TRUE(file.Close());
        EXPECT_FALSE(file.IsOpen());
        EXPECT_EQ(sText, ReadBytes(sPath));

        ASSERT_TRUE(file.Open(sPath.c_str(), c_eRead, nCacheSize, false));
        std::string sRead(sText.size() + 10, '#');
        uint32_t nDone = 0;
        for (const uint32_t nLen : {0u, 3u, 1u, 2000u, 1020u, 5000u})
        {
            nDone += file.ReadBlock(sRead.data() + nDone, nLen);
            uint8_t nByte;
            if (file.ReadByte(&nByte))
                sRead[nDone++] = char(nByte);
        }
        EXPECT_EQ(sText + std::string(10, '#'), sRead);
        EXPECT_TRUE(file.Close());
    }
}

TEST(FileBuffers, HoldBackAsMuchAsTheCache)
{
    CTempDir dir;
    const std::string sPath = dir.path("f");
    CQSAFileBuffer file;
    ASSERT_TRUE(file.Open(sPath.c_str(), c_eWrite, 100000, false));
    EXPECT_TRUE(file.WriteBlock(std::string(60000, 'a').data(), 60000));
    EXPECT_EQ("", ReadBytes(sPath));
    EXPECT_TRUE(file.WriteBlock(std::string(40000, 'b').data(), 40000)); // full: goes out at once
    EXPECT_GE(ReadBytes(sPath).size(), 90000u);
    EXPECT_TRUE(file.WriteByte('c'));
    EXPECT_TRUE(file.Close());

    // Appending keeps what is there, and makes what isn't.
    ASSERT_TRUE(file.Open(sPath.c_str(), c_eWrite, 16, true));
    EXPECT_TRUE(file.WriteBlock("more", 4));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(std::string(60000, 'a') + std::string(40000, 'b') + "cmore", ReadBytes(sPath));
    ASSERT_TRUE(file.Open(dir.path("new").c_str(), c_eWrite, 16, true));
    EXPECT_TRUE(file.WriteByte('x'));
    ASSERT_TRUE(file.Open(sPath.c_str(), c_eRead, 16, false)) << "closes first";
    EXPECT_EQ("x", ReadBytes(dir.path("new")));
}

TEST(FileBuffers, TellFailures)
{
    CTempDir dir;
    CAssertCatcher catcher;
    CQSAFileBuffer file;
    uint8_t nByte = 9;
    EXPECT_TRUE(file.Close());
    EXPECT_FALSE(file.Open(dir.path("no/dir").c_str(), c_eWrite, 16, false));
    EXPECT_FALSE(file.Open(dir.path("none").c_str(), c_eRead, 16, false));
    EXPECT_EQ(0u, catcher.GetCount());

    // The wrong use asserts and does nothing.
    EXPECT_FALSE(file.Open(dir.path("f").c_str(), c_eRead, 16, true));
    EXPECT_FALSE(file.Open(dir.path("f").c_str(), CQSAFileBuffer::OPEN_NONE, 16, false));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_FALSE(dir.has("f"));
    EXPECT_FALSE(file.ReadByte(&nByte));
    EXPECT_FALSE(file.WriteByte(1));
    EXPECT_FALSE(file.FlushCache());
    EXPECT_FALSE(file.FillCache());
    if (catcher.IsActive())
    {
        ASSERT_EQ(6u, catcher.GetCount());
        EXPECT_EQ("m_eMode == OPEN_READ|", catcher.Take());
    }

    // An empty file opens; errors show at the close, small writes included.
    ASSERT_TRUE(file.Open(dir.write("empty", "").c_str(), c_eRead, 16, false));
    EXPECT_FALSE(file.ReadByte(&nByte));
    EXPECT_EQ(0u, file.ReadBlock(&nByte, 1));
    EXPECT_EQ(9, nByte);
    EXPECT_TRUE(file.Close());
    for (const uint32_t nLen : {1u, 50000u})
    {
        ASSERT_TRUE(file.Open("/dev/full", c_eWrite, 1024, false));
        file.WriteBlock(std::string(nLen, 'x').data(), nLen);
        EXPECT_FALSE(file.Close()) << nLen;
    }
}

TEST(FileBuffers, BitsGoFromTheLowestUp)
{
    CTempDir dir;
    CAssertCatcher catcher;
    const std::string sPath = dir.path("f");
    CQSABitFile file;
    uint8_t nBit;
    EXPECT_FALSE(file.GetBit(&nBit));
    EXPECT_FALSE(file.SetBit(1));
    ASSERT_TRUE(file.Open(sPath.c_str(), c_eWrite, 1, false));
    for (const uint8_t n : {1, 0, 0, 0, 0, 0, 0, 128, 0, 2, 0})
        EXPECT_TRUE(file.SetBit(n));
    const uint8_t aMore[] = {0xFF, 0x05};
    EXPECT_TRUE(file.SetBits(aMore, 11));
    EXPECT_TRUE(file.SetBits(aMore, 0));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(std::string("\x81\xFA", 2), ReadBytes(sPath)) << "6 bits of a third byte are dropped";

    ASSERT_TRUE(file.Open(sPath.c_str(), c_eRead, 1, false));
    std::string sBits;
    while (file.GetBit(&nBit))
        sBits += nBit ? '1' : '0';
    EXPECT_EQ("1000000101011111", sBits);
    ASSERT_TRUE(file.Open(sPath.c_str(), c_eWrite, 16, false));
    EXPECT_TRUE(file.SetBits(aMore, 16)); // whole bytes at once
    EXPECT_TRUE(file.Close());
    EXPECT_EQ("\xFF\x05", ReadBytes(sPath));
}
