// Several workstations updating one datafiles folder at once must not lose
// one another's ids, entries, names or folders, and leave no lock or
// temporary file behind.
#include "datafile/Ids.h"
#include "datafile/IniFile.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <fmt/xchar.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace concurrency_test {

struct SFacts {
    std::map<std::int32_t, std::pair<std::wstring, bool>> clients; // id -> name, alive
    struct SStandard {
        std::wstring name;
        bool deleted = false;
        std::int32_t clientId = 0;
    };
    std::map<std::int32_t, SStandard> standards;
    std::set<std::pair<std::wstring, std::wstring>> keys;
    int duplicateIds = 0;
};

void ReadFacts(const fs::path& file, SFacts& facts) {
    std::istringstream in(test::ReadBytes(file));
    std::string line;
    while (std::getline(in, line)) {
        std::vector<std::wstring> fields;
        std::size_t start = 0;
        for (;;) {
            const auto tab = line.find('\t', start);
            fields.push_back(platform::FromUtf8(line.substr(start, tab - start)));
            if (tab == std::string::npos)
                break;
            start = tab + 1;
        }
        if (fields[0] == L"client" && fields.size() == 4) {
            const std::int32_t id = std::stoi(fields[1]);
            facts.duplicateIds += facts.clients.contains(id);
            facts.clients[id] = {fields[2], fields[3] == L"1"};
        } else if (fields[0] == L"standard" && fields.size() == 5) {
            const std::int32_t id = std::stoi(fields[1]);
            facts.duplicateIds += facts.standards.contains(id);
            facts.standards[id] = {fields[2], fields[3] == L"deleted", std::stoi(fields[4])};
        } else if (fields[0] == L"key" && fields.size() == 3) {
            facts.keys.emplace(fields[1], fields[2]);
        } else {
            ADD_FAILURE() << "bad fact: " << line;
        }
    }
}

// Every line of a datafile is a header or "key = value", each ended by CR LF.
void ExpectWellFormed(const fs::path& file) {
    const std::string bytes = test::ReadBytes(file);
    std::size_t start = 0;
    while (start < bytes.size()) {
        const auto end = bytes.find("\r\n", start);
        ASSERT_NE(end, std::string::npos) << file << ": a line without CR LF";
        const std::string line = bytes.substr(start, end - start);
        EXPECT_TRUE(line.empty() || (line.front() == '[' && line.back() == ']') ||
                    line.find(" = ") != std::string::npos)
            << file << ": " << line;
        start = end + 2;
    }
}

TEST(ConcurrencyTest, EightWorkstationsMakingMixedUpdatesLoseNothing) {
    test::CDatafilesFixture fx;
    test::CTempDir facts;
    constexpr int kWorkers = 8;
    constexpr int kEach = 50;
    std::vector<std::int64_t> pids;
    for (int i = 0; i < kWorkers; ++i) {
        pids.push_back(platform::StartProcess(
            SD_TEST_WORKER, {L"mixed", fx.Dir().Text(), std::to_wstring(i), std::to_wstring(kEach),
                             facts.File(std::to_wstring(i))}));
        ASSERT_GT(pids.back(), 0);
    }
    for (const std::int64_t pid : pids)
        EXPECT_EQ(platform::WaitProcess(pid), 0) << "worker " << pid << " failed";

    SFacts expected;
    for (int i = 0; i < kWorkers; ++i)
        ReadFacts(facts.Path() / std::to_string(i), expected);
    EXPECT_EQ(expected.duplicateIds, 0) << "two workstations were given the same id";
    ASSERT_FALSE(expected.standards.empty());

    CVX2D_IniFile clients, projects, shared;
    ASSERT_EQ(clients.Open(fx.File(L"ClientDatafile.ini")), CVX2D_IniFile::eOk);
    ASSERT_EQ(projects.Open(fx.File(L"ProjectDatafile.ini")), CVX2D_IniFile::eOk);
    ASSERT_EQ(shared.Open(fx.File(L"Shared.ini")), CVX2D_IniFile::eOk);
    clients.SetAutoSave(false);
    projects.SetAutoSave(false);
    shared.SetAutoSave(false);

    std::set<std::wstring> clientKeys;
    for (const auto& e : clients.Entries())
        if (e.section == L"ClientList")
            clientKeys.insert(e.key);
    for (const auto& [id, client] : expected.clients) {
        clients.SetSection(L"ClientList");
        EXPECT_EQ(clients.String(MakeClientKey(id)), client.second ? client.first : L"")
            << "client " << id;
        clientKeys.erase(MakeClientKey(id));
    }
    EXPECT_TRUE(clientKeys.empty()) << "clients nobody made";
    clients.SetSection(L"General");
    EXPECT_EQ(clients.Long(L"LastClientId"), expected.clients.rbegin()->first);

    std::set<std::wstring> labels;
    std::size_t listed = 0;
    for (const auto& e : projects.Entries())
        listed += e.section == L"ProjectList" || e.section == L"DeletedProjects";
    EXPECT_EQ(listed, expected.standards.size()) << "standards listed twice or lost";
    for (const auto& [id, standard] : expected.standards) {
        projects.SetSection(standard.deleted ? L"DeletedProjects" : L"ProjectList");
        EXPECT_EQ(projects.String(MakeProjectKey(id)), standard.name) << "standard " << id;
        labels.insert(MakeProjectLabel(id, standard.name));
        if (standard.clientId != 0) {
            clients.SetSection(MakeClientProjectListSection(standard.clientId));
            EXPECT_EQ(clients.String(std::to_wstring(id)), std::to_wstring(id))
                << "standard " << id << " lost its client " << standard.clientId;
        }
    }
    projects.SetSection(L"General");
    EXPECT_EQ(projects.Long(L"LastProjectId"), expected.standards.rbegin()->first);
    std::set<std::wstring> folders;
    for (const auto& entry : fs::directory_iterator(fx.Dir().Path() / "Projects"))
        folders.insert(platform::FromPath(entry.path().filename()));
    EXPECT_EQ(folders, labels);

    for (const auto& [section, key] : expected.keys) {
        shared.SetSection(section);
        EXPECT_FALSE(shared.String(key).empty()) << "lost " << key;
    }

    for (const auto& entry : fs::recursive_directory_iterator(fx.Dir().Path())) {
        const std::string name = entry.path().filename().string();
        EXPECT_FALSE(name.ends_with(".lock") || name.ends_with(".tmp")) << entry.path();
        if (name.ends_with(".ini"))
            ExpectWellFormed(entry.path());
    }
}

} // namespace concurrency_test
