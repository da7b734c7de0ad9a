#pragma once

#include <cstdint>
#include <string>

// What a project locator file says of a game. Directories end with a separator. A key that is
// missing from the file gives the project's own directory, for a file key too.
class CProjectInfo
{
public:
    std::string m_sGame;
    std::string m_sProjectDir; // of the locator file, with a trailing separator
    std::string m_sResourceRoot;
    std::string m_sToolsRoot;
    std::string m_sPCRoot;
    std::string m_sXenonRoot;
    std::string m_sFireglass; // the plug-in
    std::string m_sGameServer;
    std::string m_sGameDatabase;
    std::string m_sProvider; // source control: class id as text
    std::string m_sDatabase;
    std::string m_sPCBinary; // the game that Launch starts
    std::string m_sPCWorking;
    std::string m_sXenonBinary;
    std::string m_sXenonWorking;
    std::string m_sLocator; // the locator file itself; no key of it
};

// Climbs from the directory of pszFile until a *.proj00 file turns up, and reads it; of several in a
// directory the first by name without case. The file itself need not exist. Paths are cut to 259
// characters. The root directory isn't looked at, and a path with a drive letter finds nothing. False,
// info untouched, when there is none up to the top.
// With pUnusable the whole path counts, and a locator that can't be used (one beyond those characters, or a link
// that leads nowhere) isn't passed over for one above it: false, with its path there.
bool FindAndLoadProject(const char* pszFile, CProjectInfo& info, std::string* pUnusable = nullptr);
// Why nothing can be read from a locator file, in a sentence that names it. Empty: it can be read.
std::string LocatorProblem(const std::string& sLocator);
// Always true; a file that can't be read gives all defaults. The project directory is the text in front
// of the last separator, as it stands.
bool LoadProjectFile(CProjectInfo& info, const char* pszLocator);

// An absolute value is taken as it is, another one joined to the base and cleared of dot steps.
void ResolvePath(const char* pszBase, const char* pszValue, bool bTrailingSeparator, std::string& sOut);

// The name of a resource in the game's packed tree: another extension, by a fixed table. False, with
// the target a copy of the source, for a name without extension or with one that isn't in the table.
// The target is a buffer of nTargetSize bytes, always terminated; a size of 0 does nothing. What doesn't
// fit is cut. The table's spelling replaces the extension; one that stays keeps its own case.
bool ConvertToPackedName(const char* pszSource, char* pszTarget, uint32_t nTargetSize);

// Begins with a separator, or has a colon in front of the first one.
bool IsAbsolutePath(const std::string& sPath);
// Cuts at the last separator, which goes too; a text without one becomes empty.
void RemoveLastComponent(std::string& sPath);
// A backslash, unless a separator stands there already; an empty text gets one, too.
void AddTrailingSeparator(std::string& sPath);

// The part of a full path behind the resource root, with backslashes and in its own case; false when it
// isn't under it. Compared without case as texts first; else by what both are on this machine, where
// links and dots may hide that they are the same. An empty root holds every path.
bool MakeResourcePath(const std::string& sResourceRoot, const std::string& sFullPath, std::string& sRelative);
