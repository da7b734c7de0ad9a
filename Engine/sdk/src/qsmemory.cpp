#include "qsmemory.h"

#include "loadlibrary.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace
{

enum EMemoryState
{
    MEMORY_UNKNOWN, // nobody has asked yet
    MEMORY_LOADING, // the search for a manager runs, and may allocate
    MEMORY_HEAP,
    MEMORY_MANAGER,
};

// Constant before any constructor runs: the first allocation may come from one.
std::atomic<EMemoryState> s_eState{MEMORY_UNKNOWN};
IQSMemory* s_pMemory = nullptr;
bool s_bHeapUsed = false;
std::atomic<uint64_t> s_nFailed{0};

void FindManager()
{
    s_eState = MEMORY_LOADING;
    char szPath[c_nMaxLibraryPath];
    void* pLibrary = LoadNamedLibrary("QSMemory.dll", szPath);
    using GetMemoryFn = IQSMemory* (*)();
    if (const auto pfnGet = reinterpret_cast<GetMemoryFn>(FindLibrarySymbol(pLibrary, "GetIQSMemory")))
        s_pMemory = pfnGet();
    // What the heap gave must go back to the heap, and no block tells where it came from.
    if (s_bHeapUsed)
        s_pMemory = nullptr;
    if (!s_pMemory)
        UnloadLibrary(pLibrary);
    s_eState = s_pMemory ? MEMORY_MANAGER : MEMORY_HEAP;
}

IQSMemory* GetManager()
{
    if (s_eState == MEMORY_UNKNOWN)
        FindManager();
    return s_eState == MEMORY_MANAGER ? s_pMemory : nullptr;
}

__attribute__((cold, noinline)) void* AllocateElsewhere(size_t nSize)
{
    if (IQSMemory* pMemory = GetManager())
        return pMemory->Allocate(nSize);
    s_bHeapUsed = true;
    return std::malloc(nSize);
}

__attribute__((cold, noinline)) void FreeElsewhere(void* pMemory)
{
    if (s_eState != MEMORY_MANAGER)
        std::free(pMemory);
    else if (pMemory)
        s_pMemory->Free(pMemory);
}

} // namespace

void* QSAllocate(size_t nSize)
{
    void* pMemory = s_eState.load(std::memory_order_relaxed) == MEMORY_HEAP ? std::malloc(nSize)
                                                                            : AllocateElsewhere(nSize);
    if (!pMemory) [[unlikely]]
        ++s_nFailed;
    return pMemory;
}

uint64_t GetNumFailedAllocations()
{
    return s_nFailed;
}

void QSFree(void* pMemory)
{
    if (s_eState.load(std::memory_order_relaxed) == MEMORY_HEAP) [[likely]]
        std::free(pMemory);
    else
        FreeElsewhere(pMemory);
}

void MemoryTrackerPush(const char* pszFile, uint32_t nLine, uint32_t nCategory)
{
    if (IQSMemory* pMemory = GetManager())
        pMemory->MemoryTrackerPush(pszFile, nLine, nCategory);
}

void MemoryTrackerPop()
{
    if (IQSMemory* pMemory = GetManager())
        pMemory->MemoryTrackerPop();
}

#ifndef EMBERDECK_SANITIZED

// Forms with an alignment of their own stay with the run-time library, which frees them with what it took
// them from.

void* operator new(size_t nSize)
{
    for (;;)
    {
        if (void* pMemory = QSAllocate(nSize)) [[likely]]
            return pMemory;
        const std::new_handler pfnHandler = std::get_new_handler();
        if (!pfnHandler)
            throw std::bad_alloc();
        pfnHandler();
    }
}

void* operator new(size_t nSize, const std::nothrow_t&) noexcept
{
    for (;;)
    {
        if (void* pMemory = QSAllocate(nSize)) [[likely]]
            return pMemory;
        const std::new_handler pfnHandler = std::get_new_handler();
        if (!pfnHandler)
            return nullptr;
        try
        {
            pfnHandler();
        }
        catch (const std::bad_alloc&)
        {
            return nullptr;
        }
    }
}

void* operator new[](size_t nSize)
{
    return operator new(nSize);
}
void* operator new[](size_t nSize, const std::nothrow_t& nothrow) noexcept
{
    return operator new(nSize, nothrow);
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
