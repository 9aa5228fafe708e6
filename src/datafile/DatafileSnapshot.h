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
    // This process has just saved `ini` to `path` and still holds the file's
    // lock, so no one else can have changed it since: the next Read uses the
    // saved document instead of reading it back.
    // With `handOver`, the saved document's contents move into the snapshot
    // (the caller is done with them) instead of being copied.
    void Keep(const std::wstring& path, CVX2D_IniFile& ini, bool handOver = false);
    // Lends the document last read to a change of the file, when the file at
    // `path` is still the same one: its contents move into `into` (which
    // holds the file's lock) and the snapshot is empty until the change is
    // kept. False, lending nothing, when the file changed.
    bool Lend(const std::wstring& path, CVX2D_IniFile& into);
    // The document last read when the file at `path` is still the same one,
    // without reading it; nullptr otherwise.
    const CVX2D_IniFile* Current(const std::wstring& path) const;
    // The next Read reads the file whatever its stamp.
    void Forget() { m_ini.reset(); }

private:
    std::wstring m_strPath;
    platform::SFileStamp m_stamp;
    std::optional<CVX2D_IniFile> m_ini;
};
