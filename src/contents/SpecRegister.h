// Pipe specs as things of their own: creating, renaming, moving, copying and
// deleting them with their folders, which specs a standard may check, and the
// drafting applications' "SpecDestinationDatafile.ini" kept in step with
// every change and every check.
//
// Where a spec's folder "VX2D_SPEC_<id>" lies, by its scope:
//   common            <datafiles>/Specs/Common/VX2D_SPEC_<id>/
//   of client <n>     <datafiles>/Specs/VX2D_CLIENT_<n>/VX2D_SPEC_<id>/
//   of standard <n>   <the standard's folder>/VX2D_SPEC_<id>/
//                     (<datafiles>/Projects/VX2D_PRJ_<n> - <name>/VX2D_SPEC_<id>/)
// A standard's own specs lie in its folder, so that its copy, its export and
// its import carry them. "Specs", "Common" and a client's folder are made
// when the first spec needs them, never the datafiles folder itself.
//
// The register "SpecDatafile.ini" (see ProjectSpecs.h) also holds
// "[General] LastSpecId", the highest id handed out. It only grows, and a new
// id is above every id of the register too, so no id is given twice, not even
// after a delete. A standard's "Specs.ini" keeps the names of its own specs in
// "[ProjectSpecs] VX2D_SPEC_<id> = <name>", so that an exported standard takes
// them to an installation whose register has never heard of them.
//
// A standard may check the common specs, the specs of its client and its own.
// Names are refused like standards' names and are unique within a scope,
// whatever their letter case: a client's variant of a common spec may keep the
// common spec's name.
//
// Every change is one read-modify-write of the register under its lock, held
// while the folders and the standards' files follow. Each step done is undone
// when a later one fails, so that a failure leaves the folders, the register,
// the standards' "Specs.ini" and the destinations as they were: a new folder
// is made before the register is saved and removed again when the save
// fails; a deleted spec's folder is moved aside, the register saved, and the
// folder removed only then, put back when that fails.
#pragma once

#include "contents/ProjectSpecs.h"
#include "contents/SpecDestinations.h"
#include "store/ProjectRegistry.h"
#include "store/StandardContents.h"

#include <cstdint>
#include <string>
#include <vector>

// Where a spec belongs: common, a client's or a standard's.
struct SSpecPlace {
    ESpecScope scope = eSpecCommon;
    std::int32_t ownerId = 0; // the client or the standard; 0 for common
    bool operator==(const SSpecPlace&) const = default;
};

class CVX2D_SpecRegister : public IStandardContents {
public:
    CVX2D_SpecRegister(const CVX2D_ProjectRegistry& projects, CVX2D_SpecDestinations& destinations)
        : m_projects(projects), m_destinations(destinations) {}

    const CVX2D_ProjectRegistry& Projects() const { return m_projects; }
    CVX2D_SpecDestinations& Destinations() const { return m_destinations; }

    // "<datafiles>/Specs/"; empty when the datafiles folder is unknown.
    std::wstring SpecsFolder() const;
    // The folder that holds the place's spec folders, ending in a separator,
    // whether it exists yet or not. 8 for a standard that is not in the
    // registry, 4 for a client that is not, a standard without a folder or
    // an unknown datafiles folder.
    ESpecResult LocationFolder(const SSpecPlace& place, std::wstring& folder) const;
    // A spec's folder, ending in a separator; 3 for a spec not in the register.
    ESpecResult SpecFolder(std::int32_t specId, std::wstring& folder) const;
    // How "SpecDestinationDatafile.ini" names a folder of the datafiles folder.
    std::wstring DestinationOf(const std::wstring& folder) const;

    // One spec of the register; 3 when it has none of that id.
    ESpecResult FindSpec(std::int32_t specId, SSpecInfo& spec) const;
    // Whether a standard of client `clientId` (0: none) may check the pipe spec.
    static bool MayUse(const SSpecInfo& spec, std::int32_t projectId, std::int32_t clientId);
    // The client of a standard; 0 for none.
    std::int32_t ClientOf(std::int32_t projectId) const;
    // The specs a standard may check, in register order.
    ESpecResult SpecsFor(std::int32_t projectId, std::vector<SSpecInfo>& specs) const;
    // The standards (deleted ones too) whose "Specs.ini" checks the pipe spec.
    ESpecResult StandardsChecking(std::int32_t specId, std::vector<SProjectInfo>& standards) const;
    // Those of them that could not use the pipe spec in `place`.
    ESpecResult StandardsLosing(std::int32_t specId, const SSpecPlace& place,
                                std::vector<SProjectInfo>& standards) const;

    // "the common specs", "client 'Acme'", "standard 'Pipe'".
    std::wstring PlaceText(const SSpecPlace& place) const;
    // The questions asked before a move that unchecks the pipe spec for
    // standards, and before a delete.
    std::wstring MoveQuestion(const SSpecInfo& spec, const SSpecPlace& place,
                              const std::vector<SProjectInfo>& losing) const;
    static std::wstring DeleteQuestion(const SSpecInfo& spec,
                                       const std::vector<SProjectInfo>& checking);
    // The first line of what a failure says; the code's text follows after a
    // blank line.
    static std::wstring CreateErrorText(const std::wstring& name);
    static std::wstring RenameErrorText(const std::wstring& oldName, const std::wstring& newName);
    std::wstring MoveErrorText(const std::wstring& name, const SSpecPlace& place) const;
    static std::wstring CopyErrorText(const std::wstring& name);
    static std::wstring DeleteErrorText(const std::wstring& name);
    // The code's text; for a refused `name`, with the rule it breaks.
    static std::wstring ReasonText(ESpecResult result, const std::wstring& name = {});

    // A new spec named `name` (blanks around it dropped) with an empty
    // folder; its id in `id`. 7 for a refused name, 10 for a name the place
    // has, 1 when the folder cannot be made, 4 when its place cannot.
    ESpecResult CreateSpec(const std::wstring& name, const SSpecPlace& place, std::int32_t& id);
    // A new spec in `place` whose folder is a copy of the pipe spec's folder.
    ESpecResult CopySpec(std::int32_t specId, const std::wstring& name, const SSpecPlace& place,
                         std::int32_t& id);
    // Renames the pipe spec in the register and in every standard that checks it.
    ESpecResult RenameSpec(std::int32_t specId, const std::wstring& name);
    // Moves the pipe spec's folder to `place` (6 when it cannot be moved) and the
    // spec into that place's list. Standards that could not use it there
    // lose their check; unless `confirmed`, the user is asked first (No:
    // eSpecCancelled, nothing changed).
    ESpecResult MoveSpec(std::int32_t specId, const SSpecPlace& place, bool confirmed = false);
    // Deletes the pipe spec's folder (2 when it cannot be) and its entries, and
    // unchecks it for every standard. Unless `confirmed`, the user is asked
    // first, and told which standards check it.
    ESpecResult DeleteSpec(std::int32_t specId, bool confirmed = false);

    // Checking and unchecking as CVX2D_ProjectSpecs does, with the
    // standard's destinations written afresh; a check whose destinations
    // cannot be written is taken back (5).
    ESpecResult CheckSpec(std::int32_t projectId, std::int32_t specId);
    ESpecResult UncheckSpec(std::int32_t projectId, std::int32_t specId);
    // Writes the destinations of the standards from their checks now.
    ESpecResult WriteDestinations(const std::vector<std::int32_t>& projectIds);

    // A copied or imported standard's own specs get new ids: their folders
    // are renamed, they enter the register as the new standard's specs, and
    // its "Specs.ini" is rewritten to the new ids. A check of another spec
    // stays in a copy; from an archive it stays only when this register has
    // a spec of that id and name (an archive from another installation
    // names specs this one does not have).
    bool Arrived(std::int32_t id, std::int32_t sourceId, const std::wstring& folder) override;
    bool Moved(std::int32_t id, const std::wstring& folder) override;
    // The standard's own specs leave the register and its destinations go.
    void Purged(std::int32_t id) override;

private:
    // A new spec with an empty folder (`specId` 0) or a copy of that spec's.
    ESpecResult MakeSpec(std::int32_t specId, const std::wstring& name, const SSpecPlace& place,
                         std::int32_t& id);
    // The place's folder; for standard `overrideId` it is `overrideFolder`.
    // A `newPlace` for a spec must be a client that exists; a spec's present
    // place may be a deleted client's.
    ESpecResult Location(const SSpecPlace& place, std::wstring& folder, bool newPlace = false,
                         std::int32_t overrideId = 0,
                         const std::wstring& overrideFolder = {}) const;
    // Where a spec of the register has its folder (no separator at the end);
    // empty when its place has none.
    std::wstring CurrentFolder(const SSpecInfo& spec) const;
    // Makes the folders down to a place's folder; false when it is not there.
    bool MakeLocation(const std::wstring& folder) const;
    ESpecResult WriteDestinations(const std::vector<std::int32_t>& projectIds,
                                  std::int32_t overrideId, const std::wstring& overrideFolder);
    std::wstring SpecFileOf(std::int32_t projectId) const;
    bool OpenRegisterForUpdate(CVX2D_IniFile& reg) const;
    // Asks a Yes/No question whose default is No.
    bool Agreed(const std::wstring& question) const;
    // Those of `checking` that could not use the pipe spec in `place`.
    std::vector<SProjectInfo> Losing(const std::vector<SProjectInfo>& checking, std::int32_t specId,
                                     const SSpecPlace& place) const;
    IPrompter& Prompter() const { return m_projects.Prompter(); }

    const CVX2D_ProjectRegistry& m_projects;
    CVX2D_SpecDestinations& m_destinations;
};
