// The names of a standard's unit codes, as every page, report and list
// shows them.
#pragma once

#include <string>
#include <vector>

// "Metric", "English": working units by code (0, 1).
const std::vector<std::wstring>& WorkingUnitsNames();
// "Metric - OD", "Metric - NPS", "English - US", "English - NPS": displayed
// units by code (0-3).
const std::vector<std::wstring>& DisplayedUnitsNames();

// The name of a code; empty for a code the list does not have.
std::wstring WorkingUnitsText(int units);
std::wstring DisplayedUnitsText(int units);
