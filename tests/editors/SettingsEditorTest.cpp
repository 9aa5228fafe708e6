// The settings editor: the rows it shows for a section, the choice lists it
// offers, what a changed cell stores, Apply, the question on closing, the
// help topics and the page tree.
#include "editors/SettingsEditor.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace settings_editor_test {

std::wstring Joined(const std::vector<std::wstring>& texts) {
    std::wstring joined;
    for (const auto& text : texts)
        joined += (joined.empty() ? L"" : L"|") + text;
    return joined;
}

// Standard 1 "Pipe" of version 2023 with the units and templates folder
// each test gives it.
class SettingsEditorTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandards();
        Standard(0, 0);
    }
    fs::path Templates() const { return Root() / "tpl"; }
    void Standard(int working, int displayed) {
        WriteBytes(
            Folder() / "General.ini",
            "[General]\r\nProjectVersion = 2023\r\nTemplatesLocation = " + Templates().string() +
                "\r\n\r\n[Units]\r\nDisplayed = " + std::to_string(displayed) +
                "\r\nWorking = " + std::to_string(working) + "\r\n");
    }
    const SSettingsRow& Row(std::int32_t id) const {
        for (const auto& row : editor.Rows()) {
            if (row.variableId == id)
                return row;
        }
        throw std::runtime_error("no row " + std::to_string(id));
    }

    CSettingsEditor editor{registry, prompter};
};

TEST_F(SettingsEditorTest, RowsShowEachKindInItsCell) {
    fs::create_directories(Templates());
    WriteBytes(Templates() / "iso.dwt", "t");
    ASSERT_TRUE(editor.Open(1, 1, 4));
    EXPECT_EQ(editor.Header(), L"ELECTRIC - General Drawing Parameters");
    struct SCase {
        std::int32_t id;
        const wchar_t* label;
        ESettingsCell cell;
        const wchar_t* text;
        const wchar_t* choices;
    };
    const SCase general[] = {
        {173, L"Text Style Name", ESettingsCell::Text, L"STANDARD", L""},
        {168, L"Text Font", ESettingsCell::Font, L"RomanS; Regular; romans__.ttf", L""},
        {145, L"Text Height", ESettingsCell::Text, L"2.5", L""},
        {2, L"Maximum Number of Characters in Balloon Before Breaking", ESettingsCell::Number, L"3",
         L""},
        {44, L"Drawing Template", ESettingsCell::List, L"acad", L"iso|acad"},
        {189, L"Block Folder", ESettingsCell::Path, L"", L""},
    };
    for (const auto& c : general) {
        SCOPED_TRACE(c.id);
        const SSettingsRow& row = Row(c.id);
        EXPECT_EQ(row.label, c.label);
        EXPECT_EQ(row.cell, c.cell);
        EXPECT_EQ(row.text, c.text);
        EXPECT_EQ(Joined(row.choices), c.choices);
        EXPECT_FALSE(row.readOnly || row.subHeading || row.background);
    }
    EXPECT_EQ(editor.Rows().size(), 9u);

    ASSERT_TRUE(editor.Open(1, 1, 3));
    EXPECT_EQ(editor.Header(), L"ELECTRIC - Dimensioning Variables");
    const SSettingsRow& heading = editor.Rows()[1];
    EXPECT_EQ(heading.label, L"Lines and Arrows");
    EXPECT_EQ(heading.text, L"");
    EXPECT_TRUE(heading.subHeading && heading.readOnly);
    EXPECT_EQ(heading.background, (SRgb{212, 208, 200}));
    EXPECT_EQ(Joined(Row(35).choices), L"On|Off");
    EXPECT_EQ(Row(37).text, L"Place Text Above Dim. Line");
    EXPECT_EQ(Joined(Row(37).choices), L"Center Text Between Ext. Lines|Place Text Above Dim. "
                                       L"Line|Place Text on Side of Dim. Line|Conform to JIS "
                                       L"Representation");

    // ELECTRIC has no toggles section; an unknown application opens nothing.
    EXPECT_TRUE(editor.Open(1, 1, 8));
    EXPECT_TRUE(editor.Rows().empty());
    EXPECT_FALSE(editor.Open(1, 5, 4));
    EXPECT_FALSE(editor.Open(7, 1, 4));
}

TEST_F(SettingsEditorTest, DoubleLineSizesFollowTheDisplayedUnits) {
    const std::wstring millimetres =
        L"3mm|5mm|10mm|15mm|20mm|25mm|32mm|40mm|50mm|65mm|80mm|90mm|100mm|125mm|150mm|200mm|"
        L"250mm|300mm|350mm|400mm|450mm|500mm|550mm|600mm|650mm|700mm|750mm|800mm|850mm|900mm|"
        L"950mm|1000mm|1050mm|1100mm|1150mm|1200mm|1300mm|1400mm|1500mm|1600mm|1700mm|1800mm|"
        L"1900mm";
    const std::wstring inches =
        L"1/8\"|1/4\"|3/8\"|1/2\"|3/4\"|1\"|1 1/4\"|1 1/2\"|2\"|2 1/2\"|3\"|3 1/2\"|4\"|5\"|6\"|"
        L"8\"|10\"|12\"|14\"|16\"|18\"|20\"|22\"|24\"|26\"|28\"|30\"|32\"|34\"|36\"|38\"|40\"|"
        L"42\"|44\"|46\"|48\"|52\"|56\"|60\"|64\"|68\"|72\"|76\"";
    EXPECT_EQ(DoubleLineSizes(1).size(), 43u);
    EXPECT_EQ(DoubleLineSizes(2).size(), 43u);
    const std::pair<int, const std::wstring*> cases[] = {
        {0, &millimetres}, {1, &millimetres}, {2, &inches}, {3, &inches}, {7, &inches}};
    for (const auto& [displayed, expected] : cases) {
        SCOPED_TRACE(displayed);
        Standard(displayed == 0 ? 0 : 1, displayed);
        ASSERT_TRUE(editor.Open(1, 4, 4));
        EXPECT_EQ(Joined(Row(169).choices), *expected);
    }
}

TEST_F(SettingsEditorTest, DrawingTemplatesComeFromTheTemplatesFolderWithAcadOnce) {
    struct SCase {
        std::vector<std::string> files;
        const wchar_t* choices;
    };
    const SCase cases[] = {
        {{}, L"acad"},
        {{"iso.dwt"}, L"iso|acad"},
        {{"acad.dwt", "iso.dwt"}, L"acad|iso"},
        {{"ACAD.DWT", "Pipe.Dwt", "notes.txt", "old.dwg", "sub.dwt/"}, L"ACAD|Pipe"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.files));
        fs::remove_all(Templates());
        fs::create_directories(Templates());
        for (const auto& file : c.files) {
            if (file.back() == '/')
                fs::create_directories(Templates() / file);
            else
                WriteBytes(Templates() / file, "t");
        }
        ASSERT_TRUE(editor.Open(1, 3, 4));
        EXPECT_EQ(Joined(Row(44).choices), c.choices);
    }
    EXPECT_TRUE(DrawingTemplateTitles(0, (Templates() / "").wstring()).empty());
}

TEST_F(SettingsEditorTest, ChangedCellsEnableApplyWhichSavesOnlyWhatChanged) {
    ASSERT_TRUE(editor.Open(1, 1, 3));
    EXPECT_FALSE(editor.ApplyEnabled());
    struct SCase {
        std::int32_t id;
        const wchar_t* typed;
        bool stored;
        const wchar_t* shown;
        bool modified;
    };
    const SCase cases[] = {
        {36, L"2.5", true, L"2.5", false}, // the value it already has
        {37, L"Place Text Above Dim. Line", true, L"Place Text Above Dim. Line", false},
        {37, L"Nowhere", false, L"Place Text Above Dim. Line", false},
        {165, L"Renamed", false, L"", false}, // a sub-heading cannot be edited
        {35, L"off", true, L"Off", true},     // "On" exactly, anything else is off
        {28, L"wide", true, L"0.0", true},    // not a number: 0
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        std::size_t index = 0;
        while (editor.Rows()[index].variableId != c.id)
            ++index;
        EXPECT_EQ(editor.SetCellText(index, c.typed), c.stored);
        EXPECT_EQ(editor.Rows()[index].text, c.shown);
        EXPECT_EQ(editor.ApplyEnabled(), c.modified);
    }
    EXPECT_FALSE(fs::exists(Folder() / "ELECTRIC.ini"));
    EXPECT_TRUE(editor.Apply());
    EXPECT_FALSE(editor.ApplyEnabled());
    EXPECT_EQ(ReadBytes(Folder() / "ELECTRIC.ini"),
              "[Settings]\r\nVariable 028 = 0.000000\r\nVariable 035 = 0\r\n");
}

TEST_F(SettingsEditorTest, ClosingAModifiedEditorAsksWhetherToSave) {
    // Yes saves, No discards; an unmodified editor asks nothing.
    const std::pair<EPromptAnswer, bool> answers[] = {{EPromptAnswer::No, false},
                                                      {EPromptAnswer::Yes, true}};
    for (const auto& [answer, saved] : answers) {
        prompter.asked.clear();
        fs::remove(Folder() / "ISOMETRIC.ini");
        ASSERT_TRUE(editor.Open(1, 3, 2));
        EXPECT_EQ(editor.Header(), L"ISOMETRIC - Component Sizing");
        ASSERT_TRUE(editor.SetCellText(0, L"99"));
        prompter.answers = {answer};
        EXPECT_TRUE(editor.Close());
        ASSERT_EQ(prompter.asked.size(), 1u);
        EXPECT_EQ(prompter.asked[0].text, L"Standard 'Pipe' settings have been modified.\n\nDo "
                                          L"you want to save your changes?");
        EXPECT_EQ(prompter.asked[0].buttons, EPromptButtons::YesNo);
        EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Question);
        EXPECT_EQ(ReadBytes(Folder() / "ISOMETRIC.ini").find("= 99.000000") != std::string::npos,
                  saved);
    }
    prompter.asked.clear();
    ASSERT_TRUE(editor.Open(1, 3, 2));
    EXPECT_TRUE(editor.Close());
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(SettingsEditorTest, HelpTopicsFollowTheHelpFilesOwnNames) {
    const std::tuple<int, int, const wchar_t*> cases[] = {
        {1, 3, L"::/Dimensioning_Variables_Dialog_Box.htm"},
        {2, 3, L"::/Dimensioning_Variables_Dialog_Box.htm"},
        {2, 8, L"::/System_Toggles_Dialog_Box_Box.htm"},
        {3, 8, L"::/System_Toggles_Dialog_Box.htm"},
        {3, 2, L"::/Component_Sizing_Dialog_Box.htm"},
        {4, 1, L"::/Civil_Structural_Parameters_Dialog_Box.htm"},
        {4, 6, L"::/Scale_Factors_Dialog_Box3.htm"},
        {1, 1, L""}, // ELECTRIC's civil section has no page
        {1, 0, L""},
        {3, 7, L""},
    };
    for (const auto& [application, section, topic] : cases)
        EXPECT_EQ(SettingsHelpTopic(application, section), topic) << application << " " << section;
}

// "title(icon)" with children in brackets.
std::wstring Render(const std::vector<SSettingsPage>& pages) {
    std::wstring text;
    for (const auto& page : pages) {
        text += page.title + L"(" + std::to_wstring(page.icon) + L")";
        if (!page.children.empty())
            text += L"[" + Render(page.children) + L"]";
        text += L" ";
    }
    return text;
}

TEST(SettingsPageTreeTest, ListsEveryPageAndLeavesOutLinesWhenFlagged) {
    const std::wstring tail =
        L"Specs(1) "
        L"ELECTRIC Settings(6)[General Drawing Parameters(6) Scale Factors(6) Scaling "
        L"Variables(6) Dimensioning Variables(6) Layers(6) ] "
        L"P&ID Settings(7)[General Drawing Parameters(7) System Toggles(7) Scale Factors(7) Bill "
        L"of Material(7) Dimensioning Variables(7) Layers(7) ] "
        L"ISOMETRIC Settings(8)[General Drawing Parameters(8) System Toggles(8) Scale Factors(8) "
        L"Component Sizing(8) Bill of Material(8) Dimensioning Variables(8) Layers(8) ] "
        L"ORTHO Settings(9)[General Drawing Parameters(9) System Toggles(9) Scale Factors(9) Bill "
        L"of Material(9) Civil/Structural Parameters(9) Dimensioning Variables(9) Layers(9) ] ";
    const std::wstring head = L"General Settings(1) File Locations(1) Border Settings(1) "
                              L"Drawings(1)[ELECTRIC(6) PID(7) ISOMETRIC(8) ORTHO(9) ] ";
    EXPECT_EQ(Render(SettingsPageTree(false)), head + L"Lines(1) " + tail);
    EXPECT_EQ(Render(SettingsPageTree(true)), head + tail);
    // A section page opens the editor of its section index.
    const std::vector<SSettingsPage> pages = SettingsPageTree(true);
    const SSettingsPage& toggles = pages[7].children[1];
    EXPECT_EQ(toggles.kind, ESettingsPage::Section);
    EXPECT_EQ(toggles.application, 3);
    EXPECT_EQ(toggles.section, 8);
}

} // namespace settings_editor_test
