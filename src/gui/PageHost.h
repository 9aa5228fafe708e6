// What a page or a comparison asks of the window that holds it: help and the
// file dialogs. The main window is the host; pages never see more of it.
#pragma once

#include "gui/FileDialogs.h"

#include <QWidget>
#include <cstdint>
#include <string>

class IPageHost {
public:
    virtual ~IPageHost() = default;
    // Opens a help topic ("::/....htm") or says that the help is missing.
    virtual void ShowHelp(const std::wstring& topic) = 0;
    virtual IFileDialogs& FileDialogs() = 0;
    // A standard's files were changed from another window (a copy, a push):
    // the windows that show it, apart from `changer`, show them afresh.
    virtual void StandardFilesChanged(std::int32_t standardId, const QWidget* changer) = 0;
};
