#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "app/resources/Accelerators.h"
#include "app/resources/Bars.h"
#include "app/resources/DialogTemplates.h"
#include "app/resources/Menus.h"
#include "app/resources/Strings.h"
#include "browser/EffectTreePanel.h"
#include "browser/PrefabTreePanel.h"
#include "shell/MainFrame.h"
#include "timeline/TrackCommands.h"

namespace
{

void Collect(const CMenuTable& menu, std::multiset<int32_t>& ids)
{
    for (const CMenuItem& item : menu)
    {
        if (item.m_pSubmenu)
            Collect(*item.m_pSubmenu, ids);
        else if (!item.IsSeparator())
            ids.insert(item.m_nID);
    }
}

// Who has something that carries a command out.
std::set<ECommandOwner> CarriedOutBy(int32_t nID)
{
    std::set<ECommandOwner> owners;
    const bool bEffects = FindRoute(c_EffectPanelRoutes, nID), bPrefabs = FindRoute(c_PrefabPanelRoutes, nID);
    if (bEffects || bPrefabs)
        owners.insert(bEffects && bPrefabs ? ECommandOwner::ePanels
                      : bEffects           ? ECommandOwner::eEffectPanel
                                           : ECommandOwner::ePrefabPanel);
    if (FindRoute(c_TrackCommands, nID))
        owners.insert(ECommandOwner::eTimeline);
    if (CMainFrame::HasHandler(nID))
        owners.insert(FindCommand(nID)->m_eOwner == ECommandOwner::eFrame ? ECommandOwner::eFrame
                                                                          : ECommandOwner::eApplication);
    return owners;
}

struct CSource
{
    std::string m_sPath; // below Engine/tools/Emberdeck
    std::string m_sText; // without comments
};

std::vector<CSource> ReadSources()
{
    const std::filesystem::path root = std::filesystem::path(EMBERDECK_SOURCE_DIR) / "Engine/tools/Emberdeck";
    std::vector<CSource> sources;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
    {
        const std::filesystem::path& path = entry.path();
        if (path.extension() != ".h" && path.extension() != ".cpp")
            continue;
        std::ifstream file(path);
        CSource source{path.lexically_relative(root).string(), ""};
        for (std::string sLine; std::getline(file, sLine);)
            source.m_sText += sLine.substr(0, sLine.find("//")) + "\n";
        sources.push_back(source);
    }
    return sources;
}

} // namespace

TEST(ResourceNames, EveryCommandIsReachedAndHasItsOwner)
{
    std::multiset<int32_t> reached;
    for (const CMenuTable* pMenu : {&c_MenuBar, &c_EffectPanelMenu, &c_PrefabPanelMenu, &c_TimelineMenu})
    {
        std::multiset<int32_t> ids;
        Collect(*pMenu, ids);
        for (const int32_t nID : ids)
            EXPECT_EQ(1u, ids.count(nID)) << nID << " twice in a menu";
        reached.insert(ids.begin(), ids.end());
    }
    for (const CToolbarTable* pBar : {&c_StandardToolbar, &c_SourceControlToolbar})
        for (const CToolbarButton& button : *pBar)
            if (!button.IsGap())
                reached.insert(button.m_nCommand);
    const auto keys = [&](const auto& table)
    {
        for (const CAccelerator& accelerator : table)
            reached.insert(accelerator.m_nID);
    };
    keys(c_FrameAccelerators);
    keys(c_PanelAccelerators);
    keys(c_TimelineAccelerators);
    keys(c_CurveAccelerators);

    std::set<int32_t> ids;
    for (const CCommand& command : c_Commands)
    {
        SCOPED_TRACE(command.m_nID);
        EXPECT_TRUE(ids.insert(command.m_nID).second) << "two rows";
        EXPECT_TRUE(reached.count(command.m_nID)) << "nothing gives it";
        const std::set<ECommandOwner> owners = CarriedOutBy(command.m_nID);
        if (command.m_eOwner != ECommandOwner::eNobody && command.m_eOwner != ECommandOwner::eCurveDialog)
        {
            EXPECT_EQ(std::set<ECommandOwner>{command.m_eOwner}, owners);
        }
        else
        {
            EXPECT_TRUE(owners.empty());
        }
    }
    for (const int32_t nID : reached)
        EXPECT_TRUE(ids.count(nID)) << nID << " is no command";
    for (const CStringEntry& entry : c_Strings)
        EXPECT_TRUE(ids.count(entry.m_nID) || entry.m_nID == c_nStrVersionLine ||
                    entry.m_nID == c_nStrLegalNotice || entry.m_nID == c_nStrReady)
            << entry.m_nID << " is a text that nobody shows";
}

// Whoever uses an id uses its name, and every name is used: dialogs, controls and the rest by the code that shows them.
TEST(ResourceNames, StandForEveryNumber)
{
    const std::vector<CSource> sources = ReadSources();
    ASSERT_GT(sources.size(), 200u);
    std::map<std::string, std::string> names; // with their numbers
    std::map<std::string, int> uses;          // outside the tables
    std::string sTables;
    const std::regex declared(R"((?:constexpr int32_t |\n    )(c_n(?:Cmd|Str)\w+|e[A-Z]\w*_\w+) = (\d+))");
    for (const CSource& source : sources)
        if (source.m_sPath.starts_with("app/resources/"))
        {
            sTables += source.m_sText;
            for (std::sregex_iterator it(source.m_sText.begin(), source.m_sText.end(), declared), end;
                 it != end; ++it)
            {
                EXPECT_TRUE(names.emplace((*it)[1], (*it)[2]).second) << (*it)[1] << " is declared twice";
                uses[(*it)[1]];
            }
        }
    ASSERT_GT(names.size(), 150u);

    constexpr const char* c_szWord = "_0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const std::regex bare(
        R"((?:Find|Get<\w+>|PlaceOf|HeadingOf|FindDialogTemplate|FindString|Dialog dialog|Command)\(\d{2,})");
    std::set<std::string> commands;
    for (const auto& [sName, sNumber] : names)
        if (sName.starts_with("c_nCmd"))
            commands.insert(sNumber);
    for (const CSource& source : sources)
    {
        if (source.m_sPath.starts_with("app/resources/"))
            continue;
        std::smatch found;
        EXPECT_FALSE(std::regex_search(source.m_sText, found, bare)) << source.m_sPath << ": " << found[0];
        const std::string& sText = source.m_sText;
        for (size_t n = sText.find_first_of(c_szWord); n != std::string::npos;)
        {
            const size_t nEnd = std::min(sText.find_first_not_of(c_szWord, n), sText.size());
            const std::string sWord = sText.substr(n, nEnd - n);
            EXPECT_FALSE(commands.count(sWord)) << source.m_sPath << " has " << sWord;
            if (const auto use = uses.find(sWord); use != uses.end())
                ++use->second;
            n = sText.find_first_of(c_szWord, nEnd);
        }
    }
    for (const auto& [sName, nUses] : uses)
        EXPECT_TRUE(nUses > 0 || sName.starts_with("c_nCmd")) << sName << " is used by nobody";

    // Rows begin with a name, or with none.
    const std::regex row(R"(\n    (?:MakeTemplate\(|\{)(\d{2,}),)");
    std::smatch found;
    EXPECT_FALSE(std::regex_search(sTables, found, row)) << found[0];
}
