#include "app/DatafilesDoctor.h"

#include "contents/LayerCatalogue.h"
#include "contents/ProjectLayers.h"
#include "contents/ProjectSettingsBase.h"
#include "contents/SettingsCatalogue.h"
#include "datafile/Application.h"
#include "datafile/FileLock.h"
#include "datafile/Guid.h"
#include "datafile/Ids.h"
#include "datafile/IniFile.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "store/GeneralSettings.h"
#include "store/LineCounter.h"
#include "store/Templates.h"

#include <algorithm>
#include <filesystem>
#include <fmt/xchar.h>
#include <map>
#include <set>
#include <unordered_map>

namespace fs = std::filesystem;

namespace {

using Base = CVX2D_ProjectSettingsBase;
using ESeverity = EDoctorSeverity;

const std::wstring kSep(1, kPathSeparator);

bool IsDir(const std::wstring& path) {
    std::error_code ec;
    return fs::is_directory(platform::ToPath(WithoutTrailingSeparator(path)), ec);
}

bool FileExists(const std::wstring& path) {
    std::error_code ec;
    return fs::exists(platform::ToPath(path), ec);
}

// A sign and digits, nothing else: what "%d" writes.
bool IsWholeNumber(std::wstring_view text) {
    if (!text.empty() && (text.front() == L'-' || text.front() == L'+'))
        text.remove_prefix(1);
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

// A sign, digits with at most one point and an exponent: what "%f" and
// older writers put down.
bool IsRealNumber(std::wstring_view text) {
    if (!text.empty() && (text.front() == L'-' || text.front() == L'+'))
        text.remove_prefix(1);
    const auto exponent = text.find_first_of(L"eE");
    if (exponent != std::wstring_view::npos && !IsWholeNumber(text.substr(exponent + 1)))
        return false;
    const std::wstring_view mantissa = text.substr(0, exponent);
    const auto point = mantissa.find(L'.');
    const std::wstring_view whole = mantissa.substr(0, point);
    const std::wstring_view fraction =
        point == std::wstring_view::npos ? std::wstring_view() : mantissa.substr(point + 1);
    const auto digits = [](std::wstring_view part) {
        return std::all_of(part.begin(), part.end(),
                           [](wchar_t c) { return c >= L'0' && c <= L'9'; });
    };
    return digits(whole) && digits(fraction) && !(whole.empty() && fraction.empty());
}

std::wstring Quoted(const std::wstring& name) {
    return name.empty() ? std::wstring() : L" '" + name + L"'";
}

// A folder's files by name, read once: the files a standard has, and the
// leftovers among them.
struct SListing {
    bool listed = false;
    std::set<std::wstring> files;
};

SListing ListFiles(const std::wstring& folder) {
    SListing listing;
    std::error_code ec;
    fs::directory_iterator it(platform::ToPath(folder), ec);
    listing.listed = !ec;
    for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
        std::error_code typeError;
        if (!it->is_directory(typeError))
            listing.files.insert(platform::FromPath(it->path().filename()));
    }
    return listing;
}

// A settings variable as the catalogue of its application has it.
struct SCatalogueEntry {
    const SCatalogueRow* row = nullptr;
    std::int32_t section = 0;
};

using CCatalogueIndex = std::unordered_map<std::int32_t, SCatalogueEntry>;

// Per application, each variable id's first row in catalogue order.
const std::vector<CCatalogueIndex>& CatalogueIndexes() {
    static const std::vector<CCatalogueIndex> indexes = [] {
        std::vector<CCatalogueIndex> all(5);
        for (const int application : kApplications) {
            for (const auto& section : SettingsCatalogue(application)) {
                for (const auto part : section.parts) {
                    for (const SCatalogueRow& row : part) {
                        if (row.id != Base::kTitleId)
                            all[application].try_emplace(row.id, SCatalogueEntry{&row, section.id});
                    }
                }
            }
        }
        return all;
    }();
    return indexes;
}

// Why a stored value cannot be the variable's; empty when it can.
std::wstring SettingProblem(const SCatalogueRow& row, const std::wstring& value, bool& notNumber) {
    notNumber = false;
    switch (row.kind) {
    case Base::eBool:
    case Base::eInteger:
    case Base::eChoice:
        if (!IsWholeNumber(value)) {
            notNumber = true;
            return L"which is not a whole number";
        }
        break;
    case Base::eReal:
        if (!IsRealNumber(value)) {
            notNumber = true;
            return L"which is not a number";
        }
        return {};
    default:
        return {};
    }
    if (row.kind != Base::eChoice)
        return {};
    const std::int32_t number = WToL(value);
    // The defaults count as offered: loading derives some settings from
    // others when they are still at their default.
    if (number == static_cast<std::int32_t>(row.metric.number) ||
        number == static_cast<std::int32_t>(row.imperial.number))
        return {};
    for (const std::int32_t choice : row.choices) {
        if (choice != ePrjNone && choice == number)
            return {};
    }
    std::wstring offered;
    for (const std::int32_t choice : row.choices) {
        if (choice != ePrjNone)
            offered += (offered.empty() ? L"" : L", ") + fmt::format(L"{}", choice);
    }
    return fmt::format(L"which is not one of its choices ({})", offered);
}

struct SStandard {
    std::int32_t id = 0;
    std::wstring name;
    std::wstring folderName; // in "Projects"; empty when it has none
    std::wstring folder;     // full path, ending in a separator
};

// Reads one standard's files and adds what is wrong with them.
class CStandardCheck {
public:
    CStandardCheck(const SStandard& standard, std::vector<SDoctorFinding>& findings)
        : m_standard(standard), m_findings(findings) {}

    // The GUID (null when none or unreadable) and the highest live line id.
    CGuid guid;
    std::int32_t highestLine = 0;

    void Run() {
        const SListing listing = ListFiles(m_standard.folder);
        CheckLeftovers(m_standard.folder, RelativeFolder(), listing, m_findings,
                       [this](SDoctorFinding& f) { Place(f); });
        int version = 2015;
        if (!listing.files.contains(L"General.ini")) {
            Add(ESeverity::eError, L"general-ini-missing", L"General.ini",
                L"The standard has no General.ini.",
                L"Copy General.ini from an export of the standard or from a template folder; "
                L"without it the standard has no units, version or GUID.");
        } else if (CVX2D_IniFile general;
                   !Read(general, L"General.ini", L"general-ini-unreadable")) {
            // Said by Read.
        } else {
            version = CheckGeneral(general);
        }
        for (const int application : kApplications) {
            const std::wstring name = Base::FileName(application, version);
            CVX2D_IniFile settings;
            if (listing.files.contains(name) && Read(settings, name, L"file-unreadable"))
                CheckSettings(settings, name, application);
        }
        if (CVX2D_IniFile layers; listing.files.contains(L"Layers.ini") &&
                                  Read(layers, L"Layers.ini", L"file-unreadable"))
            CheckLayers(layers, version);
        if (CVX2D_IniFile lines;
            listing.files.contains(L"Lines.ini") && Read(lines, L"Lines.ini", L"file-unreadable")) {
            for (const auto& e : lines.Entries()) {
                if (e.section == L"LineList")
                    highestLine = std::max(highestLine, ParseLineKey(e.key));
            }
        }
    }

    // Leftovers of killed saves in `folder` (shown as `relative`): a lock
    // file or "<file>.<pid>.tmp" of a datafile whose lock no one holds now.
    template <typename Placer>
    static void CheckLeftovers(const std::wstring& folder, const std::wstring& relative,
                               const SListing& listing, std::vector<SDoctorFinding>& findings,
                               Placer place) {
        std::map<std::wstring, bool> held;
        const auto isHeld = [&](const std::wstring& datafile) {
            const auto it = held.find(datafile);
            if (it != held.end())
                return it->second;
            return held[datafile] = CVX2D_FileLock::IsHeldNow(folder + datafile);
        };
        for (const auto& name : listing.files) {
            std::wstring datafile;
            bool lock = false;
            if (name.ends_with(L".lock")) {
                datafile = name.substr(0, name.size() - 5);
                lock = true;
            } else if (name.ends_with(L".tmp")) {
                const std::wstring stem = name.substr(0, name.size() - 4);
                const auto dot = stem.rfind(L'.');
                if (dot != std::wstring::npos && IsWholeNumber(stem.substr(dot + 1)) &&
                    stem[dot + 1] >= L'0' && stem[dot + 1] <= L'9')
                    datafile = stem.substr(0, dot);
            }
            if (datafile.size() < 5 ||
                !EqualsNoCase(datafile.substr(datafile.size() - 4), L".ini") || isHeld(datafile))
                continue;
            SDoctorFinding f;
            f.severity = ESeverity::eWarning;
            f.kind = lock ? L"leftover-lock" : L"leftover-temp";
            f.file = relative + name;
            f.path = folder + name;
            f.message =
                lock ? fmt::format(L"The lock file of {} is left over: no one holds it.", datafile)
                     : fmt::format(L"A save of {} that did not finish left this "
                                   L"temporary file.",
                                   datafile);
            f.todo = L"Let the repair remove it (it is removed only while no one is saving "
                     L"the file).";
            f.repair = EDoctorRepair::eLeftover;
            place(f);
            findings.push_back(std::move(f));
        }
    }

private:
    std::wstring RelativeFolder() const {
        return L"Projects" + kSep + m_standard.folderName + kSep;
    }

    void Place(SDoctorFinding& f) const {
        f.standardId = m_standard.id;
        f.folder = m_standard.folderName;
    }

    SDoctorFinding& Add(ESeverity severity, const wchar_t* kind, const std::wstring& file,
                        std::wstring message, std::wstring todo,
                        EDoctorPage page = EDoctorPage::eNone) {
        SDoctorFinding f;
        f.severity = severity;
        f.kind = kind;
        Place(f);
        f.file = file.empty() ? L"" : RelativeFolder() + file;
        f.path = file.empty() ? L"" : m_standard.folder + file;
        f.message = std::move(message);
        f.todo = std::move(todo);
        f.page = page;
        m_findings.push_back(std::move(f));
        return m_findings.back();
    }

    bool Read(CVX2D_IniFile& ini, const std::wstring& name, const wchar_t* kind) {
        ini.SetAutoSave(false);
        if (ini.Open(m_standard.folder + name) == CVX2D_IniFile::eOk)
            return true;
        Add(ESeverity::eError, kind, name, fmt::format(L"{} cannot be read.", name),
            L"Check the file's permissions for the users of the datafiles folder.");
        return false;
    }

    // The version year, and the folders the file names.
    int CheckGeneral(CVX2D_IniFile& general) {
        general.SetSection(L"General");
        guid = GuidFromText(general.String(L"ProjectGuid"));
        const int version = WToI(general.String(L"ProjectVersion", L"2015"));
        const auto checkFolder = [&](const std::wstring& folder, const wchar_t* kind,
                                     const std::wstring& what, int application) {
            if (folder.empty() || IsDir(folder))
                return;
            Add(ESeverity::eWarning, kind, L"General.ini",
                fmt::format(L"The {} folder '{}' does not exist.", what, folder),
                L"Make the folder, or choose another on the File Locations page.",
                EDoctorPage::eFileLocations)
                .application = application;
        };
        checkFolder(general.String(L"BordersLocation"), L"borders-folder-missing", L"borders", 0);
        checkFolder(general.String(L"TemplatesLocation"), L"templates-folder-missing", L"templates",
                    0);
        general.SetSection(L"Drawings Location");
        for (const int application : kApplications) {
            checkFolder(general.String(CVX2D_GeneralSettings::DrawingsKey(application, version)),
                        L"drawings-folder-missing", ApplicationName(application) + L" drawings",
                        application);
        }
        return version;
    }

    void CheckSettings(const CVX2D_IniFile& settings, const std::wstring& name, int application) {
        const CCatalogueIndex& index = CatalogueIndexes()[static_cast<std::size_t>(application)];
        for (const auto& e : settings.Entries()) {
            if (e.section != L"Settings" || !e.key.starts_with(L"Variable "))
                continue;
            const std::wstring number = e.key.substr(9);
            if (!IsWholeNumber(number))
                continue;
            const auto found = index.find(WToL(number));
            if (found == index.end())
                continue;
            bool notNumber = false;
            const std::wstring problem = SettingProblem(*found->second.row, e.value, notNumber);
            if (problem.empty())
                continue;
            SDoctorFinding& f =
                Add(ESeverity::eWarning,
                    notNumber ? L"setting-not-a-number" : L"setting-not-in-choices", name,
                    fmt::format(L"{} \"{}\" of {} is '{}', {}.", e.key, found->second.row->label,
                                ApplicationSettingsName(application), e.value, problem),
                    L"Set it on its settings page, or restore the section's defaults.",
                    EDoctorPage::eSection);
            f.application = application;
            f.section = found->second.section;
        }
    }

    void CheckLayers(const CVX2D_IniFile& layers, int version) {
        enum EColumn { eName, eColor, eLinetype, eLineweight };
        struct SSection {
            int application;
            EColumn column;
        };
        std::map<std::wstring, SSection> sections;
        for (const int application : kApplications) {
            const std::wstring prefix = ApplicationFileStem(application, version);
            sections[prefix + L" - Layers"] = {application, eName};
            sections[prefix + L" - Colors"] = {application, eColor};
            sections[prefix + L" - Linetypes"] = {application, eLinetype};
            sections[prefix + L" - LineWeights"] = {application, eLineweight};
        }
        const auto& linetypes = StandardLinetypes();
        const auto& lineweights = StandardLineweights();
        for (const auto& e : layers.Entries()) {
            const auto found = sections.find(e.section);
            if (found == sections.end())
                continue;
            const wchar_t* kind = nullptr;
            SLayerColor color;
            switch (found->second.column) {
            case eName:
                if (!IsValidLayerName(e.value))
                    kind = L"layer-name";
                break;
            case eColor:
                if (!CVX2D_ProjectLayers::ParseColor(e.value, color))
                    kind = L"layer-color";
                break;
            case eLinetype:
                if (std::none_of(linetypes.begin(), linetypes.end(),
                                 [&](const std::wstring& l) { return EqualsNoCase(l, e.value); }))
                    kind = L"layer-linetype";
                break;
            case eLineweight:
                if (!IsWholeNumber(e.value) || std::find(lineweights.begin(), lineweights.end(),
                                                         WToL(e.value)) == lineweights.end())
                    kind = L"layer-lineweight";
                break;
            }
            if (!kind)
                continue;
            static const wchar_t* const kWhat[] = {L"name", L"colour", L"linetype", L"lineweight"};
            static const wchar_t* const kRule[] = {
                L"which AutoCAD does not accept",
                L"which is not red, green, blue and colour number, each 0-255",
                L"which is not one of the linetypes the layers page offers",
                L"which is not one of AutoCAD's lineweights"};
            const std::int32_t key = WToL(e.key);
            const std::wstring description = CVX2D_ProjectLayers::GetDescription(key);
            Add(ESeverity::eWarning, kind, L"Layers.ini",
                fmt::format(L"Layer {}{} of {} has the {} '{}', {}.", e.key,
                            description.empty() ? L"" : L" (" + description + L")",
                            ApplicationName(found->second.application), kWhat[found->second.column],
                            e.value, kRule[found->second.column]),
                L"Choose another on the application's Layers page.", EDoctorPage::eLayers)
                .application = found->second.application;
        }
    }

    const SStandard& m_standard;
    std::vector<SDoctorFinding>& m_findings;
};

SDoctorFinding Finding(ESeverity severity, const wchar_t* kind, std::wstring file,
                       std::wstring message, std::wstring todo) {
    SDoctorFinding f;
    f.severity = severity;
    f.kind = kind;
    f.file = std::move(file);
    f.message = std::move(message);
    f.todo = std::move(todo);
    return f;
}

} // namespace

std::wstring DoctorSeverityName(EDoctorSeverity severity) {
    return severity == EDoctorSeverity::eError ? L"error" : L"warning";
}

std::wstring DoctorRepairName(EDoctorRepair repair) {
    switch (repair) {
    case EDoctorRepair::eRegistry:
        return L"registry";
    case EDoctorRepair::eLineCounter:
        return L"line-counter";
    case EDoctorRepair::eLeftover:
        return L"leftover";
    case EDoctorRepair::eNone:
        break;
    }
    return L"";
}

bool CDatafilesDoctor::Examine(std::vector<SDoctorFinding>& findings,
                               const CProgress& progress) const {
    findings.clear();
    const auto finish = [&](bool complete) {
        std::stable_sort(findings.begin(), findings.end(), [](const auto& a, const auto& b) {
            return std::tie(a.severity, a.standardId) < std::tie(b.severity, b.standardId);
        });
        return complete;
    };
    if (!m_datafiles.Exists()) {
        findings.push_back(Finding(ESeverity::eError, L"datafiles-folder-missing", L"",
                                   MissingDatafilesText(m_datafiles.Root()),
                                   L"Reconnect the share, or choose the right datafiles folder."));
        return finish(true);
    }

    // The standard registry, read once, against the folders on disk.
    CVX2D_IniFile registry;
    registry.SetAutoSave(false);
    const std::wstring registryPath = m_datafiles.ProjectDatafile();
    const bool registryRead =
        registry.Open(registryPath) == CVX2D_IniFile::eOk || !FileExists(registryPath);
    if (!registryRead) {
        registry.Clear();
        findings.push_back(Finding(ESeverity::eError, L"registry-unreadable",
                                   L"ProjectDatafile.ini", L"ProjectDatafile.ini cannot be read.",
                                   L"Check the file's permissions; nothing else can be checked "
                                   L"against the standard registry until it can be read."));
    }
    bool foldersListed = false;
    const std::vector<std::wstring> folderNames = StandardFolderNames(m_datafiles, foldersListed);
    if (!foldersListed)
        findings.push_back(
            Finding(ESeverity::eError, L"standards-folder-unreadable", L"Projects",
                    L"The standards folder 'Projects' cannot be read.",
                    L"Make the folder, or check its permissions for the users of the "
                    L"datafiles folder."));
    std::map<std::int32_t, std::vector<std::wstring>> foldersById;
    for (const auto& name : folderNames)
        foldersById[ParseProjectKey(name)].push_back(name);

    std::vector<SStandard> standards;
    std::map<std::int32_t, std::wstring> names;
    for (const auto& e : registry.Entries()) {
        if (e.section != L"ProjectList" && e.section != L"DeletedProjects")
            continue;
        const std::int32_t id = ParseProjectKey(e.key);
        names.try_emplace(id, e.value);
        SStandard standard{id, e.value, L"", L""};
        const auto found = foldersById.find(id);
        if (found != foldersById.end()) {
            // The folder the registry would use: the one of the standard's
            // name, else the first.
            const std::wstring wanted = MakeProjectLabel(id, e.value);
            const auto& candidates = found->second;
            standard.folderName =
                std::find(candidates.begin(), candidates.end(), wanted) != candidates.end()
                    ? wanted
                    : candidates.front();
            standard.folder = m_datafiles.ProjectsFolder() + standard.folderName + kSep;
            if (candidates.size() > 1) {
                SDoctorFinding f = Finding(
                    ESeverity::eWarning, L"two-folders", L"",
                    fmt::format(L"Standard {}{} has {} folders; the program uses '{}'.", id,
                                Quoted(e.value), candidates.size(), standard.folderName),
                    L"Move what belongs to the standard into its folder and the other folders "
                    L"out of Projects.");
                f.standardId = id;
                f.folder = standard.folderName;
                findings.push_back(std::move(f));
            }
        }
        standards.push_back(std::move(standard));
    }
    if (registryRead && foldersListed) {
        const SRegistryRepair plan = PlanRegistryRepair(registry, folderNames);
        for (const auto& change : plan.changes) {
            SDoctorFinding f;
            f.repair = EDoctorRepair::eRegistry;
            f.file = L"ProjectDatafile.ini";
            f.standardId = change.kind == SRegistryRepair::EKind::eCounterRaised ? 0 : change.id;
            switch (change.kind) {
            case SRegistryRepair::EKind::eDropped:
                f.severity = ESeverity::eError;
                f.kind = L"entry-without-folder";
                f.message = fmt::format(L"The registry lists {}standard {}{}, which has no folder.",
                                        change.deleted ? L"the deleted " : L"", change.id,
                                        Quoted(change.name));
                f.todo = L"Put its folder back into Projects, or let the repair drop the entry.";
                break;
            case SRegistryRepair::EKind::eRegistered:
                f.severity = ESeverity::eWarning;
                f.kind = L"unregistered-folder";
                f.folder = foldersById[change.id].front();
                f.file = L"Projects" + kSep + f.folder;
                f.message = fmt::format(L"The folder '{}' is not in the registry.", f.folder);
                f.todo = fmt::format(L"Let the repair register it as standard {}{}, or move it "
                                     L"out of Projects.",
                                     change.id, Quoted(change.name));
                break;
            case SRegistryRepair::EKind::eCounterRaised:
                f.severity = ESeverity::eError;
                f.kind = L"project-counter-low";
                f.message = fmt::format(L"LastProjectId is below the highest standard id {}: a "
                                        L"new standard could get an id that is taken.",
                                        change.id);
                f.todo = L"Let the repair raise it.";
                break;
            }
            findings.push_back(std::move(f));
        }
    }

    // Clients, read once, against the registry.
    CVX2D_IniFile clients;
    clients.SetAutoSave(false);
    const std::wstring clientsPath = m_datafiles.ClientDatafile();
    if (clients.Open(clientsPath) != CVX2D_IniFile::eOk && FileExists(clientsPath)) {
        findings.push_back(Finding(ESeverity::eError, L"client-registry-unreadable",
                                   L"ClientDatafile.ini", L"ClientDatafile.ini cannot be read.",
                                   L"Check the file's permissions for the users of the datafiles "
                                   L"folder."));
    } else {
        std::map<std::int32_t, std::wstring> clientNames;
        for (const auto& e : clients.Entries()) {
            if (e.section == L"ClientList")
                clientNames.emplace(ParseClientKey(e.key), e.value);
        }
        std::map<std::int32_t, std::vector<std::int32_t>> clientsOf;
        const std::wstring listPrefix = L"ProjectList - ";
        for (const auto& e : clients.Entries()) {
            if (!e.section.starts_with(listPrefix))
                continue;
            const std::int32_t clientId = WToL(e.section.substr(listPrefix.size()));
            const std::int32_t standardId = WToL(e.key);
            const auto clientName = clientNames.find(clientId);
            const bool known = registryRead && names.contains(standardId);
            SDoctorFinding f;
            f.severity = ESeverity::eWarning;
            f.file = L"ClientDatafile.ini";
            f.clientId = clientId;
            f.standardId = standardId;
            if (clientName == clientNames.end()) {
                f.kind = L"client-unknown";
                f.message =
                    fmt::format(L"Standard {}{} is listed by client {}, which does not "
                                L"exist.",
                                standardId, Quoted(known ? names[standardId] : L""), clientId);
                f.todo = fmt::format(L"Move the standard to a client in the navigator, or delete "
                                     L"the section [{}] from ClientDatafile.ini.",
                                     e.section);
            } else if (registryRead && !known) {
                f.kind = L"client-lists-unknown-standard";
                f.message = fmt::format(L"Client {}{} lists standard {}, which the registry does "
                                        L"not have.",
                                        clientId, Quoted(clientName->second), standardId);
                f.todo = fmt::format(L"Delete the key {} from [{}] in ClientDatafile.ini.", e.key,
                                     e.section);
            } else {
                clientsOf[standardId].push_back(clientId);
                continue;
            }
            findings.push_back(std::move(f));
        }
        for (const auto& [standardId, ids] : clientsOf) {
            if (ids.size() < 2)
                continue;
            std::wstring list;
            for (const std::int32_t id : ids)
                list += (list.empty() ? L"" : L", ") + fmt::format(L"{}", id);
            SDoctorFinding f =
                Finding(ESeverity::eWarning, L"standard-in-two-clients", L"ClientDatafile.ini",
                        fmt::format(L"Standard {}{} is listed by clients {}.", standardId,
                                    Quoted(names[standardId]), list),
                        L"Move it to the one client it belongs to in the navigator.");
            f.standardId = standardId;
            f.clientId = ids.front();
            findings.push_back(std::move(f));
        }
    }

    // The templates new standards are made from.
    for (const auto& name : TemplateFolderNames()) {
        if (!IsDir(m_datafiles.TemplateFolder(name)))
            findings.push_back(Finding(
                ESeverity::eError, L"template-missing", L"Template" + kSep + name,
                fmt::format(L"The shipped template '{}' is missing.", name),
                L"Start the desktop program or run 'standards-desk-cli install': both copy the "
                L"shipped templates that are missing."));
    }
    CStandardCheck::CheckLeftovers(m_datafiles.Root(), L"", ListFiles(m_datafiles.Root()), findings,
                                   [](SDoctorFinding&) {});

    // Every standard's own files.
    std::map<std::wstring, std::vector<std::size_t>> byGuid;
    std::int32_t highestLine = 0;
    const SStandard* highestLineStandard = nullptr;
    for (std::size_t i = 0; i < standards.size(); ++i) {
        const SStandard& standard = standards[i];
        if (progress && !progress(i, standards.size(), standard.name))
            return finish(false);
        if (standard.folder.empty())
            continue;
        CStandardCheck check(standard, findings);
        check.Run();
        if (!check.guid.IsNull())
            byGuid[GuidToText(check.guid)].push_back(i);
        if (check.highestLine > highestLine) {
            highestLine = check.highestLine;
            highestLineStandard = &standard;
        }
    }
    if (progress)
        progress(standards.size(), standards.size(), L"");

    for (const auto& [guid, members] : byGuid) {
        if (members.size() < 2)
            continue;
        for (const std::size_t member : members) {
            const SStandard& standard = standards[member];
            std::wstring others;
            for (const std::size_t other : members) {
                if (other != member)
                    others +=
                        (others.empty() ? L"" : L", ") +
                        fmt::format(L"{}{}", standards[other].id, Quoted(standards[other].name));
            }
            SDoctorFinding f = Finding(
                ESeverity::eWarning, L"duplicate-guid",
                L"Projects" + kSep + standard.folderName + kSep + L"General.ini",
                fmt::format(L"Standard {}{} has the GUID {} of standard {} as well (a copy "
                            L"keeps its source's GUID).",
                            standard.id, Quoted(standard.name), guid, others),
                L"Keep the GUID on one of them: delete ProjectGuid from the others' General.ini, "
                L"and the program gives each a new one when it next opens it.");
            f.standardId = standard.id;
            f.folder = standard.folderName;
            f.page = EDoctorPage::eGeneral;
            findings.push_back(std::move(f));
        }
    }

    // The line counter all standards share.
    CVX2D_IniFile lineCounter;
    lineCounter.SetAutoSave(false);
    const std::wstring counterPath = m_datafiles.LineDatafile();
    if (lineCounter.Open(counterPath) != CVX2D_IniFile::eOk && FileExists(counterPath)) {
        findings.push_back(Finding(ESeverity::eError, L"file-unreadable", L"LineDatafile.ini",
                                   L"LineDatafile.ini cannot be read.",
                                   L"Check the file's permissions for the users of the datafiles "
                                   L"folder."));
    } else if (highestLineStandard) {
        lineCounter.SetSection(L"General");
        const std::int32_t last = lineCounter.Long(L"LastLineId", 0);
        if (last < highestLine) {
            SDoctorFinding f = Finding(
                ESeverity::eError, L"line-counter-low", L"LineDatafile.ini",
                fmt::format(L"LastLineId is {}, below line id {} of standard {}{}: new lines "
                            L"would get ids that are taken.",
                            last, highestLine, highestLineStandard->id,
                            Quoted(highestLineStandard->name)),
                fmt::format(L"Let the repair raise it to {}.", highestLine));
            f.repair = EDoctorRepair::eLineCounter;
            f.standardId = highestLineStandard->id;
            f.folder = highestLineStandard->folderName;
            f.path = highestLineStandard->folder + L"Lines.ini";
            f.page = EDoctorPage::eLines;
            findings.push_back(std::move(f));
        }
    }
    return finish(true);
}

bool CDatafilesDoctor::HasRepairs(const std::vector<SDoctorFinding>& findings) {
    return std::any_of(findings.begin(), findings.end(),
                       [](const auto& f) { return f.repair != EDoctorRepair::eNone; });
}

std::wstring CDatafilesDoctor::Summary(const std::vector<SDoctorFinding>& findings, bool complete) {
    if (!complete)
        return L"The check was stopped. Until then: " +
               (findings.empty() ? std::wstring(L"no problems found.") : Summary(findings));
    if (findings.empty())
        return L"No problems found.";
    const auto errors =
        static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(), [](const auto& f) {
            return f.severity == EDoctorSeverity::eError;
        }));
    const std::size_t warnings = findings.size() - errors;
    return fmt::format(L"{} {}, {} {}", errors, errors == 1 ? L"error" : L"errors", warnings,
                       warnings == 1 ? L"warning" : L"warnings");
}

bool CDatafilesDoctor::AskAndRepair(IPrompter& prompter,
                                    const std::vector<SDoctorFinding>& findings,
                                    std::vector<SDoctorRepairStep>& done) {
    done.clear();
    const auto preview = Preview(findings);
    if (preview.empty()) {
        prompter.Show(L"None of these problems can be repaired here: each row says what to do.",
                      EPromptIcon::Information, L"Repair");
        return false;
    }
    std::wstring list;
    for (const auto& step : preview)
        list += L"\u2022 " + step.text + L"\n";
    if (prompter.Ask({fmt::format(L"These repairs will be made:\n\n{}\nMake them?", list),
                      L"Repair", EPromptButtons::YesNo, EPromptIcon::Question,
                      EPromptAnswer::No}) != EPromptAnswer::Yes)
        return false;
    done = Repair(findings);
    std::wstring missed;
    for (const auto& step : done) {
        if (!step.done)
            missed += L"\u2022 " + step.text + L"\n";
    }
    if (!missed.empty())
        prompter.Show(fmt::format(L"These repairs could not be made:\n\n{}", missed),
                      EPromptIcon::Exclamation, L"Repair");
    return true;
}

std::vector<SDoctorRepairStep>
CDatafilesDoctor::Preview(const std::vector<SDoctorFinding>& findings) const {
    return Run(findings, true);
}

std::vector<SDoctorRepairStep>
CDatafilesDoctor::Repair(const std::vector<SDoctorFinding>& findings) {
    return Run(findings, false);
}

namespace {

// Removes the temporary files of `datafile` and then its lock file, taking
// its lock first without waiting: under the lock no save of the file is
// going on anywhere (every save holds it), and giving the lock back removes
// the lock file while still holding it, as every writer does.
bool RemoveLeftoversOf(const std::wstring& datafile) {
    CVX2D_FileLock lock;
    if (!lock.TryAcquire(datafile))
        return false;
    const fs::path target = platform::ToPath(datafile);
    const std::wstring prefix = platform::FromPath(target.filename()) + L".";
    std::error_code ec;
    for (fs::directory_iterator it(target.parent_path(), ec), end; !ec && it != end;
         it.increment(ec)) {
        const std::wstring name = platform::FromPath(it->path().filename());
        if (name.size() > prefix.size() + 4 && name.starts_with(prefix) &&
            name.ends_with(L".tmp") &&
            IsWholeNumber(name.substr(prefix.size(), name.size() - prefix.size() - 4))) {
            std::error_code removeError;
            fs::remove(it->path(), removeError);
        }
    }
    lock.Release();
    return true;
}

} // namespace

std::vector<SDoctorRepairStep> CDatafilesDoctor::Run(const std::vector<SDoctorFinding>& findings,
                                                     bool dryRun) const {
    std::vector<SDoctorRepairStep> steps;
    const auto wanted = [&](EDoctorRepair repair) {
        return std::any_of(findings.begin(), findings.end(),
                           [&](const auto& f) { return f.repair == repair; });
    };
    if (wanted(EDoctorRepair::eRegistry)) {
        SRegistryRepair repair;
        const bool checked = m_projects.CheckProjectRegistry(&repair, dryRun) == eProjectOk;
        for (const auto& change : repair.changes) {
            SDoctorRepairStep step{EDoctorRepair::eRegistry, L"", !dryRun && checked};
            switch (change.kind) {
            case SRegistryRepair::EKind::eDropped:
                step.text = fmt::format(L"Drop the registry entry of {}standard {}{}, whose "
                                        L"folder is missing",
                                        change.deleted ? L"the deleted " : L"", change.id,
                                        Quoted(change.name));
                break;
            case SRegistryRepair::EKind::eRegistered:
                step.text = fmt::format(L"Register the folder of standard {}{}", change.id,
                                        Quoted(change.name));
                break;
            case SRegistryRepair::EKind::eCounterRaised:
                step.text =
                    fmt::format(L"Raise LastProjectId in ProjectDatafile.ini to {}", change.id);
                break;
            }
            steps.push_back(std::move(step));
        }
        if (!checked)
            steps.push_back({EDoctorRepair::eRegistry,
                             L"Check the standard registry: ProjectDatafile.ini could not be "
                             L"updated",
                             false});
    }
    for (const auto& f : findings) {
        if (f.repair == EDoctorRepair::eLineCounter) {
            SDoctorRepairStep step{EDoctorRepair::eLineCounter, L"", false};
            step.text = fmt::format(L"Raise LastLineId in LineDatafile.ini to the highest line "
                                    L"id of standard {}",
                                    f.standardId);
            if (!dryRun)
                step.done = RaiseLastLineId(m_datafiles, f.path);
            steps.push_back(std::move(step));
        } else if (f.repair == EDoctorRepair::eLeftover) {
            SDoctorRepairStep step{EDoctorRepair::eLeftover, L"Remove " + f.file, false};
            if (!dryRun) {
                const std::wstring datafile =
                    f.kind == L"leftover-lock"
                        ? f.path.substr(0, f.path.size() - 5)
                        : f.path.substr(0, f.path.rfind(L'.', f.path.size() - 5));
                RemoveLeftoversOf(datafile);
                step.done = !FileExists(f.path);
                if (!step.done)
                    step.text += L" (in use now: left alone)";
            }
            steps.push_back(std::move(step));
        }
    }
    return steps;
}
