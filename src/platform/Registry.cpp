#include "platform/Registry.h"

#include <cwchar>

bool IRegistry::GetNumber(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                          std::uint32_t& value) const {
    value = 0;
    std::wstring text;
    if (!GetString(root, path, name, text) || text.empty() || text.size() > 10 ||
        text.find_first_not_of(L"0123456789") != std::wstring::npos)
        return false;
    const unsigned long long number = std::wcstoull(text.c_str(), nullptr, 10);
    if (number > 0xFFFFFFFFull)
        return false;
    value = static_cast<std::uint32_t>(number);
    return true;
}

bool IRegistry::SetNumber(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                          std::uint32_t value) {
    return SetString(root, path, name, std::to_wstring(value));
}
