#include "store/Profile.h"

#include "datafile/IniFile.h"
#include "datafile/Text.h"

int CProfile::GetInt(const std::wstring& section, const std::wstring& name, int def) const {
    std::wstring text;
    if (!m_registry.GetString(ERegistryRoot::CurrentUser, KeyOf(section), name, text) ||
        text.empty())
        return def;
    return WToI(text);
}

bool CProfile::SetInt(const std::wstring& section, const std::wstring& name, int value) {
    return SetString(section, name, CVX2D_IniFile::FormatInt(value));
}

std::wstring CProfile::GetString(const std::wstring& section, const std::wstring& name,
                                 const std::wstring& def) const {
    std::wstring text;
    return m_registry.GetString(ERegistryRoot::CurrentUser, KeyOf(section), name, text) ? text
                                                                                        : def;
}

bool CProfile::SetString(const std::wstring& section, const std::wstring& name,
                         const std::wstring& value) {
    return m_registry.SetString(ERegistryRoot::CurrentUser, KeyOf(section), name, value);
}
