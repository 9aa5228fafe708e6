// The owner of a navigator that has no windows (the command line's
// "navigator tree", the benchmarks): it opens, asks and prints nothing.
#pragma once

#include "app/NavigatorController.h"

class CWindowlessOwner : public INavigatorOwner {
public:
    void Request(ENavRequest, std::int32_t) override {}
    bool RunNewStandardWizard(std::int32_t, std::int32_t&, std::wstring&) override { return false; }
    void PrintStandard(std::int32_t) override {}
    void ExportStandard(std::int32_t, const std::wstring&) override {}
    void ImportStandards(std::int32_t) override {}
};
