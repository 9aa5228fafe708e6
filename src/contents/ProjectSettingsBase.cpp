#include "contents/ProjectSettingsBase.h"

#include "contents/SettingsCatalogue.h"
#include "datafile/Application.h"
#include "datafile/IniFile.h"
#include "store/GeneralSettings.h"

#include <fmt/xchar.h>

namespace {

using Base = CVX2D_ProjectSettingsBase;

const std::wstring kSettingsSection = L"Settings";

// Indexed by value; 0 and the gap at 2 have no text.
const wchar_t* const kPrjValTexts[] = {
    L"",
    L"Associative",
    L"",
    L"Center",
    L"Center Text Between Ext. Lines",
    L"Curved",
    L"Dashed",
    L"Diagonal",
    L"Exploded",
    L"Face of Flange",
    L"Flanges Never Shown",
    L"Hidden",
    L"Horizontal",
    L"Conform to JIS Representation",
    L"Line Width",
    L"Non-Associative",
    L"Not Stacked",
    L"Place Flanged Valves",
    L"Place Valves without Flanges",
    L"Place Text Above Dim. Line",
    L"Place Text on Side of Dim. Line",
    L"Show Flanged as per Spec",
    L"Standard",
    L"Square",
    L"Weld",
    L"Scientific",
    L"Decimal",
    L"Engineering",
    L"Architectural",
    L"Fractional",
    L"0",
    L"1",
    L"2",
    L"3",
    L"4",
    L"5",
    L"6",
    L"7",
    L"8",
    L"Metric",
    L"English",
    L"Don't Place Valve",
    L"Double Line",
    L"Single Line",
    L"No zero feet or inches: 3 1/2\" or 1'-1/2\"",
    L"Show zero feet and inches: 0'-5\" or 1'-0 1/2\"",
    L"No zero inches: 1'-1/2\"",
    L"No zero feet: 4 1/2\" or 1'-01/2\"",
    L"No leading zeros: 12.00\"",
    L"No trailing zeros: 02.12\"",
    L"No leading or trailing zeros: 2.12\"",
    L"Top Left",
    L"Top Right",
    L"Bottom Left",
    L"Bottom Right",
    L"Seperate Beveled from Screwed/Socket Weld",
    L"Place All in Screwed/Socket Weld Fittings",
    L"Place All in Welded Fittings",
};
constexpr std::int32_t kPrjValCount = sizeof kPrjValTexts / sizeof kPrjValTexts[0];
static_assert(kPrjValCount == ePrjSwageAllWelded + 1);

const wchar_t* const kSectionNames[] = {
    L"Bill of Material",       L"Civil/Structural Parameters", L"Component Sizing",
    L"Dimensioning Variables", L"General Drawing Parameters",  L"Layers",
    L"Scale Factors",          L"Scaling Variables",           L"System Toggles",
};

std::wstring VariableKey(std::int32_t id) {
    return fmt::format(L"Variable {:03d}", id);
}

// Stores `value` unless equal (force false), or always and clean (force true).
template <typename T>
void Assign(Base::CVariable& variable, T& slot, const T& value, std::int32_t kind, bool force) {
    if (!force && slot == value)
        return;
    slot = value;
    variable.m_nKind = kind;
    variable.m_bClean = force;
}

// The folder of the standard: General.ini lies in it.
std::wstring FolderOfFile(const std::wstring& path) {
    const std::size_t slash = path.find_last_of(L"/\\");
    return slash == std::wstring::npos ? std::wstring() : path.substr(0, slash + 1);
}

// Structural units follow the displayed units: English for codes 2 and 3.
void MigrateStructuralUnits(Base::CSection& section, std::int32_t displayedUnits) {
    if (section.GetChoice(183) == ePrjNone)
        section.SetChoice(183,
                          displayedUnits == 2 || displayedUnits == 3 ? ePrjEnglish : ePrjMetric);
}

} // namespace

std::wstring PrjValText(std::int32_t value) {
    return value >= 0 && value < kPrjValCount ? kPrjValTexts[value] : L"";
}

std::wstring Base::SectionName(std::int32_t sectionId) {
    return sectionId >= 0 && sectionId <= eSystemToggles ? kSectionNames[sectionId] : L"";
}

std::wstring Base::FileName(std::int32_t application, std::int32_t projectVersion) {
    const std::wstring stem = ApplicationFileStem(application, projectVersion);
    return stem.empty() ? stem : stem + L".ini";
}

// --- CVariable -------------------------------------------------------------

void Base::CVariable::SetBool(bool value, bool force) {
    Assign(*this, m_bValue, value, eBool, force);
}
void Base::CVariable::SetString(const std::wstring& value, bool force) {
    Assign(*this, m_strValue, value, eString, force);
}
void Base::CVariable::SetFont(const std::wstring& value, bool force) {
    Assign(*this, m_strFont, value, eFont, force);
}
void Base::CVariable::SetInteger(std::int32_t value, bool force) {
    Assign(*this, m_nValue, value, eInteger, force);
}
void Base::CVariable::SetReal(double value, bool force) {
    Assign(*this, m_dValue, value, eReal, force);
}
void Base::CVariable::SetFolder(const std::wstring& value, bool force) {
    Assign(*this, m_strFolder, value, eFolder, force);
}
void Base::CVariable::SetText(const std::wstring& value, bool force) {
    Assign(*this, m_strText, value, eText, force);
}
void Base::CVariable::SetChoice(std::int32_t value, bool force) {
    Assign(*this, m_nChoice, value, eChoice, force);
}

bool Base::CVariable::SetChoiceByLabel(const std::wstring& text) {
    for (const EPrjVal choice : m_arrChoices) {
        if (PrjValText(choice) == text) {
            SetChoice(choice, false);
            return true;
        }
    }
    return false;
}

// --- CSection --------------------------------------------------------------

Base::CVariable* Base::CSection::Find(std::int32_t id) {
    for (auto& variable : m_arrVariables) {
        if (variable.m_nId == id)
            return &variable;
    }
    return nullptr;
}

const Base::CVariable* Base::CSection::Find(std::int32_t id) const {
    return const_cast<CSection*>(this)->Find(id);
}

bool Base::CSection::GetString(std::int32_t id, std::wstring& value) const {
    const CVariable* variable = Find(id);
    if (!variable)
        return false;
    value = variable->m_strValue;
    return true;
}

double Base::CSection::GetReal(std::int32_t id) const {
    const CVariable* variable = Find(id);
    return variable ? variable->m_dValue : 0.0;
}

std::int32_t Base::CSection::GetChoice(std::int32_t id) const {
    const CVariable* variable = Find(id);
    return variable ? variable->m_nChoice : ePrjNone;
}

void Base::CSection::SetReal(std::int32_t id, double value) {
    if (CVariable* variable = Find(id))
        variable->SetReal(value, false);
}

void Base::CSection::SetChoice(std::int32_t id, std::int32_t value) {
    if (CVariable* variable = Find(id))
        variable->SetChoice(value, false);
}

bool Base::CSection::SetChoiceByLabel(std::int32_t id, const std::wstring& text) {
    CVariable* variable = Find(id);
    return variable && variable->SetChoiceByLabel(text);
}

// --- Catalogue -------------------------------------------------------------

namespace {

// Appends variable `id` with its default for the section's unit system,
// stored through the kind's setter with force, so it starts clean.
template <typename T, typename Setter>
void Append(Base::CSection& section, std::int32_t id, const std::wstring& key, const T& metric,
            const T& imperial, Setter setter) {
    Base::CVariable variable;
    variable.m_nId = id;
    variable.m_strKey = key;
    (variable.*setter)(section.m_nUnitSystem == 0 ? metric : imperial, true);
    section.m_arrVariables.push_back(std::move(variable));
}

} // namespace

void Base::AddBool(CSection& section, std::int32_t id, const std::wstring& key, bool metric,
                   bool imperial) {
    Append(section, id, key, metric, imperial, &CVariable::SetBool);
}

void Base::AddString(CSection& section, std::int32_t id, const std::wstring& key,
                     const std::wstring& metric, const std::wstring& imperial) {
    Append(section, id, key, metric, imperial, &CVariable::SetString);
}

void Base::AddFont(CSection& section, std::int32_t id, const std::wstring& key,
                   const std::wstring& metric, const std::wstring& imperial) {
    Append(section, id, key, metric, imperial, &CVariable::SetFont);
}

void Base::AddInteger(CSection& section, std::int32_t id, const std::wstring& key,
                      std::int32_t metric, std::int32_t imperial) {
    Append(section, id, key, metric, imperial, &CVariable::SetInteger);
}

void Base::AddReal(CSection& section, std::int32_t id, const std::wstring& key, double metric,
                   double imperial) {
    Append(section, id, key, metric, imperial, &CVariable::SetReal);
}

void Base::AddFolder(CSection& section, std::int32_t id, const std::wstring& key,
                     const std::wstring& metric, const std::wstring& imperial) {
    Append(section, id, key, metric, imperial, &CVariable::SetFolder);
}

void Base::AddText(CSection& section, std::int32_t id, const std::wstring& key,
                   const std::wstring& metric, const std::wstring& imperial) {
    Append(section, id, key, metric, imperial, &CVariable::SetText);
}

void Base::AddChoice(CSection& section, std::int32_t id, const std::wstring& key,
                     std::int32_t metric, std::int32_t imperial, const std::int32_t* choices) {
    Append(section, id, key, metric, imperial, &CVariable::SetChoice);
    for (; choices && *choices != ePrjNone; ++choices)
        section.m_arrVariables.back().m_arrChoices.push_back(static_cast<EPrjVal>(*choices));
}

void Base::AddTitle(CSection& section, const std::wstring& heading) {
    AddText(section, kTitleId, L"", heading, heading);
}

void Base::BuildFrom(std::int32_t application, const std::vector<SCatalogueSection>& catalogue,
                     std::int32_t unitSystem) {
    m_nApplication = application;
    m_arrSections.clear();
    for (const auto& entry : catalogue) {
        CSection section;
        section.m_nUnitSystem = unitSystem;
        section.m_nId = entry.id;
        for (const auto part : entry.parts) {
            for (const SCatalogueRow& row : part) {
                const auto& m = row.metric;
                const auto& i = row.imperial;
                switch (row.kind) {
                case eBool:
                    AddBool(section, row.id, row.key, m.number != 0, i.number != 0);
                    break;
                case eString:
                    AddString(section, row.id, row.key, m.text, i.text);
                    break;
                case eFont:
                    AddFont(section, row.id, row.key, m.text, i.text);
                    break;
                case eInteger:
                    AddInteger(section, row.id, row.key, static_cast<std::int32_t>(m.number),
                               static_cast<std::int32_t>(i.number));
                    break;
                case eReal:
                    AddReal(section, row.id, row.key, m.number, i.number);
                    break;
                case eFolder:
                    AddFolder(section, row.id, row.key, m.text, i.text);
                    break;
                case eText:
                    if (row.id == kTitleId)
                        AddTitle(section, m.text);
                    else
                        AddText(section, row.id, row.key, m.text, i.text);
                    break;
                case eChoice:
                    AddChoice(section, row.id, row.key, static_cast<std::int32_t>(m.number),
                              static_cast<std::int32_t>(i.number), row.choices.data());
                    break;
                default:
                    break;
                }
            }
        }
        m_arrSections.push_back(std::move(section));
    }
}

// --- Persistence -----------------------------------------------------------

void Base::Load(const CVX2D_ProjectRegistry& registry, std::int32_t projectId) {
    CVX2D_GeneralSettings general;
    if (!general.Load(registry, projectId)) {
        m_nProjectId = projectId;
        m_strPath.clear();
        return;
    }
    Load(general);
}

void Base::Load(const CVX2D_GeneralSettings& general) {
    m_nProjectId = general.m_nProjectId;
    m_strPath.clear();
    const std::wstring folder = general.m_bLoaded ? FolderOfFile(general.GetPath()) : L"";
    const std::wstring name = FileName(m_nApplication, general.m_nProjectVersion);
    if (folder.empty() || name.empty())
        return;
    m_strPath = folder + name;

    // A missing file is an empty document: every key reads as its default.
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.Open(m_strPath);
    ini.SetSection(kSettingsSection);
    for (auto& section : m_arrSections) {
        for (auto& variable : section.m_arrVariables) {
            // Sub-headings are never stored; a stray key must not rename them.
            if (variable.IsTitle())
                continue;
            const std::wstring key = VariableKey(variable.m_nId);
            switch (variable.m_nKind) {
            case eBool:
                ini.GetBool(key, variable.m_bValue, variable.m_bValue);
                break;
            case eString:
                ini.GetString(key, variable.m_strValue, variable.m_strValue);
                break;
            case eFont:
                ini.GetString(key, variable.m_strFont, variable.m_strFont);
                break;
            case eInteger:
                ini.GetInt(key, variable.m_nValue, variable.m_nValue);
                break;
            case eReal:
                ini.GetDouble(key, variable.m_dValue, variable.m_dValue);
                break;
            case eFolder:
                ini.GetString(key, variable.m_strFolder, variable.m_strFolder);
                break;
            case eText:
                ini.GetString(key, variable.m_strText, variable.m_strText);
                break;
            case eChoice:
                ini.GetInt(key, variable.m_nChoice, variable.m_nChoice);
                break;
            default:
                break;
            }
        }
    }
    for (auto& section : m_arrSections)
        Migrate(section, general.m_nDisplayedUnits);
    // What the rules derived is written back once; where it cannot be (a
    // read-only share), it holds in memory only and is derived again at the
    // next load, so it is not an edit of the user's to ask about.
    if (IsModified() && !Save())
        MarkClean();
}

void Base::MarkClean() {
    for (auto& section : m_arrSections) {
        for (auto& variable : section.m_arrVariables)
            variable.m_bClean = true;
    }
}

void Base::Migrate(CSection& section, std::int32_t displayedUnits) {
    const bool isoOrOrtho = m_nApplication == eAppIso || m_nApplication == eAppOrtho;
    if (isoOrOrtho && section.m_nId == eBillOfMaterial) {
        if (section.GetChoice(182) == ePrjNone)
            section.SetChoice(182, section.GetChoice(170) == ePrjMetric ? ePrjPrecision2
                                                                        : ePrjPrecision6);
        if (section.GetChoice(180) == ePrjNone)
            section.SetChoice(180, section.GetChoice(170));
        if (section.GetChoice(181) == ePrjNone)
            section.SetChoice(181, section.GetChoice(180) == ePrjMetric ? ePrjPrecision2
                                                                        : ePrjPrecision6);
        // Id 183 lives in section 1; kept here as the rules are ordered.
        MigrateStructuralUnits(section, displayedUnits);
    }
    if (m_nApplication == eAppOrtho && section.m_nId == eCivilStructural)
        MigrateStructuralUnits(section, displayedUnits);
    if (m_nApplication == eAppIso && section.m_nId == eScaleFactors) {
        if (section.GetReal(185) <= 0.0)
            section.SetReal(185, section.GetReal(82));
    }
    if (m_nApplication == eAppOrtho && section.m_nId == eScaleFactors) {
        for (const std::int32_t id : {71, 179, 185}) {
            if (section.GetReal(id) <= 0.0)
                section.SetReal(id, section.GetReal(107));
        }
    }
}

bool Base::Save() {
    if (m_strPath.empty())
        return false;
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    if (ini.OpenForUpdate(m_strPath) != CVX2D_IniFile::eOk)
        return false;
    ini.SetSection(kSettingsSection);
    for (const auto& section : m_arrSections) {
        for (const auto& variable : section.m_arrVariables) {
            if (variable.m_bClean || variable.IsTitle())
                continue;
            const std::wstring key = VariableKey(variable.m_nId);
            switch (variable.m_nKind) {
            case eBool:
                ini.SetBool(key, variable.m_bValue);
                break;
            case eString:
                ini.SetString(key, variable.m_strValue);
                break;
            case eFont:
                ini.SetString(key, variable.m_strFont);
                break;
            case eInteger:
                ini.SetInt(key, variable.m_nValue);
                break;
            case eReal:
                ini.SetDouble(key, variable.m_dValue);
                break;
            case eFolder:
                ini.SetString(key, variable.m_strFolder);
                break;
            case eText:
                ini.SetString(key, variable.m_strText);
                break;
            case eChoice:
                ini.SetInt(key, variable.m_nChoice);
                break;
            default:
                break;
            }
        }
    }
    if (ini.Save() != CVX2D_IniFile::eOk)
        return false;
    MarkClean();
    return true;
}

bool Base::IsModified() const {
    for (const auto& section : m_arrSections) {
        for (const auto& variable : section.m_arrVariables) {
            if (!variable.m_bClean)
                return true;
        }
    }
    return false;
}

Base::CSection* Base::FindSection(std::int32_t sectionId) {
    for (auto& section : m_arrSections) {
        if (section.m_nId == sectionId)
            return &section;
    }
    return nullptr;
}

const Base::CSection* Base::FindSection(std::int32_t sectionId) const {
    return const_cast<Base*>(this)->FindSection(sectionId);
}

Base::CVariable* Base::FindVariable(std::int32_t id) {
    for (auto& section : m_arrSections) {
        if (CVariable* variable = section.Find(id))
            return variable;
    }
    return nullptr;
}

const Base::CVariable* Base::FindVariable(std::int32_t id) const {
    return const_cast<Base*>(this)->FindVariable(id);
}
