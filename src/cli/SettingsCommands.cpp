// settings show|set|catalogue: a drafting application's settings variables,
// of a standard or as the catalogue gives them.
#include "cli/CliCore.h"
#include "contents/ProjectSettings.h"
#include "contents/SettingsCatalogue.h"
#include "contents/SettingsText.h"
#include "datafile/Application.h"
#include "datafile/Text.h"
#include "store/GeneralSettings.h"

#include <fmt/xchar.h>

namespace cli {

namespace settings_verbs {

using Base = CVX2D_ProjectSettingsBase;

struct SArgs : SSectionArgs {
    std::string variable;
    std::string value;
    std::string units = "metric";
};

// Every variable of the settings (of one section when `section` is not -1)
// in catalogue order.
COutput Records(const Base& settings, int section) {
    if (section >= 0 && !settings.FindSection(section)) {
        std::wstring names;
        for (const auto& candidate : settings.Sections())
            names += fmt::format(L"\n  {} {}", candidate.m_nId, Base::SectionName(candidate.m_nId));
        throw CCliFailure(fmt::format(L"{} settings have no section {} \"{}\". Sections:{}",
                                      ApplicationSettingsName(settings.GetApplication()), section,
                                      Base::SectionName(section), names),
                          2);
    }
    COutput output(
        {{"section_id"}, {"variable_id"}, {"label"}, {"key"}, {"kind"}, {"value"}, {"clean"}});
    for (const auto& candidate : settings.Sections()) {
        if (section >= 0 && candidate.m_nId != section)
            continue;
        for (const auto& variable : candidate.m_arrVariables)
            output.Add({std::int64_t{candidate.m_nId}, std::int64_t{variable.m_nId},
                        SettingsVariableLabel(variable.m_nId), variable.m_strKey,
                        std::int64_t{variable.m_nKind}, SettingsValueText(variable),
                        variable.m_bClean});
    }
    return output;
}

// The standard's settings as the program has them: built with the
// standard's working units, then loaded (which migrates and saves).
std::unique_ptr<Base> LoadSettings(SCore& core, std::int32_t id, int application) {
    const std::wstring what = fmt::format(L"Error reading {} settings of standard '{}'.",
                                          ApplicationSettingsName(application), core.NameOf(id));
    core.FolderOf(id, what);
    CVX2D_GeneralSettings general;
    if (!general.Load(core.projects, id))
        throw CCliFailure(what);
    auto settings = NewProjectSettings(application);
    settings->BuildCatalogue(general.m_nWorkingUnits);
    settings->Load(general);
    return settings;
}

COutput Show(const SCliOptions& options, const SArgs& a) {
    const int application = ParseApplicationArgument(a.application);
    const int section = ParseSettingsSection(a.section);
    SCore core(options);
    return Records(*LoadSettings(core, a.id, application), section);
}

// The variable VARIABLE names: its id, or its key in any letter case. A
// section's sub-heading is no setting; anything else unknown is bad usage.
Base::CVariable& FindVariable(Base& settings, const std::string& typed) {
    const std::wstring name = ApplicationSettingsName(settings.GetApplication());
    const std::wstring text = TrimBlanks(W(typed));
    Base::CVariable* found = nullptr;
    if (!text.empty() && text.find_first_not_of(L"-0123456789") == std::wstring::npos) {
        const int variableId = ParseInt(text, L"VARIABLE");
        if (variableId == Base::kTitleId)
            throw CCliFailure(fmt::format(L"Variable {} is a sub-heading of a section, not a "
                                          L"setting: it cannot be changed.",
                                          variableId),
                              2);
        found = settings.FindVariable(variableId);
    } else {
        std::vector<std::int32_t> ids;
        for (auto& section : settings.Sections()) {
            for (auto& variable : section.m_arrVariables) {
                if (!variable.IsTitle() && EqualsNoCase(variable.m_strKey, text)) {
                    found = &variable;
                    ids.push_back(variable.m_nId);
                }
            }
        }
        if (ids.size() > 1) {
            std::wstring list;
            for (const std::int32_t id : ids)
                list += fmt::format(L"{}{}", list.empty() ? L"" : L", ", id);
            throw CCliFailure(fmt::format(L"{} settings have more than one variable with the key "
                                          L"'{}': give one of the ids {}.",
                                          name, text, list),
                              2);
        }
    }
    if (!found)
        throw CCliFailure(fmt::format(L"{} settings have no variable '{}': give a variable id or "
                                      L"key (see 'settings show').",
                                      name, text),
                          2);
    return *found;
}

void Set(const SCliOptions& options, const SArgs& a) {
    const int application = ParseApplicationArgument(a.application);
    const std::wstring value = W(a.value);
    const std::wstring name = ApplicationSettingsName(application);
    SCore core(options);
    const std::wstring what =
        fmt::format(L"Error saving {} settings of standard '{}'.", name, core.NameOf(a.id));
    RequireStorable(value, what);
    auto settings = LoadSettings(core, a.id, application);
    Base::CVariable& variable = FindVariable(*settings, a.variable);
    std::wstring allowed;
    if (!StoreTypedSettingsText(variable, value, allowed))
        throw CCliFailure(fmt::format(L"'{}' is not a value of variable {} \"{}\": give {}", value,
                                      variable.m_nId, SettingsVariableLabel(variable.m_nId),
                                      allowed),
                          2);
    if (settings->IsModified() && !settings->Save())
        throw CCliFailure(what);
}

COutput Catalogue(const SArgs& a) {
    const int application = ParseApplicationArgument(a.application);
    const int section = ParseSettingsSection(a.section);
    auto settings = NewProjectSettings(application);
    settings->BuildCatalogue(a.units == "imperial" ? 1 : 0);
    return Records(*settings, section);
}

const char* const kColumns =
    "SECTION_ID, VARIABLE_ID, LABEL, KEY, KIND (1 toggle, 2 string, 3 font, 4 integer, 5 real, "
    "6 folder, 7 text, 8 choice), VALUE, CLEAN";

} // namespace settings_verbs

void AddSettingsCommands(CLI::App& app, SCliContext& context) {
    using namespace settings_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    auto* group =
        AddGroup(app, "settings",
                 "A drafting application's settings variables (APP: 1-4 or ELECTRIC, PID, "
                 "ISOMETRIC, ORTHO)");

    auto* show = group->add_subcommand(
        "show", std::string("Every settings variable of a standard in catalogue order: ") +
                    kColumns +
                    ". Loading may first complete and save settings added by later "
                    "versions, as the desktop program does.");
    AddStandardId(show, args->id);
    show->add_option("APP", args->application, "Application")->required();
    show->add_option("--section", args->section, "Only this section (id 0-8 or name)");
    show->callback([ctx, args] { ctx->Print([ctx, args] { return Show(ctx->options, *args); }); });

    auto* set = group->add_subcommand(
        "set", "Change one settings variable of a standard and save it. VALUE by kind: On "
               "or Off for a toggle, a whole number for integers, a number for reals, a "
               "choice's label (in any letter case) or number, else the text itself");
    AddStandardId(set, args->id);
    set->add_option("APP", args->application, "Application")->required();
    set->add_option("VARIABLE", args->variable, "Variable id or key (see settings show)")
        ->required();
    set->add_option("VALUE", args->value, "New value")->required();
    set->callback([ctx, args] { ctx->Run([ctx, args] { Set(ctx->options, *args); }); });

    auto* catalogue = group->add_subcommand(
        "catalogue",
        std::string("An application's catalogue at its defaults, no standard needed: ") + kColumns);
    catalogue->add_option("APP", args->application, "Application")->required();
    catalogue->add_option("--units", args->units, "metric (default) or imperial defaults")
        ->check(CLI::IsMember({"metric", "imperial"}));
    catalogue->add_option("--section", args->section, "Only this section (id 0-8 or name)");
    catalogue->callback([ctx, args] { ctx->Print([args] { return Catalogue(*args); }); });
}

} // namespace cli
