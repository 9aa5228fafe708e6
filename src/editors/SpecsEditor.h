// The specs page of a standard: every pipe spec the standard may use (common
// ones, its client's and its own), grouped by scope, with a check box,
// checked when that spec is in the standard's "Specs.ini". Checks are kept
// until Apply; creating, renaming, moving, copying and deleting a spec change
// the shared register at once, and the unapplied checks stay.
#pragma once

#include "contents/SpecRegister.h"
#include "editors/PageEditor.h"
#include "store/Opener.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct SSpecRow {
    std::int32_t id = 0;
    std::wstring name;
    // "Common", "Client", "Standard"; "Not in the register" for a spec the
    // standard has checked but may no longer use (another client's, a
    // removed one).
    std::wstring scope;
    // The row's group on the page: "Common specs", "Specs of client
    // 'Acme'", "Specs of standard 'Pipe'", "No longer offered".
    std::wstring group;
    // The pipe spec's folder within the datafiles folder; empty for a spec the
    // register does not offer.
    std::wstring folder;
    SSpecPlace place;
    bool available = true;
    bool checked = false;
};

// A place the page offers for a new, moved or copied spec.
struct SSpecPlaceChoice {
    SSpecPlace place;
    std::wstring text; // "Common", "Client 'Acme'", "Standard 'Pipe'"
};

class CSpecsEditor : public CPageEditor {
public:
    CSpecsEditor(const CVX2D_ProjectRegistry& projects, IPrompter& prompter,
                 CVX2D_SpecRegister& specs);

    // Reads the register and the standard's checks: the specs it may use by
    // group (common, its client's, its own), by name within each, then any
    // checked spec the register does not offer it. False, with the reason
    // shown, when either cannot be read.
    bool Open(std::int32_t projectId);

    const std::vector<SSpecRow>& Rows() const { return m_rows; }

    // Checks or unchecks a row until Apply; false for a row that does not
    // exist. A spec that is not in the register is only ever checked in the
    // file, so unchecking it and applying is all that can be done with it.
    bool SetChecked(std::size_t row, bool checked);

    // Apply is enabled exactly while a check differs from the file.
    bool ApplyEnabled() const override;

    // "::/Specs.htm".
    std::wstring HelpTopic() const override;

    // Where the page puts new, moved and copied specs: common, the
    // standard's client (when it has one) and the standard itself.
    std::vector<SSpecPlaceChoice> Places() const;
    // Whether a row's spec can be renamed, moved, copied, deleted and
    // opened: one the register offers the standard.
    bool CanManage(std::size_t row) const;
    // "Copy of <name>", the name proposed for a copy.
    std::wstring ProposedCopyName(std::size_t row) const;

    // Each changes the register at once; a failure is shown ("Error creating
    // spec 'X'." and the reason) and gives false or nothing. The rows are
    // read again afterwards, with the unapplied checks kept. New and Copy
    // give the new spec's row.
    std::optional<std::size_t> NewSpec(const std::wstring& name, const SSpecPlace& place);
    bool RenameSpec(std::size_t row, const std::wstring& name);
    // Asks first when standards would lose their check; No changes nothing.
    bool MoveSpec(std::size_t row, const SSpecPlace& place);
    std::optional<std::size_t> CopySpec(std::size_t row, const std::wstring& name,
                                        const SSpecPlace& place);
    // Asks first, naming the standards that check the pipe spec.
    bool DeleteSpec(std::size_t row);
    // Opens the row's spec folder in the desktop's file manager.
    bool OpenFolder(std::size_t row);
    // What opens folders (the desktop's by default).
    void SetOpener(COpener opener) { m_opener = std::move(opener); }

protected:
    // Checks and unchecks what changed, then shows the file again with the
    // changes that failed still made. False when any of them failed (each
    // failure is shown).
    bool Save() override;
    std::wstring ContentsName() const override { return L"specs"; }
    void Discard() override;

private:
    // Reads the rows afresh; keeps them as they are when that fails, and
    // says so when `tell` is set.
    bool Reload(bool tell = true);
    // Reads the rows afresh with the checks that were not applied kept.
    void ReloadKeepingChecks(bool tell = true);
    std::optional<std::size_t> RowOf(std::int32_t specId) const;
    // Shows `what` and the result's reason unless it is Ok or cancelled;
    // true for Ok.
    bool Told(ESpecResult result, const std::wstring& what, const std::wstring& name = {});

    CVX2D_SpecRegister& m_specs;
    COpener m_opener;
    std::vector<SSpecRow> m_rows;
    std::vector<bool> m_saved; // the checks as the file has them
};
