#include <filesystem>

#include "properties/PropertyBench.h"
#include "properties/ResourceFile.h"
#include "support/TempDir.h"

namespace
{

struct CPickerBench : CPropertyBench
{
    CPickerBench()
    {
        dir.write("res/Fire/Smoke.dds", "");
        dir.write("res2/Smoke.dds", "");
        sRoot = dir.path("res") + "\\";
    }
    bool Choose(CResourceFileButton& button, const std::string& sPath)
    {
        prompts.onFile(sPath);
        return button.OnClick(context);
    }
    CTempDir dir;
};

} // namespace

TEST(ResourceFile, PathsBehindTheRootAreKept)
{
    CPickerBench bench;
    CResourceFileButton button("", "Textures (*.dds)|*.dds||");
    EXPECT_TRUE(bench.Choose(button, bench.dir.path("res/Fire/Smoke.dds")));
    EXPECT_EQ("Fire\\Smoke.dds", button.GetFile());
    const CFileDialogRequest& first = bench.prompts.m_Files.at(0);
    EXPECT_EQ("", first.m_sInitialName); // the root exists too, but is no file
    EXPECT_EQ(bench.dir.path("res/"), first.m_sInitialDirectory);
    EXPECT_EQ("Textures (*.dds)|*.dds||", first.m_sFilter);
    EXPECT_TRUE(first.m_bOpen);

    std::string sOther = bench.dir.path("RES/a.dds");
    EXPECT_TRUE(bench.Choose(button, sOther)); // the root in other case
    EXPECT_EQ(bench.dir.path("res/Fire/Smoke.dds"), bench.prompts.m_Files.at(1).m_sInitialName);
    EXPECT_EQ("a.dds", button.GetFile());
    bench.prompts.onFile(std::nullopt);
    EXPECT_FALSE(button.OnClick(bench.context));
    EXPECT_EQ("", bench.prompts.m_Files.at(2).m_sInitialName); // not there any more
    EXPECT_EQ("a.dds", button.GetFile());

    std::filesystem::create_directory_symlink(bench.dir.path("res"), bench.dir.path("link"));
    EXPECT_TRUE(bench.Choose(button, bench.dir.path("link/Fire/Smoke.dds")));
    EXPECT_EQ("Fire\\Smoke.dds", button.GetFile());
    bench.sRoot.clear();
    EXPECT_TRUE(bench.Choose(button, "/x/y.dds"));
    EXPECT_EQ("\\x\\y.dds", button.GetFile());
}

TEST(ResourceFile, OthersAreRefused)
{
    CPickerBench bench;
    CResourceFileButton button("old", "");
    bench.prompts.onFile(bench.dir.path("res2/Smoke.dds")).onAsk("currently " + bench.sRoot + ". If this");
    EXPECT_FALSE(button.OnClick(bench.context));
    EXPECT_EQ(c_szAllFilesFilter, bench.prompts.m_Files.at(0).m_sFilter);
    EXPECT_EQ("Invalid File Selected", bench.prompts.m_Asked.at(0).m_sCaption);
    EXPECT_EQ(EIcon::eExclamation, bench.prompts.m_Asked.at(0).m_eIcon);

    for (const char* pszName : {"res/a\"b.dds", "res/a\\b.dds", "res/a\tb.dds"})
    {
        bench.prompts.onFile(bench.dir.write(pszName, "")).onAsk("has a double quote");
        EXPECT_FALSE(button.OnClick(bench.context)) << pszName;
    }
    bench.prompts.onFile(bench.dir.path("res/" + std::string(200, 'a') + "/" + std::string(55, 'b')))
        .onAsk("longer than the 255");
    EXPECT_FALSE(button.OnClick(bench.context));
    EXPECT_EQ("old", button.GetFile());
}

TEST(ResourceFile, FiltersReadAsFarAsTheyGo)
{
    const auto text = [](const std::string& sFilter)
    {
        std::string sText;
        for (const CFileFilter& filter : ParseFileFilter(sFilter))
        {
            sText += filter.m_sText + ":";
            for (const std::string& sPattern : filter.m_Patterns)
                sText += sPattern + ",";
            sText += " ";
        }
        return sText;
    };
    EXPECT_EQ("Textures:*.dds,*.TGA, All Files (*.*):*, ",
              text("Textures|*.dds; *.TGA;|All Files (*.*)|*.*||"));
    EXPECT_EQ("A:*.a, B:*, ", text("A|*.a|B"));
    EXPECT_EQ("A:*.a, ", text("A|*.a||B|*.b||"));
    EXPECT_EQ("A:*, ", text("A||"));
    EXPECT_EQ("", text(""));
    EXPECT_EQ("", text("|*.a||"));
}
