// datafile dump|get|set|delete-key|delete-section: any datafile through the
// engine, exactly as the program reads and writes it.
#include "cli/CliCore.h"
#include "datafile/IniFile.h"

#include "platform/Utf8.h"

#include <filesystem>
#include <fmt/xchar.h>
#include <iostream>

namespace cli {

namespace fs = std::filesystem;

namespace datafile_verbs {

struct SArgs {
    std::string file, section, key, value, def;
};

// Each verb works on `path`: FILE, or with FILE `-` a scratch copy of
// standard input.

COutput Dump(const SArgs&, const std::wstring& path) {
    CVX2D_IniFile ini;
    OpenExisting(ini, path);
    COutput output({{"section"}, {"key"}, {"value"}});
    for (const auto& e : ini.Entries())
        output.Add({e.section, e.key, e.value});
    return output;
}

COutput Get(const SArgs& a, const std::wstring& path, bool quiet) {
    CVX2D_IniFile ini;
    std::error_code ec;
    if (!fs::exists(platform::ToPath(path), ec) && !ec) {
        // A missing datafile reads as empty, as it does for the program.
        if (!quiet)
            std::cerr << fmt::format("The datafile '{}' does not exist.\n", a.file);
    } else {
        OpenExisting(ini, path);
    }
    ini.SetSection(W(a.section));
    COutput output({{"value"}});
    output.Add({ini.String(W(a.key), W(a.def))});
    return output;
}

void Set(const SArgs& a, const std::wstring& path) {
    const std::wstring what = fmt::format(L"Error writing datafile '{}'.", W(a.file));
    for (const std::string* text : {&a.section, &a.key, &a.value})
        RequireStorable(W(*text), what);
    CVX2D_IniFile ini;
    OpenForChange(ini, path);
    ini.SetSection(W(a.section));
    ini.SetString(W(a.key), W(a.value));
    SaveChanged(ini);
}

void DeleteKey(const SArgs& a, const std::wstring& path) {
    CVX2D_IniFile ini;
    OpenForChange(ini, path);
    ini.SetSection(W(a.section));
    ini.DeleteKey(W(a.key));
    SaveChanged(ini);
}

void DeleteSection(const SArgs& a, const std::wstring& path) {
    CVX2D_IniFile ini;
    OpenForChange(ini, path);
    ini.DeleteSection(W(a.section));
    SaveChanged(ini);
}

std::string ArgumentHelp(const std::string& label) {
    if (label == "FILE")
        return "The datafile's path; - for standard input (a change prints the changed file)";
    if (label == "SECTION")
        return "The section's name, without brackets";
    if (label == "KEY")
        return "The key in that section";
    return "The value to store";
}

} // namespace datafile_verbs

void AddDatafileCommands(CLI::App& app, SCliContext& context) {
    using namespace datafile_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    auto* group = AddGroup(app, "datafile", "Read and change any datafile through the engine");
    auto verb = [&](const char* name, const char* help,
                    std::initializer_list<std::pair<const char*, std::string*>> positionals) {
        auto* command = group->add_subcommand(name, help);
        for (const auto& [label, target] : positionals)
            command->add_option(label, *target, ArgumentHelp(label))->required();
        return command;
    };
    // A listing reads FILE or standard input.
    auto show = [ctx, args](std::function<COutput(const std::wstring&)> work) {
        return [ctx, args, work] {
            ctx->Print([args, work] {
                if (args->file != "-")
                    return work(W(args->file));
                const CScratchFile input(L"stdin.ini");
                input.FillFromStdin();
                return work(input.Path());
            });
        };
    };
    // A change of standard input prints the changed datafile.
    auto change = [ctx, args](void (*work)(const SArgs&, const std::wstring&)) {
        return [ctx, args, work] {
            if (args->file != "-") {
                ctx->Run([args, work] { work(*args, W(args->file)); });
                return;
            }
            ctx->action = [args, work](std::ostream& out) {
                const CScratchFile input(L"stdin.ini");
                input.FillFromStdin();
                work(*args, input.Path());
                input.CopyTo(out);
            };
        };
    };
    verb("dump", "SECTION, KEY, VALUE of every entry in file order", {{"FILE", &args->file}})
        ->callback(show([args](const std::wstring& path) { return Dump(*args, path); }));
    auto* get = verb("get", "The value of a key, or DEFAULT (also when FILE does not exist)",
                     {{"FILE", &args->file}, {"SECTION", &args->section}, {"KEY", &args->key}});
    get->add_option("DEFAULT", args->def,
                    "What to print when the key is missing (empty when left out)");
    get->callback(show(
        [ctx, args](const std::wstring& path) { return Get(*args, path, ctx->options.quiet); }));
    verb("set", "Set a key; the file is written only when the value changes",
         {{"FILE", &args->file},
          {"SECTION", &args->section},
          {"KEY", &args->key},
          {"VALUE", &args->value}})
        ->callback(change(Set));
    verb("delete-key", "Remove a key from a section",
         {{"FILE", &args->file}, {"SECTION", &args->section}, {"KEY", &args->key}})
        ->callback(change(DeleteKey));
    verb("delete-section", "Remove a whole section",
         {{"FILE", &args->file}, {"SECTION", &args->section}})
        ->callback(change(DeleteSection));
}

} // namespace cli
