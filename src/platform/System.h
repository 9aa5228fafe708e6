// Operating-system primitives used by the core: processes, host and user
// names, GUID generation, path limits and durable file writes.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace platform {

std::int64_t CurrentProcessId();

// The name of this machine on the network, as the lock files record it.
std::wstring HostName();

// True unless the process with this id on this host is known to be gone.
bool IsProcessAlive(std::int64_t pid);

// The login name of the effective user; empty when it cannot be found.
std::wstring UserName();

// Sixteen random bytes in the RFC 4122 layout (big-endian fields).
std::array<std::uint8_t, 16> NewGuidBytes();

// Longest file name (one path component) and longest whole path, in the
// units of the file system's own encoding.
std::size_t MaxNameLength();
std::size_t MaxPathLength();

// Length of a path component or a whole path in the file system's units.
std::size_t NativeLength(const std::wstring& text);

// fopen for any path; the mode is the C library's ("rb", "wb", "wbx").
std::FILE* OpenFile(const std::filesystem::path& path, const char* mode);

// What tells one state of a file on disk from another: which file the path
// names (an atomic save makes a new one), its size and its times of change.
struct SFileStamp {
    bool exists = false;
    std::uint64_t volume = 0;
    std::uint64_t file = 0;
    std::uint64_t size = 0;
    std::int64_t modified = 0; // nanoseconds, or the system's own unit
    std::int64_t changed = 0;
    friend bool operator==(const SFileStamp&, const SFileStamp&) = default;
};
// The stamp of the file a path names now; `exists` false when there is none
// or it cannot be looked at.
SFileStamp FileStamp(const std::filesystem::path& path);

// Whether this user may write the existing file at `path` (its mode and
// owner, or its read-only attribute on Windows).
bool CanWriteFile(const std::filesystem::path& path);

// Gives `copy` the permission bits of `original` and, where this user may
// change them, its group and owner: a file replaced by a new one keeps who
// may read and write it.
void CopyFileMode(const std::filesystem::path& original, const std::filesystem::path& copy);

// Flushes the C library's buffer and asks the system to put the data on disk,
// then closes the file. False when any step failed.
bool FlushAndClose(std::FILE* file);

// The value of an environment variable, empty when unset.
std::wstring GetEnv(const char* name);

// Starts a program with arguments (no shell) and returns its process id, or
// -1 when it cannot be started.
std::int64_t StartProcess(const std::filesystem::path& program,
                          const std::vector<std::wstring>& args);

// Waits for a process started by StartProcess; returns its exit code, or -1.
int WaitProcess(std::int64_t pid);

} // namespace platform

namespace platform {
// Whether standard input (0), output (1) or error (2) is a terminal.
bool IsTerminal(int stream);
} // namespace platform

namespace platform {
// The full path of the running program.
std::wstring ExecutablePath();
} // namespace platform

namespace platform {
// Opens a file, folder or web address with the desktop's default program
// (xdg-open; the shell's "open" on Windows), without waiting for it.
bool ShellOpen(const std::wstring& target);

// What ShellOpen needs when it fails, for the user: on Linux xdg-open and a
// program chosen for the kind of file; on Windows a program associated with it.
std::wstring ShellOpenAdvice();

// The desktop's program that shows folders, as a menu names it: "Windows
// Explorer", "the file manager".
std::wstring FileManagerName();
} // namespace platform
