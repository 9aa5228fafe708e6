#include "store/ProjectRegistry.h"

#include "datafile/Ids.h"
#include "datafile/IniFile.h"
#include "datafile/Names.h"
#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"
#include "store/FolderTree.h"
#include "store/LineCounter.h"

#include <algorithm>
#include <filesystem>
#include <fmt/xchar.h>
#include <set>
#include <tuple>

namespace fs = std::filesystem;

namespace {

const std::wstring kGeneral = L"General";
const std::wstring kProjectList = L"ProjectList";
const std::wstring kDeletedProjects = L"DeletedProjects";
const std::wstring kLastProjectId = L"LastProjectId";
// The longest key a new standard's folder name can start with.
const std::wstring kLongestPrefix = L"VX2D_PRJ_2147483647 - ";

bool IsDir(const std::wstring& path) {
    std::error_code ec;
    return fs::is_directory(platform::ToPath(WithoutTrailingSeparator(path)), ec);
}

bool Exists(const std::wstring& path) {
    std::error_code ec;
    return fs::exists(platform::ToPath(WithoutTrailingSeparator(path)), ec);
}

// Renames like the platform's move: never onto something else that exists.
// On a case-insensitive file system (Windows, an SMB share) a new name that
// differs only in letter case names the folder itself: that is a rename.
bool MoveFolder(const std::wstring& from, const std::wstring& to) {
    const fs::path source = platform::ToPath(WithoutTrailingSeparator(from));
    const fs::path target = platform::ToPath(WithoutTrailingSeparator(to));
    if (Exists(to) && !platform::SameFile(source, target))
        return false; // another folder has that name
    std::error_code ec;
    platform::Rename(source, target, ec);
    return !ec;
}

// Sub-folders of the standards folder whose names start with `prefix` in any
// letter case, sorted by name so the first is always the same one.
std::vector<std::wstring> FoldersStartingWith(const std::wstring& projectsFolder,
                                              const std::wstring& prefix, bool& listed) {
    std::vector<std::wstring> names;
    std::error_code ec;
    fs::directory_iterator it(platform::ToPath(projectsFolder), ec);
    listed = !ec;
    if (ec)
        return names;
    const std::wstring upperPrefix = ToUpper(prefix);
    for (; it != fs::directory_iterator(); it.increment(ec)) {
        std::error_code typeError;
        if (!it->is_directory(typeError))
            continue;
        std::wstring name = platform::FromPath(it->path().filename());
        if (ToUpper(name).starts_with(upperPrefix))
            names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end());
    return names;
}

// Standards of the 2015 layout name their bill-of-materials folders after
// the old application names; bring them to the current names.
void UpgradeOldFolderLayout(const std::wstring& folder) {
    static const std::pair<const wchar_t*, const wchar_t*> kRenames[] = {
        {L"Flow BOMs", L"PID BOMs"},
        {L"Iso BOMs", L"Isometric BOMs"},
    };
    for (const auto& [from, to] : kRenames) {
        const std::wstring oldFolder = folder + from;
        if (IsDir(oldFolder))
            MoveFolder(oldFolder, folder + to);
    }
}

// A standard made from a template gets its own identity at once, so that
// every look at it shows the same GUID.
void GiveNewGuid(const std::wstring& folder) {
    const std::wstring path = WithTrailingSeparator(folder) + L"General.ini";
    if (!Exists(path))
        return;
    CVX2D_IniFile general;
    if (general.Open(path) != CVX2D_IniFile::eOk)
        return;
    general.SetSection(L"General");
    CGuid guid;
    general.GetGuid(L"ProjectGuid", guid, CGuid{});
    if (guid.IsNull())
        general.SetGuid(L"ProjectGuid", NewGuid());
    general.Save();
}

int ProjectVersionOf(const std::wstring& folder) {
    CVX2D_IniFile general;
    general.SetAutoSave(false);
    general.Open(folder + L"General.ini");
    general.SetSection(L"General");
    int version = 0;
    general.GetInt(L"ProjectVersion", version, 2015);
    return version;
}

} // namespace

bool CVX2D_ProjectRegistry::OpenForReading(CVX2D_IniFile& ini) const {
    ini.SetAutoSave(false);
    const std::wstring path = m_datafiles.ProjectDatafile();
    if (path.empty())
        return false;
    // A datafiles folder that has no registry yet holds no standards.
    return ini.Open(path) == CVX2D_IniFile::eOk || !Exists(path);
}

bool CVX2D_ProjectRegistry::OpenRegistryForUpdate(CVX2D_IniFile& ini) const {
    const std::wstring path = m_datafiles.ProjectDatafile();
    if (path.empty() || ini.LockForUpdate(path) != CVX2D_IniFile::eOk)
        return false;
    // Under the lock nobody changes the file: when it is still the one last
    // read, that read is as good as a new one, and much cheaper on a share.
    return m_snapshot.Lend(path, ini) || ini.OpenForUpdate(path) == CVX2D_IniFile::eOk;
}

bool CVX2D_ProjectRegistry::SaveRegistry(CVX2D_IniFile& ini, bool done) const {
    if (ini.Save() != CVX2D_IniFile::eOk)
        return false;
    // Still under the lock: what was saved is what the file holds.
    m_snapshot.Keep(ini.GetPath(), ini, done);
    return true;
}

EProjectResult CVX2D_ProjectRegistry::CountProjects(std::size_t& live, std::size_t& deleted) const {
    live = deleted = 0;
    const CVX2D_IniFile* ini = Snapshot();
    if (!ini)
        return eProjectCantOpenDatafile;
    for (const auto& e : ini->Entries()) {
        if (e.section == kProjectList)
            ++live;
        else if (e.section == kDeletedProjects)
            ++deleted;
    }
    return eProjectOk;
}

CVX2D_IniFile* CVX2D_ProjectRegistry::Snapshot() const {
    const std::wstring path = m_datafiles.ProjectDatafile();
    return path.empty() ? nullptr : m_snapshot.Read(path);
}

std::wstring CVX2D_ProjectRegistry::LookupName(CVX2D_IniFile& ini, std::int32_t id, bool active,
                                               bool deleted) const {
    const std::wstring key = MakeProjectKey(id);
    std::wstring name;
    if (active) {
        ini.SetSection(kProjectList);
        name = ini.String(key);
    }
    if (name.empty() && deleted) {
        ini.SetSection(kDeletedProjects);
        name = ini.String(key);
    }
    return name;
}

std::wstring CVX2D_ProjectRegistry::GetProjectName(std::int32_t id, bool active,
                                                   bool deleted) const {
    CVX2D_IniFile* ini = id < 1 ? nullptr : Snapshot();
    return ini ? LookupName(*ini, id, active, deleted) : std::wstring();
}

std::wstring CVX2D_ProjectRegistry::FolderFor(std::int32_t id, const std::wstring& name) const {
    return m_datafiles.ProjectsFolder() + MakeProjectLabel(id, name);
}

EProjectResult CVX2D_ProjectRegistry::FindFolder(std::int32_t id, std::wstring name,
                                                 std::wstring& folder) const {
    folder.clear();
    const std::wstring projects = m_datafiles.ProjectsFolder();
    if (projects.empty())
        return eProjectCantGetLocationFolder;
    const std::wstring key = MakeProjectKey(id);
    const std::wstring base = projects + key;
    std::wstring candidate = name.empty() ? base : base + L" - " + name;

    if (!name.empty() && IsDir(base))
        MoveFolder(base, candidate);
    if (!name.empty() && !Exists(base) && IsDir(candidate)) {
        folder = WithTrailingSeparator(candidate);
        return eProjectOk;
    }

    std::wstring found;
    if (IsDir(base)) {
        found = base;
    } else {
        const std::wstring prefix = key + L" - ";
        bool listed = false;
        const auto matches = FoldersStartingWith(projects, prefix, listed);
        if (!matches.empty()) {
            found = projects + matches.front();
            if (name.empty()) {
                name = matches.front().substr(prefix.size());
                candidate = base + L" - " + name;
            }
        }
    }
    if (!found.empty() && !name.empty() && found != candidate)
        MoveFolder(found, candidate);
    if (!IsDir(candidate)) {
        // A folder that could not be moved to its current name (a read-only
        // share) is still the standard's folder.
        if (found.empty() || !IsDir(found))
            return eProjectCantGetLocationFolder;
        candidate = found;
    }
    folder = WithTrailingSeparator(candidate);
    return eProjectOk;
}

EProjectResult CVX2D_ProjectRegistry::GetProjectFolder(std::int32_t id,
                                                       std::wstring& folder) const {
    folder.clear();
    if (id < 1)
        return eProjectInvalidId;
    CVX2D_IniFile* ini = Snapshot();
    if (!ini)
        return eProjectCantOpenDatafile;
    return FindFolder(id, LookupName(*ini, id, true, true), folder);
}

std::wstring CVX2D_ProjectRegistry::StandardFile(std::int32_t id, const std::wstring& name) const {
    std::wstring folder;
    if (GetProjectFolder(id, folder) != eProjectOk || folder.empty())
        return {};
    return WithTrailingSeparator(folder) + name;
}

EProjectResult CVX2D_ProjectRegistry::ListProjects(bool active, bool deleted,
                                                   std::vector<SProjectInfo>& projects) const {
    projects.clear();
    const CVX2D_IniFile* ini = Snapshot();
    if (!ini)
        return eProjectCantOpenDatafile;
    for (const bool wantDeleted : {false, true}) {
        if (wantDeleted ? !deleted : !active)
            continue;
        const std::wstring& section = wantDeleted ? kDeletedProjects : kProjectList;
        for (const auto& e : ini->Entries()) {
            if (e.section == section)
                projects.push_back({ParseProjectKey(e.key), e.value, wantDeleted});
        }
    }
    return eProjectOk;
}

std::vector<std::int32_t> CVX2D_ProjectRegistry::GetProjectIds(bool active, bool deleted) const {
    std::vector<SProjectInfo> projects;
    // An unreadable registry lists nothing.
    static_cast<void>(ListProjects(active, deleted, projects));
    std::vector<std::int32_t> ids;
    for (const auto& project : projects)
        ids.push_back(project.id);
    return ids;
}

std::wstring CVX2D_ProjectRegistry::GetDefaultProjectName() const {
    CVX2D_IniFile* ini = Snapshot();
    CVX2D_IniFile none;
    return MakeDefaultProjectName(ini ? *ini : none);
}

std::wstring CVX2D_ProjectRegistry::TemplateFolderFor(const SNewProject& project) const {
    int number = project.templateNumber;
    if (number == 0)
        number = project.units == 0 ? 1 : 2;
    if (number == -1)
        return {};
    std::wstring name;
    if (number == 1)
        name = L"Metric";
    else if (number == 2)
        name = L"Imperial";
    else
        return L"?";
    if (project.oldFormat)
        name += L" 2015";
    return m_datafiles.TemplateFolder(name);
}

EProjectResult CVX2D_ProjectRegistry::RollBack(CVX2D_IniFile& ini, std::int32_t id,
                                               const std::wstring& createdFolder,
                                               EProjectResult failure) {
    if (!createdFolder.empty())
        Tree().DeleteTree(createdFolder);
    if (ini.Reload() != CVX2D_IniFile::eOk)
        return eProjectCantOpenDatafile;
    ini.SetSection(kGeneral);
    ini.SetLong(kLastProjectId, ini.Long(kLastProjectId, 0) - 1);
    ini.SetSection(kProjectList);
    ini.DeleteKey(MakeProjectKey(id));
    ini.Save();
    return failure;
}

std::int32_t CVX2D_ProjectRegistry::AllocateFreeId(CVX2D_IniFile& ini) const {
    bool listed = false;
    std::set<std::int32_t> used;
    for (const auto& name : FoldersStartingWith(m_datafiles.ProjectsFolder(), L"VX2D_PRJ_", listed))
        used.insert(ParseProjectKey(name));
    std::int32_t id = AllocateId(ini, kLastProjectId);
    while (used.contains(id))
        id = AllocateId(ini, kLastProjectId);
    return id;
}

EProjectResult CVX2D_ProjectRegistry::CreateProject(const SNewProject& project, std::int32_t& id) {
    id = 0;
    const std::wstring projects = m_datafiles.ProjectsFolder();
    if (!IsValidName(project.name, projects, kLongestPrefix))
        return eProjectInvalidName;
    const std::wstring name = TrimBlanks(project.name);
    const std::wstring templateFolder = TemplateFolderFor(project);
    if (project.templateNumber != -1 && !IsDir(templateFolder))
        return eProjectCantGetTemplateFolder;

    // The lock fails when the datafiles folder is missing: only the
    // installation makes one, never a standard that is being created.
    CVX2D_IniFile ini;
    if (m_datafiles.ProjectDatafile().empty() || !OpenRegistryForUpdate(ini))
        return eProjectCantOpenDatafile;
    std::error_code ec;
    fs::create_directory(platform::ToPath(WithoutTrailingSeparator(projects)), ec);
    if (!IsDir(projects))
        return eProjectCantCreateFolder;

    const std::int32_t newId = AllocateFreeId(ini);
    ini.SetSection(kProjectList);
    ini.SetString(MakeProjectKey(newId), name);
    if (!SaveRegistry(ini))
        return eProjectCantOpenDatafile;

    const std::wstring folder = FolderFor(newId, name);
    if (templateFolder.empty()) {
        if (!fs::create_directory(platform::ToPath(folder), ec))
            return RollBack(ini, newId, L"", eProjectCantCreateFolder);
    } else if (!Tree().CopyTree(templateFolder, folder)) {
        return RollBack(ini, newId, Exists(folder) ? folder : L"",
                        eProjectErrorCopyingTemplateFolder);
    }
    GiveNewGuid(folder);
    if (project.clientId >= 1 &&
        !CVX2D_ClientRegistry(m_datafiles).AddProjectToClient(project.clientId, newId))
        return RollBack(ini, newId, folder, eProjectCantOpenDatafile);
    id = newId;
    return eProjectOk;
}

EProjectResult CVX2D_ProjectRegistry::CopyProject(std::int32_t id, std::int32_t& newId,
                                                  std::wstring& newName,
                                                  const CProgress& progress) {
    newId = 0;
    newName.clear();
    if (id < 1)
        return eProjectInvalidId;
    CVX2D_IniFile ini;
    if (m_datafiles.ProjectDatafile().empty() || !OpenRegistryForUpdate(ini))
        return eProjectCantOpenDatafile;
    const std::wstring sourceName = LookupName(ini, id, true, true);
    const std::wstring copyName = MakeCopyName(sourceName);
    if (sourceName.empty() || !IsValidName(copyName, m_datafiles.ProjectsFolder(), kLongestPrefix))
        return eProjectInvalidName;

    const std::int32_t copyId = AllocateFreeId(ini);
    ini.SetSection(kProjectList);
    ini.SetString(MakeProjectKey(copyId), copyName);
    std::wstring sourceFolder;
    EProjectResult result = FindFolder(id, sourceName, sourceFolder);
    if (!SaveRegistry(ini))
        return eProjectCantOpenDatafile;

    const std::wstring folder = FolderFor(copyId, copyName);
    if (result == eProjectOk) {
        if (ProjectVersionOf(sourceFolder) < 2016)
            UpgradeOldFolderLayout(sourceFolder);
        if (!Tree().CopyTree(sourceFolder, folder, progress))
            result = eProjectErrorCopyingFolder;
    }
    if (result != eProjectOk)
        return RollBack(ini, copyId, Exists(folder) ? folder : L"", result);
    if (!RaiseLastLineId(m_datafiles, WithTrailingSeparator(folder) + L"Lines.ini"))
        return RollBack(ini, copyId, folder, eProjectCantOpenDatafile);
    // The copy's own specs get ids of their own, or the copy is undone.
    if (m_pContents && !m_pContents->Arrived(copyId, id, WithTrailingSeparator(folder)))
        return RollBack(ini, copyId, folder, eProjectErrorCopyingFolder);
    newId = copyId;
    newName = copyName;
    return eProjectOk;
}

// The registry under its lock, with the standard's name and folder; the
// registry's current section is the list that names the standard.
EProjectResult CVX2D_ProjectRegistry::OpenStandardForUpdate(CVX2D_IniFile& ini, std::int32_t id,
                                                            std::wstring& name,
                                                            std::wstring& folder) const {
    if (m_datafiles.ProjectDatafile().empty() || !OpenRegistryForUpdate(ini))
        return eProjectCantOpenDatafile;
    name = LookupName(ini, id, true, true);
    if (name.empty())
        return eProjectCantFind;
    const std::wstring list = ini.GetSection();
    const EProjectResult found = FindFolder(id, name, folder);
    ini.SetSection(list);
    return found;
}

std::wstring CVX2D_ProjectRegistry::StoredName(const std::wstring& name) {
    return TrimBlanks(name);
}

std::wstring CVX2D_ProjectRegistry::NameProblem(const std::wstring& name, std::int32_t id) const {
    return ::NameProblem(StoredName(name), m_datafiles.ProjectsFolder(),
                         id > 0 ? MakeProjectKey(id) + L" - " : kLongestPrefix);
}

EProjectResult CVX2D_ProjectRegistry::RenameProject(std::int32_t id, const std::wstring& rawName) {
    if (id < 1)
        return eProjectInvalidId;
    const std::wstring name = StoredName(rawName);
    if (name.empty() ||
        !IsValidName(name, m_datafiles.ProjectsFolder(), MakeProjectKey(id) + L" - "))
        return eProjectInvalidName;
    CVX2D_IniFile ini;
    std::wstring oldName, folder;
    if (const EProjectResult opened = OpenStandardForUpdate(ini, id, oldName, folder);
        opened != eProjectOk)
        return opened;
    const std::wstring list = ini.GetSection();
    const std::wstring from = WithoutTrailingSeparator(folder);
    const std::wstring to = FolderFor(id, name);
    const bool move = from != to;
    if (move && !MoveFolder(from, to))
        return eProjectErrorMovingFolder;
    // What points into the folder follows it, or the folder goes back.
    const auto follow = [&](const std::wstring& folder) {
        return !move || !m_pContents || m_pContents->Moved(id, WithTrailingSeparator(folder));
    };
    if (!follow(to)) {
        MoveFolder(to, from);
        return eProjectCantOpenDatafile;
    }
    ini.SetSection(list);
    ini.SetString(MakeProjectKey(id), name);
    if (!SaveRegistry(ini, true)) {
        // The registry still names the old folder: put it back there.
        if (move) {
            MoveFolder(to, from);
            follow(from);
        }
        return eProjectCantOpenDatafile;
    }
    return eProjectOk;
}

EProjectResult CVX2D_ProjectRegistry::DeleteProject(std::int32_t id) {
    return MoveBetweenLists(id, kProjectList, kDeletedProjects);
}

EProjectResult CVX2D_ProjectRegistry::RecoverProject(std::int32_t id) {
    return MoveBetweenLists(id, kDeletedProjects, kProjectList);
}

// Deleting and recovering move the standard's entry, with the name it has in
// either list, from one list to the other.
EProjectResult CVX2D_ProjectRegistry::MoveBetweenLists(std::int32_t id, const std::wstring& from,
                                                       const std::wstring& to) {
    if (id < 1)
        return eProjectInvalidId;
    bool found = true;
    const bool saved = UpdateDatafile(m_datafiles.ProjectDatafile(), [&](CVX2D_IniFile& ini) {
        const std::wstring name = LookupName(ini, id, true, true);
        found = !name.empty();
        if (!found)
            return false;
        const std::wstring key = MakeProjectKey(id);
        ini.SetSection(from);
        ini.DeleteKey(key);
        ini.SetSection(to);
        ini.SetString(key, name);
        return true;
    });
    if (!found)
        return eProjectCantFind;
    return saved ? eProjectOk : eProjectCantOpenDatafile;
}

EProjectResult CVX2D_ProjectRegistry::PurgeProject(std::int32_t id) {
    if (id < 1)
        return eProjectInvalidId;
    CVX2D_IniFile ini;
    std::wstring name, folder;
    if (const EProjectResult opened = OpenStandardForUpdate(ini, id, name, folder);
        opened != eProjectOk)
        return opened;
    const std::wstring key = MakeProjectKey(id);
    ini.SetSection(kProjectList);
    ini.DeleteKey(key);
    ini.SetSection(kDeletedProjects);
    ini.DeleteKey(key);
    // Nothing is deleted while the registry still names the standard.
    if (!SaveRegistry(ini))
        return eProjectCantOpenDatafile;
    if (!Tree().DeleteTree(folder)) {
        // The standard stays visible as deleted; the user sees it was not purged.
        if (ini.Reload() != CVX2D_IniFile::eOk)
            return eProjectCantOpenDatafile;
        ini.SetSection(kDeletedProjects);
        ini.SetString(key, name);
        if (!SaveRegistry(ini))
            return eProjectCantOpenDatafile;
        return eProjectOk;
    }
    if (m_pContents)
        m_pContents->Purged(id);
    return eProjectOk;
}

bool CVX2D_ProjectRegistry::ContentsArrived(std::int32_t id) {
    if (!m_pContents)
        return true;
    std::wstring folder;
    return GetProjectFolder(id, folder) == eProjectOk && m_pContents->Arrived(id, 0, folder);
}

namespace {

// Applies the registry check's rules to `ini`, given the folders of the
// standards folder; leaves it modified exactly when something needed repair.
// A standards folder that could not be listed at all (a share that is away)
// says nothing about which standards exist: then only the counter is raised.
// Each repair is added to `repair`.
void RepairRegistry(CVX2D_IniFile& ini, const std::vector<std::wstring>& folders,
                    bool foldersListed, SRegistryRepair& repair) {
    using EKind = SRegistryRepair::EKind;
    ini.SetSection(kGeneral);
    const std::int32_t lastBefore = ini.Long(kLastProjectId, 0);
    std::int32_t last = lastBefore;
    std::set<std::int32_t> listed;
    struct SListed {
        std::wstring section, key, name;
    };
    std::vector<SListed> entries;
    for (const auto& e : ini.Entries()) {
        if (e.section == kProjectList || e.section == kDeletedProjects) {
            const std::int32_t id = ParseProjectKey(e.key);
            last = std::max(last, id);
            listed.insert(id);
            entries.push_back({e.section, e.key, e.value});
        }
    }
    ini.SetSection(kGeneral);
    ini.SetLong(kLastProjectId, last);
    const auto noteCounter = [&] {
        ini.SetSection(kGeneral);
        const std::int32_t after = ini.Long(kLastProjectId, 0);
        if (after != lastBefore)
            repair.changes.push_back({EKind::eCounterRaised, after, L"", false});
        // Folders come in the order the disk lists them: report by id.
        std::stable_sort(repair.changes.begin(), repair.changes.end(),
                         [](const auto& x, const auto& y) {
                             return std::tie(x.kind, x.id) < std::tie(y.kind, y.id);
                         });
    };
    if (!foldersListed) {
        noteCounter();
        return;
    }

    std::set<std::int32_t> onDisk;
    for (const auto& folder : folders)
        onDisk.insert(ParseProjectKey(folder));
    for (const auto& entry : entries) {
        const std::int32_t id = ParseProjectKey(entry.key);
        if (!onDisk.contains(id)) {
            ini.SetSection(entry.section);
            ini.DeleteKey(entry.key);
            listed.erase(id);
            repair.changes.push_back(
                {EKind::eDropped, id, entry.name, entry.section == kDeletedProjects});
        }
    }
    for (const auto& folder : folders) {
        const std::int32_t id = ParseProjectKey(folder);
        if (id < 1 || listed.contains(id))
            continue;
        const auto dash = folder.find(L" - ");
        std::wstring name = dash == std::wstring::npos ? L"" : TrimBlanks(folder.substr(dash + 3));
        if (name.empty())
            name = fmt::format(L"Standard {}", id);
        ini.SetSection(kProjectList);
        ini.SetString(MakeProjectKey(id), name);
        listed.insert(id);
        repair.changes.push_back({EKind::eRegistered, id, name, false});
        ini.SetSection(kGeneral);
        if (id > ini.Long(kLastProjectId, 0))
            ini.SetLong(kLastProjectId, id);
    }
    noteCounter();
}

} // namespace

std::wstring RegistryRepairKindName(SRegistryRepair::EKind kind) {
    switch (kind) {
    case SRegistryRepair::EKind::eDropped:
        return L"dropped";
    case SRegistryRepair::EKind::eRegistered:
        return L"registered";
    case SRegistryRepair::EKind::eCounterRaised:
        return L"counter";
    }
    return L"";
}

std::vector<std::wstring> StandardFolderNames(const CVX2D_Datafiles& datafiles, bool& listed) {
    return FoldersStartingWith(datafiles.ProjectsFolder(), L"VX2D_PRJ_", listed);
}

SRegistryRepair PlanRegistryRepair(const CVX2D_IniFile& registry,
                                   const std::vector<std::wstring>& folders) {
    CVX2D_IniFile copy(registry);
    copy.SetAutoSave(false);
    SRegistryRepair repair;
    RepairRegistry(copy, folders, true, repair);
    return repair;
}

EProjectResult CVX2D_ProjectRegistry::CheckProjectRegistry(SRegistryRepair* repair, bool dryRun) {
    SRegistryRepair ignored;
    SRegistryRepair& found = repair ? *repair : ignored;
    found.changes.clear();
    bool folderListed = false;
    const auto folders = StandardFolderNames(m_datafiles, folderListed);
    // Decide on a plain read: a check that finds nothing to repair, as most
    // start-ups do, neither waits for the lock nor needs a writable share.
    CVX2D_IniFile ini;
    if (m_datafiles.ProjectDatafile().empty() || !OpenForReading(ini))
        return eProjectCantOpenDatafile;
    RepairRegistry(ini, folders, folderListed, found);
    if (!ini.IsModified() || dryRun)
        return eProjectOk;

    // Another workstation may have changed the registry since: repair what
    // is there now.
    CVX2D_IniFile update;
    update.SetAutoSave(false);
    if (!OpenRegistryForUpdate(update))
        return eProjectCantOpenDatafile;
    found.changes.clear();
    RepairRegistry(update, folders, folderListed, found);
    if (update.IsModified() && !SaveRegistry(update, true))
        return eProjectCantOpenDatafile;
    return eProjectOk;
}
