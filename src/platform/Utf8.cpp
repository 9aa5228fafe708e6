#include "platform/Utf8.h"

namespace platform {

std::string ToUtf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = static_cast<char32_t>(text[i]);
        if constexpr (sizeof(wchar_t) == 2) {
            if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size()) {
                const char32_t low = static_cast<char32_t>(text[i + 1]);
                if (low >= 0xDC00 && low < 0xE000) {
                    c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                    ++i;
                }
            }
        }
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

std::wstring FromUtf8(std::string_view text) {
    std::wstring out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        const auto b0 = static_cast<unsigned char>(text[i]);
        int extra = 0;
        char32_t c = 0;
        if (b0 < 0x80) {
            c = b0;
        } else if ((b0 & 0xE0) == 0xC0 && b0 >= 0xC2) {
            extra = 1;
            c = b0 & 0x1F;
        } else if ((b0 & 0xF0) == 0xE0) {
            extra = 2;
            c = b0 & 0x0F;
        } else if ((b0 & 0xF8) == 0xF0 && b0 <= 0xF4) {
            extra = 3;
            c = b0 & 0x07;
        } else {
            extra = -1;
        }
        bool valid = extra >= 0 && i + static_cast<std::size_t>(extra) < text.size();
        for (int k = 1; valid && k <= extra; ++k) {
            const auto bk = static_cast<unsigned char>(text[i + k]);
            if ((bk & 0xC0) != 0x80)
                valid = false;
            else
                c = (c << 6) | (bk & 0x3F);
        }
        if (valid && ((extra == 2 && c < 0x800) || (extra == 3 && (c < 0x10000 || c > 0x10FFFF)) ||
                      (c >= 0xD800 && c < 0xE000)))
            valid = false;
        if (!valid) {
            out += static_cast<wchar_t>(b0);
            ++i;
            continue;
        }
        if constexpr (sizeof(wchar_t) == 2) {
            if (c >= 0x10000) {
                c -= 0x10000;
                out += static_cast<wchar_t>(0xD800 + (c >> 10));
                out += static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
                i += extra + 1;
                continue;
            }
        }
        out += static_cast<wchar_t>(c);
        i += extra + 1;
    }
    return out;
}

std::filesystem::path ToPath(const std::wstring& text) {
#ifdef _WIN32
    return std::filesystem::path(text);
#else
    const std::string bytes = ToUtf8(text);
    return std::filesystem::path(bytes);
#endif
}

std::wstring FromPath(const std::filesystem::path& path) {
#ifdef _WIN32
    return path.wstring();
#else
    return FromUtf8(path.native());
#endif
}

} // namespace platform
