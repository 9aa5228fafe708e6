#include "datafile/Text.h"

#include <charconv>
#include <cstdlib>
#include <cwctype>
#include <limits>
#include <string>

namespace {

// The C library's conversions skip leading white space as isspace() sees it
// in the "C" locale; the user's locale must not widen that.
bool IsCSpace(wchar_t c) {
    return c == L' ' || c == L'\t' || c == L'\n' || c == L'\v' || c == L'\f' || c == L'\r';
}

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

std::size_t SkipSpace(std::wstring_view text) {
    std::size_t i = 0;
    while (i < text.size() && IsCSpace(text[i]))
        ++i;
    return i;
}

// Leading blanks, a sign and decimal digits, as _wtol reads them: anything
// after the digits is ignored, no digits give 0, and too many clamp.
long long ParseLongLong(std::wstring_view text) {
    std::size_t i = SkipSpace(text);
    bool negative = false;
    if (i < text.size() && (text[i] == L'+' || text[i] == L'-'))
        negative = text[i++] == L'-';
    constexpr long long kLimit = std::numeric_limits<long long>::max() / 10;
    long long value = 0;
    for (; i < text.size() && IsDigit(text[i]); ++i) {
        if (value > kLimit)
            return negative ? std::numeric_limits<long long>::min()
                            : std::numeric_limits<long long>::max();
        value = value * 10 + (text[i] - L'0');
    }
    return negative ? -value : value;
}

// Whether a decimal text that does not fit a double is below its range
// (rather than above): its first significant digit stands far right of the
// point, counting the exponent.
bool IsTiny(const std::string& number) {
    const auto e = number.find('e');
    const std::string mantissa = number.substr(0, e);
    const long long exponent = e == std::string::npos ? 0 : std::atoll(number.c_str() + e + 1);
    const auto point = mantissa.find('.');
    const auto first = mantissa.find_first_of("123456789");
    if (first == std::string::npos)
        return true;
    const long long integerEnd = point == std::string::npos
                                     ? static_cast<long long>(mantissa.size())
                                     : static_cast<long long>(point);
    long long position = integerEnd - static_cast<long long>(first);
    if (point != std::string::npos && first > point)
        position += 1;
    return position + exponent <= 0;
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
    // The longest prefix of the form [blanks][sign]digits[.digits][e[sign]digits],
    // with a point for the decimal mark whatever the user's locale says;
    // hexadecimal, "inf" and "nan" are not numbers in a datafile.
    std::size_t i = SkipSpace(text);
    const bool negative = i < text.size() && text[i] == L'-';
    if (i < text.size() && (text[i] == L'+' || text[i] == L'-'))
        ++i;
    std::string number;
    bool digits = false, point = false;
    for (; i < text.size() && (IsDigit(text[i]) || (text[i] == L'.' && !point)); ++i) {
        digits = digits || IsDigit(text[i]);
        point = point || text[i] == L'.';
        number += static_cast<char>(text[i]);
    }
    if (!digits)
        return 0.0;
    if (i + 1 < text.size() && (text[i] == L'e' || text[i] == L'E')) {
        std::size_t j = i + 1;
        std::string exponent = "e";
        if (text[j] == L'+' || text[j] == L'-')
            exponent += static_cast<char>(text[j++]);
        if (j < text.size() && IsDigit(text[j])) {
            for (; j < text.size() && IsDigit(text[j]); ++j)
                exponent += static_cast<char>(text[j]);
            number += exponent;
        }
    }
    double value = 0.0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value,
                                        std::chars_format::general);
    if (result.ec == std::errc::result_out_of_range) {
        // Too large gives infinity and too small zero, as the C library does;
        // from_chars leaves the value alone, so ask a tamer form which it is.
        const bool tiny = IsTiny(number);
        value = tiny ? 0.0 : std::numeric_limits<double>::infinity();
    } else if (result.ec != std::errc()) {
        value = 0.0;
    }
    return negative ? -value : value;
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

std::wstring TsvField(std::wstring_view text) {
    std::wstring out;
    for (const wchar_t c : text) {
        if (c == L'\\')
            out += L"\\\\";
        else if (c == L'\t')
            out += L"\\t";
        else if (c == L'\n')
            out += L"\\n";
        else if (c == L'\r')
            out += L"\\r";
        else
            out += c;
    }
    return out;
}

std::wstring WithTrailingSeparator(std::wstring_view folder) {
    std::wstring out(folder);
    if (out.empty() || out.back() == L'\\' || out.back() == L'/')
        return out;
    // A Windows path read on Linux (or the reverse) keeps its own kind; a
    // path with both kinds or none takes the native one.
    const bool backslash = out.find(L'\\') != std::wstring::npos;
    const bool slash = out.find(L'/') != std::wstring::npos;
    out += backslash == slash ? kPathSeparator : backslash ? L'\\' : L'/';
    return out;
}

std::wstring WithoutTrailingSeparator(std::wstring_view folder) {
    std::wstring out(folder);
    while (out.size() > 1 && (out.back() == kPathSeparator || out.back() == L'/'))
        out.pop_back();
    return out;
}
