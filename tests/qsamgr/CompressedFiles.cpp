#include "ContainerSamples.h"
#include "plain/PlainContainer.h"
#include "qsamgr/qsacompressedfile.h"
#include "sdk/AssertCatcher.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace
{

constexpr auto c_eRead = CQSAFileBuffer::OPEN_READ;
constexpr auto c_eWrite = CQSAFileBuffer::OPEN_WRITE;

Bytes FileBytes(const std::string& sPath)
{
    return ToBytes(ReadBytes(sPath));
}

} // namespace

TEST(CompressedFiles, StreamThroughBothKindsOfCalls)
{
    CTempDir dir;
    std::mt19937 random(4);
    for (const size_t nSize : {0u, 1u, 16u, 17u, 18u, 4095u, 4097u, 32768u, 100000u})
        for (const uint32_t nCacheSize : {1u, 7u, 1024u})
        {
            const Bytes data = MakeSample(random, nSize);
            const std::string sPath = dir.path("f");
            CQSACompressedFile file;
            ASSERT_TRUE(file.Open(sPath.c_str(), c_eWrite, nCacheSize, false));
            for (size_t i = 0; i < nSize;)
            {
                const uint32_t nLen = uint32_t(std::min<size_t>(nSize - i, random() % 3000));
                EXPECT_TRUE(file.WriteBlock(data.data() + i, nLen));
                i += nLen;
                if (i < nSize)
                {
                    EXPECT_TRUE(file.WriteByte(data[i++]));
                }
            }
            EXPECT_TRUE(file.Close());
            ASSERT_EQ(PlainCompress(data.data(), nSize), FileBytes(sPath)) << nSize;

            ASSERT_TRUE(file.Open(sPath.c_str(), c_eRead, nCacheSize, false));
            Bytes back(nSize + 1);
            EXPECT_EQ(nSize, file.ReadBlock(back.data(), uint32_t(nSize + 1)));
            back.resize(nSize);
            EXPECT_EQ(data, back);
            uint8_t nByte;
            EXPECT_FALSE(file.ReadByte(&nByte)) << "behind the end";
            EXPECT_TRUE(file.Close());
            EXPECT_TRUE(file.Close());
        }
}

TEST(CompressedFiles, AreWholeWithoutClose)
{
    CTempDir dir;
    std::mt19937 random(5);
    const Bytes data = MakeSample(random, 5000);
    const std::string sPath = dir.path("f");
    const auto write = [&](CQSACompressedFile& file)
    {
        ASSERT_TRUE(file.Open(sPath.c_str(), c_eWrite, 1024, false));
        EXPECT_TRUE(file.WriteBlock(data.data(), uint32_t(data.size())));
    };
    {
        CQSACompressedFile file;
        write(file);
    }
    EXPECT_EQ(PlainCompress(data.data(), data.size()), FileBytes(sPath)) << "destroyed";
    WriteBytes(sPath, "");
    CQSACompressedFile file;
    write(file);
    ASSERT_TRUE(file.Open(dir.path("g").c_str(), c_eWrite, 1024, false));
    EXPECT_EQ(PlainCompress(data.data(), data.size()), FileBytes(sPath)) << "opened again";
}

TEST(CompressedFiles, ReadOnBehindAnEnd)
{
    CTempDir dir;
    // 1 01000001 is "A", 0 000000000000 the end up to where it is read, 1 01000010 is "B", and a 0 begins a
    // token that is all missing.
    const std::string sPath = dir.write("f", std::string("\0\0\0\0\x05\x01\x40\x21", 8));
    for (const bool bBlock : {false, true})
    {
        CQSACompressedFile file;
        ASSERT_TRUE(file.Open(sPath.c_str(), c_eRead, 1024, false));
        std::string s;
        for (int i = 0; i < 6; ++i)
        {
            uint8_t nByte;
            s += (bBlock ? file.ReadBlock(&nByte, 1) == 1 : file.ReadByte(&nByte)) ? char(nByte) : '.';
        }
        EXPECT_EQ("A.B...", s);
        EXPECT_TRUE(file.Close());
    }
}

TEST(CompressedFiles, OpenAndCloseTellFailures)
{
    CTempDir dir;
    CQSACompressedFile file;
    EXPECT_FALSE(file.Open(dir.path("none").c_str(), c_eRead, 1024, false));
    const std::string sBad = dir.write("bad", std::string("\0\0\0\x80more", 8));
    EXPECT_FALSE(file.Open(sBad.c_str(), c_eRead, 1024, false));
    EXPECT_FALSE(file.IsOpen());
    for (size_t nLen = 0; nLen < 4; ++nLen)
    {
        ASSERT_TRUE(file.Open(dir.write("short", std::string(nLen, '\0')).c_str(), c_eRead, 1024, false));
        uint8_t nByte;
        EXPECT_FALSE(file.ReadByte(&nByte));
    }

    // Opening anew brings what is open to its end first.
    ASSERT_TRUE(file.Open(dir.path("first").c_str(), c_eWrite, 1024, false));
    EXPECT_TRUE(file.WriteByte('A'));
    ASSERT_TRUE(file.Open(dir.path("second").c_str(), c_eWrite, 1024, true));
    EXPECT_EQ(7u, FileBytes(dir.path("first")).size());
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(Bytes(6, 0), FileBytes(dir.path("second")));

    ASSERT_TRUE(file.Open("/dev/full", c_eWrite, 1024, false));
    EXPECT_TRUE(file.WriteBlock(std::string(100000, 'x').data(), 100000)) << "the close tells";
    EXPECT_FALSE(file.Close());
    ASSERT_TRUE(file.Open("/dev/full", c_eWrite, 1024, false));
    EXPECT_FALSE(file.Close()) << "a few bytes as well";
}

TEST(CompressedFiles, AssertTheMode)
{
    CTempDir dir;
    CAssertCatcher catcher;
    CQSACompressedFile file;
    uint8_t nByte = 9;
    EXPECT_FALSE(file.ReadByte(&nByte));
    EXPECT_EQ("GetMode() == CQSAFileBuffer::OPEN_READ|", catcher.Take());
    EXPECT_FALSE(file.WriteByte(1));
    EXPECT_EQ("GetMode() == CQSAFileBuffer::OPEN_WRITE|", catcher.Take());
    ASSERT_TRUE(file.Open(dir.path("f").c_str(), c_eWrite, 1024, false));
    EXPECT_EQ(0u, file.ReadBlock(&nByte, 1));
    EXPECT_EQ(9, nByte);
    ASSERT_TRUE(file.Open(dir.path("f").c_str(), c_eRead, 1024, false));
    EXPECT_FALSE(file.WriteBlock("x", 1));
    EXPECT_EQ(catcher.IsActive() ? 2u : 0u, catcher.GetCount());
}
