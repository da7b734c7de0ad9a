#include "support/AppBench.h"

namespace
{
struct CStoppingPrompts : CScriptedPrompts
{
    bool Progress(const std::string& sWhat, double fFraction) override
    {
        const size_t nFolders = sWhat.find('/');
        sTold += sWhat.substr(0, nFolders);
        if (nFolders != std::string::npos)
            sTold += sWhat.substr(sWhat.rfind('/') + 1);
        sTold += " " + std::to_string(int(fFraction * 100)) + "; ";
        return fFraction < fStop;
    }
    double fStop = 2.0;
    std::string sTold; // without folders, in per cent
};
} // namespace

TEST(UpdateMode, ReSavesEveryEffectFileBelowADirectoryAndNoOther)
{
    CAppBench bench;
    const std::string sGood = ReadBytes(bench.MakeFile("seed.Fx00a"));
    std::filesystem::remove(bench.path("seed.Fx00a"));
    const std::string sOld = "; an older writer\r\n" + sGood;
    bench.dir.write("game/art/a.FX00A", sOld);
    bench.dir.write("game/art/sub.d/c.Fx00a", sOld);
    bench.dir.write("game/art/b.Fx00a", "nonsense");
    bench.dir.write("game/art/d.Fx00a.txt", sOld);
    bench.dir.write("game/art/Fx00a", sOld);
    std::filesystem::create_directory_symlink(bench.path("art"), bench.path("art/sub.d/loop"));

    // In the order of the entries; what can't be opened is told, and the walk goes on.
    bench.prompts.onAsk(bench.path("art/a.FX00A"), EAnswer::eNo)
        .onAsk(bench.path("art/b.Fx00a"), EAnswer::eNo)
        .onAsk("Failed loading the file")
        .onAsk(bench.path("art/sub.d/c.Fx00a"), EAnswer::eNo);
    EXPECT_TRUE(bench.app->UpdateEffectsInDirectory((bench.path("art") + "\\").c_str()));
    EXPECT_EQ(sGood, ReadBytes(bench.path("art/a.FX00A")));
    EXPECT_EQ(sGood, ReadBytes(bench.path("art/sub.d/c.Fx00a")));
    EXPECT_EQ("nonsense", ReadBytes(bench.path("art/b.Fx00a")));
    EXPECT_EQ(sOld, ReadBytes(bench.path("art/d.Fx00a.txt")));
    EXPECT_EQ(sOld, ReadBytes(bench.path("art/Fx00a")));
    EXPECT_EQ(sOld, ReadBytes(bench.app->Backups().List(bench.path("art/a.FX00A")).at(0).m_sBackup));

    EXPECT_TRUE(bench.app->UpdateEffectsInDirectory(bench.path("none").c_str()));
    EXPECT_TRUE(bench.app->UpdateEffectsInDirectory("")); // not the whole machine
}

TEST(UpdateMode, StopsBetweenFilesOnRequest)
{
    CAppBench bench;
    const std::string sGood = ReadBytes(bench.MakeFile("seed.Fx00a"));
    const std::string sOld = "; old\r\n" + sGood;
    bench.dir.write("game/art/a.Fx00a", sOld);
    bench.dir.write("game/art/b.Fx00a", sOld);
    CStoppingPrompts prompts;
    prompts.fStop = 0.5;
    prompts.onAsk("a.Fx00a", EAnswer::eNo);
    CEmberdeckApp app(CAppServices{prompts, *bench.profile, bench.sourceControl, nullptr, nullptr,
                                   bench.dir.path("backups")});
    EXPECT_FALSE(app.UpdateEffectsInDirectory(bench.path("art").c_str()));
    EXPECT_EQ(sGood, ReadBytes(bench.path("art/a.Fx00a")));
    EXPECT_EQ(sOld, ReadBytes(bench.path("art/b.Fx00a")));
    EXPECT_EQ("Looking for effect files -100; Updating a.Fx00a 0; Updating b.Fx00a 50; ",
              std::exchange(prompts.sTold, ""));

    prompts.fStop = 2.0;
    prompts.onAsk("a.Fx00a", EAnswer::eNo).onAsk("b.Fx00a", EAnswer::eNo);
    EXPECT_TRUE(app.UpdateEffectsInDirectory(bench.path("art").c_str()));
    EXPECT_EQ("Looking for effect files -100; Updating a.Fx00a 0; Updating b.Fx00a 50; Updated 2 files 100; ",
              prompts.sTold);
}
