#include <QListWidget>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "desktop/LibraryBench.h"

// A day's work on the sample project, by hand from the empty library to what the game plays.

namespace
{

std::string TextOfFile(const std::string& sPath)
{
    std::ifstream file(sPath, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

struct CSampleDesktop : CLibraryDesktop
{
    CSampleDesktop()
    {
        // A copy, whose locator leads to the programs.
        const std::string sBin = EMBERDECK_BIN_DIR;
        std::filesystem::copy(sBin + "/bonfire-project", dir.path("sample"),
                              std::filesystem::copy_options::recursive);
        dir.write("sample/bonfire.proj00",
                  "[Project Directories]\r\nResourceRoot=resources\r\n[Project Binaries]\r\n"
                  "Fireglass=" +
                      sBin + "/fireglass.dll\r\n");
        std::filesystem::permissions(dir.path("sample/bonfire.proj00"), std::filesystem::perms::owner_all);
    }
    std::string sample(const char* pszName) const { return dir.path(std::string("sample/") + pszName); }
    // A new item below another, under a name typed at once.
    void New(LibraryTreeView* pTree, const char* pszBelow, const char* pszCommand, const char* pszName,
             const CInOpen& then = {})
    {
        Choose(At(pTree, pszBelow), {pszCommand}, then);
        EXPECT_TRUE(Desktop::Settle([&] { return pTree->Panel()->m_Tree.IsEditing(); })) << pszName;
        Desktop::Type(pszName);
        Desktop::Key("Return");
        EXPECT_EQ(pszName, Selected(pTree));
    }
    static CInOpen Type(const char* pszType)
    {
        return [pszType](QWidget*)
        {
            Desktop::Type(pszType);
            Desktop::Key("Return");
        };
    }
    QPoint Time(int32_t nTime, int nRow)
    {
        TrackWidget* pTimeline = window.ActiveTimeline();
        return Desktop::On(pTimeline, {PixelFromTime(pTimeline->Logic().TimeBar(), nTime),
                                       pTimeline->Logic().Layout().m_rcTrack.top +
                                           nRow * CTrackLayout::c_nTrackHeight + 18});
    }
};

} // namespace

TEST(DaysWork, FromAnEmptyLibraryToThePlayedEffects)
{
    CSampleDesktop desk;
    // The project comes with its library; the day begins on an empty one.
    Desktop::WhileOpen(desk.File(desk.sample("bonfire.Fx00a"), desk.By("Escape")));
    Desktop::Key("ctrl+o");
    ASSERT_TRUE(Desktop::Settle([&] { return desk.App().m_SpellMgr.FindSpell("Campfire") != nullptr; }));
    desk.ChooseFromBar("alt+f", {"New"});
    ASSERT_EQ("[[Effects]]\n", desk.Effects());

    desk.New(desk.pEffects, "[Effects]", "New Group", "Day");
    for (const char* pszName : {"Dawn", "Noon", "Dusk"})
        desk.New(desk.pEffects, "Day", "New Effect", pszName);
    desk.ShowPage(1);
    desk.New(desk.pPrefabs, "[Prefabs]", "New Group", "Kit");
    desk.New(desk.pPrefabs, "Kit", "New Prefab", "Glow", desk.Type("Emitter"));
    desk.New(desk.pPrefabs, "Kit", "New Prefab", "Lamp", desk.Type("Light"));
    EXPECT_EQ("Glow", desk.window.Host().GetActivePrefab()->m_sName) << "the first one is active";
    desk.ShowPage(0);

    // Keys of the active prefab and of a type, linked by hand.
    Desktop::DoubleClick(desk.At(desk.pEffects, "Dawn"));
    ASSERT_TRUE(desk.window.ActiveTimeline());
    for (int i = 0; i < 2; ++i)
        desk.Choose(desk.Time(5000, 3), {"Track", "Insert Track"});
    desk.Choose(desk.Time(2000, 0), {"Track", "Add Prefab Glow - Emitter"});
    desk.Choose(desk.Time(3000, 1), {"Track", "Add Key"}, desk.Type("Sprite"));
    const CSpell* pDawn = desk.App().m_SpellMgr.FindSpell("Dawn");
    ASSERT_EQ(2u, pDawn->m_Tracks.GetNumTracks());
    desk.Choose(desk.Time(2000, 0), {"Key", "Expand Key"}); // around the other, which is to move with it
    desk.Choose(desk.Time(3000, 1), {"Key", "Motion Link To Key"});
    Desktop::Click(desk.Time(2000, 0));
    EXPECT_TRUE(KeyOf(desk.App().m_SpellMgr, "Dawn", 1)->m_bMotionLinked);
    EXPECT_EQ("Glow", KeyOf(desk.App().m_SpellMgr, "Dawn")->GetParent()->m_sName);
    desk.Choose(desk.Time(2000, 0), {"Key", "Edit Key"},
                [](QWidget* pOpen)
                {
                    EXPECT_EQ("Emitter", pOpen->windowTitle().toStdString());
                    Desktop::Key("Escape");
                });

    // Copies, another library's effects, names and what isn't wanted after all.
    desk.Pause();
    Desktop::Click(desk.At(desk.pEffects, "Dawn"));
    Desktop::Key("Insert");
    EXPECT_EQ("Dawn_1", desk.Selected(desk.pEffects));
    const auto take = [](QWidget* pChoice)
    {
        auto* pList = pChoice->findChild<QListWidget*>();
        ASSERT_TRUE(pList);
        EXPECT_EQ(300, pList->count());
        Desktop::Click(Desktop::On(pList->viewport(), pList->visualItemRect(pList->item(0)).center()));
        Desktop::Click(Desktop::On(pList->viewport(), pList->visualItemRect(pList->item(3)).center()), 1,
                       "ctrl");
        Desktop::Key("Return");
    };
    desk.Choose(desk.At(desk.pEffects, "Dawn_1"), {"Import Effects..."},
                desk.File(desk.sample("inferno.Fx00c"), take));
    EXPECT_EQ(6u, desk.App().m_SpellMgr.Spells().size());
    Desktop::Click(desk.At(desk.pEffects, "Noon"));
    Desktop::Key("F2");
    Desktop::Type("Midday\n");
    Desktop::Click(desk.At(desk.pEffects, "Dusk"));
    desk.Answer("Return");
    Desktop::Key("Delete");
    EXPECT_EQ(0u, desk.Effects().find("[[Effects]]\n  [Day]\n    Dawn\n    Dawn_1\n    Midday\n  "))
        << desk.Effects();
    EXPECT_EQ(5u, desk.App().m_SpellMgr.Spells().size());

    // Saved under a name, loaded again, and saved as it was.
    desk.ChooseFromBar("alt+f", {"Save As..."}, desk.File(desk.sample("day.Fx00a")));
    const std::string sEffects = desk.Effects(), sPrefabs = desk.Prefabs(),
                      sText = TextOfFile(desk.sample("day.Fx00a"));
    ASSERT_NE(std::string::npos, sText.find("Midday"));
    desk.ChooseFromBar("alt+f", {"New"});
    desk.OpenFile(desk.sample("day.Fx00a"));
    EXPECT_EQ(sEffects, desk.Effects());
    EXPECT_EQ(sPrefabs, desk.Prefabs());
    EXPECT_TRUE(KeyOf(desk.App().m_SpellMgr, "Dawn", 1)->m_bMotionLinked);
    Desktop::Key("ctrl+s");
    EXPECT_EQ(sText, TextOfFile(desk.sample("day.Fx00a")));

    desk.ChooseFromBar("alt+f", {"Pack Effects"});
    const std::string sGame =
        OutputOf(std::string(EMBERDECK_BIN_DIR) + "/bonfire --headless '" + desk.sample("day.Fx00p") + "'");
    for (const auto& pSpell : desk.App().m_SpellMgr.Spells())
        EXPECT_NE(std::string::npos, sGame.find("effect \"" + std::string(pSpell->m_szName) + "\"")) << sGame;
    EXPECT_NE(std::string::npos, sGame.find("moves with Emitter")) << sGame;
}
