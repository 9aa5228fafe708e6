// The core objects one run of the desktop program works with, over the
// datafiles folder it was given.
#pragma once

#include "app/Profile.h"
#include "platform/Installation.h"
#include "platform/Registry.h"
#include "store/ClientRegistry.h"
#include "store/Datafiles.h"
#include "store/ProjectRegistry.h"

#include <memory>

struct CDeskCore {
    CDeskCore(std::unique_ptr<IRegistry> registryIn, const std::wstring& datafilesOverride,
              IPrompter& prompterIn)
        : registry(std::move(registryIn)), installation(*registry, datafilesOverride),
          datafiles(installation.DatafilesPath()), prompter(prompterIn),
          projects(datafiles, prompter), clients(datafiles), profile(*registry) {}

    std::unique_ptr<IRegistry> registry;
    CInstallation installation;
    CVX2D_Datafiles datafiles;
    IPrompter& prompter;
    CVX2D_ProjectRegistry projects;
    CVX2D_ClientRegistry clients;
    CProfile profile;
};
