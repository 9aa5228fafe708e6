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

// Whether two paths name the same existing file or folder (on a case-
// insensitive file system, also when they differ in letter case only).
bool SameFile(const std::filesystem::path& first, const std::filesystem::path& second);

// Renames a file or folder. A new name that differs only in letter case
// goes through a name of its own first: not every system changes the case
// in one step (Wine, some SMB servers leave the name as it was).
void Rename(const std::filesystem::path& from, const std::filesystem::path& to,
            std::error_code& error);

// Puts the file `from` in the place of `to` in one step. Windows refuses
// to replace a file while another process reads it: there this waits for
// the reader (who holds it only while reading) up to two seconds.
void MoveIntoPlace(const std::filesystem::path& from, const std::filesystem::path& to,
                   std::error_code& error);

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

// Starts a program with arguments (no shell), in `workingFolder` unless that
// is empty, and returns its process id, or -1 when it cannot be started.
// Each argument reaches the program as one, blanks and quotes included.
// WaitProcess must be called for it.
std::int64_t StartProcess(const std::filesystem::path& program,
                          const std::vector<std::wstring>& args,
                          const std::filesystem::path& workingFolder = {});

// Waits for a process started by StartProcess; returns its exit code, or -1.
int WaitProcess(std::int64_t pid);

// Starts a program that runs on its own, never waited for, in `workingFolder`
// unless that is empty. `parameters` is one line as a user types it after
// the program's name: on Windows the program is handed it as written; here it
// is split into words the way a Windows program's start-up code splits it
// (blanks separate, double quotes group and are dropped). False when the
// program cannot be started.
bool LaunchProgram(const std::filesystem::path& program, const std::wstring& parameters,
                   const std::filesystem::path& workingFolder = {});

// One argument written for a Windows command line, quoted where needed so
// that the program's start-up code reads it back whole.
std::wstring QuotedArgument(const std::wstring& arg);

// `parameters` split as LaunchProgram splits them.
std::vector<std::wstring> SplitParameters(const std::wstring& parameters);

// The program's arguments in UTF-8, argv[0] first. Windows hands `argv` over
// in the ANSI code page, which cannot hold every name: there they are read
// again from the wide command line.
std::vector<std::string> CommandLineArguments(int argc, char** argv);

// Standard input, output and error pass bytes unchanged (no CR added before
// LF on Windows), as on Linux.
void UseBinaryStandardStreams();

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
