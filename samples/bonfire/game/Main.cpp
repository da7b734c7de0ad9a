#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "game/Listing.h"
#include "game/PackedFile.h"
#include "game/PlugIn.h"

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
    "Plays the effects of a packed file.\n"
    "  --headless     print what would be played, without a window\n"
    "  --json         print all that the file holds, without a window\n"
    "  --effect NAME  only this effect\n"
    "  --plugin PATH  the library of effect types; by default fireglass.so beside the program\n"
    "Without a file it is bonfire-project/bonfire.Fx00p beside the program.\n";

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

std::string BesideTheProgram(const char* pszName)
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (error ? std::filesystem::path(".") : program.parent_path()) / pszName;
}

// The editor's command line may hold a path as its files have it, with backslashes.
std::string OwnPath(const std::string& sPath)
{
    std::error_code error;
    if (std::filesystem::exists(sPath, error))
        return sPath;
    std::string sTurned = sPath;
    for (char& c : sTurned)
        if (c == '\\')
            c = '/';
    return std::filesystem::exists(sTurned, error) ? sTurned : sPath;
}

bool ReadBytes(const std::string& sPath, std::vector<uint8_t>& bytes, std::string& sError)
{
    std::error_code error;
    const auto nSize = std::filesystem::file_size(sPath, error); // an error for directories and devices too
    if (error)
    {
        sError = "cannot read " + sPath + ": " + error.message();
        return false;
    }
    if (nSize > UINT32_MAX)
    {
        sError = sPath + ": larger than a packed file can be";
        return false;
    }
    bytes.resize(size_t(nSize));
    std::ifstream stream(sPath, std::ios::binary);
    stream.read(reinterpret_cast<char*>(bytes.data()), std::streamsize(nSize));
    if (!stream || uintmax_t(stream.gcount()) != nSize)
    {
        sError = "cannot read " + sPath;
        return false;
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
    if (!options.m_bHeadless && !options.m_bJson)
        return Complain("this build plays without a window only: add --headless", eExit_Usage);

    if (options.m_sPlugIn.empty())
        options.m_sPlugIn = BesideTheProgram("fireglass.so");
    options.m_sFile = options.m_sFile.empty() ? BesideTheProgram("bonfire-project/bonfire.Fx00p")
                                              : OwnPath(options.m_sFile);
    CPlugIn plugIn;
    CPackedFile file;
    std::vector<uint8_t> bytes;
    if (!ReadBytes(options.m_sFile, bytes, sError) || !plugIn.Load(OwnPath(options.m_sPlugIn), sError))
        return Complain(sError, eExit_Failed);
    if (!ReadPackedFile(std::move(bytes), *plugIn.GetTable(), file, sError))
        return Complain(options.m_sFile + ": " + sError, eExit_Failed);
    const CEffect* pOnly = nullptr;
    if (options.m_bEffect && !(pOnly = file.FindEffect(options.m_sEffect)))
        return Complain(options.m_sFile + " has no effect named " + options.m_sEffect, eExit_Failed);
    return Play(options, file, pOnly);
}
