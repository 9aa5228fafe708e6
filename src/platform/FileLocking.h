// Exclusive locks on lock files that the operating system drops when their
// holder ends, on local disks and network shares alike: an open-file-
// description record lock (fcntl) on Linux, LockFileEx on Windows.
#pragma once

#include <cstdint>
#include <filesystem>
#include <system_error>

namespace platform {

enum class ELockAttempt {
    Locked,   // the lock is ours
    Busy,     // somebody else holds it: try again later
    ReadOnly, // the folder cannot be written by this user
    Missing,  // the folder does not exist or cannot be reached
    Failed,   // any other reason; `error` tells
};

struct SLockHandle {
    std::intptr_t value = -1;
    bool IsOpen() const { return value != -1; }
};

// Opens (creating if needed) `lockFile` and tries once to take its lock
// without waiting. On Locked, `handle` holds it until UnlockFile.
ELockAttempt TryLockFile(const std::filesystem::path& lockFile, SLockHandle& handle,
                         std::error_code& error);

// Whether someone holds the lock of `lockFile` now, asked without taking
// it (Windows takes a shared lock for a moment). A file that is gone is
// free; one that cannot be looked at counts as held.
bool IsLockFileHeld(const std::filesystem::path& lockFile);

// Removes the lock file and drops the lock. Someone waiting on the old file
// notices that it is gone and takes a new one.
void UnlockFile(const std::filesystem::path& lockFile, SLockHandle& handle);

} // namespace platform
