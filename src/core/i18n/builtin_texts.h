#pragma once

#include <utility>
#include <vector>

namespace orv {

// Row number and UTF-8 text of every row of the built-in language table.
const std::vector<std::pair<int, const char*>>& builtinTexts();

} // namespace orv
