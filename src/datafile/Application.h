// The four drafting applications and the names each part of a standard uses
// for them.
#pragma once

#include <string>

enum EApplication { eAppElectric = 1, eAppFlow = 2, eAppIso = 3, eAppOrtho = 4 };

// Every application in its order: `for (int application : kApplications)`.
inline constexpr int kApplications[] = {eAppElectric, eAppFlow, eAppIso, eAppOrtho};

// Whether the number is one of the four applications.
constexpr bool IsApplication(int application) {
    return application >= eAppElectric && application <= eAppOrtho;
}

// Settings headings: "ELECTRIC", "P&ID", "ISOMETRIC", "ORTHO"; empty otherwise.
std::wstring ApplicationSettingsName(int application);

// Layer headings, launcher and folder titles: "ELECTRIC", "PID", "ISOMETRIC",
// "ORTHO"; empty otherwise.
std::wstring ApplicationName(int application);

// The stem of the application's files in a standard of this version:
// "Electric", "Flow", "Iso", "Ortho" below 2016, "ELECTRIC", "PID",
// "ISOMETRIC", "ORTHO" from 2016 on; empty for another application number.
std::wstring ApplicationFileStem(int application, int projectVersion);

// An application typed by a user: "1" to "4", or a name of either table or
// an old file stem, in any letter case ("pid", "P&ID", "Flow"). 0 when none.
int ParseApplication(const std::wstring& text);
