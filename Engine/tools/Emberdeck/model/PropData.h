#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

#include "qsvector.h"

// The payload of one value: 256 bytes that are read and written by kind, and copied as a whole.
// Behaves in every way as a plain array of 256 bytes that starts out zero: what one kind wrote,
// another reads byte by byte (a property whose kind a newer plug-in changed keeps its old bytes).
// Held shortened by its trailing zero bytes, since nearly all values are numbers or short texts.
// Out of memory for a long text leaves the payload all zero.
class CPropData
{
public:
    static constexpr uint32_t c_nSize = 256;
    static constexpr uint32_t c_nMaxText = 255;

    CPropData() noexcept = default;
    CPropData(const CPropData& other) noexcept;
    CPropData(CPropData&& other) noexcept; // leaves other all zero
    CPropData& operator=(const CPropData& other) noexcept;
    CPropData& operator=(CPropData&& other) noexcept;
    ~CPropData() { Release(); }

    // Numbers are in the machine's byte order. A setter writes the bytes of its kind, the others stay.
    int32_t GetInt() const { return Read<int32_t>(); }
    void SetInt(int32_t nValue) { Write(nValue); }
    float GetFloat() const { return Read<float>(); }
    void SetFloat(float fValue) { Write(fValue); }
    CVector3 GetVector() const { return Read<CVector3>(); }
    void SetVector(const CVector3& vValue) { Write(vValue); }
    uint32_t GetColor() const
    {
        return Read<uint32_t>();
    } // blue in bits 0-7, green, red, alpha in bits 24-31
    void SetColor(uint32_t nColor) { Write(nColor); }

    // The bytes before the first NUL, at most 255. Good until the next change. A NUL stands directly
    // behind them, unless all 256 bytes are filled.
    std::string_view GetText() const;
    // Copied as QSStrCpy does into a buffer of 256: up to the first NUL, cut to 255 bytes (reported), the
    // rest zero. May be given a part of its own text.
    void SetText(std::string_view sText);

    // All 256 bytes, whatever they mean.
    friend bool operator==(const CPropData& left, const CPropData& right)
    {
        return left.m_nLen == right.m_nLen && std::memcmp(left.Bytes(), right.Bytes(), left.m_nLen) == 0;
    }

    size_t GetMemory() const { return m_nLen > c_nInline ? m_nLen + 1 : 0; } // bytes beyond the object itself

    void Assign(const void* pBytes256); // all 256 bytes, such as a descriptor's m_Default
    void CopyTo(uint8_t (&aBytes)[c_nSize]) const;

private:
    static constexpr uint32_t c_nInline = 15;

    const uint8_t* Bytes() const { return m_nLen > c_nInline ? m_pHeap : m_aInline; }
    uint8_t* Bytes() { return m_nLen > c_nInline ? m_pHeap : m_aInline; }
    void Store(const uint8_t* pBytes, uint32_t nLen); // nLen bytes of content, trailing zeros cut here
    void Take(CPropData& other);                      // leaves it empty; what was here has been released
    void Release();
    void TrimInline();

    // Both forms hold the first twelve bytes of the payload: a heap block has at least 16.
    template <class T>
    T Read() const
    {
        static_assert(sizeof(T) <= 12);
        T value;
        std::memcpy(&value, Bytes(), sizeof(T));
        return value;
    }
    template <class T>
    void Write(const T& value)
    {
        static_assert(sizeof(T) <= 12);
        std::memcpy(Bytes(), &value, sizeof(T));
        if (m_nLen <= c_nInline)
            TrimInline();
    }

    // m_nLen bytes of content, the last of them not zero. Up to 15 inline, zeros behind them; more in a
    // block of m_nLen + 1 bytes, the last one zero.
    union
    {
        uint8_t m_aInline[16] = {};
        uint8_t* m_pHeap;
    };
    uint32_t m_nLen = 0;
};

// Channels of a property's colour word.
constexpr uint32_t MakePropColor(uint32_t nRed, uint32_t nGreen, uint32_t nBlue, uint32_t nAlpha)
{
    return (nBlue & 0xFF) | (nGreen & 0xFF) << 8 | (nRed & 0xFF) << 16 | (nAlpha & 0xFF) << 24;
}
constexpr uint32_t PropColorRed(uint32_t nColor)
{
    return nColor >> 16 & 0xFF;
}
constexpr uint32_t PropColorGreen(uint32_t nColor)
{
    return nColor >> 8 & 0xFF;
}
constexpr uint32_t PropColorBlue(uint32_t nColor)
{
    return nColor & 0xFF;
}
constexpr uint32_t PropColorAlpha(uint32_t nColor)
{
    return nColor >> 24 & 0xFF;
}
constexpr float c_fOneOver255 = 0.003921569f; // 0x3B808081
