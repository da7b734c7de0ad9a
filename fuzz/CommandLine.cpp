// The program's command line, and the splitting of the one that is typed for the game.

#include <vector>

#include "FuzzTools.h"
#include "app/CommandLineInfo.h"
#include "platform/Paths.h"
#include "platform/Process.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts();
    CFuzzInput input(pData, nSize);
    const uint8_t nThere = input.Byte();
    const std::string sLine(input.Rest());
    const std::vector<std::string> params = SplitCommandLine(sLine);
    size_t nBytes = 0;
    std::string sQuoted;
    for (const std::string& sParam : params)
    {
        nBytes += sParam.size();
        Require(sParam.find('"') == std::string::npos, "a quote is left");
        sQuoted += '"' + sParam + "\" ";
    }
    Require(nBytes + params.size() <= sLine.size() + 1, "parameters from nowhere");
    Require(SplitCommandLine(sQuoted) == params, "quoted parameters split differently");

    const CEmberdeckCommandLineInfo info = ParseCommandLine(params, [&](const std::string& sName)
                                                            { return ((nThere ^ sName.size()) & 1) != 0; });
    Require(info.m_Complaints.size() <= params.size() + 1, "complaints from nowhere");
    Require(!info.IsUpdateMode() || (info.m_bUpdateFx && !info.m_bShowSplash), "an update with a splash");
    for (const std::string& sParam : params)
    {
        CEmberdeckCommandLineInfo single;
        single.ParseParam(sParam, (nThere & 2) != 0);
        Require(MakeFullPath(sParam).empty() == sParam.empty(), "a path is lost");
    }
    return 0;
}
