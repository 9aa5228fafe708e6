#include "HelpPages.h"

#include "contents/ProjectLayers.h"
#include "contents/SettingsCatalogue.h"
#include "contents/SettingsText.h"
#include "datafile/Application.h"
#include "editors/LayersEditor.h"
#include "editors/SettingsEditor.h"
#include "platform/Utf8.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <algorithm>
#include <vector>

namespace {

using Base = CVX2D_ProjectSettingsBase;

// The two text variables whose cell is a list the settings page builds.
constexpr std::int32_t kDrawingTemplateId = 44;
constexpr std::int32_t kDoubleLineSizeId = 169;

std::string U(const std::wstring& text) {
    return platform::ToUtf8(text);
}

// What a section holds, in a sentence or two.
std::string SectionPurpose(int section) {
    switch (section) {
    case Base::eBillOfMaterial:
        return "How the application lists the material of a drawing: material balloons and "
               "blocks, where the bill of material is placed and, where the application has "
               "them, the units and precision of bolt sizes and lengths and the sorting of swages.";
    case Base::eCivilStructural:
        return "The sizes the application uses when it draws doors, windows, stairs, ladders, "
               "platforms and fences, with the units and linetype of steel members.";
    case Base::eComponentSizing:
        return "The sizes of the symbols the application draws for valves, fittings, flanges, "
               "welds, insulation and supports, and the widths of fitting polylines.";
    case Base::eDimensioning:
        return "The dimension style the application sets up in its drawings. The rows come in "
               "groups (lines and arrows, text, fit, primary units, miscellaneous), each under a "
               "grey sub-heading row that cannot be changed.";
    case Base::eGeneralDrawing:
        return "The text style, font and heights of the application's text, the drawing "
               "template new drawings start from, the folder of its blocks, line breaks and "
               "the application's drafting options.";
    case Base::eScaleFactors:
        return "LTSCALE and the scales at which the application inserts its symbols, balloons, "
               "arrows and blocks.";
    case Base::eScalingVariables:
        return "The thicknesses and spacings of the lines and polylines the application draws.";
    case Base::eSystemToggles:
        return "Switches and choices that change how the application behaves while drafting, "
               "such as checking against the pipe spec and how valves, flanges and fittings "
               "are drawn.";
    default:
        return {};
    }
}

// The value cell of a row: what it offers and how it is changed.
std::string CellText(const SCatalogueRow& row) {
    switch (row.kind) {
    case Base::eBool:
        return "List: On, Off";
    case Base::eString:
        if (row.id == kDrawingTemplateId)
            return "List: the drawing templates (*.dwt) of the Templates Folder on the "
                   "File Locations page, then acad";
        if (row.id == kDoubleLineSizeId) {
            const auto metric = DoubleLineSizes(1);
            const auto imperial = DoubleLineSizes(2);
            return fmt::format("List: {} sizes from {} to {} when the displayed units are "
                               "metric, from {} to {} otherwise",
                               metric.size(), HtmlText(metric.front()), HtmlText(metric.back()),
                               HtmlText(imperial.front()), HtmlText(imperial.back()));
        }
        return "List";
    case Base::eFont:
        return "Font: chosen in the font dialog (the <kbd>...</kbd> button, a double-click or "
               "<kbd>F2</kbd>), shown as face; style; font file";
    case Base::eInteger:
        return "Whole number";
    case Base::eReal:
        return "Number";
    case Base::eFolder:
        return "Folder: typed, or chosen with the <kbd>...</kbd> button";
    case Base::eText:
        return "Text";
    case Base::eChoice: {
        std::wstring list;
        for (const std::int32_t choice : row.choices) {
            if (choice == 0)
                break;
            list += (list.empty() ? L"" : L", ") + PrjValText(choice);
        }
        return "List: " + HtmlText(list);
    }
    default:
        return {};
    }
}

// A default as the page shows it.
std::string DefaultText(const SCatalogueRow& row, const SCatalogueValue& value) {
    switch (row.kind) {
    case Base::eBool:
        return value.number != 0.0 ? "On" : "Off";
    case Base::eInteger:
        return fmt::format("{}", static_cast<int>(value.number));
    case Base::eReal:
        return HtmlText(SettingsRealText(value.number));
    case Base::eChoice:
        return HtmlText(PrjValText(static_cast<std::int32_t>(value.number)));
    default: {
        const std::wstring text = value.text ? value.text : L"";
        return text.empty() ? "<em>(empty)</em>" : HtmlText(text);
    }
    }
}

std::string Page(const std::string& title, const std::string& body) {
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<title>" +
           title +
           " - Standards Desk help</title>\n<link rel=\"stylesheet\" href=\"help.css\">\n"
           "</head>\n<body>\n<p class=\"nav\"><a href=\"index.htm\">Standards Desk help</a></p>\n"
           "<!-- Made by scripts/help-pages.sh from the program's tables: change the tables or "
           "tools/help/HelpPages.cpp, not this page. -->\n<h1>" +
           title + "</h1>\n" + body + "</body>\n</html>\n";
}

std::string Figure(const std::string& image, const std::string& caption) {
    return "<figure><img src=\"images/" + image + "\" alt=\"" + caption + "\"><figcaption>" +
           caption + "</figcaption></figure>\n";
}

// The rows of a section in the order the page shows them.
std::vector<SCatalogueRow> SectionRows(int application, int section) {
    std::vector<SCatalogueRow> rows;
    for (const SCatalogueSection& entry : SettingsCatalogue(application)) {
        if (entry.id != section)
            continue;
        for (const auto part : entry.parts)
            rows.insert(rows.end(), part.begin(), part.end());
    }
    return rows;
}

bool SameRows(const std::vector<SCatalogueRow>& a, const std::vector<SCatalogueRow>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const SCatalogueRow& x, const SCatalogueRow& y) {
                          return x.id == y.id && std::wstring(x.label) == y.label &&
                                 x.kind == y.kind && x.choices == y.choices;
                      });
}

std::string VariablesTable(const std::vector<SCatalogueRow>& rows) {
    std::string html = "<table class=\"variables\">\n<thead><tr><th>Setting</th><th>Short "
                       "name</th><th>Value</th><th>Metric default</th><th>Imperial "
                       "default</th></tr></thead>\n<tbody>\n";
    for (const SCatalogueRow& row : rows) {
        if (row.id == Base::kTitleId) {
            html +=
                "<tr class=\"sub\"><th colspan=\"5\">" + HtmlText(row.metric.text) + "</th></tr>\n";
            continue;
        }
        const std::wstring key = row.key ? row.key : L"";
        html += "<tr><td>" + HtmlText(row.label) + "</td><td>" +
                (key.empty() ? std::string() : "<code>" + HtmlText(key) + "</code>") + "</td><td>" +
                CellText(row) + "</td><td>" + DefaultText(row, row.metric) + "</td><td>" +
                DefaultText(row, row.imperial) + "</td></tr>\n";
    }
    return html + "</tbody>\n</table>\n";
}

// How every settings page works, whatever its section.
std::string SettingsPageUse() {
    return R"(<h2>Working on the page</h2>
<p>The grid has two columns: <em>Setting</em>, the name of the variable, and <em>Value</em>, its value in
this standard. Only the <em>Value</em> column changes; a click on a setting's name goes to its value.</p>
<ul>
<li><strong>Typing.</strong> Start typing, double-click or press <kbd>F2</kbd> or <kbd>Enter</kbd> to change
a value; <kbd>Enter</kbd> keeps it and goes to the next row, <kbd>Esc</kbd> drops the edit. <kbd>Tab</kbd>
and the arrow keys move from value to value.</li>
<li><strong>Lists.</strong> A value with an arrow offers its choices in a drop-down: pick one there, or
choose with the arrow keys and press <kbd>Enter</kbd>.</li>
<li><strong>Numbers.</strong> Whole numbers and numbers are typed with a point as the decimal sign,
whatever the desktop's language; a text that is not a number is kept as 0.</li>
<li><strong>Fonts and folders</strong> have a <kbd>...</kbd> button at the right of the cell: a font is only
ever picked in the font dialog; a folder can be typed or chosen in a folder dialog.</li>
<li><strong>Sub-headings</strong> (bold and centred, on grey) group the rows and cannot be changed.</li>
</ul>
<h2>Buttons</h2>
<dl>
<dt>Restore Defaults</dt><dd>Puts every variable of this section back to its default for the standard's
working units (the metric or the imperial column below; the units are chosen on the
<a href="General_Settings_Dialog_Box.htm">General Settings</a> page). Nothing is saved until Apply.</dd>
<dt>Apply</dt><dd>Saves the changed values into the application's settings file of the standard. It is
enabled exactly while something is unsaved. When the file cannot be written, the page says
<q>Error saving the &lt;application&gt; settings of standard '&lt;name&gt;'.</q> with the reason, and the
changes stay for another try.</dd>
<dt>Help...</dt><dd>Opens this page.</dd>
</dl>
<p>Closing the standard's window (or choosing another datafiles folder) with unsaved changes asks
<q>Standard '&lt;name&gt;' settings have been modified. Do you want to save your changes?</q>:
<em>Yes</em> saves, <em>No</em> drops the changes.</p>
)";
}

std::string SettingsPage(const std::vector<std::pair<int, int>>& uses) {
    const int section = uses.front().second;
    std::wstring applications;
    for (std::size_t i = 0; i < uses.size(); ++i)
        applications += (i == 0                 ? L""
                         : i + 1 == uses.size() ? L" and "
                                                : L", ") +
                        ApplicationSettingsName(uses[i].first);
    const std::string sectionName = HtmlText(Base::SectionName(section));
    // As the page's header names it: "P&ID - Scale Factors".
    const std::string title = HtmlText(applications) + " - " + sectionName;

    std::string body =
        "<p>" + SectionPurpose(section) + "</p>\n<p>Open it in a standard's window: ";
    for (std::size_t i = 0; i < uses.size(); ++i)
        body += (i == 0 ? "" : " or ") + std::string("<em>") +
                HtmlText(ApplicationSettingsName(uses[i].first)) + " Settings &gt; " + sectionName +
                "</em>";
    body += " in the page tree.</p>\n";
    body +=
        Figure("settings-page.png", "A settings page: P&amp;ID Settings, Dimensioning Variables");
    body += SettingsPageUse();

    // Applications whose rows are the same share one table.
    std::vector<std::pair<std::wstring, std::vector<SCatalogueRow>>> tables;
    for (const auto& [application, used] : uses) {
        auto rows = SectionRows(application, used);
        const auto same = std::find_if(tables.begin(), tables.end(), [&](const auto& table) {
            return SameRows(table.second, rows);
        });
        if (same != tables.end())
            same->first += L" and " + ApplicationSettingsName(application);
        else
            tables.emplace_back(ApplicationSettingsName(application), std::move(rows));
    }
    for (const auto& [names, rows] : tables) {
        body += "<h2>" +
                (tables.size() == 1 ? std::string("The variables")
                                    : "The variables of " + HtmlText(names)) +
                "</h2>\n<p>In the order the page shows them. The short name is the one the "
                "drafting application knows the variable by, where it has one; imperial "
                "defaults are in inches.</p>\n" +
                VariablesTable(rows);
    }
    return Page(title, body);
}

std::string LayersPage(int application) {
    const std::string name = HtmlText(ApplicationName(application));
    const std::string title = HtmlText(LayersHeader(application));
    std::string body =
        "<p>The layers " + name +
        " draws on in this standard: for each role of the application (the "
        "<em>Description</em>) the layer's name, colour, linetype and lineweight. Open it in a "
        "standard's window: <em>" +
        HtmlText(ApplicationSettingsName(application)) +
        " Settings &gt; Layers</em> in the page tree.</p>\n";
    body += Figure("page-layers.png", "The layers page of P&amp;ID");
    body += R"(<h2>Columns</h2>
<dl>
<dt>Description</dt><dd>What the layer is for; it cannot be changed.</dd>
<dt>Layer Name</dt><dd>Typed (double-click, <kbd>F2</kbd> or start typing). A name must not be empty or
contain any of <code>&lt; &gt; / \ " : ; ? * | , = `</code>, and has at most 255 characters; another name
is refused with <q>Invalid layer name</q> and the old one stays.</dd>
<dt>Color</dt><dd>A click opens <em>Select Color</em>, the 255 colours of the AutoCAD Color Index (ACI)
with the chosen one's number and red, green and blue values. The cell shows a named colour as
<q>Red (1)</q>, another palette colour as <q>Color 8</q>.</dd>
<dt>Linetype</dt><dd>Picked from CONTINUOUS and AutoCAD's linetypes, each also at half size
(<q>2</q>) and double size (<q>X2</q>).</dd>
<dt>Lineweight</dt><dd>Picked from <q>Default</q> and AutoCAD's lineweights in millimetres.</dd>
</dl>
<h2>Buttons</h2>
<dl>
<dt>Restore Defaults</dt><dd>Puts every layer back to the default set below; nothing is saved until
Apply.</dd>
<dt>Apply</dt><dd>Saves the changes into the standard's <code>Layers.ini</code>. It is enabled exactly
while something is unsaved; when the file cannot be written, the page says why and the changes stay.</dd>
<dt>Help...</dt><dd>Opens this page.</dd>
</dl>
<p>Closing the standard's window with unsaved changes asks <q>Standard '&lt;name&gt;' )" +
            name + R"( layers have been modified. Do you want to save your changes?</q></p>
)";
    body += "<h2>The default layers of " + name +
            "</h2>\n<table class=\"variables\">\n<thead><tr><th>Description</th><th>Layer "
            "Name</th><th>Color</th><th>Linetype</th><th>Lineweight</th></tr></thead>\n<tbody>\n";
    CVX2D_ProjectLayers layers(application);
    layers.SetDefaults();
    for (std::size_t i = 0; i < layers.GetCount(); ++i) {
        body += "<tr><td>" + HtmlText(CVX2D_ProjectLayers::GetDescription(layers.GetKeys()[i])) +
                "</td><td><code>" + HtmlText(layers.GetNames()[i]) + "</code></td><td>" +
                HtmlText(LayerColorText(layers.GetColors()[i])) + "</td><td>" +
                HtmlText(layers.GetLinetypes()[i]) + "</td><td>" +
                HtmlText(LineweightText(layers.GetLineweights()[i])) + "</td></tr>\n";
    }
    body += "</tbody>\n</table>\n";
    return Page(title, body);
}

} // namespace

std::wstring HelpTopicPage(const std::wstring& topic) {
    return topic.starts_with(L"::/") ? topic.substr(3) : topic;
}

std::string HtmlText(const std::wstring& text) {
    std::string html;
    for (const char c : U(text)) {
        switch (c) {
        case '&':
            html += "&amp;";
            break;
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        case '"':
            html += "&quot;";
            break;
        default:
            html += c;
        }
    }
    return html;
}

std::map<std::wstring, std::string> GeneratedHelpPages() {
    // The sections of each topic, in application order: a topic may serve
    // more than one application.
    std::map<std::wstring, std::vector<std::pair<int, int>>> topics;
    for (const int application : kApplications) {
        for (const SCatalogueSection& section : SettingsCatalogue(application)) {
            const std::wstring topic = SettingsHelpTopic(application, section.id);
            if (!topic.empty())
                topics[HelpTopicPage(topic)].emplace_back(application, section.id);
        }
    }
    std::map<std::wstring, std::string> pages;
    for (const auto& [page, uses] : topics)
        pages[page] = SettingsPage(uses);
    for (const int application : kApplications)
        pages[HelpTopicPage(LayersHelpTopic(application))] = LayersPage(application);
    return pages;
}
