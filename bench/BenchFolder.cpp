#include "BenchFolder.h"

#include "datafile/Application.h"
#include "datafile/Guid.h"
#include "datafile/Ids.h"
#include "datafile/IniFile.h"
#include "platform/Utf8.h"
#include "store/Datafiles.h"
#include "store/GeneralSettings.h"
#include "store/Templates.h"

#include <fmt/format.h>
#include <fmt/xchar.h>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

// Raised whenever what a folder holds changes, so that older folders are not
// taken for new ones.
constexpr int kLayout = 2;

std::string Key(const SBenchFolderSpec& spec) {
    return fmt::format("v{}-n{}-c{}-s{}-d{}x{}x{}-{}", kLayout, spec.standards, spec.clients,
                       spec.staleEntries, spec.drawingStandards, spec.drawings, spec.drawingBytes,
                       spec.fromTemplates ? "templates" : "minimal");
}

// A template's files, read once: every standard made from it gets them.
struct STemplate {
    std::vector<std::pair<fs::path, std::string>> files;
    int version = 2015;
};

std::vector<STemplate> ReadTemplates(const fs::path& datafiles) {
    std::vector<STemplate> templates;
    for (const auto& name : TemplateFolderNames()) {
        STemplate t;
        const fs::path folder = datafiles / "Template" / platform::ToPath(name);
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.is_regular_file())
                t.files.emplace_back(fs::relative(entry.path(), folder),
                                     ReadFileBytes(entry.path()));
        }
        CVX2D_IniFile general;
        general.SetAutoSave(false);
        general.Open((folder / "General.ini").wstring());
        general.SetSection(L"General");
        t.version = general.Long(L"ProjectVersion", 2015);
        templates.push_back(std::move(t));
    }
    return templates;
}

// A GUID that depends on the id alone, so that every generated folder is the
// same.
std::string GuidText(std::int32_t id) {
    CGuid guid;
    guid.Data1 = 0x5D000000u + static_cast<std::uint32_t>(id);
    guid.Data2 = 0xBE;
    guid.Data3 = 0x4C;
    guid.Data4 = {0x80, 0, 0, 0, 0, 0, 0, 1};
    return platform::ToUtf8(GuidToText(guid));
}

std::string MinimalGeneral(std::int32_t id) {
    return fmt::format("[General]\r\nProjectGuid = {}\r\nProjectVersion = 2023\r\n\r\n[Units]\r\n"
                       "Displayed = 0\r\nRatingsFormat = 1\r\nWorking = 0\r\n",
                       GuidText(id));
}

// Drawing files that pack about as well as real ones (two to one): a header,
// then bytes from a sixteen-letter alphabet.
void WriteDrawings(const fs::path& folder, int count, int bytes) {
    fs::create_directories(folder);
    std::uint32_t state = 12345;
    std::string content(static_cast<std::size_t>(bytes), ' ');
    for (int i = 1; i <= count; ++i) {
        const std::string header = fmt::format("AC1032 drawing {}\r\n", i);
        for (std::size_t b = 0; b < content.size(); ++b) {
            state = state * 1664525u + 1013904223u;
            content[b] = b < header.size() ? header[b] : static_cast<char>('A' + (state >> 28));
        }
        WriteFileBytes(folder / fmt::format("Drawing {:05}.dwg", i), content);
    }
}

void NameDrawingsFolder(const fs::path& standard, int version, const fs::path& drawings) {
    CVX2D_IniFile general;
    general.SetAutoSave(false);
    general.Open((standard / "General.ini").wstring());
    general.SetSection(L"Drawings Location");
    general.SetString(CVX2D_GeneralSettings::DrawingsKey(eAppIso, version),
                      drawings.wstring() + L"/");
    if (general.Save() != CVX2D_IniFile::eOk)
        throw std::runtime_error("cannot write " + (standard / "General.ini").string());
}

void WriteRegistries(const fs::path& root, const SBenchFolderSpec& spec) {
    CVX2D_IniFile projects;
    projects.SetAutoSave(false);
    projects.Open((root / "ProjectDatafile.ini").wstring());
    const int last = spec.standards + spec.staleEntries;
    for (std::int32_t id = 1; id <= last; ++id) {
        projects.SetSection(id <= spec.standards && id % 7 == 0 ? L"DeletedProjects"
                                                                : L"ProjectList");
        projects.SetString(MakeProjectKey(id), BenchStandardName(id));
    }
    projects.SetSection(L"General");
    projects.SetLong(L"LastProjectId", last);

    CVX2D_IniFile clients;
    clients.SetAutoSave(false);
    clients.Open((root / "ClientDatafile.ini").wstring());
    clients.SetSection(L"ClientList");
    for (std::int32_t id = 1; id <= spec.clients; ++id)
        clients.SetString(MakeClientKey(id), fmt::format(L"Client {}", id));
    for (std::int32_t id = 1; id <= spec.standards; ++id) {
        if (const std::int32_t client = BenchClientOf(spec, id)) {
            clients.SetSection(MakeClientProjectListSection(client));
            const std::wstring key = CVX2D_IniFile::FormatLong(id);
            clients.SetString(key, key);
        }
    }
    clients.SetSection(L"General");
    clients.SetLong(L"LastClientId", spec.clients);

    if (projects.Save(true) != CVX2D_IniFile::eOk || clients.Save(true) != CVX2D_IniFile::eOk)
        throw std::runtime_error("cannot write the registries in " + root.string());
}

// Makes the folder in `root`; `finalRoot` is where it will be used, which
// the drawings folders name.
void Generate(const fs::path& root, const fs::path& finalRoot, const SBenchFolderSpec& spec) {
    fs::create_directories(root / "Projects");
    std::vector<STemplate> templates;
    if (spec.fromTemplates) {
        const CVX2D_Datafiles datafiles(root.wstring());
        if (!SeedTemplateFolders(datafiles, platform::FromUtf8(SD_BENCH_TEMPLATES_DIR)))
            throw std::runtime_error("cannot copy the templates from " SD_BENCH_TEMPLATES_DIR);
        templates = ReadTemplates(root);
    }
    for (std::int32_t id = 1; id <= spec.standards; ++id) {
        const fs::path folder = BenchStandardFolder(root, id);
        fs::create_directory(folder);
        int version = 2023;
        if (spec.fromTemplates) {
            const STemplate& t = templates[static_cast<std::size_t>(id) % templates.size()];
            for (const auto& [name, bytes] : t.files) {
                fs::create_directories((folder / name).parent_path());
                WriteFileBytes(folder / name, bytes);
            }
            version = t.version;
        } else {
            WriteFileBytes(folder / "General.ini", MinimalGeneral(id));
        }
        if (id <= spec.drawingStandards) {
            WriteDrawings(folder / "Drawings", spec.drawings, spec.drawingBytes);
            NameDrawingsFolder(folder, version, BenchStandardFolder(finalRoot, id) / "Drawings");
        }
    }
    WriteRegistries(root, spec);
}

} // namespace

std::string ReadFileBytes(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteFileBytes(const fs::path& file, const std::string& bytes) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out)
        throw std::runtime_error("cannot write " + file.string());
}

fs::path BenchCacheFolder() {
    return fs::temp_directory_path() / "sd-bench-folders";
}

std::wstring BenchStandardName(std::int32_t id) {
    return fmt::format(L"Standard {}", id);
}

fs::path BenchStandardFolder(const fs::path& root, std::int32_t id) {
    return root / "Projects" / MakeProjectLabel(id, BenchStandardName(id));
}

std::int32_t BenchClientOf(const SBenchFolderSpec& spec, std::int32_t standardId) {
    if (spec.clients < 1 || standardId % 10 == 0)
        return 0;
    // Counted among the standards that have a client, so that every client
    // gets its share.
    return (standardId - standardId / 10 - 1) % spec.clients + 1;
}

SBenchFolderSpec OfficeSpec(int standards) {
    return {.standards = standards, .drawingStandards = 1, .drawings = 100};
}

fs::path BenchFolder(const SBenchFolderSpec& spec) {
    const fs::path root = BenchCacheFolder() / Key(spec);
    if (fs::is_directory(root))
        return root;
    const fs::path partial = BenchCacheFolder() / fmt::format("{}.part-{}", Key(spec), getpid());
    fs::remove_all(partial);
    Generate(partial, root, spec);
    std::error_code ec;
    fs::rename(partial, root, ec);
    // Another run may have finished the same folder first; it is as good.
    if (ec)
        fs::remove_all(partial);
    return root;
}
