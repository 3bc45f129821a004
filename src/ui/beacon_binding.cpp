#include "ui/beacon_binding.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

#include "core/i18n/texts.h"
#include "core/keying/beacon_inputs.h"
#include "core/settings/settings.h"
#include "platform/qt_dialogs.h"
#include "ui/beacon_row.h"
#include "ui/cw_binding.h"
#include "ui/main_window.h"

namespace orv::ui {
namespace {

// Fixed tips of the beacon's controls that have no row in the language table.
constexpr std::pair<const char*, int> kFixedTips[] = {
    {"Combo10", 306},
};

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

void paint(QWidget* w, const QPalette& normal, bool red) {
    QPalette p = normal;
    if (red) {
        p.setColor(QPalette::Button, QColor(255, 0, 0));
        p.setColor(QPalette::Window, QColor(255, 0, 0));
    }
    w->setPalette(p);
}

} // namespace

BeaconBinding::BeaconBinding(MainWindow& window, BeaconServices services, CwBinding* cw)
    : QObject(&window), main_(window), s_(std::move(services)), cw_(cw) {
    row_ = main_.findChild<BeaconRow*>();
    mode_ = main_.findChild<QComboBox*>("Combo3");
    operator_ = main_.findChild<QComboBox*>("Combo8");
    maxBake_ = main_.findChild<QComboBox*>("Combo10");
    normal_ = row_->button()->palette();

    const Texts& t = s_.texts;
    row_->button()->setText(q(t(24)));
    row_->option(0)->setText(q(t(244)));
    row_->option(1)->setText(q(t(246)));
    row_->loopLabel()->setText(q(t(310)));
    row_->option(s_.settings.get(keys::BakeArt) == 0 ? 0 : 1)->setChecked(true);
    row_->loopBox()->setChecked(s_.settings.get(keys::CWLoopEinAus));
    for (const auto& [control, tip] : kFixedTips)
        if (auto* w = main_.findChild<QWidget*>(control))
            w->setToolTip(q(t(tip)));

    keying::BeaconHost host;
    host.inputs = [this] { return inputs(); };
    host.post = [this](std::function<void()> job) {
        QMetaObject::invokeMethod(this, std::move(job), Qt::QueuedConnection);
    };
    host.focus = [this] { focusCall(); };
    host.changed = [this] {
        render();
        syncTimers();
    };
    machine_ = std::make_unique<keying::BeaconMachine>(s_.port, s_.keyer, s_.player, s_.dialogs,
                                                       s_.texts, std::move(host));
    for (int i = 0; i < keying::kBeaconTimers; ++i) {
        auto* timer = new QTimer(this);
        const auto id = static_cast<keying::BeaconTimer>(i);
        connect(timer, &QTimer::timeout, this, [this, id] { machine_->fire(id); });
        timers_[static_cast<std::size_t>(i)] = timer;
    }

    row_->button()->installEventFilter(this);
    row_->timeLabel()->installEventFilter(this);
    connect(row_->button(), &QPushButton::clicked, this, [this] { machine_->click(); });
    for (int i = 0; i < 2; ++i)
        connect(row_->option(i), &QRadioButton::toggled, this, [this, i](bool on) {
            if (on)
                s_.settings.set(keys::BakeArt, i);
        });
    connect(row_->loopBox(), &QCheckBox::toggled, this,
            [this](bool on) { s_.settings.set(keys::CWLoopEinAus, on); });
    if (mode_)
        connect(mode_, &QComboBox::currentTextChanged, this, &BeaconBinding::modeChanged);
    // The keys press the button as the mouse does, and not while it is disabled.
    main_.onBeaconKey = [this] {
        if (row_->button()->isEnabled())
            machine_->press();
    };
    connect(&main_, &MainWindow::closing, this, [this] { machine_->shutdown(); });
    if (cw_)
        cw_->beaconState = [this] { return machine_->view(); };
    askPause = [this](const std::string& prompt) {
        return platform::QtDialogs::input(&main_, prompt, "", "");
    };
    modeChanged();
    render();
}

BeaconBinding::~BeaconBinding() {
    main_.onBeaconKey = nullptr;
    if (cw_)
        cw_->beaconState = [] { return keying::BeaconView{}; };
    machine_->shutdown();
}

keying::BeaconInputs BeaconBinding::inputs() const {
    const std::string op = operator_ ? operator_->currentText().toStdString() : std::string();
    keying::BeaconInputs in =
        keying::beaconSettings(s_.settings, op, s_.paths.audioPath(), s_.paths.cwAudioPath());
    in.mode = mode_ ? mode_->currentText().toStdString() : std::string();
    in.bakeArt = row_->option(0)->isChecked() ? 0 : 1;
    in.cwLoop = row_->loopBox()->isChecked();
    const QString max = maxBake_ ? maxBake_->currentText().trimmed() : QString();
    if (!max.isEmpty())
        in.maxRounds = max.toInt();
    in.cwWindowSending = cw_ && cw_->cwWindow() && cw_->cwWindow()->sending();
    return in;
}

void BeaconBinding::render() {
    const keying::BeaconShown& v = machine_->shown();
    QPushButton* b = row_->button();
    b->setText(q(keying::captionText(v.caption, s_.texts)));
    b->setEnabled(v.buttonEnabled);
    paint(b, normal_, v.buttonRed);
    row_->countLabel()->setText(QString::number(v.count));
    row_->timeLabel()->setText(q(v.label33));
    row_->optionFrame()->setEnabled(v.picture8Enabled);
    if (mode_)
        mode_->setEnabled(v.combo3Enabled);
    for (int i = 0; i < 2; ++i) {
        row_->lamp(i)->setVisible(v.picture14Visible);
        paint(row_->lamp(i), normal_, v.picture14Red);
    }
}

void BeaconBinding::syncTimers() {
    for (int i = 0; i < keying::kBeaconTimers; ++i) {
        const auto id = static_cast<keying::BeaconTimer>(i);
        QTimer* timer = timers_[static_cast<std::size_t>(i)];
        unsigned& seen = seen_[static_cast<std::size_t>(i)];
        if (!machine_->timerOn(id)) {
            timer->stop();
        } else if (machine_->generation(id) != seen || !timer->isActive()) {
            seen = machine_->generation(id);
            timer->start(machine_->interval(id));
        }
    }
}

void BeaconBinding::modeChanged() {
    // The CW loop belongs to the CW mode only.
    const bool cw =
        mode_ && mode_->currentText().trimmed().toStdString() == s_.settings.get(keys::Mode3St);
    row_->loopBox()->setVisible(cw);
    row_->loopLabel()->setVisible(cw);
}

void BeaconBinding::focusCall() {
    if (!bakeFocus_)
        return;
    if (auto* call = main_.findChild<QLineEdit*>("Text3"))
        call->setFocus();
}

void BeaconBinding::promptPause() {
    const keying::BeaconInputs in = inputs();
    const bool cw = in.route() != keying::BeaconRoute::Voice;
    const std::string prompt = s_.texts(cw ? 311 : 245);
    for (;;) {
        const auto answer = askPause(prompt);
        if (!answer)
            return;
        const auto seconds = keying::parsePauseSeconds(*answer);
        if (!seconds) {
            if (s_.dialogs.ask(s_.texts(225), Buttons::RetryCancel, Icon::Warning, Answer::Retry) ==
                Answer::Retry)
                continue;
            return;
        }
        if (!*seconds)
            return;
        s_.settings.set(cw ? keys::CWLoopPause : keys::LoopPause, **seconds);
        return;
    }
}

bool BeaconBinding::eventFilter(QObject* watched, QEvent* event) {
    if (watched == row_->button()) {
        if (event->type() == QEvent::MouseButtonPress && row_->button()->isEnabled())
            machine_->mouseDown();
        else if (event->type() == QEvent::FocusIn)
            bakeFocus_ = true;
        else if (event->type() == QEvent::FocusOut)
            bakeFocus_ = false;
    } else if (watched == row_->timeLabel() && event->type() == QEvent::MouseButtonDblClick) {
        promptPause();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace orv::ui
