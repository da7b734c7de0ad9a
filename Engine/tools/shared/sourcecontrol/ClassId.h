#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

// 128 bits that name a source control provider. All zero means none.
class CClassId
{
public:
    constexpr CClassId() = default;
    constexpr explicit CClassId(const std::array<uint8_t, 16>& bytes) : m_Bytes(bytes) {}

    // Reads the form {3C5E1A90-7D24-4B68-9E1F-62AD07C4B315}, in either case and with nothing around it.
    // All zero for anything else.
    static CClassId FromText(std::string_view sText);
    std::string ToText() const; // the same form, in capitals

    constexpr bool IsZero() const { return m_Bytes == std::array<uint8_t, 16>{}; }
    friend constexpr bool operator==(const CClassId&, const CClassId&) = default;

private:
    std::array<uint8_t, 16> m_Bytes{}; // as they are written, left to right
};
