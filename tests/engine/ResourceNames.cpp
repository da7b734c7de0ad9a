#include "shared/engine/ProjectLocator.h"

#include <cstring>

#include "support/WorkingDir.h"

TEST(PackedName, FollowsTheTable)
{
    const struct
    {
        const char* m_pszSource;
        const char* m_pszPacked;
        bool m_bResult;
    } cases[] = {
        {"a.World00a", "a.World00p", true},
        {"a.World00c", "a.World00p", true},
        {"a.Model00a", "a.Model00p", true},
        {"a.model00C", "a.Model00p", true},
        {"fx\\a.FX00A", "fx\\a.Fx00p", true},
        {"a.b.Fx00c", "a.b.Fx00p", true},
        {"a.DDS", "a.DDS", true},
        {"a.TxAnm00a", "a.TxAnm00", true},
        {"a.TxAnm00c", "a.TxAnm00", true},
        {"a.Texture00a", "a.dds", true},
        {"a.Texture00c", "a.dds", true},
        {"a.Bik", "a.Bik", true},
        {"a.fx", "a.fx", true},
        {"a.MAT00", "a.MAT00", true},
        {"a.Gamdb00s", "a.Gamdb00p", true},
        {"a.Strdb00s", "a.Strdb00p", true},
        {"a.Wav", "a.Wav", true},
        {"a.Fx00p", "a.Fx00p", false},
        {"a", "a", false},
        {"dir.Fx00a/a", "dir.Fx00a/a", false},
        {"a.", "a.", false},
        {"", "", false},
    };
    for (const auto& c : cases)
    {
        char szTarget[260];
        EXPECT_EQ(c.m_bResult, ConvertToPackedName(c.m_pszSource, szTarget, sizeof(szTarget)))
            << c.m_pszSource;
        EXPECT_STREQ(c.m_pszPacked, szTarget);
    }
}

TEST(PackedName, StaysInsideItsTarget)
{
    for (uint32_t nSize = 0; nSize <= 14; ++nSize)
    {
        char szTarget[20];
        std::memset(szTarget, '#', sizeof(szTarget));
        ConvertToPackedName("ab.Texture00a", szTarget, nSize);
        for (size_t i = nSize; i < sizeof(szTarget); ++i)
            ASSERT_EQ('#', szTarget[i]) << nSize;
        if (nSize > 0)
        {
            const std::string sExpected =
                nSize == 14 ? "ab.dds" : std::string("ab.Texture00a").substr(0, nSize - 1);
            EXPECT_EQ(sExpected, szTarget);
        }
    }
    char szName[16] = "x.TEXTURE00A"; // in place, too
    EXPECT_TRUE(ConvertToPackedName(szName, szName, sizeof(szName)));
    EXPECT_STREQ("x.dds", szName);
    EXPECT_FALSE(ConvertToPackedName(nullptr, szName, sizeof(szName)));
    EXPECT_STREQ("", szName);
    EXPECT_FALSE(ConvertToPackedName("a.dds", nullptr, 10));
}

TEST(ResourcePath, IsWhatLiesBehindTheRoot)
{
    CTempDir dir;
    dir.write("Game/res/Fire/a.dds", "x");
    dir.write("Game/res2/b.dds", "x");
    std::filesystem::create_directory_symlink("Game", dir.path("link"));
    const std::string sRoot = dir.path("Game") + "\\res\\";
    const std::string cases[][2] = {
        {"/Game/res/Fire/a.dds", "Fire\\a.dds"},
        {"\\GAME\\RES\\fire/New.dds", "fire\\New.dds"}, // the choice's own case, there or not
        {"/Game/res/b.dds", "b.dds"},
        {"/Game/res/", ""},
        {"/Game/res", "-"},
        {"/Game/res2/b.dds", "-"},
        {"/link/res/Fire/a.dds", "Fire\\a.dds"}, // the same by a link
        {"/Game/res2/../res/./Fire/a.dds", "Fire\\a.dds"},
        {"/Game/none/../res/a.dds", "-"},
    };
    for (const auto& c : cases)
    {
        std::string sRelative = "-";
        EXPECT_EQ(c[1] != "-", MakeResourcePath(sRoot, dir.dir() + c[0], sRelative)) << c[0];
        EXPECT_EQ(c[1], sRelative);
    }
    std::string sRelative;
    EXPECT_TRUE(MakeResourcePath("", "/any/where.dds", sRelative));
    EXPECT_EQ("\\any\\where.dds", sRelative);
    EXPECT_FALSE(MakeResourcePath("C:\\game\\", "/any/where.dds", sRelative));
}
