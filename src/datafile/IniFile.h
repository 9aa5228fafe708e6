// The INI datafile engine: the whole file in memory as (section, key, value)
// entries, written back sorted, one byte per character, CR LF line ends.
#pragma once

#include "datafile/EntryIndex.h"
#include "datafile/FileLock.h"
#include "datafile/Guid.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

class CVX2D_IniFile {
public:
    // Codes returned by Open, Reload and Save.
    enum { eOk = 0, eCantOpen = 2, eCantCreate = 3 };

    struct SEntry {
        std::wstring section;
        std::wstring key;
        std::wstring value;
    };

    CVX2D_IniFile();
    ~CVX2D_IniFile();
    CVX2D_IniFile(const CVX2D_IniFile& other);
    CVX2D_IniFile& operator=(const CVX2D_IniFile& other);

    int Open(const std::wstring& path);
    // Opens a shared datafile that this operation will change: takes the
    // file's lock first (held until Unlock or destruction, after the automatic
    // save), then reads it. A file that does not exist yet is an
    // empty document and gives eOk. eCantOpen when the lock cannot be taken or
    // the file exists but cannot be read.
    int OpenForUpdate(const std::wstring& path);
    int Reload();
    // Takes the file's lock as OpenForUpdate does, without reading it: for a
    // caller that already holds the file's current contents (SwapContents).
    int LockForUpdate(const std::wstring& path);
    // Exchanges entries and current section with another document, each
    // keeping its path and lock; neither is modified afterwards.
    void SwapContents(CVX2D_IniFile& other);
    // Writes through a temporary file renamed over the target, so the old
    // file stays whole when anything fails. Text that a datafile cannot hold
    // (a character above 255, a line break) is refused with eCantCreate.
    int Save(bool bForce = false);
    void Unlock();

    void Clear();
    void SetSection(const std::wstring& name);
    std::wstring GetSection() const { return m_strSection; }

    void GetString(const std::wstring& key, std::wstring& out, const std::wstring& def) const;
    void GetInt(const std::wstring& key, int& out, int def) const;
    void GetLong(const std::wstring& key, std::int32_t& out, std::int32_t def) const;
    void GetDouble(const std::wstring& key, double& out, double def) const;
    void GetBool(const std::wstring& key, bool& out, bool def) const;
    void GetGuid(const std::wstring& key, CGuid& out, const CGuid& def) const;

    // Convenience forms of the getters above.
    std::wstring String(const std::wstring& key, const std::wstring& def = {}) const;
    // Whether the current section holds the key (compared as GetString does).
    bool HasKey(const std::wstring& key) const;
    std::int32_t Long(const std::wstring& key, std::int32_t def = 0) const;

    void SetString(const std::wstring& key, const std::wstring& value);
    void SetInt(const std::wstring& key, int value);
    void SetInt(const std::wstring& key, std::uint32_t value);
    void SetLong(const std::wstring& key, std::int32_t value);
    void SetDouble(const std::wstring& key, double value);
    void SetBool(const std::wstring& key, bool value);
    void SetGuid(const std::wstring& key, const CGuid& value);

    void DeleteKey(const std::wstring& key);
    void DeleteSection(const std::wstring& name);

    void GetSectionEntries(std::vector<std::wstring>& keys,
                           std::vector<std::wstring>& values) const;
    void SetSectionEntries(const std::vector<std::wstring>& keys,
                           const std::vector<std::wstring>& values);
    std::wstring FindKeyByValue(const std::wstring& value) const;

    // Every entry in memory order (file order after a read, sorted after a save).
    const std::vector<SEntry>& Entries() const {
        Compact();
        return m_arrEntries;
    }

    bool IsModified() const { return m_bModified; }
    const std::wstring& GetPath() const { return m_strPath; }
    void SetAutoSave(bool on) { m_bAutoSave = on; }
    void SetCaseSensitive(bool on) { m_bCaseSensitive = on; }

    static std::wstring FormatInt(int value);
    static std::wstring FormatLong(std::int32_t value);
    static std::wstring FormatDouble(double value);

private:
    using CKeyIndex = CEntryIndex<SEntry, &SEntry::key>;
    using CValueIndex = CEntryIndex<SEntry, &SEntry::value>;

    const SEntry* Find(const std::wstring& section, const std::wstring& key) const;
    std::size_t FindExact(std::wstring_view section, std::wstring_view key) const;
    void Invalidate();
    // Drops the entries DeleteKey marked, in one pass: a run of deletes costs
    // one move of the entries, not one per delete.
    void Compact() const;
    void CopyIndexes(const CVX2D_IniFile& other);
    void ParseBytes(const std::string& bytes);

    bool m_bAutoSave = true;
    bool m_bCaseSensitive = true;
    bool m_bModified = false;
    std::wstring m_strSeparator = L" = ";
    std::wstring m_strPath;
    // Deleted entries stay in place, marked, until the next Compact, so that
    // the positions in the key index stay valid.
    mutable std::vector<SEntry> m_arrEntries;
    mutable std::size_t m_nDeleted = 0;
    std::wstring m_strSection;

    // (section, key) -> position of the entry, and (section, value) -> first
    // position, rebuilt lazily after entries move.
    mutable CKeyIndex m_keyIndex;
    mutable bool m_bKeyIndexValid = false;
    mutable CValueIndex m_valueIndex;
    mutable bool m_bValueIndexValid = false;

    CVX2D_FileLock m_lock;
};

// Hears of every datafile the engine reads from disk (its path), so that
// benchmarks and tests can count the reads an action costs. An empty function
// stops it. Not for use from several threads at once.
void SetDatafileReadObserver(std::function<void(const std::wstring&)> observer);

// One read-modify-write of a shared datafile under its lock: opens `path` for
// update, lets `change` edit the document, and saves it when `change` returns
// true (false leaves the file untouched). True only when the change was saved.
bool UpdateDatafile(const std::wstring& path, const std::function<bool(CVX2D_IniFile&)>& change);

// Writes `bytes` to a temporary file beside `target` and renames it over the
// target, so the old file stays whole whatever fails. The new file keeps the
// old one's mode; a file this user could not have written is refused. The
// reason of a failure is noted as the last datafile problem.
bool WriteFileAtomically(const std::filesystem::path& target, const std::string& bytes);
