// The new standard wizard without its pages: what it proposes, what it
// checks, and what Finish creates.
#pragma once

#include "store/Profile.h"
#include "store/Installation.h"
#include "store/ClientRegistry.h"
#include "store/ProjectRegistry.h"

#include <array>
#include <string>

class CNewStandardWizard {
public:
    // Where the new standard comes from.
    enum ESource { eMetricTemplate, eImperialTemplate, eCopyOfStandard };

    struct SChoice {
        std::wstring name;
        std::int32_t clientId = 0;
        int workingUnits = 0;   // 0 "Metric", 1 "English"
        int displayedUnits = 0; // 0 "Metric - OD" ... 3 "English - NPS"
        ESource source = eMetricTemplate;
        std::int32_t copyOf = 0; // the standard copied for eCopyOfStandard
        bool oldFormat = false;
        std::array<std::wstring, 4> drawings; // by application 1-4
        std::wstring borders, templates, libraries;
    };

    CNewStandardWizard(CVX2D_ProjectRegistry& projects, CVX2D_ClientRegistry& clients,
                       CProfile& profile);

    // The first page's proposal: the default name, the given client, metric
    // units and the folders of the last new standard.
    SChoice Proposal(std::int32_t clientId) const;
    // The drawings folders proposed for a name: the remembered drawings
    // folder of each application, then the name and the application's folder.
    std::array<std::wstring, 4> DrawingsFoldersFor(const std::wstring& name) const;

    // Empty when the name can be a standard's folder name; otherwise what to
    // tell the user.
    std::wstring CheckName(const std::wstring& name) const;

    // Creates the standard, gives it its client, units, folders and its first
    // line, and remembers the folders for the next time. The new id, or 0
    // after telling the user what failed through `message`.
    std::int32_t Finish(const SChoice& choice, std::wstring& message);

private:
    CVX2D_ProjectRegistry& m_projects;
    CVX2D_ClientRegistry& m_clients;
    CProfile& m_profile;
};
