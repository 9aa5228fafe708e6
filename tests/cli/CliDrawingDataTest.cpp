// borders and layers run as a child process: what a standard shows, the exact
// bytes a change writes, and the messages and exit codes of bad input.
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace {

using test::Joined;
using test::SRun;

// Standard 1 "Pipe" of the current layout, standard 2 "Old" of the 2015 one.
class CliDrawingDataTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"standard", "create", "Pipe"}), "1\tPipe\n");
        ASSERT_EQ(Ok({"standard", "create", "Old", "--old-format"}), "2\tOld\n");
    }
    fs::path Pipe() const { return Projects() / "VX2D_PRJ_1 - Pipe"; }
    fs::path Old() const { return Projects() / "VX2D_PRJ_2 - Old"; }

    std::string Line(const std::string& out, std::size_t n) const {
        std::size_t at = 0;
        for (std::size_t i = 0; i < n && at != std::string::npos; ++i)
            at = out.find('\n', at) + 1;
        return out.substr(at, out.find('\n', at) - at);
    }
};

const std::string kDefaultBorders = "A\tBord_A.dwg\t0.0,0.0\t8.5,11.0\tRev_A.dwg\n"
                                    "B\tBord_B.dwg\t0.0,0.0\t17.0,11.0\tRev_B.dwg\n"
                                    "C\tBord_C.dwg\t0.0,0.0\t22.0,17.0\tRev_C.dwg\n"
                                    "D\tBord_D.dwg\t0.0,0.0\t34.0,22.0\tRev_D.dwg\n"
                                    "E\tBord_E.dwg\t0.0,0.0\t44.0,34.0\tRev_E.dwg\n"
                                    "A0\tBord_A0.dwg\t0.0,0.0\t1189.0,841.0\tRev_A0.dwg\n"
                                    "A1\tBord_A1.dwg\t0.0,0.0\t841.0,594.0\tRev_A1.dwg\n"
                                    "A2\tBord_A2.dwg\t0.0,0.0\t594.0,420.0\tRev_A2.dwg\n"
                                    "A3\tBord_A3.dwg\t0.0,0.0\t420.0,297.0\tRev_A3.dwg\n"
                                    "A4\tBord_A4.dwg\t0.0,0.0\t210.0,297.0\tRev_A4.dwg\n";

TEST_F(CliDrawingDataTest, BordersShowTheDefaultsAndWriteOnlyWhatChanges) {
    EXPECT_EQ(Ok({"borders", "show", "1"}), kDefaultBorders);
    EXPECT_FALSE(fs::exists(Pipe() / "Borders.ini"));

    struct SStep {
        std::vector<std::string> args;
        std::string bytes;
    };
    const std::vector<SStep> steps = {
        {{"A3", "revision", "Rev_X.dwg"}, "[Revision]\r\nA3 = Rev_X.dwg\r\n"},
        {{"c", "max", "30.0,20.0"},
         "[Limits - Max]\r\nC = 30.0,20.0\r\n\r\n[Revision]\r\nA3 = Rev_X.dwg\r\n"},
        {{"C", "min", "-1,2.5"},
         "[Limits - Max]\r\nC = 30.0,20.0\r\n\r\n[Limits - Min]\r\nC = -1,2.5\r\n\r\n"
         "[Revision]\r\nA3 = Rev_X.dwg\r\n"},
        {{"A0", "border", "Caf\xC3\xA9 A0.dwg"},
         "[Border]\r\nA0 = Caf\xE9 A0.dwg\r\n\r\n[Limits - Max]\r\nC = 30.0,20.0\r\n\r\n"
         "[Limits - Min]\r\nC = -1,2.5\r\n\r\n[Revision]\r\nA3 = Rev_X.dwg\r\n"},
    };
    for (const auto& step : steps) {
        std::vector<std::string> args = {"borders", "set", "1"};
        args.insert(args.end(), step.args.begin(), step.args.end());
        SCOPED_TRACE(Joined(args));
        EXPECT_EQ(Ok(args), "");
        EXPECT_EQ(ReadBytes(Pipe() / "Borders.ini"), step.bytes);
    }
    const std::string shown = Ok({"borders", "show", "1"});
    EXPECT_EQ(Line(shown, 2), "C\tBord_C.dwg\t-1,2.5\t30.0,20.0\tRev_C.dwg");
    EXPECT_EQ(Line(shown, 5), "A0\tCaf\xC3\xA9 A0.dwg\t0.0,0.0\t1189.0,841.0\tRev_A0.dwg");
    EXPECT_EQ(Line(shown, 8), "A3\tBord_A3.dwg\t0.0,0.0\t420.0,297.0\tRev_X.dwg");

    // The value the file already has: the file is not rewritten.
    const fs::path file = Pipe() / "Borders.ini";
    const auto old = fs::file_time_type::clock::now() - std::chrono::hours(1);
    fs::last_write_time(file, old);
    EXPECT_EQ(Ok({"borders", "set", "1", "A3", "revision", "Rev_X.dwg"}), "");
    EXPECT_EQ(fs::last_write_time(file), old);

    // The other standard is untouched.
    EXPECT_EQ(Ok({"borders", "show", "2"}), kDefaultBorders);

    const nlohmann::json json = nlohmann::json::parse(Ok({"--json", "borders", "show", "1"}));
    ASSERT_EQ(json.size(), 10u);
    EXPECT_EQ(json[2], nlohmann::json::parse(R"({"size":"C","border":"Bord_C.dwg",
        "limits_min":"-1,2.5","limits_max":"30.0,20.0","revision":"Rev_C.dwg"})"));
}

TEST_F(CliDrawingDataTest, BordersRefuseBadInputAndChangeNothing) {
    struct SCase {
        std::vector<std::string> args;
        int code;
        std::string err;
    };
    const std::string limit = "is not a drawing limit: give two numbers separated by a comma, x "
                              "then y, such as 22.0,17.0.\n";
    const std::vector<SCase> cases = {
        {{"1", "A5", "border", "x.dwg"},
         2,
         "Unknown size 'A5'. Sizes: A, B, C, D, E, A0, A1, A2, A3, A4\n"},
        {{"1", "A", "width", "x.dwg"},
         2,
         "Unknown field 'width'. Fields: border, min, max, revision\n"},
        {{"1", "A", "min", "1;2"}, 2, "'1;2' " + limit},
        {{"1", "A", "max", "12"}, 2, "'12' " + limit},
        {{"1", "A", "max", "1,2,3"}, 2, "'1,2,3' " + limit},
        {{"1", "A", "max", "x,y"}, 2, "'x,y' " + limit},
        {{"1", "A", "revision", " "}, 2, "The revision file name cannot be empty.\n"},
        {{"1", "A", "border", "\xE2\x82\xAC.dwg"},
         1,
         "Error saving borders of standard 'Pipe'.\n\n'\xE2\x82\xAC.dwg' holds a character that "
         "a datafile cannot store.\n"},
        {{"9", "A", "border", "x.dwg"},
         1,
         "Error saving borders of standard '9'.\n\nCan't get project location folder\n"},
        {{"0", "A", "border", "x.dwg"},
         1,
         "Error saving borders of standard '0'.\n\nInvalid project id\n"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> args = {"borders", "set"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, c.code);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, c.err);
        EXPECT_FALSE(fs::exists(Pipe() / "Borders.ini"));
    }
    const SRun show = Run({"borders", "show", "9"});
    EXPECT_EQ(show.code, 1);
    EXPECT_EQ(show.err,
              "Error reading borders of standard '9'.\n\nCan't get project location folder\n");
}

TEST_F(CliDrawingDataTest, LayersShowTheDefaultSetOfEachApplication) {
    EXPECT_EQ(Ok({"layers", "show", "1", "ELECTRIC"}),
              "014\tAttribute\tATTRIB\t255,255,255,7\tCONTINUOUS\t-3\n"
              "016\tBorder 1\tBORDER1\t0,255,255,4\tCONTINUOUS\t-3\n"
              "017\tBorder 2\tBORDER2\t255,255,0,2\tCONTINUOUS\t-3\n"
              "018\tBus Bar\tBUS_BAR\t0,255,255,4\tCONTINUOUS\t-3\n"
              "019\tCable Tray\tCABLE_TRAY\t0,0,255,5\tCONTINUOUS\t-3\n"
              "020\tCenter\tCENTER\t255,0,0,1\tCENTER\t-3\n"
              "022\tConduit Cable\tCOND_CABLE\t255,0,255,6\tCONTINUOUS\t-3\n"
              "024\tContinuous\tCONTIN\t255,255,0,2\tCONTINUOUS\t-3\n"
              "025\tDash\tDASH\t0,0,255,5\tDASHED\t-3\n"
              "026\tDimension\tDIMENSION\t255,255,0,2\tCONTINUOUS\t-3\n"
              "027\tDot\tDOT\t255,255,255,7\tDOT\t-3\n"
              "029\tField Wiring\tFIELD_WIRING\t255,0,255,6\tDASHED\t-3\n"
              "031\tGround Wire\tGROUND_WIRE\t255,0,0,1\tCENTER\t-3\n"
              "032\tHidden\tHIDDEN\t255,0,255,6\tHIDDEN\t-3\n"
              "033\tInstrument\tINSTR\t255,0,255,6\tCONTINUOUS\t-3\n"
              "036\tPanel Wiring\tPANEL_WIRING\t255,0,255,6\tCONTINUOUS\t-3\n"
              "037\tPhantom\tPHANTOM\t0,255,255,4\tPHANTOM\t-3\n"
              "041\tSymbols\tSYMBOLS\t255,255,0,2\tCONTINUOUS\t-3\n"
              "042\tText 1\tTEXT1\t255,255,0,2\tCONTINUOUS\t-3\n"
              "043\tText 2\tTEXT2\t0,255,0,3\tCONTINUOUS\t-3\n"
              "044\tU/G Conduit Cable\tUG_COND_CBL\t255,0,255,6\tHIDDEN\t-3\n");

    struct SCase {
        std::string application;
        std::size_t rows;
        std::string first, last;
    };
    const std::vector<SCase> cases = {
        {"P&ID", 22, "014\tAttribute\tATTRIB\t255,255,255,7\tCONTINUOUS\t-3",
         "046\tValves\tVALVES\t255,255,0,2\tCONTINUOUS\t-3"},
        {"3", 35, "001\t150 lb\t150LB\t255,255,0,2\tCONTINUOUS\t-3",
         "049\t800 lb\t800LB\t255,255,255,7\tCONTINUOUS\t-3"},
        {"ortho", 37, "001\t150 lb\t150LB\t255,255,0,2\tCONTINUOUS\t-3",
         "049\t800 lb\t800LB\t255,255,255,7\tCONTINUOUS\t-3"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.application);
        const std::string out = Ok({"layers", "show", "2", c.application});
        EXPECT_EQ(static_cast<std::size_t>(std::count(out.begin(), out.end(), '\n')), c.rows);
        EXPECT_EQ(Line(out, 0), c.first);
        EXPECT_EQ(Line(out, c.rows - 1), c.last);
    }
    EXPECT_FALSE(fs::exists(Pipe() / "Layers.ini"));
    EXPECT_FALSE(fs::exists(Old() / "Layers.ini"));

    const nlohmann::json json = nlohmann::json::parse(Ok({"layers", "show", "1", "4", "--json"}));
    ASSERT_EQ(json.size(), 37u);
    EXPECT_EQ(json[18], nlohmann::json::parse(R"({"key":"021","description":"Concrete",
        "name":"CONCRETE","color":"0,255,0,3","linetype":"CONTINUOUS","lineweight":-3})"));
}

TEST_F(CliDrawingDataTest, LayersWriteOnlyTheChangedKeysUnderTheVersionsPrefix) {
    struct SStep {
        std::vector<std::string> args;
        fs::path file;
        std::string bytes;
    };
    const fs::path pipe = Pipe() / "Layers.ini", old = Old() / "Layers.ini";
    const std::vector<SStep> steps = {
        {{"1", "PID", "16", "color", "255,0,0"}, pipe, "[PID - Colors]\r\n016 = 255,0,0,1\r\n"},
        // A palette index keeps the index chosen: white as 255, not 7.
        {{"1", "pid", "014", "color", "255"},
         pipe,
         "[PID - Colors]\r\n014 = 255,255,255,255\r\n016 = 255,0,0,1\r\n"},
        {{"1", "2", "14", "lineweight", "50"},
         pipe,
         "[PID - Colors]\r\n014 = 255,255,255,255\r\n016 = 255,0,0,1\r\n\r\n"
         "[PID - LineWeights]\r\n014 = 50\r\n"},
        // A colour the palette does not hold gets index 0.
        {{"1", "ELECTRIC", "44", "color", "1,2,3"},
         pipe,
         "[ELECTRIC - Colors]\r\n044 = 1,2,3,0\r\n\r\n"
         "[PID - Colors]\r\n014 = 255,255,255,255\r\n016 = 255,0,0,1\r\n\r\n"
         "[PID - LineWeights]\r\n014 = 50\r\n"},
        {{"2", "P&ID", "38", "name", "PROC"}, old, "[Flow - Layers]\r\n038 = PROC\r\n"},
        {{"2", "ISOMETRIC", "48", "linetype", "DASHED"},
         old,
         "[Flow - Layers]\r\n038 = PROC\r\n\r\n[Iso - Linetypes]\r\n048 = DASHED\r\n"},
        {{"2", "Ortho", "39", "lineweight", "-1"},
         old,
         "[Flow - Layers]\r\n038 = PROC\r\n\r\n[Iso - Linetypes]\r\n048 = DASHED\r\n\r\n"
         "[Ortho - LineWeights]\r\n039 = -1\r\n"},
    };
    for (const auto& step : steps) {
        std::vector<std::string> args = {"layers", "set"};
        args.insert(args.end(), step.args.begin(), step.args.end());
        SCOPED_TRACE(Joined(args));
        EXPECT_EQ(Ok(args), "");
        EXPECT_EQ(ReadBytes(step.file), step.bytes);
    }
    const std::string pid = Ok({"layers", "show", "1", "PID"});
    EXPECT_EQ(Line(pid, 0), "014\tAttribute\tATTRIB\t255,255,255,255\tCONTINUOUS\t50");
    EXPECT_EQ(Line(pid, 2), "016\tBorder 1\tBORDER1\t255,0,0,1\tCONTINUOUS\t-3");
    EXPECT_EQ(Line(Ok({"layers", "show", "2", "ORTHO"}), 30),
              "039\tSteel\tSTEEL\t0,255,0,3\tCONTINUOUS\t-1");

    // The default value again: nothing is written.
    const auto before = fs::file_time_type::clock::now() - std::chrono::hours(1);
    fs::last_write_time(old, before);
    EXPECT_EQ(Ok({"layers", "set", "2", "3", "16", "color", "0,255,255"}), "");
    EXPECT_EQ(fs::last_write_time(old), before);
}

TEST_F(CliDrawingDataTest, LayersRefuseBadInputAndChangeNothing) {
    struct SCase {
        std::vector<std::string> args;
        int code;
        std::string err;
    };
    const std::string colour =
        "' is not a colour: give R,G,B with each part 0-255, or a palette index 0-255.\n";
    const std::vector<SCase> cases = {
        {{"1", "ELECTRIC", "1", "name", "X"},
         1,
         "Error saving ELECTRIC layers of standard 'Pipe'.\n\nThere is no ELECTRIC layer with "
         "key 001.\n"},
        {{"1", "PID", "18", "color", "1"},
         1,
         "Error saving PID layers of standard 'Pipe'.\n\nThere is no PID layer with key 018.\n"},
        {{"1", "PID", "16", "name", "\xE2\x82\xAC"},
         1,
         "Error saving PID layers of standard 'Pipe'.\n\n'\xE2\x82\xAC' holds a character that a "
         "datafile cannot store.\n"},
        {{"9", "PID", "16", "name", "X"},
         1,
         "Error saving PID layers of standard '9'.\n\nCan't get project location folder\n"},
        {{"1", "PID", "16", "color", "256"}, 2, "'256" + colour},
        {{"1", "PID", "16", "color", "1,2"}, 2, "'1,2" + colour},
        {{"1", "PID", "16", "color", "1,2,3,4"}, 2, "'1,2,3,4" + colour},
        {{"1", "PID", "16", "color", "0,-1,0"}, 2, "'0,-1,0" + colour},
        {{"1", "PID", "16", "color", "red"}, 2, "'red" + colour},
        {{"1", "PID", "16", "lineweight", "thin"},
         2,
         "'thin' is not a whole number for lineweight.\n"},
        {{"1", "PID", "x", "name", "X"}, 2, "'x' is not a whole number for KEY.\n"},
        {{"1", "PID", "16", "name", ""}, 2, "The layer name cannot be empty.\n"},
        {{"1", "PID", "16", "linetype", " "}, 2, "The layer linetype cannot be empty.\n"},
        {{"1", "PID", "16", "colour", "1"},
         2,
         "Unknown field 'colour'. Fields: name, color, linetype, lineweight\n"},
        {{"1", "HVAC", "16", "name", "X"},
         2,
         "Unknown application 'HVAC': give 1-4 or ELECTRIC, PID (P&ID), ISOMETRIC, ORTHO.\n"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> args = {"layers", "set"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        SCOPED_TRACE(Joined(args));
        const SRun run = Run(args);
        EXPECT_EQ(run.code, c.code);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, c.err);
        EXPECT_FALSE(fs::exists(Pipe() / "Layers.ini"));
    }
    const SRun show = Run({"layers", "show", "1", "0"});
    EXPECT_EQ(show.code, 2);
    EXPECT_EQ(show.err,
              "Unknown application '0': give 1-4 or ELECTRIC, PID (P&ID), ISOMETRIC, ORTHO.\n");
}

} // namespace
