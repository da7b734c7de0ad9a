#include "qsamgr/qsafile.h"

#include <cstring>
#include <filesystem>

#include "qsamgr/qsasystem.h"
#include "qsassert.h"
#include "qsstrutils.h"

namespace
{
// Copies to the end of the source. A failed write doesn't stop the copy, so that the target is as complete as
// it can be; it shows in the result.
bool CopyAll(CQSAFile& source, CQSAFile& target)
{
    bool bOk = true;
    uint8_t aBytes[16384];
    while (const uint32_t nLen = source.ReadBlock(aBytes, sizeof(aBytes)))
        bOk &= target.WriteBlock(aBytes, nLen);
    return bOk;
}
} // namespace

CQSAFile::CQSAFile(const char* pszFilename, bool bRead, bool bCompressed, bool bAppend)
{
    Open(pszFilename, bRead, bCompressed, bAppend);
}

CQSAFile::~CQSAFile()
{
    Close();
}

bool CQSAFile::Open(const char* pszFilename, bool bRead, bool bCompressed, bool bAppend)
{
    if (IsOpen())
        Close(); // an append under way is brought to its end, not lost
    m_bCompressed = false;
    m_bRecompress = false;
    if (pszFilename == nullptr)
        return false;
    if (bCompressed && bAppend && !bRead)
        return OpenForAppend(pszFilename);

    const auto eMode = bRead ? CQSAFileBuffer::OPEN_READ : CQSAFileBuffer::OPEN_WRITE;
    // Reading with append is nothing that a container could do: the plain file refuses it for both.
    m_bCompressed = bCompressed && !bAppend;
    return m_bCompressed ? m_Compressed.Open(pszFilename, eMode, c_nCacheSize, false)
                         : m_Plain.Open(pszFilename, eMode, c_nCacheSize, bAppend);
}

// The container can't be extended in place.
bool CQSAFile::OpenForAppend(const char* pszFilename)
{
    if (ExpandToTemp(pszFilename) &&
        m_Plain.Open(m_szTempFile, CQSAFileBuffer::OPEN_WRITE, c_nCacheSize, true))
        return true;
    m_bRecompress = false;
    DropTemp();
    return false;
}

bool CQSAFile::ExpandToTemp(const char* pszFilename)
{
    // A cut name would be another file.
    if (std::strlen(pszFilename) >= sizeof(m_szTargetFile))
        return false;
    if (!QSACreateTempFile(m_szTempFile, sizeof(m_szTempFile)))
        return false;
    QSStrCpy(m_szTargetFile, pszFilename, sizeof(m_szTargetFile));

    CQSAFile target(m_szTempFile, false, false, false);
    if (!target.IsOpen())
        return false;
    std::error_code error;
    bool bOk = true;
    if (std::filesystem::status(pszFilename, error).type() != std::filesystem::file_type::not_found)
    {
        CQSAFile source(pszFilename, true, true, false);
        bOk = source.IsOpen() && CopyAll(source, target);
        bOk &= source.Close();
    }
    bOk &= target.Close();
    m_bRecompress = bOk;
    return bOk;
}

bool CQSAFile::Close()
{
    if (m_bRecompress)
        return Recompress();
    return m_bCompressed ? m_Compressed.Close() : m_Plain.Close();
}

bool CQSAFile::Recompress()
{
    const bool bWritten = m_Plain.Close();
    if (m_szTempFile[0] == '\0' || m_szTargetFile[0] == '\0')
        return false;
    const bool bRewritten = RewriteTarget();
    DropTemp();
    return bWritten && bRewritten;
}

bool CQSAFile::RewriteTarget()
{
    CQSAFile source(m_szTempFile, true, false, false);
    if (!source.IsOpen())
        return false; // before the target is truncated
    CQSAFile target(m_szTargetFile, false, true, false);
    if (!target.IsOpen())
        return false;
    bool bOk = CopyAll(source, target);
    bOk &= source.Close();
    // The compressor's own writes report nothing: the close does.
    bOk &= target.Close();
    return bOk;
}

void CQSAFile::DropTemp()
{
    QSARemoveFile(m_szTempFile);
    m_szTempFile[0] = '\0';
    m_szTargetFile[0] = '\0';
}

bool CQSAFile::IsOpen() const
{
    return m_bCompressed ? m_Compressed.IsOpen() : m_Plain.IsOpen();
}

bool CQSAFile::ReadByte(uint8_t* pByte)
{
    return m_bCompressed ? m_Compressed.ReadByte(pByte) : m_Plain.ReadByte(pByte);
}

uint32_t CQSAFile::ReadBlock(void* pBuffer, uint32_t nLen)
{
    return m_bCompressed ? m_Compressed.ReadBlock(pBuffer, nLen) : m_Plain.ReadBlock(pBuffer, nLen);
}

bool CQSAFile::WriteByte(uint8_t nByte)
{
    return m_bCompressed ? m_Compressed.WriteByte(nByte) : m_Plain.WriteByte(nByte);
}

bool CQSAFile::WriteBlock(const void* pBytes, uint32_t nLen)
{
    return m_bCompressed ? m_Compressed.WriteBlock(pBytes, nLen) : m_Plain.WriteBlock(pBytes, nLen);
}
