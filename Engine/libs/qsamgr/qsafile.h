#pragma once

#include <cstdint>

#include "qsamgr/qsacompressedfile.h"
#include "qsamgr/qsafilebuffer.h"

// The one file type of the program's node text: plain or compressed, chosen when it is opened, with the same
// operations. Belongs to one caller. Large (the compressor's tables lie inside): not for deep stacks.
class CQSAFile
{
public:
    CQSAFile() = default;
    // Opens at once; IsOpen tells the result.
    CQSAFile(const char* pszFilename, bool bRead, bool bCompressed, bool bAppend);
    ~CQSAFile();
    CQSAFile(const CQSAFile&) = delete;
    CQSAFile& operator=(const CQSAFile&) = delete;

    // Closes what is open, then opens the path for reading or for writing. Reading fails for what is
    // no ordinary file and, when compressed, for a wrong header. bAppend goes with writing only.
    //
    // Appending to a compressed file works on a plain copy in the machine's temporary directory, which is
    // compressed back at Close. A missing file starts empty; one that can't be expanded fails and stays as it
    // is.
    bool Open(const char* pszFilename, bool bRead, bool bCompressed, bool bAppend);

    // False when the file had an I/O error or the rewrite of an appended compressed file failed. The
    // temporary copy is gone afterwards in either case.
    bool Close();

    bool IsOpen() const;

    // Whether a file that was read to its end has all that belongs to its form: a compressed one, the end of its
    // stream. True for any other.
    bool EndsInStream() const { return !m_bCompressed || m_Compressed.HasEnded(); }

    // False at the end of the file, and on a read error.
    bool ReadByte(uint8_t* pByte);
    // Up to nLen bytes, fewer only at the end of the file or on a read error; gives their number.
    uint32_t ReadBlock(void* pBuffer, uint32_t nLen);
    bool WriteByte(uint8_t nByte);
    bool WriteBlock(const void* pBytes, uint32_t nLen);

private:
    bool OpenForAppend(const char* pszFilename);
    bool ExpandToTemp(const char* pszFilename);
    bool Recompress();
    bool RewriteTarget();
    void DropTemp();

    static constexpr uint32_t c_nCacheSize = 1024;
    static constexpr uint32_t c_nMaxPath = 260;

    bool m_bCompressed = false;      // which of the two is in use
    CQSACompressedFile m_Compressed; // when m_bCompressed
    CQSAFileBuffer m_Plain;          // else
    bool m_bRecompress = false;      // the plain file is a copy that is compressed back at Close
    char m_szTempFile[c_nMaxPath] = {};
    char m_szTargetFile[c_nMaxPath] = {}; // compressed file to rewrite
};
