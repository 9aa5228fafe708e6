// The command line's usage: every positional argument of every verb says
// what it is, and every command's --help has examples and the global options.
#include "cli/CliCore.h"
#include "support/CliFixture.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace cli_usage_test {

// Calls `visit` with every command of the program and its path
// ("standards-desk-cli group verb").
void Walk(const CLI::App& command, const std::string& path,
          const std::function<void(const CLI::App&, const std::string&)>& visit) {
    visit(command, path);
    for (const CLI::App* sub : command.get_subcommands({}))
        Walk(*sub, path + " " + sub->get_name(), visit);
}

// What `missing` finds on each command, one line per finding, after checking
// that more than `least` things were looked at.
std::string Missing(std::size_t least,
                    const std::function<void(const CLI::App&, const std::string&,
                                             std::vector<std::string>&, std::size_t&)>& missing) {
    CLI::App app{"", "standards-desk-cli"};
    SCliContext context;
    cli::AddAllCommands(app, context);
    std::vector<std::string> found;
    std::size_t seen = 0;
    Walk(app, "standards-desk-cli", [&](const CLI::App& command, const std::string& path) {
        missing(command, path, found, seen);
    });
    EXPECT_GT(seen, least) << "every command was walked";
    std::string list;
    for (const auto& line : found)
        list += line + "\n";
    return list;
}

TEST(CliUsageTest, EveryPositionalArgumentHasItsHelpText) {
    const std::string undescribed =
        Missing(50, [](const CLI::App& command, const std::string& path,
                       std::vector<std::string>& found, std::size_t& seen) {
            for (const CLI::Option* option : command.get_options()) {
                if (!option->get_positional())
                    continue;
                ++seen;
                if (option->get_description().empty())
                    found.push_back(path + " " + option->get_name());
            }
        });
    EXPECT_EQ(undescribed, "") << "positional arguments without help";
}

TEST(CliUsageTest, EveryGroupAndVerbHasExamples) {
    const std::string without = Missing(60, [](const CLI::App& command, const std::string& path,
                                               std::vector<std::string>& found, std::size_t& seen) {
        ++seen;
        if (!cli::HasExamples(command))
            found.push_back(path);
    });
    EXPECT_EQ(without, "") << "commands without examples";
}

class CliUsageRunTest : public test::CliTest {};

TEST_F(CliUsageRunTest, HelpAtEveryLevelHasExamplesAndTheGlobalOptions) {
    // The help asked for, and an example it must show.
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"standard", "--help"}, "  standards-desk-cli standard list --deleted\n"},
        {{"standard", "purge", "--help"}, "  standards-desk-cli standard purge 3 --dry-run\n"},
        {{"settings", "restore-defaults", "--help"},
         "  standards-desk-cli settings restore-defaults 3 PID --yes\n"},
        {{"import", "--help"}, "  standards-desk-cli import Pipe.xst Elec.xst --client 2\n"},
    };
    for (const auto& [args, example] : cases) {
        SCOPED_TRACE(test::Joined(args));
        const test::SRun run = Run(args, false);
        EXPECT_EQ(run.code, 0);
        EXPECT_NE(run.out.find("Examples:\n"), std::string::npos) << run.out;
        EXPECT_NE(run.out.find(example), std::string::npos) << run.out;
        EXPECT_NE(run.out.find("Global options (before or after the verb):\n"), std::string::npos)
            << run.out;
        for (const char* option : {"--datafiles", "--json", "-q,--quiet"})
            EXPECT_NE(run.out.find("  " + std::string(option)), std::string::npos) << option;
    }
}

TEST_F(CliUsageRunTest, AVerbsHelpShowsWhatEachArgumentIs) {
    const test::SRun run = Run({"layers", "set", "--help"}, false);
    EXPECT_EQ(run.code, 0);
    for (const char* text : {"The standard's id", "name, color, linetype or lineweight"})
        EXPECT_NE(run.out.find(text), std::string::npos) << run.out;
}

} // namespace cli_usage_test
