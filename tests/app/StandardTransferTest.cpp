// Export and import of standards as archives: the archive's exact form, the
// round trip, old ".xpj" exports, and archives that try to escape.
#include "app/StandardTransfer.h"
#include "platform/IniRegistry.h"
#include "platform/Utf8.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <map>
#include <zip.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace {

std::map<std::string, std::string> Files(const fs::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            files[entry.path().lexically_relative(folder).generic_string()] =
                ReadBytes(entry.path());
    }
    return files;
}

// An archive with the given entries; an empty content marks a link entry.
void MakeArchive(const fs::path& path,
                 const std::vector<std::pair<std::string, std::string>>& entries) {
    int error = 0;
    zip_t* zip = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    ASSERT_NE(zip, nullptr);
    for (const auto& [name, content] : entries) {
        const bool link = content.empty();
        const std::string data = link ? std::string("/etc/passwd") : content;
        zip_source_t* source = zip_source_buffer(zip, strdup(data.c_str()), data.size(), 1);
        const zip_int64_t index = zip_file_add(zip, name.c_str(), source, 0);
        ASSERT_GE(index, 0) << name;
        if (link)
            zip_file_set_external_attributes(zip, static_cast<zip_uint64_t>(index), 0,
                                             ZIP_OPSYS_UNIX, (0120777u) << 16);
    }
    ASSERT_EQ(zip_close(zip), 0);
}

class StandardTransferTest : public ::testing::Test {
protected:
    fs::path FolderOf(std::int32_t id) {
        std::wstring folder;
        EXPECT_EQ(projects.GetProjectFolder(id, folder), eProjectOk);
        return test::P(folder);
    }
    std::int32_t Create(const std::wstring& name) {
        std::int32_t id = 0;
        EXPECT_EQ(projects.CreateProject({name, 0, 1, 0, false}, id), eProjectOk);
        return id;
    }

    test::CDatafilesFixture fx;
    test::CTempDir config, outside;
    CIniRegistry registry{config.File(L"machine"), config.File(L"user")};
    CProfile profile{registry};
    test::CScriptedPrompter prompter;
    CVX2D_ProjectRegistry projects{fx.Datafiles(), prompter};
    CStandardTransfer transfer{projects, profile, prompter};
};

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
    zip_t* zip = zip_open(test::P(archive).c_str(), ZIP_RDONLY, &error);
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
    EXPECT_EQ(ReadBytes(fx.Dir().Path() / "LineDatafile.ini"), "[General]\r\nLastLineId = 90\r\n");
    EXPECT_EQ(transfer.ImportFolder(), outside.Text());
    EXPECT_TRUE(prompter.asked.empty());
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
    EXPECT_FALSE(fs::exists(fx.Dir().Path() / "Projects" / "escaped.txt"));
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].text,
              L"Some files were not imported:\nEvil: ../escaped.txt: unsafe name\n"
              L"Evil: /absolute.txt: unsafe name\nEvil: C:/drive.txt: unsafe name\n"
              L"Evil: a\\..\\..\\back.txt: unsafe name\nEvil: link: link");
}

TEST_F(StandardTransferTest, ExtractionStopsAtTheSizeLimit) {
    const fs::path archive = outside.Path() / "Big.xst";
    MakeArchive(archive, {{"a.txt", std::string(100, 'a')}, {"b.txt", "b"}});
    test::CTempDir target;
    const auto result =
        CStandardArchive::Extract(platform::FromPath(archive), target.Text(), {}, 50);
    EXPECT_TRUE(result.opened);
    EXPECT_EQ(result.extracted, 0u);
    EXPECT_EQ(result.skipped, std::vector<std::wstring>{L"a.txt: archive too large"});
    EXPECT_TRUE(Files(target.Path()).empty());
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

TEST_F(StandardTransferTest, AFileThatCannotBecomeAStandardIsReportedAndTheNextGoesOn) {
    const fs::path bad = outside.Path() / "a:b.xst";
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
    EXPECT_EQ(prompter.asked[0].text, L"Error creating new standard 'a:b'\n\nInvalid name");
    EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Stop);
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

} // namespace
