// The core objects one run of either program works with, over the datafiles
// folder it was given: the installation values, the registries and the
// per-user profile. The desktop program and the command line both build one.
#pragma once

#include "contents/SpecDestinations.h"
#include "contents/SpecRegister.h"
#include "platform/Registry.h"
#include "store/ClientRegistry.h"
#include "store/Datafiles.h"
#include "store/Installation.h"
#include "store/Profile.h"
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
          projects(datafiles, prompter), clients(datafiles), profile(*registry),
          specDestinations(datafiles), specs(projects, specDestinations) {
        projects.SetContents(&specs);
    }
    // The registry points at `specs`: the core stays where it was made.
    CStandardsCore(const CStandardsCore&) = delete;
    CStandardsCore& operator=(const CStandardsCore&) = delete;

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
    // The drafting applications' spec destinations: one document for the
    // whole run over this datafiles folder.
    CVX2D_SpecDestinations specDestinations;
    // Pipe specs and their folders; told of standards' copies, renames and
    // purges by `projects`.
    CVX2D_SpecRegister specs;
};
