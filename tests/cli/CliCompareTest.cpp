// compare run as a child process: the records in each format, the
// differences-only filter, the report file and an abandoned comparison.
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
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
                                "value\tWorking Units\tMetric\tMetric\t0\n"
                                "value\tDisplayed Units\tMetric - OD\tMetric - OD\t0\n"
                                "value\tRating Format\t150#\t150#\t0\n"
                                "heading\tFile Locations\t\t\t0\n"));
    const std::vector<std::string> differing = {
        "value\tTemplates\t\tT:\\Templates\t1",
        "value\tText Height\t2.5\t3.5\t1",
    };
    const std::string differences = Ok({"compare", "1", "2", "--differences"});
    EXPECT_EQ(Records(differences, "value"), differing);
    EXPECT_EQ(Records(all, "heading"), Records(differences, "heading"));
    EXPECT_EQ(Records(differences, "heading").size(), 30u);
    EXPECT_EQ(Records(differences, "subheading").size(), 20u);
    EXPECT_EQ(Records(Ok({"compare", "2", "2", "--differences"}), "value").size(), 0u);

    const auto json =
        nlohmann::json::parse(Ok({"compare", "1", "2", "--differences", "--format", "json"}));
    ASSERT_EQ(json.size(), 1u + 30u + 20u + 2u);
    EXPECT_EQ(json[0], nlohmann::json::parse(R"({"kind": "header", "label": "Setting",
        "text1": "Pipe", "text2": "Plant", "differ": 0})"));
    EXPECT_EQ(json[3], nlohmann::json::parse(R"({"kind": "value", "label": "Templates",
        "text1": "", "text2": "T:\\Templates", "differ": 1})"));

    // Nothing chosen on one side: the default headers only.
    EXPECT_EQ(Ok({"compare", "-1", "2"}), "header\tSetting\tStandard 1\tStandard 2\t0\n");
    EXPECT_EQ(Run({"compare", "1", "2", "--format", "xml"}).code, 2);
}

TEST_F(CliCompareTest, OutputFileHoldsTheReport) {
    const fs::path html = m_io.Path() / "report.html";
    EXPECT_EQ(Ok({"compare", "1", "2", "--format", "html", "--output", html.string()}), "");
    const std::string page = ReadBytes(html);
    EXPECT_TRUE(page.starts_with("<!DOCTYPE html>"));
    EXPECT_NE(page.find("<p>2 values differ (marked yellow).</p>"), std::string::npos);
    EXPECT_NE(page.find("<tr><td>Text Height</td><td style=\"background-color:#ffff00\">2.5</td>"
                        "<td style=\"background-color:#ffff00\">3.5</td></tr>"),
              std::string::npos);

    const fs::path tsv = m_io.Path() / "report.tsv";
    EXPECT_EQ(Ok({"compare", "1", "2", "--output", tsv.string()}), "");
    EXPECT_EQ(ReadBytes(tsv), Ok({"compare", "1", "2"}));

    const test::SRun failure =
        Run({"compare", "1", "2", "--output", (m_io.Path() / "missing" / "x.tsv").string()});
    EXPECT_EQ(failure.code, 1);
    EXPECT_TRUE(failure.err.starts_with("Error writing the comparison to '"));
}

TEST_F(CliCompareTest, AnAbandonedComparisonPrintsTheRowsBuiltSoFarAndFails) {
    Ok({"general", "set", "2", "rating_format", "9"});
    const struct {
        std::vector<std::string> args;
        std::string out;
        std::string err;
    } cases[] = {
        {{"compare", "1", "2"},
         "header\tSetting\tPipe\tPlant\t0\n"
         "heading\tGeneral Settings\t\t\t0\n"
         "value\tWorking Units\tMetric\tMetric\t0\n"
         "value\tDisplayed Units\tMetric - OD\tMetric - OD\t0\n",
         "Error comparing standards: Rating format 9 of standard 'Plant' is not in the list of "
         "rating formats.\n"},
        {{"compare", "1", "2", "--differences"},
         "header\tSetting\tPipe\tPlant\t0\n"
         "heading\tGeneral Settings\t\t\t0\n",
         "Error comparing standards: Rating format 9 of standard 'Plant' is not in the list of "
         "rating formats.\n"},
    };
    for (const auto& c : cases) {
        const test::SRun run = Run(c.args);
        EXPECT_EQ(run.code, 1) << test::Joined(c.args);
        EXPECT_EQ(run.out, c.out);
        EXPECT_EQ(run.err, c.err);
    }
}

} // namespace
