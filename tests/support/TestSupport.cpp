#include "support/TestSupport.h"

#include "platform/Utf8.h"
#include "store/ClientRegistry.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <clocale>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

#ifdef _WIN32
#include <windows.h>
#else
#include <csignal>
#include <sys/resource.h>
#endif

namespace fs = std::filesystem;

namespace test {

CTempDir::CTempDir() {
    static std::atomic<unsigned> counter{0};
    std::random_device random;
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    m_path =
        fs::temp_directory_path() / ("sd-test-" + std::to_string(stamp) + "-" +
                                     std::to_string(random()) + "-" + std::to_string(counter++));
    fs::create_directories(m_path);
}

CTempDir::~CTempDir() {
    std::error_code ec;
    fs::permissions(m_path, fs::perms::owner_all, fs::perm_options::add, ec);
    fs::remove_all(m_path, ec);
}

std::wstring CTempDir::Text() const {
    return platform::FromPath(m_path) + static_cast<wchar_t>(fs::path::preferred_separator);
}

std::wstring CTempDir::File(const std::wstring& name) const {
    return Text() + name;
}

CDatafilesFixture::CDatafilesFixture() : m_datafiles(m_dir.Text()) {
    fs::copy(fs::path(SD_TEMPLATES_DIR) / "Template", m_dir.Path() / "Template",
             fs::copy_options::recursive);
}

fs::path CStandardOnDisk::Folder() const {
    return Root() / "Projects" / "VX2D_PRJ_1 - Pipe";
}

fs::path CStandardOnDisk::FolderOf(std::int32_t id) const {
    std::wstring folder;
    EXPECT_EQ(registry.GetProjectFolder(id, folder), eProjectOk) << id;
    return P(folder);
}

void CStandardOnDisk::ListStandards(const std::vector<std::string>& others) const {
    std::string list = "[ProjectList]\r\nVX2D_PRJ_1 = Pipe\r\n";
    for (std::size_t i = 0; i < others.size(); ++i)
        list += "VX2D_PRJ_" + std::to_string(i + 2) + " = " + others[i] + "\r\n";
    WriteBytes(Root() / "ProjectDatafile.ini", list);
}

void CStandardOnDisk::ListStandardsWithClients() const {
    ListStandards({"Other", "Gone"});
    fs::create_directories(Folder());
    fs::create_directories(Root() / "Projects" / "VX2D_PRJ_2 - Other");
    CVX2D_ClientRegistry clients(Datafiles());
    std::int32_t id = 0;
    std::wstring name;
    ASSERT_TRUE(clients.CreateClient(id, name) && clients.CreateClient(id, name));
    ASSERT_TRUE(clients.AddProjectToClient(1, 1));
}

std::int32_t CStandardOnDisk::Create(const std::wstring& name, int templateNumber, bool oldFormat) {
    std::int32_t id = 0;
    EXPECT_EQ(registry.CreateProject({name, 0, templateNumber, 0, oldFormat}, id), eProjectOk)
        << name;
    return id;
}

std::string CStandardOnDisk::Read(const std::string& name) const {
    return ReadBytes(Folder() / name);
}

void CStandardOnDisk::Write(const std::string& name, const std::string& bytes) const {
    WriteBytes(Folder() / name, bytes);
}

std::string ReadBytes(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

void WriteBytes(const fs::path& file, const std::string& bytes) {
    fs::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << bytes;
}

fs::path P(const std::wstring& text) {
    return platform::ToPath(text);
}

EPromptAnswer CScriptedPrompter::Ask(const SPrompt& prompt) {
    asked.push_back(prompt);
    if (prompt.buttons == EPromptButtons::Ok)
        return EPromptAnswer::Ok;
    if (answers.empty())
        return prompt.defaultAnswer;
    const EPromptAnswer answer = answers.front();
    answers.pop_front();
    return answer;
}

CDecimalCommaLocale::CDecimalCommaLocale() {
    const char* current = std::setlocale(LC_ALL, nullptr);
    m_previous = current ? current : "C";
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "de_DE",
                             "German_Germany.1252"}) {
        if (std::setlocale(LC_ALL, name)) {
            const lconv* conventions = std::localeconv();
            if (conventions && std::string(conventions->decimal_point) == ",") {
                m_name = name;
                break;
            }
        }
    }
    if (m_name.empty())
        std::setlocale(LC_ALL, m_previous.c_str());
}

CDecimalCommaLocale::~CDecimalCommaLocale() {
    std::setlocale(LC_ALL, m_previous.c_str());
}

#ifdef _WIN32
CFullDisk::CFullDisk() = default;
CFullDisk::~CFullDisk() = default;
#else
CFullDisk::CFullDisk() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_FSIZE, &limit) != 0)
        return;
    m_previous = limit.rlim_cur;
    // A write past the limit then fails with EFBIG instead of a signal.
    std::signal(SIGXFSZ, SIG_IGN);
    limit.rlim_cur = 0;
    m_available = ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

CFullDisk::~CFullDisk() {
    if (!m_available)
        return;
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = m_previous;
    ::setrlimit(RLIMIT_FSIZE, &limit);
}
#endif

std::wstring N(std::wstring text) {
#ifdef _WIN32
    std::replace(text.begin(), text.end(), L'/', L'\\');
#endif
    return text;
}

std::string N(std::string text) {
#ifdef _WIN32
    std::replace(text.begin(), text.end(), '/', '\\');
#endif
    return text;
}

std::wstring Abs(const std::wstring& text) {
#ifdef _WIN32
    return L"C:" + N(text);
#else
    return text;
#endif
}

std::string Tsv(std::string text) {
    std::string escaped;
    for (const char c : text)
        escaped += c == '\\' ? std::string("\\\\") : std::string(1, c);
    return escaped;
}

void AgeFile(const std::filesystem::path& file, std::chrono::seconds age) {
#ifdef _WIN32
    // Opened as the holder shares it: reading, writing and deleting allowed.
    const HANDLE handle = ::CreateFileW(file.c_str(), FILE_WRITE_ATTRIBUTES,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE) << file;
    FILETIME now;
    ::GetSystemTimeAsFileTime(&now);
    ULARGE_INTEGER ticks;
    ticks.LowPart = now.dwLowDateTime;
    ticks.HighPart = now.dwHighDateTime;
    ticks.QuadPart -= static_cast<ULONGLONG>(age.count()) * 10000000ull;
    FILETIME then{ticks.LowPart, ticks.HighPart};
    EXPECT_TRUE(::SetFileTime(handle, nullptr, nullptr, &then));
    ::CloseHandle(handle);
#else
    fs::last_write_time(file, fs::file_time_type::clock::now() - age);
#endif
}

void SetEnv(const char* name, const char* value) {
#ifdef _WIN32
    _putenv_s(name, value ? value : "");
#else
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
#endif
}

void KillProcess(std::int64_t pid) {
#ifdef _WIN32
    if (HANDLE process = ::OpenProcess(PROCESS_TERMINATE, FALSE, static_cast<DWORD>(pid))) {
        ::TerminateProcess(process, 9);
        ::CloseHandle(process);
    }
#else
    ::kill(static_cast<pid_t>(pid), SIGKILL);
#endif
}

} // namespace test
