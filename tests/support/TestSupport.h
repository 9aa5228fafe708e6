// Shared helpers of the core tests: temporary datafiles folders, exact file
// bytes and a prompter that answers from a script and records what it was asked.
#pragma once

#include "store/Datafiles.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

namespace test {

// A fresh folder under the system's temporary folder, removed afterwards.
class CTempDir {
public:
    CTempDir();
    ~CTempDir();
    CTempDir(const CTempDir&) = delete;
    CTempDir& operator=(const CTempDir&) = delete;
    const std::filesystem::path& Path() const { return m_path; }
    // The folder as text, ending in a separator.
    std::wstring Text() const;
    std::wstring File(const std::wstring& name) const;

private:
    std::filesystem::path m_path;
};

// A temporary datafiles folder holding the shipped standard templates.
class CDatafilesFixture {
public:
    CDatafilesFixture();
    const CVX2D_Datafiles& Datafiles() const { return m_datafiles; }
    const CTempDir& Dir() const { return m_dir; }
    std::wstring File(const std::wstring& name) const { return m_dir.File(name); }

private:
    CTempDir m_dir;
    CVX2D_Datafiles m_datafiles;
};

std::string ReadBytes(const std::filesystem::path& file);
void WriteBytes(const std::filesystem::path& file, const std::string& bytes);
std::filesystem::path P(const std::wstring& text);

// Switches the process to a decimal-comma locale (de_DE, fr_FR, ...) as the
// desktop toolkit does for such users, and back afterwards. Available()
// is false when the system has none; tests then say so and skip.
class CDecimalCommaLocale {
public:
    CDecimalCommaLocale();
    ~CDecimalCommaLocale();
    CDecimalCommaLocale(const CDecimalCommaLocale&) = delete;
    CDecimalCommaLocale& operator=(const CDecimalCommaLocale&) = delete;
    bool Available() const { return !m_name.empty(); }
    const std::string& Name() const { return m_name; }

private:
    std::string m_name;
    std::string m_previous;
};

// While it lives, no file of this process can grow: every write of file
// data fails as on a full disk, while renames and folders still work.
// Available() is false where the system cannot do that (Windows).
class CFullDisk {
public:
    CFullDisk();
    ~CFullDisk();
    CFullDisk(const CFullDisk&) = delete;
    CFullDisk& operator=(const CFullDisk&) = delete;
    bool Available() const { return m_available; }

private:
    bool m_available = false;
    unsigned long long m_previous = 0;
};

// Ends a process at once, as a crash or a power cut would.
void KillProcess(std::int64_t pid);

// `text` with each '/' as this system writes a separator ('\\' on Windows):
// what the programs show of a path they put together.
std::wstring N(std::wstring text);
std::string N(std::string text);
// A path written the Linux way ("/srv/a") as an absolute path of this system
// ("C:\\srv\\a" on Windows).
std::wstring Abs(const std::wstring& text);
// A path as the command line's TSV output shows it (backslashes escaped).
std::string Tsv(std::string text);

// Makes a file look last written `age` ago, even while another process holds
// it open (as the holder of a lock file does).
void AgeFile(const std::filesystem::path& file, std::chrono::seconds age);

// Sets an environment variable of this process (and of the children it
// starts), or removes it when `value` is null.
void SetEnv(const char* name, const char* value);

class CScriptedPrompter : public IPrompter {
public:
    // Answers given in order; when they run out, the prompt's default.
    std::deque<EPromptAnswer> answers;
    std::vector<SPrompt> asked;

    EPromptAnswer Ask(const SPrompt& prompt) override;
};

// Standards on disk: a temporary datafiles folder holding the shipped
// templates, a scripted prompter and the standard registry over them. It is
// the second base of a fixture (`class XTest : public ::testing::Test,
// protected test::CStandardOnDisk`), being initialised before the fixture's
// own members, or stands alone in a test. Nothing is listed until the test
// calls ListStandards or creates a standard.
class CStandardOnDisk {
public:
    const CVX2D_Datafiles& Datafiles() const { return m_folder.Datafiles(); }
    // The datafiles folder; as text it ends in a separator.
    const std::filesystem::path& Root() const { return m_folder.Dir().Path(); }
    std::wstring RootText() const { return m_folder.Dir().Text(); }
    // Where standard 1 "Pipe" lives.
    std::filesystem::path Folder() const;
    // The folder the registry gives standard `id`.
    std::filesystem::path FolderOf(std::int32_t id) const;

    // "ProjectDatafile.ini" listing standard 1 "Pipe", then standards 2, 3,
    // ... named `others`.
    void ListStandards(const std::vector<std::string>& others = {}) const;
    // Standards 1 "Pipe" and 2 "Other" with folders and 3 "Gone" without,
    // and clients 1 and 2 with Pipe under client 1.
    void ListStandardsWithClients() const;
    // A new standard from template `templateNumber`; its id.
    std::int32_t Create(const std::wstring& name, int templateNumber = 1, bool oldFormat = false);

    // A file of standard 1's folder.
    std::string Read(const std::string& name) const;
    void Write(const std::string& name, const std::string& bytes) const;

private:
    CDatafilesFixture m_folder;

public:
    CScriptedPrompter prompter;
    CVX2D_ProjectRegistry registry{m_folder.Datafiles(), prompter};
};

} // namespace test
