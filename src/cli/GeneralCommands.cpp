// general show|set: a standard's general settings, field by field.
#include "cli/CliCore.h"
#include "datafile/Text.h"
#include "editors/GeneralSettingsEditor.h"
#include "store/GeneralSettings.h"

#include <fmt/xchar.h>
#include <optional>

namespace cli {

namespace general_verbs {

using G = CVX2D_GeneralSettings;

struct SField {
    const char* name;
    std::function<CField(const G&)> get;
    // Empty for a field that cannot be changed.
    std::function<void(G&, const std::wstring&)> set;
    // A field the general settings page picks from a list: changed through
    // the page's editor, so only what the list offers is taken.
    std::optional<EGeneralField> listed = std::nullopt;
};

const std::vector<SField>& Fields() {
    auto number = [](const char* name, int G::*member) {
        return SField{
            name, [member](const G& g) { return CField{std::int64_t{g.*member}}; },
            [name, member](G& g, const std::wstring& v) { g.*member = ParseInt(v, W(name)); }};
    };
    auto text = [](const char* name, std::wstring G::*member) {
        return SField{name, [member](const G& g) { return CField{g.*member}; },
                      [member](G& g, const std::wstring& v) { g.*member = v; }};
    };
    auto listed = [](const char* name, int G::*member, EGeneralField field) {
        return SField{
            name, [member](const G& g) { return CField{std::int64_t{g.*member}}; }, {}, field};
    };
    auto drawings = [](const char* name, int application) {
        return SField{
            name, [application](const G& g) { return CField{g.GetDrawingsLocation(application)}; },
            [application](G& g, const std::wstring& v) { g.SetDrawingsLocation(application, v); }};
    };
    static const std::vector<SField> fields = {
        listed("working_units", &G::m_nWorkingUnits, EGeneralField::WorkingUnits),
        listed("displayed_units", &G::m_nDisplayedUnits, EGeneralField::DisplayedUnits),
        listed("rating_format", &G::m_nRatingsFormat, EGeneralField::RatingFormat),
        {"guid", [](const G& g) { return CField{GuidToText(g.m_guid)}; }, {}},
        number("version", &G::m_nProjectVersion),
        text("borders_folder", &G::m_strBordersLocation),
        text("templates_folder", &G::m_strTemplatesLocation),
        text("libraries_folder", &G::m_strLibrariesLocation),
        {"local_line_ini", [](const G& g) { return CField{g.m_bLocalLineIni}; },
         [](G& g, const std::wstring& v) {
             g.m_bLocalLineIni = ParseInt(v, L"local_line_ini") != 0;
         }},
        text("local_line_ini_path", &G::m_strLocalLineIniPath),
        drawings("drawings_electric", 1),
        drawings("drawings_pid", 2),
        drawings("drawings_isometric", 3),
        drawings("drawings_ortho", 4),
    };
    return fields;
}

std::string FieldNames() {
    std::string names;
    for (const auto& field : Fields())
        names += (names.empty() ? "" : ", ") + std::string(field.name);
    return names;
}

void Load(SCore& core, G& general, std::int32_t id) {
    const std::wstring what =
        fmt::format(L"Error reading general settings of standard '{}'.", core.NameOf(id));
    core.FolderOf(id, what);
    if (!general.Load(core.projects, id))
        throw CCliFailure(what);
}

struct SArgs {
    std::int32_t id = 0;
    std::string field, value;
};

COutput Show(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    G general;
    Load(core, general, a.id);
    COutput output({{"field"}, {"value"}});
    // JSON: one object of every field.
    nlohmann::ordered_json document = nlohmann::ordered_json::object();
    for (const auto& field : Fields()) {
        const CField value = field.get(general);
        output.Add({W(field.name), value});
        document[field.name] = COutput::Json(value);
    }
    output.SetJson(std::move(document));
    return output;
}

// A value of a list of the general settings page, by its code or its text.
void SetListed(SCore& core, std::int32_t id, EGeneralField field, const std::wstring& value,
               const std::wstring& what) {
    core.FolderOf(id, what);
    CRecordingPrompter prompter(core.prompter);
    CGeneralSettingsEditor editor(core.projects, prompter);
    if (!editor.Open(id))
        prompter.Fail(what);
    if (!editor.ChooseTyped(field, value)) {
        const SGeneralRow& row = editor.Row(field);
        const std::vector<int> codes = editor.Codes(field);
        std::wstring choices;
        for (std::size_t i = 0; i < codes.size(); ++i)
            choices += fmt::format(L"\n  {} {}", codes[i], row.choices[i]);
        throw CCliFailure(fmt::format(L"'{}' is not in the list of {}: give a code or a text of "
                                      L"the list:{}",
                                      value, row.label, choices),
                          2);
    }
    if (!editor.Apply())
        prompter.Fail(what);
}

void Set(const SCliOptions& options, const SArgs& a) {
    const SField* field = nullptr;
    for (const auto& candidate : Fields()) {
        if (a.field == candidate.name)
            field = &candidate;
    }
    if (!field)
        throw CCliFailure(W("Unknown field '" + a.field + "'. Fields: " + FieldNames()), 2);
    if (!field->set && !field->listed)
        throw CCliFailure(W("The field '" + a.field + "' cannot be changed."), 2);
    const std::wstring value = W(a.value);
    SCore core(options);
    const std::wstring what =
        fmt::format(L"Error saving general settings of standard '{}'.", core.NameOf(a.id));
    RequireStorable(value, what);
    if (field->listed) {
        SetListed(core, a.id, *field->listed, value, what);
        return;
    }
    G general;
    Load(core, general, a.id);
    field->set(general, value);
    if (!general.Save())
        throw CCliFailure(what);
}

} // namespace general_verbs

void AddGeneralCommands(CLI::App& app, SCliContext& context) {
    using namespace general_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    auto* group = AddGroup(app, "general", "A standard's general settings");
    auto* show = group->add_subcommand("show", "FIELD, VALUE of every general setting");
    AddStandardId(show, args->id);
    show->callback([ctx, args] { ctx->Print([ctx, args] { return Show(ctx->options, *args); }); });
    auto* set = group->add_subcommand("set", "Change one general setting; fields: " + FieldNames());
    AddStandardId(set, args->id);
    set->add_option("FIELD", args->field, "A field as general show names it")->required();
    set->add_option("VALUE", args->value, "The new value")->required();
    set->callback([ctx, args] { ctx->Run([ctx, args] { Set(ctx->options, *args); }); });
}

} // namespace cli
