// SPDX-License-Identifier: 0BSD
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "game/PackedFile.h"
#include "game/PlugIn.h"

// Where the game finds what it plays, and how it gets it into memory.

// A file read, with the effect types that its descriptors belong to.
struct CGame
{
    CPlugIn m_PlugIn; // first, so that it goes last
    CPackedFile m_File;
};

// Null: sError says what is wrong with which file.
std::unique_ptr<CGame> LoadGame(const std::string& sFile, const std::string& sPlugIn, std::string& sError);

// A file in the folder of the running program.
std::string BesideTheProgram(const char* pszName);

// A path as the editor's files may have it, with backslashes, as one of this machine. Stays as it is when it
// leads somewhere, or when turning it doesn't help.
std::string OwnPath(const std::string& sPath);

// The packed file of a folder that was written last; empty when there is none.
std::string NewestPackedFile(const std::string& sFolder);

// What is played when no file is named: what was packed last in the first of the folders that holds a packed
// file. When none does, sMissing.
std::string ChooseFile(const std::vector<std::string>& folders, const std::string& sMissing);
