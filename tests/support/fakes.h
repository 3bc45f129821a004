#pragma once

#include <deque>
#include <string>
#include <vector>

#include "core/util/ports.h"

namespace orv::test {

class FakeClock final : public Clock {
public:
    explicit FakeClock(DateTime t = DateTime{2026, 5, 2, 14, 30, 0}) : t_(t) {}
    DateTime now() const override { return t_; }
    void set(DateTime t) { t_ = t; }
    void advance(int seconds) { t_ = t_.addSeconds(seconds); }

private:
    DateTime t_;
};

class CountingBeeper final : public Beeper {
public:
    void beep() override { ++beeps; }
    int beeps = 0;
};

// Answers questions from a queue (or with the default answer when empty) and
// records every text it was shown.
class FakeDialogs final : public Dialogs {
public:
    Answer ask(const std::string& text, Buttons, Icon, Answer defaultAnswer) override {
        asked.push_back(text);
        if (answers.empty())
            return defaultAnswer;
        const Answer a = answers.front();
        answers.pop_front();
        return a;
    }
    Answer askTitled(const std::string& title, const std::string& text, Buttons b, Icon i,
                     Answer defaultAnswer) override {
        titles.push_back(title);
        return ask(text, b, i, defaultAnswer);
    }
    void inform(const std::string& text, Icon) override { informed.push_back(text); }

    std::deque<Answer> answers;
    std::vector<std::string> asked;
    std::vector<std::string> titles; // of the questions asked with a title
    std::vector<std::string> informed;
};

} // namespace orv::test
