#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "core/util/ports.h"

class QWidget;

namespace orv::platform {

// Message boxes for core's questions. Tests queue the answers they want, so a
// question is answered without a real modal loop.
class QtDialogs final : public Dialogs {
public:
    explicit QtDialogs(QWidget* parent = nullptr) : parent_(parent) {}
    Answer ask(const std::string& text, Buttons buttons, Icon icon, Answer defaultAnswer) override;
    Answer askTitled(const std::string& title, const std::string& text, Buttons buttons, Icon icon,
                     Answer defaultAnswer) override;
    void inform(const std::string& text, Icon icon) override;
    void informTitled(const std::string& title, const std::string& text, Icon icon) override;

    // Test hook: the next questions get these answers, in order, and messages
    // are recorded instead of shown while answers or recording are active.
    static void queueAnswer(Answer a);
    static void setRecording(bool on);
    static std::deque<std::string>& recorded();
    // The titles of the messages recorded, in order.
    static std::deque<std::string>& recordedTitles();

    // An input box: the typed text, or nothing on Cancel. Tests queue the
    // answers (nothing = Cancel); the prompt is recorded like a question.
    // A `secret` box shows no characters (passwords).
    static std::optional<std::string> input(QWidget* parent, const std::string& prompt,
                                            const std::string& title, const std::string& proposal,
                                            bool secret = false);
    static void queueInput(std::optional<std::string> answer);

private:
    QWidget* parent_;
};

class QtBeeper final : public Beeper {
public:
    void beep() override;
};

} // namespace orv::platform
