// The "File Locations" page of a standard: the drawings folder of each
// drafting application and the borders, templates and libraries folders,
// checked as they are typed or browsed, with a folder that does not exist
// offered for creation; Apply, the question on closing and the help topic.
#pragma once

#include "editors/PageEditor.h"
#include "store/GeneralSettings.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <cstdint>
#include <string>
#include <vector>

enum class ELocation { Electric, Pid, Isometric, Ortho, Borders, Templates, Libraries };

struct SLocationRow {
    ELocation location = ELocation::Electric;
    std::wstring label;
    // The folder ending in a separator; empty when none is set.
    std::wstring folder;
    bool changed = false;
};

class CFileLocationsEditor : public CPageEditor {
public:
    static constexpr const wchar_t* kHelpTopic = L"::/File_Locations_Dialog_Box.htm";

    using CPageEditor::CPageEditor;

    // False, with no rows, when the standard has no folder.
    bool Open(std::int32_t projectId);

    // The four drawings folders, then borders, templates and libraries.
    const std::vector<SLocationRow>& Rows() const { return m_rows; }
    std::wstring HelpTopic() const override { return kHelpTopic; }
    bool ApplyEnabled() const override;

    // Stores a typed or browsed folder (blanks around it dropped, an empty
    // text clears the location; for libraries it means the program's default
    // libraries folder). Refused, with a message, when it is not a
    // full path, names a file or holds a character a datafile cannot store.
    // A folder that does not exist is offered for creation: Yes creates it
    // with its parents, No keeps it as typed (a share may be out of reach
    // from here). False when nothing was stored.
    bool SetFolder(std::size_t row, const std::wstring& text);

protected:
    // Writes the changed folders into General.ini as it is now; says so
    // when the file cannot be written.
    bool Save() override;
    std::wstring ContentsName() const override { return L"file locations"; }
    void Discard() override;

private:
    std::vector<SLocationRow> m_rows;
    std::vector<std::wstring> m_opened; // each row's folder as loaded
};
