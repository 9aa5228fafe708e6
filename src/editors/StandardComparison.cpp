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

// Border sheets by rank, largest first.
constexpr EDwg kEnglishSheets[] = {eDwgE, eDwgD, eDwgC, eDwgB, eDwgA};
constexpr EDwg kMetricSheets[] = {eDwgA0, eDwgA1, eDwgA2, eDwgA3, eDwgA4};

const EDwg* SheetsOf(int workingUnits) {
    return workingUnits == 0 ? kMetricSheets : kEnglishSheets;
}

// A row whose key decides its place (lines, specs, layers).
struct SKeyedRow {
    std::wstring key;
    std::wstring text1;
    std::wstring text2;
};

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

    void Heading(ECompareRowKind kind, const std::wstring& title) {
        SCompareRow row;
        row.kind = kind;
        row.label = title;
        row.centred = true;
        row.background1 = row.background2 =
            kind == ECompareRowKind::eHeading ? kCompareHeadingColour : kCompareSubHeadingColour;
        m_out.rows.push_back(std::move(row));
    }

    void Value(const std::wstring& label, const std::wstring& text1, const std::wstring& text2,
               bool differ) {
        SCompareRow row;
        row.label = label;
        row.text1 = text1;
        row.text2 = text2;
        row.differ = differ;
        if (differ)
            row.background1 = row.background2 = kCompareDifferColour;
        m_out.rows.push_back(std::move(row));
    }

    void Value(const std::wstring& label, const std::wstring& text1, const std::wstring& text2) {
        Value(label, text1, text2, text1 != text2);
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
                             [side](const SProjectInfo& info) { return info.id == side->id; });
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
        Heading(ECompareRowKind::eHeading, L"General Settings");
        Value(L"Working Units", WorkingUnitsText(g1.m_nWorkingUnits),
              WorkingUnitsText(g2.m_nWorkingUnits), g1.m_nWorkingUnits != g2.m_nWorkingUnits);
        Value(L"Displayed Units", DisplayedUnitsText(g1.m_nDisplayedUnits),
              DisplayedUnitsText(g2.m_nDisplayedUnits),
              g1.m_nDisplayedUnits != g2.m_nDisplayedUnits);

        const std::vector<SRatingFormat> formats = LoadRatingFormats(m_registry.Datafiles());
        const SRatingFormat* f1 = FindRatingFormat(formats, g1.m_nRatingsFormat);
        const SRatingFormat* f2 = FindRatingFormat(formats, g2.m_nRatingsFormat);
        for (const auto& [format, side] : {std::pair{f1, &One()}, std::pair{f2, &Two()}}) {
            if (!format)
                return Fail(fmt::format(
                    L"Rating format {} of standard '{}' is not in the list of rating formats.",
                    side->general.m_nRatingsFormat, side->name));
        }
        Value(L"Rating Format", f1->title, f2->title, f1->code != f2->code);
        return true;
    }

    void FileLocations() {
        const CVX2D_GeneralSettings& g1 = One().general;
        const CVX2D_GeneralSettings& g2 = Two().general;
        Heading(ECompareRowKind::eHeading, L"File Locations");
        Value(L"ELECTRIC Drawing Folder", g1.m_strElectricDrawings, g2.m_strElectricDrawings);
        Value(L"P & ID Drawing Folder", g1.m_strFlowDrawings, g2.m_strFlowDrawings);
        Value(L"ISOMETRIC Drawing Folder", g1.m_strIsoDrawings, g2.m_strIsoDrawings);
        Value(L"ORTHO Drawing Folder", g1.m_strOrthoDrawings, g2.m_strOrthoDrawings);
        Value(L"Borders", g1.m_strBordersLocation, g2.m_strBordersLocation);
        Value(L"Templates", g1.m_strTemplatesLocation, g2.m_strTemplatesLocation);
    }

    void Borders() {
        Heading(ECompareRowKind::eHeading, L"Border Settings");
        CVX2D_ProjectBorders b1;
        b1.Load(One().folder + L"Borders.ini");
        CVX2D_ProjectBorders b2;
        if (m_same)
            b2 = b1;
        else
            b2.Load(Two().folder + L"Borders.ini");
        // Rank by rank, each standard in its own units: E against A0 and so on.
        const EDwg* sheets1 = SheetsOf(One().general.m_nWorkingUnits);
        const EDwg* sheets2 = SheetsOf(Two().general.m_nWorkingUnits);
        for (int rank = 0; rank < 5; ++rank) {
            const EDwg s1 = sheets1[rank];
            const EDwg s2 = sheets2[rank];
            const std::wstring sheet = DwgKey(s1);
            Value(L"Drawing Border: " + sheet, b1.GetBorderFile(s1), b2.GetBorderFile(s2));
            Value(L"Drawing Limits: " + sheet, b1.GetLimitsMin(s1) + L" and " + b1.GetLimitsMax(s1),
                  b2.GetLimitsMin(s2) + L" and " + b2.GetLimitsMax(s2));
            Value(L"Revision Block: " + sheet, b1.GetRevisionFile(s1), b2.GetRevisionFile(s2));
        }
    }

    // One row per key of either standard: "checked" where the standard has it.
    void Presence(const std::vector<std::wstring>& keys1, const std::vector<std::wstring>& keys2) {
        std::map<std::wstring, unsigned> presence;
        for (const auto& key : keys1)
            presence[key] |= 1u;
        for (const auto& key : keys2)
            presence[key] |= 2u;
        std::vector<SKeyedRow> rows;
        for (const auto& [key, in] : presence)
            rows.push_back({key, (in & 1u) ? kChecked : L"", (in & 2u) ? kChecked : L""});
        KeySort(rows);
        for (const auto& row : rows)
            Value(row.key, row.text1, row.text2);
    }

    std::vector<std::wstring> LineNames(const SSide& side) {
        SLineList lines;
        // A standard whose lines cannot be read shows none.
        static_cast<void>(CVX2D_ProjectLines(m_registry).GetLines(side.id, lines));
        return lines.names;
    }

    void Lines() {
        Heading(ECompareRowKind::eHeading, L"Lines");
        const std::vector<std::wstring> names1 = LineNames(One());
        Presence(names1, m_same ? names1 : LineNames(Two()));
    }

    std::vector<std::wstring> SpecKeys(const SSide& side) {
        std::vector<std::int32_t> ids;
        std::vector<std::wstring> names;
        // Specs that cannot be read show as none, as lines do.
        static_cast<void>(CVX2D_ProjectSpecs(m_registry).GetCheckedSpecs(side.id, ids, names));
        std::vector<std::wstring> keys;
        for (std::size_t i = 0; i < ids.size() && i < names.size(); ++i)
            keys.push_back(fmt::format(L"{}. {}", ids[i], names[i]));
        return keys;
    }

    void Specs() {
        Heading(ECompareRowKind::eHeading, L"Specs");
        const std::vector<std::wstring> keys1 = SpecKeys(One());
        Presence(keys1, m_same ? keys1 : SpecKeys(Two()));
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
        Heading(ECompareRowKind::eHeading, title);
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
                Heading(ECompareRowKind::eSubHeading, v1.m_strText);
            else
                Value(SettingsVariableLabel(v1.m_nId), SettingsValueText(v1),
                      SettingsValueText(v2));
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
        Heading(ECompareRowKind::eHeading, ApplicationName(application) + L" - Layers");
        CVX2D_ProjectLayers layers1(application, One().general.m_nProjectVersion);
        layers1.Load(LayersFile(One()));
        CVX2D_ProjectLayers layers2(application, Two().general.m_nProjectVersion);
        if (m_same)
            layers2 = layers1;
        else
            layers2.Load(LayersFile(Two()));
        std::vector<SKeyedRow> rows;
        for (std::size_t i = 0; i < layers1.GetCount(); ++i)
            rows.push_back({CVX2D_ProjectLayers::GetDescription(layers1.GetKeys()[i]),
                            LayerText(layers1, i), LayerText(layers2, i)});
        KeySort(rows);
        for (const auto& row : rows)
            Value(row.key, row.text1, row.text2);
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
