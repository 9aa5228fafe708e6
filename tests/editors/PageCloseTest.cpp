// Every page editor whose save fails on closing: the page stays open with its
// changes, the user is told which standard could not be saved, and a later
// Apply saves them. A cancelled question keeps the page open as well.
#include "editors/BordersEditor.h"
#include "editors/FileLocationsEditor.h"
#include "editors/GeneralSettingsEditor.h"
#include "editors/LayersEditor.h"
#include "editors/SettingsEditor.h"
#include "editors/SpecsEditor.h"
#include "support/SpecsPageEditor.h"
#include "support/TestSupport.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace fs = std::filesystem;

namespace page_close_test {

using CMakeEditor = std::function<std::unique_ptr<CPageEditor>(
    const CVX2D_ProjectRegistry&, IPrompter&, const std::wstring& datafiles)>;

template <typename Editor, typename Change> CMakeEditor Make(Change change) {
    return [change](const CVX2D_ProjectRegistry& projects, IPrompter& prompter,
                    const std::wstring& datafiles) {
        auto editor = std::make_unique<Editor>(projects, prompter);
        EXPECT_TRUE(change(*editor, datafiles));
        return std::unique_ptr<CPageEditor>(std::move(editor));
    };
}

// How the first location, the datafiles folder under the temporary
// folder, starts in General.ini.
#ifdef _WIN32
constexpr const char* kTempFolderStart = "ELECTRIC = C:\\";
#else
constexpr const char* kTempFolderStart = "ELECTRIC = /";
#endif

struct SCase {
    const char* name;
    const char* file;
    CMakeEditor make;
    const char* saved; // what the file holds once the change is saved
};

const SCase kCases[] = {
    {"general settings", "General.ini",
     Make<CGeneralSettingsEditor>([](CGeneralSettingsEditor& e, const std::wstring&) {
         return e.Open(1) && e.Choose(EGeneralField::DisplayedUnits, 1);
     }),
     "Displayed = 1\r\n"},
    {"file locations", "General.ini",
     Make<CFileLocationsEditor>([](CFileLocationsEditor& e, const std::wstring& datafiles) {
         return e.Open(1) && e.SetFolder(0, datafiles);
     }),
     kTempFolderStart},
    {"border settings", "Borders.ini",
     Make<CBordersEditor>([](CBordersEditor& e, const std::wstring&) {
         return e.Open(1) && e.SetCellText(2, EBorderColumn::LimitsMax, L"30.0,20.0");
     }),
     "C = 30.0,20.0\r\n"},
    {"settings", "PID.ini", Make<CSettingsEditor>([](CSettingsEditor& e, const std::wstring&) {
         return e.Open(1, 2, 4) && e.SetCellText(3, L"3.5");
     }),
     "Variable 145 = 3.500000\r\n"},
    {"layers", "Layers.ini", Make<CLayersEditor>([](CLayersEditor& e, const std::wstring&) {
         return e.Open(1, 2) && e.SetCellText(0, ELayerColumn::Name, L"PROCX");
     }),
     "= PROCX\r\n"},
    {"specs", "Specs.ini", Make<test::CSpecsPageEditor>([](CSpecsEditor& e, const std::wstring&) {
         return e.Open(1) && e.SetChecked(0, true);
     }),
     "VX2D_SPEC_5 = CS150\r\n"},
};

TEST(PageCloseTest, AFailedSaveOnClosingKeepsThePageAndItsChanges) {
    // A folder where the file goes, or where its lock goes: the save cannot
    // put the file there, or cannot start (reading still can).
    for (const char* obstacle : {"", ".lock"}) {
        for (const SCase& c : kCases) {
            SCOPED_TRACE(std::string(c.name) + " blocked at " + c.file + obstacle);
            test::CStandardOnDisk disk;
            test::CScriptedPrompter& prompter = disk.prompter;
            std::int32_t id = 0;
            ASSERT_EQ(disk.registry.CreateProject({L"Pipe", 0, 1, 0, false}, id), eProjectOk);
            test::WriteBytes(disk.Root() / "SpecDatafile.ini",
                             "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\n");
            const std::unique_ptr<CPageEditor> editor =
                c.make(disk.registry, prompter, disk.RootText());
            ASSERT_TRUE(editor->ApplyEnabled());

            const fs::path file = disk.FolderOf(id) / c.file;
            const fs::path blocked = file.string() + obstacle;
            const fs::path aside = file.string() + ".aside";
            if (fs::exists(blocked))
                fs::rename(blocked, aside);
            test::WriteBytes(blocked / "blocker", "x");

            prompter.answers = {EPromptAnswer::Cancel, EPromptAnswer::Yes};
            EXPECT_FALSE(editor->Close());
            EXPECT_EQ(prompter.asked.size(), 1u);
            EXPECT_FALSE(editor->Close());
            ASSERT_EQ(prompter.asked.size(), 3u);
            EXPECT_EQ(prompter.asked[2].icon, EPromptIcon::Stop);
            EXPECT_NE(prompter.asked[2].text.find(L"standard 'Pipe'"), std::wstring::npos)
                << test::P(prompter.asked[2].text);
            // And why: which file could not be read or written, in the system's words.
            const std::string name = c.file;
            const std::wstring fileName(name.begin(), name.end());
            const std::wstring& text = prompter.asked[2].text;
            EXPECT_TRUE(text.find(fileName + L"' could not be written: ") != std::wstring::npos ||
                        text.find(fileName + L"' could not be read: ") != std::wstring::npos)
                << test::P(text);
            EXPECT_TRUE(editor->ApplyEnabled());

            fs::remove_all(blocked);
            if (fs::exists(aside))
                fs::rename(aside, blocked);
            EXPECT_TRUE(editor->Apply());
            EXPECT_NE(test::ReadBytes(file).find(c.saved), std::string::npos);
            EXPECT_FALSE(editor->ApplyEnabled());
        }
    }
}

} // namespace page_close_test
