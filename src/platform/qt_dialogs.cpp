#include "platform/qt_dialogs.h"

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>

namespace orv::platform {
namespace {

struct Hook {
    std::deque<Answer> answers;
    std::deque<std::optional<std::string>> inputs;
    std::deque<std::string> recorded;
    std::deque<std::string> titles;
    bool recording = false;
};

Hook& hook() {
    static Hook h;
    return h;
}

QMessageBox::Icon toQt(Icon i) {
    switch (i) {
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Warning:
        return QMessageBox::Warning;
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButton toQt(Answer a) {
    switch (a) {
    case Answer::Ok:
        return QMessageBox::Ok;
    case Answer::Cancel:
        return QMessageBox::Cancel;
    case Answer::Yes:
        return QMessageBox::Yes;
    case Answer::No:
        return QMessageBox::No;
    case Answer::Retry:
        return QMessageBox::Retry;
    }
    return QMessageBox::Ok;
}

} // namespace

void QtDialogs::queueAnswer(Answer a) {
    hook().answers.push_back(a);
}
void QtDialogs::setRecording(bool on) {
    hook().recording = on;
}
std::deque<std::string>& QtDialogs::recorded() {
    return hook().recorded;
}

Answer QtDialogs::ask(const std::string& text, Buttons buttons, Icon icon, Answer defaultAnswer) {
    return askTitled(QApplication::applicationDisplayName().toStdString(), text, buttons, icon,
                     defaultAnswer);
}

Answer QtDialogs::askTitled(const std::string& title, const std::string& text, Buttons buttons,
                            Icon icon, Answer defaultAnswer) {
    if (!hook().answers.empty() || hook().recording) {
        hook().recorded.push_back(text);
        hook().titles.push_back(title);
        if (hook().answers.empty())
            return defaultAnswer;
        const Answer a = hook().answers.front();
        hook().answers.pop_front();
        return a;
    }
    QMessageBox box(toQt(icon), QString::fromStdString(title), QString::fromStdString(text),
                    QMessageBox::NoButton, parent_);
    switch (buttons) {
    case Buttons::Ok:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case Buttons::OkCancel:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        break;
    case Buttons::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    case Buttons::YesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    case Buttons::RetryCancel:
        box.setStandardButtons(QMessageBox::Retry | QMessageBox::Cancel);
        break;
    }
    box.setDefaultButton(toQt(defaultAnswer));
    switch (box.exec()) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    case QMessageBox::Retry:
        return Answer::Retry;
    default:
        return Answer::Ok;
    }
}

void QtDialogs::inform(const std::string& text, Icon icon) {
    informTitled(QApplication::applicationDisplayName().toStdString(), text, icon);
}

void QtDialogs::informTitled(const std::string& title, const std::string& text, Icon icon) {
    if (hook().recording) {
        hook().recorded.push_back(text);
        hook().titles.push_back(title);
        return;
    }
    QMessageBox box(toQt(icon), QString::fromStdString(title), QString::fromStdString(text),
                    QMessageBox::Ok, parent_);
    box.exec();
}

std::deque<std::string>& QtDialogs::recordedTitles() {
    return hook().titles;
}

void QtDialogs::queueInput(std::optional<std::string> answer) {
    hook().inputs.push_back(std::move(answer));
}

std::optional<std::string> QtDialogs::input(QWidget* parent, const std::string& prompt,
                                            const std::string& title, const std::string& proposal,
                                            bool secret) {
    if (!hook().inputs.empty() || hook().recording) {
        hook().recorded.push_back(prompt);
        if (hook().inputs.empty())
            return std::nullopt;
        auto a = hook().inputs.front();
        hook().inputs.pop_front();
        return a;
    }
    bool ok = false;
    const QString text = QInputDialog::getText(
        parent, QString::fromStdString(title), QString::fromStdString(prompt),
        secret ? QLineEdit::Password : QLineEdit::Normal, QString::fromStdString(proposal), &ok);
    if (!ok)
        return std::nullopt;
    return text.toStdString();
}

void QtBeeper::beep() {
    QApplication::beep();
}

} // namespace orv::platform
