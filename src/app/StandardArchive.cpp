#include "app/StandardArchive.h"

#include "datafile/IniFile.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <filesystem>
#include <fmt/xchar.h>
#include <fstream>
#include <map>
#include <set>
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

// Windows reads narrow names in the ANSI code page, which cannot hold every
// name: archives and files are opened there by their wide names.
zip_t* OpenArchive(const std::wstring& path, int flags, int& error) {
#ifdef _WIN32
    zip_error_t why;
    zip_error_init(&why);
    zip_t* archive = nullptr;
    if (zip_source_t* source = zip_source_win32w_create(path.c_str(), 0, -1, &why)) {
        archive = zip_open_from_source(source, flags, &why);
        if (!archive)
            zip_source_free(source);
    }
    error = archive ? 0 : zip_error_code_zip(&why);
    zip_error_fini(&why);
    return archive;
#else
    return zip_open(platform::ToPath(path).c_str(), flags, &error);
#endif
}

zip_source_t* FileSource(zip_t* archive, const fs::path& file) {
#ifdef _WIN32
    return zip_source_win32w(archive, file.c_str(), 0, -1);
#else
    return zip_source_file(archive, file.c_str(), 0, -1);
#endif
}

// An archive with no entries: only the end record with the comment. The
// library writes nothing at all for an archive without entries.
bool WriteEmptyArchive(const std::wstring& archivePath, const char* comment) {
    const std::size_t length = std::strlen(comment);
    std::string bytes("PK\x05\x06", 4);
    bytes.append(16, '\0'); // disks, entry counts, directory size and offset
    bytes += static_cast<char>(length & 0xff);
    bytes += static_cast<char>((length >> 8) & 0xff);
    bytes += comment;
    return WriteFileAtomically(platform::ToPath(archivePath), bytes);
}

const wchar_t* const kNotArchive = L"The file is not an archive, or the archive is damaged.";
const wchar_t* const kDamaged = L"The archive is damaged.";

std::wstring SizeText(std::uint64_t bytes) {
    if (bytes < 1024)
        return fmt::format(L"{} bytes", bytes);
    const wchar_t* const units[] = {L"KiB", L"MiB", L"GiB", L"TiB", L"PiB", L"EiB"};
    double value = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    while (value >= 1024 && unit + 1 < std::size(units)) {
        value /= 1024;
        ++unit;
    }
    return fmt::format(L"{:.1f} {}", value, units[unit]);
}

// Declared sizes are the archive's word: a sum of them must not wrap.
std::uint64_t Plus(std::uint64_t a, std::uint64_t b) {
    return b > UINT64_MAX - a ? UINT64_MAX : a + b;
}

// Opens the archive for reading, or says why it cannot be.
std::wstring Open(const std::wstring& path, SZip& zip) {
    std::error_code ec;
    const auto size = fs::file_size(platform::ToPath(path), ec);
    if (ec)
        return L"The file cannot be read.";
    // libzip takes an empty file for an archive without entries.
    if (size == 0)
        return L"The file is empty.";
    int error = 0;
    zip.archive = OpenArchive(path, ZIP_RDONLY | ZIP_CHECKCONS, error);
    if (zip.archive)
        return L"";
    if (error == ZIP_ER_NOZIP || error == ZIP_ER_INCONS)
        return kNotArchive;
    zip_error_t why;
    zip_error_init_with_code(&why, error);
    const std::wstring text = platform::FromUtf8(zip_error_strerror(&why));
    zip_error_fini(&why);
    return fmt::format(L"The file cannot be read as an archive ({}).", text);
}

struct SPlanned {
    zip_uint64_t index = 0;
    std::wstring name;
    fs::path relative; // within the standard's folder
    std::uint64_t size = 0;
    bool flattened = false; // an old export's entry from a sub-folder
};

// An old export's entries lose their sub-folders, so two of them can land on
// one file: an entry directly in the mapped folder wins over one from below
// it ("Settings\CAD\Backup\General.ini" never replaces
// "Settings\CAD\General.ini"); between two of a kind the later one wins, as
// it would have overwritten the first.
void KeepOneEntryPerFile(std::vector<SPlanned>& entries) {
    std::map<fs::path, std::size_t> chosen;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const auto [it, inserted] = chosen.try_emplace(entries[i].relative, i);
        if (!inserted && (!entries[i].flattened || entries[it->second].flattened))
            it->second = i;
    }
    std::vector<SPlanned> kept;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (chosen[entries[i].relative] == i)
            kept.push_back(entries[i]);
    }
    entries = std::move(kept);
}

struct SPlan {
    std::vector<SPlanned> entries;
    std::vector<std::wstring> skipped;
    std::uint64_t bytes = 0;
};

// Decides from the central directory alone what would be extracted where,
// and says why the archive must be refused, if it must.
std::wstring PlanEntries(zip_t* archive, bool old, const SArchiveLimits& limits,
                         const SArchiveUsage& used, SPlan& plan) {
    const zip_int64_t count = zip_get_num_entries(archive, 0);
    if (count < 0)
        return kDamaged;
    for (zip_int64_t i = 0; i < count; ++i) {
        const auto index = static_cast<zip_uint64_t>(i);
        zip_stat_t stat;
        zip_stat_init(&stat);
        if (zip_stat_index(archive, index, ZIP_FL_ENC_GUESS, &stat) < 0 || !stat.name)
            return kDamaged;
        const std::wstring name = platform::FromUtf8(stat.name);
        if (!name.empty() && (name.back() == L'/' || name.back() == L'\\'))
            continue; // a folder entry
        std::vector<std::wstring> segments;
        if (!SafeSegments(name, segments)) {
            plan.skipped.push_back(name + L": unsafe name");
            continue;
        }
        zip_uint8_t system = 0;
        zip_uint32_t attributes = 0;
        if (zip_file_get_external_attributes(archive, index, 0, &system, &attributes) == 0 &&
            system == ZIP_OPSYS_UNIX && ((attributes >> 16) & kUnixTypeMask) == kUnixLinkBits) {
            plan.skipped.push_back(name + L": link");
            continue;
        }

        fs::path relative;
        bool flattened = false;
        if (old) {
            const std::wstring lower = ToLower(Slashed(name));
            const auto* match =
                std::find_if(std::begin(kOldFolders), std::end(kOldFolders),
                             [&](const auto& entry) { return lower.starts_with(entry.first); });
            if (match == std::end(kOldFolders))
                continue; // not a part of the standard
            if (*match->second)
                relative /= platform::ToPath(match->second);
            relative /= platform::ToPath(segments.back());
            const auto depth = static_cast<std::size_t>(
                std::count(match->first, match->first + std::wcslen(match->first), L'/'));
            flattened = segments.size() > depth + 1;
        } else {
            for (const auto& segment : segments)
                relative /= platform::ToPath(segment);
        }

        if ((stat.valid & ZIP_STAT_ENCRYPTION_METHOD) && stat.encryption_method != ZIP_EM_NONE)
            return fmt::format(
                L"'{}' in the archive is encrypted; encrypted archives cannot be imported.", name);
        if (!(stat.valid & ZIP_STAT_COMP_METHOD) ||
            !zip_compression_method_supported(static_cast<zip_int32_t>(stat.comp_method), 0))
            return fmt::format(L"'{}' in the archive is packed with a method that cannot be read.",
                               name);
        if (!(stat.valid & ZIP_STAT_SIZE) || !(stat.valid & ZIP_STAT_COMP_SIZE))
            return kDamaged;
        if (limits.ratio > 0 && stat.size > limits.ratioFloor &&
            stat.size / limits.ratio > stat.comp_size)
            return fmt::format(
                L"'{}' in the archive would unpack to {}, more than {} times its packed size.",
                name, SizeText(stat.size), limits.ratio);
        plan.entries.push_back({index, name, relative, stat.size, flattened});
    }
    if (old)
        KeepOneEntryPerFile(plan.entries);
    for (const auto& entry : plan.entries)
        plan.bytes = Plus(plan.bytes, entry.size);
    if (plan.entries.empty()) {
        std::wstring why = L"The archive holds no files that can be imported.";
        for (const auto& skipped : plan.skipped)
            why += L"\n" + skipped;
        return why;
    }
    const std::uint64_t files = Plus(used.files, plan.entries.size());
    if (files > limits.files)
        return fmt::format(L"The import would come to {} files; one import takes at most {}.",
                           files, limits.files);
    const std::uint64_t bytes = Plus(used.bytes, plan.bytes);
    if (bytes > limits.totalBytes)
        return fmt::format(L"The import would unpack to {}; one import takes at most {}.",
                           SizeText(bytes), SizeText(limits.totalBytes));
    return L"";
}

// The files and folders one extraction made, so that a failure can take
// exactly those away again and nothing that was there before.
class CWritten {
public:
    bool Made(const fs::path& file) const { return m_files.count(file) != 0; }
    bool MakeFolders(const fs::path& folder) {
        std::vector<fs::path> missing;
        std::error_code ec;
        for (fs::path p = folder; !p.empty() && !fs::exists(fs::symlink_status(p, ec));
             p = p.parent_path()) {
            missing.push_back(p);
            if (p == p.parent_path())
                break;
        }
        for (auto it = missing.rbegin(); it != missing.rend(); ++it) {
            if (!fs::create_directory(*it, ec))
                return false;
            m_folders.push_back(*it);
        }
        return true;
    }
    void AddFile(const fs::path& file) { m_files.insert(file); }
    void Undo() {
        std::error_code ec;
        for (const auto& file : m_files)
            fs::remove(file, ec);
        for (auto it = m_folders.rbegin(); it != m_folders.rend(); ++it)
            fs::remove(*it, ec);
        m_files.clear();
        m_folders.clear();
    }

private:
    std::set<fs::path> m_files;
    std::vector<fs::path> m_folders;
};

// Copies one entry into `target`, refusing more bytes than it declared or
// than the import may still write; says why it failed, if it did.
std::wstring ExtractEntry(zip_t* archive, const SPlanned& entry, const fs::path& target,
                          std::uint64_t& total, std::uint64_t totalLimit, CWritten& written) {
    const std::wstring cannotWrite =
        fmt::format(L"'{}' in the archive could not be written to '{}'.", entry.name,
                    platform::FromPath(target));
    if (!written.MakeFolders(target.parent_path()))
        return cannotWrite;
    zip_file_t* file = zip_fopen_index(archive, entry.index, 0);
    if (!file)
        return fmt::format(L"'{}' in the archive is damaged.", entry.name);
    std::ofstream out(target, std::ios::binary | std::ios::trunc);
    written.AddFile(target);
    std::wstring why = out ? L"" : cannotWrite;
    char buffer[65536];
    std::uint64_t bytes = 0;
    while (why.empty()) {
        const zip_int64_t got = zip_fread(file, buffer, sizeof buffer);
        if (got < 0) {
            why = fmt::format(L"'{}' in the archive is damaged.", entry.name);
            break;
        }
        if (got == 0)
            break;
        bytes += static_cast<std::uint64_t>(got);
        total += static_cast<std::uint64_t>(got);
        if (bytes > entry.size)
            why = fmt::format(L"'{}' in the archive is larger than it says.", entry.name);
        else if (total > totalLimit)
            why = fmt::format(L"The import would unpack to more than {}, the most one import "
                              L"takes.",
                              SizeText(totalLimit));
        else if (!out.write(buffer, static_cast<std::streamsize>(got)))
            why = cannotWrite;
    }
    zip_fclose(file);
    out.close();
    if (why.empty() && !out)
        why = cannotWrite;
    return why;
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
    if (files.empty()) {
        if (progress)
            progress(0, 0, L"");
        return WriteEmptyArchive(archivePath, kComment);
    }

    // An existing archive of that name is replaced only when the new one is
    // complete: the library writes beside it and renames on close.
    SZip zip;
    int error = 0;
    zip.archive = OpenArchive(archivePath, ZIP_CREATE | ZIP_TRUNCATE, error);
    if (!zip.archive)
        return false;
    if (zip_set_archive_comment(zip.archive, kComment,
                                static_cast<zip_uint16_t>(std::strlen(kComment))) < 0)
        return false;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::wstring name = Slashed(platform::FromPath(files[i].lexically_relative(root)));
        if (progress && !progress(i, files.size(), name))
            return false;
        zip_source_t* source = FileSource(zip.archive, files[i]);
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

std::wstring CStandardArchive::Check(const std::wstring& archivePath, const SArchiveLimits& limits,
                                     const SArchiveUsage& used) {
    SZip zip;
    std::wstring why = Open(archivePath, zip);
    if (!why.empty())
        return why;
    SPlan plan;
    return PlanEntries(zip.archive, ExtensionOf(archivePath) == L".xpj", limits, used, plan);
}

CStandardArchive::SExtraction CStandardArchive::Extract(const std::wstring& archivePath,
                                                        const std::wstring& folder,
                                                        const CArchiveProgress& progress,
                                                        const SArchiveLimits& limits,
                                                        SArchiveUsage* used) {
    SExtraction result;
    SZip zip;
    result.failure = Open(archivePath, zip);
    if (!result.failure.empty())
        return result;
    result.opened = true;
    const SArchiveUsage before = used ? *used : SArchiveUsage{};
    SPlan plan;
    result.failure =
        PlanEntries(zip.archive, ExtensionOf(archivePath) == L".xpj", limits, before, plan);
    result.skipped = plan.skipped;
    if (!result.failure.empty())
        return result;

    const fs::path root = platform::ToPath(WithoutTrailingSeparator(folder));
    const std::size_t count = plan.entries.size();
    std::uint64_t total = before.bytes;
    CWritten written;
    for (std::size_t i = 0; i < count && result.failure.empty(); ++i) {
        const SPlanned& entry = plan.entries[i];
        if (progress && !progress(i, count, entry.name)) {
            result.cancelled = true;
            result.failure = L"The import was cancelled.";
            break;
        }
        const fs::path target = root / entry.relative;
        std::error_code ec;
        if (fs::exists(fs::symlink_status(target, ec)) && !written.Made(target)) {
            result.skipped.push_back(entry.name + L": already there");
            continue;
        }
        const std::uint64_t start = total;
        result.failure =
            ExtractEntry(zip.archive, entry, target, total, limits.totalBytes, written);
        result.bytes += total - start;
        ++result.extracted;
    }
    if (!result.failure.empty()) {
        written.Undo();
        result.extracted = 0;
        result.bytes = 0;
        return result;
    }
    if (progress)
        progress(count, count, L"");
    if (used) {
        used->bytes = Plus(used->bytes, result.bytes);
        used->files = Plus(used->files, result.extracted);
    }
    return result;
}
