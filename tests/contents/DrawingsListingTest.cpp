// The drawings folder listing: which files appear, their size texts and
// their local modification times.
#include "contents/DrawingsListing.h"
#include "platform/Utf8.h"
#include "support/TestSupport.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <stdexcept>

namespace fs = std::filesystem;
using test::WriteBytes;

namespace drawings_listing_test {

// 2023-04-05 13:03:09 UTC
constexpr std::time_t kWritten = 1680699789;

void SetTimeZone(const char* zone) {
    test::SetEnv("TZ", zone);
#ifdef _WIN32
    _tzset();
#else
    tzset();
#endif
}

using CRows = std::map<std::wstring, std::pair<std::wstring, std::wstring>>;

// Each listed name with its size and date texts; the three lists run in step.
CRows AsMap(const SDrawingList& list) {
    EXPECT_EQ(list.sizes.size(), list.Size());
    EXPECT_EQ(list.dates.size(), list.Size());
    CRows rows;
    for (std::size_t i = 0; i < list.Size() && i < list.sizes.size() && i < list.dates.size(); ++i)
        rows[list.names[i]] = {list.sizes[i], list.dates[i]};
    return rows;
}

class DrawingsListingTest : public ::testing::Test {
protected:
    void SetUp() override {
        SetTimeZone("CET-1");
        const std::pair<const char*, std::size_t> files[] = {
            {"Small.dwg", 1023}, {"Half.dwg", 1536}, {"A.DWG", 0},     {"Big.dwg", 3 * 1024 * 1024},
            {"Small.bak", 2048}, {"Notes.txt", 10},  {"x.dwg.bak", 1}, {"dwg", 5},
        };
        for (const auto& [name, size] : files) {
            WriteBytes(dir.Path() / name, std::string(size, 'x'));
            fs::last_write_time(dir.Path() / name,
                                std::chrono::file_clock::from_sys(
                                    std::chrono::system_clock::from_time_t(kWritten)));
        }
        fs::create_directories(dir.Path() / "Sub.dwg");
        fs::create_directories(dir.Path() / "Old.bak");
    }

    test::CTempDir dir;
};

TEST_F(DrawingsListingTest, ListsDrawingsOrBackupsWithSizeAndLocalTime) {
    const std::wstring date = L"2023-04-05 14:03:09";
    SDrawingList list;
    ASSERT_TRUE(ListDrawings(dir.Text(), false, list));
    EXPECT_EQ(AsMap(list), (CRows{{L"A.DWG", {L"0 KB", date}},
                                  {L"Big.dwg", {L"3072 KB", date}},
                                  {L"Half.dwg", {L"1 KB", date}},
                                  {L"Small.dwg", {L"0 KB", date}}}));
    ASSERT_TRUE(ListDrawings(dir.Text(), true, list));
    EXPECT_EQ(AsMap(list),
              (CRows{{L"Small.bak", {L"2 KB", date}}, {L"x.dwg.bak", {L"0 KB", date}}}));
}

TEST_F(DrawingsListingTest, UnreadableFolderAndUnreadableFilesGiveEmptyTexts) {
    SDrawingList list;
    ASSERT_TRUE(ListDrawings(dir.Text(), false, list));
    EXPECT_FALSE(ListDrawings(dir.File(L"Missing"), false, list));
    EXPECT_TRUE(AsMap(list).empty());
#ifndef _WIN32
    // A link to nothing is listed, but has no status to show.
    fs::create_symlink(dir.Path() / "nowhere", dir.Path() / "Lost.dwg");
    ASSERT_TRUE(ListDrawings(dir.Text(), false, list));
    EXPECT_EQ(AsMap(list)[L"Lost.dwg"], (std::pair<std::wstring, std::wstring>{}));
    EXPECT_EQ(list.Size(), 5u);
#endif
}

TEST(DrawingDateTextTest, ATimeWithoutALocalFormIsAnInvalidArgument) {
    SetTimeZone("CET-1");
    EXPECT_EQ(DrawingDateText(kWritten), L"2023-04-05 14:03:09");
    EXPECT_EQ(DrawingDateText(0), L"1970-01-01 01:00:00");
    // Years beyond what the platform's calendar holds.
    for (const std::time_t time :
         {std::numeric_limits<std::time_t>::max(), std::numeric_limits<std::time_t>::min()})
        EXPECT_THROW(DrawingDateText(time), std::invalid_argument) << time;
}

} // namespace drawings_listing_test
