// Installation values and the paths built on them, read through the INI-backed
// registry of temporary folders.
#include "store/Installation.h"
#include "platform/Utf8.h"
#include "store/IniRegistry.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>

namespace fs = std::filesystem;
using test::ReadBytes;

namespace installation_test {

class InstallationTest : public ::testing::Test {
protected:
    InstallationTest() : m_registry(m_machine.Text() + L"m", m_user.Text() + L"u") {}

    void SetMachine(const wchar_t* name, const std::wstring& value) {
        ASSERT_TRUE(m_registry.SetString(ERegistryRoot::LocalMachine, CInstallation::kInstallKey,
                                         name, value));
    }

    test::CTempDir m_machine, m_user;
    CIniRegistry m_registry;
};

TEST_F(InstallationTest, FolderValuesEndInOneSeparator) {
    const std::vector<std::pair<std::wstring, std::wstring>> cases = {
        {L"", L""}, {L"/srv/datafiles", L"/srv/datafiles/"}, {L"/srv/df/", L"/srv/df/"}};
    for (const auto& [stored, expected] : cases) {
        SCOPED_TRACE(platform::ToUtf8(stored));
        SetMachine(L"DatafilesPath", stored);
        SetMachine(L"LocalAppPath", stored);
        SetMachine(L"NetworkAppPath", stored);
        const CInstallation installation(m_registry);
        EXPECT_EQ(installation.DatafilesPath(), expected);
        EXPECT_EQ(installation.LocalAppPath(), expected);
        EXPECT_EQ(installation.NetworkAppPath(), expected);
        EXPECT_EQ(installation.DatafilesFile(L"ProjectDatafile.ini"),
                  expected.empty() ? L"" : expected + L"ProjectDatafile.ini");
    }
}

TEST_F(InstallationTest, ValuesAreReadAnewAndOnlyFromTheMachine) {
    const CInstallation installation(m_registry);
    EXPECT_EQ(installation.DatafilesPath(), L"");
    ASSERT_TRUE(m_registry.SetString(ERegistryRoot::CurrentUser, CInstallation::kInstallKey,
                                     L"DatafilesPath", L"/home/df"));
    EXPECT_EQ(installation.DatafilesPath(), L"");
    SetMachine(L"DatafilesPath", L"/srv/a");
    EXPECT_EQ(installation.DatafilesPath(), L"/srv/a/");
    SetMachine(L"DatafilesPath", L"/srv/b");
    EXPECT_EQ(installation.DatafilesFile(L"ClientDatafile.ini"), L"/srv/b/ClientDatafile.ini");
}

TEST_F(InstallationTest, DatafilesOverrideWinsAndIsMadeAbsolute) {
    SetMachine(L"DatafilesPath", L"/srv/installed");
    const std::wstring cwd = platform::FromPath(fs::current_path());
    const std::vector<std::pair<std::wstring, std::wstring>> cases = {
        {test::Abs(L"/portable/df"), test::Abs(L"/portable/df/")},
        {L"\u00E9t\u00E9/df", test::N(cwd + L"/\u00E9t\u00E9/df/")}};
    for (const auto& [given, expected] : cases) {
        SCOPED_TRACE(platform::ToUtf8(given));
        const CInstallation installation(m_registry, given);
        EXPECT_EQ(installation.DatafilesPath(), expected);
        EXPECT_EQ(installation.DatafilesFile(L"x.ini"), expected + L"x.ini");
    }
    EXPECT_EQ(CInstallation(m_registry, L"").DatafilesPath(), L"/srv/installed/");
}

TEST_F(InstallationTest, SuiteFolders) {
    SetMachine(L"NetworkAppPath", test::N(L"/net/suite"));
    const CInstallation installation(m_registry);
    const std::tuple<int, const wchar_t*, std::wstring> cases[] = {
        {0, L"Symbols", L"/net/suite/Crafter/"},
        {1, L"", L"/net/suite/Crafter/Electric/"},
        {2, L"Symbols", L"/net/suite/Crafter/Flow/Symbols/"},
        {4, L"Blocks", L"/net/suite/Crafter/Ortho/Blocks/"},
    };
    for (const auto& [application, sub, expected] : cases)
        EXPECT_EQ(installation.SuiteApplicationFolder(application, sub), test::N(expected))
            << application;
    EXPECT_EQ(installation.SuiteCommonFolder(L""), test::N(L"/net/suite/Crafter/Common/"));
    EXPECT_EQ(installation.SuiteCommonFolder(L"Fonts"),
              test::N(L"/net/suite/Crafter/Common/Fonts/"));

    SetMachine(L"NetworkAppPath", L"");
    EXPECT_EQ(installation.SuiteApplicationFolder(2, L"Symbols"), L"");
    EXPECT_EQ(installation.SuiteCommonFolder(L"Fonts"), L"");
}

TEST_F(InstallationTest, MachineAndUserValuesLiveInTheirOwnFiles) {
    const std::wstring key = L"Software\\VANDIX\\2D Kryn\\2023";
    ASSERT_TRUE(
        m_registry.SetString(ERegistryRoot::LocalMachine, key, L"DatafilesPath", L"/srv/df"));
    ASSERT_TRUE(
        m_registry.SetString(ERegistryRoot::LocalMachine, key, L"LocalAppPath", L"/opt/caf\u00E9"));
    ASSERT_TRUE(m_registry.SetString(ERegistryRoot::CurrentUser,
                                     key + L"\\Standards Desk\\Application", L"WindowPosition",
                                     L"1,2,3,4"));
    ASSERT_TRUE(
        m_registry.SetString(ERegistryRoot::CurrentUser, key, L"DatafilesPath", L"/home/df"));

    EXPECT_EQ(ReadBytes(m_machine.Path() / "m" / "registry.ini"),
              "[Software\\VANDIX\\2D Kryn\\2023]\r\nDatafilesPath = /srv/df\r\nLocalAppPath = "
              "/opt/caf\xE9\r\n");
    EXPECT_EQ(ReadBytes(m_user.Path() / "u" / "registry.ini"),
              "[Software\\VANDIX\\2D Kryn\\2023]\r\nDatafilesPath = /home/df\r\n\r\n"
              "[Software\\VANDIX\\2D Kryn\\2023\\Standards Desk\\Application]\r\nWindowPosition = "
              "1,2,3,4\r\n");

    const CIniRegistry reopened(m_machine.Text() + L"m", m_user.Text() + L"u");
    std::wstring value;
    EXPECT_TRUE(reopened.GetString(ERegistryRoot::LocalMachine, key, L"LocalAppPath", value));
    EXPECT_EQ(value, L"/opt/caf\u00E9");
    EXPECT_EQ(reopened.Read(ERegistryRoot::CurrentUser, key, L"DatafilesPath"), L"/home/df");
    EXPECT_EQ(reopened.Read(ERegistryRoot::LocalMachine, key, L"DatafilesPath"), L"/srv/df");
    value = L"stale";
    EXPECT_FALSE(reopened.GetString(ERegistryRoot::LocalMachine, key, L"NetworkAppPath", value));
    EXPECT_EQ(value, L"");
    EXPECT_FALSE(
        reopened.GetString(ERegistryRoot::LocalMachine, key + L"\\Other", L"DatafilesPath", value));

    ASSERT_TRUE(m_registry.DeleteValue(ERegistryRoot::LocalMachine, key, L"DatafilesPath"));
    EXPECT_FALSE(reopened.GetString(ERegistryRoot::LocalMachine, key, L"DatafilesPath", value));
    EXPECT_EQ(reopened.Read(ERegistryRoot::CurrentUser, key, L"DatafilesPath"), L"/home/df");
}

// Sets or clears environment variables for one test and puts them back.
class CEnvironment {
public:
    void Set(const char* name, const char* value) {
        if (!m_saved.count(name)) {
            const char* old = std::getenv(name);
            m_saved[name] = old ? std::optional<std::string>(old) : std::nullopt;
        }
        test::SetEnv(name, value);
    }
    ~CEnvironment() {
        for (const auto& [name, value] : m_saved) {
            test::SetEnv(name.c_str(), value ? value->c_str() : nullptr);
        }
    }

private:
    std::map<std::string, std::optional<std::string>> m_saved;
};

// The separator of a folder list in XDG_CONFIG_DIRS, as of PATH.
#ifdef _WIN32
constexpr const char* kListSeparator = ";";
#else
constexpr const char* kListSeparator = ":";
#endif

TEST(IniRegistryDefaults, FollowTheXdgFolders) {
    // XDG_CONFIG_DIRS, XDG_CONFIG_HOME, and where the system keeps
    // machine-wide and per-user settings without them (HOME here;
    // PROGRAMDATA and APPDATA on Windows), then the two folders.
    struct SCase {
        const char *dirs, *home, *machineDefault, *userDefault;
        std::wstring machine, user;
    };
    const std::string dirs = test::N("/x/first") + kListSeparator + test::N("/x/second");
#ifdef _WIN32
    const char* const machineVariable = "PROGRAMDATA";
    const char* const userVariable = "APPDATA";
    const SCase cases[] = {
        {dirs.c_str(), "C:\\h\\cfg\\", "C:\\pd", "C:\\ad", L"\\x\\first\\VANDIX",
         L"C:\\h\\cfg\\VANDIX"},
        {"", "", "C:\\pd", "C:\\ad\\", L"C:\\pd\\VANDIX", L"C:\\ad\\VANDIX"},
        {nullptr, nullptr, "D:\\data", "C:\\u", L"D:\\data\\VANDIX", L"C:\\u\\VANDIX"},
    };
#else
    const char* const machineVariable = "XDG_UNUSED";
    const char* const userVariable = "HOME";
    const SCase cases[] = {
        {dirs.c_str(), "/h/cfg/", "", "/h", L"/x/first/VANDIX", L"/h/cfg/VANDIX"},
        {"", "", "", "/home/u", L"/etc/xdg/VANDIX", L"/home/u/.config/VANDIX"},
        {nullptr, nullptr, "", "/home/v/", L"/etc/xdg/VANDIX", L"/home/v/.config/VANDIX"},
    };
#endif
    for (const auto& c : cases) {
        SCOPED_TRACE(platform::ToUtf8(c.machine + L" " + c.user));
        CEnvironment env;
        env.Set("XDG_CONFIG_DIRS", c.dirs);
        env.Set("XDG_CONFIG_HOME", c.home);
        env.Set(machineVariable, c.machineDefault);
        env.Set(userVariable, c.userDefault);
        const CIniRegistry registry;
        EXPECT_EQ(registry.FileOf(ERegistryRoot::LocalMachine),
                  c.machine + test::N(L"/registry.ini"));
        EXPECT_EQ(registry.FileOf(ERegistryRoot::CurrentUser), c.user + test::N(L"/registry.ini"));
    }
}

TEST(IniRegistryDefaults, WritesIntoTheFoldersTheEnvironmentNames) {
    test::CTempDir machine, user;
    CEnvironment env;
    env.Set("XDG_CONFIG_DIRS",
            (machine.Path().string() + kListSeparator + test::N("/nonexistent")).c_str());
    env.Set("XDG_CONFIG_HOME", user.Path().string().c_str());
    CIniRegistry registry;
    ASSERT_TRUE(registry.SetString(ERegistryRoot::LocalMachine, L"K", L"V", L"m"));
    ASSERT_TRUE(registry.SetString(ERegistryRoot::CurrentUser, L"K", L"V", L"u"));
    EXPECT_EQ(ReadBytes(machine.Path() / "VANDIX" / "registry.ini"), "[K]\r\nV = m\r\n");
    EXPECT_EQ(ReadBytes(user.Path() / "VANDIX" / "registry.ini"), "[K]\r\nV = u\r\n");
}

} // namespace installation_test
