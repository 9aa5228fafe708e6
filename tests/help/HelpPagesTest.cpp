// The help shipped with the program: every topic the code can open has a
// page of its own (not the fallback index), the pages' links and pictures
// exist, the index reaches every page, and the pages made from the settings
// catalogues and layer sets are the ones committed.
#include "HelpPages.h"
#include "app/DatafilesDoctor.h"
#include "app/Environment.h"
#include "contents/ProjectLayers.h"
#include "contents/SettingsCatalogue.h"
#include "datafile/Application.h"
#include "editors/BordersEditor.h"
#include "editors/DrawingsManager.h"
#include "editors/FileLocationsEditor.h"
#include "editors/GeneralSettingsEditor.h"
#include "editors/LayersEditor.h"
#include "editors/LinesEditor.h"
#include "editors/SettingsEditor.h"
#include "editors/SpecsEditor.h"
#include "editors/StandardComparison.h"
#include "editors/StandardMerge.h"
#include "platform/Utf8.h"
#include "support/SpecsPageEditor.h"
#include "support/TestSupport.h"

#include <fmt/xchar.h>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace {

const fs::path kHelp = SD_HELP_DIR;

std::wstring HelpFolderText() {
    return platform::FromPath(kHelp) + L"/";
}

std::string ReadText(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The .htm pages of the help folder, by file name.
std::set<std::string> HelpPages() {
    std::set<std::string> pages;
    for (const auto& entry : fs::directory_iterator(kHelp)) {
        if (entry.path().extension() == ".htm")
            pages.insert(entry.path().filename().string());
    }
    return pages;
}

// The local targets of href="..." and src="..." in a page, without any
// "#fragment"; links to other sites are left out.
std::vector<std::string> LocalLinks(const std::string& html) {
    static const std::regex link(R"re((?:href|src)="([^"]*)")re");
    std::vector<std::string> targets;
    for (auto it = std::sregex_iterator(html.begin(), html.end(), link);
         it != std::sregex_iterator(); ++it) {
        std::string target = (*it)[1];
        if (target.starts_with("http:") || target.starts_with("https:") ||
            target.starts_with("mailto:"))
            continue;
        target = target.substr(0, target.find('#'));
        if (!target.empty())
            targets.push_back(target);
    }
    return targets;
}

// Every topic the code can open, with where it comes from, gathered from the
// code itself: the page tree's pages through their editors, each settings
// section and layers page of every application, and the constants of the
// windows that are not pages.
class HelpTopicsTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ListStandards();
        test::WriteBytes(Folder() / "General.ini",
                         "[General]\r\nProjectVersion = 2023\r\n\r\n[Units]\r\nDisplayed = 1\r\n"
                         "Working = 0\r\n");
    }

    void AddPage(const SSettingsPage& page, const std::wstring& path) {
        const std::wstring where = path + L" > " + page.title;
        switch (page.kind) {
        case ESettingsPage::General:
            Add(where, CGeneralSettingsEditor(registry, prompter).HelpTopic());
            break;
        case ESettingsPage::FileLocations:
            Add(where, CFileLocationsEditor(registry, prompter).HelpTopic());
            break;
        case ESettingsPage::Borders:
            Add(where, CBordersEditor(registry, prompter).HelpTopic());
            break;
        case ESettingsPage::Drawings:
        case ESettingsPage::DrawingFolder:
            Add(where, CDrawingsManager::kHelpTopic);
            break;
        case ESettingsPage::Lines:
            Add(where, CLinesEditor(registry, prompter).HelpTopic());
            break;
        case ESettingsPage::Specs:
            Add(where, test::CSpecsPageEditor(registry, prompter).HelpTopic());
            break;
        case ESettingsPage::Section: {
            CSettingsEditor editor(registry, prompter);
            EXPECT_TRUE(editor.Open(1, page.application, page.section)) << platform::ToUtf8(where);
            Add(where, editor.HelpTopic());
            break;
        }
        case ESettingsPage::Layers: {
            CLayersEditor editor(registry, prompter);
            EXPECT_TRUE(editor.Open(1, page.application)) << platform::ToUtf8(where);
            Add(where, editor.HelpTopic());
            break;
        }
        case ESettingsPage::Application:
            break; // holds the application's pages, shows none itself
        }
        for (const SSettingsPage& child : page.children)
            AddPage(child, where);
    }

    void Add(const std::wstring& where, const std::wstring& topic) {
        topics.emplace_back(platform::ToUtf8(where), topic);
    }

    void GatherAll() {
        for (const SSettingsPage& page : SettingsPageTree(false))
            AddPage(page, L"page tree");
        for (const int application : kApplications) {
            for (int section = 0; section <= CVX2D_ProjectSettingsBase::eSystemToggles; ++section) {
                const std::wstring topic = SettingsHelpTopic(application, section);
                if (!topic.empty())
                    Add(fmt::format(L"settings {} {}", application, section), topic);
            }
            Add(fmt::format(L"layers {}", application), LayersHelpTopic(application));
        }
        Add(L"comparison", CVX2D_StandardComparison::kHelpTopic);
        Add(L"apply to other standards", kPushHelpTopic);
        Add(L"datafiles check", CDatafilesDoctor::kHelpTopic);
    }

    std::vector<std::pair<std::string, std::wstring>> topics;
};

TEST_F(HelpTopicsTest, EveryTopicTheCodeOpensHasAPageOfItsOwn) {
    GatherAll();
    // The page tree alone has more than twenty pages with help.
    ASSERT_GT(topics.size(), 40u);
    const std::wstring index = HelpFolderText() + L"index.htm";
    for (const auto& [where, topic] : topics) {
        SCOPED_TRACE(where);
        ASSERT_TRUE(topic.starts_with(L"::/") && topic.ends_with(L".htm"))
            << platform::ToUtf8(topic);
        std::wstring error;
        const std::wstring page = CEnvironment::HelpTopicPath(HelpFolderText(), topic, error);
        EXPECT_EQ(error, L"");
        EXPECT_NE(page, index) << platform::ToUtf8(topic) << " falls back to the index";
        EXPECT_EQ(page, HelpFolderText() + HelpTopicPage(topic));
        EXPECT_TRUE(fs::is_regular_file(platform::ToPath(page)));
    }
}

TEST(HelpTopicPath, TopicsWithoutAPageOfTheirOwnShowTheIndex) {
    const struct {
        const wchar_t* topic;
        const wchar_t* page;
    } cases[] = {
        {CEnvironment::kIndexTopic, L"index.htm"},
        {L"::/Specs.htm", L"Specs.htm"},
        {L"::/No_Such_Page.htm", L"index.htm"},
        {L"", L"index.htm"},          // no topic: not the folder itself
        {L"::/", L"index.htm"},       // the same
        {L"::/images", L"index.htm"}, // a folder is no page
    };
    for (const auto& c : cases) {
        std::wstring error;
        EXPECT_EQ(CEnvironment::HelpTopicPath(HelpFolderText(), c.topic, error),
                  HelpFolderText() + c.page)
            << platform::ToUtf8(c.topic);
        EXPECT_EQ(error, L"");
    }
}

TEST(HelpPages, LinksAndPicturesExistAndEveryPageLinksBackToTheIndex) {
    const auto pages = HelpPages();
    ASSERT_GT(pages.size(), 30u);
    std::set<std::string> pictures;
    for (const std::string& page : pages) {
        SCOPED_TRACE(page);
        const std::string html = ReadText(kHelp / page);
        EXPECT_NE(html.find("<link rel=\"stylesheet\" href=\"help.css\">"), std::string::npos);
        EXPECT_EQ(html.find("<script"), std::string::npos);
        const auto links = LocalLinks(html);
        for (const std::string& target : links) {
            EXPECT_TRUE(fs::is_regular_file(kHelp / target)) << target;
            if (target.starts_with("images/"))
                pictures.insert(target.substr(7));
        }
        if (page != "index.htm") {
            EXPECT_NE(std::find(links.begin(), links.end(), "index.htm"), links.end())
                << "no link back to the index";
        }
    }
    // Every picture shipped is shown somewhere.
    for (const auto& entry : fs::directory_iterator(kHelp / "images"))
        EXPECT_TRUE(pictures.contains(entry.path().filename().string())) << entry.path();
}

TEST(HelpPages, TheIndexLinksEveryPage) {
    const auto links = LocalLinks(ReadText(kHelp / "index.htm"));
    const std::set<std::string> linked(links.begin(), links.end());
    for (const std::string& page : HelpPages()) {
        if (page != "index.htm") {
            EXPECT_TRUE(linked.contains(page)) << page;
        }
    }
}

TEST(HelpPages, GeneratedPagesAreTheCommittedOnes) {
    const auto generated = GeneratedHelpPages();
    ASSERT_FALSE(generated.empty());
    for (const auto& [name, text] : generated) {
        const std::string page = platform::ToUtf8(name);
        const fs::path file = kHelp / platform::ToPath(name);
        ASSERT_TRUE(fs::is_regular_file(file)) << page << ": run scripts/help-pages.sh";
        EXPECT_TRUE(ReadText(file) == text) << page << " is out of date: run scripts/help-pages.sh";
    }
}

// The pages name every variable of their sections and every default layer,
// as the pages of the program show them.
TEST(HelpPages, SettingsAndLayersPagesNameWhatTheirPagesShow) {
    std::size_t checked = 0;
    for (const int application : kApplications) {
        for (const SCatalogueSection& section : SettingsCatalogue(application)) {
            const std::wstring topic = SettingsHelpTopic(application, section.id);
            if (topic.empty())
                continue;
            const std::string html = ReadText(kHelp / platform::ToPath(HelpTopicPage(topic)));
            for (const auto part : section.parts) {
                for (const SCatalogueRow& row : part) {
                    const std::wstring shown =
                        row.id == CVX2D_ProjectSettingsBase::kTitleId ? row.metric.text : row.label;
                    EXPECT_NE(html.find(">" + HtmlText(shown) + "<"), std::string::npos)
                        << platform::ToUtf8(topic) << ": " << platform::ToUtf8(shown);
                    ++checked;
                }
            }
        }
        const std::wstring topic = LayersHelpTopic(application);
        const std::string html = ReadText(kHelp / platform::ToPath(HelpTopicPage(topic)));
        CVX2D_ProjectLayers layers(application);
        layers.SetDefaults();
        ASSERT_GT(layers.GetCount(), 0u);
        for (std::size_t i = 0; i < layers.GetCount(); ++i) {
            EXPECT_NE(html.find("<code>" + HtmlText(layers.GetNames()[i]) + "</code>"),
                      std::string::npos)
                << platform::ToUtf8(topic) << ": " << platform::ToUtf8(layers.GetNames()[i]);
        }
    }
    EXPECT_GT(checked, 200u);
}

TEST(HelpPages, HtmlTextEscapesWhatMarkupWouldTake) {
    const struct {
        const wchar_t* text;
        const char* html;
    } cases[] = {
        {L"P&ID", "P&amp;ID"},
        {L"<none>", "&lt;none&gt;"},
        {L"14\"", "14&quot;"},
        {L"Ø 350mm", "\xC3\x98 350mm"},
        {L"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(HtmlText(c.text), c.html);
}

} // namespace
