#include "store/IniRegistry.h"

#include "datafile/IniFile.h"
#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"

#include <filesystem>

namespace fs = std::filesystem;

CIniRegistry::CIniRegistry(std::wstring machineFolder, std::wstring userFolder)
    : m_machineFolder(machineFolder.empty() ? DefaultMachineFolder() : std::move(machineFolder)),
      m_userFolder(userFolder.empty() ? DefaultUserFolder() : std::move(userFolder)) {}

std::wstring CIniRegistry::DefaultMachineFolder() {
    std::wstring dirs = platform::GetEnv("XDG_CONFIG_DIRS");
    // A list like PATH: ';' between folders on Windows, where ':' follows
    // the drive letter.
#ifdef _WIN32
    const auto end = dirs.find(L';');
#else
    const auto end = dirs.find(L':');
#endif
    if (end != std::wstring::npos)
        dirs.resize(end);
#ifdef _WIN32
    if (dirs.empty())
        dirs = platform::GetEnv("PROGRAMDATA");
#endif
    if (dirs.empty())
        dirs = L"/etc/xdg";
    return WithTrailingSeparator(dirs) + L"VANDIX";
}

std::wstring CIniRegistry::DefaultUserFolder() {
    std::wstring home = platform::GetEnv("XDG_CONFIG_HOME");
#ifdef _WIN32
    if (home.empty())
        home = platform::GetEnv("APPDATA");
#endif
    if (home.empty())
        home = WithTrailingSeparator(platform::GetEnv("HOME")) + L".config";
    return WithTrailingSeparator(home) + L"VANDIX";
}

std::wstring CIniRegistry::FileOf(ERegistryRoot root) const {
    const std::wstring& folder =
        root == ERegistryRoot::CurrentUser ? m_userFolder : m_machineFolder;
    return WithTrailingSeparator(folder) + L"registry.ini";
}

std::wstring CIniRegistry::SectionOf(ERegistryRoot root, const std::wstring& path) const {
    // Class registrations share the machine's file under their own prefix.
    return root == ERegistryRoot::ClassesRoot ? L"HKEY_CLASSES_ROOT\\" + path : path;
}

bool CIniRegistry::GetString(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                             std::wstring& value) const {
    value.clear();
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    if (ini.Open(FileOf(root)) != CVX2D_IniFile::eOk)
        return false;
    ini.SetSection(SectionOf(root, path));
    const std::wstring missing(1, L'\x1');
    ini.GetString(name, value, missing);
    if (value == missing) {
        value.clear();
        return false;
    }
    return true;
}

bool CIniRegistry::SetString(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                             const std::wstring& value) {
    const std::wstring file = FileOf(root);
    std::error_code ec;
    fs::create_directories(platform::ToPath(file).parent_path(), ec);
    return UpdateDatafile(file, [&](CVX2D_IniFile& ini) {
        ini.SetSection(SectionOf(root, path));
        ini.SetString(name, value);
        return true;
    });
}

bool CIniRegistry::DeleteValue(ERegistryRoot root, const std::wstring& path,
                               const std::wstring& name) {
    return UpdateDatafile(FileOf(root), [&](CVX2D_IniFile& ini) {
        ini.SetSection(SectionOf(root, path));
        ini.DeleteKey(name);
        return true;
    });
}

std::unique_ptr<IRegistry> MakeSystemRegistry() {
#ifdef _WIN32
#ifdef SD_TEST_REGISTRY_SWITCH
    // A build with tests: they keep their values in their own INI files,
    // never in this machine's registry, where an installed program reads.
    if (!platform::GetEnv("SD_TEST_INI_REGISTRY").empty())
        return std::make_unique<CIniRegistry>();
#endif
    return MakeWindowsRegistry();
#else
    return std::make_unique<CIniRegistry>();
#endif
}
