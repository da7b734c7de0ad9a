#include "sdk/AssertCatcher.h"

namespace
{

struct CTwoSites
{
    static void Check(int n)
    {
        QS_ASSERT(n < 3);
        QS_ASSERT(n < 3);
    }
    template <typename T>
    T operator+(const std::vector<T>& v) const
    {
        QS_ASSERT_MSG(v.empty(), "%d items in %s", int(v.size()), "it");
        return {};
    }
};

} // namespace

TEST(AssertSite, PassesItsTextsAndGoesOn)
{
    CAssertCatcher catcher;
    ASSERT_TRUE(catcher.IsActive());
    CTwoSites::Check(2);
    EXPECT_EQ(0u, catcher.GetCount());

    CTwoSites::Check(3);
    ASSERT_EQ(2u, catcher.GetCount());
    EXPECT_EQ("CTwoSites::Check", catcher.GetLast().m_sFunction);
    EXPECT_NE(std::string::npos, catcher.GetLast().m_sFile.find("AssertSite.cpp"));
    EXPECT_EQ(11, catcher.GetLast().m_nLine);
    EXPECT_EQ("n < 3|", catcher.Take());

    CTwoSites() + std::vector<int>{1, 2};
    EXPECT_EQ("CTwoSites::operator+", catcher.GetLast().m_sFunction);
    EXPECT_EQ("v.empty()|2 items in it", catcher.Take());

    QS_ASSERT_FORCED("Kind %u", 7u);
    EXPECT_EQ(" [Forced Assert]|Kind 7", catcher.Take());
}

TEST(AssertSite, IgnoreKeepsThatSiteSilentAlone)
{
    const auto twoSites = [](bool bOther)
    {
        if (!bOther)
            QS_ASSERT(false);
        else
            QS_ASSERT(false);
    };
    CAssertCatcher ignore(ASSERT_RESULT_IGNORE);
    twoSites(false);
    twoSites(false);
    EXPECT_EQ(1u, ignore.GetCount());
    twoSites(true);
    EXPECT_EQ(2u, ignore.GetCount());
}

TEST(AssertSite, TrapsAndAbortsWhenTold)
{
    const auto failWith = [](int32_t nAnswer)
    {
        CAssertCatcher catcher(nAnswer);
        QS_ASSERT(false);
    };
    EXPECT_EXIT(failWith(ASSERT_RESULT_DEBUG), testing::KilledBySignal(SIGTRAP), "");
    EXPECT_EXIT(failWith(ASSERT_RESULT_ABORT), testing::KilledBySignal(SIGABRT), "");
}

TEST(AssertSite, FailureInsideTheHandlerEndsThere)
{
    static int s_nCalls;
    static int32_t s_nInner;
    s_nCalls = 0;
    const AssertHandler pfnFailing = [](const CAssertReport&, void*)
    {
        ++s_nCalls;
        s_nInner = AssertFailed("inner", "file", 1, "function", "");
        return int32_t(ASSERT_RESULT_IGNORE);
    };
    ASSERT_TRUE(SetAssertHandler(pfnFailing, nullptr));
    EXPECT_EQ(ASSERT_RESULT_IGNORE, AssertFailed("outer", "file", 1, "function", ""));
    EXPECT_EQ(ASSERT_RESULT_IGNORE,
              AssertFailed("outer", "file", 1, "function", "")); // the way is free again
    SetAssertHandler(nullptr, nullptr);
    EXPECT_EQ(2, s_nCalls);
    EXPECT_EQ(ASSERT_RESULT_CONTINUE, s_nInner);
}

TEST(AssertSite, FunctionNameIsCutFromEverySignature)
{
    const struct
    {
        const char* m_pszSignature;
        const char* m_pszName;
    } cases[] = {
        {"CQSANode* CQSANode::GetElement(uint32_t) const", "CQSANode::GetElement"},
        {"int main(int, char**)", "main"},
        {"virtual CSpell::~CSpell()", "CSpell::~CSpell"},
        {"std::map<int, std::pair<A, B> >& CFoo<T>::Get(void (*)(int)) [with T = std::vector<int>]",
         "CFoo::Get"},
        {"bool {anonymous}::CFoo::operator()(int) const", "CFoo::operator()"},
        {"bool (anonymous namespace)::CFoo::operator<(const CFoo &) const", "CFoo::operator<"},
        {"CFoo::operator bool() const", "CFoo::operator bool"},
        {"CBar* CFoo::operator->()", "CFoo::operator->"},
        {"int CFoo::operators(int)", "CFoo::operators"},
        {"CFoo::Run(int)::<lambda(const CBar&)>", "CFoo::Run"},
        {"void Outer(int)::CLocal::Run(int)", "Outer::CLocal::Run"},
        {"void (* CFoo::Handler(int))(char)", "CFoo::Handler"},
        {"auto CFoo::Go(T) [T = int]", "CFoo::Go"},
        {"", ""},
        {")))", ""},
    };
    char szName[64];
    for (const auto& c : cases)
    {
        CutFunctionName(c.m_pszSignature, szName, sizeof szName);
        EXPECT_STREQ(c.m_pszName, szName) << c.m_pszSignature;
    }
    CutFunctionName("void Function()", szName, 5);
    EXPECT_STREQ("Func", szName);
}
