#include "store/GeneralSettings.h"

#include "datafile/Application.h"
#include "datafile/IniFile.h"
#include "datafile/Text.h"
#include "store/ProjectRegistry.h"

#include <utility>

namespace {
const std::wstring kUnits = L"Units";
const std::wstring kGeneral = L"General";
const std::wstring kDrawings = L"Drawings Location";
} // namespace

std::wstring CVX2D_GeneralSettings::DrawingsKey(int application, int projectVersion) {
    // The application's file stem names its drawings folder's key.
    return ApplicationFileStem(application, projectVersion);
}

const std::wstring* CVX2D_GeneralSettings::DrawingsField(int application) const {
    switch (application) {
    case eAppElectric:
        return &m_strElectricDrawings;
    case eAppFlow:
        return &m_strFlowDrawings;
    case eAppIso:
        return &m_strIsoDrawings;
    case eAppOrtho:
        return &m_strOrthoDrawings;
    default:
        return nullptr;
    }
}

std::wstring* CVX2D_GeneralSettings::DrawingsField(int application) {
    return const_cast<std::wstring*>(std::as_const(*this).DrawingsField(application));
}

std::wstring CVX2D_GeneralSettings::GetDrawingsLocation(int application) const {
    const std::wstring* field = DrawingsField(application);
    return field ? WithTrailingSeparator(*field) : std::wstring();
}

void CVX2D_GeneralSettings::SetDrawingsLocation(int application, const std::wstring& folder) {
    if (std::wstring* field = DrawingsField(application))
        *field = folder;
}

// A standard without a usable GUID gets one the first time it is opened,
// written back at once so that every later look shows the same one. Another
// workstation may have done so since we read the file.
CGuid CVX2D_GeneralSettings::GiveGuid(const std::wstring& path) {
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    const bool locked = ini.OpenForUpdate(path) == CVX2D_IniFile::eOk;
    ini.SetSection(kGeneral);
    CGuid guid;
    ini.GetGuid(L"ProjectGuid", guid, CGuid{});
    if (!guid.IsNull())
        return guid;
    guid = NewGuid();
    // On a read-only share the GUID lives for this session only.
    if (locked) {
        ini.SetGuid(L"ProjectGuid", guid);
        ini.Save();
    }
    return guid;
}

bool CVX2D_GeneralSettings::Locate(const CVX2D_ProjectRegistry& registry, std::int32_t projectId) {
    m_nProjectId = projectId;
    m_strPath.clear();
    if (projectId < 1)
        return false;
    std::wstring folder;
    if (registry.GetProjectFolder(projectId, folder) != eProjectOk)
        return false;
    m_strPath = folder + L"General.ini";
    return true;
}

void CVX2D_GeneralSettings::Read(CVX2D_IniFile& ini, const std::wstring& defaultLibraries) {
    ini.SetSection(kUnits);
    ini.GetInt(L"Working", m_nWorkingUnits, 1);
    ini.GetInt(L"Displayed", m_nDisplayedUnits, 2);
    ini.GetInt(L"RatingsFormat", m_nRatingsFormat, 1);
    ini.SetSection(kGeneral);
    ini.GetGuid(L"ProjectGuid", m_guid, CGuid{});
    ini.GetBool(L"LocalLineIni", m_bLocalLineIni, false);
    ini.GetString(L"BordersLocation", m_strBordersLocation, L"");
    ini.GetString(L"TemplatesLocation", m_strTemplatesLocation, L"");
    ini.GetString(L"LibrariesLocation", m_strLibrariesLocation, defaultLibraries);
    ini.GetString(L"LocalLineIniPath", m_strLocalLineIniPath, L"");
    ini.GetInt(L"ProjectVersion", m_nProjectVersion, 2015);
    ini.SetSection(kDrawings);
    for (const int application : kApplications)
        ini.GetString(DrawingsKey(application, m_nProjectVersion), *DrawingsField(application),
                      L"");
}

void CVX2D_GeneralSettings::Write(CVX2D_IniFile& ini) const {
    ini.SetSection(kUnits);
    ini.SetInt(L"Working", m_nWorkingUnits);
    ini.SetInt(L"Displayed", m_nDisplayedUnits);
    ini.SetInt(L"RatingsFormat", m_nRatingsFormat);
    ini.SetSection(kGeneral);
    ini.SetGuid(L"ProjectGuid", m_guid);
    ini.SetBool(L"LocalLineIni", m_bLocalLineIni);
    ini.SetString(L"BordersLocation", m_strBordersLocation);
    ini.SetString(L"TemplatesLocation", m_strTemplatesLocation);
    ini.SetString(L"LibrariesLocation", m_strLibrariesLocation);
    ini.SetString(L"LocalLineIniPath", m_strLocalLineIniPath);
    ini.SetInt(L"ProjectVersion", m_nProjectVersion);
    ini.SetSection(kDrawings);
    for (const int application : kApplications) {
        ini.SetString(DrawingsKey(application, m_nProjectVersion), *DrawingsField(application));
    }
}

bool CVX2D_GeneralSettings::Load(const CVX2D_ProjectRegistry& registry, std::int32_t projectId) {
    if (!Locate(registry, projectId))
        return false;
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    ini.Open(m_strPath);
    Read(ini, registry.Datafiles().DefaultLibrariesFolder());
    if (m_guid.IsNull())
        m_guid = GiveGuid(m_strPath);
    m_bLoaded = true;
    return true;
}

bool CVX2D_GeneralSettings::Save() {
    if (!m_bLoaded)
        return true;
    if (m_strPath.empty())
        return false;
    CVX2D_IniFile ini;
    ini.Open(m_strPath);
    Write(ini);
    return ini.Save() == CVX2D_IniFile::eOk;
}

bool CVX2D_GeneralSettings::Update(const CVX2D_ProjectRegistry& registry, std::int32_t projectId,
                                   const std::function<void(CVX2D_GeneralSettings&)>& change) {
    if (!Locate(registry, projectId))
        return false;
    const std::wstring defaultLibraries = registry.Datafiles().DefaultLibrariesFolder();
    return UpdateDatafile(m_strPath, [&](CVX2D_IniFile& ini) {
        Read(ini, defaultLibraries);
        if (m_guid.IsNull())
            m_guid = NewGuid();
        m_bLoaded = true;
        change(*this);
        Write(ini);
        return true;
    });
}
