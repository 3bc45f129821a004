#pragma once

#include <string>

#include "core/util/datetime.h"

// The edges of the machine that core reaches only through these interfaces.
// The platform layer implements them for real; tests implement them as fakes
// that record what happened.
namespace orv {

class Clock {
public:
    virtual ~Clock() = default;
    // The computer's local date and time.
    virtual DateTime now() const = 0;
};

class Beeper {
public:
    virtual ~Beeper() = default;
    virtual void beep() = 0;
};

enum class Icon { None, Information, Warning, Critical, Question };
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel };
enum class Answer { Ok, Cancel, Yes, No, Retry };

// Questions and messages to the user. Core asks through this port, so a
// confirmation in the middle of a correction is answered by a test as easily
// as by a person.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    // defaultAnswer is the button that Enter presses.
    virtual Answer ask(const std::string& text, Buttons buttons, Icon icon,
                       Answer defaultAnswer) = 0;
    // A question under a title of its own; where titles are not shown the
    // question alone is enough.
    virtual Answer askTitled(const std::string& title, const std::string& text, Buttons buttons,
                             Icon icon, Answer defaultAnswer) {
        (void)title;
        return ask(text, buttons, icon, defaultAnswer);
    }
    virtual void inform(const std::string& text, Icon icon) = 0;
    // A message under a title of its own (the ODX box); where titles are not
    // shown the text alone is enough.
    virtual void informTitled(const std::string& title, const std::string& text, Icon icon) {
        (void)title;
        inform(text, icon);
    }
};

// A system clock for the command-line tool and the program.
class SystemClock final : public Clock {
public:
    DateTime now() const override;
};

class SilentBeeper final : public Beeper {
public:
    void beep() override {}
};

} // namespace orv
