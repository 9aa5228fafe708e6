#include "contents/ProjectSettings.h"

#include "contents/SettingsCatalogue.h"
#include "datafile/Application.h"

void CVX2D_ProjectSettingsElectric::BuildCatalogue(std::int32_t unitSystem) {
    BuildFrom(eAppElectric, SettingsCatalogue(eAppElectric), unitSystem);
}

void CVX2D_ProjectSettingsFlow::BuildCatalogue(std::int32_t unitSystem) {
    BuildFrom(eAppFlow, SettingsCatalogue(eAppFlow), unitSystem);
}

void CVX2D_ProjectSettingsIso::BuildCatalogue(std::int32_t unitSystem) {
    BuildFrom(eAppIso, SettingsCatalogue(eAppIso), unitSystem);
}

void CVX2D_ProjectSettingsOrtho::BuildCatalogue(std::int32_t unitSystem) {
    BuildFrom(eAppOrtho, SettingsCatalogue(eAppOrtho), unitSystem);
}

std::unique_ptr<CVX2D_ProjectSettingsBase> NewProjectSettings(std::int32_t application) {
    switch (application) {
    case eAppElectric:
        return std::make_unique<CVX2D_ProjectSettingsElectric>();
    case eAppFlow:
        return std::make_unique<CVX2D_ProjectSettingsFlow>();
    case eAppIso:
        return std::make_unique<CVX2D_ProjectSettingsIso>();
    case eAppOrtho:
        return std::make_unique<CVX2D_ProjectSettingsOrtho>();
    default:
        return nullptr;
    }
}
