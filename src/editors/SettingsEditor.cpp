#include "editors/SettingsEditor.h"

#include "contents/ProjectSettings.h"
#include "contents/SettingsCatalogue.h"
#include "contents/SettingsText.h"
#include "datafile/Application.h"
#include "datafile/Text.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <filesystem>
#include <fmt/xchar.h>

namespace fs = std::filesystem;

using Base = CVX2D_ProjectSettingsBase;

namespace {

constexpr std::int32_t kDrawingTemplateId = 44;
constexpr std::int32_t kDoubleLineSizeId = 169;

} // namespace

std::wstring SettingsCellName(ESettingsCell cell) {
    switch (cell) {
    case ESettingsCell::List:
        return L"list";
    case ESettingsCell::Font:
        return L"font";
    case ESettingsCell::Number:
        return L"number";
    case ESettingsCell::Text:
        return L"text";
    case ESettingsCell::Path:
        return L"path";
    }
    return L"";
}

std::vector<std::wstring> DoubleLineSizes(int displayedUnits) {
    // Both metric display codes ("Metric - OD" is 0) offer millimetres.
    if (displayedUnits == 0)
        displayedUnits = 1;
    std::vector<std::wstring> sizes;
    if (displayedUnits == 1) {
        for (int mm : {3, 5, 10, 15, 20, 25, 32, 40, 50, 65, 80, 90, 100, 125, 150})
            sizes.push_back(fmt::format(L"{}mm", mm));
        for (int mm = 200; mm <= 1200; mm += 50)
            sizes.push_back(fmt::format(L"{}mm", mm));
        for (int mm = 1300; mm <= 1900; mm += 100)
            sizes.push_back(fmt::format(L"{}mm", mm));
        return sizes;
    }
    for (const wchar_t* inch : {L"1/8", L"1/4", L"3/8", L"1/2", L"3/4", L"1", L"1 1/4", L"1 1/2",
                                L"2", L"2 1/2", L"3", L"3 1/2", L"4", L"5", L"6"})
        sizes.push_back(std::wstring(inch) + L"\"");
    for (int inch = 8; inch <= 48; inch += 2)
        sizes.push_back(fmt::format(L"{}\"", inch));
    for (int inch = 52; inch <= 76; inch += 4)
        sizes.push_back(fmt::format(L"{}\"", inch));
    return sizes;
}

std::vector<std::wstring> DrawingTemplateTitles(std::int32_t projectId,
                                                const std::wstring& templatesFolder) {
    std::vector<std::wstring> titles;
    if (projectId < 1)
        return titles;
    std::error_code ec;
    if (!templatesFolder.empty()) {
        for (fs::directory_iterator it(platform::ToPath(templatesFolder), ec), end;
             !ec && it != end; it.increment(ec)) {
            const std::wstring name = platform::FromPath(it->path().filename());
            std::error_code typeError;
            if (it->is_directory(typeError) || name.size() < 4 ||
                !EqualsNoCase(name.substr(name.size() - 4), L".dwt"))
                continue;
            titles.push_back(name.substr(0, name.size() - 4));
        }
    }
    // The Windows file system lists by name; the others in no useful order.
    std::sort(titles.begin(), titles.end(), [](const std::wstring& a, const std::wstring& b) {
        const std::wstring la = ToLower(a), lb = ToLower(b);
        return la != lb ? la < lb : a < b;
    });
    if (std::none_of(titles.begin(), titles.end(),
                     [](const std::wstring& title) { return EqualsNoCase(title, L"acad"); }))
        titles.push_back(L"acad");
    return titles;
}

namespace {

// Gives `variable` the value of `source` through its kind's setter without
// force, so an equal value keeps it clean.
void CopyValue(Base::CVariable& variable, const Base::CVariable& source) {
    switch (source.m_nKind) {
    case Base::eBool:
        variable.SetBool(source.m_bValue, false);
        break;
    case Base::eString:
        variable.SetString(source.m_strValue, false);
        break;
    case Base::eFont:
        variable.SetFont(source.m_strFont, false);
        break;
    case Base::eInteger:
        variable.SetInteger(source.m_nValue, false);
        break;
    case Base::eReal:
        variable.SetReal(source.m_dValue, false);
        break;
    case Base::eFolder:
        variable.SetFolder(source.m_strFolder, false);
        break;
    case Base::eText:
        variable.SetText(source.m_strText, false);
        break;
    case Base::eChoice:
        variable.SetChoice(source.m_nChoice, false);
        break;
    default:
        break;
    }
}

} // namespace

bool RestoreSettingsDefaults(CVX2D_ProjectSettingsBase& settings, int section,
                             const CVX2D_GeneralSettings& general) {
    auto defaults = NewProjectSettings(settings.GetApplication());
    if (!defaults)
        return false;
    defaults->BuildCatalogue(general.m_nWorkingUnits);
    bool found = false;
    for (Base::CSection& target : settings.Sections()) {
        const Base::CSection* source = defaults->FindSection(target.m_nId);
        if ((section >= 0 && target.m_nId != section) || !source)
            continue;
        found = true;
        // Both come from the same catalogue, so positions match; sub-headings
        // share one id and could not be matched by it.
        const std::size_t count =
            std::min(target.m_arrVariables.size(), source->m_arrVariables.size());
        for (std::size_t i = 0; i < count; ++i) {
            Base::CVariable& variable = target.m_arrVariables[i];
            if (!variable.IsTitle() && variable.m_nId == source->m_arrVariables[i].m_nId)
                CopyValue(variable, source->m_arrVariables[i]);
        }
        settings.Migrate(target, general.m_nDisplayedUnits);
    }
    return found;
}

std::wstring SettingsHelpTopic(int application, int section) {
    struct STopic {
        int application;
        int section;
        const wchar_t* topic;
    };
    // The P&ID toggles page really is "_Box_Box", and ELECTRIC and P&ID
    // share one dimensioning page: that is how the help file names them.
    static const STopic topics[] = {
        {1, 3, L"::/Dimensioning_Variables_Dialog_Box.htm"},
        {1, 4, L"::/General_Drawing_Parameters_Dialog_Box.htm"},
        {1, 6, L"::/Scale_Factors_Dialog_Box.htm"},
        {1, 7, L"::/Scaling_Variables_Dialog_Box.htm"},
        {2, 0, L"::/Bill_of_Material_Dialog_Box.htm"},
        {2, 3, L"::/Dimensioning_Variables_Dialog_Box.htm"},
        {2, 4, L"::/General_Drawing_Parameters_Dialog_Box1.htm"},
        {2, 6, L"::/Scale_Factors_Dialog_Box1.htm"},
        {2, 8, L"::/System_Toggles_Dialog_Box_Box.htm"},
        {3, 0, L"::/Bill_of_Material_Dialog_Box1.htm"},
        {3, 2, L"::/Component_Sizing_Dialog_Box.htm"},
        {3, 3, L"::/Dimensioning_Variables_Dialog_Box2.htm"},
        {3, 4, L"::/General_Drawing_Parameters_Dialog_Box2.htm"},
        {3, 6, L"::/Scale_Factors_Dialog_Box2.htm"},
        {3, 8, L"::/System_Toggles_Dialog_Box.htm"},
        {4, 0, L"::/Bill_of_Material_Dialog_Box2.htm"},
        {4, 1, L"::/Civil_Structural_Parameters_Dialog_Box.htm"},
        {4, 3, L"::/Dimensioning_Variables_Dialog_Box3.htm"},
        {4, 4, L"::/General_Drawing_Parameters_Dialog_Box3.htm"},
        {4, 6, L"::/Scale_Factors_Dialog_Box3.htm"},
        {4, 8, L"::/System_Toggles_Dialog_Box1.htm"},
    };
    for (const auto& entry : topics) {
        if (entry.application == application && entry.section == section)
            return entry.topic;
    }
    return L"";
}

CSettingsEditor::~CSettingsEditor() = default;

bool CSettingsEditor::Open(std::int32_t projectId, int application, int section) {
    m_nProjectId = projectId;
    m_nApplication = application;
    m_nSection = section;
    m_strHeader = ApplicationSettingsName(application) + L" - " + Base::SectionName(section);
    m_rows.clear();
    m_general = CVX2D_GeneralSettings();
    m_settings = NewProjectSettings(application);
    if (!m_settings || !m_general.Load(m_projects, projectId)) {
        m_settings.reset();
        return false;
    }
    m_settings->BuildCatalogue(m_general.m_nWorkingUnits);
    m_settings->Load(m_general);
    if (const Base::CSection* found = TheSection()) {
        for (const auto& variable : found->m_arrVariables)
            m_rows.push_back(MakeRow(variable));
    }
    return true;
}

Base::CSection* CSettingsEditor::TheSection() {
    return m_settings ? m_settings->FindSection(m_nSection) : nullptr;
}

SSettingsRow CSettingsEditor::MakeRow(const Base::CVariable& variable) const {
    SSettingsRow row;
    row.variableId = variable.m_nId;
    if (variable.IsTitle()) {
        row.label = variable.m_strText;
        row.subHeading = true;
        row.readOnly = true;
        row.background = kSubHeadingBackground;
        return row;
    }
    row.label = SettingsVariableLabel(variable.m_nId);
    row.text = SettingsValueText(variable);
    switch (variable.m_nKind) {
    case Base::eBool:
        row.cell = ESettingsCell::List;
        row.choices = {L"On", L"Off"};
        break;
    case Base::eString:
        row.cell = ESettingsCell::List;
        if (variable.m_nId == kDrawingTemplateId)
            row.choices = DrawingTemplateTitles(
                m_nProjectId, WithTrailingSeparator(m_general.m_strTemplatesLocation));
        else if (variable.m_nId == kDoubleLineSizeId)
            row.choices = DoubleLineSizes(m_general.m_nDisplayedUnits);
        break;
    case Base::eFont:
        row.cell = ESettingsCell::Font;
        break;
    case Base::eInteger:
        row.cell = ESettingsCell::Number;
        break;
    case Base::eFolder:
        row.cell = ESettingsCell::Path;
        break;
    case Base::eChoice:
        row.cell = ESettingsCell::List;
        for (const EPrjVal choice : variable.m_arrChoices)
            row.choices.push_back(PrjValText(choice));
        break;
    default: // reals and texts
        row.cell = ESettingsCell::Text;
        break;
    }
    return row;
}

bool CSettingsEditor::ApplyEnabled() const {
    return m_settings && m_settings->IsModified();
}

bool CSettingsEditor::SetCellText(std::size_t row, const std::wstring& text) {
    Base::CSection* section = TheSection();
    if (!section || row >= m_rows.size() || row >= section->m_arrVariables.size())
        return false;
    Base::CVariable& variable = section->m_arrVariables[row];
    if (variable.IsTitle())
        return false;
    const bool stored = StoreSettingsText(variable, text);
    // Show what is kept: "abc" typed into a number cell is kept as 0.
    m_rows[row] = MakeRow(variable);
    return stored;
}

bool CSettingsEditor::RestoreDefaults() {
    if (!m_settings)
        return false;
    RestoreSettingsDefaults(*m_settings, m_nSection, m_general);
    if (const Base::CSection* found = TheSection()) {
        for (std::size_t i = 0; i < found->m_arrVariables.size() && i < m_rows.size(); ++i)
            m_rows[i] = MakeRow(found->m_arrVariables[i]);
    }
    return true;
}

bool CSettingsEditor::Save() {
    return m_settings->Save() ||
           SaveFailed(L"the " + ApplicationSettingsName(m_nApplication) + L" settings",
                      m_settings->GetPath());
}

void CSettingsEditor::Discard() {
    Open(m_nProjectId, m_nApplication, m_nSection);
}

std::wstring CSettingsEditor::HelpTopic() const {
    return SettingsHelpTopic(m_nApplication, m_nSection);
}

std::vector<SSettingsPage> SettingsPageTree(bool linesFlag) {
    using K = ESettingsPage;
    std::vector<SSettingsPage> pages;
    pages.push_back({K::General, L"General Settings", 1, 0, -1, {}});
    pages.push_back({K::FileLocations, L"File Locations", 1, 0, -1, {}});
    pages.push_back({K::Borders, L"Border Settings", 1, 0, -1, {}});
    SSettingsPage drawings{K::Drawings, L"Drawings", 1, 0, -1, {}};
    for (const int application : kApplications)
        drawings.children.push_back(
            {K::DrawingFolder, ApplicationName(application), 5 + application, application, -1, {}});
    pages.push_back(std::move(drawings));
    if (!linesFlag)
        pages.push_back({K::Lines, L"Lines", 1, 0, -1, {}});
    pages.push_back({K::Specs, L"Specs", 1, 0, -1, {}});

    // The editors the tree offers per application; ELECTRIC's catalogue
    // also has a civil section, but no page leads to it.
    static const std::vector<int> sections[] = {
        {Base::eGeneralDrawing, Base::eScaleFactors, Base::eScalingVariables, Base::eDimensioning},
        {Base::eGeneralDrawing, Base::eSystemToggles, Base::eScaleFactors, Base::eBillOfMaterial,
         Base::eDimensioning},
        {Base::eGeneralDrawing, Base::eSystemToggles, Base::eScaleFactors, Base::eComponentSizing,
         Base::eBillOfMaterial, Base::eDimensioning},
        {Base::eGeneralDrawing, Base::eSystemToggles, Base::eScaleFactors, Base::eBillOfMaterial,
         Base::eCivilStructural, Base::eDimensioning},
    };
    for (const int application : kApplications) {
        const int icon = 5 + application;
        SSettingsPage page{K::Application,
                           ApplicationSettingsName(application) + L" Settings",
                           icon,
                           application,
                           -1,
                           {}};
        for (const int section : sections[application - 1])
            page.children.push_back(
                {K::Section, Base::SectionName(section), icon, application, section, {}});
        page.children.push_back({K::Layers, L"Layers", icon, application, -1, {}});
        pages.push_back(std::move(page));
    }
    return pages;
}
