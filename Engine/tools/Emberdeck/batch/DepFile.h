#pragma once

#include <string>
#include <vector>

class CEmberdeckApp;

// The file that tells make and ninja what a packed file depends on. Both read it, so only what they read alike
// may stand in it.

// Whether make and ninja both read that name, in whatever spelling.
bool IsDepName(const std::string& sPath);

// Why a depfile can't be written for a pack, before anything is written; empty: it can.
std::string DepFileProblem(const std::string& sDepFile, const std::string& sLibrary,
                           const std::string& sPackName);

// Writes it beside and renames it, for the library that is open: the packed file depends on the library, the
// project's locator file, the plug-in as it was loaded, and each file that an effect refers to. A file that
// isn't there is left out, since make and ninja would pack again and again for it. Names that can't be
// written come back in leftOut. False: it couldn't be written; the old one stays.
bool WriteDepFile(const std::string& sDepFile, const std::string& sPackName, const CEmberdeckApp& app,
                  std::vector<std::string>& leftOut);
