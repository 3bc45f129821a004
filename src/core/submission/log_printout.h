#pragma once

#include "core/submission/evaluation.h"
#include "core/util/page_layout.h"

// The printout of one evaluated band: the log as pages with a header
// (contest, call, locator, band), the evaluation grid's visible columns and
// the page numbers, then a summary sheet with the band's statistic values
// and its countries. The window prints these pages and the tool writes them
// as a PDF.
namespace orv {

class Texts;

print::Document layoutLogPrintout(const Evaluation& ev, const Texts& texts);

} // namespace orv
