#include "app/NewStandardWizard.h"

#include "contents/ProjectLines.h"
#include "datafile/Application.h"
#include "datafile/Names.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "store/GeneralSettings.h"
#include "store/StandardOperations.h"

#include <filesystem>
#include <fmt/xchar.h>

namespace {

const std::wstring kSection = L"NewProject";
const wchar_t* const kDrawingsValues[] = {L"SettingElectricFolder", L"SettingFlowFolder",
                                          L"SettingIsoFolder", L"SettingOrthoFolder"};

} // namespace

CNewStandardWizard::CNewStandardWizard(CVX2D_ProjectRegistry& projects,
                                       CVX2D_ClientRegistry& clients, CProfile& profile)
    : m_projects(projects), m_clients(clients), m_profile(profile) {}

std::array<std::wstring, 4> CNewStandardWizard::DrawingsFoldersFor(const std::wstring& name) const {
    std::array<std::wstring, 4> folders;
    const std::wstring trimmed = TrimBlanks(name);
    for (const int application : kApplications) {
        const std::wstring base = m_profile.GetString(kSection, kDrawingsValues[application - 1]);
        folders[application - 1] =
            base.empty() ? base
                         : WithTrailingSeparator(base) + trimmed + kPathSeparator +
                               CInstallation::ApplicationFolderName(application) + kPathSeparator;
    }
    return folders;
}

CNewStandardWizard::SChoice CNewStandardWizard::Proposal(std::int32_t clientId) const {
    SChoice choice;
    choice.name = m_projects.GetDefaultProjectName();
    choice.clientId = clientId;
    choice.drawings = DrawingsFoldersFor(choice.name);
    choice.borders = m_profile.GetString(kSection, L"BorderFolder");
    choice.templates = m_profile.GetString(kSection, L"TemplateFolder");
    choice.libraries = m_profile.GetString(kSection, L"LibrariesFolder");
    return choice;
}

std::wstring CNewStandardWizard::CheckName(const std::wstring& name) const {
    if (IsValidName(name, m_projects.Datafiles().ProjectsFolder(), L"VX2D_PRJ_2147483647 - "))
        return {};
    return fmt::format(L"'{}' cannot be the name of a standard.\n\n{}", name,
                       ProjectResultText(eProjectInvalidName));
}

std::int32_t CNewStandardWizard::Finish(const SChoice& choice, std::wstring& message) {
    message.clear();
    const std::wstring name = TrimBlanks(choice.name);
    const std::wstring what = CreateStandardErrorText(name);
    // Checked first: a copy must not be made under a name it cannot keep.
    if (!CheckName(name).empty()) {
        message = what + L"\n\n" + ProjectResultText(eProjectInvalidName);
        return 0;
    }
    std::int32_t id = 0;
    EProjectResult result = eProjectOk;
    if (choice.source == eCopyOfStandard) {
        std::wstring copyName;
        result = m_projects.CopyProject(choice.copyOf, id, copyName);
        if (result == eProjectOk && copyName != name)
            result = m_projects.RenameProject(id, name);
        if (result == eProjectOk && choice.clientId >= 1)
            m_clients.AddProjectToClient(choice.clientId, id);
    } else {
        SNewProject project;
        project.name = name;
        project.units = choice.workingUnits;
        project.templateNumber = choice.source == eImperialTemplate ? 2 : 1;
        project.clientId = choice.clientId;
        project.oldFormat = choice.oldFormat;
        result = m_projects.CreateProject(project, id);
    }
    if (result != eProjectOk) {
        message = what + L"\n\n" + ProjectResultText(result);
        return 0;
    }

    CVX2D_GeneralSettings general;
    if (general.Load(m_projects, id)) {
        general.m_nWorkingUnits = choice.workingUnits;
        general.m_nDisplayedUnits = choice.displayedUnits;
        for (const int application : kApplications)
            general.SetDrawingsLocation(application, choice.drawings[application - 1]);
        general.m_strBordersLocation = choice.borders;
        general.m_strTemplatesLocation = choice.templates;
        general.m_strLibrariesLocation = choice.libraries;
        if (!general.Save())
            message = what + L"\n\nIts general settings could not be written.";
    }
    // A copy brings the lines of its source; a standard from a template
    // starts with its first line.
    if (choice.source != eCopyOfStandard) {
        std::int32_t lineId = 0;
        std::wstring lineName;
        // The standard is made either way; a missing first line can be
        // added on its lines page.
        static_cast<void>(
            CVX2D_ProjectLines(m_projects).CreateLine(id, L"Line 1", lineId, lineName));
    }
    for (const auto& folder : choice.drawings) {
        std::error_code ec;
        if (!folder.empty())
            std::filesystem::create_directories(platform::ToPath(folder), ec);
    }

    // The folders the next new standard starts from: a drawings folder of the
    // proposed shape, without this standard's name and application folder.
    for (const int application : kApplications) {
        const std::wstring folder = WithTrailingSeparator(choice.drawings[application - 1]);
        const std::wstring tail = kPathSeparator + name + kPathSeparator +
                                  CInstallation::ApplicationFolderName(application) +
                                  kPathSeparator;
        if (folder.size() > tail.size() && folder.ends_with(tail))
            m_profile.SetString(kSection, kDrawingsValues[application - 1],
                                folder.substr(0, folder.size() - tail.size() + 1));
    }
    m_profile.SetString(kSection, L"BorderFolder", choice.borders);
    m_profile.SetString(kSection, L"TemplateFolder", choice.templates);
    m_profile.SetString(kSection, L"LibrariesFolder", choice.libraries);
    return id;
}
