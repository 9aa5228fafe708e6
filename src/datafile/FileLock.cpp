#include "datafile/FileLock.h"

#include "platform/System.h"
#include "platform/Utf8.h"

#include <atomic>
#include <filesystem>
#include <fmt/format.h>
#include <mutex>
#include <random>
#include <set>
#include <thread>

namespace fs = std::filesystem;

namespace {

std::atomic<long long> g_waitLimitMs{20000};
std::atomic<long long> g_staleLimitS{600};

std::mutex g_heldMutex;
std::set<std::wstring>& HeldLocks() {
    static std::set<std::wstring> held;
    return held;
}

struct SOwner {
    std::string host;
    std::int64_t pid = 0;
};

bool ReadOwner(const fs::path& lockPath, SOwner& owner) {
    std::FILE* file = platform::OpenFile(lockPath, "rb");
    if (!file)
        return false;
    char buffer[512] = {};
    const std::size_t size = std::fread(buffer, 1, sizeof buffer - 1, file);
    std::fclose(file);
    const std::string text(buffer, size);
    const auto line1 = text.find('\n');
    if (line1 == std::string::npos)
        return false;
    owner.host = text.substr(0, line1);
    owner.pid = std::atoll(text.c_str() + line1 + 1);
    return true;
}

// A lock is stale when its owner is a dead process of this host, or when it
// has been held for longer than anybody reasonably works on one datafile.
bool IsStale(const fs::path& lockPath) {
    std::error_code ec;
    const auto written = fs::last_write_time(lockPath, ec);
    if (ec)
        return false;
    const auto age = fs::file_time_type::clock::now() - written;
    if (age > std::chrono::seconds(g_staleLimitS.load()))
        return true;
    SOwner owner;
    if (!ReadOwner(lockPath, owner))
        // A lock file is written in one go right after it is created; one
        // that stays unreadable for a few seconds was left half-made.
        return age > std::chrono::seconds(5);
    return owner.host == platform::ToUtf8(platform::HostName()) &&
           !platform::IsProcessAlive(owner.pid);
}

void BreakLock(const fs::path& lockPath) {
    // Move the stale lock aside first so that two processes breaking it at
    // the same time cannot remove a fresh lock made in between.
    std::error_code ec;
    fs::path aside = lockPath;
    aside += fmt::format(".stale.{}", platform::CurrentProcessId());
    fs::rename(lockPath, aside, ec);
    if (!ec)
        fs::remove(aside, ec);
}

bool TryCreate(const fs::path& lockPath) {
    std::FILE* file = platform::OpenFile(lockPath, "wbx");
    if (!file)
        return false;
    const std::string owner = fmt::format("{}\n{}\n", platform::ToUtf8(platform::HostName()),
                                          platform::CurrentProcessId());
    std::fwrite(owner.data(), 1, owner.size(), file);
    platform::FlushAndClose(file);
    return true;
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

void CVX2D_FileLock::SetStaleLimit(std::chrono::seconds limit) {
    g_staleLimitS = limit.count();
}

std::chrono::milliseconds CVX2D_FileLock::WaitLimit() {
    return std::chrono::milliseconds(g_waitLimitMs.load());
}

bool CVX2D_FileLock::Acquire(const std::wstring& path) {
    if (IsHeld() || path.empty())
        return false;
    const std::wstring lockText = LockPathOf(path);
    {
        std::lock_guard guard(g_heldMutex);
        if (!HeldLocks().insert(lockText).second)
            return false;
    }
    const fs::path lockPath = platform::ToPath(lockText);
    const auto deadline = std::chrono::steady_clock::now() + WaitLimit();
    std::minstd_rand jitter(static_cast<unsigned>(platform::CurrentProcessId()));
    for (;;) {
        if (TryCreate(lockPath)) {
            m_strLockPath = lockText;
            return true;
        }
        std::error_code ec;
        if (!fs::exists(lockPath, ec)) {
            // Creation failed for another reason than a present lock (no
            // folder, no permission): waiting will not help.
            if (!fs::exists(lockPath.parent_path(), ec))
                break;
        } else if (IsStale(lockPath)) {
            BreakLock(lockPath);
            continue;
        }
        if (std::chrono::steady_clock::now() >= deadline)
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(5 + jitter() % 20));
    }
    std::lock_guard guard(g_heldMutex);
    HeldLocks().erase(lockText);
    return false;
}

void CVX2D_FileLock::Release() {
    if (!IsHeld())
        return;
    std::error_code ec;
    fs::remove(platform::ToPath(m_strLockPath), ec);
    std::lock_guard guard(g_heldMutex);
    HeldLocks().erase(m_strLockPath);
    m_strLockPath.clear();
}
