#include "NodeSupport.h"
#include "plain/PlainNodeReader.h"
#include "qsamgr/qsacompressedfile.h"
#include "qsamgr/qsanodereader.h"
#include "qsamgr/qsareader.h"
#include "qsamgr/qsatextloader.h"
#include "qsamgr/qsatextscan.h"
#include "sdk/AssertCatcher.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

namespace
{
constexpr const char* c_pszFailed = "FAILED";

void AppendPlain(const CPlainNode& node, std::string& sText)
{
    if (node.m_bAtom)
    {
        sText += node.m_bString ? '"' + node.m_sValue + '"' : '<' + node.m_sValue + '>';
        return;
    }
    sText += '(';
    for (const CPlainNode& element : node.m_Elements)
        AppendPlain(element, sText);
    sText += ')';
}

std::string ByTwin(const std::string& sText)
{
    CPlainNode root;
    std::string sTree;
    if (!PlainReadNodes(sText, root.m_Elements))
        return c_pszFailed;
    AppendPlain(root, sTree);
    return sTree;
}

std::string ByTextLoader(const std::string& sText)
{
    // A copy of exactly this size, so that a sanitizer sees a read beside it.
    const std::unique_ptr<char[]> pExact(new char[sText.size()]);
    std::copy(sText.begin(), sText.end(), pExact.get());
    CQSALoadOnlyAlloc alloc(2000);
    CRoot root(alloc);
    const bool bOk = QSALoadText(pExact.get(), sText.size(), &root, &alloc);
    return bOk ? TreeText(&root) : TreeText(&root) == "()" ? c_pszFailed : "a failure touched the root";
}

template <class TAlloc>
std::string ByFile(const std::string& sPath, bool bCompressed, TAlloc&& alloc)
{
    CRoot root(alloc);
    return CQSANodeReader::LoadEntireFile(sPath.c_str(), bCompressed, &root, &alloc) ? TreeText(&root)
                                                                                     : c_pszFailed;
}

// The text by all roads, which must agree: the twin, the loader in memory and from a file, the tokens.
std::string Load(const std::string& sText, bool bFromFile = true)
{
    static const CTempDir s_Dir;
    const std::string sTree = ByTwin(sText);
    EXPECT_EQ(sTree, ByTextLoader(sText)) << sText.substr(0, 2000);
    if (bFromFile)
    {
        const std::string sPath = s_Dir.write("text", sText);
        EXPECT_EQ(sTree, ByFile(sPath, false, CQSALoadOnlyAlloc(262144))) << sText.substr(0, 2000);
        EXPECT_EQ(sTree, ByFile(sPath, false, CQSADefaultAlloc())) << sText.substr(0, 2000);
    }
    return sTree;
}
} // namespace

TEST(TextLoading, FollowsTheSyntax)
{
    struct CCase
    {
        const char* m_pszText;
        const char* m_pszTree;
    };
    for (const CCase& c : {CCase{"", "()"},
                           {" \t\r\n ", "()"},
                           {"(", "()"},
                           {"(((", "()"},
                           {"(a", "((<a>))"},
                           {"( a b", "((<a><b>))"},
                           {")(x)", "((<x>))"},
                           {"(a)(b)", "((<a>)(<b>))"},
                           {"a(b)", "(<a>(<b>))"},
                           {"\"(x\ny)\"", "(\"(x\ny)\")"},
                           {"\"\"", "(\"\")"},
                           {"\"", "(\"\")"},
                           {"a\"b\"", "(<a>\"b\")"},
                           {"\"a\"b", "(\"a\"<b>)"},
                           {"\"a\\\"b\"", "(\"a\\\"<b>\"\")"},
                           {"; # //\v\f", "(<;><#><//\v\f>)"},
                           {"(a)\r\n\t(\xE4\xFF)", "((<a>)(<\xE4\xFF>))"},
                           {"a (", "(<a>)"},
                           {"()", "(())"},
                           {"(a((", "((<a>(())))"},
                           {"-1.5e3", "(<-1.5e3>)"},
                           {"()()(", "(()())"},
                           {"\"a\"\"b\"", "(\"a\"\"b\")"}})
        EXPECT_EQ(c.m_pszTree, Load(c.m_pszText)) << c.m_pszText;
    EXPECT_EQ("(<a><>\"c\")", Load(std::string("a\0b \0x \"c\0d\"", 12)))
        << "a NUL ends the text, not the token";
}

TEST(TextLoading, CutsLongAtoms)
{
    const auto Text = [](size_t nLen) { return std::string(nLen - 1, 'v') + "e"; };
    for (const size_t nLen : {1022, 1023, 1024, 1025, 5000, 70000, 200000})
    {
        const std::string sKept = Text(nLen).substr(0, 1023);
        EXPECT_EQ("(<" + sKept + "><n>)", Load(Text(nLen) + " n"));
        EXPECT_EQ("(\"" + sKept + "\"<n>)", Load("\"" + Text(nLen) + "\"n"));
        EXPECT_EQ("(\"" + sKept + "\")", Load("\"" + Text(nLen))) << "no closing quote";
    }
    // Atoms at every place around the end of a block and of the reading window.
    for (const size_t nEdge : {64, 4096, 65536})
    {
        for (size_t nBefore = nEdge - 20; nBefore <= nEdge + 2; ++nBefore)
            Load(std::string(nBefore, ' ') + "value17characters\"(string)\"(x)\"\"y");
    }
}

TEST(TextLoading, HoldsToItsLimits)
{
    EXPECT_EQ(std::string(1024, '(') + "<a>" + std::string(1024, ')'), Load(std::string(1023, '(') + "a"));
    EXPECT_EQ(c_pszFailed, Load(std::string(1024, '(')));
    EXPECT_EQ(c_pszFailed, Load("(a) " + std::string(1024, '(') + std::string(1024, ')')));

    constexpr size_t c_nMost = 2097152;
    std::string sFull;
    for (size_t i = 0; i < c_nMost; ++i)
        sFull += "a ";
    EXPECT_EQ(c_pszFailed, ByTextLoader(sFull + "a"));
    EXPECT_EQ(c_nMost * 3 + 2, ByTextLoader(sFull + "()").size()) << "a list that finds no place is dropped";
    const std::string sRoomAgain = "(" + sFull + "()) b (c"; // what is in a closed list waits no longer
    EXPECT_TRUE(ByTwin(sRoomAgain) == ByTextLoader(sRoomAgain));
}

TEST(TextLoading, AllRoadsAgree)
{
    std::mt19937 random(20);
    const auto Below = [&](size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(random); };
    constexpr char c_szAlphabet[] = "(()) \"\"ab\t\r\n\\;\0\xFF";
    for (int i = 0; i < 3000; ++i)
    {
        std::string sText;
        for (size_t n = Below(300); n != 0; --n)
        {
            const char c = c_szAlphabet[Below(sizeof(c_szAlphabet) - 1)];
            sText.append(Below(8) == 0 ? Below(90) : 1, c);
        }
        Load(sText, i % 4 == 0);
        ASSERT_FALSE(HasFailure());
    }
    // A library as it is saved, with a few bytes changed; every place of the change, all ends of the text.
    std::string sLibrary;
    for (int i = 0; i < 30; ++i)
        sLibrary += "( effect\r\n\t( name \"Smoke " + std::to_string(i) +
                    "\" )\r\n\t( key-list\r\n\t\t( key\r\n\t\t\t( time 0.500000 )\r\n\t\t)\r\n\t)\r\n)\r\n";
    for (int i = 0; i < 2000; ++i)
    {
        std::string sText = sLibrary;
        for (size_t n = Below(4); n != 0; --n)
            sText[Below(sText.size())] = c_szAlphabet[Below(sizeof(c_szAlphabet) - 1)];
        sText.resize(sText.size() - Below(2) * Below(sText.size()));
        Load(sText, i % 4 == 0);
        ASSERT_FALSE(HasFailure());
    }
}

TEST(TextLoading, GivesATreeThatCanBeChanged)
{
    CQSALoadOnlyAlloc alloc(2000);
    CRoot root(alloc);
    const std::string sText = "(name 12345678901 \"a text beyond a node\" (x)) last";
    ASSERT_TRUE(QSALoadText(sText.data(), sText.size(), &root, &alloc));
    CQSANode* pList = root.GetElement(0);
    CQSANode* pFirst = pList->GetElement(0);
    CQSANode* pSecond = pList->GetElement(1);
    pList->SetElement(pSecond, 0);
    pList->SetElement(pFirst, 1);
    EXPECT_EQ(pSecond, pList->GetElement(0));
    EXPECT_EQ("((<12345678901><name>\"a text beyond a node\"(<x>))<last>)", TreeText(&root));
    ASSERT_TRUE(pSecond->SetValue(pSecond->GetValue() + 9, true, &alloc)) << "the end of its own text";
    ASSERT_TRUE(pFirst->SetValue("another text that is longer", false, &alloc));
    ASSERT_TRUE(pList->GetElement(3)->AppendElement(alloc.AllocateNode(), &alloc));
    pList->GetElement(2)->Free(&alloc);
    EXPECT_EQ("((\"01\"<another text that is longer>()(<x>()))<last>)", TreeText(&root));

    // Another text behind it, and then memory that is used again.
    ASSERT_TRUE(QSALoadText("(b)", 3, &root, &alloc));
    EXPECT_EQ("(<last>(<b>))",
              TreeText(&root).substr(0, 1) + TreeText(&root).substr(TreeText(&root).size() - 12));
    std::set<const void*> seen;
    for (int i = 0; i < 3; ++i)
    {
        root.Free(&alloc);
        alloc.Reset();
        ASSERT_TRUE(QSALoadText(sText.data(), sText.size(), &root, &alloc));
        EXPECT_EQ("((<name><12345678901>\"a text beyond a node\"(<x>))<last>)", TreeText(&root));
        seen.insert(root.GetElement(0));
    }
    EXPECT_EQ(1u, seen.size()) << "the same block each time";
}

TEST(TextLoading, ReadsTheContainer)
{
    CTempDir dir;
    std::string sText;
    for (int i = 0; i < 20000; ++i)
        sText += "( name \"Smoke " + std::to_string(i * 7919) + "\" )\r\n";
    {
        CQSAFile file(dir.path("c").c_str(), false, true, false);
        ASSERT_TRUE(file.WriteBlock(sText.data(), static_cast<uint32_t>(sText.size())));
        ASSERT_TRUE(file.Close());
    }
    const std::string sTree = ByTextLoader(sText);
    EXPECT_TRUE(sTree == ByFile(dir.path("c"), true, CQSALoadOnlyAlloc(262144)));
    EXPECT_TRUE(sTree == ByFile(dir.path("c"), true, CBookAlloc()));
    EXPECT_EQ(c_pszFailed, ByFile(dir.write("a", sText.substr(0, 99)), true, CQSALoadOnlyAlloc(262144)))
        << "a wrong header";
    // An end that stands within an atom ends the atom alone, and the next token is looked for behind it: the
    // road by tokens is the measure.
    std::mt19937 random(21);
    int nDifferent = 0;
    for (int i = 0; i < 60; ++i)
    {
        std::string sDamaged = ReadBytes(dir.path("c")).substr(0, 4 + random() % 90000);
        for (int n = 0; n < 40 && sDamaged.size() > 4; ++n)
            sDamaged[4 + random() % (sDamaged.size() - 4)] = n % 3 == 0 ? char(random()) : '\0';
        const std::string sPath = dir.write("damaged", sDamaged);
        const std::string sByTokens = ByFile(sPath, true, CQSADefaultAlloc());
        ASSERT_TRUE(sByTokens == ByFile(sPath, true, CQSALoadOnlyAlloc(262144))) << i;
        std::vector<uint8_t> upToTheEnd;
        const auto* pBytes = reinterpret_cast<const uint8_t*>(sDamaged.data());
        ASSERT_TRUE(QSADecompress(pBytes, sDamaged.size(), upToTheEnd));
        nDifferent += sByTokens != ByTwin(std::string(upToTheEnd.begin(), upToTheEnd.end()));
    }
    EXPECT_GT(nDifferent, 10);
    EXPECT_EQ(c_pszFailed, ByFile(dir.path("missing"), false, CQSALoadOnlyAlloc(262144)));
    EXPECT_EQ(c_pszFailed, ByFile(dir.dir(), false, CQSALoadOnlyAlloc(262144)));
}

TEST(TextLoading, TokensLeaveTheRestToTheNextReader)
{
    CTempDir dir;
    const std::string sPath = dir.write("t", "first(\"second\" 12345");
    CQSAReader reader;
    char szToken[4] = "##";
    {
        CAssertCatcher catcher;
        EXPECT_EQ(TOKEN_END, reader.NextToken(szToken, sizeof(szToken))) << "closed";
        EXPECT_EQ("m_eMode == OPEN_READ|", catcher.Take());
    }
    ASSERT_TRUE(reader.Open(sPath.c_str(), false));
    EXPECT_EQ(TOKEN_VALUE, reader.NextToken(szToken, sizeof(szToken)));
    EXPECT_STREQ("fir", szToken);
    EXPECT_EQ(TOKEN_OPEN, reader.NextToken(szToken, sizeof(szToken)));
    CQSADefaultAlloc alloc;
    CRoot root(alloc);
    ASSERT_TRUE(CQSANodeReader::LoadEntireFile(&reader, &root, &alloc));
    EXPECT_EQ("(\"second\"<12345>)", TreeText(&root));
    EXPECT_FALSE(reader.IsOpen());
    EXPECT_FALSE(CQSANodeReader::LoadEntireFile(&reader, &root, &alloc));

    ASSERT_TRUE(reader.Open(dir.write("deep", std::string(1024, '(')).c_str(), false));
    EXPECT_FALSE(CQSANodeReader::LoadEntireFile(&reader, &root, &alloc));
    EXPECT_TRUE(reader.IsOpen());
    ASSERT_TRUE(reader.Open(sPath.c_str(), false));
    EXPECT_EQ(TOKEN_VALUE, reader.NextToken(szToken, 2));
    EXPECT_STREQ("f", szToken);
}

TEST(TextLoading, LeaksNothingWhicheverAllocationFails)
{
    CTempDir dir;
    const std::string sPath = dir.write("t", "(a (b \"c\") ()) d (e");
    CAssertCatcher catcher;
    int nFailAt = 1;
    for (;; ++nFailAt)
    {
        CBookAlloc alloc(nFailAt);
        ByFile(sPath, false, alloc);
        EXPECT_EQ(0, alloc.m_nOut) << nFailAt;
        if (alloc.m_nCalls < nFailAt)
            break;
    }
    EXPECT_GT(nFailAt, 15);
    EXPECT_EQ(0u, catcher.GetCount());
    EXPECT_FALSE(CQSANodeReader::LoadEntireFile(sPath.c_str(), false, nullptr, nullptr));
    EXPECT_EQ("pAllocator|", catcher.Take().substr(0, 11));
}

TEST(TextLoading, KernelsSeeTheSameBytes)
{
    std::mt19937 random(7);
    constexpr char c_szMeaningful[] = "\"() \t\r\n\x22\xA2\xA8\xA9\xA0\x89\x8A\x8D";
    std::string sText(64 * 200, '\0');
    for (size_t i = 0; i < sText.size(); ++i)
        sText[i] =
            random() % 2 ? static_cast<char>(i) : c_szMeaningful[random() % (sizeof(c_szMeaningful) - 1)];
    std::vector<CQSATextMasks> plain(200), other(200);
    QSAScanPlain(sText.data(), 200, plain.data());
    for (size_t i = 0; i < sText.size(); ++i)
    {
        const auto Bit = [&](uint64_t nMask) { return (nMask >> i % 64 & 1) != 0; };
        const CQSATextMasks& masks = plain[i / 64];
        ASSERT_EQ(sText[i] == '"', Bit(masks.m_nQuote)) << i;
        ASSERT_EQ(sText[i] == '(' || sText[i] == ')', Bit(masks.m_nParen)) << i;
        ASSERT_EQ(std::string(" \t\r\n").find(sText[i]) != std::string::npos, Bit(masks.m_nWhite)) << i;
    }
    std::vector<QSAScanFn> kernels{QSAPickScan()};
    std::vector<QSAIndexFn> indexers{QSAPickIndex()};
#if defined(__x86_64__)
    kernels.push_back(QSAScanSSE2);
    indexers.push_back(QSAIndexSSE2);
#endif
    for (const QSAScanFn pfnScan : kernels)
    {
        pfnScan(sText.data(), 200, other.data());
        EXPECT_EQ(0, std::memcmp(plain.data(), other.data(), 200 * sizeof(CQSATextMasks)));
    }
    for (const QSAIndexFn pfnIndex : indexers)
    {
        CQSATextState state, otherState;
        for (size_t nBlock = 0; nBlock < 192; nBlock += c_nIndexBlocks)
        {
            uint16_t aEdges[c_nIndexRoom], aOther[c_nIndexRoom];
            const uint32_t nCount = QSAIndexPlain(&plain[nBlock], c_nIndexBlocks, state, aEdges);
            ASSERT_EQ(nCount, pfnIndex(&plain[nBlock], c_nIndexBlocks, otherState, aOther));
            EXPECT_TRUE(std::equal(aEdges, aEdges + nCount, aOther));
        }
    }
}
