#include "datafile/Ids.h"
#include "datafile/Guid.h"
#include "datafile/IniFile.h"
#include "datafile/Names.h"
#include "datafile/ProjectResult.h"

#include <gtest/gtest.h>

namespace {

TEST(IdsTest, FormsAndParsesNumberedNames) {
    EXPECT_EQ(MakeProjectKey(7), L"VX2D_PRJ_7");
    EXPECT_EQ(MakeClientKey(12), L"VX2D_CLIENT_12");
    EXPECT_EQ(MakeLineKey(3), L"VX2D_LINE_3");
    EXPECT_EQ(MakeSpecKey(5), L"VX2D_SPEC_5");
    EXPECT_EQ(MakeProjectLabel(7, L"Metric Piping"), L"VX2D_PRJ_7 - Metric Piping");
    EXPECT_EQ(MakeClientProjectListSection(3), L"ProjectList - 3");

    const std::pair<const wchar_t*, std::int32_t> projects[] = {
        {L"VX2D_PRJ_12", 12},        {L"vx2d_prj_12", 12},  {L"/d/Projects/VX2D_PRJ_12", 12},
        {L"VX2D_PRJ_3 - Pipe 4", 3}, {L"VX2D_PRJ_7abc", 7}, {L"Projects", 0},
        {L"VX2D_PRJ_", 0},           {L"VX2D_PRJ_-4", -4},
    };
    for (const auto& [text, id] : projects)
        EXPECT_EQ(ParseProjectKey(text), id) << text;
    EXPECT_EQ(ParseClientKey(L"VX2D_CLIENT_31"), 31);
    EXPECT_EQ(ParseClientKey(L"vx2d_client_31"), 0) << "client keys are matched exactly";
    EXPECT_EQ(ParseLineKey(L"VX2D_LINE_90"), 90);
    EXPECT_EQ(ParseSpecKey(L"xVX2D_SPEC_8"), 8);
}

TEST(IdsTest, AllocatesFromTheCounterAndNeverReuses) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    EXPECT_EQ(AllocateId(ini, L"LastProjectId"), 1);
    EXPECT_EQ(AllocateId(ini, L"LastProjectId"), 2);
    ini.SetSection(L"General");
    EXPECT_EQ(ini.String(L"LastProjectId"), L"2");
    EXPECT_TRUE(ini.IsModified());
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
    EXPECT_EQ(MakeDefaultClientName(3), L"Client 3");
    EXPECT_EQ(MakeCopyName(L"Pipe"), L"Copy of Pipe");
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
    struct SCase {
        const wchar_t* text;
        std::uint32_t data1;
        std::uint16_t data2;
        std::uint8_t lastByte;
    };
    const SCase cases[] = {
        {L"0123ABCD-0000-0000-0000-000000000000", 0x0123ABCD, 0, 0},
        {L"0123abcd-0001-0000-0000-0000000000ff", 0x0123ABCD, 1, 0xFF},
        {L"xyz", 0, 0, 0},
        {L"", 0, 0, 0},
        {L"ABCD", 0xABCD, 0, 0},
        {L"12G45678-1234", 0x12, 0x1234, 0},
        {L"0000000:<=>?0000000000000000000000000", 0xA, 0xCDEF, 0},
        {L"{1234567-", 0, 0, 0},
    };
    for (const auto& c : cases) {
        const CGuid guid = GuidFromText(c.text);
        EXPECT_EQ(guid.Data1, c.data1) << c.text;
        EXPECT_EQ(guid.Data2, c.data2) << c.text;
        EXPECT_EQ(guid.Data4[7], c.lastByte) << c.text;
    }
    EXPECT_TRUE(GuidFromText(L"xyz").IsNull());
}

TEST(IdsTest, GivesEveryResultCodeItsText) {
    const std::pair<int, const wchar_t*> texts[] = {
        {0, L"Ok"},
        {1, L"Can't create folder"},
        {2, L"Can't find project"},
        {3, L"Can't get project location folder"},
        {4, L"Can't get project template folder"},
        {5, L"Can't open project datafile"},
        {6, L"Error copying project folder"},
        {7, L"Error copying project template folder"},
        {8, L"Invalid location"},
        {9, L"Invalid name"},
        {10, L"Invalid project id"},
        {11, L"Error moving project folder"},
        {12, L"Project already exists"},
        {13, L"Project is deleted"},
        {14, L"Unknown error"},
        {-1, L"Unknown error"},
    };
    for (const auto& [code, text] : texts)
        EXPECT_EQ(ProjectResultText(code), text) << code;
}

TEST(IdsTest, RefusesNamesThatCannotBeFolderNames) {
    const std::pair<std::wstring, bool> names[] = {
        {L"Metric Piping", true},
        {L"  Padded  ", true},
        {L"caf\u00e9 \u00a7 1", true},
        {L"", false},
        {L"   ", false},
        {L".", false},
        {L"..", false},
        {L"a/b", false},
        {L"a\\b", false},
        {L"x:y", false},
        {L"a*", false},
        {L"why?", false},
        {L"<b>", false},
        {L"a|b", false},
        {L"\"q\"", false},
        {L"tab\there", false},
        {L"line\nbreak", false},
        {L"euro \u20ac", false},
        {L"ends with dot.", false},
        {std::wstring(300, L'x'), false},
    };
    for (const auto& [name, valid] : names)
        EXPECT_EQ(IsValidName(name), valid) << "'" << std::string(name.begin(), name.end()) << "'";
    const std::wstring folder = L"/" + std::wstring(4000, L'f');
    EXPECT_TRUE(IsValidName(L"short"));
    EXPECT_FALSE(IsValidName(L"short" + std::wstring(100, L's'), folder))
        << "the whole path would be longer than the platform allows";
}

} // namespace
