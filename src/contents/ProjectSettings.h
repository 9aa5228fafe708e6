// The settings of each drafting application: one class per application,
// each building its own catalogue, and the factory that picks the class.
#pragma once

#include "contents/ProjectSettingsBase.h"

#include <memory>

class CVX2D_ProjectSettingsElectric : public CVX2D_ProjectSettingsBase {
public:
    void BuildCatalogue(std::int32_t unitSystem) override;
};

class CVX2D_ProjectSettingsFlow : public CVX2D_ProjectSettingsBase {
public:
    void BuildCatalogue(std::int32_t unitSystem) override;
};

class CVX2D_ProjectSettingsIso : public CVX2D_ProjectSettingsBase {
public:
    void BuildCatalogue(std::int32_t unitSystem) override;
};

class CVX2D_ProjectSettingsOrtho : public CVX2D_ProjectSettingsBase {
public:
    void BuildCatalogue(std::int32_t unitSystem) override;
};

// An empty settings object of application 1 ELECTRIC, 2 P&ID, 3 ISOMETRIC or
// 4 ORTHO; null for any other number. Build its catalogue, then load it.
std::unique_ptr<CVX2D_ProjectSettingsBase> NewProjectSettings(std::int32_t application);
