// specs ...: the register of pipe specs, a standard's checks, the specs'
// folders and where the drafting applications are told to find them.
#include "cli/CliCore.h"
#include "contents/ProjectSpecs.h"
#include "contents/SpecRegister.h"

#include <fmt/xchar.h>

namespace cli {

namespace specs_verbs {

struct SArgs {
    std::int32_t id = 0;     // a standard
    std::int32_t specId = 0; // a spec
    std::string name;
    bool common = false;
    std::int32_t clientId = 0;
    std::int32_t standardId = 0;
    bool dryRun = false;
};

// Where the pipe spec goes: which of --common, --client and --standard was given.
struct SPlaceOptions {
    CLI::Option* client = nullptr;
    CLI::Option* standard = nullptr;
};

void CheckSpecResult(ESpecResult result, const std::wstring& what, const std::wstring& name = {}) {
    if (result != eSpecOk)
        throw CCliFailure(what + L"\n\n" + CVX2D_SpecRegister::ReasonText(result, name));
}

// The pipe spec's name for messages, or its id when the register has none.
std::wstring SpecName(const SCore& core, std::int32_t specId) {
    SSpecInfo spec;
    return core.specs.FindSpec(specId, spec) == eSpecOk ? spec.name : fmt::format(L"{}", specId);
}

// The place the options name; `fallback` when none was given.
SSpecPlace PlaceOf(const SArgs& a, const SPlaceOptions& given, const SSpecPlace& fallback) {
    if (given.client->count() > 0)
        return {eSpecClient, a.clientId};
    if (given.standard->count() > 0)
        return {eSpecProject, a.standardId};
    return a.common ? SSpecPlace{} : fallback;
}

COutput Standards(const std::vector<SProjectInfo>& standards) {
    COutput output({{"standard_id"}, {"name"}});
    for (const auto& standard : standards)
        output.Add({standard.id, standard.name});
    return output;
}

COutput SpecsList(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    std::vector<std::int32_t> ids;
    std::vector<std::wstring> names;
    CheckSpecResult(
        CVX2D_ProjectSpecs(core.projects).GetCheckedSpecs(a.id, ids, names),
        fmt::format(L"Error reading the checked specs of standard '{}'.", core.NameOf(a.id)));
    COutput output({{"spec_id"}, {"name"}});
    for (std::size_t i = 0; i < ids.size(); ++i)
        output.Add({ids[i], names[i]});
    return output;
}

std::wstring ScopeText(const SSpecInfo& spec) {
    switch (spec.scope) {
    case eSpecClient:
        return fmt::format(L"client {}", spec.ownerId);
    case eSpecProject:
        return fmt::format(L"standard {}", spec.ownerId);
    default:
        return L"common";
    }
}

COutput SpecsRegister(const SCliOptions& options) {
    SCore core(options);
    std::vector<SSpecInfo> specs;
    CheckSpecResult(CVX2D_ProjectSpecs(core.projects).GetSpecRegister(specs),
                    L"Error reading the register of specs.");
    COutput output({{"spec_id"}, {"scope"}, {"name"}});
    for (const auto& spec : specs)
        output.Add({spec.id, ScopeText(spec), spec.name});
    return output;
}

COutput SpecsCreate(const SCliOptions& options, const SArgs& a, const SPlaceOptions& given) {
    SCore core(options);
    const std::wstring name = W(a.name);
    std::int32_t id = 0;
    CheckSpecResult(core.specs.CreateSpec(name, PlaceOf(a, given, {}), id),
                    CVX2D_SpecRegister::CreateErrorText(name), name);
    COutput output({{"spec_id"}, {"name"}});
    output.Add({id, SpecName(core, id)});
    return output;
}

COutput SpecsCopy(const SCliOptions& options, const SArgs& a, const SPlaceOptions& given) {
    SCore core(options);
    const std::wstring name = W(a.name);
    const std::wstring what = CVX2D_SpecRegister::CopyErrorText(SpecName(core, a.specId));
    SSpecInfo source;
    CheckSpecResult(core.specs.FindSpec(a.specId, source), what);
    std::int32_t id = 0;
    CheckSpecResult(
        core.specs.CopySpec(a.specId, name, PlaceOf(a, given, {source.scope, source.ownerId}), id),
        what, name);
    COutput output({{"spec_id"}, {"name"}});
    output.Add({id, SpecName(core, id)});
    return output;
}

void SpecsRename(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    const std::wstring name = W(a.name);
    CheckSpecResult(core.specs.RenameSpec(a.specId, name),
                    CVX2D_SpecRegister::RenameErrorText(SpecName(core, a.specId), name), name);
}

COutput SpecsMove(const SCliOptions& options, const SArgs& a, const SPlaceOptions& given) {
    if (!a.common && given.client->count() == 0 && given.standard->count() == 0)
        throw CCliFailure(L"Say where the pipe spec goes: --common, --client ID or --standard ID.",
                          2);
    SCore core(options);
    const SSpecPlace place = PlaceOf(a, given, {});
    const std::wstring what = core.specs.MoveErrorText(SpecName(core, a.specId), place);
    SSpecInfo spec;
    CheckSpecResult(core.specs.FindSpec(a.specId, spec), what);
    std::vector<SProjectInfo> losing;
    CheckSpecResult(core.specs.StandardsLosing(a.specId, place, losing), what);
    if (a.dryRun)
        return Standards(losing);
    if (!losing.empty())
        Confirm(options.yes, core.specs.MoveQuestion(spec, place, losing),
                L"specs move unchecks the pipe spec for standards that cannot use it in its new "
                L"place; confirm with --yes");
    CheckSpecResult(core.specs.MoveSpec(a.specId, place, true), what);
    return Standards({});
}

COutput SpecsDelete(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    const std::wstring what = CVX2D_SpecRegister::DeleteErrorText(SpecName(core, a.specId));
    SSpecInfo spec;
    CheckSpecResult(core.specs.FindSpec(a.specId, spec), what);
    std::vector<SProjectInfo> checking;
    CheckSpecResult(core.specs.StandardsChecking(a.specId, checking), what);
    if (a.dryRun)
        return Standards(checking);
    Confirm(options.yes, CVX2D_SpecRegister::DeleteQuestion(spec, checking),
            L"specs delete removes the pipe spec's folder for good; confirm with --yes");
    CheckSpecResult(core.specs.DeleteSpec(a.specId, true), what);
    return Standards({});
}

COutput SpecsFolder(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    std::wstring folder;
    CheckSpecResult(
        core.specs.SpecFolder(a.specId, folder),
        fmt::format(L"Error finding the folder of spec '{}'.", SpecName(core, a.specId)));
    COutput output({{"folder"}});
    output.Add({folder});
    return output;
}

COutput SpecsDestinations(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    CSpecDestinationMap destinations;
    if (!core.specDestinations.Read(destinations))
        throw CCliFailure(fmt::format(L"Error reading '{}'.", core.specDestinations.Path()));
    COutput output({{"standard_id"}, {"spec_id"}, {"folder"}});
    for (const auto& [projectId, list] : destinations) {
        if (a.id > 0 && projectId != a.id)
            continue;
        for (const auto& destination : list)
            output.Add({projectId, destination.specId, destination.folder});
    }
    return output;
}

} // namespace specs_verbs

void AddSpecsCommands(CLI::App& app, SCliContext& context) {
    using namespace specs_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    auto* group =
        AddGroup(app, "specs", "Pipe specs: the register, their folders and a standard's checks");
    // check and uncheck: one spec for one standard, with its destinations.
    using CSpecOperation = ESpecResult (CVX2D_SpecRegister::*)(std::int32_t, std::int32_t);
    auto specAction = [ctx, args](CSpecOperation operation, const wchar_t* what) {
        return [ctx, args, operation, what] {
            ctx->Run([ctx, args, operation, what] {
                SCore core(ctx->options);
                CheckSpecResult(
                    (core.specs.*operation)(args->id, args->specId),
                    fmt::format(fmt::runtime(what), args->specId, core.NameOf(args->id)));
            });
        };
    };
    const auto specId = [args](CLI::App* command) {
        command->add_option("SPEC_ID", args->specId, "The pipe spec's id (see specs register)")
            ->required();
    };
    // --common, --client ID, --standard ID: at most one of them.
    const auto placeOptions = [args](CLI::App* command, const char* what) {
        const std::string scope = std::string(" (") + what + ")";
        auto* common =
            command->add_flag("--common", args->common, "Common to every standard" + scope);
        SPlaceOptions given;
        given.client = AddClientId(command, "--client", args->clientId,
                                   "A client's, by id or exact name" + scope, false);
        given.standard = AddStandardOption(command, "--standard", args->standardId,
                                           "A standard's own, by id or exact name" + scope);
        common->excludes(given.client)->excludes(given.standard);
        given.client->excludes(given.standard);
        return given;
    };

    auto* list = group->add_subcommand("list", "SPEC_ID, NAME of the specs checked for a standard");
    AddStandardId(list, args->id);
    list->callback(
        [ctx, args] { ctx->Print([ctx, args] { return SpecsList(ctx->options, *args); }); });
    auto* check = group->add_subcommand("check", "Check a spec of the register for a standard");
    AddStandardId(check, args->id);
    check->add_option("SPEC_ID", args->specId, "The pipe spec's id (see specs list)")->required();
    check->callback(
        specAction(&CVX2D_SpecRegister::CheckSpec, L"Error checking spec {} for standard '{}'."));
    auto* uncheck = group->add_subcommand("uncheck", "Uncheck a spec for a standard");
    AddStandardId(uncheck, args->id);
    uncheck->add_option("SPEC_ID", args->specId, "The pipe spec's id (see specs list)")->required();
    uncheck->callback(specAction(&CVX2D_SpecRegister::UncheckSpec,
                                 L"Error unchecking spec {} for standard '{}'."));
    group
        ->add_subcommand("register",
                         "SPEC_ID, SCOPE (common, client N or standard N), NAME of every spec")
        ->callback([ctx] { ctx->Print([ctx] { return SpecsRegister(ctx->options); }); });

    auto* create = group->add_subcommand(
        "create", "Create a spec with an empty folder (common unless --client or --standard); "
                  "prints SPEC_ID, NAME");
    create->add_option("NAME", args->name, "The pipe spec's name, unique among its scope's specs")
        ->required();
    const SPlaceOptions createPlace = placeOptions(create, "the pipe spec's scope");
    create->callback([ctx, args, createPlace] {
        ctx->Print(
            [ctx, args, createPlace] { return SpecsCreate(ctx->options, *args, createPlace); });
    });

    auto* rename = group->add_subcommand(
        "rename", "Rename a spec, in the register and in every standard that checks it");
    specId(rename);
    rename->add_option("NAME", args->name, "Its new name")->required();
    rename->callback([ctx, args] { ctx->Run([ctx, args] { SpecsRename(ctx->options, *args); }); });

    auto* move = group->add_subcommand(
        "move", "Move a spec and its folder to another scope; standards that cannot use it "
                "there lose their check");
    specId(move);
    const SPlaceOptions movePlace = placeOptions(move, "where the pipe spec goes");
    AddYes(move, ctx->options.yes, "Confirm unchecking the pipe spec for standards that lose it");
    AddDryRun(move, args->dryRun,
              "Print STANDARD_ID, NAME of the standards that would lose their check; change "
              "nothing");
    move->callback([ctx, args, movePlace] {
        ctx->Print([ctx, args, movePlace] { return SpecsMove(ctx->options, *args, movePlace); });
    });

    auto* copy = group->add_subcommand(
        "copy", "Copy a spec with its folder's files as a new spec (in the same scope unless "
                "told); prints SPEC_ID, NAME");
    specId(copy);
    copy->add_option("NAME", args->name, "The copy's name")->required();
    const SPlaceOptions copyPlace = placeOptions(copy, "the copy's scope");
    copy->callback([ctx, args, copyPlace] {
        ctx->Print([ctx, args, copyPlace] { return SpecsCopy(ctx->options, *args, copyPlace); });
    });

    auto* remove = group->add_subcommand(
        "delete", "Delete a spec and its folder for good; standards that check it lose it");
    specId(remove);
    AddYes(remove, ctx->options.yes, "Confirm: the pipe spec's folder cannot be recovered");
    AddDryRun(remove, args->dryRun,
              "Print STANDARD_ID, NAME of the standards that check the pipe spec; change nothing");
    remove->callback(
        [ctx, args] { ctx->Print([ctx, args] { return SpecsDelete(ctx->options, *args); }); });

    auto* folder = group->add_subcommand("folder", "FOLDER of a spec");
    specId(folder);
    folder->callback(
        [ctx, args] { ctx->Print([ctx, args] { return SpecsFolder(ctx->options, *args); }); });

    auto* destinations = group->add_subcommand(
        "destinations", "STANDARD_ID, SPEC_ID, FOLDER: where the drafting applications find "
                        "each checked spec (SpecDestinationDatafile.ini)");
    AddStandardOption(destinations, "ID", args->id,
                      "Only this standard (its id or exact name); every standard when left out");
    destinations->callback([ctx, args] {
        ctx->Print([ctx, args] { return SpecsDestinations(ctx->options, *args); });
    });
}

} // namespace cli
