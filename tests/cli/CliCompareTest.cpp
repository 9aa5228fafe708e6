// compare, merge and push run as a child process: the records in each
// format, the differences-only filter and the summary, the report file, an
// abandoned comparison; rows merged by id and all differences, and a push
// that goes on past a standard it cannot change.
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>

namespace fs = std::filesystem;

namespace cli_compare_test {

using test::ReadBytes;

// Standards 1 "Pipe" and 2 "Plant", both metric; Plant has a larger P&ID
// text height and its own templates folder.
class CliCompareTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"standard", "create", "Pipe"}), "1\tPipe\n");
        ASSERT_EQ(Ok({"standard", "create", "Plant"}), "2\tPlant\n");
        Ok({"settings", "set", "2", "PID", "145", "3.5"});
        Ok({"general", "set", "2", "templates_folder", "T:\\Templates"});
    }
    // The records of one kind (the second field).
    static std::vector<std::string> Records(const std::string& text, const std::string& kind) {
        std::vector<std::string> lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) {
            if (line.find("\t" + kind + "\t") == line.find('\t'))
                lines.push_back(line);
        }
        return lines;
    }
};

TEST_F(CliCompareTest, RecordsInEachFormat) {
    const std::string all = Ok({"compare", "1", "2"});
    EXPECT_TRUE(all.starts_with("\theader\tSetting\tPipe\tPlant\t0\n"
                                "General\theading\tGeneral Settings\t\t\t0\n"
                                "General/Settings/WorkingUnits\tvalue\tWorking Units\tMetric\t"
                                "Metric\t0\n"));
    const test::SRun differences = Run({"compare", "1", "2", "--differences-only", "--summary"});
    EXPECT_EQ(differences.code, 0);
    EXPECT_EQ(Records(differences.out, "value"),
              (std::vector<std::string>{
                  "Locations/Folders/Templates\tvalue\tTemplates\t\tT:\\\\Templates\t1",
                  "PID/Settings/145\tvalue\tText Height\t2.5\t3.5\t1"}));
    EXPECT_EQ(Records(all, "heading"), Records(differences.out, "heading"));
    EXPECT_EQ(differences.err,
              "General\t0\nLocations\t1\nBorders\t0\nLines\t0\nSpecs\t0\n"
              "ELECTRIC\t0\nPID\t1\nISOMETRIC\t0\nORTHO\t0\nLayers\t0\nTotal\t2\n");
    EXPECT_EQ(Ok({"compare", "1", "2", "--differences"}), differences.out);

    const auto json =
        nlohmann::json::parse(Ok({"compare", "1", "2", "--differences", "--format", "json"}));
    EXPECT_EQ(json.size(), static_cast<std::size_t>(
                               std::count(differences.out.begin(), differences.out.end(), '\n')));
    EXPECT_EQ(json[0], nlohmann::json::parse(R"({"id": "", "kind": "header", "label": "Setting",
        "text1": "Pipe", "text2": "Plant", "differ": false})"));
    EXPECT_EQ(json[3], nlohmann::json::parse(R"({"id": "Locations/Folders/Templates",
        "kind": "value", "label": "Templates", "text1": "", "text2": "T:\\Templates",
        "differ": true})"));

    // Nothing chosen on one side: the default headers only.
    EXPECT_EQ(Ok({"compare", "-1", "2"}), "\theader\tSetting\tStandard 1\tStandard 2\t0\n");
    EXPECT_EQ(Run({"compare", "1", "2", "--format", "xml"}).code, 2);
}

TEST_F(CliCompareTest, OutputFileHoldsTheReport) {
    const fs::path html = m_io.Path() / "report.html";
    EXPECT_EQ(Ok({"compare", "1", "2", "--format", "html", "--output", html.string()}), "");
    const std::string page = ReadBytes(html);
    EXPECT_TRUE(page.starts_with("<!DOCTYPE html>"));
    EXPECT_NE(page.find("<tr><td>Text Height</td><td style=\"background-color:#ffff00\">2.5</td>"
                        "<td style=\"background-color:#ffff00\">3.5</td></tr>"),
              std::string::npos);

    const fs::path tsv = m_io.Path() / "report.tsv";
    EXPECT_EQ(Ok({"compare", "1", "2", "--output", tsv.string()}), "");
    EXPECT_EQ(ReadBytes(tsv), Ok({"compare", "1", "2"}));

    const fs::path missing = m_io.Path() / "missing" / "x.tsv";
    const test::SRun failure = Run({"compare", "1", "2", "--output", missing.string()});
    EXPECT_EQ(failure.code, 1);
    EXPECT_EQ(failure.err, "Error writing the comparison to '" + missing.string() + "'.\n");
}

TEST_F(CliCompareTest, AnAbandonedComparisonPrintsTheRowsBuiltSoFarAndFails) {
    // A code the list of rating formats does not have, as another program left it.
    Ok({"datafile", "set", (Projects() / "VX2D_PRJ_2 - Plant" / "General.ini").string(), "Units",
        "RatingsFormat", "9"});
    const test::SRun run = Run({"compare", "1", "2"});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "\theader\tSetting\tPipe\tPlant\t0\n"
                       "General\theading\tGeneral Settings\t\t\t0\n"
                       "General/Settings/WorkingUnits\tvalue\tWorking Units\tMetric\tMetric\t0\n"
                       "General/Settings/DisplayedUnits\tvalue\tDisplayed Units\tMetric - OD\t"
                       "Metric - OD\t0\n");
    EXPECT_EQ(run.err, "Error comparing standards: Rating format 9 of standard 'Plant' is not in "
                       "the list of rating formats.\n");
}

TEST_F(CliCompareTest, MergeCopiesNamedRowsOrAllDifferences) {
    const std::string row = "PID/Settings/145\tP&ID - General Drawing Parameters\tText Height\t";
    EXPECT_EQ(Ok({"merge", "2", "1", "PID/Settings/145", "--dry-run"}), row + "2.5\t3.5\n");
    EXPECT_EQ(Ok({"merge", "2", "Pipe", "PID/Settings/145"}), row + "2.5\t3.5\n");
    EXPECT_EQ(Ok({"merge", "2", "1", "PID/Settings/145"}), ""); // nothing left to change
    EXPECT_EQ(Ok({"merge", "2", "1", "--all-differences", "--dry-run"}),
              "Locations/Folders/Templates\tFile Locations\tTemplates\t\tT:\\\\Templates\n");
    EXPECT_EQ(Ok({"merge", "2", "1", "--all-differences", "--group", "PID"}), "");
    Ok({"merge", "2", "1", "--all-differences"});
    EXPECT_EQ(Records(Ok({"compare", "1", "2", "--differences-only"}), "value"),
              std::vector<std::string>{});

    const std::pair<std::vector<std::string>, std::string> refused[] = {
        {{"merge", "1", "2"}, "Name the rows to merge, or give --all-differences (not both).\n"},
        {{"merge", "1", "2", "PID/Settings/145", "--all-differences"},
         "Name the rows to merge, or give --all-differences (not both).\n"},
        {{"merge", "1", "2", "PID/Settings/145", "--group", "PID"},
         "--group narrows --all-differences; name rows without it.\n"},
        {{"merge", "1", "2", "Colours/x/1"},
         "No row of the comparison of 'Pipe' and 'Plant' is called 'Colours/x/1'.\n"},
        {{"merge", "1", "2", "--all-differences", "--group", "Colours"},
         "No row of the comparison of 'Pipe' and 'Plant' is called 'Colours'.\n"},
        {{"push", "1", "PID/Settings/145"},
         "Say where to push: --to ID[,ID...], --client CLIENT or --all.\n"},
        {{"push", "1", "PID/Settings/999", "--all"},
         "Standard 'Pipe' has no row called 'PID/Settings/999'.\n"},
    };
    for (const auto& [args, err] : refused) {
        const test::SRun run = Run(args);
        EXPECT_EQ(run.code, 2) << test::Joined(args);
        EXPECT_EQ(run.err, err) << test::Joined(args);
    }
}

TEST_F(CliCompareTest, PushGoesOnPastAStandardItCannotChange) {
    ASSERT_EQ(Ok({"standard", "create", "Third"}), "3\tThird\n");
    ASSERT_EQ(Ok({"standard", "create", "Lost"}), "4\tLost\n");
    ASSERT_EQ(Ok({"standard", "create", "Old"}), "5\tOld\n");
    Ok({"standard", "delete", "5"});
    fs::remove_all(Projects() / "VX2D_PRJ_4 - Lost");

    const std::string pid = "\tPID/Settings/145\tP&ID - General Drawing Parameters\tText Height\t"
                            "2.5\t3.5\n";
    const test::SRun dry =
        Run({"push", "Plant", "PID/Settings/145", "--to", "1,Third", "--dry-run"});
    EXPECT_EQ(dry.code, 0) << dry.err;
    EXPECT_EQ(dry.out, "1\tPipe" + pid + "3\tThird" + pid);
    EXPECT_EQ(Ok({"settings", "show", "1", "PID", "--section", "4"}).find("\t3.5"),
              std::string::npos);

    const test::SRun all = Run({"push", "2", "PID/Settings/145", "--all"});
    EXPECT_EQ(all.code, 1);
    EXPECT_EQ(all.out, "1\tPipe" + pid + "3\tThird" + pid);
    EXPECT_EQ(all.err,
              "Error pushing to standard 'Lost' (4).\n\nError comparing standards: The folder of "
              "standard 'Lost' cannot be found.\n"
              "Standard 'Old' (5) skipped: deleted.\n"
              "The push failed for 1 of 5 standards.\n");

    const auto json = nlohmann::json::parse(
        Ok({"push", "2", "PID/Settings/145", "--to", "1,5", "--include-deleted", "--json"}));
    ASSERT_EQ(json.size(), 2u);
    EXPECT_EQ(json[0]["status"], "unchanged");
    EXPECT_EQ(json[1]["status"], "changed");
    EXPECT_EQ(json[1]["changes"][0]["row"], "PID/Settings/145");
    EXPECT_EQ(json[1]["changes"][0]["new"], "3.5");
}

} // namespace cli_compare_test
