// install, export, import, update-check, navigator tree: the program's own
// commands on the command line.
#include "app/NavigatorController.h"
#include "app/StandardTransfer.h"
#include "app/Startup.h"
#include "app/WindowlessOwner.h"
#include "cli/CliCore.h"
#include "platform/System.h"
#include "platform/Utf8.h"

#include <fmt/xchar.h>
#include <iostream>
#include <optional>

namespace cli {

namespace app_verbs {

struct SArgs {
    std::int32_t id = 0;
    std::int32_t clientId = 0;
    std::string file;
    std::vector<std::string> files;
    bool oldFormat = false;
    bool dryRun = false;
    std::string name; // the standard made from standard input
    std::string now;
};

// Export and import as the command line runs them: the desktop program's
// remembered folders stay as they are.
struct SCliTransfer : CStandardTransfer {
    explicit SCliTransfer(SCore& core)
        : CStandardTransfer(core.projects, core.profile, core.prompter) {
        SetRemembersFolders(false);
    }
};

std::wstring ShippedTemplates() {
    return CInstallation::ShippedDataFolder() + L"templates";
}

void Install(const SCliOptions& options) {
    SCore core(options, true);
    CStartup::SServices services;
    services.shippedTemplates = ShippedTemplates();
    CStartup startup(*core.registry, core.installation, core.projects, core.prompter, services);
    if (core.datafiles.Root().empty())
        throw CCliFailure(NoDatafilesText());
    if (!startup.Install()) {
        if (!core.datafiles.Exists())
            throw CCliFailure(fmt::format(L"The datafiles folder '{}' could not be created.",
                                          core.datafiles.Root()));
        throw CCliFailure(
            L"The standards were installed, but the datafiles folder could not be recorded in "
            L"the installation values.\n\nRun as a user who may write them.");
    }
}

void Export(const SCliOptions& options, const SArgs& a, std::ostream& out) {
    SCore core(options);
    SCliTransfer transfer(core);
    const std::wstring what =
        fmt::format(L"Error exporting standard '{}' to '{}'.", core.NameOf(a.id), W(a.file));
    core.FolderOf(a.id, what);
    if (a.file != "-") {
        if (!transfer.Export(a.id, W(a.file)))
            throw CCliFailure(what);
        return;
    }
    // An archive is written with seeks: it goes to standard output whole.
    const CScratchFile archive(L"Standard.xst");
    if (!transfer.Export(a.id, archive.Path()))
        throw CCliFailure(what);
    archive.CopyTo(out);
}

COutput Import(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    SCliTransfer transfer(core);
    std::vector<std::wstring> files;
    // Standard input becomes a file named after the standard it makes.
    std::optional<CScratchFile> fromStdin;
    for (const auto& file : a.files) {
        if (file == "-" && !fromStdin) {
            const std::wstring name =
                a.name.empty() ? core.projects.GetDefaultProjectName() : W(a.name);
            fromStdin.emplace(name + L".xst");
            fromStdin->FillFromStdin();
            files.push_back(fromStdin->Path());
            continue;
        }
        std::error_code ec;
        if (!std::filesystem::is_regular_file(platform::ToPath(W(file)), ec))
            throw CCliFailure(fmt::format(L"There is no file '{}' to import.", W(file)));
        files.push_back(W(file));
    }
    if (a.dryRun) {
        COutput output({{"file"}, {"name"}, {"refused"}});
        for (const auto& check : transfer.CheckImport(files))
            output.Add({fromStdin && check.file == fromStdin->Path() ? L"-" : check.file,
                        check.name, check.refused});
        return output;
    }
    const auto imported = transfer.Import(files, a.clientId, a.oldFormat);
    COutput output({{"id"}, {"name"}});
    bool failed = false;
    for (const auto& standard : imported) {
        // A standard made without some of its archive's files is no clean import.
        if (standard.id == 0 || !standard.skipped.empty())
            failed = true;
        if (standard.id != 0)
            output.Add({standard.id, standard.name});
    }
    if (failed) {
        // The standards that were made are still worth printing.
        output.Write(std::cout, options.json);
        throw CCliFailure(L"Not every file could be imported.");
    }
    return output;
}

COutput UpdateCheck(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    CUpdateCheck::SServices services;
    if (!a.now.empty()) {
        const std::time_t now = CUpdateCheck::ParseTime(W(a.now));
        if (now == CUpdateCheck::NoTime())
            throw CCliFailure(W("'" + a.now + "' is not a date of the form YYYY-MM-DD HH:MM:SS."),
                              2);
        services.now = [now] { return now; };
    }
    // A command line does not open browsers: it says where the update is.
    std::wstring opened;
    services.openPage = [&opened](const std::wstring& url) {
        opened = url;
        return true;
    };
    CUpdateCheck check(*core.registry, core.installation, core.prompter, services);
    static const wchar_t* const kOutcomes[] = {
        L"not the shared installation: no check",
        L"unreadable due date: reset",
        L"not due",
        L"no update date on the page",
        L"up to date",
        L"newer version: see the page",
        L"newer version: remind later",
        L"newer version: never remind",
    };
    const auto outcome = check.Run();
    COutput output({{"decision"}, {"page"}});
    output.Add({std::wstring(kOutcomes[outcome]), opened});
    return output;
}

// The items as indented lines and, for JSON, as objects with their children.
nlohmann::ordered_json AddItems(COutput& output, const std::vector<CNavItem>& items, int depth) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const auto& item : items) {
        output.Add({std::wstring(2 * static_cast<std::size_t>(depth), L' ') + item.text,
                    std::int64_t{item.image}, std::int64_t{item.id}});
        nlohmann::ordered_json object = {
            {"text", platform::ToUtf8(item.text)}, {"image", item.image}, {"id", item.id}};
        object["children"] = AddItems(output, item.children, depth + 1);
        list.push_back(std::move(object));
    }
    return list;
}

COutput NavigatorTree(const SCliOptions& options) {
    SCore core(options);
    CWindowlessOwner owner;
    CNavigatorController navigator(core.projects, core.clients, core.profile, core.prompter, owner);
    navigator.Rebuild();
    COutput output({{"text"}, {"image"}, {"id"}});
    output.SetJson(AddItems(output, navigator.Tree().Roots(), 0));
    return output;
}

} // namespace app_verbs

void AddAppCommands(CLI::App& app, SCliContext& context) {
    using namespace app_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    app.add_subcommand("install",
                       "Set up a datafiles folder: templates, the first standards, and (with "
                       "--datafiles) record it as the installation's")
        ->callback([ctx] { ctx->Run([ctx] { Install(ctx->options); }); });

    auto* exportCommand = app.add_subcommand("export", "Write a standard to an .xst archive");
    AddStandardId(exportCommand, args->id);
    exportCommand
        ->add_option("FILE", args->file,
                     "The archive to write, such as Pipe.xst; - for standard output")
        ->required();
    exportCommand->callback([ctx, args] {
        if (args->file != "-")
            ctx->Run([ctx, args] { Export(ctx->options, *args, std::cout); });
        else
            ctx->action = [ctx, args](std::ostream& out) { Export(ctx->options, *args, out); };
    });

    auto* importCommand =
        app.add_subcommand("import", "Make a new standard from each .xst or .xpj archive; "
                                     "prints ID, NAME of each; exits 1 when a file is not a "
                                     "readable archive, passes the import's limits or had "
                                     "entries left out");
    importCommand
        ->add_option("FILE", args->files,
                     "Archives to import: .xst, or .xpj of the 2015 generation; - for an .xst "
                     "archive on standard input")
        ->required();
    importCommand->add_option("--name", args->name,
                              "The name of the standard made from standard input (default: "
                              "the name standard default-name proposes)");
    AddDryRun(importCommand, args->dryRun,
              "Only check the files and print FILE, NAME, REFUSED (why a file would be "
              "refused; empty when it would be imported)");
    AddClientId(importCommand, "--client", args->clientId,
                "Client to put the new standards under (id or name)", true);
    importCommand->add_flag("--old-format", args->oldFormat,
                            "The archives come from the 2015 generation");
    importCommand->callback(
        [ctx, args] { ctx->Print([ctx, args] { return Import(ctx->options, *args); }); });

    auto* update =
        app.add_subcommand("update-check", "Run the start-up update check and print its decision");
    update->add_option("--now", args->now, "Pretend it is this local time (YYYY-MM-DD HH:MM:SS)");
    update->callback(
        [ctx, args] { ctx->Print([ctx, args] { return UpdateCheck(ctx->options, *args); }); });

    auto* navigator = AddGroup(app, "navigator", "The navigator of clients and standards");
    navigator->add_subcommand("tree", "The tree as the desktop shows it: indented TEXT, IMAGE, ID")
        ->callback([ctx] { ctx->Print([ctx] { return NavigatorTree(ctx->options); }); });
}

} // namespace cli
