// TEMPORARY placeholder: replaced by the real command group.
#include "cli/CliCore.h"

namespace cli {

void AddSettingsCommands(CLI::App&, SCliContext&) {}

} // namespace cli
