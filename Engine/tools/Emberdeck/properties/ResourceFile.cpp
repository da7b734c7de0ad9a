#include "properties/ResourceFile.h"

#include <algorithm>
#include <string_view>

#include "app/Messages.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "shared/engine/ProjectLocator.h"

namespace
{

constexpr CMessage c_MsgNotBelowRoot = {"The file selected must reside beneath the game resource root which "
                                        "is currently %s. If this is incorrect it "
                                        "can be changed under the File menu with the Edit Game Info command",
                                        "Invalid File Selected", EButtons::eOk, EIcon::eExclamation};

constexpr CMessage c_MsgBadName = {"The file selected has a double quote, a backslash or a control character "
                                   "in its name, which effect files "
                                   "can't hold: %s",
                                   "Invalid File Selected", EButtons::eOk, EIcon::eExclamation};

constexpr CMessage c_MsgTooLong = {
    "The path of the file selected is longer than the 255 characters that effect files can hold: %s",
    "Invalid File Selected", EButtons::eOk, EIcon::eExclamation};

std::string_view TakePart(std::string_view& sRest)
{
    const size_t nBar = sRest.find('|');
    const std::string_view sPart = sRest.substr(0, nBar);
    sRest.remove_prefix(nBar == std::string_view::npos ? sRest.size() : nBar + 1);
    return sPart;
}

std::vector<std::string> SplitPatterns(std::string_view sText)
{
    std::vector<std::string> patterns;
    while (!sText.empty())
    {
        const size_t nEnd = sText.find(';');
        std::string_view sPattern = sText.substr(0, nEnd);
        sText.remove_prefix(nEnd == std::string_view::npos ? sText.size() : nEnd + 1);
        while (!sPattern.empty() && sPattern.front() == ' ')
            sPattern.remove_prefix(1);
        while (!sPattern.empty() && sPattern.back() == ' ')
            sPattern.remove_suffix(1);
        if (!sPattern.empty())
            patterns.emplace_back(sPattern == "*.*" ? std::string_view("*") : sPattern);
    }
    if (patterns.empty())
        patterns.emplace_back("*");
    return patterns;
}

// On the disk a backslash may be a part of a name. There it would become a separator when it is loaded.
bool HasBackslashInName(const std::string& sPath)
{
    return sPath.find('\\') != std::string::npos && NativePath(sPath) == sPath && FileExists(sPath);
}

bool IsStorable(const std::string& sPath, const std::string& sRelative)
{
    return !HasBackslashInName(sPath) &&
           std::none_of(sRelative.begin(), sRelative.end(),
                        [](char c) { return c == '"' || static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

} // namespace

std::vector<CFileFilter> ParseFileFilter(const std::string& sFilter)
{
    std::vector<CFileFilter> filters;
    std::string_view sRest = sFilter;
    while (!sRest.empty())
    {
        const std::string_view sText = TakePart(sRest);
        if (sText.empty())
            break;
        filters.push_back(CFileFilter{std::string(sText), SplitPatterns(TakePart(sRest))});
    }
    return filters;
}

bool CResourceFileButton::OnClick(CEditContext& context)
{
    const std::string& sRoot = context.m_sResourceRoot;
    const std::string sFull = sRoot + m_sFile;

    CFileDialogRequest request;
    request.m_bOpen = true;
    request.m_sFilter = m_sFilter.empty() ? c_szAllFilesFilter : m_sFilter;
    // The root itself exists too, but is no file.
    if (!m_sFile.empty() && FileExists(sFull))
        request.m_sInitialName = DisplayPath(sFull);
    else if (!sRoot.empty())
        request.m_sInitialDirectory = DisplayPath(sRoot);

    std::string sPath;
    if (!context.m_Prompts.ChooseFile(request, sPath))
        return false;
    std::string sRelative;
    if (!MakeResourcePath(sRoot, sPath, sRelative))
    {
        ShowMessage(context.m_Prompts, c_MsgNotBelowRoot, {sRoot});
        return false;
    }
    if (!IsStorable(sPath, sRelative))
    {
        ShowMessage(context.m_Prompts, c_MsgBadName, {DisplayPath(sPath)});
        return false;
    }
    if (sRelative.size() > c_nMaxResourcePath)
    {
        ShowMessage(context.m_Prompts, c_MsgTooLong, {DisplayPath(sPath)});
        return false;
    }
    m_sFile = sRelative;
    return true;
}
