// The datafile engine next to SimpleIni on one file of 200,000 entries in
// the same process, the two taking turns in every round: load, look up
// every key, delete 5,000 keys of a 10,000-key section, save. The engine
// saves as it always does (sorted, under the file's lock, to a temporary
// file flushed to disk and renamed); SimpleIni writes its file in place.
// Run: build/bin/engine_bench (scripts/bench.sh prints its rows).
#include "BenchFolder.h"
#include "BenchReport.h"

#include "datafile/IniFile.h"
#include "platform/Utf8.h"

#include <SimpleIni.h>
#include <algorithm>
#include <fmt/format.h>
#include <fmt/xchar.h>
#include <memory>
#include <random>

namespace fs = std::filesystem;
using namespace bench;

namespace {

constexpr int kSections = 20;
constexpr int kKeysPerSection = 10000;
constexpr int kDeletes = 5000;
constexpr int kRounds = 5;

struct SKey {
    std::wstring section, key;
    std::string sectionA, keyA;
};

std::vector<SKey> Keys() {
    std::vector<SKey> keys;
    for (int s = 1; s <= kSections; ++s) {
        for (int k = 1; k <= kKeysPerSection; ++k) {
            const std::string section = fmt::format("ProjectList - {}", s);
            const std::string key = fmt::format("VX2D_PRJ_{}", (s - 1) * kKeysPerSection + k);
            keys.push_back({platform::FromUtf8(section), platform::FromUtf8(key), section, key});
        }
    }
    return keys;
}

// The file both read, written by the engine so that its own saves give the
// same bytes back.
void WriteSource(const fs::path& file, const std::vector<SKey>& keys) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.Open(file.wstring());
    for (const auto& k : keys) {
        ini.SetSection(k.section);
        ini.SetString(k.key, L"Standard " + k.key.substr(9) + L" - Piping and Instrumentation");
    }
    if (ini.Save(true) != CVX2D_IniFile::eOk)
        throw std::runtime_error("cannot write " + file.string());
}

struct STimes {
    std::vector<double> engine, simple;
};

template <class F> double Time(F&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return SecondsSince(start);
}

void RatioRow(const std::string& what, const std::string& size, const STimes& t, double limit) {
    const double engine = Median(t.engine), simple = Median(t.simple);
    const double ratio = engine / simple;
    const std::string figure =
        fmt::format("{:.2f}x (engine {}, SimpleIni {})", ratio, TimeText(engine), TimeText(simple));
    if (limit > 0)
        Row("engine vs SimpleIni: " + what, size, figure, fmt::format("<= {:.1f}x", limit),
            ratio <= limit ? "yes" : "no");
    else
        InfoRow("engine vs SimpleIni: " + what, size, figure);
}

} // namespace

int main() {
    const fs::path folder = BenchCacheFolder() / "engine";
    fs::create_directories(folder);
    const fs::path source = folder / "source.ini";
    const fs::path engineFile = folder / "engine.ini";
    const fs::path simpleFile = folder / "simple.ini";
    const fs::path simpleOut = folder / "simple-saved.ini";
    const std::vector<SKey> keys = Keys();
    Note(fmt::format("engine vs SimpleIni, {} entries", keys.size()));
    WriteSource(source, keys);
    fs::copy_file(source, simpleFile, fs::copy_options::overwrite_existing);

    std::vector<const SKey*> order;
    for (const auto& k : keys)
        order.push_back(&k);
    std::shuffle(order.begin(), order.end(), std::mt19937(7));

    STimes load, lookUp, save, erase;
    std::size_t found = 0;
    bool ok = true;
    for (int round = 0; round < kRounds; ++round) {
        // The engine saves over the file it read.
        fs::copy_file(source, engineFile, fs::copy_options::overwrite_existing);
        auto engine = std::make_unique<CVX2D_IniFile>();
        auto simple = std::make_unique<CSimpleIniCaseA>();
        engine->SetAutoSave(false);
        const auto engineRound = [&](int phase) {
            switch (phase) {
            case 0:
                load.engine.push_back(
                    Time([&] { ok = engine->Open(engineFile.wstring()) == 0 && ok; }));
                break;
            case 1:
                lookUp.engine.push_back(Time([&] {
                    for (const SKey* k : order) {
                        engine->SetSection(k->section);
                        found += engine->String(k->key).size();
                    }
                }));
                break;
            case 3:
                save.engine.push_back(Time([&] { ok = engine->Save(true) == 0 && ok; }));
                break;
            default:
                erase.engine.push_back(Time([&] {
                    engine->SetSection(keys.front().section);
                    for (int i = 0; i < kDeletes; ++i)
                        engine->DeleteKey(keys[static_cast<std::size_t>(2 * i)].key);
                    found += engine->Entries().size();
                }));
            }
        };
        const auto simpleRound = [&](int phase) {
            switch (phase) {
            case 0:
                load.simple.push_back(
                    Time([&] { ok = simple->LoadFile(simpleFile.c_str()) == SI_OK && ok; }));
                break;
            case 1:
                lookUp.simple.push_back(Time([&] {
                    for (const SKey* k : order) {
                        const char* value = simple->GetValue(k->sectionA.c_str(), k->keyA.c_str());
                        found += value ? std::char_traits<char>::length(value) : 0;
                    }
                }));
                break;
            case 3:
                save.simple.push_back(
                    Time([&] { ok = simple->SaveFile(simpleOut.c_str()) == SI_OK && ok; }));
                break;
            default:
                erase.simple.push_back(Time([&] {
                    const char* section = keys.front().sectionA.c_str();
                    for (int i = 0; i < kDeletes; ++i)
                        simple->Delete(section, keys[static_cast<std::size_t>(2 * i)].keyA.c_str());
                    found += static_cast<std::size_t>(simple->GetSectionSize(section));
                }));
            }
        };
        // Who goes first changes every round.
        for (int phase = 0; phase < 4; ++phase) {
            if (round % 2) {
                simpleRound(phase);
                engineRound(phase);
            } else {
                engineRound(phase);
                simpleRound(phase);
            }
        }
        if (round == 0 && engine->Entries().size() + kDeletes != keys.size())
            ok = false;
    }
    const std::string size = CountText(static_cast<long long>(keys.size())) + " entries";
    if (!ok || found == 0) {
        FailedRow("engine vs SimpleIni", size, "a load, save or look-up failed", "-");
        return 1;
    }
    RatioRow("load", size, load, 1.3);
    RatioRow("look up every key", size, lookUp, 0);
    RatioRow("save", size, save, 1.3);
    RatioRow("5,000 deletes", "of a 10,000-key section", erase, 0);
    fs::remove_all(folder);
    return 0;
}
