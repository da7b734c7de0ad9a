#include <cmath>
#include <map>

#include "programs/Programs.h"

using nlohmann::json;

namespace
{
// Numbers agree when they are the same float.
void ExpectSame(const json& left, const json& right, const std::string& sWhere)
{
    if (left.is_number() && right.is_number())
    {
        EXPECT_EQ(static_cast<float>(left.get<double>()), static_cast<float>(right.get<double>())) << sWhere;
        return;
    }
    ASSERT_EQ(left.type(), right.type()) << sWhere;
    if (left.is_object() || left.is_array())
    {
        ASSERT_EQ(left.size(), right.size()) << sWhere;
        if (left.is_object())
            for (const auto& [sKey, value] : left.items())
            {
                ASSERT_TRUE(right.contains(sKey)) << sWhere << "." << sKey;
                ExpectSame(value, right[sKey], sWhere + "." + sKey);
            }
        else
            for (size_t i = 0; i < left.size(); ++i)
                ExpectSame(left[i], right[i], sWhere + "[" + std::to_string(i) + "]");
    }
    else
        EXPECT_EQ(left, right) << sWhere;
}

void ExpectGameAgrees(const CSampleProject& project, const std::string& sPacked, const std::string& sPlugin)
{
    const CProcessResult dump =
        Batch({"--json", "dump", project.path(sPacked), "--project", project.path("x")});
    ASSERT_EQ(0, dump.m_nExitCode) << dump.m_sErrors;
    const CProcessResult game =
        Run("bonfire",
            {"--json", "--plugin", std::string(EMBERDECK_BIN_DIR) + "/" + sPlugin, project.path(sPacked)});
    ASSERT_EQ(0, game.m_nExitCode) << game.m_sErrors;
    ExpectSame(json::parse(dump.m_sOutput), json::parse(game.m_sOutput), sPacked);
}
} // namespace

TEST(SampleRoad, BothFormsComeBackByteForByte)
{
    CSampleProject project;
    for (const std::string sName : {"bonfire.Fx00a", "inferno.Fx00c"})
    {
        const std::string sOld = ReadBytes(project.path(sName));
        const std::string sOther = sName + (sName.back() == 'a' ? ".Fx00c" : ".Fx00a");
        ASSERT_EQ(0, Batch({"convert", project.path(sName), project.path(sOther)}).m_nExitCode);
        ASSERT_EQ(0, Batch({"convert", project.path(sOther), project.path(sName)}).m_nExitCode);
        EXPECT_EQ(sOld, ReadBytes(project.path(sName))) << sName;
        EXPECT_EQ(0, Batch({"check", "--strict", project.path(sName), project.path(sOther)}).m_nExitCode);

        const std::string sRaw = project.path("raw"), sPacked = project.path("packed");
        const std::string sCompressed = sName.back() == 'c' ? sName : sOther;
        ASSERT_EQ(0, Batch({"decompress", project.path(sCompressed), sRaw}).m_nExitCode);
        ASSERT_EQ(0, Batch({"compress", sRaw, sPacked}).m_nExitCode);
        EXPECT_EQ(ReadBytes(project.path(sCompressed)), ReadBytes(sPacked));
    }
}

TEST(SampleRoad, TheGameAgreesWithDump)
{
    CSampleProject project;
    ASSERT_EQ(0, Batch({"pack", project.path("bonfire.Fx00a")}).m_nExitCode);
    ASSERT_EQ(
        0,
        Batch({"pack", project.path("inferno.Fx00c"), "-o", project.path("other name.Fx00p")}).m_nExitCode);
    ASSERT_EQ(
        0, Batch({"pack", project.path("bonfire.Fx00a"), "-o", project.path("x.Fx00p"), "--target", "xenon"})
               .m_nExitCode);
    ExpectGameAgrees(project, "bonfire.Fx00p", "fireglass.so");
    ExpectGameAgrees(project, "other name.Fx00p", "fireglass.so");
    ExpectGameAgrees(project, "x.Fx00p", "fireglass.so");

    const CProcessResult wrong = Batch({"dump", project.path("bonfire.Fx00a")});
    EXPECT_EQ(1, wrong.m_nExitCode);
}

// What the sample shows can be made again by hand: the timeline takes a target that holds the key.
TEST(SampleRoad, EachLinkIsOneThatTheTimelineTakes)
{
    CSampleProject project;
    for (const std::string sName : {"bonfire.Fx00a", "inferno.Fx00c"})
    {
        const std::string sPacked = project.path("linked.Fx00p");
        ASSERT_EQ(0, Batch({"pack", project.path(sName), "-o", sPacked}).m_nExitCode);
        const json dump = json::parse(Batch({"--json", "dump", sPacked}).m_sOutput);
        int nLinks = 0;
        for (const json& effect : dump["effects"])
        {
            std::map<int64_t, const json*> keys;
            for (const json& key : effect["keys"])
                keys[key["id"].get<int64_t>()] = &key;
            for (const json& key : effect["keys"])
            {
                if (key["link"] == key["id"]) // unlinked
                    continue;
                ++nLinks;
                const auto target = keys.find(key["link"].get<int64_t>());
                ASSERT_NE(keys.end(), target) << effect["name"];
                EXPECT_GT(key["start"].get<double>(), (*target->second)["start"].get<double>())
                    << effect["name"];
                EXPECT_LT(key["end"].get<double>(), (*target->second)["end"].get<double>()) << effect["name"];
            }
        }
        EXPECT_GT(nLinks, sName[0] == 'b' ? 5 : 100) << sName;
    }
}

TEST(SampleRoad, ALaterPlugInLoadsTheSameLibraries)
{
    CSampleProject project("fireglass2");
    for (const std::string sName : {"bonfire.Fx00a", "inferno.Fx00c"})
    {
        EXPECT_EQ(0, Batch({"check", project.path(sName)}).m_nExitCode);
        const CProcessResult strict = Batch({"check", "--strict", project.path(sName)});
        EXPECT_EQ(1, strict.m_nExitCode);
        EXPECT_TRUE(Holds(strict.m_sOutput, "findings")) << strict.m_sOutput.substr(0, 400);

        // Once saved under the later plug-in, nothing is left to repair, and a second save changes nothing.
        const std::string sSaved = project.path("saved.Fx00a");
        ASSERT_EQ(0, Batch({"convert", project.path(sName), sSaved}).m_nExitCode);
        EXPECT_EQ(0, Batch({"check", "--strict", sSaved}).m_nExitCode);
        const std::string sOnce = ReadBytes(sSaved);
        ASSERT_EQ(0, Batch({"convert", sSaved, sSaved}).m_nExitCode);
        EXPECT_EQ(sOnce, ReadBytes(sSaved));
        ASSERT_EQ(0, Batch({"pack", sSaved}).m_nExitCode);
        ExpectGameAgrees(project, "saved.Fx00p", "fireglass2.so");
    }
}

TEST(SampleRoad, PathsOfEveryShape)
{
    CSampleProject project;
    const std::string sText = ReadBytes(project.path("bonfire.Fx00a"));
    std::string sLong = "deep";
    while (sLong.size() < 290)
        sLong += "/a folder with blanks and.dots";
    const std::string aNames[] = {"sub dir/two  blanks.Fx00a", "v1.2/no extension", sLong + "/x.Fx00a"};
    for (const std::string& sName : aNames)
    {
        project.write(sName, sText);
        const CProcessResult result = Batch({"pack", project.path(sName)});
        if (sName.size() < 200)
            EXPECT_EQ(0, result.m_nExitCode) << sName << result.m_sErrors;
        else
            EXPECT_NE(2, result.m_nExitCode) << sName << result.m_sErrors;
    }
    EXPECT_TRUE(project.has("sub dir/two  blanks.Fx00p"));
    EXPECT_TRUE(project.has("v1.2/no extension.Fx00p"));

    // Backslashes and another letter case, as in a file that came from elsewhere.
    EXPECT_EQ(0, Batch({"info", project.dir() + "\\SUB DIR\\Two  Blanks.FX00A"}).m_nExitCode);
}

TEST(SampleRoad, NodesPrintsTheTreeAsItStands)
{
    CTempDir dir;
    const std::string sFile = dir.write("n.txt", "a \"b\"(c (\"\" \xE9\x01 \\ ) () \"x\"y");
    const CProcessResult result = Batch({"--json", "nodes", sFile});
    EXPECT_EQ(0, result.m_nExitCode);
    const json expected = json::parse(
        R"([{"value":"a"},{"string":"b"},[{"value":"c"},[{"string":""},{"value":"\u00e9\u0001"},{"value":"\\"}],[],{"string":"x"},{"value":"y"}]])");
    EXPECT_EQ(expected, json::parse(result.m_sOutput));

    dir.write("deep.txt", std::string(5000000, '('));
    EXPECT_EQ(1, Batch({"nodes", dir.path("deep.txt")}).m_nExitCode);
}

TEST(SampleRoad, SavedOverContentComesBack)
{
    CSampleProject project;
    const std::string sFile = project.path("bonfire.Fx00a");
    const std::string sFirst = ReadBytes(sFile) + " ";
    WriteBytes(sFile, sFirst);
    EXPECT_EQ(1, Batch({"recover", sFile}).m_nExitCode);
    ASSERT_EQ(0, Batch({"convert", sFile, sFile}).m_nExitCode);
    EXPECT_NE(sFirst, ReadBytes(sFile));
    const CProcessResult list = Batch({"--json", "recover", "--list", sFile});
    ASSERT_EQ(1u, json::parse(list.m_sOutput).size()) << list.m_sOutput << list.m_sErrors;
    EXPECT_EQ(1, Batch({"recover", sFile, "--copy", "9"}).m_nExitCode);
    EXPECT_EQ(0, Batch({"recover", sFile}).m_nExitCode);
    EXPECT_EQ(sFirst, ReadBytes(sFile));
}

TEST(SampleRoad, TheProjectOfTheBuildFolderCanBeCopiedWhole)
{
    const CTempDir home;
    const std::string sCopy = home.path("my game");
    std::filesystem::copy(std::string(EMBERDECK_BIN_DIR) + "/bonfire-project", sCopy,
                          std::filesystem::copy_options::recursive);
    const CProcessResult types = Batch({"types", sCopy + "/bonfire.Fx00a"});
    EXPECT_EQ(0, types.m_nExitCode) << types.m_sErrors;
    EXPECT_TRUE(Holds(types.m_sOutput, "Plug-in " + sCopy + "/")) << types.m_sOutput.substr(0, 200);
    ASSERT_EQ(0, Batch({"pack", sCopy + "/bonfire.Fx00a"}).m_nExitCode);
    const CProcessResult launch = RunProcess(
        "sh",
        {"-c",
         std::string(EMBERDECK_BIN_DIR) +
             "/emberdeck-batch launch bonfire.Fx00a --command-line '--headless bonfire.Fx00p' > played"},
        sCopy, 60000);
    EXPECT_EQ(0, launch.m_nExitCode) << launch.m_sErrors;
    for (int i = 0; i < 100 && ReadBytes(sCopy + "/played").empty(); ++i)
        RunProcess("sleep", {"0.05"}, "", 1000);
    EXPECT_TRUE(Holds(ReadBytes(sCopy + "/played"), "Campfire"));
}
