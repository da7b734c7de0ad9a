#pragma once

#include <functional>
#include <string>

#include "qsversion.h"

// Where the version texts of a module come from: its file name, and its version block, which stays empty
// when it has none. sModule is empty for the program itself. False: there is no such module.
using ModuleReader =
    std::function<bool(const std::string& sModule, std::string& sFileName, CVersionBlock& block)>;

// The program's own block is the one that it was given at start. A library is loaded for the time of the
// call and tells its values through an exported function
//     extern "C" const char* GetVersionValue(const char* pszKey)
// which gives the text of a key such as "\StringFileInfo\040904b0\ProductName", or null.
bool ReadModuleVersion(const std::string& sModule, std::string& sFileName, CVersionBlock& block);

// The values of a module that the program shows. A value that it doesn't have leaves its text as it was.
// False for a null text (which is reported), a module that isn't there, and one whose file name has no
// folder. True also without a version block.
bool ExtractVersionInformation(const std::string& sModule, std::string* pstrProductName,
                               std::string* pstrVersion, std::string* pstrCopyright,
                               const ModuleReader& reader = ReadModuleVersion);
