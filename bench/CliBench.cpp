// Every listing of standards-desk-cli, run as a child process as a script
// runs it, on 1,000 and on 50,000 standards: how its time grows with the
// folder. Run: build/bin/cli_bench (scripts/bench.sh prints its rows).
#include "BenchCore.h"
#include "BenchReport.h"

#include <fmt/format.h>

using namespace bench;

namespace {

constexpr int kRuns = 5;
constexpr long long kSmall = 1000;
constexpr long long kLarge = 50000;

// Every verb that lists something; "DIR/" stands for the datafiles folder.
// The first five read out the whole registry, the others find one standard
// through it.
const std::vector<std::vector<std::string>> kListings = {
    {"standard", "list"},
    {"standard", "list", "--deleted"},
    {"client", "list"},
    {"navigator", "tree"},
    {"datafile", "dump", "DIR/ProjectDatafile.ini"},
    {"lines", "list", "1"},
    {"specs", "list", "1"},
    {"specs", "register"},
    {"drawings", "list", "1", "ISOMETRIC"},
};

std::string InFolder(const std::string& word, const std::string& folder) {
    return word.starts_with("DIR/") ? folder + word.substr(3) : word;
}

} // namespace

int main() {
    const SBenchConfig config;
    const std::string folders[] = {BenchFolder(OfficeSpec(kSmall)).string(),
                                   BenchFolder(OfficeSpec(kLarge)).string()};
    for (const auto& verb : kListings) {
        std::string name = "cli";
        for (const auto& word : verb)
            name += " " + (word.starts_with("DIR/") ? word.substr(4) : word);
        double times[2] = {0, 0};
        std::string failure;
        for (int size = 0; size < 2 && failure.empty(); ++size) {
            Note(fmt::format("{}, {} standards", name, size ? kLarge : kSmall));
            std::vector<std::string> argv{SD_BENCH_CLI, "--datafiles", folders[size]};
            for (const auto& word : verb)
                argv.push_back(InFolder(word, folders[size]));
            times[size] = MedianSeconds(kRuns, [&] {
                const SChild child = RunChild(argv, config.Environment());
                if (child.exitCode != 0)
                    failure = fmt::format("exit code {}", child.exitCode);
            });
        }
        if (!failure.empty())
            FailedRow(name + " growth", CountText(kSmall) + " -> " + CountText(kLarge), failure,
                      "<= 1.1");
        else
            GrowthRow(name, times[0], kSmall, times[1], kLarge, 1.1);
    }

    // The check of a whole folder, as an administrator's script runs it.
    constexpr long long kDoctor = 10000;
    Note(fmt::format("cli doctor, {} standards", kDoctor));
    const std::string folder = BenchFolder(OfficeSpec(static_cast<int>(kDoctor))).string();
    std::string failure;
    const double t = MedianSeconds(kRuns, [&] {
        const SChild child =
            RunChild({SD_BENCH_CLI, "--datafiles", folder, "doctor"}, config.Environment());
        if (child.exitCode != 0)
            failure = fmt::format("exit code {}", child.exitCode);
    });
    const std::string size = CountText(kDoctor) + " standards";
    if (!failure.empty())
        FailedRow("cli doctor", size, failure, "< 5.0 s");
    else
        TimeRow("cli doctor", size, t, 5.0);
    return 0;
}
