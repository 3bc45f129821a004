#include "ui/evaluation_window.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "core/i18n/texts.h"
#include "core/locator/square_window.h"
#include "core/logstore/contest_log.h"
#include "core/reference/call_db.h"
#include "core/reference/call_db_merge.h"
#include "core/reference/country_list.h"
#include "core/settings/settings.h"
#include "core/util/ports.h"
#include "core/util/text.h"
#include "ui/adif_dialog.h"
#include "ui/captions.h"
#include "ui/edi_dialog.h"
#include "ui/square_window.h"
#include "ui/submission_menus.h"

namespace orv::ui {
namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}
QString q(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

QLabel* figureLabel(const char* name, QWidget* parent) {
    auto* l = new QLabel("0", parent);
    l->setObjectName(name);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    l->setMinimumWidth(60);
    return l;
}

} // namespace

EvaluationWindow::EvaluationWindow(const AppPaths& paths, Settings& settings, const Texts& texts,
                                   Dialogs& dialogs, Clock& clock, Beeper& beeper,
                                   const std::string& logName, int band, QWidget* parent)
    : QWidget(parent, Qt::Window), paths_(paths), settings_(settings), texts_(texts),
      dialogs_(dialogs), clock_(clock), beeper_(beeper) {
    setObjectName("Form5");
    captionFromRow(*this, 86, texts_, CaptionPart::WindowTitle);
    // An unreadable or empty country list counts no countries rather than
    // refusing every call of the log.
    try {
        auto list = std::make_unique<CountryList>(CountryList::load(paths_.countryDbPath()));
        if (!list->empty())
            countries_ = std::move(list);
    } catch (const std::exception&) {
        countries_.reset();
    }
    callDbCountAtOpen_ = callDbCount();
    buildUi();
    Grid1Set();
    fillLogs(logName);
    {
        const QSignalBlocker block(bandBox_);
        bandBox_->setCurrentIndex(std::clamp(band, 0, kBandCount - 1));
    }
    paintBandButtons();
    evaluate();
}

EvaluationWindow::~EvaluationWindow() = default;

void EvaluationWindow::buildUi() {
    auto* top = new QVBoxLayout(this);

    auto* choose = new QHBoxLayout;
    logBox_ = new QComboBox(this);
    logBox_->setObjectName("Combo2");
    logBox_->setMinimumWidth(180);
    choose->addWidget(logBox_);
    bandBox_ = new QComboBox(this);
    bandBox_->setObjectName("Combo1");
    for (const Band& b : kBands)
        bandBox_->addItem(q(b.boxText));
    choose->addWidget(bandBox_);
    for (int i = 0; i < kBandCount; ++i) {
        auto* b = new QPushButton(q(kBands[static_cast<std::size_t>(i)].caption), this);
        b->setObjectName(QString("BandSel(%1)").arg(i));
        b->setAutoFillBackground(true);
        connect(b, &QPushButton::clicked, this, [this, i] { bandBox_->setCurrentIndex(i); });
        bandButtons_[static_cast<std::size_t>(i)] = b;
        choose->addWidget(b);
    }
    choose->addStretch(1);
    top->addLayout(choose);
    connect(logBox_, &QComboBox::currentIndexChanged, this, [this] { evaluate(); });
    connect(bandBox_, &QComboBox::currentIndexChanged, this, [this] {
        paintBandButtons();
        if (!logBox_->currentText().isEmpty())
            evaluate();
    });

    auto* middle = new QHBoxLayout;
    grid_ = new QTableWidget(this);
    grid_->setObjectName("MSFlexGrid1");
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->verticalHeader()->hide();
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->horizontalHeader()->setSectionsClickable(true);
    connect(grid_->horizontalHeader(), &QHeaderView::sectionClicked, this,
            &EvaluationWindow::sortGrid);
    middle->addWidget(grid_, 1);

    auto* side = new QVBoxLayout;
    auto* stats = new QGroupBox(this);
    captionFromRow(*stats, 201, texts_, CaptionPart::PlainText);
    stats->setObjectName("FrameStatistik");
    auto* sg = new QGridLayout(stats);
    int row = 0;
    auto add = [&](QWidget* caption, QLabel* value) {
        sg->addWidget(caption, row, 0);
        sg->addWidget(value, row, 1);
        ++row;
    };
    auto caption = [&](int textRow) { return captioned<QLabel>(textRow, texts_, stats); };
    auto colonCaption = [&](QWidget* w, int textRow) {
        colonCaptions_.emplace_back(w, textRow);
        return w;
    };
    // The locator and square captions are buttons: a click shows the list.
    auto* locCaption = captioned<QPushButton>(149, texts_, stats);
    locCaption->setObjectName("LabelLocatoren");
    locCaption->setFlat(true);
    locCaption->setStyleSheet("text-align: left; padding: 0;");
    connect(locCaption, &QPushButton::clicked, this, &EvaluationWindow::showLocators);
    auto* sqCaption = new QPushButton(stats);
    colonCaption(sqCaption, 26);
    sqCaption->setObjectName("LabelGrossfelder");
    sqCaption->setFlat(true);
    sqCaption->setStyleSheet("text-align: left; padding: 0;");
    connect(sqCaption, &QPushButton::clicked, this, &EvaluationWindow::showSquares);
    figures_.locators = figureLabel("Label3", stats);
    figures_.grossfelder = figureLabel("Label28", stats);
    figures_.countries = figureLabel("Label4", stats);
    figures_.multiplier = figureLabel("Label7", stats);
    figures_.dupes = figureLabel("Label8", stats);
    figures_.deleted = figureLabel("Label11", stats);
    figures_.qsos = figureLabel("Label18", stats);
    figures_.score = figureLabel("Label19", stats);
    figures_.kmPerQso = figureLabel("Label20", stats);
    figures_.odx = figureLabel("Label21", stats);
    add(colonCaption(new QLabel(stats), 95), figures_.qsos);
    add(caption(507), figures_.score);
    add(caption(163), figures_.kmPerQso);
    add(colonCaption(new QLabel(stats), 169), figures_.odx);
    add(colonCaption(new QLabel(stats), 186), figures_.multiplier);
    add(caption(508), figures_.dupes);
    add(caption(509), figures_.deleted);
    add(locCaption, figures_.locators);
    add(sqCaption, figures_.grossfelder);
    add(caption(162), figures_.countries);
    side->addWidget(stats);

    countryGrid_ = new QTableWidget(this);
    countryGrid_->setObjectName("MSFlexGrid2");
    countryGrid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    countryGrid_->verticalHeader()->hide();
    connect(countryGrid_->horizontalHeader(), &QHeaderView::sectionClicked, this,
            &EvaluationWindow::sortCountries);
    side->addWidget(countryGrid_, 1);

    qrgPanel_ = new AdifQrgPanel(settings_, texts_, this);
    side->addWidget(qrgPanel_);
    middle->addLayout(side);
    top->addLayout(middle, 1);

    auto* buttons = new QHBoxLayout;
    auto button = [&](const char* name, int textRow, auto slot) {
        auto* b = captioned<QPushButton>(textRow, texts_, this);
        b->setObjectName(name);
        connect(b, &QPushButton::clicked, this, slot);
        buttons->addWidget(b);
        return b;
    };
    button("Command1", 86, [this] { evaluate(); });
    button("Command2", 97, [this] { openEdi(); });
    // Printing offers the print dialog, the preview and a PDF file.
    auto* print = button("Command3", 98, [] {});
    auto* printMenu = new QMenu(print);
    printMenu->setObjectName("MnDrucken");
    auto printEntry = [&](const char* name, int text, void (EvaluationWindow::*slot)()) {
        QAction* a = printMenu->addAction(q(texts_(text)));
        a->setObjectName(name);
        connect(a, &QAction::triggered, this, slot);
    };
    printEntry("MnDruckenDrucken", 1165, &EvaluationWindow::printLog);
    printEntry("MnDruckenVorschau", 1166, &EvaluationWindow::previewLog);
    printEntry("MnDruckenPDF", 1167, &EvaluationWindow::savePdf);
    print->setMenu(printMenu);
    button("Command4", 181, [this] { exportText(); });
    button("Command5", 94, [this] { exportAdif(); });
    button("Command7", 173, [this] { qrgPanel_->open(); });
    buttons->addStretch(1);
    top->addLayout(buttons);
    resize(1100, 600);
}

void EvaluationWindow::fillLogs(const std::string& select) {
    const QSignalBlocker block(logBox_);
    logBox_->clear();
    std::vector<std::string> names;
    std::error_code ec;
    for (const auto& e : std::filesystem::directory_iterator(paths_.logsPath(), ec)) {
        if (e.is_regular_file(ec) && text::iequals(e.path().extension().string(), ".sqlite"))
            names.push_back(e.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    for (const std::string& n : names)
        logBox_->addItem(q(n));
    logBox_->setCurrentIndex(logBox_->findText(q(select)));
}

int EvaluationWindow::band() const {
    return bandBox_->currentIndex();
}

std::string EvaluationWindow::logName() const {
    return logBox_->currentText().toStdString();
}

std::int64_t EvaluationWindow::callDbCount() const {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(paths_.callDbPath(), ec))
        return 0;
    try {
        CallDbStore store(paths_.callDbPath());
        return store.count();
    } catch (const std::exception&) {
        return 0;
    }
}

std::optional<std::filesystem::path> EvaluationWindow::chosenLogFile() {
    const std::string name = text::trim(logName());
    if (name.empty())
        return std::nullopt;
    const auto file = paths_.logFile(name);
    std::error_code ec;
    if (!std::filesystem::is_regular_file(file, ec)) {
        dialogs_.inform(texts_(415) + "\n" + file.string(), Icon::Critical);
        return std::nullopt;
    }
    return file;
}

void EvaluationWindow::clearShown() {
    ev_.reset();
    gridSorter_ = {};
    countrySorter_ = {};
    grid_->setRowCount(0);
    countryGrid_->setRowCount(0);
    paintSortHeader(grid_, -1, GridSorter::Direction::None);
    paintSortHeader(countryGrid_, -1, GridSorter::Direction::None);
    for (QLabel* l : {figures_.locators, figures_.grossfelder, figures_.countries,
                      figures_.multiplier, figures_.dupes, figures_.deleted, figures_.qsos,
                      figures_.score, figures_.kmPerQso, figures_.odx})
        l->setText("0");
}

bool EvaluationWindow::evaluate() {
    // The band box is set while an evaluation reads the log; one run at a time.
    if (running_)
        return false;
    running_ = true;
    struct Done {
        bool& flag;
        ~Done() { flag = false; }
    } done{running_};

    clearShown();
    const auto file = chosenLogFile();
    if (!file) {
        paintBandButtons();
        return false;
    }
    try {
        Result<ContestLog> log = ContestLog::open(*file);
        if (!log) {
            // Too old a log: IText(208), and nothing is evaluated.
            dialogs_.inform(texts_(log.failure().text), Icon::Critical);
            paintBandButtons();
            return false;
        }
        // The evaluated log's QSOs go into the call database first, so that
        // its calls are known the next time (bands already merged stay).
        try {
            DBAktual(paths_, log.value(), text::trim(logName()));
        } catch (const std::exception& e) {
            dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
        }
        ev_ = orv::evaluate(log.value(), band(), countries_.get());
    } catch (const std::exception& e) {
        dialogs_.inform(texts_(10) + "\n" + e.what(), Icon::Critical);
        paintBandButtons();
        return false;
    }
    showEvaluation();
    for (const std::string& call : ev_->callsWithoutCountry)
        dialogs_.inform(texts_(291) + "\n\n" + call, Icon::Information);
    return true;
}

const Evaluation* EvaluationWindow::evaluateBand(int b) {
    if (b < 0 || b >= kBandCount)
        return nullptr;
    if (bandBox_->currentIndex() != b)
        bandBox_->setCurrentIndex(b); // runs the evaluation
    else
        evaluate();
    return evaluation();
}

void EvaluationWindow::paintBandButtons() {
    const Colour done = settings_.get(keys::FarbeBereitsQSO);
    for (int i = 0; i < kBandCount; ++i) {
        QPushButton* b = bandButtons_[static_cast<std::size_t>(i)];
        if (i == band())
            b->setStyleSheet("background-color: rgb(255, 0, 0);");
        else if (ev_ && ev_->bandsWithQsos[static_cast<std::size_t>(i)])
            b->setStyleSheet(
                QString("background-color: rgb(%1, %2, %3);").arg(done.r).arg(done.g).arg(done.b));
        else
            b->setStyleSheet({});
        b->setProperty("hasQsos", ev_ && ev_->bandsWithQsos[static_cast<std::size_t>(i)]);
    }
}

void EvaluationWindow::showLocators() {
    if (!ev_)
        return;
    const std::vector<std::string> locs = sortedLocators(*ev_);
    if (locs.empty())
        return;
    std::string shown;
    for (std::size_t i = 0; i < locs.size(); ++i)
        shown += (i ? ", " : "") + locs[i];
    dialogs_.inform(shown, Icon::Information);
}

void EvaluationWindow::showSquares() {
    if (!ev_)
        return;
    const LocFenster f = LocUnt(ev_->myLocator, ev_->grossfeldList, beeper_);
    auto* w =
        new SquareWindow(f, static_cast<long long>(ev_->grossfeldCount),
                         q(kBands[static_cast<std::size_t>(ev_->band)].boxText), texts_, this);
    w->setAttribute(Qt::WA_DeleteOnClose);
    // Modal over the evaluation, without a nested loop of its own.
    w->open();
}

void EvaluationWindow::openEdi() {
    if (!ev_ || ev_->rows.empty()) {
        dialogs_.inform(std::string(kBands[static_cast<std::size_t>(std::max(band(), 0))].boxText) +
                            " " + texts_(202),
                        Icon::Information);
        return;
    }
    EdiDialog dialog(
        settings_, texts_, dialogs_, paths_, band(), [this](int b) { return evaluateBand(b); },
        this);
    SubmissionHooks::runModal(dialog);
}

ExportContext EvaluationWindow::exportContext() {
    return ExportContext{this,   settings_,         texts_,          dialogs_,
                         clock_, paths_.logsPath(), countries_.get()};
}

void EvaluationWindow::exportAdif() {
    if (const auto file = chosenLogFile())
        orv::ui::exportAdif(exportContext(), *file);
}

void EvaluationWindow::exportText() {
    if (const auto file = chosenLogFile())
        exportTextListing(exportContext(), *file);
}

void EvaluationWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        for (const auto& [w, textRow] : colonCaptions_) {
            const QString text = q(texts_(textRow)) + ":";
            if (auto* b = qobject_cast<QPushButton*>(w))
                b->setText(text);
            else if (auto* l = qobject_cast<QLabel*>(w))
                l->setText(text);
        }
        retitleGrids();
    }
    QWidget::changeEvent(event);
}

void EvaluationWindow::closeEvent(QCloseEvent* event) {
    if (reloadCallDb && callDbCount() != callDbCountAtOpen_ &&
        dialogs_.ask(texts_(260), Buttons::YesNo, Icon::Question, Answer::Yes) == Answer::Yes)
        reloadCallDb();
    event->accept();
}

} // namespace orv::ui
