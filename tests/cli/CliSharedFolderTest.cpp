// The command line on a datafiles folder as offices share it: read-only for
// drafters, on a disk that fills up, on a share that is away.
#include "support/CliFixture.h"

#include <gtest/gtest.h>

namespace cli_shared_folder_test {

namespace fs = std::filesystem;
using test::SRun;

class CliSharedFolderTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"standard", "create", "Pipe"}), "1\tPipe\n");
        ASSERT_EQ(Ok({"standard", "create", "Plant", "--units", "imperial"}), "2\tPlant\n");
        Ok({"client", "create"});
        // A settings file that the next load migrates (and would save).
        test::WriteBytes(Projects() / "VX2D_PRJ_1 - Pipe" / "ISOMETRIC.ini",
                         "[Settings]\r\nVariable 185 = -2\r\n");
        // The drafter's own settings folders, and the files a run writes.
        for (const auto& folder : {m_userConfig.Path(), m_machineConfig.Path(), m_io.Path()})
            fs::permissions(folder, fs::perms::all);
    }
    void TearDown() override { SetWritable(Root(), true); }

    // Each change fails with exit code 1 and a message holding `why`.
    void ExpectEachFails(const std::vector<std::vector<std::string>>& changes, const char* why) {
        for (const auto& change : changes) {
            const SRun run = Run(change);
            EXPECT_EQ(run.code, 1) << test::Joined(change);
            EXPECT_NE(run.err.find(why), std::string::npos) << test::Joined(change) << "\n"
                                                            << run.err;
        }
    }

    // Every file and folder below `root`, and the bytes of the datafiles.
    std::string Snapshot() const {
        std::string text;
        for (const auto& entry : fs::recursive_directory_iterator(Root())) {
            text += fs::relative(entry.path(), Root()).string() + "\n";
            if (entry.is_regular_file() && entry.path().extension() == ".ini")
                text += test::ReadBytes(entry.path());
        }
        return text;
    }

    // Takes the write permission away from everyone (and gives it back).
    static void SetWritable(const fs::path& root, bool writable) {
        const auto write =
            fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
        const auto options = writable ? fs::perm_options::add : fs::perm_options::remove;
        std::error_code ec;
        fs::permissions(root, write, options, ec);
        for (const auto& entry : fs::recursive_directory_iterator(root, ec))
            fs::permissions(entry.path(), write, options, ec);
    }
};

TEST_F(CliSharedFolderTest, AReadOnlyShareAnswersReadsAndRefusesChangesAtOnceSayingWhy) {
    SD_SKIP_UNLESS_POSIX("another user");
    SetWritable(Root(), false);
    m_otherUser = true;
    if (Run({"standard", "list"}).code == kCannotDropPrivileges)
        GTEST_SKIP() << "the tests run as root and cannot become the user \"nobody\"";
    const std::string before = Snapshot();

    // Reading takes no lock: it works and changes nothing.
    for (const std::vector<std::string>& reading : {std::vector<std::string>{"standard", "list"},
                                                    {"client", "list"},
                                                    {"settings", "show", "1", "ISOMETRIC"},
                                                    {"general", "show", "1"},
                                                    {"compare", "1", "2"},
                                                    {"report", "1"},
                                                    {"registry", "check"}}) {
        const SRun run = Run(reading);
        EXPECT_EQ(run.code, 0) << test::Joined(reading) << "\n" << run.err;
    }
    EXPECT_NE(Ok({"settings", "show", "1", "ISOMETRIC"}).find("185\t"), std::string::npos);

    // A change fails at once, without waiting out the lock, and says why.
    ExpectEachFails({{"standard", "rename", "1", "Tube"},
                     {"standard", "delete", "2"},
                     {"standard", "create", "New"},
                     {"client", "create"},
                     {"client", "rename", "1", "Acme"},
                     {"settings", "set", "1", "PID", "145", "3.5"}},
                    "read-only for this user");
    EXPECT_EQ(Snapshot(), before);
}

TEST_F(CliSharedFolderTest, AFileThisUserMayNotWriteIsNotReplacedThroughItsFolder) {
    SD_SKIP_UNLESS_POSIX("another user");
    const fs::path folder = Projects() / "VX2D_PRJ_1 - Pipe";
    const fs::path file = folder / "PID.ini";
    test::WriteBytes(file, "[Settings]\r\nVariable 145 = 1.000000\r\n");
    // The folder lets anybody make files; the administrator kept this one.
    fs::permissions(folder, fs::perms::all);
    fs::permissions(file, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    m_otherUser = true;
    const SRun run = Run({"settings", "set", "1", "PID", "145", "3.5"});
    if (run.code == kCannotDropPrivileges)
        GTEST_SKIP() << "the tests run as root and cannot become the user \"nobody\"";
    EXPECT_EQ(run.code, 1);
    EXPECT_NE(run.err.find("This user may not change"), std::string::npos) << run.err;
    EXPECT_EQ(test::ReadBytes(file), "[Settings]\r\nVariable 145 = 1.000000\r\n");
}

TEST_F(CliSharedFolderTest, OnAFullDiskAChangeFailsAndLeavesTheFolderInStep) {
    SD_SKIP_UNLESS_POSIX("a full disk");
    const std::string before = Snapshot();
    m_fullDisk = true;
    ExpectEachFails({{"standard", "rename", "1", "Tube"},
                     {"standard", "delete", "2"},
                     {"standard", "purge", "2", "--force", "--yes"},
                     {"client", "rename", "1", "Acme"}},
                    "could not be written");
    EXPECT_EQ(Snapshot(), before);
}

TEST_F(CliSharedFolderTest, AMissingDatafilesFolderIsReportedAndOnlyTheInstallationMakesOne) {
    const fs::path away = Root() / "share-away";
    for (const std::vector<std::string>& verb :
         {std::vector<std::string>{"standard", "create", "Pipe"},
          {"client", "create"},
          {"standard", "list"},
          {"registry", "check"}}) {
        std::vector<std::string> args = {"--datafiles", away.string()};
        args.insert(args.end(), verb.begin(), verb.end());
        const SRun run = Run(args, false);
        EXPECT_EQ(run.code, 1) << test::Joined(verb);
        EXPECT_NE(run.err.find("does not exist or cannot be reached"), std::string::npos)
            << run.err;
        EXPECT_FALSE(fs::exists(away)) << test::Joined(verb) << " made the folder";
    }
    const SRun install = Run({"--datafiles", away.string(), "install"}, false);
    EXPECT_EQ(install.code, 0) << install.err;
    EXPECT_TRUE(fs::exists(away / "ProjectDatafile.ini"));
}

} // namespace cli_shared_folder_test
