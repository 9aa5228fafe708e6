#include "datafile/IniFile.h"
#include "datafile/DatafileProblem.h"
#include "platform/System.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <thread>
#include <tuple>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace ini_file_test {

std::wstring Dump(const CVX2D_IniFile& ini) {
    std::wstring text;
    for (const auto& e : ini.Entries())
        text += L"[" + e.section + L"]" + e.key + L"=" + e.value + L";";
    return text;
}

class IniFileTest : public ::testing::Test {
protected:
    std::wstring File(const wchar_t* name = L"test.ini") const { return dir.File(name); }
    // A document without automatic saving, read from `bytes`.
    void Read(CVX2D_IniFile& ini, const std::string& bytes) {
        WriteBytes(test::P(File()), bytes);
        ini.SetAutoSave(false);
        EXPECT_EQ(ini.Open(File()), 0);
        EXPECT_FALSE(ini.IsModified());
    }

    test::CTempDir dir;
};

TEST_F(IniFileTest, ParsesLinesByTheirFirstSeparator) {
    const std::pair<const char*, const wchar_t*> cases[] = {
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
        // A key that would end in " =" could not be written back as itself.
        {"[S]\r\nWalls = 7\r\nWalls =\t = 8\r\nW =] = 9\r\n", L"[S]Walls=7;"},
    };
    for (const auto& [bytes, entries] : cases) {
        CVX2D_IniFile ini;
        Read(ini, bytes);
        EXPECT_EQ(Dump(ini), entries) << bytes;
    }
}

TEST_F(IniFileTest, SavesSortedWithOneBlankLineBetweenSections) {
    const std::pair<std::vector<std::array<const wchar_t*, 3>>, const char*> cases[] = {
        {{{L"ProjectList", L"VX2D_PRJ_1", L"Metric Piping"}, {L"General", L"LastProjectId", L"12"}},
         "[General]\r\nLastProjectId = 12\r\n\r\n[ProjectList]\r\nVX2D_PRJ_1 = Metric Piping\r\n"},
        {{{L"S", L"a", L"1"}, {L"S", L"B", L"2"}, {L"S", L"Key2", L"3"}, {L"S", L"Key10", L"4"}},
         "[S]\r\nB = 2\r\nKey10 = 4\r\nKey2 = 3\r\na = 1\r\n"},
        {{{L"b", L"k", L"1"}, {L"A", L"k", L"2"}, {L"", L"loose", L"3"}},
         "loose = 3\r\n\r\n[A]\r\nk = 2\r\n\r\n[b]\r\nk = 1\r\n"},
        {{{L"S", L"K", L"caf\u00e9"}}, "[S]\r\nK = caf\xe9\r\n"},
    };
    for (const auto& [sets, bytes] : cases) {
        {
            CVX2D_IniFile ini;
            ini.Open(File());
            for (const auto& [section, key, value] : sets) {
                ini.SetSection(section);
                ini.SetString(key, value);
            }
            ASSERT_EQ(ini.Save(), 0);
            EXPECT_FALSE(ini.IsModified());
            // The document keeps the sorted order and still finds every entry.
            EXPECT_TRUE(std::is_sorted(
                ini.Entries().begin(), ini.Entries().end(), [](const auto& a, const auto& b) {
                    return std::tie(a.section, a.key) < std::tie(b.section, b.key);
                }));
            for (const auto& [section, key, value] : sets) {
                ini.SetSection(section);
                EXPECT_EQ(ini.String(key), value);
            }
        }
        EXPECT_EQ(ReadBytes(test::P(File())), bytes);
        fs::remove(test::P(File()));
    }
}

TEST_F(IniFileTest, RoundTripsWhatItWrites) {
    const std::string bytes = "[A]\r\nEmpty = \r\nK = v = w\r\n\r\n[B]\r\nX =  lead\r\n";
    CVX2D_IniFile ini;
    Read(ini, bytes);
    ASSERT_EQ(ini.Save(true), 0);
    EXPECT_EQ(ReadBytes(test::P(File())), bytes);
}

TEST_F(IniFileTest, SettingAnEqualValueChangesNothing) {
    CVX2D_IniFile ini;
    Read(ini, "[S]\r\nA = 1\r\n");
    ini.SetSection(L"S");
    ini.SetString(L"A", L"1");
    ini.SetString(L"Absent", L"");
    EXPECT_FALSE(ini.IsModified());
    EXPECT_EQ(Dump(ini), L"[S]A=1;");
    ini.SetString(L"A", L"");
    EXPECT_TRUE(ini.IsModified());
    EXPECT_EQ(Dump(ini), L"[S]A=;");
}

TEST_F(IniFileTest, SavesWhenModifiedOrForcedAndOnDestructionUnlessAutoSaveIsOff) {
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
    for (const bool autoSave : {true, false}) {
        {
            CVX2D_IniFile ini;
            ini.SetAutoSave(autoSave);
            ini.Open(File(autoSave ? L"auto.ini" : L"manual.ini"));
            ini.SetSection(L"S");
            ini.SetInt(L"A", 1);
        }
    }
    EXPECT_EQ(ReadBytes(test::P(File(L"auto.ini"))), "[S]\r\nA = 1\r\n");
    EXPECT_FALSE(fs::exists(test::P(File(L"manual.ini"))));
}

TEST_F(IniFileTest, WritesNumbersInTheCLibraryFormats) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.SetSection(L"S");
    ini.SetDouble(L"d1", 0.1);
    ini.SetDouble(L"d2", -1234.56789);
    ini.SetInt(L"i", -42);
    ini.SetInt(L"u", std::uint32_t{0xFFFFFFFF});
    ini.SetLong(L"l", 2147483647);
    ini.SetBool(L"t", true);
    ini.SetBool(L"f", false);
    EXPECT_EQ(Dump(ini), L"[S]d1=0.100000;[S]d2=-1234.567890;[S]i=-42;[S]u=-1;"
                         L"[S]l=2147483647;[S]t=1;[S]f=0;");
}

// What the C library's conversions give in the "C" locale, whatever locale
// the process is in: a datafile written in one office is read in another.
void ExpectNumbersReadLikeTheCLibrary(CVX2D_IniFile& ini) {
    ini.SetSection(L"S");
    auto boolean = [&](const wchar_t* key, bool def) {
        bool value = !def;
        ini.GetBool(key, value, def);
        return value;
    };
    auto integer = [&](const wchar_t* key, int def) {
        int value = def + 1;
        ini.GetInt(key, value, def);
        return value;
    };
    auto real = [&](const wchar_t* key, double def) {
        double value = def + 1;
        ini.GetDouble(key, value, def);
        return value;
    };
    EXPECT_TRUE(boolean(L"bool2", false));
    EXPECT_FALSE(boolean(L"boolText", true));
    EXPECT_TRUE(boolean(L"missing", true));
    EXPECT_EQ(integer(L"lead", 0), 42);
    EXPECT_EQ(integer(L"neg", 0), -7);
    EXPECT_EQ(ini.Long(L"huge", 0), 2147483647);
    EXPECT_EQ(integer(L"empty", 5), 0) << "an empty value is a value, not the default";
    EXPECT_EQ(integer(L"missing", 5), 5);
    const std::pair<const wchar_t*, double> reals[] = {
        {L"real", 3.5},   {L"half", 0.5},    {L"six", 2.5},     {L"comma", 2.0},
        {L"exp", 1500.0}, {L"blank", -0.25}, {L"dot", 0.75},    {L"plus", 4.0},
        {L"hexish", 0.0}, {L"word", 0.0},    {L"tiny", 1e-300}, {L"sign", 0.0},
    };
    for (const auto& [key, expected] : reals)
        EXPECT_DOUBLE_EQ(real(key, 9), expected) << key;
    EXPECT_DOUBLE_EQ(real(L"missing", 0.25), 0.25) << "the default goes through its text";
}

const char* const kNumbers =
    "[S]\r\nbool2 = 2\r\nboolText = abc\r\nlead =  42abc\r\nneg = -7\r\n"
    "huge = 99999999999\r\nreal = 3.5xyz\r\nempty = \r\nhalf = 0.5\r\n"
    "six = 2.500000\r\ncomma = 2,5\r\nexp = 1.5e3\r\nblank = \t -.25\r\ndot = .75\r\n"
    "plus = +4\r\nhexish = 0x10\r\nword = abc\r\ntiny = 1e-300\r\nsign = -\r\n";

TEST_F(IniFileTest, ReadsNumbersLikeTheCLibrary) {
    CVX2D_IniFile ini;
    Read(ini, kNumbers);
    ExpectNumbersReadLikeTheCLibrary(ini);
}

TEST_F(IniFileTest, ReadsAndWritesNumbersTheSameUnderADecimalCommaLocale) {
    const test::CDecimalCommaLocale comma;
    if (!comma.Available())
        GTEST_SKIP() << "no decimal-comma locale on this system (generate de_DE.UTF-8)";
    CVX2D_IniFile ini;
    Read(ini, kNumbers);
    ExpectNumbersReadLikeTheCLibrary(ini);
    ini.SetSection(L"T");
    ini.SetDouble(L"d", 2.5);
    ini.SetDouble(L"e", 0.1);
    EXPECT_EQ(ini.String(L"d"), L"2.500000");
    EXPECT_EQ(ini.String(L"e"), L"0.100000");
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
    CVX2D_IniFile ini;
    Read(ini, "[Units]\r\nWorking = 1\r\n");
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

TEST_F(IniFileTest, DeletesTheMatchInTheCurrentSectionAndWholeSectionsAnywhere) {
    CVX2D_IniFile ini;
    Read(ini, "[A]\r\nK = 1\r\nL = 2\r\n\r\n[B]\r\nK = 3\r\n");
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

// Deleted entries are only marked until the next full pass; every way of
// reading the document must behave as if they were gone.
TEST_F(IniFileTest, DeletedEntriesAreGoneForEveryReader) {
    CVX2D_IniFile ini;
    Read(ini, "[L]\r\nP1 = Pipe\r\nP2 = Tank\r\nP3 = Pipe\r\nP4 = Vent\r\n");
    ini.SetSection(L"L");
    EXPECT_EQ(ini.FindKeyByValue(L"Pipe"), L"P1");
    ini.DeleteKey(L"P1");
    ini.DeleteKey(L"P4");
    EXPECT_EQ(ini.FindKeyByValue(L"Pipe"), L"P3");
    EXPECT_EQ(ini.FindKeyByValue(L"Vent"), L"");
    EXPECT_FALSE(ini.HasKey(L"P1"));
    // A deleted key set again comes back, after the others.
    ini.SetString(L"P1", L"Again");
    EXPECT_EQ(ini.String(L"P3"), L"Pipe");
    ini.DeleteKey(L"P2");
    CVX2D_IniFile copy(ini);
    CVX2D_IniFile assigned;
    assigned = ini;
    for (const CVX2D_IniFile* document : {&ini, &copy, &assigned}) {
        EXPECT_EQ(Dump(*document), L"[L]P3=Pipe;[L]P1=Again;");
        std::vector<std::wstring> keys, values;
        document->GetSectionEntries(keys, values);
        EXPECT_EQ(keys, (std::vector<std::wstring>{L"P3", L"P1"}));
    }
    ini.SetCaseSensitive(false);
    EXPECT_EQ(ini.String(L"p2", L"none"), L"none");
    ini.SetCaseSensitive(true);
    EXPECT_EQ(ini.Save(true), 0);
    EXPECT_EQ(ReadBytes(test::P(File())), "[L]\r\nP1 = Again\r\nP3 = Pipe\r\n");
}

// Thousands of sets, deletes and look-ups in a few sections, with keys that
// collide often, against a plain map: the engine's index must never lose or
// invent an entry.
TEST_F(IniFileTest, LookUpsFollowEverySetAndDeleteInAnyOrder) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    std::map<std::pair<std::wstring, std::wstring>, std::wstring> model;
    std::mt19937 random(11);
    const std::wstring sections[] = {L"A", L"B", L"ProjectList"};
    for (int step = 0; step < 20000; ++step) {
        const std::wstring& section = sections[random() % 3];
        const std::wstring key = L"K" + std::to_wstring(random() % 300);
        ini.SetSection(section);
        switch (random() % 4) {
        case 0:
        case 1: {
            const std::wstring value = L"v" + std::to_wstring(random() % 50);
            ini.SetString(key, value);
            model[{section, key}] = value;
            break;
        }
        case 2:
            ini.DeleteKey(key);
            model.erase({section, key});
            break;
        default: {
            const auto it = model.find({section, key});
            ASSERT_EQ(ini.String(key, L"-"), it == model.end() ? L"-" : it->second) << step;
            // The first key of the section holding a value, in document order.
            const std::wstring value = L"v" + std::to_wstring(random() % 50);
            std::wstring first;
            for (const auto& e : ini.Entries()) {
                if (e.section == section && e.value == value) {
                    first = e.key;
                    break;
                }
            }
            ASSERT_EQ(ini.FindKeyByValue(value), first) << step;
            if (!first.empty()) {
                ASSERT_EQ((model[{section, first}]), value) << step;
            }
        }
        }
    }
    EXPECT_EQ(ini.Entries().size(), model.size());
}

TEST_F(IniFileTest, FindsTheFirstKeyHoldingAValueInTheCurrentSection) {
    CVX2D_IniFile ini;
    Read(ini, "[A]\r\nx = Pipe\r\n\r\n[B]\r\nk2 = Pipe\r\nk1 = Pipe\r\n");
    ini.SetSection(L"B");
    EXPECT_EQ(ini.FindKeyByValue(L"Pipe"), L"k2");
    ini.SetString(L"k2", L"Other");
    EXPECT_EQ(ini.FindKeyByValue(L"Pipe"), L"k1");
    EXPECT_EQ(ini.FindKeyByValue(L"pipe"), L"");
    std::vector<std::wstring> keys, values;
    ini.GetSectionEntries(keys, values);
    EXPECT_EQ(keys, (std::vector<std::wstring>{L"k2", L"k1"}));
    EXPECT_EQ(values, (std::vector<std::wstring>{L"Other", L"Pipe"}));
}

TEST_F(IniFileTest, AFailedOpenKeepsTheDocument) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.SetSection(L"S");
    ini.SetString(L"A", L"1");
    EXPECT_EQ(ini.Open(File(L"missing.ini")), 2);
    EXPECT_EQ(Dump(ini), L"[S]A=1;");
}

TEST_F(IniFileTest, AFailedSaveLeavesTheOldFileWholeAndTheDocumentModified) {
    const std::string old = "[S]\r\nA = 1\r\n";
    CVX2D_IniFile ini;
    Read(ini, old);
    ini.SetSection(L"S");
    for (const wchar_t* refused : {L"\u20ac", L"two\nlines"}) {
        ini.SetString(L"A", refused);
        EXPECT_EQ(ini.Save(), 3);
        EXPECT_TRUE(ini.IsModified());
    }
    ini.SetString(L"A", L"1");
    // Keys that would read back as other keys.
    for (const wchar_t* refused : {L"B =", L"B = C"}) {
        CVX2D_IniFile copy(ini);
        copy.SetAutoSave(false);
        copy.SetString(refused, L"2");
        EXPECT_EQ(copy.Save(), 3) << refused;
    }
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

// Changes A to 2 in the datafile at `path` and saves.
int ChangeAndSave(const std::wstring& path) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.Open(path);
    ini.SetSection(L"S");
    ini.SetString(L"A", L"2");
    return ini.Save();
}

TEST_F(IniFileTest, ASaveKeepsTheFilesModeAndWritesThroughLinks) {
    const fs::path file = test::P(File());
    WriteBytes(file, "[S]\r\nA = 1\r\n");
#ifndef _WIN32
    // Windows files have no mode: the folder's access rules apply.
    const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(file, mode);
    ASSERT_EQ(ChangeAndSave(File()), 0);
    EXPECT_EQ(fs::status(file).permissions(), mode);
#endif

    // Offices point a standard's file at a shared one with a link.
    const fs::path shared = dir.Path() / "shared" / "Layers.ini";
    WriteBytes(shared, "[S]\r\nA = 1\r\n");
    const fs::path link = dir.Path() / "Layers.ini";
    std::error_code ec;
    fs::create_symlink(shared, link, ec);
    if (ec)
        GTEST_SKIP() << "this system cannot make symbolic links: " << ec.message();
    ASSERT_EQ(ChangeAndSave(dir.File(L"Layers.ini")), 0);
    EXPECT_TRUE(fs::is_symlink(link)) << "the link was replaced by a plain file";
    EXPECT_EQ(ReadBytes(shared), "[S]\r\nA = 2\r\n");
}

// Another workstation reading the file while it is saved: the save puts
// the new file in its place all the same (on Windows once the reader is done).
TEST_F(IniFileTest, ASaveReplacesAFileThatIsBeingRead) {
    WriteBytes(test::P(File()), "[S]\r\nA = 1\r\n");
    std::FILE* reading = platform::OpenFile(test::P(File()), "rb");
    ASSERT_NE(reading, nullptr);
    std::thread reader([reading] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        std::fclose(reading);
    });
    EXPECT_EQ(ChangeAndSave(File()), 0) << test::P(DatafileProblemText());
    reader.join();
    EXPECT_EQ(ReadBytes(test::P(File())), "[S]\r\nA = 2\r\n");
}

TEST_F(IniFileTest, ASaveRemovesTheTemporaryFilesOfSavesThatWereKilled) {
    const std::int64_t gone = platform::StartProcess(SD_TEST_WORKER, {});
    ASSERT_GT(gone, 0);
    platform::WaitProcess(gone);
    // A process that is still running: its save may still be going on.
    const std::wstring ready = dir.File(L"alive-ready");
    const std::int64_t alive =
        platform::StartProcess(SD_TEST_WORKER, {L"hold", dir.File(L"other.ini"), ready});
    ASSERT_GT(alive, 0);
    for (int i = 0; i < 1000 && !fs::exists(test::P(ready)); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    const std::string killed = "test.ini." + std::to_string(gone) + ".tmp";
    const std::string running = "test.ini." + std::to_string(alive) + ".tmp";
    for (const std::string& name :
         {killed, running, std::string("other.ini.") + std::to_string(gone) + ".tmp",
          std::string("test.ini.backup.tmp")})
        WriteBytes(dir.Path() / name, "half a file");
    EXPECT_EQ(ChangeAndSave(File()), 0);
    test::KillProcess(alive);
    platform::WaitProcess(alive);
    EXPECT_FALSE(fs::exists(dir.Path() / killed));
    for (const std::string& kept : {running, std::string("test.ini.backup.tmp")})
        EXPECT_TRUE(fs::exists(dir.Path() / kept)) << kept;
    EXPECT_TRUE(fs::exists(dir.Path() / ("other.ini." + std::to_string(gone) + ".tmp")));
}

TEST_F(IniFileTest, ASaveWaitsForAnotherWriterAndSaysWhyItGaveUp) {
    CVX2D_FileLock::SetWaitLimit(std::chrono::milliseconds(200));
    CVX2D_FileLock other;
    std::thread holder([&] {
        ASSERT_TRUE(other.Acquire(File()));
        std::this_thread::sleep_for(std::chrono::milliseconds(600));
        other.Release();
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    ClearDatafileProblem();
    EXPECT_EQ(ChangeAndSave(File()), 3);
    EXPECT_EQ(LastDatafileProblem().kind, EDatafileProblem::Busy);
    EXPECT_FALSE(fs::exists(test::P(File())));
    holder.join();
    CVX2D_FileLock::SetWaitLimit(std::chrono::seconds(20));
    EXPECT_EQ(ChangeAndSave(File()), 0);
}

TEST_F(IniFileTest, CopiesEverythingButTheLock) {
    WriteBytes(test::P(File()), "[S]\r\nA = 1\r\n");
    CVX2D_IniFile original;
    original.SetAutoSave(false);
    ASSERT_EQ(original.OpenForUpdate(File()), 0);
    original.SetSection(L"S");
    original.SetString(L"B", L"2");
    const fs::path lock = test::P(CVX2D_FileLock::LockPathOf(File()));
    {
        CVX2D_IniFile copy(original);
        EXPECT_EQ(copy.GetPath(), File());
        EXPECT_EQ(copy.GetSection(), L"S");
        EXPECT_TRUE(copy.IsModified());
        const CVX2D_IniFile& same = copy;
        copy = same;
        EXPECT_EQ(Dump(copy), L"[S]A=1;[S]B=2;");
    }
    EXPECT_TRUE(fs::exists(lock)) << "the copy released the original's lock";
    original.Unlock();
    EXPECT_FALSE(fs::exists(lock));
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

} // namespace ini_file_test
