// A standard's layers per drafting application: each layer's name, colour,
// linetype and lineweight, from the application's default set overlaid with
// the standard's "Layers.ini".
#pragma once

#include "contents/ColorPalette.h"

#include <cstdint>
#include <string>
#include <vector>

class CVX2D_IniFile;
class CVX2D_ProjectRegistry;

// An RGB colour with its AutoCAD colour number.
struct SLayerColor {
    SAciRgb rgb;
    std::int32_t index = 0;

    friend bool operator==(const SLayerColor&, const SLayerColor&) = default;
};

// The colour of `rgb` with its first palette position as the index.
SLayerColor LayerColorOf(const SAciRgb& rgb);

class CVX2D_ProjectLayers {
public:
    // AutoCAD's "Default" lineweight.
    static constexpr std::int32_t kDefaultLineweight = -3;

    // The layers of application 1-4; another number gives an empty set.
    // `projectVersion` chooses how the application's sections are named.
    explicit CVX2D_ProjectLayers(int application, int projectVersion = 2016);
    // The layers of this standard: GetFilePath and Save find its folder
    // through `registry`, which must outlive the object.
    CVX2D_ProjectLayers(const CVX2D_ProjectRegistry& registry, std::int32_t projectId,
                        int application, int projectVersion);

    // The application's default set, ordered by role number; nothing changed.
    void SetDefaults();
    // The defaults overlaid with the file's values for the same keys; a
    // missing file, a missing key or a colour that does not read as
    // "R,G,B,INDEX" leaves the default. Always true.
    bool Load(const std::wstring& path);
    // The same from an open "Layers.ini" (its current section changes), so
    // that one read of the file serves all four applications.
    bool Load(CVX2D_IniFile& ini);
    // The standard's folder + "Layers.ini"; empty when it has no folder.
    std::wstring GetFilePath() const;
    // Writes the application's whole set, layer by layer in array order: the
    // values changed since loading, and for the others what the file holds
    // now (which the model then takes). True at once when nothing changed;
    // false when the standard has no folder or the file cannot be written.
    // Success clears the changes.
    bool Save();

    int GetApplication() const { return m_nApplication; }
    // The application's name as the standard's version names its files
    // ("PID" from 2016, "Flow" before), which starts each section name.
    std::wstring GetSectionPrefix() const;
    bool IsModified() const { return m_bModified; }

    std::size_t GetCount() const { return m_arrKeys.size(); }
    // The position of the layer with this role number; -1 when the set has none.
    int Find(std::int32_t key) const;

    const std::vector<std::int32_t>& GetKeys() const { return m_arrKeys; }
    const std::vector<std::wstring>& GetNames() const { return m_arrNames; }
    const std::vector<SLayerColor>& GetColors() const { return m_arrColors; }
    const std::vector<std::wstring>& GetLinetypes() const { return m_arrLinetypes; }
    const std::vector<std::int32_t>& GetLineweights() const { return m_arrLineweights; }

    // Setters by position; a position outside the set is ignored.
    void SetName(std::size_t position, const std::wstring& name);
    void SetColor(std::size_t position, const SLayerColor& color);
    void SetLinetype(std::size_t position, const std::wstring& linetype);
    void SetLineweight(std::size_t position, std::int32_t lineweight);

    // The row label of a role number 1-49; empty for any other.
    static std::wstring GetDescription(std::int32_t key);
    // A role number as its key in the file: "%03d".
    static std::wstring FormatKey(std::int32_t key);
    // "%d,%d,%d,%d" of red, green, blue and the colour index.
    static std::wstring FormatColor(const SLayerColor& color);
    // The stored form back; false unless four whole numbers with red, green,
    // blue and the index each 0-255.
    static bool ParseColor(const std::wstring& text, SLayerColor& color);

private:
    struct SChanged {
        bool name = false;
        bool color = false;
        bool linetype = false;
        bool lineweight = false;
    };

    void SortByKey();
    std::wstring Section(const wchar_t* suffix) const;

    const CVX2D_ProjectRegistry* m_pRegistry = nullptr;
    std::int32_t m_nProjectId = 0;
    int m_nApplication = 0;
    int m_nProjectVersion = 0;
    bool m_bModified = false;

    // Parallel arrays, index for index.
    std::vector<std::int32_t> m_arrKeys;
    std::vector<std::wstring> m_arrNames;
    std::vector<SLayerColor> m_arrColors;
    std::vector<std::wstring> m_arrLinetypes;
    std::vector<std::int32_t> m_arrLineweights;
    std::vector<SChanged> m_arrChanged;
};
