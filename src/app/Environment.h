// Folders derived from the environment and the installation values, and the
// help pages.
#pragma once

#include "store/Installation.h"

#include <string>

class CEnvironment {
public:
    // The first page of the help, which the Help menu opens and every page
    // links back to.
    static constexpr const wchar_t* kIndexTopic = L"::/index.htm";

    explicit CEnvironment(const CInstallation& installation) : m_installation(installation) {}

    // "CommonProgramFiles" + "VANDIX/"; empty when the variable is not set.
    std::wstring CommonFilesFolder() const;
    // The machine's "CommonFilesDir" + "VANDIX/".
    std::wstring RegistryCommonFilesFolder() const;
    // "SystemRoot" + "system32/".
    std::wstring System32Folder() const;

    // The help of a program: its file name without extension and without a
    // trailing "32" or "64". On Windows the compiled help file
    // LocalAppPath + "Help/<name>.chm"; elsewhere the folder of HTML pages
    // LocalAppPath + "Help/<name>/", or the shipped one when that is missing.
    std::wstring HelpFilePath(const std::wstring& programPath) const;
    static std::wstring HelpName(const std::wstring& programPath);

    // The page to show for a topic "::/X.htm" of the help at `helpPath`, or
    // nothing (with the message to show in `error`) when the help is missing.
    // A topic without a page of its own (or no topic) shows the first page.
    static std::wstring HelpTopicPath(const std::wstring& helpPath, const std::wstring& topic,
                                      std::wstring& error);

    const CInstallation& Installation() const { return m_installation; }

private:
    const CInstallation& m_installation;
};
