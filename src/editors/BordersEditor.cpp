#include "editors/BordersEditor.h"

#include "datafile/Names.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "store/GeneralSettings.h"

#include <algorithm>
#include <filesystem>
#include <fmt/xchar.h>

namespace fs = std::filesystem;

namespace {

using B = CVX2D_ProjectBorders;

struct SColumn {
    std::wstring (B::*get)(EDwg) const;
    void (B::*set)(EDwg, const std::wstring&);
    bool (B::*changed)(EDwg) const;
    const wchar_t* what; // in messages
};

const SColumn kColumns[kBorderColumnCount] = {
    {&B::GetBorderFile, &B::SetBorderFile, &B::IsBorderFileChanged, L"border drawing"},
    {&B::GetLimitsMin, &B::SetLimitsMin, &B::IsLimitsMinChanged, L"lower-left limit"},
    {&B::GetLimitsMax, &B::SetLimitsMax, &B::IsLimitsMaxChanged, L"upper-right limit"},
    {&B::GetRevisionFile, &B::SetRevisionFile, &B::IsRevisionFileChanged, L"revision drawing"},
};

bool IsLimit(EBorderColumn column) {
    return column == EBorderColumn::LimitsMin || column == EBorderColumn::LimitsMax;
}

// "22.0 , 17.0" is what people type for "22.0,17.0".
std::wstring LimitText(const std::wstring& text) {
    const auto comma = text.find(L',');
    if (comma == std::wstring::npos)
        return text;
    return TrimBlanks(std::wstring_view(text).substr(0, comma)) + L"," +
           TrimBlanks(std::wstring_view(text).substr(comma + 1));
}

std::wstring BordersFolderOf(const CVX2D_ProjectRegistry& projects, std::int32_t projectId) {
    CVX2D_GeneralSettings general;
    return general.Load(projects, projectId) ? WithTrailingSeparator(general.m_strBordersLocation)
                                             : std::wstring();
}

} // namespace

std::vector<std::wstring> DrawingFilesIn(const std::wstring& folder) {
    std::vector<std::wstring> names;
    if (folder.empty())
        return names;
    std::error_code ec;
    for (fs::directory_iterator it(platform::ToPath(folder), ec), end; !ec && it != end;
         it.increment(ec)) {
        const std::wstring name = platform::FromPath(it->path().filename());
        std::error_code typeError;
        if (it->is_directory(typeError) || name.size() < 5 ||
            !EqualsNoCase(name.substr(name.size() - 4), L".dwg"))
            continue;
        names.push_back(name);
    }
    // The Windows file system lists by name; the others in no useful order.
    std::sort(names.begin(), names.end(), [](const std::wstring& a, const std::wstring& b) {
        const std::wstring la = ToLower(a), lb = ToLower(b);
        return la != lb ? la < lb : a < b;
    });
    return names;
}

CBordersEditor::~CBordersEditor() = default;

bool CBordersEditor::Open(std::int32_t projectId) {
    m_nProjectId = projectId;
    m_rows.clear();
    m_drawings.clear();
    m_strBordersFolder.clear();
    m_borders = std::make_unique<B>(m_projects, projectId);
    const std::wstring path = m_borders->GetFilePath();
    if (path.empty()) {
        m_borders.reset();
        return false;
    }
    m_borders->Load(path);
    RefreshDrawingFiles();
    Fill();
    return true;
}

void CBordersEditor::Fill() {
    m_rows.clear();
    if (!m_borders)
        return;
    for (int index = 0; index < kDwgCount; ++index) {
        SBorderRow row;
        row.size = static_cast<EDwg>(index);
        row.name = DwgKey(row.size);
        for (int column = 0; column < kBorderColumnCount; ++column) {
            row.texts[column] = ((*m_borders).*kColumns[column].get)(row.size);
            row.changed[column] = ((*m_borders).*kColumns[column].changed)(row.size);
        }
        m_rows.push_back(std::move(row));
    }
}

bool CBordersEditor::RefreshDrawingFiles() {
    if (!m_borders)
        return false;
    m_strBordersFolder = BordersFolderOf(m_projects, m_nProjectId);
    std::vector<std::wstring> drawings = DrawingFilesIn(m_strBordersFolder);
    if (drawings == m_drawings)
        return false;
    m_drawings = std::move(drawings);
    return true;
}

bool CBordersEditor::ApplyEnabled() const {
    return m_borders && m_borders->IsModified();
}

bool CBordersEditor::SetCellText(std::size_t row, EBorderColumn column, const std::wstring& text) {
    const int c = static_cast<int>(column);
    if (!m_borders || row >= m_rows.size() || c < 0 || c >= kBorderColumnCount)
        return false;
    const EDwg size = m_rows[row].size;
    const SColumn& what = kColumns[c];
    std::wstring value = TrimBlanks(text);
    if (value == m_rows[row].texts[c])
        return true;
    if (IsLimit(column)) {
        value = LimitText(value);
        if (!B::IsLimitText(value)) {
            m_prompter.Show(fmt::format(L"'{}' is not a valid {} of size {}.\n\nGive two numbers "
                                        L"separated by a comma, x then y, such as {}.",
                                        value, what.what, m_rows[row].name, (B().*what.get)(size)),
                            EPromptIcon::Exclamation);
            return false;
        }
    } else if (value.empty()) {
        m_prompter.Show(fmt::format(L"The {} of size {} cannot be empty.\n\nGive the name of a "
                                    L"drawing in the borders folder, such as {}.",
                                    what.what, m_rows[row].name, (B().*what.get)(size)),
                        EPromptIcon::Exclamation);
        return false;
    } else if (!IsValidName(value)) {
        m_prompter.Show(fmt::format(L"'{}' is not a valid file name for the {} of size {}.\n\n"
                                    L"Give the name of a drawing in the borders folder, such as "
                                    L"{}.",
                                    value, what.what, m_rows[row].name, (B().*what.get)(size)),
                        EPromptIcon::Exclamation);
        return false;
    }
    ((*m_borders).*what.set)(size, value);
    Fill();
    return true;
}

void CBordersEditor::RestoreDefaults() {
    if (!m_borders)
        return;
    // Through the setters, so that every value that differs from its default
    // is written by the next Apply.
    const B defaults;
    for (int index = 0; index < kDwgCount; ++index) {
        const EDwg size = static_cast<EDwg>(index);
        for (const SColumn& column : kColumns)
            ((*m_borders).*column.set)(size, (defaults.*column.get)(size));
    }
    Fill();
}

bool CBordersEditor::Save() {
    if (!m_borders->Save())
        return SaveFailed(L"border settings");
    Fill();
    return true;
}

void CBordersEditor::Discard() {
    m_borders->Load(m_borders->GetFilePath());
    Fill();
}
