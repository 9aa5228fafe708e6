// The last read of a shared datafile, used again while the file on disk is
// the same one (same file, size and times of change): the many lookups of
// one user action cost one read, however large the registry.
#pragma once

#include "datafile/IniFile.h"
#include "platform/System.h"
#include "platform/Utf8.h"

#include <optional>
#include <string>

class CDatafileSnapshot {
public:
    // The document as the file at `path` holds it now, read again only when
    // the file changed since the last read. A file that does not exist is an
    // empty document; nullptr when it exists but cannot be read. The document
    // is for reading: it never saves.
    CVX2D_IniFile* Read(const std::wstring& path);
    // The next Read reads the file whatever its stamp.
    void Forget() { m_ini.reset(); }

private:
    std::wstring m_strPath;
    platform::SFileStamp m_stamp;
    std::optional<CVX2D_IniFile> m_ini;
};
