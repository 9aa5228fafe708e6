// standards-desk-cli: the scriptable face of the Standards Desk core.
#include "cli/Commands.h"
#include "platform/Utf8.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace {

std::wstring W(const std::string& text) { return platform::FromUtf8(text); }

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"Standards Desk command line: clients, standards and datafiles of a shared "
                 "datafiles folder.",
                 "standards-desk-cli"};
    app.require_subcommand(1);
    SCliOptions options;
    std::string datafiles;
    app.add_option("--datafiles", datafiles, "Datafiles folder to use instead of the installed one");
    app.add_flag("--json", options.json, "Print one JSON document instead of TAB-separated lines");

    // What the chosen verb does; set by the callbacks below, run after parsing.
    std::function<void(std::ostream&)> action;
    auto run = [&](auto&& work) { action = [work = std::forward<decltype(work)>(work)](std::ostream& out) { work(out); }; };

    // datafile
    auto* datafile = app.add_subcommand("datafile", "Read and change any datafile through the engine");
    datafile->require_subcommand(1);
    std::string file, section, key, value, def;
    {
        auto* dump = datafile->add_subcommand("dump", "SECTION, KEY, VALUE of every entry in file order");
        dump->add_option("FILE", file)->required();
        dump->callback([&] { run([&](std::ostream& out) { cli::DatafileDump(W(file)).Write(out, options.json); }); });

        auto* get = datafile->add_subcommand("get", "The value of a key, or DEFAULT");
        get->add_option("FILE", file)->required();
        get->add_option("SECTION", section)->required();
        get->add_option("KEY", key)->required();
        get->add_option("DEFAULT", def);
        get->callback([&] { run([&](std::ostream& out) { cli::DatafileGet(W(file), W(section), W(key), W(def)).Write(out, options.json); }); });

        auto* set = datafile->add_subcommand("set", "Set a key; the file is saved only when it changes");
        set->add_option("FILE", file)->required();
        set->add_option("SECTION", section)->required();
        set->add_option("KEY", key)->required();
        set->add_option("VALUE", value)->required();
        set->callback([&] { run([&](std::ostream&) { cli::DatafileSet(W(file), W(section), W(key), W(value)); }); });

        auto* delKey = datafile->add_subcommand("delete-key", "Remove a key from a section");
        delKey->add_option("FILE", file)->required();
        delKey->add_option("SECTION", section)->required();
        delKey->add_option("KEY", key)->required();
        delKey->callback([&] { run([&](std::ostream&) { cli::DatafileDeleteKey(W(file), W(section), W(key)); }); });

        auto* delSection = datafile->add_subcommand("delete-section", "Remove a whole section");
        delSection->add_option("FILE", file)->required();
        delSection->add_option("SECTION", section)->required();
        delSection->callback([&] { run([&](std::ostream&) { cli::DatafileDeleteSection(W(file), W(section)); }); });
    }

    // client
    std::int32_t id = 0, clientId = 0;
    std::string name;
    auto* client = app.add_subcommand("client", "Clients and their standards");
    client->require_subcommand(1);
    client->add_subcommand("list", "ID, NAME and the comma-separated ids of its standards")
        ->callback([&] { run([&](std::ostream& out) { cli::ClientList(options).Write(out, options.json); }); });
    client->add_subcommand("create", "Create a client named \"Client n\"; prints ID, NAME")
        ->callback([&] { run([&](std::ostream& out) { cli::ClientCreate(options).Write(out, options.json); }); });
    {
        auto* rename = client->add_subcommand("rename", "Rename a client");
        rename->add_option("ID", id)->required();
        rename->add_option("NAME", name)->required();
        rename->callback([&] { run([&](std::ostream&) { cli::ClientRename(options, id, W(name)); }); });
        auto* del = client->add_subcommand("delete", "Delete a client; its standards stay, unassigned");
        del->add_option("ID", id)->required();
        del->callback([&] { run([&](std::ostream&) { cli::ClientDelete(options, id); }); });
    }

    // standard
    auto* standard = app.add_subcommand("standard", "Standards: create, copy, rename, delete, recover, purge, move");
    standard->require_subcommand(1);
    {
        bool withDeleted = false, oldFormat = false, yes = false;
        std::string units = "metric";
        auto* list = standard->add_subcommand("list", "ID, STATE, CLIENT_ID (0: none), NAME");
        list->add_flag("--deleted", withDeleted, "Include deleted standards");
        list->callback([&] { run([&](std::ostream& out) { cli::StandardList(options, withDeleted).Write(out, options.json); }); });

        standard->add_subcommand("default-name", "The name proposed for a new standard")
            ->callback([&] { run([&](std::ostream& out) { cli::StandardDefaultName(options).Write(out, options.json); }); });

        auto* create = standard->add_subcommand("create", "Create a standard from a template; prints ID, NAME");
        create->add_option("NAME", name)->required();
        create->add_option("--units", units, "metric or imperial")->check(CLI::IsMember({"metric", "imperial"}));
        create->add_option("--client", clientId, "Client to add the standard to");
        create->add_flag("--old-format", oldFormat, "Use the templates of the 2015 layout");
        create->callback([&] { run([&](std::ostream& out) { cli::StandardCreate(options, W(name), units, clientId, oldFormat).Write(out, options.json); }); });

        auto* copy = standard->add_subcommand("copy", "Copy a standard as \"Copy of NAME\"; prints ID, NAME");
        copy->add_option("ID", id)->required();
        copy->callback([&] { run([&](std::ostream& out) { cli::StandardCopy(options, id).Write(out, options.json); }); });

        auto* rename = standard->add_subcommand("rename", "Rename a standard and its folder");
        rename->add_option("ID", id)->required();
        rename->add_option("NAME", name)->required();
        rename->callback([&] { run([&](std::ostream&) { cli::StandardRename(options, id, W(name)); }); });

        auto* del = standard->add_subcommand("delete", "Mark a standard as deleted (its folder stays)");
        del->add_option("ID", id)->required();
        del->callback([&] { run([&](std::ostream&) { cli::StandardDelete(options, id); }); });

        auto* recover = standard->add_subcommand("recover", "Bring a deleted standard back");
        recover->add_option("ID", id)->required();
        recover->callback([&] { run([&](std::ostream&) { cli::StandardRecover(options, id); }); });

        auto* purge = standard->add_subcommand("purge", "Delete a standard and its folder for good");
        purge->add_option("ID", id)->required();
        purge->add_flag("--yes", yes, "Confirm: the folder cannot be recovered afterwards");
        purge->callback([&] {
            if (!yes)
                throw CLI::ValidationError("--yes", "purge deletes the standard's folder for good; confirm with --yes");
            run([&](std::ostream&) { cli::StandardPurge(options, id); });
        });

        auto* move = standard->add_subcommand("move", "Move a standard to a client (0: no client)");
        move->add_option("ID", id)->required();
        move->add_option("CLIENT_ID", clientId)->required();
        move->callback([&] { run([&](std::ostream&) { cli::StandardMove(options, id, clientId); }); });

        auto* folder = standard->add_subcommand("folder", "The standard's folder");
        folder->add_option("ID", id)->required();
        folder->callback([&] { run([&](std::ostream& out) { cli::StandardFolder(options, id).Write(out, options.json); }); });
    }

    // registry
    auto* registry = app.add_subcommand("registry", "The standard registry as a whole");
    registry->require_subcommand(1);
    registry->add_subcommand("check", "Repair the registry from the standard folders on disk")
        ->callback([&] { run([&](std::ostream&) { cli::RegistryCheck(options); }); });

    // general
    auto* general = app.add_subcommand("general", "A standard's general settings");
    general->require_subcommand(1);
    std::string field;
    {
        auto* show = general->add_subcommand("show", "FIELD, VALUE of every general setting");
        show->add_option("ID", id)->required();
        show->callback([&] { run([&](std::ostream& out) { cli::GeneralShow(options, id).Write(out, options.json); }); });
        auto* set = general->add_subcommand("set", "Change one general setting; fields: " + cli::GeneralFieldNames());
        set->add_option("ID", id)->required();
        set->add_option("FIELD", field)->required();
        set->add_option("VALUE", value)->required();
        set->callback([&] { run([&](std::ostream&) { cli::GeneralSet(options, id, field, W(value)); }); });
    }

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        app.exit(e);
        return 2;
    }
    options.datafiles = W(datafiles);
    try {
        if (action)
            action(std::cout);
    } catch (const CCliFailure& failure) {
        std::cerr << platform::ToUtf8(failure.message) << '\n';
        return failure.code;
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
