// Installation values and per-user state: the Windows registry there, INI
// datafiles under the XDG configuration folders elsewhere.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

enum class ERegistryRoot { LocalMachine, CurrentUser, ClassesRoot };

class IRegistry {
public:
    virtual ~IRegistry() = default;
    // False (and `value` empty) when the key or the value is missing.
    virtual bool GetString(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                           std::wstring& value) const = 0;
    virtual bool SetString(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                           const std::wstring& value) = 0;
    virtual bool DeleteValue(ERegistryRoot root, const std::wstring& path,
                             const std::wstring& name) = 0;

    // A 32-bit number (a DWORD on Windows; elsewhere, and for a number kept
    // as text, its decimal digits). False when missing or not a number.
    virtual bool GetNumber(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                           std::uint32_t& value) const;
    virtual bool SetNumber(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                           std::uint32_t value);

    // The value, or the empty string.
    std::wstring Read(ERegistryRoot root, const std::wstring& path,
                      const std::wstring& name) const {
        std::wstring value;
        GetString(root, path, name, value);
        return value;
    }
};

#ifdef _WIN32
// The Windows registry of this machine.
std::unique_ptr<IRegistry> MakeWindowsRegistry();
#endif
