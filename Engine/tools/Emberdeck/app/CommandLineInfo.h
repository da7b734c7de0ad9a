#pragma once

#include <functional>
#include <string>
#include <vector>

// What the command line asks for. The window toolkit takes its own options first.
//
//   /UpdateFx DIRECTORY    re-save every effect file below a directory, then end
//   --open FILE            open this file instead of the last one
//   --nosplash, --help, --version
//
// A parameter that begins with a dash is a flag. One that begins with a slash is a flag only when no
// further slash is in it and nothing of that name is on the disk. Flags are compared without regard
// to case, with one dash, two dashes or a slash in front.
class CEmberdeckCommandLineInfo
{
public:
    bool m_bUpdateFx = false;
    std::string m_sUpdateDir; // only a directory behind the flag counts
    std::string m_sFileName;  // the first plain parameter; parsed, and never opened
    std::string m_sOpenFile;  // of --open
    bool m_bShowSplash = true;
    bool m_bHelp = false;
    bool m_bVersion = false;
    std::vector<std::string> m_Complaints; // one sentence for each parameter that means nothing

    // The update mode runs: the flag came with a directory behind it.
    bool IsUpdateMode() const { return !m_sUpdateDir.empty(); }

    // One parameter, as the platform hands it over: bFlag tells that a flag's sign has been taken off.
    void ParseParam(const std::string& sParam, bool bFlag);

private:
    friend CEmberdeckCommandLineInfo ParseCommandLine(const std::vector<std::string>&,
                                                      const std::function<bool(const std::string&)>&);
    bool m_bWantsFile = false; // the next parameter belongs to --open
};

// Parses the parameters behind the program's name. exists tells whether something of a name is on the
// disk; empty: PathExists.
CEmberdeckCommandLineInfo ParseCommandLine(const std::vector<std::string>& params,
                                           const std::function<bool(const std::string&)>& exists = {});

// What --help prints.
std::string GetCommandLineHelp();
