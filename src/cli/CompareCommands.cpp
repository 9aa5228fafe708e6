// compare: two standards side by side as the comparison view builds them,
// as TAB-separated records, JSON or a self-contained HTML report.
#include "cli/CliCore.h"
#include "editors/CompareReport.h"
#include "editors/StandardComparison.h"
#include "platform/Utf8.h"

#include <fmt/xchar.h>
#include <iostream>
#include <sstream>

namespace cli {

namespace compare_verbs {

struct SArgs {
    std::int32_t id1 = -1;
    std::int32_t id2 = -1;
    std::string format = "tsv";
    std::string output;
    bool differences = false;
    bool summary = false;
};

COutput JsonRecords(const SComparison& comparison) {
    COutput output({{"id"}, {"kind"}, {"label"}, {"text1"}, {"text2"}, {"differ"}});
    output.Add({std::wstring(), std::wstring(L"header"), comparison.header0, comparison.header1,
                comparison.header2, false});
    for (const auto& row : comparison.rows)
        output.Add(
            {row.id, CompareRowKindName(row.kind), row.label, row.text1, row.text2, row.differ});
    return output;
}

// "PID<TAB>2" for each group, then "Total<TAB>5", on standard error.
void PrintDifferencesByGroup(const SComparison& comparison) {
    const std::vector<std::size_t> counts = CountDifferencesByGroup(comparison);
    std::wstring text;
    for (std::size_t i = 0; i < counts.size(); ++i)
        text += fmt::format(L"{}\t{}\n", CompareGroups()[i], counts[i]);
    text += fmt::format(L"Total\t{}\n", CountCompareDifferences(comparison).total);
    std::cerr << platform::ToUtf8(text);
}

// Prints (or writes to --output) what was built, then fails with the
// comparison's reason when the rebuild was abandoned.
void Compare(const SCliOptions& options, const SArgs& a, std::ostream& out) {
    SCore core(options);
    CVX2D_StandardComparison comparison(core.projects);
    comparison.SetStandard1(a.id1);
    comparison.SetStandard2(a.id2);
    const bool complete = comparison.Rebuild();
    const SComparison result =
        a.differences ? CompareDifferencesOnly(comparison.Result()) : comparison.Result();

    std::string bytes;
    if (a.format == "html") {
        bytes = platform::ToUtf8(CompareReportHtml(result, CompareReportDate()));
    } else if (a.format == "json" || options.json) {
        std::ostringstream json;
        JsonRecords(result).Write(json, true);
        bytes = json.str();
    } else {
        bytes = platform::ToUtf8(CompareReportTsv(result));
    }
    if (a.output.empty() || a.output == "-")
        out << bytes;
    else if (!SaveCompareReport(W(a.output), platform::FromUtf8(bytes)))
        throw CCliFailure(fmt::format(L"Error writing the comparison to '{}'.", W(a.output)));

    if (a.summary)
        PrintDifferencesByGroup(comparison.Result());
    if (!complete)
        throw CCliFailure(CompareErrorText(result.reason));
}

} // namespace compare_verbs

void AddCompareCommands(CLI::App& app, SCliContext& context) {
    using namespace compare_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    auto* compare = app.add_subcommand(
        "compare",
        "Compare two standards setting by setting, as the comparison view does. TSV records: "
        "ID (the row's stable id, such as PID/Settings/071, Borders/A1/limits or "
        "Layers/PID/038, as merge and push take it; empty on the header), KIND (header, "
        "heading, subheading, value), LABEL, TEXT1, TEXT2, DIFFER (1 where the two values "
        "differ); the first record is the header with the two names. A comparison that cannot "
        "be completed prints the rows built so far and fails");
    AddStandardId(compare, "ID1", args->id1, "Standard 1: its id or exact name (-1: none)", true);
    AddStandardId(compare, "ID2", args->id2, "Standard 2: its id or exact name (-1: none)", true);
    compare->add_option("--format", args->format, "tsv (default), json or html")
        ->check(CLI::IsMember({"tsv", "json", "html"}));
    compare->add_option("--output", args->output,
                        "Write to this file instead of printing (- prints)");
    compare->add_flag("--differences-only,--differences", args->differences,
                      "Only the headings and the rows whose values differ");
    compare->add_flag("--summary", args->summary,
                      "Print the number of differing rows of each group (General, Locations, "
                      "Borders, Lines, Specs, ELECTRIC, PID, ISOMETRIC, ORTHO, Layers) and in "
                      "all on standard error");
    compare->callback([ctx, args] {
        ctx->action = [ctx, args](std::ostream& out) { Compare(ctx->options, *args, out); };
    });
}

} // namespace cli
