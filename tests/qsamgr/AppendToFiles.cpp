#include "qsamgr/qsafile.h"
#include "support/TempDir.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace
{
// Lets the library's temporary files fall into a directory that the test can look into.
class CTempVariable
{
public:
    explicit CTempVariable(const std::string& sDir) : m_sOld(std::filesystem::temp_directory_path().string())
    {
        setenv("TMPDIR", sDir.c_str(), 1);
    }
    ~CTempVariable() { setenv("TMPDIR", m_sOld.c_str(), 1); }

private:
    std::string m_sOld;
};

bool AddText(const std::string& sPath, bool bCompressed, bool bAppend, const std::string& sText)
{
    CQSAFile file;
    return file.Open(sPath.c_str(), false, bCompressed, bAppend) &&
           file.WriteBlock(sText.data(), static_cast<uint32_t>(sText.size())) && file.WriteByte('.') &&
           file.Close();
}

std::string ReadText(const std::string& sPath, bool bCompressed)
{
    CQSAFile file(sPath.c_str(), true, bCompressed, false);
    EXPECT_TRUE(file.IsOpen());
    std::string sText;
    char szPart[7]; // read in both ways
    while (const uint32_t nLen = file.ReadBlock(szPart, sizeof(szPart)))
    {
        sText.append(szPart, nLen);
        uint8_t nByte;
        if (file.ReadByte(&nByte))
            sText += static_cast<char>(nByte);
    }
    EXPECT_TRUE(file.Close());
    return sText;
}
} // namespace

TEST(AppendToFiles, KeepsWhatWasThere)
{
    CTempDir dir;
    CTempDir temp;
    CTempVariable variable(temp.dir());
    const std::string sLong(5000, 'x');
    for (const bool bCompressed : {false, true})
    {
        const std::string sPath = dir.path(bCompressed ? "c" : "a");
        EXPECT_TRUE(AddText(sPath, bCompressed, true, "first")) << "a missing file starts empty";
        EXPECT_TRUE(AddText(sPath, bCompressed, true, sLong));
        EXPECT_EQ("first." + sLong + ".", ReadText(sPath, bCompressed));
        EXPECT_TRUE(AddText(sPath, bCompressed, false, "new"));
        EXPECT_EQ("new.", ReadText(sPath, bCompressed));
    }
    {
        CQSAFile file;
        ASSERT_TRUE(file.Open(dir.path("c").c_str(), false, true, true));
        EXPECT_FALSE(std::filesystem::is_empty(temp.dir()));
        file.WriteByte('!');
        ASSERT_TRUE(file.Open(dir.path("other").c_str(), false, false, false)) << "ends the append first";
        EXPECT_EQ("new.!", ReadText(dir.path("c"), true));
        ASSERT_TRUE(file.Open(dir.path("c").c_str(), false, true, true));
        file.WriteByte('?');
    } // the destructor closes
    EXPECT_EQ("new.!?", ReadText(dir.path("c"), true));
    EXPECT_TRUE(std::filesystem::is_empty(temp.dir()));
}

TEST(AppendToFiles, LeavesADamagedFileAlone)
{
    CTempDir dir;
    CTempDir temp;
    CTempVariable variable(temp.dir());
    const std::string sPath = dir.write("damaged", "( plain text under a compressed name )");
    CQSAFile file;
    EXPECT_FALSE(file.Open(sPath.c_str(), false, true, true));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ("( plain text under a compressed name )", ReadBytes(sPath));
    EXPECT_FALSE(file.Open(dir.dir().c_str(), false, true, true)) << "a directory";
    EXPECT_FALSE(file.Open((dir.path(std::string(300, 'n')) + "c").c_str(), false, true, true));
    EXPECT_FALSE(file.Open(sPath.c_str(), true, true, true)) << "reading has no append";
    EXPECT_TRUE(std::filesystem::is_empty(temp.dir()));
    {
        CTempVariable missing(temp.path("missing"));
        EXPECT_FALSE(file.Open(dir.path("new").c_str(), false, true, true)) << "no place for the copy";
    }
    // The target's directory goes while the copy is open: the rewrite fails, the copy still goes.
    std::filesystem::create_directory(dir.path("gone"));
    ASSERT_TRUE(file.Open(dir.path("gone/c").c_str(), false, true, true));
    std::filesystem::remove(dir.path("gone"));
    EXPECT_FALSE(file.Close());
    EXPECT_FALSE(file.IsOpen());
    EXPECT_TRUE(std::filesystem::is_empty(temp.dir()));
}

TEST(AppendToFiles, ReadingNeedsAFile)
{
    CTempDir dir;
    for (const bool bCompressed : {false, true})
    {
        EXPECT_FALSE(CQSAFile(dir.dir().c_str(), true, bCompressed, false).IsOpen());
        EXPECT_FALSE(CQSAFile(dir.path("missing").c_str(), true, bCompressed, false).IsOpen());
    }
}
