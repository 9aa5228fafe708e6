#include "support/CliFixture.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <pty.h>
#include <sys/resource.h>
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
    // Pipes, not files: on a disk where no file can grow the messages must
    // still come through.
    int outPipe[2], errPipe[2];
    if (pipe(outPipe) != 0 || pipe(errPipe) != 0)
        return {};
    if (m_terminal) {
        // The terminal's two ends take the place of the error pipe.
        close(errPipe[0]);
        close(errPipe[1]);
        if (openpty(&errPipe[0], &errPipe[1], nullptr, nullptr, nullptr) != 0)
            return {};
    }
    int inPipe[2] = {-1, -1};
    if (m_stdin && pipe(inPipe) != 0)
        return {};
    const pid_t pid = fork();
    if (pid == 0) {
        if (m_stdin && (dup2(inPipe[0], 0) < 0 || close(inPipe[0]) != 0 || close(inPipe[1]) != 0))
            _exit(126);
        if (dup2(m_terminal ? errPipe[1] : outPipe[1], 1) < 0 || dup2(errPipe[1], 2) < 0 ||
            (m_terminal && dup2(errPipe[1], 0) < 0))
            _exit(126);
        for (int fd : {outPipe[0], outPipe[1], errPipe[0], errPipe[1]})
            close(fd);
        if (!m_stdoutFile.empty()) {
            const int file = open(m_stdoutFile.c_str(), O_WRONLY);
            if (file < 0 || dup2(file, 1) < 0)
                _exit(126);
            close(file);
        }
        if (m_fullDisk) {
            std::signal(SIGXFSZ, SIG_IGN);
            rlimit limit{};
            getrlimit(RLIMIT_FSIZE, &limit);
            limit.rlim_cur = 0;
            setrlimit(RLIMIT_FSIZE, &limit);
        }
        constexpr uid_t kNobody = 65534;
        if (m_otherUser && geteuid() == 0 &&
            (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0))
            _exit(kCannotDropPrivileges);
        execve(SD_CLI, argv.data(), envp.data());
        _exit(127);
    }
    close(outPipe[1]);
    close(errPipe[1]);
    if (m_stdin) {
        close(inPipe[0]);
        const bool written = write(inPipe[1], m_stdin->data(), m_stdin->size()) ==
                             static_cast<ssize_t>(m_stdin->size());
        close(inPipe[1]);
        if (!written)
            return {};
    }
    if (m_terminal && write(errPipe[0], m_terminal->data(), m_terminal->size()) < 0)
        return {};
    SRun run;
    pollfd fds[2] = {{outPipe[0], POLLIN, 0}, {errPipe[0], POLLIN, 0}};
    std::string* sinks[2] = {&run.out, &run.err};
    int open = 2;
    while (open > 0) {
        if (poll(fds, 2, -1) < 0 && errno != EINTR)
            break;
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR)))
                continue;
            char buffer[4096];
            const ssize_t got = read(fds[i].fd, buffer, sizeof buffer);
            if (got > 0) {
                sinks[i]->append(buffer, static_cast<std::size_t>(got));
            } else if (got == 0 || errno != EINTR) {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
    int status = 0;
    waitpid(pid, &status, 0);
    run.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

} // namespace test
