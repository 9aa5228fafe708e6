// One drafting application's settings variables for one standard: sections
// of variables with a value slot per kind, a clean mark per variable, and the
// application's settings datafile ("Settings", "Variable %03d").
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class CVX2D_GeneralSettings;
class CVX2D_ProjectRegistry;
struct SCatalogueSection;

// Choice values. The stored number is the identity of a choice; the gap at 2
// keeps the numbering of files written by older versions.
enum EPrjVal : std::int32_t {
    ePrjNone = 0,
    ePrjAssociative = 1,
    ePrjUnused2 = 2,
    ePrjCenter = 3,
    ePrjCenterTextBetweenExtLines = 4,
    ePrjCurved = 5,
    ePrjDashed = 6,
    ePrjDiagonal = 7,
    ePrjExploded = 8,
    ePrjFaceOfFlange = 9,
    ePrjFlangesNeverShown = 10,
    ePrjHidden = 11,
    ePrjHorizontal = 12,
    ePrjJisRepresentation = 13,
    ePrjLineWidth = 14,
    ePrjNonAssociative = 15,
    ePrjNotStacked = 16,
    ePrjPlaceFlangedValves = 17,
    ePrjPlaceValvesWithoutFlanges = 18,
    ePrjTextAboveDimLine = 19,
    ePrjTextOnSideOfDimLine = 20,
    ePrjShowFlangedAsPerSpec = 21,
    ePrjStandard = 22,
    ePrjSquare = 23,
    ePrjWeld = 24,
    ePrjScientific = 25,
    ePrjDecimal = 26,
    ePrjEngineering = 27,
    ePrjArchitectural = 28,
    ePrjFractional = 29,
    ePrjPrecision0 = 30,
    ePrjPrecision1 = 31,
    ePrjPrecision2 = 32,
    ePrjPrecision3 = 33,
    ePrjPrecision4 = 34,
    ePrjPrecision5 = 35,
    ePrjPrecision6 = 36,
    ePrjPrecision7 = 37,
    ePrjPrecision8 = 38,
    ePrjMetric = 39,
    ePrjEnglish = 40,
    ePrjDontPlaceValve = 41,
    ePrjDoubleLine = 42,
    ePrjSingleLine = 43,
    ePrjZeroNoFeetOrInches = 44,
    ePrjZeroShowFeetAndInches = 45,
    ePrjZeroNoInches = 46,
    ePrjZeroNoFeet = 47,
    ePrjZeroNoLeading = 48,
    ePrjZeroNoTrailing = 49,
    ePrjZeroNoLeadingOrTrailing = 50,
    ePrjTopLeft = 51,
    ePrjTopRight = 52,
    ePrjBottomLeft = 53,
    ePrjBottomRight = 54,
    ePrjSwageSeparate = 55,
    ePrjSwageAllScrewed = 56,
    ePrjSwageAllWelded = 57,
};

// The display text of a choice value; empty for 2, 0 and any unknown value.
std::wstring PrjValText(std::int32_t value);

class CVX2D_ProjectSettingsBase {
public:
    enum EKind : std::int32_t {
        eBool = 1,
        eString = 2,
        eFont = 3,
        eInteger = 4,
        eReal = 5,
        eFolder = 6,
        eText = 7,
        eChoice = 8,
    };

    enum ESection : std::int32_t {
        eBillOfMaterial = 0,
        eCivilStructural = 1,
        eComponentSizing = 2,
        eDimensioning = 3,
        eGeneralDrawing = 4,
        eLayers = 5,
        eScaleFactors = 6,
        eScalingVariables = 7,
        eSystemToggles = 8,
    };

    // Every sub-heading row of a section carries this id.
    static constexpr std::int32_t kTitleId = 165;

    // "Bill of Material" ... "System Toggles"; empty for any other id.
    static std::wstring SectionName(std::int32_t sectionId);

    class CVariable {
    public:
        std::int32_t m_nId = 0;
        std::int32_t m_nKind = 0;
        bool m_bValue = false;
        std::wstring m_strValue;
        std::wstring m_strFont;
        std::int32_t m_nValue = 0;
        double m_dValue = 0.0;
        std::wstring m_strFolder;
        std::wstring m_strText;
        std::int32_t m_nChoice = ePrjNone;
        std::vector<EPrjVal> m_arrChoices;
        bool m_bClean = true;
        std::wstring m_strKey;

        bool IsTitle() const { return m_nId == kTitleId; }

        // With force false an equal value changes nothing; a different one
        // is stored and makes the variable unclean. With force true the
        // value is stored and the variable is clean (defaults, loading).
        void SetBool(bool value, bool force);
        void SetString(const std::wstring& value, bool force);
        void SetFont(const std::wstring& value, bool force);
        void SetInteger(std::int32_t value, bool force);
        void SetReal(double value, bool force);
        void SetFolder(const std::wstring& value, bool force);
        void SetText(const std::wstring& value, bool force);
        void SetChoice(std::int32_t value, bool force);
        // Chooses the offered value whose text is `text` (force false);
        // false when none of the offered values has that text.
        bool SetChoiceByLabel(const std::wstring& text);
    };

    class CSection {
    public:
        std::int32_t m_nUnitSystem = 0;
        std::int32_t m_nId = 0;
        std::vector<CVariable> m_arrVariables;

        // First variable with the id in catalogue order; null when absent.
        CVariable* Find(std::int32_t id);
        const CVariable* Find(std::int32_t id) const;

        bool GetString(std::int32_t id, std::wstring& value) const;
        double GetReal(std::int32_t id) const;         // 0.0 when absent
        std::int32_t GetChoice(std::int32_t id) const; // 0 when absent
        // Force false; an absent id is ignored.
        void SetReal(std::int32_t id, double value);
        void SetChoice(std::int32_t id, std::int32_t value);
        bool SetChoiceByLabel(std::int32_t id, const std::wstring& text);
    };

    CVX2D_ProjectSettingsBase() = default;
    virtual ~CVX2D_ProjectSettingsBase() = default;

    // Sets the application and fills the sections with the catalogue's
    // variables at the defaults of the unit system (0 metric, else imperial),
    // every one clean.
    virtual void BuildCatalogue(std::int32_t unitSystem) = 0;

    // Overlays the standard's settings datafile, runs the migration rules and
    // saves at once when they changed anything (in memory only where that
    // save fails). Nothing happens beyond recording the id when the
    // standard's folder is not found.
    void Load(const CVX2D_ProjectRegistry& registry, std::int32_t projectId);
    // The same with the standard's general settings already read (they give
    // the folder, the version year and the displayed units).
    void Load(const CVX2D_GeneralSettings& general);

    // Writes every unclean variable (never a title row) and marks all clean.
    // False when there is no file path or the file cannot be written.
    bool Save();
    bool IsModified() const;
    // Takes the values in memory as the saved ones.
    void MarkClean();
    // The rules that give settings added by later versions a value derived
    // from older ones (setters without force). Loading runs them; so does
    // restoring defaults, whose catalogue leaves those settings at 0.
    void Migrate(CSection& section, std::int32_t displayedUnits);

    CSection* FindSection(std::int32_t sectionId);
    const CSection* FindSection(std::int32_t sectionId) const;
    // First variable with the id over all sections in catalogue order.
    CVariable* FindVariable(std::int32_t id);
    const CVariable* FindVariable(std::int32_t id) const;

    std::int32_t GetProjectId() const { return m_nProjectId; }
    std::int32_t GetApplication() const { return m_nApplication; }
    const std::wstring& GetPath() const { return m_strPath; }
    const std::vector<CSection>& Sections() const { return m_arrSections; }
    std::vector<CSection>& Sections() { return m_arrSections; }

    // The settings datafile's name: "Electric.ini", "Flow.ini", "Iso.ini",
    // "Ortho.ini" below version 2016, "ELECTRIC.ini", "PID.ini",
    // "ISOMETRIC.ini", "ORTHO.ini" from 2016 on.
    static std::wstring FileName(std::int32_t application, std::int32_t projectVersion);

protected:
    // Sets the application and builds every section of `catalogue`.
    void BuildFrom(std::int32_t application, const std::vector<SCatalogueSection>& catalogue,
                   std::int32_t unitSystem);

    // Catalogue adders: append a variable at the default of the section's
    // unit system. `choices` ends with 0.
    static void AddBool(CSection& section, std::int32_t id, const std::wstring& key, bool metric,
                        bool imperial);
    static void AddString(CSection& section, std::int32_t id, const std::wstring& key,
                          const std::wstring& metric, const std::wstring& imperial);
    static void AddFont(CSection& section, std::int32_t id, const std::wstring& key,
                        const std::wstring& metric, const std::wstring& imperial);
    static void AddInteger(CSection& section, std::int32_t id, const std::wstring& key,
                           std::int32_t metric, std::int32_t imperial);
    static void AddReal(CSection& section, std::int32_t id, const std::wstring& key, double metric,
                        double imperial);
    static void AddFolder(CSection& section, std::int32_t id, const std::wstring& key,
                          const std::wstring& metric, const std::wstring& imperial);
    static void AddText(CSection& section, std::int32_t id, const std::wstring& key,
                        const std::wstring& metric, const std::wstring& imperial);
    static void AddChoice(CSection& section, std::int32_t id, const std::wstring& key,
                          std::int32_t metric, std::int32_t imperial, const std::int32_t* choices);
    static void AddTitle(CSection& section, const std::wstring& heading);

private:
    std::int32_t m_nProjectId = 0;
    std::int32_t m_nApplication = 0;
    std::wstring m_strPath;
    std::vector<CSection> m_arrSections;
};
