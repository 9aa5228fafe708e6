#include "app/UpdateCheck.h"

#include "datafile/Application.h"
#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/Opener.h"

#include <algorithm>
#include <curl/curl.h>
#include <filesystem>
#include <fmt/xchar.h>

namespace fs = std::filesystem;

namespace {

const std::wstring kSupportKey = std::wstring(CInstallation::kInstallKey) + L"\\Support";
const std::wstring kDays = L"CheckWebVersionDays";
const std::wstring kDate = L"CheckWebVersionDate";
constexpr std::time_t kDay = 86400;

std::time_t MakeLocal(int year, int month, int day, int hour, int minute, int second) {
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1;
    return std::mktime(&parts);
}

std::tm Local(std::time_t time) {
    std::tm parts{};
#ifdef _WIN32
    localtime_s(&parts, &time);
#else
    localtime_r(&time, &parts);
#endif
    return parts;
}

// Newest last-write time of the files matching "*<extension>" in a folder.
void NewestIn(const std::wstring& folder, const std::wstring& extension, std::time_t& newest) {
    std::error_code ec;
    fs::directory_iterator it(platform::ToPath(folder), ec);
    for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
        std::error_code entryError;
        if (!it->is_regular_file(entryError))
            continue;
        const std::wstring name = platform::FromPath(it->path().filename());
        if (name.size() < extension.size() ||
            !EqualsNoCase(name.substr(name.size() - extension.size()), extension))
            continue;
        const auto written = it->last_write_time(entryError);
        if (entryError)
            continue;
        // Through "now" of both clocks: portable where clock_cast is missing.
        const auto system = std::chrono::system_clock::now() +
                            std::chrono::duration_cast<std::chrono::system_clock::duration>(
                                written - fs::file_time_type::clock::now());
        newest = std::max(newest, std::chrono::system_clock::to_time_t(system));
    }
}

} // namespace

std::time_t CUpdateCheck::NoTime() {
    return MakeLocal(2000, 1, 1, 0, 0, 0);
}

CUpdateCheck::CUpdateCheck(IRegistry& registry, const CInstallation& installation,
                           IPrompter& prompter, SServices services)
    : m_registry(registry), m_installation(installation), m_prompter(prompter),
      m_services(std::move(services)) {
    if (!m_services.readPage)
        m_services.readPage = ReadUpdatePage;
    if (!m_services.openPage)
        m_services.openPage = [](const std::wstring& url) { return platform::ShellOpen(url); };
}

std::wstring CUpdateCheck::FormatTime(std::time_t time) {
    const std::tm parts = Local(time);
    return fmt::format(L"{:04}-{:02}-{:02} {:02}:{:02}:{:02}", parts.tm_year + 1900,
                       parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
}

std::time_t CUpdateCheck::ParseTime(const std::wstring& text) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    wchar_t rest = 0;
    if (std::swscanf(text.c_str(), L"%4d-%2d-%2d %2d:%2d:%2d%lc", &year, &month, &day, &hour,
                     &minute, &second, &rest) != 6)
        return NoTime();
    if (month < 1 || month > 12 || day < 1 || day > 31 || hour > 23 || minute > 59 || second > 60)
        return NoTime();
    const std::time_t time = MakeLocal(year, month, day, hour, minute, second);
    return time == static_cast<std::time_t>(-1) ? NoTime() : time;
}

std::time_t CUpdateCheck::PageTime(const std::string& page) {
    const std::string mark = platform::ToUtf8(kMark) + " ";
    const auto at = page.find(mark);
    if (at == std::string::npos)
        return NoTime();
    return ParseTime(platform::FromUtf8(page.substr(at + mark.size(), 19)));
}

std::wstring CUpdateCheck::PageUrl() const {
    return m_registry.Read(ERegistryRoot::LocalMachine, CInstallation::kInstallKey,
                           L"UpdatePageUrl");
}

std::time_t CUpdateCheck::Today() const {
    const std::tm now = Local(m_services.now());
    return MakeLocal(now.tm_year + 1900, now.tm_mon + 1, now.tm_mday, 0, 0, 0);
}

void CUpdateCheck::WriteDue(std::time_t due) {
    m_registry.SetString(ERegistryRoot::CurrentUser, kSupportKey, kDate, FormatTime(due));
}

std::time_t CUpdateCheck::NewestSuiteFileTime() const {
    const std::wstring applications =
        m_installation.NetworkAppPath() + L"Applications" + kPathSeparator;
    std::time_t newest = NoTime();
    NewestIn(applications, L".exe", newest);
    NewestIn(m_installation.SuiteCommonFolder(L"R23"), L".arx", newest);
    NewestIn(m_installation.SuiteCommonFolder(L""), L".exe", newest);
    NewestIn(m_installation.SuiteCommonFolder(L"R23"), L".fas", newest);
    for (const int application : kApplications)
        NewestIn(m_installation.SuiteApplicationFolder(application, L"R23"), L".fas", newest);
    // The installer's own list names the applications folder four times.
    for (int repeat = 0; repeat < 3; ++repeat)
        NewestIn(applications, L".exe", newest);
    return newest;
}

CUpdateCheck::EOutcome CUpdateCheck::Run() {
    if (ToLower(m_installation.LocalAppPath()) != ToLower(m_installation.NetworkAppPath()))
        return eNotThisInstallation;

    // A 32-bit number: a DWORD in the Windows registry.
    std::uint32_t days = 7;
    std::uint32_t stored = 0;
    if (!m_registry.GetNumber(ERegistryRoot::CurrentUser, kSupportKey, kDays, stored) ||
        stored == 0xFFFFFFFFu)
        m_registry.SetNumber(ERegistryRoot::CurrentUser, kSupportKey, kDays, 7);
    else
        days = stored;
    const std::time_t interval = static_cast<std::time_t>(days) * kDay;
    const std::time_t today = Today();

    std::wstring dateText;
    const std::time_t due =
        m_registry.GetString(ERegistryRoot::CurrentUser, kSupportKey, kDate, dateText)
            ? ParseTime(dateText)
            : today + interval;
    if (due == NoTime()) {
        WriteDue(today + interval);
        return eDateRepaired;
    }
    if (due > today)
        return eNotDue;

    WriteDue(today + interval);
    const std::wstring url = PageUrl();
    const std::optional<std::string> page = url.empty() ? std::nullopt : m_services.readPage(url);
    const std::time_t published = page ? PageTime(*page) : NoTime();
    if (published == NoTime())
        return eNoPageTime;
    if (published <= NewestSuiteFileTime())
        return eUpToDate;

    SPrompt question{
        std::wstring(L"A newer version of ") + kCaption +
            L" is available.\n\nDo you want to download it from the website?\n\nIf you Cancel, you "
            L"will not be prompted again.",
        kCaption, EPromptButtons::YesNoCancel, EPromptIcon::Question, EPromptAnswer::Yes};
    question.topmost = true;
    switch (m_prompter.Ask(question)) {
    case EPromptAnswer::Yes:
        if (!m_services.openPage(url)) {
            SPrompt failed{OpenFailedText(L"the page", url), kCaption, EPromptButtons::Ok,
                           EPromptIcon::Exclamation, EPromptAnswer::Ok};
            failed.topmost = true;
            m_prompter.Ask(failed);
        }
        return eOpenedPage;
    case EPromptAnswer::No: {
        SPrompt info{fmt::format(L"You will be reminded in {} days of a new update.", days),
                     kCaption, EPromptButtons::Ok, EPromptIcon::Information, EPromptAnswer::Ok};
        info.topmost = true;
        m_prompter.Ask(info);
        return eRemindLater;
    }
    default: {
        WriteDue(today + 365 * kDay);
        SPrompt info{L"You will not be reminded of any new updates.", kCaption, EPromptButtons::Ok,
                     EPromptIcon::Information, EPromptAnswer::Ok};
        info.topmost = true;
        m_prompter.Ask(info);
        return eNeverRemind;
    }
    }
}

namespace {

size_t Collect(char* data, size_t size, size_t count, void* target) {
    auto* page = static_cast<std::string*>(target);
    const size_t bytes = size * count;
    // An update page is small; a huge answer is not one.
    if (page->size() + bytes > (1u << 20))
        return 0;
    page->append(data, bytes);
    return bytes;
}

} // namespace

std::optional<std::string> ReadUpdatePage(const std::wstring& url) {
    static const bool initialised = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    if (!initialised)
        return std::nullopt;
    CURL* curl = curl_easy_init();
    if (!curl)
        return std::nullopt;
    std::string page;
    const std::string address = platform::ToUtf8(url);
    curl_easy_setopt(curl, CURLOPT_URL, address.c_str());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https,file");
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, 5L);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT, 10L);
    curl_easy_setopt(curl, CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, Collect);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &page);
    const CURLcode result = curl_easy_perform(curl);
    curl_easy_cleanup(curl);
    if (result != CURLE_OK)
        return std::nullopt;
    return page;
}
