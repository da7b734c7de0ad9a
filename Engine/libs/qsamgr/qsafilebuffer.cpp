#include "qsamgr/qsafilebuffer.h"

#include "qsassert.h"
#include "qsmemorytracker.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace
{
// For reading. A pipe without a writer would keep the open itself waiting, a device may have no end, and a folder
// opens well and then passes for an empty file.
std::FILE* OpenOrdinary(const char* pszFilename)
{
    const int nFile = open(pszFilename, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (nFile < 0)
        return nullptr;
    struct stat info;
    std::FILE* pStream = fstat(nFile, &info) == 0 && S_ISREG(info.st_mode) ? fdopen(nFile, "rb") : nullptr;
    if (pStream == nullptr)
        close(nFile);
    return pStream;
}
} // namespace

CQSAFileBuffer::~CQSAFileBuffer()
{
    Close();
}

bool CQSAFileBuffer::Open(const char* pszFilename, EOpenMode eMode, uint32_t nCacheSize, bool bAppend)
{
    Close();
    // The e keeps the file from programs that are started meanwhile.
    const char* pszMode = nullptr;
    if (eMode == OPEN_READ && !bAppend)
        pszMode = "rb";
    else if (eMode == OPEN_WRITE)
        pszMode = bAppend ? "ab+e" : "wbe";
    if (pszMode == nullptr)
    {
        QS_ASSERT(false);
        return false;
    }
    if (pszFilename == nullptr)
        return false;
    m_pStream = eMode == OPEN_READ ? OpenOrdinary(pszFilename) : std::fopen(pszFilename, pszMode);
    if (m_pStream == nullptr)
        return false;
    if (!AllocateCache(nCacheSize))
    {
        QS_ASSERT(false);
        std::fclose(m_pStream);
        m_pStream = nullptr;
        return false;
    }
    m_eMode = eMode;
    if (eMode == OPEN_READ)
        FillCache(); // an empty file is one that opens
    return true;
}

bool CQSAFileBuffer::Close()
{
    if (m_eMode == OPEN_WRITE)
        FlushCache();
    FreeCache();
    bool bResult = true;
    if (m_pStream != nullptr)
    {
        // What the run-time library still holds has to meet its errors before they are asked for. Some file
        // systems tell of a lost write only when the file is closed.
        if (m_eMode == OPEN_WRITE)
            std::fflush(m_pStream);
        bResult = std::ferror(m_pStream) == 0;
        bResult &= std::fclose(std::exchange(m_pStream, nullptr)) == 0;
    }
    m_eMode = OPEN_NONE;
    return bResult;
}

bool CQSAFileBuffer::ReadByte(uint8_t* pByte)
{
    QS_ASSERT(m_eMode == OPEN_READ);
    if (m_eMode != OPEN_READ || (m_nCachePos >= m_nCacheLen && !FillCache()))
        return false;
    *pByte = m_pCache[m_nCachePos++];
    return true;
}

uint32_t CQSAFileBuffer::ReadBlock(void* pBuffer, uint32_t nLen)
{
    QS_ASSERT(m_eMode == OPEN_READ);
    if (m_eMode != OPEN_READ || nLen == 0)
        return 0;
    const uint32_t nCached = std::min(nLen, m_nCacheLen - m_nCachePos);
    std::memcpy(pBuffer, m_pCache + m_nCachePos, nCached);
    m_nCachePos += nCached;
    if (nCached == nLen)
        return nLen;
    // The rest passes the cache by.
    return nCached +
           uint32_t(std::fread(static_cast<uint8_t*>(pBuffer) + nCached, 1, nLen - nCached, m_pStream));
}

bool CQSAFileBuffer::WriteByte(uint8_t nByte)
{
    QS_ASSERT(m_eMode == OPEN_WRITE);
    if (m_eMode != OPEN_WRITE || (m_nCachePos >= m_nCacheSize && !FlushCache()))
        return false;
    m_pCache[m_nCachePos++] = nByte;
    return true;
}

bool CQSAFileBuffer::WriteBlock(const void* pBytes, uint32_t nLen)
{
    QS_ASSERT(m_eMode == OPEN_WRITE);
    if (m_eMode != OPEN_WRITE)
        return false;
    const uint8_t* pNext = static_cast<const uint8_t*>(pBytes);
    while (nLen != 0)
    {
        const uint32_t nPart = std::min(nLen, m_nCacheSize - m_nCachePos);
        if (nPart != 0)
            std::memcpy(m_pCache + m_nCachePos, pNext, nPart);
        m_nCachePos += nPart;
        pNext += nPart;
        nLen -= nPart;
        if (m_nCachePos == m_nCacheSize && !FlushCache())
            return false;
        // Whole caches pass the cache by.
        const uint32_t nDirect = m_nCachePos == 0 ? nLen - nLen % m_nCacheSize : 0;
        if (nDirect != 0 && std::fwrite(pNext, 1, nDirect, m_pStream) != nDirect)
            return false;
        pNext += nDirect;
        nLen -= nDirect;
    }
    return true;
}

bool CQSAFileBuffer::FlushCache()
{
    QS_ASSERT(m_eMode == OPEN_WRITE);
    if (m_eMode != OPEN_WRITE)
        return false;
    const uint32_t nLen = m_nCachePos;
    m_nCachePos = 0;
    return std::fwrite(m_pCache, 1, nLen, m_pStream) == nLen;
}

bool CQSAFileBuffer::FillCache()
{
    QS_ASSERT(m_eMode == OPEN_READ);
    if (m_eMode != OPEN_READ)
        return false;
    m_nCacheLen = uint32_t(std::fread(m_pCache, 1, m_nCacheSize, m_pStream));
    m_nCachePos = 0;
    return m_nCacheLen != 0;
}

bool CQSAFileBuffer::AllocateCache(uint32_t nCacheSize)
{
    FreeCache();
    nCacheSize = std::max(nCacheSize, 1u);
    m_pCache = static_cast<uint8_t*>(QSAllocateTracked(nCacheSize));
    if (m_pCache == nullptr)
    {
        QS_ASSERT(false);
        return false;
    }
    m_nCacheSize = nCacheSize;
    return true;
}

void CQSAFileBuffer::FreeCache()
{
    QSFree(m_pCache);
    m_pCache = nullptr;
    m_nCacheSize = 0;
    m_nCacheLen = 0;
    m_nCachePos = 0;
}
