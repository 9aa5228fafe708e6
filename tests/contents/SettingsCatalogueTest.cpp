// The four applications' settings catalogues: sections and their order, row
// counts, sample rows with both defaults, labels by id, the choice texts.
#include "contents/SettingsCatalogue.h"
#include "contents/ProjectSettings.h"
#include "contents/SettingsText.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <vector>

namespace {

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
    // 261 catalogue rows: each application's own sections and the shared
    // dimensioning section once.
    int tableRows = 24;
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
        for (const auto& [section, rows] : sections)
            tableRows += section == 3 ? 0 : rows;
    }
    EXPECT_EQ(tableRows, 261);
}

TEST(SettingsCatalogueTest, SampleRowsOfEverySectionWithBothDefaults) {
    struct SRow {
        int application, section, index, id;
        const wchar_t* label;
        const wchar_t* key;
        int kind;
        const wchar_t* metric;
        const wchar_t* imperial;
        std::vector<int> choices;
    };
    // clang-format off
    const SRow rows[] = {
        // ELECTRIC
        {1, 4, 0, 173, L"Text Style Name", L"", 7, L"STANDARD", L"STANDARD", {}},
        {1, 4, 1, 168, L"Text Font", L"", 3,
         L"RomanS; Regular; romans__.ttf", L"RomanS; Regular; romans__.ttf", {}},
        {1, 4, 5, 2, L"Maximum Number of Characters in Balloon Before Breaking", L"charno", 4,
         L"3", L"3", {}},
        {1, 4, 6, 99, L"Distance for Line Breaks", L"brkdis", 5, L"2.0", L"0.125", {}},
        {1, 4, 8, 189, L"Block Folder", L"", 6, L"", L"", {}},
        {1, 6, 0, 103, L"Disable Default LTSCALE Setting", L"disbl_lt", 1, L"Off", L"Off", {}},
        {1, 6, 2, 12, L"Cable ID Scale Factor", L"cbl-id", 5, L"10.0", L"0.5", {}},
        {1, 6, 9, 144, L"Terminal Block Wiring Tag Text Spacing", L"txtspc", 5,
         L"2.0", L"0.0625", {}},
        {1, 6, 16, 21, L"Add Continuation Ends Scale", L"scl31", 5, L"5.0", L"0.25", {}},
        {1, 7, 0, 6, L"Bus Bar Line Thickness", L"busbar", 5, L"0.5", L"0.0625", {}},
        {1, 7, 7, 13, L"Cable Tray Fitting Polyline Thickness", L"cbthck", 5,
         L"0.25", L"0.03125", {}},
        {1, 7, 10, 77, L"Heat Tracing Arc Spacing", L"ht-spc", 5, L"5.0", L"0.25", {}},
        {1, 1, 0, 126, L"Single Door Width", L"sndrwd", 5, L"914.0", L"36.0", {}},
        {1, 1, 3, 38, L"Door and Window Frame Width", L"drfrme", 5, L"50.0", L"2.0", {}},
        {1, 1, 7, 70, L"Distance from Floor to Door Knob", L"knbdis", 5, L"1066.0", L"42.0", {}},
        // P&ID
        {2, 4, 5, 55, L"Exchanger and Reboiler Flange Space", L"exchds", 5, L"1.0", L"0.0625", {}},
        {2, 4, 8, 154, L"Utility Line Thickness", L"utiltk", 5, L"0.25", L"0.015625", {}},
        {2, 4, 11, 81, L"Maximum Number of Characters in Instrument Balloon Before Breaking", L"charno", 4,
         L"3", L"3", {}},
        {2, 4, 13, 44, L"Drawing Template", L"", 2, L"acad", L"acad", {}},
        {2, 8, 0, 118, L"Pipe Spec", L"pip_spc", 1, L"On", L"On", {}},
        {2, 8, 3, 155, L"Valve Appearance 1", L"valv_flg", 8,
         L"Place Flanged Valves", L"Place Flanged Valves", {17, 18}},
        {2, 8, 4, 156, L"Valve Appearance 2", L"spc_flg", 8,
         L"Show Flanged as per Spec", L"Show Flanged as per Spec", {21, 10}},
        {2, 6, 5, 108, L"Grade/Drain/Expansion Joint/Flex Hose/Vortex Breaker etc.", L"scl10", 5,
         L"10.0", L"0.375", {}},
        {2, 6, 12, 0, L"Arrows Scaling Factor", L"scl22", 5, L"5.0", L"0.25", {}},
        {2, 6, 14, 179, L"Flow Arrow Width Scale", L"scl22", 5, L"5.0", L"0.25", {}},
        {2, 6, 23, 88, L"Senior Run Line Break Distance", L"scl8a", 5, L"40.0", L"1.6667", {}},
        {2, 6, 26, 84, L"Instr.: Line Symbols Scale: // -o- X L etc.", L"scl11", 5,
         L"1.2", L"1.0", {}},
        {2, 6, 38, 49, L"Expansion Joint, Flame Arrestor, Mixer Block Scaling", L"scl31b", 5,
         L"10.0", L"0.5", {}},
        {2, 0, 0, 106, L"Scale Factor for Material ID Balloons", L"balscl", 5, L"10.0", L"0.5", {}},
        {2, 0, 1, 191, L"BOM Placement Default", L"", 8,
         L"Top Right", L"Top Right", {52, 51, 53, 54}},
        // ISOMETRIC
        {3, 4, 1, 174, L"Text Style Name: Iso Left", L"", 7, L"ISO-L", L"ISO-L", {}},
        {3, 4, 5, 145, L"Text Height", L"txthgt", 5, L"2.5", L"0.09375", {}},
        {3, 4, 7, 113, L"Number Pipe Diameters for Pipebend Straight Ends", L"s-bend", 5,
         L"2.0", L"2.0", {}},
        {3, 4, 11, 62, L"Flange Appearance", L"flgshp", 8, L"Standard", L"Standard", {22, 14}},
        {3, 4, 14, 99, L"Distance for Line Breaks", L"brkdis", 5, L"3.0", L"0.125", {}},
        {3, 8, 3, 9, L"BW Elbows", L"crvell", 8, L"Curved", L"Curved", {5, 23}},
        {3, 8, 5, 67, L"Flange Insert Point", L"flgins", 8, L"Weld", L"Weld", {24, 9}},
        {3, 6, 2, 82, L"Instrument Balloon Scale", L"scl1", 5, L"10.0", L"0.375", {}},
        {3, 6, 7, 71, L"Flow Arrow Length Scale", L"scl6", 5, L"10.0", L"0.375", {}},
        {3, 6, 12, 185, L"Centerline Symbol Scale", L"", 5, L"0.0", L"0.0", {}},
        {3, 2, 4, 172, L"Check Valve Arrow Length", L"", 5, L"0.25", L"0.25", {}},
        {3, 2, 10, 148, L"THRD/SW Fitting Polyline Width", L"s-pthk", 5, L"0.25", L"0.01563", {}},
        {3, 2, 22, 3, L"Base Supports Width", L"suptwd", 5, L"2.0", L"0.125", {}},
        {3, 0, 3, 170, L"Bolt Diameter Size Units", L"bltimp", 8, L"English", L"English", {39, 40}},
        {3, 0, 5, 182, L"Bolt Diameter Size Precision", L"", 8,
         L"", L"", {30, 31, 32, 33, 34, 35, 36, 37, 38}},
        {3, 0, 7, 190, L"Eccentric Reducer and Swage Unit Format", L"", 8,
         L"Decimal", L"Decimal", {25, 26, 27, 28, 29}},
        {3, 0, 9, 192, L"Swage BOM Sorting", L"", 8,
         L"Place All in Screwed/Socket Weld Fittings", L"Place All in Screwed/Socket Weld Fittings", {55, 56, 57}},
        {3, 3, 0, 176, L"Dimension Style Name", L"", 7, L"STANDARD", L"STANDARD", {}},
        {3, 3, 1, 177, L"Dimension Style Name: Iso Left", L"", 7, L"ISO-L", L"ISO-L", {}},
        {3, 3, 2, 178, L"Dimension Style Name: Iso Right", L"", 7, L"ISO-R", L"ISO-R", {}},
        {3, 3, 3, 165, L"Project Setting Title", L"", 7,
         L"Lines and Arrows", L"Lines and Arrows", {}},
        // ORTHO
        {4, 4, 7, 115, L"Pipe Insulation Symbol Length", L"inslen", 5, L"500.0", L"18.0", {}},
        {4, 4, 8, 113, L"Number Pipe Diameters for Pipebend Straight Ends", L"s-bend", 4,
         L"2", L"2", {}},
        {4, 4, 11, 169, L"Double Line Drafting Start Size", L"sd-brk", 2, L"350mm", L"14\"", {}},
        {4, 4, 12, 186, L"Pipe Double/Single Line Drafting", L"", 8,
         L"Double Line", L"Double Line", {42, 43}},
        {4, 8, 3, 72, L"Full Circle for Elbows Up", L"circup", 1, L"Off", L"Off", {}},
        {4, 6, 6, 129, L"Small Bore Single Line Pipe Width", L"scl5a", 5, L"0.25", L"0.015625", {}},
        {4, 6, 9, 71, L"Flow Arrow Length Scale", L"", 5, L"0.0", L"0.0", {}},
        {4, 6, 12, 75, L"Grating Scale", L"grtscl", 5, L"50.0", L"2.5", {}},
        {4, 0, 7, 192, L"Swage BOM Sorting", L"", 8,
         L"Seperate Beveled from Screwed/Socket Weld", L"Seperate Beveled from Screwed/Socket Weld", {55, 56, 57}},
        {4, 1, 0, 183, L"Structural Display Units", L"", 8, L"", L"", {39, 40}},
        {4, 1, 6, 39, L"Door Frame Width", L"drfrme", 5, L"50.0", L"2.0", {}},
        {4, 1, 14, 122, L"Maximum Riser Height", L"riserm", 5, L"210.0", L"8.25", {}},
        {4, 1, 19, 123, L"Number of Rungs Above a Platform", L"rungab", 4, L"4", L"4", {}},
        {4, 1, 21, 136, L"Linetype for Steel", L"stldash", 8, L"Hidden", L"Hidden", {11, 6}},
        // The shared dimensioning section (ELECTRIC's)
        {1, 3, 1, 165, L"Project Setting Title", L"", 7,
         L"Lines and Arrows", L"Lines and Arrows", {}},
        {1, 3, 6, 26, L"Dimension Center Marks and Centerlines", L"DIMCEN", 5,
         L"1.0", L"0.03125", {}},
        {1, 3, 9, 37, L"Vertical Position of Text in Relation to the Dimension Line", L"DIMTAD", 8,
         L"Place Text Above Dim. Line", L"Place Text Above Dim. Line", {4, 19, 20, 13}},
        {1, 3, 10, 184, L"Gap Distance Around the Dimension Text", L"DIMGAP", 5,
         L"0.625", L"0.09", {}},
        {1, 3, 13, 34, L"Suppress Dimension Lines Outside the Extension Lines", L"DIMSOXD", 1,
         L"On", L"On", {}},
        {1, 3, 16, 166, L"Linear Unit Format", L"DIMLUNIT", 8,
         L"Decimal", L"Architectural", {25, 26, 27, 28, 29}},
        {1, 3, 17, 167, L"Linear Precision", L"DIMDEC", 8,
         L"0", L"4", {30, 31, 32, 33, 34, 35, 36, 37, 38}},
        {1, 3, 18, 31, L"Fraction Format", L"DIMFRAC", 8,
         L"Horizontal", L"Horizontal", {12, 7, 16}},
        {1, 3, 21, 187, L"Zero Suppression", L"DIMZIN", 8,
         L"No zero feet or inches: 3 1/2\" or 1'-1/2\"", L"No zero feet or inches: 3 1/2\" or 1'-1/2\"", {44, 45, 46, 47, 48, 49, 50}},
        {1, 3, 22, 165, L"Project Setting Title", L"", 7, L"Miscellaneous", L"Miscellaneous", {}},
        {1, 3, 23, 25, L"Dimension Associativity", L"DIMASO", 8,
         L"Associative", L"Associative", {8, 15, 1}},
        {4, 3, 23, 25, L"Dimension Associativity", L"DIMASO", 8,
         L"Associative", L"Associative", {8, 15, 1}},
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
    const auto pid = Built(2, 1);
    EXPECT_EQ(pid->FindSection(6)->GetReal(88), 1.6667);
    EXPECT_EQ(pid->FindSection(6)->GetReal(18), 0.08);
    const auto iso = Built(3, 1);
    EXPECT_EQ(iso->FindSection(2)->GetReal(148), 0.01563);
    EXPECT_EQ(iso->FindSection(3)->GetReal(184), 0.09);
}

TEST(SettingsCatalogueTest, EveryIdHasOneLabelAcrossTheCatalogues) {
    std::map<int, std::set<std::wstring>> labels;
    std::set<int> ids;
    for (int application = 1; application <= 4; ++application) {
        for (const auto& section : SettingsCatalogue(application)) {
            for (const auto part : section.parts) {
                for (const auto& row : part) {
                    labels[row.id].insert(row.label);
                    ids.insert(row.id);
                }
            }
        }
    }
    for (const auto& [id, names] : labels) {
        SCOPED_TRACE(id);
        EXPECT_EQ(names.size(), 1u);
        EXPECT_EQ(SettingsVariableLabel(id), *names.begin());
    }
    // Ids 0 to 192 except four that no catalogue uses.
    EXPECT_EQ(ids.size(), 189u);
    for (int unused : {101, 120, 140, 141, 193, -1}) {
        EXPECT_EQ(ids.count(unused), 0u);
        EXPECT_EQ(SettingsVariableLabel(unused), L"");
    }
    EXPECT_EQ(SettingsVariableLabel(165), L"Project Setting Title");
    EXPECT_EQ(SettingsVariableLabel(145), L"Text Height");
    EXPECT_EQ(SettingsVariableLabel(38), L"Door and Window Frame Width");
    EXPECT_EQ(SettingsVariableLabel(39), L"Door Frame Width");
    EXPECT_EQ(SettingsVariableLabel(178), L"Dimension Style Name: Iso Right");
}

TEST(SettingsCatalogueTest, TitleRowsHeadTheDimensioningGroups) {
    for (int application = 1; application <= 4; ++application) {
        const auto settings = Built(application, 0);
        std::vector<std::wstring> headings;
        for (const auto& v : settings->FindSection(3)->m_arrVariables) {
            if (v.IsTitle()) {
                EXPECT_EQ(v.m_nKind, Base::eText);
                headings.push_back(v.m_strText);
            }
        }
        EXPECT_EQ(headings, (std::vector<std::wstring>{L"Lines and Arrows", L"Text", L"Fit",
                                                       L"Primary Units", L"Miscellaneous"}));
        // Nowhere else.
        int titles = 0;
        for (const auto& section : settings->Sections()) {
            for (const auto& v : section.m_arrVariables)
                titles += v.IsTitle() ? 1 : 0;
        }
        EXPECT_EQ(titles, 5);
    }
}

TEST(SettingsCatalogueTest, ChoiceTextsKeepTheGapAndTheSpelling) {
    const std::vector<const wchar_t*> texts = {
        L"",
        L"Associative",
        L"",
        L"Center",
        L"Center Text Between Ext. Lines",
        L"Curved",
        L"Dashed",
        L"Diagonal",
        L"Exploded",
        L"Face of Flange",
        L"Flanges Never Shown",
        L"Hidden",
        L"Horizontal",
        L"Conform to JIS Representation",
        L"Line Width",
        L"Non-Associative",
        L"Not Stacked",
        L"Place Flanged Valves",
        L"Place Valves without Flanges",
        L"Place Text Above Dim. Line",
        L"Place Text on Side of Dim. Line",
        L"Show Flanged as per Spec",
        L"Standard",
        L"Square",
        L"Weld",
        L"Scientific",
        L"Decimal",
        L"Engineering",
        L"Architectural",
        L"Fractional",
        L"0",
        L"1",
        L"2",
        L"3",
        L"4",
        L"5",
        L"6",
        L"7",
        L"8",
        L"Metric",
        L"English",
        L"Don't Place Valve",
        L"Double Line",
        L"Single Line",
        L"No zero feet or inches: 3 1/2\" or 1'-1/2\"",
        L"Show zero feet and inches: 0'-5\" or 1'-0 1/2\"",
        L"No zero inches: 1'-1/2\"",
        L"No zero feet: 4 1/2\" or 1'-01/2\"",
        L"No leading zeros: 12.00\"",
        L"No trailing zeros: 02.12\"",
        L"No leading or trailing zeros: 2.12\"",
        L"Top Left",
        L"Top Right",
        L"Bottom Left",
        L"Bottom Right",
        L"Seperate Beveled from Screwed/Socket Weld",
        L"Place All in Screwed/Socket Weld Fittings",
        L"Place All in Welded Fittings",
    };
    ASSERT_EQ(texts.size(), 58u);
    for (int value = 0; value < 58; ++value)
        EXPECT_EQ(PrjValText(value), texts[value]) << value;
    EXPECT_EQ(PrjValText(58), L"");
    EXPECT_EQ(PrjValText(-1), L"");
    EXPECT_EQ(ePrjSwageSeparate, 55);
    EXPECT_EQ(ePrjMetric, 39);
}

TEST(SettingsCatalogueTest, SectionNamesAndFactory) {
    const std::vector<const wchar_t*> names = {
        L"Bill of Material",       L"Civil/Structural Parameters", L"Component Sizing",
        L"Dimensioning Variables", L"General Drawing Parameters",  L"Layers",
        L"Scale Factors",          L"Scaling Variables",           L"System Toggles"};
    for (int id = 0; id < 9; ++id)
        EXPECT_EQ(Base::SectionName(id), names[id]);
    EXPECT_EQ(Base::SectionName(9), L"");
    EXPECT_EQ(Base::SectionName(-1), L"");

    EXPECT_NE(dynamic_cast<CVX2D_ProjectSettingsElectric*>(NewProjectSettings(1).get()), nullptr);
    EXPECT_NE(dynamic_cast<CVX2D_ProjectSettingsFlow*>(NewProjectSettings(2).get()), nullptr);
    EXPECT_NE(dynamic_cast<CVX2D_ProjectSettingsIso*>(NewProjectSettings(3).get()), nullptr);
    EXPECT_NE(dynamic_cast<CVX2D_ProjectSettingsOrtho*>(NewProjectSettings(4).get()), nullptr);
    EXPECT_EQ(NewProjectSettings(0), nullptr);
    EXPECT_EQ(NewProjectSettings(5), nullptr);
    // A fresh object is empty until its catalogue is built.
    const auto empty = NewProjectSettings(1);
    EXPECT_EQ(empty->GetProjectId(), 0);
    EXPECT_EQ(empty->GetApplication(), 0);
    EXPECT_TRUE(empty->Sections().empty());
    EXPECT_TRUE(empty->GetPath().empty());
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

} // namespace
