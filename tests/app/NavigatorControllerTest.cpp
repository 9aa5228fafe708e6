// The navigator: the tree it builds from the registries, what applies to a
// selection, and each command's questions, messages and effects on disk.
#include "app/NavigatorController.h"
#include "platform/Utf8.h"
#include "store/IniRegistry.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace navigator_controller_test {

struct CFakeOwner : INavigatorOwner {
    std::vector<std::pair<ENavRequest, std::int32_t>> requests;
    std::int32_t wizardClient = -1;
    std::int32_t wizardId = 0;
    std::wstring wizardName;
    void Request(ENavRequest request, std::int32_t id) override {
        requests.emplace_back(request, id);
    }
    bool RunNewStandardWizard(std::int32_t clientId, std::int32_t& id,
                              std::wstring& name) override {
        wizardClient = clientId;
        id = wizardId;
        name = wizardName;
        return wizardId != 0;
    }
    void PrintStandard(std::int32_t) override {}
    void ExportStandard(std::int32_t id, const std::wstring& name) override {
        exported.emplace_back(id, name);
    }
    std::vector<std::pair<std::int32_t, std::wstring>> exported;
    void ImportStandards(std::int32_t) override {}
    // Long work as the window runs it: each piece named, stopped on the
    // first step when `stop` is set.
    std::vector<std::pair<std::wstring, bool>> longWork;
    bool stop = false;
    void RunLong(const std::wstring& text, bool canStop,
                 const std::function<void(const CProgress&)>& work) override {
        longWork.emplace_back(text, canStop);
        work([this](std::size_t, std::size_t, const std::wstring&) { return !stop; });
    }
};

// Renders the tree as "text(image:id)" with children in brackets.
std::wstring Render(const std::vector<CNavItem>& items) {
    std::wstring text;
    for (const auto& item : items) {
        text +=
            item.text + L"(" + std::to_wstring(item.image) + L":" + std::to_wstring(item.id) + L")";
        if (!item.children.empty())
            text += L"[" + Render(item.children) + L"]";
        text += L" ";
    }
    return text;
}

class NavigatorTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        // Clients "Zeta" (1) holding "pipe" and "Alpha", "acme" (2) holding "Tank";
        // "Loose" belongs to no client; "Old" is deleted and belongs to Zeta.
        for (const wchar_t* name : {L"pipe", L"Alpha", L"Tank", L"Loose", L"Old"}) {
            std::int32_t id = 0;
            ASSERT_EQ(registry.CreateProject({name, 0, -1, 0, false}, id), eProjectOk);
        }
        std::int32_t id = 0;
        std::wstring name;
        clients.CreateClient(id, name);
        clients.RenameClient(1, L"Zeta");
        clients.CreateClient(id, name);
        clients.RenameClient(2, L"acme");
        for (auto [client, standard] : {std::pair{1, 1}, {1, 2}, {2, 3}, {1, 5}})
            clients.AddProjectToClient(client, standard);
        ASSERT_EQ(registry.DeleteProject(5), eProjectOk);
        nav.Rebuild();
    }

    // The item at exactly this path, or 0.
    std::uint64_t Item(const std::vector<std::wstring>& path) const {
        const std::uint64_t found = nav.Tree().FindByPath(path);
        return nav.Tree().PathOf(found) == path ? found : 0;
    }
    std::wstring Tree() const { return Render(nav.Tree().Roots()); }
    std::vector<std::wstring> Texts() const {
        std::vector<std::wstring> texts;
        for (const auto& prompt : prompter.asked)
            texts.push_back(prompt.text);
        return texts;
    }

    test::CTempDir config;
    CIniRegistry machine{config.File(L"machine"), config.File(L"user")};
    CProfile profile{machine};
    CVX2D_ClientRegistry clients{Datafiles()};
    CFakeOwner owner;
    CNavigatorController nav{registry, clients, profile, prompter, owner};
};

TEST_F(NavigatorTest, BuildsSortedClientsWithTheirStandardsAndShowsDeletedOnlyWhenAsked) {
    EXPECT_EQ(Tree(), L"acme(0:2)[Tank(1:3) ] Loose(1:4) Zeta(0:1)[Alpha(1:2) pipe(1:1) ] ");
    nav.Execute(eCmdShowDeleted);
    EXPECT_EQ(profile.GetInt(L"ProjectNavigator", L"DeletedProjectState", -1), 8);
    EXPECT_EQ(Tree(),
              L"acme(0:2)[Tank(1:3) ] Loose(1:4) Zeta(0:1)[Alpha(1:2) Old(2:5) pipe(1:1) ] ");
    nav.Execute(eCmdShowDeleted);
    EXPECT_EQ(profile.GetInt(L"ProjectNavigator", L"DeletedProjectState", -1), 0);
}

TEST_F(NavigatorTest, RefreshKeepsTheSelectionOrItsNearestSurvivingAncestor) {
    nav.Select(Item({L"Zeta", L"pipe"}));
    EXPECT_EQ(profile.GetInt(L"ProjectNavigator", L"SelectedProject", 0), 1);
    nav.Execute(eCmdRefresh);
    EXPECT_EQ(nav.Tree().PathOf(nav.Selection()), (std::vector<std::wstring>{L"Zeta", L"pipe"}));
    ASSERT_EQ(registry.RenameProject(1, L"Tube"), eProjectOk);
    nav.Execute(eCmdRefresh);
    EXPECT_EQ(nav.Tree().PathOf(nav.Selection()), (std::vector<std::wstring>{L"Zeta"}));
}

TEST_F(NavigatorTest, KindsDecideButtonsPopupsAndWhichCommandsAct) {
    nav.Execute(eCmdShowDeleted);
    // The item, its kind, the pop-up menu and its greyed commands.
    const std::tuple<std::vector<std::wstring>, int, int, std::set<ENavCommand>> cases[] = {
        {{}, kNavNothing, 5, {}},
        {{L"Zeta"}, eNavClient, 4, {}},
        {{L"Zeta", L"pipe"}, eNavStandard, 0, {eCmdRecoverStandard, eCmdPurgeStandard}},
        {{L"Zeta", L"Old"},
         eNavDeleted,
         0,
         {eCmdOpenStandard, eCmdDeleteStandard, eCmdPrintStandard}},
    };
    for (const auto& [path, kind, menu, greyed] : cases) {
        const SNavPopup popup = nav.RightClick(path.empty() ? 0 : Item(path));
        EXPECT_EQ(nav.SelectionKind(), kind);
        EXPECT_EQ(nav.Buttons().openStandard, kind == eNavStandard);
        EXPECT_TRUE(nav.Buttons().newClient && nav.Buttons().newStandard);
        EXPECT_EQ(popup.menuIndex, menu);
        EXPECT_EQ(popup.greyed, greyed);
        // The menu of a standard opens it; a client's and the empty area's
        // start with New Client; every greyed command is one of the items.
        ASSERT_FALSE(popup.items.empty());
        EXPECT_EQ(popup.items.front(), menu == 0 ? eCmdOpenStandard : eCmdNewClient);
        for (const ENavCommand command : greyed)
            EXPECT_NE(std::find(popup.items.begin(), popup.items.end(), command),
                      popup.items.end());
        EXPECT_TRUE(popup.showDeletedChecked);
    }
    // Commands for another kind do nothing at all.
    nav.Select(Item({L"Zeta", L"pipe"}));
    nav.Execute(eCmdPurgeStandard);
    nav.Execute(eCmdDeleteClient);
    nav.Select(Item({L"Zeta", L"Old"}));
    nav.Execute(eCmdOpenStandard);
    EXPECT_TRUE(prompter.asked.empty());
    EXPECT_TRUE(owner.requests.empty());

    // A deleted standard keeps its folder until it is purged: it can be
    // exported (to keep a copy before purging), as on the command line.
    const std::pair<std::vector<std::wstring>, bool> exportable[] = {
        {{L"Zeta", L"pipe"}, true}, {{L"Zeta", L"Old"}, true}, {{L"Zeta"}, false}, {{}, false}};
    for (const auto& [path, applies] : exportable) {
        nav.Select(path.empty() ? 0 : Item(path));
        EXPECT_EQ(nav.Applies(eCmdExportStandard), applies);
        nav.Execute(eCmdExportStandard);
    }
    EXPECT_EQ(owner.exported,
              (std::vector<std::pair<std::int32_t, std::wstring>>{{1, L"pipe"}, {5, L"Old"}}));
}

TEST_F(NavigatorTest, ToolTipsTellStandardsOfTheSameNameApart) {
    const std::uint64_t loose = Item({L"Loose"});
    const std::wstring tip = nav.ToolTipOf(loose);
    EXPECT_TRUE(tip.starts_with(L"Standard 4\n")) << platform::ToUtf8(tip);
    EXPECT_TRUE(tip.ends_with(L"VX2D_PRJ_4 - Loose")) << platform::ToUtf8(tip);
    EXPECT_TRUE(nav.ToolTipOf(Item({L"acme"})).starts_with(L"Client "));
    EXPECT_EQ(nav.ToolTipOf(0), L"");
}

TEST_F(NavigatorTest, OpenAndCompareAreRequestsToTheOwner) {
    nav.Select(Item({L"Loose"}));
    nav.Execute(eCmdOpenStandard);
    nav.Execute(eCmdCompareStandards);
    nav.Select(Item({L"acme"}));
    nav.Execute(eCmdCompareStandards);
    EXPECT_EQ(owner.requests,
              (std::vector<std::pair<ENavRequest, std::int32_t>>{
                  {ENavRequest::Open, 4}, {ENavRequest::Compare, 4}, {ENavRequest::Compare, -1}}));
}

TEST_F(NavigatorTest, NewClientIsInsertedSortedAndNamedByEditingItsLabel) {
    nav.Execute(eCmdNewClient);
    EXPECT_EQ(nav.EditingItem(), nav.Selection());
    EXPECT_EQ(nav.Tree().PathOf(nav.Selection()), (std::vector<std::wstring>{L"Client 3"}));
    EXPECT_TRUE(nav.EndLabelEdit(L"Beta"));
    EXPECT_EQ(clients.GetClientName(3), L"Beta");
    EXPECT_EQ(Tree(),
              L"acme(0:2)[Tank(1:3) ] Beta(0:3) Loose(1:4) Zeta(0:1)[Alpha(1:2) pipe(1:1) ] ");
}

TEST_F(NavigatorTest, RenameSaysWhatFailedAndKeepsTheOldLabel) {
    const std::string before = test::ReadBytes(Root() / "ProjectDatafile.ini");
    nav.Select(Item({L"Zeta", L"pipe"}));
    nav.Execute(eCmdRenameStandard);
    EXPECT_FALSE(nav.EndLabelEdit(L"pipe")) << "the same text renames nothing";
    nav.Execute(eCmdRenameStandard);
    EXPECT_FALSE(nav.EndLabelEdit(std::nullopt));
    nav.Execute(eCmdRenameStandard);
    EXPECT_FALSE(nav.EndLabelEdit(L"a/b"));
    EXPECT_EQ(test::ReadBytes(Root() / "ProjectDatafile.ini"), before);
    nav.Select(Item({L"Zeta"}));
    nav.Execute(eCmdRenameClient);
    EXPECT_FALSE(nav.EndLabelEdit(L"\u20acuro"));
    EXPECT_EQ(nav.Outcome(), L"Error renaming client from 'Zeta' to '\u20acuro'.");
    EXPECT_EQ(Texts(), (std::vector<std::wstring>{
                           L"Error renaming project from 'pipe' to 'a/b'.\n\nInvalid name",
                           L"Error renaming client from 'Zeta' to '\u20acuro'."}));
    EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Stop);

    nav.Select(Item({L"Zeta", L"pipe"}));
    nav.Execute(eCmdRenameStandard);
    EXPECT_TRUE(nav.EndLabelEdit(L" Able "));
    EXPECT_EQ(nav.Outcome(), L"Standard 'pipe' renamed to 'Able'");
    EXPECT_EQ(Tree(), L"acme(0:2)[Tank(1:3) ] Loose(1:4) Zeta(0:1)[Able(1:1) Alpha(1:2) ] ");
}

TEST_F(NavigatorTest, DeleteClientAsksAndLeavesItsStandards) {
    nav.Select(Item({L"acme"}));
    prompter.answers = {EPromptAnswer::No, EPromptAnswer::Yes};
    nav.Execute(eCmdDeleteClient);
    EXPECT_EQ(clients.GetClientName(2), L"acme");
    nav.Execute(eCmdDeleteClient);
    ASSERT_EQ(prompter.asked.size(), 2u);
    EXPECT_EQ(prompter.asked[0].text, L"Are you sure you want to delete client 'acme'?\n\nNote "
                                      L"that sub-standards will not be deleted.");
    EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Question);
    EXPECT_EQ(Tree(), L"Loose(1:4) Tank(1:3) Zeta(0:1)[Alpha(1:2) pipe(1:1) ] ");
}

TEST_F(NavigatorTest, MarkDeletedRemovesOrGreysTheItemAndRecoverBringsItBack) {
    nav.Select(Item({L"Loose"}));
    prompter.answers = {EPromptAnswer::Yes};
    nav.Execute(eCmdDeleteStandard);
    EXPECT_EQ(prompter.asked.back().text,
              L"Are you sure you want to mark the standard 'Loose' as deleted?");
    EXPECT_EQ(prompter.asked.back().icon, EPromptIcon::Exclamation);
    EXPECT_EQ(Item({L"Loose"}), 0u);
    EXPECT_EQ(nav.Outcome(), L"Standard 'Loose' marked as deleted");
    nav.Execute(eCmdShowDeleted);
    nav.Select(Item({L"Loose"}));
    EXPECT_EQ(nav.SelectionKind(), eNavDeleted);
    nav.Execute(eCmdRecoverStandard);
    EXPECT_EQ(nav.SelectionKind(), eNavStandard);
    EXPECT_EQ(nav.Outcome(), L"Standard 'Loose' recovered");
    prompter.answers = {EPromptAnswer::No};
    nav.Execute(eCmdDeleteStandard);
    EXPECT_EQ(nav.Outcome(), L"") << "a question answered No did nothing";
    prompter.answers = {EPromptAnswer::Yes};
    nav.Execute(eCmdDeleteStandard);
    EXPECT_EQ(nav.SelectionKind(), eNavDeleted) << "shown deleted standards keep their item";
    EXPECT_EQ(registry.GetProjectName(4, false, true), L"Loose");
}

TEST_F(NavigatorTest, PurgeNeedsTwoYesAnswersAndTakesTheStandardOffItsClient) {
    nav.Execute(eCmdShowDeleted);
    nav.Select(Item({L"Zeta", L"Old"}));
    prompter.answers = {EPromptAnswer::Yes, EPromptAnswer::No};
    nav.Execute(eCmdPurgeStandard);
    EXPECT_EQ(registry.GetProjectName(5, false, true), L"Old");
    EXPECT_EQ(Texts(), (std::vector<std::wstring>{
                           L"Are you sure you want to purge the standard 'Old'?",
                           L"This will permanently delete standard 'Old'!\n\nThe only way to "
                           L"recover from this is through your own backup files.\n\nAre you "
                           L"still sure you want to do this?"}));
    EXPECT_EQ(prompter.asked[1].icon, EPromptIcon::Stop);
    for (const auto& prompt : prompter.asked)
        EXPECT_EQ(prompt.defaultAnswer, EPromptAnswer::No);

    prompter.answers = {EPromptAnswer::Yes, EPromptAnswer::Yes};
    nav.Execute(eCmdPurgeStandard);
    EXPECT_EQ(registry.GetProjectName(5, true, true), L"");
    EXPECT_EQ(Item({L"Zeta", L"Old"}), 0u);
    EXPECT_EQ(clients.GetClientProjectIds(1), (std::vector<std::int32_t>{1, 2}));
}

TEST_F(NavigatorTest, CopyAndPurgeRunAsLongWorkAndAStoppedCopyLeavesNoTrace) {
    test::WriteBytes(FolderOf(3) / "Drawings" / "T-1.dwg", "drawing");
    for (const bool stop : {true, false}) {
        owner.longWork.clear();
        owner.stop = stop;
        nav.Select(Item({L"acme", L"Tank"}));
        nav.Execute(eCmdCopyStandard);
        EXPECT_EQ(owner.longWork, (std::vector<std::pair<std::wstring, bool>>{
                                      {L"Copying standard 'Tank'...", true}}));
        EXPECT_TRUE(prompter.asked.empty()) << "a stop is the user's own: no message";
        EXPECT_EQ(Item({L"Copy of Tank"}) != 0, !stop);
        EXPECT_EQ(nav.Outcome(), stop ? L"Copying standard 'Tank' was stopped; nothing was copied"
                                      : L"Standard 'Tank' copied as 'Copy of Tank'");
        EXPECT_EQ(registry.GetProjectName(6, true, true), stop ? L"" : L"Copy of Tank");
    }
    EXPECT_EQ(test::ReadBytes(FolderOf(6) / "Drawings" / "T-1.dwg"), "drawing");

    owner.longWork.clear();
    nav.Select(Item({L"Copy of Tank"}));
    prompter.answers = {EPromptAnswer::Yes, EPromptAnswer::Yes};
    nav.Execute(eCmdDeleteStandard);
    nav.Execute(eCmdShowDeleted);
    nav.Select(Item({L"Copy of Tank"}));
    prompter.answers = {EPromptAnswer::Yes, EPromptAnswer::Yes};
    nav.Execute(eCmdPurgeStandard);
    EXPECT_EQ(owner.longWork, (std::vector<std::pair<std::wstring, bool>>{
                                  {L"Purging standard 'Copy of Tank'...", false}}));
    EXPECT_EQ(nav.Outcome(), L"Standard 'Copy of Tank' purged");
    EXPECT_EQ(registry.GetProjectName(6, true, true), L"");
}

TEST_F(NavigatorTest, DroppingMovesAStandardBetweenClients) {
    const std::uint64_t tank = Item({L"acme", L"Tank"});
    nav.Drop(tank, Item({L"acme"}));
    nav.Drop(tank, tank);
    EXPECT_EQ(clients.GetClientProjectIds(2), (std::vector<std::int32_t>{3}));
    nav.Drop(tank, Item({L"Zeta", L"pipe"}));
    EXPECT_EQ(Tree(), L"acme(0:2) Loose(1:4) Zeta(0:1)[Alpha(1:2) pipe(1:1) Tank(1:3) ] ");
    EXPECT_EQ(nav.Tree().PathOf(nav.Selection()), (std::vector<std::wstring>{L"Zeta", L"Tank"}));
    nav.Drop(nav.Selection(), 0);
    EXPECT_EQ(Tree(), L"acme(0:2) Loose(1:4) Tank(1:3) Zeta(0:1)[Alpha(1:2) pipe(1:1) ] ");
    EXPECT_EQ(clients.GetClientProjectIds(1), (std::vector<std::int32_t>{1, 2, 5}));

    // A client datafile that cannot be read refuses the move.
    fs::remove(Root() / "ClientDatafile.ini");
    fs::create_directory(Root() / "ClientDatafile.ini");
    nav.Drop(Item({L"Loose"}), Item({L"acme"}));
    ASSERT_EQ(Texts().size(), 1u);
    EXPECT_TRUE(Texts()[0].starts_with(L"Error moving project.\n\n'")) << test::P(Texts()[0]);
    // Why, in the system's own words (and language).
    EXPECT_NE(Texts()[0].find(L"ClientDatafile.ini' could not be read: "), std::wstring::npos)
        << test::P(Texts()[0]);
    EXPECT_NE(Item({L"Loose"}), 0u);
}

TEST_F(NavigatorTest, NewStandardGoesToTheSelectedClient) {
    nav.Select(Item({L"acme", L"Tank"}));
    owner.wizardId = 9;
    owner.wizardName = L"Fresh";
    nav.Execute(eCmdNewStandard);
    EXPECT_EQ(owner.wizardClient, 2);
    EXPECT_EQ(nav.Tree().PathOf(nav.Selection()), (std::vector<std::wstring>{L"acme", L"Fresh"}));
}

} // namespace navigator_controller_test
