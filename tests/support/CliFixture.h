// A test fixture that runs standards-desk-cli as a child process on a
// temporary datafiles folder and captures its exit code and output.
#pragma once

#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <optional>
#include <set>
#include <string>
#include <vector>

// A run that needs what only Linux can set up here (a terminal, another
// user, a disk on which no file can grow, /dev/full) is skipped elsewhere.
#ifdef _WIN32
#define SD_SKIP_UNLESS_POSIX(what) GTEST_SKIP() << what << " is set up only on Linux"
#else
#define SD_SKIP_UNLESS_POSIX(what) static_cast<void>(0)
#endif

namespace test {

namespace fs = std::filesystem;

struct SRun {
    int code = -1;
    std::string out;
    std::string err;
};

std::string Joined(const std::vector<std::string>& args);

class CliTest : public ::testing::Test {
protected:
    // Runs the program with `args` after "--datafiles DIR" (unless told not
    // to), with the XDG folders and HOME pointing at this test's folders.
    SRun Run(std::vector<std::string> args, bool withDatafiles = true) const;

    // Runs a command that must succeed and returns what it printed.
    std::string Ok(const std::vector<std::string>& args) const {
        const SRun run = Run(args);
        EXPECT_EQ(run.code, 0) << Joined(args) << "\n" << run.err;
        return run.out;
    }

    // Runs each command in turn: each succeeds, prints exactly its text and
    // nothing on standard error.
    using SSteps = std::vector<std::pair<std::vector<std::string>, std::string>>;
    void RunSteps(const SSteps& steps) const {
        for (const auto& [args, out] : steps) {
            SCOPED_TRACE(Joined(args));
            const SRun run = Run(args);
            EXPECT_EQ(run.code, 0);
            EXPECT_EQ(run.out, out);
            EXPECT_EQ(run.err, "");
        }
    }

    // How the next runs go: as a user who is not root (a drafter on a
    // share: when the tests run as root the child drops to "nobody"),
    // with a disk on which no file can grow, and standard output elsewhere.
    bool m_otherUser = false;
    bool m_fullDisk = false;
    // Where standard output goes instead of the captured pipe, such as
    // "/dev/full"; empty: captured.
    std::string m_stdoutFile;
    // When set, standard input, output and error are one terminal on which
    // this is typed; all the terminal shows (the echo of the typing too)
    // comes back in `err`.
    std::optional<std::string> m_terminal;
    // When set, standard input is a pipe carrying this (at most 64 KiB).
    std::optional<std::string> m_stdin;
    // The exit code of a run that could not become another user.
    static constexpr int kCannotDropPrivileges = 125;

    fs::path Root() const { return m_datafiles.Dir().Path(); }
    fs::path Projects() const { return Root() / "Projects"; }
    fs::path MachineRegistry() const { return m_machineConfig.Path() / "VANDIX" / "registry.ini"; }
    fs::path UserRegistry() const { return m_userConfig.Path() / "VANDIX" / "registry.ini"; }

    std::set<std::string> ProjectFolders() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(Projects()))
            names.insert(entry.path().filename().string());
        return names;
    }

    test::CTempDir m_userConfig, m_machineConfig, m_io;
    test::CDatafilesFixture m_datafiles;
};

} // namespace test
