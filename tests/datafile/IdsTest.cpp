#include "datafile/Ids.h"
#include "datafile/Guid.h"
#include "datafile/IniFile.h"
#include "datafile/Names.h"
#include "datafile/ProjectResult.h"
#include "datafile/Text.h"

#include <gtest/gtest.h>

namespace ids_test {

// The keys themselves are checked through the registries' bytes.
TEST(IdsTest, ParsesNumberedNames) {
    const std::pair<const wchar_t*, std::int32_t> projects[] = {
        {L"vx2d_prj_12", 12},        {L"/d/Projects/VX2D_PRJ_12", 12},
        {L"VX2D_PRJ_3 - Pipe 4", 3}, {L"Projects", 0},
        {L"VX2D_PRJ_", 0},           {L"VX2D_PRJ_-4", -4},
    };
    for (const auto& [text, id] : projects)
        EXPECT_EQ(ParseProjectKey(text), id) << text;
    EXPECT_EQ(ParseClientKey(L"VX2D_CLIENT_31"), 31);
    EXPECT_EQ(ParseClientKey(L"vx2d_client_31"), 0) << "client keys are matched exactly";
    EXPECT_EQ(ParseLineKey(L"VX2D_LINE_90"), 90);
    EXPECT_EQ(ParseSpecKey(L"xVX2D_SPEC_8"), 8);
}

TEST(IdsTest, ProposesTheFirstStandardNameNoListUses) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    EXPECT_EQ(MakeDefaultProjectName(ini), L"Standard 1");

    ini.SetSection(L"General");
    ini.SetLong(L"LastProjectId", 4);
    ini.SetSection(L"DeletedProjects");
    ini.SetString(L"VX2D_PRJ_2", L"Standard 5");
    ini.SetSection(L"ProjectList");
    ini.SetString(L"VX2D_PRJ_1", L"Standard 6");
    ini.SetString(L"VX2D_PRJ_3", L"standard 7");
    ini.SetSection(L"Elsewhere");
    EXPECT_EQ(MakeDefaultProjectName(ini), L"Standard 7");
    EXPECT_EQ(ini.GetSection(), L"Elsewhere");
    ini.SetSection(L"General");
    EXPECT_EQ(ini.String(L"LastProjectId"), L"4") << "a proposal allocates nothing";
}

TEST(IdsTest, WritesGuidsInTheirTextForm) {
    CGuid guid;
    guid.Data1 = 0x0123ABCD;
    guid.Data2 = 0x00EF;
    guid.Data3 = 0xA;
    guid.Data4 = {1, 2, 0xFE, 4, 5, 6, 7, 0x80};
    EXPECT_EQ(GuidToText(guid), L"0123ABCD-00EF-000A-0102-FE0405060780");
    EXPECT_EQ(GuidFromText(GuidToText(guid)), guid);
    const CGuid fresh = NewGuid();
    EXPECT_FALSE(fresh.IsNull());
    EXPECT_NE(fresh, NewGuid());
    EXPECT_EQ(GuidFromText(GuidToText(fresh)), fresh);
}

TEST(IdsTest, DecodesDamagedGuidTextLeniently) {
    // The text, and Data1, Data2 and the last byte it gives.
    const std::tuple<const wchar_t*, std::uint32_t, std::uint16_t, std::uint8_t> cases[] = {
        {L"0123abcd-0001-0000-0000-0000000000ff", 0x0123ABCD, 1, 0xFF},
        {L"", 0, 0, 0},
        {L"ABCD", 0xABCD, 0, 0},
        {L"12G45678-1234", 0x12, 0x1234, 0},
        {L"0000000:<=>?0000000000000000000000000", 0xA, 0xCDEF, 0},
        {L"{1234567-", 0, 0, 0},
    };
    for (const auto& [text, data1, data2, lastByte] : cases) {
        const CGuid guid = GuidFromText(text);
        EXPECT_EQ(guid.Data1, data1) << text;
        EXPECT_EQ(guid.Data2, data2) << text;
        EXPECT_EQ(guid.Data4[7], lastByte) << text;
    }
    EXPECT_TRUE(GuidFromText(L"xyz").IsNull());
}

TEST(IdsTest, GivesEveryResultCodeItsText) {
    const std::pair<int, const wchar_t*> texts[] = {
        {0, L"Ok"},
        {1, L"Can't create folder"},
        {5, L"Can't open project datafile"},
        {13, L"Project is deleted"},
        {14, L"Unknown error"},
        {-1, L"Unknown error"},
    };
    for (const auto& [code, text] : texts)
        EXPECT_EQ(ProjectResultText(code), text) << code;
}

TEST(IdsTest, RefusesNamesThatCannotBeFolderNames) {
    const std::pair<std::wstring, bool> names[] = {
        {L"  Padded  ", true},
        {L"caf\u00e9 \u00a7 1", true},
        {L"   ", false},
        {L"..", false},
        {L"a\\b", false},
        {L"\"q\"", false},
        {L"tab\there", false},
        {L"euro \u20ac", false},
        {L"ends with dot.", false},
        {std::wstring(300, L'x'), false},
    };
    for (const auto& [name, valid] : names)
        EXPECT_EQ(IsValidName(name), valid) << "'" << std::string(name.begin(), name.end()) << "'";
    const std::wstring folder = L"/" + std::wstring(4000, L'f');
    EXPECT_FALSE(IsValidName(L"short" + std::wstring(100, L's'), folder))
        << "the whole path would be longer than the platform allows";
}

} // namespace ids_test

TEST(TextTest, AFolderEndsInTheSeparatorItAlreadyUses) {
    // Drawings folders are often Windows paths, even in a datafiles folder
    // read on Linux: the drafting applications must find them as typed.
    const std::pair<std::wstring, std::wstring> cases[] = {
        {L"", L""},
        {L"C:\\E", L"C:\\E\\"},
        {L"C:\\E\\", L"C:\\E\\"},
        {L"\\\\server\\share\\dwg", L"\\\\server\\share\\dwg\\"},
        {L"/srv/dwg", L"/srv/dwg/"},
        {L"/srv/dwg/", L"/srv/dwg/"},
        {L"C:/Plant/dwg", L"C:/Plant/dwg/"},
        // Both kinds: the native one.
        {L"C:\\Plant/dwg", std::wstring(L"C:\\Plant/dwg") + kPathSeparator},
        {L"/mnt/x\\y", std::wstring(L"/mnt/x\\y") + kPathSeparator},
        {L"Drawings", std::wstring(L"Drawings") + kPathSeparator},
    };
    for (const auto& [folder, expected] : cases)
        EXPECT_EQ(WithTrailingSeparator(folder), expected)
            << std::string(folder.begin(), folder.end());
}
