#pragma once

#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "qsmemory.h"

// Memory that runs out is a result here, never an exception: library code throws nothing. These three turn the
// one into the other at the edge of a step.

// Runs work that may need memory, on the caller's thread. True: it has run to its end, which says nothing of what
// it found. False: there was none, or more was asked for than a container can ever hold. The work was left there,
// so it is written so that what it touches is sound at each place where it may stop: no half-filled list, no
// pointer to what was not made. Anything else that is thrown is a mistake of the program, and ends it.
template <class TWork>
bool TryAllocating(TWork&& work) noexcept
{
    try
    {
        std::forward<TWork>(work)();
        return true;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
    catch (const std::length_error&)
    {
        return false;
    }
}

// Runs work that must be whole. False also when an allocation failed that something within did without: some
// objects go on without memory (a payload becomes zero, an index is not built), and a caller who saves
// the result has to know of it. Counts the failed allocations of the whole process.
template <class TWork>
bool AllocateAll(TWork&& work) noexcept
{
    const uint64_t nBefore = GetNumFailedAllocations();
    return TryAllocating(std::forward<TWork>(work)) && GetNumFailedAllocations() == nBefore;
}

// std::make_unique with null for "out of memory". The arguments are as they were then, but for those that were
// moved from.
template <class T, class... TArgs>
std::unique_ptr<T> MakeOrNull(TArgs&&... args) noexcept
{
    std::unique_ptr<T> pObject;
    TryAllocating([&] { pObject = std::make_unique<T>(std::forward<TArgs>(args)...); });
    return pObject;
}
