#include "app/Environment.h"

#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

std::wstring AddSeparator(const std::wstring& text) {
    return !text.empty() && (text.back() == L'/' || text.back() == L'\\') ? text
                                                                          : text + kPathSeparator;
}

} // namespace

std::wstring CEnvironment::CommonFilesFolder() const {
    const std::wstring base = platform::GetEnv("CommonProgramFiles");
    return base.empty() ? base : AddSeparator(base) + L"VANDIX" + kPathSeparator;
}

std::wstring CEnvironment::RegistryCommonFilesFolder() const {
    const std::wstring base = m_installation.Registry().Read(
        ERegistryRoot::LocalMachine, L"Software\\Microsoft\\Windows\\CurrentVersion",
        L"CommonFilesDir");
    return AddSeparator(base) + L"VANDIX" + kPathSeparator;
}

std::wstring CEnvironment::System32Folder() const {
    return AddSeparator(platform::GetEnv("SystemRoot")) + L"system32" + kPathSeparator;
}

std::wstring CEnvironment::HelpName(const std::wstring& programPath) {
    std::wstring name = programPath.substr(programPath.find_last_of(L"/\\") + 1);
    const auto dot = name.rfind(L'.');
    if (dot != std::wstring::npos)
        name.resize(dot);
    if (name.ends_with(L"32") || name.ends_with(L"64"))
        name.resize(name.size() - 2);
    return name;
}

std::wstring CEnvironment::HelpFilePath(const std::wstring& programPath) const {
    const std::wstring local = m_installation.LocalAppPath();
    const std::wstring name = HelpName(programPath);
    // The help is a folder of HTML pages on every system.
    const std::wstring installed = local.empty() ? L"" : local + L"Help/" + name + L"/";
    std::error_code ec;
    if (!installed.empty() && fs::is_directory(platform::ToPath(installed), ec))
        return installed;
    const std::wstring shipped = CInstallation::ShippedDataFolder();
    if (!shipped.empty() && fs::is_directory(platform::ToPath(shipped + L"help/" + name), ec))
        return shipped + L"help/" + name + L"/";
    return installed.empty() ? name + L"/" : installed;
}

std::wstring CEnvironment::HelpTopicPath(const std::wstring& helpPath, const std::wstring& topic,
                                         std::wstring& error) {
    error.clear();
    std::error_code ec;
    if (helpPath.empty() || !fs::exists(platform::ToPath(helpPath), ec)) {
        error =
            L"Couldn't find help file: \n" + helpPath + L"\n\nPlease check software installation.";
        return {};
    }
    const std::wstring page = topic.starts_with(L"::/") ? topic.substr(3) : topic;
    const std::wstring path = WithTrailingSeparator(helpPath) + page;
    // A page missing from an installed help falls back to its first page; so
    // does an empty topic, which would name the help folder itself.
    if (page.empty() || !fs::is_regular_file(platform::ToPath(path), ec))
        return WithTrailingSeparator(helpPath) + L"index.htm";
    return path;
}
