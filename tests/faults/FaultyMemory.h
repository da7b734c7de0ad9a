#pragma once

#include <cstddef>

// While it lives, the nFailAt-th allocation (from 1 on) of this program's own code fails, and with bForever
// every one behind it, too. At most one at a time.
class CFaultyMemory
{
public:
    explicit CFaultyMemory(size_t nFailAt, bool bForever);
    ~CFaultyMemory();
    CFaultyMemory(const CFaultyMemory&) = delete;
    CFaultyMemory& operator=(const CFaultyMemory&) = delete;

    static bool WasHit(); // of the one that lived last
};
