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

namespace {

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

} // namespace
