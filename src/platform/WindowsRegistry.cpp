// The real registry; compiled on Windows only.
#include "platform/Registry.h"

#include <windows.h>

namespace {

HKEY RootKey(ERegistryRoot root) {
    switch (root) {
    case ERegistryRoot::LocalMachine:
        return HKEY_LOCAL_MACHINE;
    case ERegistryRoot::CurrentUser:
        return HKEY_CURRENT_USER;
    case ERegistryRoot::ClassesRoot:
        return HKEY_CLASSES_ROOT;
    }
    return HKEY_LOCAL_MACHINE;
}

class CWindowsRegistry : public IRegistry {
public:
    bool GetString(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                   std::wstring& value) const override {
        value.clear();
        HKEY key = nullptr;
        if (::RegOpenKeyExW(RootKey(root), path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
            return false;
        wchar_t buffer[1024] = {};
        DWORD size = sizeof buffer - sizeof(wchar_t);
        DWORD type = 0;
        const LONG rc = ::RegQueryValueExW(key, name.empty() ? nullptr : name.c_str(), nullptr,
                                           &type, reinterpret_cast<BYTE*>(buffer), &size);
        ::RegCloseKey(key);
        if (rc != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ))
            return false;
        value.assign(buffer, size / sizeof(wchar_t));
        while (!value.empty() && value.back() == L'\0')
            value.pop_back();
        return true;
    }

    // A DWORD as such; a number some tool wrote as text is read too.
    bool GetNumber(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                   std::uint32_t& value) const override {
        value = 0;
        HKEY key = nullptr;
        if (::RegOpenKeyExW(RootKey(root), path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
            return false;
        DWORD number = 0;
        DWORD size = sizeof number;
        DWORD type = 0;
        const LONG rc = ::RegQueryValueExW(key, name.c_str(), nullptr, &type,
                                           reinterpret_cast<BYTE*>(&number), &size);
        ::RegCloseKey(key);
        if (rc == ERROR_SUCCESS && type == REG_DWORD && size == sizeof number) {
            value = number;
            return true;
        }
        return IRegistry::GetNumber(root, path, name, value);
    }

    bool SetNumber(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                   std::uint32_t value) override {
        HKEY key = nullptr;
        if (::RegCreateKeyExW(RootKey(root), path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                              nullptr) != ERROR_SUCCESS)
            return false;
        const DWORD number = value;
        const LONG rc = ::RegSetValueExW(key, name.c_str(), 0, REG_DWORD,
                                         reinterpret_cast<const BYTE*>(&number), sizeof number);
        ::RegCloseKey(key);
        return rc == ERROR_SUCCESS;
    }

    bool SetString(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                   const std::wstring& value) override {
        HKEY key = nullptr;
        if (::RegCreateKeyExW(RootKey(root), path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                              nullptr) != ERROR_SUCCESS)
            return false;
        const LONG rc = ::RegSetValueExW(key, name.empty() ? nullptr : name.c_str(), 0, REG_SZ,
                                         reinterpret_cast<const BYTE*>(value.c_str()),
                                         static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
        ::RegCloseKey(key);
        return rc == ERROR_SUCCESS;
    }

    bool DeleteValue(ERegistryRoot root, const std::wstring& path,
                     const std::wstring& name) override {
        HKEY key = nullptr;
        if (::RegOpenKeyExW(RootKey(root), path.c_str(), 0, KEY_WRITE, &key) != ERROR_SUCCESS)
            return false;
        const LONG rc = ::RegDeleteValueW(key, name.c_str());
        ::RegCloseKey(key);
        return rc == ERROR_SUCCESS;
    }
};

} // namespace

std::unique_ptr<IRegistry> MakeWindowsRegistry() {
    return std::make_unique<CWindowsRegistry>();
}
