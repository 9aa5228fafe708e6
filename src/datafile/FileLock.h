// Serialises read-modify-write of a shared datafile between processes and
// workstations: an operating-system lock on a lock file beside the datafile,
// which dies with its holder, so there is never a stale lock to judge.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

class CVX2D_FileLock {
public:
    CVX2D_FileLock() = default;
    ~CVX2D_FileLock();
    CVX2D_FileLock(const CVX2D_FileLock&) = delete;
    CVX2D_FileLock& operator=(const CVX2D_FileLock&) = delete;

    // Takes the lock of the datafile at `path` (the lock file is path +
    // ".lock"). While another process or thread holds it, waits at most the
    // wait limit. Gives up at once when the lock file cannot be made because
    // the folder is read-only, forbidden or missing, and when this thread
    // already holds the lock (a nested update would lose the outer one).
    // A failure is noted as the thread's datafile problem.
    bool Acquire(const std::wstring& path);
    // The same without waiting: false at once while anyone holds it.
    bool TryAcquire(const std::wstring& path);
    void Release();
    bool IsHeld() const { return m_handle != -1; }

    // True when this thread holds the lock of `path` through any object.
    static bool IsHeldByThisThread(const std::wstring& path);

    static std::wstring LockPathOf(const std::wstring& path);

    // Whether any process or thread holds the lock of `path` now, asked
    // without taking it.
    static bool IsHeldNow(const std::wstring& path);

    // How long Acquire waits for another holder.
    static void SetWaitLimit(std::chrono::milliseconds limit);
    static std::chrono::milliseconds WaitLimit();

private:
    bool Take(const std::wstring& path, bool wait);

    std::wstring m_strLockPath;
    std::intptr_t m_handle = -1;
};
