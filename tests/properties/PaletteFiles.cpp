#include <filesystem>

#include "properties/PropertyBench.h"
#include "support/TempDir.h"

namespace
{

const CPoint c_Cell7{180, 5};

struct CFileBench : CPropertyBench
{
    CFileBench() { dlg.OnInitDialog(203, 69); }
    void Save(const std::string& sPath)
    {
        prompts.onFile(sPath);
        dlg.OnCommand(eColor_SaveButton);
    }
    void Load(const std::string& sPath)
    {
        prompts.onFile(sPath);
        dlg.OnCommand(eColor_LoadButton);
    }
    void Describe(const std::string& sText) { dlg.OnText(eColor_DescriptionBox, sText); }
    CTempDir dir;
    CKRColorDialog dlg{services, 0, 0x103};
};

} // namespace

TEST(PaletteFiles, ValuesAreReadAsFarAsTheyGo)
{
    EXPECT_EQ("  1,   2,   3, 255", FormatColorValue(0xFF030201));
    EXPECT_EQ(0xFF030201u, ParseColorValue("  1,   2,   3, 255"));
    EXPECT_EQ(0x04030201u, ParseColorValue("1,2,3,4 and more"));
    EXPECT_EQ(0xFF030201u, ParseColorValue("1,2,3"));
    EXPECT_EQ(0x2C2C2C2Cu, ParseColorValue("300,300,300,300"));
    EXPECT_EQ(0xFFFFFF01u, ParseColorValue("1 ,2,3,4")); // a blank in front of a comma ends it
    EXPECT_EQ(0xFFFF0201u, ParseColorValue("1,2,x,4"));
    EXPECT_EQ(0xFFFFFFFFu, ParseColorValue(""));
    EXPECT_EQ(0x040302FFu, ParseColorValue("-1,+2,\t3,4"));
    ParseColorValue("99999999999999999999,1,1,1"); // defined, whatever it gives
}

TEST(PaletteFiles, WrittenAsOtherProgramsDo)
{
    CFileBench bench;
    bench.dlg.OnText(eColor_RedBox, "1");
    bench.dlg.OnText(eColor_GreenBox, "2");
    bench.dlg.OnText(eColor_BlueBox, "3");
    bench.dlg.OnText(eColor_AlphaBox, "999"); // still in the box when the button is pressed
    bench.dlg.GetPalette().OnLeftDown(c_Cell7, true);
    bench.dlg.OnCommand(eColor_AddButton);
    bench.Describe(" Warm\r\n\"glow\" ");
    const std::string sPath =
        bench.dir.write("old.ccp", "; by hand\n[Colors]\nColor07=9,9,9,9\nMine=1\n[Other]\na=b\n");
    bench.Save(sPath);
    const std::string sText = ReadBytes(sPath);
    EXPECT_EQ(
        0u,
        sText.find("; by hand\r\n[Colors]\r\nColor07=  1,   2,   3, 255\r\nMine=1\r\nColor00=255, 255, 255, "
                   "255\r\n"));
    EXPECT_NE(std::string::npos, sText.find("[Other]\r\na=b\r\n\r\n[Description]\r\nColor00=\r\n"));
    EXPECT_NE(std::string::npos, sText.find("Color07=\" Warm \"glow\" \"\r\n"));
    EXPECT_EQ("ccp", bench.prompts.m_Files.at(0).m_sDefaultExtension);
    EXPECT_TRUE(bench.prompts.m_Files.at(0).m_bOverwritePrompt);

    CFileBench other;
    other.dlg.GetPalette().OnLeftDown(c_Cell7, true);
    other.Load(sPath);
    EXPECT_EQ(0xFF030201u, other.dlg.GetPalette().GetColor(7));
    EXPECT_EQ(" Warm \"glow\" ", other.dlg.GetText(eColor_DescriptionBox));
    EXPECT_EQ(MakeColorRef(1, 2, 3), other.dlg.GetChooser().GetRgb()); // the selected cell is sent
}

TEST(PaletteFiles, FilesOfOthersAndNoFiles)
{
    CFileBench bench;
    const std::string sPath = bench.dir.write(
        "x.ccp", "[COLORS]\r; comment\rcolor00 = '1, 2, 3, 4' \rColor01=5\rColor01=6\r\r[description]\r"
                 "COLOR01=second\rColor02=" +
                     std::string(254, 'a') + "\xC3\xA4\r");
    bench.Load(sPath);
    EXPECT_EQ(0x04030201u, bench.dlg.GetPalette().GetColor(0));
    EXPECT_EQ(0xFFFFFF05u, bench.dlg.GetPalette().GetColor(1));
    EXPECT_EQ("second", bench.dlg.GetDescription(1));
    EXPECT_EQ(std::string(254, 'a'), bench.dlg.GetDescription(2)); // cut at a whole character
    EXPECT_EQ("4", bench.dlg.GetText(eColor_AlphaBox));

    bench.prompts.onFile(std::nullopt);
    bench.dlg.OnCommand(eColor_LoadButton);
    EXPECT_EQ(0x04030201u, bench.dlg.GetPalette().GetColor(0));
    bench.Load(bench.dir.path("missing.ccp")); // all keys count as missing
    EXPECT_EQ(0xFFFFFFFFu, bench.dlg.GetPalette().GetColor(0));
    EXPECT_EQ("", bench.dlg.GetDescription(1));
    bench.prompts.onFile(bench.dir.path("no/folder.ccp")).onAsk("no/folder.ccp");
    bench.dlg.OnCommand(eColor_SaveButton);
    bench.prompts.onFile(bench.dir.dir()).onAsk("An error occurred saving"); // a folder
    bench.dlg.OnCommand(eColor_SaveButton);
}

TEST(PaletteFiles, DescriptionsFollowTheCells)
{
    CFileBench bench;
    bench.Describe("first");
    bench.dlg.GetPalette().OnLeftDown(c_Cell7, false); // stored before the selection moves
    EXPECT_EQ("first", bench.dlg.GetDescription(0));
    EXPECT_EQ("", bench.dlg.GetText(eColor_DescriptionBox));
    bench.Describe("seventh");
    bench.dlg.OnFocusLost(eColor_DescriptionBox);
    EXPECT_EQ(7, bench.dlg.GetCurrentCell());
    bench.dlg.GetPalette().OnKey(EPaletteKey::eDelete, false);
    EXPECT_EQ("", bench.dlg.GetText(eColor_DescriptionBox));
    bench.Describe("again");
    bench.dlg.GetPalette().OnKey(EPaletteKey::eLeft, false);
    bench.dlg.GetPalette().OnKey(EPaletteKey::eDelete, false); // another cell's
    EXPECT_EQ("again", bench.dlg.GetText(eColor_DescriptionBox));
    // A file has one line for each.
    bench.Describe(std::string("a\nb\rc\r\nd\0e", 10));
    bench.dlg.OnFocusLost(eColor_DescriptionBox);
    EXPECT_EQ("a b c d e", bench.dlg.GetDescription(7));
}

TEST(PaletteFiles, TheProfileIsWrittenByOkAlone)
{
    CFileBench bench;
    bench.dlg.GetPalette().OnLeftDown(c_Cell7, true);
    bench.dlg.OnText(eColor_RedBox, "1");
    bench.dlg.OnText(eColor_AlphaBox, "9");
    bench.dlg.OnCommand(eColor_AddButton);
    bench.Describe("Embers");
    {
        CKRColorDialog cancelled(bench.services, 0, 0);
        cancelled.OnInitDialog(203, 69);
        EXPECT_EQ(0xFFFFFFFFu, cancelled.GetPalette().GetColor(7));
    }
    EXPECT_TRUE(bench.dlg.OnOK());
    EXPECT_EQ(0x09000001u, bench.dlg.m_nResultColor);
    EXPECT_EQ("Embers", bench.profile->GetString("Custom Colors", "DescriptionColor07"));
    EXPECT_EQ(0x09000001u, ParseColorValue(bench.profile->GetString("Custom Colors", "Color07")));

    CKRColorDialog next(bench.services, 0x00070605, 0);
    next.OnInitDialog(203, 69);
    EXPECT_EQ(0x09000001u, next.GetPalette().GetColor(7));
    EXPECT_EQ("Embers", next.GetDescription(7));
    EXPECT_EQ("5", next.GetText(eColor_RedBox)); // the colour that was given, not the first cell's
}

TEST(PaletteFiles, TwoDialogsKeepEachOthersColours)
{
    CPropertyBench bench;
    CTempDir dir;
    const auto pFirst = OpenFileProfile(dir.path("settings.ini"));
    const auto pSecond = OpenFileProfile(dir.path("settings.ini"));
    const CPoint cell0{10, 10};
    CPropertyServices ofFirst{bench.context, *pFirst, bench.dialogs};
    CPropertyServices ofSecond{bench.context, *pSecond, bench.dialogs};
    CKRColorDialog one(ofFirst, 0, 0), two(ofSecond, 0, 0);
    one.OnInitDialog(203, 69);
    two.OnInitDialog(203, 69);
    one.GetPalette().OnLeftDown(c_Cell7, true);
    one.OnText(eColor_RedBox, "1");
    one.OnCommand(eColor_AddButton);
    one.OnText(eColor_DescriptionBox, "Embers");
    EXPECT_TRUE(one.OnOK());
    two.GetPalette().OnLeftDown(cell0, true);
    two.OnText(eColor_RedBox, "2");
    two.OnCommand(eColor_AddButton);
    EXPECT_TRUE(two.OnOK()); // opened before the other's OK

    const auto pProfile = OpenFileProfile(dir.path("settings.ini"));
    const auto redOf = [&](const char* pszKey)
    { return ParseColorValue(pProfile->GetString("Custom Colors", pszKey)) & 0xFF; };
    EXPECT_EQ(1u, redOf("Color07"));
    EXPECT_EQ(2u, redOf("Color00"));
    EXPECT_EQ("Embers", pProfile->GetString("Custom Colors", "DescriptionColor07"));
    EXPECT_EQ("255, 255, 255, 255", pProfile->GetString("Custom Colors", "Color23"))
        << "all that is nowhere yet";
}
