#include "platform/AppendedFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

#include "platform/Paths.h"
#include "platform/ReplacingFile.h"

bool CAppendedFile::Create(const std::string& sPath)
{
    Close();
    m_sPath = NativePath(sPath);
    m_nSize = 0;
    m_bEntrySynced = false;
    m_File = CFileHandle(open(m_sPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    // Where the file system knows no locks, it goes without.
    if (m_File.IsOpen())
        flock(m_File.Get(), LOCK_EX | LOCK_NB);
    return m_File.IsOpen();
}

bool CAppendedFile::Append(std::string_view sRecord)
{
    if (!m_File.IsOpen())
        return false;
    if (WriteAll(m_File.Get(), sRecord))
    {
        m_nSize += sRecord.size();
        m_bUnsynced = true;
        return true;
    }
    const int nWhy = errno;
    const auto nEnd = static_cast<off_t>(m_nSize);
    if (ftruncate(m_File.Get(), nEnd) != 0 || lseek(m_File.Get(), nEnd, SEEK_SET) != nEnd)
        Close();
    errno = nWhy;
    return false;
}

bool CAppendedFile::Sync()
{
    if (!m_bUnsynced)
        return true;
    m_bUnsynced = !m_File.IsOpen() || fdatasync(m_File.Get()) != 0;
    if (!m_bUnsynced && !m_bEntrySynced)
    {
        SyncFolder(NativeFolderOf(m_sPath));
        m_bEntrySynced = true;
    }
    return !m_bUnsynced;
}

void CAppendedFile::Close()
{
    m_File.Close();
    m_bUnsynced = false;
}
