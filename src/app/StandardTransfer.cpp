#include "app/StandardTransfer.h"

#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "store/LineCounter.h"

#include <filesystem>
#include <fmt/xchar.h>

namespace fs = std::filesystem;

namespace {

const std::wstring kSection = L"ProjectNavigator";

// The path up to and including its last separator; the whole path if none.
std::wstring FolderPart(const std::wstring& path) {
    const auto slash = path.find_last_of(L"/\\");
    return slash == std::wstring::npos ? path : path.substr(0, slash + 1);
}

// Removes every file under the folder, keeping the folders.
void DeleteFiles(const std::wstring& folder) {
    std::error_code ec;
    std::vector<fs::path> files;
    for (fs::recursive_directory_iterator it(platform::ToPath(folder), ec), end; !ec && it != end;
         it.increment(ec)) {
        std::error_code typeError;
        if (!it->is_directory(typeError))
            files.push_back(it->path());
    }
    for (const auto& file : files)
        fs::remove(file, ec);
}

} // namespace

std::wstring CStandardTransfer::ExportFolder() const {
    return m_profile.GetString(kSection, L"ExportFolder");
}

std::wstring CStandardTransfer::ProposedExportFile(const std::wstring& standardName) const {
    return ExportFolder() + standardName + L".xst";
}

bool CStandardTransfer::Export(std::int32_t standardId, const std::wstring& file,
                               const CArchiveProgress& progress) {
    m_profile.SetString(kSection, L"ExportFolder", FolderPart(file));
    std::wstring folder;
    if (m_projects.GetProjectFolder(standardId, folder) != eProjectOk)
        return false;
    return CStandardArchive::Export(folder, file, progress);
}

std::optional<bool> CStandardTransfer::AskOldFormat() {
    const EPromptAnswer answer = m_prompter.Ask(
        {L"Are the standards being imported created using 2D CRAFTER V2015 and older.", L"",
         EPromptButtons::YesNoCancel, EPromptIcon::Question, EPromptAnswer::Yes});
    if (answer == EPromptAnswer::Cancel)
        return std::nullopt;
    return answer == EPromptAnswer::Yes;
}

std::wstring CStandardTransfer::ImportFolder() const {
    return m_profile.GetString(kSection, L"ImportFolder");
}

std::vector<CStandardTransfer::SImported>
CStandardTransfer::Import(const std::vector<std::wstring>& files, std::int32_t clientId,
                          bool oldFormat, const CArchiveProgress& progress) {
    std::vector<SImported> results;
    std::vector<std::wstring> kept;
    for (const auto& file : files) {
        std::error_code ec;
        if (!file.empty() && fs::is_regular_file(platform::ToPath(file), ec))
            kept.push_back(file);
    }
    if (kept.empty())
        return results;
    m_profile.SetString(kSection, L"ImportFolder", FolderPart(kept.front()));

    std::wstring skippedText;
    for (const auto& file : kept) {
        SImported imported{file, 0, CStandardArchive::StandardNameOf(file), {}};
        const EProjectResult created =
            m_projects.CreateProject({imported.name, 0, -1, clientId, oldFormat}, imported.id);
        if (created != eProjectOk) {
            m_prompter.Show(fmt::format(L"Error creating new standard '{}'\n\n{}", imported.name,
                                        ProjectResultText(created)),
                            EPromptIcon::Stop);
            imported.id = 0;
            results.push_back(imported);
            continue;
        }
        std::wstring folder;
        if (m_projects.GetProjectFolder(imported.id, folder) == eProjectOk) {
            DeleteFiles(folder);
            const auto extraction = CStandardArchive::Extract(file, folder, progress);
            imported.skipped = extraction.skipped;
            if (!extraction.opened)
                imported.skipped.push_back(L"the file is not a readable archive");
            RaiseLastLineId(m_projects.Datafiles(), folder + L"Lines.ini");
        }
        for (const auto& entry : imported.skipped)
            skippedText += fmt::format(L"\n{}: {}", imported.name, entry);
        results.push_back(imported);
    }
    if (!skippedText.empty())
        m_prompter.Show(L"Some files were not imported:" + skippedText, EPromptIcon::Exclamation);
    return results;
}
