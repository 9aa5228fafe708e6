#include "store/Templates.h"

#include "store/FolderTree.h"

#include "datafile/Text.h"
#include "platform/Utf8.h"

#include <filesystem>

namespace fs = std::filesystem;

std::vector<std::wstring> TemplateFolderNames() {
    return {L"Metric", L"Imperial", L"Metric 2015", L"Imperial 2015"};
}

bool SeedTemplateFolders(const CVX2D_Datafiles& datafiles, const std::wstring& shippedFolder) {
    // Never makes the datafiles folder itself: only the installation does.
    if (!datafiles.Exists())
        return false;
    bool complete = true;
    for (const auto& name : TemplateFolderNames()) {
        const fs::path target =
            platform::ToPath(WithoutTrailingSeparator(datafiles.TemplateFolder(name)));
        std::error_code ec;
        if (fs::is_directory(target, ec))
            continue;
        const fs::path source =
            platform::ToPath(WithTrailingSeparator(shippedFolder) + L"Template") /
            platform::ToPath(name);
        if (shippedFolder.empty() || !fs::is_directory(source, ec)) {
            complete = false;
            continue;
        }
        fs::create_directories(target, ec);
        const bool copied = !ec && CopyFolderFiles(source, target);
        complete = complete && copied && fs::is_directory(target, ec);
    }
    return complete;
}
