// Per-user interface state: the profile store of the current user, one
// section per part of the program ("Application", "ProjectNavigator",
// "NewProject", "Drawings").
#pragma once

#include "platform/Registry.h"

#include <string>

class CProfile {
public:
    static constexpr const wchar_t* kRoot = L"Software\\VANDIX\\2D Kryn\\2023\\Standards Desk";

    explicit CProfile(IRegistry& registry) : m_registry(registry) {}

    int GetInt(const std::wstring& section, const std::wstring& name, int def) const;
    bool SetInt(const std::wstring& section, const std::wstring& name, int value);
    std::wstring GetString(const std::wstring& section, const std::wstring& name,
                           const std::wstring& def = {}) const;
    bool SetString(const std::wstring& section, const std::wstring& name,
                   const std::wstring& value);

    static std::wstring KeyOf(const std::wstring& section) {
        return std::wstring(kRoot) + L"\\" + section;
    }

private:
    IRegistry& m_registry;
};
