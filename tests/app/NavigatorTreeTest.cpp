// The navigator's tree keeps an index of where each item stands and a log of
// its changes for the view; both must follow every kind of edit.
#include "app/NavigatorTree.h"

#include <gtest/gtest.h>
#include <random>

namespace navigator_tree_test {

// Every item is found by its handle, under the right parent, at its place.
void ExpectIndexed(const CNavigatorTree& tree, const std::vector<CNavItem>& level,
                   const CNavItem* parent, std::size_t& count) {
    for (std::size_t i = 0; i < level.size(); ++i) {
        const CNavItem& item = level[i];
        ++count;
        ASSERT_EQ(tree.Find(item.handle), &item) << item.handle;
        ASSERT_EQ(tree.Parent(item.handle), parent) << item.handle;
        ASSERT_EQ(tree.IndexOf(item.handle), i) << item.handle;
        ExpectIndexed(tree, item.children, &item, count);
    }
}

std::vector<std::wstring> Texts(const std::vector<CNavItem>& level) {
    std::vector<std::wstring> texts;
    for (const auto& item : level)
        texts.push_back(item.text);
    return texts;
}

TEST(NavigatorTree, AssignSortsEveryLevelOnceAndLogsAReset) {
    CNavigatorTree tree;
    tree.Assign({{0,
                  L"zeta",
                  1,
                  eNavClient,
                  {{0, L"b", 3, eNavStandard, {}}, {0, L"A", 4, eNavStandard, {}}}},
                 {0, L"Loose", 2, eNavStandard, {}},
                 {0, L"acme", 5, eNavClient, {}}});
    EXPECT_EQ(Texts(tree.Roots()), (std::vector<std::wstring>{L"acme", L"Loose", L"zeta"}));
    EXPECT_EQ(Texts(tree.Roots()[2].children), (std::vector<std::wstring>{L"A", L"b"}));
    const auto changes = tree.TakeChanges();
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].kind, SNavChange::Reset);
    EXPECT_TRUE(tree.TakeChanges().empty());
}

TEST(NavigatorTree, TheIndexAndTheLogFollowEveryEdit) {
    CNavigatorTree tree;
    tree.Clear();
    tree.TakeChanges();
    std::mt19937 random(7);
    std::vector<std::uint64_t> clients;
    std::vector<std::uint64_t> standards;
    auto pick = [&](std::vector<std::uint64_t>& from) {
        return from[std::uniform_int_distribution<std::size_t>(0, from.size() - 1)(random)];
    };
    auto name = [&] { return std::wstring(1, static_cast<wchar_t>(L'a' + random() % 26)); };
    for (int step = 0; step < 600; ++step) {
        std::vector<SNavChange> expected;
        const int op = static_cast<int>(random() % 6);
        if (op == 0 || clients.empty()) {
            clients.push_back(tree.Insert(0, name(), step, eNavClient));
            expected.push_back({SNavChange::Inserted, clients.back()});
        } else if (op <= 2 || standards.empty()) {
            const std::uint64_t parent = random() % 3 == 0 ? 0 : pick(clients);
            standards.push_back(tree.Insert(parent, name(), step, eNavStandard));
            expected.push_back({SNavChange::Inserted, standards.back()});
        } else if (op == 3) {
            const std::uint64_t item = pick(standards);
            std::erase(standards, item);
            tree.Remove(item);
            expected.push_back({SNavChange::Removed, item});
        } else if (op == 4) {
            // A rename: the text, then the level sorted again.
            const std::uint64_t item = pick(standards);
            const CNavItem* parent = tree.Parent(item);
            const std::wstring text = name() + name();
            tree.SetText(item, text);
            tree.SortChildren(parent ? parent->handle : 0);
            expected.push_back({SNavChange::Changed, item});
            expected.push_back({SNavChange::Resorted, parent ? parent->handle : 0});
        } else {
            // A drop onto another client: removed here, inserted there.
            const std::uint64_t item = pick(standards);
            const CNavItem moved = *tree.Find(item);
            tree.Remove(item);
            std::erase(standards, item);
            standards.push_back(tree.InsertCopy(pick(clients), moved));
            expected.push_back({SNavChange::Removed, item});
            expected.push_back({SNavChange::Inserted, standards.back()});
        }
        const auto changes = tree.TakeChanges();
        ASSERT_EQ(changes.size(), expected.size()) << step;
        for (std::size_t i = 0; i < changes.size(); ++i) {
            EXPECT_EQ(changes[i].kind, expected[i].kind) << step;
            EXPECT_EQ(changes[i].handle, expected[i].handle) << step;
        }
        std::size_t count = 0;
        ExpectIndexed(tree, tree.Roots(), nullptr, count);
        ASSERT_EQ(count, clients.size() + standards.size()) << step;
    }
}

} // namespace navigator_tree_test
