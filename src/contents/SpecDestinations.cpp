#include "contents/SpecDestinations.h"

#include "datafile/Ids.h"
#include "platform/Utf8.h"
#include "store/Datafiles.h"

void CVX2D_SpecDestinations::Open(const CVX2D_Datafiles& datafiles) {
    const std::lock_guard lock(m_mutex);
    m_ini.SetAutoSave(false);
    m_ini.Clear();
    m_strPath = datafiles.File(L"SpecDestinationDatafile.ini");
    m_bRead = false;
}

bool CVX2D_SpecDestinations::Refresh() {
    if (m_strPath.empty())
        return true;
    const platform::SFileStamp stamp = platform::FileStamp(platform::ToPath(m_strPath));
    if (m_bRead && stamp == m_stamp)
        return true;
    m_ini.Clear();
    if (stamp.exists && m_ini.Open(m_strPath) != CVX2D_IniFile::eOk) {
        m_bRead = false;
        return false;
    }
    m_stamp = stamp;
    m_bRead = true;
    return true;
}

bool CVX2D_SpecDestinations::Read(CSpecDestinationMap& destinations) {
    destinations.clear();
    const std::lock_guard lock(m_mutex);
    if (!Refresh())
        return false;
    for (const auto& e : m_ini.Entries()) {
        const std::int32_t projectId = ParseProjectKey(e.section);
        if (projectId > 0 && !e.value.empty())
            destinations[projectId].push_back({ParseSpecKey(e.key), e.value});
    }
    return true;
}

bool CVX2D_SpecDestinations::Read(std::int32_t projectId,
                                  std::vector<SSpecDestination>& destinations) {
    CSpecDestinationMap all;
    const bool read = Read(all);
    destinations = all[projectId];
    return read;
}

namespace {

// Gives `ini` the sections; true when that changed it.
bool Give(CVX2D_IniFile& ini, const CSpecDestinationMap& sections) {
    bool changed = false;
    for (const auto& [projectId, destinations] : sections) {
        const std::wstring section = MakeProjectKey(projectId);
        std::vector<std::wstring> keys, values;
        ini.SetSection(section);
        ini.GetSectionEntries(keys, values);
        std::vector<std::wstring> wantedKeys, wantedValues;
        for (const auto& destination : destinations) {
            wantedKeys.push_back(MakeSpecKey(destination.specId));
            wantedValues.push_back(destination.folder);
        }
        // The document keeps its order until it is saved: compare as sets.
        std::map<std::wstring, std::wstring> had, wanted;
        for (std::size_t i = 0; i < keys.size(); ++i)
            had[keys[i]] = values[i];
        for (std::size_t i = 0; i < wantedKeys.size(); ++i)
            wanted[wantedKeys[i]] = wantedValues[i];
        if (had == wanted)
            continue;
        changed = true;
        ini.DeleteSection(section);
        ini.SetSection(section);
        ini.SetSectionEntries(wantedKeys, wantedValues);
    }
    return changed;
}

} // namespace

bool CVX2D_SpecDestinations::Replace(const CSpecDestinationMap& sections) {
    const std::lock_guard lock(m_mutex);
    if (m_strPath.empty())
        return false;
    // What the file holds already needs neither the lock nor a write.
    if (Refresh()) {
        CVX2D_IniFile probe = m_ini;
        probe.SetAutoSave(false);
        if (!Give(probe, sections))
            return true;
    }
    if (m_ini.OpenForUpdate(m_strPath) != CVX2D_IniFile::eOk) {
        m_bRead = false;
        return false;
    }
    const bool saved = !Give(m_ini, sections) || m_ini.Save() == CVX2D_IniFile::eOk;
    // Still under the lock: a saved document is what the file holds; one
    // that failed to be saved must not be read as the file.
    m_bRead = saved;
    if (saved)
        m_stamp = platform::FileStamp(platform::ToPath(m_strPath));
    m_ini.Unlock();
    return saved;
}
