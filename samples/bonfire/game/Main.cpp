// SPDX-License-Identifier: 0BSD
#include <cstdio>
#include <string>

#include "game/GameFile.h"
#include "game/Listing.h"
#include "game/Reload.h"
#ifdef BONFIRE_WINDOW
#include "game/GameWindow.h"
#endif

namespace
{
enum EExit
{
    eExit_Done = 0,
    eExit_Failed = 1,
    eExit_Usage = 2
};

constexpr char c_szUsage[] =
    "usage: bonfire [--headless] [--json] [--effect NAME] [--plugin PATH] [FILE.Fx00p]\n"
    "\n"
    "Plays the effects of a packed file in a window, and again whenever the file changes.\n"
    "  --headless     print what would be played, without a window\n"
    "  --json         print all that the file holds, without a window\n"
    "  --effect NAME  begin with this effect; without a window only this effect\n"
    "  --plugin PATH  the library of effect types; by default fireglass.so beside the program\n"
    "Without a file the window plays what was packed last in the working directory or, when nothing is "
    "packed\n"
    "there, in the sample project. With --headless bonfire-project/bonfire.Fx00p beside the program is "
    "first.\n"
    "Keys in the window: Left and Right for the effect, Space to pause, R to start again, Esc to close.\n";

struct COptions
{
    bool m_bHeadless = false;
    bool m_bJson = false;
    bool m_bHelp = false;
    bool m_bEffect = false;
    std::string m_sEffect;
    std::string m_sPlugIn;
    std::string m_sFile;
};

int Complain(const std::string& sWhat, EExit eExit)
{
    std::fprintf(stderr, "bonfire: %s\n", sWhat.c_str());
    return eExit;
}

bool ParseOptions(int argc, char** argv, COptions& options, std::string& sError)
{
    bool bFlags = true;
    for (int i = 1; i < argc; ++i)
    {
        const std::string s = argv[i];
        const bool bFlag = bFlags && s.size() > 1 && s[0] == '-';
        if (!bFlag)
        {
            if (!options.m_sFile.empty())
            {
                sError = "more than one file";
                return false;
            }
            options.m_sFile = s;
        }
        else if (s == "--")
            bFlags = false;
        else if (s == "--headless")
            options.m_bHeadless = true;
        else if (s == "--json")
            options.m_bJson = true;
        else if (s == "--help" || s == "-h")
            options.m_bHelp = true;
        else if ((s == "--effect" || s == "--plugin") && i + 1 < argc)
        {
            (s == "--effect" ? options.m_sEffect : options.m_sPlugIn) = argv[++i];
            options.m_bEffect = options.m_bEffect || s == "--effect";
        }
        else
        {
            sError = s == "--effect" || s == "--plugin" ? s + " needs a value" : "unknown option " + s;
            return false;
        }
    }
    return true;
}

// False when standard output took less than all.
bool Print(const std::string& s)
{
    return std::fwrite(s.data(), 1, s.size(), stdout) == s.size();
}

int Play(const COptions& options, const CPackedFile& file, const CEffect* pOnly)
{
    bool bPrinted = true;
    if (options.m_bJson)
        bPrinted = Print(DumpAsJson(file, pOnly));
    else
        for (const CEffect& effect : file.m_Effects)
            if (!pOnly || pOnly == &effect)
                bPrinted = bPrinted && Print(ListEffect(file, effect));
    return std::fflush(stdout) == 0 && bPrinted ? int(eExit_Done)
                                                : Complain("cannot write to standard output", eExit_Failed);
}
int PlayWithoutWindow(const COptions& options)
{
    std::string sError;
    const std::unique_ptr<CGame> pGame = LoadGame(options.m_sFile, options.m_sPlugIn, sError);
    if (!pGame)
        return Complain(sError, eExit_Failed);
    const CEffect* pOnly = nullptr;
    if (options.m_bEffect && !(pOnly = pGame->m_File.FindEffect(options.m_sEffect)))
        return Complain(options.m_sFile + " has no effect named " + options.m_sEffect, eExit_Failed);
    return Play(options, pGame->m_File, pOnly);
}

int PlayWith([[maybe_unused]] char* pszProgram, COptions& options)
{
    const std::string sDefault = BesideTheProgram("bonfire-project/bonfire.Fx00p");
    if (options.m_sPlugIn.empty())
        options.m_sPlugIn = BesideTheProgram("fireglass.so");
    const bool bHeadless = options.m_bHeadless || options.m_bJson;
    if (!options.m_sFile.empty())
        options.m_sFile = OwnPath(options.m_sFile);
    else if (!bHeadless || !StampOf(sDefault).m_bThere)
        options.m_sFile = ChooseFile({".", BesideTheProgram("bonfire-project"),
                                      BesideTheProgram("../../../share/emberdeck/samples/bonfire")},
                                     sDefault);
    else
        options.m_sFile = sDefault;
    if (bHeadless)
        return PlayWithoutWindow(options);
#ifdef BONFIRE_WINDOW
    if (HasDisplay())
        return RunGameWindow(pszProgram, options.m_sFile, options.m_sPlugIn, options.m_sEffect);
    std::fputs("bonfire: there is no display for a window; this is what would be played\n", stderr);
#else
    std::fputs("bonfire: this build has no window; this is what would be played\n", stderr);
#endif
    return PlayWithoutWindow(options);
}
} // namespace

int main(int argc, char** argv)
{
    COptions options;
    std::string sError;
    if (!ParseOptions(argc, argv, options, sError))
    {
        Complain(sError, eExit_Usage);
        std::fputs(c_szUsage, stderr);
        return eExit_Usage;
    }
    if (options.m_bHelp)
        return Print(c_szUsage) && std::fflush(stdout) == 0 ? eExit_Done : eExit_Failed;
    return PlayWith(argv[0], options);
}
