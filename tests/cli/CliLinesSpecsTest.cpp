// lines, specs and drawings run as a child process: the exact output, the
// messages of failures and the bytes left in the datafiles.
#include "support/CliFixture.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace cli_lines_specs_test {

using test::Joined;
using test::SRun;

using SSteps = std::vector<std::pair<std::vector<std::string>, std::string>>;

// Client 1 with standard 1 "Pipe"; standard 2 "Other" under no client.
class CliLinesSpecsTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"client", "create"}), "1\tClient 1\n");
        ASSERT_EQ(Ok({"standard", "create", "Pipe", "--client", "1"}), "1\tPipe\n");
        ASSERT_EQ(Ok({"standard", "create", "Other"}), "2\tOther\n");
    }
    fs::path Folder() const { return Projects() / "VX2D_PRJ_1 - Pipe"; }
};

TEST_F(CliLinesSpecsTest, LinesLifecycle) {
    RunSteps({
        {{"lines", "list", "1"}, ""},
        {{"lines", "create", "1"}, "1\tLine 1\n"},
        {{"lines", "create", "2"}, "2\tLine 2\n"},
        {{"lines", "create", "1"}, "3\tLine 3\n"},
        {{"lines", "rename", "1", "3", "Drain"}, ""},
        {{"lines", "delete", "1", "1"}, ""},
        {{"lines", "list", "1"}, "3\tlive\tDrain\n"},
        {{"lines", "list", "1", "--deleted"}, "3\tlive\tDrain\n1\tdeleted\tLine 1\n"},
        {{"lines", "recover", "1", "1"}, ""},
    });
    EXPECT_EQ(ReadBytes(Folder() / "Lines.ini"),
              "[LineList]\r\nVX2D_LINE_1 = Line 1\r\nVX2D_LINE_3 = Drain\r\n");

    // Lines brought in by hand: repair moves the shared counter past them.
    WriteBytes(Folder() / "Lines.ini", "[LineList]\r\nVX2D_LINE_90 = Main\r\n");
    EXPECT_EQ(Ok({"lines", "repair", "1"}), "");
    EXPECT_EQ(ReadBytes(Root() / "LineDatafile.ini"), "[General]\r\nLastLineId = 90\r\n");
}

TEST_F(CliLinesSpecsTest, SpecsRegisterCheckAndUncheck) {
    WriteBytes(Root() / "SpecDatafile.ini",
               "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_6 = Client A\r\n"
               "VX2D_SPEC_7 = Other own\r\n"
               "[ClientSpecs]\r\nVX2D_SPEC_6 = VX2D_CLIENT_1\r\n"
               "[ProjectSpecs]\r\nVX2D_SPEC_7 = VX2D_PRJ_2\r\n");
    RunSteps({
        {{"specs", "register"},
         "5\tcommon\tCS150\n6\tclient 1\tClient A\n7\tstandard 2\tOther own\n"},
        {{"specs", "check", "1", "6"}, ""},
        {{"specs", "check", "1", "5"}, ""},
        {{"specs", "list", "1"}, "5\tCS150\n6\tClient A\n"},
        {{"specs", "uncheck", "1", "6"}, ""},
    });
    EXPECT_EQ(ReadBytes(Folder() / "Specs.ini"), "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\n");
}

TEST_F(CliLinesSpecsTest, DrawingsListedByNameWithSizeAndLocalTime) {
    test::SetEnv("TZ", "CET-1"); // the child's local time: UTC + 1
    const fs::path drawings = m_io.Path() / "Drawings PID";
    const std::pair<const char*, std::size_t> files[] = {
        {"b.dwg", 1536}, {"A.DWG", 1023}, {"b.bak", 4096}, {"c.txt", 1}};
    for (const auto& [name, size] : files) {
        WriteBytes(drawings / name, std::string(size, 'x'));
        fs::last_write_time(drawings / name, std::chrono::file_clock::from_sys(
                                                 std::chrono::system_clock::from_time_t(
                                                     1680699789))); // 2023-04-05 13:03:09 UTC
    }
    ASSERT_EQ(Ok({"general", "set", "1", "drawings_pid", drawings.string()}), "");
    RunSteps({
        {{"drawings", "list", "1", "PID"},
         "A.DWG\t0 KB\t2023-04-05 14:03:09\nb.dwg\t1 KB\t2023-04-05 14:03:09\n"},
        {{"drawings", "list", "1", "2", "--backups"}, "b.bak\t4 KB\t2023-04-05 14:03:09\n"},
    });
    fs::remove_all(drawings);
    const SRun run = Run({"drawings", "list", "1", "P&ID"});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err,
              "Error listing the PID drawings of standard 'Pipe'.\n\nThe drawings folder '" +
                  drawings.string() + "' cannot be read.\n");
}

TEST_F(CliLinesSpecsTest, FailuresExitWithTheMessageAndChangeNothing) {
    ASSERT_EQ(Ok({"lines", "create", "1"}), "1\tLine 1\n");
    WriteBytes(Root() / "SpecDatafile.ini", "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\n");
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"lines", "delete", "1", "9"},
         "Error deleting line 9 of standard 'Pipe'.\n\nCan't find line\n"},
        {{"lines", "rename", "1", "1", "a/b"},
         "Error renaming line 1 of standard 'Pipe' to 'a/b'.\n\nInvalid name: a name cannot hold "
         "'/' (none of < > : \" / \\ | ? * may be used).\n"},
        {{"specs", "check", "1", "4"},
         "Error checking spec 4 for standard 'Pipe'.\n\nCan't find spec\n"},
        {{"drawings", "list", "1", "ORTHO"},
         "Error listing the ORTHO drawings of standard 'Pipe'.\n\n"
         "The standard has no drawings folder for ORTHO.\n"},
    };
    const std::string lines = ReadBytes(Folder() / "Lines.ini");
    const std::string counter = ReadBytes(Root() / "LineDatafile.ini");
    for (const auto& [args, err] : cases) {
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, err);
    }
    EXPECT_EQ(ReadBytes(Folder() / "Lines.ini"), lines);
    EXPECT_EQ(ReadBytes(Root() / "LineDatafile.ini"), counter);
}

TEST_F(CliLinesSpecsTest, SpecsAreMadeMovedCopiedAndDeletedWithTheirFolders) {
    RunSteps({
        {{"specs", "create", "CS150"}, "1\tCS150\n"},
        {{"specs", "create", "SS300", "--client", "Client 1"}, "2\tSS300\n"},
        {{"specs", "create", " Vents ", "--standard", "Pipe"}, "3\tVents\n"},
        {{"specs", "register"}, "1\tcommon\tCS150\n2\tclient 1\tSS300\n3\tstandard 1\tVents\n"},
        {{"specs", "check", "1", "1"}, ""},
        {{"specs", "check", "2", "1"}, ""},
        {{"specs", "check", "1", "3"}, ""},
        {{"specs", "folder", "3"},
         test::Tsv((Folder() / "VX2D_SPEC_3").string() + test::N("/")) + "\n"},
        {{"specs", "destinations"},
         "1\t1\t" + test::Tsv("Specs\\Common\\VX2D_SPEC_1\\") + "\n1\t3\t" +
             test::Tsv("Projects\\VX2D_PRJ_1 - Pipe\\VX2D_SPEC_3\\") + "\n2\t1\t" +
             test::Tsv("Specs\\Common\\VX2D_SPEC_1\\") + "\n"},
        {{"specs", "destinations", "2"},
         "2\t1\t" + test::Tsv("Specs\\Common\\VX2D_SPEC_1\\") + "\n"},
        {{"specs", "rename", "1", "CS150 Carbon"}, ""},
        {{"specs", "list", "2"}, "1\tCS150 Carbon\n"},
        // Other has no client: it would lose the pipe spec.
        {{"specs", "move", "1", "--client", "1", "--dry-run"}, "2\tOther\n"},
    });
    const SRun refused = Run({"specs", "move", "1", "--client", "1"});
    EXPECT_EQ(refused.code, 2);
    EXPECT_EQ(refused.err,
              "specs move unchecks the pipe spec for standards that cannot use it in its "
              "new place; confirm with --yes\n");
    WriteBytes(Root() / "Specs" / "Common" / "VX2D_SPEC_1" / "cs150.dwg", "drawing");
    RunSteps({
        {{"specs", "move", "1", "--client", "1", "--yes"}, ""},
        {{"specs", "list", "2"}, ""},
        {{"specs", "copy", "1", "CS150 Carbon", "--common"}, "4\tCS150 Carbon\n"},
        {{"specs", "delete", "3", "--dry-run"}, "1\tPipe\n"},
        {{"specs", "delete", "3", "--yes"}, ""},
        {{"specs", "list", "1"}, "1\tCS150 Carbon\n"},
    });
    EXPECT_EQ(ReadBytes(Root() / "Specs" / "Common" / "VX2D_SPEC_4" / "cs150.dwg"), "drawing");
    EXPECT_EQ(ReadBytes(Root() / "Specs" / "VX2D_CLIENT_1" / "VX2D_SPEC_1" / "cs150.dwg"),
              "drawing");
    EXPECT_FALSE(fs::exists(Folder() / "VX2D_SPEC_3"));
    EXPECT_EQ(ReadBytes(Root() / "SpecDatafile.ini"),
              "[ClientSpecs]\r\nVX2D_SPEC_1 = VX2D_CLIENT_1\r\nVX2D_SPEC_2 = VX2D_CLIENT_1\r\n\r\n"
              "[General]\r\nLastSpecId = 4\r\n\r\n"
              "[SpecList]\r\nVX2D_SPEC_1 = CS150 Carbon\r\nVX2D_SPEC_2 = SS300\r\n"
              "VX2D_SPEC_4 = CS150 Carbon\r\n");
    EXPECT_EQ(ReadBytes(Root() / "SpecDestinationDatafile.ini"),
              "[VX2D_PRJ_1]\r\nVX2D_SPEC_1 = Specs\\VX2D_CLIENT_1\\VX2D_SPEC_1\\\r\n");

    // A standard's copy and its export take its own specs along.
    ASSERT_EQ(Ok({"specs", "create", "Vents", "--standard", "1"}), "5\tVents\n");
    EXPECT_EQ(Ok({"standard", "copy", "1"}), "3\tCopy of Pipe\n");
    EXPECT_EQ(Ok({"specs", "register"}),
              "1\tclient 1\tCS150 Carbon\n2\tclient 1\tSS300\n4\tcommon\tCS150 Carbon\n"
              "5\tstandard 1\tVents\n6\tstandard 3\tVents\n");
}

TEST_F(CliLinesSpecsTest, RefusedSpecOperationsSayWhyAndChangeNothing) {
    ASSERT_EQ(Ok({"specs", "create", "CS150"}), "1\tCS150\n");
    ASSERT_EQ(Ok({"specs", "create", "SS300", "--client", "1"}), "2\tSS300\n");
    fs::create_directories(Root() / "Specs" / "Common" / "VX2D_SPEC_2");
    const std::string registered = ReadBytes(Root() / "SpecDatafile.ini");
    const std::vector<std::tuple<std::vector<std::string>, int, std::string>> cases = {
        {{"specs", "create", "a/b"},
         1,
         "Error creating spec 'a/b'.\n\nInvalid name: a name cannot hold '/' (none of < > : \" / "
         "\\ | ? * may be used).\n"},
        {{"specs", "create", "cs150", "--common"},
         1,
         "Error creating spec 'cs150'.\n\nSpec already exists\n"},
        {{"specs", "rename", "9", "X"}, 1, "Error renaming spec '9' to 'X'.\n\nCan't find spec\n"},
        {{"specs", "move", "2", "--common"},
         1,
         "Error moving spec 'SS300' to the common specs.\n\nError moving spec folder\n"},
        {{"specs", "create", "X", "--standard", "2", "--client", "1"}, 2, ""},
        {{"specs", "move", "1"},
         2,
         "Say where the pipe spec goes: --common, --client ID or --standard ID.\n"},
        {{"specs", "delete", "1"},
         2,
         "specs delete removes the pipe spec's folder for good; confirm with --yes\n"},
        {{"specs", "copy", "one", "X"}, 2, ""},
    };
    for (const auto& [args, code, err] : cases) {
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, code);
        EXPECT_EQ(run.out, "");
        if (!err.empty()) {
            EXPECT_EQ(run.err, err);
        }
    }
    EXPECT_EQ(ReadBytes(Root() / "SpecDatafile.ini"), registered);
    EXPECT_TRUE(fs::is_directory(Root() / "Specs" / "VX2D_CLIENT_1" / "VX2D_SPEC_2"));
}

TEST_F(CliLinesSpecsTest, OnAShareAFolderThatCannotBeMadeOrDeletedLeavesTheRegisterAlone) {
    SD_SKIP_UNLESS_POSIX("another user");
    ASSERT_EQ(Ok({"specs", "create", "CS150"}), "1\tCS150\n");
    const fs::path common = Root() / "Specs" / "Common";
    WriteBytes(common / "VX2D_SPEC_1" / "Kept" / "cs150.dwg", "drawing");
    // The drafter may write the datafiles, but neither make folders among the
    // common specs nor delete what the administrator keeps in a spec.
    for (const auto& folder : {m_userConfig.Path(), m_machineConfig.Path(), m_io.Path()})
        fs::permissions(folder, fs::perms::all);
    fs::permissions(Root(), fs::perms::all);
    for (const auto& entry : fs::recursive_directory_iterator(Root()))
        fs::permissions(entry.path(), fs::perms::all);
    const auto readOnly = fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_read |
                          fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec;
    fs::permissions(common / "VX2D_SPEC_1" / "Kept", readOnly);
    fs::permissions(common, readOnly);
    const std::string registered = ReadBytes(Root() / "SpecDatafile.ini");
    m_otherUser = true;

    const SRun create = Run({"specs", "create", "SS300"});
    if (create.code == kCannotDropPrivileges)
        GTEST_SKIP() << "the tests run as root and cannot become the user \"nobody\"";
    EXPECT_EQ(create.code, 1);
    EXPECT_EQ(create.err, "Error creating spec 'SS300'.\n\nCan't create spec folder\n");

    fs::permissions(common, fs::perms::all);
    const SRun remove = Run({"specs", "delete", "1", "--yes"});
    EXPECT_EQ(remove.code, 1);
    EXPECT_EQ(remove.err, "Error deleting spec 'CS150'.\n\nCan't delete spec folder\n");
    EXPECT_EQ(ReadBytes(Root() / "SpecDatafile.ini"), registered);
    EXPECT_EQ(ReadBytes(common / "VX2D_SPEC_1" / "Kept" / "cs150.dwg"), "drawing");
    EXPECT_FALSE(fs::exists(common / "VX2D_SPEC_1 (deleted)"));
    fs::permissions(common / "VX2D_SPEC_1" / "Kept", fs::perms::all);
}

} // namespace cli_lines_specs_test
