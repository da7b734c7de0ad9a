#include "iqsoutconverter.h"

#include "qsassert.h"

#include <cstring>
#include <new>
#include <sys/types.h>

namespace
{

constexpr uint32_t c_nDone = 0;
constexpr uint32_t c_nFailed = 1;
constexpr uint32_t c_nBufferSize = 64 * 1024;

} // namespace

CFileOutStream::CFileOutStream(std::FILE* pFile)
    : m_pFile(pFile),
      m_pBuffer(new (std::nothrow) uint8_t[c_nBufferSize])
{
    if (m_pFile)
        std::setvbuf(m_pFile, nullptr, _IONBF, 0); // bytes are gathered here, once
}

CFileOutStream::~CFileOutStream()
{
    Close();
}

void CFileOutStream::Release()
{
    delete this;
}

bool CFileOutStream::WriteFile(const void* pData, size_t nCount)
{
    if (nCount == 0)
        return true;
    if (std::fwrite(pData, 1, nCount, m_pFile) == nCount)
        return true;
    m_bError = true;
    return false;
}

// Empties the buffer into the file, and lets it begin anew at the cursor.
bool CFileOutStream::FlushBuffer()
{
    const bool bDone = WriteFile(m_pBuffer.get(), m_nUsed);
    const uint64_t nPosition = m_nBufferPos + m_nCursor;
    if (m_nCursor != m_nUsed && fseeko(m_pFile, off_t(nPosition), SEEK_SET) != 0)
        m_bError = true;
    m_nBufferPos = nPosition;
    m_nUsed = 0;
    m_nCursor = 0;
    return bDone && !m_bError;
}

uint32_t CFileOutStream::Write(const void* pData, uint32_t nCount)
{
    if (!m_pFile)
        return c_nFailed;
    if (nCount == 0)
        return c_nDone;
    if (!pData || m_bError)
        return c_nFailed;

    const bool bThrough = !m_pBuffer || nCount >= c_nBufferSize;
    if ((bThrough || nCount > c_nBufferSize - m_nCursor) && !FlushBuffer())
        return c_nFailed;
    if (bThrough)
    {
        // Nothing waits now, and a large block goes on in one piece.
        const bool bDone = WriteFile(pData, nCount);
        m_nBufferPos += nCount;
        return bDone ? c_nDone : c_nFailed;
    }
    std::memcpy(m_pBuffer.get() + m_nCursor, pData, nCount);
    m_nCursor += nCount;
    m_nUsed = m_nCursor > m_nUsed ? m_nCursor : m_nUsed;
    return c_nDone;
}

uint32_t CFileOutStream::WriteText(const char* pszText)
{
    size_t nLength = pszText ? std::strlen(pszText) : 0;
    QS_ASSERT(nLength <= 0xFFFF);
    nLength = nLength <= 0xFFFF ? nLength : 0xFFFF;
    const uint16_t nStored = uint16_t(nLength);
    if (Write(&nStored, sizeof nStored) != c_nDone)
        return c_nFailed;
    return Write(pszText, uint32_t(nLength));
}

uint32_t CFileOutStream::Seek(uint32_t nLow, uint32_t)
{
    if (!m_pFile)
        return c_nFailed;
    // A patch of what is still here needs no way to the file.
    if (nLow >= m_nBufferPos && nLow - m_nBufferPos <= m_nUsed)
    {
        m_nCursor = uint32_t(nLow - m_nBufferPos);
        return c_nDone;
    }
    m_nCursor = m_nUsed;
    const bool bDone = FlushBuffer();
    if (fseeko(m_pFile, off_t(nLow), SEEK_SET) != 0)
        return c_nFailed;
    m_nBufferPos = nLow;
    return bDone ? c_nDone : c_nFailed;
}

uint64_t CFileOutStream::Tell()
{
    return m_pFile ? m_nBufferPos + m_nCursor : 0;
}

uint32_t CFileOutStream::Flush()
{
    if (!m_pFile)
        return c_nFailed;
    FlushBuffer();
    if (std::fflush(m_pFile) != 0)
        m_bError = true;
    return m_bError ? c_nFailed : c_nDone;
}

uint32_t CFileOutStream::Close()
{
    if (!m_pFile)
        return c_nFailed;
    FlushBuffer();
    if (std::fclose(m_pFile) != 0)
        m_bError = true;
    m_pFile = nullptr;
    return m_bError ? c_nFailed : c_nDone;
}

COutStreamPtr OpenFileOutStream(const char* pszPath)
{
    if (!pszPath)
        return nullptr;
    std::FILE* pFile = std::fopen(pszPath, "wb");
    if (!pFile)
        return nullptr;
    COutStreamPtr pStream(new (std::nothrow) CFileOutStream(pFile));
    if (!pStream)
        std::fclose(pFile);
    return pStream;
}
