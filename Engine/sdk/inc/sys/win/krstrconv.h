#pragma once

#include <cstdint>
#include <memory>

// Conversion objects between narrow and wide text. They live as long as the result is needed, usually for one
// call:
//
//   pProvider->SetName(KRA2WEX(sName.c_str()));
//
// Text of up to 127 characters needs no heap. A null source gives a null result. Code page 0, the system
// default, is UTF-8, and so is 65001. Ill-formed text, an unknown code page and missing memory are reported
// as assertions, and give the empty text.
constexpr uint32_t c_nStrConvInline = 128;

class KRW2AEX
{
public:
    explicit KRW2AEX(const wchar_t* pszSource, uint32_t nCodePage = 0) { Init(pszSource, nCodePage); }
    KRW2AEX(const KRW2AEX&) = delete;
    KRW2AEX& operator=(const KRW2AEX&) = delete;

    operator const char*() const { return m_pszText; }
    const char* Get() const { return m_pszText; }

private:
    void Init(const wchar_t* pszSource, uint32_t nCodePage);

    const char* m_pszText = nullptr;
    std::unique_ptr<char[]> m_pHeap;
    char m_szInline[c_nStrConvInline];
};

class KRA2WEX
{
public:
    explicit KRA2WEX(const char* pszSource, uint32_t nCodePage = 0) { Init(pszSource, nCodePage); }
    KRA2WEX(const KRA2WEX&) = delete;
    KRA2WEX& operator=(const KRA2WEX&) = delete;

    operator const wchar_t*() const { return m_pszText; }
    const wchar_t* Get() const { return m_pszText; }

private:
    void Init(const char* pszSource, uint32_t nCodePage);

    const wchar_t* m_pszText = nullptr;
    std::unique_ptr<wchar_t[]> m_pHeap;
    wchar_t m_szInline[c_nStrConvInline];
};
