// How the datafile engine and the registry listings scale with the size of a
// datafiles folder. Run: build/bin/datafile_bench
#include "datafile/Ids.h"
#include "datafile/IniFile.h"
#include "store/ClientRegistry.h"
#include "store/ProjectRegistry.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <fmt/xchar.h>

namespace fs = std::filesystem;

namespace {

class CNoPrompts : public IPrompter {
public:
    EPromptAnswer Ask(const SPrompt& prompt) override { return prompt.defaultAnswer; }
};

// A datafiles folder whose registry holds `count` standards, half of them in
// 20 clients; made once per size.
std::wstring MakeFolder(int count) {
    const fs::path root = fs::temp_directory_path() / fmt::format("sd-bench-{}", count);
    if (fs::exists(root / "ProjectDatafile.ini"))
        return root.wstring() + L"/";
    fs::create_directories(root);
    CVX2D_IniFile projects;
    projects.Open((root / "ProjectDatafile.ini").wstring());
    CVX2D_IniFile clients;
    clients.Open((root / "ClientDatafile.ini").wstring());
    for (int id = count; id >= 1; --id) {
        projects.SetSection(id % 7 == 0 ? L"DeletedProjects" : L"ProjectList");
        projects.SetString(fmt::format(L"VX2D_PRJ_{}", id), fmt::format(L"Standard number {}", id));
        if (id % 2 == 0) {
            clients.SetSection(fmt::format(L"ProjectList - {}", id % 20 + 1));
            clients.SetString(fmt::format(L"{}", id), fmt::format(L"{}", id));
        }
    }
    projects.SetSection(L"General");
    projects.SetLong(L"LastProjectId", count);
    clients.SetSection(L"ClientList");
    for (int id = 1; id <= 20; ++id)
        clients.SetString(fmt::format(L"VX2D_CLIENT_{}", id), fmt::format(L"Client {}", id));
    return root.wstring() + L"/";
}

void BM_OpenLookUpAndSave(benchmark::State& state) {
    const std::wstring root = MakeFolder(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        CVX2D_IniFile ini;
        ini.Open(root + L"ProjectDatafile.ini");
        ini.SetSection(L"ProjectList");
        benchmark::DoNotOptimize(ini.String(L"VX2D_PRJ_1"));
        ini.SetString(L"VX2D_PRJ_1", L"Renamed");
        ini.SetAutoSave(false);
        ini.Save(true);
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_OpenLookUpAndSave)->Range(1 << 8, 1 << 14)->Complexity();

void BM_NavigatorListing(benchmark::State& state) {
    const std::wstring root = MakeFolder(static_cast<int>(state.range(0)));
    CVX2D_Datafiles datafiles(root);
    CNoPrompts prompter;
    CVX2D_ProjectRegistry projects(datafiles, prompter);
    CVX2D_ClientRegistry clients(datafiles);
    for (auto _ : state) {
        std::vector<SProjectInfo> list;
        if (projects.ListProjects(true, true, list) != eProjectOk)
            state.SkipWithError("the registry cannot be read");
        benchmark::DoNotOptimize(clients.ListClients());
        benchmark::DoNotOptimize(list);
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_NavigatorListing)->Range(1 << 8, 1 << 14)->Complexity();

// A page's Apply: one value of a small datafile changed and saved, the
// writer's lock taken (and left) around it.
void BM_SmallFileUpdate(benchmark::State& state) {
    const fs::path folder = fs::temp_directory_path() / "sd-bench-small";
    fs::create_directories(folder);
    const std::wstring path = (folder / "General.ini").wstring();
    int value = 0;
    for (auto _ : state) {
        CVX2D_IniFile ini;
        ini.SetAutoSave(false);
        ini.OpenForUpdate(path);
        ini.SetSection(L"Units");
        for (const wchar_t* key : {L"Working", L"Displayed", L"RatingsFormat"})
            ini.SetInt(key, 1);
        ini.SetInt(L"Counter", ++value);
        ini.Save();
    }
}
BENCHMARK(BM_SmallFileUpdate);

void BM_DefaultName(benchmark::State& state) {
    const std::wstring root = MakeFolder(static_cast<int>(state.range(0)));
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.Open(root + L"ProjectDatafile.ini");
    for (auto _ : state)
        benchmark::DoNotOptimize(MakeDefaultProjectName(ini));
}
BENCHMARK(BM_DefaultName)->Range(1 << 8, 1 << 14);

} // namespace

BENCHMARK_MAIN();
