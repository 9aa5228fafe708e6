// The program's start-up as one decision over injected services: the
// "-install" switch, the permission check, the first-run standards, the
// registry repair, the update check, and where the main window goes.
#pragma once

#include "app/Environment.h"
#include "store/Profile.h"
#include "app/UpdateCheck.h"
#include "app/WindowsComponents.h"
#include "store/ProjectRegistry.h"

#include <string>
#include <vector>

struct SRect {
    int left = 0, top = 0, right = 0, bottom = 0;
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    friend bool operator==(const SRect&, const SRect&) = default;
};

class CStartup {
public:
    static constexpr const wchar_t* kCaption = L"2D Kryn 2023";

    enum EResult {
        eInstalled,     // "-install" did its work; the program ends
        eInstallFailed, // "-install" found no datafiles folder it could make
        eRefused,       // the program may not run: no datafiles folder, or not this user
        eNoDatafiles,   // no datafiles folder to run on, and the caller offers a choice
        eRun,           // go on and show the main window
    };

    struct SServices {
        std::wstring userName;
        std::wstring programPath;
        // Where "-install" copies the shipped templates from (holds "Template/").
        std::wstring shippedTemplates;
        // The OEM library and the thumbnail control exist on Windows only.
        bool windowsComponents = false;
        // The desktop program lets the user choose a datafiles folder when
        // none is known or the known one is away, instead of ending.
        bool offerDatafilesChoice = false;
        SWindowsServices windows;
        CUpdateCheck::SServices update;
    };

    CStartup(IRegistry& registry, const CInstallation& installation,
             CVX2D_ProjectRegistry& projects, IPrompter& prompter, SServices services);

    // Decide, then Prepare when the program is to run.
    EResult Run(const std::vector<std::wstring>& args);
    // What this start is, before anything is shown or loaded: "-install"
    // (done here, with no message), a missing datafiles folder or a refused
    // user (one message box each), or a run.
    EResult Decide(const std::vector<std::wstring>& args);
    // The work before the main window: the OEM library, the templates and
    // first-run standards, the registry repair and the update check.
    void Prepare();
    // The "-install" work: the shipped templates into the datafiles folder,
    // the first-run standards, and the datafiles folder given for this run
    // recorded as the installation's. False when there is no datafiles
    // folder to make or that could not be recorded.
    bool Install();

    bool IsUserAllowed(const std::wstring& userName) const;
    // "English Standard" and "Metric Standard" with their folders, a first
    // line and spec lists, when no standard exists yet (active or deleted).
    void CreateFirstRunStandards();
    // Steps after the main window is shown: the thumbnail control check.
    void AfterMainWindowShown();

    // The main window's rectangle from "WindowPosition", fitted to a screen.
    SRect WindowRect(int screenWidth, int screenHeight) const;
    static SRect FitWindow(SRect stored, int screenWidth, int screenHeight);
    void SaveWindowRect(const SRect& rect);

    const std::wstring& HelpPath() const { return m_helpPath; }
    const std::wstring& OemLibrary() const { return m_oemLibrary; }

private:
    IRegistry& m_registry;
    const CInstallation& m_installation;
    CVX2D_ProjectRegistry& m_projects;
    IPrompter& m_prompter;
    SServices m_services;
    CEnvironment m_environment;
    CProfile m_profile;
    std::wstring m_helpPath;
    std::wstring m_oemLibrary;
};
