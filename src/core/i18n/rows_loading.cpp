#include "core/i18n/builtin_texts.h"

namespace orv {

// Rows 1200-1219; none taken yet.
std::span<const TextRow> loadingRows() {
    return {};
}

} // namespace orv
