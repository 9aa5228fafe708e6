#include "platform/System.h"

#include "platform/Utf8.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <lmcons.h>
#include <map>
#include <mutex>
#include <objbase.h>
#include <shellapi.h>
#include <windows.h>
#else
#include <csignal>
#include <fcntl.h>
#include <pwd.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <uuid/uuid.h>
extern char** environ;
#endif

namespace platform {

#ifdef _WIN32

std::int64_t CurrentProcessId() {
    return static_cast<std::int64_t>(::GetCurrentProcessId());
}

std::wstring HostName() {
    wchar_t buffer[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
    if (!::GetComputerNameW(buffer, &size))
        return L"";
    return std::wstring(buffer, size);
}

bool IsProcessAlive(std::int64_t pid) {
    HANDLE process = ::OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(pid));
    if (!process)
        return ::GetLastError() == ERROR_ACCESS_DENIED;
    const DWORD state = ::WaitForSingleObject(process, 0);
    ::CloseHandle(process);
    return state == WAIT_TIMEOUT;
}

std::wstring UserName() {
    wchar_t buffer[UNLEN + 1];
    DWORD size = UNLEN + 1;
    if (!::GetUserNameW(buffer, &size))
        return L"";
    return std::wstring(buffer);
}

std::array<std::uint8_t, 16> NewGuidBytes() {
    GUID guid{};
    ::CoCreateGuid(&guid);
    std::array<std::uint8_t, 16> bytes{};
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::uint8_t>(guid.Data1 >> (24 - 8 * i));
    bytes[4] = static_cast<std::uint8_t>(guid.Data2 >> 8);
    bytes[5] = static_cast<std::uint8_t>(guid.Data2);
    bytes[6] = static_cast<std::uint8_t>(guid.Data3 >> 8);
    bytes[7] = static_cast<std::uint8_t>(guid.Data3);
    for (int i = 0; i < 8; ++i)
        bytes[8 + i] = guid.Data4[i];
    return bytes;
}

std::size_t MaxNameLength() {
    return 255;
}
std::size_t MaxPathLength() {
    return MAX_PATH - 1;
}
std::size_t NativeLength(const std::wstring& text) {
    return text.size();
}

std::FILE* OpenFile(const std::filesystem::path& path, const char* mode) {
    // Opened as the other workstations need it: while we read or write a
    // datafile, another may read it, and may replace it with its newer copy
    // (which _wfopen's sharing refuses).
    const std::string m = mode;
    const bool write = m.starts_with("w");
    const DWORD creation = !write                             ? OPEN_EXISTING
                           : m.find('x') != std::string::npos ? CREATE_NEW
                                                              : CREATE_ALWAYS;
    const HANDLE handle = ::CreateFileW(path.c_str(), write ? GENERIC_WRITE : GENERIC_READ,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                        nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        // As fopen would say it, for the messages made from errno.
        switch (::GetLastError()) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            errno = ENOENT;
            break;
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            errno = EEXIST;
            break;
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
            errno = EACCES;
            break;
        case ERROR_WRITE_PROTECT:
            errno = EROFS;
            break;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            errno = ENOSPC;
            break;
        default:
            errno = EIO;
        }
        return nullptr;
    }
    const int fd = ::_open_osfhandle(reinterpret_cast<intptr_t>(handle),
                                     (write ? _O_WRONLY : _O_RDONLY) | _O_BINARY);
    if (fd == -1) {
        ::CloseHandle(handle);
        return nullptr;
    }
    std::FILE* file = ::_fdopen(fd, write ? "wb" : "rb");
    if (!file)
        ::_close(fd);
    return file;
}

bool CanWriteFile(const std::filesystem::path& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_READONLY);
}

void CopyFileMode(const std::filesystem::path&, const std::filesystem::path&) {
    // A new file takes the folder's inherited access rules, as the old one did.
}

bool FlushAndClose(std::FILE* file) {
    bool ok = std::fflush(file) == 0;
    ok = ::_commit(::_fileno(file)) == 0 && ok;
    return std::fclose(file) == 0 && ok;
}

std::wstring GetEnv(const char* name) {
    std::wstring wname(name, name + std::char_traits<char>::length(name));
    const wchar_t* value = ::_wgetenv(wname.c_str());
    return value ? std::wstring(value) : std::wstring();
}

namespace {

// The processes started and not yet waited for: their exit codes are read
// through the handles CreateProcessW gave.
std::mutex g_startedMutex;
std::map<std::int64_t, HANDLE> g_started;

HANDLE CreateWithCommandLine(const std::filesystem::path& program, std::wstring commandLine,
                             const std::filesystem::path& workingFolder, DWORD& pid) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    // The program is named on its own too, so a path with blanks is never
    // taken for a shorter one followed by arguments.
    if (!::CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                          workingFolder.empty() ? nullptr : workingFolder.c_str(), &startup,
                          &process))
        return nullptr;
    ::CloseHandle(process.hThread);
    pid = process.dwProcessId;
    return process.hProcess;
}

} // namespace

std::int64_t StartProcess(const std::filesystem::path& program,
                          const std::vector<std::wstring>& args,
                          const std::filesystem::path& workingFolder) {
    std::wstring commandLine = QuotedArgument(program.wstring());
    for (const auto& arg : args)
        commandLine += L" " + QuotedArgument(arg);
    DWORD pid = 0;
    const HANDLE process = CreateWithCommandLine(program, commandLine, workingFolder, pid);
    if (!process)
        return -1;
    std::lock_guard lock(g_startedMutex);
    g_started[pid] = process;
    return pid;
}

int WaitProcess(std::int64_t pid) {
    HANDLE process = nullptr;
    {
        std::lock_guard lock(g_startedMutex);
        const auto found = g_started.find(pid);
        if (found == g_started.end())
            return -1;
        process = found->second;
        g_started.erase(found);
    }
    DWORD code = 0;
    const bool ended = ::WaitForSingleObject(process, INFINITE) == WAIT_OBJECT_0 &&
                       ::GetExitCodeProcess(process, &code);
    ::CloseHandle(process);
    return ended ? static_cast<int>(code) : -1;
}

bool LaunchProgram(const std::filesystem::path& program, const std::wstring& parameters,
                   const std::filesystem::path& workingFolder) {
    std::wstring commandLine = QuotedArgument(program.wstring());
    if (!parameters.empty())
        commandLine += L" " + parameters;
    DWORD pid = 0;
    const HANDLE process = CreateWithCommandLine(program, commandLine, workingFolder, pid);
    if (!process)
        return false;
    ::CloseHandle(process);
    return true;
}

std::vector<std::string> CommandLineArguments(int argc, char** argv) {
    std::vector<std::string> args;
    int count = 0;
    if (wchar_t** wide = ::CommandLineToArgvW(::GetCommandLineW(), &count)) {
        for (int i = 0; i < count; ++i)
            args.push_back(ToUtf8(wide[i]));
        ::LocalFree(wide);
    }
    if (count != argc)
        args.assign(argv, argv + argc);
    return args;
}

void UseBinaryStandardStreams() {
    for (const int stream : {0, 1, 2})
        ::_setmode(stream, _O_BINARY);
}

#else

std::int64_t CurrentProcessId() {
    return static_cast<std::int64_t>(::getpid());
}

std::wstring HostName() {
    char buffer[HOST_NAME_MAX + 1] = {};
    if (::gethostname(buffer, sizeof buffer - 1) != 0)
        return L"";
    return FromUtf8(buffer);
}

bool IsProcessAlive(std::int64_t pid) {
    if (pid <= 0)
        return false;
    if (::kill(static_cast<pid_t>(pid), 0) == 0)
        return true;
    return errno != ESRCH;
}

std::wstring UserName() {
    const passwd* entry = ::getpwuid(::geteuid());
    if (entry && entry->pw_name)
        return FromUtf8(entry->pw_name);
    return L"";
}

std::array<std::uint8_t, 16> NewGuidBytes() {
    uuid_t uuid;
    ::uuid_generate(uuid);
    std::array<std::uint8_t, 16> bytes{};
    for (int i = 0; i < 16; ++i)
        bytes[i] = uuid[i];
    return bytes;
}

std::size_t MaxNameLength() {
    return NAME_MAX;
}
std::size_t MaxPathLength() {
    return PATH_MAX - 1;
}
std::size_t NativeLength(const std::wstring& text) {
    return ToUtf8(text).size();
}

std::FILE* OpenFile(const std::filesystem::path& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

bool CanWriteFile(const std::filesystem::path& path) {
    return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

void CopyFileMode(const std::filesystem::path& original, const std::filesystem::path& copy) {
    struct stat status {};
    if (::stat(original.c_str(), &status) != 0)
        return;
    // Owner first: changing it clears the set-id bits that chmod then puts back.
    if (::chown(copy.c_str(), ::geteuid() == 0 ? status.st_uid : static_cast<uid_t>(-1),
                status.st_gid) != 0) {
        // Not a member of the file's group: the new file keeps ours.
    }
    ::chmod(copy.c_str(), status.st_mode & 07777);
}

bool FlushAndClose(std::FILE* file) {
    bool ok = std::fflush(file) == 0;
    ok = ::fsync(::fileno(file)) == 0 && ok;
    return std::fclose(file) == 0 && ok;
}

std::wstring GetEnv(const char* name) {
    const char* value = std::getenv(name);
    return value ? FromUtf8(value) : std::wstring();
}

std::int64_t StartProcess(const std::filesystem::path& program,
                          const std::vector<std::wstring>& args,
                          const std::filesystem::path& workingFolder) {
    std::vector<std::string> storage;
    storage.push_back(program.string());
    for (const auto& arg : args)
        storage.push_back(ToUtf8(arg));
    std::vector<char*> argv;
    for (auto& text : storage)
        argv.push_back(text.data());
    argv.push_back(nullptr);
    // The child changes folder before it runs the program: a relative
    // program path is made whole first, as it names a file from here.
    std::error_code ec;
    const std::filesystem::path whole = std::filesystem::absolute(program, ec);
    if (ec)
        return -1;
    posix_spawn_file_actions_t actions;
    if (::posix_spawn_file_actions_init(&actions) != 0)
        return -1;
    int failed = 0;
    if (!workingFolder.empty())
        failed = ::posix_spawn_file_actions_addchdir_np(&actions, workingFolder.c_str());
    pid_t pid = 0;
    if (failed == 0)
        failed = ::posix_spawn(&pid, whole.c_str(), &actions, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return failed == 0 ? pid : -1;
}

bool LaunchProgram(const std::filesystem::path& program, const std::wstring& parameters,
                   const std::filesystem::path& workingFolder) {
    // posix_spawn reports a program that cannot be run; a folder that cannot
    // be entered makes the child end at once with 127, which only waiting
    // would tell: look first.
    std::error_code ec;
    if (!workingFolder.empty() && !std::filesystem::is_directory(workingFolder, ec))
        return false;
    const std::int64_t pid = StartProcess(program, SplitParameters(parameters), workingFolder);
    if (pid <= 0)
        return false;
    // Nobody waits for it but this thread, so it leaves no zombie behind.
    std::thread([pid] { WaitProcess(pid); }).detach();
    return true;
}

std::vector<std::string> CommandLineArguments(int argc, char** argv) {
    return std::vector<std::string>(argv, argv + argc);
}

void UseBinaryStandardStreams() {}

int WaitProcess(std::int64_t pid) {
    int status = 0;
    while (::waitpid(static_cast<pid_t>(pid), &status, 0) == -1) {
        if (errno != EINTR)
            return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

#endif

} // namespace platform

namespace platform {
std::wstring QuotedArgument(const std::wstring& arg) {
    if (!arg.empty() && arg.find_first_of(L" \t\n\v\"") == std::wstring::npos)
        return arg;
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : arg) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        // Backslashes double only before a quote, which gets one of its own.
        quoted.append(c == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
        backslashes = 0;
        quoted += c;
    }
    quoted.append(2 * backslashes, L'\\');
    return quoted + L"\"";
}

std::vector<std::wstring> SplitParameters(const std::wstring& parameters) {
    std::vector<std::wstring> words;
    std::wstring word;
    bool quoted = false, any = false;
    for (const wchar_t c : parameters) {
        if (c == L'"') {
            quoted = !quoted;
            any = true;
        } else if ((c == L' ' || c == L'\t') && !quoted) {
            if (any)
                words.push_back(word);
            word.clear();
            any = false;
        } else {
            word += c;
            any = true;
        }
    }
    if (any)
        words.push_back(word);
    return words;
}
} // namespace platform

namespace platform {
bool IsTerminal(int stream) {
#ifdef _WIN32
    return ::_isatty(stream) != 0;
#else
    return ::isatty(stream) != 0;
#endif
}
} // namespace platform

namespace platform {
std::wstring ExecutablePath() {
#ifdef _WIN32
    wchar_t buffer[32768];
    const DWORD size = ::GetModuleFileNameW(nullptr, buffer, 32768);
    return std::wstring(buffer, size);
#else
    std::error_code ec;
    const auto path = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::wstring() : FromPath(path);
#endif
}
} // namespace platform

namespace platform {
bool ShellOpen(const std::wstring& target) {
#ifdef _WIN32
    const auto result = reinterpret_cast<INT_PTR>(
        ::ShellExecuteW(nullptr, L"open", target.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    return result > 32;
#else
    const std::int64_t pid = StartProcess("/usr/bin/xdg-open", {target});
    if (pid <= 0)
        return false;
    // xdg-open hands the target to the desktop and ends at once.
    return WaitProcess(pid) == 0;
#endif
}

std::wstring ShellOpenAdvice() {
#ifdef _WIN32
    return L"Associate a program with this kind of file in the Windows settings.";
#else
    return L"Opening it needs xdg-open (the xdg-utils package) and a program chosen for this "
           L"kind of file in the desktop's settings.";
#endif
}

std::wstring FileManagerName() {
#ifdef _WIN32
    return L"Windows Explorer";
#else
    return L"the file manager";
#endif
}
} // namespace platform

namespace platform {
SFileStamp FileStamp(const std::filesystem::path& path) {
    SFileStamp stamp;
#ifdef _WIN32
    const HANDLE file = ::CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return stamp;
    BY_HANDLE_FILE_INFORMATION info;
    if (::GetFileInformationByHandle(file, &info)) {
        stamp.exists = true;
        stamp.volume = info.dwVolumeSerialNumber;
        stamp.file = (static_cast<std::uint64_t>(info.nFileIndexHigh) << 32) | info.nFileIndexLow;
        stamp.size = (static_cast<std::uint64_t>(info.nFileSizeHigh) << 32) | info.nFileSizeLow;
        stamp.modified = (static_cast<std::int64_t>(info.ftLastWriteTime.dwHighDateTime) << 32) |
                         info.ftLastWriteTime.dwLowDateTime;
        stamp.changed = (static_cast<std::int64_t>(info.ftCreationTime.dwHighDateTime) << 32) |
                        info.ftCreationTime.dwLowDateTime;
    }
    ::CloseHandle(file);
#else
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0)
        return stamp;
    stamp.exists = true;
    stamp.volume = static_cast<std::uint64_t>(info.st_dev);
    stamp.file = static_cast<std::uint64_t>(info.st_ino);
    stamp.size = static_cast<std::uint64_t>(info.st_size);
    stamp.modified =
        static_cast<std::int64_t>(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
    stamp.changed =
        static_cast<std::int64_t>(info.st_ctim.tv_sec) * 1000000000 + info.st_ctim.tv_nsec;
#endif
    return stamp;
}
} // namespace platform

namespace platform {
bool SameFile(const std::filesystem::path& first, const std::filesystem::path& second) {
    const SFileStamp a = FileStamp(first);
    const SFileStamp b = FileStamp(second);
    return a.exists && b.exists && a.volume == b.volume && a.file == b.file;
}
} // namespace platform

namespace platform {
void Rename(const std::filesystem::path& from, const std::filesystem::path& to,
            std::error_code& error) {
    error.clear();
    if (from == to || !SameFile(from, to)) {
        std::filesystem::rename(from, to, error);
        return;
    }
    std::filesystem::path step = from;
    step += ".rename-" + std::to_string(CurrentProcessId());
    std::filesystem::rename(from, step, error);
    if (error)
        return;
    std::filesystem::rename(step, to, error);
    if (error) {
        std::error_code back;
        std::filesystem::rename(step, from, back);
    }
}
} // namespace platform

namespace platform {
void MoveIntoPlace(const std::filesystem::path& from, const std::filesystem::path& to,
                   std::error_code& error) {
    error.clear();
#ifdef _WIN32
    for (int attempt = 0;; ++attempt) {
        if (::MoveFileExW(from.c_str(), to.c_str(),
                          MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
            return;
        const DWORD code = ::GetLastError();
        if ((code != ERROR_ACCESS_DENIED && code != ERROR_SHARING_VIOLATION) || attempt == 100 ||
            !CanWriteFile(to)) {
            error.assign(static_cast<int>(code), std::system_category());
            return;
        }
        ::Sleep(20);
    }
#else
    std::filesystem::rename(from, to, error);
#endif
}
} // namespace platform
