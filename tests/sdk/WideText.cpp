#include "sdk/AssertCatcher.h"
#include "sys/win/krstrconv.h"

TEST(WideText, GoesThereAndBackAtEveryLength)
{
    CAssertCatcher catcher;
    const std::wstring sUnit = L"a\u00E4\u20AC\U0001F525";
    std::wstring sWide;
    for (int n = 0; n < 70; ++n, sWide += sUnit[size_t(n) % 4])
    {
        const KRW2AEX narrow(sWide.c_str());
        EXPECT_EQ(sWide, KRA2WEX(narrow).Get());
    }
    EXPECT_STREQ("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x94\xA5", KRW2AEX(sUnit.c_str(), 65001));
    const std::string sLong(128, 'x'); // the first that needs the heap
    EXPECT_EQ(std::wstring(128, L'x'), KRA2WEX(sLong.c_str()).Get());
    EXPECT_EQ(nullptr, KRA2WEX(nullptr).Get());
    EXPECT_EQ(nullptr, KRW2AEX(nullptr).Get());
    EXPECT_EQ(0u, catcher.GetCount());
}

TEST(WideText, IllFormedTextIsReportedAndEmpty)
{
    CAssertCatcher catcher;
    // A lone follower, cut short, overlong, a surrogate, above the last code point, bytes that never stand.
    for (const char* psz : {"a\x80", "\xC3", "\xE2\x82", "\xC0\xAF", "\xE0\x80\xAF", "\xF0\x80\x80\xAF",
                            "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF", "\xC3(", "\xF8\x88\x80\x80\x80"})
    {
        EXPECT_STREQ(L"", KRA2WEX(psz).Get());
        EXPECT_EQ(" [Forced Assert]|[KRA2WEX::Init] : MultiByteToWideChar Failed", catcher.Take());
    }
    const wchar_t surrogate[] = {L'a', wchar_t(0xD800), 0};
    const wchar_t beyond[] = {wchar_t(0x110000), 0};
    for (const wchar_t* psz : {surrogate, beyond})
    {
        EXPECT_STREQ("", KRW2AEX(psz).Get());
        EXPECT_EQ(" [Forced Assert]|[KRW2AEX::Init] : WideCharToMultiByte Failed", catcher.Take());
    }
    EXPECT_STREQ(L"", KRA2WEX("a", 1252).Get()); // a code page that nobody knows
    EXPECT_EQ(1u, catcher.GetCount());
}
