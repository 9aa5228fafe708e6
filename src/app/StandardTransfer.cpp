#include "app/StandardTransfer.h"

#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"
#include "store/LineCounter.h"
#include "store/StandardOperations.h"

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

} // namespace

std::wstring CStandardTransfer::Remove(std::int32_t id, std::int32_t clientId,
                                       const std::wstring& why) {
    // A standard that could not be purged stays, with its client.
    const EProjectResult purged = m_projects.PurgeProject(id);
    if (purged == eProjectOk && clientId >= 1)
        CVX2D_ClientRegistry(m_projects.Datafiles()).RemoveProjectFromClient(clientId, id);
    if (purged == eProjectOk)
        return why;
    return fmt::format(L"{}\n\nThe standard made for it could not be removed: {}", why,
                       ProjectResultText(purged));
}

std::wstring CStandardTransfer::ExportFolder() const {
    return m_profile.GetString(kSection, L"ExportFolder");
}

std::wstring CStandardTransfer::ProposedExportFile(const std::wstring& standardName) const {
    return ExportFolder() + standardName + L".xst";
}

bool CStandardTransfer::Export(std::int32_t standardId, const std::wstring& file,
                               const CArchiveProgress& progress) {
    if (m_bRemembersFolders)
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

std::vector<CStandardTransfer::SImportCheck>
CStandardTransfer::CheckImport(const std::vector<std::wstring>& files) const {
    std::vector<SImportCheck> checks;
    for (const auto& file : files) {
        std::error_code ec;
        if (file.empty() || !fs::is_regular_file(platform::ToPath(file), ec))
            continue;
        checks.push_back({file, CStandardArchive::StandardNameOf(file),
                          CStandardArchive::Check(file, m_limits)});
    }
    return checks;
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
    if (m_bRemembersFolders)
        m_profile.SetString(kSection, L"ImportFolder", FolderPart(kept.front()));

    // Every archive of the import counts against the same limits.
    SArchiveUsage used;
    std::wstring skippedText;
    const auto fail = [&](SImported& imported, const std::wstring& why) {
        m_prompter.Show(fmt::format(L"Error importing '{}'\n\n{}", imported.file, why),
                        EPromptIcon::Stop);
        imported.id = 0;
        results.push_back(imported);
    };
    for (const auto& file : kept) {
        SImported imported{file, 0, CStandardArchive::StandardNameOf(file), {}};
        // A file that is no archive, or one past the limits, must not leave
        // an empty standard behind.
        const std::wstring refused = CStandardArchive::Check(file, m_limits, used);
        if (!refused.empty()) {
            fail(imported, refused);
            continue;
        }
        const EProjectResult created =
            m_projects.CreateProject({imported.name, 0, -1, clientId, oldFormat}, imported.id);
        if (created != eProjectOk) {
            m_prompter.Show(fmt::format(L"{}\n\n{}", CreateStandardErrorText(imported.name),
                                        ProjectResultText(created)),
                            EPromptIcon::Stop);
            imported.id = 0;
            results.push_back(imported);
            continue;
        }
        std::wstring folder;
        const EProjectResult found = m_projects.GetProjectFolder(imported.id, folder);
        if (found != eProjectOk) {
            fail(imported, Remove(imported.id, clientId, ProjectResultText(found)));
            continue;
        }
        // With no template the registry makes a new, empty folder (never one
        // that was there), so the archive mixes with nobody's files.
        const auto extraction = CStandardArchive::Extract(file, folder, progress, m_limits, &used);
        if (!extraction.Ok()) {
            const std::wstring why = Remove(imported.id, clientId, extraction.failure);
            if (extraction.cancelled) {
                imported.id = 0;
                results.push_back(imported);
                break;
            }
            fail(imported, why);
            continue;
        }
        // Its own specs come with it and take ids of this installation.
        if (!m_projects.ContentsArrived(imported.id)) {
            fail(imported,
                 Remove(imported.id, clientId,
                        L"The standard's own specs could not be entered in the register of "
                        L"specs."));
            continue;
        }
        imported.skipped = extraction.skipped;
        RaiseLastLineId(m_projects.Datafiles(), folder + L"Lines.ini");
        for (const auto& entry : imported.skipped)
            skippedText += fmt::format(L"\n{}: {}", imported.name, entry);
        results.push_back(imported);
    }
    if (!skippedText.empty())
        m_prompter.Show(L"Some files were not imported:" + skippedText, EPromptIcon::Exclamation);
    return results;
}
