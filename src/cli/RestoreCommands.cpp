// settings restore-defaults: a drafting application's settings sections, or
// its layers, back to the defaults of the standard's working units, saved at
// once as the desktop pages' "Restore Defaults" and "Apply" would.
#include "cli/CliCore.h"
#include "contents/ProjectLayers.h"
#include "contents/ProjectSettings.h"
#include "datafile/Application.h"
#include "datafile/Text.h"
#include "editors/LayersEditor.h"
#include "editors/SettingsEditor.h"
#include "store/GeneralSettings.h"

#include <fmt/xchar.h>

namespace cli {

namespace {

using SArgs = SSectionArgs;

CVX2D_GeneralSettings LoadGeneral(SCore& core, std::int32_t id, const std::wstring& what) {
    core.FolderOf(id, what);
    CVX2D_GeneralSettings general;
    if (!general.Load(core.projects, id))
        throw CCliFailure(what);
    return general;
}

void RestoreLayers(SCore& core, std::int32_t id, int application) {
    const std::wstring what =
        fmt::format(L"Error restoring the default {} layers of standard '{}'.",
                    ApplicationName(application), core.NameOf(id));
    const CVX2D_GeneralSettings general = LoadGeneral(core, id, what);
    CVX2D_ProjectLayers layers(core.projects, id, application, general.m_nProjectVersion);
    layers.Load(layers.GetFilePath());
    RestoreLayerDefaults(layers);
    if (!layers.Save())
        throw CCliFailure(what);
}

void RestoreSettings(SCore& core, std::int32_t id, int application, int section) {
    const std::wstring name = ApplicationSettingsName(application);
    const std::wstring what = fmt::format(
        L"Error restoring the default {} settings of standard '{}'.", name, core.NameOf(id));
    const CVX2D_GeneralSettings general = LoadGeneral(core, id, what);
    auto settings = NewProjectSettings(application);
    settings->BuildCatalogue(general.m_nWorkingUnits);
    settings->Load(general);
    if (!RestoreSettingsDefaults(*settings, section, general))
        throw CCliFailure(fmt::format(L"{} settings have no section {} \"{}\".", name, section,
                                      CVX2D_ProjectSettingsBase::SectionName(section)),
                          2);
    if (settings->IsModified() && !settings->Save())
        throw CCliFailure(what);
}

void Restore(const SCliOptions& options, const SArgs& a) {
    const int application = ParseApplicationArgument(a.application);
    const int section = ParseSettingsSection(a.section);
    SCore core(options);
    if (section == CVX2D_ProjectSettingsBase::eLayers)
        RestoreLayers(core, a.id, application);
    else
        RestoreSettings(core, a.id, application, section);
}

} // namespace

void AddRestoreCommands(CLI::App& app, SCliContext& context) {
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    CLI::App* settings = app.get_subcommand("settings");
    auto* restore = settings->add_subcommand(
        "restore-defaults",
        "Put a standard's settings back to the defaults of its working units and save them: "
        "one section, or every section of the application when SECTION is left out. SECTION "
        "Layers (5) restores the application's default layers instead.");
    AddStandardId(restore, args->id);
    restore->add_option("APP", args->application, "1-4 or ELECTRIC, PID (P&ID), ISOMETRIC, ORTHO")
        ->required();
    restore->add_option("SECTION", args->section, "Section id 0-8 or name");
    restore->callback([ctx, args] { ctx->Run([ctx, args] { Restore(ctx->options, *args); }); });
}

} // namespace cli
