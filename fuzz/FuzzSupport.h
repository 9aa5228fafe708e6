// What every fuzz target shares: a scratch folder of this process's own, file
// helpers, and a check that stops the run with the broken property's text.
#pragma once

#include "platform/System.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <string>

// A failed property aborts, so libFuzzer keeps the input as a crash.
#define SD_FUZZ_CHECK(condition)                                                                   \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "%s:%d: property does not hold: %s\n", __FILE__, __LINE__,        \
                         #condition);                                                              \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

namespace fuzz {

// Under the temporary folder, named by the process id so that parallel runs
// never share it; removed when the run ends normally.
inline const std::filesystem::path& ScratchFolder() {
    // Never destroyed: the exit handler below still needs it.
    static const auto* folder = [] {
        auto* path =
            new std::filesystem::path(std::filesystem::temp_directory_path() /
                                      fmt::format("sd-fuzz-{}", platform::CurrentProcessId()));
        std::error_code ec;
        std::filesystem::remove_all(*path, ec);
        std::filesystem::create_directories(*path);
        std::atexit([] {
            std::error_code ignored;
            std::filesystem::remove_all(ScratchFolder(), ignored);
        });
        return path;
    }();
    return *folder;
}

inline void WriteBytes(const std::filesystem::path& path, const std::uint8_t* data,
                       std::size_t size) {
    std::FILE* file = platform::OpenFile(path, "wb");
    SD_FUZZ_CHECK(file != nullptr);
    SD_FUZZ_CHECK(size == 0 || std::fwrite(data, 1, size, file) == size);
    SD_FUZZ_CHECK(std::fclose(file) == 0);
}

inline std::string ReadBytes(const std::filesystem::path& path) {
    std::FILE* file = platform::OpenFile(path, "rb");
    SD_FUZZ_CHECK(file != nullptr);
    std::string bytes;
    char buffer[4096];
    std::size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0)
        bytes.append(buffer, got);
    std::fclose(file);
    return bytes;
}

} // namespace fuzz
