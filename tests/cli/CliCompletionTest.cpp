// Shell completion made from the command tree: bash completes every group,
// every verb of a group and the options of a verb, as a user types them.
#include "cli/CliCore.h"
#include "support/CliFixture.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace cli_completion_test {

namespace fs = std::filesystem;

class CliCompletionTest : public test::CliTest {
protected:
    // The words bash offers after `typed` (the last word being completed).
    std::string Offered(const std::string& script, const std::string& typed) const {
        const fs::path file = m_io.Path() / "completion.bash";
        test::WriteBytes(file, script);
        const std::string command =
            "bash -c 'source \"" + file.string() + "\"; COMP_WORDS=(standards-desk-cli " + typed +
            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); "
            "[[ \"" +
            typed + "\" == *\" \" || -z \"" + typed +
            "\" ]] && { COMP_WORDS+=(\"\"); COMP_CWORD=$((COMP_CWORD + 1)); }; "
            "_standards_desk_cli; echo \"${COMPREPLY[*]}\"'";
        std::string out;
        if (std::FILE* pipe = ::popen(command.c_str(), "r")) {
            char buffer[4096];
            while (std::fgets(buffer, sizeof buffer, pipe))
                out += buffer;
            ::pclose(pipe);
        }
        return out.substr(0, out.find('\n'));
    }
    static bool Has(const std::string& words, const std::string& word) {
        return (" " + words + " ").find(" " + word + " ") != std::string::npos;
    }
};

TEST_F(CliCompletionTest, BashCompletesEveryGroupVerbAndOptionOfTheTree) {
#ifdef _WIN32
    GTEST_SKIP() << "no bash";
#else
    const std::string script = Ok({"completion", "bash"});
    CLI::App app{"", "standards-desk-cli"};
    SCliContext context;
    cli::AddAllCommands(app, context);

    // Everything at the top, then each group's verbs from their first letters.
    const std::string top = Offered(script, "");
    for (const CLI::App* group : app.get_subcommands({})) {
        EXPECT_TRUE(Has(top, group->get_name())) << group->get_name() << ": " << top;
        for (const CLI::App* verb : group->get_subcommands({})) {
            const std::string typed = group->get_name() + " " + verb->get_name().substr(0, 2);
            EXPECT_TRUE(Has(Offered(script, typed), verb->get_name())) << typed;
        }
    }
    struct SCase {
        const char* typed;
        const char* offered;
        const char* notOffered;
    };
    for (const SCase c :
         {SCase{"--datafiles /srv/data sta", "standard", "/srv/data"},
          SCase{"standard list --", "--deleted", "--units"},
          SCase{"standard create Pipe --", "--units", "--deleted"},
          SCase{"--json standard ", "purge", "install"}, SCase{"compl", "completion", "compare"}}) {
        const std::string offered = Offered(script, c.typed);
        EXPECT_TRUE(Has(offered, c.offered)) << c.typed << " -> " << offered;
        EXPECT_FALSE(Has(offered, c.notOffered)) << c.typed << " -> " << offered;
    }
#endif
}

TEST_F(CliCompletionTest, EveryShellHasItsScriptAndOthersAreRefused) {
    for (const char* shell : {"bash", "zsh", "fish"})
        EXPECT_NE(Ok({"completion", shell}).find("standards-desk-cli"), std::string::npos) << shell;
    EXPECT_EQ(Run({"completion", "tcsh"}).code, 2);
}

} // namespace cli_completion_test
