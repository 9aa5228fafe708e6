#include "store/FolderTree.h"

#include "datafile/Text.h"
#include "platform/Utf8.h"

#include <filesystem>
#include <fmt/xchar.h>

namespace fs = std::filesystem;

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

bool CVX2D_FolderTree::CopyTree(const std::wstring& source, const std::wstring& destination) {
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
    fs::create_directories(to, ec);
    if (ec)
        return false;
    fs::copy(from, to,
             fs::copy_options::recursive | fs::copy_options::overwrite_existing |
                 fs::copy_options::copy_symlinks,
             ec);
    return !ec;
}

bool CVX2D_FolderTree::DeleteTree(const std::wstring& folder) {
    const fs::path path = platform::ToPath(WithoutTrailingSeparator(folder));
    std::error_code ec;
    fs::remove_all(path, ec);
    return !ec && !fs::exists(path, ec);
}
