// report run as a child process: the report on standard output or in a file,
// and a standard that does not exist.
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <regex>

namespace cli_report_test {

using test::ReadBytes;

// The report without its "Printed:" line, which holds the time of the run.
std::string Undated(const std::string& report) {
    return std::regex_replace(report, std::regex("\nPrinted: +[^\n]*\n"), "\n");
}

class CliReportTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"standard", "create", "Pipe"}), "1\tPipe\n");
        Ok({"settings", "set", "1", "PID", "145", "3.5"});
        Ok({"lines", "create", "1"});
    }
};

TEST_F(CliReportTest, PrintsOrWritesTheReport) {
    const std::string report = Ok({"report", "1"});
    EXPECT_TRUE(report.starts_with("VANDIX 2D Standards Desk - Print View\n"
                                   "Standard:  Pipe\n"));
    EXPECT_NE(report.find("\nLines\n=====\nId  Line    State\n--  ------  -----\n"
                          "1   Line 1  Live\n"),
              std::string::npos);
    const std::size_t pid = report.find("\nP&ID - General Drawing Parameters\n");
    ASSERT_NE(pid, std::string::npos);
    const std::size_t height = report.find("\nText Height ", pid);
    ASSERT_NE(height, std::string::npos);
    EXPECT_EQ(report.substr(report.find_first_not_of(' ', height + 12), 4), "3.5\n");

    const auto file = m_io.Path() / "report.txt";
    EXPECT_EQ(Ok({"report", "1", "--output", file.string()}), "");
    std::string written = report;
#ifdef _WIN32
    // A report file has Windows line ends there, for Notepad; the output
    // stream has the same bytes everywhere.
    for (std::size_t at = 0; (at = written.find('\n', at)) != std::string::npos; at += 2)
        written.insert(at, 1, '\r');
#endif
    EXPECT_EQ(Undated(ReadBytes(file)), Undated(written));
}

TEST_F(CliReportTest, AMissingStandardFails) {
    const test::SRun run = Run({"report", "9"});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "There is no standard 9 (see 'standard list --deleted')\n");
}

} // namespace cli_report_test
