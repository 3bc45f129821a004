#pragma once

#include <span>

class QObject;
class QWidget;

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

// What of a control a row captions.
enum class CaptionPart {
    Text,        // the text of a label, button, action, or the title of a menu or group box
    PlainText,   // the same without the "&" of a shortcut
    ToolTip,     // the tool tip of a widget
    WindowTitle, // the title of a window, without "&"
};

// Captions a control from a row of the table and keeps the row with it, so
// that recaption() captions it anew when the language changes.
void captionFromRow(QObject& control, int row, const Texts& texts,
                    CaptionPart part = CaptionPart::Text);

// A new label, button or check box captioned from a row, as captionFromRow.
template <class Widget> Widget* captioned(int row, const Texts& texts, QWidget* parent) {
    auto* w = new Widget(parent);
    captionFromRow(*w, row, texts);
    return w;
}

// A language chosen from the menu: every control below each open window that
// keeps a row gets its caption anew, and every widget is sent
// QEvent::LanguageChange for the captions it composes itself.
void recaptionOpenWindows(const Texts& texts);

} // namespace orv::ui
