// The layers page's core: the rows it shows, what a changed cell stores or
// refuses, what Apply writes, restore defaults and the question on closing;
// and restore defaults of a settings section.
#include "editors/LayersEditor.h"
#include "contents/ProjectSettings.h"
#include "datafile/IniFile.h"
#include "editors/SettingsEditor.h"
#include "store/GeneralSettings.h"
#include "support/TestSupport.h"

#include <cwchar>
#include <gtest/gtest.h>
#include <stdexcept>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace layers_editor_test {

// What "Layers.ini" holds for the application `prefix`: each given entry as
// "SECTION|KEY|VALUE", and every layer of the set (`layers` of them) in each
// of the four sections.
void ExpectWholeSet(const fs::path& file, const std::wstring& prefix, std::size_t layers,
                    const std::vector<std::wstring>& entries) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ASSERT_EQ(ini.Open(file.wstring()), CVX2D_IniFile::eOk);
    for (const wchar_t* suffix : {L" - Layers", L" - Colors", L" - Linetypes", L" - LineWeights"}) {
        std::vector<std::wstring> keys, values;
        ini.SetSection(prefix + suffix);
        ini.GetSectionEntries(keys, values);
        EXPECT_EQ(keys.size(), layers) << std::string(suffix, suffix + std::wcslen(suffix));
    }
    for (const std::wstring& entry : entries) {
        const std::size_t bar = entry.find(L'|'), second = entry.find(L'|', bar + 1);
        ini.SetSection(prefix + L" - " + entry.substr(0, bar));
        EXPECT_EQ(ini.String(entry.substr(bar + 1, second - bar - 1)), entry.substr(second + 1))
            << std::string(entry.begin(), entry.end());
    }
}

} // namespace layers_editor_test

namespace layers_editor_test {

// Standard 1 "Pipe", version 2023, metric.
class LayersEditorTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandards();
        WriteBytes(Folder() / "General.ini",
                   "[General]\r\nProjectVersion = 2023\r\n\r\n[Units]\r\nDisplayed = 1\r\n"
                   "Working = 0\r\n");
    }
    std::size_t RowOf(std::int32_t key) const {
        for (std::size_t i = 0; i < editor.Rows().size(); ++i) {
            if (editor.Rows()[i].key == key)
                return i;
        }
        throw std::runtime_error("no layer " + std::to_string(key));
    }
    std::wstring Cells(std::int32_t key) const {
        const SLayerRow& row = editor.Rows()[RowOf(key)];
        return row.description + L"|" + row.name + L"|" + row.colorText + L"|" + row.linetype +
               L"|" + row.lineweightText;
    }

    CLayersEditor editor{registry, prompter};
};

TEST_F(LayersEditorTest, RowsShowTheStandardsLayersOverTheDefaults) {
    WriteBytes(Folder() / "Layers.ini", "[PID - Layers]\r\n038 = PROC\r\n\r\n[PID - Colors]\r\n"
                                        "038 = 128,128,128,8\r\n041 = 10,20,30,0\r\n\r\n"
                                        "[PID - LineWeights]\r\n038 = 25\r\n030 = 211\r\n");
    ASSERT_TRUE(editor.Open(1, 2));
    EXPECT_EQ(editor.Header(), L"PID - Layers");
    EXPECT_EQ(editor.Rows().size(), 22u);
    EXPECT_FALSE(editor.ApplyEnabled());
    EXPECT_EQ(Cells(14), L"Attribute|ATTRIB|White (7)|CONTINUOUS|Default");
    EXPECT_EQ(Cells(25), L"Dash|DASH|Blue (5)|DASHED|Default");
    EXPECT_EQ(Cells(38), L"Process|PROC|Color 8|CONTINUOUS|0.25 mm");
    EXPECT_EQ(Cells(30), L"Flanges|FLANGES|Green (3)|CONTINUOUS|2.11 mm");
    EXPECT_EQ(editor.HelpTopic(), L"::/Layers_Dialog_Box1.htm");

    // Texts of values no default has.
    EXPECT_EQ(LayerColorText({{10, 20, 30}, 0}), L"10,20,30");
    EXPECT_EQ(LineweightText(0), L"0.00 mm");
    EXPECT_EQ(LineweightText(5), L"0.05 mm");
    EXPECT_EQ(LineweightText(106), L"1.06 mm");
    EXPECT_EQ(StandardLineweights().size(), 25u);
    EXPECT_EQ(StandardLinetypes().size(), 25u);

    EXPECT_FALSE(editor.Open(1, 5));
    EXPECT_TRUE(editor.Rows().empty());
    EXPECT_FALSE(editor.Open(9, 1));
}

TEST_F(LayersEditorTest, ApplyWritesTheWholeSetWithTheChangedCells) {
    ASSERT_TRUE(editor.Open(1, 2));
    EXPECT_TRUE(editor.SetCellText(RowOf(16), ELayerColumn::Name, L" BORDER_A "));
    EXPECT_TRUE(editor.SetCellText(RowOf(20), ELayerColumn::Color, L"8"));
    EXPECT_TRUE(editor.SetCellText(RowOf(25), ELayerColumn::Linetype, L"dashedx2"));
    EXPECT_TRUE(editor.SetCellText(RowOf(14), ELayerColumn::Lineweight, L"0.35 mm"));
    EXPECT_TRUE(editor.SetCellText(RowOf(27), ELayerColumn::Color, L"blue"));
    EXPECT_EQ(Cells(16), L"Border 1|BORDER_A|Cyan (4)|CONTINUOUS|Default");
    EXPECT_EQ(Cells(25), L"Dash|DASH|Blue (5)|DASHEDX2|Default");
    ASSERT_TRUE(editor.ApplyEnabled());
    ASSERT_TRUE(editor.Apply());
    EXPECT_FALSE(editor.ApplyEnabled());
    // The whole set, with the changed cells.
    ExpectWholeSet(Folder() / "Layers.ini", L"PID", editor.Rows().size(),
                   {L"Colors|020|128,128,128,8", L"Colors|027|0,0,255,5", L"Layers|016|BORDER_A",
                    L"LineWeights|014|35", L"Linetypes|025|DASHEDX2", L"Layers|038|PROCESS"});
    // What was written reads back.
    ASSERT_TRUE(editor.Open(1, 2));
    EXPECT_EQ(Cells(20), L"Center|CENTER|Color 8|CENTER|Default");
    EXPECT_EQ(Cells(14), L"Attribute|ATTRIB|White (7)|CONTINUOUS|0.35 mm");
}

TEST_F(LayersEditorTest, RefusedCellsKeepTheirValue) {
    const std::wstring rule =
        L"'.\n\nA layer name must not be empty or contain any of < > / \\ \" : ; ? * | , = `.";
    struct SCase {
        ELayerColumn column;
        const wchar_t* text;
        const wchar_t* message; // empty: refused without a word
    };
    const SCase cases[] = {
        {ELayerColumn::Name, L"  ", L"Invalid layer name '  "},
        {ELayerColumn::Name, L"A<B", L"Invalid layer name 'A<B"},
        {ELayerColumn::Name, L"PIPE,1", L"Invalid layer name 'PIPE,1"},
        {ELayerColumn::Name, L"R\u0151hr", L"Invalid layer name 'R\u0151hr"},
        {ELayerColumn::Description, L"Mine", L""},
        {ELayerColumn::Color, L"0", L""},
        {ELayerColumn::Color, L"256", L""},
        {ELayerColumn::Color, L"Purple", L""},
        {ELayerColumn::Linetype, L"ZIGZAG", L""},
        {ELayerColumn::Lineweight, L"0.17 mm", L""},
        {ELayerColumn::Lineweight, L"abc", L""},
    };
    ASSERT_TRUE(editor.Open(1, 1));
    const std::wstring before = Cells(16);
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.text));
        prompter.asked.clear();
        EXPECT_FALSE(editor.SetCellText(RowOf(16), c.column, c.text));
        EXPECT_EQ(Cells(16), before);
        if (*c.message) {
            ASSERT_EQ(prompter.asked.size(), 1u);
            EXPECT_EQ(prompter.asked[0].text, c.message + rule);
        } else {
            EXPECT_TRUE(prompter.asked.empty());
        }
    }
    EXPECT_FALSE(editor.ApplyEnabled());
    EXPECT_FALSE(fs::exists(Folder() / "Layers.ini"));
}

TEST_F(LayersEditorTest, RestoreDefaultsShowsModifiedUntilApply) {
    // Nothing to restore on a standard at its defaults.
    ASSERT_TRUE(editor.Open(1, 4));
    ASSERT_TRUE(editor.RestoreDefaults());
    EXPECT_FALSE(editor.ApplyEnabled());

    WriteBytes(Folder() / "Layers.ini", "[ORTHO - Colors]\r\n039 = 128,128,128,8\r\n\r\n"
                                        "[ORTHO - Layers]\r\n021 = CONCRETE\r\n039 = STL\r\n\r\n"
                                        "[ORTHO - LineWeights]\r\n013 = 50\r\n");
    ASSERT_TRUE(editor.Open(1, 4));
    ASSERT_TRUE(editor.RestoreDefaults());
    EXPECT_EQ(Cells(39), L"Steel|STEEL|Green (3)|CONTINUOUS|Default");
    EXPECT_EQ(Cells(13), L"10,000 lb|10000LB|White (7)|CONTINUOUS|Default");
    EXPECT_TRUE(editor.ApplyEnabled());
    ASSERT_TRUE(editor.Apply());
    ExpectWholeSet(Folder() / "Layers.ini", L"ORTHO", editor.Rows().size(),
                   {L"Colors|039|0,255,0,3", L"Layers|021|CONCRETE", L"Layers|039|STEEL",
                    L"LineWeights|013|-3"});
}

TEST_F(LayersEditorTest, ClosingAModifiedPageAsksAndSavesOnlyOnYes) {
    const std::wstring question = L"Standard 'Pipe' ISOMETRIC layers have been modified.\n\nDo you "
                                  L"want to save your changes?";
    ASSERT_TRUE(editor.Open(1, 3));
    EXPECT_TRUE(editor.Close());
    EXPECT_TRUE(prompter.asked.empty());

    for (const EPromptAnswer answer : {EPromptAnswer::No, EPromptAnswer::Yes}) {
        prompter.asked.clear();
        prompter.answers = {answer};
        ASSERT_TRUE(editor.Open(1, 3));
        ASSERT_TRUE(editor.SetCellText(RowOf(1), ELayerColumn::Name, L"CLASS150"));
        EXPECT_TRUE(editor.Close());
        ASSERT_EQ(prompter.asked.size(), 1u);
        EXPECT_EQ(prompter.asked[0].text, question);
        EXPECT_EQ(prompter.asked[0].buttons, EPromptButtons::YesNo);
        const bool saved = answer == EPromptAnswer::Yes;
        EXPECT_EQ(fs::exists(Folder() / "Layers.ini"), saved);
        // No shows the file's values again.
        EXPECT_EQ(editor.Rows()[RowOf(1)].name, saved ? L"CLASS150" : L"150LB");
    }
    ExpectWholeSet(Folder() / "Layers.ini", L"ISOMETRIC", editor.Rows().size(),
                   {L"Layers|001|CLASS150", L"Layers|002|300LB"});
}

TEST_F(LayersEditorTest, RestoringASettingsSectionRewritesOnlyWhatDiffers) {
    // ORTHO's later scale factors (71, 179, 185) are 0 in the catalogue and
    // derive from "Miscellaneous Blocks Scale" (107), as loading does.
    // 180-183 hold what loading derives for them.
    const std::string later = "Variable 180 = 40\r\nVariable 181 = 36\r\nVariable 182 = 36\r\n"
                              "Variable 183 = 39\r\n";
    WriteBytes(Folder() / "ORTHO.ini", "[Settings]\r\nVariable 071 = 20.000000\r\n"
                                       "Variable 102 = 10.000000\r\nVariable 107 = 20.000000\r\n"
                                       "Variable 145 = 4.000000\r\nVariable 179 = 1.000000\r\n" +
                                           later + "Variable 185 = 20.000000\r\n");
    CSettingsEditor settings(registry, prompter);
    ASSERT_TRUE(settings.Open(1, 4, CVX2D_ProjectSettingsBase::eScaleFactors));
    ASSERT_TRUE(settings.RestoreDefaults());
    for (const auto& row : settings.Rows()) {
        if (row.variableId == 71 || row.variableId == 107 || row.variableId == 185) {
            EXPECT_EQ(row.text, L"12.5") << row.variableId;
        }
    }
    EXPECT_TRUE(settings.ApplyEnabled());
    ASSERT_TRUE(settings.Apply());
    EXPECT_EQ(ReadBytes(Folder() / "ORTHO.ini"),
              "[Settings]\r\nVariable 071 = 12.500000\r\nVariable 102 = 10.000000\r\n"
              "Variable 107 = 12.500000\r\nVariable 145 = 4.000000\r\n"
              "Variable 179 = 12.500000\r\n" +
                  later + "Variable 185 = 12.500000\r\n");

    // Every section at once reaches the other sections' values too.
    CVX2D_GeneralSettings general;
    ASSERT_TRUE(general.Load(registry, 1));
    auto all = NewProjectSettings(4);
    all->BuildCatalogue(general.m_nWorkingUnits);
    all->Load(general);
    ASSERT_TRUE(RestoreSettingsDefaults(*all, -1, general));
    ASSERT_TRUE(all->Save());
    EXPECT_EQ(ReadBytes(Folder() / "ORTHO.ini"),
              "[Settings]\r\nVariable 071 = 12.500000\r\nVariable 102 = 10.000000\r\n"
              "Variable 107 = 12.500000\r\nVariable 145 = 2.500000\r\n"
              "Variable 179 = 12.500000\r\n" +
                  later + "Variable 185 = 12.500000\r\n");
    EXPECT_FALSE(
        RestoreSettingsDefaults(*all, CVX2D_ProjectSettingsBase::eScalingVariables, general));
}

} // namespace layers_editor_test
