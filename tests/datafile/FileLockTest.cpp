#include "datafile/FileLock.h"
#include "datafile/DatafileProblem.h"
#include "platform/System.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

namespace fs = std::filesystem;

namespace file_lock_test {

class FileLockTest : public ::testing::Test {
protected:
    void SetUp() override {
        CVX2D_FileLock::SetWaitLimit(std::chrono::milliseconds(300));
        ClearDatafileProblem();
    }
    void TearDown() override {
        CVX2D_FileLock::SetWaitLimit(std::chrono::milliseconds(20000));
        if (m_holder > 0) {
            test::KillProcess(m_holder);
            platform::WaitProcess(m_holder);
        }
    }

    // Another workstation's process that takes the lock and keeps it.
    void StartHolder() {
        const std::wstring ready = dir.File(L"holder-ready");
        m_holder = platform::StartProcess(SD_TEST_WORKER, {L"hold", file, ready});
        ASSERT_GT(m_holder, 0);
        for (int i = 0; i < 1000 && !fs::exists(test::P(ready)); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        ASSERT_TRUE(fs::exists(test::P(ready))) << "the holder never took the lock";
    }

    test::CTempDir dir;
    std::wstring file = dir.File(L"ProjectDatafile.ini");
    fs::path lockFile = test::P(CVX2D_FileLock::LockPathOf(file));
    std::int64_t m_holder = 0;
};

TEST_F(FileLockTest, OneHolderAtATimeAndNoLockFileAfterwards) {
    CVX2D_FileLock first;
    ASSERT_TRUE(first.Acquire(file));
    EXPECT_TRUE(CVX2D_FileLock::IsHeldByThisThread(file));
    CVX2D_FileLock nested;
    EXPECT_FALSE(nested.Acquire(file)) << "a nested update would lose the outer one";
    first.Release();
    EXPECT_FALSE(fs::exists(lockFile));
    EXPECT_TRUE(nested.Acquire(file));
}

TEST_F(FileLockTest, AnotherThreadWaitsForTheHolder) {
    CVX2D_FileLock::SetWaitLimit(std::chrono::seconds(10));
    CVX2D_FileLock first;
    ASSERT_TRUE(first.Acquire(file));
    bool second = false;
    std::thread waiter([&] {
        CVX2D_FileLock lock;
        second = lock.Acquire(file);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    first.Release();
    waiter.join();
    EXPECT_TRUE(second);
}

TEST_F(FileLockTest, ALockFileThatNobodyHoldsIsTakenAtOnce) {
    // Left behind by a workstation that crashed, whatever it wrote into it.
    test::WriteBytes(lockFile, "some-other-workstation\n4242\n");
    CVX2D_FileLock lock;
    EXPECT_TRUE(lock.Acquire(file));
    lock.Release();
    EXPECT_FALSE(fs::exists(lockFile));
}

TEST_F(FileLockTest, ALiveHolderKeepsItsLockHoweverOldAndSaysSo) {
    StartHolder();
    test::AgeFile(lockFile, std::chrono::hours(2));
    CVX2D_FileLock lock;
    EXPECT_FALSE(lock.Acquire(file)) << "a live holder's lock was broken";
    EXPECT_EQ(LastDatafileProblem().kind, EDatafileProblem::Busy);
    EXPECT_NE(DatafileProblemText().find(L"Another workstation is updating"), std::wstring::npos);
}

TEST_F(FileLockTest, TheLockDiesWithItsHolder) {
    StartHolder();
    test::KillProcess(m_holder);
    platform::WaitProcess(m_holder);
    m_holder = 0;
    CVX2D_FileLock lock;
    EXPECT_TRUE(lock.Acquire(file));
}

TEST_F(FileLockTest, AMissingFolderFailsAtOnceAndSaysSo) {
    CVX2D_FileLock::SetWaitLimit(std::chrono::minutes(10));
    CVX2D_FileLock lock;
    EXPECT_FALSE(lock.Acquire(dir.File(L"missing/ProjectDatafile.ini")));
    EXPECT_EQ(LastDatafileProblem().kind, EDatafileProblem::Missing);
}

} // namespace file_lock_test
