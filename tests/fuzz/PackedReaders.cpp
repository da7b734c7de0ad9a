// The editor's strict reader of packed files knows the schema, the one for games only the structure: whatever the
// first one takes, the second one takes.

#include <gtest/gtest.h>

#include <random>

#include "FuzzLibrary.h"
#include "support/LibraryBuilder.h"

namespace
{
struct CPackedReaders : testing::Test
{
    bool Strict(const std::string& sBytes)
    {
        CPackedLibrary library;
        m_sError.clear();
        return ReadPackedLibrary(sBytes, m_pTypes->m_Module, library, m_sError);
    }
    bool Game(const std::string& sBytes)
    {
        CGameFile game, other;
        const bool bOpened = game.Open(sBytes, *m_pTypes->m_Plugin.table());
        m_sGameError = game.Why();
        // Neither the byte order nor the address makes a difference.
        if (bOpened && other.Open(InOtherOrder(sBytes, game.m_File), *m_pTypes->m_Plugin.table()))
            EXPECT_EQ(game.Digest(), other.Digest());
        else if (bOpened)
            ADD_FAILURE() << "in the other byte order: " << other.Why();
        return bOpened;
    }
    std::string Pack(CTestLibrary& library, const char* pszTarget = "PC")
    {
        const CMemoryFile file;
        EXPECT_TRUE(PackEffectLibrary(file.Path(), library.m_SpellMgr, library.Module(), nullptr, pszTarget));
        return file.Read();
    }
    std::vector<std::string> Libraries()
    {
        std::vector<std::string> all;
        const auto pRich = aLibrary(m_pTypes)
                               .prefab("Sprite", "Puff")
                               .value("Size", 3.0)
                               .effect("Smoke")
                               .length(5000)
                               .key("Sprite", 0, 1500)
                               .value("Label", "one")
                               .curve<double>("Size", {{0.0f, 0.5}, {0.25f, 2.0}, {1.0f, 1.0}})
                               .key("Light", 1500, 2000)
                               .track()
                               .key("Sprite", 100, 200)
                               .onPrefab("Puff")
                               .key("Marker")
                               .effect("Fog")
                               .build();
        const auto pPlain = aLibrary(m_pTypes).effect("A").key("Light").effect("B").key("Marker").build();
        const auto pEmpty = aLibrary(m_pTypes).build();
        for (const auto* pLibrary : {&pRich, &pPlain, &pEmpty})
            for (const char* pszTarget : {"PC", "Xenon"})
                all.push_back(Pack(**pLibrary, pszTarget));
        return all;
    }

    std::shared_ptr<CTestModule> m_pTypes = std::make_shared<CTestModule>();
    std::string m_sError, m_sGameError;
};

uint32_t WordAt(const std::string& s, size_t nAt)
{
    uint32_t n = 0;
    std::memcpy(&n, s.data() + nAt, 4);
    return n;
}
void SetWord(std::string& s, size_t nAt, uint32_t nValue)
{
    std::memcpy(s.data() + nAt, &nValue, 4);
}
} // namespace

TEST_F(CPackedReaders, TheGameTakesWhatDumpTakes)
{
    const std::vector<std::string> libraries = Libraries();
    std::mt19937 random(7);
    const uint32_t aWords[] = {0,          1,          0x7FC00000, 0x7F800000, 0xFF800000,
                               0x80000000, 0x3F800000, 0xFFFFFFFF, 4,          0xBF800000};
    int nAccepted = 0, nGameOnly = 0;
    const char* pszRounds = std::getenv("EMBERDECK_ROUNDS"); // for a long run
    const int nRounds = pszRounds ? std::max(std::atoi(pszRounds), 10000) : 10000;
    for (int nRound = 0; nRound < nRounds; ++nRound)
    {
        std::string s = libraries[random() % libraries.size()];
        for (uint32_t n = 1 + random() % 2; n > 0; --n)
        {
            const size_t nAt = random() % (s.size() / 4) * 4, nOther = random() % (s.size() / 4) * 4;
            switch (random() % 6)
            {
            case 0:
                s[nAt + random() % 4] ^= char(1 << random() % 8);
                break;
            case 1:
                SetWord(s, nAt, aWords[random() % std::size(aWords)]);
                break;
            case 2:
                SetWord(s, nAt, WordAt(s, nOther));
                break;
            case 3:
                SetWord(s, nAt, WordAt(s, nAt) + 4 * (random() % 5) - 8);
                break;
            case 4:
                SetWord(s, nAt, random());
                break;
            default:
                random() % 2 ? s.erase(nAt, 4) : s.insert(nAt, s.substr(nOther, 4));
            }
        }
        const bool bStrict = Strict(s), bGame = Game(s);
        ASSERT_TRUE(!bStrict || bGame) << "mutation " << nRound << ": " << m_sGameError;
        nAccepted += bStrict;
        nGameOnly += bGame && !bStrict;
    }
    EXPECT_GT(nAccepted, 200);
    EXPECT_GT(nGameOnly, 100); // what only the schema tells
    std::printf("%d accepted by both, %d by the game alone\n", nAccepted, nGameOnly);
}

// A curve that many keys inherit is read once, and takes its memory once.
TEST_F(CPackedReaders, ALongCurveThatManyKeysInherit)
{
    std::vector<std::pair<float, double>> points;
    for (int i = 0; i < 2000; ++i)
        points.emplace_back(float(i) / 1999, i % 100);
    auto builder = aLibrary(m_pTypes);
    builder.prefab("Sprite", "P").curve<double>("Size", points).effect("E");
    for (int i = 0; i < 5000; ++i)
        builder.key("Sprite", i, i + 1).onPrefab("P");
    const std::string sBytes = Pack(*builder.build());
    CPackedLibrary library;
    ASSERT_TRUE(ReadPackedLibrary(sBytes, m_pTypes->m_Module, library, m_sError)) << m_sError;
    EXPECT_TRUE(Game(sBytes)) << m_sGameError;
    const auto& keys = library.m_Effects[0].m_Keys;
    ASSERT_EQ(5000u, keys.size());
    EXPECT_EQ(2000u, keys[4999].m_Properties[3].m_Keys.size());
    EXPECT_EQ(keys[0].m_Properties[3].m_Keys.begin(), keys[4999].m_Properties[3].m_Keys.begin());
}

// Equal words are one curve, whatever numbers they have in the lists: those of the first property are in the file.
TEST_F(CPackedReaders, EnumCurvesOfUnlikeListsShareARecord)
{
    m_pTypes = std::make_shared<CTestModule>(
        [](CTestPlugin& plugin)
        {
            plugin.type("T").prop(ePropType_Enum, "Long").data("a,b,c").def("a").step();
            plugin.prop(ePropType_Enum, "Short").data("c,a").def("a").step();
        });
    const std::vector<std::pair<float, const char*>> words = {{0.0f, "c"}, {0.5f, "a"}};
    const auto pLibrary =
        aLibrary(m_pTypes).effect("E").key("T").curve("Long", words).curve("Short", words).build();
    std::string s = Pack(*pLibrary);
    ASSERT_EQ(20u, WordAt(s, 16)) << "one record";
    EXPECT_TRUE(Strict(s)) << m_sError;
    EXPECT_TRUE(Game(s)) << m_sGameError;
    const uint32_t nCurves = WordAt(s, 32) + WordAt(s, 12);
    ASSERT_EQ(2u, WordAt(s, nCurves + 8));
    SetWord(s, nCurves + 8, 3); // in neither list
    EXPECT_FALSE(Strict(s));
}

// Unsound by the schema alone: each was a file that dump took.
TEST_F(CPackedReaders, DumpKnowsTheSchema)
{
    const auto pLibrary = aLibrary(m_pTypes).effect("E").key("Light").build();
    const std::string sGood = Pack(*pLibrary);
    ASSERT_TRUE(Strict(sGood)) << m_sError;
    const uint32_t nStrings = WordAt(sGood, 32), nCurves = nStrings + WordAt(sGood, 12),
                   nEffects = nCurves + WordAt(sGood, 16), nNames = WordAt(sGood, 36);
    const uint32_t nKey = nEffects + 12, nRadius = nKey + 24 + 12;
    const auto error = [&](size_t nAt, uint32_t nValue)
    {
        std::string s = sGood;
        SetWord(s, nAt, nValue);
        return Strict(s) ? "" : m_sError;
    };
    const auto holds = [](const std::string& s, const char* pszPart)
    { return s.find(pszPart) != std::string::npos; };
    EXPECT_TRUE(holds(error(nRadius + 8, 0), "beyond the range of property Radius")); // at least a half
    EXPECT_TRUE(holds(error(nRadius + 8, 0x7FC00000), "beyond the range"));           // no number
    EXPECT_TRUE(holds(error(nKey + 4, 0x7FC00000), "no whole millisecond"));
    EXPECT_TRUE(holds(error(nKey + 8, 0x3F800001), "no whole millisecond"));
    EXPECT_TRUE(holds(error(nCurves + 8, 0x3F000000), "no 255th"));
    EXPECT_TRUE(holds(error(nCurves + 4, 0x3F000000), "times of property Color"));

    // The last record is left out.
    std::string s = sGood;
    s.erase(nNames - 12, 12);
    SetWord(s, 36, nNames - 12);
    SetWord(s, nKey + 20, 2);
    EXPECT_FALSE(Strict(s));
    EXPECT_TRUE(holds(m_sError, "2 properties, but the type Light has 3")) << m_sError;

    // A record of the curve table once more, and a text that nothing refers to.
    const uint32_t nFlicker = nCurves + 44, nSize = nEffects - nFlicker;
    s = sGood;
    s.insert(nEffects, s.substr(nFlicker, nSize));
    EXPECT_FALSE(Strict(s));
    s = sGood;
    s.insert(nCurves, std::string("odd\0", 4));
    for (const uint32_t nField : {12u, 36u})
        SetWord(s, nField, WordAt(s, nField) + 4);
    for (uint32_t n = nKey + 4 + 24; n < nNames + 4; n += 12)
        SetWord(s, n + 4, WordAt(s, n + 4) + 4);
    EXPECT_FALSE(Strict(s));
    EXPECT_TRUE(holds(m_sError, "a text that nothing refers to")) << m_sError;
}
