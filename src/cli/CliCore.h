// What every command of standards-desk-cli shares: the global options, the
// core objects over the datafiles folder, failures with the system's own
// message, and the registration of each command group.
#pragma once

#include "app/StandardsCore.h"
#include "cli/CliPrompter.h"
#include "cli/Output.h"
#include "datafile/ProjectResult.h"
#include "store/ClientRegistry.h"
#include "store/Datafiles.h"
#include "store/Installation.h"
#include "store/ProjectRegistry.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

class CVX2D_IniFile;

struct SCliOptions {
    std::string datafiles; // --datafiles, empty: the installation value
    bool json = false;
    bool yes = false;
    bool quiet = false; // -q: no notes on standard error, only failures
};

// A failed operation: the message the desktop program would show, and the
// exit code (1 failure, 2 bad usage).
struct CCliFailure : std::runtime_error {
    CCliFailure(std::wstring text, int exitCode = 1);
    std::wstring message;
    int code;
};

// The parsed command line: the options and the chosen verb's work, run once
// parsing has succeeded.
struct SCliContext {
    SCliOptions options;
    std::function<void(std::ostream&)> action;

    // Whether records go to a person at a terminal (an aligned table with a
    // header) rather than to a pipe or a file (TAB-separated lines).
    bool table = false;

    // The chosen verb prints `make()`'s records.
    void Print(std::function<COutput()> make) {
        action = [this, make = std::move(make)](std::ostream& out) {
            const COutput output = make();
            if (table && !options.json)
                output.WriteTable(out);
            else
                output.Write(out, options.json);
        };
    }
    // The chosen verb has no records to print: nothing, or an empty JSON
    // document so that scripts can parse every answer.
    void Run(std::function<void()> work) {
        action = [this, work = std::move(work)](std::ostream& out) {
            work();
            if (options.json)
                out << "[]\n";
        };
    }
};

// The command line's answers to the core's questions, made before the core
// that asks them.
struct SCliPrompterHolder {
    explicit SCliPrompterHolder(const SCliOptions& options)
        : cliPrompter(options.yes, options.quiet) {}
    CCliPrompter cliPrompter;
};

// Everything a command needs to reach the datafiles folder: the core both
// programs build, answering through the command line.
struct SCore : private SCliPrompterHolder, public CStandardsCore {
    // Fails when the datafiles folder is unknown or, unless `mayBeMissing`
    // (the installation, which makes it), not there. The standards and
    // clients the command line named are looked up here, once the folder is
    // known (see AddStandardId).
    explicit SCore(const SCliOptions& options, bool mayBeMissing = false);

    // The standard's folder; fails with `what` and the registry's text.
    std::wstring FolderOf(std::int32_t id, const std::wstring& what) const;
};

namespace cli {

std::wstring W(const std::string& text);

// Answers questions as the command line does and keeps the last message, so
// that a command that was refused can fail with the core's own words.
class CRecordingPrompter : public IPrompter {
public:
    explicit CRecordingPrompter(IPrompter& inner) : m_inner(inner) {}
    EPromptAnswer Ask(const SPrompt& prompt) override {
        if (prompt.buttons == EPromptButtons::Ok) {
            m_last = prompt.text;
            return EPromptAnswer::Ok;
        }
        return m_inner.Ask(prompt);
    }
    bool Told() const { return !m_last.empty(); }
    // Fails with the last message, or with `fallback` when none was given.
    [[noreturn]] void Fail(const std::wstring& fallback, int code = 1) const {
        throw CCliFailure(m_last.empty() ? fallback : m_last, code);
    }

private:
    IPrompter& m_inner;
    std::wstring m_last;
};

// Throws the failure "what\n\n<the code's text>" unless the result is Ok.
void Check(EProjectResult result, const std::wstring& what);
// The same with the first line made only when it is needed: naming the
// standard costs a read of the registry.
void Check(EProjectResult result, const std::function<std::wstring()>& what);

// Text that a datafile cannot hold (a character above 255, a line break)
// is refused before anything is written.
void RequireStorable(const std::wstring& text, const std::wstring& what);

void OpenExisting(CVX2D_IniFile& ini, const std::wstring& file);
void OpenForChange(CVX2D_IniFile& ini, const std::wstring& file);
void SaveChanged(CVX2D_IniFile& ini);

// A whole number typed for `what`; anything else is bad usage.
int ParseInt(const std::wstring& text, const std::wstring& what);

// A group of verbs, one of which must follow it.
CLI::App* AddGroup(CLI::App& app, const std::string& name, const std::string& help);
// The standard a verb works on: the positional "ID", given as an id or as
// the standard's exact name. `id` is set when the command's core is made; a
// standard that is not there fails then, in one wording for every verb.
void AddStandardId(CLI::App* command, std::int32_t& id);
// The same under another label and help; `noneAllowed` lets -1 stand for no standard.
void AddStandardId(CLI::App* command, const std::string& label, std::int32_t& id,
                   const std::string& help, bool noneAllowed);
// The same as an option that may be left out ("--standard").
CLI::Option* AddStandardOption(CLI::App* command, const std::string& label, std::int32_t& id,
                               const std::string& help, bool noneAllowed = false);
// A client given as an id or by its exact name; with `noneAllowed`, 0 stands
// for no client.
CLI::Option* AddClientId(CLI::App* command, const std::string& label, std::int32_t& id,
                         const std::string& help, bool noneAllowed);

// A standard named by a verb's own option text (an id or an exact name),
// looked up now that the core is made; fails as AddStandardId's do.
std::int32_t ResolveStandardText(const SCore& core, const std::string& text);

// "There is no standard 99 (see 'standard list --deleted')" and the same for
// clients: what every verb says of a standard or client that is not there.
std::wstring NoStandardText(std::int32_t id);
std::wstring NoClientText(std::int32_t id);

// What to say instead of the parser's words when the command line names a
// verb its group does not have, or stops at a group: "Unknown verb 'lst' for
// 'standard'. Did you mean 'list'?". Empty when the verbs are in order.
std::string UnknownVerbText(const CLI::App& app, const std::vector<std::string>& args);

// `--yes` and `-y` on a verb that cannot be undone.
CLI::Option* AddYes(CLI::App* command, bool& yes, const std::string& help);
// `--dry-run` on a verb that can say what it would do instead.
CLI::Option* AddDryRun(CLI::App* command, bool& dryRun, const std::string& help);
// Goes on when `yes` was given. Otherwise, on a terminal, asks `question`
// and fails unless the answer is yes; elsewhere (a script) fails as bad
// usage with `refusal`, which says to confirm with --yes.
void Confirm(bool yes, const std::wstring& question, const std::wstring& refusal);

// A file of its own in a new folder under the system's temporary folder,
// removed with it: how `-` (standard input or output) is read or written
// where a verb needs a file.
class CScratchFile {
public:
    explicit CScratchFile(const std::wstring& name);
    ~CScratchFile();
    CScratchFile(const CScratchFile&) = delete;
    CScratchFile& operator=(const CScratchFile&) = delete;
    const std::wstring& Path() const { return m_strPath; }
    // Standard input, byte for byte, into the file.
    void FillFromStdin() const;
    // The file, byte for byte, to `out`.
    void CopyTo(std::ostream& out) const;

private:
    std::wstring m_strFolder;
    std::wstring m_strPath;
};

// Examples and the global options at the foot of every command's --help.
void AddHelpFooters(CLI::App& app);
// Whether the command's --help has examples.
bool HasExamples(const CLI::App& command);

// The program's global options and every command group.
void AddAllCommands(CLI::App& app, SCliContext& context);

void AddDatafileCommands(CLI::App& app, SCliContext& context);
void AddClientCommands(CLI::App& app, SCliContext& context);
void AddStandardCommands(CLI::App& app, SCliContext& context);
void AddGeneralCommands(CLI::App& app, SCliContext& context);
void AddSettingsCommands(CLI::App& app, SCliContext& context);
void AddBordersCommands(CLI::App& app, SCliContext& context);
void AddLayersCommands(CLI::App& app, SCliContext& context);
void AddLinesCommands(CLI::App& app, SCliContext& context);
void AddSpecsCommands(CLI::App& app, SCliContext& context);
void AddDrawingsCommands(CLI::App& app, SCliContext& context);
void AddAppCommands(CLI::App& app, SCliContext& context);
// Adds the editors' verbs to the "drawings" and "settings" groups, so it
// runs after both are added.
void AddEditorCommands(CLI::App& app, SCliContext& context);
void AddCompareCommands(CLI::App& app, SCliContext& context);
void AddMergeCommands(CLI::App& app, SCliContext& context);
// Adds "restore-defaults" to the "settings" group, so it runs after it.
void AddRestoreCommands(CLI::App& app, SCliContext& context);
void AddReportCommands(CLI::App& app, SCliContext& context);
void AddCompletionCommands(CLI::App& app, SCliContext& context);
void AddDoctorCommands(CLI::App& app, SCliContext& context);

// A settings section given as 0-8 or by its name in any letter case ("Layers"
// is 5); -1 when none was given. Anything else is bad usage.
int ParseSettingsSection(const std::string& text);

// An application given as 1-4 or by name (ELECTRIC, PID or P&ID, ISOMETRIC,
// ORTHO); anything else is bad usage.
int ParseApplicationArgument(const std::string& text);

// The arguments of a verb on one settings section of one application of a
// standard.
struct SSectionArgs {
    std::int32_t id = 0;
    std::string application;
    std::string section; // empty: every section
};

} // namespace cli
