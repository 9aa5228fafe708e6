#include "app/StandardArchive.h"

#include "datafile/Text.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fmt/xchar.h>
#include <zip.h>

namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t kUnixLinkBits = 0120000;
constexpr std::uint32_t kUnixTypeMask = 0170000;

// Old exports: the settings folders that hold a standard's files, and where
// each goes in the new standard's folder.
const std::pair<const wchar_t*, const wchar_t*> kOldFolders[] = {
    {L"settings/bom/flow/", L"Flow BOMS"},
    {L"settings/bom/iso/", L"Iso BOMS"},
    {L"settings/bom/ortho/", L"Ortho BOMS"},
    {L"settings/bom/lists/", L"Lists"},
    {L"settings/cad/", L""},
};

std::wstring Slashed(std::wstring name) {
    std::replace(name.begin(), name.end(), L'\\', L'/');
    return name;
}

// The segments of a stored name, or nothing when it could leave the folder.
bool SafeSegments(const std::wstring& name, std::vector<std::wstring>& segments) {
    const std::wstring path = Slashed(name);
    if (path.empty() || path.front() == L'/' || path.find(L':') != std::wstring::npos)
        return false;
    segments.clear();
    std::size_t start = 0;
    while (start <= path.size()) {
        const std::size_t end = std::min(path.find(L'/', start), path.size());
        const std::wstring segment = path.substr(start, end - start);
        if (segment == L"..")
            return false;
        if (!segment.empty() && segment != L".")
            segments.push_back(segment);
        start = end + 1;
    }
    return !segments.empty();
}

struct SZip {
    zip_t* archive = nullptr;
    ~SZip() {
        if (archive)
            zip_discard(archive);
    }
};

zip_t* OpenArchive(const std::wstring& path, int flags) {
    int error = 0;
    return zip_open(platform::ToPath(path).string().c_str(), flags, &error);
}

// Copies one entry into `target`, refusing more bytes than it declared.
bool ExtractEntry(zip_t* archive, zip_uint64_t index, zip_uint64_t declared, const fs::path& target,
                  std::uint64_t& total, std::uint64_t totalLimit, std::wstring& why) {
    zip_file_t* entry = zip_fopen_index(archive, index, 0);
    if (!entry) {
        why = L"unreadable";
        return false;
    }
    std::error_code ec;
    fs::create_directories(target.parent_path(), ec);
    std::FILE* out = std::fopen(target.string().c_str(), "wb");
    if (!out) {
        zip_fclose(entry);
        why = L"cannot be written";
        return false;
    }
    char buffer[65536];
    std::uint64_t written = 0;
    bool ok = true;
    for (;;) {
        const zip_int64_t got = zip_fread(entry, buffer, sizeof buffer);
        if (got < 0) {
            ok = false;
            why = L"damaged";
            break;
        }
        if (got == 0)
            break;
        written += static_cast<std::uint64_t>(got);
        total += static_cast<std::uint64_t>(got);
        if (written > declared || total > totalLimit) {
            ok = false;
            why = written > declared ? L"larger than it says" : L"archive too large";
            break;
        }
        if (std::fwrite(buffer, 1, static_cast<std::size_t>(got), out) !=
            static_cast<std::size_t>(got)) {
            ok = false;
            why = L"cannot be written";
            break;
        }
    }
    zip_fclose(entry);
    ok = std::fclose(out) == 0 && ok;
    if (!ok)
        fs::remove(target, ec);
    return ok;
}

} // namespace

std::wstring CStandardArchive::ExtensionOf(const std::wstring& path) {
    const std::wstring slashed = Slashed(path);
    const auto dot = slashed.rfind(L'.');
    const auto slash = slashed.rfind(L'/');
    if (dot == std::wstring::npos || (slash != std::wstring::npos && dot < slash))
        return L"";
    return ToLower(slashed.substr(dot));
}

std::wstring CStandardArchive::StandardNameOf(const std::wstring& path) {
    const std::wstring slashed = Slashed(path);
    const auto slash = slashed.rfind(L'/');
    std::wstring name = slash == std::wstring::npos ? slashed : slashed.substr(slash + 1);
    const auto dot = name.rfind(L'.');
    if (dot != std::wstring::npos)
        name.resize(dot);
    return name;
}

bool CStandardArchive::Export(const std::wstring& folder, const std::wstring& archivePath,
                              const CArchiveProgress& progress) {
    const fs::path root = platform::ToPath(WithoutTrailingSeparator(folder));
    std::error_code ec;
    if (!fs::is_directory(root, ec))
        return false;
    // Depth first, in a stable order, files only.
    std::vector<fs::path> files;
    for (fs::recursive_directory_iterator it(root, ec), end; !ec && it != end; it.increment(ec)) {
        std::error_code typeError;
        if (it->is_regular_file(typeError))
            files.push_back(it->path());
    }
    if (ec)
        return false;
    std::sort(files.begin(), files.end());

    fs::remove(platform::ToPath(archivePath), ec);
    SZip zip;
    zip.archive = OpenArchive(archivePath, ZIP_CREATE | ZIP_TRUNCATE);
    if (!zip.archive)
        return false;
    if (zip_set_archive_comment(zip.archive, kComment,
                                static_cast<zip_uint16_t>(std::strlen(kComment))) < 0)
        return false;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::wstring name = Slashed(platform::FromPath(files[i].lexically_relative(root)));
        if (progress && !progress(i, files.size(), name))
            return false;
        zip_source_t* source = zip_source_file(zip.archive, files[i].string().c_str(), 0, -1);
        if (!source)
            return false;
        const zip_int64_t index =
            zip_file_add(zip.archive, platform::ToUtf8(name).c_str(), source, ZIP_FL_ENC_UTF_8);
        if (index < 0) {
            zip_source_free(source);
            return false;
        }
        if (zip_set_file_compression(zip.archive, static_cast<zip_uint64_t>(index), ZIP_CM_DEFLATE,
                                     9) < 0)
            return false;
    }
    const bool closed = zip_close(zip.archive) == 0;
    if (closed)
        zip.archive = nullptr;
    if (progress)
        progress(files.size(), files.size(), L"");
    return closed;
}

CStandardArchive::SExtraction CStandardArchive::Extract(const std::wstring& archivePath,
                                                        const std::wstring& folder,
                                                        const CArchiveProgress& progress,
                                                        std::uint64_t totalLimit) {
    SExtraction result;
    SZip zip;
    zip.archive = OpenArchive(archivePath, ZIP_RDONLY);
    if (!zip.archive)
        return result;
    result.opened = true;
    const bool old = ExtensionOf(archivePath) == L".xpj";
    const fs::path root = platform::ToPath(WithoutTrailingSeparator(folder));
    const zip_int64_t count = zip_get_num_entries(zip.archive, 0);
    std::uint64_t total = 0;
    for (zip_int64_t i = 0; i < count; ++i) {
        const auto index = static_cast<zip_uint64_t>(i);
        zip_stat_t stat;
        zip_stat_init(&stat);
        if (zip_stat_index(zip.archive, index, ZIP_FL_ENC_GUESS, &stat) < 0 || !stat.name) {
            result.skipped.push_back(fmt::format(L"entry {}: unreadable", i));
            continue;
        }
        const std::wstring name = platform::FromUtf8(stat.name);
        if (!name.empty() && (name.back() == L'/' || name.back() == L'\\'))
            continue; // a folder entry
        if (progress &&
            !progress(static_cast<std::size_t>(i), static_cast<std::size_t>(count), name))
            break;

        std::vector<std::wstring> segments;
        if (!SafeSegments(name, segments)) {
            result.skipped.push_back(name + L": unsafe name");
            continue;
        }
        zip_uint8_t system = 0;
        zip_uint32_t attributes = 0;
        if (zip_file_get_external_attributes(zip.archive, index, 0, &system, &attributes) == 0 &&
            system == ZIP_OPSYS_UNIX && ((attributes >> 16) & kUnixTypeMask) == kUnixLinkBits) {
            result.skipped.push_back(name + L": link");
            continue;
        }

        fs::path target = root;
        if (old) {
            const std::wstring lower = ToLower(Slashed(name));
            const auto* match =
                std::find_if(std::begin(kOldFolders), std::end(kOldFolders),
                             [&](const auto& entry) { return lower.starts_with(entry.first); });
            if (match == std::end(kOldFolders))
                continue; // not a part of the standard
            if (*match->second)
                target /= platform::ToPath(match->second);
            target /= platform::ToPath(segments.back());
        } else {
            for (const auto& segment : segments)
                target /= platform::ToPath(segment);
        }
        std::wstring why;
        const zip_uint64_t declared = (stat.valid & ZIP_STAT_SIZE) ? stat.size : 0;
        if (!ExtractEntry(zip.archive, index, declared, target, total, totalLimit, why)) {
            result.skipped.push_back(name + L": " + why);
            if (total > totalLimit || why == L"larger than it says")
                break;
            continue;
        }
        ++result.extracted;
    }
    if (progress)
        progress(static_cast<std::size_t>(count), static_cast<std::size_t>(count), L"");
    return result;
}
