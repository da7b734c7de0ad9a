#include "qsmemory.h"

#include <cstdio>
#include <cstdlib>
#include <new>

// A memory manager that knows its own blocks by a mark in front of them.

namespace
{

constexpr uint64_t c_nMark = 0x4D454D4F52590001;
constexpr size_t c_nHead = 16;

class CTestMemory final : public IQSMemory
{
public:
    void MemoryTrackerPush(const char* pszFile, uint32_t nLine, uint32_t nCategory) override
    {
        std::fprintf(stderr, "push %s %u %u\n", pszFile, nLine, nCategory);
        m_nFreed = 0;
    }
    void MemoryTrackerPop() override { std::fprintf(stderr, "pop %u\n", m_nFreed); }
    void* Allocate(size_t nSize) override
    {
        char* p = static_cast<char*>(std::malloc(nSize + c_nHead));
        if (!p)
            return nullptr;
        *reinterpret_cast<uint64_t*>(static_cast<void*>(p)) = c_nMark;
        return p + c_nHead;
    }
    void Free(void* pMemory) override
    {
        void* pHead = static_cast<char*>(pMemory) - c_nHead;
        if (*static_cast<uint64_t*>(pHead) != c_nMark)
            std::abort();
        *static_cast<uint64_t*>(pHead) = 0;
        std::free(pHead);
        ++m_nFreed;
    }

private:
    unsigned m_nFreed = 0;
};

CTestMemory s_Memory;

} // namespace

extern "C" IQSMemory* GetIQSMemory()
{
    if (std::getenv("QSMEMORY_ALLOCATES"))
        ::operator delete(::operator new(8));
    return &s_Memory;
}
