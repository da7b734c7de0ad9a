#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// A command of a panel of the class TPanel.
template <class TPanel>
struct TPanelCommand
{
    int32_t m_nID; // 0: a separator
    const char* m_pszLabel;
    const char* m_pszKey; // shown behind a tab
    bool (TPanel::*m_pfnEnabled)() const;
    void (TPanel::*m_pfnHandler)();
    bool IsSeparator() const { return m_nID == 0; }
};

// A row of the popup menu as it is to be shown now.
struct CPanelMenuEntry
{
    int32_t m_nID = 0;    // 0: a separator
    std::string m_sLabel; // "&" marks the shortcut letter
    std::string m_sKey;
    bool m_bEnabled = false;
    bool m_bDefault = false; // in bold: what Enter and a double click do
    bool IsSeparator() const { return m_nID == 0; }
};
using CPanelMenu = std::vector<CPanelMenuEntry>;

// The first row of a table is the default one.
template <class TPanel, size_t N>
CPanelMenu BuildPanelMenu(const TPanel& panel, const TPanelCommand<TPanel> (&table)[N])
{
    CPanelMenu menu;
    for (const TPanelCommand<TPanel>& row : table)
    {
        CPanelMenuEntry entry;
        if (!row.IsSeparator())
            entry = {row.m_nID, row.m_pszLabel, row.m_pszKey, (panel.*row.m_pfnEnabled)(), &row == table};
        menu.push_back(entry);
    }
    return menu;
}

// The row of that number when its command may run now; null.
template <class TPanel, size_t N>
const TPanelCommand<TPanel>* FindPanelCommand(const TPanel& panel, const TPanelCommand<TPanel> (&table)[N],
                                              int32_t nID)
{
    for (const TPanelCommand<TPanel>& row : table)
    {
        if (!row.IsSeparator() && row.m_nID == nID)
            return (panel.*row.m_pfnEnabled)() ? &row : nullptr;
    }
    return nullptr;
}
