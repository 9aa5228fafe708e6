// What the command line prints: JSON of a stable shape (docs/json.md), TAB-
// separated lines whose escapes can be undone, a table for a person at a
// terminal, --quiet, and a failed write to standard output.
#include "support/CliFixture.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#ifndef _WIN32
#include <sys/wait.h>
#endif

namespace fs = std::filesystem;

namespace cli_output_test {

using nlohmann::json;
using test::Joined;
using test::SRun;
using test::WriteBytes;

// Client 1 holding standards 1 "Pipe" and 2 "Elec".
class CliOutputTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"client", "create"}), "1\tClient 1\n");
        ASSERT_EQ(Ok({"standard", "create", "Pipe", "--client", "1"}), "1\tPipe\n");
        ASSERT_EQ(Ok({"standard", "create", "Elec", "--client", "1"}), "2\tElec\n");
    }
    json Json(std::vector<std::string> args) const {
        args.insert(args.begin(), "--json");
        const std::string out = Ok(args);
        EXPECT_TRUE(json::accept(out)) << out;
        return json::accept(out) ? json::parse(out) : json();
    }
};

TEST_F(CliOutputTest, JsonGivesNumbersBooleansAndListsTheirOwnTypes) {
    // A value, by JSON pointer, of each verb's document.
    const std::vector<std::tuple<std::vector<std::string>, std::string, json>> cases = {
        {{"client", "list"}, "/0/standards", json::parse("[1,2]")},
        {{"client", "list"}, "/0/id", 1},
        {{"general", "show", "1"}, "/local_line_ini", false},
        {{"general", "show", "1"}, "/working_units", 0},
        {{"settings", "show", "1", "ORTHO", "--section", "4"}, "/0/clean", true},
        {{"settings", "show", "1", "ORTHO", "--section", "4"}, "/0/section_id", 4},
        // Standards by name under their client, as the desktop shows them.
        {{"navigator", "tree"}, "/0/text", "Client 1"},
        {{"navigator", "tree"}, "/0/children/0/text", "Elec"},
        {{"navigator", "tree"}, "/0/children/0/id", 2},
        {{"navigator", "tree"}, "/0/children/1/text", "Pipe"},
        {{"navigator", "tree"}, "/0/children/1/children", json::array()},
    };
    for (const auto& [args, pointer, expected] : cases) {
        SCOPED_TRACE(Joined(args) + " " + pointer);
        const json document = Json(args);
        ASSERT_TRUE(document.contains(json::json_pointer(pointer))) << document.dump();
        EXPECT_EQ(document.at(json::json_pointer(pointer)), expected);
    }
    // The tree has no other roots and general show is one object.
    EXPECT_EQ(Json({"navigator", "tree"}).size(), 1u);
    EXPECT_TRUE(Json({"general", "show", "1"}).is_object());
}

TEST_F(CliOutputTest, JsonOfDrawingsGivesBytesAndAnIsoDate) {
    Ok({"general", "set", "1", "drawings_pid", (m_io.Path() / "dw").string()});
    WriteBytes(m_io.Path() / "dw" / "A.dwg", std::string(3000, 'a'));
    const auto stamp = fs::file_time_type::clock::from_sys(std::chrono::sys_seconds{
        std::chrono::sys_days{std::chrono::year{2024} / 3 / 10} + std::chrono::hours{11}});
    fs::last_write_time(m_io.Path() / "dw" / "A.dwg", stamp);
    const json drawings = Json({"drawings", "list", "1", "PID"});
    ASSERT_EQ(drawings.size(), 1u);
    EXPECT_EQ(drawings[0]["name"], "A.dwg");
    EXPECT_EQ(drawings[0]["size"], 3000);
    EXPECT_EQ(drawings[0]["date"], "2024-03-10T11:00:00Z");
    // The lines keep the desktop's texts.
    EXPECT_EQ(Ok({"drawings", "list", "1", "PID"}).substr(0, 11), "A.dwg\t2 KB\t");
}

TEST_F(CliOutputTest, TabSeparatedEscapesTellABackslashFromATab) {
    const std::string file = (m_io.Path() / "x.ini").string();
    // The value in the file and as the line prints it.
    const std::pair<std::string, std::string> cases[] = {
        {"a\tb", "a\\tb"},
        {"a\\tb", "a\\\\tb"},
        {"C:\\Drawings\\", "C:\\\\Drawings\\\\"},
        {"plain", "plain"},
    };
    for (const auto& [value, line] : cases) {
        SCOPED_TRACE(value);
        WriteBytes(file, "[s]\r\nk = " + value + "\r\n");
        EXPECT_EQ(Ok({"datafile", "get", file, "s", "k"}), line + "\n");
        EXPECT_EQ(Json({"datafile", "get", file, "s", "k"}),
                  json::parse(R"([{"value":)" + json(value).dump() + "}]"));
    }
}

TEST_F(CliOutputTest, ADashReadsTheDatafileFromStandardInput) {
    const std::string input = "[b]\r\nz = 1\r\n[a]\r\nk = v\r\n";
    // Each verb on standard input and what it prints.
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"dump", "-"}, "b\tz\t1\na\tk\tv\n"},
        {{"get", "-", "a", "k"}, "v\n"},
        {{"get", "-", "a", "x", "none"}, "none\n"},
        {{"set", "-", "a", "k", "w"}, "[a]\r\nk = w\r\n\r\n[b]\r\nz = 1\r\n"},
        {{"set", "-", "a", "k", "v"}, input},
        // A section left empty goes, as on disk.
        {{"delete-key", "-", "b", "z"}, "[a]\r\nk = v\r\n"},
        {{"delete-section", "-", "b"}, "[a]\r\nk = v\r\n"},
    };
    for (const auto& [verb, out] : cases) {
        std::vector<std::string> args = verb;
        args.insert(args.begin(), "datafile");
        SCOPED_TRACE(Joined(args));
        m_stdin = input;
        const SRun run = Run(args, false);
        m_stdin.reset();
        EXPECT_EQ(run.code, 0) << run.err;
        EXPECT_EQ(run.out, out);
        EXPECT_EQ(run.err, "");
    }
}

TEST_F(CliOutputTest, AnOutputOfDashPrints) {
    const std::pair<std::vector<std::string>, std::vector<std::string>> cases[] = {
        {{"report", "1", "--output", "-"}, {"report", "1"}},
        {{"compare", "1", "2", "--output", "-"}, {"compare", "1", "2"}},
    };
    for (const auto& [dash, plain] : cases) {
        SCOPED_TRACE(Joined(dash));
        const std::string printed = Ok(plain);
        ASSERT_NE(printed, "");
        EXPECT_EQ(Ok(dash), printed);
        EXPECT_FALSE(fs::exists("-"));
    }
}

TEST_F(CliOutputTest, ReportRefusesJson) {
    const SRun run = Run({"--json", "report", "1"});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("report prints plain text only"), std::string::npos) << run.err;
    EXPECT_NE(Ok({"report", "1"}), "");
}

TEST_F(CliOutputTest, QuietLeavesOutNotesButNotFailures) {
    const std::string missing = (m_io.Path() / "missing.ini").string();
    const std::tuple<std::vector<std::string>, int, std::string, bool> cases[] = {
        {{"datafile", "get", missing, "a", "k", "7"}, 0, "7\n", true},
        {{"-q", "datafile", "get", missing, "a", "k", "7"}, 0, "7\n", false},
        {{"datafile", "get", missing, "a", "k", "7", "--quiet"}, 0, "7\n", false},
        {{"-q", "standard", "rename", "9", "X"}, 1, "", true},
    };
    for (const auto& [args, code, out, told] : cases) {
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, code);
        EXPECT_EQ(run.out, out);
        EXPECT_EQ(!run.err.empty(), told) << run.err;
    }
}

TEST_F(CliOutputTest, OnATerminalListingsAreAnAlignedTable) {
    SD_SKIP_UNLESS_POSIX("a terminal");
    m_terminal = "";
    const SRun run = Run({"standard", "list"});
    m_terminal.reset();
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.err, "ID  STATE   CLIENT_ID  NAME\r\n"
                       "1   active  1          Pipe\r\n"
                       "2   active  1          Elec\r\n");
    // Piped, the same listing stays TAB-separated without a header.
    EXPECT_EQ(Ok({"standard", "list"}), "1\tactive\t1\tPipe\n2\tactive\t1\tElec\n");
}

#ifndef _WIN32
TEST_F(CliOutputTest, AFailedWriteToStandardOutputFails) {
    if (!fs::exists("/dev/full"))
        GTEST_SKIP() << "no /dev/full";
    const std::string err = (m_io.Path() / "err.txt").string();
    const std::string command = std::string(SD_CLI) + " --datafiles '" + Root().string() +
                                "' standard list > /dev/full 2> '" + err + "'";
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_EQ(test::ReadBytes(err), "Error writing to standard output.\n");
}
#endif

} // namespace cli_output_test
