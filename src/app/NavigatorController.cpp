#include "app/NavigatorController.h"

#include "datafile/DatafileProblem.h"
#include "datafile/Ids.h"
#include "store/StandardOperations.h"

#include <fmt/xchar.h>
#include <map>
#include <unordered_map>

namespace {

const std::wstring kSection = L"ProjectNavigator";

} // namespace

CNavigatorController::CNavigatorController(CVX2D_ProjectRegistry& projects,
                                           CVX2D_ClientRegistry& clients, CProfile& profile,
                                           IPrompter& prompter, INavigatorOwner& owner)
    : m_projects(projects), m_clients(clients), m_profile(profile), m_prompter(prompter),
      m_owner(owner) {}

bool CNavigatorController::DeletedShown() const {
    return m_profile.GetInt(kSection, L"DeletedProjectState", 0) == kDeletedShown;
}

void CNavigatorController::Error(const std::wstring& text) {
    // Says why a datafile could not be changed: another workstation is
    // updating it, the share is read-only for this user, the disk is full.
    m_prompter.Show(WithDatafileProblem(text), EPromptIcon::Stop);
    m_outcome = text.substr(0, text.find(L'\n'));
}

void CNavigatorController::Rebuild() {
    const std::vector<std::wstring> path = m_tree.PathOf(m_selection);
    m_selection = 0;
    m_editing = 0;

    // One read of each registry, whatever their size.
    const std::vector<SClientInfo> clients = m_clients.ListClients();
    std::vector<SProjectInfo> projects;
    // An unreadable registry shows the clients alone; the start-up check and
    // every command on a standard say why.
    static_cast<void>(m_projects.ListProjects(true, DeletedShown(), projects));

    // The clients first, then each standard under its client (the first
    // client listing it) or at the top level; the tree sorts every level once.
    std::vector<CNavItem> roots;
    roots.reserve(clients.size() + projects.size());
    std::unordered_map<std::int32_t, std::size_t> clientOfProject;
    for (const auto& client : clients) {
        roots.push_back({0, client.name, client.id, eNavClient, {}});
        for (std::int32_t id : client.projectIds)
            clientOfProject.try_emplace(id, roots.size() - 1);
    }
    for (const auto& project : projects) {
        CNavItem item{
            0, project.name, project.id, project.deleted ? eNavDeleted : eNavStandard, {}};
        const auto client = clientOfProject.find(project.id);
        if (client == clientOfProject.end())
            roots.push_back(std::move(item));
        else
            roots[client->second].children.push_back(std::move(item));
    }
    m_tree.Assign(std::move(roots));
    Select(m_tree.FindByPath(path));
}

std::wstring CNavigatorController::ToolTipOf(std::uint64_t handle) const {
    const CNavItem* item = m_tree.Find(handle);
    if (!item)
        return {};
    if (item->image == eNavClient) {
        return fmt::format(L"Client {}\n{} standard{}", item->id, item->children.size(),
                           item->children.size() == 1 ? L"" : L"s");
    }
    // The folder by its name, without looking at the disk.
    return fmt::format(
        L"Standard {}{}\n{}", item->id, item->image == eNavDeleted ? L" (deleted)" : L"",
        m_projects.Datafiles().ProjectsFolder() + MakeProjectLabel(item->id, item->text));
}

int CNavigatorController::KindOf(std::uint64_t handle) const {
    const CNavItem* item = m_tree.Find(handle);
    return item ? item->image : kNavNothing;
}

void CNavigatorController::Select(std::uint64_t handle) {
    m_selection = m_tree.Find(handle) ? handle : 0;
    const CNavItem* item = m_tree.Find(m_selection);
    if (item && IsStandardKind(item->image))
        m_profile.SetInt(kSection, L"SelectedProject", item->id);
}

SNavButtons CNavigatorController::Buttons() const {
    SNavButtons buttons;
    buttons.openStandard = SelectionKind() == eNavStandard;
    return buttons;
}

SNavPopup CNavigatorController::RightClick(std::uint64_t handle) {
    Select(handle);
    SNavPopup popup;
    popup.showDeletedChecked = DeletedShown();
    switch (SelectionKind()) {
    case eNavStandard:
    case eNavDeleted:
        popup.menuIndex = 0;
        popup.items = {eCmdOpenStandard,     eCmdCopyStandard,   eCmdRenameStandard,
                       eCmdPrintStandard,    eCmdDeleteStandard, eCmdRecoverStandard,
                       eCmdPurgeStandard,    eCmdSeparator,      eCmdExportStandard,
                       eCmdCompareStandards, eCmdSeparator,      eCmdShowDeleted};
        if (SelectionKind() == eNavStandard)
            popup.greyed = {eCmdRecoverStandard, eCmdPurgeStandard};
        else
            popup.greyed = {eCmdOpenStandard, eCmdDeleteStandard, eCmdPrintStandard};
        break;
    case eNavClient:
        popup.menuIndex = 4;
        popup.items = {eCmdNewClient, eCmdRenameClient, eCmdDeleteClient,
                       eCmdSeparator, eCmdNewStandard,  eCmdImportStandards};
        break;
    default:
        popup.menuIndex = 5;
        popup.items = {eCmdNewClient, eCmdNewStandard, eCmdImportStandards, eCmdCompareStandards,
                       eCmdSeparator, eCmdShowDeleted, eCmdRefresh};
        break;
    }
    return popup;
}

bool CNavigatorController::Applies(ENavCommand command) const {
    const int kind = SelectionKind();
    switch (command) {
    case eCmdRenameClient:
    case eCmdDeleteClient:
        return kind == eNavClient;
    case eCmdOpenStandard:
    case eCmdPrintStandard:
    case eCmdDeleteStandard:
        return kind == eNavStandard;
    case eCmdCopyStandard:
    case eCmdRenameStandard:
    // A deleted standard keeps its folder until it is purged.
    case eCmdExportStandard:
        return IsStandardKind(kind);
    case eCmdRecoverStandard:
    case eCmdPurgeStandard:
        return kind == eNavDeleted;
    case eCmdNewClient:
    case eCmdNewStandard:
    case eCmdImportStandards:
    case eCmdCompareStandards:
    case eCmdShowDeleted:
    case eCmdRefresh:
        return true;
    default:
        return false;
    }
}

std::int32_t CNavigatorController::SelectedClientId() const {
    const CNavItem* item = m_tree.Find(m_selection);
    if (!item)
        return 0;
    if (item->image == eNavClient)
        return item->id;
    const CNavItem* parent = m_tree.Parent(m_selection);
    return parent && parent->image == eNavClient ? parent->id : 0;
}

void CNavigatorController::Execute(ENavCommand command) {
    if (!Applies(command))
        return;
    ClearDatafileProblem();
    m_outcome.clear();
    const CNavItem* item = m_tree.Find(m_selection);
    switch (command) {
    case eCmdNewClient:
        return NewClient();
    case eCmdRenameClient:
    case eCmdRenameStandard:
        return BeginRename();
    case eCmdDeleteClient:
        return DeleteClient();
    case eCmdNewStandard:
        return NewStandard();
    case eCmdOpenStandard:
        return m_owner.Request(ENavRequest::Open, item->id);
    case eCmdCompareStandards:
        return m_owner.Request(ENavRequest::Compare,
                               item && IsStandardKind(item->image) ? item->id : -1);
    case eCmdCopyStandard:
        return CopyStandard();
    case eCmdPrintStandard:
        return m_owner.PrintStandard(item->id);
    case eCmdDeleteStandard:
        return MarkDeleted();
    case eCmdRecoverStandard:
        return Recover();
    case eCmdPurgeStandard:
        return Purge();
    case eCmdExportStandard:
        return m_owner.ExportStandard(item->id, item->text);
    case eCmdImportStandards:
        m_owner.ImportStandards(SelectedClientId());
        return Rebuild();
    case eCmdShowDeleted:
        return ToggleDeleted();
    case eCmdRefresh:
        return Rebuild();
    default:
        return;
    }
}

void CNavigatorController::NewClient() {
    std::int32_t id = 0;
    std::wstring name;
    if (!m_clients.CreateClient(id, name)) {
        Error(CreateClientErrorText());
        return;
    }
    const std::uint64_t item = m_tree.Insert(0, name, id, eNavClient);
    m_outcome = fmt::format(L"Client '{}' created", name);
    Select(item);
    BeginRename();
}

void CNavigatorController::BeginRename() {
    const CNavItem* item = m_tree.Find(m_selection);
    if (!item)
        return;
    m_editing = item->handle;
    m_editOldText = item->text;
}

bool CNavigatorController::EndLabelEdit(const std::optional<std::wstring>& newText) {
    ClearDatafileProblem();
    m_outcome.clear();
    const CNavItem* item = m_tree.Find(m_editing);
    m_editing = 0;
    if (!item || !newText || *newText == m_editOldText)
        return false;
    if (IsStandardKind(item->image)) {
        const EProjectResult result = m_projects.RenameProject(item->id, *newText);
        if (result != eProjectOk) {
            Error(fmt::format(L"{}\n\n{}", RenameStandardErrorText(m_editOldText, *newText),
                              ProjectResultText(result)));
            return false;
        }
        // Show the name as the registry stored it, trimmed.
        m_tree.SetText(item->handle, CVX2D_ProjectRegistry::StoredName(*newText));
        m_outcome = fmt::format(L"Standard '{}' renamed to '{}'", m_editOldText,
                                CVX2D_ProjectRegistry::StoredName(*newText));
    } else {
        if (!m_clients.RenameClient(item->id, *newText)) {
            Error(RenameClientErrorText(m_editOldText, *newText));
            return false;
        }
        m_tree.SetText(item->handle, *newText);
        m_outcome = fmt::format(L"Client '{}' renamed to '{}'", m_editOldText, *newText);
    }
    const CNavItem* parent = m_tree.Parent(item->handle);
    m_tree.SortChildren(parent ? parent->handle : 0);
    return true;
}

void CNavigatorController::DeleteClient() {
    const CNavItem* item = m_tree.Find(m_selection);
    const std::wstring name = item->text;
    const EPromptAnswer answer =
        m_prompter.Ask({fmt::format(L"Are you sure you want to delete client '{}'?\n\nNote that "
                                    L"sub-standards will not be deleted.",
                                    name),
                        L"", EPromptButtons::YesNo, EPromptIcon::Question, EPromptAnswer::Yes});
    if (answer == EPromptAnswer::No)
        return;
    if (!m_clients.DeleteClient(item->id)) {
        Error(DeleteClientErrorText(name));
        return;
    }
    m_outcome = fmt::format(L"Client '{}' deleted; its standards are kept", name);
    Rebuild();
}

void CNavigatorController::NewStandard() {
    std::int32_t id = 0;
    std::wstring name;
    if (!m_owner.RunNewStandardWizard(SelectedClientId(), id, name))
        return;
    const CNavItem* selected = m_tree.Find(m_selection);
    std::uint64_t parent = 0;
    if (selected && selected->image == eNavClient)
        parent = selected->handle;
    else if (const CNavItem* owner = m_tree.Parent(m_selection);
             owner && owner->image == eNavClient)
        parent = owner->handle;
    Select(m_tree.Insert(parent, name, id, eNavStandard));
    m_outcome = fmt::format(L"Standard '{}' created", name);
}

void CNavigatorController::CopyStandard() {
    const CNavItem* item = m_tree.Find(m_selection);
    std::int32_t newId = 0;
    std::wstring newName;
    EProjectResult result = eProjectOk;
    bool stopped = false;
    m_owner.RunLong(fmt::format(L"Copying standard '{}'...", item->text), true,
                    [&](const CProgress& progress) {
                        result = m_projects.CopyProject(
                            item->id, newId, newName,
                            [&](std::size_t done, std::size_t total, const std::wstring& file) {
                                stopped = progress && !progress(done, total, file);
                                return !stopped;
                            });
                    });
    const std::wstring name = item->text;
    if (stopped) {
        // The user stopped it: no box, only a word in the status bar.
        m_outcome = fmt::format(L"Copying standard '{}' was stopped; nothing was copied", name);
        return;
    }
    if (result != eProjectOk) {
        Error(fmt::format(L"{}\n\n{}", CopyStandardErrorText(name), ProjectResultText(result)));
        return;
    }
    m_outcome = fmt::format(L"Standard '{}' copied as '{}'", name, newName);
    Rebuild();
}

void CNavigatorController::MarkDeleted() {
    const CNavItem* item = m_tree.Find(m_selection);
    const EPromptAnswer answer = m_prompter.Ask(
        {fmt::format(L"Are you sure you want to mark the standard '{}' as deleted?", item->text),
         L"", EPromptButtons::YesNo, EPromptIcon::Exclamation, EPromptAnswer::Yes});
    if (answer != EPromptAnswer::Yes)
        return;
    const EProjectResult result = m_projects.DeleteProject(item->id);
    if (result != eProjectOk) {
        Error(fmt::format(L"{}\n\n{}", DeleteStandardErrorText(item->text),
                          ProjectResultText(result)));
        return;
    }
    m_outcome = fmt::format(L"Standard '{}' marked as deleted", item->text);
    if (DeletedShown()) {
        m_tree.SetImage(item->handle, eNavDeleted);
    } else {
        m_tree.Remove(item->handle);
        m_selection = 0;
    }
}

void CNavigatorController::Recover() {
    const CNavItem* item = m_tree.Find(m_selection);
    const EProjectResult result = m_projects.RecoverProject(item->id);
    if (result != eProjectOk) {
        Error(fmt::format(L"{}\n\n{}", RecoverStandardErrorText(item->text),
                          ProjectResultText(result)));
        return;
    }
    m_tree.SetImage(item->handle, eNavStandard);
    m_outcome = fmt::format(L"Standard '{}' recovered", item->text);
}

void CNavigatorController::Purge() {
    const CNavItem* item = m_tree.Find(m_selection);
    const std::wstring name = item->text;
    if (m_prompter.Ask({fmt::format(L"Are you sure you want to purge the standard '{}'?", name),
                        L"", EPromptButtons::YesNo, EPromptIcon::Exclamation, EPromptAnswer::No}) !=
        EPromptAnswer::Yes)
        return;
    if (m_prompter.Ask(
            {fmt::format(L"This will permanently delete standard '{}'!\n\nThe only way to recover "
                         L"from this is through your own backup files.\n\nAre you still sure you "
                         L"want to do this?",
                         name),
             L"", EPromptButtons::YesNo, EPromptIcon::Stop, EPromptAnswer::No}) !=
        EPromptAnswer::Yes)
        return;
    bool gone = false;
    EProjectResult result = eProjectOk;
    m_owner.RunLong(fmt::format(L"Purging standard '{}'...", name), false, [&](const CProgress&) {
        result = PurgeStandard(m_projects, m_clients, item->id, gone);
    });
    if (result != eProjectOk) {
        Error(fmt::format(L"{}\n\n{}", PurgeStandardErrorText(name), ProjectResultText(result)));
        return;
    }
    // A folder that could not be deleted keeps the standard in the deleted
    // list; it stays in the tree and with its client then.
    if (!gone) {
        m_outcome = PurgeKeptText(name);
        return;
    }
    m_outcome = fmt::format(L"Standard '{}' purged", name);
    m_tree.Remove(item->handle);
    m_selection = 0;
}

void CNavigatorController::ToggleDeleted() {
    m_profile.SetInt(kSection, L"DeletedProjectState", DeletedShown() ? 0 : kDeletedShown);
    Rebuild();
}

void CNavigatorController::Drop(std::uint64_t dragged, std::uint64_t target) {
    const CNavItem* item = m_tree.Find(dragged);
    if (!item || !IsStandardKind(item->image) || dragged == target)
        return;
    const CNavItem* oldParent = m_tree.Parent(dragged);
    const CNavItem* newParent = nullptr;
    if (const CNavItem* drop = m_tree.Find(target)) {
        newParent = drop->image == eNavClient ? drop : m_tree.Parent(target);
        if (m_tree.IsInside(target, dragged))
            return;
    }
    const std::uint64_t from = oldParent ? oldParent->handle : 0;
    const std::uint64_t to = newParent ? newParent->handle : 0;
    if (from == to)
        return;
    if (!m_clients.MoveProjectToClient(item->id, oldParent ? oldParent->id : 0,
                                       newParent ? newParent->id : 0)) {
        Error(MoveStandardErrorText());
        return;
    }
    const CNavItem moved = *item;
    m_tree.Remove(dragged);
    Select(m_tree.InsertCopy(to, moved));
}
