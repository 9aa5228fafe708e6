// The installation values every other path is derived from, read anew from
// the registry at each call, and the paths built on them.
#pragma once

#include "platform/Registry.h"

#include <string>

class CInstallation {
public:
    static constexpr const wchar_t* kInstallKey = L"Software\\VANDIX\\2D Kryn\\2023";

    // `datafilesOverride`, when not empty, replaces "DatafilesPath" (the
    // --datafiles option of both programs).
    explicit CInstallation(const IRegistry& registry, std::wstring datafilesOverride = {});

    std::wstring DatafilesPath() const;
    // True when --datafiles replaced the installation value for this run.
    bool HasDatafilesOverride() const { return !m_datafilesOverride.empty(); }
    // DatafilesPath followed by `name`; empty when DatafilesPath is empty.
    std::wstring DatafilesFile(const std::wstring& name) const;
    std::wstring LocalAppPath() const;
    std::wstring NetworkAppPath() const;
    // NetworkAppPath + "Crafter/" [+ application folder + "/" [+ sub + "/"]].
    std::wstring SuiteApplicationFolder(int application, const std::wstring& sub) const;
    // NetworkAppPath + "Crafter/Common/" [+ sub + "/"].
    std::wstring SuiteCommonFolder(const std::wstring& sub) const;

    // Application folder names by number 1 to 4: "Electric", "Flow", "Iso",
    // "Ortho"; empty for any other number.
    static std::wstring ApplicationFolderName(int application);

    // The read-only data shipped with the program ("<prefix>/share/standards-desk/",
    // found from the program's own folder); empty when it is not there.
    static std::wstring ShippedDataFolder();
    // Where a program at `programPath` ("<prefix>/bin/<name>") finds that data,
    // "<prefix>/share/standards-desk/", whether or not it is there.
    static std::wstring ShippedDataPlace(const std::wstring& programPath);

    const IRegistry& Registry() const { return m_registry; }

private:
    std::wstring Value(const wchar_t* name) const;
    const IRegistry& m_registry;
    std::wstring m_datafilesOverride;
};
