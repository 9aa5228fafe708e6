#include "editors/FileLocationsEditor.h"

#include "datafile/Text.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <filesystem>
#include <fmt/xchar.h>

namespace fs = std::filesystem;

namespace {

struct SLocationField {
    ELocation location;
    const wchar_t* label;
    int application;                            // 1-4 for a drawings folder
    std::wstring CVX2D_GeneralSettings::*field; // else this member
};

const SLocationField kFields[] = {
    {ELocation::Electric, L"ELECTRIC Drawing Folder", 1, nullptr},
    {ELocation::Pid, L"P & ID Drawing Folder", 2, nullptr},
    {ELocation::Isometric, L"ISOMETRIC Drawing Folder", 3, nullptr},
    {ELocation::Ortho, L"ORTHO Drawing Folder", 4, nullptr},
    {ELocation::Borders, L"Borders Folder", 0, &CVX2D_GeneralSettings::m_strBordersLocation},
    {ELocation::Templates, L"Templates Folder", 0, &CVX2D_GeneralSettings::m_strTemplatesLocation},
    {ELocation::Libraries, L"Libraries Folder", 0, &CVX2D_GeneralSettings::m_strLibrariesLocation},
};

std::wstring Get(const CVX2D_GeneralSettings& general, const SLocationField& field) {
    return field.application ? general.GetDrawingsLocation(field.application)
                             : WithTrailingSeparator(general.*field.field);
}

void Set(CVX2D_GeneralSettings& general, const SLocationField& field, const std::wstring& folder) {
    if (field.application)
        general.SetDrawingsLocation(field.application, folder);
    else
        general.*field.field = folder;
}

bool IsStorable(const std::wstring& text) {
    return IsOneByteText(text) &&
           std::none_of(text.begin(), text.end(), [](wchar_t c) { return c < L' '; });
}

} // namespace

bool CFileLocationsEditor::Open(std::int32_t projectId) {
    m_nProjectId = projectId;
    m_rows.clear();
    m_opened.clear();
    CVX2D_GeneralSettings general;
    if (!general.Load(m_projects, projectId))
        return false;
    for (const SLocationField& field : kFields) {
        m_rows.push_back({field.location, field.label, Get(general, field), false});
        m_opened.push_back(m_rows.back().folder);
    }
    return true;
}

bool CFileLocationsEditor::ApplyEnabled() const {
    return std::any_of(m_rows.begin(), m_rows.end(),
                       [](const SLocationRow& row) { return row.changed; });
}

bool CFileLocationsEditor::SetFolder(std::size_t row, const std::wstring& text) {
    if (row >= m_rows.size())
        return false;
    SLocationRow& location = m_rows[row];
    std::wstring typed = TrimBlanks(text);
    // Without a libraries folder the drafting applications find no
    // libraries: clearing it means the program's own.
    if (typed.empty() && location.location == ELocation::Libraries)
        typed = m_projects.Datafiles().DefaultLibrariesFolder();
    const std::wstring folder = WithTrailingSeparator(typed);
    if (folder == location.folder)
        return true;
    if (!IsStorable(typed)) {
        m_prompter.Show(
            fmt::format(L"The folder '{}' holds a character that a datafile cannot store.", typed),
            EPromptIcon::Exclamation);
        return false;
    }
    if (!folder.empty()) {
        fs::path path = platform::ToPath(folder);
        // "/x/file.txt/" would read as missing rather than as a file.
        if (!path.has_filename() && path.has_relative_path())
            path = path.parent_path();
        if (!path.is_absolute()) {
            m_prompter.Show(fmt::format(L"The folder '{}' is not a full path.\n\nGive the whole "
                                        L"path of the folder, from its drive, share or root.",
                                        typed),
                            EPromptIcon::Exclamation);
            return false;
        }
        std::error_code ec;
        const fs::file_status status = fs::status(path, ec);
        if (fs::exists(status) && !fs::is_directory(status)) {
            m_prompter.Show(fmt::format(L"'{}' is a file, not a folder.", typed),
                            EPromptIcon::Exclamation);
            return false;
        }
        if (!fs::exists(status)) {
            const SPrompt question{
                fmt::format(L"The folder '{}' does not exist.\n\nDo you want to create it?",
                            folder),
                L"", EPromptButtons::YesNo, EPromptIcon::Question, EPromptAnswer::Yes};
            if (m_prompter.Ask(question) == EPromptAnswer::Yes) {
                fs::create_directories(path, ec);
                if (ec) {
                    m_prompter.Show(fmt::format(L"Error creating folder '{}'.\n\n{}", folder,
                                                platform::FromUtf8(ec.message())),
                                    EPromptIcon::Stop);
                    return false;
                }
            }
        }
    }
    location.folder = folder;
    location.changed = folder != m_opened[row];
    return true;
}

bool CFileLocationsEditor::Save() {
    // Only the changed folders go over the file as it is now: the general
    // settings page writes the same file.
    CVX2D_GeneralSettings current;
    const bool saved = current.Update(m_projects, m_nProjectId, [&](CVX2D_GeneralSettings& file) {
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            if (m_rows[i].changed)
                Set(file, kFields[i], m_rows[i].folder);
        }
    });
    if (!saved)
        return SaveFailed(L"file locations");
    // Shows what the file now holds: a cleared libraries folder reads as
    // the program's default one.
    Open(m_nProjectId);
    return true;
}

void CFileLocationsEditor::Discard() {
    for (std::size_t i = 0; i < m_rows.size(); ++i)
        m_rows[i] = {kFields[i].location, kFields[i].label, m_opened[i], false};
}
