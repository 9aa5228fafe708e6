// Components the suite installs on Windows only: the OEM dialogs library and
// the drawing thumbnail control. Written against the registry and process
// services so that their decisions are tested everywhere; the start-up runs
// them on Windows only.
#pragma once

#include "app/Environment.h"
#include "store/Prompter.h"

#include <functional>

struct SWindowsServices {
    // True when the library at the path could be loaded.
    std::function<bool(const std::wstring& path)> loadLibrary;
    // Runs a program with arguments and waits for it to end.
    std::function<void(const std::wstring& program, const std::vector<std::wstring>& args)>
        runAndWait;
};

class CWindowsComponents {
public:
    static constexpr const wchar_t* kProgramId = L"AUTOCAD.DwgThumbnailCtrl.4";
    static constexpr const wchar_t* kClassId = L"{B4FD4FC6-4EBA-4D06-8244-BB09A940C60A}";
    static constexpr const wchar_t* kDescription = L"AutoCAD DwgThumbnail Control 2013";
    static constexpr const wchar_t* kNotInstalled =
        L"The AutoCAD Drawing Thumbnail ActiveX control\nappears not to be properly "
        L"installed.\n\nPlease check "
        L"software installation.";

    CWindowsComponents(const CEnvironment& environment, IRegistry& registry, IPrompter& prompter,
                       SWindowsServices services)
        : m_environment(environment), m_registry(registry), m_prompter(prompter),
          m_services(std::move(services)) {}

    // The path of the loaded OEM dialogs library, or empty (after telling the
    // user why) when it is missing or cannot be loaded.
    std::wstring LoadOemDialogsLibrary();

    // Copies the shipped controls into the common files folder, registers the
    // thumbnail control when its three registrations are not right, and says
    // whether all four are right afterwards.
    bool EnsureThumbnailControlRegistered();

private:
    bool Registered(bool full) const;
    const CEnvironment& m_environment;
    IRegistry& m_registry;
    IPrompter& m_prompter;
    SWindowsServices m_services;
};
