// The standard registry: "ProjectDatafile.ini" with its active and deleted
// lists, and the "Projects" folder with one sub-folder per standard. Every
// operation is one read-modify-write of the datafile under its lock.
#pragma once

#include "datafile/DatafileSnapshot.h"
#include "datafile/ProjectResult.h"
#include "store/Datafiles.h"
#include "store/FolderTree.h"
#include "store/Prompter.h"
#include "store/StandardContents.h"

#include <cstdint>
#include <string>
#include <vector>

class CVX2D_IniFile;

struct SProjectInfo {
    std::int32_t id = 0;
    std::wstring name;
    bool deleted = false;
};

// What a registry check repaired, or with `dryRun` would repair: entries
// without a folder dropped, folders no list named registered, the counter
// raised. Empty when the registry was in order.
struct SRegistryRepair {
    enum class EKind { eDropped, eRegistered, eCounterRaised };
    struct SChange {
        EKind kind = EKind::eDropped;
        std::int32_t id = 0; // the standard, or the counter's new value
        std::wstring name;   // the standard's name; empty for the counter
        bool deleted = false;
    };
    std::vector<SChange> changes;
    bool Empty() const { return changes.empty(); }
};

// "dropped", "registered", "counter".
std::wstring RegistryRepairKindName(SRegistryRepair::EKind kind);

// The names of the standard folders ("VX2D_PRJ_...", in any letter case) in
// the datafiles folder's "Projects", sorted; `listed` is false when the
// folder could not be read.
std::vector<std::wstring> StandardFolderNames(const CVX2D_Datafiles& datafiles, bool& listed);

// What the registry check would repair in `registry` as read, given the
// standard folders on disk; `registry` itself stays as it is.
SRegistryRepair PlanRegistryRepair(const CVX2D_IniFile& registry,
                                   const std::vector<std::wstring>& folders);

struct SNewProject {
    std::wstring name;
    int units = 0;          // 0 metric, anything else imperial
    int templateNumber = 0; // 1 metric, 2 imperial, -1 an empty folder, 0 chosen by units
    std::int32_t clientId = 0;
    bool oldFormat = false; // made from the templates of the 2015 layout
};

class CVX2D_ProjectRegistry {
public:
    CVX2D_ProjectRegistry(const CVX2D_Datafiles& datafiles, IPrompter& prompter)
        : m_datafiles(datafiles), m_prompter(prompter), m_defaultTree(prompter) {}

    // Copies and deletes folder trees through `tree` instead of the disk's
    // own service (a shell with progress, a test that makes a step fail).
    void SetFolderTree(CVX2D_FolderTree* tree) { m_pTree = tree; }
    // The folder tree service the registry uses, for whatever else keeps
    // folders in the datafiles folder.
    CVX2D_FolderTree& FolderTree() const { return m_pTree ? *m_pTree : m_defaultTree; }
    // Tells `contents` of copies, renames and purges of standards (nullptr:
    // nobody); it must outlive the registry's use.
    void SetContents(IStandardContents* contents) { m_pContents = contents; }
    // A new standard's folder was filled from an archive: what it holds is
    // registered for it. False when that failed (nothing of it registered).
    bool ContentsArrived(std::int32_t id);

    const CVX2D_Datafiles& Datafiles() const { return m_datafiles; }
    IPrompter& Prompter() const { return m_prompter; }

    std::wstring GetProjectName(std::int32_t id, bool active, bool deleted) const;
    // The standard's folder (ending in a separator). Moves a folder of the
    // old form, or one renamed outside the program, to "VX2D_PRJ_n - Name".
    EProjectResult GetProjectFolder(std::int32_t id, std::wstring& folder) const;
    // A file in the standard's folder ("Layers.ini"); empty when the standard
    // has no folder.
    std::wstring StandardFile(std::int32_t id, const std::wstring& name) const;
    std::vector<std::int32_t> GetProjectIds(bool active, bool deleted) const;
    // How many standards are live and how many deleted.
    EProjectResult CountProjects(std::size_t& live, std::size_t& deleted) const;
    // Ids, names and states from one read of the datafile, active first.
    EProjectResult ListProjects(bool active, bool deleted,
                                std::vector<SProjectInfo>& projects) const;
    std::wstring GetDefaultProjectName() const;

    EProjectResult CreateProject(const SNewProject& project, std::int32_t& id);
    // `progress` hears of the bytes copied; a stop from it rolls the copy
    // back like a failed one (eProjectErrorCopyingFolder).
    EProjectResult CopyProject(std::int32_t id, std::int32_t& newId, std::wstring& newName,
                               const CProgress& progress = {});
    EProjectResult RenameProject(std::int32_t id, const std::wstring& name);
    // Which rule `name` breaks as the name of standard `id` (0: a new one),
    // by the checks of CreateProject and RenameProject; empty when none.
    std::wstring NameProblem(const std::wstring& name, std::int32_t id = 0) const;
    // The name the registry stores for a typed one: blanks around it dropped.
    static std::wstring StoredName(const std::wstring& name);
    EProjectResult DeleteProject(std::int32_t id);
    EProjectResult RecoverProject(std::int32_t id);
    EProjectResult PurgeProject(std::int32_t id);
    // Makes the folders the authority: raises the counter, drops entries
    // without a folder and registers folders no list names. Decides on a
    // plain read and takes the lock only when something needs repair.
    // `repair`, when given, hears what was repaired; with `dryRun` nothing
    // is written and it hears what would be.
    EProjectResult CheckProjectRegistry(SRegistryRepair* repair = nullptr, bool dryRun = false);

    // The template folder a new standard is made from; empty for template -1.
    std::wstring TemplateFolderFor(const SNewProject& project) const;

private:
    EProjectResult MoveBetweenLists(std::int32_t id, const std::wstring& from,
                                    const std::wstring& to);
    bool OpenForReading(CVX2D_IniFile& ini) const;
    // The registry for lookups, read again only when the file changed;
    // nullptr when it cannot be read.
    CVX2D_IniFile* Snapshot() const;
    // Saves a registry document opened for update and keeps it as the
    // snapshot (moving its contents there when the caller is `done` with
    // it); false when it could not be saved.
    bool SaveRegistry(CVX2D_IniFile& ini, bool done = false) const;
    // Opens the registry for a change, under its lock.
    bool OpenRegistryForUpdate(CVX2D_IniFile& ini) const;
    EProjectResult OpenStandardForUpdate(CVX2D_IniFile& ini, std::int32_t id, std::wstring& name,
                                         std::wstring& folder) const;
    std::wstring LookupName(CVX2D_IniFile& ini, std::int32_t id, bool active, bool deleted) const;
    EProjectResult FindFolder(std::int32_t id, std::wstring name, std::wstring& folder) const;
    std::wstring FolderFor(std::int32_t id, const std::wstring& name) const;
    // The next id from the counter whose folder does not exist yet: a folder
    // of that id left outside the registry must neither be emptied nor end
    // up with two standards.
    std::int32_t AllocateFreeId(CVX2D_IniFile& ini) const;
    EProjectResult RollBack(CVX2D_IniFile& ini, std::int32_t id, const std::wstring& createdFolder,
                            EProjectResult failure);

    CVX2D_FolderTree& Tree() { return FolderTree(); }

    const CVX2D_Datafiles& m_datafiles;
    IPrompter& m_prompter;
    mutable CVX2D_FolderTree m_defaultTree;
    // The registry as last read, for lookups; changes always read afresh
    // under the lock.
    mutable CDatafileSnapshot m_snapshot;
    CVX2D_FolderTree* m_pTree = nullptr;
    IStandardContents* m_pContents = nullptr;
};
