// A standard's line numbers: the shared counter in "LineDatafile.ini", the
// exact bytes of "Lines.ini" after each operation, result codes and texts.
#include "contents/ProjectLines.h"
#include "datafile/FileLock.h"
#include "store/ProjectRegistry.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace project_lines_test {

std::string CounterAt(int last) {
    return "[General]\r\nLastLineId = " + std::to_string(last) + "\r\n";
}

// Standard 1 "Pipe" with a folder, standard 2 without.
class ProjectLinesTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandards({"No folder"});
        fs::create_directories(Folder());
    }
    std::string Counter() const { return ReadBytes(Root() / "LineDatafile.ini"); }
    void SetCounter(int last) const { WriteBytes(Root() / "LineDatafile.ini", CounterAt(last)); }

    CVX2D_ProjectLines lines{registry};
};

TEST(ProjectLinesTexts, CodesAndKeyForms) {
    const std::pair<int, const wchar_t*> texts[] = {
        {eLineOk, L"Ok"},
        {eLineCantCreate, L"Can't create new line"},
        {eLineAlreadyExists, L"Line already exists"},
        {eLineIsDeleted, L"Line is deleted"},
        {9, L"Unknown error"},
        {-1, L"Unknown error"},
    };
    for (const auto& [code, text] : texts)
        EXPECT_EQ(CVX2D_ProjectLines::GetErrorText(code), text) << code;
    EXPECT_EQ(CVX2D_ProjectLines::ParseLineId(L"X VX2D_LINE_12x"), 12);
    EXPECT_EQ(CVX2D_ProjectLines::ParseLineId(L"vx2d_line_3"), 0);
}

TEST_F(ProjectLinesTest, CreateTakesTheNextIdAndAdvancesPastTakenNames) {
    // "Lines.ini" before (the counter stands at 41), the new id and name, and the file after.
    const std::tuple<std::string, std::int32_t, const wchar_t*, std::string> cases[] = {
        {"", 42, L"Line 42", "[LineList]\r\nVX2D_LINE_42 = Line 42\r\n"},
        // Deleted lines keep their names too, so a recovered line never clashes.
        {"[DeletedLines]\r\nVX2D_LINE_5 = Line 43\r\n\r\n[LineList]\r\nVX2D_LINE_3 = Line 42\r\n",
         42, L"Line 44",
         "[DeletedLines]\r\nVX2D_LINE_5 = Line 43\r\n\r\n[LineList]\r\nVX2D_LINE_3 = Line 42\r\n"
         "VX2D_LINE_42 = Line 44\r\n"},
        // A counter left behind never hands out an id the standard already has.
        {"[DeletedLines]\r\nVX2D_LINE_42 = Old\r\n", 43, L"Line 43",
         "[DeletedLines]\r\nVX2D_LINE_42 = Old\r\n\r\n[LineList]\r\nVX2D_LINE_43 = Line 43\r\n"},
    };
    std::int32_t id = 0;
    std::wstring name;
    for (const auto& [before, newId, newName, after] : cases) {
        SCOPED_TRACE(before);
        fs::remove(Folder() / "Lines.ini");
        if (!before.empty())
            Write("Lines.ini", before);
        SetCounter(41);
        ASSERT_EQ(lines.CreateLine(1, id, name), eLineOk);
        EXPECT_EQ(id, newId);
        EXPECT_EQ(name, newName);
        EXPECT_EQ(Read("Lines.ini"), after);
        EXPECT_EQ(Counter(), CounterAt(newId));
    }
    // A name of the caller's: checked before an id is taken.
    ASSERT_EQ(lines.CreateLine(1, L" Main ", id, name), eLineOk);
    EXPECT_EQ(name, L"Main");
    EXPECT_EQ(lines.CreateLine(1, L"Main", id, name), eLineAlreadyExists);
    EXPECT_EQ(lines.CreateLine(1, L"a/b", id, name), eLineInvalidName);
    EXPECT_EQ(Counter(), CounterAt(44));
}

TEST_F(ProjectLinesTest, DeleteRecoverAndRenameMoveKeysBetweenTheLists) {
    Write("Lines.ini", "[LineList]\r\nVX2D_LINE_7 = Main\r\nVX2D_LINE_8 = Drain\r\n");
    const std::string deleted7 = "[DeletedLines]\r\nVX2D_LINE_7 = Main\r\n\r\n[LineList]\r\n";
    const std::string bothLive = "[LineList]\r\nVX2D_LINE_7 = Main\r\nVX2D_LINE_8 = Vent\r\n";
    const std::tuple<const char*, std::function<ELineResult()>, ELineResult, std::string> steps[] =
        {
            {"delete 7", [&] { return lines.DeleteLine(1, 7); }, eLineOk,
             deleted7 + "VX2D_LINE_8 = Drain\r\n"},
            {"delete 7 again", [&] { return lines.DeleteLine(1, 7); }, eLineCantFind,
             deleted7 + "VX2D_LINE_8 = Drain\r\n"},
            {"rename deleted", [&] { return lines.RenameLine(1, 7, L"X"); }, eLineIsDeleted,
             deleted7 + "VX2D_LINE_8 = Drain\r\n"},
            {"rename 8 to Main", [&] { return lines.RenameLine(1, 8, L" Main "); }, eLineOk,
             deleted7 + "VX2D_LINE_8 = Main\r\n"},
            {"recover onto a live name", [&] { return lines.RecoverLine(1, 7); },
             eLineAlreadyExists, deleted7 + "VX2D_LINE_8 = Main\r\n"},
            {"rename 8 to Vent", [&] { return lines.RenameLine(1, 8, L"Vent"); }, eLineOk,
             deleted7 + "VX2D_LINE_8 = Vent\r\n"},
            {"recover 7", [&] { return lines.RecoverLine(1, 7); }, eLineOk, bothLive},
            {"rename to a taken name", [&] { return lines.RenameLine(1, 7, L"Vent"); },
             eLineAlreadyExists, bothLive},
        };
    for (const auto& [what, op, result, after] : steps) {
        SCOPED_TRACE(what);
        EXPECT_EQ(op(), result);
        EXPECT_EQ(Read("Lines.ini"), after);
    }
    EXPECT_FALSE(fs::exists(Root() / "LineDatafile.ini"));
}

TEST_F(ProjectLinesTest, GetLinesListsLiveThenDeletedInFileOrder) {
    Write("Lines.ini",
          "[LineList]\r\nVX2D_LINE_9 = B\r\nVX2D_LINE_10 = A\r\nVX2D_LINE_11 = \r\nJunk = J\r\n"
          "[DeletedLines]\r\nVX2D_LINE_3 = C\r\n");
    SLineList list;
    ASSERT_EQ(lines.GetLines(1, list), eLineOk);
    EXPECT_EQ(list.names, (std::vector<std::wstring>{L"B", L"A"}));
    ASSERT_EQ(lines.GetLines(1, list, true), eLineOk);
    EXPECT_EQ(list.ids, (std::vector<std::int32_t>{9, 10, 3}));
    EXPECT_EQ(list.deleted, (std::vector<bool>{false, false, true}));
    // The evaluation copy sees one line and reads nothing, even without a folder.
    ASSERT_EQ(lines.GetLines(2, list, true, true), eLineOk);
    EXPECT_EQ(list.ids, (std::vector<std::int32_t>{1}));
    EXPECT_EQ(list.names, (std::vector<std::wstring>{L"Eval"}));
}

TEST_F(ProjectLinesTest, BadIdsAndMissingFoldersAreRefusedWithoutWriting) {
    std::int32_t id = 0;
    std::wstring name;
    SLineList list;
    const std::pair<ELineResult, ELineResult> results[] = {
        {lines.CreateLine(0, id, name), eLineInvalidProjectId},
        {lines.CreateLine(2, id, name), eLineCantOpenDatafile},
        {lines.GetLines(-1, list), eLineInvalidProjectId},
        {lines.GetLines(2, list), eLineCantOpenDatafile},
        {lines.GetLines(1, list), eLineOk}, // no "Lines.ini" yet: no lines
        {lines.DeleteLine(0, 7), eLineInvalidProjectId},
        {lines.DeleteLine(1, 0), eLineInvalidId},
        {lines.RecoverLine(1, -3), eLineInvalidId},
        {lines.RenameLine(1, 0, L"X"), eLineInvalidId},
        {lines.DeleteLine(1, 7), eLineCantFind},
        {lines.RepairLastLineId(0), eLineInvalidProjectId},
    };
    for (std::size_t i = 0; i < std::size(results); ++i)
        EXPECT_EQ(results[i].first, results[i].second) << "row " << i;
    EXPECT_EQ(list.Size(), 0u);
    EXPECT_FALSE(fs::exists(Folder() / "Lines.ini"));
    EXPECT_FALSE(fs::exists(Root() / "LineDatafile.ini"));
}

TEST_F(ProjectLinesTest, CreateGivesUpWithoutWritingWhileAnotherHoldsTheCounter) {
    CVX2D_FileLock::SetWaitLimit(std::chrono::milliseconds(200));
    SetCounter(5);
    CVX2D_FileLock other;
    ASSERT_TRUE(other.Acquire(Datafiles().LineDatafile()));
    std::int32_t id = 0;
    std::wstring name;
    EXPECT_EQ(lines.CreateLine(1, id, name), eLineCantOpenDatafile);
    other.Release();
    CVX2D_FileLock::SetWaitLimit(std::chrono::milliseconds(20000));
    EXPECT_EQ(Counter(), CounterAt(5));
    EXPECT_FALSE(fs::exists(Folder() / "Lines.ini"));
}

TEST_F(ProjectLinesTest, RepairAndCopyRaiseTheCounterToTheHighestLiveLine) {
    const std::string bytes = "[DeletedLines]\r\nVX2D_LINE_120 = Old\r\n\r\n"
                              "[LineList]\r\nVX2D_LINE_90 = A\r\nVX2D_LINE_12 = B\r\n";
    for (const auto& [before, after] : {std::pair{50, 90}, std::pair{95, 95}}) {
        Write("Lines.ini", bytes);
        SetCounter(before);
        EXPECT_EQ(lines.RepairLastLineId(1), eLineOk);
        EXPECT_EQ(Counter(), CounterAt(after)) << before;
        EXPECT_EQ(Read("Lines.ini"), bytes);
    }
    SetCounter(50);
    std::int32_t newId = 0;
    std::wstring newName;
    ASSERT_EQ(registry.CopyProject(1, newId, newName), eProjectOk);
    EXPECT_EQ(Counter(), CounterAt(90));
}

} // namespace project_lines_test
