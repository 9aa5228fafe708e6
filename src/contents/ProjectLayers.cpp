#include "contents/ProjectLayers.h"

#include "datafile/Application.h"
#include "datafile/IniFile.h"
#include "datafile/Text.h"
#include "store/ProjectRegistry.h"

#include <fmt/xchar.h>
#include <utility>

namespace {

// Which applications a default row belongs to.
enum : unsigned {
    kElectric = 1u << eAppElectric,
    kPid = 1u << eAppFlow,
    kIso = 1u << eAppIso,
    kOrtho = 1u << eAppOrtho,
    kAll = kElectric | kPid | kIso | kOrtho,
};

constexpr SAciRgb kRed{255, 0, 0};
constexpr SAciRgb kYellow{255, 255, 0};
constexpr SAciRgb kGreen{0, 255, 0};
constexpr SAciRgb kCyan{0, 255, 255};
constexpr SAciRgb kBlue{0, 0, 255};
constexpr SAciRgb kMagenta{255, 0, 255};
constexpr SAciRgb kWhite{255, 255, 255};

struct SDefaultLayer {
    unsigned applications;
    std::int32_t key;
    const wchar_t* name;
    SAciRgb rgb;
    const wchar_t* linetype;
};

// Block by block: the common layers, the ISOMETRIC/ORTHO pressure classes,
// the P&ID/ISOMETRIC/ORTHO layers, then each application's own.
constexpr SDefaultLayer kDefaultLayers[] = {
    {kAll, 14, L"ATTRIB", kWhite, L"CONTINUOUS"},
    {kAll, 16, L"BORDER1", kCyan, L"CONTINUOUS"},
    {kAll, 17, L"BORDER2", kYellow, L"CONTINUOUS"},
    {kAll, 20, L"CENTER", kRed, L"CENTER"},
    {kAll, 24, L"CONTIN", kYellow, L"CONTINUOUS"},
    {kAll, 25, L"DASH", kBlue, L"DASHED"},
    {kAll, 26, L"DIMENSION", kYellow, L"CONTINUOUS"},
    {kAll, 27, L"DOT", kWhite, L"DOT"},
    {kAll, 32, L"HIDDEN", kMagenta, L"HIDDEN"},
    {kAll, 33, L"INSTR", kMagenta, L"CONTINUOUS"},
    {kAll, 37, L"PHANTOM", kCyan, L"PHANTOM"},
    {kAll, 42, L"TEXT1", kYellow, L"CONTINUOUS"},
    {kAll, 43, L"TEXT2", kGreen, L"CONTINUOUS"},
    {kIso | kOrtho, 1, L"150LB", kYellow, L"CONTINUOUS"},
    {kIso | kOrtho, 2, L"300LB", kGreen, L"CONTINUOUS"},
    {kIso | kOrtho, 3, L"400LB", kCyan, L"CONTINUOUS"},
    {kIso | kOrtho, 4, L"600LB", kBlue, L"CONTINUOUS"},
    {kIso | kOrtho, 49, L"800LB", kWhite, L"CONTINUOUS"},
    {kIso | kOrtho, 5, L"900LB", kMagenta, L"CONTINUOUS"},
    {kIso | kOrtho, 6, L"1500LB", kRed, L"CONTINUOUS"},
    {kIso | kOrtho, 7, L"2000LB", kRed, L"CONTINUOUS"},
    {kIso | kOrtho, 8, L"2500LB", kYellow, L"CONTINUOUS"},
    {kIso | kOrtho, 9, L"3000LB", kYellow, L"CONTINUOUS"},
    {kIso | kOrtho, 10, L"4000LB", kCyan, L"CONTINUOUS"},
    {kIso | kOrtho, 11, L"5000LB", kWhite, L"CONTINUOUS"},
    {kIso | kOrtho, 12, L"6000LB", kGreen, L"CONTINUOUS"},
    {kIso | kOrtho, 48, L"9000LB", kBlue, L"CONTINUOUS"},
    {kIso | kOrtho, 13, L"10000LB", kWhite, L"CONTINUOUS"},
    {kIso | kOrtho, 40, L"SUPTS", kGreen, L"CONTINUOUS"},
    {kIso | kOrtho, 47, L"LIMITS_BORDER", kCyan, L"PHANTOM"},
    {kPid | kIso | kOrtho, 15, L"BOM", kYellow, L"CONTINUOUS"},
    {kPid | kIso | kOrtho, 23, L"CONSTR", kWhite, L"CONTINUOUS"},
    {kPid | kIso | kOrtho, 28, L"EQUIP", kYellow, L"CONTINUOUS"},
    {kPid | kIso | kOrtho, 34, L"MISC", kWhite, L"CONTINUOUS"},
    {kPid | kIso | kOrtho, 35, L"MTO-BAL", kRed, L"CONTINUOUS"},
    {kElectric, 18, L"BUS_BAR", kCyan, L"CONTINUOUS"},
    {kElectric, 19, L"CABLE_TRAY", kBlue, L"CONTINUOUS"},
    {kElectric, 22, L"COND_CABLE", kMagenta, L"CONTINUOUS"},
    {kElectric, 29, L"FIELD_WIRING", kMagenta, L"DASHED"},
    {kElectric, 31, L"GROUND_WIRE", kRed, L"CENTER"},
    {kElectric, 36, L"PANEL_WIRING", kMagenta, L"CONTINUOUS"},
    {kElectric, 41, L"SYMBOLS", kYellow, L"CONTINUOUS"},
    {kElectric, 44, L"UG_COND_CBL", kMagenta, L"HIDDEN"},
    {kPid, 30, L"FLANGES", kGreen, L"CONTINUOUS"},
    {kPid, 38, L"PROCESS", kCyan, L"CONTINUOUS"},
    {kPid, 45, L"UTILITY", kYellow, L"CONTINUOUS"},
    {kPid, 46, L"VALVES", kYellow, L"CONTINUOUS"},
    {kOrtho, 21, L"CONCRETE", kGreen, L"CONTINUOUS"},
    {kOrtho, 39, L"STEEL", kGreen, L"CONTINUOUS"},
};

// Role numbers 1-49. 48 and 49 came after 13 and keep their numbers.
constexpr const wchar_t* kDescriptions[] = {
    L"150 lb",
    L"300 lb",
    L"400 lb",
    L"600 lb",
    L"900 lb",
    L"1,500 lb",
    L"2,000 lb",
    L"2,500 lb",
    L"3,000 lb",
    L"4,000 lb",
    L"5,000 lb",
    L"6,000 lb",
    L"10,000 lb",
    L"Attribute",
    L"Bill of Material",
    L"Border 1",
    L"Border 2",
    L"Bus Bar",
    L"Cable Tray",
    L"Center",
    L"Concrete",
    L"Conduit Cable",
    L"Construction",
    L"Continuous",
    L"Dash",
    L"Dimension",
    L"Dot",
    L"Equipment",
    L"Field Wiring",
    L"Flanges",
    L"Ground Wire",
    L"Hidden",
    L"Instrument",
    L"Miscellaneous",
    L"MTO Balloon",
    L"Panel Wiring",
    L"Phantom",
    L"Process",
    L"Steel",
    L"Supports",
    L"Symbols",
    L"Text 1",
    L"Text 2",
    L"U/G Conduit Cable",
    L"Utility",
    L"Valves",
    L"Limits Border",
    L"9,000 lb",
    L"800 lb",
};

constexpr const wchar_t* kLayersSuffix = L" - Layers";
constexpr const wchar_t* kColorsSuffix = L" - Colors";
constexpr const wchar_t* kLinetypesSuffix = L" - Linetypes";
constexpr const wchar_t* kLineweightsSuffix = L" - LineWeights";

// A whole number: optional sign and digits only.
bool ParseWhole(std::wstring_view text, int& value) {
    std::size_t at = 0;
    if (!text.empty() && (text[0] == L'-' || text[0] == L'+'))
        at = 1;
    if (at == text.size() || text.size() > at + 9)
        return false;
    for (std::size_t i = at; i < text.size(); ++i) {
        if (text[i] < L'0' || text[i] > L'9')
            return false;
    }
    value = WToI(text);
    return true;
}

} // namespace

SLayerColor LayerColorOf(const SAciRgb& rgb) {
    return {rgb, FindAciIndex(rgb)};
}

CVX2D_ProjectLayers::CVX2D_ProjectLayers(int application, int projectVersion)
    : m_nApplication(application), m_nProjectVersion(projectVersion) {
    SetDefaults();
}

CVX2D_ProjectLayers::CVX2D_ProjectLayers(const CVX2D_ProjectRegistry& registry,
                                         std::int32_t projectId, int application,
                                         int projectVersion)
    : m_pRegistry(&registry), m_nProjectId(projectId), m_nApplication(application),
      m_nProjectVersion(projectVersion) {
    SetDefaults();
}

void CVX2D_ProjectLayers::SetDefaults() {
    m_arrKeys.clear();
    m_arrNames.clear();
    m_arrColors.clear();
    m_arrLinetypes.clear();
    m_arrLineweights.clear();
    const unsigned application = IsApplication(m_nApplication) ? 1u << m_nApplication : 0u;
    for (const SDefaultLayer& layer : kDefaultLayers) {
        if ((layer.applications & application) == 0)
            continue;
        m_arrKeys.push_back(layer.key);
        m_arrNames.push_back(layer.name);
        m_arrColors.push_back(LayerColorOf(layer.rgb));
        m_arrLinetypes.push_back(layer.linetype);
    }
    SortByKey();
    m_arrLineweights.assign(m_arrKeys.size(), kDefaultLineweight);
    m_arrChanged.assign(m_arrKeys.size(), SChanged{});
    m_bModified = false;
}

void CVX2D_ProjectLayers::SortByKey() {
    // An exchange sort, so that the parallel arrays move together.
    for (bool swapped = true; swapped;) {
        swapped = false;
        for (std::size_t i = 1; i < m_arrKeys.size(); ++i) {
            if (m_arrKeys[i - 1] <= m_arrKeys[i])
                continue;
            std::swap(m_arrKeys[i - 1], m_arrKeys[i]);
            std::swap(m_arrNames[i - 1], m_arrNames[i]);
            std::swap(m_arrColors[i - 1], m_arrColors[i]);
            std::swap(m_arrLinetypes[i - 1], m_arrLinetypes[i]);
            if (m_arrLineweights.size() == m_arrKeys.size())
                std::swap(m_arrLineweights[i - 1], m_arrLineweights[i]);
            swapped = true;
        }
    }
}

std::wstring CVX2D_ProjectLayers::GetSectionPrefix() const {
    return ApplicationFileStem(m_nApplication, m_nProjectVersion);
}

std::wstring CVX2D_ProjectLayers::Section(const wchar_t* suffix) const {
    return GetSectionPrefix() + suffix;
}

bool CVX2D_ProjectLayers::Load(const std::wstring& path) {
    SetDefaults();
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    if (GetCount() == 0 || ini.Open(path) != CVX2D_IniFile::eOk)
        return true;
    return Load(ini);
}

bool CVX2D_ProjectLayers::Load(CVX2D_IniFile& ini) {
    SetDefaults();
    for (std::size_t i = 0; i < GetCount(); ++i) {
        const std::wstring key = FormatKey(m_arrKeys[i]);
        ini.SetSection(Section(kLayersSuffix));
        ini.GetString(key, m_arrNames[i], m_arrNames[i]);
        ini.SetSection(Section(kColorsSuffix));
        SLayerColor color;
        if (ParseColor(ini.String(key), color))
            m_arrColors[i] = color;
        ini.SetSection(Section(kLinetypesSuffix));
        ini.GetString(key, m_arrLinetypes[i], m_arrLinetypes[i]);
        ini.SetSection(Section(kLineweightsSuffix));
        ini.GetLong(key, m_arrLineweights[i], m_arrLineweights[i]);
    }
    return true;
}

std::wstring CVX2D_ProjectLayers::GetFilePath() const {
    return m_pRegistry ? m_pRegistry->StandardFile(m_nProjectId, L"Layers.ini") : std::wstring();
}

bool CVX2D_ProjectLayers::Save() {
    if (!m_bModified)
        return true;
    // Under the file's lock the whole set is written, as the drafting
    // applications expect every layer in the file. A value this editor did not
    // change is taken from the file as it is now, so that another
    // workstation's edit of it since loading survives.
    const bool saved = UpdateDatafile(GetFilePath(), [this](CVX2D_IniFile& ini) {
        for (std::size_t i = 0; i < GetCount(); ++i) {
            const SChanged& changed = m_arrChanged[i];
            const std::wstring key = FormatKey(m_arrKeys[i]);
            ini.SetSection(Section(kLayersSuffix));
            if (!changed.name)
                ini.GetString(key, m_arrNames[i], m_arrNames[i]);
            ini.SetString(key, m_arrNames[i]);
            ini.SetSection(Section(kColorsSuffix));
            if (!changed.color) {
                SLayerColor color;
                if (ParseColor(ini.String(key), color))
                    m_arrColors[i] = color;
            }
            ini.SetString(key, FormatColor(m_arrColors[i]));
            ini.SetSection(Section(kLinetypesSuffix));
            if (!changed.linetype)
                ini.GetString(key, m_arrLinetypes[i], m_arrLinetypes[i]);
            ini.SetString(key, m_arrLinetypes[i]);
            ini.SetSection(Section(kLineweightsSuffix));
            if (!changed.lineweight)
                ini.GetLong(key, m_arrLineweights[i], m_arrLineweights[i]);
            ini.SetLong(key, m_arrLineweights[i]);
        }
        return true;
    });
    if (!saved)
        return false;
    m_arrChanged.assign(GetCount(), SChanged{});
    m_bModified = false;
    return true;
}

int CVX2D_ProjectLayers::Find(std::int32_t key) const {
    for (std::size_t i = 0; i < m_arrKeys.size(); ++i) {
        if (m_arrKeys[i] == key)
            return static_cast<int>(i);
    }
    return -1;
}

void CVX2D_ProjectLayers::SetName(std::size_t position, const std::wstring& name) {
    if (position >= GetCount() || m_arrNames[position] == name)
        return;
    m_arrNames[position] = name;
    m_arrChanged[position].name = true;
    m_bModified = true;
}

void CVX2D_ProjectLayers::SetColor(std::size_t position, const SLayerColor& color) {
    if (position >= GetCount() || m_arrColors[position] == color)
        return;
    m_arrColors[position] = color;
    m_arrChanged[position].color = true;
    m_bModified = true;
}

void CVX2D_ProjectLayers::SetLinetype(std::size_t position, const std::wstring& linetype) {
    if (position >= GetCount() || m_arrLinetypes[position] == linetype)
        return;
    m_arrLinetypes[position] = linetype;
    m_arrChanged[position].linetype = true;
    m_bModified = true;
}

void CVX2D_ProjectLayers::SetLineweight(std::size_t position, std::int32_t lineweight) {
    if (position >= GetCount() || m_arrLineweights[position] == lineweight)
        return;
    m_arrLineweights[position] = lineweight;
    m_arrChanged[position].lineweight = true;
    m_bModified = true;
}

std::wstring CVX2D_ProjectLayers::GetDescription(std::int32_t key) {
    constexpr std::int32_t count = sizeof kDescriptions / sizeof kDescriptions[0];
    return key >= 1 && key <= count ? kDescriptions[key - 1] : L"";
}

std::wstring CVX2D_ProjectLayers::FormatKey(std::int32_t key) {
    return fmt::format(L"{:03}", key);
}

std::wstring CVX2D_ProjectLayers::FormatColor(const SLayerColor& color) {
    return fmt::format(L"{},{},{},{}", color.rgb.red, color.rgb.green, color.rgb.blue, color.index);
}

bool CVX2D_ProjectLayers::ParseColor(const std::wstring& text, SLayerColor& color) {
    int parts[4] = {};
    std::size_t start = 0;
    for (int n = 0; n < 4; ++n) {
        const std::size_t comma = n < 3 ? text.find(L',', start) : text.size();
        if (comma == std::wstring::npos ||
            !ParseWhole(TrimBlanks(std::wstring_view(text).substr(start, comma - start)),
                        parts[n]) ||
            parts[n] < 0 || parts[n] > 255)
            return false;
        start = comma + 1;
    }
    color.rgb = {static_cast<std::uint8_t>(parts[0]), static_cast<std::uint8_t>(parts[1]),
                 static_cast<std::uint8_t>(parts[2])};
    color.index = parts[3];
    return true;
}
