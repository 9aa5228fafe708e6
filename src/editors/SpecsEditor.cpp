#include "editors/SpecsEditor.h"

#include "contents/ProjectSpecs.h"
#include "datafile/DatafileProblem.h"
#include "store/ClientRegistry.h"

#include <algorithm>
#include <fmt/xchar.h>

namespace {

std::wstring ScopeText(ESpecScope scope) {
    switch (scope) {
    case eSpecClient:
        return L"Client";
    case eSpecProject:
        return L"Standard";
    default:
        return L"Common";
    }
}

} // namespace

bool CSpecsEditor::Open(std::int32_t projectId) {
    SetStandard(projectId, L"Specs");
    m_rows.clear();
    m_saved.clear();
    return Reload();
}

bool CSpecsEditor::Reload(bool tell) {
    const CVX2D_ProjectSpecs specs(m_projects);
    std::vector<SSpecInfo> registered;
    std::vector<std::int32_t> checkedIds;
    std::vector<std::wstring> checkedNames;
    ESpecResult read = specs.GetSpecRegister(registered);
    if (read == eSpecOk)
        read = specs.GetCheckedSpecs(m_nProjectId, checkedIds, checkedNames);
    if (read != eSpecOk) {
        if (tell)
            m_prompter.Show(fmt::format(L"Error reading the specs of standard '{}'.\n\n{}",
                                        m_strName, CVX2D_ProjectSpecs::GetErrorText(read)),
                            EPromptIcon::Stop);
        return false;
    }
    std::int32_t clientId = 0;
    std::wstring clientName;
    if (!CVX2D_ClientRegistry(m_projects.Datafiles())
             .FindClientOfProject(m_nProjectId, clientId, clientName))
        clientId = 0;
    std::vector<SSpecRow> rows;
    auto isChecked = [&](std::int32_t id) {
        return std::find(checkedIds.begin(), checkedIds.end(), id) != checkedIds.end();
    };
    // The same choice CheckSpec makes: another client's or another
    // standard's spec goes with its owner and is not offered here.
    for (const auto& spec : registered) {
        if ((spec.scope == eSpecClient && (clientId == 0 || spec.ownerId != clientId)) ||
            (spec.scope == eSpecProject && spec.ownerId != m_nProjectId))
            continue;
        rows.push_back({spec.id, spec.name, ScopeText(spec.scope), true, isChecked(spec.id)});
    }
    for (std::size_t i = 0; i < checkedIds.size(); ++i) {
        const std::int32_t id = checkedIds[i];
        const bool shown = std::any_of(rows.begin(), rows.end(),
                                       [id](const SSpecRow& row) { return row.id == id; });
        // A damaged key (id 0) cannot be unchecked by id either.
        if (id > 0 && !shown)
            rows.push_back({id, checkedNames[i], L"Not in the register", false, true});
    }
    m_rows = std::move(rows);
    m_saved.clear();
    for (const auto& row : m_rows)
        m_saved.push_back(row.checked);
    return true;
}

bool CSpecsEditor::SetChecked(std::size_t row, bool checked) {
    if (row >= m_rows.size())
        return false;
    m_rows[row].checked = checked;
    return true;
}

bool CSpecsEditor::ApplyEnabled() const {
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i].checked != m_saved[i])
            return true;
    }
    return false;
}

bool CSpecsEditor::Save() {
    const CVX2D_ProjectSpecs specs(m_projects);
    bool ok = true;
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const SSpecRow& row = m_rows[i];
        if (row.checked == m_saved[i])
            continue;
        const ESpecResult result = row.checked ? specs.CheckSpec(m_nProjectId, row.id)
                                               : specs.UncheckSpec(m_nProjectId, row.id);
        if (result == eSpecOk) {
            m_saved[i] = row.checked;
        } else {
            ok = false;
            m_prompter.Show(WithDatafileProblem(
                                fmt::format(L"Error {} spec '{}' for standard '{}'.\n\n{}",
                                            row.checked ? L"checking" : L"unchecking", row.name,
                                            m_strName, CVX2D_ProjectSpecs::GetErrorText(result))),
                            EPromptIcon::Stop);
        }
    }
    // Show what the file holds now; a check that could not be saved stays
    // as the user left it, for another try. What made the save fail would
    // mostly fail the reading too, and has been told already.
    std::vector<SSpecRow> unsaved;
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i].checked != m_saved[i])
            unsaved.push_back(m_rows[i]);
    }
    if (Reload(ok)) {
        for (const SSpecRow& kept : unsaved) {
            for (SSpecRow& row : m_rows) {
                if (row.id == kept.id)
                    row.checked = kept.checked;
            }
        }
    }
    return ok;
}

void CSpecsEditor::Discard() {
    Reload();
}

std::wstring CSpecsEditor::HelpTopic() const {
    return L"::/Specs.htm";
}
