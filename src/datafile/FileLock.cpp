#include "datafile/FileLock.h"

#include "datafile/DatafileProblem.h"
#include "platform/FileLocking.h"
#include "platform/System.h"
#include "platform/Utf8.h"

#include <atomic>
#include <map>
#include <mutex>
#include <random>
#include <thread>

namespace {

std::atomic<long long> g_waitLimitMs{20000};

// The locks this process holds, by lock file, with the thread holding each.
// The operating system's lock already keeps threads apart where the kernel
// has open-file-description locks; this also covers the others and tells a
// nested update from a wait.
std::mutex g_heldMutex;
std::map<std::wstring, std::thread::id>& HeldLocks() {
    static std::map<std::wstring, std::thread::id> held;
    return held;
}

enum class EClaim { Claimed, ThisThread, OtherThread };

EClaim Claim(const std::wstring& lockPath) {
    std::lock_guard guard(g_heldMutex);
    const auto [it, inserted] = HeldLocks().try_emplace(lockPath, std::this_thread::get_id());
    if (inserted)
        return EClaim::Claimed;
    return it->second == std::this_thread::get_id() ? EClaim::ThisThread : EClaim::OtherThread;
}

void Unclaim(const std::wstring& lockPath) {
    std::lock_guard guard(g_heldMutex);
    HeldLocks().erase(lockPath);
}

} // namespace

CVX2D_FileLock::~CVX2D_FileLock() {
    Release();
}

std::wstring CVX2D_FileLock::LockPathOf(const std::wstring& path) {
    return path + L".lock";
}

void CVX2D_FileLock::SetWaitLimit(std::chrono::milliseconds limit) {
    g_waitLimitMs = limit.count();
}

std::chrono::milliseconds CVX2D_FileLock::WaitLimit() {
    return std::chrono::milliseconds(g_waitLimitMs.load());
}

bool CVX2D_FileLock::IsHeldByThisThread(const std::wstring& path) {
    std::lock_guard guard(g_heldMutex);
    const auto it = HeldLocks().find(LockPathOf(path));
    return it != HeldLocks().end() && it->second == std::this_thread::get_id();
}

bool CVX2D_FileLock::IsHeldNow(const std::wstring& path) {
    {
        std::lock_guard guard(g_heldMutex);
        if (HeldLocks().contains(LockPathOf(path)))
            return true;
    }
    return platform::IsLockFileHeld(platform::ToPath(LockPathOf(path)));
}

bool CVX2D_FileLock::Acquire(const std::wstring& path) {
    return Take(path, true);
}

bool CVX2D_FileLock::TryAcquire(const std::wstring& path) {
    return Take(path, false);
}

bool CVX2D_FileLock::Take(const std::wstring& path, bool mayWait) {
    if (IsHeld() || path.empty())
        return false;
    const std::wstring lockText = LockPathOf(path);
    const auto lockPath = platform::ToPath(lockText);
    const auto deadline = std::chrono::steady_clock::now() + WaitLimit();
    std::minstd_rand jitter(static_cast<unsigned>(platform::CurrentProcessId()));
    const auto wait = [&] {
        if (!mayWait || std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2 + jitter() % 20));
        return true;
    };
    for (;;) {
        const EClaim claim = Claim(lockText);
        if (claim == EClaim::ThisThread)
            return false;
        if (claim == EClaim::OtherThread) {
            if (wait())
                continue;
            NoteDatafileProblem(EDatafileProblem::Busy, path);
            return false;
        }
        platform::SLockHandle handle;
        std::error_code error;
        const platform::ELockAttempt attempt = platform::TryLockFile(lockPath, handle, error);
        if (attempt == platform::ELockAttempt::Locked) {
            m_strLockPath = lockText;
            m_handle = handle.value;
            return true;
        }
        Unclaim(lockText);
        switch (attempt) {
        case platform::ELockAttempt::Busy:
            if (wait())
                continue;
            NoteDatafileProblem(EDatafileProblem::Busy, path);
            return false;
        case platform::ELockAttempt::ReadOnly:
            NoteDatafileProblem(EDatafileProblem::ReadOnly, path);
            return false;
        case platform::ELockAttempt::Missing:
            NoteDatafileProblem(EDatafileProblem::Missing, path);
            return false;
        default:
            NoteDatafileProblem(EDatafileProblem::WriteFailed, path,
                                platform::FromUtf8(error.message()));
            return false;
        }
    }
}

void CVX2D_FileLock::Release() {
    if (!IsHeld())
        return;
    platform::SLockHandle handle{m_handle};
    platform::UnlockFile(platform::ToPath(m_strLockPath), handle);
    Unclaim(m_strLockPath);
    m_handle = -1;
    m_strLockPath.clear();
}
