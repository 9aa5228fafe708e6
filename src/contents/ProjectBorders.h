// A standard's "Borders.ini": per sheet size the border drawing, the
// revision-block drawing and the drawing limits the drafting applications set.
#pragma once

#include <cstdint>
#include <map>
#include <string>

class CVX2D_ProjectRegistry;

// Sheet sizes: the ANSI sizes in inches, then the ISO sizes in millimetres.
enum EDwg : int {
    eDwgA = 0,
    eDwgB = 1,
    eDwgC = 2,
    eDwgD = 3,
    eDwgE = 4,
    eDwgA0 = 5,
    eDwgA1 = 6,
    eDwgA2 = 7,
    eDwgA3 = 8,
    eDwgA4 = 9,
};

constexpr int kDwgCount = 10;

// The size's key in the file ("A" ... "A4"); empty for any other value.
std::wstring DwgKey(EDwg size);
// The size a key names, in any letter case; false when none does.
bool DwgFromKey(const std::wstring& key, EDwg& size);

class CVX2D_ProjectBorders {
public:
    CVX2D_ProjectBorders() { SetDefaults(); }
    // A record of this standard: GetFilePath and Save find its folder
    // through `registry`, which must outlive the record.
    CVX2D_ProjectBorders(const CVX2D_ProjectRegistry& registry, std::int32_t projectId);

    // Every size back to its default; no change flag set, not modified.
    void SetDefaults();
    // The defaults overlaid with the file's entries; a missing or unreadable
    // file leaves the defaults. Always true.
    bool Load(const std::wstring& path);
    // The standard's folder + "Borders.ini"; empty when it has no folder.
    std::wstring GetFilePath() const;
    // Writes the changed entries only, so that other values stay as the file
    // has them. True at once when nothing changed; false when the standard
    // has no folder or the file cannot be written. A successful save clears
    // the change flags and modified.
    bool Save();

    bool IsModified() const { return m_bModified; }
    std::int32_t GetProjectId() const { return m_nProjectId; }

    // Getters give an empty text for a value outside EDwg; setters ignore it.
    std::wstring GetBorderFile(EDwg size) const { return Get(m_mapBorderFiles, size); }
    std::wstring GetLimitsMin(EDwg size) const { return Get(m_mapLimitsMin, size); }
    std::wstring GetLimitsMax(EDwg size) const { return Get(m_mapLimitsMax, size); }
    std::wstring GetRevisionFile(EDwg size) const { return Get(m_mapRevisionFiles, size); }

    void SetBorderFile(EDwg size, const std::wstring& value);
    void SetLimitsMin(EDwg size, const std::wstring& value);
    void SetLimitsMax(EDwg size, const std::wstring& value);
    void SetRevisionFile(EDwg size, const std::wstring& value);

    bool IsBorderFileChanged(EDwg size) const { return Changed(m_mapBorderFilesChanged, size); }
    bool IsLimitsMinChanged(EDwg size) const { return Changed(m_mapLimitsMinChanged, size); }
    bool IsLimitsMaxChanged(EDwg size) const { return Changed(m_mapLimitsMaxChanged, size); }
    bool IsRevisionFileChanged(EDwg size) const { return Changed(m_mapRevisionFilesChanged, size); }

    // A drawing limit: two numbers separated by one comma, x then y, such as
    // "0.0,0.0" or "-2,17.5"; no blanks, no exponent.
    static bool IsLimitText(const std::wstring& text);

private:
    using CValues = std::map<EDwg, std::wstring>;
    using CChanges = std::map<EDwg, bool>;

    static std::wstring Get(const CValues& values, EDwg size);
    static bool Changed(const CChanges& changes, EDwg size);
    void Set(CValues& values, CChanges& changes, EDwg size, const std::wstring& value);

    bool m_bModified = false;
    std::int32_t m_nProjectId = 0;
    CValues m_mapBorderFiles;
    CValues m_mapLimitsMin;
    CValues m_mapLimitsMax;
    CValues m_mapRevisionFiles;
    CChanges m_mapBorderFilesChanged;
    CChanges m_mapLimitsMinChanged;
    CChanges m_mapLimitsMaxChanged;
    CChanges m_mapRevisionFilesChanged;

    const CVX2D_ProjectRegistry* m_pRegistry = nullptr;
};
