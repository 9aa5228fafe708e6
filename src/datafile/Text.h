// Small text helpers shared by the datafile engine and everything above it:
// the C library's number conversions, trimming, one-byte character checks and
// folder-path text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The native folder separator of folder paths handed around as text.
#ifdef _WIN32
inline constexpr wchar_t kPathSeparator = L'\\';
#else
inline constexpr wchar_t kPathSeparator = L'/';
#endif

// Leading blanks, a sign and digits, like _wtoi/_wtol; out-of-range values
// are clamped; anything else gives 0.
int WToI(std::wstring_view text);
std::int32_t WToL(std::wstring_view text);
double WToF(std::wstring_view text);

// Removes every character of `chars` from both ends.
std::wstring TrimChars(std::wstring_view text, std::wstring_view chars);
// Removes blanks and tabs from both ends.
std::wstring TrimBlanks(std::wstring_view text);

std::wstring ToUpper(std::wstring_view text);
std::wstring ToLower(std::wstring_view text);
bool EqualsNoCase(std::wstring_view a, std::wstring_view b);

// True when every character fits in one byte of a datafile (codes 0 to 255).
bool IsOneByteText(std::wstring_view text);

// A text as one TAB-separated field: a backslash, TABs and line breaks
// inside it written as \\, \t, \n and \r, so that a typed "\t" and a TAB
// differ.
std::wstring TsvField(std::wstring_view text);

// A folder path with a separator at its end: the only kind the path uses
// ("C:\\E" stays a Windows path on Linux), or the native one when it uses
// both or none. Empty stays empty.
std::wstring WithTrailingSeparator(std::wstring_view folder);
// The folder path without a trailing separator.
std::wstring WithoutTrailingSeparator(std::wstring_view folder);
