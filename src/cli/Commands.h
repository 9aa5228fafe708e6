// The verbs of standards-desk-cli over the core. Each returns the process's
// exit code: 0 done, 1 the operation failed (its message is on standard
// error), 2 bad usage.
#pragma once

#include "cli/Output.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

struct SCliOptions {
    std::wstring datafiles; // --datafiles, empty: the installation value
    bool json = false;
    bool yes = false;
};

// A failed operation: the message the desktop program would show.
struct CCliFailure : std::runtime_error {
    CCliFailure(std::wstring text, int exitCode = 1);
    std::wstring message;
    int code;
};

namespace cli {

COutput DatafileDump(const std::wstring& file);
COutput DatafileGet(const std::wstring& file, const std::wstring& section, const std::wstring& key,
                    const std::wstring& def);
void DatafileSet(const std::wstring& file, const std::wstring& section, const std::wstring& key,
                 const std::wstring& value);
void DatafileDeleteKey(const std::wstring& file, const std::wstring& section, const std::wstring& key);
void DatafileDeleteSection(const std::wstring& file, const std::wstring& section);

COutput ClientList(const SCliOptions& options);
COutput ClientCreate(const SCliOptions& options);
void ClientRename(const SCliOptions& options, std::int32_t id, const std::wstring& name);
void ClientDelete(const SCliOptions& options, std::int32_t id);

COutput StandardList(const SCliOptions& options, bool withDeleted);
COutput StandardDefaultName(const SCliOptions& options);
COutput StandardCreate(const SCliOptions& options, const std::wstring& name, const std::string& units,
                       std::int32_t clientId, bool oldFormat);
COutput StandardCopy(const SCliOptions& options, std::int32_t id);
void StandardRename(const SCliOptions& options, std::int32_t id, const std::wstring& name);
void StandardDelete(const SCliOptions& options, std::int32_t id);
void StandardRecover(const SCliOptions& options, std::int32_t id);
void StandardPurge(const SCliOptions& options, std::int32_t id);
void StandardMove(const SCliOptions& options, std::int32_t id, std::int32_t clientId);
COutput StandardFolder(const SCliOptions& options, std::int32_t id);

void RegistryCheck(const SCliOptions& options);

COutput GeneralShow(const SCliOptions& options, std::int32_t id);
void GeneralSet(const SCliOptions& options, std::int32_t id, const std::string& field,
                const std::wstring& value);
// The field names of `general show` and `general set`.
std::string GeneralFieldNames();

} // namespace cli
