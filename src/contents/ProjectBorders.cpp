#include "contents/ProjectBorders.h"

#include "datafile/IniFile.h"
#include "datafile/Text.h"
#include "store/ProjectRegistry.h"

namespace {

struct SDefault {
    const wchar_t* key;
    const wchar_t* border;
    const wchar_t* limitsMax;
    const wchar_t* revision;
};

// A and A4 are upright, every other size landscape: the drafting
// applications expect exactly these limits.
constexpr SDefault kDefaults[kDwgCount] = {
    {L"A", L"Bord_A.dwg", L"8.5,11.0", L"Rev_A.dwg"},
    {L"B", L"Bord_B.dwg", L"17.0,11.0", L"Rev_B.dwg"},
    {L"C", L"Bord_C.dwg", L"22.0,17.0", L"Rev_C.dwg"},
    {L"D", L"Bord_D.dwg", L"34.0,22.0", L"Rev_D.dwg"},
    {L"E", L"Bord_E.dwg", L"44.0,34.0", L"Rev_E.dwg"},
    {L"A0", L"Bord_A0.dwg", L"1189.0,841.0", L"Rev_A0.dwg"},
    {L"A1", L"Bord_A1.dwg", L"841.0,594.0", L"Rev_A1.dwg"},
    {L"A2", L"Bord_A2.dwg", L"594.0,420.0", L"Rev_A2.dwg"},
    {L"A3", L"Bord_A3.dwg", L"420.0,297.0", L"Rev_A3.dwg"},
    {L"A4", L"Bord_A4.dwg", L"210.0,297.0", L"Rev_A4.dwg"},
};

constexpr const wchar_t* kDefaultLimitsMin = L"0.0,0.0";

const std::wstring kBorder = L"Border";
const std::wstring kLimitsMin = L"Limits - Min";
const std::wstring kLimitsMax = L"Limits - Max";
const std::wstring kRevision = L"Revision";

bool Valid(EDwg size) {
    const int index = static_cast<int>(size);
    return index >= 0 && index < kDwgCount;
}

EDwg Size(int index) {
    return static_cast<EDwg>(index);
}

// Optional sign, then digits with at most one decimal point.
bool IsNumberText(std::wstring_view text) {
    if (!text.empty() && (text.front() == L'+' || text.front() == L'-'))
        text.remove_prefix(1);
    bool digit = false, point = false;
    for (wchar_t c : text) {
        if (c >= L'0' && c <= L'9') {
            digit = true;
        } else if (c == L'.' && !point) {
            point = true;
        } else {
            return false;
        }
    }
    return digit;
}

} // namespace

std::wstring DwgKey(EDwg size) {
    return Valid(size) ? kDefaults[size].key : L"";
}

bool DwgFromKey(const std::wstring& key, EDwg& size) {
    for (int index = 0; index < kDwgCount; ++index) {
        if (EqualsNoCase(key, kDefaults[index].key)) {
            size = Size(index);
            return true;
        }
    }
    return false;
}

CVX2D_ProjectBorders::CVX2D_ProjectBorders(const CVX2D_ProjectRegistry& registry,
                                           std::int32_t projectId)
    : m_nProjectId(projectId), m_pRegistry(&registry) {
    SetDefaults();
}

void CVX2D_ProjectBorders::SetDefaults() {
    for (int index = 0; index < kDwgCount; ++index) {
        const EDwg size = Size(index);
        m_mapBorderFiles[size] = kDefaults[index].border;
        m_mapLimitsMin[size] = kDefaultLimitsMin;
        m_mapLimitsMax[size] = kDefaults[index].limitsMax;
        m_mapRevisionFiles[size] = kDefaults[index].revision;
        m_mapBorderFilesChanged[size] = false;
        m_mapLimitsMinChanged[size] = false;
        m_mapLimitsMaxChanged[size] = false;
        m_mapRevisionFilesChanged[size] = false;
    }
    m_bModified = false;
}

bool CVX2D_ProjectBorders::Load(const std::wstring& path) {
    SetDefaults();
    CVX2D_IniFile ini;
    ini.SetAutoSave(false);
    if (ini.Open(path) != CVX2D_IniFile::eOk)
        return true;
    for (int index = 0; index < kDwgCount; ++index) {
        const EDwg size = Size(index);
        const std::wstring key = kDefaults[index].key;
        ini.SetSection(kBorder);
        ini.GetString(key, m_mapBorderFiles[size], m_mapBorderFiles[size]);
        ini.SetSection(kLimitsMin);
        ini.GetString(key, m_mapLimitsMin[size], m_mapLimitsMin[size]);
        ini.SetSection(kLimitsMax);
        ini.GetString(key, m_mapLimitsMax[size], m_mapLimitsMax[size]);
        ini.SetSection(kRevision);
        ini.GetString(key, m_mapRevisionFiles[size], m_mapRevisionFiles[size]);
    }
    return true;
}

std::wstring CVX2D_ProjectBorders::GetFilePath() const {
    return m_pRegistry ? m_pRegistry->StandardFile(m_nProjectId, L"Borders.ini") : std::wstring();
}

bool CVX2D_ProjectBorders::Save() {
    if (!m_bModified)
        return true;
    struct SMap {
        const std::wstring& section;
        const CValues& values;
        const CChanges& changes;
    };
    const SMap maps[] = {
        {kBorder, m_mapBorderFiles, m_mapBorderFilesChanged},
        {kLimitsMin, m_mapLimitsMin, m_mapLimitsMinChanged},
        {kLimitsMax, m_mapLimitsMax, m_mapLimitsMaxChanged},
        {kRevision, m_mapRevisionFiles, m_mapRevisionFilesChanged},
    };
    // Under the file's lock: another workstation's change to other sizes
    // survives, since only this record's changed entries are written.
    const bool saved = UpdateDatafile(GetFilePath(), [&](CVX2D_IniFile& ini) {
        for (int index = 0; index < kDwgCount; ++index) {
            const EDwg size = Size(index);
            for (const SMap& map : maps) {
                if (!Changed(map.changes, size))
                    continue;
                ini.SetSection(map.section);
                ini.SetString(kDefaults[index].key, Get(map.values, size));
            }
        }
        return true;
    });
    if (!saved)
        return false;
    for (CChanges* changes : {&m_mapBorderFilesChanged, &m_mapLimitsMinChanged,
                              &m_mapLimitsMaxChanged, &m_mapRevisionFilesChanged}) {
        for (auto& [size, changed] : *changes)
            changed = false;
    }
    m_bModified = false;
    return true;
}

void CVX2D_ProjectBorders::SetBorderFile(EDwg size, const std::wstring& value) {
    Set(m_mapBorderFiles, m_mapBorderFilesChanged, size, value);
}

void CVX2D_ProjectBorders::SetLimitsMin(EDwg size, const std::wstring& value) {
    Set(m_mapLimitsMin, m_mapLimitsMinChanged, size, value);
}

void CVX2D_ProjectBorders::SetLimitsMax(EDwg size, const std::wstring& value) {
    Set(m_mapLimitsMax, m_mapLimitsMaxChanged, size, value);
}

void CVX2D_ProjectBorders::SetRevisionFile(EDwg size, const std::wstring& value) {
    Set(m_mapRevisionFiles, m_mapRevisionFilesChanged, size, value);
}

bool CVX2D_ProjectBorders::IsLimitText(const std::wstring& text) {
    const auto comma = text.find(L',');
    if (comma == std::wstring::npos)
        return false;
    const std::wstring_view view = text;
    return IsNumberText(view.substr(0, comma)) && IsNumberText(view.substr(comma + 1));
}

std::wstring CVX2D_ProjectBorders::Get(const CValues& values, EDwg size) {
    const auto it = values.find(size);
    return it == values.end() ? std::wstring() : it->second;
}

bool CVX2D_ProjectBorders::Changed(const CChanges& changes, EDwg size) {
    const auto it = changes.find(size);
    return it != changes.end() && it->second;
}

void CVX2D_ProjectBorders::Set(CValues& values, CChanges& changes, EDwg size,
                               const std::wstring& value) {
    if (!Valid(size) || values[size] == value)
        return;
    values[size] = value;
    changes[size] = true;
    m_bModified = true;
}
