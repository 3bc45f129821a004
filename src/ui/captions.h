#pragma once

#include <span>

class QObject;

namespace orv {
class Texts;
}

namespace orv::ui {

// One caption of a window: the control's object name and its row of the
// language table.
struct CaptionRow {
    const char* control;
    int text;
};

// The captions `Beschriften` sets on the main window.
std::span<const CaptionRow> mainWindowCaptions();

// Sets the caption of every named object below `root` (menus, actions,
// labels, buttons, frames) from the language table. Rows whose control does
// not exist are passed over, so one table serves both layouts; controls of
// other windows (dialogs that are children of `root`) keep their own.
void applyCaptions(QObject& root, std::span<const CaptionRow> rows, const Texts& texts);

} // namespace orv::ui
