#include "store/Datafiles.h"

#include "datafile/Text.h"
#include "platform/Utf8.h"

#include <filesystem>

CVX2D_Datafiles::CVX2D_Datafiles(const std::wstring& root) : m_root(WithTrailingSeparator(root)) {}

std::wstring CVX2D_Datafiles::File(const std::wstring& name) const {
    return m_root.empty() ? m_root : m_root + name;
}

std::wstring CVX2D_Datafiles::ProjectsFolder() const {
    return m_root.empty() ? m_root : m_root + L"Projects" + kPathSeparator;
}

std::wstring CVX2D_Datafiles::TemplateFolder(const std::wstring& name) const {
    return m_root.empty() ? m_root : m_root + L"Template" + kPathSeparator + name + kPathSeparator;
}

std::wstring CVX2D_Datafiles::DefaultLibrariesFolder() const {
    return m_root.empty() ? m_root : m_root + L"Libraries" + kPathSeparator;
}

bool CVX2D_Datafiles::Exists() const {
    std::error_code ec;
    return IsKnown() &&
           std::filesystem::is_directory(platform::ToPath(WithoutTrailingSeparator(m_root)), ec);
}

std::wstring NoDatafilesText() {
    return L"No datafiles folder is known.\n\nGive one with --datafiles DIR or set "
           L"\"DatafilesPath\" in the installation values.";
}

std::wstring MissingDatafilesText(const std::wstring& folder) {
    return L"The datafiles folder '" + folder +
           L"' does not exist or cannot be reached.\n\nConnect the share that holds it, or give "
           L"another datafiles folder. Only the installation (-install) creates a new one.";
}
