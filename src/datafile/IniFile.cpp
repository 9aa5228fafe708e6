#include "datafile/IniFile.h"

#include "datafile/DatafileProblem.h"
#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fmt/format.h>
#include <fmt/xchar.h>

namespace fs = std::filesystem;

namespace {

constexpr std::wstring_view kSectionTrim = L"[]\n \t";
constexpr std::wstring_view kKeyTrim = L"[]\n\t";

std::wstring TrimKey(const std::wstring& key) {
    return TrimChars(key, kKeyTrim);
}

std::wstring DefaultPath() {
    std::wstring path = platform::ExecutablePath();
    while (!path.empty() && (path.back() == L'.' || path.back() == L'e' || path.back() == L'x'))
        path.pop_back();
    return path + L".ini";
}

bool Storable(const std::wstring& text) {
    return IsOneByteText(text) && text.find(L'\n') == std::wstring::npos;
}

// A line is split at its first " = ", so a key holding one, or ending in
// " =", would read back as another key with another value.
bool StorableKey(const std::wstring& key) {
    return Storable(key) && key.find(L" = ") == std::wstring::npos && !key.ends_with(L" =");
}

bool ReadWholeFile(const fs::path& path, std::string& bytes) {
    std::FILE* file = platform::OpenFile(path, "rb");
    if (!file)
        return false;
    bytes.clear();
    char buffer[65536];
    std::size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0)
        bytes.append(buffer, got);
    const bool ok = !std::ferror(file);
    std::fclose(file);
    return ok;
}

// The file a path finally names: a datafile that is a link to a shared one
// is written where the link points, so the link stays a link.
fs::path RealFile(fs::path path) {
    for (int hops = 0; hops < 40; ++hops) {
        std::error_code ec;
        if (!fs::is_symlink(path, ec))
            break;
        const fs::path target = fs::read_symlink(path, ec);
        if (ec)
            break;
        path = target.is_absolute() ? target : path.parent_path() / target;
    }
    return path;
}

// Removes "<file>.<pid>.tmp" left by saves whose process was killed. Called
// under the file's lock, so no save of this file is going on elsewhere.
void RemoveAbandonedTemporaries(const fs::path& target) {
    const std::wstring prefix = platform::FromPath(target.filename()) + L".";
    std::error_code ec;
    for (fs::directory_iterator it(target.parent_path(), ec), end; !ec && it != end;
         it.increment(ec)) {
        const std::wstring name = platform::FromPath(it->path().filename());
        if (name.size() <= prefix.size() + 4 || !name.starts_with(prefix) ||
            !name.ends_with(L".tmp"))
            continue;
        const std::wstring pid = name.substr(prefix.size(), name.size() - prefix.size() - 4);
        if (pid.find_first_not_of(L"0123456789") != std::wstring::npos)
            continue;
        if (!platform::IsProcessAlive(WToL(pid))) {
            std::error_code removeError;
            fs::remove(it->path(), removeError);
        }
    }
}

// Why a file could not be made in its folder, for the user.
void NoteWriteProblem(const fs::path& target, std::error_code error) {
    const std::wstring path = platform::FromPath(target);
    if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
        error == std::errc::read_only_file_system)
        NoteDatafileProblem(EDatafileProblem::ReadOnly, path);
    else if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory)
        NoteDatafileProblem(EDatafileProblem::Missing, path);
    else
        NoteDatafileProblem(EDatafileProblem::WriteFailed, path,
                            platform::FromUtf8(error.message()));
}

std::error_code LastError() {
    return std::error_code(errno ? errno : EIO, std::generic_category());
}

void AppendBytes(std::string& out, const std::wstring& text) {
    const std::size_t at = out.size();
    out.resize(at + text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
        out[at + i] = static_cast<char>(static_cast<unsigned char>(text[i]));
}

// Bytes read from a datafile, one character each.
std::wstring Widen(std::string_view bytes) {
    std::wstring text(bytes.size(), L'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        text[i] = static_cast<wchar_t>(static_cast<unsigned char>(bytes[i]));
    return text;
}

std::function<void(const std::wstring&)>& ReadObserver() {
    static std::function<void(const std::wstring&)> observer;
    return observer;
}

// The section of an entry DeleteKey has marked: no section can be named so,
// as names are trimmed of line breaks and a file's lines are split at them.
const std::wstring kDeletedSection = L"\n";

} // namespace

CVX2D_IniFile::CVX2D_IniFile() : m_strPath(DefaultPath()) {}

CVX2D_IniFile::~CVX2D_IniFile() {
    if (m_bAutoSave)
        Save(false);
}

CVX2D_IniFile::CVX2D_IniFile(const CVX2D_IniFile& other)
    : m_bAutoSave(other.m_bAutoSave), m_bCaseSensitive(other.m_bCaseSensitive),
      m_bModified(other.m_bModified), m_strSeparator(other.m_strSeparator),
      m_strPath(other.m_strPath), m_arrEntries((other.Compact(), other.m_arrEntries)),
      m_strSection(other.m_strSection), m_keyIndex(other.m_keyIndex),
      m_bKeyIndexValid(other.m_bKeyIndexValid), m_valueIndex(other.m_valueIndex),
      m_bValueIndexValid(other.m_bValueIndexValid) {}

CVX2D_IniFile& CVX2D_IniFile::operator=(const CVX2D_IniFile& other) {
    if (this == &other)
        return *this;
    m_bAutoSave = other.m_bAutoSave;
    m_bCaseSensitive = other.m_bCaseSensitive;
    m_bModified = other.m_bModified;
    m_strSeparator = other.m_strSeparator;
    m_strPath = other.m_strPath;
    other.Compact();
    m_arrEntries = other.m_arrEntries;
    m_nDeleted = 0;
    m_strSection = other.m_strSection;
    CopyIndexes(other);
    return *this;
}

std::wstring CVX2D_IniFile::FormatInt(int value) {
    return fmt::format(L"{}", value);
}

std::wstring CVX2D_IniFile::FormatLong(std::int32_t value) {
    return fmt::format(L"{}", value);
}

std::wstring CVX2D_IniFile::FormatDouble(double value) {
    return fmt::format(L"{:f}", value);
}

int CVX2D_IniFile::Open(const std::wstring& path) {
    m_strPath = path;
    return Reload();
}

int CVX2D_IniFile::OpenForUpdate(const std::wstring& path) {
    m_strPath = path;
    if (!m_lock.IsHeld() && !m_lock.Acquire(path))
        return eCantOpen;
    std::error_code ec;
    if (!fs::exists(platform::ToPath(path), ec) && !ec) {
        Clear();
        m_bModified = false;
        return eOk;
    }
    errno = 0;
    const int result = Reload();
    if (result != eOk)
        NoteDatafileProblem(EDatafileProblem::ReadFailed, path,
                            platform::FromUtf8(LastError().message()));
    return result;
}

int CVX2D_IniFile::LockForUpdate(const std::wstring& path) {
    m_strPath = path;
    return m_lock.IsHeld() || m_lock.Acquire(path) ? eOk : eCantOpen;
}

void CVX2D_IniFile::SwapContents(CVX2D_IniFile& other) {
    m_arrEntries.swap(other.m_arrEntries);
    std::swap(m_nDeleted, other.m_nDeleted);
    m_strSection.swap(other.m_strSection);
    std::swap(m_keyIndex, other.m_keyIndex);
    std::swap(m_bKeyIndexValid, other.m_bKeyIndexValid);
    std::swap(m_valueIndex, other.m_valueIndex);
    std::swap(m_bValueIndexValid, other.m_bValueIndexValid);
    m_bModified = false;
    other.m_bModified = false;
}

void CVX2D_IniFile::CopyIndexes(const CVX2D_IniFile& other) {
    // The positions hold for the copied entries: the other document had
    // dropped its deleted ones before they were copied.
    m_keyIndex = other.m_keyIndex;
    m_bKeyIndexValid = other.m_bKeyIndexValid;
    m_valueIndex = other.m_valueIndex;
    m_bValueIndexValid = other.m_bValueIndexValid;
}

void CVX2D_IniFile::Unlock() {
    m_lock.Release();
}

int CVX2D_IniFile::Reload() {
    std::string bytes;
    if (m_strPath.empty())
        return eCantOpen;
    if (ReadObserver())
        ReadObserver()(m_strPath);
    if (!ReadWholeFile(platform::ToPath(m_strPath), bytes))
        return eCantOpen;
    Clear();
    ParseBytes(bytes);
    m_bModified = false; // a freshly read document is not modified
    return eOk;
}

void CVX2D_IniFile::ParseBytes(const std::string& bytes) {
    // The lines are read in place, one byte per character; only the texts
    // kept are widened.
    std::string separator;
    AppendBytes(separator, m_strSeparator);
    const std::string_view keyTrim = "[]\n\t";
    const std::string_view all(bytes);
    // One entry a line at the most: room for them all at once.
    const auto lines = static_cast<std::size_t>(std::count(all.begin(), all.end(), '\n')) + 1;
    FindExact(m_strSection, L"");
    m_arrEntries.reserve(m_arrEntries.size() + lines);
    m_keyIndex.Reserve(m_arrEntries, m_arrEntries.size() + lines);
    std::size_t start = 0;
    while (start < all.size()) {
        std::size_t end = all.find('\n', start);
        if (end == std::string_view::npos)
            end = all.size();
        std::string_view line = all.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (line.empty())
            continue;
        if (line.front() == '[' && line.back() == ']' && line.size() >= 2) {
            SetSection(Widen(line.substr(1, line.size() - 2)));
            continue;
        }
        const auto at = line.find(separator);
        if (at == std::string_view::npos)
            continue;
        // Stored like SetString, except that an empty value read from the file
        // is kept as an entry: "Key = " survives a read and a save.
        std::string_view key = line.substr(0, at);
        const auto first = key.find_first_not_of(keyTrim);
        key = first == std::string_view::npos
                  ? std::string_view()
                  : key.substr(first, key.find_last_not_of(keyTrim) - first + 1);
        // "Key =<tab> = v": no key can be written back like that.
        if (key.find(separator) != std::string_view::npos || key.ends_with(" ="))
            continue;
        std::wstring wideKey = Widen(key);
        std::wstring value = Widen(line.substr(at + separator.size()));
        const std::size_t existing = FindExact(m_strSection, wideKey);
        if (existing != std::wstring::npos) {
            m_arrEntries[existing].value = std::move(value);
        } else {
            m_arrEntries.push_back({m_strSection, std::move(wideKey), std::move(value)});
            m_keyIndex.Add(m_arrEntries, m_arrEntries.size() - 1);
        }
    }
    m_bValueIndexValid = false;
}

int CVX2D_IniFile::Save(bool bForce) {
    if (!m_bModified && !bForce)
        return eOk;
    if (m_strPath.empty())
        return eCantCreate;
    Compact();
    for (const auto& e : m_arrEntries) {
        if (!Storable(e.section) || !StorableKey(e.key) || !Storable(e.value))
            return eCantCreate;
    }
    // One writer at a time, even for a document read without the intent to
    // update: the lock also tells us that no other save is half-way.
    CVX2D_FileLock writeLock;
    if (!m_lock.IsHeld() && !CVX2D_FileLock::IsHeldByThisThread(m_strPath) &&
        !writeLock.Acquire(m_strPath))
        return eCantCreate;

    const auto less = [](const SEntry& a, const SEntry& b) {
        const int bySection = a.section.compare(b.section);
        return bySection != 0 ? bySection < 0 : a.key < b.key;
    };
    // A document read from a sorted file usually still is.
    if (!std::is_sorted(m_arrEntries.begin(), m_arrEntries.end(), less)) {
        std::stable_sort(m_arrEntries.begin(), m_arrEntries.end(), less);
        Invalidate();
    }

    std::string out;
    for (std::size_t i = 0; i < m_arrEntries.size(); ++i) {
        const SEntry& e = m_arrEntries[i];
        const bool newSection =
            i == 0 ? !e.section.empty() : e.section != m_arrEntries[i - 1].section;
        if (newSection) {
            if (i != 0)
                out += "\r\n";
            out += '[';
            AppendBytes(out, e.section);
            out += "]\r\n";
        }
        AppendBytes(out, e.key);
        AppendBytes(out, m_strSeparator);
        AppendBytes(out, e.value);
        out += "\r\n";
    }
    if (!WriteFileAtomically(RealFile(platform::ToPath(m_strPath)), out))
        return eCantCreate;
    m_bModified = false;
    return eOk;
}

void CVX2D_IniFile::Clear() {
    if (!m_arrEntries.empty())
        m_bModified = true;
    m_arrEntries.clear();
    m_nDeleted = 0;
    Invalidate();
}

void CVX2D_IniFile::SetSection(const std::wstring& name) {
    m_strSection = TrimChars(name, kSectionTrim);
}

void CVX2D_IniFile::Invalidate() {
    m_bKeyIndexValid = false;
    m_bValueIndexValid = false;
}

void CVX2D_IniFile::Compact() const {
    if (m_nDeleted == 0)
        return;
    std::erase_if(m_arrEntries, [](const SEntry& e) { return e.section == kDeletedSection; });
    m_nDeleted = 0;
    m_bKeyIndexValid = false;
    m_bValueIndexValid = false;
}

std::size_t CVX2D_IniFile::FindExact(std::wstring_view section, std::wstring_view key) const {
    if (!m_bKeyIndexValid) {
        Compact();
        m_keyIndex.Clear();
        for (std::size_t i = 0; i < m_arrEntries.size(); ++i)
            m_keyIndex.Add(m_arrEntries, i);
        m_bKeyIndexValid = true;
    }
    const std::size_t at = m_keyIndex.Find(m_arrEntries, section, key);
    return at == CKeyIndex::npos ? std::wstring::npos : at;
}

const CVX2D_IniFile::SEntry* CVX2D_IniFile::Find(const std::wstring& section,
                                                 const std::wstring& key) const {
    if (m_bCaseSensitive) {
        const std::size_t i = FindExact(section, key);
        return i == std::wstring::npos ? nullptr : &m_arrEntries[i];
    }
    Compact();
    for (const auto& e : m_arrEntries) {
        if (EqualsNoCase(e.section, section) && EqualsNoCase(e.key, key))
            return &e;
    }
    return nullptr;
}

void CVX2D_IniFile::GetString(const std::wstring& key, std::wstring& out,
                              const std::wstring& def) const {
    const SEntry* e = Find(m_strSection, TrimKey(key));
    out = e ? e->value : def;
}

bool CVX2D_IniFile::HasKey(const std::wstring& key) const {
    return Find(m_strSection, TrimKey(key)) != nullptr;
}

std::wstring CVX2D_IniFile::String(const std::wstring& key, const std::wstring& def) const {
    std::wstring out;
    GetString(key, out, def);
    return out;
}

std::int32_t CVX2D_IniFile::Long(const std::wstring& key, std::int32_t def) const {
    std::int32_t out = 0;
    GetLong(key, out, def);
    return out;
}

void CVX2D_IniFile::GetInt(const std::wstring& key, int& out, int def) const {
    out = WToI(String(key, FormatInt(def)));
}

void CVX2D_IniFile::GetLong(const std::wstring& key, std::int32_t& out, std::int32_t def) const {
    out = WToL(String(key, FormatLong(def)));
}

void CVX2D_IniFile::GetDouble(const std::wstring& key, double& out, double def) const {
    out = WToF(String(key, FormatDouble(def)));
}

void CVX2D_IniFile::GetBool(const std::wstring& key, bool& out, bool def) const {
    out = WToI(String(key, FormatInt(def ? 1 : 0))) != 0;
}

void CVX2D_IniFile::GetGuid(const std::wstring& key, CGuid& out, const CGuid& def) const {
    out = GuidFromText(String(key, GuidToText(def)));
}

void CVX2D_IniFile::SetString(const std::wstring& rawKey, const std::wstring& value) {
    const std::wstring key = TrimKey(rawKey);
    if (String(key) == value)
        return;
    m_bModified = true;
    m_bValueIndexValid = false;
    const std::size_t i = FindExact(m_strSection, key);
    if (i != std::wstring::npos) {
        m_arrEntries[i].value = value;
        return;
    }
    m_arrEntries.push_back({m_strSection, key, value});
    m_keyIndex.Add(m_arrEntries, m_arrEntries.size() - 1);
}

void CVX2D_IniFile::SetInt(const std::wstring& key, int value) {
    SetString(key, FormatInt(value));
}

void CVX2D_IniFile::SetInt(const std::wstring& key, std::uint32_t value) {
    // "%d" of an unsigned value prints its two's-complement reading.
    SetString(key, FormatInt(static_cast<int>(value)));
}

void CVX2D_IniFile::SetLong(const std::wstring& key, std::int32_t value) {
    SetString(key, FormatLong(value));
}

void CVX2D_IniFile::SetDouble(const std::wstring& key, double value) {
    SetString(key, FormatDouble(value));
}

void CVX2D_IniFile::SetBool(const std::wstring& key, bool value) {
    SetString(key, FormatInt(value ? 1 : 0));
}

void CVX2D_IniFile::SetGuid(const std::wstring& key, const CGuid& value) {
    SetString(key, GuidToText(value));
}

void CVX2D_IniFile::DeleteKey(const std::wstring& key) {
    const std::size_t i = FindExact(m_strSection, key);
    if (i == std::wstring::npos)
        return;
    // Marked, not erased: erasing would move every later entry and spoil
    // the index, making a run of deletes quadratic.
    m_keyIndex.Remove(m_arrEntries, i);
    m_arrEntries[i].section = kDeletedSection;
    ++m_nDeleted;
    m_bModified = true;
    m_bValueIndexValid = false;
}

void CVX2D_IniFile::DeleteSection(const std::wstring& name) {
    Compact();
    const auto removed =
        std::erase_if(m_arrEntries, [&](const SEntry& e) { return e.section == name; });
    if (removed > 0) {
        m_bModified = true;
        Invalidate();
    }
}

void CVX2D_IniFile::GetSectionEntries(std::vector<std::wstring>& keys,
                                      std::vector<std::wstring>& values) const {
    keys.clear();
    values.clear();
    Compact();
    for (const auto& e : m_arrEntries) {
        if (e.section == m_strSection) {
            keys.push_back(e.key);
            values.push_back(e.value);
        }
    }
}

void CVX2D_IniFile::SetSectionEntries(const std::vector<std::wstring>& keys,
                                      const std::vector<std::wstring>& values) {
    for (std::size_t i = 0; i < keys.size() && i < values.size(); ++i)
        SetString(keys[i], values[i]);
}

std::wstring CVX2D_IniFile::FindKeyByValue(const std::wstring& value) const {
    Compact();
    if (!m_bCaseSensitive) {
        for (const auto& e : m_arrEntries) {
            if (EqualsNoCase(e.section, m_strSection) && EqualsNoCase(e.value, value))
                return e.key;
        }
        return {};
    }
    if (!m_bValueIndexValid) {
        m_valueIndex.Clear();
        for (std::size_t i = 0; i < m_arrEntries.size(); ++i)
            m_valueIndex.Add(m_arrEntries, i);
        m_bValueIndexValid = true;
    }
    const std::size_t at = m_valueIndex.Find(m_arrEntries, m_strSection, value);
    return at == CValueIndex::npos ? std::wstring() : m_arrEntries[at].key;
}

bool UpdateDatafile(const std::wstring& path, const std::function<bool(CVX2D_IniFile&)>& change) {
    if (path.empty())
        return false;
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    if (ini.OpenForUpdate(path) != CVX2D_IniFile::eOk || !change(ini))
        return false;
    return ini.Save() == CVX2D_IniFile::eOk;
}

bool WriteFileAtomically(const fs::path& target, const std::string& bytes) {
    std::error_code ec;
    const bool existed = fs::exists(target, ec);
    if (existed && !platform::CanWriteFile(target)) {
        NoteDatafileProblem(EDatafileProblem::NotPermitted, platform::FromPath(target));
        return false;
    }
    RemoveAbandonedTemporaries(target);
    fs::path temp = target;
    temp += fmt::format(".{}.tmp", platform::CurrentProcessId());
    errno = 0;
    std::FILE* file = platform::OpenFile(temp, "wb");
    if (!file) {
        NoteWriteProblem(target, LastError());
        return false;
    }
    errno = 0;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const std::error_code writeError = written ? std::error_code() : LastError();
    if (!platform::FlushAndClose(file) || !written) {
        NoteWriteProblem(target, written ? LastError() : writeError);
        fs::remove(temp, ec);
        return false;
    }
    if (existed)
        platform::CopyFileMode(target, temp);
    platform::MoveIntoPlace(temp, target, ec);
    if (ec) {
        NoteWriteProblem(target, ec);
        fs::remove(temp, ec);
        return false;
    }
    return true;
}

void SetDatafileReadObserver(std::function<void(const std::wstring&)> observer) {
    ReadObserver() = std::move(observer);
}
