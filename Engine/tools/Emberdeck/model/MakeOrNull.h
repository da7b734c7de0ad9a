#pragma once

#include <memory>
#include <utility>

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

// std::make_unique with null for "out of memory".
template <class T, class... TArgs>
std::unique_ptr<T> MakeOrNull(TArgs&&... args) noexcept
{
    std::unique_ptr<T> pObject;
    TryAllocating([&] { pObject = std::make_unique<T>(std::forward<TArgs>(args)...); });
    return pObject;
}
