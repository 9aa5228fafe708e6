// A standard's application settings: the file each version reads, values
// overlaying defaults, the migration rules and the exact bytes a save writes.
#include "contents/ProjectSettings.h"
#include "contents/SettingsText.h"
#include "store/GeneralSettings.h"
#include "store/ProjectRegistry.h"
#include "support/TestSupport.h"

#include <array>
#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace project_settings_test {

using Base = CVX2D_ProjectSettingsBase;

std::string Settings(const std::string& lines) {
    return "[Settings]\r\n" + lines;
}

// Standards 1 "Pipe" (given its General.ini per test) and 2 "Lost" (listed,
// without a folder).
class ProjectSettingsTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandards({"Lost"});
        Standard(2023, 0, 0);
    }
    // General.ini of standard 1; a version of 0 leaves "ProjectVersion" out.
    void Standard(int version, int working, int displayed) {
        std::string bytes;
        if (version != 0)
            bytes += "[General]\r\nProjectVersion = " + std::to_string(version) + "\r\n\r\n";
        bytes += "[Units]\r\nDisplayed = " + std::to_string(displayed) +
                 "\r\nWorking = " + std::to_string(working) + "\r\n";
        WriteBytes(Folder() / "General.ini", bytes);
        units = working;
    }
    std::unique_ptr<Base> Loaded(int application, std::int32_t id = 1) {
        auto settings = NewProjectSettings(application);
        settings->BuildCatalogue(units);
        settings->Load(registry, id);
        return settings;
    }
    static std::vector<std::wstring> Texts(const Base& settings) {
        std::vector<std::wstring> texts;
        for (const auto& section : settings.Sections()) {
            for (const auto& v : section.m_arrVariables)
                texts.push_back(std::to_wstring(v.m_nId) + L"=" + SettingsValueText(v));
        }
        return texts;
    }

    int units = 0;
};

TEST_F(ProjectSettingsTest, WithoutAFileElectricAndPidLoadTheirDefaultsAndWriteNothing) {
    for (int application : {1, 2}) {
        for (int working : {0, 1}) {
            SCOPED_TRACE(testing::Message() << application << " " << working);
            Standard(2023, working, working == 0 ? 0 : 2);
            const auto settings = Loaded(application);
            auto defaults = NewProjectSettings(application);
            defaults->BuildCatalogue(working);
            EXPECT_EQ(settings->GetProjectId(), 1);
            EXPECT_EQ(Texts(*settings), Texts(*defaults));
            EXPECT_FALSE(settings->IsModified());
        }
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(Folder()), fs::directory_iterator()), 1);
}

TEST_F(ProjectSettingsTest, FileNameFollowsTheVersionYear) {
    // 0: no "ProjectVersion", read as 2015.
    const std::pair<int, std::array<const char*, 4>> cases[] = {
        {0, {"Electric.ini", "Flow.ini", "Iso.ini", "Ortho.ini"}},
        {2016, {"ELECTRIC.ini", "PID.ini", "ISOMETRIC.ini", "ORTHO.ini"}},
    };
    for (const auto& [version, names] : cases) {
        for (int application = 1; application <= 4; ++application) {
            SCOPED_TRACE(testing::Message() << version << " " << application);
            fs::remove_all(Folder());
            Standard(version, 0, 0);
            // Text Height is 145 in every application; the other files'
            // values must not be read.
            // The file meant is written last: on a file system that ignores
            // letter case "Electric.ini" and "ELECTRIC.ini" are one file.
            for (const char* name : {"Electric.ini", "Flow.ini", "Iso.ini", "Ortho.ini",
                                     "ELECTRIC.ini", "PID.ini", "ISOMETRIC.ini", "ORTHO.ini"})
                if (name != std::string(names[application - 1]))
                    WriteBytes(Folder() / name, Settings("Variable 145 = 9\r\n"));
            WriteBytes(Folder() / names[application - 1], Settings("Variable 145 = 7\r\n"));
            const auto settings = Loaded(application);
            EXPECT_EQ(settings->GetPath(), (Folder() / names[application - 1]).wstring());
            EXPECT_EQ(settings->FindVariable(145)->m_dValue, 7.0);
        }
    }
    EXPECT_EQ(Base::FileName(0, 2016), L"");
}

TEST_F(ProjectSettingsTest, FileValuesOverlayTheDefaultsAndStayClean) {
    const std::string bytes = Settings(
        "Variable 002 = 5\r\nVariable 044 = piping\r\nVariable 103 = 1\r\nVariable 145 = 3.5\r\n"
        "Variable 165 = Stray\r\nVariable 168 = Arial; Bold; arial.ttf\r\nVariable 173 = MINE\r\n"
        "Variable 187 = 45\r\nVariable 189 = /blocks\r\nVariable 300 = 7\r\nVariable 6 = 9\r\n");
    WriteBytes(Folder() / "ELECTRIC.ini", bytes);
    const auto settings = Loaded(1);
    const std::pair<int, const wchar_t*> expected[] = {
        {2, L"5"},
        {44, L"piping"},
        {103, L"On"},
        {145, L"3.5"},
        {168, L"Arial; Bold; arial.ttf"},
        {173, L"MINE"},
        {187, L"Show zero feet and inches: 0'-5\" or 1'-0 1/2\""},
        {189, L"/blocks"},
        {6, L"0.5"}, // "Variable 6" is not the key of id 6: "Variable 006" is
    };
    for (const auto& [id, text] : expected)
        EXPECT_EQ(SettingsValueText(*settings->FindVariable(id)), text) << id;
    // A title row keeps its heading; an id the catalogue lacks is ignored.
    EXPECT_EQ(settings->FindSection(3)->m_arrVariables[1].m_strText, L"Lines and Arrows");
    EXPECT_EQ(settings->FindVariable(300), nullptr);
    EXPECT_FALSE(settings->IsModified());
    EXPECT_EQ(ReadBytes(Folder() / "ELECTRIC.ini"), bytes);
}

TEST_F(ProjectSettingsTest, ChangingOneValueWritesExactlyThatKey) {
    const std::tuple<int, int, const wchar_t*, const char*> cases[] = {
        {1, 145, L"3.5", "Variable 145 = 3.500000"},
        {2, 118, L"Off", "Variable 118 = 0"},
        {1, 2, L"12", "Variable 002 = 12"},
        {1, 44, L"piping", "Variable 044 = piping"},
        {1, 168, L"Arial; Bold; arial.ttf", "Variable 168 = Arial; Bold; arial.ttf"},
        {1, 189, L"/blocks", "Variable 189 = /blocks"},
        {1, 173, L"MINE", "Variable 173 = MINE"},
        {2, 155, L"Place Valves without Flanges", "Variable 155 = 18"},
        {2, 88, L"1.23456789", "Variable 088 = 1.234568"},
    };
    const std::string before = Settings("Variable 054 = 5.000000\r\n");
    for (const auto& [application, id, text, written] : cases) {
        SCOPED_TRACE(written);
        const char* name = application == 1 ? "ELECTRIC.ini" : "PID.ini";
        WriteBytes(Folder() / name, before);
        auto settings = Loaded(application);
        ASSERT_TRUE(StoreSettingsText(*settings->FindVariable(id), text));
        EXPECT_FALSE(settings->FindVariable(id)->m_bClean);
        // A title row is never written, whatever its text.
        settings->FindSection(3)->m_arrVariables[1].SetText(L"Renamed", false);
        ASSERT_TRUE(settings->Save());
        EXPECT_FALSE(settings->IsModified());
        const std::string line = std::string(written) + "\r\n";
        EXPECT_EQ(ReadBytes(Folder() / name), std::string(written) < "Variable 054"
                                                  ? Settings(line + "Variable 054 = 5.000000\r\n")
                                                  : before + line);
        fs::remove(Folder() / name);
    }
}

TEST_F(ProjectSettingsTest, AnEqualValueStaysCleanButAValueChangedBackIsWritten) {
    WriteBytes(Folder() / "ELECTRIC.ini", Settings("Variable 145 = 3.5\r\n"));
    auto settings = Loaded(1);
    StoreSettingsText(*settings->FindVariable(145), L"3.5");
    StoreSettingsText(*settings->FindVariable(187), L"No zero feet or inches: 3 1/2\" or 1'-1/2\"");
    EXPECT_FALSE(settings->IsModified());
    ASSERT_TRUE(settings->Save());
    EXPECT_EQ(ReadBytes(Folder() / "ELECTRIC.ini"), Settings("Variable 145 = 3.5\r\n"));

    settings->FindVariable(2)->SetInteger(4, false);
    settings->FindVariable(2)->SetInteger(3, false);
    ASSERT_TRUE(settings->Save());
    EXPECT_EQ(ReadBytes(Folder() / "ELECTRIC.ini"),
              Settings("Variable 002 = 3\r\nVariable 145 = 3.5\r\n"));

    // Forcing stores and cleans; a setter of another kind changes the kind too.
    Base::CVariable& v = *settings->FindVariable(145);
    v.SetReal(4.0, true);
    EXPECT_TRUE(v.m_bClean);
    Base::CVariable& s = *settings->FindVariable(44);
    s.SetText(L"x", false);
    EXPECT_EQ(s.m_nKind, Base::eText);
    EXPECT_EQ(s.m_strValue, L"acad");
    EXPECT_FALSE(s.m_bClean);
}

TEST_F(ProjectSettingsTest, SectionLookupsByIdAndByLabel) {
    auto settings = NewProjectSettings(2);
    settings->BuildCatalogue(0);
    Base::CSection& toggles = *settings->FindSection(8);
    EXPECT_EQ(settings->FindSection(1), nullptr);
    std::wstring text = L"unchanged";
    EXPECT_FALSE(toggles.GetString(999, text));
    EXPECT_EQ(text, L"unchanged");
    toggles.SetChoice(999, 1);
    EXPECT_FALSE(toggles.SetChoiceByLabel(155, L"Show Flanged as per Spec")); // not offered
    EXPECT_FALSE(settings->IsModified());
    EXPECT_TRUE(toggles.SetChoiceByLabel(155, L"Place Valves without Flanges"));
    EXPECT_EQ(toggles.GetChoice(155), ePrjPlaceValvesWithoutFlanges);
}

TEST_F(ProjectSettingsTest, IsometricBoltUnitsFollowTheDiameterUnitsAndAreSavedDuringLoad) {
    // The file before loading, and the whole file after.
    const std::pair<const char*, const char*> cases[] = {
        // 170 Metric and none of 180, 181, 182.
        {"Variable 170 = 39\r\nVariable 185 = 4.000000\r\n",
         "Variable 170 = 39\r\nVariable 180 = 39\r\nVariable 181 = 32\r\nVariable 182 = 32\r\n"
         "Variable 185 = 4.000000\r\n"},
        // Length units already English: the length precision follows them.
        {"Variable 170 = 39\r\nVariable 180 = 40\r\nVariable 185 = 4.000000\r\n",
         "Variable 170 = 39\r\nVariable 180 = 40\r\nVariable 181 = 36\r\nVariable 182 = 32\r\n"
         "Variable 185 = 4.000000\r\n"},
        // Everything set: nothing changes.
        {"Variable 180 = 39\r\nVariable 181 = 33\r\nVariable 182 = 34\r\nVariable 185 = 4\r\n",
         "Variable 180 = 39\r\nVariable 181 = 33\r\nVariable 182 = 34\r\nVariable 185 = 4\r\n"},
    };
    for (const auto& [file, written] : cases) {
        SCOPED_TRACE(file);
        WriteBytes(Folder() / "ISOMETRIC.ini", Settings(file));
        const auto settings = Loaded(3);
        EXPECT_FALSE(settings->IsModified());
        EXPECT_EQ(ReadBytes(Folder() / "ISOMETRIC.ini"), Settings(written));
    }
}

TEST_F(ProjectSettingsTest, WithoutAFileIsometricAndOrthoSaveWhatMigrationDerives) {
    const std::tuple<int, int, int, const char*> cases[] = {
        {3, 0, 0,
         "Variable 180 = 40\r\nVariable 181 = 36\r\nVariable 182 = 36\r\n"
         "Variable 185 = 10.000000\r\n"},
        {3, 1, 2,
         "Variable 180 = 40\r\nVariable 181 = 36\r\nVariable 182 = 36\r\n"
         "Variable 185 = 0.375000\r\n"},
        // ORTHO's structural units follow the displayed units: 2 and 3 English.
        {4, 0, 1,
         "Variable 071 = 12.500000\r\nVariable 179 = 12.500000\r\nVariable 180 = 40\r\n"
         "Variable 181 = 36\r\nVariable 182 = 36\r\nVariable 183 = 39\r\n"
         "Variable 185 = 12.500000\r\n"},
        {4, 1, 2,
         "Variable 071 = 0.500000\r\nVariable 179 = 0.500000\r\nVariable 180 = 40\r\n"
         "Variable 181 = 36\r\nVariable 182 = 36\r\nVariable 183 = 40\r\n"
         "Variable 185 = 0.500000\r\n"},
    };
    for (const auto& [application, working, displayed, written] : cases) {
        SCOPED_TRACE(testing::Message() << application << " " << displayed);
        Standard(2023, working, displayed);
        const char* name = application == 3 ? "ISOMETRIC.ini" : "ORTHO.ini";
        fs::remove(Folder() / name);
        EXPECT_FALSE(Loaded(application)->IsModified());
        EXPECT_EQ(ReadBytes(Folder() / name), Settings(written));
    }
}

TEST_F(ProjectSettingsTest, ScaleMigrationTakesOnlyValuesOfZeroOrLess) {
    const std::string bolts = "Variable 180 = 39\r\nVariable 181 = 31\r\nVariable 182 = 31\r\n";
    WriteBytes(Folder() / "ORTHO.ini",
               Settings("Variable 071 = -1\r\nVariable 107 = 20\r\nVariable 179 = 0.1\r\n" + bolts +
                        "Variable 183 = 40\r\nVariable 185 = 0\r\n"));
    Loaded(4);
    EXPECT_EQ(ReadBytes(Folder() / "ORTHO.ini"),
              Settings("Variable 071 = 20.000000\r\nVariable 107 = 20\r\nVariable 179 = 0.1\r\n" +
                       bolts + "Variable 183 = 40\r\nVariable 185 = 20.000000\r\n"));

    WriteBytes(Folder() / "ISOMETRIC.ini",
               Settings("Variable 082 = 7.5\r\n" + bolts + "Variable 185 = -2\r\n"));
    Loaded(3);
    EXPECT_EQ(ReadBytes(Folder() / "ISOMETRIC.ini"),
              Settings("Variable 082 = 7.5\r\n" + bolts + "Variable 185 = 7.500000\r\n"));
}

TEST_F(ProjectSettingsTest, ADecimalCommaLocaleNeitherMisreadsNorRewritesScales) {
    const test::CDecimalCommaLocale comma;
    if (!comma.Available())
        GTEST_SKIP() << "no decimal-comma locale on this system (generate de_DE.UTF-8)";
    const std::string bytes = Settings(
        "Variable 071 = 0.5\r\nVariable 107 = 2.500000\r\nVariable 179 = 0.500000\r\n"
        "Variable 180 = 39\r\nVariable 181 = 31\r\nVariable 182 = 31\r\nVariable 183 = 40\r\n"
        "Variable 185 = 0.750000\r\n");
    WriteBytes(Folder() / "ORTHO.ini", bytes);
    const auto settings = Loaded(4);
    EXPECT_FALSE(settings->IsModified());
    EXPECT_EQ(ReadBytes(Folder() / "ORTHO.ini"), bytes) << "opening the standard rewrote it";
    EXPECT_DOUBLE_EQ(settings->FindVariable(71)->m_dValue, 0.5);
    EXPECT_EQ(SettingsValueText(*settings->FindVariable(107)), L"2.5");
}

TEST_F(ProjectSettingsTest, AMigrationThatCannotBeSavedHoldsInMemoryWithoutAsking) {
    const std::string bytes = Settings("Variable 082 = 7.5\r\nVariable 185 = -2\r\n");
    WriteBytes(Folder() / "ISOMETRIC.ini", bytes);
    std::unique_ptr<Base> settings;
    {
        const test::CFullDisk full;
        if (!full.Available())
            GTEST_SKIP() << "this system cannot simulate a full disk";
        settings = Loaded(3);
    }
    EXPECT_EQ(ReadBytes(Folder() / "ISOMETRIC.ini"), bytes);
    EXPECT_DOUBLE_EQ(settings->FindVariable(185)->m_dValue, 7.5);
    EXPECT_FALSE(settings->IsModified()) << "derived values are not the user's edits";
}

TEST_F(ProjectSettingsTest, AStandardWithoutAFolderLoadsNothingAndCannotSave) {
    for (std::int32_t id : {2, 0}) {
        SCOPED_TRACE(id);
        auto settings = Loaded(3, id);
        EXPECT_EQ(settings->GetProjectId(), id);
        EXPECT_TRUE(settings->GetPath().empty());
        EXPECT_EQ(settings->FindSection(0)->GetChoice(180), 0); // no migration either
        settings->FindVariable(145)->SetReal(1.0, false);
        EXPECT_FALSE(settings->Save());
        EXPECT_TRUE(settings->IsModified());
    }
    EXPECT_FALSE(fs::exists(Root() / "Projects" / "VX2D_PRJ_2 - Lost"));
}

TEST_F(ProjectSettingsTest, LoadingFromGeneralSettingsAlreadyRead) {
    Standard(2015, 1, 2);
    WriteBytes(Folder() / "Flow.ini", Settings("Variable 145 = 0.2\r\n"));
    CVX2D_GeneralSettings general;
    ASSERT_TRUE(general.Load(registry, 1));
    auto settings = NewProjectSettings(2);
    settings->BuildCatalogue(general.m_nWorkingUnits);
    settings->Load(general);
    EXPECT_EQ(settings->FindVariable(145)->m_dValue, 0.2);
    EXPECT_EQ(settings->FindVariable(102)->m_dValue, 0.5); // imperial LTSCALE

    // General settings that were never loaded give no file.
    CVX2D_GeneralSettings unloaded;
    settings->Load(unloaded);
    EXPECT_TRUE(settings->GetPath().empty());
}

} // namespace project_settings_test
