#include "support/CliFixture.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace test {

std::string Joined(const std::vector<std::string>& args) {
    std::string text;
    for (const auto& arg : args)
        text += (text.empty() ? "" : " ") + arg;
    return text;
}

// Runs the program with `args` after "--datafiles DIR" (unless told not
// to), with the XDG folders and HOME pointing at this test's folders.
SRun CliTest::Run(std::vector<std::string> args, bool withDatafiles) const {

    if (withDatafiles)
        args.insert(args.begin(), {"--datafiles", m_datafiles.Dir().Path().string()});
    args.insert(args.begin(), SD_CLI);
    std::vector<std::string> env = {"XDG_CONFIG_HOME=" + m_userConfig.Path().string(),
                                    "XDG_CONFIG_DIRS=" + m_machineConfig.Path().string(),
                                    "HOME=" + m_io.Path().string()};
    for (char** e = environ; *e; ++e) {
        const std::string var = *e;
        if (!var.starts_with("XDG_CONFIG_HOME=") && !var.starts_with("XDG_CONFIG_DIRS=") &&
            !var.starts_with("HOME="))
            env.push_back(var);
    }
    std::vector<char*> argv, envp;
    for (auto& arg : args)
        argv.push_back(arg.data());
    for (auto& var : env)
        envp.push_back(var.data());
    argv.push_back(nullptr);
    envp.push_back(nullptr);
    const fs::path out = m_io.Path() / "stdout", err = m_io.Path() / "stderr";
    const pid_t pid = fork();
    if (pid == 0) {
        const int outFd = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int errFd = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (outFd < 0 || errFd < 0 || dup2(outFd, 1) < 0 || dup2(errFd, 2) < 0)
            _exit(126);
        execve(SD_CLI, argv.data(), envp.data());
        _exit(127);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadBytes(out), ReadBytes(err)};
}

} // namespace test
