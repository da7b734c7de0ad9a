#pragma once

#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "qsmemory.h"

// Runs work that may need memory. False when there was none, or more was asked for than a container can ever hold;
// the work must leave its objects sound then. Anything else that is thrown is a mistake of the program, and ends it.
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

// Runs work that must be whole. False also when an allocation failed that something within did without.
template <class TWork>
bool AllocateAll(TWork&& work) noexcept
{
    const uint64_t nBefore = GetNumFailedAllocations();
    return TryAllocating(std::forward<TWork>(work)) && GetNumFailedAllocations() == nBefore;
}

// std::make_unique with null for "out of memory".
template <class T, class... TArgs>
std::unique_ptr<T> MakeOrNull(TArgs&&... args) noexcept
{
    std::unique_ptr<T> pObject;
    TryAllocating([&] { pObject = std::make_unique<T>(std::forward<TArgs>(args)...); });
    return pObject;
}
