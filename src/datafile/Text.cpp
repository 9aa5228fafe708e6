#include "datafile/Text.h"

#include <cerrno>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <limits>

namespace {

long long ParseLongLong(std::wstring_view text) {
    const std::wstring buffer(text);
    errno = 0;
    return std::wcstoll(buffer.c_str(), nullptr, 10);
}

template <typename T> T Clamp(long long value) {
    if (value > std::numeric_limits<T>::max())
        return std::numeric_limits<T>::max();
    if (value < std::numeric_limits<T>::min())
        return std::numeric_limits<T>::min();
    return static_cast<T>(value);
}

wchar_t FoldUpper(wchar_t c) {
    if (c >= L'a' && c <= L'z')
        return static_cast<wchar_t>(c - 32);
    // Latin-1 small letters (except the German sharp s and y with diaeresis).
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7)
        return static_cast<wchar_t>(c - 32);
    if (c > 0xFF)
        return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(c)));
    return c;
}

wchar_t FoldLower(wchar_t c) {
    if (c >= L'A' && c <= L'Z')
        return static_cast<wchar_t>(c + 32);
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7)
        return static_cast<wchar_t>(c + 32);
    if (c > 0xFF)
        return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
    return c;
}

} // namespace

int WToI(std::wstring_view text) {
    return Clamp<int>(ParseLongLong(text));
}

std::int32_t WToL(std::wstring_view text) {
    return Clamp<std::int32_t>(ParseLongLong(text));
}

double WToF(std::wstring_view text) {
    const std::wstring buffer(text);
    return std::wcstod(buffer.c_str(), nullptr);
}

std::wstring TrimChars(std::wstring_view text, std::wstring_view chars) {
    const auto first = text.find_first_not_of(chars);
    if (first == std::wstring_view::npos)
        return {};
    const auto last = text.find_last_not_of(chars);
    return std::wstring(text.substr(first, last - first + 1));
}

std::wstring TrimBlanks(std::wstring_view text) {
    return TrimChars(text, L" \t");
}

std::wstring ToUpper(std::wstring_view text) {
    std::wstring out(text);
    for (auto& c : out)
        c = FoldUpper(c);
    return out;
}

std::wstring ToLower(std::wstring_view text) {
    std::wstring out(text);
    for (auto& c : out)
        c = FoldLower(c);
    return out;
}

bool EqualsNoCase(std::wstring_view a, std::wstring_view b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (FoldUpper(a[i]) != FoldUpper(b[i]))
            return false;
    }
    return true;
}

bool IsOneByteText(std::wstring_view text) {
    for (wchar_t c : text) {
        if (static_cast<std::uint32_t>(c) > 0xFF)
            return false;
    }
    return true;
}

std::wstring WithTrailingSeparator(std::wstring_view folder) {
    std::wstring out(folder);
    if (!out.empty() && out.back() != kPathSeparator && out.back() != L'/')
        out += kPathSeparator;
    return out;
}

std::wstring WithoutTrailingSeparator(std::wstring_view folder) {
    std::wstring out(folder);
    while (out.size() > 1 && (out.back() == kPathSeparator || out.back() == L'/'))
        out.pop_back();
    return out;
}
