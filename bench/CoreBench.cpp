// The core on large datafiles folders: the navigator's tree, the start-up
// registry check, how often a single action reads the registries, and the
// comparison of two standards. Run: build/bin/core_bench (scripts/bench.sh
// prints its rows in the table of every benchmark).
#include "BenchCore.h"
#include "BenchReport.h"

#include "app/DatafilesDoctor.h"
#include "app/WindowlessOwner.h"
#include "cli/CliCore.h"
#include "datafile/IniFile.h"
#include "editors/StandardComparison.h"
#include "editors/StandardMerge.h"
#include "editors/StandardReport.h"

#include <algorithm>
#include <fmt/format.h>
#include <sstream>

namespace fs = std::filesystem;
using namespace bench;

namespace {

constexpr int kRuns = 5;

std::size_t CountItems(const std::vector<CNavItem>& items) {
    std::size_t count = items.size();
    for (const auto& item : items)
        count += CountItems(item.children);
    return count;
}

std::string Standards(long long n) {
    return CountText(n) + " standards";
}

void TreeBuild() {
    double first = 0, last = 0;
    constexpr int kSizes[] = {1000, 10000, 50000};
    for (const int n : kSizes) {
        Note(fmt::format("navigator tree build, {} standards", n));
        SBenchCore b(BenchFolder(OfficeSpec(n)));
        CWindowlessOwner owner;
        CNavigatorController navigator(b.core.projects, b.core.clients, b.core.profile,
                                       b.core.prompter, owner);
        const double t = MedianSeconds(kRuns, [&] { navigator.Rebuild(); });
        // The clients and the standards not deleted.
        const std::size_t expected = 1000 + static_cast<std::size_t>(n - n / 7);
        if (CountItems(navigator.Tree().Roots()) != expected) {
            FailedRow("navigator tree build", Standards(n), "the tree misses items", "-");
            return;
        }
        if (n == kSizes[0])
            first = t;
        last = t;
        if (n == 50000)
            TimeRow("navigator tree build", Standards(n), t, 0.1);
        else
            InfoRow("navigator tree build", Standards(n), TimeText(t));
    }
    GrowthRow("navigator tree build", first, 1000, last, 50000, 1.1);
}

void RegistryCheck() {
    for (const int stale : {0, 10000}) {
        const std::string size = stale ? "10,000 + 10,000 stale entries" : "10,000 entries";
        Note(fmt::format("registry check, {}", size));
        SBenchFolderSpec spec = OfficeSpec(10000);
        spec.staleEntries = stale;
        const fs::path folder = BenchFolder(spec);
        const fs::path file = folder / "ProjectDatafile.ini";
        const std::string pristine = ReadFileBytes(file);
        SBenchCore b(folder);
        std::vector<double> times;
        bool ok = true;
        for (int i = 0; i <= kRuns && ok; ++i) {
            // Each check finds the stale entries again.
            WriteFileBytes(file, pristine);
            const auto start = std::chrono::steady_clock::now();
            ok = b.core.projects.CheckProjectRegistry() == eProjectOk;
            if (i > 0)
                times.push_back(SecondsSince(start));
        }
        std::vector<SProjectInfo> left;
        ok = ok && b.core.projects.ListProjects(true, true, left) == eProjectOk &&
             left.size() == 10000;
        WriteFileBytes(file, pristine);
        if (!ok)
            FailedRow("registry check", size, "the check did not leave the 10,000 standards",
                      stale ? "< 500.0 ms" : "-");
        else if (stale)
            TimeRow("registry check", size, Median(times), 0.5);
        else
            InfoRow("registry check", size, TimeText(Median(times)));
    }
}

struct SReads {
    int projects = 0;
    int clients = 0;
};

// The reads of the two registry files while `action` runs, after one run
// that is not counted, so that what a first opening writes back (a GUID) is
// left out. `undo` (not counted) puts back what the action changed.
SReads CountReads(const std::function<bool()>& action, const std::function<bool()>& undo,
                  bool& ok) {
    ok = action() && undo();
    SReads reads;
    SetDatafileReadObserver([&](const std::wstring& path) {
        const fs::path name = fs::path(path).filename();
        if (name == "ProjectDatafile.ini")
            ++reads.projects;
        else if (name == "ClientDatafile.ini")
            ++reads.clients;
    });
    ok = action() && ok;
    SetDatafileReadObserver({});
    ok = undo() && ok;
    return reads;
}

void ReadsRow(
    const std::string& action, long long size, const std::function<bool()>& run,
    const std::function<bool()>& undo = [] { return true; }) {
    bool ok = false;
    const SReads reads = CountReads(run, undo, ok);
    const std::string name = "registry reads: " + action;
    if (!ok) {
        FailedRow(name, Standards(size), "the action failed", "<= 1 of each file");
        return;
    }
    Row(name, Standards(size),
        fmt::format("ProjectDatafile.ini {}, ClientDatafile.ini {}", reads.projects, reads.clients),
        "<= 1 of each file", reads.projects <= 1 && reads.clients <= 1 ? "yes" : "no");
}

// A verb of standards-desk-cli run in this process, its output dropped.
bool RunVerb(const fs::path& datafiles, const std::vector<std::string>& verb) {
    CLI::App app{"", "standards-desk-cli"};
    SCliContext context;
    cli::AddAllCommands(app, context);
    std::vector<std::string> args{"--datafiles", datafiles.string()};
    args.insert(args.end(), verb.begin(), verb.end());
    // CLI11 takes the arguments last first.
    std::vector<std::string> reversed(args.rbegin(), args.rend());
    try {
        app.parse(reversed);
        std::ostringstream out;
        if (context.action)
            context.action(out);
        return true;
    } catch (const CLI::Error&) {
        return false;
    } catch (const CCliFailure&) {
        return false;
    }
}

void ReadsPerAction() {
    constexpr int n = 50000;
    const fs::path folder = BenchFolder(OfficeSpec(n));
    Note(fmt::format("registry reads per action, {} standards", n));
    SBenchCore b(folder);
    auto& projects = b.core.projects;
    // Standard 3 is renamed and named back, so the folder stays as made.
    const std::wstring renamed = L"Standard 3 renamed";
    auto nameBack = [&] { return projects.RenameProject(3, BenchStandardName(3)) == eProjectOk; };

    ReadsRow("compare (StandardComparison)", n, [&] {
        CVX2D_StandardComparison comparison(projects);
        comparison.SetStandard1(1);
        comparison.SetStandard2(2);
        return comparison.Rebuild();
    });
    ReadsRow("settings show (cli verb)", n, [&] {
        return RunVerb(folder, {"settings", "show", "1", "ISOMETRIC"});
    });
    ReadsRow("report (StandardReport)", n, [&] {
        std::wstring text, error;
        return StandardReportText(projects, 1, L"2026-01-01", text, error);
    });
    ReadsRow(
        "rename (RenameProject)", n,
        [&] { return projects.RenameProject(3, renamed) == eProjectOk; }, nameBack);

    // The same actions as the command line's verbs.
    ReadsRow("compare (cli verb)", n, [&] { return RunVerb(folder, {"compare", "1", "2"}); });
    ReadsRow("datafiles check (CDatafilesDoctor)", n, [&] {
        std::vector<SDoctorFinding> findings;
        return CDatafilesDoctor(projects).Examine(findings) && findings.empty();
    });
    ReadsRow("report (cli verb)", n, [&] { return RunVerb(folder, {"report", "1"}); });
    ReadsRow(
        "standard rename (cli verb)", n,
        [&] {
            return RunVerb(folder, {"standard", "rename", "3", "Standard 3 renamed"});
        },
        nameBack);
}

// The whole folder checked: every registry once, every standard's files.
void DoctorTime() {
    constexpr int n = 10000;
    Note(fmt::format("datafiles check, {} standards", n));
    SBenchCore b(BenchFolder(OfficeSpec(n)));
    bool ok = true;
    const double t = MedianSeconds(kRuns, [&] {
        std::vector<SDoctorFinding> findings;
        ok = CDatafilesDoctor(b.core.projects).Examine(findings) && findings.empty() && ok;
    });
    if (!ok)
        FailedRow("datafiles check (CDatafilesDoctor)", Standards(n),
                  "problems found in a healthy folder", "< 5.0 s");
    else
        TimeRow("datafiles check (CDatafilesDoctor)", Standards(n), t, 5.0);
}

void CompareTime() {
    for (const int n : {1000, 50000}) {
        Note(fmt::format("compare, {} standards", n));
        SBenchCore b(BenchFolder(OfficeSpec(n)));
        bool ok = true;
        const double t = MedianSeconds(kRuns, [&] {
            CVX2D_StandardComparison comparison(b.core.projects);
            comparison.SetStandard1(1);
            comparison.SetStandard2(2);
            ok = comparison.Rebuild() && !comparison.Result().rows.empty() && ok;
        });
        if (!ok)
            FailedRow("compare two standards", Standards(n), "the comparison failed", "-");
        else
            InfoRow("compare two standards", Standards(n), TimeText(t));
    }
}

// "Apply to Other Standards" planned for every standard of an office: each
// target is compared with the source, so the time grows with the targets.
// A dry run, so that the kept folder stays as it was made.
void PushTime() {
    constexpr int n = 1000;
    Note(fmt::format("push, dry run, {} standards", n));
    SBenchCore b(BenchFolder(OfficeSpec(n)));
    std::vector<std::int32_t> targets;
    for (std::int32_t id = 1; id <= n; ++id)
        targets.push_back(id);
    bool ok = true;
    std::size_t changing = 0;
    const double t = MedianSeconds(3, [&] {
        std::vector<SPushResult> results;
        std::wstring error;
        ok = PushRows(b.core.specs, 1, {GeneralRowId(L"WorkingUnits")}, targets, {.dryRun = true},
                      results, error) &&
             results.size() == targets.size() && ok;
        changing = static_cast<std::size_t>(std::count_if(
            results.begin(), results.end(), [](const SPushResult& r) { return !r.changes.empty(); }));
        for (const auto& result : results)
            ok = ok && !result.Failed();
    });
    if (!ok)
        FailedRow("push one row, dry run (PushRows)", Standards(n), "a target failed", "-");
    else
        InfoRow("push one row, dry run (PushRows)", Standards(n),
                fmt::format("{} ({} a standard; {} would change)", TimeText(t),
                            TimeText(t / n), changing));
}

} // namespace

int main() {
    const SBenchConfig config;
    config.UseInThisProcess();
    TreeBuild();
    RegistryCheck();
    ReadsPerAction();
    CompareTime();
    DoctorTime();
    PushTime();
    return 0;
}
