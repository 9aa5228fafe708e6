// The check of a whole datafiles folder: the registries against the folders,
// the clients' lists, every standard's files, the shared line counter, the
// shipped templates and what killed saves left behind. Checking only reads;
// the few repairs that cannot lose anything are offered with a preview.
#pragma once

#include "store/Datafiles.h"
#include "store/Progress.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <cstdint>
#include <string>
#include <vector>

enum class EDoctorSeverity { eError, eWarning };

// The repair a finding can have without asking anyone.
enum class EDoctorRepair {
    eNone,
    eRegistry,    // the registry check: drop, register, raise the counter
    eLineCounter, // raise "LastLineId" to the highest line id
    eLeftover,    // remove a lock or temporary file no one uses
};

// The page of the standard a finding is about, for opening it.
enum class EDoctorPage {
    eNone,
    eGeneral,
    eFileLocations,
    eDrawingFolder,
    eLines,
    eSection,
    eLayers
};

struct SDoctorFinding {
    EDoctorSeverity severity = EDoctorSeverity::eError;
    // A stable word for scripts ("entry-without-folder").
    std::wstring kind;
    std::int32_t standardId = 0;
    // The standard's folder name in "Projects"; empty when none.
    std::wstring folder;
    std::int32_t clientId = 0;
    // The file concerned, relative to the datafiles folder.
    std::wstring file;
    std::wstring message;
    std::wstring todo;
    EDoctorRepair repair = EDoctorRepair::eNone;
    EDoctorPage page = EDoctorPage::eNone;
    int application = 0; // 1-4 for settings, layers and drawing folder pages
    int section = -1;    // the settings section of a eSection page
    // The file's full path (a leftover's, for its repair).
    std::wstring path;
};

// "error", "warning".
std::wstring DoctorSeverityName(EDoctorSeverity severity);
// "registry", "line-counter", "leftover"; empty for none.
std::wstring DoctorRepairName(EDoctorRepair repair);

// One change a repair makes, or with a preview would make.
struct SDoctorRepairStep {
    EDoctorRepair repair = EDoctorRepair::eNone;
    std::wstring text;
    bool done = false; // after a repair: whether it was made
};

class CDatafilesDoctor {
public:
    static constexpr const wchar_t* kHelpTopic = L"::/Check_Datafiles_Folder.htm";

    explicit CDatafilesDoctor(CVX2D_ProjectRegistry& projects)
        : m_projects(projects), m_datafiles(projects.Datafiles()) {}

    // Reads the whole folder and changes nothing; errors come first, then
    // warnings, each in the order of the standards. False, with what was
    // found so far, when `progress` asked to stop.
    bool Examine(std::vector<SDoctorFinding>& findings, const CProgress& progress = {}) const;

    // What the repairs of `findings` would change, read afresh (the registry
    // check's dry run).
    std::vector<SDoctorRepairStep> Preview(const std::vector<SDoctorFinding>& findings) const;
    // Makes those repairs; each step says whether it was made. A leftover
    // that someone locked meanwhile is left alone.
    std::vector<SDoctorRepairStep> Repair(const std::vector<SDoctorFinding>& findings);

    // Lists the repairs of `findings` as they would be made now, asks
    // whether to make them and, on a yes, makes them and tells which could
    // not be made. False when nothing was made (nothing to repair, or no).
    bool AskAndRepair(IPrompter& prompter, const std::vector<SDoctorFinding>& findings,
                      std::vector<SDoctorRepairStep>& done);

    // Whether any finding has a repair.
    static bool HasRepairs(const std::vector<SDoctorFinding>& findings);
    // "No problems found." or "2 errors, 1 warning"; for a check that was
    // stopped, what it found until then.
    static std::wstring Summary(const std::vector<SDoctorFinding>& findings, bool complete = true);

private:
    std::vector<SDoctorRepairStep> Run(const std::vector<SDoctorFinding>& findings,
                                       bool dryRun) const;

    CVX2D_ProjectRegistry& m_projects;
    const CVX2D_Datafiles& m_datafiles;
};
