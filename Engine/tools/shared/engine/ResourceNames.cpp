#include <algorithm>
#include <cstring>

#include "platform/NameFold.h"
#include "platform/Paths.h"
#include "qsstrutils.h"
#include "shared/engine/ProjectLocator.h"

namespace
{

struct CPackedExtension
{
    const char* m_pszSource;
    const char* m_pszPacked; // null: packed under the name that it has
};

constexpr CPackedExtension c_PackedExtensions[] = {
    {"World00a", "World00p"}, {"World00c", "World00p"}, {"Model00a", "Model00p"}, {"Model00c", "Model00p"},
    {"Fx00a", "Fx00p"},       {"Fx00c", "Fx00p"},       {"dds", nullptr},         {"TxAnm00a", "TxAnm00"},
    {"TxAnm00c", "TxAnm00"},  {"Texture00a", "dds"},    {"Texture00c", "dds"},    {"bik", nullptr},
    {"fx", nullptr},          {"Mat00", nullptr},       {"Gamdb00s", "Gamdb00p"}, {"Strdb00s", "Strdb00p"},
    {"wav", nullptr},
};

// Overlapping texts are fine; what doesn't fit is cut.
void CopyText(char* pszTarget, uint32_t nTargetSize, const char* pszSource)
{
    const size_t nLength = std::min<size_t>(std::strlen(pszSource), nTargetSize - 1);
    std::memmove(pszTarget, pszSource, nLength);
    pszTarget[nLength] = '\0';
}

std::string WithBackslashes(std::string sPath)
{
    std::replace(sPath.begin(), sPath.end(), '/', '\\');
    return sPath;
}

} // namespace

bool ConvertToPackedName(const char* pszSource, char* pszTarget, uint32_t nTargetSize)
{
    if (!pszTarget || nTargetSize == 0)
        return false;
    CopyText(pszTarget, nTargetSize, pszSource ? pszSource : "");
    const int32_t nExtension = FindExtension(pszTarget);
    if (nExtension < 0)
        return false;
    char* pszExtension = pszTarget + nExtension;
    for (const CPackedExtension& entry : c_PackedExtensions)
    {
        if (!EqualFolded(pszExtension, entry.m_pszSource))
            continue;
        if (entry.m_pszPacked)
            CopyText(pszExtension, nTargetSize - static_cast<uint32_t>(nExtension), entry.m_pszPacked);
        return true;
    }
    return false;
}

bool MakeResourcePath(const std::string& sResourceRoot, const std::string& sFullPath, std::string& sRelative)
{
    const std::string sRoot = WithBackslashes(sResourceRoot);
    const std::string sFull = WithBackslashes(sFullPath);
    if (sFull.size() >= sRoot.size() && EqualFolded(sRoot, std::string_view(sFull).substr(0, sRoot.size())))
    {
        sRelative = sFull.substr(sRoot.size());
        return true;
    }
    std::string sRealRoot = ResolvedPath(sResourceRoot);
    const std::string sRealFull = ResolvedPath(sFullPath);
    if (sRealRoot.empty())
        return false;
    if (sRealRoot.back() != '/')
        sRealRoot += '/'; // keeps "res2" out of "res"
    if (!sRealFull.starts_with(sRealRoot))
        return false;
    sRelative = WithBackslashes(sRealFull.substr(sRealRoot.size()));
    return true;
}
