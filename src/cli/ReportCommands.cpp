// report: the printed report of a standard, as the desktop's Print... writes it.
#include "cli/CliCore.h"
#include "editors/CompareReport.h"
#include "editors/StandardReport.h"
#include "platform/Utf8.h"

#include <fmt/xchar.h>

namespace cli {

namespace report_verbs {

struct SArgs {
    std::int32_t id = 0;
    std::string output;
};

void Report(const SCliOptions& options, const SArgs& a, std::ostream& out) {
    if (options.json)
        throw CCliFailure(L"report prints plain text only: leave out --json (compare --format "
                          L"json gives two standards' settings as JSON).",
                          2);
    SCore core(options);
    if (!a.output.empty() && a.output != "-") {
        std::wstring error;
        if (!WriteStandardReport(core.projects, a.id, W(a.output), error))
            throw CCliFailure(error);
        return;
    }
    std::wstring text;
    std::wstring error;
    if (!StandardReportText(core.projects, a.id, CompareReportDate(), text, error))
        throw CCliFailure(error);
    out << platform::ToUtf8(text);
}

} // namespace report_verbs

void AddReportCommands(CLI::App& app, SCliContext& context) {
    using namespace report_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    auto* report = app.add_subcommand(
        "report", "Print a standard's report: general settings, file locations, borders, lines, "
                  "specs, every settings page and the layers, as plain text");
    AddStandardId(report, args->id);
    report->add_option("--output", args->output,
                       "Write to this file instead of printing (- prints)");
    report->callback([ctx, args] {
        ctx->action = [ctx, args](std::ostream& out) { Report(ctx->options, *args, out); };
    });
}

} // namespace cli
