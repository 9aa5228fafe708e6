#include "editors/LayersEditor.h"

#include "datafile/Application.h"
#include "datafile/Text.h"
#include "store/GeneralSettings.h"

#include <cmath>
#include <fmt/xchar.h>
#include <iterator>

namespace {

using Layers = CVX2D_ProjectLayers;

constexpr const wchar_t* kColorNames[] = {L"Red",  L"Yellow",  L"Green", L"Cyan",
                                          L"Blue", L"Magenta", L"White"};

// Digits with at most one decimal point and at least one digit.
bool IsDecimal(std::wstring_view text) {
    bool digit = false;
    bool point = false;
    for (const wchar_t c : text) {
        if (c == L'.' && !point)
            point = true;
        else if (c >= L'0' && c <= L'9')
            digit = true;
        else
            return false;
    }
    return digit;
}

bool IsDigits(std::wstring_view text) {
    return !text.empty() && text.size() <= 3 && IsDecimal(text) &&
           text.find(L'.') == std::wstring_view::npos;
}

} // namespace

std::wstring LineweightText(std::int32_t lineweight) {
    if (lineweight == Layers::kDefaultLineweight)
        return L"Default";
    return fmt::format(L"{:.2f} mm", lineweight / 100.0);
}

bool ParseLineweightText(const std::wstring& text, std::int32_t& lineweight) {
    std::wstring typed = TrimBlanks(text);
    if (EqualsNoCase(typed, L"Default")) {
        lineweight = Layers::kDefaultLineweight;
        return true;
    }
    if (typed.size() > 2 && EqualsNoCase(typed.substr(typed.size() - 2), L"mm"))
        typed = TrimBlanks(typed.substr(0, typed.size() - 2));
    if (!IsDecimal(typed) || typed.size() > 8)
        return false;
    const double hundredths = WToF(typed) * 100.0;
    for (const std::int32_t candidate : StandardLineweights()) {
        if (std::fabs(hundredths - candidate) < 1e-6) {
            lineweight = candidate;
            return true;
        }
    }
    return false;
}

std::wstring AciColorName(int index) {
    if (index >= 1 && index <= 7)
        return kColorNames[index - 1];
    return fmt::format(L"Color {}", index);
}

std::wstring LayerColorText(const SLayerColor& color) {
    if (color.index >= 1 && color.index <= 7)
        return fmt::format(L"{} ({})", AciColorName(color.index), color.index);
    if (color.index >= 8 && color.index < kAciColorCount)
        return AciColorName(color.index);
    return fmt::format(L"{},{},{}", color.rgb.red, color.rgb.green, color.rgb.blue);
}

void RestoreLayerDefaults(CVX2D_ProjectLayers& layers) {
    const Layers defaults(layers.GetApplication());
    for (std::size_t i = 0; i < defaults.GetCount(); ++i) {
        const int at = layers.Find(defaults.GetKeys()[i]);
        if (at < 0)
            continue;
        const auto position = static_cast<std::size_t>(at);
        layers.SetName(position, defaults.GetNames()[i]);
        layers.SetColor(position, defaults.GetColors()[i]);
        layers.SetLinetype(position, defaults.GetLinetypes()[i]);
        layers.SetLineweight(position, defaults.GetLineweights()[i]);
    }
}

std::wstring LayersHeader(int application) {
    return ApplicationName(application) + L" - Layers";
}

std::wstring LayersHelpTopic(int application) {
    // Numbered per application, as the help file names its settings pages.
    switch (application) {
    case eAppElectric:
        return L"::/Layers_Dialog_Box.htm";
    case eAppFlow:
        return L"::/Layers_Dialog_Box1.htm";
    case eAppIso:
        return L"::/Layers_Dialog_Box2.htm";
    case eAppOrtho:
        return L"::/Layers_Dialog_Box3.htm";
    default:
        return L"";
    }
}

bool CLayersEditor::Open(std::int32_t projectId, int application) {
    m_nProjectId = projectId;
    m_nApplication = application;
    m_strHeader = LayersHeader(application);
    m_rows.clear();
    m_layers.reset();
    CVX2D_GeneralSettings general;
    if (!IsApplication(application) || !general.Load(m_projects, projectId))
        return false;
    m_layers.emplace(m_projects, projectId, application, general.m_nProjectVersion);
    m_layers->Load(m_layers->GetFilePath());
    MakeRows();
    return true;
}

void CLayersEditor::MakeRows() {
    m_rows.clear();
    if (!m_layers)
        return;
    for (std::size_t i = 0; i < m_layers->GetCount(); ++i) {
        SLayerRow row;
        row.key = m_layers->GetKeys()[i];
        row.description = Layers::GetDescription(row.key);
        row.name = m_layers->GetNames()[i];
        row.color = m_layers->GetColors()[i];
        row.colorText = LayerColorText(row.color);
        row.linetype = m_layers->GetLinetypes()[i];
        row.lineweight = m_layers->GetLineweights()[i];
        row.lineweightText = LineweightText(row.lineweight);
        m_rows.push_back(std::move(row));
    }
}

bool CLayersEditor::ApplyEnabled() const {
    return m_layers && m_layers->IsModified();
}

bool CLayersEditor::SetCellText(std::size_t row, ELayerColumn column, const std::wstring& text) {
    if (!m_layers || row >= m_rows.size())
        return false;
    const SLayerRow& current = m_rows[row];
    bool stored = false;
    switch (column) {
    case ELayerColumn::Description:
        return false;
    case ELayerColumn::Name: {
        const std::wstring name = TrimBlanks(text);
        if (name == current.name)
            return true;
        if (!IsValidLayerName(name)) {
            m_prompter.Show(fmt::format(L"Invalid layer name '{}'.\n\nA layer name must not be "
                                        L"empty or contain any of < > / \\ \" : ; ? * | , = `.",
                                        text),
                            EPromptIcon::Exclamation);
            return false;
        }
        m_layers->SetName(row, name);
        stored = true;
        break;
    }
    case ELayerColumn::Color: {
        const std::wstring typed = TrimBlanks(text);
        if (typed == current.colorText)
            return true;
        if (IsDigits(typed))
            return SetColorIndex(row, WToI(typed));
        for (int index = 1; index < kAciColorCount; ++index) {
            if (EqualsNoCase(typed, AciColorName(index)) ||
                EqualsNoCase(typed, LayerColorText({AciPalette()[index], index})))
                return SetColorIndex(row, index);
        }
        return false;
    }
    case ELayerColumn::Linetype: {
        const std::wstring typed = TrimBlanks(text);
        if (typed == current.linetype)
            return true;
        for (const std::wstring& linetype : StandardLinetypes()) {
            if (EqualsNoCase(typed, linetype)) {
                m_layers->SetLinetype(row, linetype);
                stored = true;
                break;
            }
        }
        break;
    }
    case ELayerColumn::Lineweight: {
        std::int32_t lineweight = 0;
        if (TrimBlanks(text) == current.lineweightText)
            return true;
        if (ParseLineweightText(text, lineweight)) {
            m_layers->SetLineweight(row, lineweight);
            stored = true;
        }
        break;
    }
    }
    if (stored)
        MakeRows();
    return stored;
}

bool CLayersEditor::SetColorIndex(std::size_t row, int index) {
    if (!m_layers || row >= m_rows.size() || index < 1 || index >= kAciColorCount)
        return false;
    m_layers->SetColor(row, {AciPalette()[static_cast<std::size_t>(index)], index});
    MakeRows();
    return true;
}

bool CLayersEditor::SetColor(std::size_t row, const SLayerColor& color) {
    if (!m_layers || row >= m_rows.size() || color.index < 0 || color.index >= kAciColorCount)
        return false;
    if (!(color == m_rows[row].color)) {
        m_layers->SetColor(row, color);
        MakeRows();
    }
    return true;
}

bool CLayersEditor::RestoreDefaults() {
    if (!m_layers)
        return false;
    RestoreLayerDefaults(*m_layers);
    MakeRows();
    return true;
}

bool CLayersEditor::Save() {
    return m_layers->Save() || SaveFailed(L"the " + ApplicationName(m_nApplication) + L" layers",
                                          m_layers->GetFilePath());
}

void CLayersEditor::Discard() {
    m_layers->Load(m_layers->GetFilePath());
    MakeRows();
}
