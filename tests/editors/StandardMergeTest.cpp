// Copying rows of a comparison from one standard into another: which rows a
// selection names, a merge of all differences (across working units too),
// its undo, a row that fails while the others are written, and a push into
// several standards of which some are skipped or fail.
#include "editors/StandardMerge.h"

#include "contents/ProjectLines.h"
#include "contents/ProjectSpecs.h"
#include "editors/BordersEditor.h"
#include "editors/LayersEditor.h"
#include "editors/SettingsEditor.h"
#include "platform/Utf8.h"
#include "store/GeneralSettings.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace standard_merge_test {

using Ids = std::vector<std::wstring>;

SMergeSelection Named(Ids ids, bool missingItemsAllowed = false) {
    return {std::move(ids), false, {}, missingItemsAllowed};
}
SMergeSelection AllDifferences(Ids groups = {}) {
    return {{}, true, std::move(groups), false};
}

// Standards 1 "Pipe", 2 "Plant" (both metric) and 3 "Imperial"; Pipe
// differs from Plant in every group of the comparison.
class StandardMergeTest : public ::testing::Test, protected test::CStandardOnDisk {
protected:
    void SetUp() override {
        ASSERT_EQ(Create(L"Pipe"), 1);
        ASSERT_EQ(Create(L"Plant"), 2);
        ASSERT_EQ(Create(L"Imperial", 2), 3);
        // A common spec 4 and Pipe's own spec 7.
        test::WriteBytes(Root() / "SpecDatafile.ini",
                         "[ProjectSpecs]\r\nVX2D_SPEC_7 = VX2D_PRJ_1\r\n\r\n"
                         "[SpecList]\r\nVX2D_SPEC_4 = CS150\r\nVX2D_SPEC_7 = Pipe own\r\n");
    }

    // Pipe gets a value of its own in each group; Plant a line Pipe lacks.
    void MakePipeDiffer() {
        const std::wstring own = platform::FromPath(FolderOf(1) / "Drawings" / "");
        EXPECT_TRUE(CVX2D_GeneralSettings().Update(registry, 1, [&](CVX2D_GeneralSettings& g) {
            g.m_nDisplayedUnits = 1;
            g.SetDrawingsLocation(1, L"D:\\Drawings\\Pipe\\");
            g.SetDrawingsLocation(2, own);
            g.m_strTemplatesLocation = L"T:\\Templates\\";
        }));
        Borders(1, eDwgA1, EBorderColumn::LimitsMax, L"900.0,600.0");
        Setting(1, 2, 4, 145, L"3.5");
        Layer(1, 2, 38, ELayerColumn::Color, L"1");
        Line(1, L"100-A");
        Line(2, L"200-B");
        EXPECT_EQ(CVX2D_ProjectSpecs(registry).CheckSpec(1, 4), eSpecOk);
    }

    void Borders(std::int32_t id, EDwg sheet, EBorderColumn column, const std::wstring& text) {
        CBordersEditor editor(registry, prompter);
        ASSERT_TRUE(editor.Open(id));
        ASSERT_TRUE(editor.SetCellText(static_cast<std::size_t>(sheet), column, text));
        ASSERT_TRUE(editor.Apply());
    }
    void Setting(std::int32_t id, int application, int section, std::int32_t variable,
                 const std::wstring& text) {
        CSettingsEditor editor(registry, prompter);
        ASSERT_TRUE(editor.Open(id, application, section));
        for (std::size_t row = 0; row < editor.Rows().size(); ++row) {
            if (editor.Rows()[row].variableId == variable && !editor.Rows()[row].subHeading) {
                ASSERT_TRUE(editor.SetCellText(row, text));
            }
        }
        ASSERT_TRUE(editor.Apply());
    }
    void Layer(std::int32_t id, int application, std::int32_t key, ELayerColumn column,
               const std::wstring& text) {
        CLayersEditor editor(registry, prompter);
        ASSERT_TRUE(editor.Open(id, application));
        for (std::size_t row = 0; row < editor.Rows().size(); ++row) {
            if (editor.Rows()[row].key == key) {
                ASSERT_TRUE(editor.SetCellText(row, column, text));
            }
        }
        ASSERT_TRUE(editor.Apply());
    }
    void Line(std::int32_t id, const std::wstring& name) {
        std::int32_t lineId = 0;
        std::wstring made;
        ASSERT_EQ(CVX2D_ProjectLines(registry).CreateLine(id, name, lineId, made), eLineOk);
    }

    SComparison Compare(std::int32_t id1, std::int32_t id2) {
        CVX2D_StandardComparison comparison(registry);
        comparison.SetStandard1(id1);
        comparison.SetStandard2(id2);
        EXPECT_TRUE(comparison.Rebuild()) << comparison.Result().reason;
        return comparison.Result();
    }
    // The ids of the differing value rows.
    Ids Differing(std::int32_t id1, std::int32_t id2) {
        Ids ids;
        for (const auto& row : Compare(id1, id2).rows) {
            if (row.kind == ECompareRowKind::eValue && row.differ)
                ids.push_back(row.id);
        }
        return ids;
    }
    static Ids IdsOf(const std::vector<SMergeChange>& changes) {
        Ids ids;
        for (const auto& change : changes)
            ids.push_back(change.id);
        return ids;
    }
    // Every value row as "ID | TEXT1 | TEXT2".
    std::vector<std::wstring> Texts(std::int32_t id1, std::int32_t id2) {
        std::vector<std::wstring> texts;
        for (const auto& row : Compare(id1, id2).rows)
            texts.push_back(row.id + L" | " + row.text1 + L" | " + row.text2);
        return texts;
    }

    CVX2D_SpecDestinations destinations{Datafiles()};
    CVX2D_SpecRegister specs{registry, destinations};
    CStandardMerge merge{specs};
};

TEST_F(StandardMergeTest, AllDifferencesLeaveOnlyTheStandardsOwnFoldersAndUndoPutsThemBack) {
    MakePipeDiffer();
    const Ids differing = {L"General/Settings/DisplayedUnits",
                           L"Locations/Drawings/ELECTRIC",
                           L"Locations/Drawings/PID",
                           L"Locations/Folders/Templates",
                           L"Borders/A1/limits",
                           L"Lines/Line/100-A",
                           L"Lines/Line/200-B",
                           L"Specs/Spec/4",
                           L"PID/Settings/145",
                           L"Layers/PID/038"};
    ASSERT_EQ(Differing(1, 2), differing);
    const std::vector<std::wstring> before = Texts(1, 2);

    SMergeOutcome outcome;
    std::wstring error;
    ASSERT_TRUE(merge.Merge(1, 2, AllDifferences(), outcome, error)) << error;
    EXPECT_TRUE(outcome.Ok());
    // Pipe's drawings folders stay Pipe's, inside its folder or not.
    Ids merged = differing;
    merged.erase(merged.begin() + 1, merged.begin() + 3);
    EXPECT_EQ(IdsOf(outcome.applied), merged);
    EXPECT_EQ(Differing(1, 2), (Ids{L"Locations/Drawings/ELECTRIC", L"Locations/Drawings/PID"}));

    // Plant's line 200-B was marked deleted, not removed.
    SLineList lines;
    ASSERT_EQ(CVX2D_ProjectLines(registry).GetLines(2, lines, true), eLineOk);
    EXPECT_NE(std::find(lines.names.begin(), lines.names.end(), L"200-B"), lines.names.end());

    const SMergeOutcome undone = merge.Apply(outcome.undo);
    EXPECT_TRUE(undone.Ok());
    EXPECT_EQ(undone.applied.size(), merged.size());
    EXPECT_EQ(Texts(1, 2), before);
}

TEST_F(StandardMergeTest, WorkingUnitsGoFirstAndBordersFollowTheirRank) {
    Borders(3, eDwgE, EBorderColumn::Border, L"Big_E.dwg");
    SMergeOutcome outcome;
    std::wstring error;
    // Imperial into metric Plant: Plant becomes English, and Imperial's E
    // border lands on Plant's E (not on its A0, which it had before).
    ASSERT_TRUE(merge.Merge(3, 2, AllDifferences(), outcome, error)) << error;
    EXPECT_TRUE(outcome.Ok());
    ASSERT_FALSE(outcome.applied.empty());
    EXPECT_EQ(outcome.applied.front().id, L"General/Settings/WorkingUnits");
    EXPECT_EQ(Differing(3, 2), Ids{});
    CVX2D_ProjectBorders plant(registry, 2);
    plant.Load(plant.GetFilePath());
    EXPECT_EQ(plant.GetBorderFile(eDwgE), L"Big_E.dwg");

    // Undone, Plant is metric again with its own A0..A4 as they were.
    EXPECT_TRUE(merge.Apply(outcome.undo).Ok());
    CVX2D_GeneralSettings general;
    ASSERT_TRUE(general.Load(registry, 2));
    EXPECT_EQ(general.m_nWorkingUnits, 0);
    EXPECT_EQ(Differing(2, 1), Ids{});
}

TEST_F(StandardMergeTest, SelectionsNameRowsHeadingsAndSheetsOfEitherUnits) {
    MakePipeDiffer();
    struct SCase {
        const char* what;
        SMergeSelection selection;
        bool planned;
        Ids changes;
    } cases[] = {
        {"a value row", Named({L"PID/Settings/145"}), true, {L"PID/Settings/145"}},
        {"a row that does not differ", Named({L"PID/Settings/054"}), true, {}},
        {"a heading names its rows",
         Named({L"PID/Settings/General Drawing Parameters", L"Lines"}),
         true,
         {L"Lines/Line/100-A", L"Lines/Line/200-B", L"PID/Settings/145"}},
        {"an English sheet names the metric one of its rank",
         Named({L"Borders/D/limits"}),
         true,
         {L"Borders/A1/limits"}},
        {"an own folder when named",
         Named({L"Locations/Drawings/PID"}),
         true,
         {L"Locations/Drawings/PID"}},
        {"all differences of some groups",
         AllDifferences({L"layers", L"Specs"}),
         true,
         {L"Specs/Spec/4", L"Layers/PID/038"}},
        {"an unknown row", Named({L"PID/Settings/145", L"PID/Settings/999"}), false, {}},
        {"an unknown group", AllDifferences({L"Colours"}), false, {}},
        {"a line neither has", Named({L"Lines/Line/300-C"}), false, {}},
        {"... allowed where missing lines may be named",
         Named({L"Lines/Line/300-C"}, true),
         true,
         {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        SMergePlan plan;
        std::wstring error;
        bool usage = false;
        EXPECT_EQ(merge.Plan(1, 2, c.selection, plan, error, &usage), c.planned) << error;
        EXPECT_EQ(usage, !c.planned);
        EXPECT_EQ(IdsOf(plan.changes), c.changes);
    }
    SMergePlan plan;
    std::wstring error;
    ASSERT_FALSE(merge.Plan(1, 2, Named({L"PID/Settings/999"}), plan, error));
    EXPECT_EQ(error, L"No row of the comparison of 'Pipe' and 'Plant' is called "
                     L"'PID/Settings/999'.");
    ASSERT_TRUE(merge.Plan(1, 2, Named({L"PID/Settings/145"}), plan, error));
    ASSERT_EQ(plan.changes.size(), 1u);
    const SMergeChange& change = plan.changes[0];
    EXPECT_EQ(change.heading, L"P&ID - General Drawing Parameters");
    EXPECT_EQ(change.label, L"Text Height");
    EXPECT_EQ(change.oldText, L"2.5");
    EXPECT_EQ(change.newText, L"3.5");
}

TEST_F(StandardMergeTest, ARowThatCannotBeWrittenIsReportedAndTheOthersAreWritten) {
    Setting(1, 2, 4, 145, L"3.5");
    // Pipe's own spec cannot be checked for Plant.
    ASSERT_EQ(CVX2D_ProjectSpecs(registry).CheckSpec(1, 7), eSpecOk);
    SMergeOutcome outcome;
    std::wstring error;
    ASSERT_TRUE(merge.Merge(1, 2, AllDifferences(), outcome, error)) << error;
    EXPECT_EQ(IdsOf(outcome.applied), Ids{L"PID/Settings/145"});
    ASSERT_EQ(outcome.failed.size(), 1u);
    EXPECT_EQ(outcome.failed[0].change.id, L"Specs/Spec/7");
    EXPECT_EQ(outcome.failed[0].reason, L"Can't find spec");
    EXPECT_EQ(Differing(1, 2), Ids{L"Specs/Spec/7"});
    // Only what was written is undone.
    EXPECT_EQ(IdsOf(outcome.undo.changes), Ids{L"PID/Settings/145"});
}

TEST_F(StandardMergeTest, APushGoesOnPastSkippedAndFailedStandards) {
    Setting(1, 2, 4, 145, L"3.5");
    Line(1, L"100-A");
    ASSERT_EQ(Create(L"Retired"), 4);
    ASSERT_EQ(registry.DeleteProject(4), eProjectOk);
    ASSERT_EQ(Create(L"Lost"), 5);
    fs::remove_all(FolderOf(5));
    const Ids rows = {L"Lines/Line/100-A", L"PID/Settings/145"}; // in the grid's order
    const std::vector<std::int32_t> targets = {2, 1, 4, 5, 3};

    const std::string plantBefore = test::ReadBytes(FolderOf(2) / "PID.ini");
    std::vector<SPushResult> results;
    std::wstring error;
    ASSERT_TRUE(PushRows(specs, 1, rows, targets, {true, false}, results, error)) << error;
    ASSERT_EQ(results.size(), 5u);
    EXPECT_EQ(IdsOf(results[0].changes), rows);
    EXPECT_EQ(test::ReadBytes(FolderOf(2) / "PID.ini"), plantBefore); // a dry run writes nothing

    std::size_t reached = 0;
    ASSERT_TRUE(PushRows(specs, 1, rows, targets, {}, results, error,
                         [&](std::size_t done, std::size_t, const std::wstring&) {
                             reached = done;
                             return true;
                         }));
    EXPECT_EQ(reached, targets.size());
    ASSERT_EQ(results.size(), 5u);
    EXPECT_EQ(IdsOf(results[0].changes), rows);
    EXPECT_TRUE(results[1].skipped); // the source itself
    EXPECT_TRUE(results[2].skipped);
    EXPECT_EQ(results[2].skipReason, L"deleted");
    EXPECT_TRUE(results[3].Failed());
    EXPECT_EQ(results[3].error,
              L"Error comparing standards: The folder of standard 'Lost' cannot be found.");
    EXPECT_EQ(IdsOf(results[4].changes), rows); // after the failure
    for (const std::int32_t id : {2, 3}) {
        const Ids left = Differing(1, id);
        EXPECT_EQ(std::count(left.begin(), left.end(), L"PID/Settings/145"), 0);
        EXPECT_EQ(std::count(left.begin(), left.end(), L"Lines/Line/100-A"), 0);
    }

    ASSERT_TRUE(PushRows(specs, 1, rows, {4}, {false, true}, results, error));
    EXPECT_EQ(IdsOf(results[0].changes), rows); // a deleted standard when asked for

    EXPECT_FALSE(PushRows(specs, 1, {L"PID/Settings/999"}, {2}, {}, results, error));
    EXPECT_EQ(error, L"Standard 'Pipe' has no row called 'PID/Settings/999'.");
}

} // namespace standard_merge_test
