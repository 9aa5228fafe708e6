// On a share every read of a file costs milliseconds and the registries of a
// large office are megabytes: whatever a user does reads each registry at
// most once.
#include "datafile/IniFile.h"
#include "editors/GeneralSettingsEditor.h"
#include "editors/LayersEditor.h"
#include "editors/SettingsEditor.h"
#include "editors/StandardComparison.h"
#include "editors/StandardReport.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"
#include "support/TestSupport.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>

namespace registry_reads_test {

class RegistryReadsTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ASSERT_EQ(Create(L"Pipe"), 1);
        ASSERT_EQ(Create(L"Plant", 2), 2);
        std::int32_t id = 0;
        std::wstring name;
        ASSERT_TRUE(clients.CreateClient(id, name));
        ASSERT_TRUE(clients.AddProjectToClient(id, 1));
    }
    void TearDown() override { SetDatafileReadObserver({}); }

    // How often each registry file was read while `action` ran.
    std::map<std::wstring, int> ReadsOf(const std::function<void()>& action) {
        std::map<std::wstring, int> reads;
        SetDatafileReadObserver([&](const std::wstring& path) {
            const std::wstring name = path.substr(path.find_last_of(L"/\\") + 1);
            if (name == L"ProjectDatafile.ini" || name == L"ClientDatafile.ini")
                ++reads[name];
        });
        action();
        SetDatafileReadObserver({});
        return reads;
    }

    CVX2D_ClientRegistry clients{Datafiles()};
};

TEST_F(RegistryReadsTest, EachActionReadsEachRegistryAtMostOnce) {
    const std::pair<const char*, std::function<void()>> actions[] = {
        {"compare",
         [&] {
             CVX2D_StandardComparison comparison(registry);
             comparison.SetStandard1(1);
             comparison.SetStandard2(2);
             EXPECT_TRUE(comparison.Rebuild());
         }},
        {"report",
         [&] {
             std::wstring text, error;
             EXPECT_TRUE(StandardReportText(registry, 1, L"2024-05-06 14:03", text, error));
         }},
        {"settings page",
         [&] {
             CSettingsEditor editor(registry, prompter);
             EXPECT_TRUE(editor.Open(1, 2, 1));
         }},
        {"layers page",
         [&] {
             CLayersEditor editor(registry, prompter);
             EXPECT_TRUE(editor.Open(1, 2));
         }},
        {"general page and apply",
         [&] {
             CGeneralSettingsEditor editor(registry, prompter);
             EXPECT_TRUE(editor.Open(1));
             EXPECT_TRUE(editor.Choose(EGeneralField::DisplayedUnits, 1));
             EXPECT_TRUE(editor.Apply());
         }},
        {"rename", [&] { EXPECT_EQ(registry.RenameProject(2, L"Plant B"), eProjectOk); }},
        {"a look after the rename",
         [&] { EXPECT_EQ(registry.GetProjectName(2, true, false), L"Plant B"); }},
        {"listing",
         [&] {
             std::vector<SProjectInfo> list;
             EXPECT_EQ(registry.ListProjects(true, true, list), eProjectOk);
             EXPECT_EQ(clients.ListClients().size(), 1u);
             EXPECT_EQ(clients.GetClientName(1), L"Client 1");
         }},
    };
    for (const auto& [name, action] : actions) {
        SCOPED_TRACE(name);
        for (const auto& [file, count] : ReadsOf(action))
            EXPECT_LE(count, 1) << platform::ToUtf8(file);
    }
}

} // namespace registry_reads_test
