// settings restore-defaults: a drafting application's settings sections, or
// its layers, back to the defaults of the standard's working units, saved at
// once as the desktop pages' "Restore Defaults" and "Apply" would.
#include "cli/CliCore.h"
#include "contents/ProjectLayers.h"
#include "contents/ProjectSettings.h"
#include "contents/SettingsText.h"
#include "datafile/Application.h"
#include "datafile/Text.h"
#include "editors/LayersEditor.h"
#include "editors/SettingsEditor.h"
#include "store/GeneralSettings.h"

#include <fmt/xchar.h>

namespace cli {

namespace restore_verbs {

struct SArgs : SSectionArgs {
    bool yes = false;
    bool dryRun = false;
};

// What a restore changes (or with --dry-run would change): SECTION, ID, KEY
// of each variable, or of each layer ("Layers", its key, its default name).
COutput Changes() {
    return COutput({{"section"}, {"id"}, {"key"}});
}

CVX2D_GeneralSettings LoadGeneral(SCore& core, std::int32_t id, const std::wstring& what) {
    core.FolderOf(id, what);
    CVX2D_GeneralSettings general;
    if (!general.Load(core.projects, id))
        throw CCliFailure(what);
    return general;
}

COutput RestoreLayers(SCore& core, const SArgs& a, int application) {
    const std::int32_t id = a.id;
    const std::wstring what =
        fmt::format(L"Error restoring the default {} layers of standard '{}'.",
                    ApplicationName(application), core.NameOf(id));
    const CVX2D_GeneralSettings general = LoadGeneral(core, id, what);
    CVX2D_ProjectLayers layers(core.projects, id, application, general.m_nProjectVersion);
    layers.Load(layers.GetFilePath());
    const CVX2D_ProjectLayers before = layers;
    RestoreLayerDefaults(layers);
    COutput output = Changes();
    const std::wstring section =
        CVX2D_ProjectSettingsBase::SectionName(CVX2D_ProjectSettingsBase::eLayers);
    for (std::size_t i = 0; i < layers.GetCount(); ++i) {
        if (layers.GetNames()[i] != before.GetNames()[i] ||
            !(layers.GetColors()[i] == before.GetColors()[i]) ||
            layers.GetLinetypes()[i] != before.GetLinetypes()[i] ||
            layers.GetLineweights()[i] != before.GetLineweights()[i])
            output.Add({section, layers.GetKeys()[i], layers.GetNames()[i]});
    }
    if (!a.dryRun && !layers.Save())
        throw CCliFailure(what);
    return output;
}

COutput RestoreSettings(SCore& core, const SArgs& a, int application, int section) {
    const std::int32_t id = a.id;
    const std::wstring name = ApplicationSettingsName(application);
    const std::wstring what = fmt::format(
        L"Error restoring the default {} settings of standard '{}'.", name, core.NameOf(id));
    const CVX2D_GeneralSettings general = LoadGeneral(core, id, what);
    auto settings = NewProjectSettings(application);
    settings->BuildCatalogue(general.m_nWorkingUnits);
    settings->Load(general);
    // The values as they are, to tell which the restore changes.
    std::vector<std::vector<std::wstring>> before;
    for (const auto& loaded : settings->Sections()) {
        before.emplace_back();
        for (const auto& variable : loaded.m_arrVariables)
            before.back().push_back(SettingsValueText(variable));
    }
    if (!RestoreSettingsDefaults(*settings, section, general))
        throw CCliFailure(fmt::format(L"{} settings have no section {} \"{}\".", name, section,
                                      CVX2D_ProjectSettingsBase::SectionName(section)),
                          2);
    COutput output = Changes();
    const auto& sections = settings->Sections();
    for (std::size_t s = 0; s < sections.size(); ++s) {
        const auto& variables = sections[s].m_arrVariables;
        for (std::size_t v = 0; v < variables.size(); ++v) {
            if (!variables[v].IsTitle() && SettingsValueText(variables[v]) != before[s][v])
                output.Add({CVX2D_ProjectSettingsBase::SectionName(sections[s].m_nId),
                            variables[v].m_nId, variables[v].m_strKey});
        }
    }
    if (!a.dryRun && settings->IsModified() && !settings->Save())
        throw CCliFailure(what);
    return output;
}

COutput Restore(const SCliOptions& options, const SArgs& a) {
    const int application = ParseApplicationArgument(a.application);
    const int section = ParseSettingsSection(a.section);
    SCore core(options);
    if (!a.dryRun) {
        using Base = CVX2D_ProjectSettingsBase;
        const std::wstring settings = ApplicationSettingsName(application) + L" settings";
        const std::wstring what =
            section == Base::eLayers ? ApplicationName(application) + L" layers"
            : section < 0            ? settings
                          : fmt::format(L"\"{}\" {}", Base::SectionName(section), settings);
        Confirm(a.yes,
                fmt::format(L"Put the {} of standard '{}' back to their defaults? The values they "
                            L"have now are lost.",
                            what, core.NameOf(a.id)),
                L"restore-defaults replaces the settings for good; confirm with --yes");
    }
    if (section == CVX2D_ProjectSettingsBase::eLayers)
        return RestoreLayers(core, a, application);
    return RestoreSettings(core, a, application, section);
}

} // namespace restore_verbs

void AddRestoreCommands(CLI::App& app, SCliContext& context) {
    using namespace restore_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    CLI::App* settings = app.get_subcommand("settings");
    auto* restore = settings->add_subcommand(
        "restore-defaults",
        "Put a standard's settings back to the defaults of its working units and save them: "
        "one section, or every section of the application when SECTION is left out. SECTION "
        "Layers (5) restores the application's default layers instead. Prints SECTION, ID, "
        "KEY of each value it changed.");
    AddStandardId(restore, args->id);
    restore->add_option("APP", args->application, "1-4 or ELECTRIC, PID (P&ID), ISOMETRIC, ORTHO")
        ->required();
    restore->add_option("SECTION", args->section, "Section id 0-8 or name");
    AddYes(restore, args->yes, "Confirm: the replaced values cannot be recovered");
    AddDryRun(restore, args->dryRun, "Only print SECTION, ID, KEY of what would change");
    restore->callback(
        [ctx, args] { ctx->Print([ctx, args] { return Restore(ctx->options, *args); }); });
}

} // namespace cli
