#include "store/Datafiles.h"

#include "datafile/Text.h"

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
