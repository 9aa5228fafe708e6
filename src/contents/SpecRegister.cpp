#include "contents/SpecRegister.h"

#include "datafile/Ids.h"
#include "datafile/IniFile.h"
#include "datafile/Names.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"
#include "store/FolderTree.h"

#include <algorithm>
#include <filesystem>
#include <fmt/xchar.h>
#include <functional>
#include <map>
#include <set>

namespace fs = std::filesystem;

namespace {

const std::wstring kGeneral = L"General";
const std::wstring kLastSpecId = L"LastSpecId";
const std::wstring kSpecList = L"SpecList";
const std::wstring kClientSpecs = L"ClientSpecs";
const std::wstring kProjectSpecs = L"ProjectSpecs";
const std::wstring kSpecFile = L"Specs.ini";
const std::wstring kLineSpecsPrefix = L"LineSpecs - ";

bool IsDir(const std::wstring& path) {
    std::error_code ec;
    return fs::is_directory(platform::ToPath(WithoutTrailingSeparator(path)), ec);
}

bool Exists(const std::wstring& path) {
    std::error_code ec;
    return fs::exists(fs::symlink_status(platform::ToPath(WithoutTrailingSeparator(path)), ec));
}

// Reads a file that may not exist yet (empty then); false only when it
// exists and cannot be read.
bool OpenIfPresent(CVX2D_IniFile& ini, const std::wstring& path) {
    ini.SetAutoSave(false);
    return !path.empty() && (ini.Open(path) == CVX2D_IniFile::eOk || !Exists(path));
}

// One entry to set; an empty value takes the key away. With `ifPresent`
// only a key that is there gets the value.
struct SEntryChange {
    std::wstring section, key, value;
    bool ifPresent = false;
};
using CEntryChanges = std::vector<SEntryChange>;

// Makes the changes in `ini`; returns the changes that put back what was
// there, in the order to make them.
CEntryChanges ApplyChanges(CVX2D_IniFile& ini, const CEntryChanges& changes) {
    CEntryChanges back;
    for (const auto& change : changes) {
        ini.SetSection(change.section);
        const std::wstring old = ini.String(change.key);
        if (old == change.value || (change.ifPresent && old.empty()))
            continue;
        back.push_back({change.section, change.key, old});
        if (change.value.empty())
            ini.DeleteKey(change.key);
        else
            ini.SetString(change.key, change.value);
    }
    std::reverse(back.begin(), back.end());
    return back;
}

// The steps of a change done so far, undone in reverse order unless the
// whole change went through.
class CUndo {
public:
    CUndo() = default;
    CUndo(const CUndo&) = delete;
    CUndo& operator=(const CUndo&) = delete;
    ~CUndo() {
        if (m_bDone)
            return;
        for (auto it = m_steps.rbegin(); it != m_steps.rend(); ++it)
            (*it)();
    }
    void Add(std::function<void()> step) { m_steps.push_back(std::move(step)); }
    void Done() { m_bDone = true; }

private:
    std::vector<std::function<void()>> m_steps;
    bool m_bDone = false;
};

// Changes a datafile in one locked update and tells `undo` how to put it
// back; true also when nothing needed changing.
bool ChangeFile(const std::wstring& path, const CEntryChanges& changes, CUndo& undo) {
    bool opened = false;
    CEntryChanges back;
    const bool saved = UpdateDatafile(path, [&](CVX2D_IniFile& ini) {
        opened = true;
        back = ApplyChanges(ini, changes);
        return !back.empty();
    });
    if (!opened || (!back.empty() && !saved))
        return false;
    if (!back.empty())
        undo.Add([path, back] {
            CUndo none;
            ChangeFile(path, back, none);
            none.Done();
        });
    return true;
}

// Saves changes to the register, which is held under its lock, and tells
// `undo` how to put them back.
bool SaveChanges(CVX2D_IniFile& reg, const CEntryChanges& changes, CUndo& undo) {
    const CEntryChanges back = ApplyChanges(reg, changes);
    if (back.empty())
        return true;
    if (reg.Save() != CVX2D_IniFile::eOk) {
        ApplyChanges(reg, back);
        return false;
    }
    undo.Add([&reg, back] {
        ApplyChanges(reg, back);
        reg.Save();
    });
    return true;
}

// Changes the "Specs.ini" of each standard of `files`, each in one locked
// update; false at the first that fails.
bool ChangeSpecFiles(const CVX2D_ProjectRegistry& projects,
                     const std::map<std::int32_t, CEntryChanges>& files, CUndo& undo) {
    for (const auto& [projectId, changes] : files) {
        const std::wstring path = projects.StandardFile(projectId, kSpecFile);
        if (path.empty() || !ChangeFile(path, changes, undo))
            return false;
    }
    return true;
}

// The register document's spec of that id.
bool Lookup(const CVX2D_IniFile& reg, std::int32_t id, SSpecInfo& spec) {
    for (const auto& found : CVX2D_ProjectSpecs::SpecsOf(reg)) {
        if (found.id == id) {
            spec = found;
            return true;
        }
    }
    return false;
}

SSpecPlace PlaceOf(const SSpecInfo& spec) {
    return {spec.scope, spec.scope == eSpecCommon ? 0 : spec.ownerId};
}

bool NameTaken(const CVX2D_IniFile& reg, const std::wstring& name, const SSpecPlace& place,
               std::int32_t except) {
    const auto specs = CVX2D_ProjectSpecs::SpecsOf(reg);
    return std::any_of(specs.begin(), specs.end(), [&](const SSpecInfo& spec) {
        return spec.id != except && PlaceOf(spec) == place && EqualsNoCase(spec.name, name);
    });
}

// The register's entries that put a spec into its place's list.
CEntryChanges PlaceChanges(const std::wstring& key, const SSpecPlace& place) {
    return {
        {kClientSpecs, key, place.scope == eSpecClient ? MakeClientKey(place.ownerId) : L""},
        {kProjectSpecs, key, place.scope == eSpecProject ? MakeProjectKey(place.ownerId) : L""}};
}

// `count` new ids above the counter and every id of the register, passing
// over those `taken` says are in use; the counter's change is added to
// `changes`.
std::vector<std::int32_t> AllocateIds(CVX2D_IniFile& reg, std::size_t count,
                                      const std::function<bool(std::int32_t)>& taken,
                                      CEntryChanges& changes) {
    reg.SetSection(kGeneral);
    std::int32_t last = reg.Long(kLastSpecId, 0);
    for (const auto& e : reg.Entries()) {
        if (e.section == kSpecList || e.section == kClientSpecs || e.section == kProjectSpecs)
            last = std::max(last, ParseSpecKey(e.key));
    }
    std::vector<std::int32_t> ids;
    while (ids.size() < count) {
        ++last;
        if (!taken(last))
            ids.push_back(last);
    }
    if (count > 0)
        changes.push_back({kGeneral, kLastSpecId, CVX2D_IniFile::FormatLong(last)});
    return ids;
}

// The spec ids of a line's list ("VX2D_SPEC_5,VX2D_SPEC_7").
std::vector<std::int32_t> SplitList(const std::wstring& list) {
    std::vector<std::int32_t> ids;
    std::size_t start = 0;
    while (start < list.size()) {
        const std::size_t end = std::min(list.find(L',', start), list.size());
        ids.push_back(ParseSpecKey(list.substr(start, end - start)));
        start = end + 1;
    }
    return ids;
}

std::vector<std::int32_t> IdsOf(const std::vector<SProjectInfo>& standards) {
    std::vector<std::int32_t> ids;
    for (const auto& standard : standards)
        ids.push_back(standard.id);
    return ids;
}

std::wstring Names(const std::vector<SProjectInfo>& standards) {
    std::wstring text;
    for (const auto& standard : standards)
        text += L"\n" + standard.name;
    return text;
}

// A standard's own specs in its folder, by id with their names: each folder
// "VX2D_SPEC_<id>" in it, each spec its "Specs.ini" keeps a name of, and for
// a copy each spec the register gives the source (its folder may have gone).
std::map<std::int32_t, std::wstring> OwnSpecs(const std::wstring& folder,
                                              const CVX2D_IniFile& specs,
                                              const std::vector<SSpecInfo>& registered,
                                              std::int32_t sourceId) {
    std::map<std::int32_t, std::wstring> own;
    std::error_code ec;
    for (fs::directory_iterator it(platform::ToPath(folder), ec), end; !ec && it != end;
         it.increment(ec)) {
        std::error_code typeError;
        const std::wstring name = platform::FromPath(it->path().filename());
        const std::int32_t specId = ParseSpecKey(name);
        if (specId > 0 && name == MakeSpecKey(specId) && it->is_directory(typeError))
            own.try_emplace(specId);
    }
    for (const auto& e : specs.Entries()) {
        if (e.section == kProjectSpecs && ParseSpecKey(e.key) > 0)
            own[ParseSpecKey(e.key)] = e.value;
    }
    for (const auto& spec : registered) {
        if (sourceId > 0 && spec.scope == eSpecProject && spec.ownerId == sourceId)
            own[spec.id] = spec.name;
    }
    // A spec known by its folder alone has the name it is checked under.
    for (const auto& e : specs.Entries()) {
        const auto it = own.find(ParseSpecKey(e.key));
        if (e.section == kSpecList && it != own.end() && it->second.empty())
            it->second = e.value;
    }
    for (auto& [specId, name] : own) {
        if (name.empty())
            name = MakeSpecKey(specId);
    }
    return own;
}

// The changes that bring a standard's "Specs.ini" to the new ids of its own
// specs (`renumbered`, named in `names`): its checks, the names it keeps and
// its lines' lists. A check of another spec stays where `keep` says so.
CEntryChanges
RenumberedSpecFile(const CVX2D_IniFile& specs,
                   const std::map<std::int32_t, std::int32_t>& renumbered,
                   const std::map<std::int32_t, std::wstring>& names,
                   const std::function<bool(std::int32_t, const std::wstring&)>& keep) {
    std::set<std::int32_t> kept;
    CEntryChanges changes;
    // Every old key goes before a new one is set: an old id may be a new one.
    for (const auto& e : specs.Entries()) {
        const std::int32_t specId = ParseSpecKey(e.key);
        if (e.section == kProjectSpecs ||
            (e.section == kSpecList && (renumbered.contains(specId) || !keep(specId, e.value))))
            changes.push_back({e.section, e.key, L""});
        else if (e.section == kSpecList)
            kept.insert(specId);
    }
    for (const auto& e : specs.Entries()) {
        const auto it = renumbered.find(ParseSpecKey(e.key));
        if (e.section == kSpecList && it != renumbered.end())
            changes.push_back({kSpecList, MakeSpecKey(it->second), names.at(it->first)});
    }
    for (const auto& [specId, newId] : renumbered)
        changes.push_back({kProjectSpecs, MakeSpecKey(newId), names.at(specId)});
    for (const auto& e : specs.Entries()) {
        if (!e.section.starts_with(kLineSpecsPrefix))
            continue;
        std::wstring list;
        for (std::int32_t specId : SplitList(e.value)) {
            if (const auto it = renumbered.find(specId); it != renumbered.end())
                specId = it->second;
            else if (!kept.contains(specId))
                continue;
            list += (list.empty() ? L"" : L",") + MakeSpecKey(specId);
        }
        if (list != e.value)
            changes.push_back({e.section, e.key, list});
    }
    return changes;
}

} // namespace

std::wstring CVX2D_SpecRegister::SpecsFolder() const {
    const std::wstring specs = m_projects.Datafiles().File(L"Specs");
    return specs.empty() ? specs : specs + kPathSeparator;
}

std::wstring CVX2D_SpecRegister::SpecFileOf(std::int32_t projectId) const {
    return m_projects.StandardFile(projectId, kSpecFile);
}

bool CVX2D_SpecRegister::OpenRegisterForUpdate(CVX2D_IniFile& reg) const {
    reg.SetAutoSave(false);
    const std::wstring path = CVX2D_ProjectSpecs(m_projects).GetSpecRegisterPath();
    return !path.empty() && reg.OpenForUpdate(path) == CVX2D_IniFile::eOk;
}

bool CVX2D_SpecRegister::Agreed(const std::wstring& question) const {
    return Prompter().Ask({question, L"", EPromptButtons::YesNo, EPromptIcon::Exclamation,
                           EPromptAnswer::No}) == EPromptAnswer::Yes;
}

std::vector<SProjectInfo> CVX2D_SpecRegister::Losing(const std::vector<SProjectInfo>& checking,
                                                     std::int32_t specId,
                                                     const SSpecPlace& place) const {
    std::vector<SProjectInfo> losing;
    const SSpecInfo moved{specId, L"", place.scope, place.ownerId};
    for (const auto& standard : checking) {
        if (!MayUse(moved, standard.id, ClientOf(standard.id)))
            losing.push_back(standard);
    }
    return losing;
}

ESpecResult CVX2D_SpecRegister::LocationFolder(const SSpecPlace& place,
                                               std::wstring& folder) const {
    return Location(place, folder, true);
}

ESpecResult CVX2D_SpecRegister::Location(const SSpecPlace& place, std::wstring& folder,
                                         bool newPlace, std::int32_t overrideId,
                                         const std::wstring& overrideFolder) const {
    folder.clear();
    switch (place.scope) {
    case eSpecProject: {
        if (place.ownerId < 1 || m_projects.GetProjectName(place.ownerId, true, true).empty())
            return eSpecInvalidProjectId;
        if (place.ownerId == overrideId) {
            folder = WithTrailingSeparator(overrideFolder);
            return eSpecOk;
        }
        return m_projects.GetProjectFolder(place.ownerId, folder) == eProjectOk
                   ? eSpecOk
                   : eSpecCantGetLocationFolder;
    }
    case eSpecClient: {
        // A deleted client's specs are still where they were.
        const auto ids = newPlace ? CVX2D_ClientRegistry(m_projects.Datafiles()).GetClientIds()
                                  : std::vector<std::int32_t>{place.ownerId};
        if (place.ownerId < 1 || std::find(ids.begin(), ids.end(), place.ownerId) == ids.end() ||
            SpecsFolder().empty())
            return eSpecCantGetLocationFolder;
        folder = SpecsFolder() + MakeClientKey(place.ownerId) + kPathSeparator;
        return eSpecOk;
    }
    default:
        if (SpecsFolder().empty())
            return eSpecCantGetLocationFolder;
        folder = SpecsFolder() + L"Common" + kPathSeparator;
        return eSpecOk;
    }
}

std::wstring CVX2D_SpecRegister::CurrentFolder(const SSpecInfo& spec) const {
    std::wstring folder;
    if (Location(PlaceOf(spec), folder) != eSpecOk)
        return {};
    return folder + MakeSpecKey(spec.id);
}

bool CVX2D_SpecRegister::MakeLocation(const std::wstring& folder) const {
    // Only the installation makes a datafiles folder.
    if (!m_projects.Datafiles().Exists())
        return false;
    std::error_code ec;
    fs::create_directories(platform::ToPath(WithoutTrailingSeparator(folder)), ec);
    return IsDir(folder);
}

ESpecResult CVX2D_SpecRegister::FindSpec(std::int32_t specId, SSpecInfo& spec) const {
    if (specId < 1)
        return eSpecInvalidId;
    std::vector<SSpecInfo> specs;
    if (const ESpecResult read = CVX2D_ProjectSpecs(m_projects).GetSpecRegister(specs);
        read != eSpecOk)
        return read;
    for (const auto& found : specs) {
        if (found.id == specId) {
            spec = found;
            return eSpecOk;
        }
    }
    return eSpecCantFind;
}

ESpecResult CVX2D_SpecRegister::SpecFolder(std::int32_t specId, std::wstring& folder) const {
    folder.clear();
    SSpecInfo spec;
    if (const ESpecResult found = FindSpec(specId, spec); found != eSpecOk)
        return found;
    folder = CurrentFolder(spec);
    if (folder.empty())
        return eSpecCantGetLocationFolder;
    folder += kPathSeparator;
    return eSpecOk;
}

std::wstring CVX2D_SpecRegister::DestinationOf(const std::wstring& folder) const {
    const std::wstring& root = m_projects.Datafiles().Root();
    std::wstring relative = !root.empty() && folder.starts_with(root) ? folder.substr(root.size())
                                                                      : std::wstring(folder);
    std::replace(relative.begin(), relative.end(), L'/', L'\\');
    if (!relative.empty() && relative.back() != L'\\')
        relative += L'\\';
    return relative;
}

bool CVX2D_SpecRegister::MayUse(const SSpecInfo& spec, std::int32_t projectId,
                                std::int32_t clientId) {
    switch (spec.scope) {
    case eSpecClient:
        return clientId > 0 && spec.ownerId == clientId;
    case eSpecProject:
        return spec.ownerId == projectId;
    default:
        return true;
    }
}

std::int32_t CVX2D_SpecRegister::ClientOf(std::int32_t projectId) const {
    std::int32_t clientId = 0;
    std::wstring clientName;
    if (!CVX2D_ClientRegistry(m_projects.Datafiles())
             .FindClientOfProject(projectId, clientId, clientName))
        return 0;
    return clientId;
}

ESpecResult CVX2D_SpecRegister::SpecsFor(std::int32_t projectId,
                                         std::vector<SSpecInfo>& specs) const {
    specs.clear();
    std::vector<SSpecInfo> all;
    if (const ESpecResult read = CVX2D_ProjectSpecs(m_projects).GetSpecRegister(all);
        read != eSpecOk)
        return read;
    const std::int32_t clientId = ClientOf(projectId);
    for (auto& spec : all) {
        if (MayUse(spec, projectId, clientId))
            specs.push_back(std::move(spec));
    }
    return eSpecOk;
}

ESpecResult CVX2D_SpecRegister::StandardsChecking(std::int32_t specId,
                                                  std::vector<SProjectInfo>& standards) const {
    standards.clear();
    SSpecInfo spec;
    if (const ESpecResult found = FindSpec(specId, spec); found != eSpecOk)
        return found;
    std::vector<SProjectInfo> all;
    if (m_projects.ListProjects(true, true, all) != eProjectOk)
        return eSpecCantOpenDatafile;
    for (const auto& standard : all) {
        // Only its owner may check a standard's spec; look no further.
        if (spec.scope == eSpecProject && standard.id != spec.ownerId)
            continue;
        CVX2D_IniFile file;
        const std::wstring path = SpecFileOf(standard.id);
        if (path.empty() || !Exists(path) || !OpenIfPresent(file, path))
            continue;
        if (!CVX2D_ProjectSpecs::GetCheckedSpecName(file, specId).empty())
            standards.push_back(standard);
    }
    return eSpecOk;
}

ESpecResult CVX2D_SpecRegister::StandardsLosing(std::int32_t specId, const SSpecPlace& place,
                                                std::vector<SProjectInfo>& standards) const {
    std::vector<SProjectInfo> checking;
    if (const ESpecResult found = StandardsChecking(specId, checking); found != eSpecOk)
        return found;
    standards = Losing(checking, specId, place);
    return eSpecOk;
}

std::wstring CVX2D_SpecRegister::PlaceText(const SSpecPlace& place) const {
    if (place.scope == eSpecProject) {
        const std::wstring name = m_projects.GetProjectName(place.ownerId, true, true);
        return name.empty() ? fmt::format(L"standard {}", place.ownerId)
                            : fmt::format(L"standard '{}'", name);
    }
    if (place.scope == eSpecClient) {
        const std::wstring name =
            CVX2D_ClientRegistry(m_projects.Datafiles()).GetClientName(place.ownerId);
        return name.empty() ? fmt::format(L"client {}", place.ownerId)
                            : fmt::format(L"client '{}'", name);
    }
    return L"the common specs";
}

std::wstring CVX2D_SpecRegister::MoveQuestion(const SSpecInfo& spec, const SSpecPlace& place,
                                              const std::vector<SProjectInfo>& losing) const {
    return fmt::format(L"Spec '{}' is checked by {}, which cannot use it once it belongs to "
                       L"{}:\n{}\n\nMove it and uncheck it there?",
                       spec.name, losing.size() == 1 ? L"this standard" : L"these standards",
                       PlaceText(place), Names(losing));
}

std::wstring CVX2D_SpecRegister::DeleteQuestion(const SSpecInfo& spec,
                                                const std::vector<SProjectInfo>& checking) {
    if (checking.empty())
        return fmt::format(L"Delete spec '{}' and its folder for good?", spec.name);
    return fmt::format(L"Spec '{}' is checked by {}:\n{}\n\nDelete it and its folder for good, "
                       L"and uncheck it there?",
                       spec.name, checking.size() == 1 ? L"this standard" : L"these standards",
                       Names(checking));
}

std::wstring CVX2D_SpecRegister::CreateErrorText(const std::wstring& name) {
    return fmt::format(L"Error creating spec '{}'.", name);
}

std::wstring CVX2D_SpecRegister::RenameErrorText(const std::wstring& oldName,
                                                 const std::wstring& newName) {
    return fmt::format(L"Error renaming spec '{}' to '{}'.", oldName, newName);
}

std::wstring CVX2D_SpecRegister::MoveErrorText(const std::wstring& name,
                                               const SSpecPlace& place) const {
    return fmt::format(L"Error moving spec '{}' to {}.", name, PlaceText(place));
}

std::wstring CVX2D_SpecRegister::CopyErrorText(const std::wstring& name) {
    return fmt::format(L"Error copying spec '{}'.", name);
}

std::wstring CVX2D_SpecRegister::DeleteErrorText(const std::wstring& name) {
    return fmt::format(L"Error deleting spec '{}'.", name);
}

std::wstring CVX2D_SpecRegister::ReasonText(ESpecResult result, const std::wstring& name) {
    std::wstring text = CVX2D_ProjectSpecs::GetErrorText(result);
    const std::wstring problem = NameProblem(TrimBlanks(name));
    if (result == eSpecInvalidName && !problem.empty())
        text += L": " + problem;
    return text;
}

ESpecResult CVX2D_SpecRegister::CreateSpec(const std::wstring& name, const SSpecPlace& place,
                                           std::int32_t& id) {
    return MakeSpec(0, name, place, id);
}

ESpecResult CVX2D_SpecRegister::CopySpec(std::int32_t specId, const std::wstring& name,
                                         const SSpecPlace& place, std::int32_t& id) {
    id = 0;
    return specId < 1 ? eSpecInvalidId : MakeSpec(specId, name, place, id);
}

// Creating is copying nothing: `specId` 0 gives an empty folder.
ESpecResult CVX2D_SpecRegister::MakeSpec(std::int32_t specId, const std::wstring& rawName,
                                         const SSpecPlace& place, std::int32_t& id) {
    id = 0;
    const std::wstring name = TrimBlanks(rawName);
    if (!IsValidName(name))
        return eSpecInvalidName;
    std::wstring parent;
    if (const ESpecResult located = Location(place, parent, true); located != eSpecOk)
        return located;
    CVX2D_IniFile reg;
    if (!OpenRegisterForUpdate(reg))
        return eSpecCantOpenDatafile;
    SSpecInfo source;
    if (specId > 0 && !Lookup(reg, specId, source))
        return eSpecCantFind;
    if (NameTaken(reg, name, place, 0))
        return eSpecAlreadyExists;
    if (!MakeLocation(parent))
        return eSpecCantGetLocationFolder;

    CEntryChanges changes;
    const std::int32_t newId = AllocateIds(
        reg, 1, [&](std::int32_t n) { return Exists(parent + MakeSpecKey(n)); }, changes)[0];
    const std::wstring key = MakeSpecKey(newId);
    const std::wstring folder = parent + key;
    const std::wstring sourceFolder = specId > 0 ? CurrentFolder(source) : L"";
    CVX2D_FolderTree& tree = m_projects.FolderTree();
    CUndo undo;
    // A spec whose folder has gone still gets one of its own.
    const bool made =
        IsDir(sourceFolder) ? tree.CopyTree(sourceFolder, folder) : tree.MakeFolder(folder);
    if (!made)
        return eSpecCantCreateFolder;
    undo.Add([&tree, folder] { tree.DeleteTree(folder); });
    changes.push_back({kSpecList, key, name});
    for (auto& change : PlaceChanges(key, place))
        changes.push_back(std::move(change));
    if (!SaveChanges(reg, changes, undo))
        return eSpecCantOpenDatafile;
    if (place.scope == eSpecProject &&
        !ChangeFile(parent + kSpecFile, {{kProjectSpecs, key, name}}, undo))
        return eSpecCantOpenDatafile;
    undo.Done();
    id = newId;
    return eSpecOk;
}

ESpecResult CVX2D_SpecRegister::RenameSpec(std::int32_t specId, const std::wstring& rawName) {
    if (specId < 1)
        return eSpecInvalidId;
    const std::wstring name = TrimBlanks(rawName);
    if (!IsValidName(name))
        return eSpecInvalidName;
    std::vector<SProjectInfo> checking;
    if (const ESpecResult found = StandardsChecking(specId, checking); found != eSpecOk)
        return found;
    CVX2D_IniFile reg;
    if (!OpenRegisterForUpdate(reg))
        return eSpecCantOpenDatafile;
    SSpecInfo spec;
    if (!Lookup(reg, specId, spec))
        return eSpecCantFind;
    if (NameTaken(reg, name, PlaceOf(spec), specId))
        return eSpecAlreadyExists;
    if (name == spec.name)
        return eSpecOk;
    const std::wstring key = MakeSpecKey(specId);
    CUndo undo;
    if (!SaveChanges(reg, {{kSpecList, key, name}}, undo))
        return eSpecCantOpenDatafile;
    // The checked name is kept in each standard that checks it.
    std::map<std::int32_t, CEntryChanges> files;
    for (const auto& standard : checking)
        files[standard.id].push_back({kSpecList, key, name, true});
    if (spec.scope == eSpecProject)
        files[spec.ownerId].push_back({kProjectSpecs, key, name});
    if (!ChangeSpecFiles(m_projects, files, undo))
        return eSpecCantOpenDatafile;
    undo.Done();
    return eSpecOk;
}

ESpecResult CVX2D_SpecRegister::MoveSpec(std::int32_t specId, const SSpecPlace& place,
                                         bool confirmed) {
    SSpecInfo spec;
    if (const ESpecResult found = FindSpec(specId, spec); found != eSpecOk)
        return found;
    std::wstring parent;
    if (const ESpecResult located = Location(place, parent, true); located != eSpecOk)
        return located;
    if (PlaceOf(spec) == place)
        return eSpecOk;
    std::vector<SProjectInfo> checking;
    if (const ESpecResult found = StandardsChecking(specId, checking); found != eSpecOk)
        return found;
    const std::vector<SProjectInfo> losing = Losing(checking, specId, place);
    if (!losing.empty() && !confirmed && !Agreed(MoveQuestion(spec, place, losing)))
        return eSpecCancelled;

    CVX2D_IniFile reg;
    if (!OpenRegisterForUpdate(reg))
        return eSpecCantOpenDatafile;
    if (!Lookup(reg, specId, spec))
        return eSpecCantFind;
    if (NameTaken(reg, spec.name, place, specId))
        return eSpecAlreadyExists;
    if (!MakeLocation(parent))
        return eSpecCantGetLocationFolder;
    const std::wstring key = MakeSpecKey(specId);
    const std::wstring from = CurrentFolder(spec);
    const std::wstring to = parent + key;
    CVX2D_FolderTree& tree = m_projects.FolderTree();
    const std::vector<std::int32_t> affected = IdsOf(checking);
    bool wroteDestinations = false;
    CUndo undo;
    // Runs last: the destinations as the restored files have them.
    undo.Add([&] {
        if (wroteDestinations)
            static_cast<void>(WriteDestinations(affected));
    });
    if (IsDir(from)) {
        if (!tree.MoveFolder(from, to))
            return eSpecErrorMovingFolder;
        undo.Add([&tree, from, to] { tree.MoveFolder(to, from); });
    } else {
        if (!tree.MakeFolder(to))
            return eSpecCantCreateFolder;
        undo.Add([&tree, to] { tree.DeleteTree(to); });
    }
    if (!SaveChanges(reg, PlaceChanges(key, place), undo))
        return eSpecCantOpenDatafile;
    std::map<std::int32_t, CEntryChanges> files;
    if (spec.scope == eSpecProject)
        files[spec.ownerId].push_back({kProjectSpecs, key, L""});
    if (place.scope == eSpecProject)
        files[place.ownerId].push_back({kProjectSpecs, key, spec.name});
    for (const auto& standard : losing)
        files[standard.id].push_back({kSpecList, key, L""});
    if (!ChangeSpecFiles(m_projects, files, undo))
        return eSpecCantOpenDatafile;
    wroteDestinations = true;
    if (WriteDestinations(affected) != eSpecOk)
        return eSpecCantOpenDatafile;
    undo.Done();
    return eSpecOk;
}

ESpecResult CVX2D_SpecRegister::DeleteSpec(std::int32_t specId, bool confirmed) {
    SSpecInfo spec;
    if (const ESpecResult found = FindSpec(specId, spec); found != eSpecOk)
        return found;
    std::vector<SProjectInfo> checking;
    if (const ESpecResult found = StandardsChecking(specId, checking); found != eSpecOk)
        return found;
    if (!confirmed && !Agreed(DeleteQuestion(spec, checking)))
        return eSpecCancelled;

    CVX2D_IniFile reg;
    if (!OpenRegisterForUpdate(reg))
        return eSpecCantOpenDatafile;
    if (!Lookup(reg, specId, spec))
        return eSpecCantFind;
    const std::wstring key = MakeSpecKey(specId);
    const std::wstring folder = CurrentFolder(spec);
    const std::wstring aside = folder + L" (deleted)";
    CVX2D_FolderTree& tree = m_projects.FolderTree();
    const std::vector<std::int32_t> affected = IdsOf(checking);
    bool wroteDestinations = false;
    CUndo undo;
    undo.Add([&] {
        if (wroteDestinations)
            static_cast<void>(WriteDestinations(affected));
    });
    // Aside first: the register must not lose a spec whose folder stays.
    const bool hasFolder = IsDir(folder);
    if (hasFolder) {
        if (Exists(aside) || !tree.MoveFolder(folder, aside))
            return eSpecCantDeleteFolder;
        undo.Add([&tree, folder, aside] { tree.MoveFolder(aside, folder); });
    }
    CEntryChanges changes = PlaceChanges(key, {});
    changes.push_back({kSpecList, key, L""});
    if (!SaveChanges(reg, changes, undo))
        return eSpecCantOpenDatafile;
    std::map<std::int32_t, CEntryChanges> files;
    for (const auto& standard : checking)
        files[standard.id].push_back({kSpecList, key, L""});
    if (spec.scope == eSpecProject)
        files[spec.ownerId].push_back({kProjectSpecs, key, L""});
    if (!ChangeSpecFiles(m_projects, files, undo))
        return eSpecCantOpenDatafile;
    wroteDestinations = true;
    if (WriteDestinations(affected) != eSpecOk)
        return eSpecCantOpenDatafile;
    // What a failed delete leaves of the folder goes back in its place.
    if (hasFolder && !tree.DeleteTree(aside))
        return eSpecCantDeleteFolder;
    undo.Done();
    return eSpecOk;
}

ESpecResult CVX2D_SpecRegister::CheckSpec(std::int32_t projectId, std::int32_t specId) {
    const CVX2D_ProjectSpecs specs(m_projects);
    std::vector<std::int32_t> before;
    const bool wasChecked = specs.GetCheckedSpecs(projectId, before) == eSpecOk &&
                            std::find(before.begin(), before.end(), specId) != before.end();
    if (const ESpecResult checked = specs.CheckSpec(projectId, specId); checked != eSpecOk)
        return checked;
    if (WriteDestinations({projectId}) == eSpecOk)
        return eSpecOk;
    if (!wasChecked)
        static_cast<void>(specs.UncheckSpec(projectId, specId));
    return eSpecCantOpenDatafile;
}

ESpecResult CVX2D_SpecRegister::UncheckSpec(std::int32_t projectId, std::int32_t specId) {
    const CVX2D_ProjectSpecs specs(m_projects);
    std::vector<std::int32_t> ids;
    std::vector<std::wstring> names;
    static_cast<void>(specs.GetCheckedSpecs(projectId, ids, names));
    std::wstring name;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (ids[i] == specId)
            name = names[i];
    }
    if (const ESpecResult unchecked = specs.UncheckSpec(projectId, specId); unchecked != eSpecOk)
        return unchecked;
    if (WriteDestinations({projectId}) == eSpecOk)
        return eSpecOk;
    CUndo none;
    ChangeFile(SpecFileOf(projectId), {{kSpecList, MakeSpecKey(specId), name}}, none);
    none.Done();
    return eSpecCantOpenDatafile;
}

ESpecResult CVX2D_SpecRegister::WriteDestinations(const std::vector<std::int32_t>& projectIds) {
    return WriteDestinations(projectIds, 0, {});
}

ESpecResult CVX2D_SpecRegister::WriteDestinations(const std::vector<std::int32_t>& projectIds,
                                                  std::int32_t overrideId,
                                                  const std::wstring& overrideFolder) {
    if (projectIds.empty())
        return eSpecOk;
    std::vector<SSpecInfo> all;
    if (const ESpecResult read = CVX2D_ProjectSpecs(m_projects).GetSpecRegister(all);
        read != eSpecOk)
        return read;
    std::map<std::int32_t, const SSpecInfo*> byId;
    for (const auto& spec : all)
        byId[spec.id] = &spec;
    CSpecDestinationMap sections;
    for (std::int32_t projectId : projectIds) {
        auto& destinations = sections[projectId];
        const std::wstring path = projectId == overrideId
                                      ? WithTrailingSeparator(overrideFolder) + kSpecFile
                                      : SpecFileOf(projectId);
        CVX2D_IniFile file;
        if (path.empty())
            continue; // a standard without a folder checks nothing
        if (!OpenIfPresent(file, path))
            return eSpecCantOpenDatafile;
        for (const auto& e : file.Entries()) {
            if (e.section != kSpecList || e.value.empty())
                continue;
            const auto spec = byId.find(ParseSpecKey(e.key));
            std::wstring folder;
            if (spec == byId.end() || Location(PlaceOf(*spec->second), folder, false, overrideId,
                                               overrideFolder) != eSpecOk)
                continue;
            destinations.push_back(
                {spec->first, DestinationOf(folder + MakeSpecKey(spec->first) + kPathSeparator)});
        }
    }
    return m_destinations.Replace(sections) ? eSpecOk : eSpecCantOpenDatafile;
}

bool CVX2D_SpecRegister::Arrived(std::int32_t id, std::int32_t sourceId,
                                 const std::wstring& rawFolder) {
    const std::wstring folder = WithTrailingSeparator(rawFolder);
    const std::wstring specPath = folder + kSpecFile;
    CVX2D_IniFile specs;
    if (!OpenIfPresent(specs, specPath))
        return false;
    const bool checks = std::any_of(specs.Entries().begin(), specs.Entries().end(),
                                    [](const auto& e) { return e.section == kSpecList; });
    // A standard without specs, as most are, costs no lock.
    std::vector<SSpecInfo> registered;
    if (CVX2D_ProjectSpecs(m_projects).GetSpecRegister(registered) != eSpecOk)
        return false;
    if (!checks && OwnSpecs(folder, specs, registered, sourceId).empty())
        return true;

    CVX2D_IniFile reg;
    if (!OpenRegisterForUpdate(reg))
        return false;
    registered = CVX2D_ProjectSpecs::SpecsOf(reg);
    const std::map<std::int32_t, std::wstring> own = OwnSpecs(folder, specs, registered, sourceId);

    CVX2D_FolderTree& tree = m_projects.FolderTree();
    bool wroteDestinations = false;
    CUndo undo;
    undo.Add([&] {
        if (wroteDestinations)
            static_cast<void>(WriteDestinations({id}, id, folder));
    });
    // Out of the way first: an arriving folder may have the name another
    // one gets.
    std::map<std::int32_t, std::wstring> parked;
    for (const auto& [specId, name] : own) {
        const std::wstring from = folder + MakeSpecKey(specId);
        if (!IsDir(from))
            continue;
        const std::wstring aside = from + L" (arriving)";
        if (Exists(aside) || !tree.MoveFolder(from, aside))
            return false;
        undo.Add([&tree, from, aside] { tree.MoveFolder(aside, from); });
        parked[specId] = aside;
    }
    CEntryChanges changes;
    const auto newIds = AllocateIds(
        reg, own.size(), [&](std::int32_t n) { return Exists(folder + MakeSpecKey(n)); }, changes);
    std::map<std::int32_t, std::int32_t> renumbered;
    for (const auto& [specId, name] : own) {
        const std::int32_t newId = newIds[renumbered.size()];
        renumbered[specId] = newId;
        const std::wstring to = folder + MakeSpecKey(newId);
        const auto was = parked.find(specId);
        if (was != parked.end() ? !tree.MoveFolder(was->second, to) : !tree.MakeFolder(to))
            return false;
        if (was != parked.end())
            undo.Add([&tree, to, aside = was->second] { tree.MoveFolder(to, aside); });
        else
            undo.Add([&tree, to] { tree.DeleteTree(to); });
        changes.push_back({kSpecList, MakeSpecKey(newId), name});
        changes.push_back({kProjectSpecs, MakeSpecKey(newId), MakeProjectKey(id)});
    }
    if (!SaveChanges(reg, changes, undo))
        return false;

    // Another spec's check names the same spec within this installation (a
    // copy), or where this register has a spec of that id and name.
    const auto keep = [&](std::int32_t specId, const std::wstring& name) {
        return sourceId > 0 ||
               std::any_of(registered.begin(), registered.end(), [&](const SSpecInfo& spec) {
                   return spec.id == specId && spec.name == name;
               });
    };
    if (!ChangeFile(specPath, RenumberedSpecFile(specs, renumbered, own, keep), undo))
        return false;
    wroteDestinations = true;
    if (WriteDestinations({id}, id, folder) != eSpecOk)
        return false;
    undo.Done();
    return true;
}

bool CVX2D_SpecRegister::Moved(std::int32_t id, const std::wstring& folder) {
    return WriteDestinations({id}, id, folder) == eSpecOk;
}

void CVX2D_SpecRegister::Purged(std::int32_t id) {
    std::vector<SSpecInfo> registered;
    const bool read = CVX2D_ProjectSpecs(m_projects).GetSpecRegister(registered) == eSpecOk;
    const bool owns =
        std::any_of(registered.begin(), registered.end(), [id](const SSpecInfo& spec) {
            return spec.scope == eSpecProject && spec.ownerId == id;
        });
    CVX2D_IniFile reg;
    // Most standards own no spec: their purge takes no lock.
    if ((!read || owns) && OpenRegisterForUpdate(reg)) {
        CEntryChanges changes;
        for (const auto& spec : CVX2D_ProjectSpecs::SpecsOf(reg)) {
            if (spec.scope != eSpecProject || spec.ownerId != id)
                continue;
            changes.push_back({kProjectSpecs, MakeSpecKey(spec.id), L""});
            changes.push_back({kSpecList, MakeSpecKey(spec.id), L""});
        }
        CUndo none;
        SaveChanges(reg, changes, none);
        none.Done();
    }
    m_destinations.Replace({{id, {}}});
}
