#include "datafile/Application.h"

#include "datafile/Text.h"

namespace {

const wchar_t* const kSettingsNames[] = {L"ELECTRIC", L"P&ID", L"ISOMETRIC", L"ORTHO"};
const wchar_t* const kNames[] = {L"ELECTRIC", L"PID", L"ISOMETRIC", L"ORTHO"};
const wchar_t* const kOldStems[] = {L"Electric", L"Flow", L"Iso", L"Ortho"};

} // namespace

std::wstring ApplicationSettingsName(int application) {
    return IsApplication(application) ? kSettingsNames[application - 1] : L"";
}

std::wstring ApplicationName(int application) {
    return IsApplication(application) ? kNames[application - 1] : L"";
}

std::wstring ApplicationFileStem(int application, int projectVersion) {
    if (!IsApplication(application))
        return L"";
    return projectVersion < 2016 ? kOldStems[application - 1] : kNames[application - 1];
}

int ParseApplication(const std::wstring& text) {
    const std::wstring trimmed = TrimBlanks(text);
    if (trimmed.size() == 1 && trimmed[0] >= L'1' && trimmed[0] <= L'4')
        return trimmed[0] - L'0';
    for (const int application : kApplications) {
        for (const auto* table : {kSettingsNames, kNames, kOldStems}) {
            if (EqualsNoCase(trimmed, table[application - 1]))
                return application;
        }
    }
    return 0;
}
