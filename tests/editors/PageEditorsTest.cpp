// The "General Settings", "File Locations" and "Border Settings" pages: what
// they show, what they refuse with which message, what Restore Defaults
// resets, the bytes Apply writes and the question on closing.
#include "editors/BordersEditor.h"
#include "editors/FileLocationsEditor.h"
#include "editors/GeneralSettingsEditor.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace page_editors_test {

std::wstring Joined(const std::vector<std::wstring>& texts) {
    std::wstring joined;
    for (const auto& text : texts)
        joined += (joined.empty() ? L"" : L"|") + text;
    return joined;
}

// Paths in a text with '/' for every separator: on Windows the page adds
// '\\' to what was typed with '/', and both are one path.
template <class Text> Text Slashed(Text text) {
#ifdef _WIN32
    std::replace(text.begin(), text.end(), '\\', '/');
#endif
    return text;
}

std::string Narrow(const fs::path& path) {
    return path.string();
}

// Standard 1 "Pipe" of version 2023 whose General.ini holds every key, so
// that a save changes exactly the lines of the changed values.
class PageEditorsTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandards();
        WriteBytes(GeneralIni(), General("/lib/", "1"));
    }
    fs::path GeneralIni() const { return Folder() / "General.ini"; }
    fs::path BordersIni() const { return Folder() / "Borders.ini"; }
    fs::path BordersFolder() const { return Root() / "borders"; }
    std::string General(const std::string& libraries, const std::string& working,
                        const std::string& electric = "/d/e/",
                        const std::string& units = "Displayed = 2\r\nRatingsFormat = 1") const {
        return "[Drawings Location]\r\nELECTRIC = " + electric +
               "\r\nISOMETRIC = /d/i/\r\nORTHO = /d/o/\r\nPID = /d/p/\r\n\r\n[General]\r\n"
               "BordersLocation = " +
               Narrow(BordersFolder()) + "/\r\nLibrariesLocation = " + libraries +
               "\r\nLocalLineIni = 0\r\nProjectGuid = 01234567-89AB-CDEF-0123-456789ABCDEF\r\n"
               "ProjectVersion = 2023\r\nTemplatesLocation = /tpl/\r\n\r\n[Units]\r\n" +
               units + "\r\nWorking = " + working + "\r\n";
    }
};

TEST_F(PageEditorsTest, GeneralSettingsShowsItsListsAndAppliesOnlyWhatWasPicked) {
    CGeneralSettingsEditor editor(registry, prompter);
    ASSERT_TRUE(editor.Open(1));
    struct SRowCase {
        EGeneralField field;
        const wchar_t* label;
        const wchar_t* text;
        const wchar_t* choices;
    };
    const SRowCase rows[] = {
        {EGeneralField::WorkingUnits, L"Working Units", L"English", L"Metric|English"},
        {EGeneralField::DisplayedUnits, L"Displayed Units", L"English - US",
         L"Metric - OD|Metric - NPS|English - US|English - NPS"},
        {EGeneralField::RatingFormat, L"Rating Format", L"150#", L"150#|150 LB|CL150|150"},
        {EGeneralField::Version, L"Version", L"2023", L""},
        {EGeneralField::Guid, L"GUID", L"01234567-89AB-CDEF-0123-456789ABCDEF", L""},
    };
    ASSERT_EQ(editor.Rows().size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const SGeneralRow& row = editor.Rows()[i];
        EXPECT_EQ(row.field, rows[i].field);
        EXPECT_EQ(row.label, rows[i].label);
        EXPECT_EQ(row.text, rows[i].text);
        EXPECT_EQ(Joined(row.choices), rows[i].choices);
        EXPECT_EQ(row.readOnly, row.choices.empty());
    }

    struct SPick {
        EGeneralField field;
        int index;
        bool accepted;
        bool modified;
    };
    const SPick picks[] = {
        {EGeneralField::Version, 0, false, false},
        {EGeneralField::Guid, 0, false, false},
        {EGeneralField::WorkingUnits, 2, false, false},
        {EGeneralField::WorkingUnits, -1, false, false},
        {EGeneralField::WorkingUnits, 1, true, false}, // what it already is
        {EGeneralField::WorkingUnits, 0, true, true},
        {EGeneralField::DisplayedUnits, 1, true, true},
        {EGeneralField::RatingFormat, 2, true, true},
    };
    for (const SPick& pick : picks) {
        SCOPED_TRACE(static_cast<int>(pick.field) * 10 + pick.index);
        EXPECT_EQ(editor.Choose(pick.field, pick.index), pick.accepted);
        EXPECT_EQ(editor.ApplyEnabled(), pick.modified);
    }
    EXPECT_EQ(editor.Row(EGeneralField::RatingFormat).text, L"CL150");

    // The file locations page saves the same file meanwhile: both survive.
    CVX2D_GeneralSettings other;
    ASSERT_TRUE(other.Load(registry, 1));
    other.SetDrawingsLocation(1, L"/x/");
    ASSERT_TRUE(other.Save());
    EXPECT_TRUE(editor.Apply());
    EXPECT_FALSE(editor.ApplyEnabled());
    EXPECT_EQ(ReadBytes(GeneralIni()),
              General("/lib/", "0", "/x/", "Displayed = 1\r\nRatingsFormat = 3"));
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(PageEditorsTest, GeneralSettingsShowsNothingForACodeInNoList) {
    WriteBytes(Datafiles().File(L"Rating.xml"),
               "<Formats><Count>2</Count><Title1>A</Title1><Title2>B</Title2></Formats>");
    WriteBytes(GeneralIni(), General("/lib/", "7", "/d/e/", "Displayed = 3\r\nRatingsFormat = 4"));
    CGeneralSettingsEditor editor(registry, prompter);
    ASSERT_TRUE(editor.Open(1));
    EXPECT_EQ(editor.Row(EGeneralField::WorkingUnits).text, L"");
    EXPECT_EQ(editor.Row(EGeneralField::WorkingUnits).current, -1);
    EXPECT_EQ(editor.Row(EGeneralField::DisplayedUnits).text, L"English - NPS");
    EXPECT_EQ(Joined(editor.Row(EGeneralField::RatingFormat).choices), L"A|B");
    EXPECT_EQ(editor.Row(EGeneralField::RatingFormat).current, -1);
    EXPECT_FALSE(editor.Open(2));
    EXPECT_TRUE(editor.Rows().empty());
}

TEST_F(PageEditorsTest, FileLocationsChecksEachFolderAndOffersToCreateAMissingOne) {
    const fs::path existing = Root() / "dwg" / "e";
    fs::create_directories(existing);
    WriteBytes(Root() / "file.txt", "x");
    const std::wstring root = RootText();
    CFileLocationsEditor editor(registry, prompter);
    ASSERT_TRUE(editor.Open(1));
    EXPECT_EQ(editor.Rows()[1].label, L"P & ID Drawing Folder");
    EXPECT_EQ(editor.Rows()[4].label, L"Borders Folder");
    EXPECT_EQ(editor.Rows()[6].folder, L"/lib/");

    struct SCase {
        std::size_t row;
        std::wstring typed;
        std::deque<EPromptAnswer> answers;
        bool stored;
        std::wstring shown;
        std::wstring prompts; // what was asked or said, "|" between
    };
    const std::wstring notCreatable = root + L"file.txt/sub/";
    const SCase cases[] = {
        {0, L"  " + root + L"dwg/e  ", {}, true, root + L"dwg/e/", L""},
        {4,
         root + L"new/borders",
         {EPromptAnswer::Yes},
         true,
         root + L"new/borders/",
         L"The folder '" + root + L"new/borders/' does not exist.\n\nDo you want to create it?"},
        {5,
         root + L"away/",
         {EPromptAnswer::No},
         true,
         root + L"away/",
         L"The folder '" + root + L"away/' does not exist.\n\nDo you want to create it?"},
        {1,
         L"dwg/p",
         {},
         false,
         L"/d/p/",
         L"The folder 'dwg/p' is not a full path.\n\nGive the whole path of the folder, from its "
         L"drive, share or root."},
        {2,
         root + L"file.txt",
         {},
         false,
         L"/d/i/",
         L"'" + root + L"file.txt' is a file, not a folder."},
        {3,
         L"/d/\u03a9",
         {},
         false,
         L"/d/o/",
         L"The folder '/d/\u03a9' holds a character that a datafile cannot store."},
        // No libraries folder means the program's own.
        {6,
         L" ",
         {EPromptAnswer::No},
         true,
         root + L"Libraries/",
         L"The folder '" + root + L"Libraries/' does not exist.\n\nDo you want to create it?"},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.typed);
        prompter.asked.clear();
        prompter.answers = c.answers;
        EXPECT_EQ(editor.SetFolder(c.row, c.typed), c.stored);
        EXPECT_EQ(Slashed(editor.Rows()[c.row].folder), Slashed(c.shown));
        std::vector<std::wstring> prompts;
        for (const SPrompt& prompt : prompter.asked)
            prompts.push_back(prompt.text);
        EXPECT_EQ(Slashed(Joined(prompts)), Slashed(c.prompts));
    }
    EXPECT_TRUE(fs::is_directory(Root() / "new" / "borders"));
    EXPECT_FALSE(fs::exists(Root() / "away"));

    // Yes to a folder that cannot be made keeps the old one.
    prompter.asked.clear();
    prompter.answers = {EPromptAnswer::Yes};
    EXPECT_FALSE(editor.SetFolder(1, notCreatable));
    ASSERT_EQ(prompter.asked.size(), 2u);
    EXPECT_EQ(
        prompter.asked[1].text.rfind(L"Error creating folder '" + notCreatable + L"'.\n\n", 0), 0u);
    EXPECT_EQ(prompter.asked[1].icon, EPromptIcon::Stop);

    ASSERT_TRUE(editor.Apply());
    const std::string text = Narrow(Root());
    std::string expected = General(text + test::N("/Libraries/"), "1", text + test::N("/dwg/e/"));
    expected.replace(expected.find(Narrow(BordersFolder()) + "/"),
                     Narrow(BordersFolder()).size() + 1, text + test::N("/new/borders/"));
    expected.replace(expected.find("/tpl/"), 5, text + test::N("/away/"));
    EXPECT_EQ(Slashed(ReadBytes(GeneralIni())), Slashed(expected));
    EXPECT_FALSE(editor.ApplyEnabled());
}

class BordersEditorTest : public PageEditorsTest {
protected:
    std::wstring Cells(std::size_t row) const {
        const SBorderRow& r = editor.Rows()[row];
        std::wstring text = r.name;
        for (int c = 0; c < kBorderColumnCount; ++c)
            text += L" " + r.texts[c] + (r.changed[c] ? L"*" : L"");
        return text;
    }
    CBordersEditor editor{registry, prompter};
};

TEST_F(BordersEditorTest, LimitsAndDrawingNamesAreCheckedAndOnlyChangedCellsWritten) {
    const std::string file = "[Border]\r\nC = Big_C.dwg\r\n";
    WriteBytes(BordersIni(), file);
    ASSERT_TRUE(editor.Open(1));
    ASSERT_EQ(editor.Rows().size(), 10u);
    EXPECT_EQ(Cells(2), L"C Big_C.dwg 0.0,0.0 22.0,17.0 Rev_C.dwg");
    EXPECT_EQ(Cells(9), L"A4 Bord_A4.dwg 0.0,0.0 210.0,297.0 Rev_A4.dwg");

    using C = EBorderColumn;
    struct SCase {
        std::size_t row;
        EBorderColumn column;
        const wchar_t* typed;
        bool stored;
        const wchar_t* message;
    };
    const SCase cases[] = {
        {2, C::LimitsMax, L" 24 , 18.5 ", true, L""},
        {8, C::Revision, L"Rev_Custom.dwg", true, L""},
        {0, C::LimitsMin, L"abc", false,
         L"'abc' is not a valid lower-left limit of size A.\n\nGive two numbers separated by a "
         L"comma, x then y, such as 0.0,0.0."},
        {4, C::LimitsMax, L"44.0;34.0", false,
         L"'44.0;34.0' is not a valid upper-right limit of size E.\n\nGive two numbers separated "
         L"by a comma, x then y, such as 44.0,34.0."},
        {4, C::LimitsMax, L"1,2,3", false,
         L"'1,2,3' is not a valid upper-right limit of size E.\n\nGive two numbers separated by a "
         L"comma, x then y, such as 44.0,34.0."},
        {1, C::Border, L"  ", false,
         L"The border drawing of size B cannot be empty.\n\nGive the name of a drawing in the "
         L"borders folder, such as Bord_B.dwg."},
        {5, C::Revision, L"sub/Rev.dwg", false,
         L"'sub/Rev.dwg' is not a valid file name for the revision drawing of size A0.\n\nGive the "
         L"name of a drawing in the borders folder, such as Rev_A0.dwg."},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.typed);
        prompter.asked.clear();
        const std::wstring before = editor.Rows()[c.row].texts[static_cast<int>(c.column)];
        EXPECT_EQ(editor.SetCellText(c.row, c.column, c.typed), c.stored);
        if (!c.stored) {
            EXPECT_EQ(editor.Rows()[c.row].texts[static_cast<int>(c.column)], before);
        }
        EXPECT_EQ(prompter.asked.empty() ? L"" : prompter.asked[0].text, c.message);
    }
    EXPECT_EQ(Cells(2), L"C Big_C.dwg 0.0,0.0 24,18.5* Rev_C.dwg");
    EXPECT_EQ(ReadBytes(BordersIni()), file);
    ASSERT_TRUE(editor.Apply());
    EXPECT_FALSE(editor.ApplyEnabled());
    EXPECT_EQ(Cells(2), L"C Big_C.dwg 0.0,0.0 24,18.5 Rev_C.dwg");
    EXPECT_EQ(ReadBytes(BordersIni()), "[Border]\r\nC = Big_C.dwg\r\n\r\n[Limits - Max]\r\nC = "
                                       "24,18.5\r\n\r\n[Revision]\r\nA3 = Rev_Custom.dwg\r\n");
}

TEST_F(BordersEditorTest, RestoreDefaultsResetsEverySizeAndApplyWritesWhatDiffered) {
    WriteBytes(BordersIni(), "[Border]\r\nC = Big_C.dwg\r\n\r\n[Limits - Max]\r\nA4 = "
                             "297.0,210.0\r\n\r\n[Revision]\r\nB = Rev_Old.dwg\r\n");
    ASSERT_TRUE(editor.Open(1));
    editor.RestoreDefaults();
    EXPECT_TRUE(editor.ApplyEnabled());
    const wchar_t* shown[] = {
        L"A Bord_A.dwg 0.0,0.0 8.5,11.0 Rev_A.dwg",
        L"B Bord_B.dwg 0.0,0.0 17.0,11.0 Rev_B.dwg*",
        L"C Bord_C.dwg* 0.0,0.0 22.0,17.0 Rev_C.dwg",
        L"D Bord_D.dwg 0.0,0.0 34.0,22.0 Rev_D.dwg",
        L"E Bord_E.dwg 0.0,0.0 44.0,34.0 Rev_E.dwg",
        L"A0 Bord_A0.dwg 0.0,0.0 1189.0,841.0 Rev_A0.dwg",
        L"A1 Bord_A1.dwg 0.0,0.0 841.0,594.0 Rev_A1.dwg",
        L"A2 Bord_A2.dwg 0.0,0.0 594.0,420.0 Rev_A2.dwg",
        L"A3 Bord_A3.dwg 0.0,0.0 420.0,297.0 Rev_A3.dwg",
        L"A4 Bord_A4.dwg 0.0,0.0 210.0,297.0* Rev_A4.dwg",
    };
    for (std::size_t row = 0; row < std::size(shown); ++row)
        EXPECT_EQ(Cells(row), shown[row]);
    ASSERT_TRUE(editor.Apply());
    EXPECT_EQ(ReadBytes(BordersIni()), "[Border]\r\nC = Bord_C.dwg\r\n\r\n[Limits - Max]\r\nA4 = "
                                       "210.0,297.0\r\n\r\n[Revision]\r\nB = Rev_B.dwg\r\n");
    // Nothing differs from the defaults any more: nothing to apply.
    editor.RestoreDefaults();
    EXPECT_FALSE(editor.ApplyEnabled());
}

TEST_F(BordersEditorTest, DrawingsToPickComeFromTheBordersFolderAsItIsNow) {
    for (const char* name : {"b.DWG", "A.dwg", "notes.txt", ".dwg"})
        WriteBytes(BordersFolder() / name, "d");
    fs::create_directories(BordersFolder() / "old.dwg");
    ASSERT_TRUE(editor.Open(1));
    EXPECT_EQ(Joined(editor.DrawingFiles()), L"A.dwg|b.DWG");
    EXPECT_FALSE(editor.RefreshDrawingFiles());

    // The file locations page points the standard at another folder.
    WriteBytes(Root() / "other" / "Bord_Z.dwg", "d");
    CFileLocationsEditor locations(registry, prompter);
    ASSERT_TRUE(locations.Open(1));
    ASSERT_TRUE(locations.SetFolder(4, (Root() / "other").wstring()));
    ASSERT_TRUE(locations.Apply());
    EXPECT_TRUE(editor.RefreshDrawingFiles());
    EXPECT_EQ(Joined(editor.DrawingFiles()), L"Bord_Z.dwg");
}

TEST_F(PageEditorsTest, ClosingAModifiedPageAsksWhetherToSave) {
    CGeneralSettingsEditor general(registry, prompter);
    CFileLocationsEditor locations(registry, prompter);
    CBordersEditor borders(registry, prompter);
    struct SCase {
        const wchar_t* what;
        std::function<void()> change;
        std::function<bool()> close;
        std::function<bool()> saved;
    };
    const SCase cases[] = {
        {L"general settings",
         [&] { ASSERT_TRUE(general.Open(1) && general.Choose(EGeneralField::WorkingUnits, 0)); },
         [&] { return general.Close(); },
         [&] { return ReadBytes(GeneralIni()).find("Working = 0") != std::string::npos; }},
        {L"file locations",
         [&] { ASSERT_TRUE(locations.Open(1) && locations.SetFolder(0, RootText())); },
         [&] { return locations.Close(); },
         [&] {
             return ReadBytes(GeneralIni())
                        .find("ELECTRIC = " + Narrow(Root()) + test::N("/\r\n")) !=
                    std::string::npos;
         }},
        {L"border settings",
         [&] {
             ASSERT_TRUE(borders.Open(1) &&
                         borders.SetCellText(0, EBorderColumn::Border, L"X.dwg"));
         },
         [&] { return borders.Close(); }, [&] { return fs::exists(BordersIni()); }},
    };
    for (const SCase& c : cases) {
        for (const EPromptAnswer answer : {EPromptAnswer::No, EPromptAnswer::Yes}) {
            SCOPED_TRACE(std::wstring(c.what) + (answer == EPromptAnswer::Yes ? L" yes" : L" no"));
            c.change();
            prompter.asked.clear();
            prompter.answers = {answer};
            EXPECT_TRUE(c.close());
            ASSERT_EQ(prompter.asked.size(), 1u);
            EXPECT_EQ(prompter.asked[0].text, L"Standard 'Pipe' " + std::wstring(c.what) +
                                                  L" have been modified.\n\nDo you want to save "
                                                  L"your changes?");
            EXPECT_EQ(prompter.asked[0].buttons, EPromptButtons::YesNo);
            EXPECT_EQ(c.saved(), answer == EPromptAnswer::Yes);
            // Closed again unmodified, nothing is asked.
            prompter.asked.clear();
            EXPECT_TRUE(c.close());
            EXPECT_TRUE(prompter.asked.empty());
        }
        WriteBytes(GeneralIni(), General("/lib/", "1"));
    }
}

} // namespace page_editors_test
