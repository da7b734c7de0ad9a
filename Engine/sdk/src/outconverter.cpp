#include "iqsoutconverter.h"

#include "qsassert.h"
#include "qsstrutils.h"

#include <bit>
#include <cstring>
#include <new>

// What is the same for every target: the compound values, made of the plain ones.

IQSOutConverter::~IQSOutConverter()
{
    m_pStream->Release();
}

IQSOutConverter& IQSOutConverter::WriteVectorAndFloat(const CVectorAndFloat& record)
{
    return WriteVector3(record.m_Vector).WriteFloat(record.m_fValue);
}

IQSOutConverter& IQSOutConverter::WriteVectorQuadFloat(const CVectorQuadFloat& record)
{
    return WriteVector3(record.m_Vector).WriteQuad(record.m_Quad).WriteFloat(record.m_fValue);
}

IQSOutConverter& IQSOutConverter::WriteVectorQuad(const CVectorQuad& record)
{
    return WriteVector3(record.m_Vector).WriteQuad(record.m_Quad);
}

IQSOutConverter& IQSOutConverter::WriteQuad(const CVector4& quad)
{
    return WriteFloat(quad.x).WriteFloat(quad.y).WriteFloat(quad.z).WriteFloat(quad.w);
}

IQSOutConverter& IQSOutConverter::WriteVector4(const CVector4& vector)
{
    return WriteFloat(vector.x).WriteFloat(vector.y).WriteFloat(vector.z).WriteFloat(vector.w);
}

IQSOutConverter& IQSOutConverter::WriteVector3(const CVector3& vector)
{
    return WriteFloat(vector.x).WriteFloat(vector.y).WriteFloat(vector.z);
}

IQSOutConverter& IQSOutConverter::WriteVector2(const CVector2& vector)
{
    return WriteFloat(vector.x).WriteFloat(vector.y);
}

IQSOutConverter& IQSOutConverter::WriteString(const char* pszText)
{
    size_t nStrLen = pszText ? std::strlen(pszText) : 0;
    QS_ASSERT(nStrLen <= 0xFFFF);
    nStrLen = nStrLen <= 0xFFFF ? nStrLen : 0xFFFF;
    WriteUint16(uint16_t(nStrLen));
    for (size_t n = 0; n < nStrLen; ++n)
        WriteInt8(int8_t(pszText[n]));
    return *this;
}

namespace
{

// Turns the bytes of a number when the target's order is not this machine's.
template <std::endian t_eOrder>
class COrderedOutConverter : public IQSOutConverter
{
public:
    explicit COrderedOutConverter(IOutStream* pStream) : IQSOutConverter(pStream) {}

    void Release() final { delete this; }
    bool GetFlag() final { return m_pStream->GetFlag(); }
    uint32_t Seek(uint32_t nLow, uint32_t nHigh) final { return m_pStream->Seek(nLow, nHigh); }
    uint64_t Tell() final { return m_pStream->Tell(); }
    bool WriteData(const void* pData, uint32_t nCount) final { return m_pStream->Write(pData, nCount) == 0; }
    IQSOutConverter& WriteDouble(double fValue) final { return Put(std::bit_cast<uint64_t>(fValue)); }
    IQSOutConverter& WriteFloat(float fValue) final { return Put(std::bit_cast<uint32_t>(fValue)); }
    IQSOutConverter& WriteBool(uint8_t bValue) final { return Put(bValue); }
    IQSOutConverter& WriteUint64(uint64_t nValue) final { return Put(nValue); }
    IQSOutConverter& WriteInt64(int64_t nValue) final { return Put(uint64_t(nValue)); }
    IQSOutConverter& WriteUint32(uint32_t nValue) final { return Put(nValue); }
    IQSOutConverter& WriteInt32(int32_t nValue) final { return Put(uint32_t(nValue)); }
    IQSOutConverter& WriteUint16(uint16_t nValue) final { return Put(nValue); }
    IQSOutConverter& WriteInt16(int16_t nValue) final { return Put(uint16_t(nValue)); }
    IQSOutConverter& WriteUint8(uint8_t nValue) final { return Put(nValue); }
    IQSOutConverter& WriteInt8(int8_t nValue) final { return Put(uint8_t(nValue)); }

protected:
    ~COrderedOutConverter() override = default;

private:
    template <typename T>
    IQSOutConverter& Put(T nValue)
    {
        if constexpr (t_eOrder != std::endian::native)
            nValue = Reverse(nValue);
        m_pStream->Write(&nValue, sizeof nValue);
        return *this;
    }

    static uint8_t Reverse(uint8_t nValue) { return nValue; }
    static uint16_t Reverse(uint16_t nValue) { return __builtin_bswap16(nValue); }
    static uint32_t Reverse(uint32_t nValue) { return __builtin_bswap32(nValue); }
    static uint64_t Reverse(uint64_t nValue) { return __builtin_bswap64(nValue); }
};

class CPCOutConverter final : public COrderedOutConverter<std::endian::little>
{
public:
    using COrderedOutConverter::COrderedOutConverter;

private:
    ~CPCOutConverter() override = default;
};

class CXenonOutConverter final : public COrderedOutConverter<std::endian::big>
{
public:
    using COrderedOutConverter::COrderedOutConverter;

private:
    ~CXenonOutConverter() override = default;
};

} // namespace

COutConverterPtr CreateOutConverter(const char* pszPlatform, COutStreamPtr& pStream)
{
    if (!pszPlatform || !pStream)
        return nullptr;
    COutConverterPtr pConverter;
    if (QSStrIEquals(pszPlatform, "PC"))
        pConverter.reset(new (std::nothrow) CPCOutConverter(pStream.get()));
    else if (QSStrIEquals(pszPlatform, "Xenon"))
        pConverter.reset(new (std::nothrow) CXenonOutConverter(pStream.get()));
    if (pConverter)
        static_cast<void>(pStream.release()); // the converter's from here on
    return pConverter;
}
