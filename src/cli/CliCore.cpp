#include "cli/CliCore.h"

#include "contents/ProjectSettingsBase.h"
#include "datafile/Application.h"
#include "datafile/IniFile.h"
#include "datafile/Text.h"
#include "platform/System.h"
#include "platform/Utf8.h"
#include "store/IniRegistry.h"

#include <filesystem>
#include <fmt/xchar.h>
#include <fstream>
#include <iostream>
#include <random>

CCliFailure::CCliFailure(std::wstring text, int exitCode)
    : std::runtime_error(platform::ToUtf8(text)), message(std::move(text)), code(exitCode) {}

SCore::SCore(const SCliOptions& options, bool mayBeMissing)
    : SCliPrompterHolder(options),
      CStandardsCore(MakeSystemRegistry(), cli::W(options.datafiles), cliPrompter) {
    if (!datafiles.IsKnown())
        throw CCliFailure(NoDatafilesText());
    if (!mayBeMissing && !datafiles.Exists())
        throw CCliFailure(MissingDatafilesText(datafiles.Root()));
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
    command->add_option("ID", id, "The standard's id (see standard list)")->required();
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
    cli::AddRestoreCommands(app, context);
    cli::AddReportCommands(app, context);
    cli::AddHelpFooters(app);
}

} // namespace cli
