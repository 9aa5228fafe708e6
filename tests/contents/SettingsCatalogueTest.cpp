// The four applications' settings catalogues: sections and their order, row
// counts, sample rows with both defaults, labels by id, the choice texts.
#include "contents/SettingsCatalogue.h"
#include "contents/ProjectSettings.h"
#include "contents/SettingsText.h"
#include "datafile/Application.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <vector>

namespace settings_catalogue_test {

using Base = CVX2D_ProjectSettingsBase;

std::unique_ptr<Base> Built(int application, int unitSystem) {
    auto settings = NewProjectSettings(application);
    settings->BuildCatalogue(unitSystem);
    return settings;
}

TEST(SettingsCatalogueTest, SectionsAndRowCountsPerApplication) {
    // (section id, rows) in catalogue order. ISOMETRIC's dimensioning section
    // holds two dimension styles more than the shared one.
    const std::map<int, std::vector<std::pair<int, int>>> expected = {
        {1, {{4, 9}, {6, 17}, {7, 11}, {1, 8}, {3, 24}}},
        {2, {{4, 15}, {8, 5}, {6, 39}, {0, 2}, {3, 24}}},
        {3, {{4, 15}, {8, 6}, {6, 13}, {2, 23}, {0, 10}, {3, 26}}},
        {4, {{4, 15}, {8, 4}, {6, 15}, {0, 8}, {1, 22}, {3, 24}}},
    };
    for (const auto& [application, sections] : expected) {
        for (int units : {0, 1}) {
            SCOPED_TRACE(testing::Message() << "application " << application << " units " << units);
            const auto settings = Built(application, units);
            EXPECT_EQ(settings->GetApplication(), application);
            EXPECT_FALSE(settings->IsModified());
            std::vector<std::pair<int, int>> got;
            for (const auto& section : settings->Sections()) {
                got.emplace_back(section.m_nId, static_cast<int>(section.m_arrVariables.size()));
                EXPECT_EQ(section.m_nUnitSystem, units);
            }
            EXPECT_EQ(got, sections);
        }
    }
}

TEST(SettingsCatalogueTest, SampleRowsWithBothDefaults) {
    struct SRow {
        int application, section, index, id;
        const wchar_t* label;
        const wchar_t* key;
        int kind;
        const wchar_t* metric;
        const wchar_t* imperial;
        std::vector<int> choices;
    };
    // One row of every kind, and rows whose key, kind or place differ
    // between the applications that share their id.
    // clang-format off
    const SRow rows[] = {
        {1, 4, 0, 173, L"Text Style Name", L"", 7, L"STANDARD", L"STANDARD", {}},
        {1, 4, 5, 2, L"Maximum Number of Characters in Balloon Before Breaking", L"charno", 4,
         L"3", L"3", {}},
        {1, 4, 6, 99, L"Distance for Line Breaks", L"brkdis", 5, L"2.0", L"0.125", {}},
        {1, 4, 8, 189, L"Block Folder", L"", 6, L"", L"", {}},
        {1, 6, 0, 103, L"Disable Default LTSCALE Setting", L"disbl_lt", 1, L"Off", L"Off", {}},
        {2, 4, 13, 44, L"Drawing Template", L"", 2, L"acad", L"acad", {}},
        {2, 8, 3, 155, L"Valve Appearance 1", L"valv_flg", 8,
         L"Place Flanged Valves", L"Place Flanged Valves", {17, 18}},
        {3, 4, 7, 113, L"Number Pipe Diameters for Pipebend Straight Ends", L"s-bend", 5,
         L"2.0", L"2.0", {}},
        {4, 4, 8, 113, L"Number Pipe Diameters for Pipebend Straight Ends", L"s-bend", 4,
         L"2", L"2", {}},
        {4, 6, 9, 71, L"Flow Arrow Length Scale", L"", 5, L"0.0", L"0.0", {}},
        {4, 4, 11, 169, L"Double Line Drafting Start Size", L"sd-brk", 2, L"350mm", L"14\"", {}},
        {4, 1, 0, 183, L"Structural Display Units", L"", 8, L"", L"", {39, 40}},
        // The shared dimensioning section, with ISOMETRIC's two extra styles.
        {1, 3, 1, 165, L"Project Setting Title", L"", 7,
         L"Lines and Arrows", L"Lines and Arrows", {}},
        {1, 3, 16, 166, L"Linear Unit Format", L"DIMLUNIT", 8,
         L"Decimal", L"Architectural", {25, 26, 27, 28, 29}},
        {3, 3, 1, 177, L"Dimension Style Name: Iso Left", L"", 7, L"ISO-L", L"ISO-L", {}},
        {3, 3, 25, 25, L"Dimension Associativity", L"DIMASO", 8,
         L"Associative", L"Associative", {8, 15, 1}},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "application " << row.application << " id " << row.id);
        for (int units : {0, 1}) {
            const auto settings = Built(row.application, units);
            const Base::CSection* section = settings->FindSection(row.section);
            ASSERT_NE(section, nullptr);
            ASSERT_LT(row.index, static_cast<int>(section->m_arrVariables.size()));
            const Base::CVariable& v = section->m_arrVariables[row.index];
            EXPECT_EQ(v.m_nId, row.id);
            EXPECT_EQ(SettingsVariableLabel(v.m_nId), row.label);
            EXPECT_EQ(v.m_strKey, row.key);
            EXPECT_EQ(v.m_nKind, row.kind);
            EXPECT_EQ(SettingsValueText(v), units == 0 ? row.metric : row.imperial);
            EXPECT_EQ(std::vector<int>(v.m_arrChoices.begin(), v.m_arrChoices.end()), row.choices);
            EXPECT_TRUE(v.m_bClean);
        }
    }
}

TEST(SettingsCatalogueTest, RealDefaultsAreTheDoublesOfTheDecimalsWritten) {
    EXPECT_EQ(Built(2, 1)->FindSection(6)->GetReal(88), 1.6667);
    EXPECT_EQ(Built(3, 1)->FindSection(2)->GetReal(148), 0.01563);
}

TEST(SettingsCatalogueTest, EveryIdHasOneLabelAcrossTheCatalogues) {
    std::map<int, std::set<std::wstring>> labels;
    for (int application = 1; application <= 4; ++application) {
        for (const auto& section : SettingsCatalogue(application)) {
            for (const auto part : section.parts) {
                for (const auto& row : part)
                    labels[row.id].insert(row.label);
            }
        }
    }
    for (const auto& [id, names] : labels) {
        SCOPED_TRACE(id);
        EXPECT_EQ(names.size(), 1u);
        EXPECT_EQ(SettingsVariableLabel(id), *names.begin());
    }
    // Ids 0 to 192 except four that no catalogue uses.
    EXPECT_EQ(labels.size(), 189u);
    for (int unused : {101, 120, 140, 141, 193, -1}) {
        EXPECT_EQ(labels.count(unused), 0u);
        EXPECT_EQ(SettingsVariableLabel(unused), L"");
    }
}

TEST(SettingsCatalogueTest, TitleRowsHeadTheDimensioningGroupsOnly) {
    for (int application = 1; application <= 4; ++application) {
        std::vector<std::wstring> headings;
        const auto settings = Built(application, 0);
        for (const auto& section : settings->Sections()) {
            for (const auto& v : section.m_arrVariables) {
                if (v.IsTitle()) {
                    EXPECT_EQ(section.m_nId, Base::eDimensioning);
                    EXPECT_EQ(v.m_nKind, Base::eText);
                    headings.push_back(v.m_strText);
                }
            }
        }
        EXPECT_EQ(headings, (std::vector<std::wstring>{L"Lines and Arrows", L"Text", L"Fit",
                                                       L"Primary Units", L"Miscellaneous"}));
    }
}

TEST(SettingsCatalogueTest, ChoiceTextsKeepTheGapAndTheSpelling) {
    const std::pair<int, const wchar_t*> texts[] = {
        {0, L""},
        {2, L""},
        {3, L"Center"},
        {13, L"Conform to JIS Representation"},
        {55, L"Seperate Beveled from Screwed/Socket Weld"},
        {57, L"Place All in Welded Fittings"},
        {58, L""},
        {-1, L""},
    };
    for (const auto& [value, text] : texts)
        EXPECT_EQ(PrjValText(value), text) << value;
}

TEST(SettingsCatalogueTest, SectionNamesAndFactory) {
    EXPECT_EQ(Base::SectionName(0), L"Bill of Material");
    EXPECT_EQ(Base::SectionName(3), L"Dimensioning Variables");
    EXPECT_EQ(Base::SectionName(8), L"System Toggles");
    EXPECT_EQ(Base::SectionName(9), L"");
    EXPECT_EQ(Base::SectionName(-1), L"");

    EXPECT_NE(dynamic_cast<CVX2D_ProjectSettingsElectric*>(NewProjectSettings(1).get()), nullptr);
    EXPECT_NE(dynamic_cast<CVX2D_ProjectSettingsFlow*>(NewProjectSettings(2).get()), nullptr);
    EXPECT_NE(dynamic_cast<CVX2D_ProjectSettingsIso*>(NewProjectSettings(3).get()), nullptr);
    EXPECT_NE(dynamic_cast<CVX2D_ProjectSettingsOrtho*>(NewProjectSettings(4).get()), nullptr);
    EXPECT_EQ(NewProjectSettings(0), nullptr);
    EXPECT_EQ(NewProjectSettings(5), nullptr);
    // A fresh object is empty until its catalogue is built.
    EXPECT_TRUE(NewProjectSettings(1)->Sections().empty());
}

TEST(SettingsCatalogueTest, RebuildingStartsOverAtTheOtherUnitSystem) {
    auto settings = Built(1, 0);
    settings->FindVariable(145)->SetReal(9.0, false);
    ASSERT_TRUE(settings->IsModified());
    settings->BuildCatalogue(2); // any non-zero value is imperial
    EXPECT_FALSE(settings->IsModified());
    EXPECT_EQ(settings->FindVariable(145)->m_dValue, 0.125);
    EXPECT_EQ(settings->Sections().size(), 5u);
}

TEST(ApplicationTest, NamesAndWhatAUserMayType) {
    EXPECT_EQ(ApplicationSettingsName(2), L"P&ID");
    EXPECT_EQ(ApplicationName(2), L"PID");
    EXPECT_EQ(ApplicationFileStem(2, 2015), L"Flow");
    EXPECT_EQ(ApplicationFileStem(3, 2016), L"ISOMETRIC");
    EXPECT_EQ(ApplicationName(5), L"");
    const std::pair<const wchar_t*, int> typed[] = {
        {L"1", 1},     {L" 4 ", 4}, {L"p&id", 2}, {L"PID", 2}, {L"flow", 2}, {L"Iso", 3},
        {L"ortho", 4}, {L"0", 0},   {L"5", 0},    {L"12", 0},  {L"HVAC", 0}, {L"", 0},
    };
    for (const auto& [text, application] : typed)
        EXPECT_EQ(ParseApplication(text), application) << text;
}

} // namespace settings_catalogue_test
