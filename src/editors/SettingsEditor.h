// The settings editor of one section of one drafting application's settings
// in one standard: the grid's rows as data, storing what the user picked or
// typed, Apply, the question on closing and the help topic. The page tree
// that leads to the editors of a standard is here too.
#pragma once

#include "contents/ProjectSettingsBase.h"
#include "editors/PageEditor.h"
#include "store/GeneralSettings.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The cell of column 1, by the variable's kind.
enum class ESettingsCell {
    List,   // a list-only drop-down: toggles, strings, choices
    Font,   // opens the font picker
    Number, // integers
    Text,   // reals and texts
    Path,   // opens a folder browser
};

// "list", "font", "number", "text", "path".
std::wstring SettingsCellName(ESettingsCell cell);

struct SRgb {
    int r = 0;
    int g = 0;
    int b = 0;
    bool operator==(const SRgb&) const = default;
};

struct SSettingsRow {
    std::int32_t variableId = 0;
    // Column 0: the variable's label; a sub-heading's own text.
    std::wstring label;
    ESettingsCell cell = ESettingsCell::Text;
    // Column 1 as shown; empty on a sub-heading.
    std::wstring text;
    std::vector<std::wstring> choices;
    // A sub-heading: column 0 centred, column 1 read-only on a grey ground.
    bool subHeading = false;
    bool readOnly = false;
    std::optional<SRgb> background;
};

class CSettingsEditor : public CPageEditor {
public:
    static constexpr SRgb kSubHeadingBackground{212, 208, 200};

    using CPageEditor::CPageEditor;
    ~CSettingsEditor();

    // Loads the standard's general settings and the application's settings
    // (built with the working units) and fills the rows of the section; a
    // section the application does not have leaves no rows. False, with no
    // rows, for an unknown application or a standard whose general settings
    // cannot be read.
    bool Open(std::int32_t projectId, int application, int section);

    const std::vector<SSettingsRow>& Rows() const { return m_rows; }
    // Apply is enabled exactly while something is unsaved.
    bool ApplyEnabled() const override;

    // Stores the text of a changed cell by the variable's kind and shows the
    // stored value again. False when the row is a sub-heading, does not
    // exist, or a choice has no entry of that text.
    bool SetCellText(std::size_t row, const std::wstring& text);

    // Puts the section back to the catalogue defaults of the standard's
    // working units; what changes shows as modified until Apply. False when
    // nothing is open.
    bool RestoreDefaults();

    // The topic of this editor's help page; empty where there is none.
    std::wstring HelpTopic() const override;

    int Application() const { return m_nApplication; }
    int Section() const { return m_nSection; }
    const CVX2D_GeneralSettings& General() const { return m_general; }

protected:
    // Saves the changed variables; says so when the file cannot be written.
    bool Save() override;
    std::wstring ContentsName() const override { return L"settings"; }
    void Discard() override;

private:
    SSettingsRow MakeRow(const CVX2D_ProjectSettingsBase::CVariable& variable) const;
    CVX2D_ProjectSettingsBase::CSection* TheSection();

    int m_nApplication = 0;
    int m_nSection = -1;
    CVX2D_GeneralSettings m_general;
    std::unique_ptr<CVX2D_ProjectSettingsBase> m_settings;
    std::vector<SSettingsRow> m_rows;
};

// The help topic of (application, section), "::/....htm"; empty where the
// editor's help opens at its start.
std::wstring SettingsHelpTopic(int application, int section);

// The choices of "Double Line Drafting Start Size" (169) for displayed units:
// 43 millimetre sizes for 1 (and 0), 43 inch sizes for anything else.
std::vector<std::wstring> DoubleLineSizes(int displayedUnits);

// The choices of "Drawing Template" (44): the titles of the "*.dwt" files of
// the templates folder by name, then "acad" unless one of them is "acad" in
// any letter case. Empty for a standard id below 1.
std::vector<std::wstring> DrawingTemplateTitles(std::int32_t projectId,
                                                const std::wstring& templatesFolder);

// Puts the variables of one section (of every section for -1) back to the
// catalogue defaults of the standard's working units, then derives the
// settings of later versions from them as loading does. Only a variable whose
// value changes becomes unclean. False when the settings have no such section.
bool RestoreSettingsDefaults(CVX2D_ProjectSettingsBase& settings, int section,
                             const CVX2D_GeneralSettings& general);

// The pages of a standard as its page tree shows them.
enum class ESettingsPage {
    General,
    FileLocations,
    Borders,
    Drawings,
    DrawingFolder, // a child of Drawings: one application's drawings folder
    Lines,
    Specs,
    Application, // "<name> Settings": holds the application's pages
    Section,     // a settings section: this editor
    Layers,      // an application's layers
};

struct SSettingsPage {
    ESettingsPage kind = ESettingsPage::General;
    std::wstring title;
    int icon = 1;
    int application = 0; // 1-4 for application pages and drawing folders
    int section = -1;    // the section index of a Section page
    std::vector<SSettingsPage> children;
};

// The page tree; "Lines" is left out when `linesFlag` is set.
std::vector<SSettingsPage> SettingsPageTree(bool linesFlag);
