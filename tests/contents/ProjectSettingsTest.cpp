// A standard's application settings: the file each version reads, values
// overlaying defaults, the migration rules and the exact bytes a save writes.
#include "contents/ProjectSettings.h"
#include "contents/SettingsText.h"
#include "store/GeneralSettings.h"
#include "store/ProjectRegistry.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace {

using Base = CVX2D_ProjectSettingsBase;

// Standards 1 "Pipe" (given its General.ini per test) and 2 "Lost" (listed,
// without a folder).
class ProjectSettingsTest : public ::testing::Test {
protected:
    void SetUp() override {
        WriteBytes(dir.Path() / "ProjectDatafile.ini",
                   "[ProjectList]\r\nVX2D_PRJ_1 = Pipe\r\nVX2D_PRJ_2 = Lost\r\n");
        Standard(2023, 0, 0);
    }
    fs::path Folder() const { return dir.Path() / "Projects" / "VX2D_PRJ_1 - Pipe"; }
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
    static std::unique_ptr<Base> Defaults(int application, int unitSystem) {
        auto settings = NewProjectSettings(application);
        settings->BuildCatalogue(unitSystem);
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
    static std::string Settings(const std::string& lines) { return "[Settings]\r\n" + lines; }

    test::CTempDir dir;
    CVX2D_Datafiles datafiles{dir.Text()};
    test::CScriptedPrompter prompter;
    CVX2D_ProjectRegistry registry{datafiles, prompter};
    int units = 0;
};

TEST_F(ProjectSettingsTest, WithoutAFileElectricAndPidLoadTheirDefaultsAndWriteNothing) {
    for (int application : {1, 2}) {
        for (int working : {0, 1}) {
            SCOPED_TRACE(testing::Message() << application << " " << working);
            Standard(2023, working, working == 0 ? 0 : 2);
            const auto settings = Loaded(application);
            EXPECT_EQ(settings->GetProjectId(), 1);
            EXPECT_EQ(Texts(*settings), Texts(*Defaults(application, working)));
            EXPECT_FALSE(settings->IsModified());
        }
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(Folder()), fs::directory_iterator()), 1);
}

TEST_F(ProjectSettingsTest, FileNameFollowsTheVersionYear) {
    struct SCase {
        int version; // 0: no "ProjectVersion", read as 2015
        const char* names[4];
    };
    const SCase cases[] = {
        {0, {"Electric.ini", "Flow.ini", "Iso.ini", "Ortho.ini"}},
        {2015, {"Electric.ini", "Flow.ini", "Iso.ini", "Ortho.ini"}},
        {2016, {"ELECTRIC.ini", "PID.ini", "ISOMETRIC.ini", "ORTHO.ini"}},
        {2023, {"ELECTRIC.ini", "PID.ini", "ISOMETRIC.ini", "ORTHO.ini"}},
    };
    for (const auto& c : cases) {
        for (int application = 1; application <= 4; ++application) {
            SCOPED_TRACE(testing::Message() << c.version << " " << application);
            fs::remove_all(Folder());
            Standard(c.version, 0, 0);
            // Text Height is 145 in every application; the other file's
            // value must not be read.
            for (const char* name : {"Electric.ini", "Flow.ini", "Iso.ini", "Ortho.ini",
                                     "ELECTRIC.ini", "PID.ini", "ISOMETRIC.ini", "ORTHO.ini"})
                WriteBytes(Folder() / name,
                           Settings(std::string("Variable 145 = ") +
                                    (name == std::string(c.names[application - 1]) ? "7" : "9") +
                                    "\r\n"));
            const auto settings = Loaded(application);
            EXPECT_EQ(settings->GetPath(), (Folder() / c.names[application - 1]).wstring());
            EXPECT_EQ(settings->FindVariable(145)->m_dValue, 7.0);
        }
    }
    EXPECT_EQ(Base::FileName(2, 2015), L"Flow.ini");
    EXPECT_EQ(Base::FileName(2, 2016), L"PID.ini");
    EXPECT_EQ(Base::FileName(0, 2016), L"");
}

TEST_F(ProjectSettingsTest, FileValuesOverlayTheDefaultsAndStayClean) {
    const std::string bytes = Settings("Variable 002 = 5\r\n"
                                       "Variable 044 = piping\r\n"
                                       "Variable 103 = 1\r\n"
                                       "Variable 145 = 3.5\r\n"
                                       "Variable 165 = Stray\r\n"
                                       "Variable 168 = Arial; Bold; arial.ttf\r\n"
                                       "Variable 173 = MINE\r\n"
                                       "Variable 187 = 45\r\n"
                                       "Variable 189 = /blocks\r\n"
                                       "Variable 300 = 7\r\n"
                                       "Variable 6 = 9\r\n");
    WriteBytes(Folder() / "ELECTRIC.ini", bytes);
    const auto settings = Loaded(1);
    struct SExpect {
        int id;
        const wchar_t* text;
    };
    const SExpect expected[] = {
        {2, L"5"},
        {44, L"piping"},
        {103, L"On"},
        {145, L"3.5"},
        {168, L"Arial; Bold; arial.ttf"},
        {173, L"MINE"},
        {187, L"Show zero feet and inches: 0'-5\" or 1'-0 1/2\""},
        {189, L"/blocks"},
        {6, L"0.5"}, // "Variable 6" is not the key of id 6: "Variable 006" is
        {12, L"10.0"},
    };
    for (const auto& e : expected)
        EXPECT_EQ(SettingsValueText(*settings->FindVariable(e.id)), e.text) << e.id;
    // A title row keeps its heading; an id the catalogue lacks is ignored.
    EXPECT_EQ(settings->FindSection(3)->m_arrVariables[1].m_strText, L"Lines and Arrows");
    EXPECT_EQ(settings->FindVariable(300), nullptr);
    EXPECT_FALSE(settings->IsModified());
    EXPECT_EQ(ReadBytes(Folder() / "ELECTRIC.ini"), bytes);
}

TEST_F(ProjectSettingsTest, ChangingOneValueWritesExactlyThatKey) {
    struct SCase {
        int application, id;
        const wchar_t* text; // stored by the variable's kind
        const char* line;
    };
    const SCase cases[] = {
        {1, 145, L"3.5", "Variable 145 = 3.500000"},
        {1, 103, L"On", "Variable 103 = 1"},
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
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        const char* name = c.application == 1 ? "ELECTRIC.ini" : "PID.ini";
        WriteBytes(Folder() / name, before);
        auto settings = Loaded(c.application);
        ASSERT_TRUE(StoreSettingsText(*settings->FindVariable(c.id), c.text));
        EXPECT_TRUE(settings->IsModified());
        EXPECT_FALSE(settings->FindVariable(c.id)->m_bClean);
        ASSERT_TRUE(settings->Save());
        EXPECT_FALSE(settings->IsModified());
        const std::string line = std::string(c.line) + "\r\n";
        const std::string expected = std::string(c.line) < "Variable 054"
                                         ? Settings(line + "Variable 054 = 5.000000\r\n")
                                         : before + line;
        EXPECT_EQ(ReadBytes(Folder() / name), expected);
        fs::remove(Folder() / name);
    }
}

TEST_F(ProjectSettingsTest, AnEqualValueStaysCleanAndIsNotWritten) {
    WriteBytes(Folder() / "ELECTRIC.ini", Settings("Variable 145 = 3.5\r\n"));
    auto settings = Loaded(1);
    for (const auto& [id, text] : std::vector<std::pair<int, std::wstring>>{
             {145, L"3.5"},
             {103, L"Off"},
             {2, L"3"},
             {44, L"acad"},
             {189, L""},
             {187, L"No zero feet or inches: 3 1/2\" or 1'-1/2\""}}) {
        StoreSettingsText(*settings->FindVariable(id), text);
        EXPECT_TRUE(settings->FindVariable(id)->m_bClean) << id;
    }
    EXPECT_FALSE(settings->IsModified());
    ASSERT_TRUE(settings->Save());
    EXPECT_EQ(ReadBytes(Folder() / "ELECTRIC.ini"), Settings("Variable 145 = 3.5\r\n"));

    // A value changed and changed back is written, as the desktop program does.
    settings->FindVariable(2)->SetInteger(4, false);
    settings->FindVariable(2)->SetInteger(3, false);
    ASSERT_TRUE(settings->Save());
    EXPECT_EQ(ReadBytes(Folder() / "ELECTRIC.ini"),
              Settings("Variable 002 = 3\r\nVariable 145 = 3.5\r\n"));
}

TEST_F(ProjectSettingsTest, SettersForceAndClean) {
    auto settings = Defaults(1, 0);
    Base::CVariable& v = *settings->FindVariable(145);
    v.SetReal(2.5, false);
    EXPECT_TRUE(v.m_bClean);
    v.SetReal(3.0, false);
    EXPECT_FALSE(v.m_bClean);
    v.SetReal(3.0, true);
    EXPECT_TRUE(v.m_bClean);
    EXPECT_EQ(v.m_dValue, 3.0);

    // A setter of another kind changes the kind as well.
    Base::CVariable& s = *settings->FindVariable(44);
    s.SetText(L"x", false);
    EXPECT_EQ(s.m_nKind, Base::eText);
    EXPECT_EQ(s.m_strValue, L"acad");
    EXPECT_FALSE(s.m_bClean);

    // Strings compare exactly.
    Base::CVariable& t = *settings->FindVariable(173);
    t.SetText(L"standard", false);
    EXPECT_FALSE(t.m_bClean);
}

TEST_F(ProjectSettingsTest, SectionLookupsByIdAndByLabel) {
    auto settings = Defaults(2, 0);
    Base::CSection& toggles = *settings->FindSection(8);
    EXPECT_EQ(settings->FindSection(1), nullptr);
    EXPECT_EQ(toggles.GetChoice(155), ePrjPlaceFlangedValves);
    EXPECT_EQ(toggles.GetChoice(999), 0);
    EXPECT_EQ(toggles.GetReal(999), 0.0);
    std::wstring text = L"unchanged";
    EXPECT_FALSE(toggles.GetString(999, text));
    EXPECT_EQ(text, L"unchanged");
    EXPECT_TRUE(settings->FindSection(4)->GetString(44, text));
    EXPECT_EQ(text, L"acad");

    toggles.SetReal(999, 1.0);
    toggles.SetChoice(999, 1);
    EXPECT_FALSE(settings->IsModified());

    EXPECT_FALSE(toggles.SetChoiceByLabel(155, L"Show Flanged as per Spec")); // not offered
    EXPECT_FALSE(toggles.SetChoiceByLabel(155, L"place flanged valves"));     // exact text only
    EXPECT_FALSE(settings->IsModified());
    EXPECT_TRUE(toggles.SetChoiceByLabel(155, L"Place Valves without Flanges"));
    EXPECT_EQ(toggles.GetChoice(155), ePrjPlaceValvesWithoutFlanges);
    EXPECT_TRUE(settings->IsModified());

    Base::CSection& scale = *settings->FindSection(6);
    scale.SetReal(82, 11.0);
    EXPECT_EQ(scale.GetReal(82), 11.0);
}

TEST_F(ProjectSettingsTest, IsometricBoltUnitsFollowTheDiameterUnitsAndAreSavedDuringLoad) {
    struct SCase {
        const char* file;
        const char* written; // the whole file after Load
        int bolt[3];         // 180, 181, 182
    };
    const SCase cases[] = {
        // 170 Metric and none of 180, 181, 182.
        {"Variable 170 = 39\r\nVariable 185 = 4.000000\r\n",
         "Variable 170 = 39\r\nVariable 180 = 39\r\nVariable 181 = 32\r\nVariable 182 = 32\r\n"
         "Variable 185 = 4.000000\r\n",
         {39, 32, 32}},
        // Length units already English: the length precision follows them.
        {"Variable 170 = 39\r\nVariable 180 = 40\r\nVariable 185 = 4.000000\r\n",
         "Variable 170 = 39\r\nVariable 180 = 40\r\nVariable 181 = 36\r\nVariable 182 = 32\r\n"
         "Variable 185 = 4.000000\r\n",
         {40, 36, 32}},
        // Everything set: nothing changes and nothing is written.
        {"Variable 180 = 39\r\nVariable 181 = 33\r\nVariable 182 = 34\r\nVariable 185 = "
         "4.000000\r\n",
         "Variable 180 = 39\r\nVariable 181 = 33\r\nVariable 182 = 34\r\nVariable 185 = "
         "4.000000\r\n",
         {39, 33, 34}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        WriteBytes(Folder() / "ISOMETRIC.ini", Settings(c.file));
        const auto settings = Loaded(3);
        EXPECT_FALSE(settings->IsModified());
        const Base::CSection& bom = *settings->FindSection(0);
        EXPECT_EQ(bom.GetChoice(180), c.bolt[0]);
        EXPECT_EQ(bom.GetChoice(181), c.bolt[1]);
        EXPECT_EQ(bom.GetChoice(182), c.bolt[2]);
        EXPECT_EQ(ReadBytes(Folder() / "ISOMETRIC.ini"), Settings(c.written));
    }
}

TEST_F(ProjectSettingsTest, WithoutAFileIsometricAndOrthoSaveWhatMigrationDerives) {
    struct SCase {
        int application, working, displayed;
        const char* written;
    };
    const SCase cases[] = {
        {3, 0, 0,
         "Variable 180 = 40\r\nVariable 181 = 36\r\nVariable 182 = 36\r\n"
         "Variable 185 = 10.000000\r\n"},
        {3, 1, 2,
         "Variable 180 = 40\r\nVariable 181 = 36\r\nVariable 182 = 36\r\n"
         "Variable 185 = 0.375000\r\n"},
        // ORTHO's structural units follow the displayed units: 2 and 3 English.
        {4, 0, 0,
         "Variable 071 = 12.500000\r\nVariable 179 = 12.500000\r\nVariable 180 = 40\r\n"
         "Variable 181 = 36\r\nVariable 182 = 36\r\nVariable 183 = 39\r\n"
         "Variable 185 = 12.500000\r\n"},
        {4, 0, 1,
         "Variable 071 = 12.500000\r\nVariable 179 = 12.500000\r\nVariable 180 = 40\r\n"
         "Variable 181 = 36\r\nVariable 182 = 36\r\nVariable 183 = 39\r\n"
         "Variable 185 = 12.500000\r\n"},
        {4, 1, 2,
         "Variable 071 = 0.500000\r\nVariable 179 = 0.500000\r\nVariable 180 = 40\r\n"
         "Variable 181 = 36\r\nVariable 182 = 36\r\nVariable 183 = 40\r\n"
         "Variable 185 = 0.500000\r\n"},
        {4, 1, 3,
         "Variable 071 = 0.500000\r\nVariable 179 = 0.500000\r\nVariable 180 = 40\r\n"
         "Variable 181 = 36\r\nVariable 182 = 36\r\nVariable 183 = 40\r\n"
         "Variable 185 = 0.500000\r\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.application << " " << c.displayed);
        Standard(2023, c.working, c.displayed);
        const char* name = c.application == 3 ? "ISOMETRIC.ini" : "ORTHO.ini";
        fs::remove(Folder() / name);
        const auto settings = Loaded(c.application);
        EXPECT_FALSE(settings->IsModified());
        EXPECT_EQ(ReadBytes(Folder() / name), Settings(c.written));
    }
}

TEST_F(ProjectSettingsTest, ScaleMigrationTakesOnlyValuesOfZeroOrLess) {
    WriteBytes(Folder() / "ORTHO.ini",
               Settings("Variable 071 = -1\r\nVariable 107 = 20\r\nVariable 179 = 0.1\r\n"
                        "Variable 180 = 39\r\nVariable 181 = 31\r\nVariable 182 = 31\r\n"
                        "Variable 183 = 40\r\nVariable 185 = 0\r\n"));
    auto ortho = Loaded(4);
    const Base::CSection& scale = *ortho->FindSection(6);
    EXPECT_EQ(scale.GetReal(71), 20.0);
    EXPECT_EQ(scale.GetReal(179), 0.1);
    EXPECT_EQ(scale.GetReal(185), 20.0);
    EXPECT_EQ(ReadBytes(Folder() / "ORTHO.ini"),
              Settings("Variable 071 = 20.000000\r\nVariable 107 = 20\r\nVariable 179 = 0.1\r\n"
                       "Variable 180 = 39\r\nVariable 181 = 31\r\nVariable 182 = 31\r\n"
                       "Variable 183 = 40\r\nVariable 185 = 20.000000\r\n"));

    WriteBytes(Folder() / "ISOMETRIC.ini",
               Settings("Variable 082 = 7.5\r\nVariable 180 = 39\r\nVariable 181 = 31\r\n"
                        "Variable 182 = 31\r\nVariable 185 = -2\r\n"));
    auto iso = Loaded(3);
    EXPECT_EQ(iso->FindSection(6)->GetReal(185), 7.5);
    EXPECT_EQ(ReadBytes(Folder() / "ISOMETRIC.ini"),
              Settings("Variable 082 = 7.5\r\nVariable 180 = 39\r\nVariable 181 = 31\r\n"
                       "Variable 182 = 31\r\nVariable 185 = 7.500000\r\n"));
}

TEST_F(ProjectSettingsTest, TitleRowsAreNeverWritten) {
    auto settings = Loaded(1);
    settings->FindSection(3)->m_arrVariables[1].SetText(L"Renamed", false);
    settings->FindVariable(145)->SetReal(3.0, false);
    ASSERT_TRUE(settings->Save());
    EXPECT_EQ(ReadBytes(Folder() / "ELECTRIC.ini"), Settings("Variable 145 = 3.000000\r\n"));
}

TEST_F(ProjectSettingsTest, AStandardWithoutAFolderLoadsNothingAndCannotSave) {
    for (std::int32_t id : {2, 0, 7}) {
        SCOPED_TRACE(id);
        auto settings = Loaded(3, id);
        EXPECT_EQ(settings->GetProjectId(), id);
        EXPECT_TRUE(settings->GetPath().empty());
        EXPECT_EQ(settings->FindSection(0)->GetChoice(180), 0); // no migration either
        EXPECT_FALSE(settings->IsModified());
        settings->FindVariable(145)->SetReal(1.0, false);
        EXPECT_FALSE(settings->Save());
        EXPECT_TRUE(settings->IsModified());
    }
    EXPECT_FALSE(fs::exists(dir.Path() / "Projects" / "VX2D_PRJ_2 - Lost"));
}

TEST_F(ProjectSettingsTest, LoadingFromGeneralSettingsAlreadyRead) {
    Standard(2015, 1, 2);
    WriteBytes(Folder() / "Flow.ini", Settings("Variable 145 = 0.2\r\n"));
    CVX2D_GeneralSettings general;
    ASSERT_TRUE(general.Load(registry, 1));
    auto settings = NewProjectSettings(2);
    settings->BuildCatalogue(general.m_nWorkingUnits);
    settings->Load(general);
    EXPECT_EQ(settings->GetPath(), (Folder() / "Flow.ini").wstring());
    EXPECT_EQ(settings->FindVariable(145)->m_dValue, 0.2);
    EXPECT_EQ(settings->FindVariable(102)->m_dValue, 0.5); // imperial LTSCALE

    // General settings that were never loaded give no file.
    CVX2D_GeneralSettings unloaded;
    auto none = NewProjectSettings(2);
    none->BuildCatalogue(0);
    none->Load(unloaded);
    EXPECT_TRUE(none->GetPath().empty());
}

} // namespace
