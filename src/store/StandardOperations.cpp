#include "store/StandardOperations.h"

#include <fmt/xchar.h>

EProjectResult PurgeStandard(CVX2D_ProjectRegistry& projects, CVX2D_ClientRegistry& clients,
                             std::int32_t id, bool& gone) {
    gone = false;
    std::int32_t clientId = 0;
    std::wstring clientName;
    clients.FindClientOfProject(id, clientId, clientName);
    const EProjectResult result = projects.PurgeProject(id);
    if (result != eProjectOk)
        return result;
    gone = projects.GetProjectName(id, true, true).empty();
    if (gone && clientId != 0)
        clients.RemoveProjectFromClient(clientId, id);
    return result;
}

std::vector<std::int32_t> StandardsNamed(const CVX2D_ProjectRegistry& projects,
                                         const std::wstring& name, EProjectResult& result) {
    std::vector<SProjectInfo> listed;
    std::vector<std::int32_t> ids;
    result = projects.ListProjects(true, true, listed);
    for (const auto& project : listed) {
        if (project.name == name)
            ids.push_back(project.id);
    }
    return ids;
}

std::vector<std::int32_t> ClientsNamed(const CVX2D_ClientRegistry& clients,
                                       const std::wstring& name) {
    std::vector<std::int32_t> ids;
    for (const auto& client : clients.ListClients()) {
        if (client.name == name)
            ids.push_back(client.id);
    }
    return ids;
}

std::wstring PurgeKeptText(const std::wstring& name) {
    return fmt::format(L"Standard '{}' is still listed: its folder could not be deleted", name);
}

std::wstring CreateClientErrorText() {
    return L"Error creating a new client";
}

std::wstring RenameClientErrorText(const std::wstring& oldName, const std::wstring& newName) {
    return fmt::format(L"Error renaming client from '{}' to '{}'.", oldName, newName);
}

std::wstring DeleteClientErrorText(const std::wstring& name) {
    return fmt::format(L"Error deleting client '{}'", name);
}

std::wstring CreateStandardErrorText(const std::wstring& name) {
    return fmt::format(L"Error creating new standard '{}'", name);
}

std::wstring CopyStandardErrorText(const std::wstring& name) {
    return fmt::format(L"Error copying standard '{}'", name);
}

std::wstring RenameStandardErrorText(const std::wstring& oldName, const std::wstring& newName) {
    return fmt::format(L"Error renaming project from '{}' to '{}'.", oldName, newName);
}

std::wstring DeleteStandardErrorText(const std::wstring& name) {
    return fmt::format(L"Error marking standard '{}' as deleted.", name);
}

std::wstring RecoverStandardErrorText(const std::wstring& name) {
    return fmt::format(L"Error recovering standard '{}'.", name);
}

std::wstring PurgeStandardErrorText(const std::wstring& name) {
    return fmt::format(L"Error purging standard '{}'.", name);
}

std::wstring MoveStandardErrorText() {
    return L"Error moving project.";
}
