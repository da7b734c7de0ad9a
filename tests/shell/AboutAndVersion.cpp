#include <gtest/gtest.h>

#include "app/resources/DialogTemplates.h"
#include "app/resources/Strings.h"
#include "shell/AboutDialog.h"

namespace
{

ModuleReader Reads(const CVersionBlock& block, const std::string& sFileName = "/opt/emberdeck")
{
    return [=](const std::string&, std::string& sName, CVersionBlock& out)
    {
        sName = sFileName;
        out = block;
        return true;
    };
}

std::string TextOf(const CAboutSharedDlg& dialog, int32_t nControlID)
{
    for (const CAboutText& text : dialog.OnInitDialog())
    {
        EXPECT_NE(nullptr, FindDialogTemplate(eDlg_About)->Find(text.m_nControlID));
        if (text.m_nControlID == nControlID)
            return text.m_sText;
    }
    return "no such control";
}

} // namespace

TEST(AboutAndVersion, FirstOneCodePageThenTheOther)
{
    CVersionBlock block;
    block.SetValue("\\StringFileInfo\\040904e4\\ProductName", "Other");
    block.SetValue("\\StringFileInfo\\040904e4\\FileVersion", "2.0");
    block.SetValue("\\StringFileInfo\\040904b0\\FileVersion", "1.0");
    std::string sProduct, sVersion, sLegal = "as it was";
    EXPECT_TRUE(ExtractVersionInformation("", &sProduct, &sVersion, &sLegal, Reads(block)));
    EXPECT_EQ("Other 1.0 as it was", sProduct + " " + sVersion + " " + sLegal);
    EXPECT_TRUE(ExtractVersionInformation("", &sProduct, &sVersion, &sLegal, Reads({}))); // no block
    EXPECT_EQ("Other", sProduct);

    EXPECT_FALSE(ExtractVersionInformation("", &sProduct, &sVersion, &sLegal, Reads(block, "emberdeck")));
    EXPECT_TRUE(ExtractVersionInformation("", &sProduct, &sVersion, &sLegal, Reads(block, "C:\\a.exe")));
    // Only 512 characters of the name are looked at.
    EXPECT_FALSE(ExtractVersionInformation("", &sProduct, &sVersion, &sLegal,
                                           Reads(block, std::string(512, 'a') + "/b")));
    EXPECT_FALSE(ExtractVersionInformation("/no/such/library.so", &sProduct, &sVersion, &sLegal));
    EXPECT_TRUE(ExtractVersionInformation("", &sProduct, &sVersion, &sLegal)); // this very program
}

TEST(AboutAndVersion, FillsTheTemplate)
{
    const CAboutSharedDlg dialog(Reads(MakeVersionBlock("Emberdeck", "1.2.3", "Copyright")));
    EXPECT_EQ("Emberdeck", TextOf(dialog, eAbout_Title));
    EXPECT_EQ("Version: 1.2.3 - [unknown]", TextOf(dialog, eAbout_Version));
    EXPECT_EQ("ANSI Edition", TextOf(dialog, eAbout_Info));
    EXPECT_EQ("Copyright", TextOf(dialog, eAbout_Copyright));
    EXPECT_EQ(FindString(c_nStrLegalNotice), TextOf(dialog, eAbout_Warning));

    const CAboutSharedDlg bare{Reads({})};
    EXPECT_EQ("", TextOf(bare, eAbout_Title));
    EXPECT_EQ("Version:  - [unknown]", TextOf(bare, eAbout_Version));
    EXPECT_EQ("", TextOf(bare, eAbout_Copyright));
}
