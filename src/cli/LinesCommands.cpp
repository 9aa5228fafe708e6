// lines ..., drawings list: a standard's line numbers and the files of its
// drawings folders.
#include "cli/CliCore.h"
#include "contents/DrawingsListing.h"
#include "contents/ProjectLines.h"
#include "datafile/Application.h"
#include "datafile/Names.h"
#include "datafile/Text.h"
#include "store/GeneralSettings.h"

#include <algorithm>
#include <fmt/chrono.h>
#include <fmt/xchar.h>
#include <numeric>

namespace cli {

namespace lines_verbs {

// A time as ISO 8601 in UTC: "2024-03-10T11:00:00Z".
std::string IsoDate(std::int64_t seconds) {
    return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(static_cast<std::time_t>(seconds)));
}

struct SArgs {
    std::int32_t id = 0;
    std::int32_t itemId = 0; // a line id
    std::string name;
    std::string application;
    bool withDeleted = false;
    bool backups = false;
};

void CheckLine(ELineResult result, const std::wstring& what) {
    if (result != eLineOk)
        throw CCliFailure(what + L"\n\n" + CVX2D_ProjectLines::GetErrorText(result));
}

COutput LinesList(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    SLineList lines;
    CheckLine(CVX2D_ProjectLines(core.projects).GetLines(a.id, lines, a.withDeleted),
              fmt::format(L"Error reading the lines of standard '{}'.", core.NameOf(a.id)));
    COutput output({{"line_id"}, {"state"}, {"name"}});
    for (std::size_t i = 0; i < lines.Size(); ++i)
        output.Add(
            {lines.ids[i], std::wstring(lines.deleted[i] ? L"deleted" : L"live"), lines.names[i]});
    return output;
}

COutput LinesCreate(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    std::int32_t lineId = 0;
    std::wstring name;
    CheckLine(CVX2D_ProjectLines(core.projects).CreateLine(a.id, lineId, name),
              fmt::format(L"Error creating a new line in standard '{}'.", core.NameOf(a.id)));
    COutput output({{"line_id"}, {"name"}});
    output.Add({lineId, name});
    return output;
}

void LinesRename(const SCliOptions& options, const SArgs& a) {
    SCore core(options);
    const std::wstring name = W(a.name);
    const ELineResult result = CVX2D_ProjectLines(core.projects).RenameLine(a.id, a.itemId, name);
    const std::wstring what = fmt::format(L"Error renaming line {} of standard '{}' to '{}'.",
                                          a.itemId, core.NameOf(a.id), name);
    // A refused name says which rule it breaks.
    if (result == eLineInvalidName && !NameProblem(name).empty())
        throw CCliFailure(what + L"\n\n" + CVX2D_ProjectLines::GetErrorText(result) + L": " +
                          NameProblem(name));
    CheckLine(result, what);
}

COutput DrawingsList(const SCliOptions& options, const SArgs& a) {
    const int application = ParseApplicationArgument(a.application);
    SCore core(options);
    const std::wstring what = fmt::format(L"Error listing the {} drawings of standard '{}'.",
                                          ApplicationName(application), core.NameOf(a.id));
    core.FolderOf(a.id, what);
    CVX2D_GeneralSettings general;
    if (!general.Load(core.projects, a.id))
        throw CCliFailure(what);
    const std::wstring folder = general.GetDrawingsLocation(application);
    if (folder.empty())
        throw CCliFailure(what + L"\n\nThe standard has no drawings folder for " +
                          ApplicationName(application) + L".");
    SDrawingList list;
    if (!ListDrawings(folder, a.backups, list))
        throw CCliFailure(fmt::format(L"{}\n\nThe drawings folder '{}' cannot be read.", what,
                                      WithoutTrailingSeparator(folder)));
    // The folder's own order differs between systems; show them by name.
    std::vector<std::size_t> order(list.Size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t x, std::size_t y) { return list.names[x] < list.names[y]; });
    COutput output({{"name"}, {"size"}, {"date"}});
    // JSON: the size in bytes and the date in ISO 8601 (UTC).
    for (std::size_t i : order) {
        const bool known = list.bytes[i] >= 0;
        output.Add({list.names[i],
                    STwoForms{list.sizes[i], known ? nlohmann::ordered_json(list.bytes[i])
                                                   : nlohmann::ordered_json()},
                    STwoForms{list.dates[i], known ? nlohmann::ordered_json(IsoDate(list.times[i]))
                                                   : nlohmann::ordered_json()}});
    }
    return output;
}

} // namespace lines_verbs

void AddLinesCommands(CLI::App& app, SCliContext& context) {
    using namespace lines_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    auto* group = AddGroup(app, "lines", "A standard's line numbers");
    auto withId = [&](const char* name, const char* help) {
        auto* command = group->add_subcommand(name, help);
        AddStandardId(command, args->id);
        return command;
    };
    // delete and recover: one line of one standard, with the lines editor's message.
    using CLineOperation = ELineResult (CVX2D_ProjectLines::*)(std::int32_t, std::int32_t) const;
    auto lineAction = [ctx, args](CLineOperation operation, const wchar_t* what) {
        return [ctx, args, operation, what] {
            ctx->Run([ctx, args, operation, what] {
                SCore core(ctx->options);
                CheckLine((CVX2D_ProjectLines(core.projects).*operation)(args->id, args->itemId),
                          fmt::format(fmt::runtime(what), args->itemId, core.NameOf(args->id)));
            });
        };
    };

    auto* list = withId("list", "LINE_ID, STATE (live or deleted), NAME");
    list->add_flag("--deleted", args->withDeleted, "Include deleted lines");
    list->callback(
        [ctx, args] { ctx->Print([ctx, args] { return LinesList(ctx->options, *args); }); });
    withId("create", "Create a line named \"Line n\"; prints LINE_ID, NAME")->callback([ctx, args] {
        ctx->Print([ctx, args] { return LinesCreate(ctx->options, *args); });
    });
    auto* del = withId("delete", "Mark a line as deleted");
    del->add_option("LINE_ID", args->itemId, "The line's id (see lines list)")->required();
    del->callback(
        lineAction(&CVX2D_ProjectLines::DeleteLine, L"Error deleting line {} of standard '{}'."));
    auto* recover = withId("recover", "Bring a deleted line back");
    recover->add_option("LINE_ID", args->itemId, "The line's id (see lines list --deleted)")
        ->required();
    recover->callback(lineAction(&CVX2D_ProjectLines::RecoverLine,
                                 L"Error recovering line {} of standard '{}'."));
    auto* rename = withId("rename", "Rename a live line");
    rename->add_option("LINE_ID", args->itemId, "The line's id (see lines list)")->required();
    rename->add_option("NAME", args->name, "Its new name")->required();
    rename->callback([ctx, args] { ctx->Run([ctx, args] { LinesRename(ctx->options, *args); }); });
    withId("repair", "Raise the shared line counter past the standard's lines")
        ->callback([ctx, args] {
            ctx->Run([ctx, args] {
                SCore core(ctx->options);
                CheckLine(CVX2D_ProjectLines(core.projects).RepairLastLineId(args->id),
                          fmt::format(L"Error repairing the line counter for standard '{}'.",
                                      core.NameOf(args->id)));
            });
        });
}

void AddDrawingsCommands(CLI::App& app, SCliContext& context) {
    using namespace lines_verbs;
    auto args = std::make_shared<SArgs>();
    SCliContext* ctx = &context;
    auto* group = AddGroup(app, "drawings", "The drawing files of a standard's folders");
    auto* list = group->add_subcommand(
        "list", "NAME, SIZE, DATE of the drawings in an application's drawings folder, by name");
    AddStandardId(list, args->id);
    list->add_option("APP", args->application, "1-4 or ELECTRIC, PID (P&ID), ISOMETRIC, ORTHO")
        ->required();
    list->add_flag("--backups", args->backups, "List the .bak files instead of the .dwg files");
    list->callback(
        [ctx, args] { ctx->Print([ctx, args] { return DrawingsList(ctx->options, *args); }); });
}

} // namespace cli
