// The update check at start-up: at most once every few days, and only on the
// installation whose program folder is the suite's shared folder, look at the
// update page and offer to open it when it announces something newer than
// the installed suite files.
#pragma once

#include "store/Installation.h"
#include "platform/Registry.h"
#include "store/Prompter.h"

#include <ctime>
#include <functional>
#include <optional>
#include <string>

class CUpdateCheck {
public:
    static constexpr const wchar_t* kMark = L"2D_2023_Kryn_Update";
    static constexpr const wchar_t* kCaption = L"2D Kryn 2023";
    // Stands for "no time" wherever a date could not be had.
    static std::time_t NoTime();

    struct SServices {
        std::function<std::time_t()> now = [] { return std::time(nullptr); };
        // The page's text, or nothing when it cannot be read.
        std::function<std::optional<std::string>(const std::wstring& url)> readPage;
        std::function<bool(const std::wstring& url)> openPage;
    };

    // What the check decided, for the command line and the tests.
    enum EOutcome {
        eNotThisInstallation,
        eDateRepaired,
        eNotDue,
        eNoPageTime,
        eUpToDate,
        eOpenedPage,
        eRemindLater,
        eNeverRemind,
    };

    CUpdateCheck(IRegistry& registry, const CInstallation& installation, IPrompter& prompter,
                 SServices services);

    EOutcome Run();

    // "%Y-%m-%d %H:%M:%S" in local time, and back (NoTime when unreadable).
    static std::wstring FormatTime(std::time_t time);
    static std::time_t ParseTime(const std::wstring& text);
    // The time after the mark and one blank in a page; NoTime when absent.
    static std::time_t PageTime(const std::string& page);
    // The newest last-write time of the installed suite files; NoTime if none.
    std::time_t NewestSuiteFileTime() const;
    // The page address: the installation value "UpdatePageUrl".
    std::wstring PageUrl() const;

private:
    std::time_t Today() const;
    void WriteDue(std::time_t due);

    IRegistry& m_registry;
    const CInstallation& m_installation;
    IPrompter& m_prompter;
    SServices m_services;
};

// Reads a page over http, https or from a file URL with a short timeout;
// nothing on any failure.
std::optional<std::string> ReadUpdatePage(const std::wstring& url);
