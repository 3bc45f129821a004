#include "ui/options/cw_page.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <filesystem>

#include "core/keying/cw_macros.h"
#include "core/keying/cw_settings.h"
#include "core/keying/morse_table.h"
#include "core/keying/tone_file.h"
#include "core/options/option_rules.h"
#include "core/options/port_choice.h"
#include "core/util/text.h"

namespace orv::ui {
namespace {

// Line numbers of the settings with their captions: DTR, RTS, TXD (break).
constexpr int kLineRows[] = {217, 218, 234};

} // namespace

CwPage::CwPage(OptionsContext& ctx, QWidget* parent) : OptionsPage(ctx, "Frame2", 952, parent) {
    auto* layout = new QVBoxLayout(this);
    auto* voice = new QGroupBox(ctx.plain(967), this);
    auto* voiceForm = new QFormLayout(voice);
    voiceForm->addRow(ctx.plain(41), portBox("ComboCOM", com_));
    com_.box->setToolTip(ctx.t(42));
    auto* pinRow = new QHBoxLayout;
    pin_ = lineGroup("Option2", 2, voice, pinRow);
    voiceForm->addRow(pinRow);
    loopPause_ = new QLineEdit(voice);
    loopPause_->setObjectName("LoopPause");
    loopPause_->setToolTip(ctx.t(245));
    voiceForm->addRow(ctx.plain(246), loopPause_);
    layout->addWidget(voice);

    auto* cw = new QGroupBox(ctx.plain(294), this);
    auto* cwForm = new QFormLayout(cw);
    interface_ = new QComboBox(cw);
    interface_->setObjectName("Combo9");
    interface_->addItems({ctx.plain(299), ctx.plain(300)});
    cwForm->addRow(ctx.plain(298), interface_);
    cwForm->addRow(ctx.plain(295), portBox("ComboCOMCW", comCw_));
    auto* keyRow = new QHBoxLayout;
    pinCw_ = lineGroup("Option5", 3, cw, keyRow);
    cwForm->addRow(ctx.plain(301), keyRow);
    auto* pttRow = new QHBoxLayout;
    pinCwPtt_ = lineGroup("Option6", 3, cw, pttRow);
    cwForm->addRow(ctx.plain(302), pttRow);
    speed_ = new QComboBox(cw);
    speed_->setObjectName("ComboCW1");
    for (int w = keying::kMinWpm; w <= keying::kMaxWpm; ++w)
        speed_->addItem(QString::number(w), w);
    cwForm->addRow(ctx.plain(297), speed_);
    cwEnd_ = new QLineEdit(cw);
    cwEnd_->setObjectName("Text8");
    cwForm->addRow(ctx.plain(304), cwEnd_);
    layout->addWidget(cw);
    layout->addStretch();
}

QComboBox* CwPage::portBox(const char* name, PortBox& p) {
    p.box = new QComboBox(this);
    p.box->setObjectName(name);
    p.box->setMinimumContentsLength(30);
    connect(p.box, &QComboBox::activated, this, [&p] { p.keepStored = false; });
    return p.box;
}

QButtonGroup* CwPage::lineGroup(const char* name, int lines, QWidget* parent, QBoxLayout* into) {
    auto* g = new QButtonGroup(parent);
    g->setObjectName(name);
    for (int i = 0; i < lines; ++i) {
        auto* b = new QRadioButton(ctx_.plain(kLineRows[i]), parent);
        b->setObjectName(QString("%1(%2)").arg(name).arg(i));
        g->addButton(b, i);
        into->addWidget(b);
    }
    into->addStretch();
    return g;
}

void CwPage::fillPort(PortBox& p, const Settings& s, const std::vector<PortOffer>& offers) {
    p.box->clear();
    p.box->addItem(ctx_.plain(968), QString());
    for (const PortOffer& o : offers)
        p.box->addItem(QString::fromStdString(o.description + "  " + o.path),
                       QString::fromStdString(o.path));
    const std::string device =
        p.stored > 0 ? keying::comDevice(s, static_cast<int>(p.stored)) : std::string();
    const int at = device.empty() ? 0 : p.box->findData(QString::fromStdString(device));
    p.box->setCurrentIndex(at < 0 ? 0 : at);
    p.keepStored = at < 0;
}

void CwPage::load(const Settings& s) {
    // The ports are tried at each opening of the dialog.
    const std::vector<PortOffer> offers = ctx_.ports();
    com_.stored = s.get(keys::COM);
    comCw_.stored = s.get(keys::COMCW);
    fillPort(com_, s, offers);
    fillPort(comCw_, s, offers);
    auto check = [](QButtonGroup* g, long long line) {
        QAbstractButton* b = g->button(static_cast<int>(line));
        (b ? b : g->button(0))->setChecked(true);
    };
    check(pin_, s.get(keys::PIN));
    check(pinCw_, s.get(keys::PinCW));
    check(pinCwPtt_, s.get(keys::PinCWPtt));
    // An interface never chosen (no key) stays unchosen until the user picks one.
    const std::string iface = s.file().getStr(keys::CWInterface.section, keys::CWInterface.key);
    const long long kind = s.get(keys::CWInterface);
    interface_->setCurrentIndex(
        text::trim(iface).empty() || kind < 0 || kind > 1 ? -1 : static_cast<int>(kind));
    savedWpm_ = static_cast<int>(s.get(keys::CWWPM));
    speed_->setCurrentIndex(speed_->findData(savedWpm_));
    cwEnd_->setText(QString::fromStdString(s.get(keys::CWEND)));
    loopPause_->setText(QString::number(s.get(keys::LoopPause)));
}

int CwPage::wpm() const {
    return speed_->currentIndex() < 0 ? 0 : speed_->currentData().toInt();
}

Status CwPage::validate() {
    bool ok = false;
    const long long pause = loopPause_->text().trimmed().toLongLong(&ok);
    if (const Status s = options::checkLoopPause(ok ? pause : 0); !s)
        return s;
    if (const Status s = options::checkWpm(wpm()); !s)
        return s;
    if (interface_->currentIndex() < 0)
        return refuse(303, "Combo9");
    return okStatus();
}

long long CwPage::portValue(PortBox& p, Settings& s) const {
    if (p.keepStored)
        return p.stored;
    const std::string device = p.box->currentData().toString().toStdString();
    if (device.empty())
        return 0;
    return options::comNumberFor(s, device, [](const std::string& d) {
        std::error_code ec;
        return std::filesystem::exists(d, ec);
    });
}

void CwPage::save(Settings& s) {
    s.set(keys::COM, portValue(com_, s));
    s.set(keys::PIN, pin_->checkedId());
    s.set(keys::COMCW, portValue(comCw_, s));
    s.set(keys::PinCW, pinCw_->checkedId());
    s.set(keys::PinCWPtt, pinCwPtt_->checkedId());
    s.set(keys::CWInterface, interface_->currentIndex());
    s.set(keys::CWWPM, wpm());
    savedCwEnd_ = options::cwEndText(cwEnd_->text().toStdString());
    s.set(keys::CWEND, savedCwEnd_);
    cwEnd_->setText(QString::fromStdString(savedCwEnd_));
    s.set(keys::LoopPause, loopPause_->text().trimmed().toLongLong());
}

void CwPage::saved() {
    const std::filesystem::path folder = ctx_.paths.cwAudioPath();
    std::filesystem::create_directories(folder);
    const std::filesystem::path file = folder / "CWEnd.wav";
    const std::string ansi = keying::sendableAnsi(savedCwEnd_);
    if (ansi.empty()) {
        std::error_code ec;
        std::filesystem::remove(file, ec);
        return;
    }
    keying::BuildToneFile(wpm(), file, ansi, 1, 0);
}

} // namespace orv::ui
