#include "editors/CompareReport.h"

#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <ctime>
#include <fmt/xchar.h>

std::wstring HtmlEscaped(const std::wstring& text) {
    static constexpr std::pair<wchar_t, const wchar_t*> kEntities[] = {
        {L'&', L"&amp;"}, {L'<', L"&lt;"}, {L'>', L"&gt;"}, {L'"', L"&quot;"}, {L'\'', L"&#39;"}};
    std::wstring out;
    for (const wchar_t c : text) {
        const auto* entity = std::find_if(std::begin(kEntities), std::end(kEntities),
                                          [c](const auto& e) { return e.first == c; });
        if (entity == std::end(kEntities))
            out += c;
        else
            out += entity->second;
    }
    return out;
}

namespace {

std::wstring Html(const std::wstring& text) {
    return HtmlEscaped(text);
}

std::wstring Cell(const std::wstring& text, const std::optional<SCompareColour>& background,
                  const std::wstring& classes = {}) {
    std::wstring attributes;
    if (!classes.empty())
        attributes += fmt::format(L" class=\"{}\"", classes);
    if (background)
        attributes += fmt::format(L" style=\"background-color:#{:02x}{:02x}{:02x}\"",
                                  background->red, background->green, background->blue);
    return fmt::format(L"<td{}>{}</td>", attributes, Html(text));
}

const wchar_t* const kStyle =
    LR"(body { font-family: "Segoe UI", Arial, sans-serif; font-size: 10pt; margin: 16px; color: #000; background: #fff; }
h1 { font-size: 14pt; margin: 0 0 8px 0; }
p { margin: 4px 0; }
.error { color: #b00000; font-weight: bold; }
.warning { color: #8a5a00; font-weight: bold; }
table { border-collapse: collapse; width: 100%; margin-top: 12px; table-layout: fixed; }
col.setting { width: 25%; }
th, td { border: 1px solid #a0a0a0; padding: 2px 6px; text-align: left; vertical-align: top; overflow-wrap: anywhere; }
th { background-color: #ece9d8; }
td.centred { text-align: center; }
td.heading { font-weight: bold; }
@media print { * { -webkit-print-color-adjust: exact; print-color-adjust: exact; } }
)";

} // namespace

const wchar_t* ReportStyleSheet() {
    return kStyle;
}

std::wstring CompareRowKindName(ECompareRowKind kind) {
    switch (kind) {
    case ECompareRowKind::eHeading:
        return L"heading";
    case ECompareRowKind::eSubHeading:
        return L"subheading";
    default:
        return L"value";
    }
}

SComparison CompareDifferencesOnly(const SComparison& comparison) {
    SComparison kept = comparison;
    kept.rows.clear();
    for (const auto& row : comparison.rows) {
        if (CompareRowShown(row, true))
            kept.rows.push_back(row);
    }
    return kept;
}

std::wstring CompareReportTsv(const SComparison& comparison) {
    std::wstring out = fmt::format(L"\theader\t{}\t{}\t{}\t0\n", TsvField(comparison.header0),
                                   TsvField(comparison.header1), TsvField(comparison.header2));
    for (const auto& row : comparison.rows)
        out += fmt::format(L"{}\t{}\t{}\t{}\t{}\t{}\n", TsvField(row.id),
                           CompareRowKindName(row.kind), TsvField(row.label), TsvField(row.text1),
                           TsvField(row.text2), row.differ ? 1 : 0);
    return out;
}

std::wstring CompareReportHtml(const SComparison& comparison, const std::wstring& date) {
    const std::size_t differing = CountCompareDifferences(comparison).total;
    const std::wstring name1 = Html(comparison.header1);
    const std::wstring name2 = Html(comparison.header2);

    std::wstring out = L"<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
    out += fmt::format(L"<title>Comparison of {} and {}</title>\n", name1, name2);
    out += fmt::format(L"<style>\n{}</style>\n</head>\n<body>\n", kStyle);
    out += L"<h1>Comparison of standards</h1>\n";
    out +=
        fmt::format(L"<p>Standard 1: <b>{}</b></p>\n<p>Standard 2: <b>{}</b></p>\n", name1, name2);
    out += fmt::format(L"<p>Date: {}</p>\n", Html(date));
    out += fmt::format(L"<p>{} {} (marked yellow).</p>\n", differing,
                       differing == 1 ? L"value differs" : L"values differ");
    if (comparison.failed)
        out +=
            fmt::format(L"<p class=\"error\">{}</p>\n", Html(CompareErrorText(comparison.reason)));
    out += L"<table>\n<colgroup><col class=\"setting\"><col><col></colgroup>\n";
    out += fmt::format(L"<thead><tr><th>{}</th><th>{}</th><th>{}</th></tr></thead>\n<tbody>\n",
                       Html(comparison.header0), name1, name2);
    for (const auto& row : comparison.rows) {
        std::wstring classes =
            row.kind == ECompareRowKind::eValue ? L"" : CompareRowKindName(row.kind);
        if (row.centred)
            classes += classes.empty() ? L"centred" : L" centred";
        out += L"<tr>";
        out += Cell(row.label, std::nullopt, classes);
        out += Cell(row.text1, row.background1);
        out += Cell(row.text2, row.background2);
        out += L"</tr>\n";
    }
    out += L"</tbody>\n</table>\n</body>\n</html>\n";
    return out;
}

std::wstring CompareReportDate() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
#ifdef _WIN32
    localtime_s(&parts, &now);
#else
    localtime_r(&now, &parts);
#endif
    return fmt::format(L"{:04}-{:02}-{:02} {:02}:{:02}", parts.tm_year + 1900, parts.tm_mon + 1,
                       parts.tm_mday, parts.tm_hour, parts.tm_min);
}

bool SaveCompareReport(const std::wstring& path, const std::wstring& text) {
    std::FILE* file = platform::OpenFile(platform::ToPath(path), "wb");
    if (!file)
        return false;
    const std::string bytes = platform::ToUtf8(text);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return platform::FlushAndClose(file) && written;
}
