#include <chrono>

#include "programs/Programs.h"

// Real builds by make and ninja, which read the depfile of "pack": they pack again exactly when something has
// changed, and never stop for a file that is gone.

namespace
{
namespace fs = std::filesystem;

constexpr const char* c_pszPlugin = "plug in.so";

std::string Replaced(std::string sText, const std::string& sOld, const std::string& sNew)
{
    size_t n = sText.find(sOld);
    EXPECT_NE(std::string::npos, n) << sOld;
    for (; n != std::string::npos; n = sText.find(sOld, n + sNew.size()))
        sText.replace(n, sOld.size(), sNew);
    return sText;
}

class DepFileBuild : public testing::TestWithParam<std::string>
{
protected:
    void SetUp() override
    {
        fs::copy(std::string(EMBERDECK_BIN_DIR) + "/fireglass.so", m_Project.path(c_pszPlugin));
        m_Project.SetPlugin(c_pszPlugin);
        Replace("bonfire.Fx00a", "textures\\drop.dds", m_sOdd);
        m_Project.write("resources/" + m_sOdd, "texture");
        m_Project.write("build.ninja", "rule pack\n  command = echo >> count; " + Pack() +
                                           "\n  depfile = out.d\nbuild out.Fx00p: pack\n");
        m_Project.write("Makefile", "out.Fx00p:\n\techo >> count; " + Pack() + "\n-include out.d\n");
    }
    static std::string Pack()
    {
        return std::string(EMBERDECK_BIN_DIR) +
               "/emberdeck-batch -q pack bonfire.Fx00a -o out.Fx00p --depfile out.d";
    }
    void Replace(const std::string& sName, const std::string& sOld, const std::string& sNew) const
    {
        m_Project.write(sName, Replaced(ReadBytes(m_Project.path(sName)), sOld, sNew));
    }
    // Makes a file the newest of all, whatever the file system's clock says.
    void Touch(const std::string& sName) const
    {
        const auto past = fs::file_time_type::clock::now() - std::chrono::hours(1);
        for (const auto& entry : fs::recursive_directory_iterator(m_Project.dir()))
        {
            if (entry.is_regular_file() && entry.path().filename() != "out.Fx00p")
                fs::last_write_time(entry.path(), past);
        }
        fs::last_write_time(m_Project.path("out.Fx00p"), past + std::chrono::minutes(1));
        if (!sName.empty())
            fs::last_write_time(m_Project.path(sName), past + std::chrono::minutes(2));
    }
    // Builds twice: packs as often as expected, then not at all.
    void ExpectPacks(int nTimes, const std::string& sWhat)
    {
        for (const int nExpected : {nTimes, 0})
        {
            fs::remove(m_Project.path("count"));
            const CProcessResult result = RunProcess(GetParam(), {}, m_Project.dir(), 60000);
            EXPECT_EQ(0, result.m_nExitCode) << sWhat << ": " << result.m_sOutput << result.m_sErrors;
            const size_t nCount = m_Project.has("count") ? ReadBytes(m_Project.path("count")).size() : 0;
            EXPECT_EQ(nExpected, static_cast<int>(nCount))
                << sWhat << (nExpected == nTimes ? "" : ", once more");
        }
    }

    CSampleProject m_Project;
    const std::string m_sOdd = "a b#$:%[x].dds";
};
} // namespace

TEST_P(DepFileBuild, PacksAgainExactlyWhenSomethingHasChanged)
{
    ExpectPacks(1, "at first");
    for (const std::string& sName :
         {std::string("bonfire.Fx00a"), std::string("bonfire.proj00"), std::string(c_pszPlugin),
          "resources/" + m_sOdd, std::string("resources/textures/spark.dds")})
    {
        ASSERT_TRUE(m_Project.has(sName)) << sName;
        Touch(sName);
        ExpectPacks(1, sName + " changed");
    }
    Touch("inferno.Fx00c");
    ExpectPacks(0, "another library changed");

    fs::rename(m_Project.path(c_pszPlugin), m_Project.path("other.so"));
    m_Project.SetPlugin("other.so");
    ExpectPacks(1, "plug-in renamed");
    fs::remove(m_Project.path("resources/textures/spark.dds"));
    ExpectPacks(1, "resource gone");
    fs::remove(m_Project.path("resources/" + m_sOdd));
    ExpectPacks(1, "resource with an odd name gone");
    fs::rename(m_Project.path("bonfire.proj00"), m_Project.path("game.proj00"));
    ExpectPacks(1, "locator renamed");
    Replace("bonfire.Fx00a", m_sOdd, "textures\\new.dds");
    m_Project.write("resources/textures/new.dds", "texture");
    Touch("bonfire.Fx00a");
    ExpectPacks(1, "resource added");
    Touch("resources/textures/new.dds");
    ExpectPacks(1, "added resource changed");
}

INSTANTIATE_TEST_SUITE_P(Programs, DepFileBuild, testing::Values("make", "ninja"),
                         [](const auto& each) { return each.param; });

TEST(DepFile, NamesThatOneOfThemMisreadsAreLeftOutWithAWarning)
{
    CSampleProject project;
    const std::string sText = ReadBytes(project.path("bonfire.Fx00a"));
    for (const std::string sName : {"Anna's.dds", "a;b.dds", "a=b.dds", "a*b.dds", "a|b.dds", "[abc].dds"})
    {
        project.write("one.Fx00a", Replaced(sText, "textures\\drop.dds", sName));
        project.write("resources/" + sName, "");
        project.write("resources/b.dds", ""); // what "[abc]" stands for
        const CProcessResult result =
            Batch({"-q", "pack", project.path("one.Fx00a"), "--depfile", project.path("one.d")});
        EXPECT_EQ(0, result.m_nExitCode) << result.m_sErrors;
        EXPECT_TRUE(Holds(result.m_sErrors, sName + "\"; ")) << sName << ": " << result.m_sErrors;
        EXPECT_FALSE(Holds(ReadBytes(project.path("one.d")), sName)) << sName;
    }
}

TEST(DepFile, NeverTakesThePlaceOfWhatItTellsOf)
{
    CSampleProject project;
    const std::string sLibrary = project.path("bonfire.Fx00a"), sPacked = project.path("bonfire.Fx00p");
    const auto pack = [&](const std::string& sDepFile)
    {
        const CProcessResult result = Batch({"pack", sLibrary, "--depfile", sDepFile});
        EXPECT_EQ(1, result.m_nExitCode) << sDepFile;
        return result.m_sErrors;
    };
    EXPECT_TRUE(Holds(pack(sPacked), "is the packed file itself"));
    EXPECT_FALSE(project.has("bonfire.Fx00p"));
    EXPECT_TRUE(Holds(pack(project.path("resources/../bonfire.Fx00p")), "is the packed file itself"));
    ASSERT_EQ(0, Batch({"pack", sLibrary}).m_nExitCode);
    std::filesystem::create_symlink("bonfire.Fx00p", project.path("link.d"));
    EXPECT_TRUE(Holds(pack(project.path("link.d")), "is the packed file itself"));
    const std::string sLocator = ReadBytes(project.path("bonfire.proj00"));
    pack(project.path("bonfire.proj00"));
    EXPECT_EQ(sLocator, ReadBytes(project.path("bonfire.proj00")));

    // Nothing is left of a pack that failed, nor of the old depfile's place.
    const std::string sOld = ReadBytes(project.write("old.d", "old"));
    project.write("bonfire.Fx00a", "( header ( version 2 ) )");
    EXPECT_EQ(1, Batch({"pack", sLibrary, "--depfile", project.path("old.d")}).m_nExitCode);
    EXPECT_EQ(sOld, ReadBytes(project.path("old.d")));
}
