#pragma once

#include <string>
#include <vector>

// What a launch starts.
struct CLaunch
{
    std::string m_sProgram;               // in the machine's form
    std::string m_sDirectory;             // where the game begins; empty: inherited
    std::vector<std::string> m_Arguments; // without the program's own name
};

// From the project's binary, by a path of any form, and the text of the game's command line.
CLaunch MakeLaunch(const std::string& sBinary, const std::string& sCommandLine);

// Starts a game without waiting for it. Nothing happens without a binary. False: nothing was started; the
// user isn't told.
bool LaunchProgram(const std::string& sBinary, const std::string& sCommandLine);
