// borders and layers run as a child process: the records shown, the bytes a
// change writes, and the messages and exit codes of bad input.
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace fs = std::filesystem;
using test::ReadBytes;

namespace cli_drawing_data_test {

using test::Joined;
using test::SRun;

using SFailure = std::tuple<std::vector<std::string>, int, std::string>;

// Standard 1 "Pipe" of the current layout, standard 2 "Old" of the 2015 one.
class CliDrawingDataTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"standard", "create", "Pipe"}), "1\tPipe\n");
        ASSERT_EQ(Ok({"standard", "create", "Old", "--old-format"}), "2\tOld\n");
    }
    fs::path Pipe() const { return Projects() / "VX2D_PRJ_1 - Pipe"; }
    fs::path Old() const { return Projects() / "VX2D_PRJ_2 - Old"; }

    static std::vector<std::string> Lines(const std::string& out) {
        std::vector<std::string> lines;
        std::istringstream in(out);
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        return lines;
    }
    // Each command of `verb` + the case's arguments fails as the case says
    // and leaves no `file` behind.
    void ExpectFailures(const std::vector<std::string>& verb, const std::vector<SFailure>& cases,
                        const fs::path& file) const {
        for (const auto& [rest, code, err] : cases) {
            std::vector<std::string> args = verb;
            args.insert(args.end(), rest.begin(), rest.end());
            SCOPED_TRACE(Joined(args));
            const SRun run = Run(args);
            EXPECT_EQ(run.code, code);
            EXPECT_EQ(run.out, "");
            EXPECT_EQ(run.err, err);
            EXPECT_FALSE(fs::exists(file));
        }
    }
};

TEST_F(CliDrawingDataTest, BordersShowEverySizeAndWriteWhatIsSet) {
    const auto defaults = Lines(Ok({"borders", "show", "1"}));
    ASSERT_EQ(defaults.size(), 10u);
    EXPECT_EQ(defaults[0], "A\tBord_A.dwg\t0.0,0.0\t8.5,11.0\tRev_A.dwg");
    EXPECT_EQ(defaults[5], "A0\tBord_A0.dwg\t0.0,0.0\t1189.0,841.0\tRev_A0.dwg");
    EXPECT_EQ(defaults[9], "A4\tBord_A4.dwg\t0.0,0.0\t210.0,297.0\tRev_A4.dwg");
    EXPECT_FALSE(fs::exists(Pipe() / "Borders.ini"));

    EXPECT_EQ(Ok({"borders", "set", "1", "A3", "revision", "Rev_X.dwg"}), "");
    // Typed as on the border page, stored as the page stores it.
    EXPECT_EQ(Ok({"borders", "set", "1", "c", "max", " 30.0 , 20.0 "}), "");
    EXPECT_EQ(Ok({"borders", "set", "1", "C", "min", "-1,2.5"}), "");
    EXPECT_EQ(Ok({"borders", "set", "1", "A0", "border", "Caf\xC3\xA9 A0.dwg"}), "");
    EXPECT_EQ(ReadBytes(Pipe() / "Borders.ini"),
              "[Border]\r\nA0 = Caf\xE9 A0.dwg\r\n\r\n[Limits - Max]\r\nC = 30.0,20.0\r\n\r\n"
              "[Limits - Min]\r\nC = -1,2.5\r\n\r\n[Revision]\r\nA3 = Rev_X.dwg\r\n");
    const auto shown = Lines(Ok({"borders", "show", "1"}));
    EXPECT_EQ(shown[5], "A0\tCaf\xC3\xA9 A0.dwg\t0.0,0.0\t1189.0,841.0\tRev_A0.dwg");

    const nlohmann::json json = nlohmann::json::parse(Ok({"--json", "borders", "show", "1"}));
    ASSERT_EQ(json.size(), 10u);
    EXPECT_EQ(json[2], nlohmann::json::parse(R"({"size":"C","border":"Bord_C.dwg",
        "limits_min":"-1,2.5","limits_max":"30.0,20.0","revision":"Rev_C.dwg"})"));
}

TEST_F(CliDrawingDataTest, BordersRefuseBadInputAndChangeNothing) {
    const std::string limit = "\n\nGive two numbers separated by a comma, x then y, such as ";
    const std::string file = "\n\nGive the name of a drawing in the borders folder, such as ";
    ExpectFailures(
        {"borders", "set"},
        {
            {{"1", "A5", "border", "x.dwg"},
             2,
             "Unknown size 'A5'. Sizes: A, B, C, D, E, A0, A1, A2, A3, A4\n"},
            {{"1", "A", "width", "x.dwg"},
             2,
             "Unknown field 'width'. Fields: border, min, max, revision\n"},
            {{"1", "A", "min", "1;2"},
             2,
             "'1;2' is not a valid lower-left limit of size A." + limit + "0.0,0.0.\n"},
            {{"1", "A", "max", "12"},
             2,
             "'12' is not a valid upper-right limit of size A." + limit + "8.5,11.0.\n"},
            {{"1", "A", "revision", " "},
             2,
             "The revision drawing of size A cannot be empty." + file + "Rev_A.dwg.\n"},
            {{"1", "B", "border", "sub/evil.dwg"},
             2,
             "'sub/evil.dwg' is not a valid file name for the border drawing of size B." + file +
                 "Bord_B.dwg.\n"},
            {{"1", "A", "border", "\xE2\x82\xAC.dwg"},
             1,
             "Error saving borders of standard 'Pipe'.\n\n'\xE2\x82\xAC.dwg' holds a character "
             "that a datafile cannot store.\n"},
            {{"9", "A", "border", "x.dwg"},
             1,
             "There is no standard 9 (see 'standard list --deleted')\n"},
        },
        Pipe() / "Borders.ini");
    ExpectFailures({"borders", "show"},
                   {{{"9"}, 1, "There is no standard 9 (see 'standard list --deleted')\n"}},
                   Pipe() / "Borders.ini");
}

TEST_F(CliDrawingDataTest, LayersShowTheSetOfEachApplication) {
    const auto electric = Lines(Ok({"layers", "show", "1", "ELECTRIC"}));
    ASSERT_EQ(electric.size(), 21u);
    EXPECT_EQ(electric[20], "044\tU/G Conduit Cable\tUG_COND_CBL\t255,0,255,6\tHIDDEN\t-3");
    EXPECT_FALSE(fs::exists(Pipe() / "Layers.ini"));

    const nlohmann::json json = nlohmann::json::parse(Ok({"layers", "show", "1", "4", "--json"}));
    ASSERT_EQ(json.size(), 37u);
    EXPECT_EQ(json[18], nlohmann::json::parse(R"({"key":"021","description":"Concrete",
        "name":"CONCRETE","color":"0,255,0,3","linetype":"CONTINUOUS","lineweight":-3})"));
}

TEST_F(CliDrawingDataTest, LayersWriteTheWholeSetUnderTheVersionsPrefix) {
    const fs::path pipe = Pipe() / "Layers.ini", old = Old() / "Layers.ini";
    // The command, the file it writes, a line the file then holds, and the
    // layer as "layers show" gives it afterwards.
    const std::vector<std::tuple<std::vector<std::string>, fs::path, std::string, std::string>>
        steps = {
            {{"1", "PID", "16", "color", "255,0,0"},
             pipe,
             "[PID - Colors]\r\n014 = 255,255,255,7\r\n015 = 255,255,0,2\r\n016 = 255,0,0,1\r\n",
             "016\tBorder 1\tBORDER1\t255,0,0,1\tCONTINUOUS\t-3"},
            // A palette index keeps the index chosen: white as 255, not 7.
            {{"1", "PID", "014", "color", "255"},
             pipe,
             "014 = 255,255,255,255\r\n",
             "014\tAttribute\tATTRIB\t255,255,255,255\tCONTINUOUS\t-3"},
            {{"1", "PID", "14", "lineweight", "50"},
             pipe,
             "[PID - LineWeights]\r\n014 = 50\r\n015 = -3\r\n",
             "014\tAttribute\tATTRIB\t255,255,255,255\tCONTINUOUS\t50"},
            {{"1", "PID", "14", "lineweight", "0.35 mm"},
             pipe,
             "014 = 35\r\n",
             "014\tAttribute\tATTRIB\t255,255,255,255\tCONTINUOUS\t35"},
            {{"2", "P&ID", "38", "name", " PROC "},
             old,
             "[Flow - Layers]\r\n014 = ATTRIB\r\n",
             "038\tProcess\tPROC\t0,255,255,4\tCONTINUOUS\t-3"},
            {{"2", "ISOMETRIC", "48", "linetype", "dashed"},
             old,
             "[Iso - Linetypes]\r\n001 = CONTINUOUS\r\n",
             "048\t9,000 lb\t9000LB\t0,0,255,5\tDASHED\t-3"},
        };
    for (const auto& [rest, file, line, shown] : steps) {
        std::vector<std::string> args = {"layers", "set"};
        args.insert(args.end(), rest.begin(), rest.end());
        SCOPED_TRACE(Joined(args));
        EXPECT_EQ(Ok(args), "");
        EXPECT_NE(ReadBytes(file).find(line), std::string::npos) << ReadBytes(file);
        const std::string key = shown.substr(0, 4);
        std::string row;
        for (const auto& candidate : Lines(Ok({"layers", "show", rest[0], rest[1]}))) {
            if (candidate.starts_with(key))
                row = candidate;
        }
        EXPECT_EQ(row, shown);
    }
    // "Flow" of the old standard holds the whole P&ID set.
    EXPECT_NE(ReadBytes(old).find("046 = VALVES\r\n"), std::string::npos);
}

TEST_F(CliDrawingDataTest, LayersRefuseWhatThePageDoesNotOfferAndChangeNothing) {
    const std::string colour = "' is not a colour of the palette: give a palette index 1-255, or "
                               "R,G,B of a palette colour.\n";
    const std::string lineweight =
        "' is not a lineweight the layers page offers: give one of -3, 0, 5, 9, 13, 15, 18, 20, "
        "25, 30, 35, 40, 50, 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211 (hundredths "
        "of a millimetre, -3 for the default).\n";
    ExpectFailures(
        {"layers", "set"},
        {
            {{"1", "PID", "18", "color", "1"},
             2,
             "Error saving PID layers of standard 'Pipe'.\n\nThere is no PID layer with key "
             "018.\n"},
            {{"1", "PID", "16", "name", "\xE2\x82\xAC"},
             1,
             "Error saving PID layers of standard 'Pipe'.\n\n'\xE2\x82\xAC' holds a character "
             "that a datafile cannot store.\n"},
            {{"9", "PID", "16", "name", "X"},
             1,
             "There is no standard 9 (see 'standard list --deleted')\n"},
            {{"1", "PID", "16", "color", "256"}, 2, "'256" + colour},
            {{"1", "PID", "16", "color", "0"}, 2, "'0" + colour},
            {{"1", "PID", "16", "color", "1,2"}, 2, "'1,2" + colour},
            {{"1", "PID", "16", "color", "0,-1,0"}, 2, "'0,-1,0" + colour},
            {{"1", "PID", "16", "color", "10,20,30"}, 2, "'10,20,30" + colour},
            {{"1", "PID", "16", "lineweight", "-7"}, 2, "'-7" + lineweight},
            {{"1", "PID", "16", "lineweight", "17"}, 2, "'17" + lineweight},
            {{"1", "PID", "16", "lineweight", "thin"}, 2, "'thin" + lineweight},
            {{"1", "PID", "16", "linetype", "ZIGZAG"},
             2,
             "'ZIGZAG' is not one of the linetypes the layers page offers, such as CONTINUOUS, "
             "DASHED or HIDDEN2.\n"},
            {{"1", "PID", "16", "name", "A<B"},
             2,
             "Invalid layer name 'A<B'.\n\nA layer name must not be empty or contain any of < > "
             "/ \\ \" : ; ? * | , = `.\n"},
            {{"1", "PID", "x", "name", "X"}, 2, "'x' is not a whole number for KEY.\n"},
            {{"1", "PID", "16", "colour", "1"},
             2,
             "Unknown field 'colour'. Fields: name, color, linetype, lineweight\n"},
            {{"1", "HVAC", "16", "name", "X"},
             2,
             "Unknown application 'HVAC': give 1-4 or ELECTRIC, PID (P&ID), ISOMETRIC, ORTHO.\n"},
        },
        Pipe() / "Layers.ini");
}

} // namespace cli_drawing_data_test
