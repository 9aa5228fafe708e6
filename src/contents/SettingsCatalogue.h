// The four applications' settings catalogues as data: which sections each
// application has, in which order, and each section's variables with id,
// label, key, kind, metric and imperial default and offered choices.
#pragma once

#include "contents/ProjectSettingsBase.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

// A default of a catalogue row: a number for toggles (1 on, 0 off),
// integers, reals and choices, a text for the text kinds.
struct SCatalogueValue {
    constexpr SCatalogueValue(int value) : number(value) {}
    constexpr SCatalogueValue(double value) : number(value) {}
    constexpr SCatalogueValue(const wchar_t* value) : text(value) {}
    double number = 0.0;
    const wchar_t* text = L"";
};

struct SCatalogueRow {
    std::int32_t id;
    const wchar_t* label;
    const wchar_t* key; // empty where the application has no short name
    std::int32_t kind;  // CVX2D_ProjectSettingsBase::EKind
    SCatalogueValue metric;
    SCatalogueValue imperial;
    std::array<std::int32_t, 10> choices{}; // offered EPrjVal values, ending with 0
};

// One section of an application: its rows in order, taken from one or more
// tables (ISOMETRIC puts two rows into the shared dimensioning table).
struct SCatalogueSection {
    std::int32_t id;
    std::vector<std::span<const SCatalogueRow>> parts;
};

// The sections of application 1 ELECTRIC, 2 P&ID, 3 ISOMETRIC, 4 ORTHO in
// catalogue order; empty for any other number.
const std::vector<SCatalogueSection>& SettingsCatalogue(std::int32_t application);

// The label of a variable id as the catalogues give it ("Text Height" for
// 145, "Project Setting Title" for the title rows' 165); empty for an id no
// catalogue has.
std::wstring SettingsVariableLabel(std::int32_t id);
