// settings show, set and catalogue run as a child process: the records, the
// messages of refusals and the bytes left in a standard's settings file.
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace {

using test::Joined;
using test::SRun;

// Standards 1 "Pipe" (metric), 2 "Imperial" and 3 "Old" (metric, made in the
// 2015 layout), none with a settings file.
class CliSettingsTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"standard", "create", "Pipe"}), "1\tPipe\n");
        ASSERT_EQ(Ok({"standard", "create", "Imperial", "--units", "imperial"}), "2\tImperial\n");
        ASSERT_EQ(Ok({"standard", "create", "Old", "--old-format"}), "3\tOld\n");
    }
    fs::path Folder(int id = 1) const {
        const char* names[] = {"", "Pipe", "Imperial", "Old"};
        return Projects() / ("VX2D_PRJ_" + std::to_string(id) + " - " + names[id]);
    }
    static std::vector<std::string> Lines(const std::string& text) {
        std::vector<std::string> lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        return lines;
    }
    // The record of variable `id` in `text`, empty when none.
    static std::string Record(const std::string& text, int id) {
        for (const auto& line : Lines(text)) {
            const auto tab = line.find('\t');
            if (line.compare(tab + 1, std::to_string(id).size() + 1, std::to_string(id) + "\t") ==
                0)
                return line;
        }
        return {};
    }
};

TEST_F(CliSettingsTest, AStandardWithoutASettingsFileShowsEveryDefault) {
    for (const char* app : {"ELECTRIC", "PID", "P&ID", "1", "2", "electric"}) {
        SCOPED_TRACE(app);
        EXPECT_EQ(Ok({"settings", "show", "1", app}), Ok({"settings", "catalogue", app}));
        EXPECT_EQ(Ok({"settings", "show", "2", app}),
                  Ok({"settings", "catalogue", app, "--units", "imperial"}));
    }
    // Showing wrote nothing: the standards still hold only General.ini.
    for (int id : {1, 2})
        EXPECT_EQ(std::distance(fs::directory_iterator(Folder(id)), fs::directory_iterator()), 1);

    const auto lines = Lines(Ok({"settings", "show", "1", "ELECTRIC"}));
    ASSERT_EQ(lines.size(), 69u);
    EXPECT_EQ(lines[0], "4\t173\tText Style Name\t\t7\tSTANDARD\t1");
    EXPECT_EQ(lines[1], "4\t168\tText Font\t\t3\tRomanS; Regular; romans__.ttf\t1");
    EXPECT_EQ(lines[3], "4\t145\tText Height\ttxthgt\t5\t2.5\t1");
    EXPECT_EQ(lines[8], "4\t189\tBlock Folder\t\t6\t\t1");
    EXPECT_EQ(lines[9], "6\t103\tDisable Default LTSCALE Setting\tdisbl_lt\t1\tOff\t1");
    EXPECT_EQ(lines[46], "3\t165\tProject Setting Title\t\t7\tLines and Arrows\t1");
    EXPECT_EQ(lines[68], "3\t25\tDimension Associativity\tDIMASO\t8\tAssociative\t1");
}

TEST_F(CliSettingsTest, IsometricAndOrthoCompleteAndSaveTheirNewerSettingsOnShow) {
    EXPECT_EQ(Ok({"settings", "show", "1", "ISOMETRIC", "--section", "bill of material"}),
              "0\t105\tMaterial Block\tmtoblk\t1\tOn\t1\n"
              "0\t106\tScale Factor for Material ID Balloons\tbalscl\t5\t10.0\t1\n"
              "0\t117\tMinimum Pipe Length Between Fittings\tminpup\t5\t50.0\t1\n"
              "0\t170\tBolt Diameter Size Units\tbltimp\t8\tEnglish\t1\n"
              "0\t180\tBolt Length Units\t\t8\tEnglish\t1\n"
              "0\t182\tBolt Diameter Size Precision\t\t8\t6\t1\n"
              "0\t181\tBolt Length Precision\t\t8\t6\t1\n"
              "0\t190\tEccentric Reducer and Swage Unit Format\t\t8\tDecimal\t1\n"
              "0\t191\tBOM Placement Default\t\t8\tTop Right\t1\n"
              "0\t192\tSwage BOM Sorting\t\t8\tPlace All in Screwed/Socket Weld Fittings\t1\n");
    EXPECT_EQ(ReadBytes(Folder() / "ISOMETRIC.ini"),
              "[Settings]\r\nVariable 180 = 40\r\nVariable 181 = 36\r\nVariable 182 = 36\r\n"
              "Variable 185 = 10.000000\r\n");
    // The catalogue itself leaves them unset.
    EXPECT_EQ(Record(Ok({"settings", "catalogue", "3"}), 180),
              "0\t180\tBolt Length Units\t\t8\t\t1");

    // The imperial standard displays inches: ORTHO's structural units are English.
    EXPECT_EQ(Record(Ok({"settings", "show", "2", "ORTHO", "--section", "1"}), 183),
              "1\t183\tStructural Display Units\t\t8\tEnglish\t1");
    EXPECT_EQ(ReadBytes(Folder(2) / "ORTHO.ini"),
              "[Settings]\r\nVariable 071 = 0.500000\r\nVariable 179 = 0.500000\r\n"
              "Variable 180 = 40\r\nVariable 181 = 36\r\nVariable 182 = 36\r\n"
              "Variable 183 = 40\r\nVariable 185 = 0.500000\r\n");
}

TEST_F(CliSettingsTest, CatalogueListsEveryApplicationAtEitherDefaults) {
    const std::pair<const char*, std::size_t> counts[] = {
        {"ELECTRIC", 69}, {"PID", 85}, {"ISOMETRIC", 93}, {"ORTHO", 88}};
    for (const auto& [app, count] : counts) {
        SCOPED_TRACE(app);
        EXPECT_EQ(Lines(Ok({"settings", "catalogue", app})).size(), count);
        EXPECT_EQ(Lines(Ok({"settings", "catalogue", app, "--units", "imperial"})).size(), count);
    }
    EXPECT_EQ(
        Ok({"settings", "catalogue", "PID", "--section", "System Toggles", "--units", "imperial"}),
        "8\t118\tPipe Spec\tpip_spc\t1\tOn\t1\n"
        "8\t131\tSpec Check\tspchek\t1\tOff\t1\n"
        "8\t159\tValve Tagging Option\tvaltag\t1\tOff\t1\n"
        "8\t155\tValve Appearance 1\tvalv_flg\t8\tPlace Flanged Valves\t1\n"
        "8\t156\tValve Appearance 2\tspc_flg\t8\tShow Flanged as per Spec\t1\n");
    EXPECT_EQ(Record(Ok({"settings", "catalogue", "ORTHO", "--units", "imperial"}), 169),
              "4\t169\tDouble Line Drafting Start Size\tsd-brk\t2\t14\"\t1");
    EXPECT_EQ(Record(Ok({"settings", "catalogue", "ELECTRIC", "--units", "imperial"}), 166),
              "3\t166\tLinear Unit Format\tDIMLUNIT\t8\tArchitectural\t1");

    const auto json = nlohmann::json::parse(
        Ok({"settings", "catalogue", "ISOMETRIC", "--section", "3", "--json"}));
    ASSERT_EQ(json.size(), 26u);
    EXPECT_EQ(json[1], nlohmann::json::parse(R"({"section_id": 3, "variable_id": 177,
        "label": "Dimension Style Name: Iso Left", "key": "", "kind": 7, "value": "ISO-L",
        "clean": 1})"));
}

TEST_F(CliSettingsTest, SetWritesOnlyTheChangedKey) {
    const fs::path file = Folder() / "PID.ini";
    struct SStep {
        std::vector<std::string> args;
        std::string bytes; // the whole file afterwards
    };
    const SStep steps[] = {
        {{"145", "3.5"}, "Variable 145 = 3.500000\r\n"},
        {{"131", "On"}, "Variable 131 = 1\r\nVariable 145 = 3.500000\r\n"},
        {{"155", "Place Valves without Flanges"},
         "Variable 131 = 1\r\nVariable 145 = 3.500000\r\nVariable 155 = 18\r\n"},
        {{"155", "17"}, "Variable 131 = 1\r\nVariable 145 = 3.500000\r\nVariable 155 = 17\r\n"},
        {{"81", "5"},
         "Variable 081 = 5\r\nVariable 131 = 1\r\nVariable 145 = 3.500000\r\n"
         "Variable 155 = 17\r\n"},
        {{"168", "Arial; Bold; arial.ttf"},
         "Variable 081 = 5\r\nVariable 131 = 1\r\nVariable 145 = 3.500000\r\n"
         "Variable 155 = 17\r\nVariable 168 = Arial; Bold; arial.ttf\r\n"},
        // Integers and reals that do not parse are 0.
        {{"102", "ten"},
         "Variable 081 = 5\r\nVariable 102 = 0.000000\r\nVariable 131 = 1\r\n"
         "Variable 145 = 3.500000\r\nVariable 155 = 17\r\nVariable 168 = Arial; Bold; "
         "arial.ttf\r\n"},
        // The value it already has: nothing changes.
        {{"145", "3.5"},
         "Variable 081 = 5\r\nVariable 102 = 0.000000\r\nVariable 131 = 1\r\n"
         "Variable 145 = 3.500000\r\nVariable 155 = 17\r\nVariable 168 = Arial; Bold; "
         "arial.ttf\r\n"},
    };
    for (const auto& step : steps) {
        std::vector<std::string> args = {"settings", "set", "1", "PID"};
        args.insert(args.end(), step.args.begin(), step.args.end());
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, 0);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(ReadBytes(file), "[Settings]\r\n" + step.bytes);
    }
    const std::string shown = Ok({"settings", "show", "1", "2"});
    EXPECT_EQ(Record(shown, 145), "4\t145\tText Height\ttxthgt\t5\t3.5\t1");
    EXPECT_EQ(Record(shown, 131), "8\t131\tSpec Check\tspchek\t1\tOn\t1");
    EXPECT_EQ(Record(shown, 155),
              "8\t155\tValve Appearance 1\tvalv_flg\t8\tPlace Flanged Valves\t1");

    // Setting a default value on a standard without a file writes nothing.
    EXPECT_EQ(Ok({"settings", "set", "1", "ELECTRIC", "145", "2.5"}), "");
    EXPECT_FALSE(fs::exists(Folder() / "ELECTRIC.ini"));
}

TEST_F(CliSettingsTest, AStandardOfThe2015LayoutKeepsItsOldFileNames) {
    EXPECT_EQ(Ok({"settings", "set", "3", "P&ID", "145", "3"}), "");
    EXPECT_EQ(ReadBytes(Folder(3) / "Flow.ini"), "[Settings]\r\nVariable 145 = 3.000000\r\n");
    EXPECT_FALSE(fs::exists(Folder(3) / "PID.ini"));
    EXPECT_EQ(Record(Ok({"settings", "show", "3", "PID"}), 145),
              "4\t145\tText Height\ttxthgt\t5\t3.0\t1");
}

TEST_F(CliSettingsTest, RefusalsLeaveTheFileAsItWas) {
    WriteBytes(Folder() / "ELECTRIC.ini", "[Settings]\r\nVariable 145 = 3.000000\r\n");
    struct SCase {
        std::vector<std::string> args;
        int code;
        std::string err;
    };
    const SCase cases[] = {
        {{"settings", "set", "1", "ELECTRIC", "165", "Heading"},
         1,
         "Variable 165 is a sub-heading of a section, not a setting: it cannot be changed.\n"},
        {{"settings", "set", "1", "ELECTRIC", "155", "On"},
         1,
         "ELECTRIC settings have no variable 155.\n"},
        {{"settings", "set", "1", "ELECTRIC", "25", "Dashed"},
         1,
         "'Dashed' is not a choice of variable 25 \"Dimension Associativity\". Choices:\n"
         "  8 Exploded\n  15 Non-Associative\n  1 Associative\n"},
        {{"settings", "set", "1", "ELECTRIC", "25", "7"},
         1,
         "'7' is not a choice of variable 25 \"Dimension Associativity\". Choices:\n"
         "  8 Exploded\n  15 Non-Associative\n  1 Associative\n"},
        {{"settings", "set", "9", "ELECTRIC", "145", "1"},
         1,
         "Error reading ELECTRIC settings of standard '9'.\n\nCan't get project location folder\n"},
        {{"settings", "show", "1", "ELECTRIC", "--section", "0"},
         1,
         "ELECTRIC settings have no section 0 \"Bill of Material\". Sections:\n"
         "  4 General Drawing Parameters\n  6 Scale Factors\n  7 Scaling Variables\n"
         "  1 Civil/Structural Parameters\n  3 Dimensioning Variables\n"},
        {{"settings", "set", "1", "ELECTRIC", "abc", "1"},
         2,
         "'abc' is not a whole number for VARIABLE_ID.\n"},
        {{"settings", "show", "1", "CAD"},
         2,
         "Unknown application 'CAD': give 1-4 or ELECTRIC, PID (P&ID), ISOMETRIC, ORTHO.\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Joined(c.args));
        const SRun run = Run(c.args);
        EXPECT_EQ(run.code, c.code);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, c.err);
    }
    EXPECT_EQ(ReadBytes(Folder() / "ELECTRIC.ini"), "[Settings]\r\nVariable 145 = 3.000000\r\n");
}

TEST_F(CliSettingsTest, BadUsageExitsWithTwo) {
    const std::vector<std::vector<std::string>> cases = {
        {"settings"},
        {"settings", "show", "1"},
        {"settings", "show", "x", "PID"},
        {"settings", "show", "1", "5"},
        {"settings", "show", "1", "PID", "--section", "Layer Colours"},
        {"settings", "show", "1", "PID", "--section", "9"},
        {"settings", "set", "1", "PID", "145"},
        {"settings", "set", "1", "PID", "118", "1"},
        {"settings", "catalogue"},
        {"settings", "catalogue", "PID", "--units", "feet"},
        {"settings", "catalogue", "PID", "--section", "-1"},
    };
    for (const auto& args : cases) {
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err, "");
    }
    EXPECT_FALSE(fs::exists(Folder() / "PID.ini"));
}

} // namespace
