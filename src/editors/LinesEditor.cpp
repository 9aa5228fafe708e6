#include "editors/LinesEditor.h"

#include "contents/ProjectLines.h"
#include "contents/ProjectSpecs.h"
#include "datafile/Application.h"
#include "datafile/Text.h"

#include <algorithm>
#include <fmt/xchar.h>

std::wstring LineStateText(bool deleted) {
    return deleted ? L"Deleted" : L"Live";
}

bool CLinesEditor::Open(std::int32_t projectId) {
    SetStandard(projectId, L"Lines");
    return Reload();
}

bool CLinesEditor::Reload(bool quiet) {
    m_rows.clear();
    SLineList lines;
    const ELineResult read = CVX2D_ProjectLines(m_projects).GetLines(m_nProjectId, lines, true);
    if (read != eLineOk) {
        // After a failed command its own message says enough.
        if (!quiet)
            Error(fmt::format(L"Error reading the lines of standard '{}'.", m_strName), read);
        return false;
    }
    for (std::size_t i = 0; i < lines.Size(); ++i)
        m_rows.push_back({lines.ids[i], lines.names[i], lines.deleted[i]});
    // Live lines first; by id in each group, so a recovered line goes back
    // to its place instead of the end of the list.
    std::stable_sort(m_rows.begin(), m_rows.end(), [](const SLineRow& a, const SLineRow& b) {
        return a.deleted != b.deleted ? !a.deleted : a.id < b.id;
    });
    return true;
}

int CLinesEditor::Find(std::int32_t lineId) const {
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i].id == lineId)
            return static_cast<int>(i);
    }
    return -1;
}

const SLineRow* CLinesEditor::Row(std::int32_t lineId) const {
    const int row = Find(lineId);
    return row < 0 ? nullptr : &m_rows[static_cast<std::size_t>(row)];
}

void CLinesEditor::Error(const std::wstring& what, int code) {
    m_prompter.Show(what + L"\n\n" + CVX2D_ProjectLines::GetErrorText(code), EPromptIcon::Stop);
}

ESpecResult GiveLineTheCheckedSpecs(const CVX2D_ProjectRegistry& projects, std::int32_t projectId,
                                    std::int32_t lineId) {
    const CVX2D_ProjectSpecs specs(projects);
    for (const int application : kApplications) {
        if (const ESpecResult listed = specs.CreateLineSpecList(projectId, lineId, application);
            listed != eSpecOk)
            return listed;
    }
    return eSpecOk;
}

std::int32_t CLinesEditor::CreateLine() {
    std::int32_t lineId = 0;
    std::wstring name;
    const ELineResult created =
        CVX2D_ProjectLines(m_projects).CreateLine(m_nProjectId, lineId, name);
    if (created != eLineOk) {
        Error(fmt::format(L"Error creating a new line in standard '{}'.", m_strName), created);
        Reload(true);
        return 0;
    }
    if (const ESpecResult listed = GiveLineTheCheckedSpecs(m_projects, m_nProjectId, lineId);
        listed != eSpecOk) {
        // The line itself is made; only its spec lists are missing.
        m_prompter.Show(fmt::format(L"Error giving line '{}' the specs of standard '{}'.\n\n{}",
                                    name, m_strName, CVX2D_ProjectSpecs::GetErrorText(listed)),
                        EPromptIcon::Exclamation);
    }
    Reload();
    return lineId;
}

bool CLinesEditor::DeleteLine(std::int32_t lineId) {
    const SLineRow* row = Row(lineId);
    if (!row || row->deleted)
        return false;
    const std::wstring name = row->name;
    if (m_prompter.Ask(
            {fmt::format(L"Are you sure you want to mark the line '{}' as deleted?", name), L"",
             EPromptButtons::YesNo, EPromptIcon::Exclamation, EPromptAnswer::Yes}) !=
        EPromptAnswer::Yes)
        return false;
    const ELineResult deleted = CVX2D_ProjectLines(m_projects).DeleteLine(m_nProjectId, lineId);
    if (deleted != eLineOk)
        Error(fmt::format(L"Error deleting line '{}'.", name), deleted);
    Reload(deleted != eLineOk);
    return deleted == eLineOk;
}

bool CLinesEditor::RecoverLine(std::int32_t lineId) {
    const SLineRow* row = Row(lineId);
    if (!row || !row->deleted)
        return false;
    const std::wstring name = row->name;
    const ELineResult recovered = CVX2D_ProjectLines(m_projects).RecoverLine(m_nProjectId, lineId);
    if (recovered != eLineOk)
        Error(fmt::format(L"Error recovering line '{}'.", name), recovered);
    Reload(recovered != eLineOk);
    return recovered == eLineOk;
}

bool CLinesEditor::RenameLine(std::int32_t lineId, const std::wstring& newName) {
    const SLineRow* row = Row(lineId);
    if (!row || row->deleted)
        return false;
    const std::wstring oldName = row->name;
    const std::wstring trimmed = TrimBlanks(newName);
    if (trimmed == oldName)
        return true;
    const ELineResult renamed =
        CVX2D_ProjectLines(m_projects).RenameLine(m_nProjectId, lineId, newName);
    if (renamed != eLineOk)
        Error(fmt::format(L"Error renaming line from '{}' to '{}'.", oldName, trimmed), renamed);
    Reload(renamed != eLineOk);
    return renamed == eLineOk;
}

std::wstring CLinesEditor::HelpTopic() const {
    return L"::/Line_Numbers.htm";
}
