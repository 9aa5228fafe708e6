// The benchmarks' datafiles folders read back through the registries as the
// programs read them: what the benchmarks measure must be what they meant.
#include "BenchCore.h"

#include "contents/DrawingsListing.h"
#include "datafile/Application.h"
#include "store/GeneralSettings.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>

namespace fs = std::filesystem;

namespace {

const SBenchFolderSpec kSpecs[] = {
    {.standards = 60, .clients = 7},
    {.standards = 30, .clients = 4, .staleEntries = 5, .fromTemplates = false},
    {.standards = 15, .clients = 3, .drawingStandards = 2, .drawings = 4, .drawingBytes = 100},
};

class BenchFolderTest : public ::testing::TestWithParam<SBenchFolderSpec> {};

TEST_P(BenchFolderTest, RegistriesFoldersAndDrawingsAreAsAsked) {
    const SBenchFolderSpec spec = GetParam();
    SBenchCore b(BenchFolder(spec));
    auto& core = b.core;

    std::vector<SProjectInfo> listed;
    ASSERT_EQ(core.projects.ListProjects(true, true, listed), eProjectOk);
    ASSERT_EQ(listed.size(), static_cast<std::size_t>(spec.standards + spec.staleEntries));
    for (const auto& project : listed) {
        EXPECT_EQ(project.deleted, project.id <= spec.standards && project.id % 7 == 0)
            << project.id;
        EXPECT_EQ(project.name, BenchStandardName(project.id));
        std::wstring folder;
        EXPECT_EQ(core.projects.GetProjectFolder(project.id, folder) == eProjectOk,
                  project.id <= spec.standards)
            << project.id;
    }

    // Every standard but each 10th has a client, and the clients' shares
    // differ by one at the most.
    const auto clients = core.clients.ListClients();
    ASSERT_EQ(clients.size(), static_cast<std::size_t>(spec.clients));
    std::vector<std::int32_t> members;
    std::size_t fewest = std::numeric_limits<std::size_t>::max(), most = 0;
    for (const auto& client : clients) {
        for (const std::int32_t id : client.projectIds)
            EXPECT_EQ(BenchClientOf(spec, id), client.id) << id;
        members.insert(members.end(), client.projectIds.begin(), client.projectIds.end());
        fewest = std::min(fewest, client.projectIds.size());
        most = std::max(most, client.projectIds.size());
    }
    EXPECT_EQ(members.size(), static_cast<std::size_t>(spec.standards - spec.standards / 10));
    EXPECT_LE(most - fewest, 1u);

    for (std::int32_t id = 1; id <= spec.standards; ++id) {
        CVX2D_GeneralSettings general;
        ASSERT_TRUE(general.Load(core.projects, id)) << id;
        SDrawingList drawings;
        const std::wstring folder = general.GetDrawingsLocation(eAppIso);
        const bool listedDrawings = !folder.empty() && ListDrawings(folder, false, drawings);
        EXPECT_EQ(listedDrawings ? drawings.Size() : 0u,
                  static_cast<std::size_t>(id <= spec.drawingStandards ? spec.drawings : 0))
            << id;
    }
    EXPECT_EQ(fs::is_directory(BenchFolder(spec) / "Template" / "Metric"), spec.fromTemplates);

    // The registry check drops exactly the stale entries; the folder is
    // kept for later runs as it was made.
    const fs::path registry = BenchFolder(spec) / "ProjectDatafile.ini";
    const std::string made = ReadFileBytes(registry);
    ASSERT_EQ(core.projects.CheckProjectRegistry(), eProjectOk);
    ASSERT_EQ(core.projects.ListProjects(true, true, listed), eProjectOk);
    WriteFileBytes(registry, made);
    EXPECT_EQ(listed.size(), static_cast<std::size_t>(spec.standards));
}

INSTANTIATE_TEST_SUITE_P(Specs, BenchFolderTest, ::testing::ValuesIn(kSpecs));

} // namespace
