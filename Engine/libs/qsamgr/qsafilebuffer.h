#pragma once

#include <cstdint>
#include <cstdio>

// A byte file behind a cache of a size chosen at Open. Belongs to one caller; the destructor closes.
//
// Using a file in the wrong mode, or a closed one, fails an assertion and gives false.
class CQSAFileBuffer
{
public:
    enum EOpenMode : uint32_t
    {
        OPEN_READ = 0,
        OPEN_WRITE = 1,
        OPEN_NONE = 2, // closed
    };

    CQSAFileBuffer() = default;
    ~CQSAFileBuffer();
    CQSAFileBuffer(const CQSAFileBuffer&) = delete;
    CQSAFileBuffer& operator=(const CQSAFileBuffer&) = delete;

    // Closes what is open first. Writing truncates the file, or with bAppend adds behind what is there; either
    // makes one that is missing. An empty file opens for reading; a folder, pipe or device fails at once. Reading
    // with bAppend, and OPEN_NONE, fail an assertion. On false nothing is left open. A cache of no bytes counts as
    // one of a single byte.
    bool Open(const char* pszFilename, EOpenMode eMode, uint32_t nCacheSize, bool bAppend);

    // Writes what the cache holds. False when any read or write of this file met an error, the end of the file
    // aside. True for a closed file.
    bool Close();

    EOpenMode GetMode() const { return m_eMode; }
    bool IsOpen() const { return m_eMode != OPEN_NONE; }

    // False at the end of the file, and on a read error; *pByte is untouched then.
    bool ReadByte(uint8_t* pByte);

    // The bytes that as many calls of ReadByte would give, and may be mixed with it. Gives their number: less
    // than nLen only at the end of the file, or on a read error.
    uint32_t ReadBlock(void* pBuffer, uint32_t nLen);

    // A byte that finds the cache full flushes it first. False when that failed.
    bool WriteByte(uint8_t nByte);

    // A cache that gets full is flushed at once. False when that failed; the rest isn't written then.
    bool WriteBlock(const void* pBytes, uint32_t nLen);

    // Hands the cache to the file, and empties it even when that failed.
    bool FlushCache();

    // Reads the next bytes over what the cache holds. False at the end of the file, and on a read error.
    bool FillCache();

    // Replaces the cache by an empty one. False when there is no memory for it.
    bool AllocateCache(uint32_t nCacheSize);

protected:
    // What is unread in the cache, for readers that take it in larger pieces.
    const uint8_t* GetUnread() const { return m_pCache + m_nCachePos; }
    const uint8_t* GetUnreadEnd() const { return m_pCache + m_nCacheLen; }
    void SetUnread(const uint8_t* pNext) { m_nCachePos = uint32_t(pNext - m_pCache); }

private:
    void FreeCache();

    uint8_t* m_pCache = nullptr;
    uint32_t m_nCacheSize = 0;
    uint32_t m_nCacheLen = 0; // reading: bytes that are valid
    uint32_t m_nCachePos = 0; // next byte to give, or to fill
    EOpenMode m_eMode = OPEN_NONE;
    std::FILE* m_pStream = nullptr;
};
