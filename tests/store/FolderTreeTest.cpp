// Copying and deleting folder trees, and the backup question asked when a
// copy meets an existing folder.
#include "store/FolderTree.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <climits>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

namespace fs = std::filesystem;
using test::ReadBytes;
using test::WriteBytes;

namespace folder_tree_test {

// Every file under `folder` with its bytes, and every folder as "name/".
std::map<std::string, std::string> Tree(const fs::path& folder) {
    std::map<std::string, std::string> tree;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const std::string name = fs::relative(entry.path(), folder).generic_string();
        if (entry.is_directory())
            tree[name + "/"] = "";
        else
            tree[name] = ReadBytes(entry.path());
    }
    return tree;
}

class FolderTreeTest : public ::testing::Test {
protected:
    void SetUp() override {
        WriteBytes(source / "a.txt", "new a");
        WriteBytes(source / "Sub" / "b.ini", "[S]\r\nK = 1\r\n");
        WriteBytes(source / "Sub" / "Deeper" / "c.dwg", std::string("\0\x01\xff", 3));
        fs::create_directories(source / "Empty");
        WriteBytes(destination / "a.txt", "old a");
        WriteBytes(destination / "old.txt", "old");
    }
    std::wstring Text(const fs::path& path) const { return platform::FromPath(path); }

    test::CTempDir dir;
    fs::path source = dir.Path() / "Source";
    fs::path destination = dir.Path() / "Dest";
    test::CScriptedPrompter prompter;
    CVX2D_FolderTree tree{prompter};
};

const std::map<std::string, std::string> kSourceTree = {
    {"Empty/", ""},
    {"Sub/", ""},
    {"Sub/Deeper/", ""},
    {"Sub/Deeper/c.dwg", std::string("\0\x01\xff", 3)},
    {"Sub/b.ini", "[S]\r\nK = 1\r\n"},
    {"a.txt", "new a"},
};

TEST_F(FolderTreeTest, CopiesAWholeTreeIntoANewFolder) {
    const fs::path target = dir.Path() / "New" / "Deep" / "Copy";
    EXPECT_TRUE(tree.CopyTree(Text(source) + kPathSeparator, Text(target) + kPathSeparator));
    EXPECT_EQ(Tree(target), kSourceTree);
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(FolderTreeTest, MissingSourceIsReported) {
    const std::wstring missing = Text(dir.Path() / "Nowhere");
    EXPECT_FALSE(tree.CopyTree(missing, Text(dir.Path() / "Target")));
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].text, L"The following source folder does not exist:\n" + missing);
    EXPECT_EQ(prompter.asked[0].icon, EPromptIcon::Stop);
    EXPECT_FALSE(fs::exists(dir.Path() / "Target"));
}

TEST_F(FolderTreeTest, ExistingDestinationIsBackedUpOnYes) {
    const auto old = Tree(destination);
    for (int n : {1, 2}) {
        prompter.answers = {EPromptAnswer::Yes};
        prompter.asked.clear();
        EXPECT_TRUE(tree.CopyTree(Text(source), Text(destination)));
        const fs::path backup = dir.Path() / ("Backup (" + std::to_string(n) + ") of Dest");
        ASSERT_EQ(prompter.asked.size(), 1u);
        const SPrompt& asked = prompter.asked[0];
        EXPECT_EQ(asked.caption, L"Move Folder");
        EXPECT_EQ(asked.text,
                  L"The following destination folder already exists:\n" + Text(destination) +
                      L"\n\nSelect 'YES' to backup the destination folder to:\n" + Text(backup) +
                      L"\n\nor 'NO' to overwrite the destination folder.");
        EXPECT_EQ(asked.buttons, EPromptButtons::YesNoCancel);
        EXPECT_EQ(asked.icon, EPromptIcon::Question);
        EXPECT_EQ(Tree(backup), n == 1 ? old : kSourceTree);
        EXPECT_EQ(Tree(destination), kSourceTree);
    }
}

TEST_F(FolderTreeTest, ExistingDestinationIsOverwrittenOnNoAndKeptOnCancel) {
    prompter.answers = {EPromptAnswer::Cancel};
    const auto old = Tree(destination);
    EXPECT_FALSE(tree.CopyTree(Text(source), Text(destination)));
    EXPECT_EQ(Tree(destination), old);

    prompter.answers = {EPromptAnswer::No};
    EXPECT_TRUE(tree.CopyTree(Text(source), Text(destination)));
    auto expected = kSourceTree;
    expected["old.txt"] = "old";
    EXPECT_EQ(Tree(destination), expected);
    EXPECT_EQ(prompter.asked.size(), 2u);
    EXPECT_FALSE(fs::exists(dir.Path() / "Backup (1) of Dest"));
}

TEST_F(FolderTreeTest, DeleteTreeRemovesEverything) {
    EXPECT_TRUE(tree.DeleteTree(Text(source) + kPathSeparator));
    EXPECT_FALSE(fs::exists(source));
    EXPECT_TRUE(tree.DeleteTree(Text(source)));
    EXPECT_TRUE(fs::exists(destination / "old.txt"));
}

TEST_F(FolderTreeTest, ACopyReportsItsBytesAndStopsWhenTold) {
    // A file of several copy blocks shows progress within the file.
    WriteBytes(source / "Sub" / "big.dwg", std::string(5u << 20, 'x'));
    const std::size_t total = 5u << 20 | (5 + 12 + 3);
    struct SCase {
        std::size_t stopAfter; // steps answered true before one answers false
        bool copied;
    };
    for (const SCase c : {SCase{SIZE_MAX, true}, SCase{2, false}, SCase{0, false}}) {
        const fs::path target = dir.Path() / ("Copy" + std::to_string(c.stopAfter));
        std::vector<std::size_t> done;
        const bool copied =
            tree.CopyTree(Text(source), Text(target),
                          [&](std::size_t bytes, std::size_t all, const std::wstring& file) {
                              EXPECT_EQ(all, total);
                              EXPECT_FALSE(file.empty());
                              done.push_back(bytes);
                              return done.size() <= c.stopAfter;
                          });
        EXPECT_EQ(copied, c.copied) << c.stopAfter;
        EXPECT_TRUE(std::is_sorted(done.begin(), done.end())) << c.stopAfter;
        if (c.copied) {
            EXPECT_EQ(done.back(), total);
            EXPECT_GT(done.size(), 5u) << "progress within the big file";
            EXPECT_EQ(ReadBytes(target / "Sub" / "big.dwg").size(), 5u << 20);
        } else {
            EXPECT_EQ(done.size(), c.stopAfter + 1) << "no step after the one that stopped";
            EXPECT_FALSE(fs::exists(target)) << "a stopped copy into a new folder leaves none";
        }
    }
}

} // namespace folder_tree_test
