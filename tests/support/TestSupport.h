// Shared helpers of the core tests: temporary datafiles folders, exact file
// bytes and a prompter that answers from a script and records what it was asked.
#pragma once

#include "store/Datafiles.h"
#include "store/Prompter.h"

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

class CScriptedPrompter : public IPrompter {
public:
    // Answers given in order; when they run out, the prompt's default.
    std::deque<EPromptAnswer> answers;
    std::vector<SPrompt> asked;

    EPromptAnswer Ask(const SPrompt& prompt) override;
};

} // namespace test
