#pragma once

#include "qsamgr/lzssdecoder.h"
#include "qsamgr/lzsswindow.h"
#include "qsamgr/qsabitfile.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// A byte file that is compressed on disk (lzssformat.h tells the form). Reading and writing are streams from
// the first byte to the last. Large, about 200 KB, with no heap use beyond the file's cache. Single bits of
// the base class have no place here.
class CQSACompressedFile : public CQSABitFile
{
public:
    CQSACompressedFile() = default;
    ~CQSACompressedFile();

    // As CQSAFileBuffer's. Reading fails when one of the first 4 bytes isn't zero; a file of fewer bytes opens
    // as an empty one. bAppend puts a second stream behind what the file holds, which readers don't look for.
    bool Open(const char* pszFilename, EOpenMode eMode, uint32_t nCacheSize, bool bAppend);

    // Writes what the encoder holds. False when any read or write met an error. True for a closed file.
    bool Close();

    // False at the end of the stream, which is the end token or the end of the file, and on a read error;
    // *pByte is untouched then. A further call reads on behind the end token.
    bool ReadByte(uint8_t* pByte);

    // The bytes that as many calls of ReadByte would give up to the first false, and may be mixed with it.
    // Gives their number.
    uint32_t ReadBlock(void* pBuffer, uint32_t nLen);

    // Whether the stream that was read to its end has an end token. Without one it was cut.
    bool HasEnded() const { return m_Decoder.HasEnded(); }

    // False only in the wrong mode: a failed write shows at Close.
    bool WriteByte(uint8_t nByte);
    bool WriteBlock(const void* pBytes, uint32_t nLen);

private:
    uint32_t TakeDecoded(uint8_t* pBuffer, uint32_t nLen);
    uint32_t Decode(uint8_t* pBuffer, uint32_t nLen);

    static constexpr uint32_t c_nDecodedSize = 4096;

    CLZSSWindow m_Window;
    CLZSSDecoder m_Decoder;
    uint8_t m_aDecoded[c_nDecodedSize]; // for ReadByte
    uint32_t m_nDecodedLen = 0;
    uint32_t m_nDecodedPos = 0;
    bool m_bEndMet = false; // the stream's end comes behind m_aDecoded
};

// A whole compressed file in memory from nSize bytes, the same as CQSACompressedFile writes. Replaces out,
// which must not be the source. False when memory runs out; out is empty then.
bool QSACompress(const uint8_t* pData, size_t nSize, std::vector<uint8_t>& out);

// The bytes of a compressed file in memory, up to the stream's end as CQSACompressedFile reads them: at most 8
// for each byte of the file. Replaces out, which must not be the source. False when one of the first 4 bytes
// isn't zero, when there is more than nMaxOut, or when memory runs out; out is empty then. *pbEnded, when asked
// for, is whether the stream has an end token; without one it was cut.
bool QSADecompress(const uint8_t* pFile, size_t nSize, std::vector<uint8_t>& out, size_t nMaxOut = SIZE_MAX,
                   bool* pbEnded = nullptr);

// The same into memory of the caller's, for whoever knows how much there will be: takes no memory of its own. Up
// to nRoom bytes at pOut may be written. False for a wrong header, and when there is more
// than nRoom; nLen tells what was decoded in either case.
bool QSADecompress(const uint8_t* pFile, size_t nSize, uint8_t* pOut, size_t nRoom, size_t& nLen);
