// drawings copy|delete|new|rename|open and settings editor: the drawings
// manager's commands and the settings editor's rows, as the desktop views
// run them.
#include "cli/CliCore.h"
#include "datafile/Application.h"
#include "datafile/Text.h"
#include "editors/DrawingsManager.h"
#include "editors/SettingsEditor.h"

#include <algorithm>
#include <filesystem>
#include <fmt/xchar.h>
#include <iostream>

namespace cli {

namespace editor_verbs {

struct SArgs : SSectionArgs {
    std::vector<std::string> names;
    std::string oldName;
    std::string newName;
    bool dryRun = false;
};

// The core objects of one drawings command, the manager opened on the
// standard's drawings folder of the application.
struct SDrawings {
    SDrawings(const SCliOptions& options, const SArgs& a)
        : application(ParseApplicationArgument(a.application)), core(options),
          prompter(core.prompter),
          manager(core.projects, core.installation, core.profile, prompter) {
        const std::wstring what = fmt::format(L"Error opening the {} drawings of standard '{}'.",
                                              ApplicationName(application), core.NameOf(a.id));
        core.FolderOf(a.id, what);
        if (!manager.Open(a.id, application))
            prompter.Fail(what);
    }
    std::wstring FileName(const std::wstring& full) const {
        return full.substr(manager.Folder().size());
    }

    int application;
    SCore core;
    CRecordingPrompter prompter;
    CDrawingsManager manager;
};

std::vector<std::wstring> Names(const std::vector<std::string>& names) {
    std::vector<std::wstring> wide;
    for (const auto& name : names)
        wide.push_back(W(name));
    return wide;
}

COutput Copy(const SCliOptions& options, const SArgs& a) {
    SDrawings d(options, a);
    const auto items = Names(a.names);
    const auto made = d.manager.Copy(items);
    COutput output({{"name"}, {"copy"}});
    for (const auto& [source, target] : made)
        output.Add({d.FileName(source), d.FileName(target)});
    if (d.prompter.Told()) {
        output.Write(std::cout, options.json);
        d.prompter.Fail(L"Error copying drawings.");
    }
    return output;
}

COutput Delete(const SCliOptions& options, const SArgs& a) {
    SDrawings d(options, a);
    const auto items = Names(a.names);
    const auto deleted = d.manager.Delete(items);
    COutput output({{"deleted"}});
    for (const auto& item : deleted)
        output.Add({d.FileName(d.manager.FullName(item))});
    std::wstring kept;
    for (const auto& item : items) {
        if (std::find(deleted.begin(), deleted.end(), item) == deleted.end())
            kept += L"\n" + d.manager.FullName(item);
    }
    if (!kept.empty()) {
        output.Write(std::cout, options.json);
        throw CCliFailure(L"Error deleting drawings. These files were not deleted:" + kept);
    }
    return output;
}

COutput New(const SCliOptions& options, const SArgs& a) {
    SDrawings d(options, a);
    const std::wstring file = d.manager.NewDrawing();
    if (file.empty())
        d.prompter.Fail(L"Error creating a new drawing.");
    COutput output({{"name"}});
    output.Add({file});
    return output;
}

void Rename(const SCliOptions& options, const SArgs& a) {
    SDrawings d(options, a);
    const std::wstring item = W(a.oldName);
    const std::wstring source = d.manager.FullName(item);
    std::error_code ec;
    if (!std::filesystem::exists(platform::ToPath(source), ec))
        throw CCliFailure(fmt::format(L"Error renaming drawing '{}'.\n\nThe file '{}' does not "
                                      L"exist.",
                                      item, source));
    // A refusal comes with a message; the same name again is nothing to do.
    if (!d.manager.Rename(item, W(a.newName)) && d.prompter.Told())
        d.prompter.Fail(fmt::format(L"Error renaming drawing '{}'.", item));
}

COutput Open(const SCliOptions& options, const SArgs& a) {
    SDrawings d(options, a);
    const std::wstring item = W(a.oldName);
    const std::wstring file = d.manager.FullName(item);
    std::error_code ec;
    if (file.empty() || !std::filesystem::exists(platform::ToPath(file), ec))
        throw CCliFailure(fmt::format(L"Error opening drawing '{}'.\n\nThe file '{}' does not "
                                      L"exist.",
                                      item, file));
    const SDrawingLaunch launch =
        a.dryRun ? d.manager.OpenDecision(item) : d.manager.OpenDrawing(item);
    COutput output({{"action"}, {"program"}, {"parameters"}, {"folder"}, {"file"}});
    output.Add({std::wstring(launch.kind == SDrawingLaunch::eLauncher ? L"launcher" : L"open"),
                launch.program, launch.parameters, launch.folder, launch.file});
    return output;
}

COutput Editor(const SCliOptions& options, const SArgs& a) {
    const int application = ParseApplicationArgument(a.application);
    const int section = ParseSettingsSection(a.section);
    SCore core(options);
    const std::wstring what = fmt::format(L"Error reading {} settings of standard '{}'.",
                                          ApplicationSettingsName(application), core.NameOf(a.id));
    core.FolderOf(a.id, what);
    CSettingsEditor editor(core.projects, core.prompter);
    if (!editor.Open(a.id, application, section))
        throw CCliFailure(what);
    if (editor.Rows().empty())
        throw CCliFailure(fmt::format(L"{} settings have no section {} \"{}\".",
                                      ApplicationSettingsName(application), section,
                                      CVX2D_ProjectSettingsBase::SectionName(section)),
                          2);
    COutput output({{"row"}, {"label"}, {"cell"}, {"text"}, {"choices"}, {"readonly"}});
    for (std::size_t i = 0; i < editor.Rows().size(); ++i) {
        const SSettingsRow& row = editor.Rows()[i];
        output.Add({static_cast<std::int64_t>(i), row.label,
                    row.subHeading ? std::wstring(L"heading") : SettingsCellName(row.cell),
                    row.text, std::vector<std::wstring>(row.choices.begin(), row.choices.end()),
                    row.readOnly});
    }
    return output;
}

} // namespace editor_verbs

void AddEditorCommands(CLI::App& app, SCliContext& context) {
    using namespace editor_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    const char* const appHelp = "1-4 or ELECTRIC, PID (P&ID), ISOMETRIC, ORTHO";

    CLI::App* drawings = app.get_subcommand("drawings");
    auto withApp = [&](const char* name, const char* help) {
        auto* command = drawings->add_subcommand(name, help);
        AddStandardId(command, args->id);
        command->add_option("APP", args->application, appHelp)->required();
        return command;
    };

    auto* copy = withApp("copy", "Copy drawings beside themselves as \"NAME (Copy n).dwg\"; "
                                 "prints NAME, COPY of each copy made");
    copy->add_option("NAME", args->names, "Drawing file names (.dwg may be left out)")->required();
    copy->callback([ctx, args] { ctx->Print([ctx, args] { return Copy(ctx->options, *args); }); });

    auto* remove = withApp("delete", "Delete drawings for good; prints the files deleted");
    remove->add_option("NAME", args->names, "Drawing file names (.dwg may be left out)")
        ->required();
    AddYes(remove, ctx->options.yes, "Confirm: deleted drawings cannot be recovered");
    remove->callback([ctx, args] {
        ctx->Print([ctx, args] {
            Confirm(ctx->options.yes, L"Delete these drawings for good?",
                    L"delete removes the drawings for good; confirm with --yes");
            return Delete(ctx->options, *args);
        });
    });

    withApp("new", "Make a new drawing from the standard's drawing template; prints its name")
        ->callback([ctx, args] { ctx->Print([ctx, args] { return New(ctx->options, *args); }); });

    auto* rename = withApp("rename", "Rename a drawing (its extension is kept when NEW has none)");
    rename->add_option("OLD", args->oldName, "The drawing to rename (.dwg may be left out)")
        ->required();
    rename->add_option("NEW", args->newName, "Its new name")->required();
    rename->callback([ctx, args] { ctx->Run([ctx, args] { Rename(ctx->options, *args); }); });

    auto* open = withApp("open", "Open a drawing in the drafting program (or the desktop's "
                                 "program for it); prints ACTION (launcher or open), PROGRAM, "
                                 "PARAMETERS, FOLDER, FILE");
    open->add_option("NAME", args->oldName, "The drawing to open (.dwg may be left out)")
        ->required();
    open->add_flag("--dry-run", args->dryRun, "Only print what would be started");
    open->callback([ctx, args] { ctx->Print([ctx, args] { return Open(ctx->options, *args); }); });

    CLI::App* settings = app.get_subcommand("settings");
    auto* editor = settings->add_subcommand(
        "editor", "The rows of a section as the settings editor shows them: ROW, LABEL, CELL "
                  "(list, font, number, text, path or heading), TEXT, CHOICES (joined by |), "
                  "READONLY");
    AddStandardId(editor, args->id);
    editor->add_option("APP", args->application, appHelp)->required();
    editor->add_option("SECTION", args->section, "Section id 0-8 or name")->required();
    editor->callback(
        [ctx, args] { ctx->Print([ctx, args] { return Editor(ctx->options, *args); }); });
}

} // namespace cli
