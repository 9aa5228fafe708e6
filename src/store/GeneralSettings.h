// A standard's "General.ini": units, rating format, GUID, version year,
// locations and the drawings folder of each drafting application.
#pragma once

#include "datafile/Guid.h"

#include <cstdint>
#include <functional>
#include <string>

class CVX2D_IniFile;
class CVX2D_ProjectRegistry;

class CVX2D_GeneralSettings {
public:
    bool m_bLoaded = false;
    std::int32_t m_nProjectId = 0;
    int m_nWorkingUnits = -1;
    int m_nDisplayedUnits = -1;
    CGuid m_guid;
    std::wstring m_strElectricDrawings;
    std::wstring m_strFlowDrawings;
    std::wstring m_strIsoDrawings;
    std::wstring m_strOrthoDrawings;
    std::wstring m_strBordersLocation;
    std::wstring m_strTemplatesLocation;
    std::wstring m_strLibrariesLocation;
    std::wstring m_strLocalLineIniPath;
    int m_nProjectVersion = 0;
    int m_nRatingsFormat = 0;
    bool m_bLocalLineIni = false;

    // False for an id below 1 or when the standard has no folder. A file
    // without "ProjectGuid" gets a new GUID here, written by the next Save.
    bool Load(const CVX2D_ProjectRegistry& registry, std::int32_t projectId);
    // True without writing when nothing was loaded; values equal to the
    // file's leave it untouched.
    bool Save();
    // One change of the file as it is now, under its lock, so that what
    // another page or workstation saved meanwhile stays: reads the file,
    // lets `change` edit the values and writes them. Afterwards the object
    // holds what the file holds. False, with the file untouched, when the
    // standard has no folder or the file cannot be written.
    bool Update(const CVX2D_ProjectRegistry& registry, std::int32_t projectId,
                const std::function<void(CVX2D_GeneralSettings&)>& change);

    // Application 1 ELECTRIC, 2 P&ID, 3 ISOMETRIC, 4 ORTHO: that drawings
    // folder ending in a separator; empty for any other number.
    std::wstring GetDrawingsLocation(int application) const;
    void SetDrawingsLocation(int application, const std::wstring& folder);

    const std::wstring& GetPath() const { return m_strPath; }

    // Keys of "Drawings Location" for a version year: "Electric", "Flow",
    // "Iso", "Ortho" before 2016, "ELECTRIC", "PID", "ISOMETRIC", "ORTHO" after.
    static std::wstring DrawingsKey(int application, int projectVersion);

private:
    // The standard's folder is known: sets the file's path.
    bool Locate(const CVX2D_ProjectRegistry& registry, std::int32_t projectId);
    void Read(CVX2D_IniFile& ini, const std::wstring& defaultLibraries);
    void Write(CVX2D_IniFile& ini) const;
    static CGuid GiveGuid(const std::wstring& path);
    const std::wstring* DrawingsField(int application) const;
    std::wstring* DrawingsField(int application);
    std::wstring m_strPath;
};
