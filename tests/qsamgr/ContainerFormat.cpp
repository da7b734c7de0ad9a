#include "ContainerSamples.h"
#include "qsamgr/qsacompressedfile.h"

#include <gtest/gtest.h>

namespace
{

Bytes Compress(const Bytes& data)
{
    Bytes out = {1, 2, 3}; // replaced, not added to
    EXPECT_TRUE(QSACompress(data.data(), data.size(), out));
    return out;
}

Bytes Decompress(const Bytes& file)
{
    Bytes out = {1, 2, 3};
    EXPECT_TRUE(QSADecompress(file.data(), file.size(), out));
    return out;
}

// Writes single bits, to make streams that the encoder wouldn't.
class CTokens
{
public:
    Bytes m_File = {0, 0, 0, 0};

    CTokens& Field(uint32_t nValue, uint32_t nBits)
    {
        for (; nBits-- > 0; ++m_nBit)
        {
            if (m_nBit % 8 == 0)
                m_File.push_back(0);
            m_File.back() = uint8_t(m_File.back() | (((nValue >> nBits) & 1) << (m_nBit % 8)));
        }
        return *this;
    }
    CTokens& Literal(char c) { return Field(1, 1).Field(uint8_t(c), 8); }
    CTokens& Span(uint32_t nOffset, uint32_t nLen)
    {
        return Field(0, 1).Field(nOffset, 12).Field(nLen - 2, 4);
    }

private:
    uint32_t m_nBit = 0;
};

} // namespace

TEST(ContainerFormat, GivesTheKnownBytes)
{
    EXPECT_EQ(Bytes(6, 0), Compress({}));
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0x05, 0x01, 0}), Compress({0x41}));
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0x05, 0x0B, 0x01, 0}), Compress({0x41, 0x42}));

    // 18 bytes go out as literals whatever they are: 162 bits and 17 of the end, whole bytes of these.
    const Bytes equal(18, 'x');
    EXPECT_EQ(4u + (18 * 9 + 17) / 8, Compress(equal).size());
    EXPECT_EQ(4u + (1 * 9 + 17 + 17 * 9 + 17) / 8, Compress(Bytes(35, 'x')).size()) << "one span";

    Bytes pattern;
    for (int i = 0; i < 3000; ++i)
        pattern.push_back("abc"[i % 3]);
    EXPECT_EQ(389u, Compress(pattern).size());
    EXPECT_EQ(pattern, Decompress(Compress(pattern)));
}

TEST(ContainerFormat, ReadsEveryStreamOfTheFormat)
{
    EXPECT_EQ(Bytes{}, Decompress({}));
    EXPECT_EQ(Bytes{}, Decompress({0, 0, 0}));
    EXPECT_EQ(Bytes{}, Decompress({0, 0, 0, 0}));
    EXPECT_EQ(ToBytes("A"), Decompress({0, 0, 0, 0, 0x05, 0x01})) << "cut within the end token";
    EXPECT_EQ(ToBytes("ab"), Decompress(CTokens().Literal('a').Literal('b').Span(0, 2).Literal('c').m_File));

    // Overlapping copies of each distance, and the wrap: after 4094 bytes, positions 4095, 0 and 1 follow.
    for (uint32_t nDistance = 1; nDistance <= 20; ++nDistance)
    {
        CTokens tokens;
        std::string sData;
        for (uint32_t i = 0; i < 4094; ++i)
        {
            sData += char('a' + i % 23);
            tokens.Literal(sData.back());
        }
        tokens.Span(4095 - nDistance, 17);
        for (int i = 0; i < 17; ++i)
            sData += sData[sData.size() - nDistance];
        tokens.Span(4095, 3).Span(0xFFF, 2).Literal('!').Span(0, 2);
        sData += sData.substr(4094, 3) + sData.substr(4094, 2) + "!";
        EXPECT_EQ(ToBytes(sData), Decompress(tokens.m_File)) << nDistance;
    }

    // A copy of what was never written gives zeros, of its own place too.
    EXPECT_EQ(ToBytes(std::string("A\0\0\0\0A\0", 7)),
              Decompress(CTokens().Literal('A').Span(4000, 2).Span(4, 2).Span(1, 2).Span(0, 2).m_File));
}

TEST(ContainerFormat, RefusesAWrongHeaderAndTooMuch)
{
    Bytes out = {1};
    for (size_t i = 0; i < 4; ++i)
        for (const uint8_t nByte : {0x01, 0x80})
        {
            Bytes file(i + 1, 0);
            file[i] = nByte;
            EXPECT_FALSE(QSADecompress(file.data(), file.size(), out)) << i;
            EXPECT_TRUE(out.empty());
        }
    const Bytes file = Compress(Bytes(100000, 'x'));
    EXPECT_FALSE(QSADecompress(file.data(), file.size(), out, 99999));
    EXPECT_TRUE(out.empty());
    EXPECT_TRUE(QSADecompress(file.data(), file.size(), out, 100000));
    EXPECT_EQ(Bytes(100000, 'x'), out);
    const Bytes empty = Compress({});
    EXPECT_TRUE(QSADecompress(empty.data(), empty.size(), out, 0));
}
