#pragma once

#include "qsvector.h"

#include <cstdint>
#include <cstdio>
#include <memory>

// Writing a file for a target machine: the converter turns typed values into bytes in the target's order, the
// stream below it takes the bytes.

// A sink of raw bytes. Operations that give a number give 0 for done and 1 for failure. Ended by Release.
class IOutStream
{
public:
    virtual void Release() = 0;
    virtual uint32_t Write(const void* pData, uint32_t nCount) = 0;
    // Length of the text as two bytes in the order of this machine, then the text without a NUL. Null writes
    // the length 0. A text above 65,535 bytes is reported and cut there.
    virtual uint32_t WriteText(const char* pszText) = 0;
    // True once any byte was lost, and ever after. A buffered byte counts as soon as Flush or Close was
    // asked.
    virtual bool HasError() = 0;
    virtual bool GetFlag() = 0;
    // To a position from the start. The high part is not used.
    virtual uint32_t Seek(uint32_t nLow, uint32_t nHigh) = 0;
    virtual uint64_t Tell() = 0;

protected:
    virtual ~IOutStream() = default; // through Release alone

public:
    // Hands everything on to the file. A failure sets the error note.
    virtual uint32_t Flush() = 0;
    // Flush, then close the file, so that what the system only says at the end is noticed too. 0 when every
    // byte of the stream's life reached the file. Afterwards no file is open: Write, Seek and a further Close
    // give 1.
    virtual uint32_t Close() = 0;
};

// Writes to a file through a buffer of its own.
class CFileOutStream final : public IOutStream
{
public:
    // Takes over a file that is open for binary writing at its start; null means that no file is open.
    explicit CFileOutStream(std::FILE* pFile);

    void Release() override;
    uint32_t Write(const void* pData, uint32_t nCount) override;
    uint32_t WriteText(const char* pszText) override;
    bool HasError() override { return m_bError; }
    bool GetFlag() override { return true; }
    uint32_t Seek(uint32_t nLow, uint32_t nHigh) override;
    uint64_t Tell() override;
    uint32_t Flush() override;
    uint32_t Close() override;

private:
    ~CFileOutStream() override;

    bool FlushBuffer();
    bool WriteFile(const void* pData, size_t nCount);

    std::FILE* m_pFile;
    bool m_bError = false;
    std::unique_ptr<uint8_t[]>
        m_pBuffer;             // null when there was no memory for it: then every write goes through
    uint64_t m_nBufferPos = 0; // file position of the buffer's first byte
    uint32_t m_nUsed = 0;      // bytes of the buffer that wait for the file
    uint32_t m_nCursor = 0;    // where the next byte goes, up to m_nUsed
};

struct COutStreamRelease
{
    void operator()(IOutStream* pStream) const { pStream->Release(); }
};
using COutStreamPtr = std::unique_ptr<IOutStream, COutStreamRelease>;

// Creates or truncates the file, for binary writing. The path is the machine's own form. Null when the file
// can't be opened or there is no memory.
COutStreamPtr OpenFileOutStream(const char* pszPath);

// Records of the compound operations, as they lie in memory.
struct CVectorAndFloat
{
    CVector3 m_Vector;
    float m_fValue;
};

struct CVectorQuad
{
    CVector3 m_Vector;
    CVector4 m_Quad;
};

struct CVectorQuadFloat
{
    CVector3 m_Vector;
    CVector4 m_Quad;
    float m_fValue;
};

static_assert(sizeof(CVectorAndFloat) == 16 && sizeof(CVectorQuad) == 28 && sizeof(CVectorQuadFloat) == 32);

// Writes typed values for one target. Owns its stream. The typed operations give the converter itself, so
// that calls can be chained; whether the bytes arrived is learned from HasError, Flush or Close. Ended by
// Release.
class IQSOutConverter
{
protected:
    explicit IQSOutConverter(IOutStream* pStream) : m_pStream(pStream) {}
    virtual ~IQSOutConverter();

public:
    IQSOutConverter(const IQSOutConverter&) = delete;
    IQSOutConverter& operator=(const IQSOutConverter&) = delete;

    virtual void Release() = 0;
    virtual bool GetFlag() = 0;
    virtual uint32_t Seek(uint32_t nLow, uint32_t nHigh) = 0;
    virtual uint64_t Tell() = 0;
    // Bytes as they are, in either order. True when they were taken.
    virtual bool WriteData(const void* pData, uint32_t nCount) = 0;
    virtual IQSOutConverter& WriteVectorAndFloat(const CVectorAndFloat& record);
    virtual IQSOutConverter& WriteVectorQuadFloat(const CVectorQuadFloat& record);
    virtual IQSOutConverter& WriteVectorQuad(const CVectorQuad& record);
    virtual IQSOutConverter& WriteQuad(const CVector4& quad);
    virtual IQSOutConverter& WriteVector4(const CVector4& vector);
    virtual IQSOutConverter& WriteVector3(const CVector3& vector);
    virtual IQSOutConverter& WriteVector2(const CVector2& vector);
    virtual IQSOutConverter& WriteDouble(double fValue) = 0;
    virtual IQSOutConverter& WriteFloat(float fValue) = 0;
    virtual IQSOutConverter& WriteBool(uint8_t bValue) = 0; // the byte as it is
    virtual IQSOutConverter& WriteUint64(uint64_t nValue) = 0;
    virtual IQSOutConverter& WriteInt64(int64_t nValue) = 0;
    virtual IQSOutConverter& WriteUint32(uint32_t nValue) = 0;
    virtual IQSOutConverter& WriteInt32(int32_t nValue) = 0;
    virtual IQSOutConverter& WriteUint16(uint16_t nValue) = 0;
    virtual IQSOutConverter& WriteInt16(int16_t nValue) = 0;
    virtual IQSOutConverter& WriteUint8(uint8_t nValue) = 0;
    virtual IQSOutConverter& WriteInt8(int8_t nValue) = 0;
    // Length as 16 bits, then the bytes without a NUL. Null counts as empty. A text above 65,535 bytes is
    // reported and cut there, so that a reader stays in step.
    virtual IQSOutConverter& WriteString(const char* pszText);

    // The stream's own, see there. True: every byte so far reached the file.
    bool HasError() { return m_pStream->HasError(); }
    bool Flush() { return m_pStream->Flush() == 0; }
    bool Close() { return m_pStream->Close() == 0; }

protected:
    IOutStream* m_pStream; // never null
};

struct COutConverterRelease
{
    void operator()(IQSOutConverter* pConverter) const { pConverter->Release(); }
};
using COutConverterPtr = std::unique_ptr<IQSOutConverter, COutConverterRelease>;

// A converter for "PC" (least significant byte first) or "Xenon" (most significant first), compared without
// regard to case. It takes the stream, and pStream becomes null. Null for any other name, a null stream, or
// without memory: then the stream stays with the caller.
COutConverterPtr CreateOutConverter(const char* pszPlatform, COutStreamPtr& pStream);
