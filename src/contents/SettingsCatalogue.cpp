#include "contents/SettingsCatalogue.h"
#include "datafile/Application.h"

#include <unordered_map>

namespace {

// The kinds under short names, so that each row reads as one line.
constexpr std::int32_t eBool = CVX2D_ProjectSettingsBase::eBool;
constexpr std::int32_t eString = CVX2D_ProjectSettingsBase::eString;
constexpr std::int32_t eFont = CVX2D_ProjectSettingsBase::eFont;
constexpr std::int32_t eInteger = CVX2D_ProjectSettingsBase::eInteger;
constexpr std::int32_t eReal = CVX2D_ProjectSettingsBase::eReal;
constexpr std::int32_t eFolder = CVX2D_ProjectSettingsBase::eFolder;
constexpr std::int32_t eText = CVX2D_ProjectSettingsBase::eText;
constexpr std::int32_t eChoice = CVX2D_ProjectSettingsBase::eChoice;

constexpr int On = 1;
constexpr int Off = 0;

// A sub-heading row: id 165, its heading as the text value in both systems.
constexpr SCatalogueRow Title(const wchar_t* heading) {
    return {CVX2D_ProjectSettingsBase::kTitleId,
            L"Project Setting Title",
            L"",
            eText,
            heading,
            heading};
}

// Rows: {id, label, key, kind, metric default, imperial default, offered choices}.
// Choice defaults and offers are EPrjVal numbers; 0 is "nothing chosen".
// clang-format off

// ELECTRIC, section 4 "General Drawing Parameters".
constexpr SCatalogueRow kElectricGeneralDrawing[] = {
    {173, L"Text Style Name", L"", eText, L"STANDARD", L"STANDARD"},
    {168, L"Text Font", L"", eFont, L"RomanS; Regular; romans__.ttf", L"RomanS; Regular; romans__.ttf"},
    {188, L"Text Width", L"", eReal, 1, 1},
    {145, L"Text Height", L"txthgt", eReal, 2.5, 0.125},
    {54, L"Equipment Tag Text Height", L"eqptxt", eReal, 4, 0.1875},
    {2, L"Maximum Number of Characters in Balloon Before Breaking", L"charno", eInteger, 3, 3},
    {99, L"Distance for Line Breaks", L"brkdis", eReal, 2, 0.125},
    {44, L"Drawing Template", L"", eString, L"acad", L"acad"},
    {189, L"Block Folder", L"", eFolder, L"", L""},
};

// ELECTRIC, section 6 "Scale Factors".
constexpr SCatalogueRow kElectricScaleFactors[] = {
    {103, L"Disable Default LTSCALE Setting", L"disbl_lt", eBool, Off, Off},
    {102, L"LTSCALE", L"ltscale", eReal, 10, 0.5},
    {12, L"Cable ID Scale Factor", L"cbl-id", eReal, 10, 0.5},
    {82, L"Instrument Balloon Scale", L"instbl", eReal, 10, 0.5},
    {56, L"Fence Scale Factor", L"fncscl", eReal, 5, 0.25},
    {57, L"Fence Spacing Scale Factor", L"fendis", eReal, 25, 1},
    {164, L"Wire Shield Line Spacing", L"shldtk", eReal, 4, 0.25},
    {142, L"Terminal Block Spacing", L"tb-spc", eReal, 5, 0.25},
    {143, L"Terminal Block Wire Chamfer Distance", L"w-cmfr", eReal, 2.5, 0.125},
    {144, L"Terminal Block Wiring Tag Text Spacing", L"txtspc", eReal, 2, 0.0625},
    {1, L"Arrow, Union, Seal Scale", L"scl5", eReal, 5, 0.25},
    {107, L"Miscellaneous Blocks Scale", L"scl10", eReal, 10, 0.5},
    {153, L"Unit Heater, Vert Motor, Horz Motor, Flood Light Scale", L"scl15", eReal, 15, 0.75},
    {17, L"Conduit Up/Down Scale", L"scl7", eReal, 7.5, 0.3125},
    {109, L"Motor Starter Scale", L"scl8", eReal, 8, 0.3125},
    {45, L"Emergency Light, Fluorescent Light, Conduit Fitting Scale", L"scl20", eReal, 20, 1},
    {21, L"Add Continuation Ends Scale", L"scl31", eReal, 5, 0.25},
};

// ELECTRIC, section 7 "Scaling Variables".
constexpr SCatalogueRow kElectricScalingVariables[] = {
    {6, L"Bus Bar Line Thickness", L"busbar", eReal, 0.5, 0.0625},
    {112, L"Panel Wiring Line Thickness", L"pnlwir", eReal, 0, 0},
    {59, L"Field Wiring Line Thickness", L"fldwir", eReal, 0, 0},
    {4, L"Border Polyline Thickness", L"scl1", eReal, 1, 0.0625},
    {76, L"Ground Wire Thickness", L"grndwr", eReal, 2, 0.125},
    {11, L"Cable/Conduit Thickness", L"cblcon", eReal, 1, 0.0625},
    {152, L"Underground Cable/Conduit Thickness", L"ug_cbl", eReal, 1, 0.0625},
    {13, L"Cable Tray Fitting Polyline Thickness", L"cbthck", eReal, 0.25, 0.03125},
    {121, L"Revision Cloud Line Thickness", L"revthk", eReal, 0.5, 0.03125},
    {78, L"Heat Tracing Line Thickness", L"ht-thk", eReal, 0, 0},
    {77, L"Heat Tracing Arc Spacing", L"ht-spc", eReal, 5, 0.25},
};

// ELECTRIC, section 1 "Civil/Structural Parameters".
constexpr SCatalogueRow kElectricCivilStructural[] = {
    {126, L"Single Door Width", L"sndrwd", eReal, 914, 36},
    {43, L"Double Door Width", L"dbdrwd", eReal, 1828, 72},
    {40, L"Door Height", L"doorht", eReal, 2134, 84},
    {38, L"Door and Window Frame Width", L"drfrme", eReal, 50, 2},
    {42, L"Door Window Size", L"drwind", eReal, 610, 24},
    {41, L"Distance Between Door Window Top and Door Top", L"drwnht", eReal, 152, 6},
    {60, L"Distance from Finished Floor to Window Sill", L"botsil", eReal, 1067, 42},
    {70, L"Distance from Floor to Door Knob", L"knbdis", eReal, 1066, 42},
};

// P&ID, section 4 "General Drawing Parameters".
constexpr SCatalogueRow kPidGeneralDrawing[] = {
    {173, L"Text Style Name", L"", eText, L"STANDARD", L"STANDARD"},
    {168, L"Text Font", L"", eFont, L"RomanS; Regular; romans__.ttf", L"RomanS; Regular; romans__.ttf"},
    {188, L"Text Width", L"", eReal, 1, 1},
    {145, L"Text Height", L"txthgt", eReal, 2.5, 0.125},
    {54, L"Equipment Tag Text Height", L"eqptxt", eReal, 4, 0.1875},
    {55, L"Exchanger and Reboiler Flange Space", L"exchds", eReal, 1, 0.0625},
    {99, L"Distance for Line Breaks", L"brkdis", eReal, 3, 0.125},
    {119, L"Process Line Thickness", L"proctk", eReal, 0.5, 0.03125},
    {154, L"Utility Line Thickness", L"utiltk", eReal, 0.25, 0.015625},
    {121, L"Revision Cloud Line Thickness", L"revthk", eReal, 0.5, 0.03125},
    {100, L"Distance from Line to Line Number Tag", L"lindis", eReal, 1.5, 0.0625},
    {81, L"Maximum Number of Characters in Instrument Balloon Before Breaking", L"charno", eInteger, 3, 3},
    {23, L"Maximum Number of Characters in Diamond Balloon Before Breaking", L"diamch", eInteger, 2, 2},
    {44, L"Drawing Template", L"", eString, L"acad", L"acad"},
    {189, L"Block Folder", L"", eFolder, L"", L""},
};

// P&ID, section 8 "System Toggles".
constexpr SCatalogueRow kPidSystemToggles[] = {
    {118, L"Pipe Spec", L"pip_spc", eBool, On, On},
    {131, L"Spec Check", L"spchek", eBool, Off, Off},
    {159, L"Valve Tagging Option", L"valtag", eBool, Off, Off},
    {155, L"Valve Appearance 1", L"valv_flg", eChoice, ePrjPlaceFlangedValves, ePrjPlaceFlangedValves, {ePrjPlaceFlangedValves, ePrjPlaceValvesWithoutFlanges}},
    {156, L"Valve Appearance 2", L"spc_flg", eChoice, ePrjShowFlangedAsPerSpec, ePrjShowFlangedAsPerSpec, {ePrjShowFlangedAsPerSpec, ePrjFlangesNeverShown}},
};

// P&ID, section 6 "Scale Factors".
constexpr SCatalogueRow kPidScaleFactors[] = {
    {103, L"Disable Default LTSCALE Setting", L"disbl_lt", eBool, Off, Off},
    {102, L"LTSCALE", L"ltscale", eReal, 10, 0.5},
    {65, L"Flanged Valves Length", L"scl1", eReal, 8, 0.3125},
    {110, L"Non-Flanged Valves Length", L"scl2", eReal, 6, 0.25},
    {130, L"Small Non-Flanged Valves Length", L"scl3", eReal, 4, 0.1875},
    {108, L"Grade/Drain/Expansion Joint/Flex Hose/Vortex Breaker etc.", L"scl10", eReal, 10, 0.375},
    {20, L"Continuation Arrows Scale Factor", L"scl15", eReal, 10, 0.5},
    {18, L"Scale for Conical Strainer/Spec Blinds", L"scl16", eReal, 2, 0.08},
    {16, L"Concentric and Eccentric Reducers/Nozzles", L"scl17", eReal, 3, 0.125},
    {63, L"Flange/Blind Scale", L"scl18", eReal, 1, 0.04},
    {22, L"Control Valve Actuator Scale", L"scl19", eReal, 3, 0.125},
    {80, L"In-Line Tags: Circle/Diamond/Square/Hexagon", L"scl21", eReal, 10, 0.5},
    {0, L"Arrows Scaling Factor", L"scl22", eReal, 5, 0.25},
    {71, L"Flow Arrow Length Scale", L"scl22", eReal, 5, 0.25},
    {179, L"Flow Arrow Width Scale", L"scl22", eReal, 5, 0.25},
    {157, L"Break Distance for Valve/Flange", L"scl23a", eReal, 1, 0.03125},
    {68, L"Scale Factor for Flange (Set to Valve Scale)", L"scl23b", eReal, 8, 0.3125},
    {127, L"Scale Factor for Single Flange", L"scl24", eReal, 3, 0.125},
    {151, L"Tie-In Weld", L"scl25", eReal, 8, 0.25},
    {82, L"Instrument Balloon Scale", L"scl4", eReal, 10, 0.5},
    {86, L"Pitot/Turbine/Displacement/Nozzle etc.", L"scl5", eReal, 6, 0.25},
    {85, L"Orifice Runs", L"scl6", eReal, 3, 0.125},
    {93, L"Venturi", L"scl7", eReal, 12, 0.5},
    {88, L"Senior Run Line Break Distance", L"scl8a", eReal, 40, 1.6667},
    {87, L"Senior Run Block Scaling", L"scl8b", eReal, 3, 0.125},
    {83, L"I and R Diamonds/Diaphragm Seat", L"scl9", eReal, 6, 0.25},
    {84, L"Instr.: Line Symbols Scale: // -o- X L etc.", L"scl11", eReal, 1.2, 1},
    {92, L"V. Area Line Break Distance", L"scl27a", eReal, 14, 0.7},
    {91, L"V. Area Line Block Scaling", L"scl27b", eReal, 10, 0.5},
    {90, L"Straightening Vanes Break Distance", L"scl30a", eReal, 9, 0.375},
    {89, L"Straightening Vanes Block Scaling", L"scl30b", eReal, 3, 0.125},
    {53, L"Pump/Exchangers/Cooler/Unit Heater/Fins/Fan/Cylinder", L"scl12", eReal, 25, 1},
    {51, L"Heater/Exhaust Flare/Dike", L"scl13", eReal, 150, 6},
    {47, L"Equipment Description Blocks Scale", L"scl14", eReal, 10, 0.5},
    {52, L"Pig Launcher", L"scl26", eReal, 50, 2},
    {48, L"Eductor/Horn", L"scl28", eReal, 20, 0.75},
    {46, L"Dampers", L"scl29", eReal, 10, 0.5},
    {50, L"Expansion Joint, Flame Arrestor, Mixer Break Distance", L"scl31a", eReal, 10, 0.5},
    {49, L"Expansion Joint, Flame Arrestor, Mixer Block Scaling", L"scl31b", eReal, 10, 0.5},
};

// P&ID, section 0 "Bill of Material".
constexpr SCatalogueRow kPidBillOfMaterial[] = {
    {106, L"Scale Factor for Material ID Balloons", L"balscl", eReal, 10, 0.5},
    {191, L"BOM Placement Default", L"", eChoice, ePrjTopRight, ePrjTopRight, {ePrjTopRight, ePrjTopLeft, ePrjBottomLeft, ePrjBottomRight}},
};

// ISOMETRIC, section 4 "General Drawing Parameters".
constexpr SCatalogueRow kIsoGeneralDrawing[] = {
    {173, L"Text Style Name", L"", eText, L"STANDARD", L"STANDARD"},
    {174, L"Text Style Name: Iso Left", L"", eText, L"ISO-L", L"ISO-L"},
    {175, L"Text Style Name: Iso Right", L"", eText, L"ISO-R", L"ISO-R"},
    {168, L"Text Font", L"", eFont, L"RomanS; Regular; romans__.ttf", L"RomanS; Regular; romans__.ttf"},
    {188, L"Text Width", L"", eReal, 1, 1},
    {145, L"Text Height", L"txthgt", eReal, 2.5, 0.09375},
    {54, L"Equipment Tag Text Height", L"eqptxt", eReal, 4, 0.25},
    {113, L"Number Pipe Diameters for Pipebend Straight Ends", L"s-bend", eReal, 2, 2},
    {133, L"Prefix Text for Spool Piece Number Blocks", L"mkprfx", eText, L"MK-", L"MK-"},
    {2, L"Maximum Number of Characters in Balloon Before Breaking", L"charno", eInteger, 3, 3},
    {163, L"Weld Gap", L"wldgap", eReal, 0, 0},
    {62, L"Flange Appearance", L"flgshp", eChoice, ePrjStandard, ePrjStandard, {ePrjStandard, ePrjLineWidth}},
    {44, L"Drawing Template", L"", eString, L"acad", L"acad"},
    {189, L"Block Folder", L"", eFolder, L"", L""},
    {99, L"Distance for Line Breaks", L"brkdis", eReal, 3, 0.125},
};

// ISOMETRIC, section 8 "System Toggles".
constexpr SCatalogueRow kIsoSystemToggles[] = {
    {158, L"Valve Stem", L"hndwhl", eBool, On, On},
    {131, L"Spec Check", L"spchek", eBool, Off, Off},
    {5, L"Branch Check", L"brchck", eBool, On, On},
    {9, L"BW Elbows", L"crvell", eChoice, ePrjCurved, ePrjCurved, {ePrjCurved, ePrjSquare}},
    {61, L"Fitting Insert Point", L"fitins", eChoice, ePrjWeld, ePrjWeld, {ePrjWeld, ePrjCenter}},
    {67, L"Flange Insert Point", L"flgins", eChoice, ePrjWeld, ePrjWeld, {ePrjWeld, ePrjFaceOfFlange}},
};

// ISOMETRIC, section 6 "Scale Factors".
constexpr SCatalogueRow kIsoScaleFactors[] = {
    {103, L"Disable Default LTSCALE Setting", L"disbl_lt", eBool, Off, Off},
    {102, L"LTSCALE", L"ltscale", eReal, 10, 0.5},
    {82, L"Instrument Balloon Scale", L"scl1", eReal, 10, 0.375},
    {14, L"Column ID Balloon", L"scl3", eReal, 10, 0.375},
    {19, L"Revision Triangle Scale", L"scl4", eReal, 10, 0.375},
    {79, L"Info Blocks", L"scl5", eReal, 2.5, 0.125},
    {0, L"Arrows Scaling Factor", L"scl6", eReal, 10, 0.375},
    {71, L"Flow Arrow Length Scale", L"scl6", eReal, 10, 0.375},
    {179, L"Flow Arrow Width Scale", L"scl6", eReal, 10, 0.375},
    {74, L"Grade/Wall Symbols and Gasket Ticks", L"scl7", eReal, 5, 0.25},
    {125, L"Shoes, Guides and Anchors", L"scl8", eReal, 10, 0.25},
    {15, L"Component Scaling Factor", L"cmpscl", eReal, 1, 1},
    {185, L"Centerline Symbol Scale", L"", eReal, 0, 0},
};

// ISOMETRIC, section 2 "Component Sizing".
constexpr SCatalogueRow kIsoComponentSizing[] = {
    {65, L"Flanged Valves Length", L"vallen", eReal, 12, 0.5},
    {64, L"Flanged Valves Height", L"valhgt", eReal, 6, 0.25},
    {150, L"THRD and SW Valves Length", L"s-vlen", eReal, 8, 0.25},
    {149, L"THRD and SW Valves Height", L"s-vhgt", eReal, 4, 0.1875},
    {172, L"Check Valve Arrow Length", L"", eReal, 0.25, 0.25},
    {171, L"Check Valve Arrow Width", L"", eReal, 0.125, 0.125},
    {139, L"Socket Weld Extension Line", L"sw-ext", eReal, 1, 0.03125},
    {69, L"Flange Weld Point to Face Length", L"flglen", eReal, 4, 0.25},
    {66, L"Face of Flange Width", L"flgfce", eReal, 1.5, 0.0625},
    {10, L"BW Fitting Polyline Width", L"pipthk", eReal, 0.5, 0.03125},
    {148, L"THRD/SW Fitting Polyline Width", L"s-pthk", eReal, 0.25, 0.01563},
    {121, L"Revision Cloud Line Thickness", L"revthk", eReal, 0.5, 0.03125},
    {162, L"Weld Dot Scale", L"weldot", eReal, 1.5, 0.0625},
    {8, L"BW Components Length", L"cmplen", eReal, 6, 0.25},
    {7, L"BW Components Height", L"cmphgt", eReal, 3, 0.125},
    {147, L"THRD and SW Components Length", L"s-clen", eReal, 4, 0.125},
    {146, L"THRD and SW Components Height", L"s-chgt", eReal, 2, 0.0625},
    {116, L"Scaling Factor for Pipe Insulation Symbol", L"inscal", eReal, 10, 0.5},
    {114, L"Break Distance for Pipe Insulation Symbol", L"inslen", eReal, 15, 0.75},
    {73, L"Gasket Gap Between Flanges and Valves", L"gskgap", eReal, 1, 0.03125},
    {137, L"Steel Member Height", L"stlhgt", eReal, 6, 0.25},
    {138, L"Steel Member Width", L"stlwid", eReal, 4, 0.125},
    {3, L"Base Supports Width", L"suptwd", eReal, 2, 0.125},
};

// ISOMETRIC, section 0 "Bill of Material".
constexpr SCatalogueRow kIsoBillOfMaterial[] = {
    {105, L"Material Block", L"mtoblk", eBool, On, On},
    {106, L"Scale Factor for Material ID Balloons", L"balscl", eReal, 10, 0.5},
    {117, L"Minimum Pipe Length Between Fittings", L"minpup", eReal, 50, 2},
    {170, L"Bolt Diameter Size Units", L"bltimp", eChoice, ePrjEnglish, ePrjEnglish, {ePrjMetric, ePrjEnglish}},
    {180, L"Bolt Length Units", L"", eChoice, ePrjNone, ePrjNone, {ePrjMetric, ePrjEnglish}},
    {182, L"Bolt Diameter Size Precision", L"", eChoice, ePrjNone, ePrjNone, {ePrjPrecision0, ePrjPrecision1, ePrjPrecision2, ePrjPrecision3, ePrjPrecision4, ePrjPrecision5, ePrjPrecision6, ePrjPrecision7, ePrjPrecision8}},
    {181, L"Bolt Length Precision", L"", eChoice, ePrjNone, ePrjNone, {ePrjPrecision0, ePrjPrecision1, ePrjPrecision2, ePrjPrecision3, ePrjPrecision4, ePrjPrecision5, ePrjPrecision6, ePrjPrecision7, ePrjPrecision8}},
    {190, L"Eccentric Reducer and Swage Unit Format", L"", eChoice, ePrjDecimal, ePrjDecimal, {ePrjScientific, ePrjDecimal, ePrjEngineering, ePrjArchitectural, ePrjFractional}},
    {191, L"BOM Placement Default", L"", eChoice, ePrjTopRight, ePrjTopRight, {ePrjTopRight, ePrjTopLeft, ePrjBottomLeft, ePrjBottomRight}},
    {192, L"Swage BOM Sorting", L"", eChoice, ePrjSwageAllScrewed, ePrjSwageAllScrewed, {ePrjSwageSeparate, ePrjSwageAllScrewed, ePrjSwageAllWelded}},
};

// ORTHO, section 4 "General Drawing Parameters".
constexpr SCatalogueRow kOrthoGeneralDrawing[] = {
    {173, L"Text Style Name", L"", eText, L"STANDARD", L"STANDARD"},
    {168, L"Text Font", L"", eFont, L"RomanS; Regular; romans__.ttf", L"RomanS; Regular; romans__.ttf"},
    {188, L"Text Width", L"", eReal, 1, 1},
    {145, L"Text Height", L"txthgt", eReal, 2.5, 0.125},
    {54, L"Equipment Tag Text Height", L"eqptxt", eReal, 4, 0.1875},
    {121, L"Revision Cloud Line Thickness", L"revthk", eReal, 0.5, 0.03125},
    {160, L"Straight Flange Distance for Vessel Heads", L"strflg", eReal, 50, 2},
    {115, L"Pipe Insulation Symbol Length", L"inslen", eReal, 500, 18},
    {113, L"Number Pipe Diameters for Pipebend Straight Ends", L"s-bend", eInteger, 2, 2},
    {2, L"Maximum Number of Characters in Balloon Before Breaking", L"charno", eInteger, 3, 3},
    {163, L"Weld Gap", L"wldgap", eReal, 0, 0},
    {169, L"Double Line Drafting Start Size", L"sd-brk", eString, L"350mm", L"14\""},
    {186, L"Pipe Double/Single Line Drafting", L"", eChoice, ePrjDoubleLine, ePrjDoubleLine, {ePrjDoubleLine, ePrjSingleLine}},
    {44, L"Drawing Template", L"", eString, L"acad", L"acad"},
    {189, L"Block Folder", L"", eFolder, L"", L""},
};

// ORTHO, section 8 "System Toggles".
constexpr SCatalogueRow kOrthoSystemToggles[] = {
    {158, L"Valve Stem", L"hndwhl", eBool, On, On},
    {131, L"Spec Check", L"spchek", eBool, Off, Off},
    {5, L"Branch Check", L"brchck", eBool, On, On},
    {72, L"Full Circle for Elbows Up", L"circup", eBool, Off, Off},
};

// ORTHO, section 6 "Scale Factors".
constexpr SCatalogueRow kOrthoScaleFactors[] = {
    {103, L"Disable Default LTSCALE Setting", L"disbl_lt", eBool, Off, Off},
    {102, L"LTSCALE", L"ltscale", eReal, 10, 0.5},
    {82, L"Instrument Balloon Scale", L"scl1", eReal, 12.5, 0.5},
    {104, L"Material Balloon Scale", L"scl2", eReal, 12.5, 0.5},
    {107, L"Miscellaneous Blocks Scale", L"scl4", eReal, 12.5, 0.5},
    {128, L"Single Line Pipe Width", L"scl5", eReal, 0.5, 0.03125},
    {129, L"Small Bore Single Line Pipe Width", L"scl5a", eReal, 0.25, 0.015625},
    {14, L"Column ID Balloon", L"scl6", eReal, 12.5, 0.5},
    {111, L"North Arrow Scale", L"scl7", eReal, 25, 1},
    {71, L"Flow Arrow Length Scale", L"", eReal, 0, 0},
    {179, L"Flow Arrow Width Scale", L"", eReal, 0, 0},
    {124, L"Sections Scale", L"scl8", eReal, 16, 0.5},
    {75, L"Grating Scale", L"grtscl", eReal, 50, 2.5},
    {162, L"Weld Dot Scale", L"weldot", eReal, 1, 0.0625},
    {185, L"Centerline Symbol Scale", L"", eReal, 0, 0},
};

// ORTHO, section 0 "Bill of Material".
constexpr SCatalogueRow kOrthoBillOfMaterial[] = {
    {105, L"Material Block", L"mtoblk", eBool, On, On},
    {106, L"Scale Factor for Material ID Balloons", L"balscl", eReal, 10, 0.5},
    {170, L"Bolt Diameter Size Units", L"bltimp", eChoice, ePrjEnglish, ePrjEnglish, {ePrjMetric, ePrjEnglish}},
    {180, L"Bolt Length Units", L"", eChoice, ePrjNone, ePrjNone, {ePrjMetric, ePrjEnglish}},
    {182, L"Bolt Diameter Size Precision", L"", eChoice, ePrjNone, ePrjNone, {ePrjPrecision0, ePrjPrecision1, ePrjPrecision2, ePrjPrecision3, ePrjPrecision4, ePrjPrecision5, ePrjPrecision6, ePrjPrecision7, ePrjPrecision8}},
    {181, L"Bolt Length Precision", L"", eChoice, ePrjNone, ePrjNone, {ePrjPrecision0, ePrjPrecision1, ePrjPrecision2, ePrjPrecision3, ePrjPrecision4, ePrjPrecision5, ePrjPrecision6, ePrjPrecision7, ePrjPrecision8}},
    {191, L"BOM Placement Default", L"", eChoice, ePrjTopRight, ePrjTopRight, {ePrjTopRight, ePrjTopLeft, ePrjBottomLeft, ePrjBottomRight}},
    {192, L"Swage BOM Sorting", L"", eChoice, ePrjSwageSeparate, ePrjSwageSeparate, {ePrjSwageSeparate, ePrjSwageAllScrewed, ePrjSwageAllWelded}},
};

// ORTHO, section 1 "Civil/Structural Parameters".
constexpr SCatalogueRow kOrthoCivilStructural[] = {
    {183, L"Structural Display Units", L"", eChoice, ePrjNone, ePrjNone, {ePrjMetric, ePrjEnglish}},
    {161, L"Vessel/Radial Platform Clearance", L"pltdis", eReal, 100, 4},
    {58, L"Distance Between Fence", L"fendis", eReal, 1800, 72},
    {126, L"Single Door Width", L"sndrwd", eReal, 914, 36},
    {43, L"Double Door Width", L"dbdrwd", eReal, 1828, 72},
    {40, L"Door Height", L"doorht", eReal, 2134, 84},
    {39, L"Door Frame Width", L"drfrme", eReal, 50, 2},
    {42, L"Door Window Size", L"drwind", eReal, 610, 24},
    {41, L"Distance Between Door Window Top and Door Top", L"drwnht", eReal, 152, 6},
    {60, L"Distance from Finished Floor to Window Sill", L"botsil", eReal, 1067, 42},
    {70, L"Distance from Floor to Door Knob", L"knbdis", eReal, 1066, 42},
    {135, L"Stairs Width", L"strwd", eReal, 914, 36},
    {132, L"Tread Length for Spiral Stairways", L"sprtrd", eReal, 250, 10},
    {134, L"Average Riser for Stairs", L"risera", eReal, 190, 7.5},
    {122, L"Maximum Riser Height", L"riserm", eReal, 210, 8.25},
    {98, L"Ladder Width", L"ladrwd", eReal, 400, 16},
    {95, L"Clearance Between Ladder Rungs/Obstruction", L"ladrcl", eReal, 200, 10},
    {94, L"Ladder Hoop Radius", L"ladrcg", eReal, 350, 14},
    {97, L"Ladder Rung Thickness", L"rungtk", eReal, 25, 1},
    {123, L"Number of Rungs Above a Platform", L"rungab", eInteger, 4, 4},
    {96, L"Spacing Between Ladder Rungs", L"rungsp", eReal, 305, 12},
    {136, L"Linetype for Steel", L"stldash", eChoice, ePrjHidden, ePrjHidden, {ePrjHidden, ePrjDashed}},
};

// Shared dimensioning section: section 3, the last section of every application.
constexpr SCatalogueRow kDimensioning[] = {
    {176, L"Dimension Style Name", L"", eText, L"STANDARD", L"STANDARD"},
    Title(L"Lines and Arrows"),
    {33, L"Dimension Line Spacing", L"DIMDLI", eReal, 0, 0},
    {28, L"Dimension Extension Line", L"DIMEXE", eReal, 2, 0.0625},
    {29, L"Dimension Extension Line Offset", L"DIMEXO", eReal, 2, 0.0625},
    {24, L"Dimension Arrowhead Size", L"DIMASZ", eReal, 2, 0.0625},
    {26, L"Dimension Center Marks and Centerlines", L"DIMCEN", eReal, 1, 0.03125},
    Title(L"Text"),
    {36, L"Dimension Text Height", L"DIMTXT", eReal, 2.5, 0.09375},
    {37, L"Vertical Position of Text in Relation to the Dimension Line", L"DIMTAD", eChoice, ePrjTextAboveDimLine, ePrjTextAboveDimLine, {ePrjCenterTextBetweenExtLines, ePrjTextAboveDimLine, ePrjTextOnSideOfDimLine, ePrjJisRepresentation}},
    {184, L"Gap Distance Around the Dimension Text", L"DIMGAP", eReal, 0.625, 0.09},
    Title(L"Fit"),
    {35, L"Draw Text Between Extension Lines", L"DIMTIX", eBool, On, On},
    {34, L"Suppress Dimension Lines Outside the Extension Lines", L"DIMSOXD", eBool, On, On},
    {30, L"Force Text Between the Extension Lines", L"DIMTOFL", eBool, On, On},
    Title(L"Primary Units"),
    {166, L"Linear Unit Format", L"DIMLUNIT", eChoice, ePrjDecimal, ePrjArchitectural, {ePrjScientific, ePrjDecimal, ePrjEngineering, ePrjArchitectural, ePrjFractional}},
    {167, L"Linear Precision", L"DIMDEC", eChoice, ePrjPrecision0, ePrjPrecision4, {ePrjPrecision0, ePrjPrecision1, ePrjPrecision2, ePrjPrecision3, ePrjPrecision4, ePrjPrecision5, ePrjPrecision6, ePrjPrecision7, ePrjPrecision8}},
    {31, L"Fraction Format", L"DIMFRAC", eChoice, ePrjHorizontal, ePrjHorizontal, {ePrjHorizontal, ePrjDiagonal, ePrjNotStacked}},
    {27, L"Dimension Distance Rounding", L"DIMRND", eReal, 0, 0},
    {32, L"Dimension Linear Scale Factor", L"DIMLFAC", eReal, 1, 1},
    {187, L"Zero Suppression", L"DIMZIN", eChoice, ePrjZeroNoFeetOrInches, ePrjZeroNoFeetOrInches, {ePrjZeroNoFeetOrInches, ePrjZeroShowFeetAndInches, ePrjZeroNoInches, ePrjZeroNoFeet, ePrjZeroNoLeading, ePrjZeroNoTrailing, ePrjZeroNoLeadingOrTrailing}},
    Title(L"Miscellaneous"),
    {25, L"Dimension Associativity", L"DIMASO", eChoice, ePrjAssociative, ePrjAssociative, {ePrjExploded, ePrjNonAssociative, ePrjAssociative}},
};
// ISOMETRIC's dimension styles, placed after "Dimension Style Name".
constexpr SCatalogueRow kIsoDimensionStyles[] = {
    {177, L"Dimension Style Name: Iso Left", L"", eText, L"ISO-L", L"ISO-L"},
    {178, L"Dimension Style Name: Iso Right", L"", eText, L"ISO-R", L"ISO-R"},
};

// clang-format on

using Part = std::span<const SCatalogueRow>;
using Base = CVX2D_ProjectSettingsBase;

// "Dimension Style Name" first, the rest of the shared table after it.
constexpr Part kDimensionStyleName = Part(kDimensioning).first(1);
constexpr Part kDimensioningRest = Part(kDimensioning).subspan(1);

const std::vector<SCatalogueSection> kEmpty;

} // namespace

const std::vector<SCatalogueSection>& SettingsCatalogue(std::int32_t application) {
    static const std::vector<SCatalogueSection> electric = {
        {Base::eGeneralDrawing, {kElectricGeneralDrawing}},
        {Base::eScaleFactors, {kElectricScaleFactors}},
        {Base::eScalingVariables, {kElectricScalingVariables}},
        {Base::eCivilStructural, {kElectricCivilStructural}},
        {Base::eDimensioning, {kDimensioning}},
    };
    static const std::vector<SCatalogueSection> pid = {
        {Base::eGeneralDrawing, {kPidGeneralDrawing}},
        {Base::eSystemToggles, {kPidSystemToggles}},
        {Base::eScaleFactors, {kPidScaleFactors}},
        {Base::eBillOfMaterial, {kPidBillOfMaterial}},
        {Base::eDimensioning, {kDimensioning}},
    };
    static const std::vector<SCatalogueSection> iso = {
        {Base::eGeneralDrawing, {kIsoGeneralDrawing}},
        {Base::eSystemToggles, {kIsoSystemToggles}},
        {Base::eScaleFactors, {kIsoScaleFactors}},
        {Base::eComponentSizing, {kIsoComponentSizing}},
        {Base::eBillOfMaterial, {kIsoBillOfMaterial}},
        {Base::eDimensioning, {kDimensionStyleName, kIsoDimensionStyles, kDimensioningRest}},
    };
    static const std::vector<SCatalogueSection> ortho = {
        {Base::eGeneralDrawing, {kOrthoGeneralDrawing}},
        {Base::eSystemToggles, {kOrthoSystemToggles}},
        {Base::eScaleFactors, {kOrthoScaleFactors}},
        {Base::eBillOfMaterial, {kOrthoBillOfMaterial}},
        {Base::eCivilStructural, {kOrthoCivilStructural}},
        {Base::eDimensioning, {kDimensioning}},
    };
    switch (application) {
    case 1:
        return electric;
    case 2:
        return pid;
    case 3:
        return iso;
    case 4:
        return ortho;
    default:
        return kEmpty;
    }
}

std::wstring SettingsVariableLabel(std::int32_t id) {
    // Every id has one label in all catalogues; the first one met is taken.
    static const std::unordered_map<std::int32_t, std::wstring> labels = [] {
        std::unordered_map<std::int32_t, std::wstring> map;
        for (const int application : kApplications) {
            for (const auto& section : SettingsCatalogue(application)) {
                for (const Part part : section.parts) {
                    for (const auto& row : part)
                        map.try_emplace(row.id, row.label);
                }
            }
        }
        return map;
    }();
    const auto it = labels.find(id);
    return it == labels.end() ? std::wstring() : it->second;
}
