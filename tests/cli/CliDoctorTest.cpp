// doctor run as a child process: a healthy folder exits 0 with nothing, a
// damaged one prints its rows in each format and exits 1, and --repair
// previews, asks, repairs and leaves what needs a person.
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace fs = std::filesystem;

namespace cli_doctor_test {

using test::CliTest;
using test::ReadBytes;
using test::SRun;
using test::WriteBytes;

class CliDoctorTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"standard", "create", "Pipe"}), "1\tPipe\n");
        ASSERT_EQ(Ok({"standard", "create", "Elec"}), "2\tElec\n");
    }
    // Standard 2's folder gone, a lock file nobody holds, a bad lineweight.
    void Damage() const {
        fs::remove_all(Projects() / "VX2D_PRJ_2 - Elec");
        WriteBytes(Root() / "ProjectDatafile.ini.lock", "");
        WriteBytes(Projects() / "VX2D_PRJ_1 - Pipe" / "Layers.ini",
                   "[PID - LineWeights]\r\n014 = 7\r\n");
    }
};

TEST_F(CliTest, AFreshInstallationIsHealthy) {
    ASSERT_EQ(Ok({"install"}), "");
    const SRun run = Run({"doctor"});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, "");
}

TEST_F(CliDoctorTest, AHealthyFolderExitsZeroWithNothing) {
    const SRun run = Run({"doctor"});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(Ok({"doctor", "--json"}), "[]\n");
    EXPECT_EQ(Ok({"doctor", "--repair", "--dry-run"}), "");
}

TEST_F(CliDoctorTest, ADamagedFolderPrintsItsRowsInEachFormatAndExitsOne) {
    Damage();
    const SRun tsv = Run({"doctor"});
    EXPECT_EQ(tsv.code, 1);
    EXPECT_EQ(tsv.err, "The datafiles folder has problems: 1 error, 2 warnings.\n");
    EXPECT_EQ(tsv.out,
              "error\tentry-without-folder\t2\t\t\tProjectDatafile.ini\tThe registry lists "
              "standard 2 'Elec', which has no folder.\tPut its folder back into Projects, or let "
              "the repair drop the entry.\n"
              "warning\tleftover-lock\t\t\t\tProjectDatafile.ini.lock\tThe lock file of "
              "ProjectDatafile.ini is left over: no one holds it.\tLet the repair remove it (it "
              "is removed only while no one is saving the file).\n"
              "warning\tlayer-lineweight\t1\tVX2D_PRJ_1 - Pipe\t\t" +
                  test::Tsv(test::N("Projects/VX2D_PRJ_1 - Pipe/Layers.ini")) +
                  "\tLayer 014 (Attribute) of PID has the lineweight '7', which is not one of "
                  "AutoCAD's lineweights.\tChoose another on the application's Layers page.\n");

    const SRun json = Run({"doctor", "--format", "json"});
    EXPECT_EQ(json.code, 1);
    const auto rows = nlohmann::json::parse(json.out);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0]["standard_id"], 2);
    EXPECT_EQ(rows[0]["repair"], "registry");
    EXPECT_TRUE(rows[1]["standard_id"].is_null());
    EXPECT_TRUE(rows[2]["client_id"].is_null());
    EXPECT_TRUE(rows[2]["repair"].is_null());
    EXPECT_EQ(rows[2]["kind"], "layer-lineweight");

    const fs::path page = m_io.Path() / "check.html";
    const SRun html = Run({"doctor", "--format", "html", "--output", page.string()});
    EXPECT_EQ(html.code, 1);
    EXPECT_EQ(html.out, "");
    const std::string text = ReadBytes(page);
    EXPECT_TRUE(text.starts_with("<!DOCTYPE html>"));
    EXPECT_NE(text.find("<p>1 error, 2 warnings.</p>"), std::string::npos);
    EXPECT_NE(text.find("<td class=\"error\">error</td><td>entry-without-folder</td><td>2</td>"),
              std::string::npos);
    EXPECT_NE(text.find("the lineweight &#39;7&#39;"), std::string::npos);
    EXPECT_EQ(Run({"doctor", "--format", "xml"}).code, 2);
}

TEST_F(CliDoctorTest, RepairPreviewsAsksRepairsAndLeavesWhatNeedsAPerson) {
    Damage();
    const std::string registry = ReadBytes(Root() / "ProjectDatafile.ini");
    const std::string preview = "registry\tDrop the registry entry of standard 2 'Elec', whose "
                                "folder is missing\t0\n"
                                "leftover\tRemove ProjectDatafile.ini.lock\t0\n";
    EXPECT_EQ(Ok({"doctor", "--repair", "--dry-run"}), preview);
    const SRun refused = Run({"doctor", "--repair"});
    EXPECT_EQ(refused.code, 2);
    EXPECT_NE(refused.err.find("confirm with --yes"), std::string::npos);
    EXPECT_EQ(ReadBytes(Root() / "ProjectDatafile.ini"), registry) << "changed without a yes";
    EXPECT_TRUE(fs::exists(Root() / "ProjectDatafile.ini.lock"));
    EXPECT_EQ(Run({"doctor", "--dry-run"}).code, 2) << "--dry-run belongs to --repair";

    EXPECT_EQ(Ok({"doctor", "--repair", "--yes"}),
              "registry\tDrop the registry entry of standard 2 'Elec', whose folder is "
              "missing\t1\n"
              "leftover\tRemove ProjectDatafile.ini.lock\t1\n");
    EXPECT_FALSE(fs::exists(Root() / "ProjectDatafile.ini.lock"));
    EXPECT_EQ(Ok({"standard", "list", "--deleted"}), "1\tactive\t0\tPipe\n");
    const SRun after = Run({"doctor"});
    EXPECT_EQ(after.code, 1);
    EXPECT_TRUE(after.out.starts_with("warning\tlayer-lineweight\t1\t")) << after.out;
    EXPECT_EQ(Ok({"doctor", "--repair", "--yes"}), "");
}

TEST_F(CliDoctorTest, AtATerminalTheStepsComeBeforeTheQuestion) {
    SD_SKIP_UNLESS_POSIX("a terminal");
    Damage();
    m_terminal = "n\n";
    const SRun asked = Run({"doctor", "--repair"});
    m_terminal.reset();
    EXPECT_EQ(asked.code, 1);
    EXPECT_NE(asked.err.find("Remove ProjectDatafile.ini.lock\r\nMake these 2 repairs? [y/N]"),
              std::string::npos)
        << asked.err;
    EXPECT_TRUE(fs::exists(Root() / "ProjectDatafile.ini.lock")) << "repaired after a no";
}

} // namespace cli_doctor_test
