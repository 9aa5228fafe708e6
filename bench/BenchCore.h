// The core objects over a generated datafiles folder, with a per-user
// profile of their own that is removed afterwards, and answers that take
// each question's default.
#pragma once

#include "BenchFolder.h"

#include "app/StandardsCore.h"
#include "store/IniRegistry.h"

#include <filesystem>
#include <string>
#include <unistd.h>

class CDefaultAnswers : public IPrompter {
public:
    EPromptAnswer Ask(const SPrompt& prompt) override { return prompt.defaultAnswer; }
};

// A configuration folder for this process: the machine and user files of
// the INI-backed registry, also handed to child programs through XDG_*.
struct SBenchConfig {
    SBenchConfig() { std::filesystem::create_directories(dir); }
    ~SBenchConfig() {
        std::error_code ec;
        std::filesystem::remove_all(dir, ec);
    }
    SBenchConfig(const SBenchConfig&) = delete;
    SBenchConfig& operator=(const SBenchConfig&) = delete;

    std::vector<std::string> Environment() const {
        return {"XDG_CONFIG_HOME=" + (dir / "user").string(),
                "XDG_CONFIG_DIRS=" + (dir / "machine").string()};
    }

    const std::filesystem::path dir = BenchCacheFolder() / ("config-" + std::to_string(getpid()));
};

struct SBenchCore {
    explicit SBenchCore(const std::filesystem::path& datafiles)
        : core(std::make_unique<CIniRegistry>((config.dir / "machine").wstring(),
                                              (config.dir / "user").wstring()),
               datafiles.wstring(), prompter) {}

    SBenchConfig config;
    CDefaultAnswers prompter;
    CStandardsCore core;
};
