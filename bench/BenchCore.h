// The core objects over a generated datafiles folder, with a per-user
// profile of their own that is removed afterwards, and answers that take
// each question's default.
#pragma once

#include "BenchFolder.h"

#include "app/StandardsCore.h"
#include "store/IniRegistry.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

class CDefaultAnswers : public IPrompter {
public:
    EPromptAnswer Ask(const SPrompt& prompt) override { return prompt.defaultAnswer; }
};

// A configuration folder of its own: the machine and user files of the
// INI-backed registry, also handed to child programs through XDG_*, so that
// no benchmark reads or changes the settings of the user who runs it.
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
    // The same for this process (the command line run in it).
    void UseInThisProcess() const {
        for (const auto& variable : Environment()) {
            const auto equals = variable.find('=');
            setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
        }
    }

    const std::filesystem::path dir = BenchCacheFolder() / NextName();

private:
    static std::string NextName() {
        static int made = 0;
        return "config-" + std::to_string(getpid()) + "-" + std::to_string(++made);
    }
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
