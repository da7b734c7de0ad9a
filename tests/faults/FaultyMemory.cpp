#include "FaultyMemory.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "qsmemory.h"

namespace
{
std::atomic<size_t> s_nCount{0};
size_t s_nFailAt = 0; // 0: none
bool s_bForever = false;
std::atomic<bool> s_bHit{false};

bool MustFail()
{
    if (s_nFailAt == 0)
        return false;
    const size_t nCount = ++s_nCount;
    if (nCount != s_nFailAt && !(s_bForever && nCount > s_nFailAt))
        return false;
    s_bHit = true;
    return true;
}
} // namespace

CFaultyMemory::CFaultyMemory(size_t nFailAt, bool bForever)
{
    s_nCount = 0;
    s_bHit = false;
    s_bForever = bForever;
    s_nFailAt = nFailAt;
}

CFaultyMemory::~CFaultyMemory()
{
    s_nFailAt = 0;
}

bool CFaultyMemory::WasHit()
{
    return s_bHit;
}

extern "C" void* __real_malloc(size_t nSize);
extern "C" void* __wrap_malloc(size_t nSize)
{
    return MustFail() ? nullptr : __real_malloc(nSize);
}

#ifdef EMBERDECK_SANITIZED

// A sanitizer's own new doesn't come through here; this one does, as that of the other builds.

void* operator new(size_t nSize)
{
    if (void* pMemory = QSAllocate(nSize))
        return pMemory;
    throw std::bad_alloc();
}
void* operator new[](size_t nSize)
{
    return operator new(nSize);
}
void* operator new(size_t nSize, const std::nothrow_t&) noexcept
{
    return QSAllocate(nSize);
}
void* operator new[](size_t nSize, const std::nothrow_t&) noexcept
{
    return QSAllocate(nSize);
}
void operator delete(void* pMemory) noexcept
{
    QSFree(pMemory);
}
void operator delete[](void* pMemory) noexcept
{
    QSFree(pMemory);
}
void operator delete(void* pMemory, size_t) noexcept
{
    QSFree(pMemory);
}
void operator delete[](void* pMemory, size_t) noexcept
{
    QSFree(pMemory);
}
void operator delete(void* pMemory, const std::nothrow_t&) noexcept
{
    QSFree(pMemory);
}
void operator delete[](void* pMemory, const std::nothrow_t&) noexcept
{
    QSFree(pMemory);
}

#endif
