// What the batch commands do with libraries that are cut, hold the marks of a merge, or had to be repaired.

#include <algorithm>

#include "Programs.h"

namespace
{
struct CDamagedProject : CSampleProject
{
    CDamagedProject()
    {
        m_sWhole = ReadBytes(path("bonfire.Fx00a"));
        EXPECT_EQ(0, Batch({"-q", "convert", path("bonfire.Fx00a"), path("cut.Fx00c")}).m_nExitCode);
        const std::string sPacked = ReadBytes(path("cut.Fx00c"));
        write("cut.Fx00c", sPacked.substr(0, sPacked.size() - 3));
        write("cut.Fx00a", Cut(1));
        std::string sMerged = m_sWhole;
        const size_t nLine = sMerged.find('\n', sMerged.find("( key-list")) + 1;
        write("merged.Fx00a", sMerged.insert(nLine, "<<<<<<< HEAD\n=======\n>>>>>>> topic\n"));
        std::string sOdd = m_sWhole;
        const std::string sNumber = "( end-time ";
        write("odd.Fx00a", sOdd.insert(sOdd.find(sNumber) + sNumber.size() + 1, "O"));
    }
    // Without the last effects.
    std::string Cut(int nEffects) const
    {
        size_t nEnd = m_sWhole.size();
        while (nEffects-- > 0)
            nEnd = m_sWhole.rfind("( effect\r\n", nEnd - 1);
        return m_sWhole.substr(0, nEnd);
    }
    std::string m_sWhole;
};

std::string LastLine(const std::string& sText)
{
    const size_t nEnd = sText.find_last_not_of('\n');
    return sText.substr(sText.rfind('\n', nEnd) + 1);
}
} // namespace

TEST(WholeFiles, PackAndConvertRefuseWhatIsntWhole)
{
    const CDamagedProject project;
    for (const char* pszName : {"cut.Fx00a", "cut.Fx00c", "merged.Fx00a"})
    {
        const std::string sFile = project.path(pszName);
        const std::string sBytes = ReadBytes(sFile);
        CProcessResult result = Batch({"-q", "pack", sFile, "-o", project.path("out.Fx00p")});
        EXPECT_EQ(1, result.m_nExitCode);
        EXPECT_TRUE(Holds(LastLine(result.m_sErrors), "isn't whole: ")) << result.m_sErrors;
        EXPECT_TRUE(Holds(result.m_sErrors, "--lenient")) << result.m_sErrors;
        EXPECT_FALSE(project.has("out.Fx00p"));

        result = Batch({"-q", "convert", sFile, project.path("out.Fx00a")});
        EXPECT_EQ(1, result.m_nExitCode);
        EXPECT_TRUE(Holds(result.m_sErrors, "--repair")) << result.m_sErrors;
        EXPECT_FALSE(project.has("out.Fx00a"));
        EXPECT_EQ(1, Batch({"-q", "convert", sFile, sFile}).m_nExitCode);
        EXPECT_EQ(sBytes, ReadBytes(sFile));

        result = Batch({"-q", "check", sFile});
        EXPECT_EQ(1, result.m_nExitCode) << "strict or not";
        EXPECT_TRUE(Holds(result.m_sOutput, pszName[0] == 'c' ? "What stood behind is missing" : "merge"))
            << result.m_sOutput;
        for (const char* pszCommand : {"info", "deps"})
        {
            EXPECT_EQ(0, Batch({pszCommand, sFile}).m_nExitCode);
            result = Batch({pszCommand, "--strict", sFile});
            EXPECT_EQ(1, result.m_nExitCode);
            EXPECT_EQ("", result.m_sOutput);
        }

        // What is left, when it is asked for.
        result = Batch({"-q", "pack", "--lenient", sFile, "-o", project.path("out.Fx00p")});
        EXPECT_EQ(0, result.m_nExitCode) << result.m_sErrors;
        EXPECT_NE("", result.m_sErrors);
        EXPECT_TRUE(project.has("out.Fx00p"));
        EXPECT_EQ(1, Batch({"-q", "pack", "--lenient", "--strict", sFile}).m_nExitCode);
        EXPECT_EQ(0, Batch({"-q", "convert", "--repair", sFile, sFile}).m_nExitCode);
        EXPECT_EQ(0, Batch({"-q", "check", sFile}).m_nExitCode);
        std::filesystem::remove(project.path("out.Fx00p"));
    }
}

TEST(WholeFiles, EveryCommandTellsWhatTheLoaderRepairs)
{
    const CDamagedProject project;
    const std::string sFile = project.path("odd.Fx00a");
    const std::string sTold = "is no whole number";
    for (std::vector<std::string> command : {std::vector<std::string>{"-q", "pack", sFile},
                                             {"-q", "convert", sFile, project.path("new.Fx00a")},
                                             {"info", sFile},
                                             {"deps", sFile}})
    {
        CProcessResult result = Batch(command);
        EXPECT_EQ(0, result.m_nExitCode) << command[1];
        EXPECT_TRUE(Holds(result.m_sErrors, sFile + ": ") && Holds(result.m_sErrors, sTold))
            << result.m_sErrors;
        std::filesystem::remove(project.path("new.Fx00a"));
        std::filesystem::remove(project.path("odd.Fx00p"));
        command.push_back("--strict");
        result = Batch(command);
        EXPECT_EQ(1, result.m_nExitCode) << command[1];
        EXPECT_TRUE(Holds(LastLine(result.m_sErrors), "--strict")) << result.m_sErrors;
        EXPECT_FALSE(project.has("new.Fx00a") || project.has("odd.Fx00p"));
    }
    for (const char* pszCommand : {"pack", "info", "deps"})
        EXPECT_EQ("", Batch({"-q", pszCommand, "--strict", project.path("bonfire.Fx00a")}).m_sErrors);

    // A bound on the lines.
    std::string sMany = project.m_sWhole;
    const std::string sLine = "( stray )\n";
    const size_t nPlace = sMany.find('\n', sMany.find("( key-list")) + 1;
    for (int i = 0; i < 500; ++i)
        sMany.insert(nPlace, sLine);
    const std::string sErrors = Batch({"info", project.write("many.Fx00a", sMany)}).m_sErrors;
    EXPECT_GT(40, std::count(sErrors.begin(), sErrors.end(), '\n'));
    EXPECT_TRUE(Holds(LastLine(sErrors), " more")) << sErrors;
}

TEST(WholeFiles, UpdateGoesOnPastThem)
{
    const CDamagedProject project;
    const std::string sCut = ReadBytes(project.path("cut.Fx00a"));
    const std::string sOdd = ReadBytes(project.path("odd.Fx00a"));
    project.write("old.Fx00a", "; old\n" + project.m_sWhole);
    CProcessResult result = Batch({"--json", "update", "--strict", project.dir()});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_EQ(sOdd, ReadBytes(project.path("odd.Fx00a"))) << "strictly a failure";
    result = Batch({"--json", "update", project.dir()});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_EQ(sCut, ReadBytes(project.path("cut.Fx00a")));
    EXPECT_NE(sOdd, ReadBytes(project.path("odd.Fx00a")));
    EXPECT_EQ(project.m_sWhole, ReadBytes(project.path("old.Fx00a")));
    int nFailed = 0;
    const auto json = nlohmann::json::parse(result.m_sOutput);
    for (const auto& file : json["files"])
    {
        if (file["result"] != "failed")
            continue;
        ++nFailed;
        EXPECT_NE("", file["error"]) << file;
    }
    EXPECT_EQ(3, nFailed) << result.m_sOutput;
    EXPECT_EQ(3, json["failures"]);
    EXPECT_EQ(0, Batch({"-q", "update", "--repair", project.dir()}).m_nExitCode);
    EXPECT_EQ(0, Batch({"-q", "update", "--strict", project.dir()}).m_nExitCode);
}

TEST(WholeFiles, RecoverTakesTheNewestSoundCopy)
{
    const CDamagedProject project;
    const std::string sFile = project.path("bonfire.Fx00a");
    EXPECT_EQ(0, Batch({"-q", "convert", sFile, sFile}).m_nExitCode);
    // Bad saves by somebody else, each of which is saved over.
    for (int i = 1; i <= 7; ++i)
    {
        WriteBytes(sFile, project.Cut(i));
        EXPECT_EQ(0, Batch({"-q", "convert", "--repair", sFile, sFile}).m_nExitCode);
        WriteBytes(sFile, "rubbish " + std::to_string(i));
        Batch({"-q", "recover", sFile, "--copy", "1"}); // as a killed one: the rubbish is kept
    }
    WriteBytes(sFile, project.Cut(3));
    const auto list = nlohmann::json::parse(Batch({"--json", "recover", "--list", sFile}).m_sOutput);
    ASSERT_EQ(5u, list.size());
    EXPECT_TRUE(list[0]["sound"].is_boolean());
    const CProcessResult result = Batch({"--json", "recover", sFile});
    EXPECT_EQ(0, result.m_nExitCode) << result.m_sErrors;
    const auto json = nlohmann::json::parse(result.m_sOutput);
    EXPECT_EQ(true, json["sound"]);
    EXPECT_EQ(list[json["copy"].get<size_t>() - 1]["saved"], json["saved"]);
    EXPECT_EQ(0, Batch({"-q", "check", sFile}).m_nExitCode);

    // Nothing sound: told, and the file stays; --copy takes any.
    const std::string sOther = project.path("cut.Fx00a");
    WriteBytes(sOther, "cut");
    EXPECT_EQ(0, Batch({"-q", "convert", sFile, sOther}).m_nExitCode); // keeps it
    WriteBytes(sOther, "cut again");
    const CProcessResult none = Batch({"recover", sOther});
    EXPECT_EQ(1, none.m_nExitCode);
    EXPECT_TRUE(Holds(none.m_sErrors, "no copy of " + sOther + " is whole")) << none.m_sErrors;
    EXPECT_EQ("cut again", ReadBytes(sOther));
    EXPECT_TRUE(Holds(Batch({"recover", "--list", sOther}).m_sOutput, "  damaged  "));
    EXPECT_EQ(0, Batch({"recover", sOther, "--copy", "1"}).m_nExitCode);
    EXPECT_EQ("cut", ReadBytes(sOther));
}

TEST(WholeFiles, ATypeThatThePlugInLacksIsNamed)
{
    const CDamagedProject project;
    std::string sBytes = project.m_sWhole;
    const size_t nType = sBytes.rfind("( type \"Light\" )");
    ASSERT_NE(std::string::npos, nType);
    const size_t nEffect = sBytes.find('"', sBytes.rfind("( effect", nType)) + 1;
    const std::string sEffect = sBytes.substr(nEffect, sBytes.find('"', nEffect) - nEffect);
    sBytes.replace(nType, 16, "( type \"Laser\" )");
    const std::string sFile = project.write("laser.Fx00a", sBytes);
    const CProcessResult check = Batch({"check", sFile});
    EXPECT_EQ(1, check.m_nExitCode);
    EXPECT_TRUE(Holds(check.m_sOutput, "The plug-in has no type \"Laser\".")) << check.m_sOutput;
    EXPECT_TRUE(Holds(check.m_sOutput, "Laser, id ") && Holds(check.m_sOutput, sEffect)) << check.m_sOutput;
    const CProcessResult pack = Batch({"pack", sFile});
    EXPECT_EQ(1, pack.m_nExitCode);
    EXPECT_TRUE(Holds(pack.m_sErrors, "The plug-in has no type \"Laser\".")) << pack.m_sErrors;
}

TEST(WholeFiles, AMissingResourceIsTold)
{
    const CDamagedProject project;
    const std::string sFile = project.path("bonfire.Fx00a");
    EXPECT_EQ(0, Batch({"-q", "check", "--resources", "--strict", sFile}).m_nExitCode);
    const auto needs = nlohmann::json::parse(Batch({"--json", "deps", sFile}).m_sOutput)["needs"];
    std::string sResource;
    for (const auto& need : needs)
    {
        if (need["resourceType"] == "")
            sResource = need["resource"];
    }
    ASSERT_NE("", sResource);
    std::string sPlace = sResource;
    std::replace(sPlace.begin(), sPlace.end(), '\\', '/');
    std::filesystem::remove(project.path("resources/" + sPlace));
    EXPECT_EQ(0, Batch({"-q", "check", "--strict", sFile}).m_nExitCode);
    const CProcessResult result = Batch({"--json", "check", "--resources", sFile});
    EXPECT_EQ(0, result.m_nExitCode);
    const auto findings = nlohmann::json::parse(result.m_sOutput)[0]["findings"];
    ASSERT_FALSE(findings.empty()) << result.m_sOutput;
    EXPECT_EQ("missing resource", findings[0]["kind"]);
    EXPECT_TRUE(Holds(findings[0]["text"].get<std::string>(), "The file \"" + sResource + "\" of property "))
        << findings;
    EXPECT_NE("", findings[0]["key"]);
    EXPECT_EQ(1, Batch({"-q", "check", "--resources", "--strict", sFile}).m_nExitCode);
}
