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

namespace {

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

std::wstring ChoicesText(const Base::CVariable& variable) {
    std::wstring text;
    for (const EPrjVal choice : variable.m_arrChoices)
        text += fmt::format(L"\n  {} {}", static_cast<int>(choice), PrjValText(choice));
    return text;
}

// A choice typed as its label or its number; false when it is neither.
bool StoreChoice(Base::CVariable& variable, const std::wstring& value) {
    if (StoreSettingsText(variable, value))
        return true;
    try {
        std::size_t used = 0;
        const int number = std::stoi(value, &used);
        for (const EPrjVal choice : variable.m_arrChoices) {
            if (used == value.size() && choice == number) {
                variable.SetChoice(number, false);
                return true;
            }
        }
    } catch (const std::exception&) {
    }
    return false;
}

void Set(const SCliOptions& options, const SArgs& a) {
    const int application = ParseApplicationArgument(a.application);
    const int variableId = ParseInt(W(a.variable), L"VARIABLE_ID");
    const std::wstring value = W(a.value);
    const std::wstring name = ApplicationSettingsName(application);
    SCore core(options);
    const std::wstring what =
        fmt::format(L"Error saving {} settings of standard '{}'.", name, core.NameOf(a.id));
    RequireStorable(value, what);
    auto settings = LoadSettings(core, a.id, application);
    if (variableId == Base::kTitleId)
        throw CCliFailure(fmt::format(L"Variable {} is a sub-heading of a section, not a setting: "
                                      L"it cannot be changed.",
                                      variableId),
                          2);
    Base::CVariable* variable = settings->FindVariable(variableId);
    if (!variable)
        throw CCliFailure(fmt::format(L"{} settings have no variable {}.", name, variableId), 2);
    if (variable->m_nKind == Base::eChoice) {
        if (!StoreChoice(*variable, value))
            throw CCliFailure(fmt::format(L"'{}' is not a choice of variable {} \"{}\". Choices:{}",
                                          value, variableId, SettingsVariableLabel(variableId),
                                          ChoicesText(*variable)),
                              2);
    } else {
        // A toggle's cell offers "On" and "Off" only; anything else typed
        // here would silently mean Off.
        if (variable->m_nKind == Base::eBool && value != L"On" && value != L"Off")
            throw CCliFailure(
                fmt::format(L"'{}' is not a value of the toggle {} \"{}\": give On or Off.", value,
                            variableId, SettingsVariableLabel(variableId)),
                2);
        StoreSettingsText(*variable, value);
    }
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

} // namespace

void AddSettingsCommands(CLI::App& app, SCliContext& context) {
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
               "or Off for a toggle, a number for integers and reals (a "
               "non-number is 0), a choice's label or number, else the text itself");
    AddStandardId(set, args->id);
    set->add_option("APP", args->application, "Application")->required();
    set->add_option("VARIABLE_ID", args->variable, "Variable id")->required();
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
