#include "core/i18n/builtin_texts.h"

namespace orv {

// Rows 1200-1219.
std::span<const TextRow> loadingRows() {
    static const TextRow rows[] = {
        // The found counter while the call database is read into memory.
        {1200, "Liste wird geladen ..."},
    };
    return rows;
}

} // namespace orv
