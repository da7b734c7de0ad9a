#pragma once

#include <atomic>
#include <cstdint>

// A number that no other object of the process has had, from 1 on: tells objects apart where a pointer might have
// been reused. A copy has one of its own, and an assignment changes none.
class CSerial
{
public:
    CSerial() : m_nSerial(s_nLast.fetch_add(1, std::memory_order_relaxed) + 1) {}
    CSerial(const CSerial&) : CSerial() {}
    CSerial& operator=(const CSerial&) { return *this; }

    uint64_t Get() const { return m_nSerial; }
    // For an object that is made anew in place of one that has gone.
    void Restore(uint64_t nSerial) { m_nSerial = nSerial; }

private:
    inline static std::atomic<uint64_t> s_nLast{0};
    uint64_t m_nSerial;
};
