#include "editors/DrawingsManager.h"

#include "contents/ProjectSettings.h"
#include "datafile/Application.h"
#include "datafile/Names.h"
#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/GeneralSettings.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fmt/xchar.h>
#include <numeric>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t kDrawingTemplateId = 44;
constexpr const wchar_t* kShellFoldersKey =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr const wchar_t* kAutocadKey = L"Software\\Autodesk\\AutoCAD";

bool Exists(const std::wstring& path) {
    std::error_code ec;
    return !path.empty() && fs::exists(platform::ToPath(path), ec);
}

bool HasDrawingExtension(const std::wstring& name) {
    if (name.size() < 4)
        return false;
    const std::wstring tail = name.substr(name.size() - 4);
    return EqualsNoCase(tail, L".bak") || EqualsNoCase(tail, L".dwg");
}

std::time_t FileTime(const fs::path& path) {
    std::error_code ec;
    const auto written = fs::last_write_time(path, ec);
    if (ec)
        return static_cast<std::time_t>(-1);
    const auto system = std::chrono::time_point_cast<std::chrono::system_clock::duration>(
        written - fs::file_time_type::clock::now() + std::chrono::system_clock::now());
    return std::chrono::system_clock::to_time_t(system);
}

} // namespace

SDrawingsShell SDrawingsShell::System() {
    SDrawingsShell shell;
    // The desktop opens and explores with the same call.
    shell.open = [](const std::wstring&, const std::wstring& target) {
        return platform::ShellOpen(target);
    };
    // The launcher is handed its parameter line as written and finds its
    // files from the working folder.
    shell.start = [](const std::wstring& program, const std::wstring& parameters,
                     const std::wstring& folder) {
        return platform::LaunchProgram(platform::ToPath(program), parameters,
                                       platform::ToPath(folder));
    };
    shell.executablePath = [] { return platform::ExecutablePath(); };
    return shell;
}

std::wstring CopyProgressText(int number, int count, const std::wstring& source,
                              const std::wstring& target) {
    return fmt::format(L"Copying file {} of {}\n{}\n{}", number, count, source, target);
}

std::wstring CopyTargetName(const std::wstring& file) {
    const std::size_t dot = file.rfind(L'.');
    const std::wstring base = dot == std::wstring::npos ? file : file.substr(0, dot);
    const std::wstring extension = dot == std::wstring::npos ? L"" : file.substr(dot);
    for (int n = 1;; ++n) {
        std::wstring target = fmt::format(L"{} (Copy {}){}", base, n, extension);
        if (!Exists(target))
            return target;
    }
}

bool FindAutocadRelease(const IRegistry& registry, std::wstring& release, std::wstring& version) {
    release =
        registry.Read(ERegistryRoot::LocalMachine, CInstallation::kInstallKey, L"AutoCADRelease");
    version =
        registry.Read(ERegistryRoot::LocalMachine, CInstallation::kInstallKey, L"AutoCADVersion");
    if (!release.empty() && !version.empty())
        return true;
    // AutoCAD records its current release ("R24.0") and, under that, its
    // current version ("ACAD-4101:409"); the suite runs on R20 to R24.
    for (const ERegistryRoot root : {ERegistryRoot::CurrentUser, ERegistryRoot::LocalMachine}) {
        const std::wstring current = registry.Read(root, kAutocadKey, L"CurVer");
        static const wchar_t* const releases[] = {L"R20.", L"R21.", L"R22.", L"R23.", L"R24."};
        const bool supported =
            std::any_of(std::begin(releases), std::end(releases),
                        [&](const wchar_t* prefix) { return current.starts_with(prefix); });
        if (!supported)
            continue;
        const std::wstring currentVersion =
            registry.Read(root, std::wstring(kAutocadKey) + L"\\" + current, L"CurVer");
        if (!currentVersion.empty()) {
            release = current;
            version = currentVersion;
            return true;
        }
    }
    release.clear();
    version.clear();
    return false;
}

std::wstring DesktopShortcutFolder(const IRegistry& registry) {
    std::wstring folder =
        registry.Read(ERegistryRoot::LocalMachine, kShellFoldersKey, L"Common Desktop");
    if (folder.empty())
        folder = registry.Read(ERegistryRoot::CurrentUser, kShellFoldersKey, L"Desktop");
    return WithTrailingSeparator(folder);
}

std::wstring CDrawingsManager::OpenFolderText() {
    return L"Open folder in " + platform::FileManagerName();
}

CDrawingsManager::CDrawingsManager(const CVX2D_ProjectRegistry& projects,
                                   const CInstallation& installation, CProfile& profile,
                                   IPrompter& prompter, SDrawingsShell shell)
    : m_projects(projects), m_installation(installation), m_profile(profile), m_prompter(prompter),
      m_shell(std::move(shell)) {}

void CDrawingsManager::Error(const std::wstring& text, EPromptIcon icon) {
    m_prompter.Show(text, icon);
}

bool CDrawingsManager::Open(std::int32_t projectId, int application) {
    m_nProjectId = projectId;
    m_nApplication = application;
    m_strFolder.clear();
    m_strEditing.clear();
    m_list.Clear();
    CVX2D_GeneralSettings general;
    if (!general.Load(m_projects, projectId))
        return false;
    m_strFolder = general.GetDrawingsLocation(application);
    if (m_strFolder.empty()) {
        Error(L"Please select a folder for your drawings under the Folder settings",
              EPromptIcon::Exclamation);
        return false;
    }
    Refresh();
    return true;
}

bool CDrawingsManager::BackupsShown() const {
    return m_profile.GetInt(kProfileSection, kBackupState, 0) != 0;
}

void CDrawingsManager::Refresh() {
    m_list.Clear();
    if (!m_strFolder.empty()) {
        try {
            ListDrawings(m_strFolder, BackupsShown(), m_list);
        } catch (const std::invalid_argument& error) {
            m_list.Clear();
            m_prompter.Show(platform::FromUtf8(error.what()), EPromptIcon::Exclamation);
        }
    }
    Sort();
}

void CDrawingsManager::Sort() {
    std::vector<std::size_t> order(m_list.Size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        const std::wstring la = ToLower(m_list.names[a]), lb = ToLower(m_list.names[b]);
        return la != lb ? la < lb : m_list.names[a] < m_list.names[b];
    });
    SDrawingList sorted;
    for (const std::size_t i : order) {
        sorted.names.push_back(m_list.names[i]);
        sorted.sizes.push_back(m_list.sizes[i]);
        sorted.dates.push_back(m_list.dates[i]);
        sorted.bytes.push_back(m_list.bytes[i]);
        sorted.times.push_back(m_list.times[i]);
    }
    m_list = std::move(sorted);
}

void CDrawingsManager::ToggleBackupState() {
    m_profile.SetInt(kProfileSection, kBackupState, BackupsShown() ? 0 : kBackupsShown);
    Refresh();
}

std::wstring CDrawingsManager::FullName(const std::wstring& item) const {
    if (item.empty())
        return L"";
    std::wstring name = m_strFolder + item;
    if (!HasDrawingExtension(item))
        name += L".dwg";
    return name;
}

std::size_t CDrawingsManager::CopyFiles(const std::vector<std::wstring>& sources,
                                        const std::vector<std::wstring>& targets,
                                        const CCopyProgress& progress) {
    if (sources.size() != targets.size()) {
        Error(L"Source and destination file arrays are not the same size");
        return 0;
    }
    const int count = static_cast<int>(sources.size());
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (progress && !progress(static_cast<int>(i) + 1, count, sources[i], targets[i]))
            return i;
        std::error_code ec;
        fs::copy_file(platform::ToPath(sources[i]), platform::ToPath(targets[i]),
                      fs::copy_options::none, ec);
        if (ec) {
            Error(fmt::format(L"Error copying file '{}' to '{}'.\n\n{}", sources[i], targets[i],
                              platform::FromUtf8(ec.message())));
            return i;
        }
    }
    return sources.size();
}

std::vector<std::pair<std::wstring, std::wstring>>
CDrawingsManager::Copy(const std::vector<std::wstring>& items, const CCopyProgress& progress) {
    std::vector<std::wstring> sources, targets;
    for (const auto& item : items) {
        const std::wstring source = FullName(item);
        if (source.empty())
            continue;
        // The same drawing named twice ("A" and "A.dwg") is copied once.
        if (std::find(sources.begin(), sources.end(), source) != sources.end())
            continue;
        targets.push_back(CopyTargetName(source));
        sources.push_back(source);
    }
    const std::size_t copied = CopyFiles(sources, targets, progress);
    if (!items.empty())
        Refresh();
    std::vector<std::pair<std::wstring, std::wstring>> made;
    for (std::size_t i = 0; i < copied; ++i)
        made.emplace_back(sources[i], targets[i]);
    return made;
}

std::vector<std::wstring> CDrawingsManager::Delete(const std::vector<std::wstring>& items) {
    std::vector<std::wstring> deleted;
    if (items.empty())
        return deleted;
    std::wstring question = L"Are you sure you want to delete these drawings?\n\n";
    for (const auto& item : items)
        question += item + L"\n";
    const SPrompt prompt{question, L"", EPromptButtons::YesNo, EPromptIcon::Exclamation,
                         EPromptAnswer::No};
    if (m_prompter.Ask(prompt) != EPromptAnswer::Yes)
        return deleted;
    for (auto it = items.rbegin(); it != items.rend(); ++it) {
        const std::wstring file = FullName(*it);
        std::error_code ec;
        if (file.empty() || !fs::remove(platform::ToPath(file), ec) || ec)
            continue;
        deleted.insert(deleted.begin(), *it);
        for (std::size_t i = m_list.Size(); i-- > 0;) {
            if (m_list.names[i] == *it) {
                m_list.names.erase(m_list.names.begin() + static_cast<std::ptrdiff_t>(i));
                m_list.sizes.erase(m_list.sizes.begin() + static_cast<std::ptrdiff_t>(i));
                m_list.dates.erase(m_list.dates.begin() + static_cast<std::ptrdiff_t>(i));
                m_list.bytes.erase(m_list.bytes.begin() + static_cast<std::ptrdiff_t>(i));
                m_list.times.erase(m_list.times.begin() + static_cast<std::ptrdiff_t>(i));
            }
        }
    }
    return deleted;
}

std::wstring CDrawingsManager::NewDrawing(const CCopyProgress& progress) {
    m_strEditing.clear();
    if (m_strFolder.empty()) {
        Error(L"Please select a folder for your drawings under the Folder settings",
              EPromptIcon::Exclamation);
        return L"";
    }
    CVX2D_GeneralSettings general;
    general.Load(m_projects, m_nProjectId);
    std::wstring value;
    if (auto settings = NewProjectSettings(m_nApplication)) {
        settings->BuildCatalogue(general.m_nWorkingUnits);
        settings->Load(general);
        if (const auto* variable = settings->FindVariable(kDrawingTemplateId))
            value = variable->m_strValue;
    }

    // The places the template may be, in order: the first that exists is used.
    std::vector<std::wstring> places;
    if (value != L"acad") {
        places.push_back(WithTrailingSeparator(general.m_strTemplatesLocation) + value + L".dwt");
    } else {
        const std::wstring program = m_shell.executablePath ? m_shell.executablePath() : L"";
        const std::size_t last = program.find_last_of(L"\\/");
        if (last == std::wstring::npos) {
            Error(L"Error getting current folder:\n" + program);
            return L"";
        }
        places.push_back(program.substr(0, last) + kPathSeparator + L"acad.dwt");
        // Installed, the program is in a bin folder and its data elsewhere.
        places.push_back(CInstallation::ShippedDataPlace(program) + L"acad.dwt");
    }
    // A template path without a folder would be looked for wherever the
    // program happens to run.
    const auto found = std::find_if(places.begin(), places.end(), [](const std::wstring& place) {
        return platform::ToPath(place).is_absolute() && Exists(place);
    });
    if (found == places.end()) {
        std::wstring text = L"Error finding drawing template:\n";
        for (const auto& place : places)
            text += place + L"\n";
        text +=
            places.size() == 1 ? L"\nPut the template there" : L"\nPut it in one of these folders";
        text += L", or choose another \"Drawing Template\" under General Drawing Parameters in "
                L"the application's settings; it offers the templates of the Templates Folder on "
                L"the File Locations page.";
        Error(text);
        return L"";
    }
    const std::wstring drawingTemplate = *found;

    int n = 1;
    std::wstring target = m_strFolder + L"Drawing1.dwg";
    while (Exists(target))
        target = fmt::format(L"{}Drawing{}.dwg", m_strFolder, ++n);
    if (CopyFiles({drawingTemplate}, {target}, progress) != 1)
        return L"";

    const fs::path path = platform::ToPath(target);
    std::error_code ec;
    const auto bytes = fs::file_size(path, ec);
    const std::wstring item = fmt::format(L"Drawing{}", n);
    m_list.names.push_back(item);
    m_list.sizes.push_back(ec ? L"" : DrawingSizeText(bytes));
    const std::time_t written = FileTime(path);
    m_list.dates.push_back(written == static_cast<std::time_t>(-1) ? L""
                                                                   : DrawingDateText(written));
    const bool known = !ec && written != static_cast<std::time_t>(-1);
    m_list.bytes.push_back(known ? static_cast<std::int64_t>(bytes) : -1);
    m_list.times.push_back(known ? static_cast<std::int64_t>(written) : -1);
    Sort();
    m_strEditing = item;
    return item + L".dwg";
}

std::optional<std::wstring> CDrawingsManager::Rename(const std::wstring& item,
                                                     const std::wstring& newName) {
    if (newName == item)
        return std::nullopt;
    const std::wstring what = L"Error renaming drawing '" + item + L"'.\n\n";
    const std::wstring name = TrimBlanks(newName);
    if (name.empty()) {
        Error(what + L"The new name is empty.");
        return std::nullopt;
    }
    const std::wstring source = FullName(item);
    // "Pump" for "Pump.bak" stays a backup: the extension is kept.
    const std::wstring file =
        HasDrawingExtension(name) ? name : name + source.substr(source.size() - 4);
    if (!IsValidName(file, m_strFolder)) {
        Error(what + L"'" + name + L"' is not a valid file name.");
        return std::nullopt;
    }
    const std::wstring target = m_strFolder + file;
    if (target == source)
        return std::nullopt;
    std::error_code ec;
    // A change of letter case only names the same file on Windows.
    if (Exists(target) && !platform::SameFile(platform::ToPath(source), platform::ToPath(target))) {
        Error(what + L"A file named '" + file + L"' already exists.");
        return std::nullopt;
    }
    platform::Rename(platform::ToPath(source), platform::ToPath(target), ec);
    if (ec) {
        Error(what + platform::FromUtf8(ec.message()));
        return std::nullopt;
    }
    for (auto& listed : m_list.names) {
        if (listed == item)
            listed = file;
    }
    Sort();
    return file;
}

SDrawingLaunch CDrawingsManager::OpenDecision(const std::wstring& item) const {
    SDrawingLaunch launch;
    launch.file = FullName(item);
    if (launch.file.empty())
        return launch;
    launch.kind = SDrawingLaunch::eShellOpen;
    const IRegistry& registry = m_installation.Registry();
    std::wstring release, version;
    if (!FindAutocadRelease(registry, release, version))
        return launch;
    const std::wstring word = ApplicationName(m_nApplication);
    const std::wstring shortcuts = DesktopShortcutFolder(registry);
    const std::wstring folder = m_installation.SuiteCommonFolder(L"");
    if (m_nProjectId < 1 || word.empty() || shortcuts.empty() || folder.empty())
        return launch;
    const std::wstring program = folder + L"VANDIX 2D.exe";
    if (!Exists(shortcuts + word + L".lnk") || !Exists(program))
        return launch;
    launch.kind = SDrawingLaunch::eLauncher;
    launch.program = program;
    launch.folder = folder;
    launch.parameters =
        fmt::format(L"{} ProjectId={} DrawingName=\"{}\"", word, m_nProjectId, launch.file);
    return launch;
}

SDrawingLaunch CDrawingsManager::OpenDrawing(const std::wstring& item) {
    SDrawingLaunch launch = OpenDecision(item);
    if (launch.kind == SDrawingLaunch::eLauncher && m_shell.start &&
        m_shell.start(launch.program, launch.parameters, launch.folder))
        return launch;
    if (launch.kind != SDrawingLaunch::eNothing) {
        launch.kind = SDrawingLaunch::eShellOpen;
        OpenOrTell(ShellVerb(L"open"), launch.file, L"the drawing", m_prompter);
    }
    return launch;
}

bool CDrawingsManager::OpenFolder() {
    return !m_strFolder.empty() &&
           OpenOrTell(ShellVerb(L"explore"), m_strFolder, L"the folder", m_prompter);
}

COpener CDrawingsManager::ShellVerb(const std::wstring& verb) const {
    if (!m_shell.open)
        return {};
    return [this, verb](const std::wstring& target) { return m_shell.open(verb, target); };
}
