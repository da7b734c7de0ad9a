#include "platform/CrashMark.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "platform/Files.h"

namespace
{

constexpr size_t c_nMaxContent = 8192;

CFileHandle OpenLocked(const std::string& sPath, int nFlags)
{
    if (sPath.empty())
        return CFileHandle();
    // Neither a pipe nor a link that somebody has put there.
    CFileHandle file(open(sPath.c_str(), nFlags | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC, 0600));
    struct stat info;
    const bool bOurs = file.IsOpen() && fstat(file.Get(), &info) == 0 && S_ISREG(info.st_mode) &&
                       flock(file.Get(), LOCK_EX | LOCK_NB) == 0;
    return bOurs ? std::move(file) : CFileHandle();
}

} // namespace

bool CCrashMark::WasLeft(std::string& sContent) const
{
    const CFileHandle file = OpenLocked(m_sPath, O_RDONLY);
    if (!file.IsOpen())
        return false;
    char buffer[c_nMaxContent];
    const ssize_t nRead = read(file.Get(), buffer, sizeof(buffer));
    if (nRead <= 0)
        return false;
    sContent.assign(buffer, static_cast<size_t>(nRead));
    return true;
}

void CCrashMark::Set(const std::string& sContent)
{
    Clear();
    const size_t nSlash = m_sPath.rfind('/');
    if (nSlash != std::string::npos && nSlash > 0 && !MakeDirectories(m_sPath.substr(0, nSlash)))
        return;
    m_File = OpenLocked(m_sPath, O_RDWR | O_CREAT);
    if (m_File.IsOpen() && (ftruncate(m_File.Get(), 0) != 0 || !WriteAll(m_File.Get(), sContent)))
        Clear();
}

void CCrashMark::Clear()
{
    if (!m_File.IsOpen())
        m_File = OpenLocked(m_sPath, O_RDONLY);
    if (m_File.IsOpen())
        unlink(m_sPath.c_str());
    m_File = CFileHandle();
}
