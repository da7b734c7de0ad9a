#pragma once

#include "qsmemory.h"

// QSAllocate for a manager that keeps books: it learns which place in the program asks for the memory. The
// builtins stand for std::source_location, which clang 14 lacks.
inline void* QSAllocateTracked(size_t nSize, const char* pszFile = __builtin_FILE(),
                               int nLine = __builtin_LINE())
{
    MemoryTrackerPush(pszFile, static_cast<uint32_t>(nLine), c_nMemoryCategory);
    void* pMemory = QSAllocate(nSize);
    MemoryTrackerPop();
    return pMemory;
}
