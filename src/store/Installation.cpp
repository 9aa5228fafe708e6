#include "store/Installation.h"

#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"

#include <filesystem>

CInstallation::CInstallation(const IRegistry& registry, std::wstring datafilesOverride)
    : m_registry(registry) {
    if (!datafilesOverride.empty()) {
        std::error_code ec;
        const auto absolute = std::filesystem::absolute(platform::ToPath(datafilesOverride), ec);
        m_datafilesOverride =
            WithTrailingSeparator(ec ? datafilesOverride : platform::FromPath(absolute));
    }
}

std::wstring CInstallation::Value(const wchar_t* name) const {
    return WithTrailingSeparator(m_registry.Read(ERegistryRoot::LocalMachine, kInstallKey, name));
}

std::wstring CInstallation::DatafilesPath() const {
    return m_datafilesOverride.empty() ? Value(L"DatafilesPath") : m_datafilesOverride;
}

std::wstring CInstallation::DatafilesFile(const std::wstring& name) const {
    const std::wstring base = DatafilesPath();
    return base.empty() ? base : base + name;
}

std::wstring CInstallation::LocalAppPath() const {
    return Value(L"LocalAppPath");
}

std::wstring CInstallation::NetworkAppPath() const {
    return Value(L"NetworkAppPath");
}

std::wstring CInstallation::ApplicationFolderName(int application) {
    switch (application) {
    case 1:
        return L"Electric";
    case 2:
        return L"Flow";
    case 3:
        return L"Iso";
    case 4:
        return L"Ortho";
    default:
        return L"";
    }
}

std::wstring CInstallation::SuiteApplicationFolder(int application, const std::wstring& sub) const {
    const std::wstring base = NetworkAppPath();
    if (base.empty())
        return base;
    std::wstring path = base + L"Crafter" + kPathSeparator;
    if (application != 0) {
        path += ApplicationFolderName(application) + kPathSeparator;
        if (!sub.empty())
            path += sub + kPathSeparator;
    }
    return path;
}

std::wstring CInstallation::SuiteCommonFolder(const std::wstring& sub) const {
    const std::wstring base = NetworkAppPath();
    if (base.empty())
        return base;
    std::wstring path = base + L"Crafter" + kPathSeparator + L"Common" + kPathSeparator;
    if (!sub.empty())
        path += sub + kPathSeparator;
    return path;
}

std::wstring CInstallation::ShippedDataFolder() {
    std::wstring data = ShippedDataPlace(platform::ExecutablePath());
    std::error_code ec;
    if (!std::filesystem::is_directory(platform::ToPath(data), ec))
        return {};
    return data;
}

std::wstring CInstallation::ShippedDataPlace(const std::wstring& programPath) {
    const std::filesystem::path program = platform::ToPath(programPath);
    const std::filesystem::path data =
        program.parent_path().parent_path() / "share" / "standards-desk";
    return WithTrailingSeparator(platform::FromPath(data));
}
