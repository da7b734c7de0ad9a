#include <cstring>
#include <set>

#include "ShellTest.h"
#include "app/resources/DialogIcons.h"
#include "app/resources/DialogTemplates.h"
#include "app/resources/Strings.h"
#include "app/resources/TreeIcons.h"

namespace
{

// Commands of menus that have no text in the status line.
const std::set<int32_t> c_Silent = {
    c_nCmdSaveAs,    c_nCmdEditGameInfo,  c_nCmdOpenSelection, c_nCmdNewGroup,   c_nCmdNewEffectInGroup,
    c_nCmdNewPrefab, c_nCmdImportEffects, c_nCmdDuplicate,     c_nCmdRenameItem, c_nCmdDeleteSelection,
};

void CheckMenu(const CMenuTable& menu, std::set<int32_t>& seen)
{
    std::set<char> letters;
    for (const CMenuItem& item : menu)
    {
        if (item.IsSeparator())
        {
            // Neither at an end, nor two in a row.
            EXPECT_TRUE(&item != menu.begin() && &item + 1 != menu.end() && !(&item - 1)->IsSeparator());
            continue;
        }
        EXPECT_STRNE("", item.GetLabel()) << item.m_nID;
        if (const char* pszMark = strchr(item.GetLabel(), '&'))
        {
            EXPECT_TRUE(letters.insert(static_cast<char>(tolower(pszMark[1]))).second) << item.GetLabel();
        }
        if (item.m_pSubmenu)
        {
            CheckMenu(*item.m_pSubmenu, seen);
            continue;
        }
        seen.insert(item.m_nID);
        EXPECT_NE(nullptr, FindCommand(item.m_nID)) << item.m_nID;
        EXPECT_EQ(c_Silent.count(item.m_nID) != 0, GetStatusText(item.m_nID).empty()) << item.m_nID;
    }
}

void CheckArt(const CIconArt& art)
{
    int nSolid = 0;
    for (const char* pszRow : art.m_Rows)
    {
        ASSERT_NE(nullptr, pszRow);
        EXPECT_EQ(size_t(c_nIconSize), strlen(pszRow)) << pszRow;
        for (const char* p = pszRow; *p; ++p)
        {
            EXPECT_TRUE(*p == '.' || GetIconColor(*p) != c_nIconTransparent) << pszRow;
            nSolid += *p != '.';
        }
    }
    EXPECT_GT(nSolid, 40);
}

} // namespace

TEST(ResourceTables, CommandsAreUniqueAndCarriedOut)
{
    std::set<int32_t> ids;
    for (const CCommand& command : c_Commands)
    {
        EXPECT_TRUE(ids.insert(command.m_nID).second) << command.m_nID;
        const bool bFrame =
            command.m_eOwner == ECommandOwner::eApplication || command.m_eOwner == ECommandOwner::eFrame;
        EXPECT_EQ(bFrame, CMainFrame::HasHandler(command.m_nID)) << command.m_nID;
    }
    std::set<int32_t> strings;
    for (const CStringEntry& entry : c_Strings)
        EXPECT_TRUE(strings.insert(entry.m_nID).second) << entry.m_nID;
}

TEST(ResourceTables, MenusAndToolbarsHoldKnownCommands)
{
    std::set<int32_t> bar, panels;
    CheckMenu(c_MenuBar, bar);
    CheckMenu(c_EffectPanelMenu, panels);
    CheckMenu(c_PrefabPanelMenu, panels);
    for (int32_t nID : bar)
        EXPECT_TRUE(CMainFrame::HasHandler(nID)) << nID;

    for (const CToolbarTable* pBar : {&c_StandardToolbar, &c_SourceControlToolbar, &c_EditToolbar})
    {
        for (const CToolbarButton& button : *pBar)
        {
            EXPECT_EQ(button.IsGap(), button.m_pIcon == nullptr);
            if (button.IsGap())
                continue;
            EXPECT_TRUE(CMainFrame::HasHandler(button.m_nCommand)) << button.m_nCommand;
            EXPECT_FALSE(GetToolTip(button.m_nCommand).empty()) << button.m_nCommand;
            CheckArt(*button.m_pIcon);
        }
    }
    for (const CIconArt* pArt :
         {&c_FolderClosedIcon, &c_FolderOpenIcon, &c_EffectIcon, &c_PrefabIcon, &c_CopyIcon, &c_PasteIcon})
        CheckArt(*pArt);
}

TEST(ResourceTables, AcceleratorsHaveNamesAndKnownCommands)
{
    int nShortcuts = 0;
    const auto check = [&](const auto& table)
    {
        std::set<std::string> keys;
        for (const CAccelerator& accelerator : table)
        {
            std::string sText;
            EXPECT_TRUE(GetAcceleratorText(accelerator, sText)) << accelerator.m_nID;
            EXPECT_TRUE(keys.insert(sText).second) << sText << " twice in a table";
            const CCommand* pCommand = FindCommand(accelerator.m_nID);
            ASSERT_NE(nullptr, pCommand) << accelerator.m_nID;
            nShortcuts += CMainFrame::IsShortcut(accelerator);
            // What a label says behind its tab is what the key is.
            if (const char* pszTab = strchr(pCommand->m_pszLabel, '\t'))
            {
                EXPECT_EQ(pszTab + 1, sText);
            }
        }
    };
    check(c_FrameAccelerators);
    // Open, Save, Launch, two each of Undo and Redo: the toolkit's own would silence the timeline's.
    EXPECT_EQ(7, nShortcuts);
    check(c_PanelAccelerators);
    check(c_TimelineAccelerators);
    check(c_CurveAccelerators);
    EXPECT_EQ(7, nShortcuts);
}

TEST(ResourceTables, ControlsStandInsideTheirDialogAndApart)
{
    std::set<int32_t> ids;
    for (const CDialogTemplate& dialog : c_DialogTemplates)
    {
        SCOPED_TRACE(dialog.m_nID);
        EXPECT_TRUE(ids.insert(dialog.m_nID).second);
        EXPECT_EQ(&dialog, FindDialogTemplate(dialog.m_nID));
        std::set<int32_t> controls;
        int nDefaults = 0;
        for (const CTemplateControl& control : dialog)
        {
            SCOPED_TRACE(control.m_nID);
            const bool bList =
                control.m_eKind == ETemplateControl::eDropDownList; // may open beyond the dialog
            EXPECT_TRUE(control.m_nX >= 0 && control.m_nY >= 0 && control.m_nWidth > 0 &&
                        control.m_nHeight > 0);
            EXPECT_LE(control.m_nX + control.m_nWidth, dialog.m_nWidth);
            EXPECT_LE(control.m_nY + (bList ? 12 : control.m_nHeight), dialog.m_nHeight);
            if (control.m_nID != c_nNoControlID)
            {
                EXPECT_TRUE(controls.insert(control.m_nID).second);
            }
            nDefaults += (control.m_nStyle & eTplDefault) != 0;
        }
        EXPECT_EQ(controls.count(c_nControlOk), size_t(nDefaults)) << "OK is what Enter presses";
        EXPECT_TRUE(!dialog.m_bModal || controls.count(c_nControlOk));

        // Buttons and fields never overlap each other.
        const auto takesFocus = [](const CTemplateControl& c)
        {
            return c.m_eKind == ETemplateControl::eButton || c.m_eKind == ETemplateControl::eEdit ||
                   c.m_eKind == ETemplateControl::eListBox || c.m_eKind == ETemplateControl::eView;
        };
        for (const CTemplateControl& a : dialog)
        {
            for (const CTemplateControl* p = &a + 1; p < dialog.end(); ++p)
            {
                const bool bApart = a.m_nX + a.m_nWidth <= p->m_nX || p->m_nX + p->m_nWidth <= a.m_nX ||
                                    a.m_nY + a.m_nHeight <= p->m_nY || p->m_nY + p->m_nHeight <= a.m_nY;
                EXPECT_TRUE(bApart || !takesFocus(a) || !takesFocus(*p)) << a.m_nID << " over " << p->m_nID;
            }
        }
    }
}
