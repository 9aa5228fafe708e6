// A settings variable as text: what an editor cell, the command line or a
// comparison shows, and how a typed text is stored by the variable's kind.
#pragma once

#include "contents/ProjectSettingsBase.h"

#include <string>
#include <string_view>

// "%f" with trailing zeros removed, one kept after the point: 2.5, 3.0, 0.125.
std::wstring SettingsRealText(double value);

// By kind: "On"/"Off"; the text of a string, font, folder or text; "%d";
// the trimmed real; the label of the chosen value.
std::wstring SettingsValueText(const CVX2D_ProjectSettingsBase::CVariable& variable);

// Stores `text` by the variable's kind without force, so an equal value keeps
// the variable clean: toggles are on for exactly "On"; integers and reals go
// through the C library's conversions (non-numbers give 0); a choice takes
// the offered value whose label is `text`. False, with nothing changed, when
// a choice has no such label.
bool StoreSettingsText(CVX2D_ProjectSettingsBase::CVariable& variable, const std::wstring& text);

// Stores `text` as typed by someone who cannot pick from the cell's list:
// a toggle's On or Off and a choice's label in any letter case (or the
// choice's number), a whole number for an integer, a number with a point for
// a real, anything storable for the other kinds. False, with nothing changed
// and `allowed` saying what the variable takes, for anything else.
bool StoreTypedSettingsText(CVX2D_ProjectSettingsBase::CVariable& variable, std::wstring_view text,
                            std::wstring& allowed);
