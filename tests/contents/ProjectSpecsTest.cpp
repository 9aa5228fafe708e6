// Pipe specs: the register's scopes, checking and unchecking for a standard
// with the exact bytes of "Specs.ini", the scope lists a register write
// leaves, and a line's spec lists.
#include "contents/ProjectSpecs.h"
#include "datafile/IniFile.h"
#include "store/ProjectRegistry.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace project_specs_test {

const std::string kRegister =
    "[ClientSpecs]\r\nVX2D_SPEC_6 = VX2D_CLIENT_1\r\n"
    "VX2D_SPEC_9 = VX2D_CLIENT_2\r\n\r\n"
    "[ProjectSpecs]\r\nVX2D_SPEC_7 = VX2D_PRJ_1\r\nVX2D_SPEC_8 = VX2D_PRJ_2\r\n\r\n"
    "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_6 = Client A\r\n"
    "VX2D_SPEC_7 = Pipe own\r\nVX2D_SPEC_8 = Other own\r\n"
    "VX2D_SPEC_9 = Client B\r\n";

// Standards 1 "Pipe" (under client 1) and 2 "Other" with folders, 3 without.
class ProjectSpecsTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandardsWithClients();
        WriteBytes(Register(), kRegister);
    }
    fs::path Register() const { return Root() / "SpecDatafile.ini"; }

    CVX2D_ProjectSpecs specs{registry};
};

TEST(ProjectSpecsTexts, EveryCodeHasItsText) {
    const std::pair<int, const wchar_t*> texts[] = {
        {0, L"Ok"},
        {3, L"Can't find spec"},
        {5, L"Can't open spec datafile"},
        {10, L"Spec already exists"},
        {11, L"Unknown error"},
        {-1, L"Unknown error"},
    };
    for (const auto& [code, text] : texts)
        EXPECT_EQ(CVX2D_ProjectSpecs::GetErrorText(code), text) << code;
}

TEST_F(ProjectSpecsTest, CheckAndUncheckOnlySpecsTheStandardMayUse) {
    const std::string s5 = "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\n";
    const std::string s567 = "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_6 = Client A\r\n"
                             "VX2D_SPEC_7 = Pipe own\r\n";
    const std::tuple<const char*, std::function<ESpecResult()>, ESpecResult, std::string> steps[] =
        {
            {"uncheck before any check", [&] { return specs.UncheckSpec(1, 5); }, eSpecCantFind,
             ""},
            {"check common 5", [&] { return specs.CheckSpec(1, 5); }, eSpecOk, s5},
            {"check unknown 4", [&] { return specs.CheckSpec(1, 4); }, eSpecCantFind, s5},
            {"check other standard's 8", [&] { return specs.CheckSpec(1, 8); }, eSpecCantFind, s5},
            {"check other client's 9", [&] { return specs.CheckSpec(1, 9); }, eSpecCantFind, s5},
            {"check own client's 6", [&] { return specs.CheckSpec(1, 6); }, eSpecOk,
             "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_6 = Client A\r\n"},
            {"check own 7", [&] { return specs.CheckSpec(1, 7); }, eSpecOk, s567},
            {"uncheck unchecked 8", [&] { return specs.UncheckSpec(1, 8); }, eSpecCantFind, s567},
            {"uncheck 6", [&] { return specs.UncheckSpec(1, 6); }, eSpecOk,
             "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_7 = Pipe own\r\n"},
        };
    for (const auto& [what, op, result, after] : steps) {
        SCOPED_TRACE(what);
        EXPECT_EQ(op(), result);
        EXPECT_EQ(Read("Specs.ini"), after);
    }
    std::vector<std::int32_t> ids;
    std::vector<std::wstring> names;
    ASSERT_EQ(specs.GetCheckedSpecs(1, ids, names), eSpecOk);
    EXPECT_EQ(ids, (std::vector<std::int32_t>{5, 7}));
    EXPECT_EQ(names, (std::vector<std::wstring>{L"CS150", L"Pipe own"}));
    // Standard 2 is under no client: another client's spec is not offered to it.
    EXPECT_EQ(specs.CheckSpec(2, 6), eSpecCantFind);
    EXPECT_EQ(specs.CheckSpec(2, 8), eSpecOk);

    CVX2D_IniFile file;
    ASSERT_EQ(file.Open(specs.GetSpecFilePath(1)), CVX2D_IniFile::eOk);
    file.SetSection(L"Other");
    EXPECT_EQ(CVX2D_ProjectSpecs::GetCheckedSpecName(file, 7), L"Pipe own");
    EXPECT_EQ(CVX2D_ProjectSpecs::GetCheckedSpecName(file, 6), L"");
    EXPECT_EQ(CVX2D_ProjectSpecs::GetCheckedSpecName(file, 0), L"");
    EXPECT_EQ(file.GetSection(), L"Other");
}

TEST_F(ProjectSpecsTest, BadIdsAndMissingFilesGiveTheirCodes) {
    std::vector<std::int32_t> ids;
    const std::pair<ESpecResult, ESpecResult> results[] = {
        {specs.CheckSpec(0, 5), eSpecInvalidProjectId},
        {specs.CheckSpec(1, 0), eSpecInvalidId},
        {specs.UncheckSpec(-2, 5), eSpecInvalidProjectId},
        {specs.UncheckSpec(1, -1), eSpecInvalidId},
        {specs.GetCheckedSpecs(0, ids), eSpecInvalidProjectId},
        {specs.CheckSpec(3, 5), eSpecCantOpenDatafile},
        {specs.UncheckSpec(3, 5), eSpecCantOpenDatafile},
        {specs.GetCheckedSpecs(3, ids), eSpecCantOpenDatafile},
        {specs.GetCheckedSpecs(1, ids), eSpecOk},
        {specs.CreateLineSpecList(1, 1, 5), eSpecInvalidArgument},
    };
    for (std::size_t i = 0; i < std::size(results); ++i)
        EXPECT_EQ(results[i].first, results[i].second) << "row " << i;
    EXPECT_TRUE(ids.empty());
    EXPECT_FALSE(fs::exists(Folder() / "Specs.ini"));
}

TEST_F(ProjectSpecsTest, WriteSpecRegisterReplacesTheScopeListsOrChangesNothing) {
    const std::tuple<std::vector<SSpecOwner>, std::vector<SSpecOwner>, ESpecResult> refused[] = {
        {{{0, 1}}, {}, eSpecInvalidId},
        {{}, {{7, 0}}, eSpecInvalidProjectId},
        {{{6, 1}}, {{6, 2}}, eSpecAlreadyExists},
        {{{4, 1}}, {}, eSpecCantFind},
    };
    for (const auto& [client, project, result] : refused) {
        EXPECT_EQ(specs.WriteSpecRegister(client, project), result);
        EXPECT_EQ(ReadBytes(Register()), kRegister);
    }
    ASSERT_EQ(specs.WriteSpecRegister({{9, 1}}, {{5, 2}, {8, 2}}), eSpecOk);
    EXPECT_EQ(ReadBytes(Register()),
              "[ClientSpecs]\r\nVX2D_SPEC_9 = VX2D_CLIENT_1\r\n\r\n"
              "[ProjectSpecs]\r\nVX2D_SPEC_5 = VX2D_PRJ_2\r\nVX2D_SPEC_8 = VX2D_PRJ_2\r\n\r\n"
              "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\nVX2D_SPEC_6 = Client A\r\n"
              "VX2D_SPEC_7 = Pipe own\r\nVX2D_SPEC_8 = Other own\r\nVX2D_SPEC_9 = Client B\r\n");
}

TEST_F(ProjectSpecsTest, LineSpecListsStartFromTheCheckedSpecsPerApplication) {
    // Nothing checked: every list is empty and nothing is written.
    EXPECT_EQ(specs.CreateLineSpecList(1, 1, 1), eSpecOk);
    EXPECT_FALSE(fs::exists(Folder() / "Specs.ini"));
    ASSERT_EQ(specs.CheckSpec(1, 7), eSpecOk);
    ASSERT_EQ(specs.CheckSpec(1, 5), eSpecOk);
    for (int application : {1, 2, 3})
        EXPECT_EQ(specs.CreateLineSpecList(1, 1, application), eSpecOk) << application;
    ASSERT_EQ(specs.UncheckSpec(1, 7), eSpecOk);
    // A line that has its list keeps it.
    EXPECT_EQ(specs.CreateLineSpecList(1, 1, 2), eSpecOk);
    EXPECT_EQ(specs.CreateLineSpecList(1, 2, 2), eSpecOk);
    EXPECT_EQ(Read("Specs.ini"),
              "[LineSpecs - ELECTRIC]\r\nVX2D_LINE_1 = VX2D_SPEC_5,VX2D_SPEC_7\r\n\r\n"
              "[LineSpecs - ISOMETRIC]\r\nVX2D_LINE_1 = VX2D_SPEC_5,VX2D_SPEC_7\r\n\r\n"
              "[LineSpecs - PID]\r\nVX2D_LINE_1 = VX2D_SPEC_5,VX2D_SPEC_7\r\n"
              "VX2D_LINE_2 = VX2D_SPEC_5\r\n\r\n"
              "[SpecList]\r\nVX2D_SPEC_5 = CS150\r\n");
    std::vector<std::int32_t> ids;
    ASSERT_EQ(specs.GetLineSpecList(1, 1, 3, ids), eSpecOk);
    EXPECT_EQ(ids, (std::vector<std::int32_t>{5, 7}));
    ASSERT_EQ(specs.GetLineSpecList(1, 1, 4, ids), eSpecOk);
    EXPECT_TRUE(ids.empty());
}

} // namespace project_specs_test
