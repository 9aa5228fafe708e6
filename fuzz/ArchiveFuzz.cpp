// Any bytes imported as an archive, new (".xst") and old (".xpj"): nothing is
// written outside the new standard's folder, no link is made, and what lands
// there stays within the size limit.
#include "FuzzSupport.h"

#include "app/StandardArchive.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <vector>

namespace fs = std::filesystem;

namespace {

// Small, so that a few hundred bytes of deflated zeros reach it.
constexpr std::uint64_t kLimit = 64 * 1024;

// The standard's folder sits a few levels down, so that an entry climbing out
// of it lands where the walk below still sees it.
const fs::path kAbove[] = {"Datafiles", "Client", "Standards"};

void CheckImport(const fs::path& archive, bool old) {
    const fs::path parent = fuzz::ScratchFolder() / "parent";
    fs::path above = parent;
    for (const auto& name : kAbove)
        above /= name;
    const fs::path folder = above / "New Standard";
    fs::create_directories(folder);
    std::vector<fs::path> ancestors;
    for (fs::path p = folder; p != parent; p = p.parent_path())
        ancestors.push_back(p);

    std::size_t calls = 0;
    const auto progress = [&](std::size_t done, std::size_t total, const std::wstring&) {
        SD_FUZZ_CHECK(done <= total);
        ++calls;
        return true;
    };
    SArchiveLimits limits;
    limits.totalBytes = kLimit;
    const auto result = CStandardArchive::Extract(platform::FromPath(archive),
                                                  platform::FromPath(folder), progress, limits);
    SD_FUZZ_CHECK(result.opened || calls == 0);

    std::uint64_t bytes = 0;
    std::size_t files = 0;
    std::error_code ec;
    for (fs::recursive_directory_iterator it(parent, ec), end; it != end; it.increment(ec)) {
        SD_FUZZ_CHECK(!ec);
        const fs::path& path = it->path();
        SD_FUZZ_CHECK(!it->is_symlink());
        const fs::path inside = path.lexically_relative(folder);
        const bool underFolder = !inside.empty() && *inside.begin() != "..";
        if (it->is_directory()) {
            SD_FUZZ_CHECK(underFolder ||
                          std::find(ancestors.begin(), ancestors.end(), path) != ancestors.end());
            continue;
        }
        SD_FUZZ_CHECK(it->is_regular_file());
        SD_FUZZ_CHECK(underFolder);
        // Old archives give files straight into the folder or one folder down.
        SD_FUZZ_CHECK(!old || std::distance(inside.begin(), inside.end()) <= 2);
        bytes += it->file_size();
        ++files;
    }
    SD_FUZZ_CHECK(bytes <= kLimit);
    SD_FUZZ_CHECK(files <= result.extracted);
    fs::remove_all(parent);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const char* name : {"Import.xst", "Import.xpj"}) {
        const fs::path archive = fuzz::ScratchFolder() / name;
        fuzz::WriteBytes(archive, data, size);
        CheckImport(archive, name[7] == 'p');
        fs::remove(archive);
    }
    // Anything left here was written beside the parent folder.
    SD_FUZZ_CHECK(fs::is_empty(fuzz::ScratchFolder()));
    return 0;
}
