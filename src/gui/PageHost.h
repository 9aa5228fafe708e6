// What a page or a comparison asks of the window that holds it: help and the
// file dialogs. The main window is the host; pages never see more of it.
#pragma once

#include "gui/FileDialogs.h"

#include <string>

class IPageHost {
public:
    virtual ~IPageHost() = default;
    // Opens a help topic ("::/....htm") or says that the help is missing.
    virtual void ShowHelp(const std::wstring& topic) = 0;
    virtual IFileDialogs& FileDialogs() = 0;
};
