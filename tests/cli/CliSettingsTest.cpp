// settings show, set and catalogue run as a child process: the records, the
// messages of refusals and the bytes left in a standard's settings file.
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace cli_settings_test {

using test::Joined;
using test::SRun;

// Standards 1 "Pipe" (metric) and 2 "Imperial", neither with a settings file.
class CliSettingsTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"standard", "create", "Pipe"}), "1\tPipe\n");
        ASSERT_EQ(Ok({"standard", "create", "Imperial", "--units", "imperial"}), "2\tImperial\n");
    }
    fs::path Folder(int id = 1) const {
        return Projects() / (id == 1 ? "VX2D_PRJ_1 - Pipe" : "VX2D_PRJ_2 - Imperial");
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
        const std::string column = "\t" + std::to_string(id) + "\t";
        for (const auto& line : Lines(text)) {
            if (line.find(column) == line.find('\t'))
                return line;
        }
        return {};
    }
};

TEST_F(CliSettingsTest, AStandardWithoutASettingsFileShowsTheDefaultsOfItsUnits) {
    EXPECT_EQ(Ok({"settings", "show", "1", "ELECTRIC"}), Ok({"settings", "catalogue", "1"}));
    EXPECT_EQ(Ok({"settings", "show", "2", "P&ID"}),
              Ok({"settings", "catalogue", "PID", "--units", "imperial"}));
    // Showing wrote nothing: the standards still hold only General.ini.
    for (int id : {1, 2})
        EXPECT_EQ(std::distance(fs::directory_iterator(Folder(id)), fs::directory_iterator()), 1);
}

TEST_F(CliSettingsTest, ShowLoadsAsTheProgramDoesAndSavesWhatMigrationAdds) {
    const std::string bom =
        Ok({"settings", "show", "1", "ISOMETRIC", "--section", "bill of material"});
    EXPECT_EQ(Lines(bom).size(), 10u);
    EXPECT_EQ(Record(bom, 180), "0\t180\tBolt Length Units\t\t8\tEnglish\t1");
    EXPECT_TRUE(fs::exists(Folder() / "ISOMETRIC.ini"));
}

TEST_F(CliSettingsTest, CatalogueTakesUnitsAndASection) {
    EXPECT_EQ(
        Ok({"settings", "catalogue", "PID", "--section", "System Toggles", "--units", "imperial"}),
        "8\t118\tPipe Spec\tpip_spc\t1\tOn\t1\n"
        "8\t131\tSpec Check\tspchek\t1\tOff\t1\n"
        "8\t159\tValve Tagging Option\tvaltag\t1\tOff\t1\n"
        "8\t155\tValve Appearance 1\tvalv_flg\t8\tPlace Flanged Valves\t1\n"
        "8\t156\tValve Appearance 2\tspc_flg\t8\tShow Flanged as per Spec\t1\n");
    EXPECT_EQ(Record(Ok({"settings", "catalogue", "ORTHO", "--units", "imperial"}), 169),
              "4\t169\tDouble Line Drafting Start Size\tsd-brk\t2\t14\"\t1");

    const auto json = nlohmann::json::parse(
        Ok({"settings", "catalogue", "ISOMETRIC", "--section", "3", "--json"}));
    ASSERT_EQ(json.size(), 26u);
    EXPECT_EQ(json[1], nlohmann::json::parse(R"({"section_id": 3, "variable_id": 177,
        "label": "Dimension Style Name: Iso Left", "key": "", "kind": 7, "value": "ISO-L",
        "clean": true})"));
}

TEST_F(CliSettingsTest, SetWritesTheChangedKey) {
    const std::pair<std::vector<std::string>, std::string> steps[] = {
        {{"145", "3.5"}, "Variable 145 = 3.500000\r\n"},
        {{"131", "On"}, "Variable 131 = 1\r\nVariable 145 = 3.500000\r\n"},
        // A choice by its label or by its number.
        {{"155", "Place Valves without Flanges"},
         "Variable 131 = 1\r\nVariable 145 = 3.500000\r\nVariable 155 = 18\r\n"},
        {{"155", "17"}, "Variable 131 = 1\r\nVariable 145 = 3.500000\r\nVariable 155 = 17\r\n"},
    };
    for (const auto& [rest, bytes] : steps) {
        std::vector<std::string> args = {"settings", "set", "1", "PID"};
        args.insert(args.end(), rest.begin(), rest.end());
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, 0);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(ReadBytes(Folder() / "PID.ini"), "[Settings]\r\n" + bytes);
    }
    EXPECT_EQ(Record(Ok({"settings", "show", "1", "2"}), 131),
              "8\t131\tSpec Check\tspchek\t1\tOn\t1");
}

TEST_F(CliSettingsTest, RefusalsLeaveTheFileAsItWas) {
    WriteBytes(Folder() / "ELECTRIC.ini", "[Settings]\r\nVariable 145 = 3.000000\r\n");
    const std::string choices = " is not a value of variable 25 \"Dimension Associativity\": "
                                "give one of the choices (label or number):\n  8 Exploded\n  "
                                "15 Non-Associative\n  1 Associative\n";
    const std::tuple<std::vector<std::string>, int, std::string> cases[] = {
        {{"set", "1", "ELECTRIC", "165", "Heading"},
         2,
         "Variable 165 is a sub-heading of a section, not a setting: it cannot be changed.\n"},
        {{"set", "1", "ELECTRIC", "155", "On"},
         2,
         "ELECTRIC settings have no variable '155': give a variable id or key (see 'settings "
         "show').\n"},
        {{"set", "1", "ELECTRIC", "25", "Dashed"}, 2, "'Dashed'" + choices},
        {{"set", "1", "ELECTRIC", "25", "7"}, 2, "'7'" + choices},
        {{"set", "9", "ELECTRIC", "145", "1"},
         1,
         "There is no standard 9 (see 'standard list --deleted')\n"},
        {{"show", "1", "ELECTRIC", "--section", "0"},
         2,
         "ELECTRIC settings have no section 0 \"Bill of Material\". Sections:\n"
         "  4 General Drawing Parameters\n  6 Scale Factors\n  7 Scaling Variables\n"
         "  1 Civil/Structural Parameters\n  3 Dimensioning Variables\n"},
        {{"set", "1", "ELECTRIC", "abc", "1"},
         2,
         "ELECTRIC settings have no variable 'abc': give a variable id or key (see 'settings "
         "show').\n"},
        {{"set", "1", "ELECTRIC", "103", "1"},
         2,
         "'1' is not a value of variable 103 \"Disable Default LTSCALE Setting\": give On or "
         "Off\n"},
    };
    for (const auto& [rest, code, err] : cases) {
        std::vector<std::string> args = {"settings"};
        args.insert(args.end(), rest.begin(), rest.end());
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, code);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, err);
    }
    EXPECT_EQ(ReadBytes(Folder() / "ELECTRIC.ini"), "[Settings]\r\nVariable 145 = 3.000000\r\n");
}

TEST_F(CliSettingsTest, BadUsageExitsWithTwo) {
    const std::vector<std::vector<std::string>> cases = {
        {"settings", "show", "1"},
        {"settings", "show", "1", "PID", "--section", "Layer Colours"},
        {"settings", "catalogue", "PID", "--units", "feet"},
    };
    for (const auto& args : cases) {
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err, "");
    }
}

} // namespace cli_settings_test
