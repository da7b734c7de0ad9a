// Project locator files, and the paths and resource names that are made of what they say. The first lines of
// the input are paths, the rest is the file.

#include <vector>

#include "FuzzTools.h"
#include "platform/Paths.h"
#include "shared/engine/ProjectLocator.h"
#include "shared/sourcecontrol/TokenStringUtils.h"

namespace
{
void CheckPaths(const std::string& sBase, const std::string& sValue)
{
    std::string sOut;
    for (const bool bTrailing : {false, true})
    {
        ResolvePath(sBase.c_str(), sValue.c_str(), bTrailing, sOut);
        Require(!bTrailing || IsSeparator(sOut.back()), "a directory without its separator");
        Require(sOut.size() <= sBase.size() + sValue.size() + 2, "a path grew");
    }
    const std::string sCanonical = CanonicalizePath(sBase);
    // Behind a dot step that goes, "C:" becomes a drive.
    if (sCanonical.find(':') == std::string::npos)
        Require(CanonicalizePath(sCanonical) == sCanonical, "a clean path isn't clean");
    Require(NativePath(sValue).find('\0') == std::string::npos, "a path with a NUL");
    MakeResourcePath(sBase, sValue, sOut);

    std::vector<std::string> tokens;
    TokenizeString(sBase.c_str(), tokens, sValue.c_str());
    size_t nLen = 0;
    for (const std::string& sToken : tokens)
        nLen += sToken.size() + 1;
    Require(tokens.empty() || nLen == std::strlen(sBase.c_str()) + 1, "tokens lost a byte");
}

// Into a buffer of exactly the size, so that a byte behind it is noticed.
void CheckPackedName(const std::string& sSource, uint32_t nSize)
{
    const std::unique_ptr<char[]> pTarget(new char[nSize]);
    const bool bKnown = ConvertToPackedName(sSource.c_str(), pTarget.get(), nSize);
    Require(nSize != 0 || !bKnown, "a name without room");
    if (nSize == 0)
        return;
    const size_t nLen = strnlen(pTarget.get(), nSize);
    Require(nLen < nSize, "a packed name without its end");
    Require(bKnown || std::strncmp(sSource.c_str(), pTarget.get(), nLen) == 0, "an unknown name was changed");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts();
    CFuzzInput input(pData, nSize);
    const uint32_t nRoom = input.Byte();
    const std::string sBase = input.Line(), sValue = input.Line();
    CheckPaths(sBase, sValue);
    CheckPackedName(sBase, nRoom);
    CheckPackedName(sValue, 260);

    static CMemoryFile s_File;
    s_File.Write(input.Rest());
    CProjectInfo info;
    Require(LoadProjectFile(info, s_File.Path()), "a locator always loads");
    Require(info.m_sProjectDir == "/proc/self/fd\\", "the project directory comes from the file alone");
    for (const std::string* pDir :
         {&info.m_sResourceRoot, &info.m_sToolsRoot, &info.m_sPCRoot, &info.m_sXenonRoot})
        Require(IsSeparator(pDir->back()) && IsAbsolutePath(*pDir) && pDir->size() < 300, "no directory");
    for (const std::string* pFile : {&info.m_sFireglass, &info.m_sPCBinary, &info.m_sXenonWorking})
        Require(!pFile->empty() && pFile->size() < 300, "no file");
    return 0;
}
