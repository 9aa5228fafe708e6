// settings restore-defaults run as a child process: what a standard shows
// afterwards and the messages of refusals.
#include "support/CliFixture.h"

#include <gtest/gtest.h>

namespace {

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

TEST_F(CliRestoreTest, RestoresOneSectionAllSectionsOrTheLayers) {
    EXPECT_EQ(Ok({"settings", "restore-defaults", "1", "ORTHO", "general drawing parameters"}), "");
    EXPECT_EQ(Show("1", "4"), Show("2", "4"));
    EXPECT_NE(Show("1", "0"), Show("2", "0"));
    EXPECT_NE(Ok({"layers", "show", "1", "ORTHO"}), Ok({"layers", "show", "2", "ORTHO"}));

    EXPECT_EQ(Ok({"settings", "restore-defaults", "1", "4"}), "");
    EXPECT_EQ(Show("1"), Show("2"));
    EXPECT_NE(Ok({"layers", "show", "1", "ORTHO"}), Ok({"layers", "show", "2", "ORTHO"}));

    EXPECT_EQ(Ok({"settings", "restore-defaults", "1", "ORTHO", "Layers"}), "");
    EXPECT_EQ(Ok({"layers", "show", "1", "ORTHO"}), Ok({"layers", "show", "2", "ORTHO"}));
}

TEST_F(CliRestoreTest, RefusalsSayWhy) {
    const struct {
        std::vector<std::string> args;
        int code;
        std::string err;
    } cases[] = {
        {{"1", "ELECTRIC", "8"}, 2, "ELECTRIC settings have no section 8 \"System Toggles\".\n"},
        {{"1", "ORTHO", "12"}, 2, "Unknown section '12': give a section id or name:\n  0 Bill of"},
        {{"9", "ORTHO"}, 1, "There is no standard 9 (see 'standard list --deleted')\n"},
        {{"9", "PID", "5"}, 1, "There is no standard 9 (see 'standard list --deleted')\n"},
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

} // namespace
