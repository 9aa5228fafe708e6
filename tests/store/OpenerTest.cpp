// Opening a target with the desktop's program: a failure is always told to
// the user, naming what could not be opened and what opening needs.
#include "store/Opener.h"
#include "datafile/Text.h"
#include "platform/System.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace opener_test {

TEST(OpenerTest, AnOpenerThatFailsOrIsMissingIsToldToTheUser) {
    enum EOpener { eWorks, eFails, eMissing };
    // The opener, and whether the target counts as opened.
    const std::pair<EOpener, bool> cases[] = {{eWorks, true}, {eFails, false}, {eMissing, false}};
    const std::wstring target = L"/srv/dwg/Pump.dwg";
    for (const auto& [kind, opens] : cases) {
        SCOPED_TRACE(static_cast<int>(kind));
        std::vector<std::wstring> handed;
        COpener opener;
        if (kind != eMissing) {
            opener = [&handed, works = kind == eWorks](const std::wstring& what) {
                handed.push_back(what);
                return works;
            };
        }
        test::CScriptedPrompter prompter;
        EXPECT_EQ(OpenOrTell(opener, target, L"the drawing", prompter), opens);
        EXPECT_EQ(handed, kind == eMissing ? std::vector<std::wstring>{}
                                           : std::vector<std::wstring>{target});
        if (opens) {
            EXPECT_TRUE(prompter.asked.empty());
            continue;
        }
        ASSERT_EQ(prompter.asked.size(), 1u);
        EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Exclamation);
        EXPECT_EQ(prompter.asked[0].buttons, EPromptButtons::Ok);
        EXPECT_EQ(prompter.asked[0].text,
                  L"No program could open the drawing '/srv/dwg/Pump.dwg'.\n\n" +
                      platform::ShellOpenAdvice());
    }
}

TEST(OpenerTest, TheAdviceNamesWhatThisSystemOpensWith) {
    // Linux opens through xdg-open; the user must learn which package has it.
    if (kPathSeparator != L'/')
        GTEST_SKIP() << "Windows opens through its own shell";
    const std::wstring advice = platform::ShellOpenAdvice();
    EXPECT_NE(advice.find(L"xdg-open"), std::wstring::npos);
    EXPECT_NE(advice.find(L"xdg-utils"), std::wstring::npos);
    EXPECT_EQ(platform::FileManagerName().find(L"Windows"), std::wstring::npos);
}

} // namespace opener_test
