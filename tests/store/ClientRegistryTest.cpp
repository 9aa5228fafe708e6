// The client registry: ids, names and standard lists in "ClientDatafile.ini".
#include "store/ClientRegistry.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace client_registry_test {

class ClientRegistryTest : public ::testing::Test {
protected:
    std::string File() const { return ReadBytes(dir.Path() / "ClientDatafile.ini"); }
    void SetFile(const std::string& bytes) const {
        WriteBytes(dir.Path() / "ClientDatafile.ini", bytes);
    }

    test::CTempDir dir;
    CVX2D_Datafiles datafiles{dir.Text()};
    CVX2D_ClientRegistry clients{datafiles};
};

// Written out of order on purpose: any rewrite would sort it.
const std::string kTwoClients =
    "[ProjectList - 2]\r\n7 = 7\r\n8 = 8\r\n\r\n[ClientList]\r\n"
    "VX2D_CLIENT_2 = Beta\r\nVX2D_CLIENT_1 = Alpha\r\n\r\n"
    "[ProjectList - 1]\r\n3 = 3\r\n\r\n[General]\r\nLastClientId = 2\r\n";

TEST_F(ClientRegistryTest, CreateHandsOutNumberedClientsAndNeverReusesIds) {
    std::int32_t id = 0;
    std::wstring name;
    ASSERT_TRUE(clients.CreateClient(id, name));
    EXPECT_EQ(id, 1);
    EXPECT_EQ(name, L"Client 1");
    EXPECT_EQ(File(),
              "[ClientList]\r\nVX2D_CLIENT_1 = Client 1\r\n\r\n[General]\r\nLastClientId = 1\r\n");

    ASSERT_TRUE(clients.RenameClient(1, L"Acme"));
    ASSERT_TRUE(clients.DeleteClient(1));
    ASSERT_TRUE(clients.CreateClient(id, name));
    EXPECT_EQ(id, 2);
    EXPECT_EQ(name, L"Client 2");
    EXPECT_EQ(File(),
              "[ClientList]\r\nVX2D_CLIENT_2 = Client 2\r\n\r\n[General]\r\nLastClientId = 2\r\n");
}

TEST_F(ClientRegistryTest, RenameStoresTheNameAsTyped) {
    // Client names never become folder names: any text the datafile can hold
    // is stored as it is, blanks and all.
    const std::pair<std::wstring, const char*> stored[] = {
        {L"ACME: North", "ACME: North"}, {L"a/b\\c*?", "a/b\\c*?"},
        {L"  Acme  ", "  Acme  "},       {L"x = y", "x = y"},
        {L"Acme & Sons", "Acme & Sons"},
    };
    for (const auto& [name, bytes] : stored) {
        SetFile(kTwoClients);
        EXPECT_TRUE(clients.RenameClient(1, name)) << bytes;
        EXPECT_EQ(clients.GetClientName(1), name);
        EXPECT_EQ(File(),
                  std::string("[ClientList]\r\nVX2D_CLIENT_1 = ") + bytes +
                      "\r\nVX2D_CLIENT_2 = Beta\r\n\r\n"
                      "[General]\r\nLastClientId = 2\r\n\r\n[ProjectList - 1]\r\n3 = 3\r\n\r\n"
                      "[ProjectList - 2]\r\n7 = 7\r\n8 = 8\r\n");
    }

    // What a datafile cannot hold, and clients that do not exist, are refused
    // and change nothing: a rename never creates a client.
    SetFile(kTwoClients);
    const std::pair<std::int32_t, std::wstring> refused[] = {
        {1, L"\u20AC"}, {1, L"two\r\nlines"}, {0, L"Nobody"}, {3, L"Three"}, {-1, L"Minus"},
    };
    for (const auto& [id, name] : refused)
        EXPECT_FALSE(clients.RenameClient(id, name)) << id;
    EXPECT_EQ(File(), kTwoClients);
    std::int32_t id = 0;
    std::wstring name;
    ASSERT_TRUE(clients.CreateClient(id, name));
    EXPECT_EQ(id, 3);
    EXPECT_EQ(clients.GetClientName(3), L"Client 3");
}

TEST_F(ClientRegistryTest, DeleteClientLeavesItsStandardsInTheStandardRegistry) {
    SetFile(kTwoClients);
    const std::string projects = "[General]\r\nLastProjectId = 8\r\n\r\n[ProjectList]\r\n"
                                 "VX2D_PRJ_7 = Seven\r\nVX2D_PRJ_8 = Eight\r\n";
    WriteBytes(dir.Path() / "ProjectDatafile.ini", projects);
    EXPECT_FALSE(clients.DeleteClient(0));
    EXPECT_FALSE(clients.DeleteClient(-1));
    EXPECT_EQ(File(), kTwoClients);

    EXPECT_TRUE(clients.DeleteClient(2));
    EXPECT_EQ(File(),
              "[ClientList]\r\nVX2D_CLIENT_1 = Alpha\r\n\r\n[General]\r\nLastClientId = 2\r\n\r\n"
              "[ProjectList - 1]\r\n3 = 3\r\n");
    EXPECT_EQ(ReadBytes(dir.Path() / "ProjectDatafile.ini"), projects);
    std::int32_t clientId = 5;
    std::wstring clientName = L"x";
    EXPECT_FALSE(clients.FindClientOfProject(7, clientId, clientName));
    EXPECT_EQ(clientId, 0);
    EXPECT_EQ(clientName, L"");
}

TEST_F(ClientRegistryTest, MovingAStandardBetweenClients) {
    SetFile(kTwoClients);
    EXPECT_TRUE(clients.MoveProjectToClient(7, 2, 2));
    EXPECT_FALSE(clients.MoveProjectToClient(0, 2, 1));
    EXPECT_FALSE(clients.AddProjectToClient(0, 9));
    EXPECT_FALSE(clients.AddProjectToClient(1, 0));
    EXPECT_FALSE(clients.RemoveProjectFromClient(0, 7));
    EXPECT_EQ(File(), kTwoClients);

    const std::string head = "[ClientList]\r\nVX2D_CLIENT_1 = Alpha\r\nVX2D_CLIENT_2 = Beta\r\n\r\n"
                             "[General]\r\nLastClientId = 2\r\n\r\n";
    // From, to, and the "ProjectList - n" sections afterwards.
    const std::tuple<std::int32_t, std::int32_t, const char*> steps[] = {
        {2, 1, "[ProjectList - 1]\r\n3 = 3\r\n7 = 7\r\n\r\n[ProjectList - 2]\r\n8 = 8\r\n"},
        {1, 0, "[ProjectList - 1]\r\n3 = 3\r\n\r\n[ProjectList - 2]\r\n8 = 8\r\n"},
        {0, 2, "[ProjectList - 1]\r\n3 = 3\r\n\r\n[ProjectList - 2]\r\n7 = 7\r\n8 = 8\r\n"},
    };
    for (const auto& [from, to, lists] : steps) {
        EXPECT_TRUE(clients.MoveProjectToClient(7, from, to));
        EXPECT_EQ(File(), head + lists);
        std::int32_t clientId = -1;
        std::wstring clientName;
        EXPECT_EQ(clients.FindClientOfProject(7, clientId, clientName), to != 0);
        EXPECT_EQ(clientId, to);
        EXPECT_EQ(clientName, to == 1 ? L"Alpha" : to == 2 ? L"Beta" : L"");
    }
    EXPECT_TRUE(clients.RemoveProjectFromClient(2, 8));
    EXPECT_TRUE(clients.AddProjectToClient(1, 5));
    EXPECT_EQ(clients.GetClientProjectIds(1), (std::vector<std::int32_t>{3, 5}));
    EXPECT_EQ(clients.GetClientProjectIds(2), (std::vector<std::int32_t>{7}));
}

TEST_F(ClientRegistryTest, ListClientsInFileOrderWithTheirStandards) {
    SetFile(kTwoClients);
    std::wstring listed;
    for (const auto& client : clients.ListClients()) {
        listed += std::to_wstring(client.id) + L" " + client.name + L":";
        for (std::int32_t id : client.projectIds)
            listed += L" " + std::to_wstring(id);
        listed += L"; ";
    }
    EXPECT_EQ(listed, L"2 Beta: 7 8; 1 Alpha: 3; ");
    EXPECT_EQ(clients.GetClientIds(), (std::vector<std::int32_t>{2, 1}));

    // A standard listed under two clients belongs to the first in file order.
    SetFile("[ClientList]\r\nVX2D_CLIENT_2 = Beta\r\nVX2D_CLIENT_1 = Alpha\r\n\r\n"
            "[ProjectList - 1]\r\n7 = 7\r\n\r\n[ProjectList - 2]\r\n7 = 7\r\n");
    std::int32_t clientId = 0;
    std::wstring clientName;
    EXPECT_TRUE(clients.FindClientOfProject(7, clientId, clientName));
    EXPECT_EQ(clientId, 2);
    EXPECT_EQ(clientName, L"Beta");
}

TEST_F(ClientRegistryTest, UnknownDatafilesFolderFailsEverywhere) {
    const CVX2D_Datafiles unknown(L"");
    CVX2D_ClientRegistry none(unknown);
    std::int32_t id = 0;
    std::wstring name;
    EXPECT_FALSE(none.CreateClient(id, name));
    EXPECT_FALSE(none.RenameClient(1, L"A"));
    EXPECT_FALSE(none.DeleteClient(1));
    EXPECT_FALSE(none.AddProjectToClient(1, 7));
    EXPECT_FALSE(none.RemoveProjectFromClient(1, 7));
    EXPECT_FALSE(none.MoveProjectToClient(7, 1, 2));
    EXPECT_FALSE(none.MoveProjectToClient(7, 1, 1));
    EXPECT_FALSE(none.FindClientOfProject(7, id, name));
    EXPECT_EQ(none.GetClientName(1), L"");
    EXPECT_TRUE(none.ListClients().empty());
    EXPECT_TRUE(none.GetClientProjectIds(1).empty());
    EXPECT_FALSE(fs::exists("ClientDatafile.ini"));
}

} // namespace client_registry_test
