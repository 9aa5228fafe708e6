// Conversions between the program's wide text and UTF-8, the encoding of
// command lines, terminals and file names on Linux.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace platform {

std::string ToUtf8(std::wstring_view text);

// Invalid sequences are taken byte by byte as Latin-1 characters, so nothing
// typed is silently dropped.
std::wstring FromUtf8(std::string_view text);

// A path object for text held in memory, and back. Never depends on the
// process locale.
std::filesystem::path ToPath(const std::wstring& text);
std::wstring FromPath(const std::filesystem::path& path);

} // namespace platform
