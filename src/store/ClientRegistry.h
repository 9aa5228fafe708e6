// Clients and the standards grouped under them, kept in "ClientDatafile.ini".
// A client is only a name and a list of standard ids: deleting a client never
// deletes a standard. Every operation returns false when the datafiles folder
// is unknown or the datafile cannot be updated.
#pragma once

#include "datafile/DatafileSnapshot.h"
#include "store/Datafiles.h"

#include <cstdint>
#include <string>
#include <vector>

struct SClientInfo {
    std::int32_t id = 0;
    std::wstring name;
    std::vector<std::int32_t> projectIds;
};

class CVX2D_ClientRegistry {
public:
    explicit CVX2D_ClientRegistry(const CVX2D_Datafiles& datafiles) : m_datafiles(datafiles) {}

    bool CreateClient(std::int32_t& id, std::wstring& name);
    // Stores the name as typed; false for a client that does not exist and
    // for a name the datafile cannot hold (a line break, a character above 255).
    bool RenameClient(std::int32_t id, const std::wstring& name);
    bool DeleteClient(std::int32_t id);

    std::wstring GetClientName(std::int32_t id) const;
    std::vector<std::int32_t> GetClientIds() const;
    std::vector<std::int32_t> GetClientProjectIds(std::int32_t clientId) const;
    // Every client with its standards, from one read of the datafile.
    std::vector<SClientInfo> ListClients() const;

    bool AddProjectToClient(std::int32_t clientId, std::int32_t projectId);
    bool RemoveProjectFromClient(std::int32_t clientId, std::int32_t projectId);
    // Client id 0 on either side means no client.
    bool MoveProjectToClient(std::int32_t projectId, std::int32_t fromClient,
                             std::int32_t toClient);
    bool FindClientOfProject(std::int32_t projectId, std::int32_t& clientId,
                             std::wstring& clientName) const;

private:
    std::wstring Path() const { return m_datafiles.ClientDatafile(); }
    const CVX2D_Datafiles& m_datafiles;
    // The registry as last read, for lookups; changes read afresh under the
    // lock.
    mutable CDatafileSnapshot m_snapshot;
};
