#include "qsamgr/qsacompressedfile.h"

#include "qsassert.h"

#include <algorithm>
#include <memory>
#include <new>
#include <stdexcept>

CQSACompressedFile::~CQSACompressedFile()
{
    Close();
}

bool CQSACompressedFile::Open(const char* pszFilename, EOpenMode eMode, uint32_t nCacheSize, bool bAppend)
{
    Close(); // the base class alone would lose what the encoder holds
    if (!CQSABitFile::Open(pszFilename, eMode, nCacheSize, bAppend))
        return false;
    if (eMode == OPEN_WRITE)
    {
        const uint8_t aHeader[LZSS::c_nHeaderSize] = {};
        SetBits(aHeader, LZSS::c_nHeaderSize * 8);
        m_Window.Reset();
        return true;
    }
    bool bValid = true;
    for (uint32_t i = 0; i < LZSS::c_nHeaderSize * 8; ++i)
    {
        uint8_t nBit;
        bValid &= !GetBit(&nBit) || nBit == 0;
    }
    if (!bValid)
    {
        CQSABitFile::Close();
        return false;
    }
    m_Decoder.Reset();
    m_nDecodedLen = 0;
    m_nDecodedPos = 0;
    m_bEndMet = false;
    return true;
}

bool CQSACompressedFile::Close()
{
    if (GetMode() == OPEN_WRITE)
        m_Window.Flush(this);
    return CQSABitFile::Close();
}

bool CQSACompressedFile::ReadByte(uint8_t* pByte)
{
    QS_ASSERT(GetMode() == CQSAFileBuffer::OPEN_READ);
    if (GetMode() != OPEN_READ)
        return false;
    if (m_nDecodedPos == m_nDecodedLen)
    {
        m_nDecodedPos = 0;
        m_nDecodedLen = 0;
        if (!m_bEndMet)
        {
            m_nDecodedLen = Decode(m_aDecoded, c_nDecodedSize);
            m_bEndMet = m_nDecodedLen < c_nDecodedSize;
        }
        if (m_nDecodedLen == 0)
        {
            m_bEndMet = false; // told now
            return false;
        }
    }
    *pByte = m_aDecoded[m_nDecodedPos++];
    return true;
}

uint32_t CQSACompressedFile::ReadBlock(void* pBuffer, uint32_t nLen)
{
    QS_ASSERT(GetMode() == CQSAFileBuffer::OPEN_READ);
    if (GetMode() != OPEN_READ || nLen == 0)
        return 0;
    uint8_t* const pNext = static_cast<uint8_t*>(pBuffer);
    const uint32_t nTaken = TakeDecoded(pNext, nLen);
    if (nTaken == nLen)
        return nLen;
    if (m_bEndMet)
    {
        m_bEndMet = false;
        return nTaken;
    }
    return nTaken + Decode(pNext + nTaken, nLen - nTaken);
}

// What ReadByte has decoded ahead.
uint32_t CQSACompressedFile::TakeDecoded(uint8_t* pBuffer, uint32_t nLen)
{
    const uint32_t nTaken = std::min(nLen, m_nDecodedLen - m_nDecodedPos);
    std::copy_n(m_aDecoded + m_nDecodedPos, nTaken, pBuffer);
    m_nDecodedPos += nTaken;
    return nTaken;
}

uint32_t CQSACompressedFile::Decode(uint8_t* pBuffer, uint32_t nLen)
{
    CBitCursor cursor = GetCursor();
    const size_t nDecoded = m_Decoder.Decode(cursor, pBuffer, nLen);
    SetCursor(cursor);
    return uint32_t(nDecoded);
}

bool CQSACompressedFile::WriteByte(uint8_t nByte)
{
    QS_ASSERT(GetMode() == CQSAFileBuffer::OPEN_WRITE);
    return GetMode() == OPEN_WRITE && m_Window.AddByte(nByte, this);
}

bool CQSACompressedFile::WriteBlock(const void* pBytes, uint32_t nLen)
{
    QS_ASSERT(GetMode() == CQSAFileBuffer::OPEN_WRITE);
    return GetMode() == OPEN_WRITE && m_Window.AddBlock(pBytes, nLen, this);
}

namespace
{

void CompressTo(const uint8_t* pData, size_t nSize, std::vector<uint8_t>& out)
{
    out.assign(LZSS::c_nHeaderSize, 0);
    const auto pWindow = std::make_unique<CLZSSWindow>();
    pWindow->Reset();
    pWindow->AddBlock(pData, nSize, out);
    pWindow->Flush(out);
}

// False when there is more than nMaxOut.
bool DecompressTo(const uint8_t* pBits, size_t nSize, std::vector<uint8_t>& out, size_t nMaxOut)
{
    constexpr size_t c_nPiece = 65536;
    CLZSSDecoder decoder;
    decoder.Reset();
    CBitCursor cursor;
    cursor.m_pNext = pBits;
    cursor.m_pEnd = pBits + nSize;
    for (;;)
    {
        const size_t nDone = out.size();
        // One byte more than allowed tells whether there is more.
        const size_t nPiece = std::min(c_nPiece, nMaxOut - nDone + (nMaxOut - nDone < c_nPiece ? 1 : 0));
        out.resize(nDone + nPiece);
        const size_t nDecoded = decoder.Decode(cursor, out.data() + nDone, nPiece, nDone);
        out.resize(nDone + nDecoded);
        if (out.size() > nMaxOut)
            return false;
        if (nDecoded < nPiece)
            return true;
    }
}

} // namespace

bool QSACompress(const uint8_t* pData, size_t nSize, std::vector<uint8_t>& out)
try
{
    CompressTo(pData, nSize, out);
    return true;
}
catch (const std::exception&)
{
    out.clear();
    return false;
}

bool QSADecompress(const uint8_t* pFile, size_t nSize, std::vector<uint8_t>& out, size_t nMaxOut)
try
{
    out.clear();
    const size_t nHeader = std::min(nSize, size_t(LZSS::c_nHeaderSize));
    if (std::any_of(pFile, pFile + nHeader, [](uint8_t nByte) { return nByte != 0; }))
        return false;
    if (DecompressTo(pFile + nHeader, nSize - nHeader, out, nMaxOut))
        return true;
    out.clear();
    return false;
}
catch (const std::exception&)
{
    out.clear();
    return false;
}
