// The drawings manager: item names, copy, delete, new drawing, rename, the
// backup-state toggle and what opening a drawing would start, checked by the
// files left in the folder and the texts shown to the user.
#include "editors/DrawingsManager.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "store/IniRegistry.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <set>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace drawings_manager_test {

// Standard 1 "Pipe" whose ISOMETRIC drawings live in "dwg/" and templates in
// "tpl/"; the program itself runs from "bin/".
class DrawingsManagerTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandards();
        WriteBytes(Folder() / "General.ini",
                   "[Drawings Location]\r\nISOMETRIC = " + Drawings().string() +
                       "\r\n\r\n[General]\r\nProjectVersion = 2023\r\nTemplatesLocation = " +
                       (Root() / "tpl").string() + "\r\n");
        fs::create_directories(Drawings());
        shell.open = [this](const std::wstring& verb, const std::wstring& target) {
            calls.push_back(verb + L" " + target);
            return openWorks;
        };
        shell.start = [this](const std::wstring& program, const std::wstring& parameters,
                             const std::wstring& folder) {
            calls.push_back(L"start " + program + L" | " + parameters + L" | " + folder);
            return startWorks;
        };
        shell.executablePath = [this] { return exe; };
    }
    fs::path Drawings() const { return Root() / "dwg"; }
    // A path under the test's folder, written with "/" between names.
    std::wstring In(std::wstring relative) const {
        std::replace(relative.begin(), relative.end(), L'/', kPathSeparator);
        return RootText() + relative;
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
        const SDrawingList& list = m->List();
        // Every column stays in step with the names.
        for (const std::size_t size :
             {list.sizes.size(), list.dates.size(), list.bytes.size(), list.times.size()})
            EXPECT_EQ(size, list.names.size());
        return list.names;
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

    test::CTempDir config;
    CIniRegistry machine{config.File(L"machine"), config.File(L"user")};
    CInstallation installation{machine};
    CProfile profile{machine};
    SDrawingsShell shell;
    std::vector<std::wstring> calls;
    bool startWorks = true;
    bool openWorks = true;
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
    ASSERT_EQ(progress.size(), 3u);
    EXPECT_EQ(progress[0], L"Copying file 1 of 3\n" + f + L"Pump.dwg\n" + f + L"Pump (Copy 2).dwg");
    EXPECT_EQ(made.size(), 3u);
    EXPECT_EQ(ReadBytes(Drawings() / "Pump (Copy 2).dwg"), "Pump.dwg");
    EXPECT_EQ(ReadBytes(Drawings() / "Old (Copy 1).BAK"), "Old.BAK");
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
    WriteBytes(Root() / "bin" / "acad.dwt", "acad template");
    WriteBytes(Root() / "tpl" / "iso.dwt", "iso template");
    // An installed program: /usr/bin beside nothing, the data in /usr/share.
    const std::wstring installed = In(L"usr/bin/standards-desk");
    WriteBytes(Root() / "usr" / "share" / "standards-desk" / "acad.dwt", "shipped template");
    // Variable 44 (nullptr: no settings file, "acad"), the program's path, and
    // the new drawing's bytes or the places named in the message instead.
    const std::tuple<const char*, std::wstring, std::string, std::wstring> cases[] = {
        {nullptr, exe, "acad template", L""},
        {"iso", exe, "iso template", L""},
        {nullptr, installed, "shipped template", L""},
        {nullptr, L"standards-desk", "", L""},
        {nullptr, In(L"elsewhere/prog"), "",
         In(L"elsewhere/acad.dwt") + L"\n" + In(L"share/standards-desk/acad.dwt")},
        {"ACAD", exe, "", In(L"tpl/ACAD.dwt")},
    };
    for (const auto& [variable44, program, bytes, places] : cases) {
        SCOPED_TRACE(bytes + " " + (variable44 ? variable44 : "acad"));
        fs::remove_all(Drawings());
        Files({"Drawing1.dwg", "Drawing2.dwg"});
        fs::remove(Folder() / "ISOMETRIC.ini");
        if (variable44)
            WriteBytes(Folder() / "ISOMETRIC.ini",
                       std::string("[Settings]\r\nVariable 044 = ") + variable44 + "\r\n");
        exe = program;
        prompter.asked.clear();
        auto m = Opened();
        EXPECT_EQ(m->NewDrawing(), bytes.empty() ? L"" : L"Drawing3.dwg");
        if (bytes.empty()) {
            ASSERT_EQ(Shown().size(), 1u);
            const std::wstring text = Shown()[0];
            if (places.empty()) {
                EXPECT_EQ(text, L"Error getting current folder:\n" + program);
            } else {
                // Where it looked, then how to choose another template.
                const std::wstring head = L"Error finding drawing template:\n" + places + L"\n\n";
                EXPECT_EQ(text.substr(0, head.size()), head);
                EXPECT_NE(text.find(L"\"Drawing Template\" under General Drawing Parameters"),
                          std::wstring::npos);
                EXPECT_NE(text.find(L"Templates Folder on the File Locations page"),
                          std::wstring::npos);
            }
            EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Stop);
            EXPECT_EQ(OnDisk().size(), 2u);
            continue;
        }
        EXPECT_TRUE(prompter.asked.empty());
        EXPECT_EQ(ReadBytes(Drawings() / "Drawing3.dwg"), bytes);
        EXPECT_EQ(Listed(m),
                  (std::vector<std::wstring>{L"Drawing1.dwg", L"Drawing2.dwg", L"Drawing3"}));
        EXPECT_EQ(m->EditingItem(), L"Drawing3");
    }
}

TEST_F(DrawingsManagerTest, RenameRefusesTakenEmptyAndInvalidNames) {
    const std::set<std::string> files = {"Pump.dwg", "Valve.dwg", "Old.bak"};
    const std::wstring error = L"Error renaming drawing 'Pump.dwg'.\n\n";
    const std::wstring taken = error + L"A file named 'Valve.dwg' already exists.";
    // The item, the typed name, and the file renamed to or the message shown.
    const std::tuple<const wchar_t*, const wchar_t*, const char*, std::wstring> cases[] = {
        {L"Pump.dwg", L"Main", "Main.dwg", L""},
        {L"Old.bak", L"Older", "Older.bak", L""},
        {L"Pump.dwg", L"Pump.dwg", nullptr, L""},
        {L"Pump.dwg", L"Valve.dwg", nullptr, taken},
        {L"Pump.dwg", L"Valve", nullptr, taken},
        {L"Pump.dwg", L"  ", nullptr, error + L"The new name is empty."},
        {L"Pump.dwg", L"a|b", nullptr, error + L"'a|b' is not a valid file name."},
    };
    for (const auto& [item, typed, renamed, message] : cases) {
        SCOPED_TRACE(typed);
        fs::remove_all(Drawings());
        Files(std::vector<std::string>(files.begin(), files.end()));
        prompter.asked.clear();
        auto m = Opened();
        const std::optional<std::wstring> now = m->Rename(item, typed);
        EXPECT_EQ(now, renamed ? std::optional(platform::FromUtf8(renamed)) : std::nullopt);
        EXPECT_EQ(Shown(), message.empty() ? std::vector<std::wstring>{}
                                           : std::vector<std::wstring>{message});
        auto after = files;
        if (renamed) {
            after.erase(platform::ToUtf8(item));
            after.insert(renamed);
        }
        EXPECT_EQ(OnDisk(), after);
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
    WriteBytes(Root() / "net" / "Crafter" / "Common" / "VANDIX 2D.exe", "x");
    WriteBytes(Root() / "desk" / "ISOMETRIC.lnk", "x");
    const std::wstring shellFolders =
        L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
    const std::wstring launched = L"start " + common +
                                  L"VANDIX 2D.exe | ISOMETRIC ProjectId=1 "
                                  L"DrawingName=\"" +
                                  file + L"\" | " + common;
    using R = ERegistryRoot;
    using CValues = std::vector<std::tuple<R, std::wstring, std::wstring, std::wstring>>;
    const std::wstring product = CInstallation::kInstallKey;
    const CValues everything = {{R::LocalMachine, product, L"AutoCADRelease", L"R24.0"},
                                {R::LocalMachine, product, L"AutoCADVersion", L"ACAD-4101:409"},
                                {R::LocalMachine, product, L"NetworkAppPath", net},
                                {R::CurrentUser, shellFolders, L"Desktop", desktop}};
    auto without = [&](std::size_t index) {
        auto values = everything;
        values.erase(values.begin() + static_cast<std::ptrdiff_t>(index));
        return values;
    };
    auto fromAutoCad = [&](const wchar_t* release, const wchar_t* version) {
        const std::wstring key = L"Software\\Autodesk\\AutoCAD";
        return CValues{{R::CurrentUser, key, L"CurVer", release},
                       {R::CurrentUser, key + L"\\" + release, L"CurVer", version},
                       {R::LocalMachine, product, L"NetworkAppPath", net},
                       {R::LocalMachine, shellFolders, L"Common Desktop", desktop}};
    };
    const std::wstring open = L"open " + file;
    // The values, whether the launcher starts, and what was called.
    const std::tuple<const char*, CValues, bool, std::vector<std::wstring>> cases[] = {
        {"all in place", everything, true, {launched}},
        {"launcher fails", everything, false, {launched, open}},
        {"no release", without(0), true, {open}},
        {"no version", without(1), true, {open}},
        {"no network path", without(2), true, {open}},
        {"no desktop", without(3), true, {open}},
        {"release from AutoCAD", fromAutoCad(L"R23.1", L"ACAD-6101:409"), true, {launched}},
        {"release too old", fromAutoCad(L"R19.1", L"ACAD-B001:409"), true, {open}},
    };
    for (const auto& [name, values, starts, expected] : cases) {
        SCOPED_TRACE(name);
        fs::remove_all(config.Path());
        for (const auto& [root, key, value, data] : values)
            machine.SetString(root, key, value, data);
        startWorks = starts;
        calls.clear();
        Opened()->OpenDrawing(L"Pump");
        EXPECT_EQ(calls, expected);
    }
    // Without the shortcut or the program the file is opened directly.
    for (const char* missing : {"desk/ISOMETRIC.lnk", "net/Crafter/Common/VANDIX 2D.exe"}) {
        fs::remove(Root() / missing);
        EXPECT_EQ(Opened()->OpenDecision(L"Pump").kind, SDrawingLaunch::eShellOpen) << missing;
    }
    calls.clear();
    auto m = Opened();
    EXPECT_EQ(m->OpenDrawing(L"").kind, SDrawingLaunch::eNothing);
    EXPECT_TRUE(m->OpenFolder());
    EXPECT_EQ(calls, std::vector<std::wstring>{L"explore " + In(L"dwg/")});
}

TEST_F(DrawingsManagerTest, AFolderOrDrawingThatNothingOpensIsToldToTheUser) {
    Files({"Pump.dwg"});
    auto m = Opened();
    // What is opened, what the message calls it, and the path it names.
    const std::tuple<const char*, std::function<bool()>, std::wstring, std::wstring> cases[] = {
        {"folder", [&] { return m->OpenFolder(); }, L"the folder", In(L"dwg/")},
        {"drawing", [&] { return m->OpenDrawing(L"Pump").kind == SDrawingLaunch::eShellOpen; },
         L"the drawing", In(L"dwg/Pump.dwg")},
    };
    for (const auto& [name, open, what, path] : cases) {
        SCOPED_TRACE(name);
        for (const bool works : {true, false}) {
            openWorks = works;
            prompter.asked.clear();
            calls.clear();
            const bool opened = open();
            EXPECT_EQ(calls.size(), 1u);
            if (works) {
                EXPECT_TRUE(opened);
                EXPECT_TRUE(prompter.asked.empty());
                continue;
            }
            ASSERT_EQ(Shown().size(), 1u);
            const std::wstring head = L"No program could open " + what + L" '" + path + L"'.";
            EXPECT_EQ(Shown()[0].substr(0, head.size()), head);
            EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Exclamation);
        }
    }
    // Without a folder nothing is handed to the desktop, and nothing is said.
    prompter.asked.clear();
    EXPECT_FALSE(manager.OpenFolder());
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(DrawingsManagerTest, TheFolderActionNamesThisSystemsFileManager) {
    const std::wstring text = CDrawingsManager::OpenFolderText();
    EXPECT_EQ(text.rfind(L"Open folder in ", 0), 0u);
    if (kPathSeparator == L'/')
        EXPECT_EQ(text, L"Open folder in the file manager");
    else
        EXPECT_EQ(text, L"Open folder in Windows Explorer");
}

} // namespace drawings_manager_test
