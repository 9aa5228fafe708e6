// Pipe specs: the register of every spec in the datafiles folder's
// "SpecDatafile.ini", and the specs checked for a standard in its "Specs.ini".
//
// The register holds
//   [SpecList]      VX2D_SPEC_<id> = <spec name>         every spec
//   [ClientSpecs]   VX2D_SPEC_<id> = VX2D_CLIENT_<owner>  specs of one client
//   [ProjectSpecs]  VX2D_SPEC_<id> = VX2D_PRJ_<owner>     specs of one standard
// A spec of "SpecList" named in neither scope list is common to all standards.
// A standard's "Specs.ini" holds "SpecList" with VX2D_SPEC_<id> = <name> of
// each checked spec, and "LineSpecs - <application>" with, per line key, the
// comma-separated keys of the specs that line offers in that application.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class CVX2D_IniFile;
class CVX2D_ProjectRegistry;

enum [[nodiscard]] ESpecResult{
    eSpecOk = 0,
    eSpecCantCreateFolder = 1,
    eSpecCantDeleteFolder = 2,
    eSpecCantFind = 3,
    eSpecCantGetLocationFolder = 4,
    eSpecCantOpenDatafile = 5,
    eSpecErrorMovingFolder = 6,
    eSpecInvalidName = 7,
    eSpecInvalidProjectId = 8,
    eSpecInvalidId = 9,
    eSpecAlreadyExists = 10,
    // Outside the message table: a line id or application number that no
    // caller should pass; its text is "Unknown error".
    eSpecInvalidArgument = 11,
    // Outside the message table: the user said No to the question before a
    // move or a delete; nothing was changed and nothing is told.
    eSpecCancelled = 12,
};

enum ESpecScope { eSpecCommon = 0, eSpecClient = 1, eSpecProject = 2 };

struct SSpecInfo {
    std::int32_t id = 0;
    std::wstring name;
    ESpecScope scope = eSpecCommon;
    std::int32_t ownerId = 0; // the client or standard; 0 for a common spec
};

// One entry of a scope list: a spec and the client or standard it belongs to.
struct SSpecOwner {
    std::int32_t specId = 0;
    std::int32_t ownerId = 0;
};

class CVX2D_ProjectSpecs {
public:
    explicit CVX2D_ProjectSpecs(const CVX2D_ProjectRegistry& registry) : m_registry(registry) {}

    // The message of a code; "Unknown error" for anything outside the table.
    static std::wstring GetErrorText(int code);

    // "SpecDatafile.ini" in the datafiles folder; empty when that is unknown.
    std::wstring GetSpecRegisterPath() const;
    // The standard's "Specs.ini"; empty when the standard has no folder.
    std::wstring GetSpecFilePath(std::int32_t projectId) const;

    // Every spec of the register in file order with its scope. A datafiles
    // folder without a register has no specs.
    ESpecResult GetSpecRegister(std::vector<SSpecInfo>& specs) const;
    // The specs of a register document in file order with their scopes.
    static std::vector<SSpecInfo> SpecsOf(const CVX2D_IniFile& specRegister);

    // Checks a spec of the register for the standard under the register's
    // name. Only specs the standard may use are found: common ones, its
    // client's and its own.
    ESpecResult CheckSpec(std::int32_t projectId, std::int32_t specId) const;
    ESpecResult UncheckSpec(std::int32_t projectId, std::int32_t specId) const;

    // The ids of the checked specs in file order (and their names).
    ESpecResult GetCheckedSpecs(std::int32_t projectId, std::vector<std::int32_t>& ids) const;
    ESpecResult GetCheckedSpecs(std::int32_t projectId, std::vector<std::int32_t>& ids,
                                std::vector<std::wstring>& names) const;
    // The name under which a spec is checked in an open "Specs.ini"; empty
    // when it is not checked. The document's current section is kept.
    static std::wstring GetCheckedSpecName(CVX2D_IniFile& specs, std::int32_t specId);

    // Replaces the two scope lists of the register. Every spec must be in
    // the register's "SpecList" and in at most one entry of the two lists.
    ESpecResult WriteSpecRegister(const std::vector<SSpecOwner>& clientSpecs,
                                  const std::vector<SSpecOwner>& projectSpecs) const;

    // Gives a line its spec list for one application: the specs checked for
    // the standard at that moment. A line that has a list keeps it; with no
    // spec checked the list is empty and nothing is written.
    ESpecResult CreateLineSpecList(std::int32_t projectId, std::int32_t lineId,
                                   int application) const;
    // A line's spec list for one application, in stored order.
    ESpecResult GetLineSpecList(std::int32_t projectId, std::int32_t lineId, int application,
                                std::vector<std::int32_t>& specIds) const;

    // "LineSpecs - PID": the section of an application's line spec lists.
    static std::wstring LineSpecsSection(int application);

private:
    bool OpenRegister(CVX2D_IniFile& ini) const;
    ESpecResult ResolveSpecFile(std::int32_t projectId, std::wstring& path) const;
    ESpecResult ResolveLineSpecFile(std::int32_t projectId, std::int32_t lineId, int application,
                                    std::wstring& path) const;

    const CVX2D_ProjectRegistry& m_registry;
};
