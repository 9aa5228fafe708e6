// "SpecDestinationDatafile.ini" in the datafiles folder: where the drafting
// applications find the files of each spec a standard has checked.
//
//   [VX2D_PRJ_<standard>]
//   VX2D_SPEC_<id> = <the pipe spec's folder>
//
// One section per standard that has checked at least one spec the register
// holds; a key per such spec. The folder is relative to the datafiles folder,
// written with '\' and ending in '\' ("Specs\Common\VX2D_SPEC_5\"), so that
// the file is right on every workstation whatever drive or mount point the
// datafiles folder has there. A spec checked by several standards stands in
// each of their sections.
//
// One document is held for the whole run over a datafiles folder (the core
// keeps it): reads use it while the file is unchanged, and every change reads
// the file afresh under its lock, so another workstation's change survives.
#pragma once

#include "datafile/IniFile.h"
#include "platform/System.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

class CVX2D_Datafiles;

struct SSpecDestination {
    std::int32_t specId = 0;
    std::wstring folder;
    bool operator==(const SSpecDestination&) const = default;
};

// The destinations of some standards, by standard id.
using CSpecDestinationMap = std::map<std::int32_t, std::vector<SSpecDestination>>;

class CVX2D_SpecDestinations {
public:
    explicit CVX2D_SpecDestinations(const CVX2D_Datafiles& datafiles) { Open(datafiles); }
    CVX2D_SpecDestinations(const CVX2D_SpecDestinations&) = delete;
    CVX2D_SpecDestinations& operator=(const CVX2D_SpecDestinations&) = delete;

    // Clears the document and opens the file of the datafiles folder, now
    // that it is known. Nothing is written.
    void Open(const CVX2D_Datafiles& datafiles);
    const std::wstring& Path() const { return m_strPath; }

    // Every standard's destinations as the file holds them now, by standard
    // id, each in key order. False when the file exists but cannot be read.
    bool Read(CSpecDestinationMap& destinations);
    // The destinations of one standard (none when it has no section).
    bool Read(std::int32_t projectId, std::vector<SSpecDestination>& destinations);

    // Gives each standard of `sections` exactly the destinations listed for
    // it (a standard with none loses its section), in one read-modify-write
    // under the file's lock; the file is written only when that changes it.
    // False when it could not be written.
    bool Replace(const CSpecDestinationMap& sections);

private:
    // Reads the file again when it changed since the document was read.
    bool Refresh();

    std::mutex m_mutex; // the copy of a standard may run on a worker thread
    std::wstring m_strPath;
    platform::SFileStamp m_stamp;
    bool m_bRead = false;
    CVX2D_IniFile m_ini;
};
