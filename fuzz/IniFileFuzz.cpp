// Any bytes read as a datafile: the saved file has CR LF lines of "[section]"
// or "key = value", reading it back gives the entries that were read, and a
// second save writes the same bytes.
#include "FuzzSupport.h"

#include "datafile/IniFile.h"
#include "platform/Utf8.h"

#include <map>
#include <string_view>

namespace {

using CEntries = std::map<std::pair<std::wstring, std::wstring>, std::wstring>;

CEntries ByName(const CVX2D_IniFile& ini) {
    CEntries entries;
    for (const auto& e : ini.Entries()) {
        // One entry per section and key: the reader keeps the last value.
        const bool added = entries.emplace(std::make_pair(e.section, e.key), e.value).second;
        SD_FUZZ_CHECK(added);
    }
    return entries;
}

// Every line ends in CR LF; a line is a section header, a "key = value" entry
// or the blank line that comes before a section header after the first entry.
void CheckLayout(std::string_view bytes, std::size_t entries) {
    SD_FUZZ_CHECK(bytes.empty() || bytes.ends_with("\r\n"));
    std::size_t entryLines = 0;
    bool blankBefore = false;
    bool first = true;
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        SD_FUZZ_CHECK(end != std::string_view::npos && end > 0 && bytes[end - 1] == '\r');
        const std::string_view line = bytes.substr(0, end - 1);
        bytes.remove_prefix(end + 1);
        const bool header = line.starts_with('[');
        if (line.empty()) {
            SD_FUZZ_CHECK(!first && !blankBefore);
            blankBefore = true;
        } else if (header) {
            SD_FUZZ_CHECK(line.ends_with(']') && line.size() > 2);
            SD_FUZZ_CHECK(first || blankBefore);
            blankBefore = false;
        } else {
            SD_FUZZ_CHECK(line.find(" = ") != std::string_view::npos);
            SD_FUZZ_CHECK(!blankBefore);
            ++entryLines;
        }
        first = false;
    }
    SD_FUZZ_CHECK(!blankBefore);
    SD_FUZZ_CHECK(entryLines == entries);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::filesystem::path file = fuzz::ScratchFolder() / "Datafile.ini";
    fuzz::WriteBytes(file, data, size);
    const std::wstring path = platform::FromPath(file);

    CVX2D_IniFile read;
    read.SetAutoSave(false);
    SD_FUZZ_CHECK(read.Open(path) == CVX2D_IniFile::eOk);
    SD_FUZZ_CHECK(!read.IsModified());
    const CEntries entries = ByName(read);

    // Whatever was read came from one-byte lines, so it can always be saved.
    SD_FUZZ_CHECK(read.Save(true) == CVX2D_IniFile::eOk);
    const std::string saved = fuzz::ReadBytes(file);
    CheckLayout(saved, entries.size());

    CVX2D_IniFile back;
    back.SetAutoSave(false);
    SD_FUZZ_CHECK(back.Open(path) == CVX2D_IniFile::eOk);
    SD_FUZZ_CHECK(ByName(back) == entries);
    SD_FUZZ_CHECK(back.Save(true) == CVX2D_IniFile::eOk);
    SD_FUZZ_CHECK(fuzz::ReadBytes(file) == saved);
    return 0;
}
