#include "editors/GeneralSettingsEditor.h"

#include "datafile/Text.h"

#include <fmt/xchar.h>

namespace {

// The index of a code in a list numbered from `first`; -1 outside it.
int IndexOf(int code, int first, std::size_t count) {
    const int index = code - first;
    return index >= 0 && static_cast<std::size_t>(index) < count ? index : -1;
}

} // namespace

bool CGeneralSettingsEditor::Open(std::int32_t projectId) {
    m_nProjectId = projectId;
    m_rows.clear();
    m_general = CVX2D_GeneralSettings();
    if (!m_general.Load(m_projects, projectId)) {
        m_opened = m_general;
        return false;
    }
    m_opened = m_general;
    m_formats = LoadRatingFormats(m_projects.Datafiles());
    Fill();
    return true;
}

void CGeneralSettingsEditor::Fill() {
    m_rows.clear();
    auto list = [this](EGeneralField field, const wchar_t* label, std::vector<std::wstring> choices,
                       int current) {
        SGeneralRow row{field, label, L"", std::move(choices), current, false};
        if (current >= 0)
            row.text = row.choices[static_cast<std::size_t>(current)];
        m_rows.push_back(std::move(row));
    };
    list(EGeneralField::WorkingUnits, L"Working Units", WorkingUnitsNames(),
         IndexOf(m_general.m_nWorkingUnits, 0, WorkingUnitsNames().size()));
    list(EGeneralField::DisplayedUnits, L"Displayed Units", DisplayedUnitsNames(),
         IndexOf(m_general.m_nDisplayedUnits, 0, DisplayedUnitsNames().size()));
    std::vector<std::wstring> titles;
    int current = -1;
    for (const SRatingFormat& format : m_formats) {
        if (format.code == m_general.m_nRatingsFormat)
            current = static_cast<int>(titles.size());
        titles.push_back(format.title);
    }
    list(EGeneralField::RatingFormat, L"Rating Format", std::move(titles), current);
    m_rows.push_back({EGeneralField::Version,
                      L"Version",
                      fmt::format(L"{}", m_general.m_nProjectVersion),
                      {},
                      -1,
                      true});
    m_rows.push_back({EGeneralField::Guid, L"GUID", GuidToText(m_general.m_guid), {}, -1, true});
}

const SGeneralRow& CGeneralSettingsEditor::Row(EGeneralField field) const {
    static const SGeneralRow none;
    for (const SGeneralRow& row : m_rows) {
        if (row.field == field)
            return row;
    }
    return none;
}

bool CGeneralSettingsEditor::ApplyEnabled() const {
    return m_general.m_bLoaded && (m_general.m_nWorkingUnits != m_opened.m_nWorkingUnits ||
                                   m_general.m_nDisplayedUnits != m_opened.m_nDisplayedUnits ||
                                   m_general.m_nRatingsFormat != m_opened.m_nRatingsFormat);
}

bool CGeneralSettingsEditor::Choose(EGeneralField field, int index) {
    const SGeneralRow& row = Row(field);
    if (!m_general.m_bLoaded || row.readOnly || index < 0 ||
        static_cast<std::size_t>(index) >= row.choices.size())
        return false;
    switch (field) {
    case EGeneralField::WorkingUnits:
    case EGeneralField::DisplayedUnits:
        // Both unit lists are numbered from 0.
        (field == EGeneralField::WorkingUnits ? m_general.m_nWorkingUnits
                                              : m_general.m_nDisplayedUnits) = index;
        break;
    case EGeneralField::RatingFormat:
        m_general.m_nRatingsFormat = m_formats[static_cast<std::size_t>(index)].code;
        break;
    default:
        return false;
    }
    Fill();
    return true;
}

std::vector<int> CGeneralSettingsEditor::Codes(EGeneralField field) const {
    std::vector<int> codes;
    const SGeneralRow& row = Row(field);
    if (row.readOnly)
        return codes;
    for (std::size_t i = 0; i < row.choices.size(); ++i)
        codes.push_back(field == EGeneralField::RatingFormat ? m_formats[i].code
                                                             : static_cast<int>(i));
    return codes;
}

bool CGeneralSettingsEditor::ChooseTyped(EGeneralField field, const std::wstring& text) {
    const std::wstring typed = TrimBlanks(text);
    const std::vector<int> codes = Codes(field);
    const SGeneralRow& row = Row(field);
    for (std::size_t i = 0; i < codes.size(); ++i) {
        if (typed == fmt::format(L"{}", codes[i]) || EqualsNoCase(typed, row.choices[i]))
            return Choose(field, static_cast<int>(i));
    }
    return false;
}

bool CGeneralSettingsEditor::Save() {
    // Only what this page changed goes over the file as it is now: the file
    // locations page writes the same file.
    CVX2D_GeneralSettings current;
    const bool saved = current.Update(m_projects, m_nProjectId, [&](CVX2D_GeneralSettings& file) {
        if (m_general.m_nWorkingUnits != m_opened.m_nWorkingUnits)
            file.m_nWorkingUnits = m_general.m_nWorkingUnits;
        if (m_general.m_nDisplayedUnits != m_opened.m_nDisplayedUnits)
            file.m_nDisplayedUnits = m_general.m_nDisplayedUnits;
        if (m_general.m_nRatingsFormat != m_opened.m_nRatingsFormat)
            file.m_nRatingsFormat = m_general.m_nRatingsFormat;
    });
    if (!saved)
        return SaveFailed(L"general settings");
    m_general = current;
    m_opened = current;
    Fill();
    return true;
}

void CGeneralSettingsEditor::Discard() {
    m_general = m_opened;
    Fill();
}
