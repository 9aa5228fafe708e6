// TEMPORARY placeholder: replaced by the real command group.
#include "cli/CliCore.h"

namespace cli {

void AddBordersCommands(CLI::App&, SCliContext&) {}
void AddLayersCommands(CLI::App&, SCliContext&) {}

} // namespace cli
