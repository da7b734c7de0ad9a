#include "platform/Files.h"
#include "programs/Programs.h"

namespace
{
std::string BytesOf(const std::string& sFile)
{
    std::string sBytes;
    EXPECT_TRUE(ReadWholeFile(sFile, sBytes)) << sFile;
    return sBytes;
}
} // namespace

TEST(DamagedLibraries, AreRefusedWithTheirBytesAndTheOldPackedFileKept)
{
    const CSampleProject project;
    const std::string sLibrary = project.path("bonfire.Fx00a");
    const std::string sPacked = project.path("bonfire.Fx00p");
    ASSERT_EQ(0, Batch({"pack", sLibrary}).m_nExitCode);
    const std::string sWhole = BytesOf(sLibrary);
    const std::string sOldPacked = BytesOf(sPacked);
    const std::string sCut = sWhole.substr(0, sWhole.size() * 3 / 4);
    const std::string sConflict = sWhole + "\n<<<<<<< HEAD\n( a )\n=======\n( b )\n>>>>>>> other\n";
    for (const std::string& sBytes : {sCut, sConflict})
    {
        project.write("bonfire.Fx00a", sBytes);
        const CProcessResult pack = Batch({"pack", sLibrary});
        EXPECT_EQ(1, pack.m_nExitCode);
        EXPECT_TRUE(Holds(pack.m_sErrors, "isn't whole: ")) << pack.m_sErrors;
        EXPECT_EQ(sOldPacked, BytesOf(sPacked));
        EXPECT_EQ(1, Batch({"convert", sLibrary, project.path("new.Fx00a")}).m_nExitCode);
        EXPECT_FALSE(std::filesystem::exists(project.path("new.Fx00a")));
        EXPECT_EQ(1, Batch({"check", sLibrary}).m_nExitCode);
        EXPECT_EQ(0, Batch({"info", sLibrary}).m_nExitCode);
        EXPECT_EQ(1, Batch({"info", sLibrary, "--strict"}).m_nExitCode);
        const CProcessResult update = Batch({"update", project.dir()});
        EXPECT_EQ(1, update.m_nExitCode);
        EXPECT_TRUE(Holds(update.m_sErrors, "wasn't updated: ")) << update.m_sErrors;
        EXPECT_EQ(sBytes, BytesOf(sLibrary));

        EXPECT_EQ(0, Batch({"pack", sLibrary, "--lenient", "-o", project.path("lenient.Fx00p")}).m_nExitCode);
        EXPECT_EQ(0, Batch({"update", project.dir(), "--repair"}).m_nExitCode);
        EXPECT_EQ(0, Batch({"check", sLibrary}).m_nExitCode);
    }
}
