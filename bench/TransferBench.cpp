// Export and import of a standard with many drawings next to `zip -9 -r` and
// `unzip` of the same folder, taking turns. Run: build/bin/transfer_bench
// (scripts/bench.sh prints its rows).
#include "BenchCore.h"
#include "BenchReport.h"

#include "app/StandardTransfer.h"

#include <fmt/format.h>

namespace fs = std::filesystem;
using namespace bench;

namespace {

constexpr int kRounds = 3;
constexpr int kDrawings = 2000;
constexpr int kDrawingBytes = 16 * 1024;

void RatioRow(const std::string& action, const std::string& size, const std::string& ours,
              double oursTime, const std::string& theirs, double theirsTime) {
    InfoRow(action, size,
            fmt::format("{:.2f}x ({} {}, {} {})", oursTime / theirsTime, ours, TimeText(oursTime),
                        theirs, TimeText(theirsTime)));
}

std::size_t CountFiles(const fs::path& folder) {
    std::size_t count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        count += entry.is_regular_file() ? 1 : 0;
    return count;
}

} // namespace

int main() {
    const SBenchFolderSpec spec{.standards = 10,
                                .clients = 2,
                                .drawingStandards = 1,
                                .drawings = kDrawings,
                                .drawingBytes = kDrawingBytes};
    const fs::path datafiles = BenchFolder(spec);
    const fs::path standard = BenchStandardFolder(datafiles, 1);
    const fs::path work = BenchCacheFolder() / fmt::format("transfer-{}", getpid());
    fs::create_directories(work);
    const fs::path exported = work / "Imported.xst";
    const fs::path zipped = work / "zipped.zip";
    const fs::path unzipped = work / "unzipped";
    const std::string size =
        fmt::format("{} drawings of {} KB", CountText(kDrawings), kDrawingBytes / 1024);
    Note("export and import, " + size);

    SBenchCore b(datafiles);
    CStandardTransfer transfer(b.core.projects, b.core.profile, b.core.prompter);
    // Each import makes a standard; the registries and folders are put back
    // after it.
    const fs::path registries[] = {datafiles / "ProjectDatafile.ini",
                                   datafiles / "ClientDatafile.ini"};
    const std::string pristine[] = {ReadFileBytes(registries[0]), ReadFileBytes(registries[1])};

    std::vector<double> exportTimes, zipTimes, importTimes, unzipTimes;
    std::string failure;
    for (int round = 0; round <= kRounds && failure.empty(); ++round) {
        fs::remove(exported);
        fs::remove(zipped);
        fs::remove_all(unzipped);
        auto start = std::chrono::steady_clock::now();
        if (!transfer.Export(1, exported.wstring()))
            failure = "the export failed";
        const double exportTime = SecondsSince(start);
        const SChild zip =
            RunChild({"zip", "-9", "-r", "-q", zipped.string(), "."}, {}, false, standard.string());
        if (zip.exitCode != 0)
            failure = fmt::format("zip exited with {}", zip.exitCode);

        start = std::chrono::steady_clock::now();
        const auto imported = transfer.Import({exported.wstring()}, 0, false);
        const double importTime = SecondsSince(start);
        std::wstring made;
        if (imported.size() != 1 || imported.front().id == 0 ||
            b.core.projects.GetProjectFolder(imported.front().id, made) != eProjectOk)
            failure = "the import failed";
        else if (CountFiles(made) != CountFiles(standard))
            failure = "the import did not give every file";
        if (!made.empty())
            fs::remove_all(made);
        for (int i = 0; i < 2; ++i)
            WriteFileBytes(registries[i], pristine[i]);
        const SChild unzip = RunChild({"unzip", "-q", zipped.string(), "-d", unzipped.string()});
        if (unzip.exitCode != 0)
            failure = fmt::format("unzip exited with {}", unzip.exitCode);
        // The first round warms the caches.
        if (round > 0) {
            exportTimes.push_back(exportTime);
            zipTimes.push_back(zip.seconds);
            importTimes.push_back(importTime);
            unzipTimes.push_back(unzip.seconds);
        }
    }
    fs::remove_all(work);
    if (!failure.empty()) {
        FailedRow("export vs zip -9 -r", size, failure, "-");
        return 1;
    }
    RatioRow("export vs zip -9 -r", size, "export", Median(exportTimes), "zip", Median(zipTimes));
    RatioRow("import vs unzip", size, "import", Median(importTimes), "unzip", Median(unzipTimes));
    return 0;
}
