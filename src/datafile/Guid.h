// The 128-bit identifier a standard carries, and its text form in datafiles.
#pragma once

#include <array>
#include <cstdint>
#include <string>

struct CGuid {
    std::uint32_t Data1 = 0;
    std::uint16_t Data2 = 0;
    std::uint16_t Data3 = 0;
    std::array<std::uint8_t, 8> Data4{};

    bool IsNull() const;
    friend bool operator==(const CGuid&, const CGuid&) = default;
};

// "%08lX-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X"
std::wstring GuidToText(const CGuid& guid);

// The lenient decoder of stored GUID text: hyphens removed, then fixed-width
// pieces read as hexadecimal up to their first non-digit. Characters coded 42
// to 63 count as digits worth their low four bits, which older files rely on.
// Short or damaged text gives a partly zero GUID, never an error.
CGuid GuidFromText(const std::wstring& text);

// A new random GUID from the platform.
CGuid NewGuid();
