#include "datafile/DatafileSnapshot.h"

CVX2D_IniFile* CDatafileSnapshot::Read(const std::wstring& path) {
    // The stamp is taken before the read: a change while reading leaves a
    // stamp that no longer matches, so the next call reads again.
    const platform::SFileStamp stamp = platform::FileStamp(platform::ToPath(path));
    if (m_ini && path == m_strPath && stamp == m_stamp)
        return &*m_ini;
    m_ini.emplace();
    m_ini->SetAutoSave(false);
    m_strPath = path;
    m_stamp = stamp;
    if (m_ini->Open(path) != CVX2D_IniFile::eOk && stamp.exists) {
        m_ini.reset();
        return nullptr;
    }
    return &*m_ini;
}

void CDatafileSnapshot::Keep(const std::wstring& path, CVX2D_IniFile& ini, bool handOver) {
    m_stamp = platform::FileStamp(platform::ToPath(path));
    m_strPath = path;
    if (handOver) {
        m_ini.emplace();
        m_ini->SwapContents(ini);
    } else {
        m_ini.emplace(ini);
    }
    m_ini->SetAutoSave(false);
}

bool CDatafileSnapshot::Lend(const std::wstring& path, CVX2D_IniFile& into) {
    if (!Current(path))
        return false;
    into.SwapContents(*m_ini);
    m_ini.reset();
    return true;
}

const CVX2D_IniFile* CDatafileSnapshot::Current(const std::wstring& path) const {
    if (!m_ini || path != m_strPath || platform::FileStamp(platform::ToPath(path)) != m_stamp)
        return nullptr;
    return &*m_ini;
}
