// The "General Settings" page of a standard: working and displayed units and
// the rating format picked from lists, the version year and the GUID shown
// read-only, Apply, the question on closing and the help topic.
#pragma once

#include "datafile/Units.h"
#include "editors/PageEditor.h"
#include "editors/RatingFormats.h"
#include "store/GeneralSettings.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <cstdint>
#include <string>
#include <vector>

enum class EGeneralField { WorkingUnits, DisplayedUnits, RatingFormat, Version, Guid };

struct SGeneralRow {
    EGeneralField field = EGeneralField::WorkingUnits;
    std::wstring label;
    // What the page shows; empty for a code that is in no list.
    std::wstring text;
    // The list to pick from; empty on a read-only row.
    std::vector<std::wstring> choices;
    // The index of `text` in `choices`; -1 when the stored code is in no list.
    int current = -1;
    bool readOnly = false;
};

class CGeneralSettingsEditor : public CPageEditor {
public:
    static constexpr const wchar_t* kHelpTopic = L"::/General_Settings_Dialog_Box.htm";

    using CPageEditor::CPageEditor;

    // Loads the standard's general settings and the rating formats of the
    // datafiles folder. False, with no rows, when the standard has no folder.
    bool Open(std::int32_t projectId);

    // Working units, displayed units, rating format, version year, GUID.
    const std::vector<SGeneralRow>& Rows() const { return m_rows; }
    const SGeneralRow& Row(EGeneralField field) const;
    std::wstring HelpTopic() const override { return kHelpTopic; }
    bool ApplyEnabled() const override;

    // Picks entry `index` of a list row. False, changing nothing, for a
    // read-only row or an index outside the list.
    bool Choose(EGeneralField field, int index);
    // The code General.ini stores for each entry of a list row, in the
    // list's order; empty for a read-only row.
    std::vector<int> Codes(EGeneralField field) const;
    // Picks the entry that a typed text names: its code or its text in any
    // letter case. False, changing nothing, when it names no entry.
    bool ChooseTyped(EGeneralField field, const std::wstring& text);

protected:
    // Writes the changed values into General.ini as it is now, so that what
    // another page or workstation saved meanwhile stays; says so when the
    // file cannot be written.
    bool Save() override;
    std::wstring ContentsName() const override { return L"general settings"; }
    void Discard() override;

private:
    void Fill();

    CVX2D_GeneralSettings m_opened; // as loaded, to tell what changed
    CVX2D_GeneralSettings m_general;
    std::vector<SRatingFormat> m_formats;
    std::vector<SGeneralRow> m_rows;
};
