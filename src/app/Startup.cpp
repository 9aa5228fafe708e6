#include "app/Startup.h"

#include "contents/ProjectLines.h"
#include "contents/ProjectSpecs.h"
#include "datafile/Application.h"
#include "datafile/IniFile.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "store/GeneralSettings.h"
#include "store/Templates.h"

#include <filesystem>
#include <fmt/xchar.h>

namespace fs = std::filesystem;

CStartup::CStartup(IRegistry& registry, const CInstallation& installation,
                   CVX2D_ProjectRegistry& projects, IPrompter& prompter, SServices services)
    : m_registry(registry), m_installation(installation), m_projects(projects),
      m_prompter(prompter), m_services(std::move(services)), m_environment(installation),
      m_profile(registry) {}

CStartup::EResult CStartup::Run(const std::vector<std::wstring>& args) {
    const EResult result = Decide(args);
    if (result == eRun)
        Prepare();
    return result;
}

CStartup::EResult CStartup::Decide(const std::vector<std::wstring>& args) {
    m_helpPath = m_environment.HelpFilePath(m_services.programPath);
    for (const auto& arg : args) {
        if (ToLower(arg) == L"-install")
            return Install() ? eInstalled : eInstallFailed;
    }
    if (m_services.offerDatafilesChoice && !m_projects.Datafiles().Exists())
        return eNoDatafiles;
    if (m_projects.Datafiles().Root().empty()) {
        m_prompter.Show(NoDatafilesText(), EPromptIcon::Stop, kCaption);
        return eRefused;
    }
    if (!m_projects.Datafiles().Exists()) {
        m_prompter.Show(MissingDatafilesText(m_projects.Datafiles().Root()), EPromptIcon::Stop,
                        kCaption);
        return eRefused;
    }
    if (!IsUserAllowed(m_services.userName)) {
        SPrompt refusal{m_services.userName +
                            L",\nYou do not have permission to run this application.\n\nPlease "
                            L"contact your system administrator.",
                        kCaption, EPromptButtons::Ok, EPromptIcon::Stop, EPromptAnswer::Ok};
        m_prompter.Ask(refusal);
        return eRefused;
    }
    return eRun;
}

void CStartup::Prepare() {
    if (m_services.windowsComponents)
        m_oemLibrary = CWindowsComponents(m_environment, m_registry, m_prompter, m_services.windows)
                           .LoadOemDialogsLibrary();
    // A datafiles folder set up by hand may lack the templates the first
    // standards are made from.
    SeedTemplateFolders(m_projects.Datafiles(), m_services.shippedTemplates);
    CreateFirstRunStandards();
    // A registry that cannot be repaired now is repaired at the next start;
    // the program runs on what it can read.
    static_cast<void>(m_projects.CheckProjectRegistry());
    CUpdateCheck(m_registry, m_installation, m_prompter, m_services.update).Run();
}

bool CStartup::Install() {
    if (m_projects.Datafiles().Root().empty())
        return false;
    // The one place that makes a datafiles folder.
    std::error_code ec;
    fs::create_directories(platform::ToPath(m_projects.Datafiles().Root()), ec);
    if (!m_projects.Datafiles().Exists())
        return false;
    SeedTemplateFolders(m_projects.Datafiles(), m_services.shippedTemplates);
    CreateFirstRunStandards();
    if (!m_installation.HasDatafilesOverride())
        return true;
    return m_registry.SetString(ERegistryRoot::LocalMachine, CInstallation::kInstallKey,
                                L"DatafilesPath", m_installation.DatafilesPath());
}

bool CStartup::IsUserAllowed(const std::wstring& userName) const {
    if (userName.empty())
        return false;
    if (EqualsNoCase(userName, L"Administrator") || userName == L"root")
        return true;
    CVX2D_IniFile users;
    users.SetAutoSave(false);
    users.Open(m_projects.Datafiles().File(L"UserDatafile.ini"));
    bool anyUser = false;
    for (const auto& entry : users.Entries()) {
        if (entry.section != L"User List")
            continue;
        anyUser = true;
        if (EqualsNoCase(entry.value, userName))
            return true;
    }
    return !anyUser;
}

void CStartup::CreateFirstRunStandards() {
    if (!m_projects.GetProjectIds(true, false).empty() ||
        !m_projects.GetProjectIds(false, true).empty())
        return;
    const std::wstring root = m_installation.DatafilesPath();
    const auto below = [&](const wchar_t* name) {
        return root.empty() ? root : root + name + kPathSeparator;
    };
    const std::wstring drawings = below(L"Drawings");
    const std::wstring borders = below(L"Borders");
    const std::wstring templates = below(L"Templates");
    const std::wstring libraries = below(L"Libraries");
    // The first standards name these folders: a check of the new datafiles
    // folder finds them there.
    for (const std::wstring& folder : {borders, templates}) {
        std::error_code ec;
        if (!folder.empty())
            fs::create_directories(platform::ToPath(folder), ec);
    }

    const std::wstring section = L"NewProject";
    for (const wchar_t* name : {L"SelectedFolder", L"SettingElectricFolder", L"SettingFlowFolder",
                                L"SettingIsoFolder", L"SettingOrthoFolder"})
        m_profile.SetString(section, name, drawings);
    m_profile.SetString(section, L"BorderFolder", borders);
    m_profile.SetString(section, L"TemplateFolder", templates);
    m_profile.SetString(section, L"LibrariesFolder", libraries);

    struct SFirst {
        const wchar_t* name;
        int units;
        int templateNumber;
    };
    for (const SFirst& first :
         {SFirst{L"English Standard", 1, 2}, SFirst{L"Metric Standard", 0, 1}}) {
        std::int32_t id = 0;
        if (m_projects.CreateProject({first.name, first.units, first.templateNumber, 0, false},
                                     id) != eProjectOk)
            continue;
        CVX2D_GeneralSettings general;
        if (general.Load(m_projects, id)) {
            for (const int application : kApplications) {
                const std::wstring folder = drawings + first.name + kPathSeparator +
                                            CInstallation::ApplicationFolderName(application) +
                                            kPathSeparator;
                std::error_code ec;
                fs::create_directories(platform::ToPath(folder), ec);
                general.SetDrawingsLocation(application, folder);
            }
            general.m_strBordersLocation = borders;
            general.m_strTemplatesLocation = templates;
            general.m_strLibrariesLocation = libraries;
            general.m_strLocalLineIniPath.clear();
            general.Save();
        }
        std::int32_t lineId = 0;
        std::wstring lineName;
        if (CVX2D_ProjectLines(m_projects).CreateLine(id, L"Line 1", lineId, lineName) != eLineOk)
            continue;
        for (int application = 1; application <= 3; ++application)
            // A line without its spec list still works: it has no specs.
            static_cast<void>(
                CVX2D_ProjectSpecs(m_projects).CreateLineSpecList(id, lineId, application));
    }
}

void CStartup::AfterMainWindowShown() {
    if (!m_services.windowsComponents)
        return;
    if (!CWindowsComponents(m_environment, m_registry, m_prompter, m_services.windows)
             .EnsureThumbnailControlRegistered())
        m_prompter.Show(CWindowsComponents::kNotInstalled, EPromptIcon::Stop);
}

SRect CStartup::FitWindow(SRect rect, int screenWidth, int screenHeight) {
    if (rect.left < 0) {
        rect.right -= rect.left;
        rect.left = 0;
    }
    if (rect.top < 0) {
        rect.bottom -= rect.top;
        rect.top = 0;
    }
    if (rect.Width() > screenWidth)
        rect.right = rect.left + screenWidth;
    if (rect.Height() > screenHeight)
        rect.bottom = rect.top + screenHeight;
    if (rect.Width() < 800)
        rect.right = rect.left + 800;
    if (rect.Height() < 600)
        rect.bottom = rect.top + 600;
    return rect;
}

SRect CStartup::WindowRect(int screenWidth, int screenHeight) const {
    SRect stored;
    const std::wstring text = m_profile.GetString(L"Application", L"WindowPosition");
    if (std::swscanf(text.c_str(), L"%d,%d,%d,%d", &stored.left, &stored.top, &stored.right,
                     &stored.bottom) != 4)
        stored = SRect{};
    return FitWindow(stored, screenWidth, screenHeight);
}

void CStartup::SaveWindowRect(const SRect& rect) {
    m_profile.SetString(L"Application", L"WindowPosition",
                        fmt::format(L"{},{},{},{}", rect.left, rect.top, rect.right, rect.bottom));
}
