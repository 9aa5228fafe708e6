// The start-up update check: when it looks at the page, what it writes back,
// and every question and message it shows.
#include "app/UpdateCheck.h"
#include "store/IniRegistry.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <map>

namespace fs = std::filesystem;

namespace update_check_test {

const std::wstring kSupport = L"Software\\VANDIX\\2D Kryn\\2023\\Support";

// The Windows registry's way with numbers: a DWORD is no string.
class CDwordRegistry : public CIniRegistry {
public:
    using CIniRegistry::CIniRegistry;
    bool GetString(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                   std::wstring& value) const override {
        if (dwords.count(name)) {
            value.clear();
            return false;
        }
        return CIniRegistry::GetString(root, path, name, value);
    }
    bool GetNumber(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                   std::uint32_t& value) const override {
        const auto it = dwords.find(name);
        if (it == dwords.end())
            return CIniRegistry::GetNumber(root, path, name, value);
        value = it->second;
        return true;
    }
    bool SetNumber(ERegistryRoot root, const std::wstring& path, const std::wstring& name,
                   std::uint32_t value) override {
        if (!windows)
            return CIniRegistry::SetNumber(root, path, name, value);
        dwords[name] = value;
        return true;
    }
    bool windows = false; // numbers are written as DWORDs
    std::map<std::wstring, std::uint32_t> dwords;
};

class UpdateCheckTest : public ::testing::Test {
protected:
    void SetUp() override {
        SetInstall(L"LocalAppPath", suite.Text());
        SetInstall(L"NetworkAppPath", suite.Text());
        SetInstall(L"UpdatePageUrl", L"https://updates.invalid/page");
        // An installed suite file from 2026-01-05.
        const fs::path exe = suite.Path() / "Applications" / "Kryn.EXE";
        test::WriteBytes(exe, "x");
        SetFileTime(exe, L"2026-01-05 08:00:00");
    }

    void SetInstall(const std::wstring& name, const std::wstring& value) {
        registry.SetString(ERegistryRoot::LocalMachine, CInstallation::kInstallKey, name, value);
    }
    void SetSupport(const std::wstring& name, const std::wstring& value) {
        registry.SetString(ERegistryRoot::CurrentUser, kSupport, name, value);
    }
    std::wstring Support(const std::wstring& name) const {
        return registry.Read(ERegistryRoot::CurrentUser, kSupport, name);
    }
    static void SetFileTime(const fs::path& file, const std::wstring& when) {
        const auto system = std::chrono::system_clock::from_time_t(CUpdateCheck::ParseTime(when));
        fs::last_write_time(file, fs::file_time_type::clock::now() +
                                      std::chrono::duration_cast<fs::file_time_type::duration>(
                                          system - std::chrono::system_clock::now()));
    }

    CUpdateCheck::EOutcome Run() {
        CUpdateCheck::SServices services;
        services.now = [] { return CUpdateCheck::ParseTime(L"2026-03-10 14:30:00"); };
        services.readPage = [this](const std::wstring& url) {
            pagesRead.push_back(url);
            return page;
        };
        services.openPage = [this](const std::wstring& url) {
            opened.push_back(url);
            return openWorks;
        };
        return CUpdateCheck(registry, installation, prompter, services).Run();
    }

    test::CTempDir config, suite;
    CDwordRegistry registry{config.File(L"machine"), config.File(L"user")};
    CInstallation installation{registry};
    test::CScriptedPrompter prompter;
    std::optional<std::string> page = "<p>2D_2023_Kryn_Update 2026-02-01 10:00:00</p>";
    std::vector<std::wstring> pagesRead, opened;
    bool openWorks = true;
};

TEST_F(UpdateCheckTest, OnlyTheInstallationThatIsTheSharedFolderChecks) {
    SetInstall(L"LocalAppPath", L"/opt/local/");
    EXPECT_EQ(Run(), CUpdateCheck::eNotThisInstallation);
    EXPECT_FALSE(fs::exists(config.Path() / "user")) << "nothing is written on a client machine";
    SetInstall(L"LocalAppPath", L"/Opt/Suite/");
    SetInstall(L"NetworkAppPath", L"/opt/suite/");
    EXPECT_EQ(Run(), CUpdateCheck::eNotDue) << "letter case does not matter";
}

TEST_F(UpdateCheckTest, AFirstRunWritesTheIntervalAndWaitsForIt) {
    EXPECT_EQ(Run(), CUpdateCheck::eNotDue);
    EXPECT_EQ(Support(L"CheckWebVersionDays"), L"7");
    EXPECT_EQ(Support(L"CheckWebVersionDate"), L"")
        << "a missing date counts as due in 7 days, unwritten";
    EXPECT_TRUE(pagesRead.empty());
}

TEST_F(UpdateCheckTest, RepairsWhatItCannotRead) {
    SetSupport(L"CheckWebVersionDays", L"4294967295");
    SetSupport(L"CheckWebVersionDate", L"soon");
    EXPECT_EQ(Run(), CUpdateCheck::eDateRepaired);
    EXPECT_EQ(Support(L"CheckWebVersionDays"), L"7");
    EXPECT_EQ(Support(L"CheckWebVersionDate"), L"2026-03-17 00:00:00");
    EXPECT_TRUE(pagesRead.empty());
}

TEST_F(UpdateCheckTest, TheIntervalIsANumberAndNotText) {
    // A DWORD of 3 is used as it is, and nothing replaces it with text.
    registry.windows = true;
    registry.dwords[L"CheckWebVersionDays"] = 3;
    SetSupport(L"CheckWebVersionDate", L"soon");
    EXPECT_EQ(Run(), CUpdateCheck::eDateRepaired);
    EXPECT_EQ(Support(L"CheckWebVersionDate"), L"2026-03-13 00:00:00");
    EXPECT_EQ(registry.dwords,
              (std::map<std::wstring, std::uint32_t>{{L"CheckWebVersionDays", 3}}));
    EXPECT_EQ(Support(L"CheckWebVersionDays"), L"");

    // What is missing or unusable is written back as the number 7.
    for (const std::uint32_t stored : {0xFFFFFFFFu, 7u}) {
        registry.dwords = {{L"CheckWebVersionDays", stored}};
        SetSupport(L"CheckWebVersionDate", L"soon");
        EXPECT_EQ(Run(), CUpdateCheck::eDateRepaired);
        EXPECT_EQ(registry.dwords[L"CheckWebVersionDays"], 7u);
        EXPECT_EQ(Support(L"CheckWebVersionDate"), L"2026-03-17 00:00:00");
    }
}

TEST_F(UpdateCheckTest, ADueCheckReadsThePageAndAsks) {
    const std::wstring question =
        L"A newer version of 2D Kryn 2023 is available.\n\nDo you want to download it "
        L"from the website?\n\nIf you Cancel, you will not be prompted again.";
    // The answer, the outcome, the next due date and the message after the question.
    const std::tuple<EPromptAnswer, CUpdateCheck::EOutcome, const wchar_t*, const wchar_t*>
        cases[] = {
            {EPromptAnswer::Yes, CUpdateCheck::eOpenedPage, L"2026-03-13 00:00:00", nullptr},
            {EPromptAnswer::No, CUpdateCheck::eRemindLater, L"2026-03-13 00:00:00",
             L"You will be reminded in 3 days of a new update."},
            {EPromptAnswer::Cancel, CUpdateCheck::eNeverRemind, L"2027-03-10 00:00:00",
             L"You will not be reminded of any new updates."},
        };
    for (const auto& [answer, outcome, due, message] : cases) {
        SetSupport(L"CheckWebVersionDays", L"3");
        SetSupport(L"CheckWebVersionDate", L"2026-03-10 00:00:00");
        prompter.asked.clear();
        opened.clear();
        prompter.answers = {answer};
        EXPECT_EQ(Run(), outcome);
        EXPECT_EQ(Support(L"CheckWebVersionDate"), due);
        std::vector<std::wstring> shown;
        for (const auto& prompt : prompter.asked) {
            shown.push_back(prompt.text);
            EXPECT_EQ(prompt.caption, L"2D Kryn 2023");
            EXPECT_TRUE(prompt.topmost);
        }
        EXPECT_EQ(shown, (message ? std::vector<std::wstring>{question, message}
                                  : std::vector<std::wstring>{question}));
        EXPECT_EQ(prompter.asked[0].buttons, EPromptButtons::YesNoCancel);
        EXPECT_EQ(opened.size(), answer == EPromptAnswer::Yes ? 1u : 0u);
    }
    EXPECT_EQ(pagesRead, std::vector<std::wstring>(3, L"https://updates.invalid/page"));
}

TEST_F(UpdateCheckTest, APageNothingOpensIsToldAfterTheQuestion) {
    SetSupport(L"CheckWebVersionDays", L"3");
    SetSupport(L"CheckWebVersionDate", L"2026-03-10 00:00:00");
    openWorks = false;
    prompter.answers = {EPromptAnswer::Yes};
    EXPECT_EQ(Run(), CUpdateCheck::eOpenedPage);
    EXPECT_EQ(opened, std::vector<std::wstring>{L"https://updates.invalid/page"});
    ASSERT_EQ(prompter.asked.size(), 2u);
    const SPrompt& told = prompter.asked[1];
    EXPECT_EQ(told.text.rfind(L"No program could open the page 'https://updates.invalid/page'.", 0),
              0u);
    EXPECT_EQ(told.icon, EPromptIcon::Exclamation);
    // Like the question, above every window and under the product's name.
    EXPECT_TRUE(told.topmost);
    EXPECT_EQ(told.caption, L"2D Kryn 2023");
}

TEST_F(UpdateCheckTest, SaysNothingWhenThePageHasNothingNewer) {
    // A suite file newer than the page's update.
    const fs::path fas = suite.Path() / "Crafter" / "Iso" / "R23" / "iso.FAS";
    test::WriteBytes(fas, "x");
    SetFileTime(fas, L"2026-02-02 00:00:00");
    const std::pair<std::optional<std::string>, CUpdateCheck::EOutcome> cases[] = {
        {std::nullopt, CUpdateCheck::eNoPageTime},
        {"no mark here", CUpdateCheck::eNoPageTime},
        {"2D_2023_Kryn_Update yesterday", CUpdateCheck::eNoPageTime},
        {"2D_2023_Kryn_Update 2026-02-01 10:00:00", CUpdateCheck::eUpToDate},
    };
    for (const auto& [text, outcome] : cases) {
        SetSupport(L"CheckWebVersionDate", L"2026-03-01 00:00:00");
        page = text;
        EXPECT_EQ(Run(), outcome);
        EXPECT_EQ(Support(L"CheckWebVersionDate"), L"2026-03-17 00:00:00");
    }
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(UpdateCheckTest, ReadsFileAddressesThroughTheSameReader) {
    const fs::path file = suite.Path() / "update.html";
    test::WriteBytes(file, "<html>2D_2023_Kryn_Update 2026-02-01 10:00:00</html>");
    const auto text = ReadUpdatePage(L"file://" + suite.Text() + L"update.html");
    ASSERT_TRUE(text.has_value());
    EXPECT_EQ(CUpdateCheck::FormatTime(CUpdateCheck::PageTime(*text)), L"2026-02-01 10:00:00");
    EXPECT_FALSE(ReadUpdatePage(L"file://" + suite.Text() + L"missing.html").has_value());
}

} // namespace update_check_test
