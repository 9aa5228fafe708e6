// The comparison of two standards as data: the three-column grid the
// comparison view shows ("Setting", then one column per standard), section by
// section, with every row whose two values differ marked. Read-only: it reads
// each file of each standard once per rebuild and keeps nothing between
// rebuilds. (Loading ISOMETRIC and ORTHO settings may complete and save
// settings added by later versions, as every reader of those settings does.)
#pragma once

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
    std::wstring label; // the heading's title for the heading kinds
    std::wstring text1;
    std::wstring text2;
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
