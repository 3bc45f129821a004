#include "core/i18n/builtin_texts.h"

namespace orv {

// Rows 501-899; none taken yet.
std::span<const TextRow> generalRows() {
    return {};
}

} // namespace orv
