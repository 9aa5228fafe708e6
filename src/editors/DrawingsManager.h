// The drawings manager of one drafting application's drawings folder in one
// standard: the list it shows, and open, copy, rename, delete, new drawing,
// the backup-state toggle and how a drawing is opened in the drafting
// program. The desktop list renders the list and passes the user's actions.
#pragma once

#include "contents/DrawingsListing.h"
#include "store/Installation.h"
#include "store/Opener.h"
#include "store/Profile.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What opening a drawing starts.
struct SDrawingLaunch {
    enum EKind {
        eNothing,   // no file name
        eShellOpen, // the shell's "open" on the file
        eLauncher,  // the drafting launcher through the shell's "open"
    };
    EKind kind = eNothing;
    std::wstring file;       // the drawing
    std::wstring program;    // eLauncher: the launcher
    std::wstring parameters; // eLauncher: `%s ProjectId=%d DrawingName="%s"`
    std::wstring folder;     // eLauncher: the working folder
};

// The platform's shell and program start, replaced by tests.
struct SDrawingsShell {
    // The shell's verb ("open", "explore") on a file or folder.
    std::function<bool(const std::wstring& verb, const std::wstring& target)> open;
    // Starts a program with a parameter line in a working folder, shown
    // normally, without waiting for it.
    std::function<bool(const std::wstring& program, const std::wstring& parameters,
                       const std::wstring& folder)>
        start;
    // The running program's full path.
    std::function<std::wstring()> executablePath;

    // The desktop's shell, the system's program start and this program.
    static SDrawingsShell System();
};

// One file of a batch copy is about to be copied: its number from 1, the
// count, source and target. Returning false stops the batch.
using CCopyProgress = std::function<bool(int number, int count, const std::wstring& source,
                                         const std::wstring& target)>;

class CDrawingsManager {
public:
    static constexpr const wchar_t* kHelpTopic = L"::/Drawings_Dialog_Box.htm";
    static constexpr const wchar_t* kCopyTitle = L"Copying Files...";
    // Profile section and value of the backup state; 8 means backups shown.
    static constexpr const wchar_t* kProfileSection = L"Drawings";
    static constexpr const wchar_t* kBackupState = L"BackupDrawingState";
    static constexpr int kBackupsShown = 8;

    // The folder action's text, naming this system's file manager.
    static std::wstring OpenFolderText();

    CDrawingsManager(const CVX2D_ProjectRegistry& projects, const CInstallation& installation,
                     CProfile& profile, IPrompter& prompter,
                     SDrawingsShell shell = SDrawingsShell::System());

    // Reads the standard's drawings folder of the application and lists it.
    // An empty folder setting is told to the user; false then, and when the
    // standard's general settings cannot be read.
    bool Open(std::int32_t projectId, int application);

    // Replaces the shell drawings and the folder are opened with.
    void SetShell(SDrawingsShell shell) { m_shell = std::move(shell); }

    std::int32_t ProjectId() const { return m_nProjectId; }
    int Application() const { return m_nApplication; }
    // The drawings folder, ending in a separator; empty before Open.
    const std::wstring& Folder() const { return m_strFolder; }
    // Name, size and date of each item, sorted by name.
    const SDrawingList& List() const { return m_list; }
    bool BackupsShown() const;
    // The item whose name the view should put into editing, or empty.
    const std::wstring& EditingItem() const { return m_strEditing; }

    // Empties the list and fills it again from the folder.
    void Refresh();
    // Shows drawings when backups were shown, else backups, and relists.
    void ToggleBackupState();

    // The folder and an item's name, ".dwg" added unless it ends in ".dwg"
    // or ".bak" in any letter case; empty for an empty name.
    std::wstring FullName(const std::wstring& item) const;

    // Copies each item beside itself as "<name> (Copy n)<ext>" with the
    // first free n, then relists. Each (source, copy) made, in order.
    std::vector<std::pair<std::wstring, std::wstring>> Copy(const std::vector<std::wstring>& items,
                                                            const CCopyProgress& progress = {});
    // Asks, then deletes the items' files; the names of the deleted ones.
    // Items whose file could not be deleted stay listed.
    std::vector<std::wstring> Delete(const std::vector<std::wstring>& items);
    // Copies the drawing template of the standard's settings to the first
    // free "Drawing<n>.dwg", lists it and puts it into editing. Its file
    // name, or empty after a message. The template "acad" is looked for
    // beside the program, then in the program's data folder; a missing
    // template is told with the places looked in and where to choose another.
    std::wstring NewDrawing(const CCopyProgress& progress = {});
    // Gives an item's file the new name (its extension kept when the new
    // name has none). A name that is empty, not a valid file name or taken
    // is refused with a message. The item's name afterwards, such as
    // "Main.dwg" for "Main"; none when nothing was renamed.
    std::optional<std::wstring> Rename(const std::wstring& item, const std::wstring& newName);

    // How the item would be opened, without doing it.
    SDrawingLaunch OpenDecision(const std::wstring& item) const;
    // Opens the item: the launcher, or the shell's "open" on the file when
    // the launcher cannot be used or fails to start. A file the shell
    // cannot open is told to the user.
    SDrawingLaunch OpenDrawing(const std::wstring& item);
    // The shell's "explore" on the drawings folder; false, after telling the
    // user, when nothing opened it, and false without a folder.
    bool OpenFolder();

    // Copies each source to its target, telling `progress` before each
    // file. Lists of different lengths and failed copies are told to the
    // user. The number copied: the batch stops at the first failure.
    std::size_t CopyFiles(const std::vector<std::wstring>& sources,
                          const std::vector<std::wstring>& targets, const CCopyProgress& progress);

private:
    void Error(const std::wstring& text, EPromptIcon icon = EPromptIcon::Stop);
    void Sort();
    // The shell's `verb` as an opener; none without a shell.
    COpener ShellVerb(const std::wstring& verb) const;

    const CVX2D_ProjectRegistry& m_projects;
    const CInstallation& m_installation;
    CProfile& m_profile;
    IPrompter& m_prompter;
    SDrawingsShell m_shell;
    std::int32_t m_nProjectId = 0;
    int m_nApplication = 0;
    std::wstring m_strFolder;
    SDrawingList m_list;
    std::wstring m_strEditing;
};

// "Copying file %d of %d\n%s\n%s".
std::wstring CopyProgressText(int number, int count, const std::wstring& source,
                              const std::wstring& target);

// The first "<base> (Copy n)<extension>" of a file that does not exist, the
// extension being what follows the last ".".
std::wstring CopyTargetName(const std::wstring& file);

// The installed drafting program's release and version: the product's own
// values "AutoCADRelease" and "AutoCADVersion", else the current release
// ("R20." to "R24.") and version recorded under AutoCAD's own key. False
// when either is not known.
bool FindAutocadRelease(const IRegistry& registry, std::wstring& release, std::wstring& version);

// The folder of the desktop shortcuts: the machine's "Common Desktop" shell
// folder, else the user's "Desktop"; ending in a separator, empty if neither.
std::wstring DesktopShortcutFolder(const IRegistry& registry);
