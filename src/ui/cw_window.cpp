#include "ui/cw_window.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/keying/audio.h"
#include "core/keying/key_port.h"
#include "core/keying/morse_table.h"
#include "core/keying/tone_file.h"
#include "core/settings/settings.h"
#include "core/util/text.h"
#include "ui/captions.h"
#include "ui/cw_input.h"
#include "ui/cw_memory_panel.h"
#include "ui/widget_helpers.h"

namespace orv::ui {
namespace {

// Captions without a row of the language table.
const char* literal(const char* control) {
    static const std::pair<const char*, const char*> table[] = {
        {"Command2", "..."},    {"Command7", ">>"},  {"CommandRauf", "▲"},
        {"CommandRunter", "▼"}, {"CommandAUS", "×"},
    };
    for (const auto& [name, text] : table)
        if (std::string_view(name) == control)
            return text;
    return "";
}

} // namespace

CwWindow::CwWindow(CwServices services, CwWindowHost host, QWidget* parent)
    : QWidget(parent, Qt::Tool), s_(std::move(services)), host_(std::move(host)) {
    setObjectName("Form15");
    captionFromRow(*this, 351, s_.texts, CaptionPart::WindowTitle);
    buildUi();
    loadMemories();
}

CwWindow::~CwWindow() {
    // The keyer reports to this window: it must have ended before the window goes.
    if (keyerStarted_) {
        s_.keyer.requestStop();
        s_.keyer.wait();
    }
    if (sending_)
        endSend();
}

void CwWindow::buildUi() {
    auto* outer = new QVBoxLayout(this);
    auto* strip = new QWidget(this);
    strip->setObjectName("PictureOBEN");
    auto* stripLayout = new QHBoxLayout(strip);
    stripLayout->setContentsMargins(0, 0, 0, 0);
    auto* title = new QLabel(strip);
    title->setObjectName("Label1");
    captionFromRow(*title, 314, s_.texts);
    stripLayout->addWidget(title);
    stripLayout->addStretch();
    const std::pair<const char*, int> stripButtons[] = {
        {"CommandRauf", 312}, {"CommandRunter", 313}, {"CommandAUS", 0}};
    for (const auto& [name, tip] : stripButtons) {
        auto* b = new QPushButton(literal(name), strip);
        b->setObjectName(name);
        b->setMaximumWidth(32);
        if (tip)
            captionFromRow(*b, tip, s_.texts, CaptionPart::ToolTip);
        stripLayout->addWidget(b);
    }
    outer->addWidget(strip);

    body_ = new QWidget(this);
    auto* bodyLayout = new QVBoxLayout(body_);
    bodyLayout->setContentsMargins(0, 0, 0, 0);
    keysFrame_ = new QWidget(body_);
    keysFrame_->setObjectName("Frame1");
    auto* keys = new QGridLayout(keysFrame_);
    for (int k = 0; k < 11; ++k) {
        auto* b = new QPushButton(keysFrame_);
        b->setObjectName(QString("Command1(%1)").arg(k));
        connect(b, &QPushButton::clicked, this, [this, k] { sendMemory(k); });
        auto* settingsButton = new QPushButton(literal("Command2"), keysFrame_);
        settingsButton->setObjectName(QString("Command2(%1)").arg(k));
        settingsButton->setMaximumWidth(30);
        connect(settingsButton, &QPushButton::clicked, this, [this, k] { openPanel(k); });
        keys->addWidget(b, k, 0);
        keys->addWidget(settingsButton, k, 1);
        memoryButtons_[static_cast<std::size_t>(k)] = b;
    }
    stop_ = new QPushButton(q(s_.texts(353)), body_);
    stop_->setObjectName("Command6");
    stop_->setMinimumHeight(60);
    stop_->hide();
    stopColour_ = stop_->palette().color(QPalette::Button);
    connect(stop_, &QPushButton::clicked, this, &CwWindow::stop);
    bodyLayout->addWidget(stop_);
    bodyLayout->addWidget(keysFrame_);

    panel_ = new CwMemoryPanel(s_.texts, s_.settings, s_.dialogs, body_);
    panel_->hide();
    panel_->onClosed = [this] { closePanel(); };
    panel_->onSaved = [this](int k) {
        memories_[static_cast<std::size_t>(k)] = s_.settings.get(keying::CWTextKey(k));
        updateCaption(k);
    };
    panel_->onPreview = [this](const QString& t) { preview(t); };
    bodyLayout->addWidget(panel_);

    freeTextStrip_ = new QWidget(body_);
    freeTextStrip_->setObjectName("Picture1");
    auto* freeLayout = new QHBoxLayout(freeTextStrip_);
    freeLayout->setContentsMargins(0, 0, 0, 0);
    freeText_ = new CwInput("CWText", false, s_.texts, freeTextStrip_);
    auto* send = new QPushButton(literal("Command7"), freeTextStrip_);
    send->setObjectName("Command7");
    connect(send, &QPushButton::clicked, this, &CwWindow::sendFreeText);
    connect(freeText_, &QLineEdit::returnPressed, this, &CwWindow::sendFreeText);
    freeLayout->addWidget(freeText_);
    freeLayout->addWidget(send);
    bodyLayout->addWidget(freeTextStrip_);
    outer->addWidget(body_);

    connect(findChild<QPushButton*>("CommandRauf"), &QPushButton::clicked, this, [this] {
        body_->hide();
        adjustSize();
    });
    connect(findChild<QPushButton*>("CommandRunter"), &QPushButton::clicked, this, [this] {
        body_->show();
        adjustSize();
    });
    connect(findChild<QPushButton*>("CommandAUS"), &QPushButton::clicked, this, &QWidget::close);

    flash_ = new QTimer(this);
    flash_->setObjectName("Timer2");
    flash_->setInterval(500);
    connect(flash_, &QTimer::timeout, this, &CwWindow::tick);
}

void CwWindow::changeEvent(QEvent* e) {
    // The memory captions and the stop button compose their texts.
    if (e->type() == QEvent::LanguageChange) {
        for (int k = 0; k < 11; ++k)
            updateCaption(k);
        if (!sending_)
            stop_->setText(q(s_.texts(353)));
    }
    QWidget::changeEvent(e);
}

void CwWindow::loadMemories() {
    for (int k = 0; k < 11; ++k) {
        memories_[static_cast<std::size_t>(k)] = s_.settings.get(keying::CWTextKey(k));
        updateCaption(k);
    }
}

void CwWindow::updateCaption(int k) {
    std::string caption = s_.settings.get(keys::FText(k));
    if (caption.empty())
        caption = s_.texts(309) + " " + std::to_string(k + 1);
    memoryButtons_[static_cast<std::size_t>(k)]->setText(
        q(keying::slotCaption(k, s_.settings.get(keys::FOn(k)) != 0, caption)));
}

void CwWindow::showEvent(QShowEvent* e) {
    const auto left = s_.settings.get(keys::Links);
    const auto top = s_.settings.get(keys::Oben);
    if (left > 0 || top > 0)
        move(static_cast<int>(left), static_cast<int>(top));
    QWidget::showEvent(e);
}

void CwWindow::closeEvent(QCloseEvent* e) {
    if (sending_)
        stop();
    s_.settings.set(keys::Links, pos().x());
    s_.settings.set(keys::Oben, pos().y());
    QWidget::closeEvent(e);
}

void CwWindow::keyPressEvent(QKeyEvent* e) {
    const int key = e->key();
    if (e->modifiers() == Qt::NoModifier && key >= Qt::Key_F1 && key <= Qt::Key_F11) {
        pressMemory(key - Qt::Key_F1);
        return;
    }
    if (key == Qt::Key_F12) {
        close();
        return;
    }
    if (key == Qt::Key_Escape) {
        if (panel_->isVisibleTo(this))
            closePanel();
        else
            close();
        return;
    }
    QWidget::keyPressEvent(e);
}

void CwWindow::pressMemory(int k) {
    if (k >= 0 && k < 11)
        memoryButtons_[static_cast<std::size_t>(k)]->click();
}

void CwWindow::openPanel(int k) {
    keysFrame_->hide();
    freeTextStrip_->setEnabled(false);
    panel_->openSlot(k);
}

void CwWindow::closePanel() {
    panel_->hide();
    keysFrame_->show();
    freeTextStrip_->setEnabled(true);
    host_.focusMain("");
}

bool CwWindow::mayStart() const {
    return keying::maySend(sending_, panel_->isVisibleTo(this), host_.beaconState());
}

void CwWindow::sendMemory(int k) {
    if (!mayStart())
        return;
    expandAndSend(memories_[static_cast<std::size_t>(k)]);
}

void CwWindow::sendFreeText() {
    if (!mayStart() || text::trim(freeText_->text().toStdString()).empty())
        return;
    const auto check = keying::checkMacros(freeText_->text().toStdString());
    if (!check.ok) {
        showMacroError(s_.dialogs, s_.texts, freeText_, check.selStart, check.selLength);
        return;
    }
    freeText_->setText(q(check.text));
    if (check.text.empty())
        return;
    if (expandAndSend(check.text))
        freeText_->clear();
}

bool CwWindow::expandAndSend(const std::string& text) {
    const auto expanded = keying::expandMacros(text, host_.qsoFields());
    if (!expanded) {
        host_.showStatus(q(s_.texts(360)));
        host_.focusMain(expanded.failure().field);
        return false;
    }
    const std::string ansi = keying::sendableAnsi(*expanded);
    if (text::trim(ansi).empty()) {
        s_.dialogs.inform(s_.texts(308), Icon::Information);
        host_.focusMain("");
        return false;
    }
    host_.focusMain("");
    const keying::CwSetup setup = keying::readCwSetup(s_.settings);
    if (!keying::isValidWpm(setup.wpm)) {
        s_.dialogs.inform(s_.texts(297) + std::to_string(setup.wpm), Icon::Critical);
        return false;
    }
    return setup.cwInterface == 1 ? sendSound(ansi, setup) : sendKeyed(ansi, setup);
}

bool CwWindow::sendKeyed(const std::string& ansi, const keying::CwSetup& setup) {
    const auto opened = s_.port.OpenAndKeyPort(setup.comCw, setup.pinCwPtt);
    if (!opened) {
        s_.dialogs.inform(s_.texts(25) + "\n" + opened.failure().detail, Icon::Critical);
        host_.focusMain("");
        return false;
    }
    beginSend(false);
    const int com = setup.comCw;
    keying::Transmission t{ansi, static_cast<int>(setup.wpm), 1, keying::keyLinesFor(setup.pinCw)};
    keyerStarted_ = s_.keyer.start(t, [this, com](keying::SendOutcome o) {
        QMetaObject::invokeMethod(
            this, [this, o, com] { keyerEnded(o, com); }, Qt::QueuedConnection);
    });
    if (!keyerStarted_) { // the beacon holds the keyer
        endSend();
        return false;
    }
    return true;
}

bool CwWindow::sendSound(const std::string& ansi, const keying::CwSetup& setup) {
    const auto file = s_.paths.cwAudioPath() / "FKey.wav";
    try {
        std::filesystem::create_directories(s_.paths.cwAudioPath());
        keying::BuildToneFile(static_cast<int>(setup.wpm), file, ansi, 1, 0);
    } catch (const std::exception& e) {
        keying::stopPlayer(s_.player);
        s_.port.ReleasePort();
        s_.dialogs.inform(s_.texts(10) + "\n" + e.what(), Icon::Critical);
        host_.focusMain("");
        return false;
    }
    const auto opened = s_.port.OpenAndKeyPort(setup.comCw, setup.pinCwPtt);
    if (!opened) {
        s_.dialogs.inform(s_.texts(25) + "\n" + opened.failure().detail, Icon::Critical);
        host_.focusMain("");
        return false;
    }
    beginSend(true);
    length_ = keying::playFile(s_.player, file);
    return true;
}

void CwWindow::beginSend(bool sound) {
    sound_ = sound;
    sending_ = true;
    stopRequested_ = false;
    keysFrame_->setEnabled(false);
    stop_->setText(q(s_.texts(353)));
    stop_->show();
    flashOn_ = false;
    flash_->start();
}

void CwWindow::endSend() {
    flash_->stop();
    s_.port.ReleasePort();
    if (sound_)
        keying::stopPlayer(s_.player);
    stop_->hide();
    stop_->setPalette(QPalette());
    keysFrame_->setEnabled(true);
    sending_ = false;
    stopRequested_ = true;
}

void CwWindow::stop() {
    if (!sending_)
        return;
    s_.port.ReleasePort(); // PTT drops now; the keyer notices the stop
    s_.keyer.requestStop();
    endSend();
    host_.focusMain("");
}

void CwWindow::keyerEnded(keying::SendOutcome outcome, int com) {
    if (sending_ && !sound_)
        endSend();
    if (outcome == keying::SendOutcome::LineFailed)
        s_.dialogs.inform(s_.texts(25) + "\nCOM " + std::to_string(com), Icon::Critical);
}

void CwWindow::tick() {
    flashOn_ = !flashOn_;
    QPalette p = stop_->palette();
    p.setColor(QPalette::Button, flashOn_ ? QColor(255, 0, 0) : stopColour_);
    stop_->setPalette(p);
    if (!sound_)
        return;
    const long position = s_.player.position();
    stop_->setText(
        q(keying::FormatMillis(std::max(0L, length_ - position)) + "\n" + s_.texts(353)));
    if (keying::playerAtEnd(s_.player, length_) || stopRequested_)
        endSend();
}

void CwWindow::preview(const QString& text) {
    const auto expanded = keying::expandMacros(text.toStdString(), host_.qsoFields(), false);
    s_.dialogs.informTitled(s_.texts(352), expanded ? *expanded : std::string(), Icon::Information);
}

} // namespace orv::ui
