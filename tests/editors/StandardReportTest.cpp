// The printed standard report: values changed in each file of a standard
// show in their part of the report, and a standard that is not there is
// refused with its message.
#include "editors/StandardReport.h"
#include "platform/System.h"
#include "store/GeneralSettings.h"
#include "store/ProjectRegistry.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace standard_report_test {

using CFields = std::vector<std::wstring>;

// The cells of a report line: text runs separated by two or more blanks.
CFields Fields(const std::wstring& line) {
    CFields fields;
    std::size_t at = line.find_first_not_of(L' ');
    while (at != std::wstring::npos) {
        const std::size_t end = std::min(line.find(L"  ", at), line.size());
        fields.push_back(line.substr(at, end - at));
        at = line.find_first_not_of(L' ', end);
    }
    return fields;
}

// The row of the part titled `title` whose first cell is `first`; empty
// when that part has none.
CFields Row(const std::wstring& report, const std::wstring& title, const std::wstring& first) {
    std::vector<std::wstring> lines;
    std::wistringstream in(report);
    for (std::wstring line; std::getline(in, line);)
        lines.push_back(line);
    bool inside = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i + 1 < lines.size() && !lines[i].empty() &&
            lines[i + 1] == std::wstring(lines[i].size(), L'=')) {
            inside = lines[i++] == title;
            continue;
        }
        const CFields fields = Fields(lines[i]);
        if (inside && !fields.empty() && fields[0] == first)
            return fields;
    }
    return {};
}

class StandardReportTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ASSERT_EQ(registry.CreateProject({L"Pipe", 0, 1, 0, false}, id), eProjectOk);
        ASSERT_TRUE(platform::SameFile(FolderOf(id), Folder()));
    }
    std::wstring Report() {
        std::wstring text, error;
        EXPECT_TRUE(StandardReportText(registry, id, L"2024-05-06 14:03", text, error));
        EXPECT_EQ(error, L"");
        return text;
    }

    std::int32_t id = 0;
};

TEST_F(StandardReportTest, ChangedValuesShowInTheirParts) {
    CVX2D_GeneralSettings general;
    ASSERT_TRUE(general.Load(registry, id));
    general.m_nDisplayedUnits = 3;
    ASSERT_TRUE(general.Save());
    WriteBytes(Folder() / "Borders.ini", "[Revision]\r\nA3 = Rev_Own.dwg\r\n");
    WriteBytes(Folder() / "Lines.ini",
               "[DeletedLines]\r\nVX2D_LINE_4 = Old\r\n[LineList]\r\nVX2D_LINE_3 = Drain\r\n");
    WriteBytes(Folder() / "Specs.ini", "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\n");
    WriteBytes(Folder() / "PID.ini", "[Settings]\r\nVariable 145 = 3.5\r\n");
    WriteBytes(Folder() / "Layers.ini", "[PID - Colors]\r\n016 = 255,0,0,1\r\n"
                                        "[PID - LineWeights]\r\n016 = 25\r\n");

    const std::wstring report = Report();
    EXPECT_TRUE(report.starts_with(L"VANDIX 2D Standards Desk - Print View\n"))
        << report.substr(0, 80);
    EXPECT_EQ(Row(report, L"General Settings", L"Displayed Units"),
              (CFields{L"Displayed Units", L"English - NPS"}));
    EXPECT_EQ(Row(report, L"General Settings", L"Working Units"),
              (CFields{L"Working Units", L"Metric"}));
    EXPECT_EQ(Row(report, L"Border Settings", L"A3"),
              (CFields{L"A3", L"Bord_A3.dwg", L"0.0,0.0", L"420.0,297.0", L"Rev_Own.dwg"}));
    EXPECT_EQ(Row(report, L"Lines", L"3"), (CFields{L"3", L"Drain", L"Live"}));
    EXPECT_EQ(Row(report, L"Lines", L"4"), (CFields{L"4", L"Old", L"Deleted"}));
    EXPECT_EQ(Row(report, L"Specs", L"5"), (CFields{L"5", L"CS150"}));
    EXPECT_EQ(Row(report, L"P&ID - General Drawing Parameters", L"Text Height"),
              (CFields{L"Text Height", L"3.5"}));
    EXPECT_EQ(Row(report, L"ELECTRIC - General Drawing Parameters", L"Text Height"),
              (CFields{L"Text Height", L"2.5"}));
    EXPECT_EQ(Row(report, L"PID - Layers", L"Border 1"),
              (CFields{L"Border 1", L"BORDER1", L"Red (1)", L"CONTINUOUS", L"0.25 mm"}));
    EXPECT_EQ(Row(report, L"ISOMETRIC - Layers", L"Border 1"),
              (CFields{L"Border 1", L"BORDER1", L"Cyan (4)", L"CONTINUOUS", L"Default"}));
}

TEST_F(StandardReportTest, AMissingStandardIsRefused) {
    std::wstring text, error;
    EXPECT_FALSE(StandardReportText(registry, 9, L"", text, error));
    EXPECT_EQ(error, L"Standard 9 does not exist.");
    EXPECT_TRUE(text.empty());

    // Print... shows the failure and opens nothing.
    bool opened = false;
    EXPECT_FALSE(PrintStandardReport(registry, prompter, 9,
                                     [&](const std::wstring&) { return opened = true; }));
    EXPECT_FALSE(opened);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].text, L"Error printing standard 9.\n\nStandard 9 does not exist.");
}

TEST_F(StandardReportTest, WrittenToTheTemporaryFolder) {
    EXPECT_EQ(test::P(StandardReportDefaultPath()).filename(),
              fs::path("VANDIX 2D Standards Desk - Print View.txt"));
    std::wstring error;
    ASSERT_TRUE(WriteStandardReport(registry, id, Datafiles().File(L"report.txt"), error));
    std::string bytes = ReadBytes(test::P(Datafiles().File(L"report.txt")));
#ifdef _WIN32
    // Windows line ends there, for Notepad.
    EXPECT_EQ(bytes.find("Print View\r\n"), 27u);
    for (std::size_t at = 0; (at = bytes.find("\r\n", at)) != std::string::npos;)
        bytes.erase(at, 1);
#endif
    EXPECT_TRUE(bytes.starts_with("VANDIX 2D Standards Desk - Print View\n"
                                  "Standard:  Pipe\n"));
    EXPECT_NE(bytes.find("\nORTHO - Layers\n==============\n"), std::string::npos);
}

} // namespace standard_report_test
