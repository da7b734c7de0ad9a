#pragma once

#include <cstddef>
#include <cstdint>

// The two entry points of all allocation in the program; the global new and delete stand on them. On first
// use an optional memory manager is looked for, the library "QSMemory.dll" with the export GetIQSMemory;
// without one the run-time library's heap does the work, at the cost of one test.

// The interface of the memory manager. The positions of its last four operations are the contract; those
// before belong to the manager and are never called from here. A manager must not allocate through this
// program's new while it is being loaded: it is accepted only as long as nothing has been allocated from the
// heap.
class IQSMemory
{
public:
    virtual void Reserved0() {}
    virtual void Reserved1() {}
    virtual void Reserved2() {}
    virtual void Reserved3() {}
    virtual void Reserved4() {}
    virtual void Reserved5() {}
    virtual void Reserved6() {}
    virtual void Reserved7() {}
    virtual void Reserved8() {}
    virtual void MemoryTrackerPush(const char* pszFile, uint32_t nLine, uint32_t nCategory) = 0;
    virtual void MemoryTrackerPop() = 0;
    virtual void* Allocate(size_t nSize) = 0;
    virtual void Free(void* pMemory) = 0;

protected:
    ~IQSMemory() = default;
};

// nSize bytes, aligned for every plain type, or null when there is no memory. Size 0 gives a pointer to
// nothing.
void* QSAllocate(size_t nSize);

// How often QSAllocate has given null so far. Work that must be whole compares it before and after: much code
// goes on with less when it gets no memory.
uint64_t GetNumFailedAllocations();

// Takes back what QSAllocate gave; null does nothing.
void QSFree(void* pMemory);

// Category of every tracked allocation in this program.
constexpr uint32_t c_nMemoryCategory = 3;

// Bracket an allocation for a manager that keeps books. Without one they do nothing.
void MemoryTrackerPush(const char* pszFile, uint32_t nLine, uint32_t nCategory);
void MemoryTrackerPop();
