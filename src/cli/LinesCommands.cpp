// TEMPORARY placeholder: replaced by the real command group.
#include "cli/CliCore.h"

namespace cli {

void AddLinesCommands(CLI::App&, SCliContext&) {}
void AddSpecsCommands(CLI::App&, SCliContext&) {}
void AddDrawingsCommands(CLI::App&, SCliContext&) {}

} // namespace cli
