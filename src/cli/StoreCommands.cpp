// client ..., standard ..., registry check: the lifecycle of clients and
// standards, with the navigator's messages on failure.
#include "cli/CliCore.h"
#include "datafile/Ids.h"
#include "datafile/Names.h"
#include "store/StandardOperations.h"
#include "store/Templates.h"

#include <fmt/xchar.h>
#include <map>
#include <optional>

namespace cli {

namespace store_verbs {

struct SArgs {
    std::int32_t id = 0;
    std::int32_t clientId = 0;
    std::string name;
    std::string units = "metric";
    bool withDeleted = false;
    bool oldFormat = false;
    bool yes = false;
    bool force = false;
    bool dryRun = false;
};

// Fails unless the result is Ok; a refused name says which rule it breaks.
void CheckNamed(EProjectResult result, const std::function<std::wstring()>& what,
                const std::function<std::wstring()>& problem) {
    if (result == eProjectInvalidName) {
        const std::wstring rule = problem();
        if (!rule.empty())
            throw CCliFailure(
                fmt::format(L"{}\n\n{}: {}", what(), ProjectResultText(result), rule));
    }
    Check(result, what);
}

COutput ClientList(const SCliOptions& options) {
    SCore core(options);
    COutput output({{"id"}, {"name"}, {"standards"}});
    for (const auto& client : core.clients.ListClients())
        output.Add({client.id, client.name,
                    std::vector<std::int64_t>(client.projectIds.begin(), client.projectIds.end())});
    return output;
}

COutput ClientCreate(const SCliOptions& options) {
    SCore core(options);
    std::int32_t id = 0;
    std::wstring name;
    if (!core.clients.CreateClient(id, name))
        throw CCliFailure(CreateClientErrorText());
    COutput output({{"id"}, {"name"}});
    output.Add({id, name});
    return output;
}

// The client's name from one read of the client list; nothing when there is
// no such client (a name may be empty).
std::optional<std::wstring> ClientName(const SCore& core, std::int32_t id) {
    for (const auto& client : core.clients.ListClients()) {
        if (client.id == id)
            return client.name;
    }
    return std::nullopt;
}

void ClientRename(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    const std::wstring name = W(a.name);
    const std::optional<std::wstring> oldName = ClientName(core, a.id);
    if (!oldName || !core.clients.RenameClient(a.id, name)) {
        const std::wstring what =
            RenameClientErrorText(oldName.value_or(fmt::format(L"{}", a.id)), name);
        // A client's name is no folder name: only what a datafile cannot
        // hold is refused.
        const std::wstring problem = UnstorableCharacterProblem(name);
        if (oldName && !problem.empty())
            throw CCliFailure(what + L"\n\n" + ProjectResultText(eProjectInvalidName) + L": " +
                              problem);
        throw CCliFailure(what);
    }
}

void ClientDelete(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    const std::optional<std::wstring> name = ClientName(core, a.id);
    if (name)
        Confirm(a.yes,
                fmt::format(L"Delete client '{}'? Its standards stay, with no client.", *name),
                L"client delete removes the client for good; confirm with --yes");
    if (!name || !core.clients.DeleteClient(a.id))
        throw CCliFailure(DeleteClientErrorText(name.value_or(fmt::format(L"{}", a.id))));
}

COutput StandardList(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    std::vector<SProjectInfo> projects;
    Check(core.projects.ListProjects(true, a.withDeleted, projects), L"Error listing standards.");
    std::map<std::int32_t, std::int32_t> clientOf;
    for (const auto& client : core.clients.ListClients()) {
        for (std::int32_t id : client.projectIds)
            clientOf.try_emplace(id, client.id);
    }
    COutput output({{"id"}, {"state"}, {"client_id"}, {"name"}});
    for (const auto& project : projects) {
        const auto it = clientOf.find(project.id);
        output.Add({project.id, std::wstring(project.deleted ? L"deleted" : L"active"),
                    std::int64_t{it == clientOf.end() ? 0 : it->second}, project.name});
    }
    return output;
}

COutput StandardDefaultName(const SCliOptions& options) {
    SCore core(options);
    COutput output({{"name"}});
    output.Add({core.projects.GetDefaultProjectName()});
    return output;
}

COutput StandardCreate(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    const std::wstring name = W(a.name);
    const std::wstring what = CreateStandardErrorText(name);
    // A datafiles folder set up by hand may lack the templates: bring the
    // shipped ones in, never touching those that are there.
    SeedTemplateFolders(core.datafiles, CInstallation::ShippedDataFolder() + L"templates");
    SNewProject project;
    project.name = name;
    project.units = a.units == "imperial" ? 1 : 0;
    project.templateNumber = a.units == "imperial" ? 2 : 1;
    project.clientId = a.clientId;
    project.oldFormat = a.oldFormat;
    std::int32_t id = 0;
    CheckNamed(
        core.projects.CreateProject(project, id), [&] { return what; },
        [&] { return core.projects.NameProblem(name); });
    COutput output({{"id"}, {"name"}});
    output.Add({id, core.projects.GetProjectName(id, true, false)});
    return output;
}

COutput StandardCopy(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    std::int32_t newId = 0;
    std::wstring newName;
    CheckNamed(
        core.projects.CopyProject(a.id, newId, newName),
        [&] { return CopyStandardErrorText(core.NameOf(a.id)); },
        [&] { return core.projects.NameProblem(MakeCopyName(core.NameOf(a.id))); });
    COutput output({{"id"}, {"name"}});
    output.Add({newId, newName});
    return output;
}

void StandardRename(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    CheckNamed(
        core.projects.RenameProject(a.id, W(a.name)),
        [&] {
            return RenameStandardErrorText(core.projects.GetProjectName(a.id, true, true),
                                           W(a.name));
        },
        [&] { return core.projects.NameProblem(W(a.name), a.id); });
}

COutput StandardPurge(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    COutput output({{"id"}, {"state"}, {"name"}});
    const std::wstring active = core.projects.GetProjectName(a.id, true, false);
    // The navigator offers Purge only on deleted standards.
    if (!active.empty() && !a.force)
        throw CCliFailure(fmt::format(L"Standard '{}' is not deleted: delete it first "
                                      L"(standard delete {}) or purge it with --force.",
                                      active, a.id),
                          2);
    const std::wstring deleted = core.projects.GetProjectName(a.id, false, true);
    if (a.dryRun) {
        if (!active.empty() || !deleted.empty())
            output.Add({a.id, std::wstring(active.empty() ? L"deleted" : L"active"),
                        active.empty() ? deleted : active});
        return output;
    }
    if (!active.empty() || !deleted.empty())
        Confirm(a.yes,
                fmt::format(L"Purge standard '{}'? Its folder is deleted for good.",
                            active.empty() ? deleted : active),
                L"purge deletes the standard's folder for good; confirm with --yes");
    bool gone = false;
    const std::wstring name = core.NameOf(a.id);
    Check(PurgeStandard(core.projects, core.clients, a.id, gone),
          [&] { return PurgeStandardErrorText(name); });
    if (!gone)
        throw CCliFailure(PurgeStandardErrorText(name) + L"\n\n" + PurgeKeptText(name));
    return output;
}

void StandardMove(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    const std::wstring what = MoveStandardErrorText();
    std::int32_t fromClient = 0;
    std::wstring fromName;
    core.clients.FindClientOfProject(a.id, fromClient, fromName);
    if (!core.clients.MoveProjectToClient(a.id, fromClient, a.clientId))
        throw CCliFailure(what);
}

COutput StandardFolder(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    COutput output({{"folder"}});
    output.Add({core.FolderOf(
        a.id, fmt::format(L"Error finding the folder of standard '{}'.", core.NameOf(a.id)))});
    return output;
}

COutput RegistryCheck(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    SRegistryRepair repair;
    Check(core.projects.CheckProjectRegistry(&repair, a.dryRun),
          L"Error checking the standard registry.");
    COutput output({{"repair"}, {"id"}, {"state"}, {"name"}});
    for (const auto& change : repair.changes) {
        const bool counter = change.kind == SRegistryRepair::EKind::eCounterRaised;
        output.Add({RegistryRepairKindName(change.kind), change.id,
                    std::wstring(counter          ? L""
                                 : change.deleted ? L"deleted"
                                                  : L"active"),
                    change.name});
    }
    return output;
}

} // namespace store_verbs

void AddClientCommands(CLI::App& app, SCliContext& context) {
    using namespace store_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    auto* group = AddGroup(app, "client", "Clients and their standards");
    group->add_subcommand("list", "ID, NAME and the comma-separated ids of its standards")
        ->callback([ctx] { ctx->Print([ctx] { return ClientList(ctx->options); }); });
    group->add_subcommand("create", "Create a client named \"Client n\"; prints ID, NAME")
        ->callback([ctx] { ctx->Print([ctx] { return ClientCreate(ctx->options); }); });
    auto* rename = group->add_subcommand("rename", "Rename a client");
    AddClientId(rename, "ID", args->id, "The client's id or exact name (see client list)", false)
        ->required();
    rename->add_option("NAME", args->name, "The new name, stored as typed")->required();
    rename->callback([ctx, args] { ctx->Run([ctx, args] { ClientRename(ctx->options, *args); }); });
    auto* del =
        group->add_subcommand("delete", "Delete a client; its standards stay, with no client");
    AddClientId(del, "ID", args->id, "The client's id or exact name (see client list)", false)
        ->required();
    AddYes(del, args->yes, "Confirm: the client cannot be recovered afterwards");
    del->callback([ctx, args] { ctx->Run([ctx, args] { ClientDelete(ctx->options, *args); }); });
}

void AddStandardCommands(CLI::App& app, SCliContext& context) {
    using namespace store_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    auto* group =
        AddGroup(app, "standard", "Standards: create, copy, rename, delete, recover, purge, move");
    auto withId = [&](const char* name, const char* help) {
        auto* command = group->add_subcommand(name, help);
        AddStandardId(command, args->id);
        return command;
    };
    auto idAction = [ctx, args](EProjectResult (CVX2D_ProjectRegistry::*operation)(std::int32_t),
                                std::wstring (*what)(const std::wstring&)) {
        return [ctx, args, operation, what] {
            ctx->Run([ctx, args, operation, what] {
                SCore core(ctx->options);
                Check((core.projects.*operation)(args->id),
                      [&] { return what(core.NameOf(args->id)); });
            });
        };
    };

    auto* list = group->add_subcommand("list", "ID, STATE, CLIENT_ID (0: none), NAME");
    list->add_flag("--deleted", args->withDeleted, "Include deleted standards");
    list->callback(
        [ctx, args] { ctx->Print([ctx, args] { return StandardList(ctx->options, *args); }); });
    group->add_subcommand("default-name", "The name proposed for a new standard")->callback([ctx] {
        ctx->Print([ctx] { return StandardDefaultName(ctx->options); });
    });

    auto* create =
        group->add_subcommand("create", "Create a standard from a template; prints ID, NAME");
    create->add_option("NAME", args->name, "The new standard's name (it names its folder)")
        ->required();
    create->add_option("--units", args->units, "metric (default) or imperial")
        ->check(CLI::IsMember({"metric", "imperial"}));
    AddClientId(create, "--client", args->clientId, "Client to add the standard to (id or name)",
                true);
    create->add_flag("--old-format", args->oldFormat, "Use the templates of the 2015 layout");
    create->callback(
        [ctx, args] { ctx->Print([ctx, args] { return StandardCreate(ctx->options, *args); }); });

    withId("copy", "Copy a standard as \"Copy of NAME\"; prints ID, NAME")->callback([ctx, args] {
        ctx->Print([ctx, args] { return StandardCopy(ctx->options, *args); });
    });
    auto* rename = withId("rename", "Rename a standard and its folder");
    rename->add_option("NAME", args->name, "The new name (it names the folder)")->required();
    rename->callback(
        [ctx, args] { ctx->Run([ctx, args] { StandardRename(ctx->options, *args); }); });
    withId("delete", "Mark a standard as deleted (its folder stays)")
        ->callback(idAction(&CVX2D_ProjectRegistry::DeleteProject, DeleteStandardErrorText));
    withId("recover", "Bring a deleted standard back")
        ->callback(idAction(&CVX2D_ProjectRegistry::RecoverProject, RecoverStandardErrorText));
    auto* purge = withId("purge", "Delete a deleted standard and its folder for good");
    AddYes(purge, args->yes, "Confirm: the folder cannot be recovered afterwards");
    purge->add_flag("--force", args->force, "Purge a standard that is not deleted as well");
    AddDryRun(purge, args->dryRun, "Only print ID, STATE, NAME of the standard it would purge");
    purge->callback(
        [ctx, args] { ctx->Print([ctx, args] { return StandardPurge(ctx->options, *args); }); });
    auto* move = withId("move", "Move a standard to a client (0: no client)");
    AddClientId(move, "CLIENT_ID", args->clientId,
                "The client to move it to (id or name); 0 for none", true)
        ->required();
    move->callback([ctx, args] { ctx->Run([ctx, args] { StandardMove(ctx->options, *args); }); });
    withId("folder", "The standard's folder")->callback([ctx, args] {
        ctx->Print([ctx, args] { return StandardFolder(ctx->options, *args); });
    });

    auto* registry = AddGroup(app, "registry", "The standard registry as a whole");
    auto* check = registry->add_subcommand(
        "check", "Repair the registry from the standard folders on disk; prints REPAIR "
                 "(dropped, registered or counter), ID, STATE, NAME of each repair");
    AddDryRun(check, args->dryRun, "Only print what would be repaired; write nothing");
    check->callback(
        [ctx, args] { ctx->Print([ctx, args] { return RegistryCheck(ctx->options, *args); }); });
}

} // namespace cli
