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

// The stream behind a good header.
struct CPackedStream
{
    CPackedStream(const uint8_t* pBits, size_t nSize)
    {
        m_Decoder.Reset();
        m_Cursor.m_pNext = pBits;
        m_Cursor.m_pEnd = pBits + nSize;
    }
    size_t GetSize() const { return static_cast<size_t>(m_Cursor.m_pEnd - m_Cursor.m_pNext); } // bytes left
    // nHistory bytes before pOut are its own.
    size_t Decode(uint8_t* pOut, size_t nLen, size_t nHistory)
    {
        return m_Decoder.Decode(m_Cursor, pOut, nLen, nHistory);
    }

    CLZSSDecoder m_Decoder;
    CBitCursor m_Cursor;
};

bool HasHeader(const uint8_t* pFile, size_t nSize)
{
    const size_t nHeader = std::min(nSize, size_t(LZSS::c_nHeaderSize));
    return std::all_of(pFile, pFile + nHeader, [](uint8_t nByte) { return nByte == 0; });
}

CPackedStream StreamOf(const uint8_t* pFile, size_t nSize)
{
    const size_t nHeader = std::min(nSize, size_t(LZSS::c_nHeaderSize));
    return CPackedStream(pFile + nHeader, nSize - nHeader);
}

// False when there is more than nMaxOut.
bool DecompressTo(CPackedStream& stream, std::vector<uint8_t>& out, size_t nMaxOut)
{
    constexpr size_t c_nPiece = 262144;
    // A token gives at most as many bytes as it has bits; the last one may lack some of these.
    const size_t nLimit = std::min(nMaxOut, stream.GetSize() * 8 + LZSS::c_nLookAheadSize);
    for (;;)
    {
        const size_t nDone = out.size();
        // One byte more than there may be tells whether there is more.
        const size_t nPiece = nLimit - nDone < c_nPiece ? nLimit - nDone + 1 : c_nPiece;
        out.resize(nDone + nPiece);
        const size_t nDecoded = stream.Decode(out.data() + nDone, nPiece, nDone);
        out.resize(nDone + nDecoded);
        if (out.size() > nLimit)
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

bool QSADecompress(const uint8_t* pFile, size_t nSize, std::vector<uint8_t>& out, size_t nMaxOut,
                   bool* pbEnded)
try
{
    out.clear();
    CPackedStream stream = StreamOf(pFile, nSize);
    if (HasHeader(pFile, nSize) && DecompressTo(stream, out, nMaxOut))
    {
        if (pbEnded != nullptr)
            *pbEnded = stream.m_Decoder.HasEnded();
        return true;
    }
    out.clear();
    return false;
}
catch (const std::exception&)
{
    out.clear();
    return false;
}

bool QSADecompress(const uint8_t* pFile, size_t nSize, uint8_t* pOut, size_t nRoom, size_t& nLen)
{
    nLen = 0;
    if (!HasHeader(pFile, nSize))
        return false;
    CPackedStream stream = StreamOf(pFile, nSize);
    uint8_t nMore = 0;
    nLen = stream.Decode(nRoom != 0 ? pOut : &nMore, nRoom, 0);
    return nLen < nRoom || stream.Decode(&nMore, 1, 0) == 0;
}
