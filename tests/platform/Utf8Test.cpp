// UTF-8 conversions of command lines, terminal output and file names.
#include "platform/Utf8.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace fs = std::filesystem;
using platform::FromPath;
using platform::FromUtf8;
using platform::ToPath;
using platform::ToUtf8;

namespace utf8_test {

TEST(Utf8, RoundTripsEverySequenceLength) {
    // The first and last character of each sequence length.
    const std::vector<std::pair<std::wstring, std::string>> cases = {
        {std::wstring(1, L'\0') + L"a", std::string(1, '\0') + "a"},
        {L"\u007F", "\x7F"},
        {L"\u0080", "\xC2\x80"},
        {L"\u07FF", "\xDF\xBF"},
        {L"\u0800", "\xE0\xA0\x80"},
        {L"\uFFFD", "\xEF\xBF\xBD"},
        {L"\U00010000", "\xF0\x90\x80\x80"},
        {L"\U0010FFFF", "\xF4\x8F\xBF\xBF"},
        {L"a\u00E9\u20AC\U0001D11Ez", "a\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9Ez"},
    };
    for (const auto& [wide, bytes] : cases) {
        EXPECT_EQ(ToUtf8(wide), bytes);
        EXPECT_EQ(FromUtf8(bytes), wide) << bytes;
    }
}

// Bytes that do not form UTF-8 are kept, each as the Latin-1 character it
// names, so a name typed in a Latin-1 terminal still arrives whole.
TEST(Utf8, InvalidBytesBecomeLatin1Characters) {
    const std::vector<std::pair<std::string, std::wstring>> cases = {
        {"caf\xE9", L"caf\u00E9"},
        {"\x80", L"\u0080"},
        {"a\xC3", L"a\u00C3"},                             // cut short at the end
        {"\xE2\x82", L"\u00E2\u0082"},                     // cut short at the end
        {"\xE2\x82x", L"\u00E2\u0082x"},                   // cut short by a plain byte
        {"\xC0\xAF", L"\u00C0\u00AF"},                     // overlong '/'
        {"\xE0\x80\xAF", L"\u00E0\u0080\u00AF"},           // overlong '/'
        {"\xF0\x80\x80\xAF", L"\u00F0\u0080\u0080\u00AF"}, // overlong '/'
        {"\xED\xA0\x80", L"\u00ED\u00A0\u0080"},           // a surrogate
        {"\xF4\x90\x80\x80", L"\u00F4\u0090\u0080\u0080"}, // above U+10FFFF
        {"\xF8\x88\x80\x80\x80", L"\u00F8\u0088\u0080\u0080\u0080"},
        {"\xC3\xA9\xE9\xC3\xA9", L"\u00E9\u00E9\u00E9"},
    };
    for (const auto& [bytes, wide] : cases) {
        EXPECT_EQ(FromUtf8(bytes), wide) << bytes;
    }
}

TEST(Utf8, PathsCarryNonAsciiNamesToTheFileSystem) {
    test::CTempDir dir;
    const std::vector<std::wstring> names = {L"Caf\u00E9 \u20AC", L"\u00C5r\u00F8 - \U0001D11E.ini",
                                             L"VX2D_PRJ_1 - Stra\u00DFe"};
    for (const auto& name : names) {
        SCOPED_TRACE(ToUtf8(name));
        const fs::path path = ToPath(dir.Text() + name);
#ifdef _WIN32
        EXPECT_EQ(path.filename().native(), name);
#else
        EXPECT_EQ(path.filename().native(), ToUtf8(name));
#endif
        std::ofstream(path) << "x";
        ASSERT_TRUE(fs::exists(path));
    }
    std::vector<std::wstring> found;
    for (const auto& entry : fs::directory_iterator(dir.Path()))
        found.push_back(FromPath(entry.path().filename()));
    std::sort(found.begin(), found.end());
    std::vector<std::wstring> expected = names;
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(found, expected);
    EXPECT_EQ(FromPath(ToPath(dir.Text() + names[1])), dir.Text() + names[1]);
}

TEST(Utf8, ANameOnDiskThatIsNotUtf8ReadsAsLatin1) {
    test::CTempDir dir;
    std::ofstream(dir.Path() / "caf\xE9.ini") << "x";
    const auto entry = *fs::directory_iterator(dir.Path());
    EXPECT_EQ(FromPath(entry.path().filename()), L"caf\u00E9.ini");
}

} // namespace utf8_test
