// install, export, import, update-check and navigator tree on the command line.
#include "support/CliFixture.h"

#ifdef _WIN32
#include "platform/Registry.h"
#include "platform/Utf8.h"
#include "store/Installation.h"
#endif

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace cli_app_test {

using test::CliTest;
using test::ReadBytes;
using test::WriteBytes;

TEST_F(CliTest, InstallMakesTheFirstStandardsAndRecordsTheFolder) {
    fs::remove_all(Root() / "Template");
    EXPECT_EQ(Ok({"install"}), "");
    EXPECT_TRUE(fs::is_directory(Root() / "Template" / "Metric 2015"))
        << "the shipped templates are copied in";
    EXPECT_EQ(ReadBytes(MachineRegistry()),
              "[Software\\VANDIX\\2D Kryn\\2023]\r\nDatafilesPath = " + Root().string() +
                  char(fs::path::preferred_separator) + "\r\n");
#ifdef _WIN32
    // The tests' INI files, not this machine's registry, where an installed
    // program would read it.
    EXPECT_NE(MakeWindowsRegistry()->Read(ERegistryRoot::LocalMachine, CInstallation::kInstallKey,
                                          L"DatafilesPath"),
              platform::FromPath(Root()) + L"\\");
#endif
    EXPECT_EQ(Ok({"standard", "list"}),
              "1\tactive\t0\tEnglish Standard\n2\tactive\t0\tMetric Standard\n");
}

TEST_F(CliTest, ArchivesOfAccentedNamesInAFolderOfAnotherScriptTravel) {
    Ok({"standard", "create", "Pipe"});
    // Windows reads narrow names in its code page: these need wide ones.
    const fs::path folder = Root() / fs::path(u8"Αρχεία τυποποίησης");
    fs::create_directories(folder);
    const std::string archive =
        platform::ToUtf8(platform::FromPath(folder / fs::path(u8"Rafinería Señal.xst")));
    EXPECT_EQ(Ok({"export", "1", archive}), "");
    EXPECT_EQ(Ok({"import", archive}), "2\tRafinería Señal\n");
    EXPECT_TRUE(
        fs::exists(Projects() / fs::path(u8"VX2D_PRJ_2 - Rafinería Señal") / "General.ini"));
}

TEST_F(CliTest, NavigatorTreeIndentsStandardsUnderTheirClients) {
    Ok({"client", "create"});
    Ok({"client", "rename", "1", "Zeta"});
    Ok({"standard", "create", "pipe", "--client", "1"});
    Ok({"standard", "create", "Alpha"});
    Ok({"standard", "create", "Old", "--client", "1"});
    Ok({"standard", "delete", "3"});
    EXPECT_EQ(Ok({"navigator", "tree"}), "Alpha\t1\t2\nZeta\t0\t1\n  pipe\t1\t1\n");
}

TEST_F(CliTest, ExportAndImportCarryAStandardAcross) {
    Ok({"standard", "create", "Pipe"});
    WriteBytes(Projects() / "VX2D_PRJ_1 - Pipe" / "Sub" / "file.txt", "content");
    const std::string archive = (Root() / "Pipe Copy.xst").string();
    EXPECT_EQ(Ok({"export", "1", archive}), "");
    EXPECT_EQ(Ok({"import", archive, archive}), "2\tPipe Copy\n3\tPipe Copy\n");
    EXPECT_EQ(ReadBytes(Projects() / "VX2D_PRJ_3 - Pipe Copy" / "Sub" / "file.txt"), "content");

    // Every file is looked for before anything is imported.
    const auto missing = Run({"import", archive, (Root() / "none.xst").string()});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.err,
              "There is no file '" + (Root() / "none.xst").string() + "' to import.\n");
    EXPECT_FALSE(fs::exists(Projects() / "VX2D_PRJ_4 - Pipe Copy"));

    // A deleted standard keeps its folder until it is purged: it exports as
    // the navigator exports it.
    Ok({"standard", "delete", "1"});
    const std::string deleted = (Root() / "Deleted.xst").string();
    EXPECT_EQ(Ok({"export", "1", deleted}), "");
    EXPECT_EQ(Ok({"import", deleted}), "4\tDeleted\n");
    EXPECT_EQ(ReadBytes(Projects() / "VX2D_PRJ_4 - Deleted" / "Sub" / "file.txt"), "content");

    const auto unknown = Run({"export", "9", archive});
    EXPECT_EQ(unknown.code, 1);
    EXPECT_EQ(unknown.err, "There is no standard 9 (see 'standard list --deleted')\n");
}

TEST_F(CliTest, ADashIsStandardOutputForExportAndStandardInputForImport) {
    Ok({"standard", "create", "Pipe"});
    WriteBytes(Projects() / "VX2D_PRJ_1 - Pipe" / "Sub" / "file.txt", "content");
    const std::string file = (m_io.Path() / "Pipe.xst").string();
    Ok({"export", "1", file});
    const std::string archive = Ok({"export", "1", "-"});
    ASSERT_GT(archive.size(), 22u);
    EXPECT_EQ(archive.substr(0, 4), "PK\x03\x04");
    EXPECT_EQ(archive.size(), ReadBytes(file).size());

    // What to import from standard input, the name given and what is made.
    const std::tuple<std::vector<std::string>, std::string> cases[] = {
        {{"import", "-"}, "2\tStandard 2\n"},
        {{"import", "-", "--name", "Tube"}, "3\tTube\n"},
        {{"import", file, "-", "--name", "Duct"}, "4\tPipe\n5\tDuct\n"},
    };
    for (const auto& [args, out] : cases) {
        SCOPED_TRACE(test::Joined(args));
        m_stdin = archive;
        EXPECT_EQ(Ok(args), out);
    }
    m_stdin.reset();
    EXPECT_EQ(ReadBytes(Projects() / "VX2D_PRJ_5 - Duct" / "Sub" / "file.txt"), "content");
    // Nothing of standard input is left behind in the temporary folder.
    for (const auto& entry : fs::directory_iterator(fs::temp_directory_path()))
        EXPECT_EQ(entry.path().filename().string().find("standards-desk-cli-"), std::string::npos);
}

TEST_F(CliTest, ImportDryRunChecksEachFileAndMakesNothing) {
    Ok({"standard", "create", "Pipe"});
    const std::string good = (m_io.Path() / "Good.xst").string();
    const std::string bad = (m_io.Path() / "Bad.xst").string();
    Ok({"export", "1", good});
    WriteBytes(bad, "not an archive\r\n");
    const std::string projects = ReadBytes(Root() / "ProjectDatafile.ini");
    EXPECT_EQ(Ok({"import", "--dry-run", bad, good}),
              test::Tsv(bad) + "\tBad\tThe file is not an archive, or the archive is damaged.\n" +
                  test::Tsv(good) + "\tGood\t\n");
    EXPECT_EQ(ReadBytes(Root() / "ProjectDatafile.ini"), projects);
    EXPECT_EQ(ProjectFolders(), std::set<std::string>{"VX2D_PRJ_1 - Pipe"});
}

TEST_F(CliTest, ExportAndImportLeaveTheDesktopsRememberedFolders) {
    Ok({"standard", "create", "Pipe"});
    const std::string file = (m_io.Path() / "Pipe.xst").string();
    Ok({"export", "1", file});
    Ok({"import", file});
    const std::string user = fs::exists(UserRegistry()) ? ReadBytes(UserRegistry()) : "";
    for (const char* key : {"ExportFolder", "ImportFolder"})
        EXPECT_EQ(user.find(key), std::string::npos) << user;
}

TEST_F(CliTest, ImportFailsForAFileThatIsNotAnArchiveAndImportsTheOthers) {
    Ok({"standard", "create", "Pipe"});
    const std::string good = (m_io.Path() / "Good.xst").string();
    const std::string bad = (m_io.Path() / "Bad.xst").string();
    Ok({"export", "1", good});
    WriteBytes(bad, "not an archive\r\n");
    const auto run = Run({"import", bad, good});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "2\tGood\n");
    EXPECT_EQ(run.err, "Error importing '" + bad +
                           "'\n\nThe file is not an archive, or the archive is damaged.\n"
                           "Not every file could be imported.\n");
    EXPECT_EQ(Ok({"standard", "list"}), "1\tactive\t0\tPipe\n2\tactive\t0\tGood\n");
}

TEST_F(CliTest, UpdateCheckPrintsItsDecision) {
    EXPECT_EQ(Ok({"update-check", "--now", "2026-03-10 12:00:00"}), "not due\t\n");
    const auto bad = Run({"update-check", "--now", "tomorrow"});
    EXPECT_EQ(bad.code, 2);
    EXPECT_EQ(bad.err, "'tomorrow' is not a date of the form YYYY-MM-DD HH:MM:SS.\n");
}

} // namespace cli_app_test
