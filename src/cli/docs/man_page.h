#pragma once

#include <ostream>

namespace orv::cli {

// The manual page orvanta-tool(1), made from the command registry and the
// tool's help texts.
void writeManPage(std::ostream& out);

} // namespace orv::cli
