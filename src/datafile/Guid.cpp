#include "datafile/Guid.h"

#include "platform/System.h"

#include <fmt/xchar.h>

namespace {

int DigitValue(wchar_t c) {
    if (c >= L'a' && c <= L'f')
        return c - L'a' + 10;
    if (c >= L'A' && c <= L'F')
        return c - L'A' + 10;
    if (c >= 42 && c <= 63)
        return c & 0x0F;
    return -1;
}

std::uint32_t DecodePiece(const std::wstring& text, std::size_t start, std::size_t length) {
    std::uint32_t value = 0;
    for (std::size_t i = start; i < start + length && i < text.size(); ++i) {
        const int digit = DigitValue(text[i]);
        if (digit < 0)
            break;
        value = (value << 4) | static_cast<std::uint32_t>(digit);
    }
    return value;
}

} // namespace

bool CGuid::IsNull() const {
    return *this == CGuid{};
}

std::wstring GuidToText(const CGuid& g) {
    return fmt::format(L"{:08X}-{:04X}-{:04X}-{:02X}{:02X}-{:02X}{:02X}{:02X}{:02X}{:02X}{:02X}",
                       g.Data1, g.Data2, g.Data3, g.Data4[0], g.Data4[1], g.Data4[2], g.Data4[3],
                       g.Data4[4], g.Data4[5], g.Data4[6], g.Data4[7]);
}

CGuid GuidFromText(const std::wstring& text) {
    std::wstring digits;
    for (wchar_t c : text) {
        if (c != L'-')
            digits += c;
    }
    CGuid guid;
    guid.Data1 = DecodePiece(digits, 0, 8);
    guid.Data2 = static_cast<std::uint16_t>(DecodePiece(digits, 8, 4));
    guid.Data3 = static_cast<std::uint16_t>(DecodePiece(digits, 12, 4));
    for (std::size_t i = 0; i < 8; ++i)
        guid.Data4[i] = static_cast<std::uint8_t>(DecodePiece(digits, 16 + 2 * i, 2));
    return guid;
}

CGuid NewGuid() {
    const auto bytes = platform::NewGuidBytes();
    CGuid guid;
    guid.Data1 = (std::uint32_t(bytes[0]) << 24) | (std::uint32_t(bytes[1]) << 16) |
                 (std::uint32_t(bytes[2]) << 8) | bytes[3];
    guid.Data2 = static_cast<std::uint16_t>((bytes[4] << 8) | bytes[5]);
    guid.Data3 = static_cast<std::uint16_t>((bytes[6] << 8) | bytes[7]);
    for (int i = 0; i < 8; ++i)
        guid.Data4[i] = bytes[8 + i];
    return guid;
}
