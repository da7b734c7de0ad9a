#pragma once

#include <memory>
#include <utility>

#include "qsmemory.h"

// Runs work that may need memory. False when there was none; the work must leave its objects sound then.
template <class TWork>
bool TryAllocating(TWork&& work) noexcept
{
    try
    {
        std::forward<TWork>(work)();
        return true;
    }
    catch (...)
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
