// The drawings manager: item names, copy, delete, new drawing, rename, the
// backup-state toggle and what opening a drawing would start, checked by the
// files left in the folder and the texts shown to the user.
#include "editors/DrawingsManager.h"
#include "datafile/Text.h"
#include "platform/IniRegistry.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace {

// Standard 1 "Pipe" whose ISOMETRIC drawings live in "dwg/" and templates in
// "tpl/"; the program itself runs from "bin/".
class DrawingsManagerTest : public ::testing::Test {
protected:
    void SetUp() override {
        WriteBytes(dir.Path() / "ProjectDatafile.ini", "[ProjectList]\r\nVX2D_PRJ_1 = Pipe\r\n");
        WriteBytes(Folder() / "General.ini",
                   "[Drawings Location]\r\nISOMETRIC = " + Drawings().string() +
                       "\r\n\r\n[General]\r\nProjectVersion = 2023\r\nTemplatesLocation = " +
                       (dir.Path() / "tpl").string() + "\r\n");
        fs::create_directories(Drawings());
        shell.open = [this](const std::wstring& verb, const std::wstring& target) {
            calls.push_back(verb + L" " + target);
            return true;
        };
        shell.start = [this](const std::wstring& program, const std::wstring& parameters,
                             const std::wstring& folder) {
            calls.push_back(L"start " + program + L" | " + parameters + L" | " + folder);
            return startWorks;
        };
        shell.executablePath = [this] { return exe; };
    }
    fs::path Folder() const { return dir.Path() / "Projects" / "VX2D_PRJ_1 - Pipe"; }
    fs::path Drawings() const { return dir.Path() / "dwg"; }
    // A path under the test's folder, written with "/" between names.
    std::wstring In(std::wstring relative) const {
        std::replace(relative.begin(), relative.end(), L'/', kPathSeparator);
        return dir.Text() + relative;
    }
    void Files(const std::vector<std::string>& names) {
        for (const auto& name : names)
            WriteBytes(Drawings() / name, name);
    }
    std::set<std::string> OnDisk() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(Drawings()))
            names.insert(entry.path().filename().string());
        return names;
    }
    static std::vector<std::wstring> Listed(const std::unique_ptr<CDrawingsManager>& m) {
        return m->List().names;
    }
    std::vector<std::wstring> Shown() const {
        std::vector<std::wstring> texts;
        for (const auto& prompt : prompter.asked)
            texts.push_back(prompt.text);
        return texts;
    }
    std::unique_ptr<CDrawingsManager> Opened() {
        auto opened =
            std::make_unique<CDrawingsManager>(registry, installation, profile, prompter, shell);
        EXPECT_TRUE(opened->Open(1, 3));
        return opened;
    }

    test::CTempDir dir, config;
    CVX2D_Datafiles datafiles{dir.Text()};
    test::CScriptedPrompter prompter;
    CVX2D_ProjectRegistry registry{datafiles, prompter};
    CIniRegistry machine{config.File(L"machine"), config.File(L"user")};
    CInstallation installation{machine};
    CProfile profile{machine};
    SDrawingsShell shell;
    std::vector<std::wstring> calls;
    bool startWorks = true;
    std::wstring exe = In(L"bin/standards-desk");
    CDrawingsManager manager{registry, installation, profile, prompter, SDrawingsShell()};
};

TEST_F(DrawingsManagerTest, ItemsNameDrawingsWithDwgUnlessTheyEndInDwgOrBak) {
    auto m = Opened();
    const std::wstring folder = In(L"dwg/");
    EXPECT_EQ(m->Folder(), folder);
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"A", L"A.dwg"},         {L"A.BAK", L"A.BAK"},           {L"A.Dwg", L"A.Dwg"},
        {L"A.dwt", L"A.dwt.dwg"}, {L"Pump 1.2", L"Pump 1.2.dwg"},
    };
    for (const auto& [item, file] : cases)
        EXPECT_EQ(m->FullName(item), folder + file) << item;
    EXPECT_EQ(m->FullName(L""), L"");
}

TEST_F(DrawingsManagerTest, CopiesTakeTheFirstFreeCopyNumberAndReportEachFile) {
    Files({"Pump.dwg", "Pump (Copy 1).dwg", "A.dwg", "Old.BAK"});
    auto m = Opened();
    std::vector<std::wstring> progress;
    const auto made = m->Copy({L"Pump.dwg", L"A", L"Old.BAK"},
                              [&](int n, int count, const std::wstring& s, const std::wstring& t) {
                                  progress.push_back(CopyProgressText(n, count, s, t));
                                  return true;
                              });
    const std::wstring f = In(L"dwg/");
    EXPECT_EQ(progress, (std::vector<std::wstring>{
                            L"Copying file 1 of 3\n" + f + L"Pump.dwg\n" + f + L"Pump (Copy 2).dwg",
                            L"Copying file 2 of 3\n" + f + L"A.dwg\n" + f + L"A (Copy 1).dwg",
                            L"Copying file 3 of 3\n" + f + L"Old.BAK\n" + f + L"Old (Copy 1).BAK",
                        }));
    EXPECT_EQ(made.size(), 3u);
    EXPECT_EQ(ReadBytes(Drawings() / "Pump (Copy 2).dwg"), "Pump.dwg");
    // The list is filled again: the drawings, by name, without the backups.
    EXPECT_EQ(Listed(m),
              (std::vector<std::wstring>{L"A (Copy 1).dwg", L"A.dwg", L"Pump (Copy 1).dwg",
                                         L"Pump (Copy 2).dwg", L"Pump.dwg"}));
    EXPECT_TRUE(prompter.asked.empty());

    // A drawing gone from the folder stops the batch with a message.
    EXPECT_TRUE(m->Copy({L"Gone", L"A"}).empty());
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].text.rfind(L"Error copying file '" + f + L"Gone.dwg' to '" + f +
                                               L"Gone (Copy 1).dwg'.\n\n",
                                           0),
              0u);
    EXPECT_EQ(m->CopyFiles({L"a", L"b"}, {L"c"}, {}), 0u);
    EXPECT_EQ(Shown().back(), L"Source and destination file arrays are not the same size");
    EXPECT_EQ(OnDisk().size(), 7u);
}

TEST_F(DrawingsManagerTest, DeleteAsksOnceAndUnlistsOnlyWhatWasDeleted) {
    Files({"A.dwg", "B.dwg", "C.dwg"});
    auto m = Opened();
    fs::remove(Drawings() / "B.dwg"); // deleted behind the list's back
    const std::pair<EPromptAnswer, std::vector<std::wstring>> runs[] = {
        {EPromptAnswer::No, {}}, {EPromptAnswer::Yes, {L"A.dwg", L"C.dwg"}}};
    for (const auto& [answer, deleted] : runs) {
        prompter.asked.clear();
        prompter.answers = {answer};
        EXPECT_EQ(m->Delete({L"A.dwg", L"B.dwg", L"C.dwg"}), deleted);
        ASSERT_EQ(prompter.asked.size(), 1u);
        EXPECT_EQ(prompter.asked[0].text, L"Are you sure you want to delete these "
                                          L"drawings?\n\nA.dwg\nB.dwg\nC.dwg\n");
        EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Exclamation);
        EXPECT_EQ(prompter.asked[0].buttons, EPromptButtons::YesNo);
        EXPECT_EQ(prompter.asked[0].defaultAnswer, EPromptAnswer::No);
    }
    EXPECT_TRUE(OnDisk().empty());
    EXPECT_EQ(Listed(m), std::vector<std::wstring>{L"B.dwg"});
}

TEST_F(DrawingsManagerTest, NewDrawingCopiesTheTemplateToTheFirstFreeDrawingNumber) {
    WriteBytes(dir.Path() / "bin" / "acad.dwt", "acad template");
    WriteBytes(dir.Path() / "tpl" / "iso.dwt", "iso template");
    struct SCase {
        const char* variable44; // nullptr: no settings file, "acad"
        std::wstring exe;
        std::wstring made;
        std::string bytes;
        std::wstring message;
    };
    const std::wstring tpl = In(L"tpl/");
    const SCase cases[] = {
        {nullptr, exe, L"Drawing3.dwg", "acad template", L""},
        {"iso", exe, L"Drawing3.dwg", "iso template", L""},
        {nullptr, L"standards-desk", L"", "", L"Error getting current folder:\nstandards-desk"},
        {nullptr, In(L"elsewhere/prog"), L"", "",
         L"Error finding drawing template:\n" + In(L"elsewhere/acad.dwt")},
        {"ACAD", exe, L"", "", L"Error finding drawing template:\n" + tpl + L"ACAD.dwt"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.bytes + " " + (c.variable44 ? c.variable44 : "acad"));
        fs::remove_all(Drawings());
        Files({"Drawing1.dwg", "Drawing2.dwg"});
        fs::remove(Folder() / "ISOMETRIC.ini");
        if (c.variable44)
            WriteBytes(Folder() / "ISOMETRIC.ini",
                       std::string("[Settings]\r\nVariable 044 = ") + c.variable44 + "\r\n");
        exe = c.exe;
        prompter.asked.clear();
        auto m = Opened();
        std::vector<std::wstring> progress;
        EXPECT_EQ(
            m->NewDrawing([&](int n, int count, const std::wstring& s, const std::wstring& t) {
                progress.push_back(CopyProgressText(n, count, s, t));
                return true;
            }),
            c.made);
        if (c.made.empty()) {
            EXPECT_EQ(Shown(), std::vector<std::wstring>{c.message});
            EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Stop);
            EXPECT_EQ(OnDisk().size(), 2u);
            continue;
        }
        EXPECT_TRUE(prompter.asked.empty());
        EXPECT_EQ(ReadBytes(Drawings() / "Drawing3.dwg"), c.bytes);
        EXPECT_EQ(progress.size(), 1u);
        EXPECT_EQ(Listed(m),
                  (std::vector<std::wstring>{L"Drawing1.dwg", L"Drawing2.dwg", L"Drawing3"}));
        EXPECT_EQ(m->List().sizes[2], L"0 KB");
        EXPECT_EQ(m->EditingItem(), L"Drawing3");
    }
}

TEST_F(DrawingsManagerTest, RenameRefusesTakenEmptyAndInvalidNames) {
    struct SCase {
        const wchar_t* item;
        const wchar_t* typed;
        bool kept;
        const wchar_t* message;
        std::set<std::string> after;
    };
    const SCase cases[] = {
        {L"Pump.dwg", L"Main", true, L"", {"Main.dwg", "Valve.dwg", "Old.bak"}},
        {L"Old.bak", L"Older", true, L"", {"Pump.dwg", "Valve.dwg", "Older.bak"}},
        {L"Pump.dwg", L"Pump.dwg", false, L"", {"Pump.dwg", "Valve.dwg", "Old.bak"}},
        {L"Pump.dwg",
         L"Valve.dwg",
         false,
         L"Error renaming drawing 'Pump.dwg'.\n\nA file named 'Valve.dwg' already exists.",
         {"Pump.dwg", "Valve.dwg", "Old.bak"}},
        {L"Pump.dwg",
         L"Valve",
         false,
         L"Error renaming drawing 'Pump.dwg'.\n\nA file named 'Valve.dwg' already exists.",
         {"Pump.dwg", "Valve.dwg", "Old.bak"}},
        {L"Pump.dwg",
         L"  ",
         false,
         L"Error renaming drawing 'Pump.dwg'.\n\nThe new name is empty.",
         {"Pump.dwg", "Valve.dwg", "Old.bak"}},
        {L"Pump.dwg",
         L"a|b",
         false,
         L"Error renaming drawing 'Pump.dwg'.\n\n'a|b' is not a valid file name.",
         {"Pump.dwg", "Valve.dwg", "Old.bak"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        fs::remove_all(Drawings());
        Files({"Pump.dwg", "Valve.dwg", "Old.bak"});
        prompter.asked.clear();
        auto m = Opened();
        EXPECT_EQ(m->Rename(c.item, c.typed), c.kept);
        EXPECT_EQ(Shown(), c.message[0] ? std::vector<std::wstring>{c.message}
                                        : std::vector<std::wstring>{});
        EXPECT_EQ(OnDisk(), c.after);
    }
}

TEST_F(DrawingsManagerTest, TheBackupStateTogglesBetweenZeroAndEight) {
    Files({"A.dwg", "A.bak"});
    auto m = Opened();
    EXPECT_EQ(Listed(m), std::vector<std::wstring>{L"A.dwg"});
    m->ToggleBackupState();
    EXPECT_EQ(machine.Read(ERegistryRoot::CurrentUser, CProfile::KeyOf(L"Drawings"),
                           L"BackupDrawingState"),
              L"8");
    EXPECT_EQ(Listed(m), std::vector<std::wstring>{L"A.bak"});
    m->ToggleBackupState();
    EXPECT_EQ(machine.Read(ERegistryRoot::CurrentUser, CProfile::KeyOf(L"Drawings"),
                           L"BackupDrawingState"),
              L"0");
    EXPECT_EQ(Listed(m), std::vector<std::wstring>{L"A.dwg"});
}

TEST_F(DrawingsManagerTest, AStandardWithoutADrawingsFolderSaysWhereToSetIt) {
    WriteBytes(Folder() / "General.ini", "[General]\r\nProjectVersion = 2023\r\n");
    EXPECT_FALSE(manager.Open(1, 3));
    EXPECT_EQ(Shown(), std::vector<std::wstring>{
                           L"Please select a folder for your drawings under the Folder settings"});
    EXPECT_EQ(manager.NewDrawing(), L"");
    EXPECT_EQ(Shown().size(), 2u);
}

TEST_F(DrawingsManagerTest, OpeningUsesTheLauncherOnlyWhenEverythingIsInPlace) {
    Files({"Pump.dwg"});
    const std::wstring net = In(L"net/");
    const std::wstring common = In(L"net/Crafter/Common/");
    const std::wstring desktop = In(L"desk/");
    const std::wstring file = In(L"dwg/Pump.dwg");
    WriteBytes(dir.Path() / "net" / "Crafter" / "Common" / "VANDIX 2D.exe", "x");
    WriteBytes(dir.Path() / "desk" / "ISOMETRIC.lnk", "x");
    const std::wstring shellFolders =
        L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
    const std::wstring launched = L"start " + common +
                                  L"VANDIX 2D.exe | ISOMETRIC ProjectId=1 "
                                  L"DrawingName=\"" +
                                  file + L"\" | " + common;
    struct SCase {
        const char* name;
        std::vector<std::tuple<ERegistryRoot, std::wstring, std::wstring, std::wstring>> values;
        bool starts;
        std::vector<std::wstring> calls;
    };
    using R = ERegistryRoot;
    const std::wstring product = CInstallation::kInstallKey;
    const auto everything = std::vector<std::tuple<R, std::wstring, std::wstring, std::wstring>>{
        {R::LocalMachine, product, L"AutoCADRelease", L"R24.0"},
        {R::LocalMachine, product, L"AutoCADVersion", L"ACAD-4101:409"},
        {R::LocalMachine, product, L"NetworkAppPath", net},
        {R::CurrentUser, shellFolders, L"Desktop", desktop}};
    auto without = [&](std::size_t index) {
        auto values = everything;
        values.erase(values.begin() + static_cast<std::ptrdiff_t>(index));
        return values;
    };
    const SCase cases[] = {
        {"all in place", everything, true, {launched}},
        {"launcher fails", everything, false, {launched, L"open " + file}},
        {"no release", without(0), true, {L"open " + file}},
        {"no version", without(1), true, {L"open " + file}},
        {"no network path", without(2), true, {L"open " + file}},
        {"no desktop", without(3), true, {L"open " + file}},
        {"release from AutoCAD",
         {{R::CurrentUser, L"Software\\Autodesk\\AutoCAD", L"CurVer", L"R23.1"},
          {R::CurrentUser, L"Software\\Autodesk\\AutoCAD\\R23.1", L"CurVer", L"ACAD-6101:409"},
          {R::LocalMachine, product, L"NetworkAppPath", net},
          {R::LocalMachine, shellFolders, L"Common Desktop", desktop}},
         true,
         {launched}},
        {"release too old",
         {{R::CurrentUser, L"Software\\Autodesk\\AutoCAD", L"CurVer", L"R19.1"},
          {R::CurrentUser, L"Software\\Autodesk\\AutoCAD\\R19.1", L"CurVer", L"ACAD-B001:409"},
          {R::LocalMachine, product, L"NetworkAppPath", net},
          {R::LocalMachine, shellFolders, L"Common Desktop", desktop}},
         true,
         {L"open " + file}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fs::remove_all(config.Path());
        for (const auto& [root, key, name, value] : c.values)
            machine.SetString(root, key, name, value);
        startWorks = c.starts;
        calls.clear();
        auto m = Opened();
        m->OpenDrawing(L"Pump");
        EXPECT_EQ(calls, c.calls);
    }
    // Without the shortcut or the program the file is opened directly.
    for (const char* missing : {"desk/ISOMETRIC.lnk", "net/Crafter/Common/VANDIX 2D.exe"}) {
        fs::remove(dir.Path() / missing);
        EXPECT_EQ(Opened()->OpenDecision(L"Pump").kind, SDrawingLaunch::eShellOpen) << missing;
    }
    calls.clear();
    auto m = Opened();
    EXPECT_EQ(m->OpenDrawing(L"").kind, SDrawingLaunch::eNothing);
    EXPECT_TRUE(m->OpenFolder());
    EXPECT_EQ(calls, std::vector<std::wstring>{L"explore " + In(L"dwg/")});
}

} // namespace
