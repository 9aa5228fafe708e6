#include "app/DatafilesChoice.h"

#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/Datafiles.h"

#include <filesystem>
#include <fmt/xchar.h>

namespace fs = std::filesystem;

namespace {

bool IsFolder(const std::wstring& folder) {
    std::error_code ec;
    return !folder.empty() && fs::is_directory(platform::ToPath(folder), ec);
}

} // namespace

std::wstring CDatafilesChoice::StartFolder(const std::wstring& given) const {
    if (!given.empty())
        return given;
    const std::wstring chosen = m_profile.GetString(kSection, kKey);
    return IsFolder(chosen) ? chosen : std::wstring();
}

std::wstring CDatafilesChoice::Reason(const CInstallation& installation) {
    const std::wstring folder = installation.DatafilesPath();
    if (folder.empty())
        return L"No datafiles folder is known yet.\n\nOpen the folder that holds your office's "
               L"standards, or create a new datafiles folder with the first standards.";
    return fmt::format(L"The datafiles folder '{}' does not exist or cannot be reached.\n\n"
                       L"Connect the share that holds it and try again, open another datafiles "
                       L"folder, or create a new one.",
                       folder);
}

bool CDatafilesChoice::HoldsDatafiles(const std::wstring& folder) {
    std::error_code ec;
    return IsFolder(folder) &&
           fs::is_regular_file(platform::ToPath(CVX2D_Datafiles(folder).ProjectDatafile()), ec);
}

void CDatafilesChoice::Refuse(const std::wstring& text) {
    m_prompter.Show(text, EPromptIcon::Stop, kCaption);
}

std::optional<std::wstring> CDatafilesChoice::Accept(const std::wstring& folder,
                                                     EDatafilesPick pick) {
    if (folder.empty())
        return std::nullopt;
    const fs::path path = platform::ToPath(folder);
    if (HoldsDatafiles(folder)) {
        if (pick == EDatafilesPick::New)
            m_prompter.Show(fmt::format(L"'{}' already holds a datafiles folder. It is opened as "
                                        L"it is; nothing in it is replaced.",
                                        folder),
                            EPromptIcon::Information, kCaption);
        return folder;
    }
    std::error_code ec;
    if (pick == EDatafilesPick::Existing) {
        if (!IsFolder(folder)) {
            Refuse(fmt::format(L"The folder '{}' does not exist or cannot be reached.", folder));
            return std::nullopt;
        }
        const SPrompt setUp{fmt::format(L"'{}' holds no standards (it has no "
                                        L"ProjectDatafile.ini).\n\nSet it up as a new datafiles "
                                        L"folder with the first standards?",
                                        folder),
                            kCaption, EPromptButtons::YesNo, EPromptIcon::Question,
                            EPromptAnswer::No};
        if (m_prompter.Ask(setUp) != EPromptAnswer::Yes)
            return std::nullopt;
    } else if (IsFolder(folder) && !fs::is_empty(path, ec)) {
        const SPrompt inUse{fmt::format(L"'{}' is not empty.\n\nSet up the new datafiles folder "
                                        L"in it all the same? Nothing in it is replaced.",
                                        folder),
                            kCaption, EPromptButtons::YesNo, EPromptIcon::Question,
                            EPromptAnswer::No};
        if (m_prompter.Ask(inUse) != EPromptAnswer::Yes)
            return std::nullopt;
    }
    fs::create_directories(path, ec);
    if (!IsFolder(folder)) {
        Refuse(fmt::format(L"The folder '{}' could not be created: {}", folder,
                           platform::FromUtf8(ec.message())));
        return std::nullopt;
    }
    if (!platform::CanWriteFile(path)) {
        Refuse(fmt::format(L"The first standards cannot be set up in '{}': you may not write "
                           L"there.\n\nChoose a folder you may write, or ask for write access.",
                           folder));
        return std::nullopt;
    }
    return folder;
}

bool CDatafilesChoice::Remember(const std::wstring& folder) {
    return m_profile.SetString(kSection, kKey, folder);
}
