// doctor: the check of a whole datafiles folder, as TAB-separated records,
// JSON or a self-contained HTML page, and with --repair its safe repairs.
#include "app/DatafilesDoctor.h"
#include "cli/CliCore.h"
#include "editors/CompareReport.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <fmt/xchar.h>
#include <iostream>
#include <sstream>

namespace cli {

namespace doctor_verbs {

struct SArgs {
    std::string format = "tsv";
    std::string output;
    bool repair = false;
    bool dryRun = false;
    bool yes = false;
};

// An id, or nothing where the finding has none.
CField Id(std::int32_t id) {
    if (id == 0)
        return STwoForms{L"", nullptr};
    return static_cast<std::int64_t>(id);
}

// The columns of a finding, as the lines and JSON name them.
constexpr const char* kColumns[] = {"severity",  "kind", "standard_id", "folder",
                                    "client_id", "file", "message",     "todo"};

COutput Records(const std::vector<SDoctorFinding>& findings) {
    std::vector<SColumn> columns;
    for (const char* name : kColumns)
        columns.push_back({name});
    COutput output(std::move(columns));
    nlohmann::ordered_json json = nlohmann::ordered_json::array();
    for (const auto& f : findings) {
        const std::vector<CField> record{DoctorSeverityName(f.severity),
                                         f.kind,
                                         Id(f.standardId),
                                         f.folder,
                                         Id(f.clientId),
                                         f.file,
                                         f.message,
                                         f.todo};
        nlohmann::ordered_json object;
        for (std::size_t i = 0; i < record.size(); ++i)
            object[kColumns[i]] = COutput::Json(record[i]);
        const std::wstring repair = DoctorRepairName(f.repair);
        object["repair"] = repair.empty() ? nlohmann::ordered_json() : COutput::Json(repair);
        json.push_back(std::move(object));
        output.Add(record);
    }
    output.SetJson(std::move(json));
    return output;
}

std::wstring Page(const std::vector<SDoctorFinding>& findings, const std::wstring& folder) {
    std::wstring out = L"<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
    out += fmt::format(L"<title>Check of {}</title>\n", HtmlEscaped(folder));
    out += fmt::format(L"<style>\n{}</style>\n</head>\n<body>\n", ReportStyleSheet());
    out += L"<h1>Check of the datafiles folder</h1>\n";
    out += fmt::format(L"<p>Datafiles folder: <b>{}</b></p>\n", HtmlEscaped(folder));
    out += fmt::format(L"<p>Date: {}</p>\n", HtmlEscaped(CompareReportDate()));
    if (findings.empty()) {
        out += L"<p>No problems found.</p>\n</body>\n</html>\n";
        return out;
    }
    out += fmt::format(L"<p>{}.</p>\n", CDatafilesDoctor::Summary(findings));
    out += L"<table>\n<thead><tr><th>Severity</th><th>Kind</th><th>Standard</th><th>Folder</th>"
           L"<th>Client</th><th>File</th><th>Message</th><th>What to do</th></tr></thead>\n"
           L"<tbody>\n";
    const auto id = [](std::int32_t value) {
        return value == 0 ? std::wstring() : fmt::format(L"{}", value);
    };
    for (const auto& f : findings) {
        const std::wstring severity = DoctorSeverityName(f.severity);
        out += fmt::format(L"<tr><td class=\"{}\">{}</td>", severity, severity);
        for (const std::wstring& text :
             {f.kind, id(f.standardId), f.folder, id(f.clientId), f.file, f.message, f.todo})
            out += L"<td>" + HtmlEscaped(text) + L"</td>";
        out += L"</tr>\n";
    }
    out += L"</tbody>\n</table>\n</body>\n</html>\n";
    return out;
}

void Examine(const SCliOptions& options, const SArgs& a, std::ostream& out, bool table) {
    SCore core(options);
    std::vector<SDoctorFinding> findings;
    CDatafilesDoctor(core.projects).Examine(findings);

    std::string bytes;
    if (a.format == "html") {
        bytes = platform::ToUtf8(Page(findings, core.datafiles.Root()));
    } else {
        std::ostringstream text;
        const COutput output = Records(findings);
        const bool json = a.format == "json" || options.json;
        if (table && !json && a.output.empty())
            output.WriteTable(text);
        else
            output.Write(text, json);
        bytes = text.str();
    }
    if (a.output.empty() || a.output == "-")
        out << bytes;
    else if (!SaveCompareReport(W(a.output), platform::FromUtf8(bytes)))
        throw CCliFailure(fmt::format(L"Error writing the check to '{}'.", W(a.output)));
    if (!findings.empty())
        throw CCliFailure(fmt::format(L"The datafiles folder has problems: {}.",
                                      CDatafilesDoctor::Summary(findings)));
}

COutput Steps(const std::vector<SDoctorRepairStep>& steps) {
    COutput output({{"repair"}, {"step"}, {"done"}});
    for (const auto& step : steps)
        output.Add({DoctorRepairName(step.repair), step.text, step.done});
    return output;
}

void Print(const COutput& output, const SCliOptions& options, bool table, std::ostream& out) {
    if (table && !options.json)
        output.WriteTable(out);
    else
        output.Write(out, options.json);
}

void Repair(const SCliOptions& options, const SArgs& a, std::ostream& out, bool table) {
    if (a.format != "tsv" || !a.output.empty())
        throw CCliFailure(L"doctor --repair prints its steps: leave out --format and --output.", 2);
    SCore core(options);
    CDatafilesDoctor doctor(core.projects);
    std::vector<SDoctorFinding> findings;
    doctor.Examine(findings);
    const auto preview = doctor.Preview(findings);
    if (a.dryRun || preview.empty()) {
        if (preview.empty() && !options.quiet)
            std::cerr << "Nothing to repair.\n";
        Print(Steps(preview), options, table, out);
        return;
    }
    if (!a.yes && !options.quiet) {
        for (const auto& step : preview)
            std::cerr << platform::ToUtf8(step.text) << '\n';
    }
    Confirm(a.yes,
            preview.size() == 1 ? std::wstring(L"Make this repair?")
                                : fmt::format(L"Make these {} repairs?", preview.size()),
            L"doctor --repair changes the datafiles folder: confirm with --yes, or see what it "
            L"would do with --dry-run.");
    const auto done = doctor.Repair(findings);
    Print(Steps(done), options, table, out);
    if (std::any_of(done.begin(), done.end(), [](const auto& step) { return !step.done; }))
        throw CCliFailure(L"Some repairs were not made.");
}

} // namespace doctor_verbs

void AddDoctorCommands(CLI::App& app, SCliContext& context) {
    using namespace doctor_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    auto* doctor = app.add_subcommand(
        "doctor",
        "Check the whole datafiles folder and change nothing: the registries against the "
        "folders, the clients' lists, every standard's files, the line counter, the templates "
        "and leftover lock and temporary files. TSV records: SEVERITY (error, warning), KIND, "
        "STANDARD_ID, FOLDER, CLIENT_ID, FILE, MESSAGE, TODO. Exits 0 when nothing was found, "
        "1 otherwise. With --repair it makes the safe repairs instead and prints REPAIR, STEP, "
        "DONE");
    doctor->add_option("--format", args->format, "tsv (default), json or html")
        ->check(CLI::IsMember({"tsv", "json", "html"}));
    doctor->add_option("--output", args->output,
                       "Write to this file instead of printing (- prints)");
    auto* repair = doctor->add_flag(
        "--repair", args->repair,
        "Make the repairs that cannot lose anything: the registry check, raising the line "
        "counter, removing lock and temporary files no one uses");
    AddDryRun(doctor, args->dryRun, "With --repair: only print what would be repaired")
        ->needs(repair);
    AddYes(doctor, args->yes, "With --repair: repair without asking")->needs(repair);
    doctor->callback([ctx, args] {
        ctx->action = [ctx, args](std::ostream& out) {
            if (args->repair)
                Repair(ctx->options, *args, out, ctx->table);
            else
                Examine(ctx->options, *args, out, ctx->table);
        };
    });
}

} // namespace cli
