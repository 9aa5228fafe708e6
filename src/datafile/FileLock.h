// Serialises read-modify-write of a shared datafile between processes and
// workstations: a lock file beside the datafile, created exclusively.
#pragma once

#include <chrono>
#include <string>

class CVX2D_FileLock {
public:
    CVX2D_FileLock() = default;
    ~CVX2D_FileLock();
    CVX2D_FileLock(const CVX2D_FileLock&) = delete;
    CVX2D_FileLock& operator=(const CVX2D_FileLock&) = delete;

    // Takes the lock of the datafile at `path` (the lock file is path +
    // ".lock"), waiting at most the configured time. A lock left by a dead
    // process on this host, or one older than the stale limit, is broken.
    // False when the lock could not be taken; also false when this process
    // already holds it, since a nested update would lose the outer one.
    bool Acquire(const std::wstring& path);
    void Release();
    bool IsHeld() const { return !m_strLockPath.empty(); }

    static std::wstring LockPathOf(const std::wstring& path);

    // How long Acquire waits, and the age after which a lock is taken as
    // abandoned whoever holds it.
    static void SetWaitLimit(std::chrono::milliseconds limit);
    static void SetStaleLimit(std::chrono::seconds limit);
    static std::chrono::milliseconds WaitLimit();

private:
    std::wstring m_strLockPath;
};
