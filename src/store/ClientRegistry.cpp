#include "store/ClientRegistry.h"

#include "datafile/Ids.h"
#include "datafile/IniFile.h"
#include "datafile/Text.h"

#include <fmt/xchar.h>
#include <unordered_map>

namespace {

const std::wstring kGeneral = L"General";
const std::wstring kClientList = L"ClientList";

std::wstring IdText(std::int32_t id) {
    return CVX2D_IniFile::FormatLong(id);
}

} // namespace

bool CVX2D_ClientRegistry::CreateClient(std::int32_t& id, std::wstring& name) {
    return UpdateDatafile(Path(), [&](CVX2D_IniFile& ini) {
        id = AllocateId(ini, L"LastClientId");
        name = MakeDefaultClientName(id);
        ini.SetSection(kClientList);
        ini.SetString(MakeClientKey(id), name);
        return true;
    });
}

bool CVX2D_ClientRegistry::RenameClient(std::int32_t id, const std::wstring& name) {
    // Client names never become folder names: the name is stored as typed.
    // A rename never creates a client (the next new client would take its id).
    return id >= 1 && UpdateDatafile(Path(), [&](CVX2D_IniFile& ini) {
               ini.SetSection(kClientList);
               if (!ini.HasKey(MakeClientKey(id)))
                   return false;
               ini.SetString(MakeClientKey(id), name);
               return true;
           });
}

bool CVX2D_ClientRegistry::DeleteClient(std::int32_t id) {
    return id >= 1 && UpdateDatafile(Path(), [&](CVX2D_IniFile& ini) {
               ini.SetSection(kClientList);
               ini.DeleteKey(MakeClientKey(id));
               ini.DeleteSection(MakeClientProjectListSection(id));
               return true;
           });
}

std::wstring CVX2D_ClientRegistry::GetClientName(std::int32_t id) const {
    if (Path().empty())
        return {};
    CVX2D_IniFile* ini = m_snapshot.Read(Path());
    if (!ini)
        return {};
    ini->SetSection(kClientList);
    return ini->String(MakeClientKey(id));
}

std::vector<std::int32_t> CVX2D_ClientRegistry::GetClientIds() const {
    std::vector<std::int32_t> ids;
    for (const auto& client : ListClients())
        ids.push_back(client.id);
    return ids;
}

std::vector<std::int32_t> CVX2D_ClientRegistry::GetClientProjectIds(std::int32_t clientId) const {
    std::vector<std::int32_t> ids;
    if (Path().empty())
        return ids;
    const CVX2D_IniFile* ini = m_snapshot.Read(Path());
    if (!ini)
        return ids;
    const std::wstring section = MakeClientProjectListSection(clientId);
    for (const auto& e : ini->Entries()) {
        if (e.section == section)
            ids.push_back(WToL(e.key));
    }
    return ids;
}

std::vector<SClientInfo> CVX2D_ClientRegistry::ListClients() const {
    std::vector<SClientInfo> clients;
    if (Path().empty())
        return clients;
    const CVX2D_IniFile* ini = m_snapshot.Read(Path());
    if (!ini)
        return clients;
    std::unordered_map<std::wstring, std::vector<std::int32_t>> lists;
    for (const auto& e : ini->Entries()) {
        if (e.section == kClientList)
            clients.push_back({ParseClientKey(e.key), e.value, {}});
        else if (e.section.starts_with(L"ProjectList - "))
            lists[e.section].push_back(WToL(e.key));
    }
    for (auto& client : clients) {
        const auto it = lists.find(MakeClientProjectListSection(client.id));
        if (it != lists.end())
            client.projectIds = it->second;
    }
    return clients;
}

bool CVX2D_ClientRegistry::AddProjectToClient(std::int32_t clientId, std::int32_t projectId) {
    return clientId >= 1 && projectId >= 1 && MoveProjectToClient(projectId, 0, clientId);
}

bool CVX2D_ClientRegistry::RemoveProjectFromClient(std::int32_t clientId, std::int32_t projectId) {
    return clientId >= 1 && projectId >= 1 && MoveProjectToClient(projectId, clientId, 0);
}

bool CVX2D_ClientRegistry::MoveProjectToClient(std::int32_t projectId, std::int32_t fromClient,
                                               std::int32_t toClient) {
    if (Path().empty() || projectId < 1)
        return false;
    if (fromClient == toClient)
        return true;
    return UpdateDatafile(Path(), [&](CVX2D_IniFile& ini) {
        const std::wstring key = IdText(projectId);
        if (fromClient != 0) {
            ini.SetSection(MakeClientProjectListSection(fromClient));
            ini.DeleteKey(key);
        }
        if (toClient != 0) {
            ini.SetSection(MakeClientProjectListSection(toClient));
            ini.SetString(key, key);
        }
        return true;
    });
}

bool CVX2D_ClientRegistry::FindClientOfProject(std::int32_t projectId, std::int32_t& clientId,
                                               std::wstring& clientName) const {
    clientId = 0;
    clientName.clear();
    for (const auto& client : ListClients()) {
        for (std::int32_t id : client.projectIds) {
            if (id == projectId) {
                clientId = client.id;
                clientName = client.name;
                return true;
            }
        }
    }
    return false;
}
