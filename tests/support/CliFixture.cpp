#include "support/CliFixture.h"

#include "platform/System.h"
#include "platform/Utf8.h"

#ifdef _WIN32
#include <thread>
#include <windows.h>
#else
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
#endif

namespace test {

std::string Joined(const std::vector<std::string>& args) {
    std::string text;
    for (const auto& arg : args)
        text += (text.empty() ? "" : " ") + arg;
    return text;
}

#ifdef _WIN32

namespace {

void ReadAll(HANDLE pipe, std::string& sink) {
    char buffer[4096];
    DWORD got = 0;
    while (::ReadFile(pipe, buffer, sizeof buffer, &got, nullptr) && got > 0)
        sink.append(buffer, got);
}

// A pipe whose child end is inherited and whose parent end is not.
bool ChildPipe(HANDLE& parent, HANDLE& child, bool childReads) {
    SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
    HANDLE read = nullptr, write = nullptr;
    if (!::CreatePipe(&read, &write, &inherit, 0))
        return false;
    parent = childReads ? write : read;
    child = childReads ? read : write;
    ::SetHandleInformation(parent, HANDLE_FLAG_INHERIT, 0);
    return true;
}

} // namespace

SRun CliTest::Run(std::vector<std::string> args, bool withDatafiles) const {
    if (m_terminal || m_fullDisk || m_otherUser || !m_stdoutFile.empty()) {
        ADD_FAILURE() << "a terminal, another user, a full disk or a redirected output is set "
                         "up only on Linux: skip the test here";
        return {};
    }
    if (withDatafiles)
        args.insert(args.begin(), {"--datafiles", m_datafiles.Dir().Path().string()});
    std::wstring command = platform::QuotedArgument(platform::FromUtf8(SD_CLI));
    for (const auto& arg : args)
        command += L" " + platform::QuotedArgument(platform::FromUtf8(arg));

    // This process's environment with the test's configuration folders.
    std::wstring block;
    const std::wstring own[] = {L"XDG_CONFIG_HOME=" + m_userConfig.Path().wstring(),
                                L"XDG_CONFIG_DIRS=" + m_machineConfig.Path().wstring(),
                                L"HOME=" + m_io.Path().wstring(), L"SD_TEST_INI_REGISTRY=1"};
    for (const auto& var : own)
        block += var + L'\0';
    if (wchar_t* inherited = ::GetEnvironmentStringsW()) {
        for (const wchar_t* var = inherited; *var; var += std::wcslen(var) + 1) {
            const std::wstring text = var;
            const std::wstring name = text.substr(0, text.find(L'=', 1));
            if (name != L"XDG_CONFIG_HOME" && name != L"XDG_CONFIG_DIRS" && name != L"HOME" &&
                name != L"SD_TEST_INI_REGISTRY")
                block += text + L'\0';
        }
        ::FreeEnvironmentStringsW(inherited);
    }
    block += L'\0';

    HANDLE outRead = nullptr, outWrite = nullptr, errRead = nullptr, errWrite = nullptr;
    HANDLE inWrite = nullptr, inRead = nullptr;
    if (!ChildPipe(outRead, outWrite, false) || !ChildPipe(errRead, errWrite, false) ||
        (m_stdin && !ChildPipe(inWrite, inRead, true)))
        return {};
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = m_stdin ? inRead : ::GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = outWrite;
    startup.hStdError = errWrite;
    PROCESS_INFORMATION process{};
    const BOOL started = ::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE,
                                          CREATE_UNICODE_ENVIRONMENT | CREATE_NO_WINDOW,
                                          block.data(), nullptr, &startup, &process);
    ::CloseHandle(outWrite);
    ::CloseHandle(errWrite);
    if (inRead)
        ::CloseHandle(inRead);
    SRun run;
    if (started) {
        std::thread feeder;
        if (m_stdin) {
            feeder = std::thread([&] {
                DWORD written = 0;
                ::WriteFile(inWrite, m_stdin->data(), static_cast<DWORD>(m_stdin->size()), &written,
                            nullptr);
                ::CloseHandle(inWrite);
            });
        }
        std::thread errors([&] { ReadAll(errRead, run.err); });
        std::thread output([&] { ReadAll(outRead, run.out); });
        // A run that never ends is ended, and named, instead of holding up
        // the whole test program until ctest gives up on it.
        if (::WaitForSingleObject(process.hProcess, 60000) == WAIT_TIMEOUT) {
            ::TerminateProcess(process.hProcess, 124);
            ADD_FAILURE() << "standards-desk-cli " << Joined(args) << " did not end in 60 s";
        }
        output.join();
        errors.join();
        if (feeder.joinable())
            feeder.join();
        DWORD code = 0;
        if (::GetExitCodeProcess(process.hProcess, &code))
            run.code = static_cast<int>(code);
        ::CloseHandle(process.hThread);
        ::CloseHandle(process.hProcess);
    } else if (inWrite) {
        ::CloseHandle(inWrite);
    }
    ::CloseHandle(outRead);
    ::CloseHandle(errRead);
    return run;
}

#else

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

#endif

} // namespace test
