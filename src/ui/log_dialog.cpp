#include "ui/log_dialog.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "core/i18n/texts.h"
#include "core/logstore/bands.h"
#include "core/settings/settings.h"
#include "core/shared/share_address.h"
#include "core/shared/shared_store.h"
#include "core/util/ports.h"
#include "core/util/text.h"
#include "platform/net/password_store.h"
#include "platform/qt_dialogs.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// Own call and locator are kept in capitals as they are typed.
void upperAsTyped(QLineEdit* e) {
    QObject::connect(e, &QLineEdit::textEdited, e, [e](const QString& t) {
        if (t != t.toUpper()) {
            const int pos = e->cursorPosition();
            e->setText(t.toUpper());
            e->setCursorPosition(pos);
        }
    });
}

} // namespace

LogDialog::LogDialog(Settings& settings, const AppPaths& paths, const Texts& texts,
                     Dialogs& dialogs, Clock& clock, Beeper& beeper, QWidget* parent)
    : QDialog(parent), settings_(settings), paths_(paths), texts_(texts), dialogs_(dialogs),
      clock_(clock), beeper_(beeper) {
    setObjectName("Form2");
    setWindowTitle(q(texts_(29)));
    setModal(true);

    auto* form = new QFormLayout;
    call_ = new QComboBox(this);
    call_->setObjectName("Text1");
    call_->setEditable(true);
    call_->setInsertPolicy(QComboBox::NoInsert);
    upperAsTyped(call_->lineEdit());
    form->addRow(q(texts_(171)), call_);
    locator_ = new QLineEdit(this);
    locator_->setObjectName("Text2");
    locator_->setMaxLength(6);
    upperAsTyped(locator_);
    form->addRow(q(texts_(172)), locator_);
    band_ = new QComboBox(this);
    band_->setObjectName("Combo1");
    for (const Band& b : kBands)
        band_->addItem(q(std::string(b.boxText)));
    form->addRow(q(texts_(173)), band_);
    mode_ = new QComboBox(this);
    mode_->setObjectName("Combo3");
    form->addRow(q(texts_(177)), mode_);
    offset_ = new QComboBox(this);
    offset_->setObjectName("Combo5");
    for (const std::string& e : timeOffsetList())
        offset_->addItem(q(e));
    form->addRow(q(texts_(266)), offset_);
    contestBox_ = new QComboBox(this);
    contestBox_->setObjectName("Combo4");
    contestBox_->setEditable(true);
    contestBox_->setInsertPolicy(QComboBox::NoInsert);
    form->addRow(q(texts_(70)), contestBox_);
    logs_ = new QComboBox(this);
    logs_->setObjectName("Combo2");
    form->addRow(q(texts_(29)), logs_);
    shareServer_ = new QLineEdit(this);
    shareServer_->setObjectName("ShareServer");
    shareServer_->setPlaceholderText("postgresql://USER@HOST:PORT/DB");
    form->addRow(q(texts_(1351)), shareServer_);
    sharePosition_ = new QLineEdit(this);
    sharePosition_->setObjectName("SharePosition");
    sharePosition_->setMaxLength(15);
    form->addRow(q(texts_(1352)), sharePosition_);
    sharePassword_ = new QLineEdit(this);
    sharePassword_->setObjectName("SharePassword");
    sharePassword_->setEchoMode(QLineEdit::Password);
    form->addRow(q(texts_(1353)), sharePassword_);

    status_ = new QLabel(this);
    status_->setObjectName("Label1");
    status_->setStyleSheet("color: #b00000; font-weight: bold;");
    auto* create = new QPushButton(q(texts_(502)), this);
    create->setObjectName("Command4");
    auto* cancel = new QPushButton(q(texts_(11)), this);
    cancel->setObjectName("Command1");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(create);
    buttons->addWidget(cancel);
    // The computer's clock, corrected on site before the contest starts.
    timeButton_ = new QPushButton(this);
    timeButton_->setObjectName("Command6");
    dateButton_ = new QPushButton(this);
    dateButton_->setObjectName("Command7");
    clockField_ = new QLineEdit(this);
    clockField_->setObjectName("Text5");
    clockField_->hide();
    auto* clockRow = new QHBoxLayout;
    clockRow->addWidget(dateButton_);
    clockRow->addWidget(timeButton_);
    clockRow->addWidget(clockField_);
    clockRow->addStretch(1);
    auto* clockTimer = new QTimer(this);
    clockTimer->setObjectName("Timer1");
    clockTimer->setInterval(1000);
    connect(clockTimer, &QTimer::timeout, this, &LogDialog::showClock);
    clockTimer->start();
    connect(timeButton_, &QPushButton::clicked, this, [this] { editClock(ClockPart::Time); });
    connect(dateButton_, &QPushButton::clicked, this, [this] { editClock(ClockPart::Date); });
    connect(clockField_, &QLineEdit::returnPressed, this, &LogDialog::setClock);

    auto* v = new QVBoxLayout(this);
    v->addLayout(form);
    v->addLayout(clockRow);
    v->addWidget(status_);
    v->addLayout(buttons);

    // Load: the offset, own call with its history, band, mode and contest.
    offset_->setCurrentIndex(timeOffsetIndex(static_cast<int>(settings_.get(keys::ZeitPlusMinus))));
    for (const std::string& c : settings_.callList())
        call_->addItem(q(c));
    call_->setEditText(q(settings_.get(keys::MyCall)));
    locator_->setText(q(settings_.get(keys::MyLocator)));
    const auto modes = settings_.modes();
    for (const std::string& m : modes)
        mode_->addItem(q(m));
    mode_->setCurrentIndex(static_cast<int>(settings_.get(keys::Mode)));
    const long long startBand = settings_.get(keys::StartQRG);
    band_->setCurrentIndex(startBand >= 0 && startBand < kBandCount ? static_cast<int>(startBand)
                                                                    : 1);
    showClock();
    contest_ = ConDaLoad(settings_.file(), defs_);
    for (const ContestDef& d : defs_)
        contestBox_->addItem(q(d.name));
    contestBox_->setEditText(q(contest_.ContestName));
    fillLogs();

    connect(band_, &QComboBox::currentIndexChanged, this,
            [this](int i) { settings_.set(keys::StartQRG, i); });
    connect(contestBox_, &QComboBox::currentTextChanged, this, [this](const QString& t) {
        if (!chooseContest(defs_, t.toStdString(), contest_))
            contest_.ContestName = t.trimmed().toStdString();
    });
    connect(call_->lineEdit(), &QLineEdit::returnPressed, locator_,
            [this] { locator_->setFocus(); });
    connect(locator_, &QLineEdit::returnPressed, band_, [this] { band_->setFocus(); });
    connect(create, &QPushButton::clicked, this, &LogDialog::newLog);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(logs_, &QComboBox::activated, this,
            [this](int i) { openExisting(logs_->itemText(i)); });
}

void LogDialog::showClock() {
    const DateTime now = clock_.now();
    timeButton_->setText(q(now.toStorage().substr(11)));
    dateButton_->setText(q(now.dateIso()));
}

void LogDialog::editClock(ClockPart part) {
    clockPart_ = part;
    const DateTime now = clock_.now();
    clockField_->setText(q(part == ClockPart::Time ? now.toStorage().substr(11) : now.dateIso()));
    clockField_->show();
    clockField_->setFocus(Qt::OtherFocusReason);
    clockField_->selectAll();
}

void LogDialog::setClock() {
    const Status s =
        setComputerClock(*timeSetter_, clock_, clockPart_, clockField_->text().toStdString());
    if (!s) {
        // A bad value gets its text; a refusal of the system its own words.
        const Failure& f = s.failure();
        dialogs_.inform(f.text != 0 ? texts_(f.text) : f.detail, Icon::Critical);
        clockField_->setFocus(Qt::OtherFocusReason);
        return;
    }
    clockField_->hide();
    showClock();
}

void LogDialog::fillLogs() {
    filling_ = true;
    logs_->clear();
    for (const std::string& name : listLogs(paths_.logsPath()))
        logs_->addItem(q(name));
    logs_->setCurrentIndex(-1);
    filling_ = false;
}

NewLogForm LogDialog::form() const {
    NewLogForm f;
    f.contest = contestBox_->currentText().toStdString();
    f.myCall = call_->currentText().toStdString();
    f.myLocator = locator_->text().toStdString();
    f.startBand = band_->currentText().toStdString();
    f.startMode = mode_->currentText().toStdString();
    return f;
}

void LogDialog::refuse(const Failure& f) {
    beeper_.beep();
    status_->setText(q(texts_(f.text)));
    if (auto* w = findChild<QWidget*>(q(f.field)))
        w->setFocus(Qt::OtherFocusReason);
}

std::optional<Failure> LogDialog::shareProblem() const {
    const std::string server = shareServer_->text().trimmed().toStdString();
    if (server.empty())
        return std::nullopt;
    if (!parseShareAddress(server))
        return orv::refuse(1320, "ShareServer", server);
    if (!validPositionName(sharePosition_->text().trimmed().toStdString()))
        return orv::refuse(1321, "SharePosition");
    return std::nullopt;
}

void LogDialog::applySharing(ContestLog& log, const std::string& name) {
    const std::string server = shareServer_->text().trimmed().toStdString();
    const auto address = parseShareAddress(server);
    if (!address)
        return;
    const std::string contest =
        SharedStore::isShared(log.db()) ? SharedStore(log.db()).setup().contest : name;
    SharedStore::enable(log.db(),
                        {server, sharePosition_->text().trimmed().toStdString(), contest});
    if (!sharePassword_->text().isEmpty())
        PasswordStore(PasswordStore::fileIn(paths_.appPath))
            .save(address->passwordKey(), address->user, sharePassword_->text().toStdString());
}

void LogDialog::newLog() {
    if (auto f = shareProblem()) {
        refuse(*f);
        return;
    }
    // A full disk or a file in the way shows its description; the chooser
    // stays and nothing is open.
    try {
        makeNewLog();
    } catch (const std::exception& e) {
        dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
    }
}

void LogDialog::makeNewLog() {
    // No on the overwrite question asks for a name again.
    for (;;) {
        const NewLogForm f = form();
        if (const Status t = Testen(f); !t) {
            refuse(t.failure());
            return;
        }
        const auto name =
            platform::QtDialogs::input(this, texts_(5), texts_(6),
                                       proposedLogName(clock_.now().addHours(
                                           parseTimeOffset(offset_->currentText().toStdString()))));
        if (!name)
            return;
        if (const Status n = checkLogName(*name); !n) {
            dialogs_.inform(texts_(n.failure().text), Icon::Critical);
            return;
        }
        auto made = createNewLog(paths_.logsPath(), *name, f, contest_, false);
        if (!made && made.failure().text == 8) {
            if (dialogs_.ask(texts_(8), Buttons::YesNo, Icon::Question, Answer::No) != Answer::Yes)
                continue;
            made = createNewLog(paths_.logsPath(), *name, f, contest_, true);
        }
        if (!made) {
            refuse(made.failure());
            return;
        }
        fillLogs();
        logs_->setCurrentText(q(*name));
        finish(std::move(made).value(), *name, {}, text::upper(text::trim(f.myCall)),
               text::upper(text::trim(f.myLocator)));
        return;
    }
}

void LogDialog::openExisting(const QString& name) {
    if (filling_ || name.trimmed().isEmpty())
        return;
    if (auto f = shareProblem()) {
        refuse(*f);
        return;
    }
    std::optional<OpenedLog> o;
    try {
        auto opened = openLog(paths_.logFile(name.toStdString()));
        if (!opened) {
            dialogs_.inform(texts_(opened.failure().text), Icon::Critical);
            return;
        }
        o.emplace(std::move(opened).value());
    } catch (const std::exception& e) {
        // A file in the folder that is no log, or a broken one.
        dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
        return;
    }
    call_->setEditText(q(o->myCall));
    locator_->setText(q(o->myLocator));
    contest_ = o->contest;
    finish(std::move(o->log), name.toStdString(), o->bandsWithQsos, o->myCall, o->myLocator);
}

void LogDialog::finish(ContestLog log, const std::string& name, std::array<bool, kBandCount> bands,
                       const std::string& myCall, const std::string& myLocator) {
    LogChoice choice;
    choice.zeitPlusMinus = parseTimeOffset(offset_->currentText().toStdString());
    choice.myCall = myCall;
    choice.myLocator = myLocator;
    choice.modeIndex = std::max(0, mode_->currentIndex());
    choice.contest = contest_;
    saveLogChoice(settings_, choice);
    applySharing(log, name);

    chosen_ = Chosen{std::move(log),
                     paths_.logFile(name).filename().string(),
                     myCall,
                     myLocator,
                     band_->currentIndex(),
                     mode_->currentText().toStdString(),
                     choice.zeitPlusMinus,
                     contest_,
                     bands};
    accept();
}

} // namespace orv::ui
