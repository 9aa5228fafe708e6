#include "cli/CliCore.h"

#include "contents/ProjectSettingsBase.h"
#include "datafile/Application.h"
#include "datafile/IniFile.h"
#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/IniRegistry.h"
#include "store/StandardOperations.h"

#include <algorithm>
#include <filesystem>
#include <fmt/xchar.h>
#include <fstream>
#include <iostream>
#include <optional>
#include <random>
#include <utility>

CCliFailure::CCliFailure(std::wstring text, int exitCode)
    : std::runtime_error(platform::ToUtf8(text)), message(std::move(text)), code(exitCode) {}

namespace {

// A standard or client named on the command line. The parser meets it before
// it knows the datafiles folder (--datafiles may follow the verb), so it is
// looked up when the command's core is made. One process runs one verb.
struct SReference {
    std::int32_t* target = nullptr;
    std::string text;
    bool client = false;
    bool noneAllowed = false;
};

std::vector<SReference>& References() {
    static std::vector<SReference> references;
    return references;
}

// The id a text spells with digits only (a sign allowed), if it does.
std::optional<std::int32_t> IdNumber(const std::string& text) {
    try {
        std::size_t used = 0;
        const long long value = std::stoll(text, &used);
        if (used == text.size() && value >= INT32_MIN && value <= INT32_MAX &&
            text.find_first_not_of(" \t") == 0)
            return static_cast<std::int32_t>(value);
    } catch (const std::exception&) {
    }
    return std::nullopt;
}

std::wstring IdList(const std::vector<std::int32_t>& ids) {
    std::wstring text;
    for (std::size_t i = 0; i < ids.size(); ++i)
        text += (i ? L", " : L"") + fmt::format(L"{}", ids[i]);
    return text;
}

// The one id of what a name names: "standard" or "client" for `kind`, the
// listing that shows them for `listing`.
std::int32_t NamedId(const std::vector<std::int32_t>& ids, const std::wstring& name,
                     const wchar_t* kind, const wchar_t* listing) {
    if (ids.empty())
        throw CCliFailure(
            fmt::format(L"There is no {} named '{}' (see '{}')", kind, name, listing));
    if (ids.size() > 1)
        throw CCliFailure(fmt::format(L"The name '{}' is ambiguous: {}s {} have it. Give the id.",
                                      name, kind, IdList(ids)),
                          2);
    return ids.front();
}

std::int32_t ResolveStandard(const CVX2D_ProjectRegistry& projects, const SReference& reference) {
    const std::string& text = reference.text;
    EProjectResult listed = eProjectOk;
    if (const auto id = IdNumber(text)) {
        if (*id == -1 && reference.noneAllowed)
            return -1;
        // A registry that cannot be read says so in the verb's own words.
        std::vector<SProjectInfo> all;
        if (projects.ListProjects(true, true, all) == eProjectOk &&
            std::none_of(all.begin(), all.end(),
                         [&](const SProjectInfo& p) { return p.id == *id; }))
            throw CCliFailure(cli::NoStandardText(*id));
        return *id;
    }
    const std::wstring name = cli::W(text);
    const auto ids = StandardsNamed(projects, name, listed);
    cli::Check(listed, L"Error reading the standard registry.");
    return NamedId(ids, name, L"standard", L"standard list --deleted");
}

std::int32_t ResolveClient(const CVX2D_ClientRegistry& clients, const SReference& reference) {
    if (const auto id = IdNumber(reference.text)) {
        if (*id == 0 && reference.noneAllowed)
            return 0;
        const auto all = clients.ListClients();
        if (std::none_of(all.begin(), all.end(), [&](const SClientInfo& c) { return c.id == *id; }))
            throw CCliFailure(cli::NoClientText(*id));
        return *id;
    }
    const std::wstring name = cli::W(reference.text);
    return NamedId(ClientsNamed(clients, name), name, L"client", L"client list");
}

} // namespace

SCore::SCore(const SCliOptions& options, bool mayBeMissing)
    : SCliPrompterHolder(options),
      CStandardsCore(MakeSystemRegistry(), cli::W(options.datafiles), cliPrompter) {
    if (!datafiles.IsKnown())
        throw CCliFailure(NoDatafilesText());
    if (!mayBeMissing && !datafiles.Exists())
        throw CCliFailure(MissingDatafilesText(datafiles.Root()));
    const std::vector<SReference> references = std::exchange(References(), {});
    for (const SReference& reference : references)
        *reference.target = reference.client ? ResolveClient(clients, reference)
                                             : ResolveStandard(projects, reference);
}

std::wstring SCore::FolderOf(std::int32_t id, const std::wstring& what) const {
    std::wstring folder;
    cli::Check(projects.GetProjectFolder(id, folder), what);
    return folder;
}

namespace cli {

std::wstring W(const std::string& text) {
    return platform::FromUtf8(text);
}

void Check(EProjectResult result, const std::wstring& what) {
    if (result != eProjectOk)
        throw CCliFailure(what + L"\n\n" + ProjectResultText(result));
}

void Check(EProjectResult result, const std::function<std::wstring()>& what) {
    if (result != eProjectOk)
        Check(result, what());
}

void RequireStorable(const std::wstring& text, const std::wstring& what) {
    if (!IsOneByteText(text) || text.find(L'\n') != std::wstring::npos)
        throw CCliFailure(
            fmt::format(L"{}\n\n'{}' holds a character that a datafile cannot store.", what, text));
}

void OpenExisting(CVX2D_IniFile& ini, const std::wstring& file) {
    ini.SetAutoSave(false);
    if (ini.Open(file) != CVX2D_IniFile::eOk)
        throw CCliFailure(fmt::format(L"Error opening datafile '{}'.", file));
}

void OpenForChange(CVX2D_IniFile& ini, const std::wstring& file) {
    ini.SetAutoSave(false);
    if (ini.OpenForUpdate(file) != CVX2D_IniFile::eOk)
        throw CCliFailure(fmt::format(L"Error opening datafile '{}' for update.", file));
}

void SaveChanged(CVX2D_IniFile& ini) {
    if (ini.Save() != CVX2D_IniFile::eOk)
        throw CCliFailure(fmt::format(L"Error saving datafile '{}'.", ini.GetPath()));
}

int ParseInt(const std::wstring& text, const std::wstring& what) {
    try {
        std::size_t used = 0;
        const long long value = std::stoll(text, &used);
        if (used == text.size() && value >= INT32_MIN && value <= INT32_MAX)
            return static_cast<int>(value);
    } catch (const std::exception&) {
    }
    throw CCliFailure(fmt::format(L"'{}' is not a whole number for {}.", text, what), 2);
}

int ParseApplicationArgument(const std::string& text) {
    const int application = ParseApplication(W(text));
    if (application == 0)
        throw CCliFailure(W("Unknown application '" + text +
                            "': give 1-4 or ELECTRIC, PID (P&ID), ISOMETRIC, ORTHO."),
                          2);
    return application;
}

int ParseSettingsSection(const std::string& text) {
    using Base = CVX2D_ProjectSettingsBase;
    if (text.empty())
        return -1;
    const std::wstring typed = TrimBlanks(W(text));
    std::wstring names;
    for (int id = Base::eBillOfMaterial; id <= Base::eSystemToggles; ++id) {
        if (typed == fmt::format(L"{}", id) || EqualsNoCase(typed, Base::SectionName(id)))
            return id;
        names += fmt::format(L"\n  {} {}", id, Base::SectionName(id));
    }
    throw CCliFailure(
        fmt::format(L"Unknown section '{}': give a section id or name:{}", typed, names), 2);
}

CLI::App* AddGroup(CLI::App& app, const std::string& name, const std::string& help) {
    CLI::App* group = app.add_subcommand(name, help);
    group->require_subcommand(1);
    return group;
}

void AddStandardId(CLI::App* command, std::int32_t& id) {
    AddStandardId(command, "ID", id, "The standard's id or exact name (see standard list)", false);
}

void AddStandardId(CLI::App* command, const std::string& label, std::int32_t& id,
                   const std::string& help, bool noneAllowed) {
    AddStandardOption(command, label, id, help, noneAllowed)->required();
}

CLI::Option* AddStandardOption(CLI::App* command, const std::string& label, std::int32_t& id,
                               const std::string& help, bool noneAllowed) {
    return command->add_option_function<std::string>(
        label,
        [&id, noneAllowed](const std::string& text) {
            References().push_back({&id, text, false, noneAllowed});
        },
        help);
}

CLI::Option* AddClientId(CLI::App* command, const std::string& label, std::int32_t& id,
                         const std::string& help, bool noneAllowed) {
    return command->add_option_function<std::string>(
        label,
        [&id, noneAllowed](const std::string& text) {
            References().push_back({&id, text, true, noneAllowed});
        },
        help);
}

std::int32_t ResolveStandardText(const SCore& core, const std::string& text) {
    return ResolveStandard(core.projects, {nullptr, text, false, false});
}

std::wstring NoStandardText(std::int32_t id) {
    return fmt::format(L"There is no standard {} (see 'standard list --deleted')", id);
}

std::wstring NoClientText(std::int32_t id) {
    return fmt::format(L"There is no client {} (see 'client list')", id);
}

namespace {

// The number of single-letter edits (one letter put in, left out, changed,
// or two neighbours swapped) that make one word the other.
std::size_t EditDistance(const std::string& a, const std::string& b) {
    std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i)
        d[i][0] = i;
    for (std::size_t j = 0; j <= b.size(); ++j)
        d[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        for (std::size_t j = 1; j <= b.size(); ++j) {
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1,
                                d[i - 1][j - 1] + (a[i - 1] != b[j - 1] ? 1u : 0u)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    }
    return d[a.size()][b.size()];
}

// An option of `app` or of a group above it (the global ones fall through)
// that takes a value, so the next argument is not a verb.
bool TakesValue(const CLI::App* app, const std::string& argument) {
    if (argument.find('=') != std::string::npos)
        return false;
    for (; app; app = app->get_parent()) {
        for (const CLI::Option* option : app->get_options()) {
            if (option->check_name(argument))
                return option->get_expected_max() != 0;
        }
    }
    return false;
}

// A name typed where a verb takes only an id (a line, a spec) says so.
void RequireNumericIds(CLI::App& app) {
    for (CLI::Option* option : app.get_options()) {
        const std::string label = option->get_name();
        if (option->get_type_name() != "INT" || label.find("ID") == std::string::npos)
            continue;
        option->check(CLI::Validator(
            [](std::string& text) {
                return IdNumber(text)
                           ? std::string()
                           : "takes an id (a whole number), not a name such as '" + text + "'";
            },
            "", "id"));
    }
    for (CLI::App* verb : app.get_subcommands({}))
        RequireNumericIds(*verb);
}

} // namespace

std::string UnknownVerbText(const CLI::App& app, const std::vector<std::string>& args) {
    const CLI::App* group = &app;
    std::size_t i = 0;
    for (; i < args.size(); ++i) {
        const std::string& argument = args[i];
        if (argument == "--")
            return {};
        if (argument.size() > 1 && argument[0] == '-') {
            if (TakesValue(group, argument))
                ++i;
            continue;
        }
        const CLI::App* verb = nullptr;
        for (const CLI::App* candidate : group->get_subcommands({})) {
            if (candidate->check_name(argument))
                verb = candidate;
        }
        if (verb) {
            group = verb;
            continue;
        }
        break;
    }
    if (group->get_require_subcommand_min() == 0)
        return {};
    std::string verbs;
    std::string nearest;
    std::size_t best = std::string::npos;
    for (const CLI::App* candidate : group->get_subcommands({})) {
        const std::string& name = candidate->get_name();
        verbs += (verbs.empty() ? "" : ", ") + name;
        if (i == args.size())
            continue;
        const std::size_t distance = EditDistance(args[i], name);
        // Close enough to be a slip of the keyboard, or the start of the verb.
        if ((distance <= std::max<std::size_t>(1, name.size() / 3) ||
             (args[i].size() >= 2 && name.rfind(args[i], 0) == 0)) &&
            distance < best) {
            best = distance;
            nearest = name;
        }
    }
    const std::string where = group == &app ? "" : " for '" + group->get_name() + "'";
    if (i == args.size())
        return "Missing verb" + where + ". Verbs: " + verbs + ".";
    std::string text = "Unknown verb '" + args[i] + "'" + where + ".";
    return text + (nearest.empty() ? " Verbs: " + verbs + "." : " Did you mean '" + nearest + "'?");
}

CLI::Option* AddYes(CLI::App* command, bool& yes, const std::string& help) {
    return command->add_flag("-y,--yes", yes, help);
}

CLI::Option* AddDryRun(CLI::App* command, bool& dryRun, const std::string& help) {
    return command->add_flag("--dry-run", dryRun, help);
}

void Confirm(bool yes, const std::wstring& question, const std::wstring& refusal) {
    if (yes)
        return;
    if (!platform::IsTerminal(0) || !platform::IsTerminal(2))
        throw CCliFailure(refusal, 2);
    std::cerr << platform::ToUtf8(question) << " [y/N] " << std::flush;
    std::string answer;
    if (std::getline(std::cin, answer)) {
        const std::wstring typed = TrimBlanks(W(answer));
        if (EqualsNoCase(typed, L"y") || EqualsNoCase(typed, L"yes"))
            return;
    }
    throw CCliFailure(L"Nothing was changed.");
}

CScratchFile::CScratchFile(const std::wstring& name) {
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path base = fs::temp_directory_path(ec);
    std::random_device random;
    for (int attempt = 0; attempt < 100 && m_strFolder.empty(); ++attempt) {
        const fs::path folder = base / fmt::format("standards-desk-cli-{}-{:08x}",
                                                   platform::CurrentProcessId(), random());
        if (fs::create_directory(folder, ec))
            m_strFolder = platform::FromPath(folder);
    }
    if (m_strFolder.empty())
        throw CCliFailure(
            fmt::format(L"No temporary file could be made in '{}'.", platform::FromPath(base)));
    m_strPath = platform::FromPath(platform::ToPath(m_strFolder) / platform::ToPath(name));
}

CScratchFile::~CScratchFile() {
    std::error_code ec;
    std::filesystem::remove_all(platform::ToPath(m_strFolder), ec);
}

void CScratchFile::FillFromStdin() const {
    std::ofstream file(platform::ToPath(m_strPath), std::ios::binary);
    // Not `<< rdbuf()`, which fails on an empty input.
    char buffer[65536];
    while (std::cin.read(buffer, sizeof buffer) || std::cin.gcount() > 0)
        file.write(buffer, std::cin.gcount());
    file.flush();
    if (!file)
        throw CCliFailure(fmt::format(L"Error writing '{}'.", m_strPath));
}

void CScratchFile::CopyTo(std::ostream& out) const {
    std::ifstream file(platform::ToPath(m_strPath), std::ios::binary);
    if (!file)
        throw CCliFailure(fmt::format(L"Error reading '{}'.", m_strPath));
    char buffer[65536];
    while (file.read(buffer, sizeof buffer) || file.gcount() > 0)
        out.write(buffer, file.gcount());
}

void AddAllCommands(CLI::App& app, SCliContext& context) {
    app.require_subcommand(1);
    app.set_version_flag("--version", "standards-desk-cli " SD_VERSION,
                         "Print the program's version and end");
    // Global options may also follow the verb: "standard list --json".
    app.fallthrough();
    app.add_option("--datafiles", context.options.datafiles,
                   "Datafiles folder to use instead of the installed one")
        ->type_name("DIR");
    app.add_flag("--json", context.options.json,
                 "Print one JSON document instead of TAB-separated lines (docs/json.md)");
    app.add_flag("-q,--quiet", context.options.quiet,
                 "Print no notes or questions on standard error, only failures");

    cli::AddDatafileCommands(app, context);
    cli::AddClientCommands(app, context);
    cli::AddStandardCommands(app, context);
    cli::AddGeneralCommands(app, context);
    cli::AddSettingsCommands(app, context);
    cli::AddBordersCommands(app, context);
    cli::AddLayersCommands(app, context);
    cli::AddLinesCommands(app, context);
    cli::AddSpecsCommands(app, context);
    cli::AddDrawingsCommands(app, context);
    cli::AddAppCommands(app, context);
    cli::AddEditorCommands(app, context);
    cli::AddCompareCommands(app, context);
    cli::AddMergeCommands(app, context);
    cli::AddRestoreCommands(app, context);
    cli::AddReportCommands(app, context);
    cli::AddDoctorCommands(app, context);
    cli::AddCompletionCommands(app, context);
    RequireNumericIds(app);
    cli::AddHelpFooters(app);
}

} // namespace cli
