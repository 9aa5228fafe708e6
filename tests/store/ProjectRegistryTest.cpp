// The standard registry: result codes, the exact bytes of "ProjectDatafile.ini"
// after each operation, and the folders under "Projects".
#include "store/ProjectRegistry.h"
#include "datafile/DatafileProblem.h"
#include "datafile/FileLock.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <thread>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace project_registry_test {

std::set<std::string> Listing(const fs::path& folder) {
    std::set<std::string> names;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(folder, ec))
        names.insert(entry.path().filename().string());
    return names;
}

class ProjectRegistryTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    fs::path Projects() const { return Root() / "Projects"; }
    fs::path DatafilePath() const { return Root() / "ProjectDatafile.ini"; }
    std::string Datafile() const { return ReadBytes(DatafilePath()); }
    void SetDatafile(const std::string& bytes) const { WriteBytes(DatafilePath(), bytes); }
    // A standard's folder with one file in it, as another installation left it.
    void MakeFolder(const std::string& name, const std::string& marker = "x") const {
        WriteBytes(Projects() / name / "Marker.txt", marker);
    }
    std::wstring FolderText(const std::wstring& label) const {
        return Datafiles().ProjectsFolder() + label + kPathSeparator;
    }
};

TEST_F(ProjectRegistryTest, CreateCopiesTheChosenTemplateAndGivesANewGuid) {
    struct SCase {
        const wchar_t* name;
        int units;
        int templateNumber;
        bool oldFormat;
        const char* templateFolder; // nullptr: an empty folder
    };
    const SCase cases[] = {
        {L"Metric A", 0, 0, false, "Metric"},  {L"Imperial B", 1, 0, false, "Imperial"},
        {L"Old C", 0, 1, true, "Metric 2015"}, {L"Old D", 0, 2, true, "Imperial 2015"},
        {L"Chosen E", 1, 1, false, "Metric"},  {L"Empty F", 0, -1, false, nullptr},
    };
    const std::regex guidLine("ProjectGuid = ([0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-"
                              "[0-9A-F]{12})\r\n");
    std::set<std::string> guids;
    std::int32_t expectedId = 0;
    for (const auto& c : cases) {
        std::int32_t id = 0;
        ASSERT_EQ(registry.CreateProject({c.name, c.units, c.templateNumber, 0, c.oldFormat}, id),
                  eProjectOk);
        EXPECT_EQ(id, ++expectedId);
        const fs::path folder =
            Projects() / test::P(L"VX2D_PRJ_" + std::to_wstring(id) + L" - " + c.name);
        ASSERT_TRUE(fs::is_directory(folder)) << folder;
        if (!c.templateFolder) {
            EXPECT_TRUE(Listing(folder).empty());
            continue;
        }
        std::string general = ReadBytes(folder / "General.ini");
        std::smatch match;
        ASSERT_TRUE(std::regex_search(general, match, guidLine)) << general;
        EXPECT_NE(match[1], "00000000-0000-0000-0000-000000000000");
        guids.insert(match[1]);
        general.erase(static_cast<std::size_t>(match.position(0)),
                      static_cast<std::size_t>(match.length(0)));
        EXPECT_EQ(general, ReadBytes(Root() / "Template" / c.templateFolder / "General.ini"))
            << c.templateFolder;
    }
    EXPECT_EQ(guids.size(), 5u);
    EXPECT_EQ(Datafile(),
              "[General]\r\nLastProjectId = 6\r\n\r\n[ProjectList]\r\n"
              "VX2D_PRJ_1 = Metric A\r\nVX2D_PRJ_2 = Imperial B\r\nVX2D_PRJ_3 = Old C\r\n"
              "VX2D_PRJ_4 = Old D\r\nVX2D_PRJ_5 = Chosen E\r\nVX2D_PRJ_6 = Empty F\r\n");

    // A missing template folder is reported before anything is written.
    const std::string before = Datafile();
    fs::remove_all(Root() / "Template" / "Imperial");
    std::int32_t id = 9;
    EXPECT_EQ(registry.CreateProject({L"G", 1, 0, 0, false}, id), eProjectCantGetTemplateFolder);
    EXPECT_EQ(id, 0);
    EXPECT_EQ(Datafile(), before);
}

TEST_F(ProjectRegistryTest, CreateAddsTheStandardToItsClient) {
    CVX2D_ClientRegistry clients(Datafiles());
    std::int32_t clientId = 0;
    std::wstring clientName;
    ASSERT_TRUE(clients.CreateClient(clientId, clientName));
    std::int32_t id = 0;
    ASSERT_EQ(registry.CreateProject({L"Pipe", 0, 1, clientId, false}, id), eProjectOk);
    EXPECT_EQ(
        ReadBytes(Root() / "ClientDatafile.ini"),
        "[ClientList]\r\nVX2D_CLIENT_1 = Client 1\r\n\r\n[General]\r\nLastClientId = 1\r\n\r\n"
        "[ProjectList - 1]\r\n1 = 1\r\n");
}

TEST_F(ProjectRegistryTest, CopyTwiceGivesTwoStandardsNamedCopyOf) {
    const std::int32_t source = Create(L"Pipe");
    WriteBytes(Projects() / "VX2D_PRJ_1 - Pipe" / "Sub" / "Borders.ini", "[B]\r\nA = 1\r\n");
    for (std::int32_t expected : {2, 3}) {
        std::int32_t newId = 0;
        std::wstring newName;
        ASSERT_EQ(registry.CopyProject(source, newId, newName), eProjectOk);
        EXPECT_EQ(newId, expected);
        EXPECT_EQ(newName, L"Copy of Pipe");
        const fs::path copy =
            Projects() / ("VX2D_PRJ_" + std::to_string(expected) + " - Copy of Pipe");
        EXPECT_EQ(ReadBytes(copy / "Sub" / "Borders.ini"), "[B]\r\nA = 1\r\n");
    }
    EXPECT_EQ(Datafile(),
              "[General]\r\nLastProjectId = 3\r\n\r\n[ProjectList]\r\nVX2D_PRJ_1 = Pipe\r\n"
              "VX2D_PRJ_2 = Copy of Pipe\r\nVX2D_PRJ_3 = Copy of Pipe\r\n");
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(ProjectRegistryTest, AStoppedCopyRollsBackCounterEntryAndFolder) {
    const std::int32_t source = Create(L"Pipe");
    WriteBytes(Projects() / "VX2D_PRJ_1 - Pipe" / "Drawings" / "P-100.dwg",
               std::string(3u << 20, 'd'));
    const std::string before = Datafile();
    std::int32_t newId = 7;
    std::wstring newName = L"x";
    // The user cancels once the copy has begun: its folder was made by then.
    std::size_t steps = 0;
    bool folderMade = false;
    EXPECT_EQ(registry.CopyProject(source, newId, newName,
                                   [&](std::size_t, std::size_t, const std::wstring&) {
                                       folderMade =
                                           fs::exists(Projects() / "VX2D_PRJ_2 - Copy of Pipe");
                                       return ++steps < 2;
                                   }),
              eProjectErrorCopyingFolder);
    EXPECT_TRUE(folderMade);
    EXPECT_EQ(newId, 0);
    EXPECT_EQ(newName, L"");
    EXPECT_EQ(Datafile(), before);
    EXPECT_EQ(Listing(Projects()), std::set<std::string>{"VX2D_PRJ_1 - Pipe"});

    // A source without a folder rolls back the same way, with its own code.
    fs::remove_all(Projects() / "VX2D_PRJ_1 - Pipe");
    EXPECT_EQ(registry.CopyProject(source, newId, newName), eProjectCantGetLocationFolder);
    EXPECT_EQ(Datafile(), before);
    EXPECT_TRUE(Listing(Projects()).empty());
}

TEST_F(ProjectRegistryTest, RenameTrimsMovesTheFolderAndKeepsTheList) {
    const std::int32_t id = Create(L"Pipe");
    const std::string renamed =
        "[General]\r\nLastProjectId = 1\r\n\r\n[ProjectList]\r\nVX2D_PRJ_1 = New\r\n";
    EXPECT_EQ(registry.RenameProject(id, L" New "), eProjectOk);
    EXPECT_EQ(Datafile(), renamed);
    EXPECT_EQ(Listing(Projects()), std::set<std::string>{"VX2D_PRJ_1 - New"});

    // The folder cannot move onto one that exists: nothing changes.
    fs::create_directories(Projects() / "VX2D_PRJ_1 - Taken");
    EXPECT_EQ(registry.RenameProject(id, L"Taken"), eProjectErrorMovingFolder);
    EXPECT_EQ(Datafile(), renamed);
    EXPECT_TRUE(fs::exists(Projects() / "VX2D_PRJ_1 - New" / "General.ini"));

    // Only the letter case changes: on a case-insensitive file system (Windows,
    // an SMB share) the new folder name "exists" already, as the folder itself.
    EXPECT_EQ(registry.RenameProject(id, L"NEW"), eProjectOk);
    EXPECT_EQ(Listing(Projects()),
              (std::set<std::string>{"VX2D_PRJ_1 - NEW", "VX2D_PRJ_1 - Taken"}));
    EXPECT_TRUE(fs::exists(Projects() / "VX2D_PRJ_1 - NEW" / "General.ini"));
    EXPECT_EQ(registry.RenameProject(id, L"New"), eProjectOk);
    EXPECT_EQ(Datafile(), renamed);

    // A deleted standard is renamed where it stands.
    ASSERT_EQ(registry.DeleteProject(id), eProjectOk);
    EXPECT_EQ(registry.RenameProject(id, L"Old"), eProjectOk);
    EXPECT_EQ(Datafile(),
              "[DeletedProjects]\r\nVX2D_PRJ_1 = Old\r\n\r\n[General]\r\nLastProjectId = 1\r\n");
    EXPECT_TRUE(fs::exists(Projects() / "VX2D_PRJ_1 - Old" / "General.ini"));
}

TEST_F(ProjectRegistryTest, DeleteRecoverAndPurge) {
    const std::int32_t a = Create(L"A");
    const std::int32_t b = Create(L"B");
    const std::string aDeleted = "[DeletedProjects]\r\nVX2D_PRJ_1 = A\r\n\r\n[General]\r\n"
                                 "LastProjectId = 2\r\n\r\n[ProjectList]\r\nVX2D_PRJ_2 = B\r\n";
    for (int twice = 0; twice < 2; ++twice) {
        EXPECT_EQ(registry.DeleteProject(a), eProjectOk);
        EXPECT_EQ(Datafile(), aDeleted);
    }
    EXPECT_TRUE(fs::is_directory(Projects() / "VX2D_PRJ_1 - A"));
    EXPECT_EQ(registry.GetProjectIds(true, true), (std::vector<std::int32_t>{2, 1}));

    EXPECT_EQ(registry.RecoverProject(a), eProjectOk);
    EXPECT_EQ(Datafile(), "[General]\r\nLastProjectId = 2\r\n\r\n[ProjectList]\r\n"
                          "VX2D_PRJ_1 = A\r\nVX2D_PRJ_2 = B\r\n");

    EXPECT_EQ(registry.PurgeProject(a), eProjectOk);
    EXPECT_EQ(Datafile(),
              "[General]\r\nLastProjectId = 2\r\n\r\n[ProjectList]\r\nVX2D_PRJ_2 = B\r\n");
    EXPECT_EQ(Listing(Projects()), std::set<std::string>{"VX2D_PRJ_2 - B"});

    ASSERT_EQ(registry.DeleteProject(b), eProjectOk);
    EXPECT_EQ(registry.PurgeProject(b), eProjectOk);
    EXPECT_EQ(Datafile(), "[General]\r\nLastProjectId = 2\r\n");
    EXPECT_TRUE(Listing(Projects()).empty());
}

// A folder service whose deletions fail, as on a share where a file is open.
class CUndeletableTree : public CVX2D_FolderTree {
public:
    using CVX2D_FolderTree::CVX2D_FolderTree;
    bool DeleteTree(const std::wstring&) override { return false; }
};

TEST_F(ProjectRegistryTest, PurgeThatCannotDeleteTheFolderKeepsTheStandardDeleted) {
    const std::int32_t id = Create(L"Pipe");
    ASSERT_EQ(registry.DeleteProject(id), eProjectOk);
    CUndeletableTree tree(prompter);
    registry.SetFolderTree(&tree);
    EXPECT_EQ(registry.PurgeProject(id), eProjectOk);
    EXPECT_EQ(Datafile(),
              "[DeletedProjects]\r\nVX2D_PRJ_1 = Pipe\r\n\r\n[General]\r\nLastProjectId = 1\r\n");
    EXPECT_TRUE(fs::exists(Projects() / "VX2D_PRJ_1 - Pipe" / "General.ini"));

    // An active standard whose purge fails ends up deleted, not active.
    const std::int32_t active = Create(L"Tube");
    EXPECT_EQ(registry.PurgeProject(active), eProjectOk);
    EXPECT_EQ(Datafile(), "[DeletedProjects]\r\nVX2D_PRJ_1 = Pipe\r\nVX2D_PRJ_2 = Tube\r\n\r\n"
                          "[General]\r\nLastProjectId = 2\r\n");
}

TEST_F(ProjectRegistryTest, IdsBelowOneAreRefusedBeforeTheDatafileIsRead) {
    // An unreadable datafile would give code 5 if it were opened first.
    fs::create_directories(DatafilePath());
    for (const std::int32_t id : {0, -1}) {
        std::wstring folder = L"x", name;
        std::int32_t newId = 5;
        EXPECT_EQ(registry.GetProjectFolder(id, folder), eProjectInvalidId);
        EXPECT_EQ(folder, L"");
        EXPECT_EQ(registry.CopyProject(id, newId, name), eProjectInvalidId);
        EXPECT_EQ(newId, 0);
        EXPECT_EQ(registry.RenameProject(id, L"New"), eProjectInvalidId);
        EXPECT_EQ(registry.DeleteProject(id), eProjectInvalidId);
        EXPECT_EQ(registry.RecoverProject(id), eProjectInvalidId);
        EXPECT_EQ(registry.PurgeProject(id), eProjectInvalidId);
        EXPECT_EQ(registry.GetProjectName(id, true, true), L"");
    }
    EXPECT_EQ(Listing(Root()), (std::set<std::string>{"ProjectDatafile.ini", "Template"}));
    EXPECT_TRUE(Listing(DatafilePath()).empty());
}

TEST_F(ProjectRegistryTest, UnreadableDatafileGivesCode5) {
    fs::create_directories(DatafilePath());
    MakeFolder("VX2D_PRJ_1 - A");
    std::wstring folder, name;
    std::int32_t newId = 0;
    EXPECT_EQ(registry.GetProjectFolder(1, folder), eProjectCantOpenDatafile);
    EXPECT_EQ(registry.CopyProject(1, newId, name), eProjectCantOpenDatafile);
    EXPECT_EQ(registry.RenameProject(1, L"New"), eProjectCantOpenDatafile);
    EXPECT_EQ(registry.DeleteProject(1), eProjectCantOpenDatafile);
    EXPECT_EQ(registry.RecoverProject(1), eProjectCantOpenDatafile);
    EXPECT_EQ(registry.PurgeProject(1), eProjectCantOpenDatafile);
    EXPECT_EQ(registry.CheckProjectRegistry(), eProjectCantOpenDatafile);
    EXPECT_EQ(registry.CreateProject({L"B", 0, 1, 0, false}, newId), eProjectCantOpenDatafile);
    EXPECT_EQ(Listing(Projects()), std::set<std::string>{"VX2D_PRJ_1 - A"});
}

TEST_F(ProjectRegistryTest, UnknownStandardGivesCode2AndCopyGives9) {
    const std::string datafile =
        "[General]\r\nLastProjectId = 1\r\n\r\n[ProjectList]\r\nVX2D_PRJ_1 = A\r\n";
    SetDatafile(datafile);
    MakeFolder("VX2D_PRJ_1 - A");
    std::int32_t newId = 0;
    std::wstring name, folder;
    EXPECT_EQ(registry.DeleteProject(5), eProjectCantFind);
    EXPECT_EQ(registry.RecoverProject(5), eProjectCantFind);
    EXPECT_EQ(registry.PurgeProject(5), eProjectCantFind);
    EXPECT_EQ(registry.RenameProject(5, L"New"), eProjectCantFind);
    EXPECT_EQ(registry.CopyProject(5, newId, name), eProjectInvalidName);
    EXPECT_EQ(registry.GetProjectFolder(5, folder), eProjectCantGetLocationFolder);
    EXPECT_EQ(Datafile(), datafile);
    EXPECT_EQ(Listing(Projects()), std::set<std::string>{"VX2D_PRJ_1 - A"});
}

TEST_F(ProjectRegistryTest, GetProjectFolderMovesOldAndForeignFoldersToTheirNames) {
    const std::string datafile = "[DeletedProjects]\r\nVX2D_PRJ_4 = Ortho\r\n\r\n[ProjectList]\r\n"
                                 "VX2D_PRJ_3 = Pipe\r\nVX2D_PRJ_5 = No folder\r\n";
    SetDatafile(datafile);
    MakeFolder("VX2D_PRJ_3", "three");
    MakeFolder("VX2D_PRJ_4 - Other", "four");
    MakeFolder("VX2D_PRJ_6 - Unlisted", "six");
    // The id, and the folder afterwards with its marker (none: not found).
    const std::tuple<std::int32_t, std::string, std::string> cases[] = {
        {3, "VX2D_PRJ_3 - Pipe", "three"},   {3, "VX2D_PRJ_3 - Pipe", "three"},
        {4, "VX2D_PRJ_4 - Ortho", "four"},   {5, "", ""},
        {6, "VX2D_PRJ_6 - Unlisted", "six"}, {7, "", ""},
    };
    for (const auto& [id, label, marker] : cases) {
        std::wstring folder = L"x";
        EXPECT_EQ(registry.GetProjectFolder(id, folder),
                  label.empty() ? eProjectCantGetLocationFolder : eProjectOk)
            << id;
        EXPECT_EQ(folder,
                  label.empty() ? L"" : FolderText(std::wstring(label.begin(), label.end())));
        if (!label.empty()) {
            EXPECT_EQ(ReadBytes(Projects() / label / "Marker.txt"), marker);
        }
    }
    EXPECT_EQ(Listing(Projects()), (std::set<std::string>{"VX2D_PRJ_3 - Pipe", "VX2D_PRJ_4 - Ortho",
                                                          "VX2D_PRJ_6 - Unlisted"}));
    EXPECT_EQ(Datafile(), datafile);
}

TEST_F(ProjectRegistryTest, CheckProjectRegistryRebuildsTheListsFromTheFolders) {
    // The datafile before (nullptr: none), the folders, the datafile after
    // and the repairs as "kind id name" lines.
    const std::tuple<const char*, std::vector<std::string>, const char*, std::string> cases[] = {
        {"[DeletedProjects]\r\nVX2D_PRJ_5 = Gone\r\nVX2D_PRJ_6 = Old\r\n\r\n[General]\r\n"
         "LastProjectId = 2\r\n\r\n"
         "[ProjectList]\r\nVX2D_PRJ_1 = Kept\r\nVX2D_PRJ_15 = Lost\r\n",
         {"VX2D_PRJ_1 - Kept", "VX2D_PRJ_5 - Gone", "VX2D_PRJ_9 - Site A", "VX2D_PRJ_12", "Other"},
         "[DeletedProjects]\r\nVX2D_PRJ_5 = Gone\r\n\r\n[General]\r\nLastProjectId = 15\r\n\r\n"
         "[ProjectList]\r\nVX2D_PRJ_1 = Kept\r\nVX2D_PRJ_12 = Standard 12\r\nVX2D_PRJ_9 = Site "
         "A\r\n",
         "dropped 6 Old (deleted)\ndropped 15 Lost\nregistered 9 Site A\nregistered 12 Standard "
         "12\ncounter 15\n"},
        {nullptr,
         {"VX2D_PRJ_9 - Site A"},
         "[General]\r\nLastProjectId = 9\r\n\r\n[ProjectList]\r\nVX2D_PRJ_9 = Site A\r\n",
         "registered 9 Site A\ncounter 9\n"},
        {"[General]\r\nLastProjectId = 30\r\n",
         {"VX2D_PRJ_9 - Site A"},
         "[General]\r\nLastProjectId = 30\r\n\r\n[ProjectList]\r\nVX2D_PRJ_9 = Site A\r\n",
         "registered 9 Site A\n"},
        {"[General]\r\nLastProjectId = 30\r\n\r\n[ProjectList]\r\nVX2D_PRJ_9 = Site A\r\n",
         {"VX2D_PRJ_9 - Site A"},
         "[General]\r\nLastProjectId = 30\r\n\r\n[ProjectList]\r\nVX2D_PRJ_9 = Site A\r\n",
         ""},
    };
    const auto text = [](const SRegistryRepair& repair) {
        std::wstring lines;
        for (const auto& change : repair.changes) {
            lines += RegistryRepairKindName(change.kind) + L" " + std::to_wstring(change.id);
            if (!change.name.empty())
                lines += L" " + change.name;
            lines += change.deleted ? L" (deleted)\n" : L"\n";
        }
        return platform::ToUtf8(lines);
    };
    for (const auto& [before, folders, after, repairs] : cases) {
        SCOPED_TRACE(after);
        fs::remove_all(Projects());
        fs::remove(DatafilePath());
        if (before)
            SetDatafile(before);
        for (const auto& folder : folders)
            MakeFolder(folder);
        // A file is not a standard's folder.
        WriteBytes(Projects() / "VX2D_PRJ_20 - Notes.txt", "n");
        // Checking only reports and writes nothing.
        SRegistryRepair repair;
        repair.changes.push_back({});
        EXPECT_EQ(registry.CheckProjectRegistry(&repair, true), eProjectOk);
        EXPECT_EQ(text(repair), repairs);
        EXPECT_EQ(fs::exists(DatafilePath()), before != nullptr);
        if (before) {
            EXPECT_EQ(Datafile(), before);
        }
        EXPECT_EQ(registry.CheckProjectRegistry(&repair), eProjectOk);
        EXPECT_EQ(text(repair), repairs);
        EXPECT_EQ(Datafile(), after);
        // A registry in order needs no repair.
        EXPECT_EQ(registry.CheckProjectRegistry(&repair), eProjectOk);
        EXPECT_EQ(text(repair), "");
    }
}

TEST_F(ProjectRegistryTest, DefaultNameReadsTheDatafileAndWritesNothing) {
    EXPECT_EQ(registry.GetDefaultProjectName(), L"Standard 1");
    EXPECT_FALSE(fs::exists(DatafilePath()));
    const std::string datafile = "[DeletedProjects]\r\nVX2D_PRJ_2 = Standard 5\r\n\r\n"
                                 "[General]\r\nLastProjectId = 4\r\n";
    SetDatafile(datafile);
    EXPECT_EQ(registry.GetDefaultProjectName(), L"Standard 6");
    EXPECT_EQ(Datafile(), datafile);
}

TEST_F(ProjectRegistryTest, InvalidNamesAreRefusedBeforeAnythingIsWritten) {
    const std::wstring names[] = {L"a/b", L"  \t ", L"\u20AC", std::wstring(300, L'x')};
    for (const auto& name : names) {
        std::int32_t id = 3;
        EXPECT_EQ(registry.CreateProject({name, 0, 1, 0, false}, id), eProjectInvalidName)
            << name.size();
        EXPECT_EQ(id, 0);
    }
    EXPECT_EQ(Listing(Root()), std::set<std::string>{"Template"});

    const std::int32_t id = Create(L"Pipe");
    const std::string before = Datafile();
    for (const auto& name : names)
        EXPECT_EQ(registry.RenameProject(id, name), eProjectInvalidName) << name.size();
    EXPECT_EQ(Datafile(), before);
    EXPECT_EQ(Listing(Projects()), std::set<std::string>{"VX2D_PRJ_1 - Pipe"});
}

// The registry's bytes and every folder and file below the datafiles folder.
std::string Snapshot(const fs::path& root) {
    std::string text;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        text += fs::relative(entry.path(), root).string() + "\n";
        if (entry.is_regular_file() && entry.path().extension() == ".ini")
            text += ReadBytes(entry.path());
    }
    return text;
}

TEST_F(ProjectRegistryTest, OnAFullDiskNothingIsReportedDoneAndNothingIsHalfDone) {
    const std::int32_t keep = Create(L"Keep");
    const std::int32_t gone = Create(L"Gone");
    ASSERT_EQ(registry.DeleteProject(gone), eProjectOk);
    const std::string before = Snapshot(Root());
    const std::pair<const char*, std::function<EProjectResult()>> operations[] = {
        {"rename", [&] { return registry.RenameProject(keep, L"Renamed"); }},
        {"delete", [&] { return registry.DeleteProject(keep); }},
        {"recover", [&] { return registry.RecoverProject(gone); }},
        {"purge", [&] { return registry.PurgeProject(gone); }},
        {"create",
         [&] {
             std::int32_t id = 0;
             return registry.CreateProject({L"New", 0, 1, 0, false}, id);
         }},
        {"copy",
         [&] {
             std::int32_t id = 0;
             std::wstring name;
             return registry.CopyProject(keep, id, name);
         }},
    };
    for (const auto& [what, operation] : operations) {
        EProjectResult result = eProjectOk;
        {
            const test::CFullDisk full;
            if (!full.Available())
                GTEST_SKIP() << "this system cannot simulate a full disk";
            result = operation();
        }
        EXPECT_NE(result, eProjectOk) << what << " said it was done";
        EXPECT_EQ(Snapshot(Root()), before) << what << " left something half done";
    }
}

TEST_F(ProjectRegistryTest, ANewStandardNeverTakesTheIdOfAnExistingFolder) {
    SetDatafile("[General]\r\nLastProjectId = 2\r\n\r\n[ProjectList]\r\nVX2D_PRJ_2 = Two\r\n");
    MakeFolder("VX2D_PRJ_2 - Two");
    // Left by another installation or a copy by hand, in no list yet.
    MakeFolder("VX2D_PRJ_3 - Imported", "keep me");
    MakeFolder("VX2D_PRJ_4", "keep me too");
    for (const int templateNumber : {-1, 1}) {
        std::int32_t id = 0;
        ASSERT_EQ(registry.CreateProject({L"Imported", 0, templateNumber, 0, false}, id),
                  eProjectOk);
        EXPECT_GE(id, 5) << templateNumber;
    }
    EXPECT_EQ(ReadBytes(Projects() / "VX2D_PRJ_3 - Imported" / "Marker.txt"), "keep me");
    EXPECT_EQ(ReadBytes(Projects() / "VX2D_PRJ_4" / "Marker.txt"), "keep me too");
    EXPECT_EQ(Listing(Projects() / "VX2D_PRJ_3 - Imported"), std::set<std::string>{"Marker.txt"});
}

TEST_F(ProjectRegistryTest, ACheckThatFindsNothingToRepairNeedsNoLock) {
    Create(L"Pipe");
    CVX2D_FileLock::SetWaitLimit(std::chrono::milliseconds(200));
    CVX2D_FileLock other;
    std::thread holder([&] {
        ASSERT_TRUE(other.Acquire(Datafiles().ProjectDatafile()));
        std::this_thread::sleep_for(std::chrono::seconds(1));
        other.Release();
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const std::string before = Datafile();
    EXPECT_EQ(registry.CheckProjectRegistry(), eProjectOk);
    // Something to repair does need it.
    MakeFolder("VX2D_PRJ_7 - Found");
    EXPECT_EQ(registry.CheckProjectRegistry(), eProjectCantOpenDatafile);
    EXPECT_EQ(LastDatafileProblem().kind, EDatafileProblem::Busy);
    EXPECT_EQ(Datafile(), before);
    holder.join();
    CVX2D_FileLock::SetWaitLimit(std::chrono::seconds(20));
    EXPECT_EQ(registry.CheckProjectRegistry(), eProjectOk);
    EXPECT_NE(Datafile().find("VX2D_PRJ_7 = Found"), std::string::npos);
}

TEST_F(ProjectRegistryTest, AMissingDatafilesFolderIsReportedAndNeverMade) {
    const fs::path away = Root() / "share-away";
    const CVX2D_Datafiles missing(platform::FromPath(away));
    CVX2D_ProjectRegistry projects(missing, prompter);
    CVX2D_ClientRegistry clients(missing);
    std::int32_t id = 0;
    std::wstring name;
    EXPECT_EQ(projects.CreateProject({L"Pipe", 0, -1, 0, false}, id), eProjectCantOpenDatafile);
    EXPECT_EQ(LastDatafileProblem().kind, EDatafileProblem::Missing);
    EXPECT_FALSE(clients.CreateClient(id, name));
    EXPECT_FALSE(fs::exists(away));
}

// Two workstations on one folder, each with its registry object and so its
// own snapshot: a change made by one is never undone by the other's
// snapshot, whatever the order of their lookups and changes.
TEST_F(ProjectRegistryTest, AnotherWorkstationsChangesSurviveTheSnapshot) {
    CVX2D_ProjectRegistry other(Datafiles(), prompter);
    const std::int32_t pipe = Create(L"Pipe");
    EXPECT_EQ(other.GetProjectName(pipe, true, false), L"Pipe"); // other's snapshot
    ASSERT_EQ(registry.RenameProject(pipe, L"Pipe 2"), eProjectOk);
    std::int32_t tank = 0;
    ASSERT_EQ(other.CreateProject({L"Tank", 0, 1, 0, false}, tank), eProjectOk);
    // This side kept its own save as its snapshot: the file changed since.
    EXPECT_EQ(registry.GetProjectName(tank, true, false), L"Tank");
    ASSERT_EQ(registry.RenameProject(tank, L"Tank 2"), eProjectOk);
    ASSERT_EQ(other.RenameProject(pipe, L"Pipe 3"), eProjectOk);
    for (const CVX2D_ProjectRegistry* side : {&registry, &other}) {
        EXPECT_EQ(side->GetProjectName(pipe, true, false), L"Pipe 3");
        EXPECT_EQ(side->GetProjectName(tank, true, false), L"Tank 2");
    }
    const std::string bytes = Datafile();
    EXPECT_NE(bytes.find("Pipe 3"), std::string::npos);
    EXPECT_NE(bytes.find("Tank 2"), std::string::npos);
}

} // namespace project_registry_test
