// The desktop program's datafiles folder: which one a start uses, and what a
// folder the user picks in the chooser must be.
#include "app/DatafilesChoice.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/IniRegistry.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace datafiles_choice_test {

class DatafilesChoiceTest : public ::testing::Test {
protected:
    std::wstring Sub(const char* name) const { return platform::FromPath(work.Path() / name); }

    test::CTempDir config, work;
    CIniRegistry registry{config.File(L"machine"), config.File(L"user")};
    test::CScriptedPrompter prompter;
    CDatafilesChoice choice{registry, prompter};
};

TEST_F(DatafilesChoiceTest, AStartUsesTheGivenFolderElseTheLastChoiceWhileItIsThere) {
    EXPECT_EQ(choice.StartFolder(L""), L"") << "nothing chosen yet: the installation's folder";
    ASSERT_TRUE(choice.Remember(Sub("office")));
    EXPECT_EQ(choice.StartFolder(L""), L"") << "the chosen folder is not there";
    fs::create_directories(work.Path() / "office");
    EXPECT_EQ(choice.StartFolder(L""), Sub("office"));
    EXPECT_EQ(choice.StartFolder(L"/given"), L"/given");
    // The choice is the user's, kept for the next run of the program.
    CIniRegistry again{config.File(L"machine"), config.File(L"user")};
    EXPECT_EQ(CDatafilesChoice(again, prompter).StartFolder(L""), Sub("office"));
}

TEST_F(DatafilesChoiceTest, APickedFolderIsCheckedAndAskedAboutBeforeItIsUsed) {
    fs::create_directories(work.Path() / "standards");
    test::WriteBytes(work.Path() / "standards" / "ProjectDatafile.ini", "[Projects]\r\n");
    fs::create_directories(work.Path() / "empty");
    fs::create_directories(work.Path() / "papers");
    test::WriteBytes(work.Path() / "papers" / "notes.txt", "x");

    struct SCase {
        const char* folder;
        EDatafilesPick pick;
        std::vector<EPromptAnswer> answers;
        bool accepted;
        const wchar_t* said; // in the one message or question, if any
    };
    const SCase cases[] = {
        {"standards", EDatafilesPick::Existing, {}, true, nullptr},
        {"standards", EDatafilesPick::New, {}, true, L"already holds a datafiles folder"},
        {"missing", EDatafilesPick::Existing, {}, false, L"does not exist"},
        {"empty", EDatafilesPick::Existing, {EPromptAnswer::No}, false, L"holds no standards"},
        {"empty", EDatafilesPick::Existing, {EPromptAnswer::Yes}, true, L"holds no standards"},
        {"empty", EDatafilesPick::New, {}, true, nullptr},
        {"papers", EDatafilesPick::New, {EPromptAnswer::No}, false, L"is not empty"},
        {"papers", EDatafilesPick::New, {EPromptAnswer::Yes}, true, L"is not empty"},
        {"made/below", EDatafilesPick::New, {}, true, nullptr},
    };
    for (const SCase& c : cases) {
        prompter.asked.clear();
        prompter.answers.assign(c.answers.begin(), c.answers.end());
        const std::wstring folder = Sub(c.folder);
        const std::optional<std::wstring> accepted = choice.Accept(folder, c.pick);
        const std::string what =
            std::string(c.folder) + (c.pick == EDatafilesPick::New ? " new" : "");
        EXPECT_EQ(accepted.has_value(), c.accepted) << what;
        if (accepted) {
            EXPECT_EQ(*accepted, folder) << what;
            EXPECT_TRUE(fs::is_directory(platform::ToPath(folder))) << what;
        }
        if (c.said == nullptr) {
            EXPECT_TRUE(prompter.asked.empty()) << what;
            continue;
        }
        ASSERT_EQ(prompter.asked.size(), 1u) << what;
        EXPECT_NE(prompter.asked[0].text.find(c.said), std::wstring::npos) << what;
        EXPECT_NE(prompter.asked[0].text.find(folder), std::wstring::npos) << what;
    }
    EXPECT_TRUE(fs::exists(work.Path() / "papers" / "notes.txt"));
}

TEST_F(DatafilesChoiceTest, ANewFolderWhereTheUserMayNotWriteIsRefusedWithTheReason) {
    const fs::path locked = work.Path() / "locked";
    fs::create_directories(locked);
    fs::permissions(locked, fs::perms::owner_read | fs::perms::owner_exec);
    if (platform::CanWriteFile(locked)) {
        fs::permissions(locked, fs::perms::owner_all);
        GTEST_SKIP() << "this user may write any folder";
    }
    EXPECT_FALSE(choice.Accept(Sub("locked"), EDatafilesPick::New));
    fs::permissions(locked, fs::perms::owner_all);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_NE(prompter.asked[0].text.find(L"you may not write there"), std::wstring::npos);
}

TEST_F(DatafilesChoiceTest, TheChooserSaysWhetherAFolderIsUnknownOrAway) {
    CIniRegistry empty{config.File(L"none"), config.File(L"none-user")};
    EXPECT_NE(CDatafilesChoice::Reason(CInstallation(empty)).find(L"No datafiles folder is known"),
              std::wstring::npos);
    const std::wstring share = test::Abs(L"/mnt/share/data");
    const std::wstring away = CDatafilesChoice::Reason(CInstallation(empty, share));
    EXPECT_NE(away.find(L"'" + share), std::wstring::npos);
    EXPECT_NE(away.find(L"cannot be reached"), std::wstring::npos);
}

} // namespace datafiles_choice_test
