// Large datafiles folders for the benchmarks: a registry of standards and
// clients as a big office has them, with a folder per standard. Each folder
// is made once per set of parameters and kept under the temporary folder, so
// that later runs start at once.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

struct SBenchFolderSpec {
    // Standards with a folder, ids 1..standards; every 7th is deleted.
    int standards = 1000;
    // Clients 1..clients; every standard but each 10th belongs to one of
    // them, spread evenly.
    int clients = 1000;
    // Standards listed after the others whose folder is missing, as a
    // registry holds them after folders were removed by hand.
    int staleEntries = 0;
    // The first `drawingStandards` standards get `drawings` drawing files of
    // `drawingBytes` each in a "Drawings" folder of their own, named as the
    // ISOMETRIC drawings folder in their General.ini.
    int drawingStandards = 0;
    int drawings = 0;
    int drawingBytes = 16 * 1024;
    // True: each standard's folder holds the files of a shipped template (the
    // four in turn) and the datafiles folder the templates themselves.
    // False: only a General.ini with version, units and a GUID, so that
    // opening a standard never writes anything back.
    bool fromTemplates = true;
};

// The folder of an office as the benchmarks measure it: `standards`
// standards made from the templates, 1,000 clients, and standard 1 with 100
// drawings.
SBenchFolderSpec OfficeSpec(int standards);

// The datafiles folder for `spec`, made on the first call. A folder is made
// under another name and renamed when complete, so an interrupted run never
// leaves a half-made folder behind to be used.
std::filesystem::path BenchFolder(const SBenchFolderSpec& spec);

// Where the folders are kept: "sd-bench-folders" in the temporary folder.
std::filesystem::path BenchCacheFolder();

// The standard's name in a generated folder, and its folder.
std::wstring BenchStandardName(std::int32_t id);
std::filesystem::path BenchStandardFolder(const std::filesystem::path& root, std::int32_t id);
// The client a standard of a generated folder belongs to; 0 for none.
std::int32_t BenchClientOf(const SBenchFolderSpec& spec, std::int32_t standardId);

// A whole file as bytes, and a file written from bytes (for putting a
// registry back as it was between runs).
std::string ReadFileBytes(const std::filesystem::path& file);
void WriteFileBytes(const std::filesystem::path& file, const std::string& bytes);
