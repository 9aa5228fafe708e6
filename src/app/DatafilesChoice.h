// Which datafiles folder the desktop program works on, and the user's choice
// of another: the folder given with --datafiles, else the one this user last
// chose (while it can be reached), else the installation's. When none of
// them can be used the program offers a chooser instead of ending.
#pragma once

#include "platform/Registry.h"
#include "store/Installation.h"
#include "store/Profile.h"
#include "store/Prompter.h"

#include <optional>
#include <string>

enum class EDatafilesPick {
    Existing, // a folder that holds (or is to hold) the office's standards
    New,      // a folder to set up as a new datafiles folder
};

class CDatafilesChoice {
public:
    static constexpr const wchar_t* kSection = L"Application";
    static constexpr const wchar_t* kKey = L"DatafilesFolder";
    static constexpr const wchar_t* kCaption = L"Datafiles Folder";

    CDatafilesChoice(IRegistry& registry, IPrompter& prompter)
        : m_profile(registry), m_prompter(prompter) {}

    // The override for this start: `given` when not empty, else the folder
    // this user chose last if it is still there; empty leaves the
    // installation's folder.
    std::wstring StartFolder(const std::wstring& given) const;
    // The chooser's explanation of why it is shown for `installation`.
    static std::wstring Reason(const CInstallation& installation);
    // Whether `folder` holds a standard registry already.
    static bool HoldsDatafiles(const std::wstring& folder);

    // Checks a folder the user picked, asking where a question is due; the
    // folder to start on (made when it was new), or nothing when it cannot
    // be used or the user said no. A folder with no standards yet is set up
    // with the first standards when the program starts on it.
    std::optional<std::wstring> Accept(const std::wstring& folder, EDatafilesPick pick);
    // Records the choice for this user's next start.
    bool Remember(const std::wstring& folder);

private:
    void Refuse(const std::wstring& text);
    CProfile m_profile;
    IPrompter& m_prompter;
};
