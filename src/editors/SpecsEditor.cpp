#include "editors/SpecsEditor.h"

#include "contents/ProjectSpecs.h"
#include "datafile/DatafileProblem.h"
#include "datafile/Ids.h"
#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"

#include <algorithm>
#include <filesystem>
#include <fmt/xchar.h>
#include <map>

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

CSpecsEditor::CSpecsEditor(const CVX2D_ProjectRegistry& projects, IPrompter& prompter,
                           CVX2D_SpecRegister& specs)
    : CPageEditor(projects, prompter), m_specs(specs),
      m_opener([](const std::wstring& target) { return platform::ShellOpen(target); }) {}

bool CSpecsEditor::Open(std::int32_t projectId) {
    SetStandard(projectId, L"Specs");
    m_rows.clear();
    m_saved.clear();
    return Reload();
}

bool CSpecsEditor::Reload(bool tell) {
    std::vector<SSpecInfo> offered;
    std::vector<std::int32_t> checkedIds;
    std::vector<std::wstring> checkedNames;
    ESpecResult read = m_specs.SpecsFor(m_nProjectId, offered);
    if (read == eSpecOk)
        read =
            CVX2D_ProjectSpecs(m_projects).GetCheckedSpecs(m_nProjectId, checkedIds, checkedNames);
    if (read != eSpecOk) {
        if (tell)
            m_prompter.Show(fmt::format(L"Error reading the specs of standard '{}'.\n\n{}",
                                        m_strName, CVX2D_ProjectSpecs::GetErrorText(read)),
                            EPromptIcon::Stop);
        return false;
    }
    auto isChecked = [&](std::int32_t id) {
        return std::find(checkedIds.begin(), checkedIds.end(), id) != checkedIds.end();
    };
    const std::wstring& root = m_projects.Datafiles().Root();
    std::map<ESpecScope, std::wstring> groups;
    for (const auto& choice : Places())
        groups[choice.place.scope] = choice.place.scope == eSpecCommon
                                         ? L"Common specs"
                                         : L"Specs of " + m_specs.PlaceText(choice.place);
    // By name within each group, as a user looks for them.
    std::stable_sort(offered.begin(), offered.end(), [](const SSpecInfo& a, const SSpecInfo& b) {
        return std::pair(ToUpper(a.name), a.id) < std::pair(ToUpper(b.name), b.id);
    });
    std::vector<SSpecRow> rows;
    for (ESpecScope scope : {eSpecCommon, eSpecClient, eSpecProject}) {
        for (const auto& spec : offered) {
            if (spec.scope != scope)
                continue;
            SSpecRow row{spec.id,
                         spec.name,
                         ScopeText(scope),
                         groups[scope],
                         L"",
                         {scope, scope == eSpecCommon ? 0 : spec.ownerId},
                         true,
                         isChecked(spec.id)};
            std::wstring folder;
            if (m_specs.LocationFolder(row.place, folder) == eSpecOk) {
                folder += MakeSpecKey(spec.id);
                row.folder = folder.starts_with(root) ? folder.substr(root.size()) : folder;
            }
            rows.push_back(std::move(row));
        }
    }
    for (std::size_t i = 0; i < checkedIds.size(); ++i) {
        const std::int32_t id = checkedIds[i];
        const bool shown = std::any_of(rows.begin(), rows.end(),
                                       [id](const SSpecRow& row) { return row.id == id; });
        // A damaged key (id 0) cannot be unchecked by id either.
        if (id > 0 && !shown)
            rows.push_back({id,
                            checkedNames[i],
                            L"Not in the register",
                            L"No longer offered",
                            L"",
                            {},
                            false,
                            true});
    }
    m_rows = std::move(rows);
    m_saved.clear();
    for (const auto& row : m_rows)
        m_saved.push_back(row.checked);
    return true;
}

void CSpecsEditor::ReloadKeepingChecks(bool tell) {
    std::map<std::int32_t, bool> unsaved;
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i].checked != m_saved[i])
            unsaved[m_rows[i].id] = m_rows[i].checked;
    }
    if (!Reload(tell))
        return;
    for (SSpecRow& row : m_rows) {
        if (const auto it = unsaved.find(row.id); it != unsaved.end())
            row.checked = it->second;
    }
}

std::optional<std::size_t> CSpecsEditor::RowOf(std::int32_t specId) const {
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i].id == specId)
            return i;
    }
    return std::nullopt;
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
    bool ok = true;
    ClearDatafileProblem();
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const SSpecRow& row = m_rows[i];
        if (row.checked == m_saved[i])
            continue;
        const ESpecResult result = row.checked ? m_specs.CheckSpec(m_nProjectId, row.id)
                                               : m_specs.UncheckSpec(m_nProjectId, row.id);
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
    ReloadKeepingChecks(ok);
    return ok;
}

void CSpecsEditor::Discard() {
    Reload();
}

std::wstring CSpecsEditor::HelpTopic() const {
    return L"::/Specs.htm";
}

std::vector<SSpecPlaceChoice> CSpecsEditor::Places() const {
    std::vector<SSpecPlaceChoice> places{{{eSpecCommon, 0}, L"Common"}};
    if (const std::int32_t clientId = m_specs.ClientOf(m_nProjectId); clientId > 0) {
        const SSpecPlace client{eSpecClient, clientId};
        std::wstring text = m_specs.PlaceText(client);
        text[0] = L'C';
        places.push_back({client, text});
    }
    const SSpecPlace own{eSpecProject, m_nProjectId};
    std::wstring text = m_specs.PlaceText(own);
    text[0] = L'S';
    places.push_back({own, text});
    return places;
}

bool CSpecsEditor::CanManage(std::size_t row) const {
    return row < m_rows.size() && m_rows[row].available;
}

std::wstring CSpecsEditor::ProposedCopyName(std::size_t row) const {
    return row < m_rows.size() ? MakeCopyName(m_rows[row].name) : std::wstring();
}

bool CSpecsEditor::Told(ESpecResult result, const std::wstring& what, const std::wstring& name) {
    if (result == eSpecOk)
        return true;
    if (result != eSpecCancelled)
        m_prompter.Show(
            WithDatafileProblem(what + L"\n\n" + CVX2D_SpecRegister::ReasonText(result, name)),
            EPromptIcon::Stop);
    return false;
}

std::optional<std::size_t> CSpecsEditor::NewSpec(const std::wstring& name,
                                                 const SSpecPlace& place) {
    ClearDatafileProblem();
    std::int32_t id = 0;
    const ESpecResult result = m_specs.CreateSpec(name, place, id);
    ReloadKeepingChecks();
    if (!Told(result, CVX2D_SpecRegister::CreateErrorText(name), name))
        return std::nullopt;
    return RowOf(id);
}

bool CSpecsEditor::RenameSpec(std::size_t row, const std::wstring& name) {
    if (!CanManage(row))
        return false;
    ClearDatafileProblem();
    const std::wstring oldName = m_rows[row].name;
    const ESpecResult result = m_specs.RenameSpec(m_rows[row].id, name);
    ReloadKeepingChecks();
    return Told(result, CVX2D_SpecRegister::RenameErrorText(oldName, name), name);
}

bool CSpecsEditor::MoveSpec(std::size_t row, const SSpecPlace& place) {
    if (!CanManage(row))
        return false;
    ClearDatafileProblem();
    const std::wstring name = m_rows[row].name;
    const ESpecResult result = m_specs.MoveSpec(m_rows[row].id, place);
    ReloadKeepingChecks();
    return Told(result, m_specs.MoveErrorText(name, place));
}

std::optional<std::size_t> CSpecsEditor::CopySpec(std::size_t row, const std::wstring& name,
                                                  const SSpecPlace& place) {
    if (!CanManage(row))
        return std::nullopt;
    ClearDatafileProblem();
    const std::wstring source = m_rows[row].name;
    std::int32_t id = 0;
    const ESpecResult result = m_specs.CopySpec(m_rows[row].id, name, place, id);
    ReloadKeepingChecks();
    if (!Told(result, CVX2D_SpecRegister::CopyErrorText(source), name))
        return std::nullopt;
    return RowOf(id);
}

bool CSpecsEditor::DeleteSpec(std::size_t row) {
    if (!CanManage(row))
        return false;
    ClearDatafileProblem();
    const std::wstring name = m_rows[row].name;
    const ESpecResult result = m_specs.DeleteSpec(m_rows[row].id);
    ReloadKeepingChecks();
    return Told(result, CVX2D_SpecRegister::DeleteErrorText(name));
}

bool CSpecsEditor::OpenFolder(std::size_t row) {
    if (!CanManage(row))
        return false;
    std::wstring folder;
    if (!Told(m_specs.SpecFolder(m_rows[row].id, folder),
              fmt::format(L"Error opening the folder of spec '{}'.", m_rows[row].name)))
        return false;
    std::error_code ec;
    if (!std::filesystem::is_directory(platform::ToPath(WithoutTrailingSeparator(folder)), ec)) {
        m_prompter.Show(
            fmt::format(L"The folder of spec '{}' is not there:\n{}", m_rows[row].name, folder),
            EPromptIcon::Exclamation);
        return false;
    }
    return OpenOrTell(m_opener, folder, L"the folder", m_prompter);
}
