// One run of the desktop program after its arguments are read: the start-up
// decision, the datafiles folder chooser when there is no folder to work
// on, the main window, and a new start when the user opens another
// datafiles folder.
#pragma once

#include "gui/FileDialogs.h"
#include "store/IniRegistry.h"
#include "store/Prompter.h"

#include <QIcon>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class CMainFrame;

struct SDesktopRun {
    // --datafiles, or empty for the user's last choice or the installation's.
    std::wstring datafiles;
    // The other arguments ("-install").
    std::vector<std::wstring> words;
    // The registry each start reads; the system's unless replaced.
    std::function<std::unique_ptr<IRegistry>()> registry = MakeSystemRegistry;
    bool splash = true;
    // The window that owns the boxes from now on (nullptr between starts).
    std::function<void(QWidget*)> ownerChanged;
    // Each main window once it is shown.
    std::function<void(CMainFrame&)> shown;
};

// The program's own icon in every size it comes in: for its windows, and
// the same picture the desktop entry names.
QIcon ApplicationIcon();

// The program's exit code.
int RunDesktop(const SDesktopRun& run, IPrompter& prompter, IFileDialogs& dialogs);
