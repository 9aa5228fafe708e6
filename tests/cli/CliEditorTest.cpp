// settings editor and drawings copy, delete, new, rename and open run as a
// child process: the records printed, the messages of refusals and the
// files left in the drawings folder.
#include "support/CliFixture.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace cli_editor_test {

// Standard 1 "Pipe" (metric) whose ISOMETRIC drawings are in "dwg/" and
// templates in "tpl/" of the test's own folder.
class CliEditorTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"standard", "create", "Pipe"}), "1\tPipe\n");
        fs::create_directories(Dwg());
        Ok({"general", "set", "1", "drawings_isometric", Dwg().string()});
        Ok({"general", "set", "1", "templates_folder", (m_io.Path() / "tpl").string()});
    }
    fs::path Dwg() const { return m_io.Path() / "dwg"; }
    std::set<std::string> OnDisk() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(Dwg()))
            names.insert(entry.path().filename().string());
        return names;
    }
};

TEST_F(CliEditorTest, SettingsEditorPrintsTheRowsOfASection) {
    WriteBytes(m_io.Path() / "tpl" / "iso.dwt", "t");
    // One row of each cell kind: text, font, number, list with its choices, path.
    const std::string general = Ok({"settings", "editor", "1", "ORTHO", "4"});
    EXPECT_TRUE(general.starts_with("0\tText Style Name\ttext\tSTANDARD\t\t0\n"
                                    "1\tText Font\tfont\tRomanS; Regular; romans__.ttf\t\t0\n"));
    EXPECT_NE(
        general.find("\n8\tNumber Pipe Diameters for Pipebend Straight Ends\tnumber\t2\t\t0\n"),
        std::string::npos);
    EXPECT_NE(general.find("\n12\tPipe Double/Single Line Drafting\tlist\tDouble Line\tDouble "
                           "Line|Single Line\t0\n13\tDrawing Template\tlist\tacad\tiso|acad\t0\n"
                           "14\tBlock Folder\tpath\t\t\t0\n"),
              std::string::npos);
    const std::string dimensioning = Ok({"settings", "editor", "1", "1", "dimensioning variables"});
    EXPECT_EQ(
        dimensioning.substr(0, dimensioning.find("\n2\t") + 1),
        "0\tDimension Style Name\ttext\tSTANDARD\t\t0\n1\tLines and Arrows\theading\t\t\t1\n");

    const std::pair<std::vector<std::string>, std::pair<int, std::string>> refusals[] = {
        {{"1", "ELECTRIC", "8"}, {2, "ELECTRIC settings have no section 8 \"System Toggles\".\n"}},
        {{"1", "ELECTRIC", "12"},
         {2, "Unknown section '12': give a section id or name:\n  0 Bill of Material\n  1 "
             "Civil/Structural Parameters\n  2 Component Sizing\n  3 Dimensioning Variables\n  "
             "4 General Drawing Parameters\n  5 Layers\n  6 Scale Factors\n  7 Scaling "
             "Variables\n  8 System Toggles\n"}},
    };
    for (const auto& [args, expected] : refusals) {
        std::vector<std::string> command = {"settings", "editor"};
        command.insert(command.end(), args.begin(), args.end());
        const test::SRun run = Run(command);
        EXPECT_EQ(run.code, expected.first);
        EXPECT_EQ(run.err, expected.second);
        EXPECT_EQ(run.out, "");
    }
}

TEST_F(CliEditorTest, DrawingsAreCopiedMadeRenamedAndDeleted) {
    WriteBytes(Dwg() / "Pump.dwg", "pump");
    WriteBytes(Dwg() / "Pump (Copy 1).dwg", "old copy");
    WriteBytes(m_io.Path() / "tpl" / "iso.dwt", "iso template");
    Ok({"settings", "set", "1", "ISOMETRIC", "44", "iso"});

    EXPECT_EQ(Ok({"drawings", "copy", "1", "ISOMETRIC", "Pump"}), "Pump.dwg\tPump (Copy 2).dwg\n");
    EXPECT_EQ(ReadBytes(Dwg() / "Pump (Copy 2).dwg"), "pump");
    EXPECT_EQ(Ok({"drawings", "new", "1", "3"}), "Drawing1.dwg\n");
    EXPECT_EQ(ReadBytes(Dwg() / "Drawing1.dwg"), "iso template");
    WriteBytes(Dwg() / "Drawing2.dwg", "d2");
    EXPECT_EQ(Ok({"drawings", "rename", "1", "3", "Drawing1", "Main Pump"}), "");

    const test::SRun taken = Run({"drawings", "rename", "1", "3", "Drawing2", "Main Pump"});
    EXPECT_EQ(taken.code, 1);
    EXPECT_EQ(
        taken.err,
        "Error renaming drawing 'Drawing2'.\n\nA file named 'Main Pump.dwg' already exists.\n");
    const test::SRun unconfirmed = Run({"drawings", "delete", "1", "3", "Drawing2"});
    EXPECT_EQ(unconfirmed.code, 2);
    EXPECT_TRUE(fs::exists(Dwg() / "Drawing2.dwg"));

    const test::SRun deleted =
        Run({"drawings", "delete", "1", "3", "Drawing2", "Pump (Copy 1).dwg", "Gone", "--yes"});
    EXPECT_EQ(deleted.code, 1);
    EXPECT_EQ(deleted.out, "Drawing2.dwg\nPump (Copy 1).dwg\n");
    EXPECT_EQ(deleted.err,
              "Are you sure you want to delete these drawings?\n\nDrawing2\nPump (Copy "
              "1).dwg\nGone\n\n(answered Yes)\nError deleting drawings. These files "
              "were not deleted:\n" +
                  (Dwg() / "Gone.dwg").string() + "\n");
    EXPECT_EQ(OnDisk(), (std::set<std::string>{"Main Pump.dwg", "Pump (Copy 2).dwg", "Pump.dwg"}));
}

TEST_F(CliEditorTest, OpenDryRunPrintsWhatWouldBeStarted) {
    WriteBytes(Dwg() / "Pump.dwg", "pump");
    const std::string file = (Dwg() / "Pump.dwg").string();
    EXPECT_EQ(Ok({"drawings", "open", "1", "3", "Pump", "--dry-run"}),
              "open\t\t\t\t" + test::Tsv(file) + "\n");

    const fs::path common = m_io.Path() / "net" / "Crafter" / "Common";
    WriteBytes(common / "VANDIX 2D.exe", "x");
    WriteBytes(m_io.Path() / "desk" / "ISOMETRIC.lnk", "x");
    WriteBytes(MachineRegistry(),
               "[Software\\VANDIX\\2D Kryn\\2023]\r\nAutoCADRelease = R24.0\r\nAutoCADVersion = "
               "ACAD-4101:409\r\nNetworkAppPath = " +
                   (m_io.Path() / "net").string() +
                   "\r\n\r\n[Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell "
                   "Folders]\r\nCommon Desktop = " +
                   (m_io.Path() / "desk").string() + "\r\n");
    EXPECT_EQ(Ok({"drawings", "open", "1", "3", "Pump.dwg", "--dry-run"}),
              "launcher\t" + test::Tsv((common / "VANDIX 2D.exe").string()) +
                  "\tISOMETRIC ProjectId=1 DrawingName=\"" + test::Tsv(file) + "\"\t" +
                  test::Tsv(common.string() + test::N("/")) + "\t" + test::Tsv(file) + "\n");

    const test::SRun missing = Run({"drawings", "open", "1", "3", "Valve", "--dry-run"});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.err, "Error opening drawing 'Valve'.\n\nThe file '" +
                               (Dwg() / "Valve.dwg").string() + "' does not exist.\n");
}

} // namespace cli_editor_test
