#include "datafile/IniFile.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace {

using CEntries = std::vector<CVX2D_IniFile::SEntry>;

std::wstring Dump(const CVX2D_IniFile& ini) {
    std::wstring text;
    for (const auto& e : ini.Entries())
        text += L"[" + e.section + L"]" + e.key + L"=" + e.value + L";";
    return text;
}

class IniFileTest : public ::testing::Test {
protected:
    test::CTempDir dir;
    std::wstring File(const wchar_t* name = L"test.ini") const { return dir.File(name); }

    // Reads `bytes` as a datafile through a fresh document.
    std::wstring Parse(const std::string& bytes) {
        WriteBytes(test::P(File()), bytes);
        CVX2D_IniFile ini;
        EXPECT_EQ(ini.Open(File()), 0);
        EXPECT_FALSE(ini.IsModified());
        return Dump(ini);
    }
};

TEST_F(IniFileTest, ParsesLinesByTheirFirstSeparator) {
    struct SCase {
        const char* bytes;
        const wchar_t* entries;
    };
    const SCase cases[] = {
        {"[General]\r\nA = 1\r\n", L"[General]A=1;"},
        {"[ General ]\r\nA = 1", L"[General]A=1;"},
        {" [General]\r\nA = 1", L"[]A=1;"},
        {"[General] \r\nA = 1", L"[]A=1;"},
        {"[S]\r\nName =Value\r\nName= Value\r\nKey=Value\r\n", L""},
        {"[S]\r\nName = a = b\r\n", L"[S]Name=a = b;"},
        {"[S]\r\nName = \r\n", L"[S]Name=;"},
        {"[S]\r\nName = x  \r\n", L"[S]Name=x  ;"},
        {"[S]\r\nA = 1\r\nA = 2\r\n", L"[S]A=2;"},
        {"[S]\r\nA = 1\r\n[T]\r\nB = 2\r\n[S]\r\nC = 3\r\n", L"[S]A=1;[T]B=2;[S]C=3;"},
        {"; comment\r\n\r\n[S]\r\n\r\nA = 1\n", L"[S]A=1;"},
        {"[S]\r\n\tKey[] = v\r\n Key = w\r\n", L"[S]Key=v;[S] Key=w;"},
        {"[S]\r\nK = caf\xe9\r\n", L"[S]K=caf\u00e9;"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Parse(c.bytes), c.entries) << c.bytes;
}

TEST_F(IniFileTest, SavesSortedWithOneBlankLineBetweenSections) {
    struct SCase {
        std::vector<std::array<const wchar_t*, 3>> sets;
        const char* bytes;
    };
    const SCase cases[] = {
        {{{L"ProjectList", L"VX2D_PRJ_1", L"Metric Piping"}, {L"General", L"LastProjectId", L"12"}},
         "[General]\r\nLastProjectId = 12\r\n\r\n[ProjectList]\r\nVX2D_PRJ_1 = Metric Piping\r\n"},
        {{{L"S", L"a", L"1"}, {L"S", L"B", L"2"}, {L"S", L"Key2", L"3"}, {L"S", L"Key10", L"4"}},
         "[S]\r\nB = 2\r\nKey10 = 4\r\nKey2 = 3\r\na = 1\r\n"},
        {{{L"b", L"k", L"1"}, {L"A", L"k", L"2"}, {L"", L"loose", L"3"}},
         "loose = 3\r\n\r\n[A]\r\nk = 2\r\n\r\n[b]\r\nk = 1\r\n"},
        {{{L"S", L"K", L"caf\u00e9"}}, "[S]\r\nK = caf\xe9\r\n"},
    };
    for (const auto& c : cases) {
        {
            CVX2D_IniFile ini;
            ini.Open(File());
            for (const auto& [section, key, value] : c.sets) {
                ini.SetSection(section);
                ini.SetString(key, value);
            }
            ASSERT_EQ(ini.Save(), 0);
            EXPECT_FALSE(ini.IsModified());
        }
        EXPECT_EQ(ReadBytes(test::P(File())), c.bytes);
        fs::remove(test::P(File()));
    }
}

TEST_F(IniFileTest, KeepsTheSortedOrderInMemoryAfterSaving) {
    CVX2D_IniFile ini;
    ini.Open(File());
    ini.SetSection(L"Z");
    ini.SetString(L"b", L"1");
    ini.SetSection(L"A");
    ini.SetString(L"c", L"2");
    ini.SetString(L"a", L"3");
    EXPECT_EQ(Dump(ini), L"[Z]b=1;[A]c=2;[A]a=3;");
    ini.Save();
    EXPECT_EQ(Dump(ini), L"[A]a=3;[A]c=2;[Z]b=1;");
    ini.SetSection(L"Z");
    EXPECT_EQ(ini.String(L"b"), L"1");
}

TEST_F(IniFileTest, RoundTripsWhatItWrites) {
    const std::string bytes = "[A]\r\nEmpty = \r\nK = v = w\r\n\r\n[B]\r\nX =  lead\r\n";
    WriteBytes(test::P(File()), bytes);
    CVX2D_IniFile ini;
    ASSERT_EQ(ini.Open(File()), 0);
    ASSERT_EQ(ini.Save(true), 0);
    EXPECT_EQ(ReadBytes(test::P(File())), bytes);
}

TEST_F(IniFileTest, SettingAnEqualValueChangesNothing) {
    WriteBytes(test::P(File()), "[S]\r\nA = 1\r\n");
    CVX2D_IniFile ini;
    ini.Open(File());
    ini.SetSection(L"S");
    ini.SetString(L"A", L"1");
    ini.SetString(L"Absent", L"");
    EXPECT_FALSE(ini.IsModified());
    EXPECT_EQ(Dump(ini), L"[S]A=1;");
    ini.SetString(L"A", L"");
    EXPECT_TRUE(ini.IsModified());
    EXPECT_EQ(Dump(ini), L"[S]A=;");
}

TEST_F(IniFileTest, SavesOnlyWhenModifiedOrForced) {
    {
        CVX2D_IniFile ini;
        ini.Open(File());
        EXPECT_EQ(ini.Save(), 0);
    }
    EXPECT_FALSE(fs::exists(test::P(File()))) << "an unmodified document wrote a file";
    {
        CVX2D_IniFile ini;
        ini.Open(File());
        EXPECT_EQ(ini.Save(true), 0);
    }
    EXPECT_EQ(ReadBytes(test::P(File())), "");
}

TEST_F(IniFileTest, DestructorSavesAModifiedDocumentUnlessAutoSaveIsOff) {
    {
        CVX2D_IniFile ini;
        ini.Open(File(L"auto.ini"));
        ini.SetSection(L"S");
        ini.SetInt(L"A", 1);
    }
    EXPECT_EQ(ReadBytes(test::P(File(L"auto.ini"))), "[S]\r\nA = 1\r\n");
    {
        CVX2D_IniFile ini;
        ini.SetAutoSave(false);
        ini.Open(File(L"manual.ini"));
        ini.SetSection(L"S");
        ini.SetInt(L"A", 1);
    }
    EXPECT_FALSE(fs::exists(test::P(File(L"manual.ini"))));
}

TEST_F(IniFileTest, WritesNumbersInTheCLibraryFormats) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.SetSection(L"S");
    ini.SetDouble(L"d1", 0.1);
    ini.SetDouble(L"d2", 2.5);
    ini.SetDouble(L"d3", -1234.56789);
    ini.SetInt(L"i", -42);
    ini.SetInt(L"u", std::uint32_t{0xFFFFFFFF});
    ini.SetLong(L"l", 2147483647);
    ini.SetBool(L"t", true);
    ini.SetBool(L"f", false);
    EXPECT_EQ(Dump(ini), L"[S]d1=0.100000;[S]d2=2.500000;[S]d3=-1234.567890;[S]i=-42;[S]u=-1;"
                         L"[S]l=2147483647;[S]t=1;[S]f=0;");
}

TEST_F(IniFileTest, ReadsNumbersLikeTheCLibrary) {
    WriteBytes(test::P(File()), "[S]\r\nbool2 = 2\r\nboolText = abc\r\nlead =  42abc\r\n"
                                "neg = -7\r\nhuge = 99999999999\r\nreal = 3.5xyz\r\nempty = \r\n");
    CVX2D_IniFile ini;
    ini.Open(File());
    ini.SetSection(L"S");
    bool b = false;
    int i = 0;
    std::int32_t l = 0;
    double d = 0;
    ini.GetBool(L"bool2", b, false);
    EXPECT_TRUE(b);
    ini.GetBool(L"boolText", b, true);
    EXPECT_FALSE(b);
    ini.GetBool(L"missing", b, true);
    EXPECT_TRUE(b);
    ini.GetInt(L"lead", i, 0);
    EXPECT_EQ(i, 42);
    ini.GetInt(L"neg", i, 0);
    EXPECT_EQ(i, -7);
    ini.GetLong(L"huge", l, 0);
    EXPECT_EQ(l, 2147483647);
    ini.GetInt(L"empty", i, 5);
    EXPECT_EQ(i, 0) << "an empty value is a value, not the default";
    ini.GetInt(L"missing", i, 5);
    EXPECT_EQ(i, 5);
    ini.GetDouble(L"real", d, 0);
    EXPECT_DOUBLE_EQ(d, 3.5);
    ini.GetDouble(L"missing", d, 0.25);
    EXPECT_DOUBLE_EQ(d, 0.25);
}

TEST_F(IniFileTest, TrimsSectionsOfBlanksButKeysOnlyOfTabsAndBrackets) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.SetSection(L" [Units]\t\n");
    EXPECT_EQ(ini.GetSection(), L"Units");
    ini.SetString(L"\t[Key]\n", L"v");
    ini.SetString(L" Key", L"w");
    EXPECT_EQ(Dump(ini), L"[Units]Key=v;[Units] Key=w;");
    EXPECT_EQ(ini.String(L"[Key]"), L"v");
}

TEST_F(IniFileTest, ComparesCaseSensitivelyUnlessToldOtherwise) {
    WriteBytes(test::P(File()), "[Units]\r\nWorking = 1\r\n");
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.Open(File());
    ini.SetSection(L"units");
    EXPECT_EQ(ini.String(L"WORKING", L"none"), L"none");
    EXPECT_EQ(ini.FindKeyByValue(L"1"), L"");
    ini.SetCaseSensitive(false);
    EXPECT_EQ(ini.String(L"WORKING", L"none"), L"1");
    EXPECT_EQ(ini.FindKeyByValue(L"1"), L"Working");
    // Storing always matches exactly: a new entry under the other spelling.
    ini.SetString(L"WORKING", L"2");
    EXPECT_EQ(Dump(ini), L"[Units]Working=1;[units]WORKING=2;");
}

TEST_F(IniFileTest, DeletesTheFirstMatchInTheCurrentSectionAndWholeSectionsAnywhere) {
    WriteBytes(test::P(File()), "[A]\r\nK = 1\r\nL = 2\r\n\r\n[B]\r\nK = 3\r\n");
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.Open(File());
    ini.SetSection(L"B");
    ini.DeleteKey(L"L");
    ini.DeleteKey(L"k");
    EXPECT_FALSE(ini.IsModified());
    ini.DeleteKey(L"K");
    EXPECT_TRUE(ini.IsModified());
    EXPECT_EQ(Dump(ini), L"[A]K=1;[A]L=2;");
    ini.Save();
    ini.DeleteSection(L"a");
    EXPECT_FALSE(ini.IsModified());
    ini.DeleteSection(L"A");
    EXPECT_TRUE(ini.IsModified());
    EXPECT_EQ(Dump(ini), L"");
    EXPECT_EQ(ini.GetSection(), L"B");
}

TEST_F(IniFileTest, FindsTheFirstKeyHoldingAValueInTheCurrentSection) {
    WriteBytes(test::P(File()), "[A]\r\nx = Pipe\r\n\r\n[B]\r\nk2 = Pipe\r\nk1 = Pipe\r\n");
    CVX2D_IniFile ini;
    ini.Open(File());
    ini.SetSection(L"B");
    EXPECT_EQ(ini.FindKeyByValue(L"Pipe"), L"k2");
    ini.SetString(L"k2", L"Other");
    EXPECT_EQ(ini.FindKeyByValue(L"Pipe"), L"k1");
    EXPECT_EQ(ini.FindKeyByValue(L"pipe"), L"");
    std::vector<std::wstring> keys, values;
    ini.GetSectionEntries(keys, values);
    EXPECT_EQ(keys, (std::vector<std::wstring>{L"k2", L"k1"}));
    EXPECT_EQ(values, (std::vector<std::wstring>{L"Other", L"Pipe"}));
    ini.SetAutoSave(false);
}

TEST_F(IniFileTest, AFailedOpenKeepsTheDocument) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.SetSection(L"S");
    ini.SetString(L"A", L"1");
    EXPECT_EQ(ini.Open(File(L"missing.ini")), 2);
    EXPECT_EQ(Dump(ini), L"[S]A=1;");
    std::int32_t last = -1;
    CVX2D_IniFile fresh;
    EXPECT_EQ(fresh.Open(File(L"missing.ini")), 2);
    fresh.SetSection(L"General");
    fresh.GetLong(L"LastProjectId", last, 0);
    EXPECT_EQ(last, 0);
}

TEST_F(IniFileTest, AFailedSaveLeavesTheOldFileWholeAndTheDocumentModified) {
    const std::string old = "[S]\r\nA = 1\r\n";
    WriteBytes(test::P(File()), old);
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.Open(File());
    ini.SetSection(L"S");
    ini.SetString(L"A", L"\u20ac"); // cannot be one byte
    EXPECT_EQ(ini.Save(), 3);
    EXPECT_TRUE(ini.IsModified());
    ini.SetString(L"A", L"two\nlines");
    EXPECT_EQ(ini.Save(), 3);
    EXPECT_EQ(ReadBytes(test::P(File())), old);

    CVX2D_IniFile elsewhere;
    elsewhere.SetAutoSave(false);
    elsewhere.Open(File(L"no-such-folder/x.ini"));
    elsewhere.SetSection(L"S");
    elsewhere.SetString(L"A", L"1");
    EXPECT_EQ(elsewhere.Save(), 3);
    EXPECT_TRUE(elsewhere.IsModified());

    std::size_t files = 0;
    for (const auto& entry : fs::directory_iterator(dir.Path()))
        files += entry.is_regular_file() ? 1 : 0;
    EXPECT_EQ(files, 1u) << "a temporary file was left behind";
}

TEST_F(IniFileTest, CopiesEverythingButTheLock) {
    WriteBytes(test::P(File()), "[S]\r\nA = 1\r\n");
    CVX2D_IniFile original;
    ASSERT_EQ(original.OpenForUpdate(File()), 0);
    original.SetSection(L"S");
    original.SetString(L"B", L"2");
    CVX2D_IniFile copy(original);
    copy.SetAutoSave(false);
    EXPECT_EQ(copy.GetPath(), File());
    EXPECT_EQ(copy.GetSection(), L"S");
    EXPECT_TRUE(copy.IsModified());
    EXPECT_EQ(Dump(copy), L"[S]A=1;[S]B=2;");
    copy = copy;
    EXPECT_EQ(Dump(copy), L"[S]A=1;[S]B=2;");
    original.SetAutoSave(false);
}

TEST_F(IniFileTest, OpenForUpdateHoldsTheLockUntilTheDocumentGoes) {
    const std::wstring lock = CVX2D_FileLock::LockPathOf(File());
    {
        CVX2D_IniFile ini;
        EXPECT_EQ(ini.OpenForUpdate(File()), 0) << "a missing file is an empty document";
        EXPECT_TRUE(fs::exists(test::P(lock)));
        CVX2D_IniFile nested;
        EXPECT_EQ(nested.OpenForUpdate(File()), 2) << "a nested update would lose the outer one";
        CVX2D_IniFile reader;
        EXPECT_EQ(reader.Open(File()), 2) << "readers do not wait; the file is not there yet";
        ini.SetSection(L"S");
        ini.SetString(L"A", L"1");
    }
    EXPECT_FALSE(fs::exists(test::P(lock)));
    EXPECT_EQ(ReadBytes(test::P(File())), "[S]\r\nA = 1\r\n");
}

} // namespace
