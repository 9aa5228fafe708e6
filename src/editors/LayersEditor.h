// The layers page of one drafting application in one standard: the grid's
// rows as data, storing a changed cell, restore defaults, Apply, the question
// on closing and the help topic; and the AutoCAD linetypes, lineweights and
// colour names the page offers.
#pragma once

#include "contents/LayerCatalogue.h"
#include "contents/ProjectLayers.h"
#include "datafile/Application.h"
#include "editors/PageEditor.h"
#include "store/ProjectRegistry.h"
#include "store/Prompter.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The grid's columns, left to right.
enum class ELayerColumn { Description, Name, Color, Linetype, Lineweight };

struct SLayerRow {
    std::int32_t key = 0;
    std::wstring description;
    std::wstring name;
    SLayerColor color;
    std::wstring colorText;
    std::wstring linetype;
    std::int32_t lineweight = CVX2D_ProjectLayers::kDefaultLineweight;
    std::wstring lineweightText;
};

// "Default" for -3, else "%0.2f mm" of the hundredths: 25 is "0.25 mm".
std::wstring LineweightText(std::int32_t lineweight);

// "Default", or millimetres with or without " mm", that name one of the
// standard lineweights; false for anything else.
bool ParseLineweightText(const std::wstring& text, std::int32_t& lineweight);

// "Red" ... "White" for 1 to 7, "Color %d" for any other palette position.
std::wstring AciColorName(int index);

// The colour cell: "Red (1)" for a named colour, "Color 8" for another
// palette position, "R,G,B" of the stored value when it has no position.
std::wstring LayerColorText(const SLayerColor& color);

// Puts every layer back to the application's default name, colour, linetype
// and lineweight; only what differs becomes a change for Save.
void RestoreLayerDefaults(CVX2D_ProjectLayers& layers);

// "PID - Layers".
std::wstring LayersHeader(int application);

// The topic of the application's layers help page, "::/....htm".
std::wstring LayersHelpTopic(int application);

class CLayersEditor : public CPageEditor {
public:
    using CPageEditor::CPageEditor;

    // Loads the standard's layers of the application (the standard's version
    // names the sections). False, with no rows, for an unknown application or
    // a standard whose general settings cannot be read.
    bool Open(std::int32_t projectId, int application);

    const std::vector<SLayerRow>& Rows() const { return m_rows; }
    // Apply is enabled exactly while something is unsaved.
    bool ApplyEnabled() const override;

    // Stores the text of a changed cell: a layer name (an invalid one is
    // refused with a message), a colour number 1-255 or its cell text, a
    // linetype of the list in any letter case, a lineweight text. The
    // current value is always accepted. False when refused.
    bool SetCellText(std::size_t row, ELayerColumn column, const std::wstring& text);
    // The picker's answer: palette position 1-255 with its RGB value.
    bool SetColorIndex(std::size_t row, int index);
    // A colour as another standard holds it (a merge): any RGB value with
    // its palette position, or 0 for none. False for a position outside
    // the palette.
    bool SetColor(std::size_t row, const SLayerColor& color);

    // Every layer back to the application's default set; what changes shows
    // as modified until Apply. False when nothing is open.
    bool RestoreDefaults();

    std::wstring HelpTopic() const override { return LayersHelpTopic(m_nApplication); }

    int Application() const { return m_nApplication; }

protected:
    // Writes the changes to "Layers.ini"; a failure is told to the user.
    bool Save() override;
    std::wstring ContentsName() const override {
        return ApplicationName(m_nApplication) + L" layers";
    }
    void Discard() override;

private:
    void MakeRows();

    int m_nApplication = 0;
    std::optional<CVX2D_ProjectLayers> m_layers;
    std::vector<SLayerRow> m_rows;
};
