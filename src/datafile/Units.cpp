#include "datafile/Units.h"

namespace {

std::wstring NameOf(const std::vector<std::wstring>& names, int code) {
    return code >= 0 && code < static_cast<int>(names.size())
               ? names[static_cast<std::size_t>(code)]
               : std::wstring();
}

} // namespace

const std::vector<std::wstring>& WorkingUnitsNames() {
    static const std::vector<std::wstring> names = {L"Metric", L"English"};
    return names;
}

const std::vector<std::wstring>& DisplayedUnitsNames() {
    static const std::vector<std::wstring> names = {L"Metric - OD", L"Metric - NPS",
                                                    L"English - US", L"English - NPS"};
    return names;
}

std::wstring WorkingUnitsText(int units) {
    return NameOf(WorkingUnitsNames(), units);
}

std::wstring DisplayedUnitsText(int units) {
    return NameOf(DisplayedUnitsNames(), units);
}
