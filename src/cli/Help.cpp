// The examples at the foot of every group's and verb's --help, and the
// global options repeated there, since they may follow the verb.
#include "cli/CliCore.h"

#include <map>

namespace cli {

namespace help_verbs {

// Examples by the command's path under the program ("standard purge").
const std::map<std::string, std::vector<std::string>>& Examples() {
    static const std::map<std::string, std::vector<std::string>> examples = {
        {"", {"standard list", "--datafiles /srv/datafiles client list --json", "standard --help"}},
        {"datafile",
         {"datafile get ProjectDatafile.ini General LastProjectId 0",
          "datafile dump - < General.ini"}},
        {"datafile dump", {"datafile dump /srv/datafiles/ClientDatafile.ini"}},
        {"datafile get", {"datafile get General.ini General RatingsFormat 0"}},
        {"datafile set", {"datafile set General.ini General RatingsFormat 3"}},
        {"datafile delete-key", {"datafile delete-key General.ini General Obsolete"}},
        {"datafile delete-section", {"datafile delete-section General.ini Obsolete"}},
        {"client", {"client list", "client rename 2 \"Plant A\""}},
        {"client list", {"client list", "client list --json"}},
        {"client create", {"client create"}},
        {"client rename", {"client rename 2 \"Plant A\""}},
        {"client delete", {"client delete 2 --yes"}},
        {"standard", {"standard list --deleted", "standard create \"Plant A\" --client 2"}},
        {"standard list", {"standard list", "standard list --deleted --json"}},
        {"standard default-name", {"standard default-name"}},
        {"standard create",
         {"standard create \"Plant A\"", "standard create Elec --units imperial --client 2"}},
        {"standard copy", {"standard copy 3"}},
        {"standard rename", {"standard rename 3 \"Plant A 2024\""}},
        {"standard delete", {"standard delete 3"}},
        {"standard recover", {"standard recover 3"}},
        {"standard purge",
         {"standard purge 3 --dry-run", "standard purge 3 --yes", "standard purge 4 --force -y"}},
        {"standard move", {"standard move 3 2", "standard move 3 0"}},
        {"standard folder", {"standard folder 3"}},
        {"registry", {"registry check --dry-run"}},
        {"registry check", {"registry check --dry-run", "registry check"}},
        {"general", {"general show 3", "general set 3 rating_format 2"}},
        {"general show", {"general show 3", "general show 3 --json"}},
        {"general set", {"general set 3 rating_format 2", "general set 3 drawings_pid /dw/pid"}},
        {"settings", {"settings show 3 PID --section 4", "settings set 3 PID 145 3.5"}},
        {"settings show", {"settings show 3 PID", "settings show 3 ORTHO --section Layers"}},
        {"settings set", {"settings set 3 PID 145 3.5", "settings set 3 ISOMETRIC 177 On"}},
        {"settings catalogue", {"settings catalogue ISOMETRIC --section 3 --units imperial"}},
        {"settings editor", {"settings editor 3 PID 4"}},
        {"settings restore-defaults",
         {"settings restore-defaults 3 PID 4 --dry-run", "settings restore-defaults 3 PID --yes",
          "settings restore-defaults 3 ORTHO Layers -y"}},
        {"borders", {"borders show 3", "borders set 3 C max 22.0,17.0"}},
        {"borders show", {"borders show 3"}},
        {"borders set", {"borders set 3 C border Bord_C.dwg", "borders set 3 A1 min 0,0"}},
        {"layers", {"layers show 3 PID", "layers set 3 PID 14 color 1"}},
        {"layers show", {"layers show 3 PID"}},
        {"layers set", {"layers set 3 PID 14 name PIPE", "layers set 3 ORTHO 039 lineweight 25"}},
        {"lines", {"lines list 3 --deleted", "lines create 3"}},
        {"lines list", {"lines list 3", "lines list 3 --deleted"}},
        {"lines create", {"lines create 3"}},
        {"lines delete", {"lines delete 3 12"}},
        {"lines recover", {"lines recover 3 12"}},
        {"lines rename", {"lines rename 3 12 \"Cooling water\""}},
        {"lines repair", {"lines repair 3"}},
        {"specs", {"specs register", "specs check 3 7", "specs create CS150 --client Acme"}},
        {"specs list", {"specs list 3"}},
        {"specs check", {"specs check 3 7"}},
        {"specs uncheck", {"specs uncheck 3 7"}},
        {"specs register", {"specs register"}},
        {"specs create",
         {"specs create CS150", "specs create \"SS300 Acme\" --client 2",
          "specs create Vents --standard Pipe"}},
        {"specs rename", {"specs rename 7 CS150A"}},
        {"specs move",
         {"specs move 7 --client 2 --dry-run", "specs move 7 --common",
          "specs move 7 --standard 3 --yes"}},
        {"specs copy", {"specs copy 7 \"CS150 Acme\" --client Acme", "specs copy 7 CS151"}},
        {"specs delete", {"specs delete 7 --dry-run", "specs delete 7 --yes"}},
        {"specs folder", {"specs folder 7"}},
        {"specs destinations", {"specs destinations", "specs destinations 3 --json"}},
        {"drawings", {"drawings list 3 PID", "drawings copy 3 PID Pump"}},
        {"drawings list", {"drawings list 3 PID", "drawings list 3 ORTHO --backups"}},
        {"drawings copy", {"drawings copy 3 PID Pump \"Valve 2\""}},
        {"drawings delete", {"drawings delete 3 PID \"Pump (Copy 1)\" --yes"}},
        {"drawings new", {"drawings new 3 PID"}},
        {"drawings rename", {"drawings rename 3 PID Pump \"Main pump\""}},
        {"drawings open", {"drawings open 3 PID Pump --dry-run"}},
        {"merge",
         {"merge 3 4 PID/Settings/145 Layers/PID/038", "merge 3 4 --all-differences --dry-run",
          "merge Pipe Plant --all-differences --group PID --group Layers"}},
        {"push",
         {"push 3 PID/Settings/145 --to 4,7 --dry-run", "push 3 \"Borders/A1/limits\" --client 2",
          "push 3 Layers/PID --all"}},
        {"compare",
         {"compare 3 4 --differences-only --summary", "compare 3 4 --format html --output c.html"}},
        {"report", {"report 3", "report 3 --output Pipe.txt"}},
        {"doctor",
         {"doctor", "doctor --format html --output check.html", "doctor --repair --dry-run",
          "doctor --repair --yes"}},
        {"navigator", {"navigator tree", "navigator tree --json"}},
        {"navigator tree", {"navigator tree"}},
        {"install", {"--datafiles /srv/datafiles install"}},
        {"export", {"export 3 Pipe.xst", "export 3 - | ssh other standards-desk-cli import -"}},
        {"import",
         {"import Pipe.xst Elec.xst --client 2", "import --dry-run *.xst",
          "import - --name \"Plant A\" < Pipe.xst"}},
        {"update-check", {"update-check", "update-check --now \"2026-03-10 12:00:00\""}},
        {"completion",
         {"completion bash > ~/.local/share/bash-completion/completions/standards-desk-cli",
          "completion fish > ~/.config/fish/completions/standards-desk-cli.fish"}},
    };
    return examples;
}

std::string PathOf(const CLI::App& command) {
    std::string path;
    for (const CLI::App* at = &command; at->get_parent(); at = at->get_parent())
        path = at->get_name() + (path.empty() ? "" : " " + path);
    return path;
}

void AddFooters(CLI::App& command, const std::string& globals) {
    std::string footer;
    const auto found = Examples().find(PathOf(command));
    if (found != Examples().end()) {
        footer += "Examples:\n";
        for (const auto& example : found->second)
            footer += "  standards-desk-cli " + example + "\n";
    }
    if (command.get_parent())
        footer += (footer.empty() ? "" : "\n") + globals;
    command.footer(footer);
    for (CLI::App* sub : command.get_subcommands({}))
        AddFooters(*sub, globals);
}

} // namespace help_verbs

bool HasExamples(const CLI::App& command) {
    using namespace help_verbs;
    return Examples().contains(PathOf(command));
}

void AddHelpFooters(CLI::App& app) {
    using namespace help_verbs;
    // The program's own options, as its --help lists them.
    std::string globals = "Global options (before or after the verb):\n";
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional())
            continue;
        std::string name = option->get_name(false, true);
        if (option->get_type_size() != 0)
            name += " " + option->get_type_name();
        globals += "  " + name + std::string(name.size() < 22 ? 22 - name.size() : 1, ' ') +
                   option->get_description() + "\n";
    }
    AddFooters(app, globals);
}

} // namespace cli
