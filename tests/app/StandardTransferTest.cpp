// Export and import of standards as archives: the archive's exact form, the
// round trip, old ".xpj" exports, archives that try to escape, files that are
// no archives and the limits of one import.
#include "app/StandardTransfer.h"
#include "contents/SpecRegister.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"
#include "store/IniRegistry.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <zip.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace standard_transfer_test {

std::map<std::string, std::string> Files(const fs::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            files[entry.path().lexically_relative(folder).generic_string()] =
                ReadBytes(entry.path());
    }
    return files;
}

using SEntries = std::vector<std::pair<std::string, std::string>>;

// An archive with the given entries; an empty content marks a link entry.
void MakeArchive(const fs::path& path, const SEntries& entries,
                 zip_int32_t method = ZIP_CM_DEFAULT) {
    int error = 0;
    zip_t* zip = zip_open(path.string().c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    ASSERT_NE(zip, nullptr);
    for (const auto& [name, content] : entries) {
        const bool link = content.empty();
        const std::string data = link ? std::string("/etc/passwd") : content;
        void* copy = std::malloc(data.size());
        std::memcpy(copy, data.data(), data.size());
        zip_source_t* source = zip_source_buffer(zip, copy, data.size(), 1);
        const zip_int64_t index = zip_file_add(zip, name.c_str(), source, 0);
        ASSERT_GE(index, 0) << name;
        zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), method, 0);
        if (link)
            zip_file_set_external_attributes(zip, static_cast<zip_uint64_t>(index), 0,
                                             ZIP_OPSYS_UNIX, (0120777u) << 16);
    }
    ASSERT_EQ(zip_close(zip), 0);
}

enum EField { eFlags, eMethod, eSize };

// Rewrites a field of an entry's local and central headers, as a hostile or
// foreign tool could have written it.
void Patch(const fs::path& archive, std::size_t entry, EField field, std::uint32_t value) {
    std::string bytes = ReadBytes(archive);
    const struct {
        const char* signature;
        std::size_t offsets[3];
    } headers[] = {{"PK\x03\x04", {6, 8, 22}}, {"PK\x01\x02", {8, 10, 24}}};
    for (const auto& header : headers) {
        std::size_t at = std::string::npos;
        for (std::size_t k = 0, from = 0; k <= entry; ++k, from = at + 4)
            at = bytes.find(header.signature, from, 4);
        ASSERT_NE(at, std::string::npos);
        for (std::size_t b = 0; b < (field == eSize ? 4u : 2u); ++b)
            bytes[at + header.offsets[field] + b] = static_cast<char>((value >> (8 * b)) & 0xff);
    }
    WriteBytes(archive, bytes);
}

// A datafiles folder with the import around it.
struct SWorld : test::CStandardOnDisk {
    // The standards, active and deleted, as "id name".
    std::vector<std::wstring> Standards() {
        std::vector<SProjectInfo> list;
        EXPECT_EQ(registry.ListProjects(true, true, list), eProjectOk);
        std::vector<std::wstring> names;
        for (const auto& standard : list)
            names.push_back(std::to_wstring(standard.id) + L" " + standard.name);
        return names;
    }
    std::vector<std::string> Folders() {
        std::vector<std::string> names;
        std::error_code ec; // no "Projects" folder before the first standard
        for (const auto& entry : fs::directory_iterator(Root() / "Projects", ec))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    fs::path Outside(const std::string& name) { return outside.Path() / name; }
    std::wstring ImportError(const std::string& file, const std::wstring& why) {
        return L"Error importing '" + platform::FromPath(Outside(file)) + L"'\n\n" + why;
    }

    test::CTempDir config, outside;
    CIniRegistry machine{config.File(L"machine"), config.File(L"user")};
    CProfile profile{machine};
    CVX2D_ClientRegistry clients{Datafiles()};
    CStandardTransfer transfer{registry, profile, prompter};
};

class StandardTransferTest : public ::testing::Test, protected SWorld {};

TEST_F(StandardTransferTest, ExportThenImportGivesTheSameTree) {
    const std::int32_t id = Create(L"Pipe");
    WriteBytes(FolderOf(id) / "Lines.ini", "[LineList]\r\nVX2D_LINE_90 = Main\r\n");
    WriteBytes(FolderOf(id) / "PID BOMs" / "Deep" / "bom.bin", std::string("\0\x01\xff", 3));
    fs::create_directories(FolderOf(id) / "Empty");
    const std::wstring archive = outside.File(L"Pipe.xst");
    std::vector<std::wstring> reported;
    ASSERT_TRUE(
        transfer.Export(id, archive, [&](std::size_t, std::size_t, const std::wstring& file) {
            reported.push_back(file);
            return true;
        }));
    EXPECT_EQ(transfer.ExportFolder(), outside.Text());
    EXPECT_EQ(transfer.ProposedExportFile(L"Tank"), outside.Text() + L"Tank.xst");

    int error = 0;
    zip_t* zip = zip_open(test::P(archive).string().c_str(), ZIP_RDONLY, &error);
    ASSERT_NE(zip, nullptr);
    int length = 0;
    EXPECT_STREQ(zip_get_archive_comment(zip, &length, 0),
                 "VANDIX 2D Exported Standard V2017.0 - VANDIX Software");
    std::vector<std::string> names;
    for (zip_int64_t i = 0; i < zip_get_num_entries(zip, 0); ++i) {
        zip_stat_t stat;
        zip_stat_index(zip, static_cast<zip_uint64_t>(i), 0, &stat);
        names.push_back(stat.name);
        EXPECT_EQ(stat.comp_method, ZIP_CM_DEFLATE);
    }
    zip_close(zip);
    EXPECT_EQ(names,
              (std::vector<std::string>{"General.ini", "Lines.ini", "PID BOMs/Deep/bom.bin"}));
    EXPECT_EQ(reported.size(), 4u) << "one call per file and one at the end";

    const auto imported = transfer.Import({archive, archive}, 0, false);
    ASSERT_EQ(imported.size(), 2u);
    EXPECT_EQ(imported[0].name, L"Pipe");
    EXPECT_EQ(imported[1].id, 3) << "the same file twice gives two standards";
    EXPECT_EQ(Files(FolderOf(imported[1].id)), Files(FolderOf(id)));
    EXPECT_EQ(ReadBytes(Root() / "LineDatafile.ini"), "[General]\r\nLastLineId = 90\r\n");
    EXPECT_EQ(transfer.ImportFolder(), outside.Text());
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(StandardTransferTest, AnEmptyStandardGivesAnArchiveWithOnlyTheComment) {
    const std::int32_t id = Create(L"Bare");
    for (const auto& entry : fs::directory_iterator(FolderOf(id)))
        fs::remove_all(entry.path());
    fs::create_directories(FolderOf(id) / "Empty");
    const std::wstring archive = outside.File(L"Bare.xst");
    WriteBytes(test::P(archive), "an older export");
    ASSERT_TRUE(transfer.Export(id, archive, {}));

    int error = 0;
    zip_t* zip = zip_open(test::P(archive).string().c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &error);
    ASSERT_NE(zip, nullptr) << error;
    int length = 0;
    EXPECT_STREQ(zip_get_archive_comment(zip, &length, 0),
                 "VANDIX 2D Exported Standard V2017.0 - VANDIX Software");
    EXPECT_EQ(zip_get_num_entries(zip, 0), 0);
    zip_close(zip);
    EXPECT_EQ(fs::directory_iterator(outside.Path())->path().filename(), "Bare.xst")
        << "nothing else is left beside it";

    // There is nothing in it to make a standard of.
    const std::vector<std::wstring> before = Standards();
    const auto imported = transfer.Import({archive}, 0, false);
    ASSERT_EQ(imported.size(), 1u);
    EXPECT_EQ(imported[0].id, 0);
    EXPECT_EQ(Standards(), before);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].text,
              ImportError("Bare.xst", L"The archive holds no files that can be imported."));
}

TEST_F(StandardTransferTest, AFailedExportLeavesTheOldArchive) {
    const std::int32_t id = Create(L"Pipe");
    const std::wstring archive = outside.File(L"Pipe.xst");
    WriteBytes(test::P(archive), "an older export");
    EXPECT_FALSE(transfer.Export(id, archive, [](std::size_t, std::size_t, const std::wstring&) {
        return false; // cancelled
    }));
    EXPECT_EQ(ReadBytes(test::P(archive)), "an older export");
}

TEST_F(StandardTransferTest, HostileEntriesAreSkippedAndReported) {
    const fs::path archive = outside.Path() / "Evil.xst";
    MakeArchive(archive, {{"../escaped.txt", "x"},
                          {"/absolute.txt", "x"},
                          {"C:/drive.txt", "x"},
                          {"a\\..\\..\\back.txt", "x"},
                          {"link", ""},
                          {"ok/good.txt", "good"}});
    const auto imported = transfer.Import({platform::FromPath(archive)}, 0, false);
    ASSERT_EQ(imported.size(), 1u);
    EXPECT_EQ(Files(FolderOf(imported[0].id)),
              (std::map<std::string, std::string>{{"ok/good.txt", "good"}}));
    EXPECT_EQ(Files(outside.Path()).size(), 1u) << "nothing landed beside the archive";
    EXPECT_FALSE(fs::exists(Root() / "Projects" / "escaped.txt"));
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].text,
              L"Some files were not imported:\nEvil: ../escaped.txt: unsafe name\n"
              L"Evil: /absolute.txt: unsafe name\nEvil: C:/drive.txt: unsafe name\n"
              L"Evil: a\\..\\..\\back.txt: unsafe name\nEvil: link: link");
}

TEST_F(StandardTransferTest, ExtractionLeavesTheFolderAsItWasWhenItStops) {
    test::CTempDir target;
    WriteBytes(target.Path() / "keep.txt", "mine");
    WriteBytes(target.Path() / "old" / "x.txt", "old");
    const auto before = Files(target.Path());

    // Files that were there are neither replaced nor removed.
    MakeArchive(Outside("Over.xst"), {{"keep.txt", "archive"}, {"new/a.txt", "a"}});
    const auto over =
        CStandardArchive::Extract(platform::FromPath(Outside("Over.xst")), target.Text());
    EXPECT_EQ(over.failure, L"");
    EXPECT_EQ(over.skipped, std::vector<std::wstring>{L"keep.txt: already there"});
    EXPECT_EQ(ReadBytes(target.Path() / "keep.txt"), "mine");
    fs::remove_all(target.Path() / "new");

    // An entry that inflates past its declared size stops the whole.
    MakeArchive(Outside("Liar.xst"),
                {{"new/a.txt", "a"}, {"new/deep/b.txt", std::string(600, 'z')}});
    Patch(Outside("Liar.xst"), 1, eSize, 10);
    const auto liar =
        CStandardArchive::Extract(platform::FromPath(Outside("Liar.xst")), target.Text());
    EXPECT_TRUE(liar.opened);
    EXPECT_EQ(liar.failure, L"'new/deep/b.txt' in the archive is larger than it says.");
    EXPECT_EQ(Files(target.Path()), before);
    EXPECT_FALSE(fs::exists(target.Path() / "new")) << "the folders it made are gone too";
}

TEST_F(StandardTransferTest, OldExportsGiveOnlyTheirSettingsFolders) {
    const fs::path archive = outside.Path() / "Legacy Job.XPJ";
    MakeArchive(archive, {{"Settings\\BOM\\Flow\\flow.bom", "f"},
                          {"settings/bom/ISO/sub/iso.bom", "i"},
                          {"Settings/BOM/Ortho/o.bom", "o"},
                          {"Settings/BOM/Lists/l.txt", "l"},
                          {"Settings/CAD/Layers.ini", "cad"},
                          {"Drawings/x.dwg", "ignored"}});
    const auto imported = transfer.Import({platform::FromPath(archive)}, 0, true);
    ASSERT_EQ(imported.size(), 1u);
    EXPECT_EQ(imported[0].name, L"Legacy Job");
    EXPECT_EQ(Files(FolderOf(imported[0].id)),
              (std::map<std::string, std::string>{{"Flow BOMS/flow.bom", "f"},
                                                  {"Iso BOMS/iso.bom", "i"},
                                                  {"Layers.ini", "cad"},
                                                  {"Lists/l.txt", "l"},
                                                  {"Ortho BOMS/o.bom", "o"}}));
}

TEST_F(StandardTransferTest, InAnOldExportAFileOfTheFolderItselfWinsOverOneFromASubFolder) {
    const std::pair<SEntries, std::map<std::string, std::string>> cases[] = {
        {{{"Settings\\CAD\\General.ini", "mine"}, {"Settings\\CAD\\Backup\\General.ini", "old"}},
         {{"General.ini", "mine"}}},
        {{{"Settings\\CAD\\Backup\\General.ini", "old"}, {"Settings\\CAD\\General.ini", "mine"}},
         {{"General.ini", "mine"}}},
        {{{"Settings/BOM/Iso/a/x.bom", "1"},
          {"Settings/BOM/Iso/b/x.bom", "2"},
          {"Settings/CAD/Old/Layers.ini", "only"}},
         {{"Iso BOMS/x.bom", "2"}, {"Layers.ini", "only"}}},
    };
    for (const auto& [entries, files] : cases) {
        SCOPED_TRACE(entries.front().first);
        const fs::path archive = outside.Path() / "Job.xpj";
        MakeArchive(archive, entries);
        const auto imported = transfer.Import({platform::FromPath(archive)}, 0, true);
        ASSERT_EQ(imported.size(), 1u);
        EXPECT_EQ(Files(FolderOf(imported[0].id)), files);
        EXPECT_TRUE(prompter.asked.empty()) << "nothing to report";
    }
}

TEST_F(StandardTransferTest, AFileThatCannotBecomeAStandardIsReportedAndTheNextGoesOn) {
    const fs::path bad = outside.Path() / "a..xst"; // a standard "a." cannot be
    const fs::path good = outside.Path() / "Good.xst";
    MakeArchive(bad, {{"x.txt", "x"}});
    MakeArchive(good, {{"x.txt", "x"}});
    const auto imported = transfer.Import(
        {platform::FromPath(bad), L"", outside.File(L"missing.xst"), platform::FromPath(good)}, 0,
        false);
    ASSERT_EQ(imported.size(), 2u);
    EXPECT_EQ(imported[0].id, 0);
    EXPECT_EQ(imported[1].name, L"Good");
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].text, L"Error creating new standard 'a.'\n\nInvalid name");
    EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Stop);
}

TEST_F(StandardTransferTest, CheckingAnImportSaysWhatItWouldDoAndWritesNothing) {
    const fs::path good = outside.Path() / "Good.xst";
    const fs::path text = outside.Path() / "Text.xst";
    MakeArchive(good, {{"x.txt", "x"}});
    WriteBytes(text, "[General]\r\n");
    const std::string datafile = ReadBytes(Root() / "ProjectDatafile.ini");
    const auto checks = transfer.CheckImport(
        {platform::FromPath(text), outside.File(L"missing.xst"), platform::FromPath(good)});
    ASSERT_EQ(checks.size(), 2u);
    EXPECT_EQ(checks[0].file, platform::FromPath(text));
    EXPECT_EQ(checks[0].name, L"Text");
    EXPECT_EQ(checks[0].refused, L"The file is not an archive, or the archive is damaged.");
    EXPECT_EQ(checks[1].name, L"Good");
    EXPECT_EQ(checks[1].refused, L"");
    EXPECT_EQ(ReadBytes(Root() / "ProjectDatafile.ini"), datafile);
    EXPECT_TRUE(prompter.asked.empty());
    EXPECT_EQ(transfer.ImportFolder(), L"");
}

TEST_F(StandardTransferTest, WithoutRememberingFoldersTheDialogsKeepTheirFolders) {
    const std::int32_t id = Create(L"Pipe");
    const std::wstring archive = outside.File(L"Pipe.xst");
    for (const bool remember : {false, true}) {
        SCOPED_TRACE(remember);
        transfer.SetRemembersFolders(remember);
        ASSERT_TRUE(transfer.Export(id, archive));
        ASSERT_EQ(transfer.Import({archive}, 0, false).size(), 1u);
        const std::wstring expected = remember ? outside.Text() : L"";
        EXPECT_EQ(transfer.ExportFolder(), expected);
        EXPECT_EQ(transfer.ImportFolder(), expected);
    }
}

TEST_F(StandardTransferTest, AFileThatIsNotAReadableArchiveCreatesNothing) {
    const SEntries general = {{"General.ini", "[General]\r\n"}};
    const std::wstring notArchive = L"The file is not an archive, or the archive is damaged.";
    const struct {
        const char* file;
        std::function<void(const fs::path&)> make;
        std::wstring why;
    } cases[] = {
        {"Noise.xst",
         [](const fs::path& p) {
             std::string noise(4096, '\0');
             std::uint32_t x = 12345;
             for (auto& c : noise)
                 c = static_cast<char>((x = x * 1103515245 + 12345) >> 24);
             WriteBytes(p, noise);
         },
         notArchive},
        {"Text.xst", [](const fs::path& p) { WriteBytes(p, "[General]\r\nName = x\r\n"); },
         notArchive},
        {"Empty.xst", [](const fs::path& p) { WriteBytes(p, ""); }, L"The file is empty."},
        {"Cut.xst",
         [&](const fs::path& p) {
             MakeArchive(p, {{"General.ini", std::string(3000, 'g')}, {"b.txt", "b"}});
             const std::string bytes = ReadBytes(p);
             WriteBytes(p, bytes.substr(0, bytes.size() / 2));
         },
         notArchive},
        {"Nothing.xst",
         [](const fs::path& p) {
             WriteBytes(p, std::string("PK\x05\x06", 4) + std::string(18, '\0'));
         },
         L"The archive holds no files that can be imported."},
        {"Drawings only.xpj",
         [](const fs::path& p) {
             MakeArchive(p, {{"Drawings/x.dwg", "d"}});
         },
         L"The archive holds no files that can be imported."},
        {"Locked.xst",
         [&](const fs::path& p) {
             MakeArchive(p, general, ZIP_CM_STORE);
             Patch(p, 0, eFlags, 1);
         },
         L"'General.ini' in the archive is encrypted; encrypted archives cannot be imported."},
        {"Imploded.xst",
         [&](const fs::path& p) {
             MakeArchive(p, general, ZIP_CM_STORE);
             Patch(p, 0, eMethod, ZIP_CM_IMPLODE);
         },
         L"'General.ini' in the archive is packed with a method that cannot be read."},
        {"Zeros.xst",
         [](const fs::path& p) {
             MakeArchive(p, {{"zeros.bin", std::string(2 << 20, '\0')}});
         },
         L"'zeros.bin' in the archive would unpack to 2.0 MiB, more than 100 times its packed "
         L"size."},
    };
    std::int32_t client = 0;
    std::wstring clientName;
    ASSERT_TRUE(clients.CreateClient(client, clientName));
    std::vector<std::wstring> files;
    for (const auto& c : cases) {
        c.make(Outside(c.file));
        files.push_back(platform::FromPath(Outside(c.file)));
    }
    // Blanks pack far better than 100:1 but are too small to be a bomb.
    MakeArchive(Outside("Good.xst"), {{"General.ini", "[General]\r\n" + std::string(4000, ' ')}});
    files.push_back(platform::FromPath(Outside("Good.xst")));

    const auto imported = transfer.Import(files, client, false);
    ASSERT_EQ(imported.size(), files.size());
    ASSERT_EQ(prompter.asked.size(), std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(imported[i].id, 0) << cases[i].file;
        EXPECT_EQ(prompter.asked[i].text, ImportError(cases[i].file, cases[i].why));
        EXPECT_EQ(prompter.asked[i].icon, EPromptIcon::Stop);
    }
    const std::int32_t good = imported.back().id;
    ASSERT_NE(good, 0);
    EXPECT_EQ(Standards(), std::vector<std::wstring>{std::to_wstring(good) + L" Good"});
    EXPECT_EQ(Folders(), std::vector<std::string>{"VX2D_PRJ_" + std::to_string(good) + " - Good"});
    EXPECT_EQ(clients.GetClientProjectIds(client), std::vector<std::int32_t>{good});
}

TEST(StandardTransferLimits, HoldForTheWholeImport) {
    const std::string z600(600, 'z');
    const struct {
        const char* label;
        SArchiveLimits limits;
        std::vector<SEntries> archives;
        std::vector<bool> imported;
        std::wstring why; // for the first one refused
    } cases[] = {
        {"three bombs and a small one",
         {1000, 100, 100, 1 << 20},
         {{{"a", z600}}, {{"a", z600}}, {{"a", z600}}, {{"a", std::string(300, 'z')}}},
         {true, false, false, true},
         L"The import would unpack to 1.2 KiB; one import takes at most 1000 bytes."},
        {"files of several archives",
         {1 << 20, 5, 100, 1 << 20},
         {{{"a", "a"}, {"b", "b"}, {"c", "c"}},
          {{"a", "a"}, {"b", "b"}, {"c", "c"}},
          {{"a", "a"}, {"b", "b"}}},
         {true, false, true},
         L"The import would come to 6 files; one import takes at most 5."},
        {"files of one archive",
         {1 << 20, 5, 100, 1 << 20},
         {{{"a", "a"}, {"b", "b"}, {"c", "c"}, {"d", "d"}, {"e", "e"}, {"f", "f"}}},
         {false},
         L"The import would come to 6 files; one import takes at most 5."},
        {"ratio above the floor only",
         {1 << 20, 100, 10, 1000},
         {{{"z.txt", std::string(5000, '\0')}}, {{"z.txt", std::string(900, '\0')}}},
         {false, true},
         L"'z.txt' in the archive would unpack to 4.9 KiB, more than 10 times its packed size."},
    };
    for (const auto& c : cases) {
        SWorld world;
        world.transfer.SetLimits(c.limits);
        std::vector<std::wstring> files;
        for (std::size_t i = 0; i < c.archives.size(); ++i) {
            const fs::path file = world.Outside("Bomb " + std::to_string(i) + ".xst");
            MakeArchive(file, c.archives[i]);
            files.push_back(platform::FromPath(file));
        }
        const auto imported = world.transfer.Import(files, 0, false);
        ASSERT_EQ(imported.size(), c.imported.size()) << c.label;
        std::size_t made = 0;
        for (std::size_t i = 0; i < imported.size(); ++i) {
            EXPECT_EQ(imported[i].id != 0, c.imported[i]) << c.label << " " << i;
            made += c.imported[i];
        }
        EXPECT_EQ(world.Standards().size(), made) << c.label;
        EXPECT_EQ(world.Folders().size(), made) << c.label;
        std::uint64_t bytes = 0, count = 0;
        for (const auto& folder : world.Folders()) {
            for (const auto& [name, content] : Files(world.Root() / "Projects" / folder)) {
                bytes += content.size();
                ++count;
            }
        }
        EXPECT_LE(bytes, c.limits.totalBytes) << c.label;
        EXPECT_LE(count, c.limits.files) << c.label;
        ASSERT_FALSE(world.prompter.asked.empty()) << c.label;
        const auto refused = std::find(c.imported.begin(), c.imported.end(), false);
        EXPECT_EQ(world.prompter.asked[0].text,
                  world.ImportError("Bomb " + std::to_string(refused - c.imported.begin()) + ".xst",
                                    c.why))
            << c.label;
    }
}

TEST_F(StandardTransferTest, AnArchiveThatFailsPartWayLeavesNoStandard) {
    std::int32_t client = 0;
    std::wstring clientName;
    ASSERT_TRUE(clients.CreateClient(client, clientName));
    MakeArchive(
        Outside("Liar.xst"),
        {{"General.ini", "[General]\r\n"}, {"Sub/b.txt", std::string(600, 'z')}, {"c.txt", "c"}});
    Patch(Outside("Liar.xst"), 1, eSize, 10);
    MakeArchive(Outside("Good.xst"), {{"General.ini", "[General]\r\n"}});
    const auto imported = transfer.Import(
        {platform::FromPath(Outside("Liar.xst")), platform::FromPath(Outside("Good.xst"))}, client,
        false);
    ASSERT_EQ(imported.size(), 2u);
    EXPECT_EQ(imported[0].id, 0);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].text,
              ImportError("Liar.xst", L"'Sub/b.txt' in the archive is larger than it says."));
    const std::int32_t good = imported[1].id;
    EXPECT_EQ(Standards(), std::vector<std::wstring>{std::to_wstring(good) + L" Good"});
    EXPECT_EQ(Folders(), std::vector<std::string>{"VX2D_PRJ_" + std::to_string(good) + " - Good"});
    EXPECT_EQ(clients.GetClientProjectIds(client), std::vector<std::int32_t>{good});
}

// A standard's own specs travel inside its archive and take ids of the
// installation that imports it; checks of specs that installation does not
// have under that id and name are left behind.
TEST_F(StandardTransferTest, AnImportedStandardGetsItsOwnSpecsUnderNewIds) {
    CVX2D_SpecDestinations destinations{Datafiles()};
    CVX2D_SpecRegister specs{registry, destinations};
    registry.SetContents(&specs);
    const std::int32_t id = Create(L"Pipe");
    std::int32_t specId = 0;
    ASSERT_EQ(specs.CreateSpec(L"CS150", {}, specId), eSpecOk);
    ASSERT_EQ(specs.CreateSpec(L"SS300", {}, specId), eSpecOk);
    ASSERT_EQ(specs.CreateSpec(L"Vents", {eSpecProject, id}, specId), eSpecOk);
    for (std::int32_t spec : {1, 2, 3})
        ASSERT_EQ(specs.CheckSpec(id, spec), eSpecOk);
    WriteBytes(FolderOf(id) / "VX2D_SPEC_3" / "vent.dwg", "v");
    const std::wstring archive = outside.File(L"Pipe.xst");
    ASSERT_TRUE(transfer.Export(id, archive));
    // Here spec 2 is no longer what the archive's standard checked.
    ASSERT_EQ(specs.RenameSpec(2, L"SS300 B"), eSpecOk);

    const auto imported = transfer.Import({archive}, 0, false);
    ASSERT_EQ(imported.size(), 1u);
    const std::int32_t copy = imported[0].id;
    ASSERT_EQ(copy, 2);
    EXPECT_EQ(ReadBytes(FolderOf(copy) / "VX2D_SPEC_4" / "vent.dwg"), "v");
    EXPECT_FALSE(fs::exists(FolderOf(copy) / "VX2D_SPEC_3"));
    EXPECT_EQ(ReadBytes(FolderOf(copy) / "Specs.ini"),
              "[ProjectSpecs]\r\nVX2D_SPEC_4 = Vents\r\n\r\n"
              "[SpecList]\r\nVX2D_SPEC_1 = CS150\r\nVX2D_SPEC_4 = Vents\r\n");
    EXPECT_EQ(ReadBytes(Root() / "SpecDatafile.ini"),
              "[General]\r\nLastSpecId = 4\r\n\r\n"
              "[ProjectSpecs]\r\nVX2D_SPEC_3 = VX2D_PRJ_1\r\nVX2D_SPEC_4 = VX2D_PRJ_2\r\n\r\n"
              "[SpecList]\r\nVX2D_SPEC_1 = CS150\r\nVX2D_SPEC_2 = SS300 B\r\n"
              "VX2D_SPEC_3 = Vents\r\nVX2D_SPEC_4 = Vents\r\n");
    std::vector<SSpecDestination> found;
    ASSERT_TRUE(destinations.Read(copy, found));
    EXPECT_EQ(found,
              (std::vector<SSpecDestination>{{1, L"Specs\\Common\\VX2D_SPEC_1\\"},
                                             {4, L"Projects\\VX2D_PRJ_2 - Pipe\\VX2D_SPEC_4\\"}}));
    EXPECT_TRUE(prompter.asked.empty());

    // Where its specs cannot be registered, the import makes no standard.
    fs::create_directories(Root() / "SpecDatafile.ini.lock");
    const std::vector<std::wstring> before = Standards();
    const auto refused = transfer.Import({archive}, 0, false);
    ASSERT_EQ(refused.size(), 1u);
    EXPECT_EQ(refused[0].id, 0);
    EXPECT_EQ(Standards(), before);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].text,
              ImportError("Pipe.xst", L"The standard's own specs could not be entered in the "
                                      L"register of specs."));
}

TEST_F(StandardTransferTest, ACancelRemovesTheStandardBeingImportedAndEndsTheImport) {
    MakeArchive(Outside("A.xst"), {{"a.txt", "a"}, {"b.txt", "b"}});
    const std::wstring file = platform::FromPath(Outside("A.xst"));
    const auto imported = transfer.Import(
        {file, file}, 0, false,
        [](std::size_t done, std::size_t, const std::wstring&) { return done == 0; });
    ASSERT_EQ(imported.size(), 1u);
    EXPECT_EQ(imported[0].id, 0);
    EXPECT_TRUE(Standards().empty());
    EXPECT_TRUE(Folders().empty());
    EXPECT_TRUE(prompter.asked.empty()) << "the user asked for it";
}

TEST_F(StandardTransferTest, AnExistingFolderWithTheNewNameKeepsItsFiles) {
    const fs::path existing = Folder();
    WriteBytes(existing / "Sub" / "keep.txt", "keep");
    WriteBytes(existing / "x.txt", "mine");
    const auto before = Files(existing);
    MakeArchive(Outside("Pipe.xst"), {{"x.txt", "archive"}, {"new.txt", "new"}});
    transfer.Import({platform::FromPath(Outside("Pipe.xst"))}, 0, false);
    EXPECT_EQ(Files(existing), before);
}

// Windows reads narrow file names in the ANSI code page: names outside it
// (Greek here) and accents must reach the file system as typed.
TEST_F(StandardTransferTest, NamesWithAccentsTravelThroughExportAndImport) {
    const std::int32_t id = Create(L"Stra\u00DFe Caf\u00E9");
    WriteBytes(FolderOf(id) / platform::ToPath(L"\u00C5r\u00F8") /
                   platform::ToPath(L"Pl\u00E4ne.dwg"),
               "plan");
    const std::wstring folder = outside.File(L"\u03A3\u03C7\u03AD\u03B4\u03B9\u03BF");
    fs::create_directories(platform::ToPath(folder));
    const std::wstring archive = folder + L"/Stra\u00DFe Caf\u00E9.xst";
    ASSERT_TRUE(
        transfer.Export(id, platform::FromPath(platform::ToPath(archive)),
                        [](std::size_t, std::size_t, const std::wstring&) { return true; }));
    EXPECT_TRUE(fs::is_regular_file(platform::ToPath(archive)));
    const auto imported = transfer.Import({archive}, 0, false);
    ASSERT_EQ(imported.size(), 1u);
    EXPECT_EQ(imported[0].name, L"Stra\u00DFe Caf\u00E9");
    EXPECT_EQ(Files(FolderOf(imported[0].id)), Files(FolderOf(id)));
    EXPECT_EQ(ReadBytes(FolderOf(imported[0].id) / platform::ToPath(L"\u00C5r\u00F8") /
                        platform::ToPath(L"Pl\u00E4ne.dwg")),
              "plan");
}

TEST_F(StandardTransferTest, AsksWhichGenerationMadeTheArchives) {
    prompter.answers = {EPromptAnswer::Cancel, EPromptAnswer::Yes, EPromptAnswer::No};
    EXPECT_EQ(transfer.AskOldFormat(), std::nullopt);
    EXPECT_EQ(transfer.AskOldFormat(), true);
    EXPECT_EQ(transfer.AskOldFormat(), false);
    EXPECT_EQ(prompter.asked[0].text,
              L"Are the standards being imported created using 2D CRAFTER V2015 and older.");
    EXPECT_EQ(prompter.asked[0].buttons, EPromptButtons::YesNoCancel);
}

TEST(StandardArchiveNames, ExtensionAndNameComeFromTheFileName) {
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
        {L"C:\\x\\Old.XPJ", L".xpj", L"Old"},
        {L"/a.b/name", L"", L"name"},
        {L"two.dots.xst", L".xst", L"two.dots"},
    };
    for (const auto& [path, extension, name] : cases) {
        EXPECT_EQ(CStandardArchive::ExtensionOf(path), extension) << path;
        EXPECT_EQ(CStandardArchive::StandardNameOf(path), name) << path;
    }
}

} // namespace standard_transfer_test
