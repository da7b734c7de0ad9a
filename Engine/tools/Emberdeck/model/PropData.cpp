#include "model/PropData.h"

#include <algorithm>

#include "qsmemory.h"
#include "qsstrutils.h"

namespace
{

// Length of nLen bytes without their trailing zeros. Most payloads are nearly all zero, so eight at a time.
uint32_t ContentLength(const uint8_t* pBytes, uint32_t nLen)
{
    while (nLen >= sizeof(uint64_t))
    {
        uint64_t nWord;
        std::memcpy(&nWord, pBytes + nLen - sizeof(nWord), sizeof(nWord));
        if (nWord != 0)
            break;
        nLen -= sizeof(nWord);
    }
    while (nLen > 0 && pBytes[nLen - 1] == 0)
        --nLen;
    return nLen;
}

} // namespace

CPropData::CPropData(const CPropData& other) noexcept
{
    if (other.m_nLen > c_nInline)
    {
        Store(other.m_pHeap, other.m_nLen);
        return;
    }
    std::memcpy(m_aInline, other.m_aInline, sizeof(m_aInline));
    m_nLen = other.m_nLen;
}

CPropData::CPropData(CPropData&& other) noexcept
{
    Take(other);
}

CPropData& CPropData::operator=(const CPropData& other) noexcept
{
    if (this != &other)
        Store(other.Bytes(), other.m_nLen);
    return *this;
}

CPropData& CPropData::operator=(CPropData&& other) noexcept
{
    if (this != &other)
    {
        Release();
        Take(other);
    }
    return *this;
}

void CPropData::Take(CPropData& other)
{
    std::memcpy(m_aInline, other.m_aInline, sizeof(m_aInline)); // or the block, which lies there too
    m_nLen = other.m_nLen;
    std::memset(other.m_aInline, 0, sizeof(other.m_aInline));
    other.m_nLen = 0;
}

void CPropData::Release()
{
    if (m_nLen > c_nInline)
        QSFree(m_pHeap);
}

void CPropData::TrimInline()
{
    m_nLen = ContentLength(m_aInline, sizeof(m_aInline) - 1);
}

void CPropData::Store(const uint8_t* pBytes, uint32_t nLen)
{
    nLen = ContentLength(pBytes, nLen);
    if (nLen > c_nInline)
    {
        auto* pHeap = static_cast<uint8_t*>(QSAllocate(nLen + 1));
        if (pHeap)
        {
            std::memcpy(pHeap, pBytes, nLen);
            pHeap[nLen] = 0;
            Release(); // not before: pBytes may lie in the old block
            m_pHeap = pHeap;
            m_nLen = nLen;
            return;
        }
        nLen = 0;
    }
    uint8_t aContent[sizeof(m_aInline)] = {};
    std::memcpy(aContent, pBytes, nLen);
    Release();
    std::memcpy(m_aInline, aContent, sizeof(m_aInline));
    m_nLen = nLen;
}

std::string_view CPropData::GetText() const
{
    const uint8_t* pBytes = Bytes();
    const uint32_t nMax = std::min(m_nLen, c_nMaxText);
    const void* pEnd = std::memchr(pBytes, 0, nMax);
    const size_t nLen = pEnd ? static_cast<size_t>(static_cast<const uint8_t*>(pEnd) - pBytes) : nMax;
    return std::string_view(reinterpret_cast<const char*>(pBytes), nLen);
}

void CPropData::SetText(std::string_view sText)
{
    sText = sText.substr(0, sText.find('\0'));
    if (sText.size() <= c_nMaxText)
    {
        Store(reinterpret_cast<const uint8_t*>(sText.data()), static_cast<uint32_t>(sText.size()));
        return;
    }
    char szSource[c_nSize + 1]; // one byte more than fits, for the report
    std::memcpy(szSource, sText.data(), c_nSize);
    szSource[c_nSize] = 0;
    char szText[c_nSize];
    QSStrCpy(szText, szSource, c_nSize);
    Store(reinterpret_cast<const uint8_t*>(szText), c_nMaxText);
}

void CPropData::Assign(const void* pBytes256)
{
    Store(static_cast<const uint8_t*>(pBytes256), c_nSize);
}

void CPropData::CopyTo(uint8_t (&aBytes)[c_nSize]) const
{
    std::memcpy(aBytes, Bytes(), m_nLen);
    std::memset(aBytes + m_nLen, 0, c_nSize - m_nLen);
}
