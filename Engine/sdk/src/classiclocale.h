#pragma once

#include <locale.h>

// The C locale for the calling thread as long as the object lives, so that the printf family writes a decimal
// point whatever locale a window toolkit has set for the process.
class CClassicLocale
{
public:
    CClassicLocale() : m_Previous(uselocale(Classic())) {}
    ~CClassicLocale() { uselocale(m_Previous); }
    CClassicLocale(const CClassicLocale&) = delete;
    CClassicLocale& operator=(const CClassicLocale&) = delete;

private:
    static locale_t Classic()
    {
        static const locale_t s_Classic = newlocale(LC_ALL_MASK, "C", nullptr);
        return s_Classic; // null, without memory for it, leaves the thread's locale alone
    }

    locale_t m_Previous;
};
