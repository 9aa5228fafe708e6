// The specs page of a standard: every pipe spec of the register the standard
// may use (common ones, its client's and its own) with a check box, checked
// when that spec is in the standard's "Specs.ini". Checks are kept until Apply.
#pragma once

#include "editors/PageEditor.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <cstdint>
#include <string>
#include <vector>

struct SSpecRow {
    std::int32_t id = 0;
    std::wstring name;
    // "Common", "Client", "Standard"; "Not in the register" for a spec the
    // standard has checked but may no longer use (another client's, a
    // removed one).
    std::wstring scope;
    bool available = true;
    bool checked = false;
};

class CSpecsEditor : public CPageEditor {
public:
    using CPageEditor::CPageEditor;

    // Reads the register and the standard's checks: the register's specs in
    // its order, then any checked spec it does not offer. False, with the
    // reason shown, when either cannot be read.
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

    std::vector<SSpecRow> m_rows;
    std::vector<bool> m_saved; // the checks as the file has them
};
