#include "ui/startup.h"

#include <QCoreApplication>
#include <QDir>
#include <QScreen>

#include "core/capture/capture.h"
#include "core/i18n/environment_language.h"
#include "core/i18n/language.h"
#include "core/shared/share_address.h"
#include "core/shared/shared_store.h"
#include "core/util/ports.h"
#include "core/util/text.h"
#include "platform/net/password_store.h"
#include "ui/captions.h"
#include "ui/capture_binding.h"
#include "ui/features.h"
#include "ui/main_window.h"
#include "ui/share_binding.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

QColor toQColor(Colour c) {
    return QColor(c.r, c.g, c.b);
}

constexpr const char* kDefaultLanguage = "<Default>";

} // namespace

Startup::Startup(std::filesystem::path dataFolder, Dialogs& dialogs, Clock& clock, Beeper& beeper)
    : folder_(std::move(dataFolder)), dialogs_(dialogs), clock_(clock), beeper_(beeper) {
    runLogDialog = [](LogDialog& d) { return d.exec() == QDialog::Accepted; };
    runLogChooser = [](LogFileChooser& d) { return d.exec() == QDialog::Accepted; };
    endProgram = [] { QCoreApplication::exit(0); };
}

Startup::~Startup() {
    // The binding goes first, while the window and the capture it binds
    // are still whole.
    share_.reset();
    delete binding_;
    binding_ = nullptr;
    window_.reset();
    capture_.reset();
}

Startup::Outcome Startup::run() {
    // A second start finds the lock of the first in the data folder and
    // ends without a word.
    std::filesystem::create_directories(folder_);
    lock_ = std::make_unique<QLockFile>(q((folder_ / "OrvantaContest.lock").string()));
    lock_->setStaleLockTime(0);
    if (!lock_->tryLock(0))
        return Outcome::AlreadyRunning;

    paths_ = prepareDataFolder(folder_);
    settings_ = std::make_unique<Settings>(IniFile(paths_.iniPath(), &beeper_));
    texts_.loadDefaults();
    // The first start takes the desktop's language, and asks its question
    // in it already; later the question comes before any language file, in
    // the built-in texts.
    if (adoptEnvironmentLanguage(*settings_, paths_.languagePath(), localeEnvironment(environment)))
        loadChosenLanguage(texts_, *settings_, paths_.languagePath());
    if (!askLiability())
        return Outcome::Declined;

    window_ = std::make_unique<MainWindow>(texts_, clock_, beeper_);
    loadLanguage();
    fillLists();

    LogDialog dialog(*settings_, paths_, texts_, dialogs_, clock_, beeper_);
    if (!runLogDialog(dialog) || !dialog.chosen())
        return Outcome::NoLog;
    openLog(std::move(*dialog.chosen()));
    installFeatures(*this);
    return Outcome::Run;
}

bool Startup::askLiability() {
    if (settings_->get(keys::Einverstanden) != 0)
        return true;
    const std::string text = texts_(241) + "\n" + texts_(253) + "\n\n" + texts_(242);
    if (dialogs_.ask(text, Buttons::YesNo, Icon::Warning, Answer::No) != Answer::Yes)
        return false;
    settings_->file().write(keys::Einverstanden.section, keys::Einverstanden.key, "-1");
    return true;
}

void Startup::loadLanguage() {
    const std::string stored = settings_->get(keys::Language);
    if (!stored.empty() && stored != kDefaultLanguage) {
        reportLanguageLoad(texts_.loadLanguageFile(paths_.languagePath() / stored));
    }
    QStringList files;
    const QDir dir(q(paths_.languagePath().string()));
    for (const QString& f : dir.entryList({"*.lng"}, QDir::Files, QDir::Name))
        files << f;
    window_->setLanguages(files, stored.empty() ? QString(kDefaultLanguage) : q(stored));
    window_->Beschriften();
    window_->Grid1Set();
    window_->Grid2Set();
    QObject::connect(window_.get(), &MainWindow::languageChosen, window_.get(),
                     [this](const QString& c) { chooseLanguage(c); });
}

void Startup::chooseLanguage(const QString& caption) {
    settings_->set(keys::Language, caption.toStdString());
    const auto file = paths_.languagePath() / caption.toStdString();
    // A new language goes on top of the current one, so rows it lacks keep
    // the former language's text.
    if (caption != kDefaultLanguage && std::filesystem::exists(file))
        reportLanguageLoad(texts_.loadLanguageFile(file));
    else
        texts_.loadDefaults();
    window_->Beschriften();
    window_->Grid1Set();
    window_->Grid2Set();
    // The other open windows (CW window, station log, key help) as well.
    recaptionOpenWindows(texts_);
    window_->focusNamed("Text3");
}

void Startup::reportLanguageLoad(const Texts::LoadResult& r) {
    if (r.status == Texts::LoadStatus::Invalid)
        dialogs_.inform(texts_(230), Icon::Critical);
    // A row number past the table stops the reading; the rows before it
    // stay, and the operator learns which number it was.
    else if (r.status == Texts::LoadStatus::Truncated)
        dialogs_.inform(texts_(10) + "\n" + texts_(225) + ": " + std::to_string(r.badRow),
                        Icon::Critical);
}

void Startup::fillLists() {
    QStringList ops;
    for (const OpCall& op : settings_->opCalls())
        ops << q(op.call);
    window_->setOperators(ops, q(settings_->get(keys::OPCall)));
    QStringList modes;
    for (const std::string& m : settings_->modes())
        modes << q(m);
    window_->setModes(modes);
    QStringList props;
    for (const std::string& p : settings_->list(section::AUSBR))
        props << q(p);
    window_->setPropagations(props, q(settings_->get(keys::Prop)));
}

void Startup::applyOptions() {
    FieldColours c;
    c.aktiv = toQColor(settings_->get(keys::FarbeAktiv));
    c.inAktiv = toQColor(settings_->get(keys::FarbeInAktiv));
    c.noEdit = toQColor(settings_->get(keys::FarbeNoEdit));
    c.bereitsQso = toQColor(settings_->get(keys::FarbeBereitsQSO));
    window_->setFieldColours(c);
    window_->setTimeEditable(settings_->get(keys::ZeitEdit));
    window_->setModeSwitch(settings_->get(keys::SSBCWFlip), q(settings_->get(keys::Mode2St)),
                           q(settings_->get(keys::Mode3St)));
    window_->setMaxBake(static_cast<int>(settings_->get(keys::MaxBake)));
}

void Startup::connectWindow() {
    MainWindow* w = window_.get();
    QObject::connect(w, &MainWindow::timeEditToggled, w,
                     [this](bool on) { settings_->set(keys::ZeitEdit, on); });
    QObject::connect(w, &MainWindow::closing, w, [this] { SaveConDat(); });
    QObject::connect(w, &MainWindow::loadLogRequested, w, [this] { changeLog(); });
}

void Startup::openLog(LogDialog::Chosen chosen) {
    log_.emplace(std::move(chosen));
    // The tone files of the keyer live here; made once a log is open.
    std::error_code ec;
    std::filesystem::create_directories(paths_.cwAudioPath(), ec);
    applyOptions();
    connectWindow();
    if (const QScreen* screen = window_->screen())
        window_->applySmallLayout(MainWindow::smallLayoutFor(
            screen->availableGeometry().height(), static_cast<int>(screen->logicalDotsPerInchY())));
    bindLog();
    window_->show();
    window_->focusNamed("Text3");
}

void Startup::bindLog() {
    window_->setZeitPlusMinus(log_->zeitPlusMinus);
    window_->setOwnStation(q(log_->myCall), q(log_->myLocator));
    window_->setCurrentMode(q(log_->startMode));
    window_->selectBand(log_->startBand);

    capture_ = std::make_unique<Capture>(
        log_->log, captureConfigFrom(*settings_, log_->log.myData()), clock_, dialogs_, texts_);
    capture_->selectBand(log_->startBand);
    capture_->afterChange = [this] {
        if (afterLogChange)
            afterLogChange();
        if (share_)
            share_->nudge();
    };
    binding_ = new CaptureBinding(*window_, *capture_, log_->log, beeper_, texts_, dialogs_,
                                  settings_.get());
    binding_->setRateSettings(static_cast<int>(settings_->get(keys::Zeitbereich)),
                              static_cast<int>(settings_->get(keys::ZeigerMAX)));
    QObject::connect(binding_, &CaptureBinding::programMustEnd, window_.get(), [this] {
        endedWithoutSaving_ = true;
        window_->hide();
        endProgram();
    });
    window_->setWindowTitle(q("OrvantaContest - [" + log_->logFile + "]"));
    if (SharedStore::isShared(log_->log.db())) {
        const auto address = parseShareAddress(SharedStore(log_->log.db()).setup().server);
        const std::string password = address ? PasswordStore(PasswordStore::fileIn(paths_.appPath))
                                                   .load(address->passwordKey(), address->user)
                                                   .value_or("")
                                             : std::string();
        share_ = std::make_unique<ShareBinding>(*window_, *capture_, log_->log, texts_, password);
    }
}

void Startup::changeLog() {
    LogFileChooser chooser(paths_, texts_, dialogs_, window_.get());
    const bool chosen = runLogChooser(chooser) && chooser.opened();
    window_->clearCallField();
    if (!chosen)
        return;
    OpenedLog& o = *chooser.opened();
    const EntryRow row = window_->entryRow();
    LogDialog::Chosen next{std::move(o.log),
                           paths_.logFile(chooser.name().toStdString()).filename().string(),
                           o.myCall,
                           o.myLocator,
                           window_->currentBand(),
                           row.mode,
                           log_->zeitPlusMinus,
                           o.contest,
                           o.bandsWithQsos};
    // The capture lets go of the old log before the new one takes its place.
    share_.reset();
    delete binding_;
    binding_ = nullptr;
    capture_.reset();
    log_.emplace(std::move(next));
    window_->clearLocatorField();
    bindLog();
    window_->focusNamed("Text3");
}

void Startup::SaveConDat() {
    if (!log_ || endedWithoutSaving_)
        return;
    log_->log.writeContestData(log_->contest.ContestName, log_->contest.Zaehl);
    const EntryRow row = window_->entryRow();
    const std::string op = text::upper(text::trim(row.op));
    settings_->set(keys::OPCall, op);
    auto ops = settings_->opCalls();
    const bool known = std::any_of(ops.begin(), ops.end(),
                                   [&](const OpCall& o) { return text::upper(o.call) == op; });
    if (!op.empty() && !known) {
        ops.push_back(OpCall{op});
        settings_->setOpCalls(ops);
    }
    settings_->set(keys::Prop, text::upper(text::trim(row.prop)));
    settings_->set(keys::MaxBake, window_->maxBake());
}

} // namespace orv::ui
