// The "Border Settings" page of a standard: for each of the ten sheet sizes
// the border drawing, the drawing limits and the revision-block drawing, with
// the limits checked as they are typed, the drawings of the borders folder to
// pick from, Restore Defaults, Apply, the question on closing and the help
// topic.
#pragma once

#include "contents/ProjectBorders.h"
#include "editors/PageEditor.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

enum class EBorderColumn { Border, LimitsMin, LimitsMax, Revision };

constexpr int kBorderColumnCount = 4;

struct SBorderRow {
    EDwg size = eDwgA;
    std::wstring name; // "A" ... "A4"
    // By EBorderColumn: border file, lower-left limit, upper-right limit,
    // revision file.
    std::array<std::wstring, kBorderColumnCount> texts;
    // The cells changed since the last save.
    std::array<bool, kBorderColumnCount> changed{};
};

class CBordersEditor : public CPageEditor {
public:
    static constexpr const wchar_t* kHelpTopic = L"::/Border_Settings_Dialog_Box.htm";

    using CPageEditor::CPageEditor;
    ~CBordersEditor();

    // Loads the standard's borders and lists the drawings of its borders
    // folder. False, with no rows, when the standard has no folder.
    bool Open(std::int32_t projectId);

    // One row per sheet size, A to E then A0 to A4.
    const std::vector<SBorderRow>& Rows() const { return m_rows; }
    std::wstring HelpTopic() const override { return kHelpTopic; }
    bool ApplyEnabled() const override;

    // The "*.dwg" files of the standard's borders folder by name, offered in
    // the border and revision cells (a name can still be typed).
    const std::vector<std::wstring>& DrawingFiles() const { return m_drawings; }
    const std::wstring& BordersFolder() const { return m_strBordersFolder; }
    // Lists the borders folder again, as the file locations page may have
    // changed it; true when the list changed.
    bool RefreshDrawingFiles();

    // Stores a typed or picked text (blanks around it dropped). A limit must
    // be two numbers separated by a comma; a drawing must be a plain file
    // name. Anything else is refused with a message and the old value kept.
    bool SetCellText(std::size_t row, EBorderColumn column, const std::wstring& text);

    // Every size back to the default drawings and limits, shown as changed
    // until Apply.
    void RestoreDefaults();

protected:
    // Writes the changed cells; says so when the file cannot be written.
    bool Save() override;
    std::wstring ContentsName() const override { return L"border settings"; }
    void Discard() override;

private:
    void Fill();

    std::unique_ptr<CVX2D_ProjectBorders> m_borders;
    std::wstring m_strBordersFolder;
    std::vector<std::wstring> m_drawings;
    std::vector<SBorderRow> m_rows;
};

// The "*.dwg" files of a folder (any letter case of the extension), sorted
// by name without regard to case; empty for an empty or unreadable folder.
std::vector<std::wstring> DrawingFilesIn(const std::wstring& folder);
