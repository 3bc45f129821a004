#pragma once

#include <string>

#include "core/util/page_layout.h"

namespace orv::print {

// A PDF 1.4 file of the document: Courier and Courier-Bold of the standard
// fonts in the Windows-1252 encoding (characters outside it become "?"),
// no embedded font, so the file is small and every viewer and text
// extractor reads it.
std::string writePdf(const Document& doc);

} // namespace orv::print
