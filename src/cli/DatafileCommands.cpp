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

namespace {

struct SArgs {
    std::string file, section, key, value, def;
};

COutput Dump(const SArgs& a) {
    CVX2D_IniFile ini;
    OpenExisting(ini, W(a.file));
    COutput output({{"section"}, {"key"}, {"value"}});
    for (const auto& e : ini.Entries())
        output.Add({e.section, e.key, e.value});
    return output;
}

COutput Get(const SArgs& a) {
    CVX2D_IniFile ini;
    std::error_code ec;
    if (!fs::exists(platform::ToPath(W(a.file)), ec) && !ec) {
        // A missing datafile reads as empty, as it does for the program.
        std::cerr << fmt::format("The datafile '{}' does not exist.\n", a.file);
    } else {
        OpenExisting(ini, W(a.file));
    }
    ini.SetSection(W(a.section));
    COutput output({{"value"}});
    output.Add({ini.String(W(a.key), W(a.def))});
    return output;
}

void Set(const SArgs& a) {
    const std::wstring what = fmt::format(L"Error writing datafile '{}'.", W(a.file));
    for (const std::string* text : {&a.section, &a.key, &a.value})
        RequireStorable(W(*text), what);
    CVX2D_IniFile ini;
    OpenForChange(ini, W(a.file));
    ini.SetSection(W(a.section));
    ini.SetString(W(a.key), W(a.value));
    SaveChanged(ini);
}

void DeleteKey(const SArgs& a) {
    CVX2D_IniFile ini;
    OpenForChange(ini, W(a.file));
    ini.SetSection(W(a.section));
    ini.DeleteKey(W(a.key));
    SaveChanged(ini);
}

void DeleteSection(const SArgs& a) {
    CVX2D_IniFile ini;
    OpenForChange(ini, W(a.file));
    ini.DeleteSection(W(a.section));
    SaveChanged(ini);
}

std::string ArgumentHelp(const std::string& label) {
    if (label == "FILE")
        return "The datafile's path";
    if (label == "SECTION")
        return "The section's name, without brackets";
    if (label == "KEY")
        return "The key in that section";
    return "The value to store";
}

} // namespace

void AddDatafileCommands(CLI::App& app, SCliContext& context) {
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
    verb("dump", "SECTION, KEY, VALUE of every entry in file order", {{"FILE", &args->file}})
        ->callback([ctx, args] { ctx->Print([args] { return Dump(*args); }); });
    auto* get = verb("get", "The value of a key, or DEFAULT (also when FILE does not exist)",
                     {{"FILE", &args->file}, {"SECTION", &args->section}, {"KEY", &args->key}});
    get->add_option("DEFAULT", args->def,
                    "What to print when the key is missing (empty when left out)");
    get->callback([ctx, args] { ctx->Print([args] { return Get(*args); }); });
    verb("set", "Set a key; the file is written only when the value changes",
         {{"FILE", &args->file},
          {"SECTION", &args->section},
          {"KEY", &args->key},
          {"VALUE", &args->value}})
        ->callback([ctx, args] { ctx->Run([args] { Set(*args); }); });
    verb("delete-key", "Remove a key from a section",
         {{"FILE", &args->file}, {"SECTION", &args->section}, {"KEY", &args->key}})
        ->callback([ctx, args] { ctx->Run([args] { DeleteKey(*args); }); });
    verb("delete-section", "Remove a whole section",
         {{"FILE", &args->file}, {"SECTION", &args->section}})
        ->callback([ctx, args] { ctx->Run([args] { DeleteSection(*args); }); });
}

} // namespace cli
