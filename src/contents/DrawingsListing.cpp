#include "contents/DrawingsListing.h"

#include "datafile/Text.h"
#include "platform/Utf8.h"

#include <chrono>
#include <filesystem>
#include <fmt/chrono.h>
#include <fmt/xchar.h>
#include <stdexcept>

namespace fs = std::filesystem;

void SDrawingList::Clear() {
    names.clear();
    sizes.clear();
    dates.clear();
    bytes.clear();
    times.clear();
}

std::wstring DrawingSizeText(std::uintmax_t bytes) {
    return fmt::format(L"{} KB", bytes >> 10);
}

std::wstring DrawingDateText(std::time_t time) {
    std::tm local{};
    try {
        local = fmt::localtime(time);
    } catch (const std::exception&) {
        throw std::invalid_argument(
            fmt::format("The time {} cannot be converted to local time.", time));
    }
    const std::string text = fmt::format("{:%Y-%m-%d %H:%M:%S}", local);
    return std::wstring(text.begin(), text.end());
}

bool ListDrawings(const std::wstring& folder, bool backups, SDrawingList& list) {
    list.Clear();
    const std::wstring extension = backups ? L".bak" : L".dwg";
    std::error_code ec;
    fs::directory_iterator it(platform::ToPath(WithoutTrailingSeparator(folder)), ec);
    if (ec)
        return false;
    for (; it != fs::directory_iterator(); it.increment(ec)) {
        std::error_code typeError;
        if (it->is_directory(typeError))
            continue;
        const std::wstring name = platform::FromPath(it->path().filename());
        if (name.size() < extension.size() ||
            !EqualsNoCase(std::wstring_view(name).substr(name.size() - extension.size()),
                          extension))
            continue;
        std::wstring size, date;
        std::int64_t byteCount = -1, time = -1;
        std::error_code sizeError, timeError;
        const std::uintmax_t bytes = fs::file_size(it->path(), sizeError);
        const fs::file_time_type written = fs::last_write_time(it->path(), timeError);
        if (!sizeError && !timeError) {
            size = DrawingSizeText(bytes);
            const auto system = std::chrono::file_clock::to_sys(written);
            byteCount = static_cast<std::int64_t>(bytes);
            try {
                const std::time_t seconds = std::chrono::system_clock::to_time_t(
                    std::chrono::time_point_cast<std::chrono::system_clock::duration>(system));
                date = DrawingDateText(seconds);
                time = static_cast<std::int64_t>(seconds);
            } catch (const std::invalid_argument&) {
                throw std::invalid_argument(platform::ToUtf8(
                    fmt::format(L"The modification time of '{}' cannot be converted to local time.",
                                platform::FromPath(it->path()))));
            }
        }
        list.names.push_back(name);
        list.sizes.push_back(size);
        list.dates.push_back(date);
        list.bytes.push_back(byteCount);
        list.times.push_back(time);
    }
    if (ec) {
        // The folder went away while being read: report nothing rather than part.
        list.Clear();
        return false;
    }
    return true;
}
