// borders and layers run as a child process: the records shown, the bytes a
// change writes, and the messages and exit codes of bad input.
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace fs = std::filesystem;
using test::ReadBytes;

namespace {

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
    EXPECT_EQ(Ok({"borders", "set", "1", "c", "max", "30.0,20.0"}), "");
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
    const std::string limit = "is not a drawing limit: give two numbers separated by a comma, x "
                              "then y, such as 22.0,17.0.\n";
    ExpectFailures(
        {"borders", "set"},
        {
            {{"1", "A5", "border", "x.dwg"},
             2,
             "Unknown size 'A5'. Sizes: A, B, C, D, E, A0, A1, A2, A3, A4\n"},
            {{"1", "A", "width", "x.dwg"},
             2,
             "Unknown field 'width'. Fields: border, min, max, revision\n"},
            {{"1", "A", "min", "1;2"}, 2, "'1;2' " + limit},
            {{"1", "A", "max", "12"}, 2, "'12' " + limit},
            {{"1", "A", "revision", " "}, 2, "The revision file name cannot be empty.\n"},
            {{"1", "A", "border", "\xE2\x82\xAC.dwg"},
             1,
             "Error saving borders of standard 'Pipe'.\n\n'\xE2\x82\xAC.dwg' holds a character "
             "that a datafile cannot store.\n"},
            {{"9", "A", "border", "x.dwg"},
             1,
             "Error saving borders of standard '9'.\n\nCan't get project location folder\n"},
        },
        Pipe() / "Borders.ini");
    ExpectFailures(
        {"borders", "show"},
        {{{"9"},
          1,
          "Error reading borders of standard '9'.\n\nCan't get project location folder\n"}},
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

TEST_F(CliDrawingDataTest, LayersWriteTheChangedKeyUnderTheVersionsPrefix) {
    const fs::path pipe = Pipe() / "Layers.ini", old = Old() / "Layers.ini";
    const std::vector<std::tuple<std::vector<std::string>, fs::path, std::string>> steps = {
        {{"1", "PID", "16", "color", "255,0,0"}, pipe, "[PID - Colors]\r\n016 = 255,0,0,1\r\n"},
        // A palette index keeps the index chosen: white as 255, not 7.
        {{"1", "PID", "014", "color", "255"},
         pipe,
         "[PID - Colors]\r\n014 = 255,255,255,255\r\n016 = 255,0,0,1\r\n"},
        {{"1", "PID", "14", "lineweight", "50"},
         pipe,
         "[PID - Colors]\r\n014 = 255,255,255,255\r\n016 = 255,0,0,1\r\n\r\n"
         "[PID - LineWeights]\r\n014 = 50\r\n"},
        {{"2", "P&ID", "38", "name", "PROC"}, old, "[Flow - Layers]\r\n038 = PROC\r\n"},
        {{"2", "ISOMETRIC", "48", "linetype", "DASHED"},
         old,
         "[Flow - Layers]\r\n038 = PROC\r\n\r\n[Iso - Linetypes]\r\n048 = DASHED\r\n"},
    };
    for (const auto& [rest, file, bytes] : steps) {
        std::vector<std::string> args = {"layers", "set"};
        args.insert(args.end(), rest.begin(), rest.end());
        SCOPED_TRACE(Joined(args));
        EXPECT_EQ(Ok(args), "");
        EXPECT_EQ(ReadBytes(file), bytes);
    }
    EXPECT_EQ(Lines(Ok({"layers", "show", "1", "PID"}))[0],
              "014\tAttribute\tATTRIB\t255,255,255,255\tCONTINUOUS\t50");
}

TEST_F(CliDrawingDataTest, LayersRefuseBadInputAndChangeNothing) {
    const std::string colour =
        "' is not a colour: give R,G,B with each part 0-255, or a palette index 0-255.\n";
    ExpectFailures(
        {"layers", "set"},
        {
            {{"1", "PID", "18", "color", "1"},
             1,
             "Error saving PID layers of standard 'Pipe'.\n\nThere is no PID layer with key "
             "018.\n"},
            {{"1", "PID", "16", "name", "\xE2\x82\xAC"},
             1,
             "Error saving PID layers of standard 'Pipe'.\n\n'\xE2\x82\xAC' holds a character "
             "that a datafile cannot store.\n"},
            {{"9", "PID", "16", "name", "X"},
             1,
             "Error saving PID layers of standard '9'.\n\nCan't get project location folder\n"},
            {{"1", "PID", "16", "color", "256"}, 2, "'256" + colour},
            {{"1", "PID", "16", "color", "1,2"}, 2, "'1,2" + colour},
            {{"1", "PID", "16", "color", "0,-1,0"}, 2, "'0,-1,0" + colour},
            {{"1", "PID", "16", "lineweight", "thin"},
             2,
             "'thin' is not a whole number for lineweight.\n"},
            {{"1", "PID", "x", "name", "X"}, 2, "'x' is not a whole number for KEY.\n"},
            {{"1", "PID", "16", "linetype", " "}, 2, "The layer linetype cannot be empty.\n"},
            {{"1", "PID", "16", "colour", "1"},
             2,
             "Unknown field 'colour'. Fields: name, color, linetype, lineweight\n"},
            {{"1", "HVAC", "16", "name", "X"},
             2,
             "Unknown application 'HVAC': give 1-4 or ELECTRIC, PID (P&ID), ISOMETRIC, ORTHO.\n"},
        },
        Pipe() / "Layers.ini");
}

} // namespace
