#include "ui/remote_binding.h"

#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include "core/i18n/texts.h"
#include "core/settings/settings.h"
#include "platform/remote_server.h"
#include "ui/band_bar.h"
#include "ui/entry_line.h"
#include "ui/main_window.h"

namespace orv::ui {

using remote::Field;

// The entry row of the main window, found by control names inside the row
// and the band bar (other windows reuse names such as `Combo1`).
class RemoteBinding::WindowRow final : public remote::EntryRowPort {
public:
    explicit WindowRow(MainWindow& w) : window_(w) {
        entry_ = w.findChild<EntryLine*>();
        bandBar_ = w.findChild<BandBar*>();
    }

    std::string text(Field f) const override {
        const char* name = controlName(f);
        QWidget* scope =
            f == Field::Text11 || f == Field::Text13 ? static_cast<QWidget*>(bandBar_) : entry_;
        if (!scope)
            return {};
        if (name[0] == 'C') {
            const auto* box = scope->findChild<QComboBox*>(name);
            return box ? box->currentText().toStdString() : std::string();
        }
        const auto* edit = scope->findChild<QLineEdit*>(name);
        return edit ? edit->text().toStdString() : std::string();
    }
    int band() const override { return window_.currentBand(); }
    void selectBand(int index) override { window_.selectBand(index); }
    void setCall(const std::string& call) override {
        QLineEdit* e = entry_->call();
        e->setText(QString::fromStdString(call));
        e->end(false);
        // The field's key-release handler with key 0: the look-ups start as
        // if the call had been typed.
        QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier);
        QCoreApplication::sendEvent(e, &release);
    }
    void setLocator(const std::string& locator) override {
        QLineEdit* e = entry_->locator();
        e->setText(QString::fromStdString(locator));
        e->end(false);
    }

private:
    static const char* controlName(Field f) {
        switch (f) {
        case Field::Text2:
            return "Text2";
        case Field::Text3:
            return "Text3";
        case Field::Text4:
            return "Text4";
        case Field::Text5:
            return "Text5";
        case Field::Text6:
            return "Text6";
        case Field::Text7:
            return "Text7";
        case Field::Text8:
            return "Text8";
        case Field::Text9:
            return "Text9";
        case Field::Text10:
            return "Text10";
        case Field::Text11:
            return "Text11";
        case Field::Text12:
            return "Text12";
        case Field::Text13:
            return "Text13";
        case Field::Combo2:
            return "Combo2";
        case Field::Combo3:
            return "Combo3";
        case Field::Combo6:
            return "Combo6";
        case Field::Combo8:
            return "Combo8";
        }
        return "";
    }

    MainWindow& window_;
    EntryLine* entry_ = nullptr;
    BandBar* bandBar_ = nullptr;
};

// Stands in for the beacon button until the beacon is wired with
// setBeacon(): always off, and a press changes nothing.
class RemoteBinding::IdleBeacon final : public remote::BeaconPort {
public:
    std::string state() const override { return "Bake Ein"; }
    void press() override {}
};

RemoteBinding::RemoteBinding(MainWindow& window, const Settings& settings, const Texts& texts)
    : QObject(&window), window_(window), row_(std::make_unique<WindowRow>(window)),
      idleBeacon_(std::make_unique<IdleBeacon>()),
      link_(std::make_unique<remote::Link>(*row_, *idleBeacon_)),
      publishKeys_(remote::readPublishKeys(settings)) {
    setObjectName("RemoteBinding");
    server_ = new platform::RemoteServer(*link_, this);
    // A command waits while a modal dialog is up: a commit may be asking
    // under it, and no command may run in the middle of one.
    server_->mayRun = [] { return QApplication::activeModalWidget() == nullptr; };
    window_.onFormKeyPress = [this](QKeyEvent* e) { return formKeyPress(e); };
    const QString failure = server_->listen(remote::readServerSettings(settings));
    if (!failure.isEmpty())
        window_.showStatus(QString::fromStdString(texts(10) + " " + texts(278) + ": ") + failure);
}

RemoteBinding::~RemoteBinding() {
    window_.onFormKeyPress = nullptr;
    // The server goes first: it holds the link, which holds the row.
    delete server_;
    server_ = nullptr;
}

void RemoteBinding::setBeacon(remote::BeaconPort& beacon) {
    link_->setBeacon(beacon);
}

bool RemoteBinding::formKeyPress(QKeyEvent* e) {
    const QString t = e->text();
    if (t.isEmpty())
        return false;
    const auto published = remote::publishedText(publishKeys_.keys, t.toUcs4().value(0));
    if (!published)
        return false;
    server_->publish(*published);
    return true;
}

} // namespace orv::ui
