#pragma once

#include <cstdint>
#include <string>
#include <vector>

// A row of a panel's popup menu as it is to be shown now.
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
