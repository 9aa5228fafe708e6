// A comparison of two standards as a file to attach to a change request: a
// self-contained HTML page with the grid and its colours, or TAB-separated
// records for scripts and spreadsheets.
#pragma once

#include "editors/StandardComparison.h"

#include <string>

// "heading", "subheading", "value".
std::wstring CompareRowKindName(ECompareRowKind kind);

// The headings (both kinds) and the rows whose values differ; the headers
// and any failure stay.
SComparison CompareDifferencesOnly(const SComparison& comparison);

// One record per line, fields separated by one TAB: first an empty row id,
// "header", "Setting" and the two column headers, then per row ID, KIND,
// LABEL, TEXT1, TEXT2 and DIFFER (1 or 0; the header's is 0). TABs and line
// breaks inside a text are written as \t, \n and \r.
std::wstring CompareReportTsv(const SComparison& comparison);

// A page that opens in any browser without other files: the two names, the
// date given, how many values differ, the failure when the rebuild was
// abandoned, and the grid with each cell's background.
std::wstring CompareReportHtml(const SComparison& comparison, const std::wstring& date);

// Text for an HTML page: & < > " and ' as entities.
std::wstring HtmlEscaped(const std::wstring& text);

// The style sheet of the program's HTML reports, so that they look alike.
const wchar_t* ReportStyleSheet();

// The local date and time as "YYYY-MM-DD HH:MM".
std::wstring CompareReportDate();

// Writes the text as UTF-8; false when the file cannot be written.
bool SaveCompareReport(const std::wstring& path, const std::wstring& text);
