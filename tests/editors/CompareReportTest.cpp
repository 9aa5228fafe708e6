// A comparison as a file: the TSV records, the HTML page with its escaped
// texts and cell colours, and the differences-only filter.
#include "editors/CompareReport.h"
#include "platform/Utf8.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace compare_report_test {

using Kind = ECompareRowKind;

SCompareRow Row(Kind kind, std::wstring id, std::wstring label, std::wstring text1 = {},
                std::wstring text2 = {}) {
    SCompareRow row;
    row.kind = kind;
    row.id = std::move(id);
    row.label = std::move(label);
    row.text1 = std::move(text1);
    row.text2 = std::move(text2);
    row.centred = kind != Kind::eValue;
    row.differ = kind == Kind::eValue && row.text1 != row.text2;
    if (kind == Kind::eHeading)
        row.background1 = row.background2 = kCompareHeadingColour;
    else if (kind == Kind::eSubHeading)
        row.background1 = row.background2 = kCompareSubHeadingColour;
    else if (row.differ)
        row.background1 = row.background2 = kCompareDifferColour;
    return row;
}

// Two standards whose names and texts need escaping in both formats.
SComparison Sample() {
    SComparison comparison;
    comparison.header1 = L"Pipe <A&B>";
    comparison.header2 = L"O'Neil \"2\"";
    comparison.rows = {
        Row(Kind::eHeading, L"General", L"General Settings"),
        Row(Kind::eValue, L"General/Settings/WorkingUnits", L"Working Units", L"Metric", L"Metric"),
        Row(Kind::eValue, L"Locations/Folders/Borders", L"Borders", L"C:\\Borders",
            L"tab\there\nline"),
        Row(Kind::eSubHeading, L"PID/Settings/Dimensioning Variables/Lines and Arrows",
            L"Lines and Arrows"),
        Row(Kind::eValue, L"PID/Settings/076", L"Zero Suppression", L"3 1/2\" <b>", L"3 1/2\" <b>"),
    };
    return comparison;
}

TEST(CompareReportTest, TsvRecordsAndTheDifferencesFilter) {
    EXPECT_EQ(CompareReportTsv(Sample()),
              L"\theader\tSetting\tPipe <A&B>\tO'Neil \"2\"\t0\n"
              L"General\theading\tGeneral Settings\t\t\t0\n"
              L"General/Settings/WorkingUnits\tvalue\tWorking Units\tMetric\tMetric\t0\n"
              L"Locations/Folders/Borders\tvalue\tBorders\tC:\\\\Borders\ttab\\there\\nline\t1\n"
              L"PID/Settings/Dimensioning Variables/Lines and Arrows\tsubheading\tLines and "
              L"Arrows\t\t\t0\n"
              L"PID/Settings/076\tvalue\tZero Suppression\t3 1/2\" <b>\t3 1/2\" <b>\t0\n");

    SComparison failed = Sample();
    failed.failed = true;
    failed.reason = L"Why.";
    const SComparison kept = CompareDifferencesOnly(failed);
    EXPECT_EQ(CompareReportTsv(kept),
              L"\theader\tSetting\tPipe <A&B>\tO'Neil \"2\"\t0\n"
              L"General\theading\tGeneral Settings\t\t\t0\n"
              L"Locations/Folders/Borders\tvalue\tBorders\tC:\\\\Borders\ttab\\there\\nline\t1\n"
              L"PID/Settings/Dimensioning Variables/Lines and Arrows\tsubheading\tLines and "
              L"Arrows\t\t\t0\n");
    EXPECT_TRUE(kept.failed);
    EXPECT_EQ(kept.reason, L"Why.");
}

TEST(CompareReportTest, HtmlShowsTheGridWithItsColoursAndEscapedTexts) {
    SComparison comparison = Sample();
    const std::wstring html = CompareReportHtml(comparison, L"2024-05-06 07:08");
    const std::wstring expected[] = {
        L"<!DOCTYPE html>",
        L"<meta charset=\"utf-8\">",
        L"<title>Comparison of Pipe &lt;A&amp;B&gt; and O&#39;Neil &quot;2&quot;</title>",
        L"<p>Date: 2024-05-06 07:08</p>",
        L"<p>1 value differs (marked yellow).</p>",
        L"<thead><tr><th>Setting</th><th>Pipe &lt;A&amp;B&gt;</th><th>O&#39;Neil "
        L"&quot;2&quot;</th></tr></thead>",
        L"<tr><td class=\"heading centred\">General Settings</td>"
        L"<td style=\"background-color:#9f9c96\"></td>"
        L"<td style=\"background-color:#9f9c96\"></td></tr>",
        L"<tr><td>Working Units</td><td>Metric</td><td>Metric</td></tr>",
        L"<tr><td>Borders</td><td style=\"background-color:#ffff00\">C:\\Borders</td>"
        L"<td style=\"background-color:#ffff00\">tab\there\nline</td></tr>",
        L"<tr><td class=\"subheading centred\">Lines and Arrows</td>"
        L"<td style=\"background-color:#d4d0c8\"></td>"
        L"<td style=\"background-color:#d4d0c8\"></td></tr>",
        L"<td>3 1/2&quot; &lt;b&gt;</td>",
    };
    for (const auto& part : expected)
        EXPECT_NE(html.find(part), std::wstring::npos) << platform::ToUtf8(part);
    EXPECT_EQ(html.find(L"<b>\""), std::wstring::npos);
    EXPECT_EQ(html.find(L"Error comparing"), std::wstring::npos);

    comparison.failed = true;
    comparison.reason = L"Rating format 7 of standard 'X<1>' is not in the list.";
    EXPECT_NE(
        CompareReportHtml(comparison, L"")
            .find(L"<p class=\"error\">Error comparing standards: Rating format 7 of standard "
                  L"&#39;X&lt;1&gt;&#39; is not in the list.</p>"),
        std::wstring::npos);

    // Saved as UTF-8.
    test::CTempDir dir;
    comparison.header1 = L"Caf\u00e9";
    ASSERT_TRUE(SaveCompareReport(dir.File(L"report.html"), CompareReportHtml(comparison, L"")));
    EXPECT_NE(test::ReadBytes(dir.Path() / "report.html").find("<b>Caf\xC3\xA9</b>"),
              std::string::npos);
    EXPECT_FALSE(SaveCompareReport(dir.File(L"missing/report.html"), L"x"));
}

} // namespace compare_report_test
