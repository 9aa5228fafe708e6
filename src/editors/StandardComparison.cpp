#include "editors/StandardComparison.h"

#include "contents/ProjectBorders.h"
#include "contents/ProjectLayers.h"
#include "contents/ProjectLines.h"
#include "contents/ProjectSettings.h"
#include "contents/ProjectSpecs.h"
#include "contents/SettingsCatalogue.h"
#include "contents/SettingsText.h"
#include "datafile/Application.h"
#include "datafile/IniFile.h"
#include "datafile/Text.h"
#include "datafile/Units.h"
#include "editors/RatingFormats.h"
#include "platform/Utf8.h"
#include "store/GeneralSettings.h"
#include "store/ProjectRegistry.h"

#include <algorithm>
#include <cwctype>
#include <fmt/xchar.h>
#include <map>

namespace {

using Base = CVX2D_ProjectSettingsBase;

const wchar_t* const kChecked = L"checked";

// The settings sections of each application in the order the grid shows
// them; each group is followed by the application's layers.
struct SAppSections {
    int application;
    std::vector<int> sections;
};

const SAppSections kSettingsOrder[] = {
    {eAppElectric,
     {Base::eGeneralDrawing, Base::eScaleFactors, Base::eScalingVariables, Base::eDimensioning}},
    {eAppFlow,
     {Base::eGeneralDrawing, Base::eSystemToggles, Base::eScaleFactors, Base::eBillOfMaterial,
      Base::eDimensioning}},
    {eAppIso,
     {Base::eGeneralDrawing, Base::eSystemToggles, Base::eScaleFactors, Base::eComponentSizing,
      Base::eBillOfMaterial, Base::eDimensioning}},
    {eAppOrtho,
     {Base::eGeneralDrawing, Base::eSystemToggles, Base::eScaleFactors, Base::eBillOfMaterial,
      Base::eCivilStructural, Base::eDimensioning}},
};

// A row whose key decides its place (lines, specs, layers).
struct SKeyedRow {
    std::wstring key;
    std::wstring text1;
    std::wstring text2;
    std::wstring id;
    std::vector<std::wstring> value1;
    std::vector<std::wstring> value2;
};

using CValue = std::vector<std::wstring>;

// A layer's values as a merge writes them: name, colour "R,G,B", palette
// position, linetype, lineweight.
CValue LayerValue(const CVX2D_ProjectLayers& layers, std::size_t i) {
    if (i >= layers.GetCount())
        return {};
    const SLayerColor& color = layers.GetColors()[i];
    return {layers.GetNames()[i],
            fmt::format(L"{},{},{}", color.rgb.red, color.rgb.green, color.rgb.blue),
            std::to_wstring(color.index), layers.GetLinetypes()[i],
            std::to_wstring(layers.GetLineweights()[i])};
}

// Whether `path` lies inside `folder` (which ends in a separator), either
// separator and any letter case: a share may be named either way.
bool Inside(const std::wstring& path, const std::wstring& folder) {
    if (folder.empty() || path.size() < folder.size())
        return false;
    for (std::size_t i = 0; i < folder.size(); ++i) {
        wchar_t a = path[i], b = folder[i];
        if (a == L'\\')
            a = L'/';
        if (b == L'\\')
            b = L'/';
        if (std::towlower(a) != std::towlower(b))
            return false;
    }
    return true;
}

// Keys that start with a non-zero number sort by that number: without their
// thousands commas and left-padded with "0" to ten characters, so that
// "2. X" comes before "10. Y" and "1,200" after "900". Other keys sort by
// character code.
std::wstring SortCopy(const std::wstring& key) {
    if (WToI(key) == 0)
        return key;
    std::wstring copy;
    for (const wchar_t c : key) {
        if (c != L',')
            copy += c;
    }
    if (copy.size() < 10)
        copy.insert(0, 10 - copy.size(), L'0');
    return copy;
}

// Ascending and stable: the order of a bubble sort that swaps only keys
// strictly out of order, in n log n.
void KeySort(std::vector<SKeyedRow>& rows) {
    std::vector<std::pair<std::wstring, SKeyedRow>> keyed;
    keyed.reserve(rows.size());
    for (auto& row : rows)
        keyed.emplace_back(SortCopy(row.key), std::move(row));
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    rows.clear();
    for (auto& entry : keyed)
        rows.push_back(std::move(entry.second));
}

std::wstring LayerText(const CVX2D_ProjectLayers& layers, std::size_t i) {
    if (i >= layers.GetCount())
        return {};
    const std::int32_t weight = layers.GetLineweights()[i];
    const std::wstring weightText = weight == CVX2D_ProjectLayers::kDefaultLineweight
                                        ? std::wstring(L"Default")
                                        : fmt::format(L"{:.2f} mm", weight / 100.0);
    return fmt::format(L"{}, {}, {}, {}", layers.GetNames()[i],
                       CVX2D_ProjectLayers::FormatColor(layers.GetColors()[i]),
                       layers.GetLinetypes()[i], weightText);
}

// What one standard contributes, read step by step.
struct SSide {
    std::int32_t id = -1;
    std::wstring name;
    CVX2D_GeneralSettings general;
    std::wstring folder;                   // ends with a separator
    std::unique_ptr<CVX2D_IniFile> layers; // "Layers.ini", read at first need
};

class CBuilder {
public:
    CBuilder(const CVX2D_ProjectRegistry& registry,
             const CVX2D_StandardComparison::CSettingsFactory& factory, SComparison& out,
             std::int32_t id1, std::int32_t id2)
        : m_registry(registry), m_factory(factory), m_out(out), m_same(id1 == id2) {
        m_one.id = id1;
        m_two.id = id2;
    }

    bool Run() {
        if (!Records() || !General())
            return false;
        FileLocations();
        Borders();
        Lines();
        Specs();
        for (const auto& group : kSettingsOrder) {
            if (!Application(group))
                return false;
        }
        return true;
    }

private:
    // The same standard on both sides is read once.
    SSide& One() { return m_one; }
    SSide& Two() { return m_same ? m_one : m_two; }

    bool Fail(std::wstring reason) {
        m_out.failed = true;
        m_out.reason = std::move(reason);
        return false;
    }

    void Heading(ECompareRowKind kind, const std::wstring& title, const std::wstring& id) {
        SCompareRow row;
        row.kind = kind;
        row.id = id;
        row.label = title;
        row.centred = true;
        row.background1 = row.background2 =
            kind == ECompareRowKind::eHeading ? kCompareHeadingColour : kCompareSubHeadingColour;
        m_out.rows.push_back(std::move(row));
    }

    SCompareRow& Value(const std::wstring& id, const std::wstring& label, const std::wstring& text1,
                       const std::wstring& text2, bool differ, CValue value1, CValue value2) {
        SCompareRow row;
        row.id = id;
        row.label = label;
        row.text1 = text1;
        row.text2 = text2;
        row.value1 = std::move(value1);
        row.value2 = std::move(value2);
        row.differ = differ;
        if (differ)
            row.background1 = row.background2 = kCompareDifferColour;
        m_out.rows.push_back(std::move(row));
        return m_out.rows.back();
    }

    // A row whose value is its text.
    SCompareRow& Value(const std::wstring& id, const std::wstring& label, const std::wstring& text1,
                       const std::wstring& text2) {
        return Value(id, label, text1, text2, text1 != text2, {text1}, {text2});
    }

    // A row of a number shown as text, marked when the numbers differ.
    void Code(const std::wstring& id, const std::wstring& label, int code1,
              const std::wstring& text1, int code2, const std::wstring& text2) {
        Value(id, label, text1, text2, code1 != code2, {std::to_wstring(code1)},
              {std::to_wstring(code2)});
    }

    void Rows(const std::vector<SKeyedRow>& rows) {
        for (const auto& row : rows)
            Value(row.id, row.key, row.text1, row.text2, row.text1 != row.text2, row.value1,
                  row.value2);
    }

    bool Records() {
        std::vector<SProjectInfo> projects;
        if (const EProjectResult read = m_registry.ListProjects(true, true, projects);
            read != eProjectOk)
            return Fail(fmt::format(L"The list of standards cannot be read.\n\n{}",
                                    ProjectResultText(read)));
        for (const auto& [side, header] :
             {std::pair{&One(), &m_out.header1}, std::pair{&Two(), &m_out.header2}}) {
            const auto found =
                std::find_if(projects.begin(), projects.end(),
                             [id = side->id](const SProjectInfo& info) { return info.id == id; });
            if (found == projects.end())
                return Fail(fmt::format(L"Standard {} does not exist.", side->id));
            side->name = found->name;
            *header = side->name;
        }
        for (SSide* side : {&One(), &Two()}) {
            if (!side->folder.empty())
                continue;
            if (!side->general.Load(m_registry, side->id))
                return Fail(
                    fmt::format(L"The folder of standard '{}' cannot be found.", side->name));
            const std::wstring& path = side->general.GetPath();
            side->folder = path.substr(0, path.find_last_of(L"/\\") + 1);
        }
        return true;
    }

    bool General() {
        const CVX2D_GeneralSettings& g1 = One().general;
        const CVX2D_GeneralSettings& g2 = Two().general;
        Heading(ECompareRowKind::eHeading, L"General Settings", L"General");
        Code(L"General/Settings/WorkingUnits", L"Working Units", g1.m_nWorkingUnits,
             WorkingUnitsText(g1.m_nWorkingUnits), g2.m_nWorkingUnits,
             WorkingUnitsText(g2.m_nWorkingUnits));
        Code(L"General/Settings/DisplayedUnits", L"Displayed Units", g1.m_nDisplayedUnits,
             DisplayedUnitsText(g1.m_nDisplayedUnits), g2.m_nDisplayedUnits,
             DisplayedUnitsText(g2.m_nDisplayedUnits));

        const std::vector<SRatingFormat> formats = LoadRatingFormats(m_registry.Datafiles());
        const SRatingFormat* f1 = FindRatingFormat(formats, g1.m_nRatingsFormat);
        const SRatingFormat* f2 = FindRatingFormat(formats, g2.m_nRatingsFormat);
        for (const auto& [format, side] : {std::pair{f1, &One()}, std::pair{f2, &Two()}}) {
            if (!format)
                return Fail(fmt::format(
                    L"Rating format {} of standard '{}' is not in the list of rating formats.",
                    side->general.m_nRatingsFormat, side->name));
        }
        Code(L"General/Settings/RatingFormat", L"Rating Format", f1->code, f1->title, f2->code,
             f2->title);
        return true;
    }

    void FileLocations() {
        const CVX2D_GeneralSettings& g1 = One().general;
        const CVX2D_GeneralSettings& g2 = Two().general;
        Heading(ECompareRowKind::eHeading, L"File Locations", L"Locations");
        Location(L"Drawings/ELECTRIC", L"ELECTRIC Drawing Folder", g1.m_strElectricDrawings,
                 g2.m_strElectricDrawings);
        Location(L"Drawings/PID", L"P & ID Drawing Folder", g1.m_strFlowDrawings,
                 g2.m_strFlowDrawings);
        Location(L"Drawings/ISOMETRIC", L"ISOMETRIC Drawing Folder", g1.m_strIsoDrawings,
                 g2.m_strIsoDrawings);
        Location(L"Drawings/ORTHO", L"ORTHO Drawing Folder", g1.m_strOrthoDrawings,
                 g2.m_strOrthoDrawings);
        Location(L"Folders/Borders", L"Borders", g1.m_strBordersLocation, g2.m_strBordersLocation);
        Location(L"Folders/Templates", L"Templates", g1.m_strTemplatesLocation,
                 g2.m_strTemplatesLocation);
    }

    // A standard's drawings are its own wherever they lie (the first
    // standards and the wizard put them under the standard's name); a
    // borders or templates folder is its own inside the standard's folder.
    void Location(const std::wstring& key, const std::wstring& label, const std::wstring& folder1,
                  const std::wstring& folder2) {
        Value(L"Locations/" + key, label, folder1, folder2).own = key.starts_with(L"Drawings/") ||
                                                                  Inside(folder1, One().folder) ||
                                                                  Inside(folder2, Two().folder);
    }

    void Borders() {
        Heading(ECompareRowKind::eHeading, L"Border Settings", L"Borders");
        CVX2D_ProjectBorders b1;
        b1.Load(One().folder + L"Borders.ini");
        CVX2D_ProjectBorders b2;
        if (m_same)
            b2 = b1;
        else
            b2.Load(Two().folder + L"Borders.ini");
        // Rank by rank, each standard in its own units: E against A0 and so on.
        for (int rank = 0; rank < 5; ++rank) {
            const EDwg s1 = BorderSheetOfRank(rank, One().general.m_nWorkingUnits);
            const EDwg s2 = BorderSheetOfRank(rank, Two().general.m_nWorkingUnits);
            const std::wstring sheet = DwgKey(s1);
            const std::wstring id = L"Borders/" + sheet + L"/";
            Value(id + L"border", L"Drawing Border: " + sheet, b1.GetBorderFile(s1),
                  b2.GetBorderFile(s2));
            const std::wstring limits1 = b1.GetLimitsMin(s1) + L" and " + b1.GetLimitsMax(s1);
            const std::wstring limits2 = b2.GetLimitsMin(s2) + L" and " + b2.GetLimitsMax(s2);
            Value(id + L"limits", L"Drawing Limits: " + sheet, limits1, limits2, limits1 != limits2,
                  {b1.GetLimitsMin(s1), b1.GetLimitsMax(s1)},
                  {b2.GetLimitsMin(s2), b2.GetLimitsMax(s2)});
            Value(id + L"revision", L"Revision Block: " + sheet, b1.GetRevisionFile(s1),
                  b2.GetRevisionFile(s2));
        }
    }

    // What a line or a spec is to a standard that has it: its key shown,
    // the rest of its row id and its value.
    struct SItem {
        std::wstring key;
        std::wstring id;
        std::wstring value;
    };

    // One row per key of either standard: "checked" where the standard has it.
    // Row ids that repeat (a spec checked under two names) get "~2", "~3".
    void Presence(const std::wstring& idPrefix, const std::vector<SItem>& items1,
                  const std::vector<SItem>& items2) {
        std::map<std::wstring, std::pair<unsigned, SItem>> presence;
        for (const auto& item : items1) {
            auto& entry = presence.try_emplace(item.key, 0u, item).first->second;
            entry.first |= 1u;
        }
        for (const auto& item : items2) {
            auto& entry = presence.try_emplace(item.key, 0u, item).first->second;
            entry.first |= 2u;
        }
        std::vector<SKeyedRow> rows;
        for (const auto& [key, entry] : presence) {
            const auto& [in, item] = entry;
            rows.push_back({key, (in & 1u) ? kChecked : L"", (in & 2u) ? kChecked : L"",
                            idPrefix + item.id, (in & 1u) ? CValue{item.value} : CValue{},
                            (in & 2u) ? CValue{item.value} : CValue{}});
        }
        KeySort(rows);
        std::map<std::wstring, int> seen;
        for (auto& row : rows) {
            if (const int n = ++seen[row.id]; n > 1)
                row.id += L"~" + std::to_wstring(n);
        }
        Rows(rows);
    }

    // A line is named by its name; its value is the name.
    std::vector<SItem> LineItems(const SSide& side) {
        SLineList lines;
        // A standard whose lines cannot be read shows none.
        static_cast<void>(CVX2D_ProjectLines(m_registry).GetLines(side.id, lines));
        std::vector<SItem> items;
        for (const auto& name : lines.names)
            items.push_back({name, name, name});
        return items;
    }

    void Lines() {
        Heading(ECompareRowKind::eHeading, L"Lines", L"Lines");
        const std::vector<SItem> items1 = LineItems(One());
        Presence(L"Lines/Line/", items1, m_same ? items1 : LineItems(Two()));
    }

    // A spec is named by its id; its value is the id.
    std::vector<SItem> SpecItems(const SSide& side) {
        std::vector<std::int32_t> ids;
        std::vector<std::wstring> names;
        // Specs that cannot be read show as none, as lines do.
        static_cast<void>(CVX2D_ProjectSpecs(m_registry).GetCheckedSpecs(side.id, ids, names));
        std::vector<SItem> items;
        for (std::size_t i = 0; i < ids.size() && i < names.size(); ++i)
            items.push_back({fmt::format(L"{}. {}", ids[i], names[i]), std::to_wstring(ids[i]),
                             std::to_wstring(ids[i])});
        return items;
    }

    void Specs() {
        Heading(ECompareRowKind::eHeading, L"Specs", L"Specs");
        const std::vector<SItem> items1 = SpecItems(One());
        Presence(L"Specs/Spec/", items1, m_same ? items1 : SpecItems(Two()));
    }

    std::unique_ptr<Base> LoadSettings(int application, const SSide& side) {
        std::unique_ptr<Base> settings = m_factory ? m_factory(application, side.id) : nullptr;
        if (!settings)
            settings = NewProjectSettings(application);
        settings->BuildCatalogue(side.general.m_nWorkingUnits);
        settings->Load(side.general);
        return settings;
    }

    bool Application(const SAppSections& group) {
        const std::unique_ptr<Base> own1 = LoadSettings(group.application, One());
        const std::unique_ptr<Base> own2 =
            m_same ? nullptr : LoadSettings(group.application, Two());
        const Base& settings2 = m_same ? *own1 : *own2;
        for (const int section : group.sections) {
            if (!Section(group.application, section, *own1, settings2))
                return false;
        }
        Layers(group.application);
        return true;
    }

    bool Section(int application, int sectionId, const Base& settings1, const Base& settings2) {
        const std::wstring title =
            ApplicationSettingsName(application) + L" - " + Base::SectionName(sectionId);
        const std::wstring idPrefix = ApplicationName(application) + L"/Settings/";
        const std::wstring headingId = idPrefix + Base::SectionName(sectionId);
        Heading(ECompareRowKind::eHeading, title, headingId);
        const Base::CSection* s1 = settings1.FindSection(sectionId);
        const Base::CSection* s2 = settings2.FindSection(sectionId);
        if (!s1)
            return true;
        const std::size_t count2 = s2 ? s2->m_arrVariables.size() : 0;
        for (std::size_t i = 0; i < s1->m_arrVariables.size(); ++i) {
            // The catalogues give both the same variables in the same order;
            // a shorter second section leaves nothing to compare against.
            if (i >= count2)
                return Fail(fmt::format(
                    L"\"{}\" of standard '{}' has {} settings where standard '{}' has {}.", title,
                    Two().name, count2, One().name, s1->m_arrVariables.size()));
            const Base::CVariable& v1 = s1->m_arrVariables[i];
            const Base::CVariable& v2 = s2->m_arrVariables[i];
            if (v1.m_nId == Base::kTitleId)
                Heading(ECompareRowKind::eSubHeading, v1.m_strText,
                        headingId + L"/" + v1.m_strText);
            else
                Value(idPrefix + fmt::format(L"{:03d}", v1.m_nId), SettingsVariableLabel(v1.m_nId),
                      SettingsValueText(v1), SettingsValueText(v2));
        }
        return true;
    }

    CVX2D_IniFile& LayersFile(SSide& side) {
        if (!side.layers) {
            side.layers = std::make_unique<CVX2D_IniFile>();
            side.layers->SetAutoSave(false);
            // A missing file is an empty document: every layer keeps its default.
            side.layers->Open(side.folder + L"Layers.ini");
        }
        return *side.layers;
    }

    void Layers(int application) {
        Heading(ECompareRowKind::eHeading, ApplicationName(application) + L" - Layers",
                L"Layers/" + ApplicationName(application));
        CVX2D_ProjectLayers layers1(application, One().general.m_nProjectVersion);
        layers1.Load(LayersFile(One()));
        CVX2D_ProjectLayers layers2(application, Two().general.m_nProjectVersion);
        if (m_same)
            layers2 = layers1;
        else
            layers2.Load(LayersFile(Two()));
        std::vector<SKeyedRow> rows;
        for (std::size_t i = 0; i < layers1.GetCount(); ++i) {
            const std::int32_t key = layers1.GetKeys()[i];
            rows.push_back({CVX2D_ProjectLayers::GetDescription(key), LayerText(layers1, i),
                            LayerText(layers2, i),
                            fmt::format(L"Layers/{}/{:03d}", ApplicationName(application), key),
                            LayerValue(layers1, i), LayerValue(layers2, i)});
        }
        KeySort(rows);
        Rows(rows);
    }

    const CVX2D_ProjectRegistry& m_registry;
    const CVX2D_StandardComparison::CSettingsFactory& m_factory;
    SComparison& m_out;
    const bool m_same;
    SSide m_one;
    SSide m_two;
};

} // namespace

std::wstring CompareErrorText(const std::wstring& reason) {
    return L"Error comparing standards: " + reason;
}

bool CompareRowShown(const SCompareRow& row, bool differencesOnly) {
    return !differencesOnly || row.kind != ECompareRowKind::eValue || row.differ;
}

SCompareCounts CountCompareDifferences(const SComparison& comparison) {
    SCompareCounts counts;
    counts.underHeading.assign(comparison.rows.size(), 0);
    std::size_t section = comparison.rows.size(); // no heading yet
    std::size_t subSection = comparison.rows.size();
    for (std::size_t i = 0; i < comparison.rows.size(); ++i) {
        const SCompareRow& row = comparison.rows[i];
        if (row.kind == ECompareRowKind::eHeading) {
            section = i;
            subSection = comparison.rows.size();
        } else if (row.kind == ECompareRowKind::eSubHeading) {
            subSection = i;
        } else if (row.differ) {
            ++counts.total;
            for (const std::size_t heading : {section, subSection}) {
                if (heading < comparison.rows.size())
                    ++counts.underHeading[heading];
            }
        }
    }
    return counts;
}

EDwg BorderSheetOfRank(int rank, int workingUnits) {
    static constexpr EDwg kEnglishSheets[] = {eDwgE, eDwgD, eDwgC, eDwgB, eDwgA};
    static constexpr EDwg kMetricSheets[] = {eDwgA0, eDwgA1, eDwgA2, eDwgA3, eDwgA4};
    const std::size_t at = static_cast<std::size_t>(std::clamp(rank, 0, 4));
    return workingUnits == 0 ? kMetricSheets[at] : kEnglishSheets[at];
}

int BorderSheetRank(EDwg sheet) {
    return sheet >= eDwgA0 ? sheet - eDwgA0 : eDwgE - sheet;
}

const std::vector<std::wstring>& CompareGroups() {
    static const std::vector<std::wstring> groups = {
        L"General",  L"Locations", L"Borders",   L"Lines", L"Specs",
        L"ELECTRIC", L"PID",       L"ISOMETRIC", L"ORTHO", L"Layers"};
    return groups;
}

std::wstring CompareRowGroup(const std::wstring& id) {
    return id.substr(0, id.find(L'/'));
}

std::vector<std::size_t> CountDifferencesByGroup(const SComparison& comparison) {
    const std::vector<std::wstring>& groups = CompareGroups();
    std::vector<std::size_t> counts(groups.size(), 0);
    for (const auto& row : comparison.rows) {
        if (row.kind != ECompareRowKind::eValue || !row.differ)
            continue;
        const auto found = std::find(groups.begin(), groups.end(), CompareRowGroup(row.id));
        if (found != groups.end())
            ++counts[static_cast<std::size_t>(found - groups.begin())];
    }
    return counts;
}

std::wstring CompareDifferencesText(std::size_t count) {
    if (count == 0)
        return L"No differences";
    return fmt::format(L"{} {}", count, count == 1 ? L"difference" : L"differences");
}

std::wstring CompareHeadingText(const std::wstring& title, std::size_t differences) {
    if (differences == 0)
        return title;
    return fmt::format(L"{} ({})", title, CompareDifferencesText(differences));
}

CVX2D_StandardComparison::CVX2D_StandardComparison(const CVX2D_ProjectRegistry& registry)
    : m_registry(registry) {}

bool CVX2D_StandardComparison::Rebuild() {
    m_result = SComparison{};
    if (m_nStandard1 == -1 || m_nStandard2 == -1)
        return true;
    try {
        CBuilder builder(m_registry, m_factory, m_result, m_nStandard1, m_nStandard2);
        return builder.Run();
    } catch (const std::exception& e) {
        // Filesystem errors and exhausted memory end the rebuild like any
        // other failure; the rows built so far stay.
        m_result.failed = true;
        m_result.reason = L"Unexpected error: " + platform::FromUtf8(e.what());
        return false;
    }
}
