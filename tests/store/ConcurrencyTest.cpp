// Several processes creating standards in one datafiles folder at once must
// not lose one another's ids, entries or folders.
#include "datafile/Ids.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/ProjectRegistry.h"
#include "support/TestSupport.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <set>

namespace fs = std::filesystem;

namespace {

TEST(ConcurrencyTest, FourProcessesCreatingAtOnceLoseNothing) {
    test::CDatafilesFixture fx;
    constexpr int kWorkers = 4;
    constexpr int kEach = 25;
    std::vector<std::int64_t> pids;
    for (int i = 0; i < kWorkers; ++i) {
        pids.push_back(
            platform::StartProcess(SD_CREATE_WORKER, {fx.Dir().Text(), std::to_wstring(kEach)}));
        ASSERT_GT(pids.back(), 0);
    }
    for (const std::int64_t pid : pids)
        EXPECT_EQ(platform::WaitProcess(pid), 0) << pid;

    test::CScriptedPrompter prompter;
    CVX2D_ProjectRegistry registry(fx.Datafiles(), prompter);
    std::vector<SProjectInfo> projects;
    ASSERT_EQ(registry.ListProjects(true, true, projects), eProjectOk);
    EXPECT_EQ(projects.size(), 100u);
    std::set<std::int32_t> ids;
    std::set<std::wstring> names, labels;
    for (const auto& project : projects) {
        EXPECT_FALSE(project.deleted);
        ids.insert(project.id);
        names.insert(project.name);
        labels.insert(MakeProjectLabel(project.id, project.name));
    }
    EXPECT_EQ(ids.size(), 100u);
    EXPECT_EQ(*ids.begin(), 1);
    EXPECT_EQ(*ids.rbegin(), 100);
    EXPECT_EQ(names.size(), 100u);

    std::set<std::wstring> folders;
    for (const auto& entry : fs::directory_iterator(fx.Dir().Path() / "Projects"))
        folders.insert(platform::FromPath(entry.path().filename()));
    EXPECT_EQ(folders, labels);
    EXPECT_NE(test::ReadBytes(fx.Dir().Path() / "ProjectDatafile.ini")
                  .find("\r\nLastProjectId = 100\r\n"),
              std::string::npos);
}

} // namespace
