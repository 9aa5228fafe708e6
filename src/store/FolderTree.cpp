#include "store/FolderTree.h"

#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"

#include <cstdio>
#include <filesystem>
#include <fmt/xchar.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

// Big enough to copy at the disk's pace, small enough that a stop is heard
// within a fraction of a second on a slow share.
constexpr std::size_t kBlock = 1u << 20;

// Copies one file in blocks, counting its bytes into `done`; false on an
// error or when `progress` says stop.
bool CopyFileInBlocks(const fs::path& from, const fs::path& to, const std::wstring& name,
                      std::size_t& done, std::size_t total, const CProgress& progress) {
    std::FILE* in = platform::OpenFile(from, "rb");
    if (!in)
        return false;
    std::FILE* out = platform::OpenFile(to, "wb");
    if (!out) {
        std::fclose(in);
        return false;
    }
    std::vector<char> block(kBlock);
    bool ok = true;
    for (;;) {
        const std::size_t read = std::fread(block.data(), 1, block.size(), in);
        if (read > 0 && std::fwrite(block.data(), 1, read, out) != read)
            ok = false;
        done += read;
        if (!ok || read < block.size())
            break;
        if (progress && !progress(done, total, name)) {
            ok = false;
            break;
        }
    }
    ok = !std::ferror(in) && ok;
    std::fclose(in);
    ok = std::fclose(out) == 0 && ok;
    std::error_code ec;
    fs::permissions(to, fs::status(from, ec).permissions(), ec);
    return ok;
}

} // namespace

bool CopyFolderFiles(const fs::path& from, const fs::path& to, const CProgress& progress) {
    // The whole list first, so that the total is known before the first byte.
    std::vector<fs::directory_entry> entries;
    std::size_t total = 0;
    std::error_code ec;
    for (fs::recursive_directory_iterator it(from, ec), end; !ec && it != end; it.increment(ec)) {
        entries.push_back(*it);
        if (it->is_regular_file(ec) && !it->is_symlink(ec))
            total += static_cast<std::size_t>(it->file_size(ec));
    }
    if (ec)
        return false;
    std::size_t done = 0;
    for (const fs::directory_entry& entry : entries) {
        const fs::path relative = entry.path().lexically_relative(from);
        const fs::path target = to / relative;
        if (entry.is_symlink(ec)) {
            fs::remove(target, ec);
            fs::copy_symlink(entry.path(), target, ec);
        } else if (entry.is_directory(ec)) {
            fs::create_directories(target, ec);
        } else if (entry.is_regular_file(ec)) {
            // Sockets and pipes have no place in a standard; reading a pipe
            // could wait for ever.
            const std::wstring name = platform::FromPath(relative);
            if (!CopyFileInBlocks(entry.path(), target, name, done, total, progress))
                return false;
            if (progress && !progress(done, total, name))
                return false;
        }
        if (ec)
            return false;
    }
    return true;
}

std::wstring CVX2D_FolderTree::BackupNameFor(const std::wstring& folder) {
    const fs::path path = platform::ToPath(WithoutTrailingSeparator(folder));
    const std::wstring parent = WithoutTrailingSeparator(platform::FromPath(path.parent_path()));
    const std::wstring name = platform::FromPath(path.filename());
    std::error_code ec;
    for (int n = 1;; ++n) {
        std::wstring candidate =
            fmt::format(L"{}{}Backup ({}) of {}", parent, kPathSeparator, n, name);
        if (!fs::exists(platform::ToPath(candidate), ec))
            return candidate;
    }
}

bool CVX2D_FolderTree::CopyTree(const std::wstring& source, const std::wstring& destination,
                                const CProgress& progress) {
    const fs::path from = platform::ToPath(WithoutTrailingSeparator(source));
    const fs::path to = platform::ToPath(WithoutTrailingSeparator(destination));
    std::error_code ec;
    if (!fs::is_directory(from, ec)) {
        m_prompter.Show(L"The following source folder does not exist:\n" + source,
                        EPromptIcon::Stop);
        return false;
    }
    if (fs::exists(to, ec)) {
        const std::wstring backup = BackupNameFor(destination);
        const EPromptAnswer answer = m_prompter.Ask(
            {fmt::format(L"The following destination folder already exists:\n{}\n\nSelect 'YES' to "
                         L"backup the destination folder to:\n{}\n\nor 'NO' to overwrite the "
                         L"destination folder.",
                         destination, backup),
             L"Move Folder", EPromptButtons::YesNoCancel, EPromptIcon::Question,
             EPromptAnswer::Yes});
        if (answer == EPromptAnswer::Cancel)
            return false;
        if (answer == EPromptAnswer::Yes) {
            fs::rename(to, platform::ToPath(backup), ec);
            if (ec)
                return false;
        }
    }
    const bool made = !fs::exists(to, ec);
    fs::create_directories(to, ec);
    if (ec)
        return false;
    const bool copied = CopyFolderFiles(from, to, progress);
    if (!copied && made)
        fs::remove_all(to, ec);
    return copied;
}

bool CVX2D_FolderTree::DeleteTree(const std::wstring& folder) {
    const fs::path path = platform::ToPath(WithoutTrailingSeparator(folder));
    std::error_code ec;
    fs::remove_all(path, ec);
    return !ec && !fs::exists(path, ec);
}

bool CVX2D_FolderTree::MakeFolder(const std::wstring& folder) {
    std::error_code ec;
    return fs::create_directory(platform::ToPath(WithoutTrailingSeparator(folder)), ec) && !ec;
}

bool CVX2D_FolderTree::MoveFolder(const std::wstring& from, const std::wstring& to) {
    const fs::path source = platform::ToPath(WithoutTrailingSeparator(from));
    const fs::path target = platform::ToPath(WithoutTrailingSeparator(to));
    std::error_code ec;
    if (!fs::is_directory(source, ec) || fs::exists(fs::symlink_status(target, ec)))
        return false;
    platform::Rename(source, target, ec);
    return !ec;
}
