#include "editors/StandardMerge.h"

#include "contents/ProjectLines.h"
#include "contents/ProjectSettings.h"
#include "contents/ProjectSpecs.h"
#include "datafile/Application.h"
#include "datafile/Text.h"
#include "editors/BordersEditor.h"
#include "editors/GeneralSettingsEditor.h"
#include "editors/LayersEditor.h"
#include "editors/LinesEditor.h"
#include "editors/SettingsEditor.h"
#include "editors/SpecsEditor.h"
#include "store/GeneralSettings.h"

#include <algorithm>
#include <fmt/xchar.h>
#include <map>
#include <memory>
#include <optional>
#include <set>

namespace {

using CValue = std::vector<std::wstring>;

// The parts of a row id: group, section and key ("Lines/Line/A/B": the
// key is "A/B").
struct SRowId {
    std::wstring group;
    std::wstring section;
    std::wstring key;
};

SRowId SplitRowId(const std::wstring& id) {
    SRowId parts;
    const std::size_t first = id.find(L'/');
    parts.group = id.substr(0, first);
    if (first == std::wstring::npos)
        return parts;
    const std::size_t second = id.find(L'/', first + 1);
    parts.section = id.substr(first + 1, second == std::wstring::npos ? std::wstring::npos
                                                                      : second - first - 1);
    if (second != std::wstring::npos)
        parts.key = id.substr(second + 1);
    return parts;
}

// The rank of a border row's sheet; nullopt for any other row.
std::optional<int> BorderRank(const SRowId& parts) {
    EDwg sheet = eDwgA;
    if (parts.group != L"Borders" || !DwgFromKey(parts.section, sheet))
        return std::nullopt;
    return BorderSheetRank(sheet);
}

bool GroupIs(const std::wstring& id, const std::wstring& group) {
    return EqualsNoCase(CompareRowGroup(id), group);
}

// What the writers hear from the editors: every message is kept as the
// reason of what is being written; questions get No, so that nothing is
// done beyond what the rows say (a folder that does not exist stays so).
class CCollectingPrompter : public IPrompter {
public:
    EPromptAnswer Ask(const SPrompt& prompt) override {
        if (!prompt.text.empty())
            m_texts.push_back(prompt.text);
        return prompt.buttons == EPromptButtons::Ok || prompt.buttons == EPromptButtons::OkCancel
                   ? EPromptAnswer::Ok
                   : EPromptAnswer::No;
    }
    // What was said since the last call, or `fallback` when nothing was.
    std::wstring Take(const std::wstring& fallback) {
        std::wstring text;
        for (const auto& said : m_texts)
            text += (text.empty() ? L"" : L"\n\n") + said;
        m_texts.clear();
        return text.empty() ? fallback : text;
    }
    void Clear() { m_texts.clear(); }

private:
    std::vector<std::wstring> m_texts;
};

int Number(const CValue& value, std::size_t at = 0) {
    return at < value.size() ? WToI(value[at]) : 0;
}

std::wstring Part(const CValue& value, std::size_t at) {
    return at < value.size() ? value[at] : std::wstring();
}

// Writes changes into one standard through the pages' editors: each change
// is staged in its editor, then every editor saves once.
class CTargetWriter {
public:
    CTargetWriter(CVX2D_SpecRegister& specs, std::int32_t targetId)
        : m_specs(specs), m_registry(specs.Projects()), m_nTarget(targetId) {}

    SMergeOutcome Write(const std::vector<SMergeChange>& changes) {
        std::vector<std::optional<std::wstring>> failures(changes.size());
        std::map<std::wstring, std::vector<std::size_t>> staged; // by editor
        for (std::size_t i = 0; i < changes.size(); ++i) {
            m_prompter.Clear();
            std::wstring editor;
            if (auto reason = Stage(changes[i], editor))
                failures[i] = std::move(reason);
            else
                staged[editor].push_back(i);
        }
        for (const auto& [editor, indexes] : staged) {
            m_prompter.Clear();
            if (auto reason = Save(editor, changes, indexes)) {
                for (const std::size_t i : indexes)
                    failures[i] = *reason;
            }
        }
        SMergeOutcome outcome;
        for (std::size_t i = 0; i < changes.size(); ++i) {
            if (failures[i])
                outcome.failed.push_back({changes[i], *failures[i]});
            else
                outcome.applied.push_back(changes[i]);
        }
        return outcome;
    }

private:
    // Stages one change in its editor (named in `editor`); the reason when
    // it cannot be.
    std::optional<std::wstring> Stage(const SMergeChange& change, std::wstring& editor) {
        const SRowId id = SplitRowId(change.id);
        const CValue& value = change.newValue;
        if (id.group == L"General") {
            editor = L"general";
            return StageGeneral(id.key, value);
        }
        if (id.group == L"Locations") {
            editor = L"locations";
            return StageLocation(change.id, value);
        }
        if (id.group == L"Borders") {
            editor = L"borders";
            return StageBorder(id, value);
        }
        if (id.group == L"Lines" || id.group == L"Specs") {
            // Lines are written one by one, as the lines page does.
            editor = id.group;
            return std::nullopt;
        }
        if (id.group == L"Layers") {
            editor = L"layers " + id.section;
            return StageLayer(id, value);
        }
        const int application = ParseApplication(id.group);
        if (IsApplication(application) && id.section == L"Settings") {
            return StageSetting(application, id.key, value, editor);
        }
        return L"There is no such row.";
    }

    std::optional<std::wstring> StageGeneral(const std::wstring& key, const CValue& value) {
        static const std::pair<const wchar_t*, EGeneralField> kFields[] = {
            {L"WorkingUnits", EGeneralField::WorkingUnits},
            {L"DisplayedUnits", EGeneralField::DisplayedUnits},
            {L"RatingFormat", EGeneralField::RatingFormat},
        };
        if (!m_general) {
            m_general = std::make_unique<CGeneralSettingsEditor>(m_registry, m_prompter);
            if (!m_general->Open(m_nTarget))
                return m_prompter.Take(L"The general settings cannot be read.");
        }
        for (const auto& [name, field] : kFields) {
            if (key != name)
                continue;
            const std::vector<int> codes = m_general->Codes(field);
            const int code = Number(value);
            const auto found = std::find(codes.begin(), codes.end(), code);
            if (found == codes.end() ||
                !m_general->Choose(field, static_cast<int>(found - codes.begin())))
                return fmt::format(L"{} is not in the list of {}.", code,
                                   m_general->Row(field).label);
            return std::nullopt;
        }
        return L"There is no such row.";
    }

    // Folders are copied as the other standard stores them: a Windows path
    // stays one, as the drafting applications on Windows read it.
    std::optional<std::wstring> StageLocation(const std::wstring& id, const CValue& value) {
        static const wchar_t* const kLocations[] = {
            L"Locations/Drawings/ELECTRIC",  L"Locations/Drawings/PID",
            L"Locations/Drawings/ISOMETRIC", L"Locations/Drawings/ORTHO",
            L"Locations/Folders/Borders",    L"Locations/Folders/Templates"};
        const auto found = std::find_if(std::begin(kLocations), std::end(kLocations),
                                        [&](const wchar_t* known) { return id == known; });
        if (found == std::end(kLocations))
            return L"There is no such row.";
        // Read from a datafile, so a datafile can hold it.
        m_locations[static_cast<int>(found - std::begin(kLocations))] = Part(value, 0);
        return std::nullopt;
    }

    std::optional<std::wstring> StageBorder(const SRowId& id, const CValue& value) {
        const std::optional<int> rank = BorderRank(id);
        if (!rank || (id.key != L"border" && id.key != L"limits" && id.key != L"revision"))
            return L"There is no such row.";
        if (!m_borders) {
            CVX2D_GeneralSettings general;
            m_borders = std::make_unique<CBordersEditor>(m_registry, m_prompter);
            if (!general.Load(m_registry, m_nTarget) || !m_borders->Open(m_nTarget))
                return m_prompter.Take(L"The border settings cannot be read.");
            m_nWorkingUnits = general.m_nWorkingUnits;
        }
        // The target's own sheet of that rank, in its own units.
        const EDwg sheet = BorderSheetOfRank(*rank, m_nWorkingUnits);
        const auto& rows = m_borders->Rows();
        const auto row = static_cast<std::size_t>(
            std::find_if(rows.begin(), rows.end(),
                         [sheet](const SBorderRow& r) { return r.size == sheet; }) -
            rows.begin());
        bool stored = true;
        if (id.key == L"border")
            stored = m_borders->SetCellText(row, EBorderColumn::Border, Part(value, 0));
        else if (id.key == L"revision")
            stored = m_borders->SetCellText(row, EBorderColumn::Revision, Part(value, 0));
        else
            stored = m_borders->SetCellText(row, EBorderColumn::LimitsMin, Part(value, 0)) &&
                     m_borders->SetCellText(row, EBorderColumn::LimitsMax, Part(value, 1));
        if (!stored)
            return m_prompter.Take(L"The value cannot be stored.");
        return std::nullopt;
    }

    std::optional<std::wstring> StageLayer(const SRowId& id, const CValue& value) {
        const int application = ParseApplication(id.section);
        if (!IsApplication(application) || id.key.empty())
            return L"There is no such row.";
        if (value.size() < 5)
            return L"The other standard has no such layer.";
        auto& editor = m_layers[application];
        if (!editor) {
            editor = std::make_unique<CLayersEditor>(m_registry, m_prompter);
            if (!editor->Open(m_nTarget, application))
                return m_prompter.Take(L"The layers cannot be read.");
        }
        const std::int32_t key = WToI(id.key);
        const auto& rows = editor->Rows();
        const auto found = std::find_if(rows.begin(), rows.end(),
                                        [key](const SLayerRow& row) { return row.key == key; });
        if (found == rows.end())
            return L"The standard has no such layer.";
        const auto row = static_cast<std::size_t>(found - rows.begin());
        SLayerColor color;
        const std::wstring rgb = value[1];
        const std::size_t c1 = rgb.find(L','), c2 = rgb.find(L',', c1 + 1);
        color.rgb.red = static_cast<std::uint8_t>(WToI(rgb.substr(0, c1)));
        color.rgb.green = static_cast<std::uint8_t>(WToI(rgb.substr(c1 + 1, c2 - c1 - 1)));
        color.rgb.blue = static_cast<std::uint8_t>(WToI(rgb.substr(c2 + 1)));
        color.index = Number(value, 2);
        if (!editor->SetCellText(row, ELayerColumn::Name, value[0]) ||
            !editor->SetColor(row, color) ||
            !editor->SetCellText(row, ELayerColumn::Linetype, value[3]) ||
            !editor->SetCellText(row, ELayerColumn::Lineweight, LineweightText(Number(value, 4))))
            return m_prompter.Take(L"The layer's values cannot be stored.");
        return std::nullopt;
    }

    std::optional<std::wstring> StageSetting(int application, const std::wstring& key,
                                             const CValue& value, std::wstring& editorName) {
        const std::int32_t variableId = WToI(key);
        // The section that holds the variable, from the catalogue.
        const auto catalogue = NewProjectSettings(application);
        catalogue->BuildCatalogue(0);
        int section = -1;
        for (const auto& candidate : catalogue->Sections()) {
            if (candidate.Find(variableId) && variableId != CVX2D_ProjectSettingsBase::kTitleId) {
                section = candidate.m_nId;
                break;
            }
        }
        if (section < 0 || key.empty())
            return L"There is no such setting.";
        editorName = fmt::format(L"settings {} {}", application, section);
        auto& editor = m_settings[{application, section}];
        if (!editor) {
            editor = std::make_unique<CSettingsEditor>(m_registry, m_prompter);
            if (!editor->Open(m_nTarget, application, section))
                return m_prompter.Take(L"The settings cannot be read.");
        }
        const auto& rows = editor->Rows();
        const auto found =
            std::find_if(rows.begin(), rows.end(), [variableId](const SSettingsRow& row) {
                return !row.subHeading && row.variableId == variableId;
            });
        if (found == rows.end())
            return L"There is no such setting.";
        if (!editor->SetCellText(static_cast<std::size_t>(found - rows.begin()), Part(value, 0)))
            return m_prompter.Take(
                fmt::format(L"'{}' is not a value of {}.", Part(value, 0), found->label));
        return std::nullopt;
    }

    // Saves one editor's staged changes; the reason when it cannot.
    std::optional<std::wstring> Save(const std::wstring& editor,
                                     const std::vector<SMergeChange>& changes,
                                     const std::vector<std::size_t>& indexes) {
        const std::wstring fallback = L"The changes cannot be saved.";
        if (editor == L"general")
            return m_general->Apply() ? std::nullopt : std::optional(m_prompter.Take(fallback));
        if (editor == L"locations")
            return SaveLocations();
        if (editor == L"borders")
            return m_borders->Apply() ? std::nullopt : std::optional(m_prompter.Take(fallback));
        if (editor == L"Lines")
            return SaveLines(changes, indexes);
        if (editor == L"Specs")
            return SaveSpecs(changes, indexes);
        if (editor.starts_with(L"layers ")) {
            auto& layers = m_layers[ParseApplication(editor.substr(7))];
            return layers->Apply() ? std::nullopt : std::optional(m_prompter.Take(fallback));
        }
        for (auto& [key, settings] : m_settings) {
            if (editor == fmt::format(L"settings {} {}", key.first, key.second))
                return settings->Apply() ? std::nullopt : std::optional(m_prompter.Take(fallback));
        }
        return fallback;
    }

    std::optional<std::wstring> SaveLocations() {
        CVX2D_GeneralSettings general;
        const bool saved = general.Update(m_registry, m_nTarget, [&](CVX2D_GeneralSettings& g) {
            for (const auto& [index, folder] : m_locations) {
                if (index < 4)
                    g.SetDrawingsLocation(index + 1, folder);
                else if (index == 4)
                    g.m_strBordersLocation = folder;
                else
                    g.m_strTemplatesLocation = folder;
            }
        });
        if (saved)
            return std::nullopt;
        return fmt::format(L"The file locations of standard '{}' cannot be saved.",
                           m_registry.GetProjectName(m_nTarget, true, true));
    }

    // Lines are made, recovered and deleted one at a time; the first
    // failure is the reason of every line change.
    std::optional<std::wstring> SaveLines(const std::vector<SMergeChange>& changes,
                                          const std::vector<std::size_t>& indexes) {
        const CVX2D_ProjectLines lines(m_registry);
        SLineList list;
        if (const ELineResult read = lines.GetLines(m_nTarget, list, true); read != eLineOk)
            return CVX2D_ProjectLines::GetErrorText(read);
        for (const std::size_t i : indexes) {
            const std::wstring name = SplitRowId(changes[i].id).key;
            const bool wanted = !changes[i].newValue.empty();
            std::int32_t live = 0, deleted = 0;
            for (std::size_t l = 0; l < list.Size(); ++l) {
                if (list.names[l] == name)
                    (list.deleted[l] ? deleted : live) = list.ids[l];
            }
            ELineResult result = eLineOk;
            if (wanted && live == 0 && deleted != 0) {
                result = lines.RecoverLine(m_nTarget, deleted);
            } else if (wanted && live == 0) {
                std::int32_t lineId = 0;
                std::wstring made;
                result = lines.CreateLine(m_nTarget, name, lineId, made);
                if (result == eLineOk) {
                    if (const ESpecResult listed =
                            GiveLineTheCheckedSpecs(m_registry, m_nTarget, lineId);
                        listed != eSpecOk)
                        return CVX2D_ProjectSpecs::GetErrorText(listed);
                }
            } else if (!wanted && live != 0) {
                result = lines.DeleteLine(m_nTarget, live);
            }
            if (result != eLineOk)
                return CVX2D_ProjectLines::GetErrorText(result);
        }
        return std::nullopt;
    }

    std::optional<std::wstring> SaveSpecs(const std::vector<SMergeChange>& changes,
                                          const std::vector<std::size_t>& indexes) {
        CSpecsEditor specs(m_registry, m_prompter, m_specs);
        if (!specs.Open(m_nTarget))
            return m_prompter.Take(L"The specs cannot be read.");
        for (const std::size_t i : indexes) {
            const std::int32_t specId = WToI(SplitRowId(changes[i].id).key);
            const bool wanted = !changes[i].newValue.empty();
            const auto& rows = specs.Rows();
            const auto found = std::find_if(rows.begin(), rows.end(),
                                            [specId](const SSpecRow& r) { return r.id == specId; });
            if (found == rows.end()) {
                if (wanted)
                    return CVX2D_ProjectSpecs::GetErrorText(eSpecCantFind);
                continue;
            }
            specs.SetChecked(static_cast<std::size_t>(found - rows.begin()), wanted);
        }
        return specs.Apply() ? std::nullopt
                             : std::optional(m_prompter.Take(L"The specs cannot be saved."));
    }

    CVX2D_SpecRegister& m_specs;
    const CVX2D_ProjectRegistry& m_registry;
    const std::int32_t m_nTarget;
    CCollectingPrompter m_prompter;
    std::unique_ptr<CGeneralSettingsEditor> m_general;
    std::map<int, std::wstring> m_locations; // by position in the page
    std::unique_ptr<CBordersEditor> m_borders;
    int m_nWorkingUnits = 0;
    std::map<int, std::unique_ptr<CLayersEditor>> m_layers;
    std::map<std::pair<int, int>, std::unique_ptr<CSettingsEditor>> m_settings;
};

// Builds the comparison of two standards; false with the reason when it
// cannot be completed.
bool Compare(CVX2D_StandardComparison& comparison, std::int32_t id1, std::int32_t id2,
             std::wstring& error) {
    comparison.SetStandard1(id1);
    comparison.SetStandard2(id2);
    if (comparison.Rebuild())
        return true;
    error = CompareErrorText(comparison.Result().reason);
    return false;
}

// The change that puts back what `change` overwrote.
SMergeChange Reversed(const SMergeChange& change) {
    SMergeChange back = change;
    std::swap(back.oldText, back.newText);
    std::swap(back.oldValue, back.newValue);
    return back;
}

void AddUndo(SMergePlan& undo, const std::vector<SMergeChange>& applied) {
    // Undone last first: general settings, written first, go back last.
    for (auto it = applied.rbegin(); it != applied.rend(); ++it)
        undo.changes.insert(undo.changes.begin(), Reversed(*it));
}

} // namespace

bool SameCompareRow(const std::wstring& a, const std::wstring& b) {
    if (a == b)
        return true;
    const SRowId one = SplitRowId(a), two = SplitRowId(b);
    const std::optional<int> rank1 = BorderRank(one), rank2 = BorderRank(two);
    return rank1 && rank2 && *rank1 == *rank2 && one.key == two.key;
}

std::vector<std::size_t> SelectCompareRows(const SComparison& comparison,
                                           const SMergeSelection& selection,
                                           std::vector<std::wstring>& unknown) {
    const auto& rows = comparison.rows;
    std::set<std::size_t> chosen;
    for (const auto& group : selection.groups) {
        const auto& groups = CompareGroups();
        if (std::none_of(groups.begin(), groups.end(),
                         [&](const std::wstring& known) { return EqualsNoCase(known, group); }))
            unknown.push_back(group);
    }
    if (selection.allDifferences) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const SCompareRow& row = rows[i];
            if (row.kind != ECompareRowKind::eValue || !row.differ || row.own)
                continue;
            if (selection.groups.empty() ||
                std::any_of(selection.groups.begin(), selection.groups.end(),
                            [&](const std::wstring& group) { return GroupIs(row.id, group); }))
                chosen.insert(i);
        }
    }
    for (const auto& id : selection.ids) {
        bool found = false;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (!SameCompareRow(rows[i].id, id))
                continue;
            found = true;
            if (rows[i].kind == ECompareRowKind::eValue) {
                chosen.insert(i);
                continue;
            }
            // A heading: the value rows under it, up to the next heading of
            // its own rank or above.
            const bool section = rows[i].kind == ECompareRowKind::eHeading;
            for (std::size_t j = i + 1; j < rows.size(); ++j) {
                if (rows[j].kind == ECompareRowKind::eHeading ||
                    (!section && rows[j].kind == ECompareRowKind::eSubHeading))
                    break;
                if (rows[j].kind == ECompareRowKind::eValue)
                    chosen.insert(j);
            }
        }
        if (!found)
            unknown.push_back(id);
    }
    return {chosen.begin(), chosen.end()};
}

std::wstring GeneralRowId(const std::wstring& field) {
    return L"General/Settings/" + field;
}

std::wstring BorderRowId(EDwg sheet, const std::wstring& column) {
    return L"Borders/" + DwgKey(sheet) + L"/" + column;
}

std::wstring SettingsRowId(int application, std::int32_t variableId) {
    return fmt::format(L"{}/Settings/{:03d}", ApplicationName(application), variableId);
}

std::wstring LayerRowId(int application, std::int32_t layerKey) {
    return fmt::format(L"Layers/{}/{:03d}", ApplicationName(application), layerKey);
}

CStandardMerge::CStandardMerge(CVX2D_SpecRegister& specs)
    : m_specs(specs), m_registry(specs.Projects()) {}

bool CStandardMerge::Plan(std::int32_t sourceId, std::int32_t targetId,
                          const SMergeSelection& selection, SMergePlan& plan, std::wstring& error,
                          bool* usage) const {
    plan = SMergePlan{sourceId, targetId, {}, {}, {}};
    if (usage)
        *usage = false;
    CVX2D_StandardComparison comparison(m_registry);
    if (!Compare(comparison, sourceId, targetId, error))
        return false;
    const SComparison& result = comparison.Result();
    plan.sourceName = result.header1;
    plan.targetName = result.header2;
    std::vector<std::wstring> unknown;
    const std::vector<std::size_t> chosen = SelectCompareRows(result, selection, unknown);
    if (selection.missingItemsAllowed)
        std::erase_if(unknown, [](const std::wstring& id) {
            return GroupIs(id, L"Lines") || GroupIs(id, L"Specs");
        });
    if (!unknown.empty()) {
        std::wstring list;
        for (const auto& id : unknown)
            list += (list.empty() ? L"'" : L", '") + id + L"'";
        error = fmt::format(L"No row of the comparison of '{}' and '{}' is called {}.",
                            plan.sourceName, plan.targetName, list);
        if (usage)
            *usage = true;
        return false;
    }
    std::wstring heading;
    std::size_t next = 0;
    for (std::size_t i = 0; i < result.rows.size() && next < chosen.size(); ++i) {
        const SCompareRow& row = result.rows[i];
        if (row.kind == ECompareRowKind::eHeading)
            heading = row.label;
        if (i != chosen[next])
            continue;
        ++next;
        if (row.differ)
            plan.changes.push_back(
                {row.id, heading, row.label, row.text2, row.text1, row.value2, row.value1});
    }
    return true;
}

bool CStandardMerge::Merge(std::int32_t sourceId, std::int32_t targetId,
                           const SMergeSelection& selection, SMergeOutcome& outcome,
                           std::wstring& error, bool* usage) const {
    outcome = SMergeOutcome{};
    SMergePlan plan;
    if (!Plan(sourceId, targetId, selection, plan, error, usage))
        return false;
    outcome.undo = SMergePlan{targetId, targetId, plan.targetName, plan.targetName, {}};

    auto isGeneral = [](const SMergeChange& change) { return GroupIs(change.id, L"General"); };
    SMergePlan first = plan;
    first.changes.clear();
    std::copy_if(plan.changes.begin(), plan.changes.end(), std::back_inserter(first.changes),
                 isGeneral);
    plan.changes.erase(std::remove_if(plan.changes.begin(), plan.changes.end(), isGeneral),
                       plan.changes.end());
    if (!first.changes.empty()) {
        SMergeOutcome general = Apply(first);
        const bool unitsChanged =
            std::any_of(general.applied.begin(), general.applied.end(), [](const auto& change) {
                return change.id == GeneralRowId(L"WorkingUnits");
            });
        outcome.applied = general.applied;
        outcome.failed = general.failed;
        if (unitsChanged && !plan.changes.empty()) {
            // Sheets and settings defaults follow the new units: compare again.
            const std::vector<SMergeChange> planned = plan.changes;
            std::wstring again;
            if (!Plan(sourceId, targetId, selection, plan, again)) {
                for (const auto& change : planned)
                    outcome.failed.push_back({change, again});
                plan.changes.clear();
            }
            plan.changes.erase(std::remove_if(plan.changes.begin(), plan.changes.end(), isGeneral),
                               plan.changes.end());
        }
    }
    SMergeOutcome rest = Apply(plan);
    outcome.applied.insert(outcome.applied.end(), rest.applied.begin(), rest.applied.end());
    outcome.failed.insert(outcome.failed.end(), rest.failed.begin(), rest.failed.end());
    AddUndo(outcome.undo, outcome.applied);
    return true;
}

SMergeOutcome CStandardMerge::Apply(const SMergePlan& plan) const {
    SMergeOutcome outcome = CTargetWriter(m_specs, plan.targetId).Write(plan.changes);
    outcome.undo = SMergePlan{plan.targetId, plan.targetId, plan.targetName, plan.targetName, {}};
    AddUndo(outcome.undo, outcome.applied);
    return outcome;
}

bool PushRows(CVX2D_SpecRegister& specs, std::int32_t sourceId,
              const std::vector<std::wstring>& rowIds, const std::vector<std::int32_t>& targets,
              const SPushOptions& options, std::vector<SPushResult>& results, std::wstring& error,
              const CProgress& progress) {
    results.clear();
    const CVX2D_ProjectRegistry& registry = specs.Projects();
    // The rows must be rows the source has (lines and specs may be missing
    // from it: pushing their absence removes them).
    {
        CVX2D_StandardComparison self(registry);
        if (!Compare(self, sourceId, sourceId, error))
            return false;
        std::vector<std::wstring> fixed;
        for (const auto& id : rowIds) {
            if (!GroupIs(id, L"Lines") && !GroupIs(id, L"Specs"))
                fixed.push_back(id);
        }
        std::vector<std::wstring> unknown;
        SelectCompareRows(self.Result(), {fixed, false, {}, false}, unknown);
        if (!unknown.empty()) {
            std::wstring list;
            for (const auto& id : unknown)
                list += (list.empty() ? L"'" : L", '") + id + L"'";
            error =
                fmt::format(L"Standard '{}' has no row called {}.", self.Result().header1, list);
            return false;
        }
    }
    std::vector<SProjectInfo> projects;
    if (const EProjectResult read = registry.ListProjects(true, true, projects);
        read != eProjectOk) {
        error = ProjectResultText(read);
        return false;
    }
    const CStandardMerge merge(specs);
    for (std::size_t t = 0; t < targets.size(); ++t) {
        SPushResult result;
        result.id = targets[t];
        const auto info = std::find_if(projects.begin(), projects.end(),
                                       [&](const SProjectInfo& p) { return p.id == result.id; });
        result.name = info != projects.end() ? info->name : std::to_wstring(result.id);
        if (progress && !progress(t, targets.size(), result.name))
            break;
        if (info == projects.end()) {
            result.error = fmt::format(L"There is no standard {}.", result.id);
        } else if (result.id == sourceId) {
            result.skipped = true;
            result.skipReason = L"the standard the rows come from";
        } else if (info->deleted && !options.includeDeleted) {
            result.skipped = true;
            result.skipReason = L"deleted";
        } else {
            const SMergeSelection selection{rowIds, false, {}, true};
            std::wstring why;
            if (options.dryRun) {
                SMergePlan plan;
                if (merge.Plan(sourceId, result.id, selection, plan, why))
                    result.changes = plan.changes;
                else
                    result.error = why;
            } else {
                SMergeOutcome outcome;
                if (merge.Merge(sourceId, result.id, selection, outcome, why)) {
                    result.changes = outcome.applied;
                    result.failed = outcome.failed;
                } else {
                    result.error = why;
                }
            }
        }
        results.push_back(std::move(result));
    }
    if (progress)
        progress(results.size(), targets.size(), L"");
    return true;
}
