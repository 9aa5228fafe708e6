// The core objects one run of either program works with, over the datafiles
// folder it was given: the installation values, the registries and the
// per-user profile. The desktop program and the command line both build one.
#pragma once

#include "store/Profile.h"
#include "store/Installation.h"
#include "platform/Registry.h"
#include "store/ClientRegistry.h"
#include "store/Datafiles.h"
#include "store/ProjectRegistry.h"

#include <memory>
#include <string>

struct CStandardsCore {
    // `datafilesOverride`, when not empty, replaces the installed datafiles
    // folder (--datafiles of both programs).
    CStandardsCore(std::unique_ptr<IRegistry> registryIn, const std::wstring& datafilesOverride,
                   IPrompter& prompterIn)
        : registry(std::move(registryIn)), installation(*registry, datafilesOverride),
          datafiles(installation.DatafilesPath()), prompter(prompterIn),
          projects(datafiles, prompter), clients(datafiles), profile(*registry) {}

    // The standard's name for messages, or its id when it has none.
    std::wstring NameOf(std::int32_t id) const {
        const std::wstring name = projects.GetProjectName(id, true, true);
        return name.empty() ? std::to_wstring(id) : name;
    }

    std::unique_ptr<IRegistry> registry;
    CInstallation installation;
    CVX2D_Datafiles datafiles;
    IPrompter& prompter;
    CVX2D_ProjectRegistry projects;
    CVX2D_ClientRegistry clients;
    CProfile profile;
};
