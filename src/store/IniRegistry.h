// The registry as INI datafiles: the machine's values in
// $XDG_CONFIG_DIRS[0]/VANDIX/registry.ini (default /etc/xdg), the user's in
// $XDG_CONFIG_HOME/VANDIX/registry.ini (default ~/.config). The key path is
// the section, the value name the key.
#pragma once

#include "platform/Registry.h"

#include <memory>

class CIniRegistry : public IRegistry {
public:
    // Folders of the two files; empty means the XDG defaults.
    CIniRegistry(std::wstring machineFolder = {}, std::wstring userFolder = {});

    bool GetString(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                   std::wstring& value) const override;
    bool SetString(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                   const std::wstring& value) override;
    bool DeleteValue(ERegistryRoot root, const std::wstring& path,
                     const std::wstring& name) override;

    std::wstring FileOf(ERegistryRoot root) const;

    static std::wstring DefaultMachineFolder();
    static std::wstring DefaultUserFolder();

private:
    std::wstring SectionOf(ERegistryRoot root, const std::wstring& path) const;
    std::wstring m_machineFolder;
    std::wstring m_userFolder;
};

// The registry of this machine: the real one on Windows, these INI files
// elsewhere.
std::unique_ptr<IRegistry> MakeSystemRegistry();
