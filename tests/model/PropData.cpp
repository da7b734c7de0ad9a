#include "model/PropData.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include "sdk/AssertCatcher.h"

namespace
{

// The payload as a plain array of 256 bytes, which CPropData has to behave like.
struct CPlainData
{
    uint8_t m_aBytes[256] = {};
    void SetText(const std::string& s)
    {
        std::memset(m_aBytes, 0, sizeof(m_aBytes));
        std::memcpy(m_aBytes, s.data(), s.size());
    }
};

void ExpectSame(const CPlainData& plain, const CPropData& data)
{
    uint8_t aBytes[256];
    data.CopyTo(aBytes);
    ASSERT_EQ(0, std::memcmp(plain.m_aBytes, aBytes, sizeof(aBytes)));
    const char* pszPlain = reinterpret_cast<const char*>(plain.m_aBytes);
    ASSERT_EQ(std::string(pszPlain, strnlen(pszPlain, 255)), data.GetText());
    int32_t nInt;
    std::memcpy(&nInt, plain.m_aBytes, sizeof(nInt));
    ASSERT_EQ(nInt, data.GetInt());
    const CVector3 v = data.GetVector();
    ASSERT_EQ(0, std::memcmp(plain.m_aBytes, &v, sizeof(v)));
}

} // namespace

// Each kind reads what any other wrote, in lengths round the turn from the inline form to the heap.
TEST(PropData, BehavesAsAPlainArray)
{
    std::mt19937 random(1);
    CPlainData plain[3];
    CPropData data[3];
    const size_t aLengths[] = {0, 1, 3, 4, 11, 12, 14, 15, 16, 17, 200, 255};
    for (int nStep = 0; nStep < 20000; ++nStep)
    {
        const size_t i = random() % 3, j = random() % 3;
        const auto nValue = static_cast<int32_t>(random() << (random() % 4 * 8));
        switch (random() % 7)
        {
        case 0:
            data[i].SetInt(nValue);
            std::memcpy(plain[i].m_aBytes, &nValue, sizeof(nValue));
            break;
        case 1:
        {
            const CVector3 v{float(nValue), 0.0f, random() % 2 ? 1.0f : 0.0f};
            data[i].SetVector(v);
            std::memcpy(plain[i].m_aBytes, &v, sizeof(v));
            break;
        }
        case 2:
        {
            const std::string s(aLengths[random() % std::size(aLengths)], 'x');
            data[i].SetText(s);
            plain[i].SetText(s);
            break;
        }
        case 3:
            for (uint8_t& n : plain[i].m_aBytes)
                n = random() % 3 ? 0 : uint8_t(random());
            data[i].Assign(plain[i].m_aBytes);
            break;
        case 4:
            data[i] = data[j];
            plain[i] = plain[j];
            break;
        case 5:
        {
            CPropData moved(std::move(data[i]));
            ASSERT_EQ("", data[i].GetText());
            ASSERT_EQ(0, data[i].GetInt());
            data[i] = std::move(moved);
            break;
        }
        default:
            data[i].SetColor(0);
            std::memset(plain[i].m_aBytes, 0, 4);
            break;
        }
        ExpectSame(plain[i], data[i]);
    }
}

TEST(PropData, TextIsCutAndReported)
{
    CAssertCatcher catcher;
    CPropData data;
    data.SetText(std::string(255, 'a'));
    EXPECT_EQ("", catcher.Take());
    data.SetText(std::string(256, 'b'));
    EXPECT_EQ("nBufferChars > QSStrLen(pSrc)|QSStrCpy : Copy source is truncated", catcher.Take());
    EXPECT_EQ(std::string(255, 'b'), data.GetText());
    data.SetText(data.GetText().substr(200)); // a part of itself
    EXPECT_EQ(std::string(55, 'b'), data.GetText());
    data.SetText(std::string_view("ab\0cd", 5));
    EXPECT_EQ("ab", data.GetText());
    EXPECT_STREQ("ab", data.GetText().data());
    const std::string sFull(256, 'c'); // a descriptor's default without a NUL
    data.Assign(sFull.data());
    EXPECT_EQ(255u, data.GetText().size());
}
