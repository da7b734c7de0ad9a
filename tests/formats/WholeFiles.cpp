// Whether what was read was the whole file: cut texts and containers, and what a merge has left.

#include "FormatsTest.h"
#include "formats/LoadReport.h"
#include "qsamgr/qsacompressedfile.h"

namespace
{

std::unique_ptr<CTestLibrary> SmallLibrary()
{
    return aLibrary()
        .prefab("Light", "Lamp")
        .group("Weapons")
        .effect("Smoke")
        .key("Light")
        .onPrefab("Lamp")
        .effect("Fog (thin)")
        .key("Light")
        .curve<double>("Flicker", {{0.0f, 0.5}, {0.333333f, 2.5}, {1.0f, 4.0}})
        .build();
}

struct CRead
{
    bool m_bLoaded = false;
    CLoadReport m_Report;
    std::string m_sError;

    bool IsWhole() const { return m_bLoaded && !m_Report.IsDamaged(); }
};
CRead Read(const std::string& sPath, std::shared_ptr<CTestModule> pModule = std::make_shared<CTestModule>())
{
    CRead read;
    CTestLibrary library(std::move(pModule));
    read.m_bLoaded = LoadEffectLibrary(sPath.c_str(), library.m_SpellMgr, library.Module(), nullptr, nullptr,
                                       read.m_sError, nullptr, &read.m_Report);
    return read;
}

// What a compressed file holds, as far as it goes.
std::string Unpacked(const std::string& sPacked)
{
    std::vector<uint8_t> text;
    EXPECT_TRUE(QSADecompress(reinterpret_cast<const uint8_t*>(sPacked.data()), sPacked.size(), text));
    return std::string(text.begin(), text.end());
}

bool IsOnlyWhite(std::string_view sText)
{
    return sText.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace

// Cut behind any byte, a library fails to load or is told to be cut, unless nothing but blank lines is gone.
TEST(WholeFiles, ACutIsSeenWhereverItIs)
{
    const auto pLibrary = SmallLibrary();
    const CTempDir dir;
    for (const char* pszName : {"a.Fx00a", "a.Fx00c"})
    {
        const std::string sBytes = SavedBytes(*pLibrary, pszName);
        const bool bPacked = pszName[6] == 'c';
        const std::string sText = bPacked ? Unpacked(sBytes) : sBytes;
        ASSERT_TRUE(Read(dir.write(pszName, sBytes), pLibrary->m_pModule).IsWhole());
        ASSERT_EQ(true, IsWholeEffectFile(pszName, sBytes));
        int nLoaded = 0;
        for (size_t i = 0; i < sBytes.size(); ++i)
        {
            const std::string sCut = sBytes.substr(0, i);
            const CRead read = Read(dir.write(pszName, sCut), pLibrary->m_pModule);
            nLoaded += read.m_bLoaded;
            const std::string sLeft = bPacked ? Unpacked(sCut) : sCut;
            const bool bAllThere =
                sLeft.size() <= sText.size() && IsOnlyWhite(std::string_view(sText).substr(sLeft.size()));
            ASSERT_TRUE(!read.IsWhole() || bAllThere) << pszName << " cut behind " << i;
            ASSERT_TRUE(!IsWholeEffectFile(pszName, sCut).value_or(true) || bAllThere)
                << pszName << " cut behind " << i;
            ASSERT_TRUE(read.IsWhole() || !read.m_bLoaded || read.m_Report.IsCut());
        }
        EXPECT_GT(nLoaded, 100) << "no cut that the loader repairs";
    }
}

TEST(WholeFiles, WhatAMergeLeavesIsSeen)
{
    const std::string sOurs = EffectOf(KeyText("Marker"), "Ours");
    const std::string sTheirs = EffectOf(KeyText("Marker"), "Theirs");
    const auto merged = [&](const std::string& sLineEnd)
    {
        return FileOf("", sLineEnd + "<<<<<<< HEAD" + sLineEnd + sOurs + sLineEnd + "||||||| base" +
                              sLineEnd + "=======" + sLineEnd + sTheirs + sLineEnd + ">>>>>>> topic" +
                              sLineEnd);
    };
    const CTempDir dir;
    for (const std::string& sText :
         {merged("\n"), merged("\r\n"), FileOf("", sOurs + "\n=======\n" + sTheirs),
          FileOf("", EffectOf("\n>>>>>>> .r12\n" + KeyText("Marker"))),
          FileOf("", EffectOf(KeyText("Marker", "(motion-link\n||||||| .r11\n(id 3))"))),
          "<<<<<<< HEAD\n" + FileOf("", sOurs)})
    {
        const CRead read = Read(dir.write("a.Fx00a", sText));
        EXPECT_TRUE(read.m_bLoaded && read.m_Report.IsConflict() && !read.m_Report.IsCut()) << sText;
        EXPECT_EQ(false, IsWholeEffectFile("a.Fx00a", sText));
        EXPECT_EQ(EFinding::eConflict, read.m_Report.Findings().at(0).m_eKind);
    }
    // At any place of the reader's windows.
    const std::string sMerged = merged("\n");
    for (size_t nBefore = 65290; nBefore < 65370; ++nBefore)
    {
        const std::string sText = std::string(nBefore, '\n') + sMerged;
        ASSERT_TRUE(Read(dir.write("a.Fx00a", sText)).m_Report.IsConflict()) << nBefore;
        ASSERT_EQ(false, IsWholeEffectFile("a.Fx00a", sText)) << nBefore;
    }
    // Data is no mark, nor is a line of more or fewer signs.
    for (const std::string& sText :
         {FileOf("", EffectOf(KeyText("Marker"), "\n=======\n")), FileOf("", sOurs + "\n======\n========\n"),
          FileOf("", sOurs + "\n x =======\n")})
        EXPECT_TRUE(Read(dir.write("a.Fx00a", sText)).IsWhole()) << sText;
}
