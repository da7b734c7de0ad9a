#include "iqsoutconverter.h"
#include "sdk/AssertCatcher.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <unistd.h>

namespace
{

class OutStream : public testing::Test
{
protected:
    OutStream() : m_sPath("/tmp/sdk_outstream_" + std::to_string(getpid())) {}
    ~OutStream() override { std::filesystem::remove(m_sPath); }

    std::string Content() const
    {
        std::ifstream file(m_sPath, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    COutStreamPtr Open() const { return OpenFileOutStream(m_sPath.c_str()); }

    // What fill writes through a converter of this platform.
    std::string Written(const char* pszPlatform, const std::function<void(IQSOutConverter&)>& fill) const
    {
        COutStreamPtr pStream = Open();
        const COutConverterPtr pConverter = CreateOutConverter(pszPlatform, pStream);
        if (!pConverter || pStream)
            return "no converter";
        fill(*pConverter);
        EXPECT_TRUE(pConverter->Close());
        return Content();
    }

    const std::string m_sPath;
};

std::string Bytes(std::initializer_list<int> bytes)
{
    return std::string(bytes.begin(), bytes.end());
}

} // namespace

TEST_F(OutStream, PatchesLandWhereMemorySaysTheyDo)
{
    std::mt19937 random(3);
    std::string sExpected;
    size_t nPos = 0;
    {
        const COutStreamPtr pStream = Open();
        ASSERT_TRUE(pStream);
        for (int n = 0; n < 600; ++n)
        {
            const size_t nSize = n % 50 == 7 ? 65536 + random() % 3 - 1 : random() % 3000;
            std::string sBlock(nSize, char('a' + n % 26));
            ASSERT_EQ(0u, pStream->Write(sBlock.data(), uint32_t(nSize)));
            if (sExpected.size() < nPos + nSize)
                sExpected.resize(nPos + nSize);
            sExpected.replace(nPos, nSize, sBlock);
            nPos += nSize;
            ASSERT_EQ(nPos, pStream->Tell());
            if (n % 3 == 0)
            {
                nPos = n % 2 ? sExpected.size() : random() % (sExpected.size() + 1);
                ASSERT_EQ(0u, pStream->Seek(uint32_t(nPos), 5));
            }
        }
        ASSERT_EQ(0u, pStream->Seek(uint32_t(sExpected.size()) + 4, 0));
        pStream->Write("end", 3);
        sExpected += std::string(4, '\0') + "end";
        EXPECT_FALSE(pStream->HasError());
        EXPECT_TRUE(pStream->GetFlag());
    } // Release alone closes
    EXPECT_TRUE(sExpected == Content());
}

TEST_F(OutStream, TextHasItsLengthInFront)
{
    CAssertCatcher catcher;
    {
        const COutStreamPtr pStream = Open();
        EXPECT_EQ(0u, pStream->WriteText("ab"));
        EXPECT_EQ(0u, pStream->WriteText(nullptr));
        EXPECT_EQ(0u, catcher.GetCount());
        EXPECT_EQ(0u, pStream->WriteText(std::string(70000, 'x').c_str()));
        EXPECT_EQ(1u, catcher.GetCount());
    }
    const std::string s = Content();
    EXPECT_EQ(Bytes({2, 0, 'a', 'b', 0, 0, 0xFF, 0xFF}), s.substr(0, 8)); // on a machine of this order
    EXPECT_EQ(8u + 65535, s.size());
}

TEST_F(OutStream, LostBytesAreNoticedAtTheLatestByClose)
{
    COutStreamPtr pStream = OpenFileOutStream("/dev/full");
    ASSERT_TRUE(pStream);
    EXPECT_EQ(0u, pStream->Write("a", 1)); // waits
    EXPECT_FALSE(pStream->HasError());
    EXPECT_EQ(1u, pStream->Flush());
    EXPECT_TRUE(pStream->HasError());
    EXPECT_EQ(1u, pStream->Write("a", 1));

    pStream = OpenFileOutStream("/dev/full");
    COutConverterPtr pConverter = CreateOutConverter("PC", pStream);
    pConverter->WriteUint32(1);
    EXPECT_FALSE(pConverter->Close());
    EXPECT_TRUE(pConverter->HasError());
    EXPECT_FALSE(pConverter->WriteData("a", 1)); // no file any more
    EXPECT_EQ(1u, pConverter->Seek(0, 0));
    EXPECT_EQ(0u, pConverter->Tell());

    pStream = OpenFileOutStream("/dev/full");
    const std::string sLarge(100000, 'x');
    EXPECT_EQ(1u, pStream->Write(sLarge.data(), uint32_t(sLarge.size())));
    EXPECT_EQ(nullptr, OpenFileOutStream("/nowhere/file"));
    EXPECT_EQ(nullptr, OpenFileOutStream(nullptr));
}

TEST_F(OutStream, FactoryKnowsTwoTargetsAndLeavesTheStreamOtherwise)
{
    COutStreamPtr pStream = Open();
    for (const char* pszName : {"", "PS", "PC ", static_cast<const char*>(nullptr)})
        EXPECT_EQ(nullptr, CreateOutConverter(pszName, pStream));
    EXPECT_TRUE(pStream);
    EXPECT_NE("no converter", Written("pc", [](IQSOutConverter&) {}));
    EXPECT_NE("no converter", Written("XENON", [](IQSOutConverter&) {}));
    COutStreamPtr pNone;
    EXPECT_EQ(nullptr, CreateOutConverter("PC", pNone));
}

TEST_F(OutStream, TargetsDifferInByteOrderAlone)
{
    const std::function<void(IQSOutConverter&)> numbers[] = {
        [](IQSOutConverter& c) { c.WriteUint32(0x01020304); },
        [](IQSOutConverter& c) { c.WriteInt32(-2); },
        [](IQSOutConverter& c) { c.WriteFloat(1.0f); },
        [](IQSOutConverter& c) { c.WriteUint16(0x0102); },
        [](IQSOutConverter& c) { c.WriteInt16(-2); },
        [](IQSOutConverter& c) { c.WriteUint64(0x0102030405060708); },
        [](IQSOutConverter& c) { c.WriteInt64(-2); },
        [](IQSOutConverter& c) { c.WriteDouble(1.0); },
    };
    const std::string most[] = {Bytes({1, 2, 3, 4}),
                                Bytes({255, 255, 255, 254}),
                                Bytes({0x3F, 0x80, 0, 0}),
                                Bytes({1, 2}),
                                Bytes({255, 254}),
                                Bytes({1, 2, 3, 4, 5, 6, 7, 8}),
                                Bytes({255, 255, 255, 255, 255, 255, 255, 254}),
                                Bytes({0x3F, 0xF0, 0, 0, 0, 0, 0, 0})};
    for (size_t n = 0; n < std::size(numbers); ++n)
    {
        EXPECT_EQ(most[n], Written("Xenon", numbers[n])) << n;
        EXPECT_EQ(std::string(most[n].rbegin(), most[n].rend()), Written("PC", numbers[n])) << n;
    }
    const auto plain = [](IQSOutConverter& c)
    { c.WriteUint8(200).WriteInt8(-1).WriteBool(7).WriteData("\1\2", 2); };
    EXPECT_EQ(Bytes({200, 255, 7, 1, 2}), Written("PC", plain));
    EXPECT_EQ(Written("Xenon", plain), Written("PC", plain));
}

TEST_F(OutStream, CompoundValuesFollowTheirMembers)
{
    const CVector3 v{1, 2, 3};
    const CVector4 q{4, 5, 6, 7};
    const auto floats = [](std::initializer_list<float> values)
    { return std::string(reinterpret_cast<const char*>(values.begin()), values.size() * sizeof(float)); };
    EXPECT_EQ(floats({1, 2, 3, 8}), Written("PC", [&](auto& c) { c.WriteVectorAndFloat({v, 8}); }));
    EXPECT_EQ(floats({1, 2, 3, 4, 5, 6, 7, 8}), Written("PC",
                                                        [&](auto& c) {
                                                            c.WriteVectorQuadFloat({v, q, 8});
                                                        }));
    EXPECT_EQ(floats({1, 2, 3, 4, 5, 6, 7}), Written("PC", [&](auto& c) { c.WriteVectorQuad({v, q}); }));
    EXPECT_EQ(floats({4, 5, 6, 7, 9, 9}), Written("PC",
                                                  [&](auto& c) {
                                                      c.WriteVector4(q).WriteVector2({9, 9});
                                                  }));

    CAssertCatcher catcher;
    EXPECT_EQ(Bytes({0, 0, 0, 0, 0, 2, 'a', 0xE4}),
              Written("Xenon", [](auto& c) { c.WriteString("").WriteString(nullptr).WriteString("a\xE4"); }));
    EXPECT_EQ(0u, catcher.GetCount());
    EXPECT_EQ(65537u, Written("PC", [](auto& c) { c.WriteString(std::string(65536, 'x').c_str()); }).size());
    EXPECT_EQ("IQSOutConverter::WriteString", catcher.GetLast().m_sFunction);
    EXPECT_EQ("nStrLen <= 0xFFFF|", catcher.Take());
}
