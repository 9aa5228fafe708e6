// One of several workstations on a shared datafiles folder, for the
// multi-process tests:
//   sd_test_worker create DATAFILES COUNT
//       creates COUNT standards "W<pid>-<i>"
//   sd_test_worker mixed DATAFILES WORKER COUNT FACTS
//       COUNT mixed updates (clients, standards, a shared datafile), then
//       writes to FACTS what must be in the folder afterwards, one per line
//   sd_test_worker op DATAFILES RESULT KIND ARGS...
//       one update of a mixed run, as a process of its own
//   sd_test_worker hold FILE READY
//       takes FILE's lock, creates READY, and keeps the lock until killed
//   sd_test_worker where OUT ARGS...
//       writes its working folder and its arguments to OUT, one per line
// The exit code is 1 when any operation fails.
#include "datafile/FileLock.h"
#include "datafile/IniFile.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"
#include "store/ProjectRegistry.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <fmt/xchar.h>
#include <string>
#include <thread>
#include <vector>

namespace {

class CDefaultAnswers : public IPrompter {
public:
    EPromptAnswer Ask(const SPrompt& prompt) override { return prompt.defaultAnswer; }
};

[[noreturn]] void Fail(const std::string& what) {
    std::fprintf(stderr, "worker %lld: %s\n", static_cast<long long>(platform::CurrentProcessId()),
                 what.c_str());
    std::exit(1);
}

int Create(const CVX2D_Datafiles& datafiles, int count) {
    CDefaultAnswers prompter;
    CVX2D_ProjectRegistry registry(datafiles, prompter);
    const std::int64_t pid = platform::CurrentProcessId();
    for (int i = 0; i < count; ++i) {
        std::int32_t id = 0;
        const EProjectResult result =
            registry.CreateProject({fmt::format(L"W{}-{}", pid, i), 0, 1, 0, false}, id);
        if (result != eProjectOk)
            Fail(fmt::format("standard {}: result {}", i, static_cast<int>(result)));
    }
    return 0;
}

struct SClient {
    std::int32_t id = 0;
    std::wstring name;
    bool alive = true;
};

struct SStandard {
    std::int32_t id = 0;
    std::wstring name;
    std::int32_t clientId = 0;
    bool deleted = false;
};

// One update as its own short-lived process, the way scripts and several
// desktop programs meet on a share: the lock must hold even when its holder
// ends right after releasing it. Prints the new id, if any, to `result`.
int Op(const CVX2D_Datafiles& datafiles, const std::vector<std::wstring>& args,
       const std::wstring& result) {
    CDefaultAnswers prompter;
    CVX2D_ProjectRegistry projects(datafiles, prompter);
    CVX2D_ClientRegistry clients(datafiles);
    const std::wstring& kind = args.at(0);
    const auto id = [&](std::size_t i) { return static_cast<std::int32_t>(std::stol(args.at(i))); };
    std::int32_t newId = 0;
    bool ok = false;
    if (kind == L"client-create") {
        std::wstring name;
        ok = clients.CreateClient(newId, name);
    } else if (kind == L"client-rename") {
        ok = clients.RenameClient(id(1), args.at(2));
    } else if (kind == L"client-delete") {
        ok = clients.DeleteClient(id(1));
    } else if (kind == L"standard-create") {
        ok = projects.CreateProject({args.at(1), 0, 1, id(2), false}, newId) == eProjectOk;
    } else if (kind == L"standard-rename") {
        ok = projects.RenameProject(id(1), args.at(2)) == eProjectOk;
    } else if (kind == L"standard-delete") {
        ok = projects.DeleteProject(id(1)) == eProjectOk;
    } else if (kind == L"standard-recover") {
        ok = projects.RecoverProject(id(1)) == eProjectOk;
    } else if (kind == L"set") {
        CVX2D_IniFile ini;
        ok = ini.OpenForUpdate(datafiles.File(args.at(1))) == CVX2D_IniFile::eOk;
        ini.SetSection(args.at(2));
        ini.SetString(args.at(3), args.at(4));
        ok = ok && ini.Save() == CVX2D_IniFile::eOk;
    }
    if (!ok)
        Fail("operation " + platform::ToUtf8(kind) + " failed");
    std::FILE* out = platform::OpenFile(platform::ToPath(result), "wb");
    if (!out)
        Fail("result file");
    std::fprintf(out, "%d", newId);
    return std::fclose(out) == 0 ? 0 : 1;
}

// Every kind of update a workstation makes, in turn, each in a process of
// its own, so that each one meets the others' updates of the same files.
int Mixed(const CVX2D_Datafiles& datafiles, int worker, int count, const std::wstring& factsFile) {
    const std::wstring resultFile = factsFile + L".result";
    const auto run = [&](std::vector<std::wstring> args) -> std::int32_t {
        args.insert(args.begin(), {L"op", datafiles.Root(), resultFile});
        const std::int64_t pid = platform::StartProcess(platform::ExecutablePath(), args);
        if (pid <= 0 || platform::WaitProcess(pid) != 0)
            Fail("operation " + platform::ToUtf8(args[3]));
        std::FILE* in = platform::OpenFile(platform::ToPath(resultFile), "rb");
        int id = 0;
        if (!in || std::fscanf(in, "%d", &id) != 1)
            Fail("result of " + platform::ToUtf8(args[3]));
        std::fclose(in);
        return id;
    };
    std::vector<SClient> myClients;
    std::vector<SStandard> myStandards;
    std::vector<std::pair<std::wstring, std::wstring>> keys;
    const auto liveClient = [&]() -> std::int32_t {
        for (auto it = myClients.rbegin(); it != myClients.rend(); ++it)
            if (it->alive)
                return it->id;
        return 0;
    };
    const auto firstActive = [&]() -> SStandard* {
        for (auto& standard : myStandards)
            if (!standard.deleted)
                return &standard;
        return nullptr;
    };

    for (int i = 0; i < count; ++i) {
        switch (i % 8) {
        case 0: {
            SClient client;
            client.id = run({L"client-create"});
            client.name = fmt::format(L"C{}.{} #{}", worker, i, client.id);
            run({L"client-rename", std::to_wstring(client.id), client.name});
            myClients.push_back(client);
            break;
        }
        case 1:
        case 7: {
            SStandard standard{0, fmt::format(L"S{}.{}", worker, i), liveClient(), false};
            standard.id =
                run({L"standard-create", standard.name, std::to_wstring(standard.clientId)});
            myStandards.push_back(standard);
            break;
        }
        case 2:
            if (!myStandards.empty()) {
                SStandard& standard = myStandards.back();
                standard.name = fmt::format(L"R{}.{}", worker, i);
                run({L"standard-rename", std::to_wstring(standard.id), standard.name});
            }
            break;
        case 3:
            if (SStandard* standard = firstActive()) {
                run({L"standard-delete", std::to_wstring(standard->id)});
                standard->deleted = true;
            }
            break;
        case 4:
            for (auto it = myStandards.rbegin(); it != myStandards.rend(); ++it) {
                if (it->deleted && (i / 8) % 2 == 0) {
                    run({L"standard-recover", std::to_wstring(it->id)});
                    it->deleted = false;
                    break;
                }
            }
            break;
        case 5:
            for (auto& client : myClients) {
                if (client.alive && myClients.size() > 1) {
                    run({L"client-delete", std::to_wstring(client.id)});
                    client.alive = false;
                    break;
                }
            }
            break;
        case 6: {
            const std::wstring section = fmt::format(L"Worker {}", worker);
            const std::wstring key = fmt::format(L"Key{}", i);
            run({L"set", L"Shared.ini", section, key, std::to_wstring(i)});
            keys.emplace_back(section, key);
            break;
        }
        }
    }
    std::error_code ec;
    std::filesystem::remove(platform::ToPath(resultFile), ec);

    std::FILE* facts = platform::OpenFile(platform::ToPath(factsFile), "wb");
    if (!facts)
        Fail("facts file");
    for (const auto& client : myClients)
        std::fprintf(facts, "client\t%d\t%s\t%d\n", client.id,
                     platform::ToUtf8(client.name).c_str(), client.alive ? 1 : 0);
    for (const auto& standard : myStandards) {
        // A standard stays in the list of a client that was deleted only until
        // the client goes: then it is unassigned.
        std::int32_t clientId = standard.clientId;
        for (const auto& client : myClients)
            if (client.id == clientId && !client.alive)
                clientId = 0;
        std::fprintf(facts, "standard\t%d\t%s\t%s\t%d\n", standard.id,
                     platform::ToUtf8(standard.name).c_str(),
                     standard.deleted ? "deleted" : "active", clientId);
    }
    for (std::size_t i = 0; i < keys.size(); ++i)
        std::fprintf(facts, "key\t%s\t%s\n", platform::ToUtf8(keys[i].first).c_str(),
                     platform::ToUtf8(keys[i].second).c_str());
    return std::fclose(facts) == 0 ? 0 : 1;
}

int Hold(const std::wstring& file, const std::wstring& ready) {
    CVX2D_FileLock lock;
    if (!lock.Acquire(file))
        Fail("lock");
    if (std::FILE* out = platform::OpenFile(platform::ToPath(ready), "wb"))
        std::fclose(out);
    for (;;)
        std::this_thread::sleep_for(std::chrono::seconds(1));
}

// Writes the current folder and then each argument, one per line, to OUT.
int Where(const std::vector<std::wstring>& args) {
    std::string text = platform::ToUtf8(platform::FromPath(std::filesystem::current_path())) + "\n";
    for (std::size_t i = 1; i < args.size(); ++i)
        text += platform::ToUtf8(args[i]) + "\n";
    std::FILE* out = platform::OpenFile(platform::ToPath(args[0]), "wb");
    if (!out)
        Fail("where");
    std::fwrite(text.data(), 1, text.size(), out);
    return platform::FlushAndClose(out) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::wstring> a;
    for (const auto& arg : platform::CommandLineArguments(argc, argv))
        a.push_back(platform::FromUtf8(arg));
    const std::wstring mode = a.size() > 1 ? a[1] : L"";
    const auto number = [&](std::size_t i) { return std::stoi(a[i]); };
    if (mode == L"create" && a.size() == 4)
        return Create(CVX2D_Datafiles(a[2]), number(3));
    if (mode == L"mixed" && a.size() == 6)
        return Mixed(CVX2D_Datafiles(a[2]), number(3), number(4), a[5]);
    if (mode == L"op" && a.size() >= 5)
        return Op(CVX2D_Datafiles(a[2]), std::vector<std::wstring>(a.begin() + 4, a.end()), a[3]);
    if (mode == L"hold" && a.size() == 4)
        return Hold(a[2], a[3]);
    if (mode == L"where" && a.size() >= 3)
        return Where(std::vector<std::wstring>(a.begin() + 2, a.end()));
    std::fprintf(
        stderr, "usage: sd_test_worker create DATAFILES COUNT | mixed DATAFILES WORKER COUNT FACTS "
                "| hold FILE READY | where OUT ARGS...\n");
    return 2;
}
