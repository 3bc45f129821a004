#pragma once

#include <functional>

#include "core/util/page_layout.h"

class QPrinter;
class QPrintPreviewDialog;
class QWidget;

namespace orv::ui {

// The system's print dialog and print preview for a printout. The program
// shows the Qt dialogs; tests put in functions that set up the printer or
// look at the preview themselves.
struct PrintHooks {
    // Shows the print dialog; true when the user chose to print.
    static std::function<bool(QPrinter&, QWidget*)> printDialog;
    // Shows the preview modally.
    static std::function<void(QPrintPreviewDialog&)> preview;
    static void reset();
};

// Paints the pages onto a printer, one sheet each, in the layout's places.
void paintDocument(QPrinter& printer, const print::Document& doc);

// The print dialog, then the pages onto the chosen printer. False when the
// user cancelled.
bool printDocument(const print::Document& doc, QWidget* parent);
// The preview of the pages, from which they can also be printed.
void previewDocument(const print::Document& doc, QWidget* parent);

} // namespace orv::ui
