// The drawing files of a drawings folder as the drawings manager shows them:
// file name, size text and date text, index for index.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

struct SDrawingList {
    std::vector<std::wstring> names;
    std::vector<std::wstring> sizes;
    std::vector<std::wstring> dates;
    // The same as numbers: bytes, and seconds since 1970-01-01 UTC; -1 where
    // the texts are empty.
    std::vector<std::int64_t> bytes;
    std::vector<std::int64_t> times;

    std::size_t Size() const { return names.size(); }
    void Clear();
};

// Lists the "*.dwg" files of `folder` (with `backups`, the "*.bak" files
// instead; the extension in any letter case) in the order the folder gives
// them. Sub-folders are left out. A file whose status cannot be read keeps
// empty size and date texts. False, with empty lists, when the folder cannot
// be enumerated. A modification time that has no local form throws
// std::invalid_argument naming the file.
bool ListDrawings(const std::wstring& folder, bool backups, SDrawingList& list);

// "%ld KB" of the size divided by 1024, truncated: 1,023 bytes show "0 KB".
std::wstring DrawingSizeText(std::uintmax_t bytes);
// "%Y-%m-%d %H:%M:%S" in local time; std::invalid_argument when the time
// has no local form.
std::wstring DrawingDateText(std::time_t time);
