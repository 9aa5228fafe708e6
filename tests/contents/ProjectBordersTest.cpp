// A standard's "Borders.ini": the defaults per sheet size, the file overlaid
// on them, and the exact bytes a save writes (only what changed).
#include "contents/ProjectBorders.h"
#include "store/ProjectRegistry.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace project_borders_test {

class ProjectBordersTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandards({"No folder"});
        fs::create_directories(Folder());
    }
    fs::path File() const { return Folder() / "Borders.ini"; }

    CVX2D_ProjectBorders Loaded() const {
        CVX2D_ProjectBorders borders(registry, 1);
        borders.Load(borders.GetFilePath());
        return borders;
    }
};

TEST_F(ProjectBordersTest, WithoutAFileTheDefaultsShow) {
    // A and A4 upright, the others landscape.
    const std::tuple<EDwg, const wchar_t*, const wchar_t*> rows[] = {
        {eDwgA, L"A", L"8.5,11.0"}, {eDwgE, L"E", L"44.0,34.0"}, {eDwgA4, L"A4", L"210.0,297.0"}};
    const CVX2D_ProjectBorders borders = Loaded();
    EXPECT_FALSE(borders.IsModified());
    for (const auto& [size, key, max] : rows) {
        SCOPED_TRACE(size);
        EXPECT_EQ(DwgKey(size), key);
        EXPECT_EQ(borders.GetBorderFile(size), L"Bord_" + std::wstring(key) + L".dwg");
        EXPECT_EQ(borders.GetLimitsMin(size), L"0.0,0.0");
        EXPECT_EQ(borders.GetLimitsMax(size), max);
        EXPECT_EQ(borders.GetRevisionFile(size), L"Rev_" + std::wstring(key) + L".dwg");
    }
    const EDwg outside = static_cast<EDwg>(10);
    EXPECT_EQ(DwgKey(outside), L"");
    EXPECT_EQ(borders.GetBorderFile(outside), L"");
    EXPECT_FALSE(fs::exists(File()));
}

TEST_F(ProjectBordersTest, TheFileOverlaysTheDefaultsEntryByEntry) {
    WriteBytes(File(), "[Border]\r\nC = Big C.dwg\r\nX = ignored.dwg\r\n\r\n"
                       "[Limits - Max]\r\nA4 = 297.0,210.0\r\n\r\n"
                       "[Limits - Min]\r\nC = -1.5,2\r\n\r\n"
                       "[Revision]\r\nA0 = \r\n");
    const CVX2D_ProjectBorders borders = Loaded();
    EXPECT_FALSE(borders.IsModified());
    EXPECT_EQ(borders.GetBorderFile(eDwgC), L"Big C.dwg");
    EXPECT_EQ(borders.GetLimitsMin(eDwgC), L"-1.5,2");
    EXPECT_EQ(borders.GetLimitsMax(eDwgC), L"22.0,17.0");
    EXPECT_EQ(borders.GetLimitsMax(eDwgA4), L"297.0,210.0");
    EXPECT_EQ(borders.GetBorderFile(eDwgA4), L"Bord_A4.dwg");
    // An entry present with an empty value is the file's value.
    EXPECT_EQ(borders.GetRevisionFile(eDwgA0), L"");

    // Loading again starts from the defaults.
    fs::remove(File());
    CVX2D_ProjectBorders again = borders;
    again.Load(again.GetFilePath());
    EXPECT_EQ(again.GetBorderFile(eDwgC), L"Bord_C.dwg");
}

TEST_F(ProjectBordersTest, SaveWritesOnlyTheChangedEntriesInOrder) {
    const std::string existing = "[Border]\r\nB = Mine.dwg\r\n\r\n[Revision]\r\nA3 = Old.dwg\r\n";
    // The file before (empty: none), the change, and the file after (empty: none).
    const std::tuple<const char*, std::string, void (*)(CVX2D_ProjectBorders&), std::string>
        cases[] = {
            {"every map of one size, and one value changed twice", "",
             [](CVX2D_ProjectBorders& b) {
                 b.SetRevisionFile(eDwgE, L"r.dwg");
                 b.SetLimitsMax(eDwgE, L"1,1");
                 b.SetLimitsMin(eDwgE, L"0,0");
                 b.SetBorderFile(eDwgE, L"first.dwg");
                 b.SetBorderFile(eDwgE, L"b.dwg");
             },
             "[Border]\r\nE = b.dwg\r\n\r\n[Limits - Max]\r\nE = 1,1\r\n\r\n"
             "[Limits - Min]\r\nE = 0,0\r\n\r\n[Revision]\r\nE = r.dwg\r\n"},
            {"a value set back to its default is still written", "",
             [](CVX2D_ProjectBorders& b) {
                 b.SetLimitsMax(eDwgA, L"11.0,8.5");
                 b.SetLimitsMax(eDwgA, L"8.5,11.0");
             },
             "[Limits - Max]\r\nA = 8.5,11.0\r\n"},
            {"other entries of the file stay", existing,
             [](CVX2D_ProjectBorders& b) { b.SetBorderFile(eDwgA2, L"Two.dwg"); },
             "[Border]\r\nA2 = Two.dwg\r\nB = Mine.dwg\r\n\r\n[Revision]\r\nA3 = Old.dwg\r\n"},
            {"unchanged: nothing written", "", [](CVX2D_ProjectBorders&) {}, ""},
            {"the same value again is no change", "",
             [](CVX2D_ProjectBorders& b) { b.SetBorderFile(eDwgD, L"Bord_D.dwg"); }, ""},
            {"a size outside the sheet sizes is ignored", "",
             [](CVX2D_ProjectBorders& b) { b.SetBorderFile(static_cast<EDwg>(-1), L"x.dwg"); }, ""},
        };
    for (const auto& [name, before, change, after] : cases) {
        SCOPED_TRACE(name);
        fs::remove(File());
        if (!before.empty())
            WriteBytes(File(), before);
        CVX2D_ProjectBorders borders = Loaded();
        change(borders);
        EXPECT_EQ(borders.IsModified(), after != before);
        EXPECT_TRUE(borders.Save());
        EXPECT_FALSE(borders.IsModified());
        // Nothing but the datafile is left in the folder.
        EXPECT_EQ(std::distance(fs::directory_iterator(Folder()), fs::directory_iterator()),
                  after.empty() ? 0 : 1);
        if (!after.empty()) {
            EXPECT_EQ(ReadBytes(File()), after);
        }
    }
}

TEST_F(ProjectBordersTest, ASuccessfulSaveClearsTheChanges) {
    CVX2D_ProjectBorders borders = Loaded();
    borders.SetRevisionFile(eDwgA3, L"Rev_X.dwg");
    EXPECT_TRUE(borders.IsRevisionFileChanged(eDwgA3));
    EXPECT_FALSE(borders.IsRevisionFileChanged(eDwgA2));
    ASSERT_TRUE(borders.Save());
    EXPECT_FALSE(borders.IsRevisionFileChanged(eDwgA3));

    // Another program rewrites the entry; an unchanged record leaves it alone,
    // and the next change writes only its own entry.
    WriteBytes(File(), "[Revision]\r\nA3 = Theirs.dwg\r\n");
    EXPECT_TRUE(borders.Save());
    EXPECT_EQ(ReadBytes(File()), "[Revision]\r\nA3 = Theirs.dwg\r\n");
    borders.SetLimitsMin(eDwgB, L"1.0,1.0");
    EXPECT_TRUE(borders.IsLimitsMinChanged(eDwgB));
    ASSERT_TRUE(borders.Save());
    EXPECT_EQ(ReadBytes(File()),
              "[Limits - Min]\r\nB = 1.0,1.0\r\n\r\n[Revision]\r\nA3 = Theirs.dwg\r\n");
}

TEST_F(ProjectBordersTest, WithoutAFolderNothingIsWritten) {
    CVX2D_ProjectBorders detached;
    CVX2D_ProjectBorders noFolder(registry, 2);
    for (CVX2D_ProjectBorders* borders : {&detached, &noFolder}) {
        EXPECT_EQ(borders->GetFilePath(), L"");
        EXPECT_TRUE(borders->Save());
        borders->SetBorderFile(eDwgA, L"x.dwg");
        // The change is kept, not reported as saved.
        EXPECT_FALSE(borders->Save());
        EXPECT_TRUE(borders->IsModified());
        EXPECT_EQ(borders->GetBorderFile(eDwgA), L"x.dwg");
    }
    EXPECT_FALSE(fs::exists(Root() / "Projects" / "VX2D_PRJ_2 - No folder"));

    // A value a datafile cannot hold fails the save and leaves the file.
    WriteBytes(File(), "[Border]\r\nA = a.dwg\r\n");
    CVX2D_ProjectBorders borders = Loaded();
    borders.SetBorderFile(eDwgB, L"\u20ac.dwg");
    EXPECT_FALSE(borders.Save());
    EXPECT_TRUE(borders.IsBorderFileChanged(eDwgB));
    EXPECT_EQ(ReadBytes(File()), "[Border]\r\nA = a.dwg\r\n");
}

TEST_F(ProjectBordersTest, SizesAndLimitTexts) {
    EDwg size = eDwgA;
    EXPECT_TRUE(DwgFromKey(L"a4", size));
    EXPECT_EQ(size, eDwgA4);
    for (const wchar_t* bad : {L"", L"A5", L" A"})
        EXPECT_FALSE(DwgFromKey(bad, size)) << bad;

    const std::pair<const wchar_t*, bool> cases[] = {
        {L"8.5,11", true},  {L"-2,+17.5", true}, {L".5,5.", true}, {L"1189.0", false},
        {L"1,2,3", false},  {L"1, 2", false},    {L",2", false},   {L"1e3,2", false},
        {L"1..2,3", false}, {L"-,1", false},
    };
    for (const auto& [text, limit] : cases)
        EXPECT_EQ(CVX2D_ProjectBorders::IsLimitText(text), limit) << text;
}

} // namespace project_borders_test
