// merge and push: copying rows of the comparison from one standard into
// another, or into many, through the pages' editors.
#include "cli/CliCore.h"
#include "datafile/Text.h"
#include "editors/StandardMerge.h"
#include "platform/System.h"
#include "platform/Utf8.h"

#include <fmt/xchar.h>
#include <iostream>

namespace cli {

namespace merge_verbs {

struct SMergeArgs {
    std::int32_t from = 0;
    std::int32_t to = 0;
    std::vector<std::string> rows;
    bool allDifferences = false;
    std::vector<std::string> groups;
    bool dryRun = false;
};

struct SPushArgs {
    std::int32_t from = 0;
    std::vector<std::string> rows;
    std::vector<std::string> to;
    std::int32_t clientId = -1;
    bool all = false;
    bool includeDeleted = false;
    bool dryRun = false;
};

std::vector<std::wstring> Wide(const std::vector<std::string>& texts) {
    std::vector<std::wstring> wide;
    for (const auto& text : texts)
        wide.push_back(W(text));
    return wide;
}

// Prints the records as the chosen verb's answer: a table on a terminal,
// TAB-separated lines or JSON elsewhere.
void Emit(const SCliContext& context, const COutput& output, std::ostream& out) {
    if (context.table && !context.options.json)
        output.WriteTable(out);
    else
        output.Write(out, context.options.json);
}

void AddChange(COutput& output, const SMergeChange& change) {
    output.Add({change.id, change.heading, change.label, change.oldText, change.newText});
}

nlohmann::ordered_json ChangeJson(const SMergeChange& change) {
    return {{"row", platform::ToUtf8(change.id)},
            {"section", platform::ToUtf8(change.heading)},
            {"label", platform::ToUtf8(change.label)},
            {"old", platform::ToUtf8(change.oldText)},
            {"new", platform::ToUtf8(change.newText)}};
}

void Merge(const SCliContext& context, const SMergeArgs& a, std::ostream& out) {
    if (a.allDifferences == !a.rows.empty())
        throw CCliFailure(L"Name the rows to merge, or give --all-differences (not both).", 2);
    if (!a.groups.empty() && !a.allDifferences)
        throw CCliFailure(L"--group narrows --all-differences; name rows without it.", 2);
    SCore core(context.options);
    const SMergeSelection selection{Wide(a.rows), a.allDifferences, Wide(a.groups), false};
    const CStandardMerge merge(core.specs);
    std::wstring error;
    bool usage = false;
    COutput output({{"row"}, {"section"}, {"label"}, {"old"}, {"new"}});
    if (a.dryRun) {
        SMergePlan plan;
        if (!merge.Plan(a.from, a.to, selection, plan, error, &usage))
            throw CCliFailure(error, usage ? 2 : 1);
        for (const auto& change : plan.changes)
            AddChange(output, change);
        Emit(context, output, out);
        return;
    }
    SMergeOutcome outcome;
    if (!merge.Merge(a.from, a.to, selection, outcome, error, &usage))
        throw CCliFailure(error, usage ? 2 : 1);
    for (const auto& change : outcome.applied)
        AddChange(output, change);
    Emit(context, output, out);
    if (outcome.Ok())
        return;
    std::wstring reasons;
    for (const auto& failure : outcome.failed)
        reasons += fmt::format(L"\n\n{} ({}): {}", failure.change.id, failure.change.label,
                               failure.reason);
    throw CCliFailure(fmt::format(L"Error merging {} of the rows into standard '{}'.{}",
                                  outcome.failed.size(), core.NameOf(a.to), reasons));
}

// The standards a push goes to, in id order for --client and --all.
std::vector<std::int32_t> PushTargets(SCore& core, const SPushArgs& a) {
    const int given = (a.to.empty() ? 0 : 1) + (a.clientId >= 0 ? 1 : 0) + (a.all ? 1 : 0);
    if (given != 1)
        throw CCliFailure(L"Say where to push: --to ID[,ID...], --client CLIENT or --all.", 2);
    std::vector<std::int32_t> targets;
    if (!a.to.empty()) {
        for (const auto& text : a.to)
            targets.push_back(ResolveStandardText(core, text));
        return targets;
    }
    std::vector<SProjectInfo> projects;
    Check(core.projects.ListProjects(true, true, projects),
          L"Error reading the standard registry.");
    if (a.all) {
        for (const auto& project : projects)
            targets.push_back(project.id);
    } else {
        for (const auto& client : core.clients.ListClients()) {
            if (client.id == a.clientId)
                targets = client.projectIds;
        }
    }
    std::sort(targets.begin(), targets.end());
    return targets;
}

void Push(const SCliContext& context, const SPushArgs& a, std::ostream& out) {
    SCore core(context.options);
    const std::vector<std::int32_t> targets = PushTargets(core, a);
    // On a terminal, a line that says how far the push has come.
    const bool showProgress = !context.options.quiet && platform::IsTerminal(2);
    CProgress progress;
    if (showProgress)
        progress = [](std::size_t done, std::size_t total, const std::wstring& name) {
            if (done < total)
                std::cerr << "\r\x1b[K"
                          << platform::ToUtf8(fmt::format(L"{} of {}: {}", done + 1, total, name))
                          << std::flush;
            else
                std::cerr << "\r\x1b[K" << std::flush;
            return true;
        };
    std::vector<SPushResult> results;
    std::wstring error;
    if (!PushRows(core.specs, a.from, Wide(a.rows), targets, {a.dryRun, a.includeDeleted}, results,
                  error, progress))
        throw CCliFailure(error, 2);

    COutput output({{"standard"}, {"name"}, {"row"}, {"section"}, {"label"}, {"old"}, {"new"}});
    nlohmann::ordered_json document = nlohmann::ordered_json::array();
    std::size_t failed = 0;
    for (const auto& result : results) {
        for (const auto& change : result.changes)
            output.Add({result.id, result.name, change.id, change.heading, change.label,
                        change.oldText, change.newText});
        std::string status = result.Failed()          ? "failed"
                             : result.skipped         ? "skipped"
                             : result.changes.empty() ? "unchanged"
                             : a.dryRun               ? "would change"
                                                      : "changed";
        nlohmann::ordered_json entry = {
            {"id", result.id}, {"name", platform::ToUtf8(result.name)}, {"status", status}};
        if (result.skipped)
            entry["reason"] = platform::ToUtf8(result.skipReason);
        nlohmann::ordered_json changes = nlohmann::ordered_json::array();
        for (const auto& change : result.changes)
            changes.push_back(ChangeJson(change));
        entry["changes"] = changes;
        nlohmann::ordered_json failures = nlohmann::ordered_json::array();
        for (const auto& failure : result.failed) {
            nlohmann::ordered_json item = ChangeJson(failure.change);
            item["reason"] = platform::ToUtf8(failure.reason);
            failures.push_back(item);
        }
        entry["failed"] = failures;
        if (!result.error.empty())
            entry["error"] = platform::ToUtf8(result.error);
        document.push_back(entry);

        // Notes and failures on standard error, as they are not records.
        std::wstring note;
        if (result.Failed()) {
            ++failed;
            note = fmt::format(L"Error pushing to standard '{}' ({}).", result.name, result.id);
            if (!result.error.empty())
                note += L"\n\n" + result.error;
            for (const auto& failure : result.failed)
                note += fmt::format(L"\n\n{} ({}): {}", failure.change.id, failure.change.label,
                                    failure.reason);
            std::cerr << platform::ToUtf8(note) << '\n';
        } else if (!context.options.quiet && result.id != a.from &&
                   (result.skipped || result.changes.empty())) {
            note = result.skipped ? fmt::format(L"Standard '{}' ({}) skipped: {}.", result.name,
                                                result.id, result.skipReason)
                                  : fmt::format(L"Standard '{}' ({}): nothing to change.",
                                                result.name, result.id);
            std::cerr << platform::ToUtf8(note) << '\n';
        }
    }
    output.SetJson(document);
    Emit(context, output, out);
    if (failed > 0)
        throw CCliFailure(
            fmt::format(L"The push failed for {} of {} standards.", failed, results.size()));
}

} // namespace merge_verbs

void AddMergeCommands(CLI::App& app, SCliContext& context) {
    using namespace merge_verbs;
    SCliContext* ctx = &context;
    {
        auto args = std::make_shared<SMergeArgs>();
        auto* merge = app.add_subcommand(
            "merge",
            "Copy values from standard FROM into standard TO, row by row of their comparison "
            "(row ids as 'compare FROM TO' prints them), through the same rules as the pages. "
            "Prints ROW, SECTION, LABEL, OLD (TO's value before) and NEW for each row written; "
            "--dry-run prints the rows that would change. A heading's id names every row under "
            "it. --all-differences leaves rows that belong to a standard (its drawings folders, "
            "a borders or templates folder inside its own folder) unless they are named");
        AddStandardId(merge, "FROM", args->from, "The standard to copy from: its id or exact name",
                      false);
        AddStandardId(merge, "TO", args->to, "The standard to change: its id or exact name", false);
        merge->add_option("ROW_ID", args->rows,
                          "Row ids of the comparison, such as PID/Settings/071, Borders/A1/limits "
                          "or Layers/PID/038");
        merge->add_flag("--all-differences", args->allDifferences, "Every row that differs");
        merge
            ->add_option("--group", args->groups,
                         "With --all-differences: only this group (General, Locations, Borders, "
                         "Lines, Specs, ELECTRIC, PID, ISOMETRIC, ORTHO, Layers); repeatable")
            ->type_name("NAME");
        AddDryRun(merge, args->dryRun,
                  "Print the rows that would change, with their old and new "
                  "values, and change nothing");
        merge->callback([ctx, args] {
            ctx->action = [ctx, args](std::ostream& out) { Merge(*ctx, *args, out); };
        });
    }
    {
        auto args = std::make_shared<SPushArgs>();
        auto* push = app.add_subcommand(
            "push",
            "Set the named rows of standard FROM in other standards, as 'merge' would one by one. "
            "Prints STANDARD, NAME, ROW, SECTION, LABEL, OLD and NEW for each row written; "
            "standards with nothing to change or skipped are noted on standard error. A standard "
            "that fails is reported and the others go on; the exit code is 1 when any failed");
        AddStandardId(push, "FROM", args->from, "The standard the values come from", false);
        push->add_option("ROW_ID", args->rows, "Row ids of the comparison (see compare)")
            ->required();
        push->add_option("--to", args->to, "These standards: ids or exact names")
            ->delimiter(',')
            ->type_name("ID[,ID...]");
        AddClientId(push, "--client", args->clientId, "Every standard of this client", false)
            ->type_name("CLIENT");
        push->add_flag("--all", args->all, "Every standard");
        push->add_flag("--include-deleted", args->includeDeleted,
                       "Deleted standards too (skipped otherwise)");
        AddDryRun(push, args->dryRun, "Print what would change where, and change nothing");
        push->callback([ctx, args] {
            ctx->action = [ctx, args](std::ostream& out) { Push(*ctx, *args, out); };
        });
    }
}

} // namespace cli
