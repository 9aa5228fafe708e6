// The navigator's Export... and Import... commands without their file
// dialogs: what is proposed, what is asked, what is created and what the
// user is told.
#pragma once

#include "app/StandardArchive.h"
#include "store/Profile.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <optional>

class CStandardTransfer {
public:
    static constexpr const wchar_t* kSaveTitle = L"Save Standard As";
    static constexpr const wchar_t* kSaveFilter = L"Exported Standards (*.xst)|*.xst|";
    static constexpr const wchar_t* kOpenTitle = L"Select the Exported files to Import";
    static constexpr const wchar_t* kOpenFilter = L"Exported Files (*.xst;*.xpj)|*.xst;*.xpj||";

    CStandardTransfer(CVX2D_ProjectRegistry& projects, CProfile& profile, IPrompter& prompter)
        : m_projects(projects), m_profile(profile), m_prompter(prompter) {}

    // The folder the save dialog opens in and the file name it proposes.
    std::wstring ExportFolder() const;
    std::wstring ProposedExportFile(const std::wstring& standardName) const;
    // Writes the standard to `file` (replacing it) and remembers its folder.
    bool Export(std::int32_t standardId, const std::wstring& file,
                const CArchiveProgress& progress = {});

    // The question before the open dialog: true for archives of the 2015
    // generation, false for newer ones, nothing when the user cancels.
    std::optional<bool> AskOldFormat();
    std::wstring ImportFolder() const;

    struct SImported {
        std::wstring file;
        std::int32_t id = 0; // 0 when no standard could be created
        std::wstring name;
        std::vector<std::wstring> skipped;
    };
    // One new standard per existing file, in order, under `clientId`. A file
    // that is not a readable archive, or would pass the limits of the import
    // as a whole, creates nothing; one whose extraction fails part-way has
    // its new standard removed again. Each is reported ("Error importing
    // ...") and the next file goes on; a cancel stops the import. Ends with a
    // message listing the entries that were left out, if any.
    std::vector<SImported> Import(const std::vector<std::wstring>& files, std::int32_t clientId,
                                  bool oldFormat, const CArchiveProgress& progress = {});

    // What Import would do with each existing file, writing nothing: the
    // name of the standard it would make, or why the file would be refused.
    // Each file is checked against the limits on its own.
    struct SImportCheck {
        std::wstring file;
        std::wstring name;
        std::wstring refused; // empty when the file would be imported
    };
    std::vector<SImportCheck> CheckImport(const std::vector<std::wstring>& files) const;

    void SetLimits(const SArchiveLimits& limits) { m_limits = limits; }
    // Whether Export and Import remember their folders for the next file
    // dialog. The command line leaves the desktop program's as they are.
    void SetRemembersFolders(bool remember) { m_bRemembersFolders = remember; }

private:
    // Takes a half-made standard away again (its entry, folder and client
    // membership); `why` with what could not be removed added.
    std::wstring Remove(std::int32_t id, std::int32_t clientId, const std::wstring& why);

    CVX2D_ProjectRegistry& m_projects;
    CProfile& m_profile;
    IPrompter& m_prompter;
    SArchiveLimits m_limits;
    bool m_bRemembersFolders = true;
};
