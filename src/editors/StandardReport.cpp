#include "editors/StandardReport.h"

#include "contents/ProjectBorders.h"
#include "contents/ProjectLayers.h"
#include "contents/ProjectLines.h"
#include "contents/ProjectSettings.h"
#include "contents/ProjectSpecs.h"
#include "contents/SettingsCatalogue.h"
#include "contents/SettingsText.h"
#include "datafile/Application.h"
#include "datafile/IniFile.h"
#include "datafile/Units.h"
#include "editors/CompareReport.h"
#include "editors/LayersEditor.h"
#include "editors/RatingFormats.h"
#include "editors/SettingsEditor.h"
#include "editors/StandardComparison.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/ClientRegistry.h"
#include "store/GeneralSettings.h"
#include "store/ProjectRegistry.h"

#include <algorithm>
#include <filesystem>
#include <fmt/xchar.h>
#include <memory>
#include <vector>

namespace fs = std::filesystem;

using Base = CVX2D_ProjectSettingsBase;

namespace {

using CCells = std::vector<std::wstring>;

// Plain text in aligned columns under underlined titles.
class CReportWriter {
public:
    std::wstring& Text() { return m_text; }

    void Line(const std::wstring& line = {}) { m_text += line + L"\n"; }

    // A part of the standard: a blank line, the title, '=' under it.
    void Title(const std::wstring& title) { Underlined(title, L'='); }
    // A heading inside a part: '-' under it.
    void SubTitle(const std::wstring& title) { Underlined(title, L'-'); }

    // Rows in columns two blanks apart, each as wide as its widest cell; a
    // header row, when given, is underlined.
    void Table(const std::vector<CCells>& rows, const CCells& header = {}) {
        std::vector<std::size_t> widths(header.size());
        for (const auto* row : Rows(rows, header)) {
            widths.resize(std::max(widths.size(), row->size()));
            for (std::size_t i = 0; i < row->size(); ++i)
                widths[i] = std::max(widths[i], (*row)[i].size());
        }
        if (!header.empty()) {
            Row(header, widths);
            CCells rules;
            for (std::size_t i = 0; i < header.size(); ++i)
                rules.push_back(std::wstring(widths[i], L'-'));
            Row(rules, widths);
        }
        for (const auto& row : rows)
            Row(row, widths);
    }

private:
    void Underlined(const std::wstring& title, wchar_t rule) {
        if (!m_text.empty())
            Line();
        Line(title);
        Line(std::wstring(title.size(), rule));
    }

    static std::vector<const CCells*> Rows(const std::vector<CCells>& rows, const CCells& header) {
        std::vector<const CCells*> all{&header};
        for (const auto& row : rows)
            all.push_back(&row);
        return all;
    }

    void Row(const CCells& cells, const std::vector<std::size_t>& widths) {
        std::wstring line;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (i > 0)
                line += L"  ";
            line += cells[i];
            if (i + 1 < cells.size())
                line.append(widths[i] - cells[i].size(), L' ');
        }
        // Empty last cells leave no trailing blanks.
        line.erase(line.find_last_not_of(L' ') + 1);
        Line(line);
    }

    std::wstring m_text;
};

class CReportBuilder {
public:
    CReportBuilder(const CVX2D_ProjectRegistry& registry, std::int32_t id)
        : m_registry(registry), m_id(id) {}

    bool Run(const std::wstring& date, std::wstring& text, std::wstring& error) {
        if (!Read(error))
            return false;
        Heading(date);
        General();
        FileLocations();
        Borders();
        Lines();
        Specs();
        Applications();
        text = std::move(m_out.Text());
        return true;
    }

private:
    bool Read(std::wstring& error) {
        std::vector<SProjectInfo> projects;
        if (const EProjectResult listed = m_registry.ListProjects(true, true, projects);
            listed != eProjectOk) {
            error = ProjectResultText(listed);
            return false;
        }
        const auto found =
            std::find_if(projects.begin(), projects.end(),
                         [this](const SProjectInfo& info) { return info.id == m_id; });
        if (m_id < 1 || found == projects.end()) {
            error = fmt::format(L"Standard {} does not exist.", m_id);
            return false;
        }
        m_name = found->name;
        if (!m_general.Load(m_registry, m_id)) {
            error = fmt::format(L"The folder of standard '{}' cannot be found.", m_name);
            return false;
        }
        const std::wstring& path = m_general.GetPath();
        m_folder = path.substr(0, path.find_last_of(L"/\\") + 1);
        return true;
    }

    void Heading(const std::wstring& date) {
        m_out.Line(L"VANDIX 2D Standards Desk - Print View");
        std::vector<CCells> rows{{L"Standard:", m_name}};
        std::int32_t clientId = 0;
        std::wstring client;
        if (CVX2D_ClientRegistry(m_registry.Datafiles())
                .FindClientOfProject(m_id, clientId, client))
            rows.push_back({L"Client:", client});
        rows.push_back({L"Folder:", m_folder});
        rows.push_back({L"Printed:", date});
        m_out.Table(rows);
    }

    void General() {
        m_out.Title(L"General Settings");
        const std::vector<SRatingFormat> formats = LoadRatingFormats(m_registry.Datafiles());
        const SRatingFormat* format = FindRatingFormat(formats, m_general.m_nRatingsFormat);
        // The report shows what the standard holds, even a code the list lacks.
        const std::wstring rating = format ? format->title
                                           : fmt::format(L"{} (not in the list of rating formats)",
                                                         m_general.m_nRatingsFormat);
        m_out.Table({
            {L"Working Units", WorkingUnitsText(m_general.m_nWorkingUnits)},
            {L"Displayed Units", DisplayedUnitsText(m_general.m_nDisplayedUnits)},
            {L"Rating Format", rating},
            {L"Version", std::to_wstring(m_general.m_nProjectVersion)},
            {L"GUID", GuidToText(m_general.m_guid)},
        });
    }

    void FileLocations() {
        m_out.Title(L"File Locations");
        m_out.Table({
            {L"ELECTRIC Drawing Folder", m_general.m_strElectricDrawings},
            {L"P & ID Drawing Folder", m_general.m_strFlowDrawings},
            {L"ISOMETRIC Drawing Folder", m_general.m_strIsoDrawings},
            {L"ORTHO Drawing Folder", m_general.m_strOrthoDrawings},
            {L"Borders", m_general.m_strBordersLocation},
            {L"Templates", m_general.m_strTemplatesLocation},
            {L"Libraries", m_general.m_strLibrariesLocation},
        });
    }

    void Borders() {
        m_out.Title(L"Border Settings");
        CVX2D_ProjectBorders borders;
        borders.Load(m_folder + L"Borders.ini");
        std::vector<CCells> rows;
        for (int size = 0; size < kDwgCount; ++size) {
            const auto dwg = static_cast<EDwg>(size);
            rows.push_back({DwgKey(dwg), borders.GetBorderFile(dwg), borders.GetLimitsMin(dwg),
                            borders.GetLimitsMax(dwg), borders.GetRevisionFile(dwg)});
        }
        m_out.Table(rows, {L"Size", L"Border", L"Lower Left", L"Upper Right", L"Revision Block"});
    }

    void Lines() {
        m_out.Title(L"Lines");
        SLineList lines;
        const ELineResult read = CVX2D_ProjectLines(m_registry).GetLines(m_id, lines, true);
        if (read != eLineOk) {
            m_out.Line(L"The lines cannot be read: " + CVX2D_ProjectLines::GetErrorText(read));
            return;
        }
        if (lines.Size() == 0) {
            m_out.Line(L"No lines.");
            return;
        }
        std::vector<CCells> rows;
        for (std::size_t i = 0; i < lines.Size(); ++i)
            rows.push_back({std::to_wstring(lines.ids[i]), lines.names[i],
                            lines.deleted[i] ? L"Deleted" : L"Live"});
        m_out.Table(rows, {L"Id", L"Line", L"State"});
    }

    void Specs() {
        m_out.Title(L"Specs");
        std::vector<std::int32_t> ids;
        std::vector<std::wstring> names;
        const ESpecResult read = CVX2D_ProjectSpecs(m_registry).GetCheckedSpecs(m_id, ids, names);
        if (read != eSpecOk) {
            m_out.Line(L"The specs cannot be read: " + CVX2D_ProjectSpecs::GetErrorText(read));
            return;
        }
        if (ids.empty()) {
            m_out.Line(L"No specs checked.");
            return;
        }
        std::vector<CCells> rows;
        for (std::size_t i = 0; i < ids.size() && i < names.size(); ++i)
            rows.push_back({std::to_wstring(ids[i]), names[i]});
        m_out.Table(rows, {L"Id", L"Spec"});
    }

    // The applications' pages in the order of the standard's page tree.
    void Applications() {
        // A missing file is an empty document: every layer keeps its default.
        CVX2D_IniFile layersFile;
        layersFile.SetAutoSave(false);
        layersFile.Open(m_folder + L"Layers.ini");
        for (const SSettingsPage& page : SettingsPageTree(false)) {
            if (page.kind != ESettingsPage::Application)
                continue;
            std::unique_ptr<Base> settings = NewProjectSettings(page.application);
            if (!settings)
                continue;
            settings->BuildCatalogue(m_general.m_nWorkingUnits);
            settings->Load(m_general);
            for (const SSettingsPage& child : page.children) {
                if (child.kind == ESettingsPage::Section)
                    Section(*settings, page.application, child.section);
                else if (child.kind == ESettingsPage::Layers)
                    Layers(layersFile, page.application);
            }
        }
    }

    void Section(const Base& settings, int application, int sectionId) {
        m_out.Title(ApplicationSettingsName(application) + L" - " + Base::SectionName(sectionId));
        const Base::CSection* section = settings.FindSection(sectionId);
        if (!section)
            return;
        // Values between sub-headings share one column width.
        std::vector<CCells> rows;
        auto flush = [&] {
            if (!rows.empty())
                m_out.Table(rows);
            rows.clear();
        };
        for (const auto& variable : section->m_arrVariables) {
            if (variable.IsTitle()) {
                flush();
                m_out.SubTitle(variable.m_strText);
            } else {
                rows.push_back(
                    {SettingsVariableLabel(variable.m_nId), SettingsValueText(variable)});
            }
        }
        flush();
    }

    void Layers(CVX2D_IniFile& file, int application) {
        m_out.Title(ApplicationName(application) + L" - Layers");
        CVX2D_ProjectLayers layers(application, m_general.m_nProjectVersion);
        layers.Load(file);
        std::vector<CCells> rows;
        for (std::size_t i = 0; i < layers.GetCount(); ++i)
            rows.push_back({CVX2D_ProjectLayers::GetDescription(layers.GetKeys()[i]),
                            layers.GetNames()[i], LayerColorText(layers.GetColors()[i]),
                            layers.GetLinetypes()[i], LineweightText(layers.GetLineweights()[i])});
        m_out.Table(rows, {L"Description", L"Layer", L"Colour", L"Linetype", L"Lineweight"});
    }

    const CVX2D_ProjectRegistry& m_registry;
    const std::int32_t m_id;
    std::wstring m_name;
    std::wstring m_folder; // ends with a separator
    CVX2D_GeneralSettings m_general;
    CReportWriter m_out;
};

// The standard as messages name it: its name, or its id when it has none.
std::wstring StandardText(const CVX2D_ProjectRegistry& registry, std::int32_t id) {
    const std::wstring name = registry.GetProjectName(id, true, true);
    return name.empty() ? std::to_wstring(id) : L"'" + name + L"'";
}

} // namespace

std::wstring StandardReportDefaultPath() {
    std::error_code ec;
    fs::path folder = fs::temp_directory_path(ec);
    if (ec)
        folder = fs::path(".");
    return platform::FromPath(folder /
                              platform::ToPath(L"VANDIX 2D Standards Desk - Print View.txt"));
}

bool StandardReportText(const CVX2D_ProjectRegistry& registry, std::int32_t standardId,
                        const std::wstring& date, std::wstring& text, std::wstring& error) {
    text.clear();
    error.clear();
    try {
        return CReportBuilder(registry, standardId).Run(date, text, error);
    } catch (const std::exception& e) {
        error = L"Unexpected error: " + platform::FromUtf8(e.what());
        return false;
    }
}

bool WriteStandardReport(const CVX2D_ProjectRegistry& registry, std::int32_t standardId,
                         const std::wstring& path, std::wstring& error) {
    std::wstring text;
    if (!StandardReportText(registry, standardId, CompareReportDate(), text, error))
        return false;
#ifdef _WIN32
    std::wstring crlf;
    for (const wchar_t c : text)
        crlf += c == L'\n' ? std::wstring(L"\r\n") : std::wstring(1, c);
    text = std::move(crlf);
#endif
    std::FILE* file = platform::OpenFile(platform::ToPath(path), "wb");
    const std::string bytes = platform::ToUtf8(text);
    const bool written = file && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    if (!(file && platform::FlushAndClose(file) && written)) {
        error = fmt::format(L"Error writing the report of standard {} to '{}'.",
                            StandardText(registry, standardId), path);
        return false;
    }
    return true;
}

bool PrintStandardReport(const CVX2D_ProjectRegistry& registry, IPrompter& prompter,
                         std::int32_t standardId,
                         const std::function<bool(const std::wstring&)>& open) {
    const std::wstring path = StandardReportDefaultPath();
    std::wstring error;
    if (!WriteStandardReport(registry, standardId, path, error)) {
        prompter.Show(fmt::format(L"Error printing standard {}.\n\n{}",
                                  StandardText(registry, standardId), error),
                      EPromptIcon::Stop);
        return false;
    }
    if (open && !open(path)) {
        prompter.Show(
            fmt::format(L"The report was written to '{}', but no program could open it.\n\n{}",
                        path, platform::ShellOpenAdvice()),
            EPromptIcon::Exclamation);
        return false;
    }
    return true;
}
