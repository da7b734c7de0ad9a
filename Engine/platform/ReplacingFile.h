#pragma once

#include <string>

#include "platform/FileHandle.h"

// New content for a file, which takes its place whole or not at all. It is written to a temporary file that lies
// beside the target and is renamed over it by Commit; until then, and when it never comes to that, the target is
// as it was and the temporary file goes with this object. The mode of an old file is kept, and its owner where
// that is allowed; a link stays and what it leads to is replaced.
//
// Where a rename can't do (a device, a pipe, a file with several hard links, a folder in which nothing can be made),
// the temporary file lies in the machine's own directory for them, and Commit copies its bytes into the target. What
// the program has open itself, such as /dev/stdout, is written on where it stands.
//
// The temporary file is locked while its writer lives. One without a living writer is what a killed program has
// left: the first replacement in a folder removes all of those there.
class CReplacingFile
{
public:
    // sPath in any form (see Paths.h). Not open afterwards: a directory, a file without a write bit or one that
    // the user may not write, a pipe that nobody reads from, no room for a temporary file.
    // A new file gets nNewMode, less what the user's mask takes away.
    explicit CReplacingFile(const std::string& sPath, unsigned nNewMode = 0666);
    ~CReplacingFile();
    CReplacingFile(const CReplacingFile&) = delete;
    CReplacingFile& operator=(const CReplacingFile&) = delete;

    bool IsOpen() const { return m_File.IsOpen(); }
    // Where the content is to be written, under this name or through Get. Empty when it isn't open.
    const std::string& GetPath() const { return m_sTemporary; }
    int Get() const { return m_File.Get(); }
    // Once, when all is written and closed but for Get. False: a failure on the way, and the target is as it was; also
    // where its bytes had to be copied, unless this program is killed or the way back fails, too. A pipe, device or
    // open file has taken what came before the failure.
    bool Commit();

private:
    bool OpenIn(const std::string& sFolder);
    bool Rename();
    bool CopyBytes();

    std::string m_sTarget; // the machine's form, behind all links
    std::string m_sTemporary;
    CFileHandle m_File;
    bool m_bRename = true;
    unsigned m_nNewMode;
};

// What the names of those temporary files begin with.
constexpr const char* c_szSafeWritePrefix = ".ember-";

// A file that was made, renamed or removed is so on the disk once its folder is. Some file systems can't do it: no
// failure. The machine's form of the path.
void SyncFolder(const std::string& sFolder);
