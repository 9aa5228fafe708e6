// Copying values from one standard into another, row by row of their
// comparison: a merge of two standards (the comparison window's "Copy to"
// and `merge`) and a push of some rows of one standard into many (`push`,
// "Apply to Other Standards..."). Values are written through the same
// editors and rules as the pages: general settings and file locations into
// General.ini as it is then, borders only for the sheets that change,
// settings only for the variables that change, layers as the whole set of
// the application, lines and specs as the lines and specs pages make,
// delete, recover, check and uncheck them.
//
// A row is named by its comparison row id (see SCompareRow::id). A heading's
// id names every value row under it. Border rows are matched by the rank of
// their sheet, so "Borders/E/limits" and "Borders/A0/limits" are one row: an
// English and a metric standard compare E with A0.
#pragma once

#include "contents/SpecRegister.h"
#include "editors/StandardComparison.h"
#include "store/Progress.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <cstdint>
#include <string>
#include <vector>

// Which rows to copy: those named, or every differing row (of some groups).
struct SMergeSelection {
    std::vector<std::wstring> ids;
    // Every row that differs, apart from rows that belong to their own
    // standard (see SCompareRow::own); `groups` (names of
    // CompareGroups, any letter case) narrows it, empty meaning all.
    bool allDifferences = false;
    std::vector<std::wstring> groups;
    // Named line and spec rows that neither standard has are no fault
    // (a push names the same rows for standards that differ).
    bool missingItemsAllowed = false;
};

// One row to change in the target standard.
struct SMergeChange {
    std::wstring id;
    std::wstring heading; // the title of the row's section
    std::wstring label;
    std::wstring oldText; // the target's, as the comparison shows it
    std::wstring newText; // the source's
    std::vector<std::wstring> oldValue;
    std::vector<std::wstring> newValue;
};

struct SMergePlan {
    std::int32_t sourceId = 0;
    std::int32_t targetId = 0;
    std::wstring sourceName;
    std::wstring targetName;
    std::vector<SMergeChange> changes;
};

// A change that could not be written, and why.
struct SMergeFailure {
    SMergeChange change;
    std::wstring reason;
};

struct SMergeOutcome {
    // What was written, in the order it was written.
    std::vector<SMergeChange> applied;
    std::vector<SMergeFailure> failed;
    // Puts back what `applied` overwrote (see CStandardMerge::Undo).
    SMergePlan undo;
    bool Ok() const { return failed.empty(); }
};

// Whether a row id (or a heading's) names the same row as another: equal,
// or border rows of the same rank and kind.
bool SameCompareRow(const std::wstring& a, const std::wstring& b);

// The row ids of `comparison` the selection names (a heading's id adds the
// value rows under it), each once, in the grid's order. Ids that name no row
// go to `unknown`; a group of `selection.groups` that is not a group name too.
std::vector<std::size_t> SelectCompareRows(const SComparison& comparison,
                                           const SMergeSelection& selection,
                                           std::vector<std::wstring>& unknown);

// Row ids for the pages' rows, so that a page can name what it shows:
// "General/Settings/RatingFormat", "Borders/A1/limits" (column "border",
// "limits" or "revision"), "PID/Settings/145", "Layers/PID/014".
std::wstring GeneralRowId(const std::wstring& field); // WorkingUnits, DisplayedUnits, RatingFormat
std::wstring BorderRowId(EDwg sheet, const std::wstring& column);
std::wstring SettingsRowId(int application, std::int32_t variableId);
std::wstring LayerRowId(int application, std::int32_t layerKey);

class CStandardMerge {
public:
    // Over the standards of `specs`' registry; asks nobody: what goes wrong
    // is kept in the outcome.
    explicit CStandardMerge(CVX2D_SpecRegister& specs);

    // What copying the selected rows from `sourceId` into `targetId` would
    // change: the named rows whose values differ. False, changing nothing,
    // when the two cannot be compared or an id names no row (`error` says
    // which; `usage` is set for bad ids).
    bool Plan(std::int32_t sourceId, std::int32_t targetId, const SMergeSelection& selection,
              SMergePlan& plan, std::wstring& error, bool* usage = nullptr) const;

    // Plans and copies. General settings go first: when they change the
    // target's working units, the other rows are compared again afterwards,
    // as the target's border sheets and settings defaults follow its units.
    // False as Plan when nothing could be planned; otherwise true, with the
    // rows that failed in the outcome.
    bool Merge(std::int32_t sourceId, std::int32_t targetId, const SMergeSelection& selection,
               SMergeOutcome& outcome, std::wstring& error, bool* usage = nullptr) const;

    // Writes a plan's new values into its target as they are, without
    // comparing again: how a merge is undone (with SMergeOutcome::undo).
    SMergeOutcome Apply(const SMergePlan& plan) const;

private:
    CVX2D_SpecRegister& m_specs;
    const CVX2D_ProjectRegistry& m_registry;
};

// The help topic of "Apply to Other Standards...".
inline constexpr const wchar_t* kPushHelpTopic = L"::/Apply_To_Other_Standards.htm";

// One target of a push and what became of it.
struct SPushResult {
    std::int32_t id = 0;
    std::wstring name;
    bool skipped = false; // deleted, or the source itself
    std::wstring skipReason;
    std::vector<SMergeChange> changes; // made, or with a dry run to be made
    std::vector<SMergeFailure> failed;
    std::wstring error; // the standard could not be compared at all
    bool Failed() const { return !error.empty() || !failed.empty(); }
};

struct SPushOptions {
    bool dryRun = false;
    bool includeDeleted = false;
};

// Sets the named rows of `sourceId` in each target in turn, as a merge of
// those rows would. A target that fails is reported and the rest go on.
// Deleted standards are skipped unless asked for, and so is the source.
// `progress` counts targets; when it says stop, the targets not reached are
// left out of the result. False only when the rows name nothing the source
// has (`error`, a usage fault).
bool PushRows(CVX2D_SpecRegister& specs, std::int32_t sourceId,
              const std::vector<std::wstring>& rowIds, const std::vector<std::int32_t>& targets,
              const SPushOptions& options, std::vector<SPushResult>& results, std::wstring& error,
              const CProgress& progress = {});
