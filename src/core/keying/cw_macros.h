#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "core/util/datetime.h"
#include "core/util/result.h"

// The rules of the CW window: what may be typed, the macro check, the macro
// expansion and the guard before a send. Text here is UTF-8 unless a name says
// ANSI.
namespace orv::keying {

// May a character (ANSI code) be typed into the CW text (`CWText`) or the
// memory editor (`Combo1`, which also takes the paste and undo controls)?
// Letters count upper-cased.
bool isTypedInput(unsigned char ansi, bool memoryEditor);
// Upper-cases and drops every character that could not have been typed,
// control codes included: what pasted text becomes.
std::string filterTyped(std::string_view utf8);

struct Macro {
    const char* name; // five letters, written "<NAME>"
    int textRow;      // its description in the macro list, a row of the language table
};
// In the order of expansion, which decides when a value holds a macro.
extern const std::array<Macro, 10> kMacros;
// "<" + name + ">"
std::string macroTag(int index);

// The result of the macro check: the cleaned text, or the characters to
// select when a macro is malformed (then IText(350) is shown).
struct MacroCheck {
    bool ok = false;
    std::string text;
    int selStart = 0; // in characters
    int selLength = 0;
};
MacroCheck checkMacros(std::string_view utf8);

// What the macros read from the main window.
struct QsoFields {
    std::string ownCall;    // Text11
    std::string call;       // Text3
    std::string ownLocator; // Text13
    std::string locator;    // Text7
    std::string rstSent;    // Text4
    std::string rstNr;      // Text6
    std::string qsoNr;      // Text5
    std::string time;       // Text2, as shown
    bool timeLocked = false;
    DateTime contestDate;
};

// Replaces the macros in table order. A value too short refuses with IText(360)
// and the field to focus ("" for the main window itself). With tests off
// (the preview) every value is taken as it is.
Result<std::string> expandMacros(std::string_view utf8, const QsoFields& f, bool tests = true);

// The text handed to the keyer or the tone file: upper-cased, and every
// character without a Morse code dropped, so that nothing else reaches it.
std::string sendableAnsi(std::string_view utf8);

// The beacon's side of the send guard, as far as it exists.
struct BeaconView {
    bool pauseRunning = false; // Timer10
    bool idle = true;          // caption of BakeEinAus is IText(24)
    bool enabled = true;       // BakeEinAus enabled
};
// A memory or the free text may go out only when nothing else is.
bool maySend(bool sending, bool panelOpen, const BeaconView& beacon);

// The caption of memory button k: "[F" + (k+1) + "]  " + text when FOn is set.
std::string slotCaption(int k, bool fOn, std::string_view fText);

} // namespace orv::keying
