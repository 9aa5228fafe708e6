// standards-desk-cli run as a child process: exit codes, the exact text on
// standard output and standard error, and the bytes it leaves in the datafiles.
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace cli_test {

using test::CliTest;
using test::Joined;
using test::SRun;

// A client with standard 1 "Pipe" in it.
class CliStandardTest : public CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"client", "create"}), "1\tClient 1\n");
        ASSERT_EQ(Ok({"standard", "create", "Pipe", "--client", "1"}), "1\tPipe\n");
    }
};

TEST_F(CliTest, LifecyclePrintsTabSeparatedRecordsWithoutHeader) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> steps = {
        {{"standard", "default-name"}, "Standard 1\n"},
        {{"client", "create"}, "1\tClient 1\n"},
        {{"client", "create"}, "2\tClient 2\n"},
        {{"standard", "create", "Pipe", "--client", "1"}, "1\tPipe\n"},
        {{"standard", "create", "Elec", "--units", "imperial"}, "2\tElec\n"},
        {{"client", "list"}, "1\tClient 1\t1\n2\tClient 2\t\n"},
        {{"standard", "copy", "1"}, "3\tCopy of Pipe\n"},
        {{"standard", "delete", "2"}, ""},
        {{"standard", "list"}, "1\tactive\t1\tPipe\n3\tactive\t0\tCopy of Pipe\n"},
        {{"standard", "list", "--deleted"},
         "1\tactive\t1\tPipe\n3\tactive\t0\tCopy of Pipe\n2\tdeleted\t0\tElec\n"},
        {{"standard", "move", "3", "2"}, ""},
        {{"standard", "move", "1", "0"}, ""},
        {{"client", "list"}, "1\tClient 1\t\n2\tClient 2\t3\n"},
        {{"client", "rename", "1", "Plant A: North/2"}, ""},
        {{"client", "rename", "1", "Plant A"}, ""},
        {{"standard", "rename", "1", "Tube"}, ""},
        {{"standard", "recover", "2"}, ""},
        // A purged standard leaves its client as well.
        {{"standard", "delete", "3"}, ""},
        {{"standard", "purge", "3", "--dry-run"}, "3\tdeleted\tCopy of Pipe\n"},
        {{"standard", "purge", "3", "--yes"}, ""},
        {{"client", "delete", "2", "-y"}, ""},
        {{"client", "list"}, "1\tPlant A\t\n"},
        {{"standard", "list", "--deleted"}, "1\tactive\t0\tTube\n2\tactive\t0\tElec\n"},
        {{"standard", "folder", "1"},
         test::Tsv((Projects() / "VX2D_PRJ_1 - Tube").string() + test::N("/")) + "\n"},
    };
    RunSteps(steps);
    EXPECT_EQ(ReadBytes(Root() / "ProjectDatafile.ini"),
              "[General]\r\nLastProjectId = 3\r\n\r\n"
              "[ProjectList]\r\nVX2D_PRJ_1 = Tube\r\nVX2D_PRJ_2 = Elec\r\n");
}

TEST_F(CliTest, RegistryCheckPrintsWhatItRepairs) {
    fs::create_directories(Projects() / "VX2D_PRJ_9 - Site A");
    WriteBytes(Root() / "ProjectDatafile.ini",
               "[DeletedProjects]\r\nVX2D_PRJ_4 = Gone\r\n\r\n[General]\r\nLastProjectId = 4\r\n");
    const std::string repairs = "dropped\t4\tdeleted\tGone\nregistered\t9\tactive\tSite A\n"
                                "counter\t9\t\t\n";
    EXPECT_EQ(Ok({"registry", "check", "--dry-run"}), repairs);
    EXPECT_EQ(Ok({"standard", "list", "--deleted"}), "4\tdeleted\t0\tGone\n");
    EXPECT_EQ(Ok({"registry", "check"}), repairs);
    EXPECT_EQ(Ok({"standard", "list", "--deleted"}), "9\tactive\t0\tSite A\n");
    EXPECT_EQ(Ok({"registry", "check"}), "");
}

TEST_F(CliStandardTest, PurgeTakesOnlyADeletedStandardUnlessForced) {
    ASSERT_EQ(Ok({"standard", "create", "Elec"}), "2\tElec\n");
    Ok({"standard", "delete", "2"});
    const std::vector<std::tuple<std::vector<std::string>, int, std::string, std::string>> steps = {
        {{"1"},
         2,
         "",
         "Standard 'Pipe' is not deleted: delete it first (standard delete 1) or "
         "purge it with --force.\n"},
        {{"1", "--dry-run"}, 2, "", "Standard 'Pipe' is not deleted"},
        {{"1", "--force", "--dry-run"}, 0, "1\tactive\tPipe\n", ""},
        {{"2"}, 2, "", "purge deletes the standard's folder for good; confirm with --yes\n"},
        {{"2", "--dry-run"}, 0, "2\tdeleted\tElec\n", ""},
        {{"2", "-y"}, 0, "", ""},
        {{"1", "--force"},
         2,
         "",
         "purge deletes the standard's folder for good; confirm with --yes\n"},
        {{"1", "--force", "--yes"}, 0, "", ""},
    };
    for (const auto& [verb, code, out, err] : steps) {
        std::vector<std::string> args = {"standard", "purge"};
        args.insert(args.end(), verb.begin(), verb.end());
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, code);
        EXPECT_EQ(run.out, out);
        EXPECT_EQ(run.err.substr(0, err.size()), err);
        if (err.empty()) {
            EXPECT_EQ(run.err, "");
        }
    }
    EXPECT_EQ(ProjectFolders(), std::set<std::string>{});
    EXPECT_EQ(Ok({"client", "list"}), "1\tClient 1\t\n");
}

TEST_F(CliStandardTest, FailuresExitOneWithTheMessageAndChangeNothing) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"standard", "rename", "1", "a/b"},
         "Error renaming project from 'Pipe' to 'a/b'.\n\nInvalid name: a name cannot hold '/' "
         "(none of < > : \" / \\ | ? * may be used).\n"},
        {{"standard", "create", "Pip\xE2\x82\xAC"},
         "Error creating new standard 'Pip\xE2\x82\xAC'\n\nInvalid name: a name cannot hold "
         "'\xE2\x82\xAC': a datafile stores only characters up to code 255.\n"},
        {{"standard", "delete", "9"}, "There is no standard 9 (see 'standard list --deleted')\n"},
        {{"standard", "move", "1", "7"}, "There is no client 7 (see 'client list')\n"},
        {{"client", "rename", "1", "\xE2\x82\xAC"},
         "Error renaming client from 'Client 1' to '\xE2\x82\xAC'.\n\nInvalid name: a name cannot "
         "hold '\xE2\x82\xAC': a datafile stores only characters up to code 255.\n"},
        {{"client", "rename", "7", "Seven"}, "There is no client 7 (see 'client list')\n"},
        {{"client", "delete", "7"}, "There is no client 7 (see 'client list')\n"},
    };
    const std::string projects = ReadBytes(Root() / "ProjectDatafile.ini");
    const std::string clients = ReadBytes(Root() / "ClientDatafile.ini");
    for (const auto& [args, err] : cases) {
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, err);
        EXPECT_EQ(ReadBytes(Root() / "ProjectDatafile.ini"), projects);
        EXPECT_EQ(ReadBytes(Root() / "ClientDatafile.ini"), clients);
    }
}

TEST_F(CliStandardTest, BadUsageExitsTwoAndDoesNothing) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"standard", "create", "X", "--units", "furlongs"}, "furlongs"},
        {{"standard", "purge", "1", "--force"}, "--yes"},
        {{"client", "delete", "1"}, "--yes"},
        {{"general", "set", "1", "nope", "1"}, "Unknown field 'nope'"},
        {{"general", "set", "1", "version", "x"}, "'x' is not a whole number for version."},
        {{"general", "set", "1", "rating_format", "99999999999"},
         "'99999999999' is not in the list of Rating Format"},
        {{"general", "set", "1", "guid", "00000000-0000-0000-0000-000000000000"},
         "The field 'guid' cannot be changed."},
    };
    const fs::path general = Projects() / "VX2D_PRJ_1 - Pipe" / "General.ini";
    const std::string generalBytes = ReadBytes(general);
    const std::string projects = ReadBytes(Root() / "ProjectDatafile.ini");
    for (const auto& [args, errPart] : cases) {
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err.find(errPart), std::string::npos) << run.err;
        EXPECT_EQ(ReadBytes(general), generalBytes);
        EXPECT_EQ(ReadBytes(Root() / "ProjectDatafile.ini"), projects);
    }
}

TEST_F(CliTest, HelpAtEveryLevelExitsZero) {
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"--help"}, "Usage: standards-desk-cli [OPTIONS] SUBCOMMAND"},
        {{"standard", "purge", "--help"}, "Usage: standards-desk-cli standard purge"},
    };
    for (const auto& [args, usage] : cases) {
        const SRun run = Run(args, false);
        EXPECT_EQ(run.code, 0);
        EXPECT_NE(run.out.find(usage), std::string::npos) << run.out;
    }
}

TEST_F(CliStandardTest, OnATerminalADestructiveVerbAsksFirst) {
    SD_SKIP_UNLESS_POSIX("a terminal");
    const std::string question =
        "Delete client 'Client 1'? Its standards stay, with no client. [y/N] ";
    // What is typed, the exit code and the client list afterwards.
    const std::tuple<std::string, int, std::string> cases[] = {
        {"\n", 1, "1\tClient 1\t1\n"},
        {"n\n", 1, "1\tClient 1\t1\n"},
        {"yess\n", 1, "1\tClient 1\t1\n"},
        {"\x04", 1, "1\tClient 1\t1\n"},
        {" Yes\n", 0, ""},
    };
    for (const auto& [typed, code, clients] : cases) {
        SCOPED_TRACE(typed);
        m_terminal = typed;
        const SRun run = Run({"client", "delete", "1"});
        m_terminal.reset();
        EXPECT_EQ(run.code, code);
        // After the echo of what was typed ahead.
        EXPECT_NE(run.err.find(question), std::string::npos) << run.err;
        if (code != 0) {
            EXPECT_NE(run.err.find("Nothing was changed."), std::string::npos) << run.err;
        }
        EXPECT_EQ(Ok({"client", "list"}), clients);
    }
}

TEST_F(CliStandardTest, GeneralShowAndSet) {
    std::vector<std::string> fields;
    const std::string shown = Ok({"general", "show", "1"});
    for (std::size_t at = 0; at < shown.size(); at = shown.find('\n', at) + 1)
        fields.push_back(shown.substr(at, shown.find('\t', at) - at));
    EXPECT_EQ(fields, (std::vector<std::string>{
                          "working_units", "displayed_units", "rating_format", "guid", "version",
                          "borders_folder", "templates_folder", "libraries_folder",
                          "local_line_ini", "local_line_ini_path", "drawings_electric",
                          "drawings_pid", "drawings_isometric", "drawings_ortho"}));

    EXPECT_EQ(Ok({"general", "set", "1", "rating_format", "3"}), "");
    EXPECT_EQ(Ok({"general", "set", "1", "drawings_electric", "/dw/\xC3\xA9"}), "");
    const std::string after = Ok({"general", "show", "1"});
    EXPECT_NE(after.find("\nrating_format\t3\n"), std::string::npos) << after;
    EXPECT_NE(after.find("\ndrawings_electric\t/dw/\xC3\xA9/\n"), std::string::npos) << after;
    const std::string bytes = ReadBytes(Projects() / "VX2D_PRJ_1 - Pipe" / "General.ini");
    EXPECT_NE(bytes.find("\r\nRatingsFormat = 3\r\n"), std::string::npos) << bytes;
    EXPECT_NE(bytes.find("\r\nELECTRIC = /dw/\xE9\r\n"), std::string::npos) << bytes;
}

TEST_F(CliStandardTest, JsonIsOneDocument) {
    // A verb without records still prints a document.
    ASSERT_EQ(Ok({"--json", "standard", "rename", "1", "Pip\xC3\xA9"}), "[]\n");
    WriteBytes(Root() / "x.ini", "[s]\r\nk = a\tb\r\n");
    using nlohmann::json;
    const std::vector<std::pair<std::vector<std::string>, json>> cases = {
        {{"client", "list"}, json::parse(R"([{"id":1,"name":"Client 1","standards":[1]}])")},
        {{"standard", "list", "--deleted"},
         json::parse(R"([{"id":1,"state":"active","client_id":1,"name":"Pip\u00e9"}])")},
        {{"datafile", "dump", (Root() / "x.ini").string()},
         json::parse(R"([{"section":"s","key":"k","value":"a\tb"}])")},
    };
    for (const auto& [args, expected] : cases) {
        SCOPED_TRACE(Joined(args));
        std::vector<std::string> withJson = args;
        withJson.insert(withJson.begin(), "--json");
        const std::string out = Ok(withJson);
        ASSERT_TRUE(json::accept(out)) << out;
        EXPECT_EQ(json::parse(out), expected);
    }
    // The option may also follow the verb.
    const json general = json::parse(Ok({"general", "show", "1", "--json"}));
    ASSERT_EQ(general.size(), 14u);
    EXPECT_EQ(general["guid"].get<std::string>().size(), 36u);
}

// A file as another program might have left it: a stray line, unsorted
// sections and keys, a value holding " = " and a Latin-1 byte.
const std::string kHandMade = "stray line\r\n[b]\r\nz = 1\r\nA = x = y\r\n[a]\r\nk = caf\xE9\r\n";

TEST_F(CliTest, DatafileDumpAndGet) {
    const std::string file = (Root() / "x.ini").string();
    WriteBytes(file, kHandMade);
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"datafile", "dump", file}, "b\tz\t1\nb\tA\tx = y\na\tk\tcaf\xC3\xA9\n"},
        {{"datafile", "get", file, "b", "A"}, "x = y\n"},
        {{"datafile", "get", file, "a", "K", "none"}, "none\n"},
        {{"datafile", "get", file, "c", "k"}, "\n"},
    };
    for (const auto& [args, out] : cases) {
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args, false);
        EXPECT_EQ(run.code, 0);
        EXPECT_EQ(run.out, out);
    }
    EXPECT_EQ(ReadBytes(file), kHandMade);

    // A missing file reads as empty: the default, with a note on stderr.
    const std::string missing = (Root() / "missing.ini").string();
    const std::pair<std::vector<std::string>, std::string> absent[] = {
        {{"datafile", "get", missing, "a", "k", "7"}, "7\n"},
        {{"datafile", "get", missing, "a", "k"}, "\n"},
    };
    for (const auto& [args, out] : absent) {
        const SRun run = Run(args, false);
        EXPECT_EQ(run.code, 0);
        EXPECT_EQ(run.out, out);
        EXPECT_EQ(run.err, "The datafile '" + missing + "' does not exist.\n");
    }
    EXPECT_FALSE(fs::exists(missing));
    // A file that is there but cannot be read is still an error.
    const SRun run = Run({"datafile", "get", Root().string(), "a", "k", "7"}, false);
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "Error opening datafile '" + Root().string() + "'.\n");
}

TEST_F(CliTest, DatafileChangesRewriteTheFile) {
    const std::string file = (Root() / "x.ini").string();
    const std::string sortedA = "[a]\r\nk = caf\xE9\r\n";
    const std::string sortedB = "[b]\r\nA = x = y\r\nz = 1\r\n";
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"set", file, "a", "k", "v"}, "[a]\r\nk = v\r\n\r\n" + sortedB},
        {{"set", file, "C", "k", "\xC3\xA9t\xC3\xA9"},
         "[C]\r\nk = \xE9t\xE9\r\n\r\n" + sortedA + "\r\n" + sortedB},
        {{"delete-key", file, "b", "z"}, sortedA + "\r\n[b]\r\nA = x = y\r\n"},
        {{"delete-section", file, "a"}, sortedB},
    };
    for (const auto& [verb, bytes] : cases) {
        SCOPED_TRACE(Joined(verb));
        WriteBytes(file, kHandMade);
        std::vector<std::string> args = verb;
        args.insert(args.begin(), "datafile");
        const SRun run = Run(args, false);
        EXPECT_EQ(run.code, 0) << run.err;
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(ReadBytes(file), bytes);
        // No lock or temporary file is left beside the datafile.
        EXPECT_EQ(std::distance(fs::directory_iterator(Root()), fs::directory_iterator()), 2)
            << "Template and x.ini";
    }

    const std::string fresh = (Root() / "new.ini").string();
    EXPECT_EQ(Run({"datafile", "set", fresh, "S", "K", "V"}, false).code, 0);
    EXPECT_EQ(ReadBytes(fresh), "[S]\r\nK = V\r\n");
}

TEST_F(CliTest, DatafileRefusesTextItCannotStoreAndLeavesTheFile) {
    const std::string file = (Root() / "x.ini").string();
    const std::string euro = "\xE2\x82\xAC";
    const std::string refused = "Error writing datafile '" + file + "'.\n\n'";
    const std::string cannot = "' holds a character that a datafile cannot store.\n";
    const std::vector<std::tuple<std::vector<std::string>, int, std::string>> cases = {
        {{"set", file, "a", "k", euro}, 1, refused + euro + cannot},
        {{"set", file, "a", "k" + euro, "v"}, 1, refused + "k" + euro + cannot},
        {{"set", file, "a", "k", "1\n2"}, 1, refused + "1\n2" + cannot},
        {{"set", file, euro, "k", "v"}, 1, refused + euro + cannot},
    };
    // Whole seconds: every file system keeps them as they were set.
    const auto old = std::chrono::floor<std::chrono::seconds>(fs::file_time_type::clock::now() -
                                                              std::chrono::hours(1));
    for (const auto& [verb, code, err] : cases) {
        SCOPED_TRACE(Joined(verb));
        WriteBytes(file, kHandMade);
        fs::last_write_time(file, old);
        std::vector<std::string> args = verb;
        args.insert(args.begin(), "datafile");
        const SRun run = Run(args, false);
        EXPECT_EQ(run.code, code);
        EXPECT_EQ(run.err, err);
        EXPECT_EQ(ReadBytes(file), kHandMade);
        EXPECT_EQ(fs::last_write_time(file), old);
    }
}

TEST_F(CliTest, WithoutADatafilesFolderNothingRuns) {
    const std::string message =
        "No datafiles folder is known.\n\nGive one with --datafiles DIR or set "
        "\"DatafilesPath\" in the installation values.\n";
    const std::string value =
        "[Software\\VANDIX\\2D Kryn\\2023]\r\nDatafilesPath = " + Root().string() + "\r\n";
    const SRun none = Run({"client", "create"}, false);
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.out, "");
    EXPECT_EQ(none.err, message);

    WriteBytes(MachineRegistry(), value);
    const SRun run = Run({"client", "create"}, false);
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, "1\tClient 1\n");
    EXPECT_EQ(ReadBytes(Root() / "ClientDatafile.ini"),
              "[ClientList]\r\nVX2D_CLIENT_1 = Client 1\r\n\r\n[General]\r\nLastClientId = 1\r\n");
}

} // namespace cli_test
