// Specs as things of their own: the folders, the register, the standards'
// "Specs.ini" and the applications' destinations after each operation, every
// result code with its cause, and nothing out of step after a failure.
#include "contents/SpecRegister.h"
#include "datafile/IniFile.h"
#include "platform/Utf8.h"
#include "store/FolderTree.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace spec_register_test {

// A folder service whose steps fail when told, as on a share.
class CFailingTree : public CVX2D_FolderTree {
public:
    using CVX2D_FolderTree::CVX2D_FolderTree;
    bool failMake = false, failCopy = false, failDelete = false;
    bool MakeFolder(const std::wstring& folder) override {
        return !failMake && CVX2D_FolderTree::MakeFolder(folder);
    }
    bool CopyTree(const std::wstring& from, const std::wstring& to,
                  const CProgress& progress) override {
        return !failCopy && CVX2D_FolderTree::CopyTree(from, to, progress);
    }
    bool DeleteTree(const std::wstring& folder) override {
        return !failDelete && CVX2D_FolderTree::DeleteTree(folder);
    }
};

// Standards 1 "Pipe" (of client 1) and 2 "Other" with folders, 3 "Gone"
// without; clients 1 and 2. The registry tells the specs of standards'
// copies, renames and purges.
struct SSpecWorld : test::CStandardOnDisk {
    SSpecWorld() {
        ListStandardsWithClients();
        // Copies get ids after those listed.
        UpdateDatafile(Datafiles().ProjectDatafile(), [](CVX2D_IniFile& ini) {
            ini.SetSection(L"General");
            ini.SetLong(L"LastProjectId", 3);
            return true;
        });
        registry.SetFolderTree(&tree);
        registry.SetContents(&specs);
    }
    fs::path Register() const { return Root() / "SpecDatafile.ini"; }
    fs::path Destinations() const { return Root() / "SpecDestinationDatafile.ini"; }
    fs::path Common() const { return Root() / "Specs" / "Common"; }
    fs::path OfClient(int id) const {
        return Root() / "Specs" / ("VX2D_CLIENT_" + std::to_string(id));
    }
    std::int32_t Make(const wchar_t* name, SSpecPlace place = {}) {
        std::int32_t id = 0;
        EXPECT_EQ(specs.CreateSpec(name, place, id), eSpecOk) << test::P(name);
        return id;
    }
    // Every file and folder below the datafiles folder and every file's
    // bytes; the lock files are the engine's business.
    std::string Snapshot() const {
        std::string text;
        for (const auto& entry : fs::recursive_directory_iterator(Root())) {
            const std::string name = entry.path().filename().string();
            if (name.ends_with(".lock"))
                continue;
            text += entry.path().lexically_relative(Root()).generic_string() + "\n";
            if (entry.is_regular_file())
                text += ReadBytes(entry.path()) + "\n";
        }
        return text;
    }

    CFailingTree tree{prompter};
    CVX2D_SpecDestinations destinations{Datafiles()};
    CVX2D_SpecRegister specs{registry, destinations};
};

class SpecRegisterTest : public ::testing::Test, protected SSpecWorld {};

TEST_F(SpecRegisterTest, SpecsAreMadeCheckedAndFoundWhereTheirScopeKeepsThem) {
    EXPECT_EQ(Make(L" CS150 "), 1);
    EXPECT_EQ(Make(L"SS300", {eSpecClient, 1}), 2);
    EXPECT_EQ(Make(L"Vents", {eSpecProject, 1}), 3);
    // A client's variant may keep the common spec's name.
    EXPECT_EQ(Make(L"CS150", {eSpecClient, 1}), 4);
    for (const auto& folder : {Common() / "VX2D_SPEC_1", OfClient(1) / "VX2D_SPEC_2",
                               Folder() / "VX2D_SPEC_3", OfClient(1) / "VX2D_SPEC_4"})
        EXPECT_TRUE(fs::is_directory(folder)) << folder;
    EXPECT_EQ(ReadBytes(Register()),
              "[ClientSpecs]\r\nVX2D_SPEC_2 = VX2D_CLIENT_1\r\nVX2D_SPEC_4 = VX2D_CLIENT_1\r\n\r\n"
              "[General]\r\nLastSpecId = 4\r\n\r\n"
              "[ProjectSpecs]\r\nVX2D_SPEC_3 = VX2D_PRJ_1\r\n\r\n"
              "[SpecList]\r\nVX2D_SPEC_1 = CS150\r\nVX2D_SPEC_2 = SS300\r\nVX2D_SPEC_3 = Vents\r\n"
              "VX2D_SPEC_4 = CS150\r\n");
    // The standard keeps its own specs' names, for its export.
    EXPECT_EQ(Read("Specs.ini"), "[ProjectSpecs]\r\nVX2D_SPEC_3 = Vents\r\n");

    const std::tuple<std::int32_t, std::int32_t, ESpecResult> checks[] = {
        {1, 1, eSpecOk},       {1, 2, eSpecOk},       {1, 3, eSpecOk},
        {2, 1, eSpecOk},       {2, 2, eSpecCantFind}, // another client's
        {2, 3, eSpecCantFind},                        // another standard's
    };
    for (const auto& [standard, spec, result] : checks)
        EXPECT_EQ(specs.CheckSpec(standard, spec), result) << standard << " checks " << spec;
    EXPECT_EQ(ReadBytes(Destinations()),
              "[VX2D_PRJ_1]\r\nVX2D_SPEC_1 = Specs\\Common\\VX2D_SPEC_1\\\r\n"
              "VX2D_SPEC_2 = Specs\\VX2D_CLIENT_1\\VX2D_SPEC_2\\\r\n"
              "VX2D_SPEC_3 = Projects\\VX2D_PRJ_1 - Pipe\\VX2D_SPEC_3\\\r\n\r\n"
              "[VX2D_PRJ_2]\r\nVX2D_SPEC_1 = Specs\\Common\\VX2D_SPEC_1\\\r\n");
    ASSERT_EQ(specs.UncheckSpec(2, 1), eSpecOk);
    CSpecDestinationMap read;
    ASSERT_TRUE(destinations.Read(read));
    EXPECT_EQ(read.size(), 1u) << "a standard that checks nothing has no section";

    std::vector<SSpecInfo> offered;
    ASSERT_EQ(specs.SpecsFor(2, offered), eSpecOk);
    ASSERT_EQ(offered.size(), 1u);
    EXPECT_EQ(offered[0].name, L"CS150");
    std::wstring folder;
    ASSERT_EQ(specs.SpecFolder(3, folder), eSpecOk);
    EXPECT_EQ(test::P(folder), Folder() / "VX2D_SPEC_3" / "");
}

TEST_F(SpecRegisterTest, RenameMoveCopyAndDeleteCarryTheirFoldersAndTheChecks) {
    Make(L"CS150");
    Make(L"SS300", {eSpecClient, 1});
    Make(L"Vents", {eSpecProject, 1});
    for (const auto& [standard, spec] : {std::pair{1, 1}, {1, 2}, {1, 3}, {2, 1}})
        ASSERT_EQ(specs.CheckSpec(standard, spec), eSpecOk);
    WriteBytes(OfClient(1) / "VX2D_SPEC_2" / "SS300.dwg", "drawing");

    // Rename: the register and every standard that checked it.
    ASSERT_EQ(specs.RenameSpec(1, L"CS150 Carbon"), eSpecOk);
    EXPECT_EQ(ReadBytes(FolderOf(2) / "Specs.ini"), "[SpecList]\r\nVX2D_SPEC_1 = CS150 Carbon\r\n");

    // Move to client 1: Other, of no client, loses its check once it says Yes.
    prompter.answers = {EPromptAnswer::No, EPromptAnswer::Yes};
    EXPECT_EQ(specs.MoveSpec(1, {eSpecClient, 1}), eSpecCancelled);
    EXPECT_TRUE(fs::is_directory(Common() / "VX2D_SPEC_1"));
    EXPECT_EQ(specs.MoveSpec(1, {eSpecClient, 1}), eSpecOk);
    ASSERT_EQ(prompter.asked.size(), 2u);
    EXPECT_EQ(prompter.asked[1].text,
              L"Spec 'CS150 Carbon' is checked by this standard, which cannot use it once it "
              L"belongs to client 'Client 1':\n\nOther\n\nMove it and uncheck it there?");
    EXPECT_FALSE(fs::exists(Common() / "VX2D_SPEC_1"));
    EXPECT_TRUE(fs::is_directory(OfClient(1) / "VX2D_SPEC_1"));
    EXPECT_EQ(ReadBytes(FolderOf(2) / "Specs.ini"), "");

    // Copy: a new id, the folder's files, any scope.
    std::int32_t copy = 0;
    ASSERT_EQ(specs.CopySpec(2, L"SS300", {}, copy), eSpecOk);
    EXPECT_EQ(copy, 4);
    EXPECT_EQ(ReadBytes(Common() / "VX2D_SPEC_4" / "SS300.dwg"), "drawing");

    // Delete: asked, naming who checks it; the folder and every trace go.
    prompter.asked.clear();
    prompter.answers = {EPromptAnswer::Yes};
    ASSERT_EQ(specs.DeleteSpec(3), eSpecOk);
    EXPECT_EQ(prompter.asked.at(0).text,
              L"Spec 'Vents' is checked by this standard:\n\nPipe\n\nDelete it and its folder "
              L"for good, and uncheck it there?");
    EXPECT_FALSE(fs::exists(Folder() / "VX2D_SPEC_3"));
    EXPECT_FALSE(fs::exists(Folder() / "VX2D_SPEC_3 (deleted)"));
    prompter.answers = {EPromptAnswer::Yes};
    ASSERT_EQ(specs.DeleteSpec(4), eSpecOk);
    EXPECT_EQ(prompter.asked.at(1).text, L"Delete spec 'SS300' and its folder for good?");
    // Ids are never given twice.
    EXPECT_EQ(Make(L"Drains"), 5);

    EXPECT_EQ(ReadBytes(Register()),
              "[ClientSpecs]\r\nVX2D_SPEC_1 = VX2D_CLIENT_1\r\nVX2D_SPEC_2 = VX2D_CLIENT_1\r\n\r\n"
              "[General]\r\nLastSpecId = 5\r\n\r\n"
              "[SpecList]\r\nVX2D_SPEC_1 = CS150 Carbon\r\nVX2D_SPEC_2 = SS300\r\n"
              "VX2D_SPEC_5 = Drains\r\n");
    EXPECT_EQ(Read("Specs.ini"),
              "[SpecList]\r\nVX2D_SPEC_1 = CS150 Carbon\r\nVX2D_SPEC_2 = SS300\r\n");
    EXPECT_EQ(ReadBytes(Destinations()),
              "[VX2D_PRJ_1]\r\nVX2D_SPEC_1 = Specs\\VX2D_CLIENT_1\\VX2D_SPEC_1\\\r\n"
              "VX2D_SPEC_2 = Specs\\VX2D_CLIENT_1\\VX2D_SPEC_2\\\r\n");
}

TEST(SpecRegisterCodes, EachCodeHasItsCauseAndChangesNothing) {
    struct SCase {
        const char* what;
        std::function<void(SSpecWorld&)> setup;
        std::function<ESpecResult(SSpecWorld&)> operation;
        ESpecResult result;
    };
    std::int32_t id = 0;
    const SCase cases[] = {
        {"a name of blanks",
         {},
         [&](SSpecWorld& w) { return w.specs.CreateSpec(L"  ", {}, id); },
         eSpecInvalidName},
        {"a separator",
         {},
         [](SSpecWorld& w) { return w.specs.RenameSpec(1, L"a/b"); },
         eSpecInvalidName},
        {"the scope has the name, in any case",
         {},
         [&](SSpecWorld& w) { return w.specs.CreateSpec(L"cs150", {}, id); },
         eSpecAlreadyExists},
        {"renamed onto a name",
         {},
         [](SSpecWorld& w) { return w.specs.RenameSpec(3, L"CS150"); },
         eSpecAlreadyExists},
        {"moved where the name is",
         {},
         [](SSpecWorld& w) {
             return w.specs.MoveSpec(4, {eSpecClient, 1}, true);
         },
         eSpecAlreadyExists},
        {"copied onto a name",
         {},
         [&](SSpecWorld& w) { return w.specs.CopySpec(1, L"Drains", {}, id); },
         eSpecAlreadyExists},
        {"a client that is not there",
         {},
         [&](SSpecWorld& w) {
             return w.specs.CreateSpec(L"X", {eSpecClient, 9}, id);
         },
         eSpecCantGetLocationFolder},
        {"a standard without a folder",
         {},
         [&](SSpecWorld& w) {
             return w.specs.CreateSpec(L"X", {eSpecProject, 3}, id);
         },
         eSpecCantGetLocationFolder},
        {"a file where the specs' folder goes",
         [](SSpecWorld& w) { WriteBytes(w.OfClient(2), "x"); },
         [&](SSpecWorld& w) {
             return w.specs.CreateSpec(L"X", {eSpecClient, 2}, id);
         },
         eSpecCantGetLocationFolder},
        {"no such standard",
         {},
         [&](SSpecWorld& w) {
             return w.specs.CreateSpec(L"X", {eSpecProject, 99}, id);
         },
         eSpecInvalidProjectId},
        {"spec id 0",
         {},
         [](SSpecWorld& w) { return w.specs.RenameSpec(0, L"X"); },
         eSpecInvalidId},
        {"no such spec",
         {},
         [](SSpecWorld& w) { return w.specs.DeleteSpec(99, true); },
         eSpecCantFind},
        {"the folder cannot be made", [](SSpecWorld& w) { w.tree.failMake = true; },
         [&](SSpecWorld& w) { return w.specs.CreateSpec(L"X", {}, id); }, eSpecCantCreateFolder},
        {"the folder cannot be copied", [](SSpecWorld& w) { w.tree.failCopy = true; },
         [&](SSpecWorld& w) { return w.specs.CopySpec(2, L"X", {}, id); }, eSpecCantCreateFolder},
        {"a folder in the way",
         [](SSpecWorld& w) { fs::create_directories(w.OfClient(1) / "VX2D_SPEC_1"); },
         [](SSpecWorld& w) {
             return w.specs.MoveSpec(1, {eSpecClient, 1}, true);
         },
         eSpecErrorMovingFolder},
        {"the folder cannot be deleted", [](SSpecWorld& w) { w.tree.failDelete = true; },
         [](SSpecWorld& w) { return w.specs.DeleteSpec(1, true); }, eSpecCantDeleteFolder},
        {"the register is locked for good",
         [](SSpecWorld& w) { fs::create_directories(w.Root() / "SpecDatafile.ini.lock"); },
         [&](SSpecWorld& w) { return w.specs.CreateSpec(L"X", {}, id); }, eSpecCantOpenDatafile},
        {"a standard's file cannot follow a rename",
         [](SSpecWorld& w) { fs::create_directories(w.FolderOf(2) / "Specs.ini.lock"); },
         [](SSpecWorld& w) { return w.specs.RenameSpec(1, L"CS150 Carbon"); },
         eSpecCantOpenDatafile},
        {"the destinations cannot follow a move",
         [](SSpecWorld& w) {
             fs::create_directories(w.Root() / "SpecDestinationDatafile.ini.lock");
         },
         [](SSpecWorld& w) {
             return w.specs.MoveSpec(1, {eSpecClient, 1}, true);
         },
         eSpecCantOpenDatafile},
        {"the destinations cannot follow a delete",
         [](SSpecWorld& w) {
             fs::create_directories(w.Root() / "SpecDestinationDatafile.ini.lock");
         },
         [](SSpecWorld& w) { return w.specs.DeleteSpec(1, true); }, eSpecCantOpenDatafile},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.what);
        // Common 1 "CS150" (checked by Pipe and Other), 3 "Drains" and 4
        // "SS300"; 2 "SS300" of client 1, checked by Pipe.
        SSpecWorld world;
        world.Make(L"CS150");
        world.Make(L"SS300", {eSpecClient, 1});
        world.Make(L"Drains");
        world.Make(L"SS300");
        for (const auto& [standard, spec] : {std::pair{1, 1}, {1, 2}, {2, 1}})
            ASSERT_EQ(world.specs.CheckSpec(standard, spec), eSpecOk);
        if (c.setup)
            c.setup(world);
        const std::string before = world.Snapshot();
        EXPECT_EQ(c.operation(world), c.result);
        EXPECT_EQ(world.Snapshot(), before);
        EXPECT_TRUE(world.prompter.asked.empty());
    }
}

TEST(SpecRegisterCodes, OnAFullDiskANewSpecLeavesNoFolder) {
    SSpecWorld world;
    const std::string before = world.Snapshot();
    std::int32_t id = 0;
    {
        test::CFullDisk full;
        if (!full.Available())
            GTEST_SKIP() << "no file size limit here";
        EXPECT_EQ(world.specs.CreateSpec(L"CS150", {}, id), eSpecCantOpenDatafile);
    }
    EXPECT_EQ(id, 0);
    EXPECT_FALSE(fs::exists(world.Common() / "VX2D_SPEC_1"));
    EXPECT_FALSE(fs::exists(world.Register()));
}

TEST_F(SpecRegisterTest, AStandardsCopyRenameAndPurgeTakeItsOwnSpecsAlong) {
    Make(L"Vents", {eSpecProject, 1});
    Make(L"CS150");
    ASSERT_EQ(specs.CheckSpec(1, 1), eSpecOk);
    ASSERT_EQ(specs.CheckSpec(1, 2), eSpecOk);
    WriteBytes(Folder() / "VX2D_SPEC_1" / "vent.dwg", "v");
    ASSERT_TRUE(UpdateDatafile(platform::FromPath(Folder() / "Specs.ini"), [](CVX2D_IniFile& ini) {
        ini.SetSection(L"LineSpecs - PID");
        ini.SetString(L"VX2D_LINE_1", L"VX2D_SPEC_1,VX2D_SPEC_2");
        return true;
    }));

    // A copy's own spec gets an id of its own, with its folder and checks.
    std::int32_t copy = 0;
    std::wstring name;
    ASSERT_EQ(registry.CopyProject(1, copy, name), eProjectOk);
    ASSERT_EQ(copy, 4);
    const fs::path copied = FolderOf(copy);
    EXPECT_EQ(ReadBytes(copied / "VX2D_SPEC_3" / "vent.dwg"), "v");
    EXPECT_FALSE(fs::exists(copied / "VX2D_SPEC_1"));
    EXPECT_EQ(ReadBytes(copied / "Specs.ini"),
              "[LineSpecs - PID]\r\nVX2D_LINE_1 = VX2D_SPEC_3,VX2D_SPEC_2\r\n\r\n"
              "[ProjectSpecs]\r\nVX2D_SPEC_3 = Vents\r\n\r\n"
              "[SpecList]\r\nVX2D_SPEC_2 = CS150\r\nVX2D_SPEC_3 = Vents\r\n");
    const std::string withCopy =
        "[General]\r\nLastSpecId = 3\r\n\r\n"
        "[ProjectSpecs]\r\nVX2D_SPEC_1 = VX2D_PRJ_1\r\nVX2D_SPEC_3 = VX2D_PRJ_4\r\n\r\n"
        "[SpecList]\r\nVX2D_SPEC_1 = Vents\r\nVX2D_SPEC_2 = CS150\r\nVX2D_SPEC_3 = Vents\r\n";
    EXPECT_EQ(ReadBytes(Register()), withCopy);

    // A renamed standard's own specs are found in its new folder.
    ASSERT_EQ(registry.RenameProject(copy, L"Pump"), eProjectOk);
    std::vector<SSpecDestination> found;
    ASSERT_TRUE(destinations.Read(copy, found));
    EXPECT_EQ(found,
              (std::vector<SSpecDestination>{{2, L"Specs\\Common\\VX2D_SPEC_2\\"},
                                             {3, L"Projects\\VX2D_PRJ_4 - Pump\\VX2D_SPEC_3\\"}}));

    // A copy whose specs cannot be registered is no copy at all.
    fs::create_directories(Root() / "SpecDatafile.ini.lock");
    std::int32_t failed = 0;
    EXPECT_EQ(registry.CopyProject(1, failed, name), eProjectErrorCopyingFolder);
    EXPECT_EQ(failed, 0);
    EXPECT_FALSE(fs::exists(Root() / "Projects" / "VX2D_PRJ_5 - Copy of Pipe"));
    EXPECT_EQ(ReadBytes(Register()), withCopy);
    fs::remove(Root() / "SpecDatafile.ini.lock");

    // A purged standard's own specs leave the register with it.
    ASSERT_EQ(registry.PurgeProject(copy), eProjectOk);
    EXPECT_EQ(
        ReadBytes(Register()),
        "[General]\r\nLastSpecId = 3\r\n\r\n[ProjectSpecs]\r\nVX2D_SPEC_1 = VX2D_PRJ_1\r\n\r\n"
        "[SpecList]\r\nVX2D_SPEC_1 = Vents\r\nVX2D_SPEC_2 = CS150\r\n");
    ASSERT_TRUE(destinations.Read(copy, found));
    EXPECT_TRUE(found.empty());
}

TEST_F(SpecRegisterTest, DestinationsFollowTheFileAndKeepOtherWorkstationsSections) {
    Make(L"CS150");
    ASSERT_EQ(specs.CheckSpec(1, 1), eSpecOk);
    std::vector<SSpecDestination> found;
    ASSERT_TRUE(destinations.Read(1, found));
    ASSERT_EQ(found.size(), 1u);
    // Another workstation's standard 7 arrives in the file.
    WriteBytes(Destinations(),
               ReadBytes(Destinations()) +
                   "\r\n[VX2D_PRJ_7]\r\nVX2D_SPEC_1 = Specs\\Common\\VX2D_SPEC_1\\\r\n");
    CSpecDestinationMap all;
    ASSERT_TRUE(destinations.Read(all));
    EXPECT_EQ(all.size(), 2u);
    ASSERT_EQ(specs.UncheckSpec(1, 1), eSpecOk);
    EXPECT_EQ(ReadBytes(Destinations()),
              "[VX2D_PRJ_7]\r\nVX2D_SPEC_1 = Specs\\Common\\VX2D_SPEC_1\\\r\n");
}

} // namespace spec_register_test
