// settings restore-defaults run as a child process: what a standard shows
// afterwards and the messages of refusals.
#include "support/CliFixture.h"

#include <gtest/gtest.h>

namespace cli_restore_test {

using test::Joined;

// Standard 1 "Pipe" is changed by each test; 2 "Fresh" stays as created.
class CliRestoreTest : public test::CliTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Ok({"standard", "create", "Pipe"}), "1\tPipe\n");
        ASSERT_EQ(Ok({"standard", "create", "Fresh"}), "2\tFresh\n");
        Ok({"settings", "set", "1", "ORTHO", "145", "4"});  // General Drawing Parameters
        Ok({"settings", "set", "1", "ORTHO", "106", "20"}); // Bill of Material
        Ok({"layers", "set", "1", "ORTHO", "39", "name", "STL"});
    }
    std::string Show(const char* id, const char* section = "") const {
        std::vector<std::string> args = {"settings", "show", id, "ORTHO"};
        if (*section)
            args.insert(args.end(), {"--section", section});
        return Ok(args);
    }
};

// The lines of `out` that start with `prefix`.
std::string LinesStarting(const std::string& out, const std::string& prefix) {
    std::string lines;
    for (std::size_t at = 0; at < out.size(); at = out.find('\n', at) + 1) {
        const std::string line = out.substr(at, out.find('\n', at) - at + 1);
        if (line.starts_with(prefix))
            lines += line;
    }
    return lines;
}

TEST_F(CliRestoreTest, RestoresOneSectionAllSectionsOrTheLayersAndPrintsWhatChanged) {
    // What each step restores: the value set in SetUp, by section, id and key.
    const std::string drawing = LinesStarting(Show("1", "4"), "4\t145\t");
    const std::string bom = LinesStarting(Show("1", "0"), "0\t106\t");
    ASSERT_NE(drawing, "");
    ASSERT_NE(bom, "");
    // Field `n` (from 0) of a TAB-separated line.
    const auto field = [](const std::string& line, int n) {
        std::size_t at = 0;
        for (int i = 0; i < n; ++i)
            at = line.find('\t', at) + 1;
        return line.substr(at, line.find_first_of("\t\n", at) - at);
    };
    // settings show: SECTION_ID, ID, LABEL, KEY, ...; layers show: KEY,
    // DESCRIPTION, NAME, ...
    const auto changed = [&](const std::string& line) {
        return field(line, 1) + "\t" + field(line, 3);
    };
    const std::string layer = LinesStarting(Ok({"layers", "show", "2", "ORTHO"}), "039\t");
    ASSERT_NE(layer, "");
    const std::string layerName = field(layer, 2);

    const std::string generalDrawing = "General Drawing Parameters\t" + changed(drawing) + "\n";
    // A dry run prints the same and changes nothing.
    EXPECT_EQ(Ok({"settings", "restore-defaults", "1", "ORTHO", "4", "--dry-run"}), generalDrawing);
    EXPECT_NE(Show("1", "4"), Show("2", "4"));
    EXPECT_EQ(
        Ok({"settings", "restore-defaults", "1", "ORTHO", "general drawing parameters", "--yes"}),
        generalDrawing);
    EXPECT_EQ(Show("1", "4"), Show("2", "4"));
    EXPECT_NE(Show("1", "0"), Show("2", "0"));
    EXPECT_NE(Ok({"layers", "show", "1", "ORTHO"}), Ok({"layers", "show", "2", "ORTHO"}));

    EXPECT_EQ(Ok({"settings", "restore-defaults", "1", "4", "-y"}),
              "Bill of Material\t" + changed(bom) + "\n");
    EXPECT_EQ(Show("1"), Show("2"));
    EXPECT_NE(Ok({"layers", "show", "1", "ORTHO"}), Ok({"layers", "show", "2", "ORTHO"}));

    const std::string layers = "Layers\t39\t" + layerName + "\n";
    EXPECT_EQ(Ok({"settings", "restore-defaults", "1", "ORTHO", "Layers", "--dry-run"}), layers);
    EXPECT_NE(Ok({"layers", "show", "1", "ORTHO"}), Ok({"layers", "show", "2", "ORTHO"}));
    EXPECT_EQ(Ok({"settings", "restore-defaults", "1", "ORTHO", "Layers", "--yes"}), layers);
    EXPECT_EQ(Ok({"layers", "show", "1", "ORTHO"}), Ok({"layers", "show", "2", "ORTHO"}));
    // Nothing left to restore.
    EXPECT_EQ(Ok({"settings", "restore-defaults", "1", "ORTHO", "--yes"}), "");
}

TEST_F(CliRestoreTest, OnATerminalItAsksNamingWhatItWouldRestore) {
    SD_SKIP_UNLESS_POSIX("a terminal");
    const std::string lost = " back to their defaults? The values they have now are lost. [y/N] ";
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"1", "ORTHO"}, "Put the ORTHO settings of standard 'Pipe'" + lost},
        {{"1", "ORTHO", "4"},
         "Put the \"General Drawing Parameters\" ORTHO settings of standard 'Pipe'" + lost},
        {{"1", "ORTHO", "Layers"}, "Put the ORTHO layers of standard 'Pipe'" + lost},
    };
    const std::string settings = Show("1");
    const std::string layers = Ok({"layers", "show", "1", "ORTHO"});
    for (const auto& [verb, question] : cases) {
        std::vector<std::string> args = {"settings", "restore-defaults"};
        args.insert(args.end(), verb.begin(), verb.end());
        SCOPED_TRACE(Joined(args));
        m_terminal = "n\n";
        const test::SRun run = Run(args);
        m_terminal.reset();
        EXPECT_EQ(run.code, 1);
        EXPECT_NE(run.err.find(question), std::string::npos) << run.err;
    }
    EXPECT_EQ(Show("1"), settings);
    EXPECT_EQ(Ok({"layers", "show", "1", "ORTHO"}), layers);
}

TEST_F(CliRestoreTest, RefusalsSayWhy) {
    const struct {
        std::vector<std::string> args;
        int code;
        std::string err;
    } cases[] = {
        {{"1", "ORTHO", "4"},
         2,
         "restore-defaults replaces the settings for good; confirm with --yes\n"},
        {{"1", "ELECTRIC", "8", "-y"},
         2,
         "ELECTRIC settings have no section 8 \"System Toggles\".\n"},
        {{"1", "ORTHO", "12", "-y"},
         2,
         "Unknown section '12': give a section id or name:\n  0 Bill of"},
        {{"9", "ORTHO", "-y"}, 1, "There is no standard 9 (see 'standard list --deleted')\n"},
        {{"9", "PID", "5", "-y"}, 1, "There is no standard 9 (see 'standard list --deleted')\n"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> args = {"settings", "restore-defaults"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        SCOPED_TRACE(Joined(args));
        const test::SRun run = Run(args);
        EXPECT_EQ(run.code, c.code);
        EXPECT_EQ(run.err.substr(0, c.err.size()), c.err);
        EXPECT_EQ(run.out, "");
    }
    // Nothing was restored by a refusal.
    EXPECT_NE(Show("1"), Show("2"));
}

} // namespace cli_restore_test
