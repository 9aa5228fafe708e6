// What the command line takes and how it ends: verbs it does not know,
// standards and clients by name, values checked as the pages check them,
// one wording for a standard that is not there, and exit codes that tell a
// failed operation (1) from bad usage (2).
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <zip.h>

#include <cstdlib>
#include <cstring>

namespace fs = std::filesystem;
using test::Joined;
using test::ReadBytes;
using test::SRun;
using test::WriteBytes;

namespace cli_input_test {

// Client 1 "Acme" and two standards: 1 "Plant A" and 2 "Plant B".
class CliInputTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"client", "create"}), "1\tClient 1\n");
        ASSERT_EQ(Ok({"client", "rename", "1", "Acme"}), "");
        ASSERT_EQ(Ok({"standard", "create", "Plant A"}), "1\tPlant A\n");
        ASSERT_EQ(Ok({"standard", "create", "Plant B"}), "2\tPlant B\n");
    }

    struct SCase {
        std::vector<std::string> args;
        int code;
        std::string err;
    };

    // Each run fails with its code and exactly its message, prints nothing
    // and leaves the registries as they were.
    void ExpectEach(const std::vector<SCase>& cases) {
        const std::string projects = ReadBytes(Root() / "ProjectDatafile.ini");
        const std::string clients = ReadBytes(Root() / "ClientDatafile.ini");
        for (const auto& [args, code, err] : cases) {
            SCOPED_TRACE(Joined(args));
            const SRun run = Run(args);
            EXPECT_EQ(run.code, code);
            EXPECT_EQ(run.out, "");
            EXPECT_EQ(run.err, err);
            EXPECT_EQ(ReadBytes(Root() / "ProjectDatafile.ini"), projects);
            EXPECT_EQ(ReadBytes(Root() / "ClientDatafile.ini"), clients);
        }
    }

    fs::path Folder(const char* name) const { return Projects() / name; }
};

TEST_F(CliInputTest, UnknownVerbsSaySoAndSuggestTheNearest) {
    const std::string standardVerbs =
        "list, default-name, create, copy, rename, delete, recover, purge, move, folder.";
    ExpectEach({
        {{"standard", "lst"}, 2, "Unknown verb 'lst' for 'standard'. Did you mean 'list'?\n"},
        {{"client", "lsit"}, 2, "Unknown verb 'lsit' for 'client'. Did you mean 'list'?\n"},
        {{"standard", "del"}, 2, "Unknown verb 'del' for 'standard'. Did you mean 'delete'?\n"},
        {{"--json", "settings", "shwo", "1", "PID"},
         2,
         "Unknown verb 'shwo' for 'settings'. Did you mean 'show'?\n"},
        {{"stndard", "list"}, 2, "Unknown verb 'stndard'. Did you mean 'standard'?\n"},
        {{"client", "frobnicate"},
         2,
         "Unknown verb 'frobnicate' for 'client'. Verbs: list, create, rename, delete.\n"},
        {{"standard"}, 2, "Missing verb for 'standard'. Verbs: " + standardVerbs + "\n"},
    });
}

TEST_F(CliInputTest, ANameWhereOnlyAnIdIsTakenSaysSo) {
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"lines", "delete", "1", "Line 3"},
         "LINE_ID: takes an id (a whole number), not a name such as 'Line 3'"},
        {{"specs", "check", "Plant A", "Spec A"},
         "SPEC_ID: takes an id (a whole number), not a name such as 'Spec A'"},
    };
    for (const auto& [args, err] : cases) {
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err.substr(0, err.size() + 1), err + "\n") << run.err;
    }
}

TEST_F(CliInputTest, CompareTakesNamesAndMinusOneForNone) {
    const std::string byIds = Ok({"compare", "1", "2"});
    EXPECT_EQ(Ok({"compare", "Plant A", "Plant B"}), byIds);
    EXPECT_EQ(Ok({"compare", "-1", "Plant B"}), Ok({"compare", "-1", "2"}));
    const SRun missing = Run({"compare", "Plant Z", "1"});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.err,
              "There is no standard named 'Plant Z' (see 'standard list --deleted')\n");
}

TEST_F(CliInputTest, AStandardOrClientThatIsNotThereIsSaidOneWayInEveryVerb) {
    const std::string noStandard = "There is no standard 99 (see 'standard list --deleted')\n";
    const std::string noClient = "There is no client 7 (see 'client list')\n";
    const std::string file = (m_io.Path() / "x.xst").string();
    std::vector<SCase> cases;
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"standard", "copy", "99"},
             {"standard", "rename", "99", "X"},
             {"standard", "delete", "99"},
             {"standard", "recover", "99"},
             {"standard", "purge", "99", "--yes"},
             {"standard", "move", "99", "0"},
             {"standard", "folder", "99"},
             {"general", "show", "99"},
             {"general", "set", "99", "version", "2020"},
             {"settings", "show", "99", "PID"},
             {"settings", "set", "99", "PID", "145", "3"},
             {"settings", "editor", "99", "PID", "4"},
             {"settings", "restore-defaults", "99", "PID"},
             {"borders", "show", "99"},
             {"layers", "show", "99", "PID"},
             {"lines", "list", "99"},
             {"lines", "create", "99"},
             {"specs", "list", "99"},
             {"drawings", "list", "99", "PID"},
             {"drawings", "new", "99", "PID"},
             {"export", "99", file},
             {"report", "99"},
         })
        cases.push_back({args, 1, noStandard});
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"client", "rename", "7", "Seven"},
             {"client", "delete", "7"},
             {"standard", "move", "1", "7"},
             {"standard", "create", "New", "--client", "7"},
         })
        cases.push_back({args, 1, noClient});
    cases.push_back({{"standard", "delete", "Plant C"},
                     1,
                     "There is no standard named 'Plant C' (see 'standard list --deleted')\n"});
    cases.push_back(
        {{"client", "delete", "Emca"}, 1, "There is no client named 'Emca' (see 'client list')\n"});
    ExpectEach(cases);
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(Ok({"standard", "list"}), "1\tactive\t0\tPlant A\n2\tactive\t0\tPlant B\n");
}

TEST_F(CliInputTest, StandardsAndClientsByNameAndVariablesByKey) {
    RunSteps({
        {{"standard", "rename", "Plant A", "Plant A 2024"}, ""},
        {{"standard", "move", "Plant B", "Acme"}, ""},
        {{"standard", "copy", "Plant A 2024"}, "3\tCopy of Plant A 2024\n"},
        {{"standard", "create", "Plant C", "--client", "Acme"}, "4\tPlant C\n"},
        {{"client", "rename", "Acme", "Acme Ltd"}, ""},
        {{"settings", "set", "Plant B", "PID", "txthgt", "3.5"}, ""},
        {{"settings", "set", "Plant B", "PID", "SPCHEK", "on"}, ""},
        {{"standard", "delete", "Plant C"}, ""},
        // A deleted standard is still found by its name.
        {{"standard", "recover", "Plant C"}, ""},
        {{"standard", "list"},
         "1\tactive\t0\tPlant A 2024\n2\tactive\t1\tPlant B\n3\tactive\t0\tCopy of Plant A 2024\n"
         "4\tactive\t1\tPlant C\n"},
        {{"client", "list"}, "1\tAcme Ltd\t2,4\n"},
    });
    EXPECT_EQ(ReadBytes(Folder("VX2D_PRJ_2 - Plant B") / "PID.ini"),
              "[Settings]\r\nVariable 131 = 1\r\nVariable 145 = 3.500000\r\n");

    // A name two of them share is no answer: the ids are listed.
    ASSERT_EQ(Ok({"client", "create"}), "2\tClient 2\n");
    ASSERT_EQ(Ok({"client", "rename", "2", "Acme Ltd"}), "");
    ExpectEach({
        {{"client", "delete", "Acme Ltd"},
         2,
         "The name 'Acme Ltd' is ambiguous: clients 1, 2 have it. Give the id.\n"},
        {{"standard", "move", "1", "Acme Ltd"},
         2,
         "The name 'Acme Ltd' is ambiguous: clients 1, 2 have it. Give the id.\n"},
    });
}

TEST_F(CliInputTest, SettingsValuesAreCheckedByKindAndRefusalsSayWhatIsAllowed) {
    const fs::path pid = Folder("VX2D_PRJ_1 - Plant A") / "PID.ini";
    const std::pair<std::vector<std::string>, std::string> accepted[] = {
        {{"145", " 2.75 "}, "Variable 145 = 2.750000\r\n"},
        {{"145", "-1e1"}, "Variable 145 = -10.000000\r\n"},
        {{"81", "+12"}, "Variable 081 = 12\r\nVariable 145 = -10.000000\r\n"},
        {{"118", "OFF"}, "Variable 081 = 12\r\nVariable 118 = 0\r\nVariable 145 = -10.000000\r\n"},
        {{"155", "place valves WITHOUT flanges"},
         "Variable 081 = 12\r\nVariable 118 = 0\r\nVariable 145 = -10.000000\r\n"
         "Variable 155 = 18\r\n"},
    };
    for (const auto& [rest, bytes] : accepted) {
        std::vector<std::string> args = {"settings", "set", "1", "PID"};
        args.insert(args.end(), rest.begin(), rest.end());
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, 0) << run.err;
        EXPECT_EQ(ReadBytes(pid), "[Settings]\r\n" + bytes);
    }

    const std::string before = ReadBytes(pid);
    const std::string real = "\"Text Height\": give a number, with a point for decimals (such as "
                             "2.5)\n";
    const std::string whole =
        "\"Maximum Number of Characters in Instrument Balloon Before Breaking\": give a whole "
        "number\n";
    ExpectEach({
        {{"settings", "set", "1", "PID", "145", "abc"},
         2,
         "'abc' is not a value of variable 145 " + real},
        {{"settings", "set", "1", "PID", "txthgt", "3,5"},
         2,
         "'3,5' is not a value of variable 145 " + real},
        {{"settings", "set", "1", "PID", "145", "3.5mm"},
         2,
         "'3.5mm' is not a value of variable 145 " + real},
        {{"settings", "set", "1", "PID", "81", "2.5"},
         2,
         "'2.5' is not a value of variable 81 " + whole},
        {{"settings", "set", "1", "PID", "81", "99999999999"},
         2,
         "'99999999999' is not a value of variable 81 " + whole},
        {{"settings", "set", "1", "PID", "118", "yes"},
         2,
         "'yes' is not a value of variable 118 \"Pipe Spec\": give On or Off\n"},
        {{"settings", "set", "1", "PID", "155", "19"},
         2,
         "'19' is not a value of variable 155 \"Valve Appearance 1\": give one of the choices "
         "(label or number):\n  17 Place Flanged Valves\n  18 Place Valves without Flanges\n"},
        {{"settings", "set", "1", "PID", "nokey", "1"},
         2,
         "P&ID settings have no variable 'nokey': give a variable id or key (see 'settings "
         "show').\n"},
    });
    EXPECT_EQ(ReadBytes(pid), before);
}

TEST_F(CliInputTest, GeneralListFieldsTakeOnlyWhatThePageOffers) {
    const fs::path general = Folder("VX2D_PRJ_1 - Plant A") / "General.ini";
    const std::string before = ReadBytes(general);
    const SRun refused = Run({"general", "set", "1", "rating_format", "-5"});
    EXPECT_EQ(refused.code, 2);
    EXPECT_EQ(refused.err.rfind("'-5' is not in the list of Rating Format: give a code or a text "
                                "of the list:\n  ",
                                0),
              0u)
        << refused.err;
    for (const char* field : {"working_units", "displayed_units"}) {
        const SRun run = Run({"general", "set", "1", field, "99"});
        EXPECT_EQ(run.code, 2) << field;
        EXPECT_NE(run.err.find("'99' is not in the list of "), std::string::npos) << run.err;
        EXPECT_NE(run.err.find("\n  0 "), std::string::npos) << run.err;
    }
    EXPECT_EQ(ReadBytes(general), before);

    // A code, or the list's text in any letter case.
    const std::pair<std::vector<std::string>, std::string> accepted[] = {
        {{"displayed_units", "english - nps"}, "displayed_units\t3\n"},
        {{"displayed_units", "1"}, "displayed_units\t1\n"},
        {{"working_units", "ENGLISH"}, "working_units\t1\n"},
    };
    for (const auto& [rest, shown] : accepted) {
        std::vector<std::string> args = {"general", "set", "1"};
        args.insert(args.end(), rest.begin(), rest.end());
        EXPECT_EQ(Ok(args), "");
        EXPECT_NE(Ok({"general", "show", "1"}).find(shown), std::string::npos) << Joined(args);
    }
}

TEST_F(CliInputTest, WritingToAFullStandardOutputFails) {
    SD_SKIP_UNLESS_POSIX("/dev/full");
    m_stdoutFile = "/dev/full";
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"standard", "list"}, {"--json", "client", "list"}, {"report", "1"}}) {
        const SRun run = Run(args);
        EXPECT_EQ(run.code, 1) << Joined(args);
        EXPECT_EQ(run.err, "Error writing to standard output.\n") << Joined(args);
    }
}

TEST_F(CliInputTest, APurgeThatCannotDeleteTheFolderFails) {
    SD_SKIP_UNLESS_POSIX("another user");
    Ok({"standard", "delete", "2"});
    const fs::path folder = Folder("VX2D_PRJ_2 - Plant B");
    WriteBytes(folder / "Kept" / "file.txt", "x");
    for (const auto& entry : fs::recursive_directory_iterator(Root()))
        fs::permissions(entry.path(), fs::perms::all);
    for (const auto& dir : {Root(), m_userConfig.Path(), m_machineConfig.Path(), m_io.Path()})
        fs::permissions(dir, fs::perms::all);
    // Nobody but the administrator may empty this folder.
    fs::permissions(folder / "Kept", fs::perms::owner_all | fs::perms::group_read |
                                         fs::perms::group_exec | fs::perms::others_read |
                                         fs::perms::others_exec);
    m_otherUser = true;
    const SRun run = Run({"standard", "purge", "2", "--yes"});
    if (run.code == kCannotDropPrivileges)
        GTEST_SKIP() << "the tests run as root and cannot become the user \"nobody\"";
#ifndef _WIN32
    if (getuid() != 0)
        GTEST_SKIP() << "only root can keep a folder from its owner here";
#endif
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err, "Error purging standard 'Plant B'.\n\nStandard 'Plant B' is still listed: "
                       "its folder could not be deleted\n");
    m_otherUser = false;
    EXPECT_EQ(Ok({"standard", "list", "--deleted"}),
              "1\tactive\t0\tPlant A\n2\tdeleted\t0\tPlant B\n");
}

TEST_F(CliInputTest, AnImportWithEntriesLeftOutFails) {
    const std::string archive = (m_io.Path() / "Odd.xst").string();
    int error = 0;
    zip_t* zip = zip_open(archive.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    ASSERT_NE(zip, nullptr);
    for (const char* name : {"General.ini", "../escaped.txt"}) {
        char* data = static_cast<char*>(std::malloc(1));
        data[0] = 'x';
        ASSERT_GE(zip_file_add(zip, name, zip_source_buffer(zip, data, 1, 1), 0), 0);
    }
    ASSERT_EQ(zip_close(zip), 0);

    const SRun run = Run({"import", archive, "--client", "Acme"});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "3\tOdd\n");
    EXPECT_EQ(run.err, "Some files were not imported:\nOdd: ../escaped.txt: unsafe name\n"
                       "Not every file could be imported.\n");
    EXPECT_EQ(Ok({"client", "list"}), "1\tAcme\t3\n");
}

TEST_F(CliInputTest, InvalidNamesSayWhichRuleTheyBreak) {
    const std::string rename = "Error renaming project from 'Plant A' to '";
    ExpectEach({
        {{"standard", "rename", "1", "a/b"},
         1,
         rename + "a/b'.\n\nInvalid name: a name cannot hold '/' (none of < > : \" / \\ | ? * "
                  "may be used).\n"},
        {{"standard", "rename", "Plant A", "end."},
         1,
         rename + "end.'.\n\nInvalid name: a name cannot end with a dot.\n"},
        {{"standard", "rename", "1", " "},
         1,
         rename + " '.\n\nInvalid name: a name cannot be empty.\n"},
        {{"standard", "create", "Pip\xE2\x82\xAC"},
         1,
         "Error creating new standard 'Pip\xE2\x82\xAC'\n\nInvalid name: a name cannot hold "
         "'\xE2\x82\xAC': a datafile stores only characters up to code 255.\n"},
        {{"standard", "create", std::string(300, 'n')},
         1,
         "Error creating new standard '" + std::string(300, 'n') +
             "'\n\nInvalid name: the name is too long for a folder name.\n"},
        {{"client", "rename", "1", "\xE2\x82\xACuro"},
         1,
         "Error renaming client from 'Acme' to '\xE2\x82\xACuro'.\n\nInvalid name: a name cannot "
         "hold '\xE2\x82\xAC': a datafile stores only characters up to code 255.\n"},
    });
    // A copy's name is made from the standard's: one that would be too long
    // for a folder says so.
#ifndef _WIN32
    // (On Windows the whole path's limit of 259 characters comes first.)
    const std::string longest(230, 'l');
    ASSERT_EQ(Run({"standard", "create", longest}).code, 0);
    const SRun copy = Run({"standard", "copy", longest});
    EXPECT_EQ(copy.code, 1);
    EXPECT_NE(copy.err.find("Invalid name: the name is too long for a folder name."),
              std::string::npos)
        << copy.err;
#endif
}

} // namespace cli_input_test
