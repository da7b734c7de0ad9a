#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shell/VersionInfo.h"

// The text of a control of template 100.
struct CAboutText
{
    int32_t m_nControlID;
    std::string m_sText; // plain, with no mark of a shortcut letter
};

class CAboutSharedDlg
{
public:
    explicit CAboutSharedDlg(ModuleReader reader = ReadModuleVersion) : m_Reader(std::move(reader)) {}

    // What the dialog shows when it opens. A value that the module doesn't have shows as nothing.
    std::vector<CAboutText> OnInitDialog() const;

    std::string m_sModule; // empty: the program itself

private:
    ModuleReader m_Reader;
};
