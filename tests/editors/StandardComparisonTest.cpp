// The comparison grid of two standards: the rows, their texts, marks and
// looks, the two ways a rebuild is abandoned, and the rating formats list.
#include "editors/StandardComparison.h"
#include "contents/ProjectSettings.h"
#include "editors/RatingFormats.h"
#include "store/ProjectRegistry.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <map>

namespace fs = std::filesystem;
using test::WriteBytes;

namespace standard_comparison_test {

using Kind = ECompareRowKind;

// Standards 1 "Pipe" and 2 "Plant" (metric, 2023) and 3 "Imperial", each
// with only its General.ini unless a test writes more.
class StandardComparisonTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandards({"Plant", "Imperial"});
        General(1, "Working = 0\r\nDisplayed = 0\r\n");
        General(2, "Working = 0\r\nDisplayed = 0\r\n");
        General(3, "Working = 1\r\nDisplayed = 2\r\n");
    }
    fs::path Folder(int id) const {
        const char* names[] = {"", "Pipe", "Plant", "Imperial"};
        return Root() / "Projects" / ("VX2D_PRJ_" + std::to_string(id) + " - " + names[id]);
    }
    void Write(int id, const char* file, const std::string& bytes) const {
        WriteBytes(Folder(id) / file, bytes);
    }
    void General(int id, const std::string& units, const std::string& more = "") const {
        Write(id, "General.ini",
              "[General]\r\nProjectVersion = 2023\r\n" + more + "\r\n[Units]\r\n" + units);
    }
    const SComparison& Compare(std::int32_t id1, std::int32_t id2, bool complete = true) {
        comparison.SetStandard1(id1);
        comparison.SetStandard2(id2);
        EXPECT_EQ(comparison.Rebuild(), complete) << comparison.Result().reason;
        return comparison.Result();
    }

    CVX2D_StandardComparison comparison{registry};
};

// A value row as "HEADING | LABEL | TEXT1 | TEXT2", the heading being the
// section heading above it.
using Rows = std::vector<std::wstring>;

// The value rows; only the marked ones when `differing`.
Rows ValueRows(const SComparison& result, bool differing) {
    Rows rows;
    std::wstring heading;
    for (const auto& row : result.rows) {
        if (row.kind == Kind::eHeading)
            heading = row.label;
        else if (row.kind == Kind::eValue && (row.differ || !differing))
            rows.push_back(heading + L" | " + row.label + L" | " + row.text1 + L" | " + row.text2);
    }
    return rows;
}

// The value rows of one section as "LABEL | TEXT1 | TEXT2".
Rows Section(const SComparison& result, const std::wstring& heading) {
    Rows rows;
    for (const auto& row : ValueRows(result, false)) {
        if (row.starts_with(heading + L" | "))
            rows.push_back(row.substr(heading.size() + 3));
    }
    return rows;
}

// Every row looks as its kind and mark say.
void ExpectLooks(const SComparison& result) {
    for (const auto& row : result.rows) {
        SCOPED_TRACE(std::string(row.label.begin(), row.label.end()));
        std::optional<SCompareColour> background;
        if (row.kind == Kind::eHeading)
            background = kCompareHeadingColour;
        else if (row.kind == Kind::eSubHeading)
            background = kCompareSubHeadingColour;
        else if (row.differ)
            background = kCompareDifferColour;
        EXPECT_EQ(row.centred, row.kind != Kind::eValue);
        EXPECT_EQ(row.background1, background);
        EXPECT_EQ(row.background2, background);
        if (row.kind == Kind::eValue)
            EXPECT_EQ(row.differ, row.text1 != row.text2);
        else
            EXPECT_TRUE(row.text1.empty() && row.text2.empty() && !row.differ);
    }
}

TEST_F(StandardComparisonTest, AStandardComparedWithItselfMarksNothing) {
    Write(1, "Lines.ini", "[LineList]\r\nVX2D_LINE_1 = 100-A\r\n");
    Write(1, "Specs.ini", "[SpecList]\r\nVX2D_SPEC_4 = Carbon Steel\r\n");
    for (const int id : {1, 3}) {
        const SComparison& result = Compare(id, id);
        ExpectLooks(result);
        EXPECT_TRUE(ValueRows(result, true).empty());
        EXPECT_EQ(result.header1, result.header2);
        // 30 headings, 3 general, 6 locations, 15 borders, 327 settings
        // (ELECTRIC's civil section is not compared), 115 layers; and
        // standard 1's line and spec.
        EXPECT_EQ(result.rows.size(), id == 1 ? 498u : 496u);
    }
    EXPECT_EQ(Section(Compare(1, 1), L"Lines"), Rows{L"100-A | checked | checked"});
}

TEST_F(StandardComparisonTest, BordersCompareRankByRankInEachStandardsOwnUnits) {
    Write(1, "Borders.ini", "[Border]\r\nA0 = Metric_A0.dwg\r\n");
    // English first: rows named E..A, standard 2's values from A0..A4.
    const Rows english = Section(Compare(3, 1), L"Border Settings");
    ASSERT_EQ(english.size(), 15u);
    EXPECT_EQ(english[0], L"Drawing Border: E | Bord_E.dwg | Metric_A0.dwg");
    EXPECT_EQ(english[1], L"Drawing Limits: E | 0.0,0.0 and 44.0,34.0 | 0.0,0.0 and 1189.0,841.0");
    EXPECT_EQ(english[2], L"Revision Block: E | Rev_E.dwg | Rev_A0.dwg");
    EXPECT_EQ(english[9], L"Drawing Border: B | Bord_B.dwg | Bord_A3.dwg");
    EXPECT_EQ(english[14], L"Revision Block: A | Rev_A.dwg | Rev_A4.dwg");
    // Metric first: rows named after standard 1's sheets.
    const Rows swapped = Section(Compare(1, 3), L"Border Settings");
    ASSERT_EQ(swapped.size(), 15u);
    EXPECT_EQ(swapped[0], L"Drawing Border: A0 | Metric_A0.dwg | Bord_E.dwg");
    EXPECT_EQ(swapped[14], L"Revision Block: A4 | Rev_A4.dwg | Rev_A.dwg");
    EXPECT_EQ(Compare(3, 1).header1, L"Imperial");
}

TEST_F(StandardComparisonTest, DeliberatelyDifferentStandardsMarkExactlyTheirDifferences) {
    General(2, "Working = 0\r\nDisplayed = 1\r\nRatingsFormat = 3\r\n",
            "TemplatesLocation = T:\\Templates\r\n\r\n[Drawings Location]\r\nPID = P:\\PID\r\n");
    Write(2, "Borders.ini",
          "[Border]\r\nA1 = Custom_A1.dwg\r\n\r\n[Limits - Max]\r\nA2 = 600.0,400.0\r\n");
    Write(1, "Lines.ini",
          "[LineList]\r\nVX2D_LINE_1 = Line X\r\nVX2D_LINE_2 = 100-A\r\nVX2D_LINE_3 = 20-B\r\n");
    Write(2, "Lines.ini",
          "[LineList]\r\nVX2D_LINE_4 = 3,000-C\r\nVX2D_LINE_5 = 20-B\r\n\r\n"
          "[DeletedLines]\r\nVX2D_LINE_6 = 100-A\r\n");
    Write(1, "Specs.ini", "[SpecList]\r\nVX2D_SPEC_10 = SS\r\nVX2D_SPEC_2 = CS\r\n");
    Write(2, "Specs.ini", "[SpecList]\r\nVX2D_SPEC_0 = Z\r\nVX2D_SPEC_10 = SS\r\n");
    Write(2, "ELECTRIC.ini", "[Settings]\r\nVariable 102 = 12\r\nVariable 036 = 1.5\r\n");
    Write(2, "PID.ini", "[Settings]\r\nVariable 145 = 3.5\r\nVariable 131 = 1\r\n");
    Write(2, "ISOMETRIC.ini", "[Settings]\r\nVariable 009 = 23\r\n");
    Write(2, "Layers.ini",
          "[PID - Colors]\r\n038 = 255,0,0,1\r\n\r\n[PID - LineWeights]\r\n038 = 25\r\n\r\n"
          "[PID - Layers]\r\n038 = PROC\r\n");

    const SComparison& result = Compare(1, 2);
    EXPECT_EQ(result.header1, L"Pipe");
    EXPECT_EQ(result.header2, L"Plant");
    ExpectLooks(result);
    EXPECT_EQ(ValueRows(result, true),
              (Rows{
                  L"General Settings | Displayed Units | Metric - OD | Metric - NPS",
                  L"General Settings | Rating Format | 150# | CL150",
                  L"File Locations | P & ID Drawing Folder |  | P:\\PID",
                  L"File Locations | Templates |  | T:\\Templates",
                  L"Border Settings | Drawing Border: A1 | Bord_A1.dwg | Custom_A1.dwg",
                  L"Border Settings | Drawing Limits: A2 | 0.0,0.0 and 594.0,420.0 | 0.0,0.0 and "
                  L"600.0,400.0",
                  L"Lines | 100-A | checked | ",
                  L"Lines | 3,000-C |  | checked",
                  L"Lines | Line X | checked | ",
                  L"Specs | 0. Z |  | checked",
                  L"Specs | 2. CS | checked | ",
                  L"ELECTRIC - Scale Factors | LTSCALE | 10.0 | 12.0",
                  L"ELECTRIC - Dimensioning Variables | Dimension Text Height | 2.5 | 1.5",
                  L"P&ID - General Drawing Parameters | Text Height | 2.5 | 3.5",
                  L"P&ID - System Toggles | Spec Check | Off | On",
                  L"PID - Layers | Process | PROCESS, 0,255,255,4, CONTINUOUS, Default | PROC, "
                  L"255,0,0,1, CONTINUOUS, 0.25 mm",
                  L"ISOMETRIC - System Toggles | BW Elbows | Curved | Square",
              }));
    // The counts the window shows: per section with differences, and in all.
    const SCompareCounts counts = CountCompareDifferences(result);
    EXPECT_EQ(counts.total, 17u);
    std::map<std::wstring, std::size_t> sections;
    for (std::size_t i = 0; i < result.rows.size(); ++i) {
        if (result.rows[i].kind == Kind::eHeading && counts.underHeading[i] > 0)
            sections[result.rows[i].label] = counts.underHeading[i];
    }
    EXPECT_EQ(sections, (std::map<std::wstring, std::size_t>{
                            {L"General Settings", 2},
                            {L"File Locations", 2},
                            {L"Border Settings", 2},
                            {L"Lines", 3},
                            {L"Specs", 2},
                            {L"ELECTRIC - Scale Factors", 1},
                            {L"ELECTRIC - Dimensioning Variables", 1},
                            {L"P&ID - General Drawing Parameters", 1},
                            {L"P&ID - System Toggles", 1},
                            {L"PID - Layers", 1},
                            {L"ISOMETRIC - System Toggles", 1},
                        }));
    // Numbered keys sort by number, other keys by character code.
    EXPECT_EQ(Section(result, L"Lines"), (Rows{L"20-B | checked | checked", L"100-A | checked | ",
                                               L"3,000-C |  | checked", L"Line X | checked | "}));
    EXPECT_EQ(Section(result, L"Specs"),
              (Rows{L"0. Z |  | checked", L"2. CS | checked | ", L"10. SS | checked | checked"}));
    const Rows layers = Section(result, L"ORTHO - Layers");
    ASSERT_EQ(layers.size(), 37u);
    EXPECT_TRUE(layers[5].starts_with(L"900 lb | 900LB"));
    EXPECT_TRUE(layers[6].starts_with(L"1,500 lb | 1500LB"));
    EXPECT_TRUE(layers[15].starts_with(L"Attribute | ATTRIB"));
}

// A sub-class that gives standard 2's ISOMETRIC "Bill of Material" one
// variable fewer than the catalogue.
class CShortIso : public CVX2D_ProjectSettingsIso {
public:
    void BuildCatalogue(std::int32_t unitSystem) override {
        CVX2D_ProjectSettingsIso::BuildCatalogue(unitSystem);
        FindSection(eBillOfMaterial)->m_arrVariables.pop_back();
    }
};

TEST_F(StandardComparisonTest, AnAbandonedRebuildKeepsTheRowsBuiltSoFar) {
    struct SCase {
        const char* name;
        int ratingsFormat;     // standard 2's
        std::string ratingXml; // empty: none
        bool shortIso;
        std::size_t rows; // rows kept
        std::wstring lastLabel;
        std::wstring reason; // empty: completes
    };
    const SCase cases[] = {
        {"rating format unknown", 7, "", false, 3, L"Displayed Units",
         L"Rating format 7 of standard 'Plant' is not in the list of rating formats."},
        {"rating format from Rating.xml", 7,
         "<Formats><Count>7</Count><Title1>150#</Title1><Title7>PN 20</Title7></Formats>", false,
         496, L"", L""},
        {"shorter settings section", 1, "", true, 300, L"BOM Placement Default",
         L"\"ISOMETRIC - Bill of Material\" of standard 'Plant' has 9 settings where standard "
         L"'Pipe' has 10."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        General(2, "Working = 0\r\nDisplayed = 0\r\nRatingsFormat = " +
                       std::to_string(c.ratingsFormat) + "\r\n");
        std::error_code ec;
        fs::remove(Root() / "Rating.xml", ec);
        if (!c.ratingXml.empty())
            WriteBytes(Root() / "Rating.xml", c.ratingXml);
        comparison.SetSettingsFactory(
            [&c](std::int32_t application,
                 std::int32_t standard) -> std::unique_ptr<CVX2D_ProjectSettingsBase> {
                if (c.shortIso && application == 3 && standard == 2)
                    return std::make_unique<CShortIso>();
                return nullptr;
            });
        const SComparison& result = Compare(1, 2, c.reason.empty());
        EXPECT_EQ(result.failed, !c.reason.empty());
        EXPECT_EQ(result.reason, c.reason);
        EXPECT_EQ(result.rows.size(), c.rows);
        EXPECT_EQ(result.header2, L"Plant");
        if (!c.lastLabel.empty())
            EXPECT_EQ(result.rows.back().label, c.lastLabel);
        else
            EXPECT_EQ(ValueRows(result, true),
                      Rows{L"General Settings | Rating Format | 150# | PN 20"});
    }
    EXPECT_EQ(CompareErrorText(L"Why."), L"Error comparing standards: Why.");
}

TEST_F(StandardComparisonTest, AnUnsetOrUnknownSideGivesNoRows) {
    // A missing side gives the default headers; an unknown one the reason.
    const std::tuple<std::int32_t, std::int32_t, std::wstring, std::wstring> cases[] = {
        {-1, -1, L"Standard 1", L""},
        {1, -1, L"Standard 1", L""},
        {-1, 2, L"Standard 1", L""},
        {1, 9, L"Pipe", L"Standard 9 does not exist."},
    };
    for (const auto& [id1, id2, header1, reason] : cases) {
        const SComparison& result = Compare(id1, id2, reason.empty());
        EXPECT_TRUE(result.rows.empty());
        EXPECT_EQ(result.header0, L"Setting");
        EXPECT_EQ(result.header1, header1);
        EXPECT_EQ(result.header2, L"Standard 2");
        EXPECT_EQ(result.reason, reason);
    }
}

// Rows written one letter each: H a section heading, S a sub-heading, v a
// value both standards share, d one that differs.
SComparison Shaped(const std::string& shape) {
    SComparison comparison;
    for (const char c : shape) {
        SCompareRow row;
        row.kind = c == 'H' ? Kind::eHeading : c == 'S' ? Kind::eSubHeading : Kind::eValue;
        row.differ = c == 'd';
        comparison.rows.push_back(row);
    }
    return comparison;
}

TEST(CompareCountsTest, EachHeadingCountsTheDifferencesUpToItsNextHeading) {
    const std::tuple<std::string, std::size_t, std::vector<std::size_t>> cases[] = {
        {"", 0, {}},
        {"vv", 0, {0, 0}},
        {"dvH", 1, {0, 0, 0}}, // values before the first heading belong to none
        {"HdSddvHv", 3, {3, 0, 2, 0, 0, 0, 0, 0}},
        {"HSdHSvSd", 2, {1, 1, 0, 1, 0, 0, 1, 0}},
        {"SdHdd", 3, {1, 0, 2, 0, 0}}, // a sub-heading before any section heading
        {"HSSH", 0, {0, 0, 0, 0}},
    };
    for (const auto& [shape, total, underHeading] : cases) {
        const SCompareCounts counts = CountCompareDifferences(Shaped(shape));
        EXPECT_EQ(counts.total, total) << shape;
        EXPECT_EQ(counts.underHeading, underHeading) << shape;
    }
}

TEST(CompareCountsTest, DifferencesOnlyKeepsTheHeadingsAndTheDifferingValues) {
    const SComparison comparison = Shaped("HvdSvd");
    const bool everything[] = {true, true, true, true, true, true};
    const bool differing[] = {true, false, true, true, false, true};
    for (std::size_t i = 0; i < comparison.rows.size(); ++i) {
        EXPECT_EQ(CompareRowShown(comparison.rows[i], false), everything[i]) << i;
        EXPECT_EQ(CompareRowShown(comparison.rows[i], true), differing[i]) << i;
    }
}

TEST(CompareCountsTest, CountTexts) {
    const std::tuple<std::size_t, std::wstring, std::wstring> cases[] = {
        {0, L"No differences", L"Lines"},
        {1, L"1 difference", L"Lines (1 difference)"},
        {2, L"2 differences", L"Lines (2 differences)"},
        {1200, L"1200 differences", L"Lines (1200 differences)"},
    };
    for (const auto& [count, text, heading] : cases) {
        EXPECT_EQ(CompareDifferencesText(count), text);
        EXPECT_EQ(CompareHeadingText(L"Lines", count), heading);
    }
}

TEST(RatingFormatsTest, RatingXmlShapesAndTheBuiltInList) {
    struct SCase {
        std::wstring xml;
        bool usable;
        std::vector<std::pair<int, std::wstring>> formats; // code, title
    };
    const SCase cases[] = {
        {LR"(<?xml version="1.0"?>
<!-- two formats -->
<Formats version="2">
  <Count> 3 </Count>
  <Title1>150&#35;</Title1><Format1>%d#</Format1>
  <Title3><![CDATA[Class <150>]]></Title3>
  <Title10>beyond Count</Title10>
</Formats>)",
         true,
         {{1, L"150#"}, {3, L"Class <150>"}}},
        {L"<Formats><Count>2</Count><Title2>A &amp; B &#x263A;</Title2><Title1/></Formats>",
         true,
         {{1, L""}, {2, L"A & B \u263A"}}},
        {L"<Formats><Title1>no count</Title1></Formats>", false, {}},
        {L"<Ratings><Count>1</Count><Title1>x</Title1></Ratings>", false, {}},
        {L"<Formats><Count>1</Count><Title1>unclosed</Formats>", false, {}},
        {L"not xml at all", false, {}},
    };
    for (const auto& c : cases) {
        std::vector<SRatingFormat> formats;
        EXPECT_EQ(ParseRatingFormats(c.xml, formats), c.usable);
        std::vector<std::pair<int, std::wstring>> got;
        for (const auto& f : formats)
            got.emplace_back(f.code, f.title);
        EXPECT_EQ(got, c.formats);
    }
    // The shipped templates and a missing "RatingsFormat" both use code 1.
    ASSERT_NE(FindRatingFormat(BuiltInRatingFormats(), 1), nullptr);
    EXPECT_EQ(FindRatingFormat(BuiltInRatingFormats(), 0), nullptr);
}

} // namespace standard_comparison_test
