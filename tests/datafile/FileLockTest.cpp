#include "datafile/FileLock.h"
#include "platform/System.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <fmt/format.h>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

class FileLockTest : public ::testing::Test {
protected:
    void SetUp() override { CVX2D_FileLock::SetWaitLimit(std::chrono::milliseconds(300)); }
    void TearDown() override {
        CVX2D_FileLock::SetWaitLimit(std::chrono::milliseconds(20000));
        CVX2D_FileLock::SetStaleLimit(std::chrono::seconds(600));
    }

    // A lock file as another process would have left it.
    void PlantLock(const std::string& host, std::int64_t pid) {
        test::WriteBytes(test::P(CVX2D_FileLock::LockPathOf(file)),
                         fmt::format("{}\n{}\n", host, pid));
    }
    std::string ThisHost() const {
        const std::wstring host = platform::HostName();
        return std::string(host.begin(), host.end());
    }

    test::CTempDir dir;
    std::wstring file = dir.File(L"ProjectDatafile.ini");
};

TEST_F(FileLockTest, OneHolderAtATime) {
    CVX2D_FileLock first;
    ASSERT_TRUE(first.Acquire(file));
    CVX2D_FileLock second;
    EXPECT_FALSE(second.Acquire(file));
    first.Release();
    EXPECT_FALSE(fs::exists(test::P(CVX2D_FileLock::LockPathOf(file))));
    EXPECT_TRUE(second.Acquire(file));
}

TEST_F(FileLockTest, WaitsForALiveHolderThenGivesUp) {
    // Process 1 always lives.
    PlantLock(ThisHost(), 1);
    const auto start = std::chrono::steady_clock::now();
    CVX2D_FileLock lock;
    EXPECT_FALSE(lock.Acquire(file));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
    EXPECT_TRUE(fs::exists(test::P(CVX2D_FileLock::LockPathOf(file)))) << "a live lock was broken";
}

TEST_F(FileLockTest, BreaksALockLeftByADeadProcessOnThisHost) {
    const std::int64_t pid = platform::StartProcess("/bin/true", {});
    ASSERT_GT(pid, 0);
    platform::WaitProcess(pid);
    PlantLock(ThisHost(), pid);
    CVX2D_FileLock lock;
    EXPECT_TRUE(lock.Acquire(file));
}

TEST_F(FileLockTest, KeepsAnotherHostsLockUntilItIsStale) {
    PlantLock("some-other-workstation", 4242);
    CVX2D_FileLock lock;
    EXPECT_FALSE(lock.Acquire(file));
    const auto lockPath = test::P(CVX2D_FileLock::LockPathOf(file));
    fs::last_write_time(lockPath, fs::file_time_type::clock::now() - std::chrono::minutes(11));
    EXPECT_TRUE(lock.Acquire(file));
}

TEST_F(FileLockTest, FailsAtOnceWhenTheFolderIsMissing) {
    CVX2D_FileLock lock;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(lock.Acquire(dir.File(L"missing/ProjectDatafile.ini")));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
}

} // namespace
