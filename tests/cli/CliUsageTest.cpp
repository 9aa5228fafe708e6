// The command line's usage: every positional argument of every verb says
// what it is, in the verb's --help.
#include "cli/CliCore.h"
#include "support/CliFixture.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

// "group verb ARG" of every positional argument without a description.
void Undescribed(const CLI::App& command, const std::string& path,
                 std::vector<std::string>& missing, std::size_t& seen) {
    for (const CLI::Option* option : command.get_options()) {
        if (!option->get_positional())
            continue;
        ++seen;
        if (option->get_description().empty())
            missing.push_back(path + " " + option->get_name());
    }
    for (const CLI::App* sub : command.get_subcommands({}))
        Undescribed(*sub, path + " " + sub->get_name(), missing, seen);
}

TEST(CliUsageTest, EveryPositionalArgumentHasItsHelpText) {
    CLI::App app{"", "standards-desk-cli"};
    SCliContext context;
    cli::AddAllCommands(app, context);
    std::vector<std::string> missing;
    std::size_t seen = 0;
    Undescribed(app, "standards-desk-cli", missing, seen);
    EXPECT_GT(seen, 50u) << "every verb was walked";
    std::string list;
    for (const auto& argument : missing)
        list += argument + "\n";
    EXPECT_EQ(list, "") << "positional arguments without help";
}

class CliUsageRunTest : public test::CliTest {};

TEST_F(CliUsageRunTest, AVerbsHelpShowsWhatEachArgumentIs) {
    const test::SRun run = Run({"layers", "set", "--help"}, false);
    EXPECT_EQ(run.code, 0);
    for (const char* text : {"The standard's id", "name, color, linetype or lineweight"})
        EXPECT_NE(run.out.find(text), std::string::npos) << run.out;
}

} // namespace
