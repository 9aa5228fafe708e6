// compare run as a child process: the records in each format, the
// differences-only filter, the report file and an abandoned comparison.
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>

namespace fs = std::filesystem;

namespace {

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
    static std::vector<std::string> Records(const std::string& text, const std::string& kind) {
        std::vector<std::string> lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) {
            if (line.starts_with(kind + "\t"))
                lines.push_back(line);
        }
        return lines;
    }
};

TEST_F(CliCompareTest, RecordsInEachFormat) {
    const std::string all = Ok({"compare", "1", "2"});
    EXPECT_TRUE(all.starts_with("header\tSetting\tPipe\tPlant\t0\n"
                                "heading\tGeneral Settings\t\t\t0\n"
                                "value\tWorking Units\tMetric\tMetric\t0\n"));
    const std::string differences = Ok({"compare", "1", "2", "--differences"});
    EXPECT_EQ(Records(differences, "value"),
              (std::vector<std::string>{"value\tTemplates\t\tT:\\\\Templates\t1",
                                        "value\tText Height\t2.5\t3.5\t1"}));
    EXPECT_EQ(Records(all, "heading"), Records(differences, "heading"));

    const auto json =
        nlohmann::json::parse(Ok({"compare", "1", "2", "--differences", "--format", "json"}));
    EXPECT_EQ(json.size(),
              static_cast<std::size_t>(std::count(differences.begin(), differences.end(), '\n')));
    EXPECT_EQ(json[0], nlohmann::json::parse(R"({"kind": "header", "label": "Setting",
        "text1": "Pipe", "text2": "Plant", "differ": false})"));
    EXPECT_EQ(json[3], nlohmann::json::parse(R"({"kind": "value", "label": "Templates",
        "text1": "", "text2": "T:\\Templates", "differ": true})"));

    // Nothing chosen on one side: the default headers only.
    EXPECT_EQ(Ok({"compare", "-1", "2"}), "header\tSetting\tStandard 1\tStandard 2\t0\n");
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
    EXPECT_EQ(run.out, "header\tSetting\tPipe\tPlant\t0\n"
                       "heading\tGeneral Settings\t\t\t0\n"
                       "value\tWorking Units\tMetric\tMetric\t0\n"
                       "value\tDisplayed Units\tMetric - OD\tMetric - OD\t0\n");
    EXPECT_EQ(run.err, "Error comparing standards: Rating format 9 of standard 'Plant' is not in "
                       "the list of rating formats.\n");
}

} // namespace
