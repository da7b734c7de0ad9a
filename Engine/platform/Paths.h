#pragma once

#include <string>
#include <string_view>
#include <vector>

// Paths in files and in the model use backslashes and may have drive letters; both separators count
// everywhere. These functions turn them into the machine's own at the moment of touching the disk.

constexpr bool IsSeparator(char c)
{
    return c == '\\' || c == '/';
}

// The machine's form of a path. A name that exists exactly as it stands (backslashes in it, too) is
// given as it is. Else separators are turned, and each component that isn't there is looked up
// without regard to case (first by name order without case). What isn't found stays as it is typed,
// so the result also serves for a file that is to be made. Empty, which no file operation takes, for
// a path that has no place on this machine (IsForeignPath).
std::string NativePath(std::string_view sPath);

// Has a drive letter with a separator behind it, or nothing else, or holds a NUL. Such a path names
// nothing here, and must not turn into a name below the working directory.
bool IsForeignPath(std::string_view sPath);

// The form to show to a person: NativePath, or the path as it is typed when that is empty.
std::string DisplayPath(std::string_view sPath);

// The machine's one name of something that exists: absolute, without links and dots. Of a name that
// isn't there the folder is resolved. Empty when the folder isn't there either.
std::string ResolvedPath(std::string_view sPath);

// NativePath of a plug-in or other dynamic library: NAME.dll as it stands, then NAME.so, then
// libNAME.so beside it. Empty when none of them exists.
std::string NativeLibraryPath(std::string_view sPath);

// All of those that exist, in that order: a library of another system may lie beside ours.
std::vector<std::string> NativeLibraryPaths(std::string_view sPath);

// Removes single-dot and double-dot steps, changing nothing else; both separators count. A step
// above the root stays at the root; above the start of a relative path it is kept. A relative path
// that has nothing left becomes ".".
std::string CanonicalizePath(std::string_view sPath);

// The full form of a path for the life of a session, in which the working directory moves with each
// file dialog. A path that has no place on this machine stays as it is.
std::string MakeFullPath(const std::string& sPath);

// The folder of a path in the machine's form: "." for a name alone.
std::string NativeFolderOf(const std::string& sNative);

std::string GetCurrentDirectoryPath(); // empty when there is none
std::string GetExecutablePath();
std::string GetConfigDirectory(); // $XDG_CONFIG_HOME or ~/.config; made by the writer
std::string GetStateDirectory();  // $XDG_STATE_HOME or ~/.local/state
std::string GetTemporaryDirectory();
