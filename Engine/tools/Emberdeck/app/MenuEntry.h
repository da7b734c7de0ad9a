#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/resources/Menus.h"

// An entry of a popup menu as it is to be shown now: a command, a popup of its own, or a separator.
struct CMenuEntry
{
    std::string m_sLabel; // "&" marks the shortcut letter, "&&" is an ampersand; empty for a separator
    std::string m_sKey;   // shown beside it; empty: none
    int32_t m_nID = 0;    // 0: a popup, or a separator
    std::vector<CMenuEntry> m_Entries;
    bool m_bEnabled = true;
    bool m_bDefault = false; // in bold: what Enter and a double click do

    bool IsSeparator() const { return m_nID == 0 && m_Entries.empty(); }
};

// The entry of a command or a separator. A submenu's has no entries yet.
inline CMenuEntry MakeMenuEntry(const CMenuItem& item)
{
    const std::string sLabel = item.GetLabel();
    const size_t nTab = sLabel.find('\t');
    CMenuEntry entry;
    entry.m_sLabel = sLabel.substr(0, nTab);
    entry.m_sKey = nTab == std::string::npos ? std::string() : sLabel.substr(nTab + 1);
    entry.m_nID = item.m_nID;
    entry.m_bDefault = item.m_bDefault;
    return entry;
}
