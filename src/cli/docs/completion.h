#pragma once

#include <ostream>

namespace orv::cli {

// The bash completion of orvanta-tool: its commands, and for each command
// the options its usage names, made from the command registry.
void writeBashCompletion(std::ostream& out);

} // namespace orv::cli
