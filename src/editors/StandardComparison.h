// The comparison of two standards as data: the three-column grid the
// comparison view shows ("Setting", then one column per standard), section by
// section, with every row whose two values differ marked. Read-only: it reads
// each file of each standard once per rebuild and keeps nothing between
// rebuilds. (Loading ISOMETRIC and ORTHO settings may complete and save
// settings added by later versions, as every reader of those settings does.)
#pragma once

#include "contents/ProjectBorders.h"
#include "contents/ProjectSettingsBase.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class CVX2D_ProjectRegistry;

enum class ECompareRowKind { eHeading, eSubHeading, eValue };

struct SCompareColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const SCompareColour&, const SCompareColour&) = default;
};

// Value cells of a section heading, of a sub-heading, and of a value row
// whose two texts differ.
inline constexpr SCompareColour kCompareHeadingColour{159, 156, 150};
inline constexpr SCompareColour kCompareSubHeadingColour{212, 208, 200};
inline constexpr SCompareColour kCompareDifferColour{255, 255, 0};

struct SCompareRow {
    ECompareRowKind kind = ECompareRowKind::eValue;
    // The row's stable name, group first: "General/Settings/WorkingUnits",
    // "Borders/A1/limits", "PID/Settings/071", "Layers/PID/038". A heading's
    // names the rows under it: "Borders", "PID/Settings/System Toggles".
    std::wstring id;
    std::wstring label; // the heading's title for the heading kinds
    std::wstring text1;
    std::wstring text2;
    // The values behind the two texts, as a merge writes them into the other
    // standard (value rows only; see StandardMerge.h). Empty where the
    // standard has no such line or spec.
    std::vector<std::wstring> value1;
    std::vector<std::wstring> value2;
    // A value that belongs to its standard: a drawings folder, or a folder
    // inside the standard's own folder on either side. A merge of all
    // differences leaves it.
    bool own = false;
    bool centred = false; // the label cell's text format
    bool differ = false;
    // The two value cells; none keeps the grid's default background.
    std::optional<SCompareColour> background1;
    std::optional<SCompareColour> background2;
};

struct SComparison {
    // The column headers; the two standards' names once both are chosen.
    std::wstring header0 = L"Setting";
    std::wstring header1 = L"Standard 1";
    std::wstring header2 = L"Standard 2";
    std::vector<SCompareRow> rows;
    // An abandoned rebuild keeps the rows built before the failure.
    bool failed = false;
    std::wstring reason;
};

// What the view shows for an abandoned rebuild.
std::wstring CompareErrorText(const std::wstring& reason);

// Whether a row is shown: every row, or with `differencesOnly` the headings
// of both kinds and the values that differ.
bool CompareRowShown(const SCompareRow& row, bool differencesOnly);

// How many values differ: in all, and under each heading row (a section
// heading up to the next section heading, a sub-heading up to the next
// heading of either kind); `underHeading` holds 0 for value rows.
struct SCompareCounts {
    std::size_t total = 0;
    std::vector<std::size_t> underHeading; // one per row
};
SCompareCounts CountCompareDifferences(const SComparison& comparison);

// The groups of row ids in the grid's order: "General", "Locations",
// "Borders", "Lines", "Specs", "ELECTRIC", "PID", "ISOMETRIC", "ORTHO",
// "Layers".
const std::vector<std::wstring>& CompareGroups();
// The group of a row id: its text up to the first "/".
std::wstring CompareRowGroup(const std::wstring& id);
// The number of differing value rows of each group, in CompareGroups' order.
std::vector<std::size_t> CountDifferencesByGroup(const SComparison& comparison);

// Border sheets by rank, largest first: E, D, C, B, A for English working
// units, A0 to A4 for metric (0). A comparison sets each sheet against the
// other standard's sheet of the same rank.
EDwg BorderSheetOfRank(int rank, int workingUnits);
// 0 for E and A0, ..., 4 for A and A4.
int BorderSheetRank(EDwg sheet);

// "No differences", "1 difference", "12 differences".
std::wstring CompareDifferencesText(std::size_t count);

// A heading's title with the number of differences under it, when there
// are any: "Lines (2 differences)".
std::wstring CompareHeadingText(const std::wstring& title, std::size_t differences);

class CVX2D_StandardComparison {
public:
    // The topic the comparison's "Help..." opens.
    static constexpr const wchar_t* kHelpTopic = L"::/Compare_Standards.htm";

    // An empty settings object of an application for a standard; tests
    // replace the catalogues through it.
    using CSettingsFactory = std::function<std::unique_ptr<CVX2D_ProjectSettingsBase>(
        std::int32_t application, std::int32_t standardId)>;

    // `registry` must outlive the comparison.
    explicit CVX2D_StandardComparison(const CVX2D_ProjectRegistry& registry);

    // -1: nothing chosen on that side (the start).
    std::int32_t GetStandard1() const { return m_nStandard1; }
    std::int32_t GetStandard2() const { return m_nStandard2; }
    void SetStandard1(std::int32_t id) { m_nStandard1 = id; }
    void SetStandard2(std::int32_t id) { m_nStandard2 = id; }
    void SetSettingsFactory(CSettingsFactory factory) { m_factory = std::move(factory); }

    // Builds the grid afresh from the files. An unset side gives no rows and
    // true. False when the rebuild was abandoned: Result() keeps the rows
    // built so far and says why. Never throws.
    bool Rebuild();
    const SComparison& Result() const { return m_result; }

private:
    const CVX2D_ProjectRegistry& m_registry;
    std::int32_t m_nStandard1 = -1;
    std::int32_t m_nStandard2 = -1;
    CSettingsFactory m_factory;
    SComparison m_result;
};
