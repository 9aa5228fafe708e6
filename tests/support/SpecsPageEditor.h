// The specs page's editor as a test makes it: with the register of specs and
// the destinations document it works through, over the test's registry.
#pragma once

#include "contents/SpecRegister.h"
#include "editors/SpecsEditor.h"

namespace test {

struct SSpecsParts {
    explicit SSpecsParts(const CVX2D_ProjectRegistry& projects)
        : destinations(projects.Datafiles()), specs(projects, destinations) {}
    CVX2D_SpecDestinations destinations;
    CVX2D_SpecRegister specs;
};

class CSpecsPageEditor : private SSpecsParts, public CSpecsEditor {
public:
    CSpecsPageEditor(const CVX2D_ProjectRegistry& projects, IPrompter& prompter)
        : SSpecsParts(projects), CSpecsEditor(projects, prompter, specs) {}
};

} // namespace test
