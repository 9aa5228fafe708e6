// Start-up: the install switch, who may run the program, the first-run
// standards, the window rule, help paths and the Windows-only components.
#include "app/Startup.h"
#include "platform/Utf8.h"
#include "store/IniRegistry.h"
#include "support/TestSupport.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace startup_test {

class StartupTest : public ::testing::Test {
protected:
    CStartup::EResult Start(const std::vector<std::wstring>& args,
                            const std::wstring& user = L"alice", bool offerChoice = false) {
        CStartup::SServices services;
        services.offerDatafilesChoice = offerChoice;
        services.userName = user;
        services.programPath = L"/opt/kryn/StandardsDesk64";
        services.shippedTemplates = platform::FromPath(fs::path(SD_TEMPLATES_DIR));
        CStartup startup(registry, installation, projects, prompter, services);
        return startup.Run(args);
    }
    std::vector<SProjectInfo> Standards() const {
        std::vector<SProjectInfo> list;
        EXPECT_EQ(projects.ListProjects(true, true, list), eProjectOk);
        return list;
    }

    test::CTempDir config, datafiles;
    CIniRegistry registry{config.File(L"machine"), config.File(L"user")};
    CInstallation installation{registry, datafiles.Text()};
    CVX2D_Datafiles folder{installation.DatafilesPath()};
    test::CScriptedPrompter prompter;
    CVX2D_ProjectRegistry projects{folder, prompter};
};

TEST_F(StartupTest, InstallInAnyCaseAnywhereMakesTheFirstStandardsAndEnds) {
    EXPECT_EQ(Start({L"standards-desk", L"--x", L"-INSTALL"}, L""), CStartup::eInstalled)
        << "installing needs no permission";
    EXPECT_TRUE(prompter.asked.empty());
    ASSERT_EQ(Standards().size(), 2u);
    EXPECT_EQ(Standards()[0].name, L"English Standard");
    EXPECT_EQ(Standards()[1].name, L"Metric Standard");
    EXPECT_TRUE(fs::is_directory(datafiles.Path() / "Template" / "Imperial 2015"));
}

TEST_F(StartupTest, AMissingDatafilesFolderStopsTheProgramAndOnlyInstallMakesIt) {
    fs::remove_all(datafiles.Path());
    EXPECT_EQ(Start({L"standards-desk"}), CStartup::eRefused);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_NE(prompter.asked[0].text.find(L"does not exist or cannot be reached"),
              std::wstring::npos);
    EXPECT_FALSE(fs::exists(datafiles.Path())) << "a share that was away got an empty tree";

    // The desktop program offers a choice instead, with no box of its own.
    EXPECT_EQ(Start({L"standards-desk"}, L"alice", true), CStartup::eNoDatafiles);
    EXPECT_EQ(prompter.asked.size(), 1u);
    EXPECT_FALSE(fs::exists(datafiles.Path()));

    EXPECT_EQ(Start({L"standards-desk", L"-install"}), CStartup::eInstalled);
    EXPECT_EQ(Standards().size(), 2u);
}

TEST_F(StartupTest, OnlyListedUsersAdministratorAndRootMayRun) {
    // The user, whether "User List" holds Bob and Carol, and whether it may run.
    const std::tuple<const wchar_t*, bool, bool> cases[] = {
        {L"", false, false},   {L"alice", false, true}, {L"ADMINISTRATOR", true, true},
        {L"root", true, true}, {L"bob", true, true},    {L"eve", true, false},
    };
    for (const auto& [user, listed, allowed] : cases) {
        fs::remove(datafiles.Path() / "UserDatafile.ini");
        if (listed)
            WriteBytes(datafiles.Path() / "UserDatafile.ini",
                       "[User List]\r\nUser1 = Bob\r\nUser2 = Carol\r\n");
        prompter.asked.clear();
        EXPECT_EQ(Start({L"standards-desk"}, user), allowed ? CStartup::eRun : CStartup::eRefused)
            << user;
        EXPECT_EQ(prompter.asked.size(), allowed ? 0u : 1u);
    }
    EXPECT_EQ(prompter.asked.at(0).text, L"eve,\nYou do not have permission to run this "
                                         L"application.\n\nPlease contact your system "
                                         L"administrator.");
    EXPECT_EQ(prompter.asked[0].caption, L"2D Kryn 2023");
    EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Stop);
}

TEST_F(StartupTest, TheDecisionComesBeforeAnythingIsLoadedOrShown) {
    CStartup::SServices services;
    services.userName = L"eve";
    services.shippedTemplates = platform::FromPath(fs::path(SD_TEMPLATES_DIR));
    WriteBytes(datafiles.Path() / "UserDatafile.ini", "[User List]\r\nUser1 = Bob\r\n");
    CStartup refused(registry, installation, projects, prompter, services);
    EXPECT_EQ(refused.Decide({L"standards-desk"}), CStartup::eRefused);
    EXPECT_EQ(prompter.asked.size(), 1u) << "the refusal box and nothing else";
    EXPECT_TRUE(Standards().empty());
    EXPECT_FALSE(fs::exists(datafiles.Path() / "ProjectDatafile.ini"));

    services.userName = L"bob";
    CStartup allowed(registry, installation, projects, prompter, services);
    EXPECT_EQ(allowed.Decide({L"standards-desk"}), CStartup::eRun);
    EXPECT_TRUE(Standards().empty()) << "the first standards come with Prepare";
    allowed.Prepare();
    EXPECT_EQ(Standards().size(), 2u);
    EXPECT_EQ(prompter.asked.size(), 1u);

    // Without any datafiles folder: "-install" ends with no message box at
    // all, a plain start with one that says what to do.
    CIniRegistry emptyRegistry{config.File(L"machine2"), config.File(L"user2")};
    CInstallation none{emptyRegistry, L""};
    CVX2D_Datafiles noFolder{none.DatafilesPath()};
    CVX2D_ProjectRegistry noProjects{noFolder, prompter};
    CStartup startup(emptyRegistry, none, noProjects, prompter, services);
    prompter.asked.clear();
    EXPECT_EQ(startup.Decide({L"standards-desk", L"-install"}), CStartup::eInstallFailed);
    EXPECT_TRUE(prompter.asked.empty());
    EXPECT_EQ(startup.Decide({L"standards-desk"}), CStartup::eRefused);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].text, NoDatafilesText());
}

TEST_F(StartupTest, FirstRunStandardsGetFoldersLocationsAndALine) {
    ASSERT_EQ(Start({}), CStartup::eRun);
    const std::string root = test::N(datafiles.Path().string() + "/");
    std::wstring folder;
    ASSERT_EQ(projects.GetProjectFolder(1, folder), eProjectOk);
    const std::string general = ReadBytes(test::P(folder + L"General.ini"));
    EXPECT_NE(general.find("[Drawings Location]\r\nELECTRIC = " + root +
                           test::N("Drawings/English Standard/Electric/") +
                           "\r\n"
                           "ISOMETRIC = " +
                           root + test::N("Drawings/English Standard/Iso/") + "\r\n"),
              std::string::npos)
        << general;
    EXPECT_NE(general.find("BordersLocation = " + root + test::N("Borders/") +
                           "\r\nLibrariesLocation = " + root + test::N("Libraries/") + "\r\n"),
              std::string::npos);
    EXPECT_NE(general.find("Working = 1"), std::string::npos);
    EXPECT_TRUE(fs::is_directory(datafiles.Path() / "Drawings" / "Metric Standard" / "Ortho"));
    // The folders the first standards name are there.
    EXPECT_TRUE(fs::is_directory(datafiles.Path() / "Borders"));
    EXPECT_TRUE(fs::is_directory(datafiles.Path() / "Templates"));
    EXPECT_EQ(ReadBytes(test::P(folder + L"Lines.ini")), "[LineList]\r\nVX2D_LINE_1 = Line 1\r\n");
    CProfile profile(registry);
    EXPECT_EQ(profile.GetString(L"NewProject", L"SettingFlowFolder"),
              datafiles.Text() + test::N(L"Drawings/"));
    EXPECT_EQ(profile.GetString(L"NewProject", L"TemplateFolder"),
              datafiles.Text() + test::N(L"Templates/"));
}

TEST_F(StartupTest, FirstRunStandardsComeOnlyIntoAnEmptyRegistry) {
    std::int32_t id = 0;
    ASSERT_EQ(projects.CreateProject({L"Mine", 0, -1, 0, false}, id), eProjectOk);
    ASSERT_EQ(projects.DeleteProject(id), eProjectOk);
    Start({});
    EXPECT_EQ(Standards().size(), 1u) << "a deleted standard counts";
    ASSERT_EQ(projects.PurgeProject(id), eProjectOk);
    Start({});
    EXPECT_EQ(Standards().size(), 2u);
}

TEST(StartupWindow, StoredPositionsAreFittedToTheScreen) {
    const std::tuple<SRect, SRect> cases[] = {
        {{-50, -20, 2000, 1500}, {0, 0, 1920, 1080}},
        {{100, 100, 300, 200}, {100, 100, 900, 700}},
        {{0, 0, 0, 0}, {0, 0, 800, 600}},
        {{10, 20, 1010, 820}, {10, 20, 1010, 820}},
    };
    for (const auto& [stored, fitted] : cases)
        EXPECT_EQ(CStartup::FitWindow(stored, 1920, 1080), fitted);
}

TEST_F(StartupTest, WindowPositionIsReadBackFromTheProfile) {
    CStartup startup(registry, installation, projects, prompter, {});
    EXPECT_EQ(startup.WindowRect(1920, 1080), (SRect{0, 0, 800, 600}));
    startup.SaveWindowRect({-5, 10, 1200, 900});
    EXPECT_EQ(CProfile(registry).GetString(L"Application", L"WindowPosition"), L"-5,10,1200,900");
    EXPECT_EQ(startup.WindowRect(1920, 1080), (SRect{0, 10, 1205, 900}));
}

TEST(StartupHelp, HelpIsNamedAfterTheProgramWithoutItsBitness) {
    EXPECT_EQ(CEnvironment::HelpName(L"C:\\P\\StandardsDesk64.exe"), L"StandardsDesk");
    EXPECT_EQ(CEnvironment::HelpName(L"/usr/bin/StandardsDesk32"), L"StandardsDesk");
    EXPECT_EQ(CEnvironment::HelpName(L"StandardsDesk46.exe"), L"StandardsDesk46");
    std::wstring error;
    EXPECT_EQ(CEnvironment::HelpTopicPath(L"/no/such/help/", L"::/Compare.htm", error), L"");
    EXPECT_EQ(error,
              L"Couldn't find help file: \n/no/such/help/\n\nPlease check software installation.");
}

class WindowsComponentsTest : public StartupTest {
protected:
    void SetUp() override {
        test::SetEnv("CommonProgramFiles", common.Path().string().c_str());
        test::SetEnv("SystemRoot", test::N("/win").c_str());
        fs::create_directories(common.Path() / "VANDIX");
    }
    void Register(ERegistryRoot root, const std::wstring& key, const std::wstring& value) {
        registry.SetString(root, key, L"", value);
    }
    // What a registration of the control writes.
    void RegisterAll() {
        const std::wstring clsid = L"{B4FD4FC6-4EBA-4D06-8244-BB09A940C60A}";
        const std::wstring control = L"AutoCAD DwgThumbnail Control 2013";
        Register(ERegistryRoot::ClassesRoot, L"AUTOCAD.DwgThumbnailCtrl.4\\CLSID", clsid);
        Register(ERegistryRoot::ClassesRoot, L"CLSID\\" + clsid, control);
        Register(ERegistryRoot::LocalMachine, L"Software\\Classes\\CLSID\\" + clsid, control);
        Register(ERegistryRoot::LocalMachine,
                 L"Software\\Classes\\AUTOCAD.DwgThumbnailCtrl.4\\CLSID", clsid);
    }
    CWindowsComponents Components() {
        SWindowsServices services;
        services.loadLibrary = [this](const std::wstring& path) {
            loaded.push_back(path);
            return loadWorks;
        };
        services.runAndWait = [this](const std::wstring& program,
                                     const std::vector<std::wstring>& args) {
            ran.push_back(program + L" " + args.at(0) + L" " + args.at(1));
            RegisterAll();
        };
        return CWindowsComponents(environment, registry, prompter, services);
    }

    test::CTempDir common;
    CEnvironment environment{installation};
    std::vector<std::wstring> loaded, ran;
    bool loadWorks = true;
};

TEST_F(WindowsComponentsTest, TheDialogsLibraryIsLookedForAndLoaded) {
    EXPECT_EQ(Components().LoadOemDialogsLibrary(), L"");
    EXPECT_EQ(
        prompter.asked.at(0).text,
        L"Couldn't find dll file: \nVXSWDialogsOEM64.dll\n\nPlease check software installation.");
    WriteBytes(common.Path() / "VANDIX" / "VXSWDialogsOEM64.dll", "MZ");
    const std::wstring path = common.Text() + test::N(L"VANDIX/VXSWDialogsOEM64.dll");
    loadWorks = false;
    EXPECT_EQ(Components().LoadOemDialogsLibrary(), L"");
    EXPECT_EQ(prompter.asked.at(1).text,
              L"Couldn't load dll file: \n" + path + L"\n\nPlease check software installation.");
    loadWorks = true;
    EXPECT_EQ(Components().LoadOemDialogsLibrary(), path);
    EXPECT_EQ(prompter.asked.size(), 2u);
}

TEST_F(WindowsComponentsTest, TheThumbnailControlIsRegisteredOnlyWhenItsThreeValuesAreWrong) {
    const std::wstring control = common.Text() + test::N(L"VANDIX/DwgThumbnail.ocx");
    EXPECT_FALSE(Components().EnsureThumbnailControlRegistered());
    EXPECT_EQ(prompter.asked.at(0).text,
              L"Couldn't find ocx file: \n" + control + L"\n\nPlease check software installation.");
    EXPECT_TRUE(ran.empty());

    // The control comes from the suite's shared folder.
    registry.SetString(ERegistryRoot::LocalMachine, CInstallation::kInstallKey, L"NetworkAppPath",
                       datafiles.Text());
    WriteBytes(datafiles.Path() / "Applications" / "Common Files" / "DwgThumbnail.OCX", "ocx");
    fs::rename(datafiles.Path() / "Applications" / "Common Files" / "DwgThumbnail.OCX",
               datafiles.Path() / "Applications" / "Common Files" / "DwgThumbnail.ocx");
    EXPECT_TRUE(Components().EnsureThumbnailControlRegistered());
    EXPECT_EQ(ran, std::vector<std::wstring>{test::N(L"/win/system32/REGSVR32.EXE") + L" /s \"" +
                                             control + L"\""});

    // Three right values skip the registration, yet the fourth still decides.
    registry.DeleteValue(ERegistryRoot::LocalMachine,
                         L"Software\\Classes\\AUTOCAD.DwgThumbnailCtrl.4\\CLSID", L"");
    ran.clear();
    EXPECT_FALSE(Components().EnsureThumbnailControlRegistered());
    EXPECT_TRUE(ran.empty());
}

} // namespace startup_test
