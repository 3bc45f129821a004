#include "ui/cw_binding.h"

#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>

#include "core/settings/settings.h"
#include "core/util/ports.h"
#include "ui/main_window.h"

namespace orv::ui {
namespace {

// `FTaste`: 0 no modifier, 1 Ctrl, 2 Alt.
Qt::KeyboardModifiers cwModifier(long long fTaste) {
    switch (fTaste) {
    case 1:
        return Qt::ControlModifier;
    case 2:
        return Qt::AltModifier;
    default:
        return Qt::NoModifier;
    }
}

std::string fieldText(const MainWindow& w, const char* name) {
    const auto* e = w.findChild<QLineEdit*>(name);
    return e ? e->text().toStdString() : std::string();
}

} // namespace

CwBinding::CwBinding(MainWindow& window, CwServices services, Clock& clock)
    : QObject(&window), main_(window), services_(std::move(services)), clock_(clock) {
    main_.onCwKey = [this](QKeyEvent* e) { return key(e); };
    if (auto* entry = main_.findChild<QAction*>("MnCWFensterAN")) {
        entry->setEnabled(true);
        connect(entry, &QAction::triggered, this, &CwBinding::toggle);
    }
}

CwBinding::~CwBinding() {
    main_.onCwKey = nullptr;
}

CwWindow* CwBinding::cwWindow() const {
    return cw_ && cw_->isVisible() ? cw_.data() : nullptr;
}

void CwBinding::toggle() {
    if (cwWindow()) {
        cw_->close();
        return;
    }
    if (!cw_) {
        CwWindowHost host;
        host.qsoFields = [this] { return fields(); };
        host.showStatus = [this](const QString& t) { main_.showStatus(t); };
        host.focusMain = [this](const std::string& control) {
            main_.activateWindow();
            if (!control.empty())
                main_.focusNamed(control);
        };
        host.beaconState = [this] { return beaconState(); };
        cw_ = new CwWindow(services_, host, &main_);
    }
    cw_->show();
}

bool CwBinding::key(QKeyEvent* e) {
    const auto mods = e->modifiers() & ~Qt::KeypadModifier;
    if (e->key() == Qt::Key_F12 && mods == Qt::NoModifier) {
        toggle();
        return true;
    }
    if (!cwWindow() || e->key() > Qt::Key_F11 ||
        mods != cwModifier(services_.settings.get(keys::FTaste)))
        return false;
    cw_->pressMemory(e->key() - Qt::Key_F1);
    return true;
}

keying::QsoFields CwBinding::fields() const {
    const EntryRow row = main_.entryRow();
    keying::QsoFields f;
    f.ownCall = fieldText(main_, "Text11");
    f.ownLocator = fieldText(main_, "Text13");
    f.call = row.call;
    f.locator = row.locator;
    f.rstSent = row.rst;
    f.rstNr = row.rstNr;
    f.qsoNr = fieldText(main_, "Text5");
    f.time = row.time;
    f.timeLocked = !main_.timeEditable();
    f.contestDate =
        clock_.now().addHours(static_cast<int>(services_.settings.get(keys::ZeitPlusMinus)));
    return f;
}

} // namespace orv::ui
