#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "model/NameIndex.h"

// The names of a library's effects or prefabs while more of them are made. Who makes many fills it once: each
// name then costs the same, however many there are. Names are compared without regard to case, and aren't
// copied: they stay as they are while this is used. All throw std::bad_alloc.
class CUniqueNames
{
public:
    void Reserve(size_t nCount); // empties it: so many names at most
    void Add(std::string_view sName) { m_Names.Add(sName, 0); }
    // The name itself when nobody bears it; else the name without the digits and underscores at its end, an
    // underscore, and the lowest number from 1 on that is free. It isn't added.
    std::string Make(std::string_view sWanted);

private:
    CNameIndex m_Names;
    // By what stands before the number, in lower case: all numbers below this one are taken, since no name
    // ever goes.
    std::unordered_map<std::string, uint32_t> m_NextNumbers;
};
