// borders show|set and layers show|set: a standard's sheet sizes with their
// border and revision drawings and drawing limits, and each application's
// layers with colour, linetype and lineweight.
#include "cli/CliCore.h"
#include "contents/ColorPalette.h"
#include "contents/ProjectBorders.h"
#include "contents/ProjectLayers.h"
#include "datafile/Application.h"
#include "datafile/Text.h"
#include "editors/BordersEditor.h"
#include "editors/LayersEditor.h"
#include "store/GeneralSettings.h"

#include <algorithm>
#include <fmt/xchar.h>

namespace cli {

namespace drawing_data_verbs {

// The column a FIELD argument names; any other name is bad usage.
template <typename EColumn, std::size_t N>
EColumn FieldNamed(const std::pair<const char*, EColumn> (&fields)[N], const std::string& name) {
    std::string names;
    for (const auto& [text, column] : fields) {
        if (name == text)
            return column;
        names += (names.empty() ? "" : ", ") + std::string(text);
    }
    throw CCliFailure(W("Unknown field '" + name + "'. Fields: " + names), 2);
}

// ---------------------------------------------------------------- borders

using B = CVX2D_ProjectBorders;

struct SBordersArgs {
    std::int32_t id = 0;
    std::string size, field, value;
};

std::wstring SizeNames() {
    std::wstring names;
    for (int size = 0; size < kDwgCount; ++size)
        names += (names.empty() ? L"" : L", ") + DwgKey(static_cast<EDwg>(size));
    return names;
}

void LoadBorders(SCore& core, B& borders, std::int32_t id, const std::wstring& what) {
    core.FolderOf(id, what);
    borders.Load(borders.GetFilePath());
}

COutput BordersShow(const SCliOptions& options, const SBordersArgs& a) {
    SCore core(options);
    B borders(core.projects, a.id);
    LoadBorders(core, borders, a.id,
                fmt::format(L"Error reading borders of standard '{}'.", core.NameOf(a.id)));
    COutput output({{"size"}, {"border"}, {"limits_min"}, {"limits_max"}, {"revision"}});
    for (int index = 0; index < kDwgCount; ++index) {
        const EDwg size = static_cast<EDwg>(index);
        output.Add({DwgKey(size), borders.GetBorderFile(size), borders.GetLimitsMin(size),
                    borders.GetLimitsMax(size), borders.GetRevisionFile(size)});
    }
    return output;
}

// The value goes through the border page's editor, so that it is checked,
// trimmed and normalised exactly as a typed cell is.
void BordersSet(const SCliOptions& options, const SBordersArgs& a) {
    EDwg size = eDwgA;
    if (!DwgFromKey(W(a.size), size))
        throw CCliFailure(fmt::format(L"Unknown size '{}'. Sizes: {}", W(a.size), SizeNames()), 2);
    const std::pair<const char*, EBorderColumn> fields[] = {
        {"border", EBorderColumn::Border},
        {"min", EBorderColumn::LimitsMin},
        {"max", EBorderColumn::LimitsMax},
        {"revision", EBorderColumn::Revision},
    };
    const EBorderColumn field = FieldNamed(fields, a.field);
    const std::wstring value = W(a.value);

    SCore core(options);
    const std::wstring what =
        fmt::format(L"Error saving borders of standard '{}'.", core.NameOf(a.id));
    RequireStorable(value, what);
    core.FolderOf(a.id, what);
    CRecordingPrompter prompter(core.prompter);
    CBordersEditor editor(core.projects, prompter);
    if (!editor.Open(a.id))
        prompter.Fail(what);
    const auto row =
        static_cast<std::size_t>(std::find_if(editor.Rows().begin(), editor.Rows().end(),
                                              [&](const SBorderRow& r) { return r.size == size; }) -
                                 editor.Rows().begin());
    if (!editor.SetCellText(row, field, value))
        prompter.Fail(what, 2);
    if (!editor.Apply())
        prompter.Fail(what);
}

// ----------------------------------------------------------------- layers

using L = CVX2D_ProjectLayers;

struct SLayersArgs {
    std::int32_t id = 0;
    std::string application, key, field, value;
};

// The standard's layers of one application, with its sections named as the
// standard's version names the application's files.
L LoadLayers(SCore& core, std::int32_t id, int application, const std::wstring& what) {
    core.FolderOf(id, what);
    CVX2D_GeneralSettings general;
    if (!general.Load(core.projects, id))
        throw CCliFailure(what);
    L layers(core.projects, id, application, general.m_nProjectVersion);
    layers.Load(layers.GetFilePath());
    return layers;
}

COutput LayersShow(const SCliOptions& options, const SLayersArgs& a) {
    const int application = ParseApplicationArgument(a.application);
    SCore core(options);
    const L layers = LoadLayers(core, a.id, application,
                                fmt::format(L"Error reading {} layers of standard '{}'.",
                                            ApplicationName(application), core.NameOf(a.id)));
    COutput output({{"key"}, {"description"}, {"name"}, {"color"}, {"linetype"}, {"lineweight"}});
    for (std::size_t i = 0; i < layers.GetCount(); ++i) {
        const std::int32_t key = layers.GetKeys()[i];
        output.Add({L::FormatKey(key), L::GetDescription(key), layers.GetNames()[i],
                    L::FormatColor(layers.GetColors()[i]), layers.GetLinetypes()[i],
                    std::int64_t{layers.GetLineweights()[i]}});
    }
    return output;
}

// A number 0-255 written with digits only.
bool ParseByte(std::wstring_view text, int& value) {
    if (text.empty() || text.size() > 3)
        return false;
    for (wchar_t c : text) {
        if (c < L'0' || c > L'9')
            return false;
    }
    value = WToI(text);
    return value <= 255;
}

// The palette position a colour argument names: a bare position, or
// "R,G,B" of a palette colour (its first position). Nothing else is a
// colour the layers page can give.
int ParseColorArgument(const std::wstring& text) {
    std::vector<int> parts;
    std::size_t start = 0;
    for (;;) {
        const std::size_t comma = text.find(L',', start);
        int value = 0;
        const std::wstring_view part = std::wstring_view(text).substr(
            start, comma == std::wstring::npos ? std::wstring::npos : comma - start);
        if (!ParseByte(TrimBlanks(part), value))
            parts.clear();
        else
            parts.push_back(value);
        if (parts.empty() || comma == std::wstring::npos)
            break;
        start = comma + 1;
    }
    if (parts.size() == 1 && parts[0] >= 1)
        return parts[0];
    if (parts.size() == 3) {
        const SLayerColor color =
            LayerColorOf({static_cast<std::uint8_t>(parts[0]), static_cast<std::uint8_t>(parts[1]),
                          static_cast<std::uint8_t>(parts[2])});
        if (color.index >= 1)
            return color.index;
    }
    throw CCliFailure(fmt::format(L"'{}' is not a colour of the palette: give a palette index "
                                  L"1-255, or R,G,B of a palette colour.",
                                  text),
                      2);
}

std::wstring LineweightNames() {
    std::wstring names;
    for (std::int32_t lineweight : StandardLineweights())
        names += (names.empty() ? L"" : L", ") + fmt::format(L"{}", lineweight);
    return names;
}

// The value goes through the layers page's editor, so that only what the
// page offers is stored: its layer names, palette colours, linetypes and
// lineweights.
void LayersSet(const SCliOptions& options, const SLayersArgs& a) {
    const int application = ParseApplicationArgument(a.application);
    const std::int32_t key = ParseInt(W(a.key), L"KEY");
    const std::wstring value = W(a.value);
    const std::pair<const char*, ELayerColumn> fields[] = {
        {"name", ELayerColumn::Name},
        {"color", ELayerColumn::Color},
        {"linetype", ELayerColumn::Linetype},
        {"lineweight", ELayerColumn::Lineweight},
    };
    const ELayerColumn field = FieldNamed(fields, a.field);
    int colorIndex = 0;
    std::wstring cell = value;
    if (field == ELayerColumn::Color) {
        colorIndex = ParseColorArgument(value);
    } else if (field == ELayerColumn::Lineweight) {
        // "layers show" gives hundredths of a millimetre, -3 for the default.
        const std::wstring trimmed = TrimBlanks(value);
        if (!trimmed.empty() && trimmed.find_first_not_of(L"-0123456789") == std::wstring::npos)
            cell = LineweightText(ParseInt(trimmed, L"lineweight"));
    }

    SCore core(options);
    const std::wstring what = fmt::format(L"Error saving {} layers of standard '{}'.",
                                          ApplicationName(application), core.NameOf(a.id));
    RequireStorable(value, what);
    core.FolderOf(a.id, what);
    CRecordingPrompter prompter(core.prompter);
    CLayersEditor editor(core.projects, prompter);
    if (!editor.Open(a.id, application))
        prompter.Fail(what);
    const auto& rows = editor.Rows();
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [&](const SLayerRow& row) { return row.key == key; });
    if (found == rows.end())
        throw CCliFailure(fmt::format(L"{}\n\nThere is no {} layer with key {}.", what,
                                      ApplicationName(application), L::FormatKey(key)),
                          2);
    const auto row = static_cast<std::size_t>(found - rows.begin());
    const bool stored = field == ELayerColumn::Color ? editor.SetColorIndex(row, colorIndex)
                                                     : editor.SetCellText(row, field, cell);
    if (!stored) {
        if (prompter.Told())
            prompter.Fail(what, 2);
        if (field == ELayerColumn::Linetype)
            throw CCliFailure(fmt::format(L"'{}' is not one of the linetypes the layers page "
                                          L"offers, such as CONTINUOUS, DASHED or HIDDEN2.",
                                          value),
                              2);
        if (field == ELayerColumn::Lineweight)
            throw CCliFailure(fmt::format(L"'{}' is not a lineweight the layers page offers: "
                                          L"give one of {} (hundredths of a millimetre, -3 "
                                          L"for the default).",
                                          value, LineweightNames()),
                              2);
        throw CCliFailure(
            fmt::format(L"'{}' cannot be stored as the {} of a layer.", value, W(a.field)), 2);
    }
    if (!editor.Apply())
        prompter.Fail(what);
}

} // namespace drawing_data_verbs

void AddBordersCommands(CLI::App& app, SCliContext& context) {
    using namespace drawing_data_verbs;
    auto args = std::make_shared<SBordersArgs>();
    SCliContext* ctx = &context;
    auto* group =
        AddGroup(app, "borders",
                 "A standard's border and revision drawings and drawing limits per sheet size");
    auto* show = group->add_subcommand(
        "show", "SIZE, BORDER, LIMITS_MIN, LIMITS_MAX, REVISION of sizes A, B, C, D, E, A0-A4");
    AddStandardId(show, args->id);
    show->callback(
        [ctx, args] { ctx->Print([ctx, args] { return BordersShow(ctx->options, *args); }); });
    auto* set = group->add_subcommand(
        "set", "Change one value of one size; FIELD: border, min, max (a limit \"x,y\"), revision");
    AddStandardId(set, args->id);
    set->add_option("SIZE", args->size, "A sheet size: A, B, C, D, E, A0, A1, A2, A3 or A4")
        ->required();
    set->add_option("FIELD", args->field, "border, min, max or revision")->required();
    set->add_option("VALUE", args->value,
                    "A drawing file name, or a limit \"x,y\" such as 22.0,17.0")
        ->required();
    set->callback([ctx, args] { ctx->Run([ctx, args] { BordersSet(ctx->options, *args); }); });
}

void AddLayersCommands(CLI::App& app, SCliContext& context) {
    using namespace drawing_data_verbs;
    auto args = std::make_shared<SLayersArgs>();
    SCliContext* ctx = &context;
    auto* group = AddGroup(
        app, "layers", "A standard's layers per application: name, colour, linetype, lineweight");
    auto* show = group->add_subcommand(
        "show", "KEY, DESCRIPTION, NAME, R,G,B,INDEX, LINETYPE, LINEWEIGHT of every layer");
    AddStandardId(show, args->id);
    show->add_option("APP", args->application, "1-4 or ELECTRIC, PID, ISOMETRIC, ORTHO")
        ->required();
    show->callback(
        [ctx, args] { ctx->Print([ctx, args] { return LayersShow(ctx->options, *args); }); });
    auto* set = group->add_subcommand(
        "set", "Change one value of one layer, as the layers page would: only its names, "
               "palette colours, linetypes and lineweights are taken");
    AddStandardId(set, args->id);
    set->add_option("APP", args->application, "1-4 or ELECTRIC, PID, ISOMETRIC, ORTHO")->required();
    set->add_option("KEY", args->key, "The layer's role number, such as 14 or 014")->required();
    set->add_option("FIELD", args->field, "name, color, linetype or lineweight")->required();
    set->add_option("VALUE", args->value,
                    "A layer name; a palette index 1-255 or R,G,B of a palette colour; a linetype; "
                    "a lineweight in hundredths of a millimetre (-3 the default)")
        ->required();
    set->callback([ctx, args] { ctx->Run([ctx, args] { LayersSet(ctx->options, *args); }); });
}

} // namespace cli
