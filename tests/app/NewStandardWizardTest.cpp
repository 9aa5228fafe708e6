// The new standard wizard: what it proposes and what Finish writes.
#include "app/NewStandardWizard.h"
#include "store/GeneralSettings.h"
#include "store/IniRegistry.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace new_standard_wizard_test {

class NewStandardWizardTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        profile.SetString(L"NewProject", L"SettingFlowFolder", test::Abs(L"/d/Drawings/"));
        profile.SetString(L"NewProject", L"BorderFolder", test::Abs(L"/d/Borders/"));
        std::int32_t id = 0;
        std::wstring name;
        clients.CreateClient(id, name);
    }
    std::string File(std::int32_t id, const wchar_t* name) {
        return test::ReadBytes(FolderOf(id) / test::P(name));
    }

    test::CTempDir config;
    CIniRegistry machine{config.File(L"machine"), config.File(L"user")};
    CProfile profile{machine};
    CVX2D_ClientRegistry clients{Datafiles()};
    CNewStandardWizard wizard{registry, clients, profile};
};

TEST_F(NewStandardWizardTest, ProposesTheDefaultNameAndTheLastFolders) {
    const auto proposal = wizard.Proposal(1);
    EXPECT_EQ(proposal.name, L"Standard 1");
    EXPECT_EQ(proposal.clientId, 1);
    EXPECT_EQ(proposal.drawings[0], L"");
    EXPECT_EQ(proposal.drawings[1], test::Abs(L"/d/Drawings/Standard 1/Flow/"));
    EXPECT_EQ(proposal.borders, test::Abs(L"/d/Borders/"));
    EXPECT_EQ(wizard.CheckName(L" Pipe "), L"");
    EXPECT_EQ(wizard.CheckName(L"a/b"), L"'a/b' cannot be the name of a standard.\n\nInvalid name");
}

TEST_F(NewStandardWizardTest, FinishWritesUnitsFoldersAndTheFirstLine) {
    auto choice = wizard.Proposal(1);
    choice.name = L"Plant";
    choice.workingUnits = 1;
    choice.displayedUnits = 3;
    choice.source = CNewStandardWizard::eImperialTemplate;
    choice.drawings = wizard.DrawingsFoldersFor(L"Plant");
    choice.drawings[1] = RootText() + test::N(L"Drawings/Plant/Flow/");
    std::wstring message;
    const std::int32_t id = wizard.Finish(choice, message);
    ASSERT_EQ(id, 1) << std::string(message.begin(), message.end());
    EXPECT_EQ(clients.GetClientProjectIds(1), std::vector<std::int32_t>{1});
    CVX2D_GeneralSettings general;
    ASSERT_TRUE(general.Load(registry, id));
    EXPECT_EQ(general.m_nWorkingUnits, 1);
    EXPECT_EQ(general.m_nDisplayedUnits, 3);
    EXPECT_EQ(general.GetDrawingsLocation(2), RootText() + test::N(L"Drawings/Plant/Flow/"));
    EXPECT_EQ(general.m_strBordersLocation, test::Abs(L"/d/Borders/"));
    EXPECT_TRUE(std::filesystem::is_directory(Root() / "Drawings" / "Plant" / "Flow"));
    EXPECT_EQ(File(id, L"Lines.ini"), "[LineList]\r\nVX2D_LINE_1 = Line 1\r\n");
    // The next standard starts from the drawings folder this one used.
    EXPECT_EQ(wizard.Proposal(0).drawings[1], RootText() + test::N(L"Drawings/Standard 2/Flow/"));
}

TEST_F(NewStandardWizardTest, ACopyTakesTheChosenNameAndClient) {
    std::int32_t source = 0;
    ASSERT_EQ(registry.CreateProject({L"Pipe", 0, 1, 0, false}, source), eProjectOk);
    auto choice = wizard.Proposal(1);
    choice.name = L"Pipe Rev B";
    choice.source = CNewStandardWizard::eCopyOfStandard;
    choice.copyOf = source;
    std::wstring message;
    const std::int32_t id = wizard.Finish(choice, message);
    EXPECT_EQ(message, L"");
    EXPECT_EQ(registry.GetProjectName(id, true, false), L"Pipe Rev B");
    EXPECT_EQ(clients.GetClientProjectIds(1), std::vector<std::int32_t>{id});

    choice.name = L"x|y";
    EXPECT_EQ(wizard.Finish(choice, message), 0);
    EXPECT_EQ(message, L"Error creating new standard 'x|y'\n\nInvalid name");
    EXPECT_EQ(registry.GetProjectIds(true, true).size(), 2u)
        << "nothing is copied under a refused name";
}

} // namespace new_standard_wizard_test
