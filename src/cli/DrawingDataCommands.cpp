// borders show|set and layers show|set: a standard's sheet sizes with their
// border and revision drawings and drawing limits, and each application's
// layers with colour, linetype and lineweight.
#include "cli/CliCore.h"
#include "contents/Application.h"
#include "contents/ColorPalette.h"
#include "contents/ProjectBorders.h"
#include "contents/ProjectLayers.h"
#include "datafile/Text.h"
#include "store/GeneralSettings.h"

#include <fmt/xchar.h>

namespace cli {

namespace {

// ---------------------------------------------------------------- borders

using B = CVX2D_ProjectBorders;

struct SBorderField {
    const char* name;
    void (B::*set)(EDwg, const std::wstring&);
};

constexpr SBorderField kBorderFields[] = {
    {"border", &B::SetBorderFile},
    {"min", &B::SetLimitsMin},
    {"max", &B::SetLimitsMax},
    {"revision", &B::SetRevisionFile},
};

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

void BordersSet(const SCliOptions& options, const SBordersArgs& a) {
    EDwg size = eDwgA;
    if (!DwgFromKey(W(a.size), size))
        throw CCliFailure(fmt::format(L"Unknown size '{}'. Sizes: {}", W(a.size), SizeNames()), 2);
    const SBorderField* field = nullptr;
    for (const auto& candidate : kBorderFields) {
        if (a.field == candidate.name)
            field = &candidate;
    }
    if (!field)
        throw CCliFailure(W("Unknown field '" + a.field + "'. Fields: border, min, max, revision"),
                          2);
    const std::wstring value = W(a.value);
    const bool limit = field->set == &B::SetLimitsMin || field->set == &B::SetLimitsMax;
    if (limit && !B::IsLimitText(value))
        throw CCliFailure(fmt::format(L"'{}' is not a drawing limit: give two numbers separated "
                                      L"by a comma, x then y, such as 22.0,17.0.",
                                      value),
                          2);
    if (TrimBlanks(value).empty())
        throw CCliFailure(W("The " + a.field + " file name cannot be empty."), 2);

    SCore core(options);
    const std::wstring what =
        fmt::format(L"Error saving borders of standard '{}'.", core.NameOf(a.id));
    RequireStorable(value, what);
    B borders(core.projects, a.id);
    LoadBorders(core, borders, a.id, what);
    (borders.*field->set)(size, value);
    if (!borders.Save())
        throw CCliFailure(what);
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

// "R,G,B" takes the first palette position of that colour as its index; a
// bare palette index takes that entry's colour and keeps the index chosen.
SLayerColor ParseColorArgument(const std::wstring& text) {
    std::vector<int> parts;
    std::size_t start = 0;
    for (;;) {
        const std::size_t comma = text.find(L',', start);
        int value = 0;
        const std::wstring_view part = std::wstring_view(text).substr(
            start, comma == std::wstring::npos ? std::wstring::npos : comma - start);
        if (!ParseByte(part, value))
            parts.clear();
        else
            parts.push_back(value);
        if (parts.empty() || comma == std::wstring::npos)
            break;
        start = comma + 1;
    }
    if (parts.size() == 1) {
        const SAciRgb rgb = AciPalette()[static_cast<std::size_t>(parts[0])];
        return {rgb, parts[0]};
    }
    if (parts.size() == 3)
        return LayerColorOf({static_cast<std::uint8_t>(parts[0]),
                             static_cast<std::uint8_t>(parts[1]),
                             static_cast<std::uint8_t>(parts[2])});
    throw CCliFailure(fmt::format(L"'{}' is not a colour: give R,G,B with each part 0-255, or "
                                  L"a palette index 0-255.",
                                  text),
                      2);
}

void LayersSet(const SCliOptions& options, const SLayersArgs& a) {
    const int application = ParseApplicationArgument(a.application);
    const std::int32_t key = ParseInt(W(a.key), L"KEY");
    const std::wstring value = W(a.value);
    std::function<void(L&, std::size_t)> change;
    if (a.field == "name" || a.field == "linetype") {
        if (TrimBlanks(value).empty())
            throw CCliFailure(W("The layer " + a.field + " cannot be empty."), 2);
        change = [&a, value](L& layers, std::size_t at) {
            if (a.field == "name")
                layers.SetName(at, value);
            else
                layers.SetLinetype(at, value);
        };
    } else if (a.field == "color") {
        const SLayerColor color = ParseColorArgument(value);
        change = [color](L& layers, std::size_t at) { layers.SetColor(at, color); };
    } else if (a.field == "lineweight") {
        const std::int32_t lineweight = ParseInt(value, L"lineweight");
        change = [lineweight](L& layers, std::size_t at) { layers.SetLineweight(at, lineweight); };
    } else {
        throw CCliFailure(
            W("Unknown field '" + a.field + "'. Fields: name, color, linetype, lineweight"), 2);
    }

    SCore core(options);
    const std::wstring what = fmt::format(L"Error saving {} layers of standard '{}'.",
                                          ApplicationName(application), core.NameOf(a.id));
    RequireStorable(value, what);
    L layers = LoadLayers(core, a.id, application, what);
    const int at = layers.Find(key);
    if (at < 0)
        throw CCliFailure(fmt::format(L"{}\n\nThere is no {} layer with key {}.", what,
                                      ApplicationName(application), L::FormatKey(key)));
    change(layers, static_cast<std::size_t>(at));
    if (!layers.Save())
        throw CCliFailure(what);
}

} // namespace

void AddBordersCommands(CLI::App& app, SCliContext& context) {
    auto args = std::make_shared<SBordersArgs>();
    SCliContext* ctx = &context;
    auto* group = app.add_subcommand(
        "borders", "A standard's border and revision drawings and drawing limits per sheet size");
    group->require_subcommand(1);
    auto* show = group->add_subcommand(
        "show", "SIZE, BORDER, LIMITS_MIN, LIMITS_MAX, REVISION of sizes A, B, C, D, E, A0-A4");
    show->add_option("ID", args->id)->required();
    show->callback(
        [ctx, args] { ctx->Print([ctx, args] { return BordersShow(ctx->options, *args); }); });
    auto* set = group->add_subcommand(
        "set", "Change one value of one size; FIELD: border, min, max (a limit \"x,y\"), revision");
    set->add_option("ID", args->id)->required();
    set->add_option("SIZE", args->size)->required();
    set->add_option("FIELD", args->field)->required();
    set->add_option("VALUE", args->value)->required();
    set->callback([ctx, args] { ctx->Run([ctx, args] { BordersSet(ctx->options, *args); }); });
}

void AddLayersCommands(CLI::App& app, SCliContext& context) {
    auto args = std::make_shared<SLayersArgs>();
    SCliContext* ctx = &context;
    auto* group = app.add_subcommand(
        "layers", "A standard's layers per application: name, colour, linetype, lineweight");
    group->require_subcommand(1);
    auto* show = group->add_subcommand(
        "show", "KEY, DESCRIPTION, NAME, R,G,B,INDEX, LINETYPE, LINEWEIGHT of every layer");
    show->add_option("ID", args->id)->required();
    show->add_option("APP", args->application, "1-4 or ELECTRIC, PID, ISOMETRIC, ORTHO")
        ->required();
    show->callback(
        [ctx, args] { ctx->Print([ctx, args] { return LayersShow(ctx->options, *args); }); });
    auto* set = group->add_subcommand(
        "set", "Change one value of one layer; FIELD: name, color (R,G,B or a palette index "
               "0-255), linetype, lineweight");
    set->add_option("ID", args->id)->required();
    set->add_option("APP", args->application, "1-4 or ELECTRIC, PID, ISOMETRIC, ORTHO")->required();
    set->add_option("KEY", args->key, "The layer's role number, such as 14 or 014")->required();
    set->add_option("FIELD", args->field)->required();
    set->add_option("VALUE", args->value)->required();
    set->callback([ctx, args] { ctx->Run([ctx, args] { LayersSet(ctx->options, *args); }); });
}

} // namespace cli
