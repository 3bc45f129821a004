#include "core/i18n/builtin_texts.h"

namespace orv {

// Rows 950-1099; none taken yet.
std::span<const TextRow> optionsRows() {
    return {};
}

} // namespace orv
